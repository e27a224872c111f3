// SPDX-License-Identifier: MIT
#include "library/playback/transport_texts.h"

#include "metadata/track_metadata_loader.h"
#include "presentation/l10n.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace halvane {

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

QString queueSourceText(const std::optional<QString>& label, ResolvedLanguage language) {
    return L10n::text(L10nKey::playingFrom, language) + u": "_s +
           label.value_or(L10n::text(L10nKey::library, language));
}

} // namespace halvane
