#include "datastore/Sql.h"

#include "datastore/Conn.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QSqlError>
#include <QStringList>

#include <algorithm>

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

namespace {

[[noreturn]] void failBegin(QSqlDatabase& db, const QSqlQuery* q) {
    throw DbError(q ? q->lastError().text() : db.lastError().text(), QStringLiteral("Database"));
}

bool isIdentifier(const QString& name) {
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    return plain.match(name).hasMatch();
}

} // namespace

Transaction::Transaction(const Conn& conn, Mode mode) : m_conn(conn), m_mode(mode) {
    Conn::TransactionState& state = conn.m_transaction;
    if (state.depth > 0) {
        if (mode == Write && !state.write)
            throw std::logic_error("A write transaction cannot join a deferred one on the same "
                                   "connection: begin the outermost transaction for writing.");
        m_level = ++state.depth;
        return;
    }
    QSqlDatabase db = conn.db();
    if (mode == Write && !conn.isPostgres()) {
        QSqlQuery q(db);
        if (!q.exec(QStringLiteral("BEGIN IMMEDIATE")))
            failBegin(db, &q);
    } else if (!db.transaction()) {
        failBegin(db, nullptr);
    }
    state = {1, mode == Write, false};
    m_level = 1;
}

Transaction::~Transaction() {
    if (m_done)
        return;
    Conn::TransactionState& state = m_conn.m_transaction;
    if (m_level > 1) {
        // Statements cannot be taken back one guard at a time; the outermost rolls back all.
        state.spoiled = true;
        --state.depth;
        return;
    }
    m_conn.db().rollback();
    state = {};
}

void Transaction::commit() {
    Conn::TransactionState& state = m_conn.m_transaction;
    if (m_done || state.depth != m_level)
        throw std::logic_error("A transaction was committed twice, or while a transaction "
                               "inside it was still open.");
    if (state.spoiled) {
        if (m_level == 1) {
            m_conn.db().rollback();
            state = {};
            m_done = true;
        }
        throw DbError(QStringLiteral("Part of this work failed, so none of it was saved."),
                      QStringLiteral("Database"));
    }
    m_done = true;
    if (m_level > 1) {
        --state.depth;
        return;
    }
    QSqlDatabase db = m_conn.db();
    const bool committed = db.commit();
    const QString why = committed ? QString() : db.lastError().text();
    if (!committed)
        db.rollback();
    state = {};
    if (!committed)
        throw DbError(why, QStringLiteral("Database"));
}

void Transaction::lockRows(const QString& table, const QString& keyColumn, QVariantList keys) {
    if (m_done || m_mode != Write)
        throw std::logic_error("Rows are locked only inside an open write transaction.");
    if (!isIdentifier(table) || !isIdentifier(keyColumn))
        throw std::logic_error("lockRows takes a table and a column named in code.");
    if (!m_conn.isPostgres() || keys.isEmpty())
        return;
    std::sort(keys.begin(), keys.end(), [](const QVariant& a, const QVariant& b) {
        return QVariant::compare(a, b) == QPartialOrdering::Less;
    });
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    QStringList marks;
    for (qsizetype i = 0; i < keys.size(); ++i)
        marks << QStringLiteral("?");
    // The server locks the rows in the order it returns them.
    Query q(m_conn, QStringLiteral("SELECT 1 FROM %1 WHERE %2 IN (%3) ORDER BY %2 FOR UPDATE")
                        .arg(table, keyColumn, marks.join(QStringLiteral(", "))));
    for (const QVariant& key : keys)
        q.bind(key);
    q.exec();
}

} // namespace gm
