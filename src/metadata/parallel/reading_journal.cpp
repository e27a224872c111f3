// SPDX-License-Identifier: MIT
#include "metadata/parallel/reading_journal.h"

#include "metadata/cache/atomic_file.h"
#include "metadata/file_dates.h"
#include "platform/log.h"

#include <QDir>
#include <QFile>
#include <QUrl>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// What a slot begins with. The path is written before the mark.
constexpr char freeMark = 0;
constexpr char sharedMark = 1; // other files were being read as well
constexpr char aloneMark = 2;
constexpr std::size_t headerBytes = 1 + sizeof(quint16);

void setMark(char* slot, char mark) {
    std::atomic_ref(*slot).store(mark, std::memory_order_release);
}

} // namespace

ReadingJournal::ReadingJournal(const QString& folder)
    : m_folder(folder) {
    QDir().mkpath(folder);
    load();
    const QByteArray file = (folder + u"/being-read"_s).toUtf8();
    const int descriptor =
        ::open(file.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (descriptor < 0)
        return;
    // Room is allocated now, because writing to a hole on a full disk would end the program.
    constexpr off_t size = slots * slotBytes;
    if (::posix_fallocate(descriptor, 0, size) == 0) {
        void* map = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
        if (map != MAP_FAILED)
            m_map = static_cast<char*>(map);
    }
    ::close(descriptor);
    if (m_map)
        takeUp();
}

ReadingJournal::~ReadingJournal() {
    if (m_map)
        ::munmap(m_map, slots * slotBytes);
}

void ReadingJournal::takeUp() {
    for (std::size_t i = 0; i < slots; ++i) {
        const char mark = *slot(i);
        quint16 length = 0;
        std::memcpy(&length, slot(i) + 1, sizeof length);
        if (mark != freeMark && length <= slotBytes - headerBytes) {
            const QString path = QString::fromUtf8(slot(i) + headerBytes, length);
            note(path, mark == aloneMark ? Verdict::condemned : Verdict::suspect);
        }
        setMark(slot(i), freeMark);
    }
    if (!m_troubles.isEmpty())
        store();
}

void ReadingJournal::note(const QString& path, Verdict verdict) {
    const FileFacts facts = fileFacts(path);
    m_troubles.insert(path, {verdict, facts.modificationDate, facts.size});
    if (verdict == Verdict::condemned)
        qCWarning(libraryLog, "not read until it changes, for it harmed the program: %s",
                  qUtf8Printable(path));
}

ReadingJournal::Verdict ReadingJournal::verdict(const QString& path) const {
    Trouble trouble;
    {
        const std::lock_guard lock(m_mutex);
        const auto known = m_troubles.constFind(path);
        if (known == m_troubles.cend())
            return Verdict::sound;
        trouble = *known;
    }
    const FileFacts facts = fileFacts(path);
    const bool isTheSame =
        facts.modificationDate == trouble.modificationDate && facts.size == trouble.size;
    return isTheSame ? trouble.verdict : Verdict::sound;
}

void ReadingJournal::condemn(const QString& path) {
    const std::lock_guard lock(m_mutex);
    if (m_isClosed)
        return;
    note(path, Verdict::condemned);
    store();
}

void ReadingJournal::acquit(const QString& path) {
    const std::lock_guard lock(m_mutex);
    if (m_troubles.remove(path) && !m_isClosed)
        store();
}

void ReadingJournal::close() {
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    for (std::size_t i = 0; i < slots; ++i)
        if (m_isTaken[i])
            setMark(slot(i), freeMark);
}

ReadingJournal::Entry::Entry(ReadingJournal& journal, const QString& path, bool isAlone)
    : m_journal(journal)
    , m_slot(slots) {
    const QByteArray bytes = path.toUtf8();
    if (!journal.m_map || static_cast<std::size_t>(bytes.size()) > slotBytes - headerBytes)
        return;
    const std::lock_guard lock(journal.m_mutex);
    const auto free = std::find(journal.m_isTaken.begin(), journal.m_isTaken.end(), false);
    if (journal.m_isClosed || free == journal.m_isTaken.end())
        return;
    *free = true;
    m_slot = static_cast<std::size_t>(free - journal.m_isTaken.begin());
    char* target = journal.slot(m_slot);
    const auto length = static_cast<quint16>(bytes.size());
    std::memcpy(target + 1, &length, sizeof length);
    std::memcpy(target + headerBytes, bytes.constData(), length);
    setMark(target, isAlone ? aloneMark : sharedMark);
}

ReadingJournal::Entry::~Entry() {
    if (m_slot == slots)
        return;
    const std::lock_guard lock(m_journal.m_mutex);
    m_journal.m_isTaken[m_slot] = false;
    if (!m_journal.m_isClosed) // another journal may have the slot by now
        setMark(m_journal.slot(m_slot), freeMark);
}

// One line a file: verdict, date, size, percent-encoded path.

void ReadingJournal::load() {
    QFile file(m_folder + u"/unreadable-files"_s);
    if (!file.open(QIODevice::ReadOnly))
        return;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() != 4)
            continue;
        m_troubles.insert(QString::fromUtf8(QByteArray::fromPercentEncoding(fields[3])),
                          {fields[0] == "condemned" ? Verdict::condemned : Verdict::suspect,
                           fields[1].toDouble(), fields[2].toLongLong()});
    }
}

void ReadingJournal::store() const {
    AtomicFile file(m_folder + u"/unreadable-files"_s);
    for (const auto& [path, trouble] : m_troubles.asKeyValueRange()) {
        file.write(trouble.verdict == Verdict::condemned ? "condemned " : "suspect ");
        file.write(QByteArray::number(trouble.modificationDate, 'g', 17) + ' ' +
                   QByteArray::number(trouble.size) + ' ' + path.toUtf8().toPercentEncoding("/") +
                   '\n');
    }
    file.commit();
}

} // namespace halvane
