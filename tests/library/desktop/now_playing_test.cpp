// SPDX-License-Identifier: MIT
#include "library/desktop/now_playing.h"
#include "library/playback/transport_fixture.h"
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
using test::trackAt;
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

class NowPlayingTest : public testing::Test {
  protected:
    NowPlayingTest() { nowPlaying.setupRemoteCommands(); }

    // Plays a track of 200 seconds, three of which have been heard.
    void play(const QString& title, const std::function<void(Track&)>& change = {}) {
        Track track = trackAt(u"/music/%1.flac"_s.arg(title));
        track.title = title;
        track.artist = u"Artist"_s;
        track.album.clear();
        track.durationSeconds = 200;
        if (change)
            change(track);
        player.queue.assign({makeRow(std::move(track))}, std::nullopt);
        player.play(0);
        player.engine.position = 3;
    }
    [[nodiscard]] QueueItem item() const { return player.queue.currentItem().value(); }
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
    test::TransportFixture player;
    bool isActive = false;
    NowPlaying nowPlaying{controls,
                          notifications,
                          player.transport,
                          player.queue,
                          [this] { return isActive; },
                          folder.filePath(u"covers"_s)};
};

} // namespace

TEST_F(NowPlayingTest, CommandsDoWhatTheyShould) {
    player.queueOf("abc");
    player.play(1);
    auto& handlers = controls.handlers;
    const auto isPlaying = [this](auto action) {
        EXPECT_EQ(action(), CommandResult::success);
        return player.transport.isPlaying();
    };
    EXPECT_TRUE(isPlaying(handlers.play)) << "it plays already";
    EXPECT_FALSE(isPlaying(handlers.pause));
    EXPECT_FALSE(isPlaying(handlers.pause)) << "a pause while paused succeeds too";
    EXPECT_TRUE(isPlaying(handlers.play));
    EXPECT_FALSE(isPlaying(handlers.togglePlayPause));
    EXPECT_TRUE(isPlaying(handlers.nextTrack));
    EXPECT_EQ(player.current(), 'c');
    EXPECT_TRUE(isPlaying(handlers.previousTrack));
    EXPECT_EQ(player.current(), 'b');
    player.settle();

    const auto positionAfter = [&](double seconds) {
        EXPECT_EQ(handlers.changePlaybackPosition(seconds), CommandResult::success);
        return player.engine.position;
    };
    EXPECT_EQ(positionAfter(50), 50);
    EXPECT_EQ(positionAfter(300), 200);
    EXPECT_EQ(positionAfter(-5), 0);
    player.engine.length = 0;
    EXPECT_EQ(handlers.changePlaybackPosition(1), CommandResult::commandFailed);
    player.engine.length = 200;
    EXPECT_FALSE(isPlaying(handlers.stop));
    EXPECT_EQ(player.current(), 'b') << "the entry stays current";

    player.engine.unload();
    EXPECT_EQ(handlers.changePlaybackPosition(1), CommandResult::commandFailed);
}

TEST_F(NowPlayingTest, TheDesktopSetsModesAndOpensFiles) {
    controls.handlers.setLoop(MediaLoop::track);
    EXPECT_EQ(player.transport.repeatMode(), PlaybackRepeatMode::one);
    controls.handlers.setShuffle(true);
    controls.handlers.setShuffle(true);
    EXPECT_TRUE(player.transport.isShuffleEnabled());
    controls.handlers.setVolume(7);
    EXPECT_EQ(player.transport.volume(), 1);
    QStringList asked;
    QObject::connect(&nowPlaying, &NowPlaying::fileAsked,
                     [&](const QString& path) { asked += path; });
    controls.handlers.openFile(u"/m/a"_s);
    EXPECT_THAT(asked, ElementsAre(u"/m/a"_s));
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
    EXPECT_EQ(controls.capabilities, (MediaCapabilities{false, false, true, true, true}));
    EXPECT_EQ(controls.loop, MediaLoop::none);
    EXPECT_THAT(controls.seeks, IsEmpty());

    player.transport.togglePlayback();
    Track unknown = player.queue.record(0);
    unknown.durationSeconds.reset();
    PlayQueue::Places queued;
    player.queue.replace({makeRow(std::move(unknown))}, queued);
    nowPlaying.updateNowPlayingInfo();
    EXPECT_EQ(controls.info->playbackRate, 0.0);
    EXPECT_FALSE(controls.info->durationSeconds);
    EXPECT_EQ(controls.state, MediaPlaybackState::paused);

    nowPlaying.positionJumped();
    EXPECT_THAT(controls.seeks, ElementsAre(3));

    player.engine.unload();
    nowPlaying.updateNowPlayingInfo();
    EXPECT_FALSE(controls.info);
    EXPECT_EQ(controls.state, MediaPlaybackState::stopped);
}

