// SPDX-License-Identifier: MIT
// Tidy-up, settings and help, worked with mouse and keyboard.
#include "audio/analysis/spectrum_model.h"
#include "library/library_concerns.h"
#include "views/window_driver.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class SecondaryWindowTest : public testing::Test {
  protected:
    void TearDown() override { EXPECT_EQ(world.warnings(), QStringList()); }
    void openWindow(const QString& id) {
        QQuickWindow* window = world.open(id);
        ASSERT_NE(window, nullptr);
        ui = std::make_unique<WindowDriver>(*window);
    }
    bool goesAway(const QString& name) {
        return world.waitFor([&] { return !ui->shows(name); });
    }

    GalleryWorld world{2};
    LibraryViewModel& library = world.library();
    std::unique_ptr<WindowDriver> ui;
};

class TidyUpTest : public SecondaryWindowTest {
  protected:
    void openTidyUp() {
        openWindow(u"main"_s);
        library.views()->setShowMaintenance(true);
        ASSERT_TRUE(ui->waitsFor(u"Done"_s));
    }
    int missing() { return library.tidyingLists()->missingTracks()->rowCount(); }
};

TEST_F(TidyUpTest, HasOnlyGoodNewsForATidyLibrary) {
    openTidyUp();
    EXPECT_TRUE(ui->waitsFor(u"Your library is tidy — nothing to clean up."_s));
    for (const QString& name : {u"Missing files"_s, u"Duplicate tracks"_s, u"In iCloud"_s})
        EXPECT_FALSE(ui->shows(name)) << qPrintable(name);
    ui->key(Qt::Key_Escape);
    EXPECT_TRUE(world.waitFor([&] { return !library.views()->showMaintenance(); }));
}

TEST_F(TidyUpTest, DownloadsAtOnceAndAsksBeforeItRemoves) {
    world.furnish();
    openTidyUp();
    ASSERT_TRUE(ui->waitsFor(u"Missing files, 1"_s));
    ASSERT_TRUE(ui->waitsFor(u"In iCloud, not downloaded, 1"_s));
    ASSERT_TRUE(ui->click(u"Download All"_s, QAccessible::Button));
    EXPECT_TRUE(world.waitFor([&] { return !world.environment().cloud->downloading.isEmpty(); }));

    const QString question = u"Remove 1 missing track from the library? The entry is removed; no "
                             "files are deleted."_s;
    const int before = library.trackCount();
    for (const QString& answer : {u"Cancel"_s, u"Remove All"_s}) {
        ASSERT_TRUE(ui->click(u"Remove All"_s, QAccessible::Button));
        ASSERT_TRUE(ui->waitsFor(question));
        EXPECT_EQ(library.trackCount(), before);
        if (answer == u"Cancel"_s) {
            ASSERT_TRUE(ui->click(answer, QAccessible::Button));
            ASSERT_TRUE(goesAway(question));
            EXPECT_EQ(missing(), 1);
        } else {
            ui->key(Qt::Key_Tab); // from "Cancel", which the keyboard is on
            ui->key(Qt::Key_Return);
        }
    }
    EXPECT_TRUE(world.waitFor([&] { return missing() == 0; }));
    EXPECT_EQ(library.trackCount(), before - 1);
}

TEST_F(TidyUpTest, RemovesOneMissingTrackByItsOwnButtonWithoutAsking) {
    world.furnish();
    openTidyUp();
    ASSERT_TRUE(ui->waitsFor(u"Missing files, 1"_s));
    ASSERT_TRUE(ui->click(u"Remove from Library"_s, QAccessible::Button));
    EXPECT_TRUE(world.waitFor([&] { return missing() == 0; }));
    EXPECT_TRUE(goesAway(u"Missing files"_s));
}

