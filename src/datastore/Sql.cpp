#include "datastore/Sql.h"

#include "datastore/Conn.h"

#include <QDateTime>
#include <QSqlError>

namespace gm {

DbError::DbError(QString description, QString source)
    : std::runtime_error(description.toStdString()), m_description(std::move(description)),
      m_source(std::move(source)) {}

Query::Query(const Conn& conn, const QString& sql) : m_query(conn.db()), m_sql(sql) {
    m_query.setForwardOnly(true);
    if (!m_query.prepare(sql))
        throw DbError(m_query.lastError().text(), QStringLiteral("Database"));
}

Query& Query::bind(const QVariant& value) {
    m_query.addBindValue(value);
    return *this;
}

Query& Query::bind(std::initializer_list<QVariant> values) {
    for (const auto& v : values)
        m_query.addBindValue(v);
    return *this;
}

Query& Query::exec() {
    if (!m_query.exec())
        throw DbError(m_query.lastError().text(), QStringLiteral("Database"));
    return *this;
}

QVariant scalar(const Conn& conn, const QString& sql, std::initializer_list<QVariant> values) {
    Query q(conn, sql);
    q.bind(values).exec();
    return q.next() ? q.value(0) : QVariant();
}

void execute(const Conn& conn, const QString& sql, std::initializer_list<QVariant> values) {
    Query q(conn, sql);
    q.bind(values).exec();
}

QDate toDate(const QVariant& v) {
    if (v.isNull())
        return {};
    if (v.typeId() == QMetaType::QDate)
        return v.toDate();
    if (v.typeId() == QMetaType::QDateTime)
        return v.toDateTime().date();
    const QString s = v.toString();
    QDate d = QDate::fromString(s.left(10), Qt::ISODate);
    return d;
}

QDateTime toDateTime(const QVariant& v) {
    if (v.isNull())
        return {};
    if (v.typeId() == QMetaType::QDateTime)
        return v.toDateTime();
    if (v.typeId() == QMetaType::QDate)
        return v.toDate().startOfDay();
    QString s = v.toString();
    s.replace(QLatin1Char(' '), QLatin1Char('T'));
    QDateTime dt = QDateTime::fromString(s, Qt::ISODateWithMs);
    if (!dt.isValid())
        dt = QDateTime::fromString(s, Qt::ISODate);
    return dt;
}

QString toText(const QVariant& v) {
    return v.isNull() ? QString() : v.toString();
}

double toDouble(const QVariant& v) {
    return v.isNull() ? 0.0 : v.toDouble();
}

qint64 toInt(const QVariant& v) {
    return v.isNull() ? 0 : v.toLongLong();
}

QVariant nullIfEmpty(const QString& text) {
    return text.trimmed().isEmpty() ? QVariant(QMetaType(QMetaType::QString)) : QVariant(text);
}

Transaction::Transaction(const Conn& conn) : m_conn(conn) {
    QSqlDatabase db = conn.db();
    if (!db.transaction())
        throw DbError(db.lastError().text(), QStringLiteral("Database"));
}

Transaction::~Transaction() {
    if (!m_done)
        m_conn.db().rollback();
}

void Transaction::commit() {
    QSqlDatabase db = m_conn.db();
    if (!db.commit()) {
        const QString why = db.lastError().text();
        db.rollback();
        m_done = true;
        throw DbError(why, QStringLiteral("Database"));
    }
    m_done = true;
}

} // namespace gm
