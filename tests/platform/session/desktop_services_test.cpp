// SPDX-License-Identifier: MIT
#include "platform/session/dbus_notifications.h"
#include "platform/session/dbus_sleep_inhibitor.h"
#include "platform/session/file_manager.h"
#include "platform/session/motion_preference.h"
#include "platform/session/portal_file_chooser.h"
#include "platform/session/session_bus.h"
#include "platform/session/single_instance.h"
#include "platform/sound/thread_priority.h"
#include "support/private_bus.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// A service of the desktop that keeps what it is asked and answers as the test says.
class Service : public QDBusVirtualObject {
  public:
    Service(PrivateBus& privateBus, const QString& name)
        : bus(privateBus.connect())
        , m_name(name) {
        bus.registerVirtualObject(u"/"_s, this, QDBusConnection::SubPath);
        appear();
    }
    void appear() { bus.registerService(m_name); }
    void disappear() { bus.unregisterService(m_name); }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        asked.append(message);
        if (!answers.contains(message.member()))
            return false;
        if (hangs) {
            message.setDelayedReply(true);
            waiting.append(message);
        } else {
            answer(message);
        }
        return true;
    }
    void answer(const QDBusMessage& message) {
        const auto make = answers.value(message.member());
        bus.send(message.createReply(make(message)));
    }
    [[nodiscard]] QList<QDBusMessage> askedFor(const QString& member) const {
        QList<QDBusMessage> found;
        for (const auto& message : asked) {
            if (message.member() == member)
                found.append(message);
        }
        return found;
    }

    QDBusConnection bus;
    QHash<QString, std::function<QVariantList(const QDBusMessage&)>> answers;
    QList<QDBusMessage> asked;
    QList<QDBusMessage> waiting; // unanswered, while it hangs
    bool hangs = false;

  private:
    QString m_name;
};

class NotificationServer : public Service {
  public:
    NotificationServer(PrivateBus& privateBus, const QStringList& capabilities)
        : Service(privateBus, u"org.freedesktop.Notifications"_s) {
        answers[u"GetCapabilities"_s] = [capabilities](auto&) {
            return QVariantList{capabilities};
        };
        answers[u"Notify"_s] = [this](const QDBusMessage& message) {
            const auto replaces = message.arguments()[1].toUInt();
            return QVariantList{replaces != 0 ? replaces : ++m_lastId};
        };
    }
    [[nodiscard]] QList<QDBusMessage> shown() const { return askedFor(u"Notify"_s); }
    void close(uint id) {
        auto signal =
            QDBusMessage::createSignal(u"/org/freedesktop/Notifications"_s,
                                       u"org.freedesktop.Notifications"_s, u"NotificationClosed"_s);
        bus.send(signal << id << 2U);
    }

  private:
    uint m_lastId = 6;
};

Notification track(const QString& title) {
    return {.identifier = u"nowPlaying"_s,
            .title = title,
            .body = u"Simon & <Garfunkel> - "_s,
            .imagePath = u"/covers/a b.png"_s};
}

bool waitForCount(const Service& service, const QString& member, int count) {
    return waitFor([&] { return service.askedFor(member).size() >= count; });
}

class DesktopServices : public testing::Test {
  protected:
    // Returns when everything that was sent on the connection before has been delivered.
    void settle(QDBusConnection connection) {
        callAndWait(connection,
                    QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s,
                                                   u"org.freedesktop.DBus.Peer"_s, u"Ping"_s));
        QCoreApplication::processEvents();
    }

    PrivateBus bus;
    QDBusConnection program = bus.connect();
};

} // namespace

TEST_F(DesktopServices, ANotificationReplacesTheOneBefore) {
    NotificationServer server(bus, {u"body"_s, u"body-markup"_s});
    DBusNotifications notifications(program.name());
    notifications.post(track(u"A & B"_s));
    ASSERT_TRUE(waitForCount(server, u"Notify"_s, 1));
    settle(program);
    notifications.post(track(u"C"_s));
    ASSERT_TRUE(waitForCount(server, u"Notify"_s, 2));

    const auto first = server.shown()[0].arguments();
    EXPECT_EQ(first[0].toString(), u"Halvane"_s);
    EXPECT_EQ(first[1].toUInt(), 0U);
    EXPECT_EQ(first[3].toString(), u"A & B"_s) << "a title is never markup";
    EXPECT_EQ(first[4].toString(), u"Simon &amp; &lt;Garfunkel&gt; - "_s);
    const auto hints = qdbus_cast<QVariantMap>(first[6].value<QDBusArgument>());
    EXPECT_EQ(hints[u"desktop-entry"_s].toString(), u"org.halvane.Halvane"_s);
    EXPECT_EQ(hints[u"image-path"_s].toString(), u"file:///covers/a%20b.png"_s);
    EXPECT_EQ(hints[u"urgency"_s].typeId(), QMetaType::UChar);
    EXPECT_TRUE(hints[u"transient"_s].toBool());
    EXPECT_EQ(server.shown()[1].arguments()[1].toUInt(), 7U);

    // A notification that the user has closed is not replaced any more.
    settle(program);
    server.close(7);
    settle(program);
    notifications.post(track(u"D"_s));
    ASSERT_TRUE(waitForCount(server, u"Notify"_s, 3));
    EXPECT_EQ(server.shown()[2].arguments()[1].toUInt(), 0U);
}

