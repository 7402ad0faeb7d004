#pragma once

#include "datastore/Sql.h"
#include "support/TestDb.h"

#include <QSqlError>
#include <QSqlQuery>

#include <initializer_list>

namespace gm::test {

// A fresh database holding only the given statements' rows, shared by a whole test case; none
// when the engine under test is missing, so each test function's own check skips it. The
// statements run unprepared: a server will not prepare a table's creation.
inline std::unique_ptr<Conn> fixtureConn(std::initializer_list<const char*> statements) {
    QString why;
    if (!engineAvailable(&why))
        return nullptr;
    auto conn = freshConn();
    QSqlQuery q(conn->db());
    for (const char* sql : statements)
        if (!q.exec(QString::fromUtf8(sql)))
            throw DbError(q.lastError().text(), QString::fromUtf8(sql));
    return conn;
}

} // namespace gm::test
