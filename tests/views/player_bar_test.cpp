// SPDX-License-Identifier: MIT
// The player bar of the real main window.
#include "views/main_window_fixture.h"

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class PlayerBarTest : public MainWindowFixture {
  protected:
    // The texts of all tips and bubbles that are up.
    QStringList raised() {
        QStringList texts;
        forEachItem(ui->window().contentItem(), [&](QQuickItem* item) {
            const QByteArray type = item->metaObject()->className();
            if (type.startsWith("ValueBubble") || item->inherits("QQuickToolTip"))
                texts.append(item->property("text").toString());
        });
        for (const auto* tip : ui->window().findChildren<QObject*>())
            if (tip->inherits("QQuickToolTip") && tip->property("opened").toBool())
                texts.append(tip->property("text").toString());
        return texts;
    }
    // Where the control of that name is in the bar.
    QRect inBar(const QString& name) {
        const int top = ui->window().height() - 88;
        QRect place;
        forEachAccessible(QAccessible::queryAccessibleInterface(&ui->window()), [&](auto& thing) {
            const QRect here(ui->window().mapFromGlobal(thing.rect().topLeft()),
                             thing.rect().size());
            if (here.top() >= top && thing.text(QAccessible::Name).startsWith(name))
                place = here;
        });
        return place;
    }
    bool raises(const QString& text) {
        return world.waitFor([&] { return raised().contains(text); }, 5000);
    }
};

TEST_F(PlayerBarTest, TheTransportStandsOnTheWindowsAxis) {
    struct Case {
        QSize size;
        int line; // its least width
    };
    for (const auto& [size, line] : {Case{{800, 600}, 240}, Case{{980, 600}, 240},
                                     Case{{1360, 720}, 600}, Case{{2560, 1440}, 640}}) {
        SCOPED_TRACE(size.width());
        resize(size);
        if (HasFatalFailure())
            return;
        const int axis = size.width() / 2;
        const QRect disc = inBar(u"Pause"_s);
        const QRect progress = inBar(u"Playback"_s);
        EXPECT_NEAR(disc.center().x(), axis, 1);
        EXPECT_NEAR(progress.center().x(), axis, 1);
        EXPECT_GE(progress.width(), line);
        EXPECT_LE(progress.width(), 640);
        int right = 0;
        for (const QString& name :
             {u"Loved"_s, u"Shuffle off"_s, u"Repeat off"_s, u"Output: "_s, u"Mute"_s, u"Volume"_s,
              u"Equalizer"_s, u"Full-Screen Player"_s, u"Mini Player"_s}) {
            const QRect place = inBar(name);
            EXPECT_GE(place.left(), right) << qPrintable(name);
            right = place.right();
        }
        EXPECT_LE(right, size.width() - 18);
    }
}

TEST_F(PlayerBarTest, TheTimeUnderThePointerStandsOverTheLine) {
    library.transport()->togglePlayback();
    const QRect line = placeOf(u"Playback"_s, QAccessible::Slider);
    ui->pointAt(line.center());
    EXPECT_TRUE(raises(u"2:10"_s)) << qPrintable(raised().join(u'|'));
    const QPoint quarter(line.left() + line.width() / 4, line.center().y());
    ui->hold(line.center(), quarter);
    EXPECT_TRUE(raises(library.progressClock()->elapsedTime()))
        << "also while it is dragged: " << qPrintable(raised().join(u'|')) << " at "
        << qPrintable(library.progressClock()->elapsedTime());
    ui->release(quarter);
    EXPECT_NEAR(library.progressClock()->progress(), 0.25, 0.02);
    ui->pointAt({1, 1});
    EXPECT_TRUE(world.waitFor([&] { return raised().isEmpty(); }));
}

