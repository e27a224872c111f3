// SPDX-License-Identifier: MIT
#include "views/picture_match.h"

#include "gallery/gallery_world.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRawFont>
#include <QtEndian>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace halvane::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int areaSide = 16;
// Of 255, mean over an area. In another revision of the typeface letters stand a little elsewhere
// in their lines; what is missing, out of place or of another colour still differs by more.
constexpr double tolerance = 5;
constexpr double otherFaceTolerance = 45;
// The revision of the face that the pictures were approved in, in units of 1/65536.
constexpr quint32 approvedFaceRevision = 197853;
constexpr int patienceMs = 20000;
constexpr int restMs = 1500;

QImage halved(const QImage& picture) {
    return picture.scaled(picture.size() / 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

int difference(QRgb a, QRgb b) {
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

quint32 faceRevision() {
    const QByteArray head = QRawFont::fromFont(QFont(u"Inter"_s)).fontTable("head");
    return head.size() < 8 ? 0 : qFromBigEndian<quint32>(head.constData() + 4);
}

// The greatest mean difference of any area; as much as there can be for pictures of other sizes.
double greatestDifference(const QImage& a, const QImage& b) {
    if (a.size() != b.size())
        return 255;
    double greatest = 0;
    for (int top = 0; top < a.height(); top += areaSide) {
        for (int left = 0; left < a.width(); left += areaSide) {
            const QRect area = QRect(left, top, areaSide, areaSide) & a.rect();
            int sum = 0;
            for (int y = area.top(); y <= area.bottom(); ++y)
                for (int x = area.left(); x <= area.right(); ++x)
                    sum += difference(a.pixel(x, y), b.pixel(x, y));
            greatest =
                std::max(greatest, static_cast<double>(sum) / (area.width() * area.height()));
        }
    }
    return greatest;
}

QImage differencePicture(const QImage& a, const QImage& b) {
    QImage result(a.size().boundedTo(b.size()), QImage::Format_Grayscale8);
    for (int y = 0; y < result.height(); ++y)
        for (int x = 0; x < result.width(); ++x)
            result.scanLine(y)[x] =
                static_cast<uchar>(std::min(255, 4 * difference(a.pixel(x, y), b.pixel(x, y))));
    return result;
}

void approve(const QString& file, const std::function<QImage()>& take) {
    QImage picture;
    QElapsedTimer resting;
    const bool rests = GalleryWorld::waitFor(
        [&] {
            QImage next = halved(take());
            if (next != picture)
                resting.start();
            picture = std::move(next);
            return resting.elapsed() > restMs;
        },
        patienceMs);
    EXPECT_TRUE(rests) << "never comes to rest";
    EXPECT_TRUE(picture.save(file)) << qPrintable(file);
}

} // namespace

void expectPicture(const QString& name, const std::function<QImage()>& take) {
    const QString file = QDir(QStringLiteral(HALVANE_APPROVED_PICTURES)).filePath(name + u".png"_s);
    if (qEnvironmentVariableIsSet("HALVANE_APPROVE")) {
        approve(file, take);
        return;
    }
    const QImage approved = QImage(file).convertToFormat(QImage::Format_RGB32);
    ASSERT_FALSE(approved.isNull()) << "no picture " << qPrintable(file);
    const double allowed = faceRevision() == approvedFaceRevision ? tolerance : otherFaceTolerance;
    QImage picture;
    const bool matches = GalleryWorld::waitFor(
        [&] {
            picture = halved(take());
            return greatestDifference(picture, approved) <= allowed;
        },
        patienceMs);
    if (matches)
        return;
    const QDir folder(QStringLiteral(HALVANE_NEW_PICTURES));
    folder.mkpath(u"."_s);
    approved.save(folder.filePath(name + u".approved.png"_s));
    picture.save(folder.filePath(name + u".new.png"_s));
    differencePicture(picture, approved).save(folder.filePath(name + u".difference.png"_s));
    ADD_FAILURE() << qPrintable(name) << " looks different by "
                  << greatestDifference(picture, approved) << "; see " << qPrintable(folder.path());
}

} // namespace halvane::test
