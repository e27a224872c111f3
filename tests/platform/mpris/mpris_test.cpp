// SPDX-License-Identifier: MIT
#include "platform/mpris/mpris_controls.h"
#include "support/private_bus.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <QXmlStreamReader>

#include <gmock/gmock.h>

#include <future>
#include <limits>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

namespace {

const auto name = u"org.mpris.MediaPlayer2.halvane"_s;
const auto path = u"/org/mpris/MediaPlayer2"_s;
const auto rootInterface = u"org.mpris.MediaPlayer2"_s;
const auto playerInterface = u"org.mpris.MediaPlayer2.Player"_s;
const auto propertiesInterface = u"org.freedesktop.DBus.Properties"_s;

// A client of the bus, which hears signals and asks questions.
class Client : public QObject {
    Q_OBJECT

  public:
    explicit Client(PrivateBus& privateBus)
        : bus(privateBus.connect()) {
        bus.connect(name, path, propertiesInterface, u"PropertiesChanged"_s, this,
                    SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
        bus.connect(name, path, playerInterface, u"Seeked"_s, this, SLOT(seekedTo(qlonglong)));
    }

    QDBusMessage call(const QString& interface, const QString& method,
                      const QVariantList& arguments) {
        auto message = QDBusMessage::createMethodCall(name, path, interface, method);
        message.setArguments(arguments);
        return callAndWait(bus, message);
    }
    QVariant get(const QString& interface, const QString& property) {
        const auto answer = call(propertiesInterface, u"Get"_s, {interface, property});
        return answer.arguments().value(0).value<QDBusVariant>().variant();
    }
    QDBusMessage set(const QString& property, const QVariant& value,
                     const QString& interface = playerInterface) {
        return call(propertiesInterface, u"Set"_s,
                    {interface, property, QVariant::fromValue(QDBusVariant(value))});
    }
    // Returns when every signal so far has been heard.
    void catchUp() { get(rootInterface, u"Identity"_s); }

    QDBusConnection bus;
    QList<QStringList> changes; // names of the properties of each signal
    QVariantMap latest;
    QList<qlonglong> seeks;

  private Q_SLOTS:
    void propertiesChanged(const QString&, const QVariantMap& changed, const QStringList&) {
        changes.append(changed.keys());
        latest.insert(changed);
    }
    void seekedTo(qlonglong position) { seeks.append(position); }
};

QString signatureOf(const QVariant& value) {
    if (value.metaType() == QMetaType::fromType<QDBusArgument>())
        return value.value<QDBusArgument>().currentSignature();
    return QString::fromLatin1(QDBusMetaType::typeToSignature(value.metaType()));
}

NowPlayingInfo someTrack() {
    return {.entry = QUuid(u"{01234567-89ab-cdef-0123-456789abcdef}"_s),
            .title = u"Title"_s,
            .artist = u"Artist"_s,
            .albumTitle = u"Album"_s,
            .albumArtist = u"Band"_s,
            .genre = u"Jazz"_s,
            .discNumber = 1,
            .trackNumber = 2,
            .elapsedSeconds = 1.5,
            .playbackRate = 1,
            .durationSeconds = 200.25,
            .artworkPath = u"/covers/a b#100%.png"_s,
            .filePath = u"/music/歌 1.flac"_s};
}

constexpr MediaCapabilities everything{true, true, true, true, true};

class Mpris : public testing::Test {
  protected:
    Mpris() {
        controls.setHandlers({
            .play = [this] { return heard(u"play"_s); },
            .pause = [this] { return heard(u"pause"_s); },
            .togglePlayPause = [this] { return heard(u"toggle"_s); },
            .stop = [this] { return heard(u"stop"_s); },
            .nextTrack = [this] { return heard(u"next"_s); },
            .previousTrack = [this] { return heard(u"previous"_s); },
            .changePlaybackPosition = [this](double s) { return heard(u"position %1"_s.arg(s)); },
            .openFile = [this](const QString& file) { heard(u"open "_s + file); },
            .setLoop = [this](MediaLoop loop) { heard(u"loop %1"_s.arg(static_cast<int>(loop))); },
            .setShuffle = [this](bool on) { heard(u"shuffle %1"_s.arg(on)); },
            .setVolume = [this](double v) { heard(u"volume %1"_s.arg(v)); },
            .elapsedSeconds = [this] { return elapsed; },
        });
        controls.setWindowHandlers({
            .raise = [this] { heard(u"raise"_s); },
            .quit = [this] { heard(u"quit"_s); },
        });
    }

