// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// Texts that several ordered lists have in common, so that each is made and kept once: the lists
/// are run through one after the other, each beside the union of those before it. Names that are
/// out of order are not shared. One thread.
class SharedNames {
  public:
    /// The next text of a list, by its UTF-8.
    QString take(std::string_view utf8);
    /// The list is at its end; the next one begins.
    void endList();

  private:
    /// Texts in ascending order of their UTF-8, which is kept beside them, end to end.
    struct Names {
        std::string bytes;
        std::vector<std::size_t> ends;
        std::vector<QString> texts;

        std::string_view at(std::size_t index) const;
        void add(std::string_view utf8, const QString& text);
    };

    Names m_known;          ///< the union of the lists before
    Names m_union;          ///< the same with what was taken of this one, as far as it has come
    std::size_t m_next = 0; ///< of the known ones
};

} // namespace halvane
