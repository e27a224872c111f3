// SPDX-License-Identifier: MIT
// The full-screen player: what it does, what moves, and where things stand.
#include "views/window_driver.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class FullScreenTest : public testing::Test {
  protected:
    void SetUp() override {
        world.furnish();
        library.views()->setShowFullPlayer(true);
        QQuickWindow* window = world.open(u"main"_s);
        ASSERT_NE(window, nullptr);
        ui = std::make_unique<WindowDriver>(*window);
        ASSERT_TRUE(covers());
        record = itemOf(window->contentItem(), "angle");
        clock = window->findChild<QObject*>(u"redrawClock"_s);
        ASSERT_NE(record, nullptr);
        ASSERT_NE(clock, nullptr);
    }
    void TearDown() override { EXPECT_EQ(world.warnings(), QStringList()); }

    // The first item below this one whose kind has such a property of its own.
    static QQuickItem* itemOf(QQuickItem* from, const char* property) {
        if (from->metaObject()->indexOfProperty(property) >= 0)
            return from;
        for (QQuickItem* child : from->childItems())
            if (auto* found = itemOf(child, property))
                return found;
        return nullptr;
    }
    // Has come all the way in, so that nothing of the library is left behind it.
    bool covers() {
        return world.waitFor([&] {
            return ui->shows(u"Back to Main Window"_s) &&
                   !ui->find(u"Library"_s, QAccessible::ListItem);
        });
    }
    [[nodiscard]] double angle() const { return record->property("angle").toDouble(); }
    void advance(double seconds) {
        QMetaObject::invokeMethod(record, "advance", Q_ARG(double, seconds));
    }

    GalleryWorld world{12};
    LibraryViewModel& library = world.library();
    std::unique_ptr<WindowDriver> ui;
    QQuickItem* record = nullptr;
    QObject* clock = nullptr;
};

TEST_F(FullScreenTest, ClosesWithoutTouchingPlayback) {
    // A popover that was open before must not keep the keyboard.
    library.views()->setShowFullPlayer(false);
    ASSERT_TRUE(world.waitFor([&] { return !ui->shows(u"Back to Main Window"_s); }));
    ASSERT_TRUE(ui->click(u"Equalizer"_s, QAccessible::Button));
    ASSERT_TRUE(ui->waitsFor(u"Preamp"_s));
    ui->key(Qt::Key_Escape);
    ASSERT_TRUE(world.waitFor([&] { return !ui->shows(u"Preamp"_s); }));
    for (const bool byKey : {false, true}) {
        library.views()->setShowFullPlayer(true);
        ASSERT_TRUE(covers());
        if (byKey)
            ui->key(Qt::Key_Escape);
        else
            ASSERT_TRUE(ui->click(u"Back to Main Window"_s, QAccessible::Button));
        EXPECT_FALSE(library.views()->showFullPlayer());
        EXPECT_TRUE(library.transport()->isPlaying());
        EXPECT_EQ(library.player()->currentTrack().title, u"Lamplight"_s);
        EXPECT_TRUE(world.waitFor([&] { return !ui->shows(u"Back to Main Window"_s); }));
    }
}

TEST_F(FullScreenTest, ItsControlsReachTheLibrary) {
    ASSERT_TRUE(ui->click(u"Shuffle off"_s, QAccessible::Button));
    EXPECT_TRUE(library.transport()->isShuffleEnabled());
    ASSERT_TRUE(ui->click(u"Shuffle on"_s, QAccessible::Button));
    for (const auto mode :
         {PlaybackRepeatMode::all, PlaybackRepeatMode::one, PlaybackRepeatMode::off}) {
        ASSERT_TRUE(ui->click(u"Repeat"_s, QAccessible::Button));
        EXPECT_EQ(library.transport()->repeatMode(), mode);
    }
    ASSERT_TRUE(ui->click(u"Next track"_s, QAccessible::Button));
    EXPECT_TRUE(ui->waitsFor(u"Half the Way Home"_s));
    ASSERT_TRUE(ui->click(u"Previous track"_s, QAccessible::Button));
    ASSERT_TRUE(ui->click(u"Pause"_s, QAccessible::Button));
    EXPECT_FALSE(library.transport()->isPlaying());
    ASSERT_TRUE(ui->click(u"4:21"_s, QAccessible::Button));
    EXPECT_TRUE(library.views()->showRemainingTime());
    ASSERT_TRUE(ui->click(u"Playback"_s, QAccessible::Slider));
    EXPECT_NEAR(library.progressClock()->progress(), 0.5, 0.05);
    ASSERT_TRUE(ui->click(u"Volume"_s, QAccessible::Slider));
    EXPECT_NEAR(library.transport()->volume(), 0.5, 0.05);
}

