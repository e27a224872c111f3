// SPDX-License-Identifier: MIT
// followed_folders [TRACKS [FOLDERS]]: what following a library's folders costs, all of whose files
// are known and unchanged: the watches, the comparison at the start (median of five), one new file,
// and ten seconds in which nothing happens.
#include "../support/event_loop.h"
#include "library/catalog/library_store.h"
#include "library/import/folder_changes.h"
#include "metadata/file_dates.h"
#include "metadata/parallel/reading_journal.h"
#include "platform/folders/folder_watch.h"
#include "support/fake_cloud_files.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

using namespace halvane;
using namespace Qt::StringLiterals;

namespace {

double processorMilliseconds() {
    rusage used{};
    ::getrusage(RUSAGE_SELF, &used);
    const auto ms = [](const timeval& time) {
        return double(time.tv_sec) * 1e3 + double(time.tv_usec) * 1e-3;
    };
    return ms(used.ru_utime) + ms(used.ru_stime);
}

TrackRows library(const QString& root, int tracks, int folders) {
    TrackRows rows;
    for (int i = 0; i < tracks; ++i) {
        const int number = i % folders;
        const QString folder = u"%1/Artist %2/Album %3"_s.arg(root).arg(number / 4).arg(number);
        if (i < folders)
            QDir().mkpath(folder);
        const QString path = u"%1/%2 Track.flac"_s.arg(folder).arg(i / folders);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return {};
        file.close();
        Track track;
        track.sourceURL = FileUrl(path);
        track.readDate = fileFacts(path).modificationDate;
        rows.push_back(makeRow(std::move(track)));
    }
    return rows;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int tracks = arguments.size() > 1 ? arguments[1].toInt() : 100'000;
    const int folders = arguments.size() > 2 ? arguments[2].toInt() : 8'000;
    const QTemporaryDir home;
    const QString root = home.filePath(u"Music"_s);
    const TrackRows rows = library(root, tracks, folders);
    std::printf("%zu tracks in %d folders\n", rows.size(), folders);

    QElapsedTimer timer;
    FolderWatch watch;
    bool isArmed = false;
    QObject::connect(&watch, &FolderWatch::armed, &watch, [&] { isArmed = true; });
    timer.start();
    watch.watch({root});
    bench::until([&] { return isArmed; });
    std::printf("%-28s %6lld ms%s\n", "watches", static_cast<long long>(timer.elapsed()),
                watch.unwatched().isEmpty() ? "" : " (more folders than may be watched)");

    const ReadingNeeds needs{MetadataCache(home.filePath(u"data"_s)),
                             std::make_shared<ReadingJournal>(home.filePath(u"cache"_s)),
                             std::make_shared<test::FakeCloudFiles>()};
    std::vector<double> times;
    std::size_t found = 0;
    for (int round = 0; round < 5; ++round) {
        timer.start();
        const auto changes =
            folderChanges({{root}, {}}, rows, {}, needs, ResolvedLanguage::english, {});
        times.push_back(double(timer.nsecsElapsed()) * 1e-6);
        found += static_cast<std::size_t>(changes.fresh.size()) + changes.changed.size();
    }
    std::sort(times.begin(), times.end());
    std::printf("%-28s %6.0f ms (%.0f..%.0f), %zu changes\n", "comparison", times[2], times.front(),
                times.back(), found);

    bool isTold = false;
    QObject::connect(&watch, &FolderWatch::happened, &watch,
                     [&](const FolderNews& news) { isTold = !news.files.isEmpty(); });
    timer.start();
    QFile fresh(root + u"/Artist 0/Album 0/new.flac"_s);
    if (!fresh.open(QIODevice::WriteOnly))
        return 1;
    fresh.close();
    bench::until([&] { return isTold; });
    std::printf("%-28s %6lld ms\n", "a new file is told of after",
                static_cast<long long>(timer.elapsed()));

    const double before = processorMilliseconds();
    QTimer end;
    end.start(10'000);
    bool isOver = false;
    QObject::connect(&end, &QTimer::timeout, &end, [&] { isOver = true; });
    bench::until([&] { return isOver; });
    std::printf("%-28s %6.1f ms\n", "processor time, 10 s idle", processorMilliseconds() - before);
    return 0;
}
