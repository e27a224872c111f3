// SPDX-License-Identifier: MIT
#include "views/access/item_interface.h"

#include "views/access/operable.h"

#include <QQuickWindow>

#include <algorithm>
#include <utility>

namespace halvane::views {

namespace {

// The item's Accessible properties; null when it has none.
QObject* propertiesOf(const QObject& item) {
    const auto& children = item.children();
    const auto found = std::find_if(children.begin(), children.end(), [](const QObject* child) {
        return child->inherits("QQuickAccessibleAttached");
    });
    return found == children.end() ? nullptr : *found;
}

bool isList(const QQuickItem& item) {
    return item.inherits("QQuickItemView");
}

// The list whose rows are this item's children; null for any other item.
QQuickItem* listAround(const QQuickItem& item) {
    auto* above = item.parentItem();
    const bool isContent =
        above && isList(*above) && above->property("contentItem").value<QQuickItem*>() == &item;
    return isContent ? above : nullptr;
}

// A list keeps rows that it has taken out, to use them again.
bool isTakenOut(QQuickItem& list, const QQuickItem& row) {
    const auto index = row.property("index");
    QQuickItem* shown = nullptr;
    return index.isValid() &&
           QMetaObject::invokeMethod(&list, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, shown),
                                     Q_ARG(int, index.toInt())) &&
           shown != &row;
}

// Later versions of Qt go on ignoring a row that a list has put away once and uses again.
bool isRow(const QQuickItem& item) {
    const auto* content = item.parentItem();
    return content && item.property("index").isValid() && listAround(*content);
}

// Later versions of Qt make every entry of a menu known, also one that is but a line.
bool isMenuLine(const QQuickItem& item) {
    return item.property("isLine").toBool();
}

bool isText(QAccessible::Role role) {
    return role == QAccessible::StaticText || role == QAccessible::Heading ||
           role == QAccessible::AlertMessage;
}

// In reading order. A list has its rows in the order in which it made them.
QList<QQuickItem*> itemsIn(const QQuickItem& item) {
    auto items = item.childItems();
    if (auto* list = listAround(item)) {
        items.removeIf([&](const auto* row) { return isTakenOut(*list, *row); });
        std::stable_sort(items.begin(), items.end(), [](const auto* one, const auto* other) {
            return std::pair(one->y(), one->x()) < std::pair(other->y(), other->x());
        });
    }
    return items;
}

// The nearest items below that are found.
void collectChildren(const QQuickItem& item, QList<QQuickItem*>& found) {
    const auto children = itemsIn(item);
    for (QQuickItem* child : children) {
        if (ItemInterface::isFound(*child))
            found.append(child);
        else
            collectChildren(*child, found);
    }
}

QList<QQuickItem*> childrenOf(const QQuickItem& item) {
    QList<QQuickItem*> found;
    collectChildren(item, found);
    return found;
}

class OperableInterface final : public ItemInterface {
  public:
    explicit OperableInterface(Operable* item)
        : ItemInterface(item)
        , m_item(*item) {}

    [[nodiscard]] QAccessible::State state() const override {
        auto state = ItemInterface::state();
        state.focusable = actionNames().contains(setFocusAction());
        state.expandable = state.hasPopup = m_item.opens();
        state.expanded = m_item.opens() && m_item.isOpen();
        state.collapsed = m_item.opens() && !m_item.isOpen();
        return state;
    }
    [[nodiscard]] QStringList actionNames() const override { return m_item.actions(); }
    void doAction(const QString& action) override { m_item.act(action); }

  private:
    Operable& m_item;
};

// An entry of a menu, which the toolkit lets nobody choose but by hand or key.
class MenuEntryInterface final : public ItemInterface {
  public:
    using ItemInterface::ItemInterface;

