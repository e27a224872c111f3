// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <stdexcept>
#include <string_view>
#include <unordered_map>

struct sqlite3;
struct sqlite3_stmt;

namespace halvane {

/// A failed call of SQLite, with its primary result code.
class SqliteError : public std::runtime_error {
  public:
    SqliteError(int code, const QString& message)
        : std::runtime_error(message.toStdString())
        , m_code(code) {}
    [[nodiscard]] int code() const { return m_code; }
    /// The file itself is bad. Otherwise something stands in the way of reaching it.
    [[nodiscard]] bool isDamage() const;

  private:
    int m_code;
};

/// A text to bind that is UTF-8 already.
struct SqliteText {
    const QByteArray& utf8;
};

/// One run of a prepared statement, which is reset when this goes. Columns are numbered from 0.
/// Throws SqliteError.
class SqliteQuery {
  public:
    /// The values are those of the parameters ?1, ?2 and so on: numbers, QString and SqliteText, or
    /// QByteArray for data. Not-a-number is stored as NULL.
    template<typename... Values>
    explicit SqliteQuery(sqlite3_stmt* statement, const Values&... values)
        : m_statement(statement) {
        bindAll(values...);
    }
    ~SqliteQuery();
    SqliteQuery(const SqliteQuery&) = delete;
    SqliteQuery& operator=(const SqliteQuery&) = delete;

    /// Moves to the next row; false after the last.
    bool next();
    /// Runs a statement that gives no rows.
    void run();
    /// The same again with other values.
    template<typename... Values>
    void runWith(const Values&... values) {
        bindAll(values...);
        run();
    }

    [[nodiscard]] int type(int column) const; ///< SQLITE_INTEGER and the like
    [[nodiscard]] qint64 integer(int column) const;
    [[nodiscard]] double number(int column) const; ///< NULL is not-a-number
    [[nodiscard]] QString text(int column) const;
    [[nodiscard]] QByteArray blob(int column) const;
    /// The column's UTF-8, valid until the next step.
    [[nodiscard]] std::string_view utf8(int column) const;

  private:
    template<typename... Values>
    void bindAll(const Values&... values) {
        int parameter = 0;
        (bind(++parameter, values), ...);
    }
    void bind(int parameter, qint64 value);
    void bind(int parameter, double value);
    void bind(int parameter, const QString& value);
    void bind(int parameter, SqliteText text);
    void bind(int parameter, const QByteArray& value);

    sqlite3_stmt* m_statement;
};

/// One open database. One thread at a time. Throws SqliteError.
class SqliteConnection {
  public:
    /// Flags are SQLite's own. A call that finds the database locked waits this long at most.
    SqliteConnection(const QString& path, int flags, int busyMilliseconds);
    ~SqliteConnection();
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    void setPatience(int busyMilliseconds);
    void execute(const char* sql);
    /// A statement with the values of its parameters. It is prepared once and known by the address
    /// of its text, which must stay while the connection is used.
    template<typename... Values>
    SqliteQuery query(const char* sql, const Values&... values) {
        return SqliteQuery(prepared(sql), values...);
    }
    /// The one number that a pragma or query gives.
    qint64 single(const char* sql);

    [[nodiscard]] sqlite3* handle() const { return m_handle; }

  private:
    sqlite3_stmt* prepared(const char* sql);

    sqlite3* m_handle = nullptr;
    std::unordered_map<const char*, sqlite3_stmt*> m_statements;
};

/// A write transaction. It is rolled back unless committed.
class SqliteTransaction {
  public:
    explicit SqliteTransaction(SqliteConnection& connection);
    ~SqliteTransaction();
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;

    /// Returns when the changes are on the disk.
    void commit();

  private:
    SqliteConnection& m_connection;
    bool m_open = true;
};

} // namespace halvane
