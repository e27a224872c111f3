// SPDX-License-Identifier: MIT
#include "platform/preferences/shared_names.h"

#include <utility>

namespace halvane {

std::string_view SharedNames::Names::at(std::size_t index) const {
    const std::size_t begin = index == 0 ? 0 : ends[index - 1];
    return std::string_view(bytes).substr(begin, ends[index] - begin);
}

void SharedNames::Names::add(std::string_view utf8, const QString& text) {
    bytes.append(utf8);
    ends.push_back(bytes.size());
    texts.push_back(text);
}

QString SharedNames::take(std::string_view utf8) {
    const auto made = [utf8] {
        return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    };
    if (!m_union.texts.empty() && utf8 <= m_union.at(m_union.texts.size() - 1))
        return made();
    for (; m_next < m_known.texts.size(); ++m_next) {
        const std::string_view known = m_known.at(m_next);
        if (known == utf8) {
            m_union.add(utf8, m_known.texts[m_next]);
            return m_known.texts[m_next++];
        }
        if (known > utf8)
            break;
        m_union.add(known, m_known.texts[m_next]);
    }
    m_union.add(utf8, made());
    return m_union.texts.back();
}

void SharedNames::endList() {
    for (; m_next < m_known.texts.size(); ++m_next)
        m_union.add(m_known.at(m_next), m_known.texts[m_next]);
    m_known = std::exchange(m_union, {});
    m_next = 0;
}

} // namespace halvane
