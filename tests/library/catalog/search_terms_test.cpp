// SPDX-License-Identifier: MIT
#include "library/catalog/search_terms.h"

#include <QString>

#include <gtest/gtest.h>

using namespace halvane;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 open = std::numeric_limits<qint64>::max();

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
        EXPECT_EQ(searchTerms(c.typed), c.terms) << c.typed.toStdString();
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
        EXPECT_EQ(searchTerms(c.typed), c.terms) << c.typed.toStdString();
}

TEST(SearchTerms, AreNoneInPlainWords) {
    for (const QString& typed :
         {u""_s, u"  "_s, u"miles blue"_s, u"Mission: Impossible"_s, u"Album: The Best"_s, u"-"_s,
          u"- a"_s, u"a - b"_s, u"AC-DC"_s, u"7\" mix"_s, u"foo:bar"_s, u":"_s, u"year:long"_s,
          u"rating:-1"_s, u"year:99999999999999999999"_s, u"plays:>9223372036854775807"_s})
        EXPECT_EQ(searchTerms(typed), std::nullopt) << typed.toStdString();
}

TEST(SearchTerms, AnUnfinishedTermIsNoneYet) {
    for (const QString& typed : {u"artist:"_s, u"year:"_s, u"rating:>"_s, u"rating:>="_s,
                                 u"year:.."_s, u"-album:"_s, u"artist:\""_s, u"\""_s})
        EXPECT_EQ(searchTerms(typed), std::vector<SearchTerm>()) << typed.toStdString();
}
