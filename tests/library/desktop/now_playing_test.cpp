// SPDX-License-Identifier: MIT
#include "library/desktop/now_playing.h"
#include "platform/session/notifications.h"
#include "support/child_process.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace halvane;
using namespace Qt::StringLiterals;
using test::waitFor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct RecordedControls final : MediaControls {
    void setHandlers(MediaCommandHandlers given) override { handlers = std::move(given); }
    void publish(const std::optional<NowPlayingInfo>& given, MediaPlaybackState now) override {
        info = given;
        state = now;
        ++publications;
    }
    void publishCapabilities(const MediaCapabilities& given) override { capabilities = given; }
    void publishModes(MediaLoop given, bool shuffled, double loud) override {
        loop = given;
        shuffle = shuffled;
        volume = loud;
    }
    void seeked(double seconds) override { seeks.push_back(seconds); }
    void setWindowHandlers(WindowCommandHandlers) override {}
    void publishFullScreen(bool) override {}

    MediaCommandHandlers handlers;
    std::optional<NowPlayingInfo> info;
    MediaPlaybackState state = MediaPlaybackState::stopped;
    MediaCapabilities capabilities;
    MediaLoop loop = MediaLoop::none;
    bool shuffle = false;
    double volume = 0;
    std::vector<double> seeks;
    int publications = 0;
};

struct RecordedNotifications final : Notifications {
    void requestAuthorization() override {}
    void post(const Notification& notification) override { posted.push_back(notification); }
    std::vector<Notification> posted;
};

struct PretendPlayer final : RemotePlayer {
    const QueueItem* currentItem() const override { return item ? &*item : nullptr; }
    bool hasLoadedFile() const override { return loaded; }
    bool isPlaying() const override { return playing; }
    double elapsedSeconds() const override { return elapsed; }
    double fileSeconds() const override { return length; }
    bool canGoNext() const override { return true; }
    bool canGoPrevious() const override { return false; }
    bool canPlay() const override { return true; }
    PlaybackRepeatMode repeatMode() const override { return PlaybackRepeatMode::all; }
    bool isShuffleEnabled() const override { return true; }
    double volume() const override { return 0.5; }
    void togglePlayback() override {
        playing = !playing;
        heard += u"toggle"_s;
    }
    void playNext(bool manual) override { heard += manual ? u"next by hand"_s : u"next"_s; }
    void playPrevious() override { heard += u"previous"_s; }
    void seek(double fraction) override { heard += u"seek %1"_s.arg(fraction); }
    void stopPlayer(bool keep) override { heard += keep ? u"stop, keep"_s : u"stop"_s; }
    void setRepeatMode(PlaybackRepeatMode mode) override { heard += u"repeat %1"_s.arg(int(mode)); }
    void setShuffleEnabled(bool on) override { heard += u"shuffle %1"_s.arg(on); }
    void setVolume(double v) override { heard += u"volume %1"_s.arg(v); }
    void importFile(const QString& path) override { heard += u"import "_s + path; }

    std::optional<QueueItem> item;
    bool loaded = false;
    bool playing = false;
    double elapsed = 0;
    double length = 0;
    QStringList heard;
};

class NowPlayingTest : public testing::Test {
  protected:
    NowPlayingTest() { nowPlaying.setupRemoteCommands(); }

    void play(const QString& title) {
        QueueItem item;
        item.title = title;
        item.artist = u"Artist"_s;
        item.durationSeconds = 200;
        item.sourceURL = FileUrl(u"/music/%1.flac"_s.arg(title));
        player.item = item;
        player.loaded = player.playing = true;
        player.length = 200;
        player.elapsed = 3;
    }
    Artwork picture(Qt::GlobalColor color) {
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(color);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        image.save(&buffer, "PNG");
        return Artwork::fromBytes(bytes);
    }

    QTemporaryDir folder;
    RecordedControls controls;
    RecordedNotifications notifications;
    PretendPlayer player;
    bool isActive = false;
    NowPlaying nowPlaying{controls, notifications, player, [this] { return isActive; },
                          folder.filePath(u"covers"_s)};
};

} // namespace

TEST_F(NowPlayingTest, CommandsDoWhatTheyShould) {
    play(u"A"_s);
    auto& handlers = controls.handlers;
    const auto doing = [this](auto action) {
        player.heard.clear();
        EXPECT_EQ(action(), CommandResult::success);
        return player.heard;
    };
    player.playing = true;
    EXPECT_THAT(doing(handlers.play), IsEmpty());
    EXPECT_THAT(doing(handlers.pause), ElementsAre(u"toggle"_s));
    EXPECT_THAT(doing(handlers.pause), IsEmpty()) << "a pause while paused succeeds too";
    EXPECT_THAT(doing(handlers.play), ElementsAre(u"toggle"_s));
    EXPECT_THAT(doing(handlers.togglePlayPause), ElementsAre(u"toggle"_s));
    EXPECT_THAT(doing(handlers.nextTrack), ElementsAre(u"next by hand"_s));
    EXPECT_THAT(doing(handlers.previousTrack), ElementsAre(u"previous"_s));
    EXPECT_THAT(doing(handlers.stop), ElementsAre(u"stop, keep"_s));
    const auto at = [&](double s) {
        return doing([&] { return handlers.changePlaybackPosition(s); });
    };
    EXPECT_THAT(at(50), ElementsAre(u"seek 0.25"_s));
    EXPECT_THAT(at(300), ElementsAre(u"seek 1"_s));
    EXPECT_THAT(at(-5), ElementsAre(u"seek 0"_s));
    player.length = 0;
    EXPECT_EQ(handlers.changePlaybackPosition(1), CommandResult::commandFailed);
    player.length = 200;
    player.loaded = false;
    EXPECT_EQ(handlers.changePlaybackPosition(1), CommandResult::commandFailed);
}

