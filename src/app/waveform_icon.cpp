// SPDX-License-Identifier: MIT
#include "app/waveform_icon.h"

#include <QPainter>
#include <QtEndian>

namespace halvane {

namespace {

// Heights of the bars as parts of the whole, from left to right.
constexpr double bars[] = {0.28, 0.62, 0.94, 0.46, 0.74, 0.34};

} // namespace

QImage waveformImage(int size, const QColor& color) {
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    constexpr int count = static_cast<int>(std::size(bars));
    const double step = static_cast<double>(size) / count;
    const double width = step * 0.56;
    for (int i = 0; i < count; ++i) {
        const double height = bars[i] * size;
        painter.drawRoundedRect(
            QRectF(i * step + (step - width) / 2, (size - height) / 2, width, height), width / 2,
            width / 2);
    }
    return image;
}

QList<TrayPixmap> waveformPixmaps(const QColor& color) {
    QList<TrayPixmap> pixmaps;
    for (const int size : {16, 22, 24, 32, 48}) {
        const auto image = waveformImage(size, color);
        TrayPixmap pixmap{image.size(), QByteArray(image.sizeInBytes(), Qt::Uninitialized)};
        qToBigEndian<quint32>(image.constBits(), size * size, pixmap.argb.data());
        pixmaps.append(pixmap);
    }
    return pixmaps;
}

} // namespace halvane
