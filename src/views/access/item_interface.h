// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessibleObject>
#include <QQuickItem>

namespace halvane::views {

/// An item as assistive technology sees it, by its Accessible properties. It takes the focus only
/// where it says so, while the toolkit's own view of a text always does, and a list's rows come in
/// reading order. Main thread.
class ItemInterface : public QAccessibleObject, public QAccessibleActionInterface {
  public:
    using QAccessibleObject::QAccessibleObject;

    /// True when assistive technology is to find the item.
    static bool isFound(const QQuickItem& item);

    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessibleInterface* parent() const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& action) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*action*/) const override {
        return {};
    }

  private:
    [[nodiscard]] QQuickItem& item() const { return *static_cast<QQuickItem*>(object()); }
};

/// Gives the program's own items their interfaces; for QAccessible::installFactory.
QAccessibleInterface* interfaceOfItem(const QString& className, QObject* object);

} // namespace halvane::views
