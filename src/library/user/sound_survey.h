// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"

#include <QHash>
#include <QSet>

namespace halvane {

/// Standardized paths by the sound of their files, in library order.
using PathsOfSounds = QHash<SoundIdentity, QStringList>;

/// Where the sounds are that several tracks share, and those that are sought. Any thread.
PathsOfSounds surveySounds(const TrackRows& rows, const QSet<SoundIdentity>& sought);

} // namespace halvane