TEST_F(DesktopServices, AHangingServerHoldsUpNothingAndGetsOnlyTheNewest) {
    NotificationServer server(bus, {u"body"_s});
    server.hangs = true;
    DBusNotifications notifications(program.name());
    for (const auto& title : {u"A"_s, u"B"_s, u"C"_s})
        notifications.post(track(title));
    ASSERT_TRUE(waitForCount(server, u"GetCapabilities"_s, 1));
    settle(program);
    EXPECT_THAT(server.asked, SizeIs(1));

    server.hangs = false;
    server.answer(server.waiting[0]);
    ASSERT_TRUE(waitForCount(server, u"Notify"_s, 1));
    settle(program);
    EXPECT_THAT(server.shown(), SizeIs(1));
    EXPECT_EQ(server.shown()[0].arguments()[3].toString(), u"C"_s);
}

TEST_F(DesktopServices, ANewServerIsAskedAfreshAndNotAskedToReplace) {
    DBusNotifications notifications(program.name());
    {
        NotificationServer server(bus, {u"body-markup"_s});
        notifications.post(track(u"A"_s));
        ASSERT_TRUE(waitForCount(server, u"Notify"_s, 1));
        settle(program);
        server.disappear();
        settle(program);
    }
    NotificationServer server(bus, {});
    settle(program);
    notifications.post(track(u"B"_s));
    ASSERT_TRUE(waitForCount(server, u"Notify"_s, 1));
    EXPECT_EQ(server.shown()[0].arguments()[1].toUInt(), 0U);
    EXPECT_EQ(server.shown()[0].arguments()[4].toString(), u"Simon & <Garfunkel> - "_s)
        << "this one has no markup";
}

TEST_F(DesktopServices, WithoutAServerNothingHappens) {
    DBusNotifications notifications(program.name());
    notifications.requestAuthorization();
    notifications.post(track(u"A"_s));
    settle(program);
    NotificationServer server(bus, {});
    settle(program);
    EXPECT_THAT(server.shown(), IsEmpty()) << "what nobody could show is not shown late";
}

TEST_F(DesktopServices, AnyOfTheDesktopsWaysAsksForLessMotion) {
    Service portal(bus, u"org.freedesktop.portal.Desktop"_s);
    QVariantMap values; // by key
    portal.answers[u"Read"_s] = [&](const QDBusMessage& message) {
        const QDBusVariant value(values.value(message.arguments().at(1).toString(), QString()));
        return QVariantList{QVariant::fromValue(QDBusVariant(QVariant::fromValue(value)))};
    };
    const struct {
        QString group, key;
        QVariant little, usual;
    } ways[]{
        {u"org.freedesktop.appearance"_s, u"reduced-motion"_s, QVariant::fromValue<uint>(1),
         QVariant::fromValue<uint>(0)},
        {u"org.gnome.desktop.interface"_s, u"enable-animations"_s, false, true},
        {u"org.kde.kdeglobals.KDE"_s, u"AnimationDurationFactor"_s, u"0"_s, u"1"_s},
    };
    int asked = 0;
    for (const auto& way : ways) {
        SCOPED_TRACE(qPrintable(way.key));
        values = {{way.key, way.little}};
        MotionPreference motion(program.name());
        EXPECT_FALSE(motion.isReduced());
        EXPECT_TRUE(waitFor([&] { return motion.isReduced(); }));
        ASSERT_TRUE(waitForCount(portal, u"Read"_s, asked += 3));
        settle(program); // it has got all answers
        const auto tell = [&](const QString& group, const QVariant& value) {
            auto signal = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                                     u"org.freedesktop.portal.Settings"_s,
                                                     u"SettingChanged"_s);
            EXPECT_TRUE(portal.bus.send(signal << group << way.key
                                               << QVariant::fromValue(QDBusVariant(value))))
                << portal.bus.lastError().message().toStdString();
        };
        tell(u"org.example"_s, way.usual);
        settle(portal.bus);
        settle(program);
        EXPECT_TRUE(motion.isReduced());
        tell(way.group, way.usual);
        EXPECT_TRUE(waitFor([&] { return !motion.isReduced(); }));
    }
}

