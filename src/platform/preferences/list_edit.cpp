// SPDX-License-Identifier: MIT
#include "platform/preferences/list_edit.h"

#include <QSet>

#include <algorithm>
#include <limits>
#include <optional>
#include <span>

namespace halvane {

namespace {

using Stored = std::span<const PlacedText>;
using Wanted = std::span<const QString>;

// Which of the stored texts stay: those that are still wanted, when they are wanted in this order;
// otherwise none.
std::vector<PlacedText> kept(Stored stored, Wanted wanted) {
    const QSet<QString> names(wanted.begin(), wanted.end());
    std::vector<PlacedText> result;
    for (const auto& placed : stored)
        if (names.contains(placed.text))
            result.push_back(placed);
    auto next = result.cbegin();
    for (const auto& text : wanted)
        if (next != result.cend() && next->text == text)
            ++next;
    if (next != result.cend())
        result.clear();
    return result;
}

constexpr qint64 endOfPlaces = std::numeric_limits<qint64>::max();

// Puts texts between two places; false when the gap is too narrow.
bool place(std::vector<PlacedText>& into, Wanted texts, qint64 after, qint64 before) {
    const auto count = static_cast<qint64>(texts.size());
    const qint64 step = std::min((before - after) / (count + 1), listSpacing);
    if (step == 0 && count > 0)
        return false;
    qint64 position = after;
    for (const auto& text : texts)
        into.push_back({position += step, text});
    return true;
}

// The texts to put in around those that stay; none when a gap is too narrow.
std::optional<std::vector<PlacedText>> insertions(const std::vector<PlacedText>& staying,
                                                  Wanted wanted, qint64 after, qint64 before) {
    std::vector<PlacedText> result;
    std::size_t from = 0;
    auto next = staying.cbegin();
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (next == staying.cend() || next->text != wanted[i])
            continue;
        if (!place(result, wanted.subspan(from, i - from), after, next->position))
            return std::nullopt;
        after = next->position;
        from = i + 1;
        ++next;
    }
    if (!place(result, wanted.subspan(from), after, before))
        return std::nullopt;
    return result;
}

} // namespace

ListEdit planListEdit(const std::vector<PlacedText>& stored, const QStringList& wanted) {
    const Wanted all(wanted.constData(), static_cast<std::size_t>(wanted.size()));
    const auto same = [](const PlacedText& placed, const QString& text) {
        return placed.text == text;
    };
    const auto [head, wantedHead] =
        std::mismatch(stored.begin(), stored.end(), all.begin(), all.end(), same);
    const auto [tail, wantedTail] =
        std::mismatch(stored.rbegin(), std::make_reverse_iterator(head), all.rbegin(),
                      std::make_reverse_iterator(wantedHead), same);
    const Stored middle(head, tail.base());
    const Wanted wantedMiddle(wantedHead, wantedTail.base());
    const qint64 after = head == stored.begin() ? 0 : std::prev(head)->position;
    const qint64 before = tail == stored.rbegin() ? endOfPlaces : std::prev(tail)->position;

    ListEdit edit;
    const auto staying = kept(middle, wantedMiddle);
    if (auto inserted = insertions(staying, wantedMiddle, after, before)) {
        edit.inserted = *std::move(inserted);
        auto next = staying.cbegin();
        for (const auto& placed : middle) {
            if (next != staying.cend() && next->position == placed.position)
                ++next;
            else
                edit.removed.push_back(placed.position);
        }
    } else { // no room between two texts: number the whole list anew
        for (const auto& placed : stored)
            edit.removed.push_back(placed.position);
        place(edit.inserted, all, 0, endOfPlaces);
    }
    return edit;
}

} // namespace halvane
