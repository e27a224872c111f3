// SPDX-License-Identifier: MIT
// Which of the toolkit's renderers draws the windows. Without a graphics card, OpenGL is computed
// by the processor, which draws a whole window anew for every few pixels that change; the software
// renderer draws those pixels.
#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace halvane {

/// Whether something below the root's /dev draws for this user: a render node that may be opened
/// and has more behind it than a virtual machine's plain display, NVIDIA's own driver, or WSL's.
/// Any thread.
bool hasGraphicsCard(const QString& root);

/// Whether the software renderer is to be asked for. Not where the environment names a renderer:
/// the toolkit obeys it. Pure.
bool needsSoftwareRenderer(const QProcessEnvironment& environment, bool hasGraphicsCard);

/// Asks for what suits this machine. Main thread, before the first window.
void chooseRenderer();

} // namespace halvane
