// SPDX-License-Identifier: MIT
#include "library/import/fake_files.h"
#include "library/sound/sound_check.h"
#include "library/tracks.h"
#include "library/user/settings_keys.h"
#include "platform/cloud/cloud_files.h"
#include "support/audio_material.h"
#include "support/child_process.h"
#include "support/memory_preferences.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;
using LoudnessAnalyzer::Measurement;

TEST(SoundCheckGain, TurnsLoudDownAndQuietUpAsFarAsThePeakAllows) {
    struct Case {
        double rmsDb;
        double peakDb;
        double gain;
    };
    for (const Case& c :
         {Case{-10, 0, -6}, Case{-22, -4, 3}, Case{-20, -0.5, 0}, Case{-180, -180, 164},
          Case{-30, -20, 14}, Case{-16, 0, 0}, Case{-10, 1, -6}, Case{-20, 1, 0}})
        EXPECT_DOUBLE_EQ(soundCheckGain(c.rmsDb, c.peakDb), c.gain) << c.rmsDb << ' ' << c.peakDb;
}

class NoCloud final : public CloudFiles {
  public:
    [[nodiscard]] FilePresence presence(const QString& path) const override {
        return evicted.contains(path) ? FilePresence::evicted : FilePresence::here;
    }
    void startDownloading(const QStringList&) override {}
    [[nodiscard]] Storage storage(const QString& path) const override {
        return stored.value(path, Storage::disk);
    }
    QSet<QString> evicted;
    QHash<QString, Storage> stored;
};

// Takes the place of measuring. It answers only when the test lets it, and keeps what was asked.
class Meter {
  public:
    std::optional<Measurement> measure(const QString& path, std::stop_token stop) {
        std::unique_lock lock(m_mutex);
        m_asked.append(path);
        m_mostAtOnce = std::max(m_mostAtOnce, ++m_atOnce);
        const std::stop_callback wake(stop, [this] { m_changed.notify_all(); });
        m_changed.wait_for(lock, std::chrono::seconds(30),
                           [&] { return m_permits > 0 || stop.stop_requested(); });
        --m_atOnce;
        if (stop.stop_requested())
            return std::nullopt;
        --m_permits;
        return m_broken.contains(path) ? std::nullopt : std::optional(Measurement{-10, 0});
    }
    void let(int files) {
        const std::scoped_lock lock(m_mutex);
        m_permits += files;
        m_changed.notify_all();
    }
    [[nodiscard]] QStringList asked() const {
        const std::scoped_lock lock(m_mutex);
        return m_asked;
    }
    [[nodiscard]] int mostAtOnce() const { return m_mostAtOnce; }
    void breakFile(const QString& path) { m_broken.insert(path); }

  private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    QStringList m_asked;
    QSet<QString> m_broken;
    int m_permits = 0;
    int m_atOnce = 0;
    int m_mostAtOnce = 0;
};

class SoundCheckTest : public testing::Test {
  protected:
    std::unique_ptr<SoundCheck> make() {
        setLibrary(files);
        auto made = std::make_unique<SoundCheck>(
            preferences, library, availability, cloud,
            [meter = meter](const QString& path, std::stop_token stop) {
                return meter->measure(path, std::move(stop));
            });
        made->restore();
        QObject::connect(made.get(), &SoundCheck::gainFound,
                         [this](const QString& path) { told.append(path); });
        return made;
    }
    void setLibrary(const QStringList& paths) {
        std::vector<Track> tracks;
        for (const QString& path : paths)
            tracks.push_back(trackAt(path));
        library.remove(QSet<QString>(files.cbegin(), files.cend()));
        library.append(rowsOf(std::move(tracks)));
    }
    bool measured(const SoundCheck& check, const QStringList& paths) {
        constexpr int patienceMs = 120'000; // a scan only uses idle processor time
        return waitFor(
            [&] {
                return std::all_of(paths.begin(), paths.end(), [&](const QString& path) {
                    return check.trackLoudness().contains(path);
                });
            },
            patienceMs);
    }
    NumbersMap stored() {
        return preferences.numbersMap(SettingsKey::trackLoudness).value_or(NumbersMap());
    }

