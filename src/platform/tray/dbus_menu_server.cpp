// SPDX-License-Identifier: MIT
#include "platform/tray/dbus_menu_server.h"

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// "Ctrl+Shift+S" as the protocol has it: [["Control", "Shift", "S"]].
QList<QStringList> protocolShortcut(const QString& shortcut) {
    auto keys = shortcut.split(u'+');
    for (auto& key : keys) {
        if (key == "Ctrl"_L1)
            key = u"Control"_s;
        else if (key == "Meta"_L1)
            key = u"Super"_s;
    }
    return {keys};
}

QVariantMap propertiesOf(const MenuEntry& entry) {
    QVariantMap map;
    if (!entry.children.empty())
        map.insert(u"children-display"_s, u"submenu"_s);
    if (entry.title.isEmpty()) {
        map.insert(u"type"_s, u"separator"_s);
        return map;
    }
    // A single underscore would mark the next letter.
    map.insert(u"label"_s, QString(entry.title).replace(u'_', u"__"_s));
    if (!entry.isEnabled)
        map.insert(u"enabled"_s, false);
    if (!entry.shortcut.isEmpty())
        map.insert(u"shortcut"_s, QVariant::fromValue(protocolShortcut(entry.shortcut)));
    return map;
}

} // namespace

DBusMenuAdaptor::DBusMenuAdaptor(QObject* object, std::function<std::vector<MenuEntry>()> menu)
    : QDBusAbstractAdaptor(object)
    , m_menu(std::move(menu)) {
    rebuild();
}

QString DBusMenuAdaptor::textDirection() const {
    return u"ltr"_s;
}

QString DBusMenuAdaptor::status() const {
    return u"normal"_s;
}

void DBusMenuAdaptor::rebuild() {
    m_root.children = m_menu();
    m_byId.assign(1, &m_root);
    m_childIds.assign(1, {});
    for (std::size_t id = 0; id < m_byId.size(); ++id) {
        for (const auto& child : m_byId[id]->children) {
            m_childIds[id].push_back(static_cast<int>(m_byId.size()));
            m_byId.push_back(&child);
            m_childIds.emplace_back();
        }
    }
    ++m_revision;
}

const MenuEntry* DBusMenuAdaptor::entry(int id) const {
    return id >= 0 && static_cast<std::size_t>(id) < m_byId.size()
               ? m_byId[static_cast<std::size_t>(id)]
               : nullptr;
}

DBusMenuLayout DBusMenuAdaptor::layoutOf(int id, int depth) const {
    const auto* item = entry(id);
    if (!item)
        return {};
    DBusMenuLayout layout{
        id, id == 0 ? QVariantMap{{u"children-display"_s, u"submenu"_s}} : propertiesOf(*item), {}};
    if (depth != 0) {
        for (const int child : m_childIds[static_cast<std::size_t>(id)])
            layout.children.append(layoutOf(child, depth - 1));
    }
    return layout;
}

uint DBusMenuAdaptor::GetLayout(int parentId, int recursionDepth, const QStringList&,
                                DBusMenuLayout& layout) {
    layout = layoutOf(parentId, recursionDepth);
    return m_revision;
}

DBusMenuPropertiesList DBusMenuAdaptor::GetGroupProperties(const QList<int>& ids,
                                                           const QStringList&) {
    DBusMenuPropertiesList list;
    for (const int id : ids) {
        if (const auto* item = entry(id); item && id != 0)
            list.append({id, propertiesOf(*item)});
    }
    return list;
}

QDBusVariant DBusMenuAdaptor::GetProperty(int id, const QString& name) {
    const auto* item = entry(id);
    const auto value = item ? propertiesOf(*item).value(name) : QVariant();
    return QDBusVariant(value.isValid() ? value : QVariant(QString()));
}

void DBusMenuAdaptor::Event(int id, const QString& eventId, const QDBusVariant&, uint) {
    if (eventId != "clicked"_L1)
        return;
    const auto* item = entry(id);
    if (!item || !item->isEnabled || !item->action)
        return;
    // The action may rebuild the menu and destroy this entry.
    const auto action = item->action;
    action();
}

QList<int> DBusMenuAdaptor::EventGroup(const DBusMenuEventList& events) {
    QList<int> unknown;
    for (const auto& event : events) {
        if (entry(event.id))
            Event(event.id, event.name, event.data, event.timestamp);
        else
            unknown.append(event.id);
    }
    return unknown;
}

// Rebuilds for the root alone, because the numbers below it must stay good while its menu is open.
bool DBusMenuAdaptor::AboutToShow(int id) {
    if (id == 0)
        rebuild();
    return id == 0;
}

QList<int> DBusMenuAdaptor::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
    QList<int> changed;
    for (const int id : ids) {
        if (!entry(id))
            idErrors.append(id);
        else if (AboutToShow(id))
            changed.append(id);
    }
    return changed;
}

} // namespace halvane
