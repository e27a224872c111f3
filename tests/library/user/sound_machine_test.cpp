// SPDX-License-Identifier: MIT
// Renames, moves, tags, copies, removes and imports at random, open and closed, beside a model that
// knows which sound every file has.
#include "library/user/remembering_library.h"

#include <QDir>
#include <QDirIterator>

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

using namespace Qt::StringLiterals;

namespace halvane::test {
namespace {

class SoundMachine : public RememberingLibrary {
  public:
    explicit SoundMachine(unsigned seed)
        : m_dice(seed) {}

    void run(int steps) {
        start();
        m_list = library->playlists()->createPlaylist(u"Mine"_s);
        for (int sound = 0; sound < 12; ++sound)
            bring(sound);
        importAll();
        for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            const std::string what = takeStep();
            settle();
            SCOPED_TRACE("step " + std::to_string(step) + ": " + what);
            check();
        }
    }

    std::map<std::string, int> counts; ///< of the steps by kind

  private:
    int roll(std::size_t sides) {
        return static_cast<int>(std::uniform_int_distribution<std::size_t>(0, sides - 1)(m_dice));
    }
    template<typename Container>
    auto any(const Container& container) {
        return *std::next(container.begin(), roll(container.size()));
    }
    QString freshName() {
        const QString folder = path(u"d%1"_s.arg(roll(3)));
        QDir().mkpath(folder);
        return folder + u"/%1.wav"_s.arg(++m_names);
    }
    void bring(int sound) {
        const QString name = freshName();
        write(name, sound, u"Title %1"_s.arg(m_names));
        m_files[name] = sound;
    }
    void importAll() {
        library->importing()->importDroppedURLs({QUrl::fromLocalFile(music.path())});
        library->importing()->giveWay(); // nothing plays, so that only the machine counts plays
        until([this] { return !library->importing()->isImporting(); });
        settle();
    }
    // The files on the disk that the library has.
    std::vector<QString> present() {
        std::vector<QString> paths;
        for (const auto& [name, sound] : m_files)
            if (library->store()->track(name))
                paths.push_back(name);
        return paths;
    }

    std::string takeStep() {
        static const std::vector<std::pair<const char*, bool (SoundMachine::*)()>> steps{
            {"say", &SoundMachine::say},
            {"list", &SoundMachine::list},
            {"say", &SoundMachine::say},
            {"rename", &SoundMachine::rename},
            {"move", &SoundMachine::moveFolder},
            {"tag", &SoundMachine::tag},
            {"copy", &SoundMachine::copy},
            {"delete", &SoundMachine::erase},
            {"return", &SoundMachine::comeBack},
            {"exchange", &SoundMachine::exchange},
            {"remove", &SoundMachine::remove},
            {"undo", &SoundMachine::undo},
            {"remove missing", &SoundMachine::removeMissing},
            {"remove duplicates", &SoundMachine::removeDuplicates}};
        const auto& [name, step] = any(steps);
        if (!(this->*step)())
            return name;
        ++counts[name];
        if (roll(3) > 0)
            importAll();
        return name;
    }

    // What happens to files happens while the program runs, or while it does not.
    void changeFiles(const std::function<void()>& change, bool isClosed) {
        if (isClosed)
            quit();
        change();
        if (isClosed)
            start();
    }
    void changeFiles(const std::function<void()>& change) { changeFiles(change, roll(2) == 0); }

