// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane {

/// Shares texts among several lists, so that a text that comes in more than one of them is kept in
/// memory once. The lists are read one after the other. Each is compared with the longest of those
/// before it, in one pass over both, so that texts are found where both lists are sorted by their
/// UTF-8. A list in another order is read all the same, but shares little. One thread.
class SharedNames {
  public:
    /// The next text of the present list, from its UTF-8.
    QString take(std::string_view utf8) {
        while (m_next < m_longest.size() && m_longest[m_next].first < utf8)
            ++m_next;
        const bool isShared = m_next < m_longest.size() && m_longest[m_next].first == utf8;
        m_current.emplace_back(
            utf8, isShared ? m_longest[m_next].second
                           : QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())));
        return m_current.back().second;
    }
    /// The present list has ended. The next one begins.
    void endList() {
        if (m_current.size() > m_longest.size())
            m_longest.swap(m_current);
        m_current.clear();
        m_next = 0;
    }

  private:
    using Names = std::vector<std::pair<std::string, QString>>; ///< each text twice, as UTF-8 too

    Names m_longest;
    Names m_current;
    std::size_t m_next = 0; ///< place in m_longest
};

} // namespace halvane
