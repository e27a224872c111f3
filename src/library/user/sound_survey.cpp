// SPDX-License-Identifier: MIT
#include "library/user/sound_survey.h"

#include <algorithm>

namespace halvane {

PathsOfSounds surveySounds(const TrackRows& rows, const QSet<SoundIdentity>& sought) {
    std::vector<std::pair<SoundIdentity, std::size_t>> sounds; // with their rows
    sounds.reserve(rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row)
        if (rows[row]->identity.isKnown() && rows[row]->sourceURL)
            sounds.emplace_back(rows[row]->identity, row);
    std::sort(sounds.begin(), sounds.end());
    PathsOfSounds paths;
    for (auto first = sounds.cbegin(); first != sounds.cend();) {
        const SoundIdentity identity = first->first;
        const auto end = std::find_if(first, sounds.cend(),
                                      [&](const auto& sound) { return sound.first != identity; });
        if (end - first > 1 || sought.contains(identity))
            for (auto sound = first; sound != end; ++sound)
                paths[identity].append(rows[sound->second]->path());
        first = end;
    }
    return paths;
}

} // namespace halvane