    MemoryPreferences preferences;
    // Shared with a file that is still being measured when the test ends.
    std::shared_ptr<NoCloud> cloud = std::make_shared<NoCloud>();
    std::shared_ptr<Meter> meter = std::make_shared<Meter>();
    LibraryStore library;
    FakeFiles availability;
    QStringList files{u"/a"_s, u"/b"_s, u"/c"_s};
    QStringList told; ///< whose gains have become known
};

TEST_F(SoundCheckTest, ScansOneFileAtATimeInOrderAndKeepsEachResult) {
    files = {u"/a"_s,     u"/gone"_s,  u"/b"_s,      u"/evicted"_s,
             u"/cloud"_s, u"/share"_s, u"/broken"_s, u"/./c"_s};
    availability.missing = {u"/gone"_s};
    cloud->evicted = {u"/evicted"_s};
    cloud->stored = {{u"/cloud"_s, Storage::cloudMount}, {u"/share"_s, Storage::networkShare}};
    meter->breakFile(u"/broken"_s);
    const auto check = make();
    check->scanLoudnessIfNeeded(); // switched off
    EXPECT_TRUE(meter->asked().isEmpty());

    check->setSoundCheckEnabled(true);
    meter->let(1);
    ASSERT_TRUE(measured(*check, {u"/a"_s}));
    EXPECT_EQ(stored().size(), 1);
    EXPECT_EQ(stored().value(u"/a"_s), (std::vector<double>{-10, 0}));
    meter->let(3);
    ASSERT_TRUE(measured(*check, {u"/b"_s, u"/c"_s}));
    EXPECT_EQ(meter->asked(), (QStringList{u"/a"_s, u"/b"_s, u"/broken"_s, u"/./c"_s}));
    EXPECT_EQ(meter->mostAtOnce(), 1);
    EXPECT_EQ(preferences.changes(SettingsKey::trackLoudness), 3); // an entry each
    EXPECT_EQ(stored(), check->trackLoudness());
}

TEST_F(SoundCheckTest, SaysWhoseGainHasBecomeKnown) {
    const auto check = make();
    check->setSoundCheckEnabled(true);
    EXPECT_EQ(check->gainFor(u"/b"_s), 0);
    meter->let(2);
    ASSERT_TRUE(measured(*check, {u"/b"_s}));
    EXPECT_EQ(told, (QStringList{u"/a"_s, u"/b"_s}));
    EXPECT_EQ(check->gainFor(u"/b"_s), -6);
    check->setSoundCheckEnabled(false);
    EXPECT_EQ(check->gainFor(u"/b"_s), 0);
    check->setSoundCheckEnabled(true);
    EXPECT_EQ(check->gainFor(u"/b"_s), -6);
}