TEST_F(DesktopServices, SuspendIsHeldOffByThePortalOnlyWhilePlaying) {
    Service portal(bus, u"org.freedesktop.portal.Desktop"_s);
    const QDBusObjectPath request(u"/org/freedesktop/portal/desktop/request/1/x"_s);
    portal.answers[u"Inhibit"_s] = [&](auto&) {
        return QVariantList{QVariant::fromValue(request)};
    };
    portal.answers[u"Close"_s] = [](auto&) { return QVariantList(); };
    DBusSleepInhibitor inhibitor(program.name(), program.name());

    inhibitor.setInhibited(true);
    inhibitor.setInhibited(true);
    ASSERT_TRUE(waitForCount(portal, u"Inhibit"_s, 1));
    settle(program);
    EXPECT_EQ(portal.asked[0].arguments()[1].toUInt(), 4U) << "suspend, and nothing else";
    inhibitor.setInhibited(false);
    ASSERT_TRUE(waitForCount(portal, u"Close"_s, 1));
    EXPECT_EQ(portal.asked.last().path(), request.path());
    EXPECT_THAT(portal.asked, SizeIs(2));

    // A pause before the portal has answered lets go when the answer comes.
    portal.hangs = true;
    inhibitor.setInhibited(true);
    ASSERT_TRUE(waitForCount(portal, u"Inhibit"_s, 2));
    inhibitor.setInhibited(false);
    portal.hangs = false;
    portal.answer(portal.waiting[0]);
    EXPECT_TRUE(waitForCount(portal, u"Close"_s, 2));
}

TEST_F(DesktopServices, SuspendIsHeldOffAgainWhenThePortalComesBack) {
    const auto makePortal = [this] {
        auto portal = std::make_unique<Service>(bus, u"org.freedesktop.portal.Desktop"_s);
        portal->answers[u"Inhibit"_s] = [](auto&) {
            return QVariantList{QVariant::fromValue(QDBusObjectPath(u"/request/1"_s))};
        };
        portal->answers[u"Close"_s] = [](auto&) { return QVariantList(); };
        return portal;
    };
    static int complaints; // the handler can keep nothing
    complaints = 0;
    const auto before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            complaints += text.contains(u"suspend can't"_s) ? 1 : 0;
        });
    DBusSleepInhibitor inhibitor(program.name(), program.name());
    for (int pause = 0; pause < 3; ++pause) {
        inhibitor.setInhibited(true);
        settle(program);
        settle(program);
        inhibitor.setInhibited(false);
    }
    EXPECT_TRUE(waitFor([&] { return complaints > 0; }));
    inhibitor.setInhibited(true);
    settle(program);
    for (int life = 0; life < 2; ++life) {
        const auto portal = makePortal();
        EXPECT_TRUE(waitForCount(*portal, u"Inhibit"_s, 1)) << life;
        settle(program);
        portal->disappear();
        settle(program);
    }
    inhibitor.setInhibited(false);
    const auto portal = makePortal();
    settle(program);
    EXPECT_THAT(portal->asked, IsEmpty()) << "nothing plays";
    EXPECT_EQ(complaints, 1);
    qInstallMessageHandler(before);
}

TEST_F(DesktopServices, WithoutAPortalTheLoginManagerHoldsSuspendOff) {
    Service login(bus, u"org.freedesktop.login1"_s);
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
    login.answers[u"Inhibit"_s] = [&](auto&) {
        return QVariantList{QVariant::fromValue(QDBusUnixFileDescriptor(ends[1]))};
    };
    DBusSleepInhibitor inhibitor(program.name(), program.name());
    inhibitor.setInhibited(true);
    ASSERT_TRUE(waitForCount(login, u"Inhibit"_s, 1));
    EXPECT_EQ(login.asked[0].arguments()[0].toString(), u"sleep"_s) << "never the screen lock";
    settle(program);
    login.asked.clear();
    close(ends[1]);
    char byte;
    EXPECT_EQ(read(ends[0], &byte, 1), -1) << "the lock is held as long as its file is open";
    inhibitor.setInhibited(false);
    // QtDBus keeps the message that carried the file for a moment longer.
    EXPECT_TRUE(waitFor([&] { return read(ends[0], &byte, 1) == 0; }));
    close(ends[0]);
}

