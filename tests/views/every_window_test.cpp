// SPDX-License-Identifier: MIT
// What holds in every window and language: no text is cut off, and the keyboard reaches everything.
#include "presentation/l10n.h"
#include "views/window_driver.h"

#include <QSet>

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::string_view_literals;

struct Surface {
    std::string_view window;
    std::string_view flag = {}; // a flag of the controller that shows it
};

// The product's own texts. Those of the music may be elided, and are, with the whole in a tooltip.
QSet<QString> productTexts(ResolvedLanguage language) {
    QSet<QString> texts;
    for (int key = 0; key < L10n::keyCount; ++key)
        texts.insert(L10n::text(static_cast<L10nKey>(key), language));
    return texts;
}

bool isClippedOnPurpose(const QQuickItem* item) {
    for (const QQuickItem* parent = item->parentItem(); parent; parent = parent->parentItem())
        if (parent->clip())
            return true;
    return false;
}

QString whatIsCutOff(QQuickItem& text, const QSet<QString>& own) {
    const double width = text.property("contentWidth").toDouble();
    const double height = text.property("contentHeight").toDouble();
    if (text.property("truncated").toBool() && own.contains(text.property("text").toString()))
        return u"elided"_s;
    if (text.property("elide").toInt() == Qt::ElideNone &&
        (width > text.width() + 1 || height > text.height() + 1))
        return u"larger than its place"_s;
    const QRectF place = text.mapRectToScene({0, 0, text.width(), text.height()});
    const QQuickItem* window = text.window()->contentItem();
    if (!isClippedOnPurpose(&text) &&
        !QRectF(-1, -1, window->width() + 2, window->height() + 2).contains(place))
        return u"outside the window"_s;
    return {};
}

class EveryWindowTest : public testing::TestWithParam<Surface> {
  protected:
    void SetUp() override {
        world.furnish();
        const auto& [id, flag] = GetParam();
        if (!flag.empty()) {
            ASSERT_TRUE(library.views()->setProperty(flag.data(), true));
        }
        QQuickWindow* window = world.open(QString::fromLatin1(id.data()));
        ASSERT_NE(window, nullptr);
        ui = std::make_unique<WindowDriver>(*window);
        ASSERT_TRUE(world.waitFor(
            [&] { return library.tidyingLists()->missingTracks()->rowCount() == 1; }));
    }
    void TearDown() override { EXPECT_EQ(world.warnings(), QStringList()); }

    void cutsNoTextOff() {
        for (const auto& [setting, language] :
             {std::pair(AppLanguage::english, ResolvedLanguage::english),
              std::pair(AppLanguage::simplifiedChinese, ResolvedLanguage::simplifiedChinese)}) {
            library.language()->setLanguageSetting(setting);
            bool drawn = false;
            const auto swap = QObject::connect(&ui->window(), &QQuickWindow::frameSwapped,
                                               &ui->window(), [&] { drawn = true; });
            ui->window().update();
            ASSERT_TRUE(world.waitFor([&] { return drawn; }));
            QObject::disconnect(swap);
            const QSet<QString> own = productTexts(language);
            int texts = 0;
            forEachItem(ui->window().contentItem(), [&](QQuickItem* item) {
                if (!item->inherits("QQuickText") || item->property("text").toString().isEmpty())
                    return;
                ++texts;
                const QString fault = whatIsCutOff(*item, own);
                EXPECT_TRUE(fault.isEmpty())
                    << qPrintable(fault + u": "_s + item->property("text").toString());
            });
            EXPECT_GT(texts, 3);
        }
    }
    void reachesEveryControlByKeyboard() {
        static const QSet<int> roles{QAccessible::Button,   QAccessible::Slider,
                                     QAccessible::CheckBox, QAccessible::ComboBox,
                                     QAccessible::Link,     QAccessible::EditableText};
        auto* from = QAccessible::queryAccessibleInterface(&ui->window());
        if (GetParam().flag == "showMaintenance"sv) // what a sheet covers is out of reach
            from = ui->find(u"Tidy Up Library"_s, QAccessible::Dialog);
        ASSERT_NE(from, nullptr);
        QSet<QString> controls;
        forEachAccessible(from, [&](QAccessibleInterface& thing) {
            if (!roles.contains(thing.role()) || thing.state().disabled)
                return;
            const QString name = thing.text(QAccessible::Name);
            EXPECT_FALSE(name.isEmpty()) << "role " << thing.role();
            controls.insert(name);
        });
        for (int press = 0; press < 60 && !controls.isEmpty(); ++press) {
            ui->key(Qt::Key_Tab);
            controls.remove(ui->focusedName());
        }
        EXPECT_TRUE(controls.isEmpty()) << qPrintable(controls.values().join(u", "_s));
    }

    GalleryWorld world{12};
    LibraryViewModel& library = world.library();
    std::unique_ptr<WindowDriver> ui;
};

// Opening a window is what takes the time, so each is opened once.
TEST_P(EveryWindowTest, ShowsItsTextsWholeAndIsWorkedByKeyboard) {
    reachesEveryControlByKeyboard();
    cutsNoTextOff();
}

INSTANTIATE_TEST_SUITE_P(All, EveryWindowTest,
                         testing::Values(Surface{"main"}, Surface{"main", "showFullPlayer"},
                                         Surface{"main", "showMaintenance"}, Surface{"mini"},
                                         Surface{"panel"}, Surface{"settings"}, Surface{"help"}),
                         [](const auto& surface) {
                             return std::string(surface.param.window) +
                                    std::string(surface.param.flag);
                         });

} // namespace
} // namespace halvane::test