    CommandResult heard(const QString& command) {
        commands.append(command);
        return CommandResult::success;
    }
    void playSomething() {
        controls.publishCapabilities(everything);
        controls.publish(someTrack(), MediaPlaybackState::playing);
        client.catchUp();
        client.changes.clear();
    }

    PrivateBus bus;
    MprisControls controls{bus.connect().name()};
    Client client{bus};
    QStringList commands;
    double elapsed = 12.5;
};

} // namespace

TEST_F(Mpris, EveryPropertyHasItsTypeAndAccess) {
    playSomething();
    // Types and names. A star marks those that can be set.
    const QHash<QString, QString> table{
        {rootInterface,
         u"b CanQuit, b Fullscreen, b CanSetFullscreen, b CanRaise, b HasTrackList, s Identity, "
         "s DesktopEntry, as SupportedUriSchemes, as SupportedMimeTypes"_s},
        {playerInterface,
         u"s PlaybackStatus, s LoopStatus*, d Rate*, b Shuffle*, a{sv} Metadata, d Volume*, "
         "x Position, d MinimumRate, d MaximumRate, b CanGoNext, b CanGoPrevious, b CanPlay, "
         "b CanPause, b CanSeek, b CanControl"_s},
    };

    // The object's own description.
    QHash<QString, QStringList> properties;
    QStringList members; // of the two interfaces, with the types of their arguments
    QString interface;
    const auto xml =
        client.call(u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s, {}).arguments();
    for (QXmlStreamReader reader(xml.value(0).toString()); !reader.atEnd(); reader.readNext()) {
        const auto of = [&reader](QLatin1StringView attribute) {
            return reader.attributes().value(attribute).toString();
        };
        if (!reader.isStartElement())
            continue;
        if (reader.name() == "interface"_L1)
            interface = of("name"_L1);
        else if (!interface.startsWith(rootInterface))
            continue;
        else if (reader.name() == "property"_L1)
            properties[interface] += of("type"_L1) + u' ' + of("name"_L1) +
                                     (of("access"_L1) == "readwrite"_L1 ? u"*"_s : QString());
        else if (reader.name() == "method"_L1 || reader.name() == "signal"_L1)
            members += of("name"_L1) + u' ';
        else if (reader.name() == "arg"_L1)
            members.last() += of("type"_L1);
    }
    for (auto it = table.cbegin(); it != table.cend(); ++it) {
        const auto expected = it.value().split(u", "_s);
        EXPECT_THAT(properties[it.key()], UnorderedElementsAreArray(expected));
        for (const QString& property : expected) {
            const auto words = property.chopped(property.endsWith(u'*') ? 1 : 0).split(u' ');
            EXPECT_EQ(signatureOf(client.get(it.key(), words[1])), words[0])
                << words[1].toStdString();
        }
    }
    EXPECT_THAT(members, UnorderedElementsAre(u"Raise "_s, u"Quit "_s, u"Next "_s, u"Previous "_s,
                                              u"Pause "_s, u"PlayPause "_s, u"Stop "_s, u"Play "_s,
                                              u"Seek x"_s, u"SetPosition ox"_s, u"OpenUri s"_s,
                                              u"Seeked x"_s));
}

TEST_F(Mpris, MetadataIsTypedAndEncoded) {
    playSomething();
    const auto argument = client.get(playerInterface, u"Metadata"_s).value<QDBusArgument>();
    const auto metadata = qdbus_cast<QVariantMap>(argument);
    const QMap<QString, QString> signatures{
        {u"mpris:trackid"_s, u"o"_s},      {u"mpris:length"_s, u"x"_s},
        {u"mpris:artUrl"_s, u"s"_s},       {u"xesam:title"_s, u"s"_s},
        {u"xesam:album"_s, u"s"_s},        {u"xesam:artist"_s, u"as"_s},
        {u"xesam:genre"_s, u"as"_s},       {u"xesam:url"_s, u"s"_s},
        {u"xesam:albumArtist"_s, u"as"_s}, {u"xesam:discNumber"_s, u"i"_s},
        {u"xesam:trackNumber"_s, u"i"_s}};
    EXPECT_EQ(metadata.keys(), signatures.keys());
    for (auto it = metadata.cbegin(); it != metadata.cend(); ++it)
        EXPECT_EQ(signatureOf(it.value()), signatures[it.key()]) << it.key().toStdString();
    EXPECT_EQ(metadata[u"mpris:length"_s].toLongLong(), 200'250'000);
    EXPECT_EQ(metadata[u"mpris:artUrl"_s].toString(), u"file:///covers/a%20b%23100%25.png"_s);
    EXPECT_EQ(metadata[u"xesam:url"_s].toString(), u"file:///music/%E6%AD%8C%201.flac"_s);
    EXPECT_FALSE(
        metadata[u"mpris:trackid"_s].value<QDBusObjectPath>().path().startsWith(u"/org/mpris"_s));
}

TEST_F(Mpris, WithoutATrackThereIsNoMetadataAndNoPosition) {
    playSomething();
    controls.publish({}, MediaPlaybackState::stopped);
    EXPECT_EQ(client.get(playerInterface, u"PlaybackStatus"_s).toString(), u"Stopped"_s);
    const auto argument = client.get(playerInterface, u"Metadata"_s).value<QDBusArgument>();
    EXPECT_THAT(qdbus_cast<QVariantMap>(argument), IsEmpty());
    EXPECT_EQ(client.get(playerInterface, u"Position"_s).toLongLong(), 0);
}

TEST_F(Mpris, ChangesAreSignalledOnceTogetherAndOnlyWhenTheyAreOnes) {
    controls.publishCapabilities(everything);
    controls.publish(someTrack(), MediaPlaybackState::playing);
    controls.publishModes(MediaLoop::playlist, true, 0.5);
    client.catchUp();
    ASSERT_THAT(client.changes,
                ElementsAre(QStringList{u"CanGoNext"_s, u"CanGoPrevious"_s, u"CanPause"_s,
                                        u"CanPlay"_s, u"CanSeek"_s, u"LoopStatus"_s, u"Metadata"_s,
                                        u"PlaybackStatus"_s, u"Shuffle"_s, u"Volume"_s}));
    EXPECT_EQ(client.latest[u"LoopStatus"_s].toString(), u"Playlist"_s);
    client.changes.clear();

    // Neither the same values nor the position alone are a change.
    auto later = someTrack();
    later.elapsedSeconds = 99;
    controls.publishCapabilities(everything);
    controls.publish(later, MediaPlaybackState::playing);
    controls.publishModes(MediaLoop::playlist, true, 0.5);
    client.catchUp();
    EXPECT_THAT(client.changes, IsEmpty());

    controls.publish(later, MediaPlaybackState::paused);
    client.catchUp();
    controls.publishModes(MediaLoop::track, true, 0.5);
    client.catchUp();
    EXPECT_THAT(client.changes,
                ElementsAre(QStringList{u"PlaybackStatus"_s}, QStringList{u"LoopStatus"_s}));
    EXPECT_THAT(client.seeks, IsEmpty());
}

TEST_F(Mpris, AJumpIsSignalledWithTheNewPosition) {
    playSomething();
    controls.seeked(42.5);
    client.catchUp();
    EXPECT_THAT(client.seeks, ElementsAre(42'500'000));
    EXPECT_THAT(client.changes, IsEmpty());
    EXPECT_EQ(client.get(playerInterface, u"Position"_s).toLongLong(), 12'500'000)
        << "the position is read from the player at the moment of the question";
}

TEST_F(Mpris, CommandsReachThePlayer) {
    playSomething();
    const auto track = QVariant::fromValue(
        QDBusObjectPath(u"/org/halvane/Halvane/track/0123456789abcdef0123456789abcdef"_s));
    const auto staleTrack =
        QVariant::fromValue(QDBusObjectPath(u"/org/halvane/Halvane/track/ffff"_s));
    QTemporaryDir folder;
    const QString song = folder.filePath(u"歌 1.flac"_s);
    ASSERT_TRUE(QFile(song).open(QIODevice::WriteOnly));
    struct Row {
        QString method;
        QVariantList arguments;
        QString heard; // empty: nothing
        QString interface = playerInterface;
    };
    const std::vector<Row> table{
        {u"Play"_s, {}, u"play"_s},
        {u"Pause"_s, {}, u"pause"_s},
        {u"PlayPause"_s, {}, u"toggle"_s},
        {u"Stop"_s, {}, u"stop"_s},
        {u"Next"_s, {}, u"next"_s},
        {u"Previous"_s, {}, u"previous"_s},
        {u"Seek"_s, {qlonglong(5'000'000)}, u"position 17.5"_s},
        {u"Seek"_s, {qlonglong(-60'000'000)}, u"position 0"_s},
        {u"Seek"_s, {qlonglong(300'000'000)}, u"next"_s},
        {u"SetPosition"_s, {track, qlonglong(100'000'000)}, u"position 100"_s},
        {u"SetPosition"_s, {track, qlonglong(300'000'000)}, {}},
        {u"SetPosition"_s, {track, qlonglong(-1)}, {}},
        {u"SetPosition"_s, {staleTrack, qlonglong(1)}, {}},
        {u"OpenUri"_s,
         {QString::fromLatin1(QUrl::fromLocalFile(song).toEncoded())},
         u"open "_s + song},
        {u"Seek"_s, {std::numeric_limits<qlonglong>::max()}, u"next"_s},
        {u"Seek"_s, {std::numeric_limits<qlonglong>::min()}, u"position 0"_s},
        {u"Raise"_s, {}, u"raise"_s, rootInterface},
        {u"Quit"_s, {}, u"quit"_s, rootInterface},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.method.toStdString());
        commands.clear();
        EXPECT_EQ(client.call(row.interface, row.method, row.arguments).type(),
                  QDBusMessage::ReplyMessage);
        EXPECT_EQ(commands, row.heard.isEmpty() ? QStringList() : QStringList{row.heard});
    }
    commands.clear();
    for (const auto& uri : {u"https://example.org/a.mp3"_s, u"file://elsewhere/a.mp3"_s, u"a.mp3"_s,
                            u""_s, u"file:///nonexistent/a.mp3"_s})
        EXPECT_EQ(client.call(playerInterface, u"OpenUri"_s, {uri}).type(),
                  QDBusMessage::ErrorMessage)
            << uri.toStdString();
    EXPECT_THAT(commands, IsEmpty());
}