// A whole share is not read for one listener, but what is heard from it anyway is.
TEST_F(SoundCheckTest, MeasuresFirstWhatPlaysAndNothingElseOfAShare) {
    files = {u"/a"_s, u"/b"_s, u"/c"_s, u"/share/1"_s, u"/share/2"_s, u"/share/3"_s, u"/cloud"_s};
    for (const QString& path : {u"/share/1"_s, u"/share/2"_s, u"/share/3"_s})
        cloud->stored.insert(path, Storage::networkShare);
    cloud->stored.insert(u"/cloud"_s, Storage::cloudMount);
    const auto check = make();
    check->setPlayed({u"/share/2"_s, u"/cloud"_s}); // switched off
    check->setSoundCheckEnabled(true);
    ASSERT_TRUE(waitFor([&] { return meter->asked() == QStringList{u"/share/2"_s}; }));
    files += u"/d"_s;
    setLibrary(files);
    check->scanLoudnessIfNeeded(); // does not forget what plays
    meter->let(1);
    ASSERT_TRUE(measured(*check, {u"/share/2"_s}));
    ASSERT_TRUE(waitFor([&] { return meter->asked().endsWith(u"/a"_s); }));
    check->setPlayed({u"/share/3"_s, u"/d"_s}); // after the file that is being measured
    meter->let(10);
    ASSERT_TRUE(measured(*check, {u"/a"_s, u"/b"_s, u"/c"_s, u"/d"_s, u"/share/3"_s}));
    EXPECT_EQ(meter->asked(), (QStringList{u"/share/2"_s, u"/share/2"_s, u"/a"_s, u"/share/3"_s,
                                           u"/d"_s, u"/b"_s, u"/c"_s}));
    EXPECT_EQ(meter->mostAtOnce(), 1);
    // Nothing is left to do; what plays next is measured all the same.
    check->setPlayed({u"/share/1"_s});
    ASSERT_TRUE(measured(*check, {u"/share/1"_s}));
    EXPECT_FALSE(check->trackLoudness().contains(u"/cloud"_s));
}

TEST_F(SoundCheckTest, KeepsGainsWithinTheLimits) {
    preferences.insertNumbers(SettingsKey::trackLoudness, u"/silent"_s, {-180, -180});
    preferences.insertNumbers(SettingsKey::trackLoudness, u"/loud"_s, {4, 6});
    preferences.insertNumbers(SettingsKey::trackLoudness, u"/three"_s, {-10, 0, 1});
    preferences.insertNumbers(SettingsKey::trackLoudness, u"/a"_s, {-10, 0});
    preferences.setBoolean(SettingsKey::soundCheckEnabled, true);
    files = {u"/three"_s, u"/a"_s};
    const auto check = make();
    for (const auto& [path, gain] :
         {std::pair{u"/silent"_s, 12.0}, std::pair{u"/loud"_s, -18.0}, std::pair{u"/a"_s, -6.0},
          std::pair{u"/three"_s, 0.0}, std::pair{u"/unknown"_s, 0.0}})
        EXPECT_EQ(check->gainFor(path), gain) << path.toStdString();
    check->scanLoudnessIfNeeded(); // what counts as unmeasured is not measured again
    EXPECT_TRUE(meter->asked().isEmpty());
}

