// SPDX-License-Identifier: MIT
#pragma once

#include "platform/tray/tray_icon.h"

#include <QColor>
#include <QImage>
#include <QList>

namespace halvane {

/// The waveform symbol, drawn: bars of one colour on nothing.
QImage waveformImage(int size, const QColor& color);

/// The symbol in the sizes that trays use.
QList<TrayPixmap> waveformPixmaps(const QColor& color);

} // namespace halvane