namespace {

class FallbackChooser final : public FileChooser {
  public:
    void choose(const FileChooserRequest& request,
                std::function<void(const QStringList&)> chosen) override {
        asked.append(request.title);
        chosen({u"/fallback"_s});
    }
    void chooseTarget(const FileTargetRequest& request,
                      std::function<void(const QString&)> chosen) override {
        asked.append(request.title);
        chosen(u"/fallback.m3u8"_s);
    }
    QStringList asked;
};

} // namespace

TEST_F(DesktopServices, FilesAreChosenInThePortalsPanel) {
    Service portal(bus, u"org.freedesktop.portal.Desktop"_s);
    QString handle;
    const auto optionsOf = [](const QDBusMessage& message) {
        return qdbus_cast<QVariantMap>(message.arguments()[2].value<QDBusArgument>());
    };
    const auto begin = [&](const QDBusMessage& message) {
        const auto sender = message.service().mid(1).replace(u'.', u'_');
        handle = u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(
            sender, optionsOf(message)[u"handle_token"_s].toString());
        return QVariantList{QVariant::fromValue(QDBusObjectPath(handle))};
    };
    portal.answers[u"OpenFile"_s] = [&](const QDBusMessage& message) {
        EXPECT_TRUE(optionsOf(message)[u"multiple"_s].toBool());
        EXPECT_TRUE(optionsOf(message)[u"directory"_s].toBool());
        return begin(message);
    };
    FallbackChooser fallback;
    PortalFileChooser chooser(
        program.name(), [] { return u"x11:2a"_s; }, fallback);
    const FileChooserRequest request{.title = u"Import Music Folder"_s,
                                     .prompt = u"Import"_s,
                                     .message = {},
                                     .files = false,
                                     .directories = true};
    QList<QStringList> chosen;
    const auto respond = [&](uint response, const QStringList& uris) {
        auto signal =
            QDBusMessage::createSignal(handle, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        portal.bus.send(signal << response << QVariantMap{{u"uris"_s, uris}});
    };
    const auto choose = [&](int call) {
        chooser.choose(request, [&](const QStringList& paths) { chosen.append(paths); });
        return waitForCount(portal, u"OpenFile"_s, call);
    };

    ASSERT_TRUE(choose(1));
    EXPECT_EQ(portal.asked[0].arguments()[0].toString(), u"x11:2a"_s);
    respond(1, {}); // cancelled
    settle(portal.bus);
    ASSERT_TRUE(choose(2));
    respond(0, {u"file:///music/%E6%AD%8C%20%231"_s, u"file:///b"_s});
    ASSERT_TRUE(waitFor([&] { return !chosen.isEmpty(); }));
    EXPECT_THAT(chosen, ElementsAre(QStringList{u"/music/歌 #1"_s, u"/b"_s}));
    EXPECT_THAT(fallback.asked, IsEmpty());

    portal.answers[u"SaveFile"_s] = [&](const QDBusMessage& message) {
        EXPECT_EQ(optionsOf(message)[u"current_name"_s].toString(), u"夜.m3u8"_s);
        return begin(message);
    };
    const FileTargetRequest target{u"Export"_s, u"Export"_s, u"夜.m3u8"_s};
    QString written;
    chooser.chooseTarget(target, [&](const QString& path) { written = path; });
    ASSERT_TRUE(waitForCount(portal, u"SaveFile"_s, 1));
    respond(0, {u"file:///lists/%E5%A4%9C.xspf"_s});
    ASSERT_TRUE(waitFor([&] { return !written.isEmpty(); }));
    EXPECT_EQ(written, u"/lists/夜.xspf"_s);

    portal.disappear();
    chooser.chooseTarget(target, [&](const QString& path) { written = path; });
    ASSERT_TRUE(waitFor([&] { return written == u"/fallback.m3u8"_s; }));
    chooser.choose(request, [&](const QStringList& paths) { chosen.append(paths); });
    ASSERT_TRUE(waitFor([&] { return chosen.size() == 2; }));
    EXPECT_EQ(chosen.last(), QStringList{u"/fallback"_s});
}

TEST_F(DesktopServices, AFileIsShownInTheFileManagerOrElseItsFolderIsOpened) {
    QStringList opened;
    FileManager files(program.name(), [&](const QString& folder) { opened.append(folder); });
    {
        Service manager(bus, u"org.freedesktop.FileManager1"_s);
        manager.answers[u"ShowItems"_s] = [](auto&) { return QVariantList(); };
        files.show(u"/music/歌 #1.flac"_s);
        ASSERT_TRUE(waitForCount(manager, u"ShowItems"_s, 1));
        EXPECT_EQ(manager.asked[0].arguments()[0].toStringList(),
                  QStringList{u"file:///music/%E6%AD%8C%20%231.flac"_s});
        settle(program);
        EXPECT_THAT(opened, IsEmpty());
        manager.disappear();
    }
    files.show(u"/music/歌 #1.flac"_s);
    EXPECT_TRUE(waitFor([&] { return opened == QStringList{u"/music"_s}; }));
}

TEST_F(DesktopServices, AnotherStartReachesTheRunningProgram) {
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
    SingleInstance running(program.name());
    QStringList heard;
    QObject::connect(&running, &SingleInstance::activated,
                     [&](const QString& token) { heard.append(u"activate "_s + token); });
    QObject::connect(&running, &SingleInstance::opened, [&](const auto& files, const auto& token) {
        heard.append(u"open %1 %2"_s.arg(QUrl::toStringList(files).join(u'|'), token));
    });
    QObject::connect(&running, &SingleInstance::actionActivated,
                     [&](const auto& action, const auto& token) {
                         heard.append(u"action %1 %2"_s.arg(action, token));
                     });
    ASSERT_TRUE(running.claim());
    SingleInstance second(bus.connect().name());
    EXPECT_FALSE(second.claim());

    const auto call = [&](const QString& method, const QVariantList& arguments) {
        auto message =
            QDBusMessage::createMethodCall(u"org.halvane.Halvane"_s, u"/org/halvane/Halvane"_s,
                                           u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments);
        return callAndWait(bus.connect(), message).type() == QDBusMessage::ReplyMessage;
    };
    EXPECT_TRUE(call(u"Activate"_s, {QVariantMap{{u"activation-token"_s, u"t1"_s}}}));
    EXPECT_TRUE(call(u"Open"_s, {QStringList{u"file:///a%20b"_s, u"file:///c"_s},
                                 QVariantMap{{u"desktop-startup-id"_s, u"t2"_s}}}));
    running.setActionCheck([](const QString& action) {
        return action == "Dance"_L1 ? u"\"Dance\" is no action"_s : QString();
    });
    EXPECT_TRUE(call(u"ActivateAction"_s, {u"Next"_s, QVariantList(), QVariantMap()}));
    EXPECT_TRUE(call(u"ActivateAction"_s, {u"Mute"_s, QVariantList{true}, QVariantMap()}));
    EXPECT_TRUE(call(u"ActivateAction"_s, {u"Seek"_s, QVariantList{u"+5"_s}, QVariantMap()}));
    EXPECT_FALSE(call(u"ActivateAction"_s, {u"Dance"_s, QVariantList(), QVariantMap()}));
    EXPECT_THAT(heard, ElementsAre(u"activate t1"_s, u"open file:///a b|file:///c t2"_s,
                                   u"action Next "_s, u"action Mute=on "_s, u"action Seek=+5 "_s));
}

TEST_F(DesktopServices, AStartDoesNotWaitForASilentBus) {
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
    EXPECT_EQ(handOver({}), HandOver::nobodyThere);
    bus.freeze();
    EXPECT_EQ(handOver({}, std::chrono::milliseconds(50)), HandOver::busSilent);
    bus.thaw(); // QtDBus would wait for the bus at the end otherwise
}

TEST_F(DesktopServices, AThreadThatMayNotRaiseItselfIsRaisedByRealtimeKit) {
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    Service kit(bus, u"org.freedesktop.RealtimeKit1"_s);
    pid_t thread = 0;
    std::thread([&thread] {
        // The limit of an ordinary user, whoever runs the test.
        const rlimit none{0, 0};
        setrlimit(RLIMIT_NICE, &none);
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct capabilities[2]{};
        syscall(SYS_capget, &header, capabilities);
        capabilities[0].effective &= ~(1U << CAP_SYS_NICE);
        syscall(SYS_capset, &header, capabilities);
        thread = gettid();
        preferThisThread();
    }).join();
    ASSERT_TRUE(waitForCount(kit, u"MakeThreadHighPriority"_s, 1));
    EXPECT_EQ(kit.asked[0].arguments()[0].toULongLong(), static_cast<quint64>(thread));
    EXPECT_EQ(kit.asked[0].arguments()[1].toInt(), -11);
}

TEST_F(DesktopServices, ALostBusIsNoticed) {
    // QtDBus keeps one session bus for each process, so the test uses a connection of its own.
    bool lost = false;
    SessionBus session(program.name());
    QObject::connect(&session, &SessionBus::lost, [&] { lost = true; });
    EXPECT_TRUE(session.isConnected());
    bus.kill();
    EXPECT_TRUE(waitFor([&] { return lost; }));
    EXPECT_FALSE(session.isConnected());
}
