// SPDX-License-Identifier: MIT
#include "views/library/table/column_fit.h"

#include <QVariantMap>

#include <algorithm>
#include <iterator>
#include <utility>

namespace halvane::views {

namespace {

// Those that give way last come first.
constexpr TrackOrder byImportance[] = {
    TrackOrder::year,    TrackOrder::plays,  TrackOrder::album,
    TrackOrder::quality, TrackOrder::rating, TrackOrder::added,
    TrackOrder::genre,   TrackOrder::artist, TrackOrder::path,
};

bool isFigure(TrackOrder column) {
    return column == TrackOrder::year || column == TrackOrder::plays || column == TrackOrder::added;
}

// Older versions of QList's own comparison hand the null pointer of an empty list to memcmp,
// which the undefined-behaviour sanitizer ends the program for.
bool isSame(const QList<int>& one, const QList<int>& other) {
    return std::equal(one.cbegin(), one.cend(), other.cbegin(), other.cend());
}

} // namespace

double columnWidth(TrackOrder column) {
    switch (column) {
    case TrackOrder::artist:
        return 170;
    case TrackOrder::album:
        return 200;
    case TrackOrder::genre:
        return 120;
    case TrackOrder::year:
        return 56;
    case TrackOrder::plays:
        return 72;
    case TrackOrder::added:
        return 96;
    case TrackOrder::path:
        return 260;
    case TrackOrder::quality:
        return 150;
    case TrackOrder::rating:
        return 88;
    case TrackOrder::time:
        return 58;
    case TrackOrder::library:
    case TrackOrder::title:
    case TrackOrder::number:
        break;
    }
    return 0; // these have their own place before all others
}

QList<int> fittingColumns(const QList<int>& chosen, double room, double leastTitleWidth) {
    QList<int> fitting = chosen;
    fitting.removeIf([](int column) {
        return std::find(std::begin(byImportance), std::end(byImportance),
                         static_cast<TrackOrder>(column)) == std::end(byImportance);
    });
    double left = room - leastTitleWidth;
    bool isFull = false;
    for (const TrackOrder column : byImportance) {
        const auto number = static_cast<int>(column);
        if (!fitting.contains(number))
            continue;
        left -= columnWidth(column);
        isFull = isFull || left < 0;
        if (isFull)
            fitting.removeOne(number);
    }
    return fitting;
}

void ColumnFit::setChosen(const QList<int>& chosen) {
    if (isSame(std::exchange(m_chosen, chosen), chosen))
        return;
    Q_EMIT chosenChanged();
    fit();
}

void ColumnFit::setRoom(double room) {
    if (std::exchange(m_room, room) == room)
        return;
    Q_EMIT roomChanged();
    fit();
}

void ColumnFit::setLeastTitleWidth(double width) {
    if (std::exchange(m_leastTitleWidth, width) == width)
        return;
    Q_EMIT leastTitleWidthChanged();
    fit();
}

void ColumnFit::setOfOneAlbum(bool ofOneAlbum) {
    if (std::exchange(m_isOfOneAlbum, ofOneAlbum) == ofOneAlbum)
        return;
    Q_EMIT isOfOneAlbumChanged();
    fit();
}

void ColumnFit::fit() {
    QList<int> wanted = m_chosen;
    if (m_isOfOneAlbum)
        wanted.removeAll(static_cast<int>(TrackOrder::album));
    const QList<int> fitting = fittingColumns(wanted, m_room, m_leastTitleWidth);
    if (isSame(std::exchange(m_fitting, fitting), fitting))
        return;
    m_texts.clear();
    m_figures.clear();
    m_taken = 0;
    for (auto column = fitting.crbegin(); column != fitting.crend(); ++column) {
        if (*column == static_cast<int>(TrackOrder::rating))
            continue;
        m_taken += width(*column);
        QVariantList& cells = isFigure(static_cast<TrackOrder>(*column)) ? m_figures : m_texts;
        cells.prepend(QVariantMap{{QStringLiteral("column"), *column},
                                  {QStringLiteral("width"), width(*column)},
                                  {QStringLiteral("fromEnd"), m_taken}});
    }
    Q_EMIT fitted();
}

} // namespace halvane::views