TEST_F(NowPlayingTest, PublishesWhatPlaysAndClearsWhenNothingDoes) {
    play(u"A"_s);
    nowPlaying.updateNowPlayingInfo();
    ASSERT_TRUE(controls.info);
    EXPECT_EQ(controls.info->title, u"A"_s);
    EXPECT_EQ(controls.info->playbackRate, 1.0);
    EXPECT_EQ(controls.info->elapsedSeconds, 3);
    EXPECT_EQ(controls.info->durationSeconds, 200);
    EXPECT_EQ(controls.state, MediaPlaybackState::playing);
    EXPECT_EQ(controls.capabilities, (MediaCapabilities{true, false, true, true, true}));
    EXPECT_EQ(controls.loop, MediaLoop::playlist);
    EXPECT_THAT(controls.seeks, IsEmpty());

    player.playing = false;
    player.item->durationSeconds.reset();
    nowPlaying.updateNowPlayingInfo();
    EXPECT_EQ(controls.info->playbackRate, 0.0);
    EXPECT_FALSE(controls.info->durationSeconds);
    EXPECT_EQ(controls.state, MediaPlaybackState::paused);

    nowPlaying.positionJumped();
    EXPECT_THAT(controls.seeks, ElementsAre(3));

    player.loaded = false;
    nowPlaying.updateNowPlayingInfo();
    EXPECT_FALSE(controls.info);
    EXPECT_EQ(controls.state, MediaPlaybackState::stopped);
}

TEST_F(NowPlayingTest, ThePictureIsAFileThatHoldsTheCover) {
    play(u"A"_s);
    player.item->coverImageData = picture(Qt::red);
    nowPlaying.updateNowPlayingInfo();
    ASSERT_TRUE(waitFor([&] { return controls.info->artworkPath.has_value(); }));
    EXPECT_EQ(QImage(*controls.info->artworkPath).pixelColor(1, 1), QColor(Qt::red));
    EXPECT_EQ(controls.publications, 2) << "once without the picture, once with it";
    nowPlaying.updateNowPlayingInfo();
    EXPECT_EQ(controls.publications, 3) << "a known picture is published at once";

    // Bytes that are no picture give way to the picture in the folder.
    play(u"B"_s);
    const auto cover = folder.filePath(u"cover.png"_s);
    QImage(2, 2, QImage::Format_RGB32).save(cover);
    player.item->coverImageData = Artwork::fromBytes("not a picture");
    player.item->coverURL = FileUrl(cover);
    nowPlaying.updateNowPlayingInfo();
    ASSERT_TRUE(waitFor([&] { return controls.info->artworkPath == cover; }));

    play(u"C"_s);
    player.item->coverURL = FileUrl(folder.filePath(u"missing.png"_s));
    nowPlaying.updateNowPlayingInfo();
    ASSERT_TRUE(waitFor([&] { return controls.publications > 6; }));
    EXPECT_FALSE(controls.info->artworkPath);
}

TEST_F(NowPlayingTest, NotifiesOnlyInTheBackground) {
    play(u"A"_s);
    isActive = true;
    nowPlaying.notifyTrackChange(*player.item);
    EXPECT_THAT(notifications.posted, IsEmpty());

    isActive = false;
    nowPlaying.notifyTrackChange(*player.item);
    ASSERT_EQ(notifications.posted.size(), 1U);
    EXPECT_EQ(notifications.posted[0].identifier, u"nowPlaying"_s);
    EXPECT_EQ(notifications.posted[0].title, u"A"_s);
    EXPECT_EQ(notifications.posted[0].body, u"Artist - "_s);
}

TEST_F(NowPlayingTest, OnlyTheNewestTrackIsNotifiedOnceItsCoverIsThere) {
    for (const auto& title : {u"A"_s, u"B"_s}) {
        play(title);
        player.item->coverImageData = picture(title == u"A"_s ? Qt::red : Qt::blue);
        nowPlaying.updateNowPlayingInfo();
        nowPlaying.notifyTrackChange(*player.item);
    }
    ASSERT_TRUE(waitFor([&] { return !notifications.posted.empty(); }));
    ASSERT_EQ(notifications.posted.size(), 1U);
    EXPECT_EQ(notifications.posted[0].title, u"B"_s);
    EXPECT_EQ(QImage(*notifications.posted[0].imagePath).pixelColor(1, 1), QColor(Qt::blue));
}
