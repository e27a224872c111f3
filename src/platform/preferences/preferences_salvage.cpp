// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_salvage.h"

#include "platform/preferences/number_list_text.h"
#include "platform/preferences/preferences_database.h"
#include "platform/preferences/preferences_reader.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrl>

#include <sqlite3.h>

#include <fcntl.h>
#include <filesystem>
#include <map>
#include <unistd.h>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

namespace fs = std::filesystem;

const QString logSuffix = u"-wal"_s;
const QString sharedSuffix = u"-shm"_s;

// In the place of what was cut off a file SQLite reads zeros, without an error.
bool isWholeText(const SqliteQuery& query, int column) {
    return query.type(column) == SQLITE_TEXT &&
           query.utf8(column).find('\0') == std::string_view::npos;
}

// Reads a damaged file's tables into values.
class Reader {
  public:
    explicit Reader(SqliteConnection& connection)
        : m_connection(connection) {}

    SalvagedPreferences read();

  private:
    // Visits the rows of a table from its start and, past the first damaged page, from its end.
    template<typename Visit>
    void scan(const char* forwards, const char* backwards, Visit visit);
    void readRows();
    void readItems();
    void nameOrphans();

    template<typename Collection>
    Collection& collection(qint64 id) {
        auto& value = m_values[id];
        if (!std::holds_alternative<Collection>(value))
            value = Collection();
        return std::get<Collection>(value);
    }

    SqliteConnection& m_connection;
    std::map<qint64, QString> m_keys;
    std::map<qint64, PreferenceValue> m_values;
    bool m_isComplete = true;
};

template<typename Visit>
void Reader::scan(const char* forwards, const char* backwards, Visit visit) {
    for (const char* sql : {forwards, backwards}) {
        try {
            auto query = m_connection.query(sql);
            while (query.next())
                visit(query);
            return;
        } catch (const SqliteError&) {
            m_isComplete = false;
        }
    }
}

void Reader::readRows() {
    const auto visit = [this](SqliteQuery& query) {
        const qint64 id = query.integer(0);
        m_keys[id] = query.text(1);
        PreferenceValue value = PreferencesReader::emptyValue(query.text(2));
        if (std::holds_alternative<bool>(value))
            value = query.integer(3) != 0;
        else if (std::holds_alternative<double>(value))
            value = query.number(3);
        else if (std::holds_alternative<QString>(value))
            value = query.text(3);
        else if (std::holds_alternative<QByteArray>(value))
            value = query.blob(3);
        m_values[id] = std::move(value);
    };
    scan("SELECT id, key, kind, value FROM preference ORDER BY id",
         "SELECT id, key, kind, value FROM preference ORDER BY id DESC", visit);
}

void Reader::readItems() {
    // By place, since a list may be read from both of its ends.
    std::map<qint64, std::map<qint64, double>> numbers;
    std::map<qint64, std::map<qint64, QString>> strings;
    std::map<qint64, std::map<qint64, QByteArray>> blobs;
    scan("SELECT * FROM number_item ORDER BY preference, position",
         "SELECT * FROM number_item ORDER BY preference DESC, position DESC",
         [&](SqliteQuery& q) { numbers[q.integer(0)][q.integer(1)] = q.number(2); });
    scan("SELECT * FROM string_item ORDER BY preference, position",
         "SELECT * FROM string_item ORDER BY preference DESC, position DESC", [&](SqliteQuery& q) {
             if (isWholeText(q, 2))
                 strings[q.integer(0)][q.integer(1)] = q.text(2);
         });
    scan("SELECT * FROM data_item ORDER BY preference, position",
         "SELECT * FROM data_item ORDER BY preference DESC, position DESC",
         [&](SqliteQuery& q) { blobs[q.integer(0)][q.integer(1)] = q.blob(2); });
    scan("SELECT * FROM integer_entry ORDER BY preference, name",
         "SELECT * FROM integer_entry ORDER BY preference DESC, name DESC", [&](SqliteQuery& q) {
             if (isWholeText(q, 1))
                 collection<IntegerMap>(q.integer(0))[q.text(1)] = q.integer(2);
         });
    scan("SELECT * FROM numbers_entry ORDER BY preference, name",
         "SELECT * FROM numbers_entry ORDER BY preference DESC, name DESC", [&](SqliteQuery& q) {
             if (auto list = numberListFromText(q.utf8(2)); list && isWholeText(q, 1))
                 collection<NumbersMap>(q.integer(0))[q.text(1)] = *std::move(list);
         });
    for (const auto& [id, items] : numbers)
        for (const auto& [position, number] : items)
            collection<std::vector<double>>(id).push_back(number);
    for (const auto& [id, items] : strings)
        for (const auto& [position, text] : items)
            collection<QStringList>(id).append(text);
    for (const auto& [id, items] : blobs)
        for (const auto& [position, blob] : items)
            collection<std::vector<QByteArray>>(id).push_back(blob);
}

// Items whose key's row is lost may still find their key in the index over the keys.
void Reader::nameOrphans() {
    if (m_isComplete)
        return;
    scan(
        "SELECT id, key FROM preference INDEXED BY sqlite_autoindex_preference_1 ORDER BY key",
        "SELECT id, key FROM preference INDEXED BY sqlite_autoindex_preference_1 ORDER BY key DESC",
        [this](SqliteQuery& query) { m_keys.emplace(query.integer(0), query.text(1)); });
}

