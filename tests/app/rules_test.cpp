// SPDX-License-Identifier: MIT
#include "app/app_delegate.h"
#include "app/arguments.h"
#include "app/commands/command_table.h"
#include "app/folders.h"
#include "app/remote/remote_action.h"
#include "app/remote/status_report.h"
#include "app/waveform_icon.h"
#include "app/windows/edge_resizer.h"
#include "app/windows/window_placement.h"
#include "platform/mpris/mpris_state.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeySequence>
#include <QRegularExpression>

#include <gmock/gmock.h>

#include <map>
#include <pwd.h>
#include <unistd.h>

using namespace halvane;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

QStringList listed(const CommandState& state) {
    QStringList lines;
    for (const auto& menu : menuTable()) {
        for (const auto& item : menu.items) {
            if (item.id == CommandId::separator)
                lines.append(menu.title + u" --"_s);
            else
                lines.append(menu.title + u" | "_s + item.title(state) + u" | "_s + item.keys +
                             (item.isEnabled && !item.isEnabled(state) ? u" | off"_s : QString()));
        }
    }
    return lines;
}

} // namespace

TEST(Commands, AreTheseInThisOrder) {
    EXPECT_EQ(listed({.isTextFocused = true}).join(u'\n'),
              QStringLiteral("File | Add to Library... | Ctrl+O\n"
                             "File | Import Music Folder... | Ctrl+I\n"
                             "File --\n"
                             "File | New Live List... | \n"
                             "File --\n"
                             "File | Export Listening Data... | \n"
                             "File | Import Listening Data... | \n"
                             "File --\n"
                             "File | Settings | Ctrl+,\n"
                             "File --\n"
                             "File | Quit | Ctrl+Q\n"
                             "Edit | Undo | Ctrl+Z\n"
                             "Edit | Redo | Ctrl+Shift+Z\n"
                             "Edit --\n"
                             "Edit | Cut | Ctrl+X\n"
                             "Edit | Copy | Ctrl+C\n"
                             "Edit | Paste | Ctrl+V\n"
                             "Edit | Select All | Ctrl+A\n"
                             "Edit --\n"
                             "Edit | Find | Ctrl+F\n"
                             "View | Toggle Now Playing Panel | Ctrl+Alt+N\n"
                             "View --\n"
                             "View | Sort Artists Alphabetically | \n"
                             "Playback | Play/Pause | Space\n"
                             "Playback | Next track | Ctrl+Right\n"
                             "Playback | Previous track | Ctrl+Left\n"
                             "Playback --\n"
                             "Playback | Shuffle on | Ctrl+Shift+S\n"
                             "Playback | Repeat off | Ctrl+Shift+R\n"
                             "Playback --\n"
                             "Playback | Stop after Current Track | \n"
                             "Playback | Sleep Timer: Off | \n"
                             "Playback --\n"
                             "Playback | Increase Volume | Ctrl+Up\n"
                             "Playback | Decrease Volume | Ctrl+Down\n"
                             "Playback --\n"
                             "Playback | Mini Player | Ctrl+Meta+M\n"
                             "Playback | Full-Screen Player | Ctrl+Meta+F\n"
                             "Help | Halvane Help | Ctrl+?"));
}

