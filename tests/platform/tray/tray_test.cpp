// SPDX-License-Identifier: MIT
#include "platform/tray/dbus_menu_types.h"
#include "platform/tray/global_menu.h"
#include "platform/tray/tray_adaptor.h"
#include "platform/tray/tray_icon.h"
#include "support/private_bus.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>

#include <gmock/gmock.h>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

// A desktop's panel: keeps what registers with it, and says that it shows icons.
class Panel : public QDBusVirtualObject {
  public:
    Panel(PrivateBus& privateBus, const QString& name)
        : bus(privateBus.connect())
        , m_name(name) {
        bus.registerVirtualObject(u"/"_s, this, QDBusConnection::SubPath);
        bus.registerService(name);
    }
    ~Panel() override { bus.unregisterService(m_name); }
    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        if (message.member() == "Get"_L1) {
            bus.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant(hasHost)))));
            return true;
        }
        registered.append(message);
        bus.send(message.createReply());
        return true;
    }

    QDBusConnection bus;
    QList<QDBusMessage> registered;
    bool hasHost = true;

  private:
    QString m_name;
};

class TrayTest : public testing::Test {
  protected:
    QDBusMessage call(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments) {
        auto message =
            QDBusMessage::createMethodCall(program.baseService(), path, interface, method);
        message.setArguments(arguments);
        return callAndWait(client, message);
    }
    QDBusMessage onMenu(const QString& method, const QVariantList& arguments) {
        return call(u"/StatusNotifierItem/Menu"_s, u"com.canonical.dbusmenu"_s, method, arguments);
    }
    QStringList shownTitles() {
        const auto answer = onMenu(u"GetLayout"_s, {0, -1, QStringList()});
        DBusMenuLayout layout;
        answer.arguments().value(1).value<QDBusArgument>() >> layout;
        QStringList titles;
        for (const auto& child : layout.children)
            titles.append(child.properties.value(u"label"_s, u"--"_s).toString());
        return titles;
    }
    std::vector<MenuEntry> menu() {
        const auto remember = [this](const QString& what) {
            return [this, what] { chosen.append(what); };
        };
        return {{isPlaying ? u"Pause"_s : u"Play"_s, true, {}, remember(u"toggle"_s), {}},
                {},
                {u"Next_track"_s, false, {}, remember(u"next"_s), {}}};
    }

    PrivateBus bus;
    QDBusConnection program = bus.connect();
    QDBusConnection client = bus.connect();
    bool isPlaying = false;
    QStringList chosen;
};

const auto watcher = u"org.kde.StatusNotifierWatcher"_s;

} // namespace

TEST_F(TrayTest, ShowsItselfToEveryTrayThatComes) {
    TrayIcon icon(program.name(), u"Halvane"_s, [this] { return menu(); });
    EXPECT_FALSE(icon.isShown());
    for (int round = 0; round < 2; ++round) {
        Panel panel(bus, watcher);
        ASSERT_TRUE(waitFor([&] { return icon.isShown(); }));
        ASSERT_EQ(panel.registered.size(), 1);
        EXPECT_EQ(panel.registered[0].arguments()[0].toString(), program.baseService());
        panel.bus.unregisterService(watcher);
        ASSERT_TRUE(waitFor([&] { return !icon.isShown(); }));
    }
    Panel blind(bus, u"org.kde.Something"_s);
    blind.hasHost = false;
    blind.bus.registerService(watcher);
    ASSERT_TRUE(waitFor([&] { return !blind.registered.isEmpty(); }));
    EXPECT_FALSE(icon.isShown()) << "a watcher that shows nothing is no tray";
}

TEST_F(TrayTest, TellsOfClicksAndWheel) {
    TrayIcon icon(program.name(), u"Halvane"_s, [this] { return menu(); });
    QList<QPoint> clicks;
    QList<int> steps;
    QObject::connect(&icon, &TrayIcon::clicked, [&](QPoint where) { clicks.append(where); });
    QObject::connect(&icon, &TrayIcon::scrolled, [&](int by) { steps.append(by); });
    const auto item = [&](const QString& method, const QVariantList& arguments) {
        return call(u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, method, arguments);
    };
    item(u"Activate"_s, {100, 20});
    item(u"Scroll"_s, {120, u"vertical"_s});
    item(u"Scroll"_s, {-240, u"vertical"_s});
    item(u"Scroll"_s, {60, u"vertical"_s});
    item(u"Scroll"_s, {60, u"vertical"_s}); // half a step and half a step
    item(u"Scroll"_s, {1, u"vertical"_s});
    item(u"Scroll"_s, {120, u"Horizontal"_s});
    EXPECT_THAT(clicks, ElementsAre(QPoint(100, 20)));
    EXPECT_THAT(steps, ElementsAre(1, -2, 1, 1));

    icon.setIcon({}, {{QSize(1, 1), QByteArray("\xff\x01\x02\x03", 4)}});
    const auto answer = call(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s,
                             u"Get"_s, {u"org.kde.StatusNotifierItem"_s, u"IconPixmap"_s});
    const auto pixmap = answer.arguments()[0].value<QDBusVariant>().variant();
    EXPECT_EQ(pixmap.value<QDBusArgument>().currentSignature(), u"a(iiay)"_s);

    icon.setToolTip(u"Second - Artist & <i>Co"_s);
    const auto tip = call(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                          {u"org.kde.StatusNotifierItem"_s, u"ToolTip"_s});
    const auto shown = tip.arguments()[0].value<QDBusVariant>().variant().value<QDBusArgument>();
    EXPECT_EQ(qdbus_cast<TrayToolTip>(shown).text, u"Second - Artist &amp; &lt;i&gt;Co"_s);
}

TEST_F(TrayTest, ItsMenuIsBuiltAfreshWheneverItOpens) {
    TrayIcon icon(program.name(), u"Halvane"_s, [this] { return menu(); });
    EXPECT_THAT(shownTitles(), ElementsAre(u"Play"_s, u"--"_s, u"Next__track"_s));
    isPlaying = true;
    EXPECT_TRUE(onMenu(u"AboutToShow"_s, {0}).arguments()[0].toBool());
    EXPECT_THAT(shownTitles(), ElementsAre(u"Pause"_s, u"--"_s, u"Next__track"_s));

    const auto click = [&](int id) {
        onMenu(u"Event"_s, {id, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), 0U});
    };
    click(1);
    click(2);
    click(3); // is disabled
    click(99);
    EXPECT_THAT(chosen, ElementsAre(u"toggle"_s));
}

TEST_F(TrayTest, WindowsAreRegisteredWithAMenuBarOfTheDesktop) {
    GlobalMenu global(program.name(), [this] { return menu(); });
    global.registerWindow(42);
    EXPECT_FALSE(global.isAvailable());
    Panel bar(bus, u"com.canonical.AppMenu.Registrar"_s);
    ASSERT_TRUE(waitFor([&] { return global.isAvailable() && !bar.registered.isEmpty(); }));
    EXPECT_EQ(bar.registered[0].arguments()[0].toUInt(), 42U);
    EXPECT_EQ(bar.registered[0].arguments()[1].value<QDBusObjectPath>().path(),
              u"/org/halvane/Halvane/MenuBar"_s);
}
