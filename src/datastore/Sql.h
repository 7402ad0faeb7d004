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

// One save or one removal. Rolls back unless commit() ran, whatever way the scope is left.
class Transaction {
public:
    explicit Transaction(const Conn& conn);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();
    void commit();

private:
    const Conn& m_conn;
    bool m_done = false;
};

} // namespace gm