TEST_F(FullScreenTest, ItsLinksLeadIntoTheLibrary) {
    ASSERT_TRUE(ui->click(u"Night Walk"_s, QAccessible::Link));
    EXPECT_FALSE(library.views()->showFullPlayer());
    EXPECT_EQ(library.browsing()->selectedAlbum()->title, u"Night Walk"_s);
    ASSERT_TRUE(world.waitFor([&] { return !ui->shows(u"Back to Main Window"_s); }));
    library.views()->setShowFullPlayer(true);
    ASSERT_TRUE(covers());
    ASSERT_TRUE(ui->tabTo(u"The Lanterns"_s));
    ui->key(Qt::Key_Return);
    EXPECT_FALSE(library.views()->showFullPlayer());
    EXPECT_EQ(library.browsing()->mode(), LibraryMode::artists);
    EXPECT_EQ(library.browsing()->focusedArtist(), u"The Lanterns"_s);
}

TEST_F(FullScreenTest, TheRecordTurnsWhileMusicPlaysAndNeverLeaps) {
    const double before = angle();
    ASSERT_TRUE(world.waitFor([&] { return angle() != before; }));
    library.transport()->togglePlayback();
    const double paused = angle();
    advance(0.03);
    EXPECT_DOUBLE_EQ(angle(), paused);
    library.transport()->togglePlayback();
    advance(0.05);
    EXPECT_NEAR(angle(), paused + 0.9, 1e-9);
    advance(3600);
    EXPECT_NEAR(angle(), paused + 0.9 + 1.8, 1e-9);
}

TEST_F(FullScreenTest, DrawsMoreSlowlyWhenPausedAndNotAtAllWhenHidden) {
    EXPECT_TRUE(clock->property("running").toBool());
    const int playing = clock->property("interval").toInt();
    EXPECT_GE(playing, 33);
    library.transport()->togglePlayback();
    EXPECT_GT(clock->property("interval").toInt(), playing);
    EXPECT_TRUE(clock->property("running").toBool());
    ui->window().hide();
    EXPECT_TRUE(world.waitFor([&] { return !clock->property("running").toBool(); }));
    int frames = 0;
    QObject::connect(&ui->window(), &QQuickWindow::frameSwapped, &ui->window(), [&] { ++frames; });
    EXPECT_FALSE(world.waitFor([&] { return frames > 0; }, 200));
    ui->window().show();
    EXPECT_TRUE(world.waitFor([&] { return frames > 0; }));
    EXPECT_TRUE(clock->property("running").toBool());
}

TEST_F(FullScreenTest, NothingStandsOutsideOrOverAnythingElse) {
    const QStringList downwards{u"FLAC"_s,     u"Lamplight"_s,  u"The Lanterns"_s, u"Night Walk"_s,
                                u"Playback"_s, u"Next track"_s, u"Volume"_s};
    for (const QSize size :
         {QSize(980, 600), QSize(1360, 720), QSize(1080, 1500), QSize(2600, 1500)}) {
        SCOPED_TRACE(qPrintable(u"%1x%2"_s.arg(size.width()).arg(size.height())));
        ui->window().resize(size);
        ASSERT_TRUE(world.waitFor([&] {
            return ui->window().contentItem()->size().toSize() == size && record->width() > 0;
        }));
        const QRectF ring = record->mapRectToScene(record->boundingRect());
        EXPECT_GE(ring.left(), 0);
        EXPECT_GE(ring.top(), 0);
        EXPECT_GE(ring.width(), 200);
        double bottom = ring.bottom();
        for (const QString& name : downwards) {
            auto* thing = ui->find(name);
            ASSERT_NE(thing, nullptr) << qPrintable(name);
            const QPoint corner = ui->window().mapFromGlobal(thing->rect().topLeft());
            EXPECT_GE(corner.y(), bottom - 1) << qPrintable(name);
            EXPECT_GE(corner.x(), 0) << qPrintable(name);
            bottom = corner.y() + thing->rect().height();
        }
        EXPECT_LE(bottom, size.height() - 16);
    }
}

} // namespace
} // namespace halvane::test
