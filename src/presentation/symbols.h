// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

namespace halvane {

/// The font that holds the symbols.
QString symbolFontFamily();

/// The one character of the symbol font that draws the named symbol ("play.fill"); empty for a name
/// that the table lacks. Any thread.
QString symbolGlyph(QStringView name);

} // namespace halvane
