// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QStringView>

#include <vector>

namespace halvane {

/// A text as it is searched, in UTF-8. Letter case is folded as the user's language folds it.
/// Accents, the width of letters and their composition make no difference. Any thread.
QByteArray foldedForSearch(QStringView text);

/// The words of a folded query, at least two; a query of one word has none.
QByteArrayList severalWords(const QByteArray& foldedQuery);

/// Many texts, folded once and laid end to end, so that a search is one run over memory. A text of
/// 20 letters takes 25 bytes. One with Chinese characters is also found by the initials of their
/// pinyin. A plain value; any thread.
class FoldedTexts {
  public:
    void reserve(std::size_t texts, std::size_t bytes);
    void add(QStringView text);
    [[nodiscard]] std::size_t size() const { return m_ends.size(); }

    /// One number for each text: 1 if it contains the folded query, otherwise 0. The query is not
    /// empty.
    [[nodiscard]] std::vector<quint8> matches(const QByteArray& foldedQuery) const;
    /// The same for texts that contain every one of these words.
    [[nodiscard]] std::vector<quint8> matchesAll(const QByteArrayList& foldedWords) const;
    /// Whether one text contains the folded query.
    [[nodiscard]] bool contains(std::size_t index, const QByteArray& foldedQuery) const;

  private:
    QByteArray m_bytes;          ///< each text is followed by a zero byte, which no text contains
    std::vector<quint32> m_ends; ///< the place of each text's zero byte
};

} // namespace halvane
