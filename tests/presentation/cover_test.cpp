// SPDX-License-Identifier: MIT
#include "presentation/artwork_color.h"
#include "presentation/cover_cache.h"
#include "presentation/cover_image.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

namespace halvane {
namespace {

using namespace Qt::StringLiterals;

QByteArray encoded(const QImage& image, const char* format) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format, 95));
    return buffer.data();
}

QImage filled(QSize size, QRgb color) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

// A picture made by another program.
QByteArray converted(const QStringList& arguments, const QString& name) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(name);
    QProcess::execute(u"convert"_s, arguments + QStringList{path});
    return Artwork::fromFile(path).read();
}

// Puts an orientation tag into a JPEG, before everything else.
QByteArray oriented(QByteArray jpeg, char orientation) {
    QByteArray tag("\xff\xe1\x00\x22"
                   "Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0",
                   36);
    tag[29] = orientation;
    return jpeg.insert(2, tag);
}

// Small, whatever its header says.
QByteArray pngOf(QSize size) {
    QByteArray png = encoded(filled({1, 1}, 0), "PNG");
    qToBigEndian<qint32>(size.width(), png.data() + 16);
    qToBigEndian<qint32>(size.height(), png.data() + 20);
    // The header's check sum covers the type and thirteen bytes.
    quint32 sum = 0xffffffff;
    for (const char byte : QByteArrayView(png).sliced(12, 17)) {
        sum ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ (sum & 1 ? 0xedb88320 : 0);
    }
    qToBigEndian<quint32>(~sum, png.data() + 29);
    return png;
}

TEST(CoverImageTest, IsScaledDownToCoverASizeAndNeverUp) {
    const QByteArray wide = encoded(filled({600, 300}, qRgb(1, 2, 3)), "PNG");
    EXPECT_EQ(decodeCover(wide).size(), QSize(600, 300));
    EXPECT_EQ(decodeCover(wide, {100, 100}).size(), QSize(200, 100));
    EXPECT_EQ(decodeCover(wide, {1000, 1000}).size(), QSize(600, 300));
    const QByteArray line = encoded(filled({4000, 1}, 0), "PNG");
    EXPECT_EQ(decodeCover(line, {40, 40}).size(), QSize(4000, 1));
}

TEST(CoverImageTest, UnusualPicturesAreDecoded) {
    const QImage red = filled({64, 32}, qRgb(255, 0, 0));
    const QByteArray turned = oriented(encoded(red, "JPEG"), 6);
    EXPECT_EQ(decodeCover(turned).size(), QSize(32, 64));
    EXPECT_EQ(decodeCover(turned, {16, 16}).size(), QSize(16, 32));

    // Of every kind of pixel, in the size of the file and in a smaller one.
    QImage halves = filled({64, 64}, qRgb(255, 255, 255));
    QPainter(&halves).fillRect(0, 0, 32, 64, Qt::black);
    for (const auto format :
         {QImage::Format_Mono, QImage::Format_MonoLSB, QImage::Format_Indexed8,
          QImage::Format_Grayscale8, QImage::Format_Grayscale16, QImage::Format_RGBA64}) {
        for (const QSize size : {QSize(), QSize(16, 16)}) {
            const QImage cover = decodeCover(encoded(halves.convertToFormat(format), "PNG"), size);
            ASSERT_EQ(cover.width(), size.isEmpty() ? 64 : 16);
            const int y = cover.height() / 2;
            for (int x = 0; x < cover.width(); ++x)
                EXPECT_EQ(qGray(cover.pixel(x, y)) > 127, x >= cover.width() / 2)
                    << format << " at " << x;
        }
    }
    QImage two(64, 64, QImage::Format_Mono);
    two.setColorTable({qRgb(255, 0, 0), qRgb(0, 0, 255)});
    two.fill(0);
    EXPECT_EQ(decodeCover(encoded(two, "PNG"), {16, 16}).pixel(8, 8), qRgb(255, 0, 0));

    const QByteArray animated =
        converted({u"-size"_s, u"20x20"_s, u"xc:#ff0000"_s, u"xc:#0000ff"_s, u"-delay"_s, u"10"_s},
                  u"a.gif"_s);
    EXPECT_EQ(decodeCover(animated).pixel(3, 3), qRgb(255, 0, 0));

    const QByteArray cmyk = converted(
        {u"-size"_s, u"20x20"_s, u"xc:#ff0000"_s, u"-colorspace"_s, u"CMYK"_s}, u"a.jpg"_s);
    const QColor print = decodeCover(cmyk).pixelColor(3, 3);
    EXPECT_GT(print.red(), 200);
    EXPECT_LT(print.green(), 60);
}

TEST(CoverImageTest, HeicIsACoverWhereTheDesktopReadsIt) {
    const bool isRead = QImageReader::supportedImageFormats().contains("heic");
    const QByteArray heic = converted({u"-size"_s, u"64x48"_s, u"xc:#ff0000"_s}, u"a.heic"_s);
    ASSERT_FALSE(heic.isEmpty());
    EXPECT_EQ(!coverFormat(heic).isEmpty(), isRead);
    const QImage cover = decodeCover(heic, {24, 24});
    EXPECT_EQ(cover.size(), isRead ? QSize(32, 24) : QSize(0, 0));
    if (isRead) {
        EXPECT_GT(cover.pixelColor(3, 3).red(), 200);
        EXPECT_LT(cover.pixelColor(3, 3).green(), 60);
    }
}