SalvagedPreferences Reader::read() {
    readRows();
    readItems();
    nameOrphans();
    SalvagedPreferences result;
    result.isComplete = m_isComplete;
    for (const auto& [id, value] : m_values) {
        const auto key = m_keys.find(id);
        if (key != m_keys.end() && !std::holds_alternative<std::monostate>(value))
            result.values.insert(key->second, value);
    }
    return result;
}

SalvagedPreferences readFile(const QString& path, int flags) {
    try {
        SqliteConnection connection(path, flags, 0);
        // Also opens a file that ends too early.
        connection.execute("PRAGMA writable_schema = ON");
        return Reader(connection).read();
    } catch (const SqliteError&) {
        return {};
    }
}

fs::path nativePath(const QString& path) {
    return fs::path(QFile::encodeName(path).toStdString());
}

// Gives a file a second name; on a file system that knows no links, copies it.
bool setAside(const QString& path, const QString& aside) {
    if (!QFileInfo::exists(path))
        return true;
    std::error_code error;
    fs::create_hard_link(nativePath(path), nativePath(aside), error);
    return !error || QFile::copy(path, aside);
}

QString unusedName(const QString& path, const QString& timeStamp) {
    const QFileInfo info(path);
    const QString stem =
        u"%1/%2.set-aside-%3"_s.arg(info.path(), info.completeBaseName(), timeStamp);
    QString name = stem + u'.' + info.suffix();
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = u"%1-%2.%3"_s.arg(stem, QString::number(i), info.suffix());
    return name;
}

void merge(const PreferenceValue& older, PreferenceValue& newer) {
    if (older.index() != newer.index())
        return;
    if (auto* integers = std::get_if<IntegerMap>(&newer)) {
        IntegerMap all = std::get<IntegerMap>(older);
        all.insert(*integers);
        *integers = std::move(all);
    } else if (auto* numbers = std::get_if<NumbersMap>(&newer)) {
        NumbersMap all = std::get<NumbersMap>(older);
        all.insert(*numbers);
        *numbers = std::move(all);
    } else if (auto* strings = std::get_if<QStringList>(&newer)) {
        std::optional<PreferenceValue> all(newer);
        applyChange({{}, PreferenceChange::InsertStrings{std::get<QStringList>(older)}}, all);
        *strings = std::get<QStringList>(*all);
    }
}

void removeWithLog(const QString& path) {
    for (const auto& suffix : {QString(), logSuffix, sharedSuffix})
        QFile::remove(path + suffix);
}

void writeAll(const QString& path, const QHash<QString, PreferenceValue>& values) {
    std::vector<PreferenceChange> changes;
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry)
        changes.push_back({entry.key(), PreferenceChange::Set{*entry}});
    PreferencesDatabase(path, 0).apply(changes);
    // Closing has moved everything from the log into the file, where there was room.
    if (QFileInfo(path + logSuffix).size() > 0)
        throw SqliteError(SQLITE_FULL, u"there is no room for a new file"_s);
}

void syncFolder(const QString& path) {
    const int folder = ::open(QFile::encodeName(QFileInfo(path).path()).constData(), O_RDONLY);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
}

} // namespace

SalvagedPreferences salvagePreferences(const QString& path) {
    const QTemporaryDir folder;
    const QString copy = folder.filePath(u"copy.sqlite"_s);
    const bool copied =
        folder.isValid() && QFile::copy(path, copy) &&
        (!QFileInfo::exists(path + logSuffix) || QFile::copy(path + logSuffix, copy + logSuffix));
    if (copied) {
        // The copy of a read-only file is read-only too.
        QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
        QFile::setPermissions(copy + logSuffix, QFile::ReadOwner | QFile::WriteOwner);
        return readFile(copy, SQLITE_OPEN_READWRITE);
    }
    const QString uri = QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded) + u"?immutable=1"_s;
    return readFile(uri, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
}

void fillFrom(const QHash<QString, PreferenceValue>& older, SalvagedPreferences& salvaged) {
    for (auto entry = older.cbegin(); entry != older.cend(); ++entry) {
        const auto found = salvaged.values.find(entry.key());
        if (found == salvaged.values.end())
            salvaged.values.insert(entry.key(), *entry);
        else
            merge(*entry, *found);
    }
}

QString replacePreferences(const QString& path, const QHash<QString, PreferenceValue>& values,
                           const QString& timeStamp) {
    const QString fresh = path + u".new"_s;
    try {
        removeWithLog(fresh);
        writeAll(fresh, values);
        const QString aside = unusedName(path, timeStamp);
        if (!setAside(path, aside) || !setAside(path + logSuffix, aside + logSuffix))
            throw SqliteError(SQLITE_CANTOPEN, u"it can't be set aside"_s);
        // A log left behind would be taken for the new file's.
        QFile::remove(path + logSuffix);
        QFile::remove(path + sharedSuffix);
        std::error_code error;
        fs::rename(nativePath(fresh), nativePath(path), error);
        if (error)
            throw SqliteError(SQLITE_CANTOPEN, QString::fromStdString(error.message()));
        syncFolder(path);
        return aside;
    } catch (const SqliteError&) {
        removeWithLog(fresh);
        throw;
    }
}

} // namespace halvane
