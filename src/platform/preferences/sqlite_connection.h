// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <exception>
#include <string_view>
#include <unordered_map>

struct sqlite3;
struct sqlite3_stmt;

namespace halvane {

/// A failed call of SQLite, with its primary result code.
class SqliteError : public std::exception {
  public:
    SqliteError(int code, const QString& message)
        : m_code(code)
        , m_message(message)
        , m_utf8(message.toUtf8()) {}
    int code() const { return m_code; }
    /// The file itself is bad, as opposed to what stands in the way of reaching it.
    bool isDamage() const;
    QString message() const { return m_message; }
    const char* what() const noexcept override { return m_utf8.constData(); }

  private:
    int m_code;
    QString m_message;
    QByteArray m_utf8;
};

/// One run of a prepared statement; the statement is reset when this goes. Parameters are numbered
/// from 1, columns from 0. Throws SqliteError.
class SqliteQuery {
  public:
    explicit SqliteQuery(sqlite3_stmt* statement)
        : m_statement(statement) {}
    ~SqliteQuery();
    SqliteQuery(const SqliteQuery&) = delete;
    SqliteQuery& operator=(const SqliteQuery&) = delete;

    SqliteQuery& bind(int parameter, qint64 value);
    SqliteQuery& bind(int parameter, double value); ///< not-a-number is stored as NULL
    SqliteQuery& bind(int parameter, const QString& value);
    SqliteQuery& bind(int parameter, const QByteArray& value);
    SqliteQuery& bindUtf8(int parameter, const QByteArray& text);

    /// Moves to the next row; false after the last.
    bool next();
    /// Runs a statement that gives no rows, and makes it ready to be bound and run again.
    void run();

    int type(int column) const; ///< SQLITE_INTEGER and its like
    qint64 integer(int column) const;
    double number(int column) const; ///< NULL is not-a-number
    QString text(int column) const;
    QByteArray blob(int column) const;
    /// The column's UTF-8, valid until the next step.
    std::string_view utf8(int column) const;

  private:
    sqlite3_stmt* m_statement;
};

/// One open database. Not thread-safe: one thread at a time. Throws SqliteError.
class SqliteConnection {
  public:
    /// Flags are SQLite's own. A call that finds the database locked waits this long at most.
    SqliteConnection(const QString& path, int flags, int busyMilliseconds);
    ~SqliteConnection();
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    void setPatience(int busyMilliseconds);
    void execute(const char* sql);
    /// Prepares a statement once for each address of a text, which must live as long as the
    /// program.
    SqliteQuery query(const char* sql);
    /// The one number that a pragma or query gives.
    qint64 single(const char* sql);

    sqlite3* handle() const { return m_handle; }

  private:
    sqlite3* m_handle = nullptr;
    std::unordered_map<const char*, sqlite3_stmt*> m_statements;
};

/// A write transaction; rolled back unless committed.
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