TEST(CoverImageTest, WhatIsNoCoverGivesNoImage) {
    const QByteArray png = encoded(filled({64, 64}, 0), "PNG");
    const QByteArray jpeg = encoded(filled({64, 64}, 0), "JPEG");
    const QByteArray drawing =
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink'"
        " width='64' height='64'><image xlink:href='/dev/zero' width='64' height='64'/></svg>";
    const struct {
        QByteArray bytes;
        const char* format; // by the header
    } cases[] = {
        {{}, ""},
        {"no picture", ""},
        {png.first(20), ""},
        {jpeg.first(30), ""},
        {pngOf({8'000, 8'000}), ""},
        {pngOf({50'000, 50'000}), ""},
        {pngOf({7'000, 7'000}), "png"}, // too large in memory, as it would turn out
        {QByteArray(1 << 20, '\xff'), ""},
        {drawing, ""},
    };
    EXPECT_EQ(coverFormat(png), "png");
    for (const auto& [bytes, format] : cases) {
        EXPECT_TRUE(decodeCover(bytes, {64, 64}).isNull()) << bytes.size();
        EXPECT_EQ(coverFormat(bytes), format) << bytes.size();
        EXPECT_EQ(ArtworkColor::ambientColor(Artwork::fromBytes(bytes), {}), std::nullopt);
    }
}

TEST(CoverCacheTest, StaysWithinItsBytesAndKeepsWhatIsUsed) {
    constexpr QSize size(100, 100);
    CoverCache cache(200'000); // four covers of 40,000 bytes
    QImage found;
    for (int i = 0; i < 20; ++i) {
        const QByteArray bytes = encoded(filled(size, qRgb(i, i, i)), "PNG");
        EXPECT_EQ(cache.decode(QString::number(i), bytes, size).pixel(0, 0), qRgb(i, i, i));
        EXPECT_TRUE(cache.find(u"0"_s, size, found)); // which makes it the latest used
        EXPECT_LE(cache.bytes(), 200'000);
    }
    EXPECT_FALSE(cache.find(u"1"_s, size, found));
    EXPECT_FALSE(cache.find(u"0"_s, {50, 50}, found));

    EXPECT_TRUE(cache.decode(u"broken"_s, "broken", size).isNull());
    EXPECT_TRUE(cache.find(u"broken"_s, size, found));
    EXPECT_TRUE(found.isNull());
}

TEST(ArtworkColorTest, TheAverageIsThatOfSixtyFourPixels) {
    EXPECT_EQ(ArtworkColor::averageColor({}), std::nullopt);
    EXPECT_EQ(ArtworkColor::averageColor(filled({1, 1}, qRgb(51, 102, 255))), (Color{0.2, 0.4, 1}));
    // Only the sampled columns and rows are white.
    QImage image = filled({160, 80}, 0xff000000);
    for (int j = 0; j < 8; ++j)
        for (int i = 0; i < 8; ++i)
            image.setPixel(10 + i * 20, 5 + j * 10, 0xffffffff);
    const auto average = ArtworkColor::averageColor(image);
    ASSERT_TRUE(average);
    EXPECT_EQ(*average, (Color{1, 1, 1}));
}

TEST(ArtworkColorTest, AmbientAndVividColoursKeepTheHueWithinBounds) {
    const auto ambient = [](QRgb color) {
        return hsbOf(*ArtworkColor::ambientColor(
            Artwork::fromBytes(encoded(filled({16, 16}, color), "PNG")), {}));
    };
    const Hsb red = ambient(qRgb(255, 0, 0));
    EXPECT_NEAR(red.hue, 0, 1e-9);
    EXPECT_NEAR(red.saturation, 0.85, 1e-9);
    EXPECT_NEAR(red.brightness, 0.78, 1e-9);
    const Hsb black = ambient(qRgb(0, 0, 0));
    EXPECT_NEAR(black.saturation, 0.40, 1e-9);
    EXPECT_NEAR(black.brightness, 0.45, 1e-9);

    const Hsb dull = hsbOf(ArtworkColor::vivid(colorFromHsb({0.6, 0.1, 0.2})));
    EXPECT_NEAR(dull.hue, 0.6, 1e-9);
    EXPECT_NEAR(dull.saturation, 0.62, 1e-9);
    EXPECT_NEAR(dull.brightness, 0.86, 1e-9);
    const Hsb bright = hsbOf(ArtworkColor::vivid(colorFromHsb({0.6, 1, 1})));
    EXPECT_NEAR(bright.saturation, 0.90, 1e-9);
    EXPECT_NEAR(bright.brightness, 1, 1e-9);
}

TEST(ArtworkColorTest, TheCoverFileIsNoSecondTryForBrokenArtwork) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"cover.png"_s);
    ASSERT_TRUE(filled({16, 16}, qRgb(0, 255, 0)).save(path));
    const FileUrl url(path);
    EXPECT_NE(ArtworkColor::ambientColor({}, url), std::nullopt);
    EXPECT_EQ(ArtworkColor::ambientColor(Artwork::fromBytes("broken"), url), std::nullopt);
    EXPECT_EQ(ArtworkColor::ambientColor({}, {}), std::nullopt);
}

} // namespace
} // namespace halvane
