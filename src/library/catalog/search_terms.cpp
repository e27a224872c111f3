// SPDX-License-Identifier: MIT
#include "library/catalog/search_terms.h"

#include "library/catalog/folded_texts.h"
#include "library/catalog/search_ranges.h"

#include <algorithm>
#include <array>

namespace halvane {

namespace {

struct FieldName {
    QStringView english;
    QStringView chinese;
    TermField field;
};

constexpr std::array<FieldName, 10> fieldNames{{{u"title", u"标题", TermField::title},
                                                {u"artist", u"艺人", TermField::artist},
                                                {u"album", u"专辑", TermField::album},
                                                {u"genre", u"流派", TermField::genre},
                                                {u"format", u"格式", TermField::format},
                                                {u"year", u"年份", TermField::year},
                                                {u"rating", u"评分", TermField::rating},
                                                {u"plays", u"播放", TermField::plays},
                                                {u"added", u"添加", TermField::added},
                                                {u"played", u"听过", TermField::played}}};

std::optional<TermField> fieldNamed(QStringView name) {
    for (const FieldName& row : fieldNames)
        if (name.compare(row.english, Qt::CaseInsensitive) == 0 || name == row.chinese)
            return row.field;
    return std::nullopt;
}

bool isOfNumbers(TermField field) {
    return field == TermField::year || field == TermField::rating || field == TermField::plays;
}
bool isOfDates(TermField field) {
    return field == TermField::added || field == TermField::played;
}

// The full width ones are what a Chinese keyboard types.
bool isColon(QChar unit) {
    return unit == u':' || unit == QChar(0xFF1A);
}
bool isOpeningQuote(QChar unit) {
    return unit == u'"' || unit == QChar(0x201C);
}
bool isClosingQuote(QChar unit) {
    return unit == u'"' || unit == QChar(0x201D);
}

// Reads the terms one after the other.
class TermReader {
  public:
    TermReader(QStringView text, const QDateTime& now)
        : m_now(now)
        , m_rest(text.trimmed()) {}

    std::optional<std::vector<SearchTerm>> read() {
        for (; !m_rest.isEmpty(); m_rest = m_rest.trimmed())
            readTerm();
        return m_isPlain ? std::nullopt : std::optional(std::move(m_terms));
    }

  private:
    void readTerm() {
        SearchTerm term;
        term.isExcluded = m_rest.size() > 1 && m_rest[0] == u'-' && !m_rest[1].isSpace();
        if (term.isExcluded)
            m_rest = m_rest.sliced(1);
        const QStringView whole = m_rest;
        if (!takeField(term) || !(isOfNumbers(term.field) || isOfDates(term.field))) {
            takeText(term);
            return;
        }
        const QStringView value = takeWord();
        if (const auto range = rangeIn(value, term.field)) {
            term.least = range->least;
            term.most = range->most;
            add(term);
        } else if (isUnfinished(value, term.field)) {
            m_isPlain = false;
        } else { // no number: words like others
            term.field = TermField::anywhere;
            term.text = foldedForSearch(whole.first(whole.size() - m_rest.size()));
            add(term);
        }
    }

    [[nodiscard]] std::optional<NumberRange> rangeIn(QStringView value, TermField field) const {
        auto range = isOfDates(field) ? dateRangeIn(value, m_now) : numberRangeIn(value);
        // A year that is not known is before none.
        if (range && field == TermField::year)
            range->least = std::max<qint64>(range->least, 1);
        return range;
    }
    static bool isUnfinished(QStringView value, TermField field) {
        return isOfDates(field) ? isUnfinishedDateRange(value) : isUnfinishedNumberRange(value);
    }

    // A name counts as one where a value follows at once, or nothing yet.
    bool takeField(SearchTerm& term) {
        const auto colon = std::find_if(m_rest.cbegin(), m_rest.cend(), isColon);
        if (colon == m_rest.cend())
            return false;
        const qsizetype length = colon - m_rest.cbegin();
        const auto field = fieldNamed(m_rest.first(length));
        const QStringView value = m_rest.sliced(length + 1);
        if (!field || (!value.isEmpty() && value[0].isSpace()))
            return false;
        term.field = *field;
        m_rest = value;
        return true;
    }

    QStringView takeWord() {
        const auto end =
            std::find_if(m_rest.cbegin(), m_rest.cend(), [](QChar unit) { return unit.isSpace(); });
        const QStringView word = m_rest.first(end - m_rest.cbegin());
        m_rest = m_rest.sliced(word.size());
        return word;
    }

    // A quoted phrase goes as far as its closing quote, or to the end while that is to come.
    void takeText(SearchTerm& term) {
        QStringView value;
        if (!m_rest.isEmpty() && isOpeningQuote(m_rest[0])) {
            m_isPlain = false;
            m_rest = m_rest.sliced(1);
            const auto end = std::find_if(m_rest.cbegin(), m_rest.cend(), isClosingQuote);
            value = m_rest.first(end - m_rest.cbegin());
            m_rest = m_rest.sliced(value.size() + (end == m_rest.cend() ? 0 : 1));
        } else {
            value = takeWord();
        }
        term.text = foldedForSearch(value);
        add(term);
    }

    void add(const SearchTerm& term) {
        m_isPlain = m_isPlain && term.field == TermField::anywhere && !term.isExcluded;
        if (isOfNumbers(term.field) || isOfDates(term.field) || !term.text.isEmpty())
            m_terms.push_back(term);
    }

    const QDateTime& m_now;
    QStringView m_rest;
    std::vector<SearchTerm> m_terms;
    bool m_isPlain = true;
};

} // namespace

std::optional<std::vector<SearchTerm>> searchTerms(QStringView text, const QDateTime& now) {
    return TermReader(text, now).read();
}

} // namespace halvane