    [[nodiscard]] QAccessible::State state() const override {
        auto state = ItemInterface::state();
        const auto* menu = object()->property("subMenu").value<QObject*>();
        const bool isOpen = menu && menu->property("visible").toBool();
        state.focusable = true;
        state.expandable = state.hasPopup = menu != nullptr;
        state.expanded = isOpen;
        state.collapsed = menu && !isOpen;
        return state;
    }
    [[nodiscard]] QStringList actionNames() const override {
        return {pressAction(), setFocusAction()};
    }
    void doAction(const QString& action) override {
        if (action == pressAction() && !state().disabled)
            QMetaObject::invokeMethod(object(), "triggered");
        else
            ItemInterface::doAction(action);
    }
};

// The toolkit's own view of its controls and fields knows their values.
bool isBetterKnown(const QQuickItem& item) {
    return item.inherits("QQuickControl") || item.inherits("QQuickTextInput");
}

} // namespace

bool ItemInterface::isFound(const QQuickItem& item) {
    const auto* properties = propertiesOf(item);
    if (!properties || isMenuLine(item))
        return false;
    return isRow(item) || !properties->property("ignored").toBool();
}

QWindow* ItemInterface::window() const {
    return item().window();
}

QRect ItemInterface::rect() const {
    return {item().mapToGlobal(QPointF(0, 0)).toPoint(),
            QSizeF(item().width(), item().height()).toSize()};
}

QAccessibleInterface* ItemInterface::parent() const {
    for (auto* above = item().parentItem(); above; above = above->parentItem())
        if (isFound(*above))
            return QAccessible::queryAccessibleInterface(above);
    return item().window() ? QAccessible::queryAccessibleInterface(item().window()) : nullptr;
}

int ItemInterface::childCount() const {
    return static_cast<int>(childrenOf(item()).size());
}

QAccessibleInterface* ItemInterface::child(int index) const {
    auto* found = childrenOf(item()).value(index);
    return found ? QAccessible::queryAccessibleInterface(found) : nullptr;
}

int ItemInterface::indexOfChild(const QAccessibleInterface* child) const {
    return static_cast<int>(childrenOf(item()).indexOf(qobject_cast<QQuickItem*>(child->object())));
}

QString ItemInterface::text(QAccessible::Text kind) const {
    const auto* properties = propertiesOf(item());
    if (properties && kind == QAccessible::Name)
        return properties->property("name").toString();
    if (properties && kind == QAccessible::Description)
        return properties->property("description").toString();
    return {};
}

QAccessible::Role ItemInterface::role() const {
    const auto* properties = propertiesOf(item());
    return properties ? static_cast<QAccessible::Role>(properties->property("role").toInt())
                      : QAccessible::NoRole;
}

QAccessible::State ItemInterface::state() const {
    const auto* properties = propertiesOf(item());
    const auto is = [&](const char* name) {
        return properties && properties->property(name).toBool();
    };
    const auto* host = item().window();
    QAccessible::State state;
    state.checkable = is("checkable");
    state.checked = is("checked");
    state.selectable = is("selectable");
    state.selected = is("selected");
    state.readOnly = role() == QAccessible::StaticText;
    state.focusable = item().activeFocusOnTab() || (is("focusable") && !isText(role()));
    state.focused = item().hasActiveFocus() || is("focused");
    state.disabled = !item().isEnabled();
    state.invisible = !host || !host->isVisible() || !item().isVisible() ||
                      qFuzzyIsNull(item().opacity()) || rect().isEmpty();
    state.offscreen = !host || !rect().intersects(host->geometry());
    return state;
}

void* ItemInterface::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
}

QStringList ItemInterface::actionNames() const {
    return state().focusable ? QStringList{setFocusAction()} : QStringList();
}

void ItemInterface::doAction(const QString& action) {
    if (actionNames().contains(action))
        item().forceActiveFocus(Qt::OtherFocusReason);
}

QAccessibleInterface* interfaceOfItem(const QString& className, QObject* object) {
    // Every item comes by here as what it is last.
    auto* item = className == QLatin1String(QQuickItem::staticMetaObject.className())
                     ? qobject_cast<QQuickItem*>(object)
                     : nullptr;
    if (!item || !ItemInterface::isFound(*item))
        return nullptr;
    if (auto* operable = qobject_cast<Operable*>(item))
        return new OperableInterface(operable);
    if (item->inherits("QQuickMenuItem"))
        return new MenuEntryInterface(item);
    return isBetterKnown(*item) ? nullptr : new ItemInterface(item);
}

} // namespace halvane::views
