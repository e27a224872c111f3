// SPDX-License-Identifier: MIT
#include "views/library/cover_image_provider.h"

#include <QImage>
#include <QSemaphore>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <vector>

namespace halvane::views {
namespace {

using namespace Qt::StringLiterals;

TEST(CoverRequest, ReadsKeysOfAnyText) {
    const auto request = parseCoverRequest(u"file%3A%2F%2F%2Fm%2Fwhat%3F%20%E9%9B%A8.jpg?0.125"_s);
    EXPECT_EQ(request.key, u"file:///m/what? 雨.jpg"_s);
    EXPECT_EQ(request.radius, 0.125);
    EXPECT_EQ(parseCoverRequest(u"abc"_s).key, u"abc"_s);
    EXPECT_EQ(parseCoverRequest(u"abc"_s).radius, 0);
}

TEST(CoverWithCorners, FillsTheSizeAndCutsTheMiddleOut) {
    QImage wide(300, 100, QImage::Format_RGB32);
    wide.fill(Qt::red);
    for (int x = 100; x < 200; ++x)
        for (int y = 0; y < 100; ++y)
            wide.setPixelColor(x, y, Qt::blue);
    const QImage square = coverWithCorners(wide, {50, 50}, 0);
    EXPECT_EQ(square.size(), QSize(50, 50));
    EXPECT_EQ(square.pixelColor(2, 25), QColor(Qt::blue));
    EXPECT_EQ(square.pixelColor(47, 25), QColor(Qt::blue));
}

TEST(CoverWithCorners, RoundsTheCornersOnly) {
    QImage picture(64, 64, QImage::Format_RGB32);
    picture.fill(Qt::green);
    const QImage round = coverWithCorners(picture, {64, 64}, 16);
    EXPECT_EQ(round.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(round.pixelColor(63, 63).alpha(), 0);
    EXPECT_EQ(round.pixelColor(32, 0).alpha(), 255);
    EXPECT_EQ(round.pixelColor(32, 32), QColor(Qt::green));
}

TEST(CoverWithCorners, HasNothingToShowForNothing) {
    EXPECT_TRUE(coverWithCorners({}, {50, 50}, 4).isNull());
    EXPECT_TRUE(coverWithCorners(QImage(8, 8, QImage::Format_RGB32), {}, 4).isNull());
}

TEST(CoverImageProvider, LeavesItsSourceAloneOnceItIsClosed) {
    std::atomic_int calls = 0;
    std::atomic_int inUse = 0;
    CoverImageProvider provider([&](const QString&, const QSize& size) {
        ++calls;
        ++inUse;
        QImage picture(size * 8, QImage::Format_RGB32);
        picture.fill(Qt::gray);
        picture = picture.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        --inUse;
        return picture;
    });
    QSemaphore ended;
    std::vector<std::unique_ptr<QQuickImageResponse>> responses;
    const auto ask = [&] {
        responses.emplace_back(provider.requestImageResponse(u"a?0.1"_s, {200, 200}));
        QObject::connect(
            responses.back().get(), &QQuickImageResponse::finished, responses.back().get(),
            [&] { ended.release(); }, Qt::DirectConnection);
    };
    // The first may end before anybody listens, as the engine's reader takes care of.
    for (int i = 0; i < 40; ++i)
        ask();
    provider.close();
    EXPECT_EQ(inUse, 0);
    const int before = calls;
    ask();
    provider.close();
    EXPECT_EQ(calls, before);
    EXPECT_GT(ended.available(), 1) << "nobody is left waiting";
}

} // namespace
} // namespace halvane::views