TEST(Commands, FollowTheState) {
    EXPECT_TRUE(listed({.artistOrder = ArtistOrder::readers})
                    .contains(u"View | Sort Artists by Character Code | "_s));
    const auto line = [](const CommandState& state, const QString& keys) {
        return listed(state).filter(u"| "_s + keys).value(0).section(u" | "_s, 1, -1);
    };
    EXPECT_EQ(line({.isSearchFieldFocused = true}, u"Space"_s), u"Play/Pause | Space | off"_s);
    EXPECT_EQ(line({.isSearchFieldFocused = true}, u"Ctrl+Right"_s), u"Next track | Ctrl+Right"_s);
    EXPECT_EQ(line({.isShuffleEnabled = true}, u"Ctrl+Shift+S"_s), u"Shuffle off | Ctrl+Shift+S"_s);
    EXPECT_EQ(line({.repeatMode = PlaybackRepeatMode::all}, u"Ctrl+Shift+R"_s),
              u"Repeat playlist | Ctrl+Shift+R"_s);
    EXPECT_EQ(line({.repeatMode = PlaybackRepeatMode::one}, u"Ctrl+Shift+R"_s),
              u"Repeat one | Ctrl+Shift+R"_s);
    EXPECT_EQ(line({.isMiniPlayerOpen = true}, u"Ctrl+Meta+M"_s),
              u"Back to Main Window | Ctrl+Meta+M"_s);
    EXPECT_EQ(line({}, u"Ctrl+Z"_s), u"Undo | Ctrl+Z | off"_s);
    EXPECT_EQ(line({.undoName = u"Play Next"_s}, u"Ctrl+Z"_s), u"Undo Play Next | Ctrl+Z"_s);
    EXPECT_EQ(line({.isTextFocused = true, .redoName = u"Play Next"_s}, u"Ctrl+Shift+Z"_s),
              u"Redo | Ctrl+Shift+Z"_s);
    EXPECT_EQ(line({}, u"Ctrl+C"_s), u"Copy | Ctrl+C | off"_s);
}

TEST(Commands, AreInTheMenusOnceEach) {
    std::map<CommandId, int> count;
    for (const auto& menu : menuTable())
        for (const auto& item : menu.items)
            ++count[item.id];
    constexpr auto last = CommandId::help;
    for (int id = static_cast<int>(CommandId::separator) + 1; id <= static_cast<int>(last); ++id)
        EXPECT_EQ(count[static_cast<CommandId>(id)], 1) << "number " << id;
}

TEST(RemoteActions, AreReadAsTheyAreWritten) {
    using Kind = RemoteAction::Kind;
    struct Row {
        QString text;
        std::optional<RemoteAction> expected; // none: refused
    };
    const std::vector<Row> table{
        {u"PlayPause"_s, RemoteAction{.kind = Kind::playPause}},
        {u"Previous"_s, RemoteAction{.kind = Kind::previous}},
        {u"Seek=90"_s, RemoteAction{.kind = Kind::seek, .amount = 90}},
        {u"Seek=1:30.5"_s, RemoteAction{.kind = Kind::seek, .amount = 90.5}},
        {u"Seek=+10"_s, RemoteAction{.kind = Kind::seek, .amount = 10, .isRelative = true}},
        {u"Seek=-1:00"_s, RemoteAction{.kind = Kind::seek, .amount = -60, .isRelative = true}},
        {u"Volume=30%"_s, RemoteAction{.kind = Kind::volume, .amount = 0.3}},
        {u"Volume=-5"_s, RemoteAction{.kind = Kind::volume, .amount = -0.05, .isRelative = true}},
        {u"Mute"_s, RemoteAction{.kind = Kind::mute}},
        {u"Shuffle=off"_s, RemoteAction{.kind = Kind::shuffle, .on = false}},
        {u"Repeat"_s, RemoteAction{.kind = Kind::repeat}},
        {u"Repeat=one"_s, RemoteAction{.kind = Kind::repeat, .repeat = PlaybackRepeatMode::one}},
        {u"Love=on"_s, RemoteAction{.kind = Kind::love, .on = true}},
        {u"StopAfterCurrent"_s, RemoteAction{.kind = Kind::stopAfterCurrent}},
        {u"SleepTimer=0"_s, RemoteAction{.kind = Kind::sleepTimer}},
        {u"SleepTimer=90"_s, RemoteAction{.kind = Kind::sleepTimer, .amount = 90}},
        {u"Rate=0"_s, RemoteAction{.kind = Kind::rate}},
        {u"Rate=5"_s, RemoteAction{.kind = Kind::rate, .amount = 5}},
    };
    for (const auto& [text, expected] : table) {
        const auto read = readAction(text);
        ASSERT_TRUE(read) << text.toStdString() << ": " << read.failure().text.toStdString();
        EXPECT_EQ(*read, *expected) << text.toStdString();
    }
    for (const auto& nonsense : {u""_s,
                                 u"Dance"_s,
                                 u"next"_s,
                                 u"Next=1"_s,
                                 u"Seek"_s,
                                 u"Seek="_s,
                                 u"Seek=nan"_s,
                                 u"Seek=1e999"_s,
                                 u"Seek=+"_s,
                                 u"Seek=--5"_s,
                                 u"Seek=1:"_s,
                                 u"Volume=101"_s,
                                 u"Volume=inf"_s,
                                 u"Volume=1:30"_s,
                                 u"Mute=loud"_s,
                                 u"Mute="_s,
                                 u"Repeat=two"_s,
                                 u"Rate"_s,
                                 u"Rate=6"_s,
                                 u"Rate=2.5"_s,
                                 u"Rate=+1"_s,
                                 u"SleepTimer"_s,
                                 u"SleepTimer=+5"_s,
                                 u"SleepTimer=1441"_s,
                                 u"SleepTimer=1:30"_s,
                                 u"StopAfterCurrent=maybe"_s})
        EXPECT_FALSE(readAction(nonsense)) << nonsense.toStdString();
}

