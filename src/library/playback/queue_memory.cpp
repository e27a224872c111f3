// SPDX-License-Identifier: MIT
#include "library/playback/queue_memory.h"

#include "library/playback/transport.h"
#include "library/user/settings_keys.h"
#include "metadata/cache/atomic_file.h"
#include "platform/log.h"
#include "platform/preferences/preferences.h"
#include "platform/thread_check.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace halvane {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

// Dragging entries about makes many changes, of which the last counts.
constexpr auto restBeforeSave = 3s;
// What a crash may cost of the place.
constexpr auto betweenPlaces = 10s;

bool writeAtomically(const QString& path, const QByteArray& bytes) {
    AtomicFile file(path);
    file.write(bytes);
    return file.commit();
}

} // namespace

QByteArray LeftQueue::toJson() const {
    QJsonObject object{{u"version"_s, 1}, {u"paths"_s, QJsonArray::fromStringList(paths)}};
    if (sourceLabel)
        object.insert(u"source"_s, *sourceLabel);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<LeftQueue> LeftQueue::fromJson(const QByteArray& json) {
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    if (object.value(u"version"_s).toInt() != 1)
        return std::nullopt;
    LeftQueue left;
    for (const auto& path : object.value(u"paths"_s).toArray())
        left.paths.append(path.toString());
    if (const auto source = object.value(u"source"_s); source.isString())
        left.sourceLabel = source.toString();
    return left;
}

std::vector<PlayQueue::Entry> LeftQueue::entries(const TrackRows& library) const {
    QHash<QString, TrackPtr> known;
    known.reserve(static_cast<qsizetype>(library.size()));
    for (const TrackPtr& track : library)
        known.insert(track->path(), track);
    TrackRows left;
    for (const QString& path : paths) {
        if (const auto found = known.constFind(path); found != known.cend())
            left.push_back(*found);
    }
    return PlayQueue::entriesFor(left);
}

QueueMemory::QueueMemory(Preferences& preferences, PlayQueue& queue, Transport& transport,
                         Clock& clock, QString folder, QObject* parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_queue(queue)
    , m_transport(transport)
    , m_clock(clock)
    , m_folder(std::move(folder)) {
    connect(&queue, &PlayQueue::entriesChanged, this, &QueueMemory::entriesChanged);
    connect(&queue, &PlayQueue::sourceLabelChanged, this, &QueueMemory::entriesChanged);
    connect(&transport, &Transport::nowPlayingChanged, this, &QueueMemory::savePlace);
    connect(&transport, &Transport::isPlayingChanged, this, [this] {
        m_beat = m_transport.isPlaying() ? m_clock.every(betweenPlaces, [this] { savePlace(); })
                                         : nullptr;
    });
}

QueueMemory::~QueueMemory() {
    m_worker.finish();
}

QString QueueMemory::file() const {
    return m_folder + u"/queue.json"_s;
}

void QueueMemory::restore() {
    m_isChosen = m_preferences.boolean(SettingsKey::startsWhereLeftOff).value_or(false);
}

void QueueMemory::setStartsWhereLeftOff(bool chosen) {
    assertOwnThread(*this);
    if (m_isChosen == chosen)
        return;
    m_isChosen = chosen;
    m_preferences.setBoolean(SettingsKey::startsWhereLeftOff, chosen);
    if (chosen) {
        saveEntries();
        savePlace();
    } else {
        m_pendingSave.reset();
        m_preferences.remove(SettingsKey::queuePlace);
        m_worker.start([file = file()](const SerialWorker::Job&) { QFile::remove(file); });
    }
    Q_EMIT startsWhereLeftOffChanged();
}

QueueMemory::Recall QueueMemory::recall() const {
    if (!m_isChosen)
        return [] { return std::optional<LeftQueue>(); };
    return [path = file()]() -> std::optional<LeftQueue> {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return std::nullopt;
        return LeftQueue::fromJson(file.readAll());
    };
}

void QueueMemory::takeUp(std::vector<PlayQueue::Entry> entries, const LeftQueue& left) {
    assertOwnThread(*this);
    m_queue.assign(std::move(entries), left.sourceLabel);
    const QStringList place =
        m_preferences.strings(SettingsKey::queuePlace).value_or(QStringList());
    if (place.size() != 3)
        return;
    const QString& path = place[0];
    // Entries before it may have left the library, and a file may be there twice.
    std::size_t row = place[1].toULongLong();
    if (row >= m_queue.size() || m_queue.record(row).path() != path) {
        const auto first = m_queue.rowOfPath(path);
        if (!first)
            return;
        row = *first;
    }
    m_transport.takeUp(row, place[2].toDouble());
}

void QueueMemory::begin() {
    m_hasBegun = true;
    entriesChanged(); // files may have been opened meanwhile
    if (m_transport.hasLoadedFile())
        savePlace();
}

void QueueMemory::save() {
    if (m_pendingSave)
        saveEntries();
    savePlace();
    m_worker.finish();
}

void QueueMemory::entriesChanged() {
    if (m_isChosen && m_hasBegun)
        m_pendingSave = m_clock.after(restBeforeSave, [this] { saveEntries(); });
}

void QueueMemory::saveEntries() {
    m_pendingSave.reset();
    m_worker.start([records = m_queue.records(), label = m_queue.sourceLabel(), folder = m_folder,
                    file = file()](const SerialWorker::Job&) {
        LeftQueue left{{}, label};
        for (const TrackPtr& record : records)
            left.paths.append(record->path());
        if (!QDir().mkpath(folder) || !writeAtomically(file, left.toJson()))
            qCWarning(libraryLog, "the queue can't be kept for the next start");
    });
}

void QueueMemory::savePlace() {
    if (!m_isChosen || !m_hasBegun)
        return;
    const auto row = m_queue.currentRow();
    if (!row)
        return m_preferences.remove(SettingsKey::queuePlace);
    m_preferences.setStrings(SettingsKey::queuePlace,
                             {m_queue.currentPath(), QString::number(*row),
                              QString::number(m_transport.elapsedSeconds(), 'f', 3)});
}

} // namespace halvane
