// SPDX-License-Identifier: MIT
#include "platform/preferences/preferences_salvage.h"

#include "platform/preferences/number_list_text.h"
#include "platform/preferences/preferences_database.h"
#include "platform/preferences/preferences_reader.h"

#include <QByteArrayList>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrl>

#include <sqlite3.h>

#include <deque>
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

// Where the end of a file was cut off, SQLite reads zeros and reports no error.
bool isWholeText(const SqliteQuery& query, int column) {
    return query.type(column) == SQLITE_TEXT &&
           query.utf8(column).find('\0') == std::string_view::npos;
}

void takeOutRemoved(SalvagedPreferences& salvaged) {
    for (auto entry = salvaged.values.begin(); entry != salvaged.values.end(); ++entry) {
        std::optional<PreferenceValue> value(std::move(*entry));
        applyRemovals(salvaged.removals, entry.key(), value);
        *entry = *std::move(value);
    }
}

// Reads a damaged file's tables into values.
class Reader {
  public:
    Reader(const QString& path, int flags)
        : m_connection(path, flags, 0) {
        // With this SQLite opens a file that ends too early, too.
        m_connection.execute("PRAGMA writable_schema = ON");
    }

    SalvagedPreferences read();

  private:
    // Visits the rows in the order of their first two columns and, where a damaged page stops that,
    // in the opposite one.
    template<typename Visit>
    void scan(const QByteArray& what, const Visit& visit);
    template<typename List, typename Item>
    void readList(const char* what, const Item& item);
    template<typename Map, typename Entry>
    void readMap(const char* what, const Entry& entry);
    void readKeys();
    void nameOrphans();

    template<typename Collection>
    Collection& collection(qint64 id) {
        auto& value = m_values[id];
        if (!std::holds_alternative<Collection>(value))
            value = Collection();
        return std::get<Collection>(value);
    }

    std::deque<QByteArray> m_statements;
    SqliteConnection m_connection;
    std::map<qint64, QString> m_keys;
    std::map<qint64, PreferenceValue> m_values;
    bool m_isComplete = true;
};

template<typename Visit>
void Reader::scan(const QByteArray& what, const Visit& visit) {
    for (const char* order : {" ORDER BY 1, 2", " ORDER BY 1 DESC, 2 DESC"}) {
        m_statements.push_back("SELECT " + what + order);
        try {
            auto query = m_connection.query(m_statements.back().constData());
            while (query.next())
                visit(query);
            return;
        } catch (const SqliteError&) {
            m_isComplete = false;
        }
    }
}

void Reader::readKeys() {
    scan("id, key, kind, value FROM preference", [this](const SqliteQuery& query) {
        const qint64 id = query.integer(0);
        m_keys[id] = query.text(1);
        m_values[id] = PreferencesReader::single(query, 3, query.text(2));
    });
}

// Sorts the items by place, since a list may be read from both of its ends.
template<typename List, typename Item>
void Reader::readList(const char* what, const Item& item) {
    std::map<qint64, std::map<qint64, typename List::value_type>> lists;
    scan(what, [&](const SqliteQuery& query) {
        if (auto found = item(query))
            lists[query.integer(0)][query.integer(1)] = *std::move(found);
    });
    for (const auto& [id, items] : lists)
        for (const auto& [position, value] : items)
            collection<List>(id).push_back(value);
}

template<typename Map, typename Entry>
void Reader::readMap(const char* what, const Entry& entry) {
    scan(what, [&](const SqliteQuery& query) {
        if (auto found = entry(query); found && isWholeText(query, 1))
            collection<Map>(query.integer(0))[query.text(1)] = *std::move(found);
    });
}

// Items whose key's row is lost find their key in the index over the keys, where that can be read.
void Reader::nameOrphans() {
    if (!m_isComplete)
        scan("key, id FROM preference INDEXED BY sqlite_autoindex_preference_1",
             [this](const SqliteQuery& query) { m_keys.emplace(query.integer(1), query.text(0)); });
}

SalvagedPreferences Reader::read() {
    readKeys();
    readList<std::vector<double>>("* FROM number_item", [](const SqliteQuery& query) {
        return std::optional(query.number(2));
    });
    readList<QStringList>("* FROM string_item", [](const SqliteQuery& query) {
        return isWholeText(query, 2) ? std::optional(query.text(2)) : std::nullopt;
    });
    readList<std::vector<QByteArray>>(
        "* FROM data_item", [](const SqliteQuery& query) { return std::optional(query.blob(2)); });
    readMap<IntegerMap>("* FROM integer_entry",
                        [](const SqliteQuery& query) { return std::optional(query.integer(2)); });
    readMap<NumbersMap>("* FROM numbers_entry",
                        [](const SqliteQuery& query) { return numberListFromText(query.utf8(2)); });
    nameOrphans();
    SalvagedPreferences result;
    result.isComplete = m_isComplete;
    try {
        prepareNotes(m_connection);
        result.removals = notedRemovals(m_connection);
    } catch (const SqliteError&) {
        // They can't be read, so that what they name comes back.
    }
    for (const auto& [id, value] : m_values) {
        const auto key = m_keys.find(id);
        if (key != m_keys.end() && !std::holds_alternative<std::monostate>(value))
            result.values.insert(key->second, value);
    }
    takeOutRemoved(result);
    return result;
}

SalvagedPreferences readFile(const QString& path, int flags) {
    try {
        return Reader(path, flags).read();
    } catch (const SqliteError&) {
        return {};
    }
}

fs::path nativePath(const QString& path) {
    return fs::path(QFile::encodeName(path).toStdString());
}

// Gives a file a second name, or copies it where the file system knows no links.
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

// Adds the entries of an older value of the same kind.
struct Merge {
    PreferenceValue& newer;

    void operator()(const IntegerMap& older) { mergeMaps(older); }
    void operator()(const NumbersMap& older) { mergeMaps(older); }
    void operator()(const QStringList& older) {
        std::optional<PreferenceValue> all(std::move(newer));
        applyChange({{}, PreferenceChange::InsertStrings{older}}, all);
        newer = *std::move(all);
    }
    template<typename Other>
    void operator()(const Other&) {}

  private:
    template<typename Map>
    void mergeMaps(Map all) {
        all.insert(std::get<Map>(newer));
        newer = std::move(all);
    }
};

void removeWithLog(const QString& path) {
    for (const auto& suffix : {QString(), logSuffix, sharedSuffix})
        QFile::remove(path + suffix);
}

void writeAll(const QString& path, const QHash<QString, PreferenceValue>& values) {
    std::vector<PreferenceChange> changes;
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry)
        changes.push_back({entry.key(), PreferenceChange::Set{*entry}});
    PreferencesDatabase(path, 0).apply(changes);
    // Closing moves everything from the log into the file, if there is room.
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
        else if (found->index() == entry->index())
            std::visit(Merge{*found}, *entry);
    }
    takeOutRemoved(salvaged);
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
        // SQLite would take a log that is left behind for the new file's.
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
