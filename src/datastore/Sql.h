#pragma once

#include <QDate>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <initializer_list>
#include <stdexcept>

namespace gm {

class Conn;

// A failed statement or a refused operation. `source` becomes the title of the error box,
// `description` its text.
class DbError : public std::runtime_error {
public:
    DbError(QString description, QString source = QStringLiteral("grainmill"));
    const QString& description() const { return m_description; }
    const QString& source() const { return m_source; }

private:
    QString m_description;
    QString m_source;
};

// A prepared statement whose values are always bound, never spliced into the text.
// Placeholders are positional ("?"), which both engines accept.
class Query {
public:
    Query(const Conn& conn, const QString& sql);

    Query& bind(const QVariant& value);
    Query& bind(std::initializer_list<QVariant> values);
    // Runs the statement; throws DbError on failure.
    Query& exec();

    bool next() { return m_query.next(); }
    QVariant value(int column) const { return m_query.value(column); }
    QVariant value(const QString& field) const { return m_query.value(field); }
    int numRowsAffected() const { return m_query.numRowsAffected(); }
    QSqlQuery& raw() { return m_query; }

private:
    QSqlQuery m_query;
    QString m_sql;
};

// Runs a statement and returns the first column of its first row (null when there is none).
QVariant scalar(const Conn& conn, const QString& sql, std::initializer_list<QVariant> values = {});
// Runs a statement that returns no rows.
void execute(const Conn& conn, const QString& sql, std::initializer_list<QVariant> values = {});

// Reading values back: SQLite hands dates back as text, PostgreSQL as dates; null reads empty.
QDate toDate(const QVariant& v);
QDateTime toDateTime(const QVariant& v);
QString toText(const QVariant& v);
double toDouble(const QVariant& v);
qint64 toInt(const QVariant& v);
// A null for an empty text, so that optional keys are stored as null.
QVariant nullIfEmpty(const QString& text);

// One save or one removal: everything written between the guard's creation and commit() is
// stored together or not at all. Rolls back unless commit() ran, whatever way the scope is left.
//
// Guards nest. A guard made while another is open on the same connection joins it: only the
// outermost begins and commits, so a store's save can run on its own or as part of a larger
// piece of work (the sample mill, an invoice that rewrites arrivals). An inner guard left
// without commit(), by an exception or an early return, spoils the whole transaction: the
// outer one cannot know what the inner had written, so its commit() then throws DbError and
// everything is rolled back when the outermost guard ends.
//
// A save begins for writing (Write). On SQLite the write lock is then taken at the begin, so
// a clerk whose colleague is saving waits for the busy timeout instead of failing at the first
// write with "database is locked" (a deferred transaction that has read cannot wait for the
// lock in WAL mode). On PostgreSQL the begin is the same; lockRows() takes the rows the save
// will update before it reads them. The outermost guard decides the mode: a Write guard
// cannot join a Deferred one (SQLite cannot upgrade it), which throws std::logic_error on
// either engine. A Deferred guard may join a Write one.
class Transaction {
public:
    enum Mode {
        Deferred, // locks taken as statements need them: reads, and writes no one contends
        Write,    // the save's write lock taken at once
    };

    explicit Transaction(const Conn& conn, Mode mode = Deferred);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();
    void commit();

    // Locks the rows of `table` whose `keyColumn` is one of `keys` until the transaction ends,
    // in key order so that two saves locking overlapping rows cannot deadlock. PostgreSQL
    // only; on SQLite the Write begin already holds every writer off. Table and column are
    // names from code, never from what a person typed. Needs a Write guard.
    void lockRows(const QString& table, const QString& keyColumn, QVariantList keys);

private:
    const Conn& m_conn;
    Mode m_mode;
    int m_level = 0; // 1 for the outermost guard
    bool m_done = false;
};

} // namespace gm
