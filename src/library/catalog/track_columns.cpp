// SPDX-License-Identifier: MIT
#include "library/catalog/track_columns.h"

namespace halvane {

namespace {

class Interning {
  public:
    Interning(InternedColumn& column, std::size_t rows)
        : m_column(column) {
        m_column.ofRow.reserve(rows);
    }

    void add(const QString& text) {
        // Neighbours mostly have the same text, and then share its buffer.
        if (!m_column.ofRow.empty() && m_column.texts[m_column.ofRow.back()] == text) {
            m_column.ofRow.push_back(m_column.ofRow.back());
            return;
        }
        quint32& number = m_numbers[text]; // counted from 1; 0 is a text not met before
        if (number == 0) {
            m_column.texts.push_back(text);
            number = static_cast<quint32>(m_column.texts.size());
        }
        m_column.ofRow.push_back(number - 1);
    }

  private:
    InternedColumn& m_column;
    QHash<QString, quint32> m_numbers;
};

} // namespace

TrackColumns columnsOf(const TrackRows& rows) {
    TrackColumns columns;
    Interning artist(columns.artist, rows.size());
    Interning album(columns.album, rows.size());
    Interning genre(columns.genre, rows.size());
    Interning format(columns.format, rows.size());
    // One run over the rows, because fetching them from memory takes most of the time.
    for (const TrackPtr& row : rows) {
        artist.add(row->artist);
        album.add(row->album);
        genre.add(row->genre);
        format.add(row->format);
    }
    return columns;
}

} // namespace halvane
