// SPDX-License-Identifier: MIT
#include "metadata/readers/tag_fields.h"

namespace halvane {

std::optional<qint64> parseYear(const QString& text) {
    // A piece is a run of characters that are numbers in any script; only four ASCII digits parse.
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype end = start;
        while (end < text.size() && text.at(end).isNumber())
            ++end;
        if (end - start == 4) {
            bool isNumber = false;
            const int year = QStringView(text).mid(start, 4).toInt(&isNumber);
            if (isNumber && year >= 1900 && year <= 2100)
                return year;
        }
        start = end + 1;
    }
    return std::nullopt;
}

void TagFields::add(TagField field, const QString& value) {
    const QString text = value.trimmed();
    if (text.isEmpty())
        return;
    switch (field) {
    case TagField::title:
        m_title = text;
        break;
    case TagField::artist:
        m_artist = text;
        break;
    case TagField::albumName:
        m_album = text;
        break;
    case TagField::type:
        m_genre = text;
        break;
    case TagField::creationDate:
        m_year = parseYear(text).value_or(m_year);
        break;
    }
}

void TagFields::addPicture(PictureRank rank, std::function<QByteArray()> bytes) {
    if (rank < m_rank)
        return;
    m_rank = rank;
    m_picture = std::move(bytes);
}

} // namespace halvane