TEST_F(SoundCheckTest, ByLoudnessMeasuresWhatTheTagsLeaveOpen) {
    preferences.insertNumbers(SettingsKey::trackLoudness, u"/a"_s, {-10, 0});
    files = {u"/a"_s};
    const auto check = make();
    const auto add = [this](const QString& path, LevelTags levels) {
        Track track = trackAt(path);
        track.levelTags = levels;
        library.append({makeRow(std::move(track))});
    };
    add(u"/tagged"_s, {-7, -1, {}, {}});
    add(u"/peakless"_s, {-7, {}, {}, {}});
    add(u"/whole"_s, {-7, -1, -5, -1});
    check->setLevelBy(LevelBy::track); // switched off
    check->setSoundCheckEnabled(true);
    EXPECT_EQ(check->gainFor(u"/tagged"_s), -7) << "at once";
    EXPECT_EQ(check->gainFor(u"/unknown"_s), 0);
    meter->let(2);
    ASSERT_TRUE(waitFor([&] { return told == QStringList{u"/a"_s, u"/peakless"_s}; }, 120'000));
    EXPECT_EQ(stored().size(), 2) << "both ways, in one go";
    EXPECT_TRUE(check->programmeLoudness().contains(u"/a"_s));
    EXPECT_TRUE(check->programmeLoudness().contains(u"/peakless"_s));

    check->setLevelBy(LevelBy::album); // of which only one file tells all
    meter->let(10);
    ASSERT_TRUE(waitFor([&] { return told.size() == 3; }, 120'000));
    EXPECT_EQ(meter->asked(), (QStringList{u"/a"_s, u"/peakless"_s, u"/tagged"_s}));
    check->setPreamp(99);
    check->setPreamp(std::numeric_limits<double>::quiet_NaN());
    check->setPreventsClipping(false);
    EXPECT_EQ(check->gainFor(u"/whole"_s), 5);

    check->forget({u"/a"_s});
    EXPECT_FALSE(check->programmeLoudness().contains(u"/a"_s));
    SoundCheck again(preferences, library, availability, cloud);
    again.restore();
    EXPECT_EQ(again.levelBy(), LevelBy::album);
    EXPECT_EQ(again.preamp(), 12);
    EXPECT_FALSE(again.preventsClipping());
    EXPECT_TRUE(again.programmeLoudness().contains(u"/tagged"_s));
}

TEST_F(SoundCheckTest, SwitchingOffEndsTheScanAndDropsItsResult) {
    const auto check = make();
    check->setSoundCheckEnabled(true);
    ASSERT_TRUE(waitFor([&] { return meter->asked().size() == 1; }));
    check->setSoundCheckEnabled(false);
    meter->let(10);
    check->setSoundCheckEnabled(true); // a new scan begins
    ASSERT_TRUE(measured(*check, files));
    EXPECT_EQ(meter->asked(), (QStringList{u"/a"_s, u"/a"_s, u"/b"_s, u"/c"_s}));
    EXPECT_EQ(preferences.changes(SettingsKey::trackLoudness), 3);
}

TEST_F(SoundCheckTest, NewFilesRestartTheScanAndNoneLeaveItAlone) {
    const auto check = make();
    check->setSoundCheckEnabled(true);
    ASSERT_TRUE(waitFor([&] { return meter->asked().size() == 1; }));
    setLibrary({});
    check->scanLoudnessIfNeeded(); // with nothing new to measure, the running scan goes on
    meter->let(1);
    ASSERT_TRUE(measured(*check, {u"/a"_s}));
    files += u"/d"_s;
    setLibrary(files);
    check->scanLoudnessIfNeeded();
    meter->let(10);
    ASSERT_TRUE(measured(*check, files));
    EXPECT_EQ(meter->asked().count(u"/a"_s), 1);
}

TEST_F(SoundCheckTest, ForgetsFilesThatLeftTheLibraryEvenWhileTheyAreMeasured) {
    files.append(u"/d"_s);
    const auto check = make();
    check->setSoundCheckEnabled(true);
    meter->let(1);
    ASSERT_TRUE(measured(*check, {u"/a"_s}));
    ASSERT_TRUE(waitFor([&] { return meter->asked().size() == 2; }));
    check->forget({u"/a"_s, u"/b"_s, u"/c"_s});
    meter->let(10);
    ASSERT_TRUE(measured(*check, {u"/d"_s}));
    EXPECT_EQ(check->trackLoudness().keys(), QStringList{u"/d"_s});
    EXPECT_FALSE(meter->asked().contains(u"/c"_s));
}

TEST_F(SoundCheckTest, EndsWhileAFileIsBeingMeasured) {
    auto check = make();
    check->setSoundCheckEnabled(true);
    ASSERT_TRUE(waitFor([&] { return meter->asked().size() == 1; }));
    check.reset(); // does not wait for the whole file
    EXPECT_TRUE(stored().isEmpty());
}

TEST_F(SoundCheckTest, MeasuresRealFiles) {
    const QString path = encoded(sine(441, 0.5, 100'000), u"flac"_s,
                                 u"flac -s --channel-map=none -o \"$OUT\" \"$IN\""_s);
    setLibrary({path});
    SoundCheck check(preferences, library, availability, cloud);
    check.setSoundCheckEnabled(true);
    ASSERT_TRUE(measured(check, {path}));
    EXPECT_NEAR(check.trackLoudness().value(path)[0], -9.03, 0.01);
}

} // namespace
} // namespace halvane::test
