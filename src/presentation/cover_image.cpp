// SPDX-License-Identifier: MIT
#include "presentation/cover_image.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <mutex>
#include <optional>

namespace halvane {

namespace {

// A progressive JPEG keeps six bytes a pixel while it is decoded, whatever size is wanted.
constexpr qint64 mostPixels = 50'000'000;

// From here on one picture is decoded at a time, so that memory stays within what one may take.
constexpr qint64 manyPixels = 8'000'000;

// Other formats that a plugin may read are no photographs. A drawing in SVG could even have any
// file of the machine read. Of HEIC and its like the desktop has a reader or not.
bool isPhotograph(const QByteArray& format) {
    static constexpr std::array<QByteArrayView, 11> formats{
        "avif", "bmp", "gif", "heic", "heif", "jpeg", "jpg", "jxl", "png", "tiff", "webp"};
    return std::find(formats.begin(), formats.end(), format) != formats.end();
}

qint64 pixelsOf(QSize size) {
    return static_cast<qint64>(size.width()) * size.height();
}

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

// What can be said of a picture before it is decoded.
struct Header {
    explicit Header(const QByteArray& bytes) {
        buffer.setData(bytes);
        buffer.open(QIODevice::ReadOnly);
        reader.setDevice(&buffer);
        reader.setDecideFormatFromContent(true);
        reader.setAutoTransform(true);
        if (isPhotograph(reader.format()))
            size = reader.size();
    }
    [[nodiscard]] bool isCover() const { return !size.isEmpty() && pixelsOf(size) <= mostPixels; }

    QBuffer buffer;
    QImageReader reader;
    QSize size;
};

} // namespace

QByteArray coverFormat(const QByteArray& bytes) {
    const Header header(bytes);
    return header.isCover() ? header.reader.format() : QByteArray();
}

QImage decodeCover(const QByteArray& bytes, QSize covering) {
    static std::mutex large;
    Header header(bytes);
    if (!header.isCover())
        return {};
    QImageReader& reader = header.reader;
    const QSize size = header.size;
    std::optional<std::lock_guard<std::mutex>> alone;
    if (pixelsOf(size) > manyPixels)
        alone.emplace(large);
    const bool turned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    const bool scales = !isBitmap(reader.imageFormat());
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
