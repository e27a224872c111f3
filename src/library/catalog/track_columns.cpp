// SPDX-License-Identifier: MIT
#include "library/catalog/track_columns.h"

#include <optional>

namespace halvane {

namespace {

// Numbers the texts of a column.
class Interning {
  public:
    explicit Interning(std::vector<QString>& texts)
        : m_texts(texts) {}

    // `last` is the number before this one in the same column. Neighbours mostly have the same
    // text, and then share its buffer.
    quint32 number(const QString& text, std::optional<quint32> last) {
        if (last && m_texts[*last] == text)
            return *last;
        quint32& number = m_numbers[text]; // counted from 1; 0 is a text not met before
        if (number == 0) {
            m_texts.push_back(text);
            number = static_cast<quint32>(m_texts.size());
        }
        return number - 1;
    }
    void add(std::vector<quint32>& ofRow, const QString& text) {
        ofRow.push_back(number(text, ofRow.empty() ? std::nullopt : std::optional(ofRow.back())));
    }

  private:
    std::vector<QString>& m_texts;
    QHash<QString, quint32> m_numbers;
};

} // namespace

TrackColumns columnsOf(const TrackRows& rows) {
    TrackColumns columns;
    for (auto* ofRow : {&columns.artist.ofRow, &columns.leadOfRow, &columns.album.ofRow,
                        &columns.genre.ofRow, &columns.format.ofRow})
        ofRow->reserve(rows.size());
    Interning artist(columns.artist.texts);
    Interning album(columns.album.texts);
    Interning genre(columns.genre.texts);
    Interning format(columns.format.texts);
    // One run over the rows, because fetching them from memory takes most of the time.
    for (const TrackPtr& row : rows) {
        artist.add(columns.artist.ofRow, row->artist);
        if (row->albumTags.albumArtist.isEmpty())
            columns.leadOfRow.push_back(columns.artist.ofRow.back());
        else
            artist.add(columns.leadOfRow, row->albumTags.albumArtist);
        album.add(columns.album.ofRow, row->album);
        genre.add(columns.genre.ofRow, row->genre);
        format.add(columns.format.ofRow, row->format);
    }
    return columns;
}

} // namespace halvane