TEST(MprisOnAHangingDisk, OpenUriIsAnsweredAndLeftToTheOpening) {
    PrivateBus bus;
    auto disk = std::make_shared<std::promise<bool>>();
    MprisControls controls(bus.connect().name(), [answer = disk->get_future().share()](
                                                     const QString&) { return answer.get(); });
    QStringList opened;
    MediaCommandHandlers handlers;
    handlers.openFile = [&](const QString& file) { opened.append(file); };
    controls.setHandlers(handlers);
    Client client{bus};
    EXPECT_EQ(client.call(playerInterface, u"OpenUri"_s, {u"file:///hung/a.flac"_s}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(opened, QStringList{u"/hung/a.flac"_s});
    disk->set_value(false);
    client.catchUp();
    EXPECT_EQ(opened.size(), 1);
}

TEST_F(Mpris, PropertiesCanBeSetFromOutside) {
    playSomething();
    client.set(u"LoopStatus"_s, u"Track"_s);
    client.set(u"LoopStatus"_s, u"Sideways"_s);
    client.set(u"Shuffle"_s, true);
    client.set(u"Volume"_s, 0.25);
    client.set(u"Volume"_s, -3.0);
    for (const double nonsense :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()})
        client.set(u"Volume"_s, nonsense);
    client.set(u"Rate"_s, 1.0);
    client.set(u"Rate"_s, 0.0);
    EXPECT_THAT(commands, ElementsAre(u"loop 1"_s, u"shuffle 1"_s, u"volume 0.25"_s, u"volume 0"_s,
                                      u"pause"_s));
    EXPECT_EQ(client.set(u"Position"_s, qlonglong(1)).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(client.set(u"Fullscreen"_s, true, rootInterface).type(), QDBusMessage::ErrorMessage);
}

TEST_F(Mpris, WhatIsNotPossibleIsNotDone) {
    controls.publishCapabilities({});
    for (const auto& method : {u"Play"_s, u"Pause"_s, u"PlayPause"_s, u"Next"_s, u"Previous"_s})
        client.call(playerInterface, method, {});
    client.call(playerInterface, u"Seek"_s, {qlonglong(1)});
    EXPECT_THAT(commands, IsEmpty());
}

TEST_F(Mpris, ASecondPlayerTakesAnotherName) {
    const MprisControls second(bus.connect().name());
    const auto answer = callAndWait(
        client.bus,
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"ListNames"_s));
    const auto players = answer.arguments().value(0).toStringList().filter(name);
    EXPECT_EQ(players.size(), 2);
}

#include "mpris_test.moc"
