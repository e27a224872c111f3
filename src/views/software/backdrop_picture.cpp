// SPDX-License-Identifier: MIT
#include "views/software/backdrop_picture.h"

#include <QLinearGradient>
#include <QPainter>

namespace halvane::views {

BackdropPicture::BackdropPicture(QQuickItem* parent)
    : QQuickPaintedItem(parent) {
    setOpaquePainting(true);
}

void BackdropPicture::setColors(const QList<QColor>& colors) {
    if (m_colors == colors)
        return;
    m_colors = colors;
    Q_EMIT colorsChanged();
    update();
}

void BackdropPicture::paint(QPainter* painter) {
    QLinearGradient gradient({}, {width(), height()});
    for (qsizetype i = 0; i < m_colors.size(); ++i)
        gradient.setColorAt(static_cast<double>(i) / static_cast<double>(m_colors.size() - 1),
                            m_colors[i]);
    painter->fillRect(boundingRect(), gradient);
}

} // namespace halvane::views
