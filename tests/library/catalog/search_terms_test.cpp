// SPDX-License-Identifier: MIT
#include "library/catalog/search_terms.h"

#include <QDateTime>
#include <QString>

#include <gtest/gtest.h>

using namespace halvane;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 open = std::numeric_limits<qint64>::max();
const QDateTime now = QDateTime::fromString(u"2026-03-31T12:00:00Z"_s, Qt::ISODate);

// In seconds since 2001.
qint64 at(const QString& moment) {
    const QDateTime start = QDateTime::fromString(u"2001-01-01T00:00:00Z"_s, Qt::ISODate);
    return start.secsTo(QDateTime::fromString(moment, Qt::ISODate));
}

SearchTerm text(TermField field, const char* folded, bool isExcluded = false) {
    return {field, isExcluded, folded, 0, open};
}
SearchTerm numbers(TermField field, qint64 least, qint64 most, bool isExcluded = false) {
    return {field, isExcluded, {}, least, most};
}

struct Case {
    QString typed;
    std::vector<SearchTerm> terms;
};

} // namespace

TEST(SearchTerms, ReadFieldsPhrasesAndWhatIsLeftOut) {
    using enum TermField;
    const Case cases[] = {
        {u"artist:Miles"_s, {text(artist, "miles")}},
        {u" ARTIST:Beyoncé  halo "_s, {text(artist, "beyonce"), text(anywhere, "halo")}},
        {u"album:\"Kind of Blue\" genre:jazz"_s,
         {text(album, "kind of blue"), text(genre, "jazz")}},
        {u"\"blue train\" -live"_s, {text(anywhere, "blue train"), text(anywhere, "live", true)}},
        {u"-artist:\"a b\" title:x"_s, {text(artist, "a b", true), text(title, "x")}},
        {u"format:flac"_s, {text(format, "flac")}},
        {u"艺人：周 专辑:“十一月”"_s, {text(artist, "周"), text(album, "十一月")}},
        {u"AC-DC -\"bon s"_s, {text(anywhere, "ac-dc"), text(anywhere, "bon s", true)}},
        {u"title:foo:bar"_s, {text(title, "foo:bar")}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(searchTerms(c.typed, now), c.terms) << c.typed.toStdString();
}

TEST(SearchTerms, ReadRangesOfNumbers) {
    using enum TermField;
    const Case cases[] = {
        {u"year:1994"_s, {numbers(year, 1994, 1994)}},
        {u"year:1990..1999"_s, {numbers(year, 1990, 1999)}},
        {u"year:1990-1999"_s, {numbers(year, 1990, 1999)}},
        {u"year:1990.."_s, {numbers(year, 1990, open)}},
        {u"year:..1999"_s, {numbers(year, 1, 1999)}}, // one that is not known is not among them
        {u"-year:<1960"_s, {numbers(year, 1, 1959, true)}},
        {u"rating:>=4"_s, {numbers(rating, 4, open)}},
        {u"rating:0"_s, {numbers(rating, 0, 0)}},
        {u"rating:<=2 plays:>10"_s, {numbers(rating, 0, 2), numbers(plays, 11, open)}},
        {u"评分:=5 播放:<1"_s, {numbers(rating, 5, 5), numbers(plays, 0, 0)}},
        {u"year:long jazz -x"_s,
         {text(anywhere, "year:long"), text(anywhere, "jazz"), text(anywhere, "x", true)}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(searchTerms(c.typed, now), c.terms) << c.typed.toStdString();
}

TEST(SearchTerms, ReadDatesAndAges) {
    using enum TermField;
    const Case cases[] = {
        {u"added:2025"_s,
         {numbers(added, at(u"2025-01-01T00:00:00Z"_s), at(u"2025-12-31T23:59:59Z"_s))}},
        {u"played:2024-02"_s,
         {numbers(played, at(u"2024-02-01T00:00:00Z"_s), at(u"2024-02-29T23:59:59Z"_s))}},
        {u"added:>2025-12-31"_s, {numbers(added, at(u"2026-01-01T00:00:00Z"_s), open)}},
        {u"added:<2025"_s, {numbers(added, 1, at(u"2024-12-31T23:59:59Z"_s))}},
        {u"added:2024..2025-06"_s,
         {numbers(added, at(u"2024-01-01T00:00:00Z"_s), at(u"2025-06-30T23:59:59Z"_s))}},
        {u"added:30d"_s, {numbers(added, at(u"2026-03-01T12:00:00Z"_s), open)}},
        {u"played:>1m"_s, {numbers(played, 1, at(u"2026-02-28T11:59:59Z"_s))}},
        {u"添加：2周 -听过:1年"_s,
         {numbers(added, at(u"2026-03-17T12:00:00Z"_s), open),
          numbers(played, at(u"2025-03-31T12:00:00Z"_s), open, true)}},
        {u"added:2025-13 -x"_s, {text(anywhere, "x", true)}}, // a month is still to come
        {u"added:soon -x"_s, {text(anywhere, "added:soon"), text(anywhere, "x", true)}},
        {u"added:d -x"_s, {text(anywhere, "added:d"), text(anywhere, "x", true)}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(searchTerms(c.typed, now), c.terms) << c.typed.toStdString();
}

TEST(SearchTerms, AreNoneInPlainWords) {
    for (const QString& typed :
         {u""_s, u"  "_s, u"miles blue"_s, u"Mission: Impossible"_s, u"Album: The Best"_s, u"-"_s,
          u"- a"_s, u"a - b"_s, u"AC-DC"_s, u"7\" mix"_s, u"foo:bar"_s, u":"_s, u"year:long"_s,
          u"rating:-1"_s, u"year:99999999999999999999"_s, u"plays:>9223372036854775807"_s})
        EXPECT_EQ(searchTerms(typed, now), std::nullopt) << typed.toStdString();
}

TEST(SearchTerms, AnUnfinishedTermIsNoneYet) {
    for (const QString& typed :
         {u"artist:"_s, u"year:"_s, u"rating:>"_s, u"rating:>="_s, u"year:.."_s, u"added:20"_s,
          u"played:>2025-"_s, u"-album:"_s, u"artist:\""_s, u"\""_s})
        EXPECT_EQ(searchTerms(typed, now), std::vector<SearchTerm>()) << typed.toStdString();
}
