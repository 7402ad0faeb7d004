#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "support/TestDb.h"

#include <QTest>

#include <chrono>
#include <functional>
#include <future>
#include <mutex>
#include <optional>
#include <thread>

using namespace gm;
using namespace std::chrono_literals;

namespace {

qint64 cities(const Conn& c) {
    return toInt(scalar(c, QStringLiteral("SELECT COUNT(*) FROM Cities")));
}

void insertCity(const Conn& c, int id) {
    execute(c, QStringLiteral("INSERT INTO Cities (CityId, CityName) VALUES (?, ?)"),
            {id, QStringLiteral("City %1").arg(id)});
}

// What a store's save does: its own write transaction around its statements.
void saveCity(const Conn& c, int id) {
    Transaction tx(c, Transaction::Write);
    insertCity(c, id);
    tx.commit();
}

// What two connections did, in the order they did it.
struct Events {
    std::mutex mutex;
    QStringList seen;
    void add(const char* what) {
        std::lock_guard lock(mutex);
        seen << QString::fromLatin1(what);
    }
};

// Runs `work` on a connection of its own to the same database in another thread (a
// connection belongs to the thread that opened it). `ready` is signalled by the work, or on
// failure so that the test never waits for nothing; the failure is kept for the test to show.
class OtherClerk {
public:
    OtherClerk(const QString& location, std::function<void(const Conn&, std::promise<void>&)> work)
        : m_thread([this, location, work] {
              try {
                  QString error;
                  auto conn = Conn::open(location, &error);
                  if (!conn)
                      throw DbError(error);
                  work(*conn, m_ready);
              } catch (const std::exception& e) {
                  m_failure = QString::fromUtf8(e.what());
                  try {
                      m_ready.set_value();
                  } catch (const std::future_error&) {
                  }
              }
          }) {}
    void waitUntilReady() { m_ready.get_future().wait(); }
    QString finish() {
        m_thread.join();
        return m_failure;
    }

private:
    std::promise<void> m_ready;
    QString m_failure;
    std::jthread m_thread; // last, so that it is joined before the rest goes
};

} // namespace

class TstTransaction : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nestedTransactionRollsBackAsOne() {
        GM_REQUIRE_ENGINE();
        auto conn = test::freshConn();
        const Conn& c = *conn;

        // An inner save committed, then the work around it failed.
        try {
            Transaction outer(c, Transaction::Write);
            saveCity(c, 1);
            throw std::runtime_error("the outer work fails");
        } catch (const std::runtime_error&) {
        }
        QCOMPARE(cities(c), 0);

        // An inner save failed after writing; the outer work carries on and tries to commit.
        {
            Transaction outer(c, Transaction::Write);
            insertCity(c, 2);
            try {
                Transaction inner(c, Transaction::Write);
                insertCity(c, 3);
                throw std::runtime_error("the inner save fails");
            } catch (const std::runtime_error&) {
            }
            QVERIFY_THROWS_EXCEPTION(DbError, outer.commit());
        }
        QCOMPARE(cities(c), 0);

        // The outermost decides the mode: a save cannot quietly run without its write lock.
        {
            Transaction outer(c);
            QVERIFY_THROWS_EXCEPTION(std::logic_error, saveCity(c, 4));
        }

        // Nothing is left open: the next save is a transaction of its own again.
        saveCity(c, 5);
        QCOMPARE(cities(c), 1);
    }

    // Another clerk is in the middle of a save when this one begins: the begin waits for the
    // lock, and the save that reads then writes goes through instead of being refused.
    void writeTakesTheLockAtBegin() {
        GM_REQUIRE_ENGINE();
        if (test::engineUnderTest() != Engine::SQLite)
            QSKIP("SQLite's write lock; on PostgreSQL saves lock their rows");
        auto conn = test::freshConn();
        Events events;
        OtherClerk other(test::lastLocation(), [&](const Conn& c, std::promise<void>& ready) {
            Transaction tx(c, Transaction::Write);
            insertCity(c, 1);
            events.add("other holds");
            ready.set_value();
            // Long enough for this clerk to reach its begin, well within the busy timeout.
            std::this_thread::sleep_for(300ms);
            events.add("other commits");
            tx.commit();
        });
        other.waitUntilReady();
        qint64 seenAtBegin = -1;
        {
            Transaction tx(*conn, Transaction::Write);
            events.add("this begins");
            seenAtBegin = cities(*conn);
            insertCity(*conn, 2);
            tx.commit();
        }
        const QString failure = other.finish();
        QVERIFY2(failure.isEmpty(), qPrintable(failure));
        QCOMPARE(events.seen, QStringList({"other holds", "other commits", "this begins"}));
        QCOMPARE(seenAtBegin, 1);
        QCOMPARE(cities(*conn), 2);
    }

    void lockedRowsHoldOffAnotherUpdate() {
        GM_REQUIRE_ENGINE();
        if (test::engineUnderTest() != Engine::PostgreSQL)
            QSKIP("row locks are PostgreSQL's; SQLite's write begin serialises every writer");
        auto conn = test::freshConn();
        const Conn& c = *conn;
        for (int id : {1, 2, 3})
            insertCity(c, id);

        Events events;
        qint64 pid = 0;
        std::optional<OtherClerk> other; // joined after the transaction below let go of its rows
        Transaction tx(c, Transaction::Write);
        tx.lockRows(QStringLiteral("Cities"), QStringLiteral("CityId"), {3, 1, 3});
        other.emplace(test::lastLocation(), [&](const Conn& o, std::promise<void>& ready) {
            pid = toInt(scalar(o, QStringLiteral("SELECT pg_backend_pid()")));
            ready.set_value();
            events.add("other updates");
            execute(o, QStringLiteral("UPDATE Cities SET CityName = 'Okara' WHERE CityId = 1"));
            events.add("other updated");
        });
        other->waitUntilReady();
        // Wait until the server says the other connection is waiting for a lock.
        bool waiting = false;
        for (int i = 0; i < 1000 && pid && !waiting; ++i) {
            waiting = toInt(scalar(c,
                                   QStringLiteral("SELECT COUNT(*) FROM pg_locks "
                                                  "WHERE pid = ? AND NOT granted"),
                                   {pid})) > 0;
            if (!waiting)
                std::this_thread::sleep_for(10ms);
        }
        events.add("this commits");
        tx.commit();
        const QString failure = other->finish();
        QVERIFY2(failure.isEmpty(), qPrintable(failure));
        QVERIFY2(waiting, "the other connection's update did not wait for the locked row");
        QCOMPARE(events.seen, QStringList({"other updates", "this commits", "other updated"}));
    }
};

QTEST_GUILESS_MAIN(TstTransaction)
#include "tst_transaction.moc"
