// SPDX-License-Identifier: MIT
// What each view looks like, against approved pictures: on llvmpipe, in the packages' own fonts,
// with the music standing still. The software renderer, which draws letters and edges in another
// way, has pictures of its own of a few.
#include "views/picture_match.h"
#include "views/software/renderer.h"
#include "views/window_driver.h"

#include <QGuiApplication>
#include <QStyleHints>

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

struct Look {
    const char* name;
    const char* window = "main";
    void (*show)(GalleryWorld& world, WindowDriver& ui);
    bool isChinese = false;
    int albums = 12;
    QSize size = {}; // where it is not the window's own
};

std::ostream& operator<<(std::ostream& out, const Look& look) {
    return out << look.name;
}

void nothing(GalleryWorld&, WindowDriver&) {
}
void tracks(GalleryWorld& world, WindowDriver&) {
    world.library().browsing()->selectBrowseMode(LibraryMode::songs);
}
void columns(GalleryWorld& world, WindowDriver& ui) {
    tracks(world, ui);
    for (const TrackOrder column : {TrackOrder::number, TrackOrder::year})
        world.library().tableColumns()->toggle(column);
    world.library().tableOrder()->choose(TrackOrder::year);
    EXPECT_TRUE(ui.waitsFor(u"Choose columns"_s));
    EXPECT_TRUE(ui.click(u"Choose columns"_s, QAccessible::Button));
    EXPECT_TRUE(ui.waitsFor(u"Genre"_s));
}
void album(GalleryWorld&, WindowDriver& ui) {
    EXPECT_TRUE(ui.click(u"Kelp & Salt, Mira Holt"_s, QAccessible::ListItem));
    EXPECT_TRUE(ui.waitsFor(u"Show All Tracks"_s));
}
void artists(GalleryWorld& world, WindowDriver& ui) {
    world.library().browsing()->selectBrowseMode(LibraryMode::artists);
    EXPECT_TRUE(ui.click(u"Mira Holt"_s, QAccessible::ListItem));
}
void playlist(GalleryWorld&, WindowDriver& ui) {
    EXPECT_TRUE(ui.click(u"Late evenings"_s, QAccessible::ListItem));
}
void noMatch(GalleryWorld& world, WindowDriver&) {
    world.library().browsing()->setSearchText(u"zzzz"_s);
}
void equalizer(GalleryWorld&, WindowDriver& ui) {
    EXPECT_TRUE(ui.click(u"Equalizer"_s, QAccessible::Button));
}
void clipping(GalleryWorld& world, WindowDriver& ui) {
    EXPECT_TRUE(ui.click(u"均衡器"_s, QAccessible::Button));
    EXPECT_TRUE(ui.waitsFor(u"未削波"_s));
    world.library().spectrum()->publish({.clips = true});
}
void prompt(GalleryWorld&, WindowDriver& ui) {
    EXPECT_TRUE(ui.click(u"New Playlist..."_s, QAccessible::Button));
}
void trackMenu(GalleryWorld& world, WindowDriver& ui) {
    world.library().browsing()->selectBrowseMode(LibraryMode::songs);
    EXPECT_TRUE(ui.click(u"Sodium, The Lanterns"_s, QAccessible::ListItem, Qt::RightButton));
}
void tidyUp(GalleryWorld& world, WindowDriver& ui) {
    world.library().views()->setShowMaintenance(true);
    EXPECT_TRUE(ui.waitsFor(u"Missing files, 1"_s));
}
void removal(GalleryWorld& world, WindowDriver& ui) {
    tidyUp(world, ui);
    EXPECT_TRUE(ui.click(u"Remove All"_s, QAccessible::Button));
}
void removalInChinese(GalleryWorld& world, WindowDriver& ui) {
    world.library().views()->setShowMaintenance(true);
    EXPECT_TRUE(ui.click(u"全部移除"_s, QAccessible::Button));
}
void spectrum(GalleryWorld& world, WindowDriver&) {
    SpectrumOutput output;
    for (std::size_t i = 0; i < output.bands.size(); ++i)
        output.bands[i] = 0.15F + 0.05F * static_cast<float>(i * 7 % 16);
    world.library().spectrum()->publish(output);
}
// Its light turns while nothing plays, too: put back to where it begins, and stopped there.
void fullScreen(GalleryWorld& world, WindowDriver& ui) {
    world.library().views()->setShowFullPlayer(true);
    EXPECT_TRUE(ui.waitsFor(u"Back to Main Window"_s));
    ui.window().findChild<QObject*>(u"redrawClock"_s)->setProperty("running", false);
    forEachItem(ui.window().contentItem(), [](QQuickItem* item) {
        if (item->metaObject()->indexOfProperty("turn") >= 0) {
            item->setProperty("turn", 0.6);
        } else if (item->metaObject()->indexOfProperty("angle") >= 0) {
            QMetaObject::invokeMethod(item, "advance", Q_ARG(double, 0)); // takes the spectrum over
            item->setProperty("angle", 0);
        }
    });
}
void fullScreenSpectrum(GalleryWorld& world, WindowDriver& ui) {
    spectrum(world, ui);
    fullScreen(world, ui);
}

