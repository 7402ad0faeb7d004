#include "datastore/Sql.h"
#include "DocumentFixture.h"
#include "support/TestDb.h"

#include <QSqlError>
#include <QTest>

using namespace gm;

class TstRoutines : public QObject {
    Q_OBJECT

    std::unique_ptr<Conn> m_conn;

    // The sample mill plus a ledger whose entries fall before, on and after 2026-11-10.
    const Conn& conn() {
        if (!m_conn) {
            m_conn = test::freshMasterConn();
            const QString entry = QStringLiteral("INSERT INTO LedgerEntries (AccountNo, EntryDate, "
                                                 "Debit, Credit) VALUES (?, ?, ?, ?)");
            const QString seller = QStringLiteral("6100003");
            execute(*m_conn, entry, {seller, QDate(2026, 11, 1), 1000.5, 0});
            execute(*m_conn, entry, {seller, QDate(2026, 11, 10), 0, 3000.25});
            execute(*m_conn, entry, {seller, QDate(2026, 11, 11), 99999, 0});
            execute(*m_conn, entry, {QStringLiteral("6100004"), QDate(2026, 11, 10), 250, 0});
        }
        return *m_conn;
    }

private Q_SLOTS:
    void partyName_data() {
        QTest::addColumn<QString>("account");
        QTest::addColumn<QVariant>("expected");
        QTest::newRow("account that is no party") << "111" << QVariant("Cash in Hand");
        QTest::newRow("unknown account") << "6999999" << QVariant();
        QTest::newRow("key with a leading blank") << " 6100001" << QVariant();
    }

    void partyName() {
        GM_REQUIRE_ENGINE();
        QFETCH(QString, account);
        QFETCH(QVariant, expected);
        const QVariant got = scalar(conn(), QStringLiteral("SELECT FunGetPartyName(?)"), {account});
        QCOMPARE(got.isNull(), expected.isNull());
        QCOMPARE(toText(got), expected.toString());
    }

    void currentDebit_data() {
        QTest::addColumn<QString>("account");
        QTest::addColumn<QVariant>("day");
        QTest::addColumn<double>("expected");
        const QString s = QStringLiteral("6100003");
        QTest::newRow("before any entry") << s << QVariant(QDate(2026, 10, 31)) << 0.0;
        QTest::newRow("entry on the day counts, goes negative")
            << s << QVariant(QDate(2026, 11, 10)) << -1999.75;
        QTest::newRow("day as text") << s << QVariant(QStringLiteral("2026-11-10")) << -1999.75;
        QTest::newRow("day with a time counts the whole day")
            << s << QVariant(QDateTime(QDate(2026, 11, 10), QTime(8, 0))) << -1999.75;
        QTest::newRow("later") << s << QVariant(QDate(2026, 12, 1)) << 97999.25;
        QTest::newRow("other account kept apart")
            << QStringLiteral("6100004") << QVariant(QDate(2026, 12, 1)) << 250.0;
        QTest::newRow("opening credit of the sample")
            << QStringLiteral("6100001") << QVariant(QDate::currentDate()) << -250000.0;
        QTest::newRow("account without entries")
            << QStringLiteral("6200003") << QVariant(QDate(2026, 12, 1)) << 0.0;
    }

    void currentDebit() {
        GM_REQUIRE_ENGINE();
        QFETCH(QString, account);
        QFETCH(QVariant, day);
        QFETCH(double, expected);
        const QVariant got =
            scalar(conn(), QStringLiteral("SELECT FungrnCurrentDebit(?, ?)"), {account, day});
        QVERIFY(!got.isNull());
        QCOMPARE(got.toDouble(), expected);
    }

    // Searches call the routines once per row; every row must get its own answer, with the
    // city after a dash or, without one, the account name alone.
    void routinesPerRowOfSearch() {
        GM_REQUIRE_ENGINE();
        Query q(conn(), QStringLiteral("SELECT FunGetPartyName(p.PartyId), a.AccountName, "
                                       "c.CityName FROM Parties p JOIN ChartOfAccounts a ON "
                                       "a.AccountNo = p.PartyId LEFT JOIN Cities c ON c.CityId = "
                                       "p.CityId ORDER BY p.PartyId"));
        q.exec();
        int rows = 0;
        for (; q.next(); ++rows) {
            const QString city = toText(q.value(2));
            QCOMPARE(toText(q.value(0)),
                     city.isEmpty() ? toText(q.value(1)) : toText(q.value(1)) + u'-' + city);
        }
        QVERIFY(rows >= 12);
    }

    // The routines keep statements of their own on an SQLite connection; closing it must
    // still release the file. A commodity's name is asked for here too, known and unknown.
    void connectionClosesAfterUse() {
        GM_REQUIRE_ENGINE();
        auto c = test::freshMasterConn();
        QVERIFY(!toText(scalar(*c, QStringLiteral("SELECT FunGetPartyName('6100001')"))).isEmpty());
        QCOMPARE(toText(scalar(*c, QStringLiteral("SELECT FunGetCommodity(?)"), {5})),
                 QStringLiteral("Fine Flour"));
        QVERIFY(scalar(*c, QStringLiteral("SELECT FunGetCommodity(?)"), {99}).isNull());
        scalar(*c, QStringLiteral("SELECT FungrnCurrentDebit('6100001', ?)"),
               {QDate::currentDate()});
        QSqlDatabase db = c->db();
        db.close();
        QVERIFY2(!db.lastError().isValid(), qPrintable(db.lastError().text()));
    }
};

QTEST_GUILESS_MAIN(TstRoutines)
#include "tst_routines.moc"
