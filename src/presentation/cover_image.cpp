// SPDX-License-Identifier: MIT
#include "presentation/cover_image.h"

#include <QBuffer>
#include <QImageReader>

namespace halvane {

namespace {

// A progressive JPEG keeps six bytes a pixel while it is decoded, whatever size is wanted.
constexpr qint64 mostPixels = 50'000'000;

// The size to decode at: the smallest of the picture's shape that covers the wanted size, in the
// picture's own orientation.
QSize decodeSize(QSize picture, QSize covering, bool turned) {
    if (covering.isEmpty())
        return picture;
    const QSize wanted = turned ? covering.transposed() : covering;
    const QSize scaled = picture.scaled(wanted, Qt::KeepAspectRatioByExpanding).expandedTo({1, 1});
    return scaled.width() < picture.width() ? scaled : picture;
}

// The reader would mix the numbers of the two colours, which are no shades.
bool isBitmap(QImage::Format format) {
    return format == QImage::Format_Mono || format == QImage::Format_MonoLSB;
}

// A palette or an unusual layout would be converted again at every use.
QImage inOneLayout(const QImage& image) {
    return image.isNull()
               ? image
               : image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                               : QImage::Format_RGB32);
}

} // namespace

QImage decodeCover(const QByteArray& bytes, QSize covering) {
    QBuffer buffer;
    buffer.setData(bytes);
    if (!buffer.open(QIODevice::ReadOnly))
        return {};
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (static_cast<qint64>(size.width()) * size.height() > mostPixels)
        return {};
    const bool turned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    const bool scales = size.isValid() && !isBitmap(reader.imageFormat());
    if (scales) {
        const QSize target = decodeSize(size, covering, turned);
        if (target != size)
            reader.setScaledSize(target);
    }
    QImage image = inOneLayout(reader.read());
    if (!image.isNull() && !scales && !covering.isEmpty()) {
        const QSize target = decodeSize(image.size(), covering, false);
        if (target != image.size())
            image = image.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    return inOneLayout(image);
}

} // namespace halvane
