// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace halvane {

/// Reads a text whose encoding its file does not tell, or tells wrongly. Fields that are Latin-1 by
/// their format were written as GBK on Chinese systems, and as UTF-8 by careless programs. Each
/// text is judged by itself. A sound Latin-1 reading always wins over GBK. Any thread.
QString decodeLegacyText(const QByteArray& bytes);

} // namespace halvane