TEST_F(NowPlayingTest, ThePictureIsAFileThatHoldsTheCover) {
    play(u"A"_s, [&](Track& track) { track.coverImageData = picture(Qt::red); });
    nowPlaying.updateNowPlayingInfo();
    ASSERT_TRUE(waitFor([&] { return controls.info->artworkPath.has_value(); }));
    EXPECT_EQ(QImage(*controls.info->artworkPath).pixelColor(1, 1), QColor(Qt::red));
    EXPECT_EQ(controls.publications, 2) << "once without the picture, once with it";
    nowPlaying.updateNowPlayingInfo();
    EXPECT_EQ(controls.publications, 3) << "a known picture is published at once";

    // The picture in the folder is taken if the bytes in the file are no picture.
    const auto cover = folder.filePath(u"cover.png"_s);
    QImage(2, 2, QImage::Format_RGB32).save(cover);
    play(u"B"_s, [&](Track& track) {
        track.coverImageData = Artwork::fromBytes("not a picture");
        track.coverURL = FileUrl(cover);
    });
    nowPlaying.updateNowPlayingInfo();
    ASSERT_TRUE(waitFor([&] { return controls.info->artworkPath == cover; }));

    play(u"C"_s,
         [&](Track& track) { track.coverURL = FileUrl(folder.filePath(u"missing.png"_s)); });
    nowPlaying.updateNowPlayingInfo();
    ASSERT_TRUE(waitFor([&] { return controls.publications > 6; }));
    EXPECT_FALSE(controls.info->artworkPath);
}

TEST_F(NowPlayingTest, NotifiesOnlyInTheBackground) {
    play(u"A"_s);
    isActive = true;
    nowPlaying.notifyTrackChange(item());
    EXPECT_THAT(notifications.posted, IsEmpty());

    isActive = false;
    nowPlaying.notifyTrackChange(item());
    ASSERT_EQ(notifications.posted.size(), 1U);
    EXPECT_EQ(notifications.posted[0].identifier, u"nowPlaying"_s);
    EXPECT_EQ(notifications.posted[0].title, u"A"_s);
    EXPECT_EQ(notifications.posted[0].body, u"Artist - "_s);
}

TEST_F(NowPlayingTest, TheFirstTrackIsNotAnnouncedOverTheWindowThatComesUp) {
    play(u"A"_s);
    nowPlaying.notifyTrackChange(item());
    EXPECT_THAT(notifications.posted, IsEmpty());
    play(u"B"_s);
    nowPlaying.notifyTrackChange(item());
    EXPECT_THAT(notifications.posted, testing::SizeIs(1)) << "it may never have come to the front";
}

TEST_F(NowPlayingTest, OnlyTheNewestTrackIsNotifiedOnceItsCoverIsThere) {
    nowPlaying.applicationActivated();
    for (const auto& title : {u"A"_s, u"B"_s}) {
        play(title, [&](Track& track) {
            track.coverImageData = picture(title == u"A"_s ? Qt::red : Qt::blue);
        });
        nowPlaying.updateNowPlayingInfo();
        nowPlaying.notifyTrackChange(item());
    }
    ASSERT_TRUE(waitFor([&] { return !notifications.posted.empty(); }));
    ASSERT_EQ(notifications.posted.size(), 1U);
    EXPECT_EQ(notifications.posted[0].title, u"B"_s);
    EXPECT_EQ(QImage(*notifications.posted[0].imagePath).pixelColor(1, 1), QColor(Qt::blue));
}