TEST(RemoteActions, AreKnownToTheShellsTheManualAndTheDesktop) {
    const auto contents = [](const QString& name) {
        QFile file(QStringLiteral(HALVANE_PACKAGING) + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return QString::fromUtf8(file.readAll());
    };
    for (const auto& file : {u"completions/halvane.bash"_s, u"completions/halvane.zsh"_s,
                             u"completions/halvane.fish"_s, u"halvane.1"_s}) {
        const auto text = contents(file);
        for (const auto& name : actionNames())
            EXPECT_TRUE(text.contains(QRegularExpression(u"\\b%1\\b"_s.arg(name))))
                << file.toStdString() << ' ' << name.toStdString();
    }
    const auto entry = contents(u"org.halvane.Halvane.desktop"_s);
    const auto listed = entry.section(u"\nActions="_s, 1).section(u'\n', 0, 0);
    for (const auto& name : listed.split(u';', Qt::SkipEmptyParts)) {
        EXPECT_TRUE(readAction(name)) << name.toStdString();
        EXPECT_TRUE(entry.contains(u"--action "_s + name + u'\n')) << name.toStdString();
    }
}

TEST(StatusReport, IsTextJsonOrWhatTheCallerWrites) {
    const QVariantMap player{
        {u"PlaybackStatus"_s, u"Paused"_s},
        {u"Position"_s, qlonglong(61'500'000)},
        {u"Volume"_s, 0.72},
        {u"Shuffle"_s, true},
        {u"LoopStatus"_s, u"Playlist"_s},
        {u"Metadata"_s, QVariantMap{{u"xesam:title"_s, u"{artist} \"1\""_s},
                                    {u"xesam:artist"_s, QStringList{u"A"_s, u"B"_s}},
                                    {u"xesam:album"_s, u"歌"_s},
                                    {u"mpris:length"_s, qlonglong(200'000'000)},
                                    {u"xesam:url"_s, u"file:///m/a%20b.flac"_s}}}};
    EXPECT_EQ(statusReport(player, u"text"_s),
              u"status: paused\ntitle: {artist} \"1\"\nartist: A, B\nalbum: 歌\nposition: 1:01\n"
              "length: 3:20\nvolume: 72%\nshuffle: on\nrepeat: all\nfile: /m/a b.flac\n"_s);
    const auto json = QJsonDocument::fromJson(statusReport(player, u"json"_s).toUtf8()).object();
    EXPECT_EQ(json[u"title"_s].toString(), u"{artist} \"1\""_s);
    EXPECT_EQ(json[u"position"_s].toDouble(), 61.5);
    EXPECT_EQ(json[u"volume"_s].toInt(), 72);
    EXPECT_TRUE(json[u"shuffle"_s].toBool());
    EXPECT_EQ(statusReport(player, u"{artist} - {title} [{album}]"_s),
              u"A, B - {artist} \"1\" [歌]\n"_s);
    EXPECT_TRUE(statusReport({{u"PlaybackStatus"_s, u"Stopped"_s}}, u"text"_s)
                    .startsWith(u"status: stopped\nposition: 0:00\n"_s))
        << "without a track";
    for (const auto& [format, isOne] :
         {std::pair(u"text"_s, true), std::pair(u"json"_s, true), std::pair(u"{title}"_s, true),
          std::pair(u"xml"_s, false), std::pair(u"{nonsense}"_s, false), std::pair(u""_s, false)})
        EXPECT_EQ(static_cast<bool>(checkStatusFormat(format)), isOne) << format.toStdString();
}

TEST(Folders, AreTheUsersOwnWhateverTheEnvironmentSays) {
    const std::map<QByteArray, QByteArray> before{{"HOME", qgetenv("HOME")},
                                                  {"XDG_CONFIG_HOME", qgetenv("XDG_CONFIG_HOME")},
                                                  {"XDG_STATE_HOME", qgetenv("XDG_STATE_HOME")}};
    qunsetenv("HOME");
    qputenv("XDG_CONFIG_HOME", "rel");
    qputenv("XDG_STATE_HOME", "/absolute");
    mendFolderVariables();
    EXPECT_EQ(qgetenv("HOME"), getpwuid(getuid())->pw_dir);
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_CONFIG_HOME"));
    EXPECT_EQ(stateFolder(), u"/absolute/Halvane"_s);
    for (const auto& [name, value] : before) {
        if (value.isNull())
            qunsetenv(name.constData());
        else
            qputenv(name.constData(), value);
    }
}

TEST(DesktopEntry, OpensWhatTheMediaControlsOfferAndNoFolders) {
    QFile file(QStringLiteral(HALVANE_PACKAGING "/org.halvane.Halvane.desktop"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto types =
        QString::fromUtf8(file.readAll()).section(u"\nMimeType="_s, 1).section(u'\n', 0, 0);
    const QStringList lists{u"audio/x-mpegurl"_s, u"application/vnd.apple.mpegurl"_s,
                            u"application/xspf+xml"_s};
    EXPECT_THAT(types.split(u';', Qt::SkipEmptyParts),
                testing::UnorderedElementsAreArray(mprisMimeTypes() + lists))
        << "with inode/directory it would be what opens folders";
}

TEST(Commands, ShareNoKeys) {
    QList<QKeySequence> seen;
    for (const auto& menu : menuTable()) {
        for (const auto& item : menu.items) {
            if (item.keys.isEmpty())
                continue;
            for (const auto& keys : QKeySequence::listFromString(item.keys)) {
                EXPECT_FALSE(seen.contains(keys)) << item.keys.toStdString();
                EXPECT_NE(keys[0].key(), Qt::Key_unknown) << item.keys.toStdString();
                seen.append(keys);
            }
        }
    }
}

TEST(Placement, CentresAndStaysOnTheScreen) {
    const QRect screen(0, 30, 1920, 1050);
    struct Row {
        QRect other;
        QSize size;
        QPoint expected;
    };
    const std::vector<Row> table{
        {{100, 100, 1360, 720}, {480, 120}, {540, 400}},
        {{-1200, 100, 1360, 720}, {480, 120}, {0, 400}},
        {{1500, 900, 1360, 720}, {480, 120}, {1440, 960}},
        {{100, -600, 1360, 720}, {480, 120}, {540, 30}},
        {{100, 100, 1360, 720}, {2400, 1200}, {0, 30}}, // larger than the screen
    };
    for (const auto& row : table)
        EXPECT_EQ(centredOn(row.other, row.size, screen), row.expected);
    EXPECT_EQ(centredOn({-1200, 100, 1360, 720}, {480, 120}, {}), QPoint(-760, 400))
        << "with no screen there is nothing to stay on";
}

TEST(Placement, OpensThePanelBesideItsIconWhateverEdgeTheTrayIsAt) {
    struct Row {
        QRect area; // what the tray's own panel leaves of its screen
        QPoint icon;
        QPoint expected;
    };
    constexpr QSize size(280, 118);
    const std::vector<Row> table{
        {{0, 30, 1920, 1050}, {1000, 15}, {860, 30}},         // top
        {{0, 30, 1920, 1050}, {1900, 15}, {1640, 30}},        // top, in the corner
        {{0, 0, 1920, 1040}, {1900, 1060}, {1640, 922}},      // bottom, in the corner
        {{48, 0, 1872, 1080}, {24, 900}, {48, 774}},          // left
        {{48, 0, 1872, 1080}, {24, 20}, {48, 28}},            // left, at the top
        {{0, 0, 1872, 1080}, {1896, 900}, {1592, 774}},       // right
        {{1920, -200, 1280, 1000}, {3190, 810}, {2920, 682}}, // a second screen, higher up
        {{-1280, 0, 1280, 1024}, {-1270, 10}, {-1280, 18}},   // one to the left
    };
    for (const auto& row : table) {
        EXPECT_EQ(besideIcon(row.icon, size, row.area), row.expected);
        EXPECT_TRUE(row.area.contains(QRect(row.expected, size)));
    }
}

TEST(Placement, ForgetsAPlaceThatCanNotBeReached) {
    const QList<QRect> screens{{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}};
    for (const QRect reachable : {QRect(10, 10, 980, 600), QRect(1800, 500, 980, 600),
                                  QRect(3000, 900, 980, 600), QRect(-800, 10, 980, 600)})
        EXPECT_EQ(stillReachable(reachable, screens), reachable);
    for (const QRect lost : {QRect(5000, 10, 980, 600), QRect(10, -400, 980, 600),
                             QRect(-970, 10, 980, 600), QRect(10, 1079, 980, 600), QRect()})
        EXPECT_EQ(stillReachable(lost, screens), std::nullopt);
}

TEST(Placement, ShrinksWhatIsLargerThanItsScreen) {
    const QList<QRect> screens{{0, 30, 1280, 690}, {1280, 0, 1920, 1080}};
    struct Row {
        QRect place;
        QRect fitted;
    };
    const std::vector<Row> table{
        {{200, 100, 980, 600}, {200, 100, 980, 600}},
        {{-500, 100, 980, 600}, {-500, 100, 980, 600}}, // where the user has put it
        {{500, 200, 2400, 1300}, {1280, 0, 1920, 1080}},
        {{-700, 200, 2400, 600}, {0, 120, 1280, 600}},
        {{100, 0, 1000, 900}, {100, 30, 1000, 690}},
        {{1300, 10, 1360, 720}, {1300, 10, 1360, 720}},
    };
    for (const auto& row : table)
        EXPECT_EQ(fittedInto(areaAround(row.place, screens), row.place), row.fitted);
    EXPECT_EQ(areaAround({5000, 5000, 10, 10}, screens), screens[0]);
}

TEST(Edges, AreThinAndCornersLonger) {
    const auto edges = [](double x, double y) { return edgesAt({x, y}, {1000, 600}); };
    EXPECT_EQ(edges(500, 300), Qt::Edges());
    EXPECT_EQ(edges(10, 10), Qt::Edges()) << "the inside of a corner belongs to the content";
    EXPECT_EQ(edges(2, 300), Qt::LeftEdge);
    EXPECT_EQ(edges(998, 300), Qt::RightEdge);
    EXPECT_EQ(edges(500, 1), Qt::TopEdge);
    EXPECT_EQ(edges(500, 598), Qt::BottomEdge);
    EXPECT_EQ(edges(2, 12), Qt::LeftEdge | Qt::TopEdge);
    EXPECT_EQ(edges(990, 599), Qt::RightEdge | Qt::BottomEdge);
}

TEST(DockMenu, ReadsPlayAndDoesNothingWithoutALibrary) {
    AppDelegate delegate;
    QStringList titles;
    for (const auto& entry : delegate.dockMenu()) {
        titles.append(entry.title);
        entry.action();
    }
    EXPECT_THAT(titles, ElementsAre(u"Play"_s, u"Next track"_s, u"Previous track"_s));
}

TEST(Waveform, IsGivenToTheTrayInNetworkOrder) {
    for (const auto& pixmap : waveformPixmaps(QColor(1, 2, 3))) {
        ASSERT_EQ(pixmap.argb.size(), pixmap.size.width() * pixmap.size.height() * 4);
        EXPECT_TRUE(pixmap.argb.contains(QByteArray("\xff\x01\x02\x03", 4))) << "drawn opaquely";
        EXPECT_TRUE(pixmap.argb.contains(QByteArray(4, '\0'))) << "on nothing";
    }
}

TEST(ArgumentsOfTheProgram, AreRead) {
    const auto parsed = [](const QStringList& arguments) {
        return parsedArguments(QStringList{u"halvane"_s} + arguments, u"/home/me"_s);
    };
    using Task = Arguments::Task;
    EXPECT_EQ(parsed({}).task, Task::play);
    EXPECT_EQ(parsed({u"--version"_s}).task, Task::print);
    const auto help = parsed({u"-h"_s}).text;
    EXPECT_TRUE(help.startsWith(u"Usage: halvane [options] [FILE...]\nPlays "_s));
    EXPECT_TRUE(help.contains(u"--screenshots"_s));
    for (const QStringList& bad : {QStringList{u"--nonsense"_s},
                                   {u"--action"_s, u"Dance"_s},
                                   {u"--log"_s, u"loud"_s},
                                   {u"--status"_s, u"xml"_s}})
        EXPECT_EQ(parsed(bad).task, Task::complain) << bad.join(u' ').toStdString();
    // As a session manager starts it again, and with what every program of the toolkit takes.
    const auto restored =
        parsed({u"-session"_s, u"2fb01_1"_s, u"--platform"_s, u"xcb"_s, u"-display"_s, u":1"_s,
                u"-reverse"_s, u"a.flac"_s, u"--"_s, u"-name"_s});
    EXPECT_EQ(restored.task, Task::play) << restored.text.toStdString();
    EXPECT_EQ(restored.request.files.size(), 2);
    EXPECT_THAT(parsed({u"--action"_s, u"Next"_s, u"--action=Seek=-5"_s}).request.actions,
                ElementsAre(u"Next"_s, u"Seek=-5"_s));
    EXPECT_THAT(parsed({u"--action"_s, u"PlayPause"_s, u"--action"_s, u"Rate=5"_s, u"a.mp3"_s})
                    .request.actions,
                ElementsAre(u"Rate=5"_s))
        << "the file plays because it is opened";
    EXPECT_EQ(parsed({u"--status"_s}).text, u"text"_s);
    EXPECT_EQ(parsed({u"--status"_s, u"json"_s}).text, u"json"_s);
    EXPECT_EQ(parsed({u"--status={title}"_s}).text, u"{title}"_s);
    EXPECT_EQ(parsed({u"--status"_s, u"--log"_s, u"error"_s}).task, Task::status);
    EXPECT_EQ(parsed({u"--log"_s, u"debug"_s}).logLevel, QtDebugMsg);
    EXPECT_EQ(parsed({u"--screenshots"_s, u"pictures"_s}).screenshotsFolder,
              u"/home/me/pictures"_s);

    const auto files =
        parsed({u"a b.flac"_s, u"/music/歌.mp3"_s, u"file:///m/100%25%20x.ogg"_s, u"dir"_s,
                u"https://example.org/a.mp3"_s, u"caf\uFFFD.mp3"_s, u"--"_s, u"-dash.flac"_s});
    QStringList paths;
    for (const auto& url : files.request.files)
        paths.append(url.toLocalFile());
    EXPECT_THAT(paths, ElementsAre(u"/home/me/a b.flac"_s, u"/music/歌.mp3"_s, u"/m/100% x.ogg"_s,
                                   u"/home/me/dir"_s, u"/home/me/-dash.flac"_s));
    EXPECT_THAT(files.skipped, ElementsAre(u"https://example.org/a.mp3"_s, u"caf\uFFFD.mp3"_s));
}
