// SPDX-License-Identifier: MIT
#include "views/library/covers/cover_image_provider.h"

#include <QImage>
#include <QSemaphore>

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

namespace halvane::views {
namespace {

using namespace Qt::StringLiterals;

TEST(CoverRequest, ReadsKeysOfAnyText) {
    const auto request =
        parseCoverRequest(u"file%3A%2F%2F%2Fm%2Fwhat%3F%20%E9%9B%A8.jpg?0.125&3"_s);
    EXPECT_EQ(request.key, u"file:///m/what? 雨.jpg"_s);
    EXPECT_EQ(request.radius, 0.125);
    EXPECT_EQ(request.revision, 3);
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

// Pictures on disks of which one hangs while a test wants it to.
class Disks final : public CoverSource {
  public:
    bool find(const CoverRequest& request, const QSize& size, QImage& found) override {
        const std::lock_guard lock(asking);
        if (request.key != "known"_L1)
            return false;
        found = QImage(size, QImage::Format_RGB32);
        return true;
    }
    QByteArray diskOf(const QString& key) override { return key.section(u'/', 0, 0).toUtf8(); }
    QByteArray read(const QString& key) override {
        reads.release();
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return !m_hangs || diskOf(key) != "dead"; });
        return key.toUtf8();
    }
    QImage decode(const CoverRequest& request, const QByteArray& bytes,
                  const QSize& size) override {
        EXPECT_EQ(request.key.toUtf8(), bytes);
        EXPECT_LE(++m_decoding, CoverWorkers::places);
        QImage picture(size * 8, QImage::Format_RGB32);
        picture.fill(Qt::gray);
        picture = picture.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        --m_decoding;
        return bytes.endsWith("broken") ? QImage() : picture;
    }
    void leftUnread(const QString&) override { unread.release(); }

    void answer() {
        const std::lock_guard lock(m_mutex);
        m_hangs = false;
        m_changed.notify_all();
    }

    std::mutex asking; ///< held by those who ask until they listen for the answer
    QSemaphore reads;
    QSemaphore unread;

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_hangs = true;
    std::atomic_int m_decoding = 0;
};

class CoverImageProviderTest : public testing::Test {
  protected:
    static constexpr int longest = 20'000; // ms

    struct Asked {
        std::unique_ptr<QQuickImageResponse> response;
        std::shared_ptr<QSemaphore> ended = std::make_shared<QSemaphore>();

        /// Without waiting.
        [[nodiscard]] bool hasPicture() const { return response->errorString().isEmpty(); }
        [[nodiscard]] bool answer() const {
            EXPECT_TRUE(ended->tryAcquire(1, longest)) << "somebody is left waiting";
            return hasPicture();
        }
    };
    Asked ask(const QString& key) {
        const std::lock_guard lock(disks->asking);
        Asked asked;
        asked.response.reset(provider.requestImageResponse(key + u"?0.1"_s, {200, 200}));
        QObject::connect(
            asked.response.get(), &QQuickImageResponse::finished, asked.response.get(),
            [ended = asked.ended] { ended->release(); }, Qt::DirectConnection);
        return asked;
    }
    ~CoverImageProviderTest() override { disks->answer(); }

    std::shared_ptr<Disks> disks = std::make_shared<Disks>();
    CoverImageProvider provider{disks};
};

TEST_F(CoverImageProviderTest, WhatCannotBeShownIsAnError) {
    EXPECT_TRUE(ask(u"disk/a"_s).answer());
    EXPECT_TRUE(ask(u"known"_s).answer());
    const auto broken = ask(u"disk/broken"_s);
    EXPECT_FALSE(broken.answer());
    EXPECT_TRUE(broken.response->errorString().contains(u"disk/broken"_s));
    EXPECT_EQ(disks->unread.available(), 0);
}

TEST_F(CoverImageProviderTest, ADiskThatHangsHoldsUpNoOther) {
    std::vector<Asked> dead;
    for (int i = 0; i < CoverWorkers::mostReads; ++i)
        dead.push_back(ask(u"dead/%1"_s.arg(i)));
    ASSERT_TRUE(disks->reads.tryAcquire(CoverWorkers::mostReads, longest));
    EXPECT_TRUE(ask(u"disk/a"_s).answer());

    // It gets no more threads.
    const auto more = ask(u"dead/more"_s);
    const auto other = ask(u"disk/b"_s);
    EXPECT_TRUE(other.answer());
    ASSERT_TRUE(disks->unread.tryAcquire(1, longest));
    EXPECT_FALSE(more.hasPicture());

    disks->answer();
    for (const Asked& late : dead)
        EXPECT_TRUE(late.answer());
    EXPECT_TRUE(ask(u"dead/more"_s).answer());
}

TEST_F(CoverImageProviderTest, ClosingWaitsForNoDisk) {
    std::vector<Asked> asked;
    for (int i = 0; i < 40; ++i)
        asked.push_back(ask(u"disk/%1"_s.arg(i)));
    const auto hanging = ask(u"dead/1"_s);
    disks->reads.acquire(); // so that some are being read
    provider.close();
    const int before = disks->reads.available();
    for (const Asked& one : asked)
        (void)one.answer(); // with or without a picture
    EXPECT_FALSE(hanging.answer());
    EXPECT_FALSE(ask(u"disk/a"_s).hasPicture());
    disks->answer();
    EXPECT_LE(disks->reads.available(), before + CoverWorkers::places);
    EXPECT_FALSE(hanging.hasPicture()) << "what comes late reaches nobody";
}

} // namespace
} // namespace halvane::views