TEST_F(TidyUpTest, RemovesDuplicatesByTheGroup) {
    LibraryPlan copies{.albums = 1, .folder = world.environment().folder.filePath(u"copies"_s)};
    library.store()->append(makeLibrary(copies));
    library.catalog()->rebuildImportedAlbums();
    openTidyUp();
    ASSERT_TRUE(ui->click(u"Remove Duplicates"_s, QAccessible::Button));
    const int groups = library.duplicates()->duplicateGroupCount();
    ASSERT_GT(groups, 1);
    ASSERT_TRUE(ui->waitsFor(u"Cancel"_s));
    ui->key(Qt::Key_Escape);
    ASSERT_TRUE(goesAway(u"Cancel"_s));
    EXPECT_TRUE(library.views()->showMaintenance()) << "Esc answers the question only";
    const int before = library.trackCount();
    ASSERT_TRUE(ui->click(u"Remove Duplicates"_s, QAccessible::Button));
    ASSERT_TRUE(ui->waitsFor(u"Cancel"_s));
    ui->key(Qt::Key_Tab);
    ui->key(Qt::Key_Return);
    EXPECT_TRUE(world.waitFor([&] { return library.trackCount() == before - groups; }));
    EXPECT_TRUE(ui->waitsFor(u"Your library is tidy"_s));
}

class SettingsTest : public SecondaryWindowTest {
  protected:
    void SetUp() override { openWindow(u"settings"_s); }
};

TEST_F(SettingsTest, LanguagesChangeTheWindowAtOnce) {
    EXPECT_TRUE(ui->shows(u"Auto"_s));
    ASSERT_TRUE(ui->click(u"中文"_s, QAccessible::RadioButton));
    EXPECT_EQ(library.language()->languageSetting(), AppLanguage::simplifiedChinese);
    EXPECT_TRUE(ui->waitsFor(u"自动"_s));
    EXPECT_EQ(ui->window().title(), u"Settings"_s);
    ASSERT_TRUE(ui->click(u"自动"_s, QAccessible::RadioButton));
    EXPECT_EQ(library.language()->languageSetting(), AppLanguage::system);
    EXPECT_TRUE(ui->waitsFor(u"Auto"_s));
}

TEST_F(SettingsTest, EveryPreferenceIsSetByKeyboard) {
    struct Step {
        QString name;
        Qt::Key key;
        std::function<bool()> isSet;
    };
    const std::array steps{
        Step{u"Language"_s, Qt::Key_Right,
             [&] {
                 return library.language()->languageSetting() == AppLanguage::simplifiedChinese;
             }},
        Step{u"频谱颜色"_s, Qt::Key_Down,
             [&] { return library.appearance()->spectrumTintMode() == SpectrumTintMode::mint; }},
        Step{u"音量均衡"_s, Qt::Key_Return,
             [&] { return library.soundCheck()->soundCheckEnabled(); }},
        Step{u"均衡方式"_s, Qt::Key_Down,
             [&] { return library.soundCheck()->levelBy() == LevelBy::track; }},
        Step{u"响度前置增益"_s, Qt::Key_Right,
             [&] { return library.soundCheck()->preamp() == 0.5; }},
        Step{u"防止削波"_s, Qt::Key_Return,
             [&] { return !library.soundCheck()->preventsClipping(); }},
        Step{u"强调色"_s, Qt::Key_Down,
             [&] { return library.appearance()->themeAccentMode() == SpectrumTintMode::gold; }},
        Step{u"圆角风格"_s, Qt::Key_Right,
             [&] { return library.appearance()->themeCornerStyle() == CornerStyle::round; }},
        Step{u"背景"_s, Qt::Key_Down,
             [&] { return library.appearance()->themeBackgroundStyle() == BackgroundStyle::oled; }},
    };
    for (const Step& step : steps) {
        ASSERT_TRUE(ui->tabTo(step.name)) << qPrintable(step.name);
        ui->key(step.key);
        EXPECT_TRUE(step.isSet()) << qPrintable(step.name);
    }
    ui->key(Qt::Key_Escape);
    EXPECT_TRUE(world.waitFor([&] { return !ui->window().isVisible(); }));
}

