// SPDX-License-Identifier: MIT
// Texts whose encoding their file does not tell, or tells wrongly. Fields that are Latin-1 by their
// format were written as GBK or Big5 on Chinese systems, in other code pages elsewhere, and as
// UTF-8 by careless programs. One short text tells little, so the texts of a file are judged
// together, and its path, whose encoding is known, helps. Any thread.
#pragma once

#include <QByteArray>
#include <QString>

#include <span>

namespace halvane {

/// The text, where the bytes are ASCII or plainly UTF-8. Otherwise the bytes as they are, between
/// two marks that stand in no text, until decideTexts() has seen all texts of the file. Blanks
/// around them stay outside the marks.
QString undecidedText(const QByteArray& bytes);

/// Replaces what undecidedText() left open by the likeliest text. Each of `texts` may hold several
/// such pieces. `path` is the file's.
void decideTexts(std::span<QString* const> texts, const QString& path);

} // namespace halvane