const Look looks[]{
    {.name = "albums", .show = nothing},
    {.name = "albums-zh", .show = nothing, .isChinese = true},
    {.name = "album", .show = album},
    {.name = "tracks", .show = tracks},
    {.name = "tracks-zh", .show = tracks, .isChinese = true},
    {.name = "tracks-narrow", .show = tracks, .size = {980, 600}},
    {.name = "columns", .show = columns},
    {.name = "track-menu", .show = trackMenu},
    {.name = "artists", .show = artists},
    {.name = "playlist", .show = playlist},
    {.name = "no-match", .show = noMatch},
    {.name = "empty", .show = nothing, .albums = 0},
    {.name = "equalizer", .show = equalizer},
    {.name = "equalizer-zh", .show = clipping, .isChinese = true},
    {.name = "prompt", .show = prompt},
    {.name = "tidy-up", .show = tidyUp},
    {.name = "removal", .show = removal},
    {.name = "removal-zh", .show = removalInChinese, .isChinese = true},
    {.name = "full-screen", .show = fullScreen},
    {.name = "spectrum", .show = spectrum},
    {.name = "full-screen-spectrum", .show = fullScreenSpectrum},
    {.name = "mini", .window = "mini", .show = nothing},
    {.name = "panel", .window = "panel", .show = nothing},
    {.name = "help", .window = "help", .show = nothing},
    {.name = "settings", .window = "settings", .show = nothing},
};

class PictureTest : public testing::TestWithParam<Look> {};

TEST_P(PictureTest, LooksAsApproved) {
    if (QGuiApplication::platformName() == "offscreen"_L1)
        GTEST_SKIP() << "needs a display";
    const Look& look = GetParam();
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    GalleryWorld world(look.albums);
    world.environment().output.freeze();
    if (look.albums > 0)
        world.furnish();
    LibraryViewModel& library = world.library();
    library.transport()->seek(0.4);
    if (look.isChinese)
        library.language()->setLanguageSetting(AppLanguage::simplifiedChinese);
    QQuickWindow* window = world.open(QString::fromLatin1(look.window));
    ASSERT_NE(window, nullptr);
    if (!look.size.isEmpty()) {
        window->resize(look.size);
        ASSERT_TRUE(GalleryWorld::waitFor([&] { return window->size() == look.size; }));
    }
    WindowDriver ui(*window);
    look.show(world, ui);
    ui.pointAt({1, 1}); // where nothing shows that it is pointed at
    const auto name = QString::fromLatin1(look.name);
    expectPicture(views::Renderer::isSoftware() ? u"software-"_s + name : name,
                  [&] { return window->grabWindow(); });
    EXPECT_EQ(world.warnings(), QStringList());
}

INSTANTIATE_TEST_SUITE_P(Views, PictureTest, testing::ValuesIn(looks), [](const auto& look) {
    std::string name = look.param.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

} // namespace
} // namespace halvane::test
