// SPDX-License-Identifier: MIT
// Covers that can't be shown, and that can be later, in every view.
#include "library/browsing/cover_files.h"
#include "support/audio_material.h"
#include "views/window_driver.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QUrl>

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

class BrokenCoversTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(QDir().mkpath(place(u"Album"_s)));
        writeWave(sine(440, 0.5, 8000 * 60, 8000, 1), place(u"Album/1.wav"_s));
        QFile broken(cover());
        ASSERT_TRUE(broken.open(QIODevice::WriteOnly) && broken.write("no picture") > 0);
    }
    [[nodiscard]] QString place(const QString& name) { return folder.filePath(name); }
    [[nodiscard]] QString cover() { return place(u"Album/cover.png"_s); }

    /// The pictures of covers in a window, of which each has its placeholder beside it.
    static std::vector<QQuickItem*> pictures(QQuickWindow& window) {
        std::vector<QQuickItem*> found;
        forEachItem(window.contentItem(), [&found](QQuickItem* item) {
            if (item->property("source").toUrl().toString().startsWith(u"image://cover/"_s))
                found.push_back(item);
        });
        return found;
    }
    static bool showsPlaceholder(const QQuickItem* picture) {
        return picture->parentItem()->childItems().constFirst()->isVisible();
    }
    /// Waits until every cover of a window is shown, or stands back for its placeholder.
    static void expectAll(QQuickWindow& window, bool areShown) {
        constexpr int ready = 1;
        constexpr int error = 3;
        EXPECT_TRUE(GalleryWorld::waitFor([&] {
            const auto all = pictures(window);
            return !all.empty() &&
                   std::all_of(all.begin(), all.end(), [areShown](const QQuickItem* picture) {
                       return picture->property("status").toInt() == (areShown ? ready : error) &&
                              showsPlaceholder(picture) != areShown;
                   });
        })) << window.objectName().toStdString()
            << ", covers: " << pictures(window).size();
    }

    QTemporaryDir folder;
    GalleryWorld world{0};
};

TEST_F(BrokenCoversTest, LeaveThePlaceholderInEveryViewUntilTheyCanBeShown) {
    LibraryViewModel& library = world.library();
    library.importing()->importDroppedURLs({QUrl::fromLocalFile(place(u"Album"_s))});
    ASSERT_TRUE(world.waitFor([&] { return library.transport()->isPlaying(); }));
    std::vector<QQuickWindow*> windows;
    for (const QString& id : {u"main"_s, u"mini"_s, u"panel"_s})
        windows.push_back(world.open(id));
    for (QQuickWindow* window : windows)
        expectAll(*window, false);
    // The tile, the hero, Now Playing, the queue and the player bar.
    EXPECT_GE(pictures(*windows.front()).size(), 5U);
    library.views()->setShowFullPlayer(true);
    expectAll(*windows.front(), false);

    QImage good(64, 64, QImage::Format_RGB32);
    good.fill(Qt::green);
    ASSERT_TRUE(good.save(cover()));
    library.coverFiles()->refresh();
    for (QQuickWindow* window : windows)
        expectAll(*window, true);
    library.views()->setShowFullPlayer(false);
    expectAll(*windows.front(), true);
    for (const QString& warning : world.warnings())
        EXPECT_TRUE(warning.contains(u"can't be shown"_s)) << warning.toStdString();
}

} // namespace
} // namespace halvane::test
