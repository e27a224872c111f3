// SPDX-License-Identifier: MIT
#pragma once

#include "model/enums.h"

#include <QList>
#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace halvane::views {

/// How wide a column beside the title is, with the air after it, in pixels. Pure.
double columnWidth(TrackOrder column);

/// Which of the chosen columns share so much room with a title that keeps its least width, in the
/// order in which they were chosen. The narrower the room, the more of them give way, and one that
/// has given way does not come back in a narrower one: first the long ones that the user has added,
/// then the stars, the quality, the album, and last the short numbers. Pure.
QList<int> fittingColumns(const QList<int>& chosen, double room, double leastTitleWidth);

/// Applies these rules for the track table. Tells of a change only when other columns fit, so that
/// the rows stay as they are while a window is resized. Main thread.
class ColumnFit : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// TrackOrder, from left to right.
    Q_PROPERTY(QList<int> chosen READ chosen WRITE setChosen NOTIFY chosenChanged REQUIRED)
    Q_PROPERTY(bool hasNumber READ hasNumber NOTIFY chosenChanged)
    Q_PROPERTY(bool hasTime READ hasTime NOTIFY chosenChanged)
    /// Leaves the album out: the rows are those of one.
    Q_PROPERTY(bool isOfOneAlbum READ isOfOneAlbum WRITE setOfOneAlbum NOTIFY isOfOneAlbumChanged)
    /// For the title and all columns after it up to the heart.
    Q_PROPERTY(double room READ room WRITE setRoom NOTIFY roomChanged REQUIRED)
    Q_PROPERTY(double leastTitleWidth READ leastTitleWidth WRITE setLeastTitleWidth NOTIFY
                   leastTitleWidthChanged REQUIRED)
    /// The columns that fit, without the stars: `column`, its `width`, and `fromEnd`, how far
    /// before the end of all of them it begins. Texts begin where their heads do, and figures end
    /// where their heads do.
    Q_PROPERTY(QVariantList texts MEMBER m_texts NOTIFY fitted)
    Q_PROPERTY(QVariantList figures MEMBER m_figures NOTIFY fitted)
    /// Their width together.
    Q_PROPERTY(double taken MEMBER m_taken NOTIFY fitted)
    Q_PROPERTY(bool hasStars READ hasStars NOTIFY fitted)
    Q_PROPERTY(bool hasArtist READ hasArtist NOTIFY fitted)

  public:
    using QObject::QObject;

    [[nodiscard]] QList<int> chosen() const { return m_chosen; }
    [[nodiscard]] double room() const { return m_room; }
    [[nodiscard]] double leastTitleWidth() const { return m_leastTitleWidth; }
    [[nodiscard]] bool isOfOneAlbum() const { return m_isOfOneAlbum; }
    [[nodiscard]] bool hasNumber() const { return isChosen(TrackOrder::number); }
    [[nodiscard]] bool hasTime() const { return isChosen(TrackOrder::time); }
    [[nodiscard]] bool hasStars() const { return fits(TrackOrder::rating); }
    [[nodiscard]] bool hasArtist() const { return fits(TrackOrder::artist); }
    void setChosen(const QList<int>& chosen);
    void setRoom(double room);
    void setLeastTitleWidth(double width);
    void setOfOneAlbum(bool ofOneAlbum);

    Q_INVOKABLE [[nodiscard]] static double width(int column) {
        return columnWidth(static_cast<TrackOrder>(column));
    }

  Q_SIGNALS:
    void chosenChanged();
    void roomChanged();
    void leastTitleWidthChanged();
    void isOfOneAlbumChanged();
    void fitted();

  private:
    [[nodiscard]] bool isChosen(TrackOrder column) const {
        return m_chosen.contains(static_cast<int>(column));
    }
    [[nodiscard]] bool fits(TrackOrder column) const {
        return m_fitting.contains(static_cast<int>(column));
    }
    void fit();

    QList<int> m_chosen;
    bool m_isOfOneAlbum = false;
    double m_room = 0;
    double m_leastTitleWidth = 0;
    QList<int> m_fitting;
    QVariantList m_texts;
    QVariantList m_figures;
    double m_taken = 0;
};

} // namespace halvane::views
