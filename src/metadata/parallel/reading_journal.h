// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>

#include <array>
#include <memory>
#include <mutex>

namespace halvane {

/// Remembers files that crash the readers or never let them finish, so that each does so once. The
/// path of a file that is being read stands in a small mapped file, which costs no system call and
/// outlives the program. The files that stand there at the next start were being read when the
/// program died, and one of them did it. Each is then read alone. A file that the program dies of
/// alone is not read again until it changes. Any thread. Without a writable folder nothing is
/// remembered.
class ReadingJournal {
  public:
    /// Makes the folder where there is none, and reads what an earlier run left in it.
    explicit ReadingJournal(const QString& folder);
    ~ReadingJournal();
    ReadingJournal(const ReadingJournal&) = delete;
    ReadingJournal& operator=(const ReadingJournal&) = delete;

    enum class Verdict { sound, suspect, condemned };
    [[nodiscard]] Verdict verdict(const QString& path) const;

    /// A file is being read for as long as this lives.
    class Entry {
      public:
        /// `isAlone`: no other file is being read.
        Entry(ReadingJournal& journal, const QString& path, bool isAlone);
        ~Entry();
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;

      private:
        ReadingJournal& m_journal;
        std::size_t m_slot;
    };

    /// The file kept a reader at work without end.
    void condemn(const QString& path);
    /// A suspect was read without harm.
    void acquit(const QString& path);
    /// The program ends in order, so the files that are still being read did no harm. Nothing is
    /// remembered from now on.
    void close();

  private:
    static constexpr std::size_t slots = 32;
    static constexpr std::size_t slotBytes = 4096;

    /// A file as it was when it got its verdict.
    struct Trouble {
        Verdict verdict = Verdict::suspect;
        double modificationDate = 0;
        qint64 size = 0;
    };

    void takeUp();
    void load();
    void store() const;
    void note(const QString& path, Verdict verdict);
    [[nodiscard]] char* slot(std::size_t index) const { return m_map + index * slotBytes; }

    QString m_folder;
    char* m_map = nullptr; ///< slots: a mark, the length of the path, the path
    std::array<bool, slots> m_isTaken{};
    QHash<QString, Trouble> m_troubles;
    bool m_isClosed = false;
    mutable std::mutex m_mutex; ///< guards all of the above
};

} // namespace halvane