TEST_F(SettingsTest, ACustomColourIsMixedInItsWell) {
    ASSERT_TRUE(ui->click(u"Spectrum Color"_s, QAccessible::ComboBox));
    ASSERT_TRUE(ui->click(u"Custom"_s, QAccessible::MenuItem));
    EXPECT_EQ(library.appearance()->spectrumTintMode(), SpectrumTintMode::custom);
    const QColor before = library.appearance()->shownCustomSpectrumColor();
    ASSERT_TRUE(goesAway(u"Sunset"_s));
    ASSERT_TRUE(ui->tabTo(u"Spectrum Color: Custom"_s));
    ui->key(Qt::Key_Return);
    ASSERT_TRUE(ui->waitsFor(u"Spectrum Color: Custom H"_s));
    ui->key(Qt::Key_Right);
    EXPECT_NE(library.appearance()->shownCustomSpectrumColor(), before);
    EXPECT_EQ(library.appearance()->shownSpectrumTint(),
              library.appearance()->shownCustomSpectrumColor());
    ui->key(Qt::Key_Escape);
    EXPECT_TRUE(goesAway(u"Spectrum Color: Custom H"_s));
    EXPECT_TRUE(ui->window().isVisible());
}

TEST_F(SettingsTest, TheSpectrumLivesOnlyWhileMusicPlaysInSight) {
    const auto peak = [&] {
        const auto& bands = library.spectrum()->bands();
        return *std::max_element(bands.begin(), bands.end());
    };
    EXPECT_TRUE(library.spectrum()->isWatched());
    EXPECT_EQ(peak(), 0);
    world.furnish();
    EXPECT_TRUE(world.waitFor([&] { return peak() > 0.1f; }));
    library.transport()->togglePlayback();
    int changes = 0;
    QObject::connect(library.spectrum(), &SpectrumModel::changed, &ui->window(),
                     [&] { ++changes; });
    const auto standsStill = [&] {
        const int before = changes;
        return !world.waitFor([&] { return changes != before; }, 150);
    };
    EXPECT_TRUE(world.waitFor(standsStill));
    ui->window().close();
    EXPECT_TRUE(world.waitFor([&] { return !library.spectrum()->isWatched(); }));
}

TEST_F(SecondaryWindowTest, HelpNamesEveryKeyTwice) {
    openWindow(u"help"_s);
    EXPECT_EQ(ui->window().size(), QSize(480, 560));
    EXPECT_TRUE(ui->shows(u"v1.0.0 (22)"_s));
    QStringList texts;
    forEachItem(ui->window().contentItem(), [&](QQuickItem* item) {
        if (item->inherits("QQuickText") && item->isVisible())
            texts.append(item->property("text").toString());
    });
    for (const auto& [label, here] : {std::pair(u"Space"_s, u"Space"_s),
                                      {u"⌘←  /  ⌘→"_s, u"Ctrl+← / Ctrl+→"_s},
                                      {u"⌘↑  /  ⌘↓"_s, u"Ctrl+↑ / Ctrl+↓"_s},
                                      {u"⇧⌘S"_s, u"Ctrl+Shift+S"_s},
                                      {u"⇧⌘R"_s, u"Ctrl+Shift+R"_s},
                                      {u"⌘O"_s, u"Ctrl+O"_s},
                                      {u"⌘I"_s, u"Ctrl+I"_s},
                                      {u"⌘F"_s, u"Ctrl+F"_s},
                                      {u"⌥⌘N"_s, u"Ctrl+Alt+N"_s},
                                      {u"⌃⌘M"_s, u"Ctrl+Super+M"_s},
                                      {u"⌃⌘F"_s, u"Ctrl+Super+F"_s},
                                      {u"Esc"_s, u"Esc"_s},
                                      {u"⌘,"_s, u"Ctrl+,"_s}}) {
        EXPECT_TRUE(texts.contains(label)) << qPrintable(label);
        EXPECT_TRUE(texts.contains(here)) << qPrintable(here);
    }
    const QPoint last = ui->centreOf(u"Ctrl+,: Settings"_s);
    ui->key(Qt::Key_End);
    EXPECT_TRUE(world.waitFor([&] {
        const QPoint now = ui->centreOf(u"Ctrl+,: Settings"_s);
        return now.y() < last.y() && now.y() < ui->window().height();
    }));
    ui->key(Qt::Key_Escape);
    EXPECT_TRUE(world.waitFor([&] { return !ui->window().isVisible(); }));
}

} // namespace
} // namespace halvane::test
