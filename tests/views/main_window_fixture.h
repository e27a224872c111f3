// SPDX-License-Identifier: MIT
#pragma once

#include "views/window_driver.h"

#include <gtest/gtest.h>

#include <memory>

namespace halvane::test {

/// The real main window on a furnished library. A warning of the views fails the test.
class MainWindowFixture : public testing::Test {
  protected:
    void SetUp() override {
        world.furnish();
        QQuickWindow* window = world.open(QStringLiteral("main"));
        ASSERT_NE(window, nullptr);
        ui = std::make_unique<WindowDriver>(*window);
    }
    void TearDown() override { EXPECT_EQ(world.warnings().join(u'\n').toStdString(), ""); }
    void resize(QSize size) {
        ui->window().setMinimumSize({});
        ui->window().resize(size);
        ASSERT_TRUE(
            world.waitFor([&] { return ui->window().contentItem()->size().toSize() == size; }));
    }
    /// In the window; empty when there is no such thing.
    QRect placeOf(const QString& name, QAccessible::Role role = QAccessible::NoRole) {
        auto* thing = ui->find(name, role);
        return thing ? placeOf(*thing) : QRect();
    }
    QRect placeOf(const QAccessibleInterface& thing) {
        const QRect onScreen = thing.rect();
        return {ui->window().mapFromGlobal(onScreen.topLeft()), onScreen.size()};
    }
    static QString textAt(QAbstractListModel* list, int row, const char* role) {
        return list->index(row, 0).data(list->roleNames().key(role)).toString();
    }
    QString queued(int row) { return textAt(library.queue(), row, "title"); }
    /// What stands in a visible text of the window that begins so; empty when there is none.
    QString written(const QString& beginning) {
        QString found;
        forEachItem(ui->window().contentItem(), [&](QQuickItem* item) {
            const QString text = item->property("text").toString();
            if (item->opacity() > 0 && text.startsWith(beginning))
                found = text;
        });
        return found;
    }

    GalleryWorld world{12};
    LibraryViewModel& library = world.library();
    std::unique_ptr<WindowDriver> ui;
};

} // namespace halvane::test
