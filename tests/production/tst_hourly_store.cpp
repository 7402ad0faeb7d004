#include "production/HourlyStore.h"
#include "ProductionFixture.h"
#include "support/TestDb.h"

#include <QtTest>

using namespace gm;
using namespace gm::test;

namespace {

HourlyLine hourLine(int commodity, int bagsType, int bagsClass, double bags, double bagWeight) {
    HourlyLine l;
    l.commodityId = commodity;
    l.bagsTypeId = bagsType;
    l.bagsClassId = bagsClass;
    l.noOfBags = bags;
    l.bagWeight = bagWeight;
    return l;
}

std::optional<Objection> refusalOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const Objected& o) {
        return o.objection();
    }
    return std::nullopt;
}

struct BodyRow {
    qint64 commodity;
    double bags, bagWeight, weight;
    bool operator==(const BodyRow&) const = default;
};

std::vector<BodyRow> bodyOf(const Conn& conn, qint32 serial) {
    Query q(conn, QStringLiteral("SELECT CommodityId, NoOfBags, BagWeight, TTLWeight FROM "
                                 "HProductionBody WHERE SerialNo = ? ORDER BY HProductionLineId"));
    q.bind(serial).exec();
    std::vector<BodyRow> rows;
    while (q.next())
        rows.push_back(
            {toInt(q.value(0)), toDouble(q.value(1)), toDouble(q.value(2)), toDouble(q.value(3))});
    return rows;
}

} // namespace

class TstHourlyStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void saveReopenResave();
    void aNewRecordNeverTakesOverAnother();

private:
    std::unique_ptr<Conn> m_conn;
};

void TstHourlyStore::init() {
    GM_REQUIRE_ENGINE();
    m_conn = freshSampleConn();
}

void TstHourlyStore::cleanup() {
    m_conn.reset();
}

void TstHourlyStore::saveReopenResave() {
    const Conn& c = *m_conn;
    HourlyStore store(c);
    const double flour = stockWeightOf(c, kFlour);
    const qint32 serial = store.nextSerialNo();
    QVERIFY(!store.exists(serial));
    HourlyEntry e;
    e.serialNo = serial;
    e.processTime = QDateTime(QDate(2024, 5, 2), QTime(14, 0));
    e.lines = {hourLine(kFlour, kPP50, kNew, 24, 50), hourLine(kBran, kPP100, kUsed, 3.5, 100)};
    e.lines[0].netWeight = 0.0; // whatever the grid showed, each line keeps its own weight
    store.save(e, true);
    QVERIFY(store.exists(serial));
    QCOMPARE(store.nextSerialNo(), serial + 1);
    QCOMPARE(bodyOf(c, serial),
             std::vector<BodyRow>({{kFlour, 24, 50, 1200}, {kBran, 3.5, 100, 350}}));
    // An hourly record is a count, not a stock movement.
    QCOMPARE(stockWeightOf(c, kFlour), flour);

    const auto loaded = store.load(serial);
    QVERIFY(loaded);
    QCOMPARE(loaded->processTime, e.processTime);
    QCOMPARE(loaded->lines.size(), size_t(2));
    QCOMPARE(loaded->lines[0].commodity, QStringLiteral("Flour"));
    QCOMPARE(loaded->lines[0].bagsType, QStringLiteral("PP 50 Kg"));
    QCOMPARE(loaded->lines[1].bagsClass, QStringLiteral("Used"));
    QCOMPARE(double(loaded->lines[0].netWeight), 1200.0);

    // Saved again: the time moves, the lines are replaced, not added to.
    HourlyEntry again = *loaded;
    again.processTime = e.processTime.addSecs(3600);
    again.lines = {hourLine(kBran, kPP100, kNew, 10, 100)};
    store.save(again, false);
    QCOMPARE(bodyOf(c, serial), std::vector<BodyRow>({{kBran, 10, 100, 1000}}));
    QCOMPARE(store.load(serial)->processTime, again.processTime);
    QCOMPARE(toInt(scalar(c,
                          QStringLiteral("SELECT COUNT(*) FROM HourlyProduction WHERE "
                                         "SerialNo = ?"),
                          {serial})),
             1);

    // A record without lines cannot be opened; none is written without lines or keys.
    execute(c, QStringLiteral("INSERT INTO HourlyProduction (SerialNo, ProcessTime) VALUES (?, ?)"),
            {serial + 1, e.processTime});
    QVERIFY(!store.load(serial + 1));
    HourlyEntry bare;
    bare.serialNo = serial + 2;
    bare.processTime = e.processTime;
    QCOMPARE(refusalOf([&] { store.save(bare, true); })->text, kGridEmpty);
    bare.lines = {hourLine(kFlour, kPP50, 0, 1, 50)};
    const auto keyless = refusalOf([&] { store.save(bare, true); });
    QVERIFY(keyless);
    QCOMPARE(keyless->column, int(HrBagClass));
    QVERIFY(!store.exists(serial + 2));
}

void TstHourlyStore::aNewRecordNeverTakesOverAnother() {
    const Conn& c = *m_conn;
    HourlyStore store(c);
    const qint32 serial = store.nextSerialNo();
    HourlyEntry mine;
    mine.serialNo = serial;
    mine.processTime = QDateTime(QDate(2024, 5, 2), QTime(9, 0));
    mine.lines = {hourLine(kFlour, kPP50, kNew, 30, 50)};
    // Another clerk saved under the same serial meanwhile.
    HourlyEntry theirs = mine;
    theirs.processTime = mine.processTime.addSecs(600);
    theirs.lines = {hourLine(kBran, kPP100, kNew, 7, 100)};
    store.save(theirs, true);

    const auto refusal = refusalOf([&] { store.save(mine, true); });
    QVERIFY(refusal);
    QCOMPARE(refusal->text, kSerialTaken);
    QCOMPARE(refusal->newDocumentId, std::optional<qint64>(serial + 1));
    QCOMPARE(bodyOf(c, serial), std::vector<BodyRow>({{kBran, 7, 100, 700}}));
    QCOMPARE(store.load(serial)->processTime, theirs.processTime);

    // Under the number it was given, it goes in.
    mine.serialNo = qint32(*refusal->newDocumentId);
    store.save(mine, true);
    QCOMPARE(bodyOf(c, serial + 1), std::vector<BodyRow>({{kFlour, 30, 50, 1500}}));
}

QTEST_GUILESS_MAIN(TstHourlyStore)
#include "tst_hourly_store.moc"
