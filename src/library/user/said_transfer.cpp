// SPDX-License-Identifier: MIT
#include "library/user/said_transfer.h"

#include "base/result.h"
#include "library/status_line.h"
#include "library/user/language_setting.h"
#include "library/user/playlists.h"
#include "library/user/sound_memory.h"
#include "library/user/track_user_data.h"
#include "metadata/file_dates.h"
#include "platform/log.h"
#include "platform/session/file_chooser.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

#include <QDateTime>
#include <QFile>
#include <QPointer>
#include <QSaveFile>

#include <algorithm>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mostBytes = 512LL << 20;

Result<> writeWhole(const QString& path, const QByteArray& contents) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size() ||
        !file.commit())
        return Failure{file.errorString()};
    return {};
}

std::optional<SaidFile> readWhole(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.isSequential() || file.size() > mostBytes)
        return std::nullopt;
    return SaidFile::fromJson(file.readAll());
}

// The last so many.
template<typename T>
std::vector<T> takeLast(std::vector<T>& from, std::size_t most) {
    const auto begin = from.end() - static_cast<std::ptrdiff_t>(std::min(most, from.size()));
    std::vector<T> taken(begin, from.end());
    from.erase(begin, from.end());
    return taken;
}

} // namespace

SaidTransfer::SaidTransfer(const SaidTransferNeeds& needs, QObject* parent)
    : QObject(parent)
    , m_needs(needs) {
}

void SaidTransfer::exportSaid() {
    const ResolvedLanguage language = m_needs.language.resolvedLanguage();
    FileTargetRequest request;
    request.title = L10n::dialogTitle(L10n::text(L10nKey::exportListening, language));
    request.prompt = L10n::text(L10nKey::exportPrompt, language);
    request.fileName = u"halvane-listening.json"_s;
    m_needs.fileChooser.chooseTarget(request, [weak = QPointer(this)](const QString& path) {
        if (weak)
            weak->write(path);
    });
}

AllSaid SaidTransfer::allSaid() const {
    const TrackUserData& data = m_needs.userData;
    return {data.lovedPaths(), data.trackRatings(), data.playCounts(), data.lastPlayed(),
            m_needs.sounds.allSaid()};
}

void SaidTransfer::write(const QString& path) {
    assertOwnThread(*this);
    struct Written {
        Result<> result;
        qint64 tracks = 0;
    };
    m_worker.run(
        [path, rows = m_needs.store.snapshot(), said = allSaid(),
         playlists = m_needs.playlists.all()] {
            const SaidFile file = saidFileOf(*rows, said, playlists);
            return Written{writeWhole(path, file.toJson()),
                           static_cast<qint64>(file.tracks.size())};
        },
        [this, path](const Written& written) {
            const ResolvedLanguage language = m_needs.language.resolvedLanguage();
            if (written.result) {
                m_needs.status.show(L10n::exportedListening(written.tracks, language), false);
            } else {
                qCWarning(libraryLog, "listening data were not written: %s",
                          qUtf8Printable(written.result.failure().text));
                m_needs.status.show(L10n::playlistNotWritten(FileUrl(path).fileName(), language),
                                    true);
            }
            Q_EMIT ended();
        });
}

void SaidTransfer::importSaid() {
    const ResolvedLanguage language = m_needs.language.resolvedLanguage();
    FileChooserRequest request;
    request.title = L10n::dialogTitle(L10n::text(L10nKey::importListening, language));
    request.prompt = L10n::text(L10nKey::importPrompt, language);
    request.files = true;
    m_needs.fileChooser.choose(request, [weak = QPointer(this)](const QStringList& paths) {
        for (const QString& path : paths)
            if (weak)
                weak->read(path);
    });
}

void SaidTransfer::read(const QString& path) {
    assertOwnThread(*this);
    m_worker.run(
        [path, rows = m_needs.store.snapshot()]() -> std::optional<SaidPlan> {
            auto file = readWhole(path);
            const qint64 now =
                QDateTime::currentSecsSinceEpoch() - static_cast<qint64>(referenceDateOffset);
            return file ? std::optional(saidPlanOf(*std::move(file), *rows, now)) : std::nullopt;
        },
        [this, path](std::optional<SaidPlan> plan) {
            if (plan)
                return take(*std::move(plan));
            m_needs.status.show(L10n::listeningNotRead(FileUrl(path).fileName(),
                                                       m_needs.language.resolvedLanguage()),
                                true);
            Q_EMIT ended();
        });
}

// Another file may be on its way already.
void SaidTransfer::take(SaidPlan plan) {
    const auto append = [](auto& to, auto& from) {
        to.insert(to.end(), std::make_move_iterator(from.begin()),
                  std::make_move_iterator(from.end()));
    };
    const bool isUnderWay = !m_plan.ofPaths.empty() || !m_plan.ofSounds.empty();
    append(m_plan.ofPaths, plan.ofPaths);
    append(m_plan.ofSounds, plan.ofSounds);
    m_plan.found += plan.found;
    m_plan.away += plan.away;
    takePlaylists(plan.playlists);
    if (!isUnderWay)
        takeStep();
}

// The windows get a turn between the portions.
void SaidTransfer::takeStep() {
    constexpr std::size_t takenAtOnce = 500;
    m_needs.sounds.join(takeLast(m_plan.ofSounds, takenAtOnce));
    auto says = takeLast(m_plan.ofPaths, takenAtOnce);
    for (auto& [path, said] : says)
        said = joined(m_needs.userData.said(path), said);
    m_needs.userData.say(says);
    if (!m_plan.ofPaths.empty() || !m_plan.ofSounds.empty()) {
        QMetaObject::invokeMethod(this, &SaidTransfer::takeStep, Qt::QueuedConnection);
        return;
    }
    m_needs.status.show(
        L10n::importedListening(m_plan.found, m_plan.away, m_needs.language.resolvedLanguage()),
        false);
    m_plan = {};
    Q_EMIT ended();
}

// A playlist that is here gets what it lacks.
void SaidTransfer::takePlaylists(const std::vector<SaidPlaylist>& playlists) {
    for (const SaidPlaylist& playlist : playlists) {
        const auto& all = m_needs.playlists.all();
        const auto here = std::find_if(all.cbegin(), all.cend(), [&](const Playlist& one) {
            return one.name == playlist.name;
        });
        if (here == all.cend())
            m_needs.playlists.addPlaylist(playlist.name, playlist.paths);
        else
            m_needs.playlists.addTrackPaths(playlist.paths, here->id);
    }
}

} // namespace halvane
