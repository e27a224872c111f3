// SPDX-License-Identifier: MIT
#include "library/library_columns.h"

namespace halvane {

namespace {

InternedColumn internedColumn(const TrackRows& rows, QString Track::*field) {
    InternedColumn column;
    column.ofRow.reserve(rows.size());
    QHash<QString, quint32> numbers;
    for (const TrackPtr& row : rows) {
        const QString& text = (*row).*field;
        // Neighbours mostly agree, and then even share their buffer.
        if (!column.ofRow.empty() && column.texts[column.ofRow.back()] == text) {
            column.ofRow.push_back(column.ofRow.back());
            continue;
        }
        quint32& number = numbers[text]; // counts from 1; 0 is a text not met before
        if (number == 0) {
            column.texts.push_back(text);
            number = static_cast<quint32>(column.texts.size());
        }
        column.ofRow.push_back(number - 1);
    }
    return column;
}

} // namespace

LibraryColumns columnsOf(const TrackRows& rows) {
    return {internedColumn(rows, &Track::artist), internedColumn(rows, &Track::album),
            internedColumn(rows, &Track::genre), internedColumn(rows, &Track::format)};
}

} // namespace halvane
