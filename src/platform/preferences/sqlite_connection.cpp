// SPDX-License-Identifier: MIT
#include "platform/preferences/sqlite_connection.h"

#include <sqlite3.h>

#include <cmath>
#include <limits>

namespace halvane {

namespace {

void check(int code, sqlite3* handle) {
    if (code != SQLITE_OK)
        throw SqliteError(code, QString::fromUtf8(sqlite3_errmsg(handle)));
}

void check(int code, sqlite3_stmt* statement) {
    check(code, sqlite3_db_handle(statement));
}

} // namespace

bool SqliteError::isDamage() const {
    // SQLITE_ERROR means a missing table or column, so the tables are not this program's.
    return m_code == SQLITE_CORRUPT || m_code == SQLITE_NOTADB || m_code == SQLITE_FORMAT ||
           m_code == SQLITE_ERROR;
}

SqliteQuery::~SqliteQuery() {
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
}

void SqliteQuery::bind(int parameter, qint64 value) {
    check(sqlite3_bind_int64(m_statement, parameter, value), m_statement);
}

void SqliteQuery::bind(int parameter, double value) {
    check(sqlite3_bind_double(m_statement, parameter, value), m_statement);
}

void SqliteQuery::bind(int parameter, const QString& value) {
    bind(parameter, SqliteText{value.toUtf8()});
}

void SqliteQuery::bind(int parameter, SqliteText text) {
    check(sqlite3_bind_text64(m_statement, parameter, text.utf8.constData(),
                              static_cast<sqlite3_uint64>(text.utf8.size()), SQLITE_TRANSIENT,
                              SQLITE_UTF8),
          m_statement);
}

void SqliteQuery::bind(int parameter, const QByteArray& value) {
    check(sqlite3_bind_blob64(m_statement, parameter, value.constData(),
                              static_cast<sqlite3_uint64>(value.size()), SQLITE_TRANSIENT),
          m_statement);
}

bool SqliteQuery::next() {
    const int code = sqlite3_step(m_statement);
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE)
        check(code, m_statement);
    return false;
}

void SqliteQuery::run() {
    while (next()) {
    }
    sqlite3_reset(m_statement);
}

int SqliteQuery::type(int column) const {
    return sqlite3_column_type(m_statement, column);
}

qint64 SqliteQuery::integer(int column) const {
    return sqlite3_column_int64(m_statement, column);
}

double SqliteQuery::number(int column) const {
    return type(column) == SQLITE_NULL ? std::numeric_limits<double>::quiet_NaN()
                                       : sqlite3_column_double(m_statement, column);
}

std::string_view SqliteQuery::utf8(int column) const {
    // SQLite copies a text to put a zero byte after it, unless it is asked for the bytes.
    const auto* text = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column));
    return text ? std::string_view(text, size) : std::string_view();
}

QString SqliteQuery::text(int column) const {
    const std::string_view text = utf8(column);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QByteArray SqliteQuery::blob(int column) const {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
    return QByteArray(bytes, bytes ? sqlite3_column_bytes(m_statement, column) : 0);
}

SqliteConnection::SqliteConnection(const QString& path, int flags, int busyMilliseconds) {
    const int code =
        sqlite3_open_v2(path.toUtf8().constData(), &m_handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code != SQLITE_OK) {
        const QString message =
            QString::fromUtf8(m_handle ? sqlite3_errmsg(m_handle) : sqlite3_errstr(code));
        sqlite3_close(m_handle);
        throw SqliteError(code, message);
    }
    setPatience(busyMilliseconds);
}

SqliteConnection::~SqliteConnection() {
    for (const auto& [sql, statement] : m_statements)
        sqlite3_finalize(statement);
    sqlite3_close(m_handle);
}

void SqliteConnection::setPatience(int busyMilliseconds) {
    sqlite3_busy_timeout(m_handle, busyMilliseconds);
}

void SqliteConnection::execute(const char* sql) {
    check(sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr), m_handle);
}

sqlite3_stmt* SqliteConnection::prepared(const char* sql) {
    sqlite3_stmt*& statement = m_statements[sql];
    if (!statement)
        check(sqlite3_prepare_v3(m_handle, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr),
              m_handle);
    return statement;
}

qint64 SqliteConnection::single(const char* sql) {
    auto found = query(sql);
    return found.next() ? found.integer(0) : 0;
}

SqliteTransaction::SqliteTransaction(SqliteConnection& connection)
    : m_connection(connection) {
    m_connection.execute("BEGIN IMMEDIATE");
}

SqliteTransaction::~SqliteTransaction() {
    if (m_open)
        sqlite3_exec(m_connection.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void SqliteTransaction::commit() {
    m_connection.execute("COMMIT");
    m_open = false;
}

} // namespace halvane
