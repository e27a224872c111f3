// SPDX-License-Identifier: MIT
#include "library/playback/transport_texts.h"

#include "metadata/track_metadata_loader.h"
#include "presentation/l10n.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace halvane {

namespace {

QString withTime(std::size_t count, const QString& tracks, double seconds,
                 ResolvedLanguage language) {
    const auto minutes = static_cast<qint64>(std::ceil(seconds / 60));
    return count == 0 ? QString() : tracks + u" · "_s + L10n::timeSpan(minutes, language);
}

} // namespace

QString durationDisplay(const QString& duration, std::optional<double> durationSeconds,
                        bool showRemaining, double elapsedSeconds) {
    if (!showRemaining || !durationSeconds)
        return duration;
    return u"-"_s +
           TrackMetadataLoader::formatDuration(std::max(0.0, *durationSeconds - elapsedSeconds));
}

QString noDurationDisplay() {
    return u"--:--"_s;
}

QString queuePositionText(std::optional<std::size_t> place, std::size_t count) {
    return place ? QString::number(*place + 1) + u" / "_s + QString::number(count) : QString();
}

QString queueLeftText(std::size_t count, double seconds, ResolvedLanguage language) {
    return withTime(count, L10n::tracksLeft(static_cast<qint64>(count), language), seconds,
                    language);
}

QString queueTotalText(std::size_t count, double seconds, ResolvedLanguage language) {
    return withTime(count, L10n::trackCount(static_cast<qint64>(count), language), seconds,
                    language);
}

QString queueSourceText(const std::optional<QString>& label, ResolvedLanguage language) {
    return L10n::text(L10nKey::playingFrom, language) + u": "_s +
           label.value_or(L10n::text(L10nKey::library, language));
}

} // namespace halvane
