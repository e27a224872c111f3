// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane {

/// Lets lists that hold the same texts share them, so that each text is made and kept once. A list
/// is compared with the longest list before it; both must ascend by UTF-8 where they are to share.
/// One thread.
class SharedNames {
  public:
    /// The next text of a list, by its UTF-8.
    QString take(std::string_view utf8) {
        while (m_next < m_longest.size() && m_longest[m_next].first < utf8)
            ++m_next;
        const bool isShared = m_next < m_longest.size() && m_longest[m_next].first == utf8;
        m_current.emplace_back(
            utf8, isShared ? m_longest[m_next].second
                           : QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())));
        return m_current.back().second;
    }
    /// The list is at its end; the next one begins.
    void endList() {
        if (m_current.size() > m_longest.size())
            m_longest.swap(m_current);
        m_current.clear();
        m_next = 0;
    }

  private:
    using Names = std::vector<std::pair<std::string, QString>>;

    Names m_longest;
    Names m_current;
    std::size_t m_next = 0; ///< of the longest
};

} // namespace halvane
