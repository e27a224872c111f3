// SPDX-License-Identifier: MIT
#include "library/playback/player_display.h"

#include "library/browsing/browsing.h"
#include "library/browsing/view_state.h"
#include "library/playback/play_queue.h"
#include "library/playback/progress_clock.h"
#include "library/playback/transport.h"
#include "library/playback/transport_texts.h"
#include "library/user/language_setting.h"
#include "library/user/track_user_data.h"
#include "metadata/track_metadata_loader.h"

namespace halvane {

PlayerDisplay::PlayerDisplay(const PlayQueue& queue, const Transport& transport,
                             const ProgressClock& progress, const ViewState& views,
                             const TrackUserData& userData, const Browsing& browsing,
                             const LanguageSetting& language, QObject* parent)
    : QObject(parent)
    , m_queue(queue)
    , m_transport(transport)
    , m_progress(progress)
    , m_views(views)
    , m_userData(userData)
    , m_browsing(browsing)
    , m_language(language) {
    using Self = PlayerDisplay;
    followQueue();
    connect(&userData, &TrackUserData::lovedChanged, this, &Self::isCurrentTrackLovedChanged);
    connect(&userData, &TrackUserData::reset, this, &Self::isCurrentTrackLovedChanged);
    connect(&browsing, &Browsing::selectedAlbumChanged, this, &Self::currentArtworkAlbumChanged);
    connect(&views, &ViewState::showRemainingTimeChanged, this, &Self::durationDisplayChanged);
    connect(&progress, &ProgressClock::elapsedTimeChanged, this, [this] {
        if (m_views.showRemainingTime())
            Q_EMIT durationDisplayChanged();
    });
    connect(&language, &LanguageSetting::languageChanged, this, &Self::queueSourceTextChanged);
    connect(&language, &LanguageSetting::languageChanged, this, &Self::queueLeftTextChanged);
    connect(&transport, &Transport::isShuffleEnabledChanged, this, &Self::queueLeftTextChanged);
}

void PlayerDisplay::followQueue() {
    using Self = PlayerDisplay;
    for (const auto changed : {&PlayQueue::currentChanged, &PlayQueue::currentRecordChanged})
        connect(&m_queue, changed, this, &Self::currentTrackChanged);
    connect(&m_queue, &PlayQueue::currentChanged, this, &Self::isCurrentTrackLovedChanged);
    connect(&m_queue, &PlayQueue::currentChanged, this, &Self::currentArtworkAlbumChanged);
    connect(&m_queue, &PlayQueue::sourceLabelChanged, this, &Self::queueSourceTextChanged);
    for (const auto changed : {&PlayQueue::currentChanged, &PlayQueue::entriesChanged})
        connect(&m_queue, changed, this, &Self::queueLeftTextChanged);
    for (const auto changed : {&PlayQueue::currentChanged, &PlayQueue::currentRecordChanged,
                               &PlayQueue::entriesChanged}) {
        connect(&m_queue, changed, this, &Self::durationDisplayChanged);
        connect(&m_queue, changed, this, &Self::queuePositionTextChanged);
    }
}

bool PlayerDisplay::hasCurrentTrack() const {
    return m_queue.currentRow().has_value();
}

QueueItem PlayerDisplay::currentTrack() const {
    const auto row = m_queue.currentRow();
    return m_queue.itemOf(row ? m_queue.idAt(*row) : QUuid());
}

bool PlayerDisplay::isCurrentTrackLoved() const {
    return m_userData.isLoved(m_queue.currentPath());
}

bool PlayerDisplay::hasCurrentArtworkAlbum() const {
    return m_browsing.artworkAlbum(m_queue.currentItem()) != nullptr;
}

Album PlayerDisplay::currentArtworkAlbum() const {
    return m_browsing.shown(m_browsing.artworkAlbum(m_queue.currentItem()));
}

QString PlayerDisplay::durationDisplay() const {
    if (m_queue.isEmpty())
        return noDurationDisplay();
    const Track& track = m_queue.record(m_queue.currentRow().value_or(0));
    return halvane::durationDisplay(track.duration, track.durationSeconds,
                                    m_views.showRemainingTime(), m_progress.elapsedSeconds());
}

QString PlayerDisplay::timeAt(double fraction) const {
    const auto row = m_queue.currentRow();
    const auto seconds = row ? m_queue.record(*row).durationSeconds : std::nullopt;
    return seconds ? TrackMetadataLoader::formatDuration(fraction * *seconds) : QString();
}

QString PlayerDisplay::queuePositionText() const {
    return halvane::queuePositionText(m_queue.currentRow(), m_queue.size());
}

QString PlayerDisplay::queueLeftText() const {
    const auto current = m_queue.currentRow();
    const auto language = m_language.resolvedLanguage();
    if (!current || m_transport.isShuffleEnabled())
        return queueTotalText(m_queue.size(), m_queue.secondsFrom(0), language);
    const std::size_t next = *current + 1;
    return halvane::queueLeftText(m_queue.size() - next, m_queue.secondsFrom(next), language);
}

QString PlayerDisplay::queueSourceText() const {
    return halvane::queueSourceText(m_queue.sourceLabel(), m_language.resolvedLanguage());
}

} // namespace halvane