TEST_F(PlayerBarTest, TheTimeUnderThePointerCoversNoControl) {
    const auto bubble = [&] {
        QRect place;
        forEachItem(ui->window().contentItem(), [&](QQuickItem* item) {
            if (QByteArray(item->metaObject()->className()).startsWith("ValueBubble"))
                place = item->mapRectToScene(item->boundingRect()).toRect();
        });
        return place;
    };
    for (const QSize size : {QSize(800, 600), QSize(1360, 720)}) {
        resize(size);
        const QRect line = placeOf(u"Playback"_s, QAccessible::Slider);
        for (int part = 0; part <= 10; ++part) {
            ui->pointAt({line.left() + 4 + (line.width() - 8) * part / 10, line.center().y()});
            ASSERT_TRUE(world.waitFor([&] { return !bubble().isNull(); }));
            for (const QString& name : {u"Shuffle off"_s, u"Previous track"_s, u"Pause"_s,
                                        u"Next track"_s, u"Repeat off"_s, u"Output: "_s})
                EXPECT_FALSE(inBar(name).intersects(bubble()))
                    << qPrintable(name) << " at " << part << " of " << size.width();
        }
    }
}

TEST_F(PlayerBarTest, TheSpeakerSilencesAndTheFigureSaysHowLoudItIs) {
    library.transport()->setVolume(0.62);
    const QRect line = placeOf(u"Volume"_s, QAccessible::Slider);
    ui->pointAt(line.center());
    EXPECT_TRUE(raises(u"62 %"_s)) << qPrintable(raised().join(u'|'));
    ui->pointAt({1, 1});
    ASSERT_TRUE(world.waitFor([&] { return raised().isEmpty(); }));
    ui->pointAt(ui->centreOf(u"Mute"_s, QAccessible::Button));
    EXPECT_TRUE(raises(u"62 %"_s)) << "also beside the speaker";
    ASSERT_TRUE(ui->click(u"Mute"_s, QAccessible::Button));
    EXPECT_EQ(library.transport()->volume(), 0);
    EXPECT_TRUE(raises(u"0 %"_s));
    auto* button = ui->find(u"Mute"_s, QAccessible::Button);
    ASSERT_NE(button, nullptr);
    EXPECT_TRUE(button->state().checked);
    ASSERT_TRUE(ui->tabTo(u"Mute"_s));
    ui->key(Qt::Key_Return);
    EXPECT_DOUBLE_EQ(library.transport()->volume(), 0.62);
    EXPECT_FALSE(button->state().checked);
}

TEST_F(PlayerBarTest, TipsNameTheKeysAndTheWholeDevice) {
    struct Tip {
        QString button;
        QString english;
        QString chinese;
    };
    const QString device = library.output()->outputDeviceName();
    const Tip tips[]{
        {u"Next track"_s, u"Next track (Ctrl+Right)"_s, u"下一首 (Ctrl+Right)"_s},
        {u"Pause"_s, u"Pause (Space)"_s, u"暂停 (Space)"_s},
        {u"Shuffle off"_s, u"Turn shuffle on (Ctrl+Shift+S)"_s, u"打开随机播放 (Ctrl+Shift+S)"_s},
        {u"Mini Player"_s, u"Mini Player (Ctrl+Super+M)"_s, u"迷你播放器 (Ctrl+Super+M)"_s},
        {u"Output: "_s, device, device},
    };
    for (const Tip& tip : tips) {
        const QPoint place = ui->centreOf(tip.button, QAccessible::Button);
        for (const auto language : {AppLanguage::english, AppLanguage::simplifiedChinese}) {
            library.language()->setLanguageSetting(language);
            ui->pointAt({1, 1});
            ASSERT_TRUE(world.waitFor([&] { return raised().isEmpty(); }));
            ui->pointAt(place);
            const QString wanted = language == AppLanguage::english ? tip.english : tip.chinese;
            EXPECT_TRUE(raises(wanted)) << qPrintable(wanted + u" in "_s + raised().join(u'|'));
        }
        library.language()->setLanguageSetting(AppLanguage::english);
    }
}

} // namespace
} // namespace halvane::test
