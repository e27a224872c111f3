// SPDX-License-Identifier: MIT
// The scales on which programs write ratings into tags, as whole stars: 1 to 5, or 0 for none and
// for what can't be read. Pure, any thread.
#pragma once

#include <QString>

namespace halvane {

/// FMPS_RATING: a number from 0 to 1.
quint8 starsOfShare(const QString& text);

/// RATING, of which each program has its own idea. A number with a point that is at most 1 is a
/// share. Others count to 5, to 10 or to 100, the first of them that has room for the number.
quint8 starsOfRating(const QString& text);

/// The byte of an ID3v2 popularimeter. Most write 1, 64, 128, 196 and 255, others a share of 255,
/// and some put half stars between. The bounds lie where all of them come out as whole stars.
quint8 starsOfPopularity(const QString& text);

/// WM/SharedUserRating: 1, 25, 50, 75 and 99.
quint8 starsOfShared(const QString& text);

/// A number of plays, which FMPS_PLAYCOUNT writes with a point; 0 of what can't be one.
quint32 parsePlays(const QString& text);

} // namespace halvane
