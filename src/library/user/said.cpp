// SPDX-License-Identifier: MIT
#include "library/user/said.h"

#include <QSet>

#include <algorithm>
#include <cmath>

namespace halvane {

namespace {

constexpr std::size_t saidNumbers = 3;
constexpr qint64 mostStars = 5;
constexpr double mostPlays = 9e15; // whole numbers are exact up to there

bool isCount(double number, double most) {
    return number >= 0 && number <= most && number == std::floor(number);
}

} // namespace

Said joined(const Said& one, const Said& other) {
    return {one.isLoved || other.isLoved, std::max(one.rating, other.rating),
            std::max(one.plays, other.plays), std::max(one.lastPlayed, other.lastPlayed)};
}

Said followed(const Said& noted, const Said& before, const Said& after) {
    return {after.isLoved != before.isLoved ? after.isLoved : noted.isLoved,
            after.rating != before.rating ? after.rating : noted.rating,
            noted.plays + std::max<qint64>(after.plays - before.plays, 0),
            std::max(noted.lastPlayed, after.lastPlayed)};
}

Said saidOfReplaced(const Said& ofPath, const std::optional<Said>& ofSound, bool hasOldGone) {
    if (ofSound)
        return *ofSound;
    return hasOldGone ? Said() : ofPath;
}

Said withTags(Said said, const SaidTags& tags) {
    if (said.rating == 0)
        said.rating = std::min<qint64>(tags.rating, mostStars);
    said.plays += tags.plays;
    return said;
}

std::vector<double> storedNote(const SoundNote& note) {
    std::vector<double> numbers{note.said.isLoved ? 1.0 : 0.0,
                                static_cast<double>(note.said.rating),
                                static_cast<double>(note.said.plays)};
    numbers.insert(numbers.end(), note.loudness.cbegin(), note.loudness.cend());
    return numbers;
}

std::optional<SoundNote> noteFromStored(const std::vector<double>& numbers) {
    if (numbers.size() < saidNumbers || !isCount(numbers[0], 1) ||
        !isCount(numbers[1], static_cast<double>(mostStars)) || !isCount(numbers[2], mostPlays))
        return std::nullopt;
    SoundNote note;
    note.said = {numbers[0] == 1, static_cast<qint64>(numbers[1]), static_cast<qint64>(numbers[2]),
                 0};
    note.loudness.assign(numbers.cbegin() + saidNumbers, numbers.cend());
    return note;
}

std::optional<std::vector<QString>>
withStandIns(const std::vector<QString>& paths,
             const std::function<std::optional<QString>(const QString& path)>& standIn) {
    QHash<qsizetype, QString> found;
    for (std::size_t i = 0; i < paths.size(); ++i)
        if (auto other = standIn(paths[i]))
            found.insert(static_cast<qsizetype>(i), *std::move(other));
    if (found.isEmpty())
        return std::nullopt;
    QSet<QString> held;
    for (std::size_t i = 0; i < paths.size(); ++i)
        if (!found.contains(static_cast<qsizetype>(i)))
            held.insert(paths[i]);
    std::vector<QString> now;
    now.reserve(paths.size());
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const auto other = found.constFind(static_cast<qsizetype>(i));
        if (other == found.cend()) {
            now.push_back(paths[i]);
        } else if (!held.contains(*other)) {
            held.insert(*other);
            now.push_back(*other);
        }
    }
    return now;
}

} // namespace halvane
