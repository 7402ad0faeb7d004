#include "support/TestDb.h"

#include "datastore/Sql.h"

#include <QCoreApplication>
#include <QDir>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QUrl>
#include <QUuid>

#include <cstdlib>
#include <vector>

namespace gm::test {

namespace {

QString g_lastLocation;

QTemporaryDir& tempDir() {
    static QTemporaryDir dir;
    return dir;
}

QString pgUrl() {
    return qEnvironmentVariable("GRAINMILL_TEST_PG_URL");
}

// Databases made on the server by this process, dropped when it ends.
struct PgDatabases {
    std::vector<QString> names;
    ~PgDatabases() {
        if (names.empty())
            return;
        const QUrl url(pgUrl());
        {
            QSqlDatabase admin = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"),
                                                           QStringLiteral("gm-test-cleanup"));
            admin.setHostName(url.host());
            admin.setPort(url.port(5432));
            admin.setUserName(url.userName());
            admin.setPassword(url.password());
            admin.setDatabaseName(url.path().mid(1));
            if (admin.open()) {
                QSqlQuery q(admin);
                for (const QString& n : names)
                    q.exec(QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(n));
                admin.close();
            }
        }
        QSqlDatabase::removeDatabase(QStringLiteral("gm-test-cleanup"));
    }
};

PgDatabases& pgDatabases() {
    static PgDatabases dbs;
    return dbs;
}

QString createPgDatabase() {
    const QUrl url(pgUrl());
    const QString name =
        QStringLiteral("gmt_%1").arg(QUuid::createUuid().toString(QUuid::Id128).left(16));
    const QString admin = QStringLiteral("gm-test-admin");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), admin);
        db.setHostName(url.host());
        db.setPort(url.port(5432));
        db.setUserName(url.userName());
        db.setPassword(url.password());
        db.setDatabaseName(url.path().mid(1));
        if (!db.open())
            qFatal("cannot reach the test PostgreSQL server: %s",
                   qPrintable(db.lastError().text()));
        QSqlQuery q(db);
        // Identifiers cannot be bound; the name is made here from hex digits only.
        if (!q.exec(QStringLiteral("CREATE DATABASE %1").arg(name)))
            qFatal("cannot create a test database: %s", qPrintable(q.lastError().text()));
        db.close();
    }
    QSqlDatabase::removeDatabase(admin);
    pgDatabases().names.push_back(name);
    QUrl target(url);
    target.setPath(QLatin1Char('/') + name);
    return target.toString();
}

} // namespace

Engine engineUnderTest() {
    return qEnvironmentVariable("GM_TEST_ENGINE")
                       .compare(QLatin1String("postgresql"), Qt::CaseInsensitive) == 0
               ? Engine::PostgreSQL
               : Engine::SQLite;
}

QString engineName() {
    return engineUnderTest() == Engine::PostgreSQL ? QStringLiteral("postgresql")
                                                   : QStringLiteral("sqlite");
}

bool engineAvailable(QString* why) {
    if (engineUnderTest() == Engine::SQLite)
        return true;
    if (pgUrl().isEmpty()) {
        if (why)
            *why = QStringLiteral("no test PostgreSQL server (GRAINMILL_TEST_PG_URL is not set)");
        return false;
    }
    return true;
}

std::unique_ptr<Conn> freshConn() {
    QString location;
    if (engineUnderTest() == Engine::PostgreSQL) {
        location = createPgDatabase();
    } else {
        static int counter = 0;
        location = tempDir().filePath(QStringLiteral("test-%1.sqlite").arg(++counter));
    }
    g_lastLocation = location;
    QString error;
    auto conn = Conn::open(location, &error);
    if (!conn)
        qFatal("cannot open a test database: %s", qPrintable(error));
    return conn;
}

QString lastLocation() {
    return g_lastLocation;
}

} // namespace gm::test

#include "seed/SampleData.h"

std::unique_ptr<gm::Conn> gm::test::freshSampleConn() {
    auto conn = freshConn();
    loadSampleMill(*conn);
    return conn;
}