    bool say() {
        const auto paths = present();
        if (paths.empty())
            return false;
        const QString name = any(paths);
        Said& said = m_said[m_files[name]];
        TrackUserData& data = *library->userData();
        switch (roll(3)) {
        case 0:
            data.toggleLoved(name);
            said.isLoved = !said.isLoved;
            break;
        case 1:
            said.rating = roll(6);
            data.setRating(static_cast<int>(said.rating), name);
            break;
        default:
            data.countPlay(name, ++m_now);
            ++said.plays;
            said.lastPlayed = m_now;
        }
        return true;
    }
    bool list() {
        const auto paths = present();
        if (paths.empty())
            return false;
        const QString name = any(paths);
        library->playlists()->addTrackPaths({name}, m_list);
        m_listed.insert(m_files[name]);
        return true;
    }
    bool rename() {
        if (m_files.empty())
            return false;
        const auto [name, sound] = any(m_files);
        const QString to = freshName();
        changeFiles([&, from = name] { ASSERT_TRUE(QFile::rename(from, to)); });
        m_files.erase(name);
        m_files[to] = sound;
        return true;
    }
    bool moveFolder() {
        const QString from = path(u"d%1"_s.arg(roll(3)));
        const QString to = path(u"moved %1"_s.arg(++m_names));
        if (!QFile::exists(from))
            return false;
        changeFiles([&] { ASSERT_TRUE(QDir().rename(from, to)); });
        std::map<QString, int> files;
        for (const auto& [name, sound] : m_files)
            files[name.startsWith(from + u'/') ? to + name.sliced(from.size()) : name] = sound;
        m_files = files;
        return true;
    }
    bool tag() {
        if (m_files.empty())
            return false;
        const auto [name, sound] = any(m_files);
        changeFiles([this, file = name, number = sound] {
            write(file, number, u"Another title %1"_s.arg(++m_names));
        });
        return true;
    }
    bool copy() {
        constexpr std::size_t most = 30;
        if (m_files.empty() || m_files.size() > most)
            return false;
        const auto [name, sound] = any(m_files);
        const QString to = freshName();
        changeFiles([&, from = name] { ASSERT_TRUE(QFile::copy(from, to)); });
        m_files[to] = sound;
        return true;
    }
    bool erase() {
        if (m_files.empty())
            return false;
        const auto [name, sound] = any(m_files);
        changeFiles([file = name] { ASSERT_TRUE(QFile::remove(file)); });
        m_files.erase(name);
        return true;
    }
    bool comeBack() {
        for (int sound = 0; sound < 12; ++sound) {
            const bool isThere = std::any_of(m_files.begin(), m_files.end(),
                                             [sound](const auto& f) { return f.second == sound; });
            if (!isThere) {
                changeFiles([this, sound] { bring(sound); });
                return true;
            }
        }
        return false;
    }
    bool exchange() {
        const auto paths = present();
        if (paths.empty())
            return false;
        const QString a = any(paths);
        const QString b = any(paths);
        if (a == b)
            return false;
        changeFiles(
            [&] {
                const QString aside = path(u"aside"_s);
                ASSERT_TRUE(QFile::rename(a, aside) && QFile::rename(b, a) &&
                            QFile::rename(aside, b));
            },
            true);
        std::swap(m_files[a], m_files[b]);
        return true;
    }
    bool remove() {
        if (library->store()->size() == 0)
            return false;
        library->tidying()->removeTracks({any(library->store()->rows())->path()});
        return true;
    }
    bool removeMissing() {
        const QSet<QString> missing = library->availability()->unavailablePaths();
        library->tidying()->removeTracks({missing.cbegin(), missing.cend()});
        return !missing.isEmpty();
    }
    bool removeDuplicates() {
        library->tidying()->removeDuplicateTracks();
        return true;
    }
    bool undo() {
        const bool canUndo = library->history()->canUndo();
        library->history()->undo();
        return canUndo;
    }

    void check() {
        std::set<int> available;
        for (const QString& name : present()) {
            const int sound = m_files[name];
            available.insert(sound);
            const Said now = said(name);
            const Said& expected = m_said[sound];
            EXPECT_EQ(now, expected)
                << name.toStdString() << ", sound " << sound << ": loved " << now.isLoved << "/"
                << expected.isLoved << ", rating " << now.rating << "/" << expected.rating
                << ", plays " << now.plays << "/" << expected.plays;
        }
        std::multiset<int> listed;
        for (const QString& name : this->listed(m_list))
            if (const auto file = m_files.find(name); file != m_files.end())
                listed.insert(file->second);
        for (const int sound : listed)
            EXPECT_TRUE(m_listed.contains(sound)) << "nobody has listed sound " << sound;
        for (const int sound : m_listed)
            EXPECT_TRUE(!available.contains(sound) || listed.contains(sound))
                << "sound " << sound << " has left the playlist";
    }

    std::mt19937 m_dice;
    int m_names = 0;
    qint64 m_now = 0;
    QUuid m_list;
    std::map<QString, int> m_files; ///< on the disk, with their sounds
    std::map<int, Said> m_said;     ///< by sound
    std::set<int> m_listed;
};

TEST(SoundMachineTest, NothingSaidIsLostOrOfTheWrongSound) {
    const QByteArray given = qgetenv("HALVANE_SEED");
    const unsigned seed = given.isEmpty() ? std::random_device()() : given.toUInt();
    const QByteArray steps = qgetenv("HALVANE_STEPS");
    SCOPED_TRACE("HALVANE_SEED=" + std::to_string(seed));
    std::printf("HALVANE_SEED=%u\n", seed);
    SoundMachine machine(seed);
    machine.run(steps.isEmpty() ? 150 : steps.toInt());
    for (const auto& [name, count] : machine.counts)
        std::printf("%6d %s\n", count, name.c_str());
}

} // namespace
} // namespace halvane::test
