#include "production/ProductionStore.h"
#include "production/ProductionValidation.h"
#include "ProductionFixture.h"
#include "support/TestDb.h"

#include <QtTest>

#include <chrono>
#include <future>
#include <thread>

using namespace gm;
using namespace gm::test;
using namespace std::chrono_literals;

namespace {

const QDate kDay(2024, 3, 15);

// 50 bags of local wheat at its average cost; 60 bags of flour and 19 of bran: 5000 kg in,
// 4900 out, a shortage of 2 percent. Expenses of 30000 over 5000 kg.
ProductionDay sampleDay(const Conn& conn, bool addBardana) {
    ProductionDay d;
    d.productionDate = kDay;
    d.processId = kMilling;
    d.factoryTime = 20.5;
    d.remarks = QStringLiteral("Second shift short of hands");
    d.productionExpense = 25000;
    d.otherExpense = 5000;
    d.addBardana = addBardana;
    d.consumption = {productionLine(conn, kWheatLocal, kJute100, kNew, 50, 100,
                                    averageCostOf(conn, kWheatLocal))};
    d.production = {productionLine(conn, kFlour, kPP50, kNew, 60, 50),
                    productionLine(conn, kBran, kPP100, kNew, 19, 100)};
    d.ratio = ratioOf(d);
    return d;
}

std::optional<Objection> refusalOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const Objected& o) {
        return o.objection();
    }
    return std::nullopt;
}

} // namespace

class TstProductionStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void saveAndRemoveMoveTheStock_data();
    void saveAndRemoveMoveTheStock();
    void savedDayComesBackAsSaved();
    void aDayIsSavedOnce();
    void twoClerksSavingOneDay();
    void bagsShortRefuseTheWholeDay_data();
    void bagsShortRefuseTheWholeDay();
    void screenLookups();
    void sampleMillDays();

private:
    std::unique_ptr<Conn> m_conn;
};

void TstProductionStore::init() {
    GM_REQUIRE_ENGINE();
    m_conn = freshSampleConn();
}

void TstProductionStore::cleanup() {
    m_conn.reset();
}

void TstProductionStore::saveAndRemoveMoveTheStock_data() {
    QTest::addColumn<bool>("addBardana");
    QTest::newRow("the mill's own bags") << false;
    QTest::newRow("bags added in") << true;
}

void TstProductionStore::saveAndRemoveMoveTheStock() {
    QFETCH(bool, addBardana);
    const Conn& c = *m_conn;
    const double wheat = stockWeightOf(c, kWheatLocal), flour = stockWeightOf(c, kFlour),
                 bran = stockWeightOf(c, kBran);
    const double jute = stockBagsOf(c, kJute100, kNew), pp50 = stockBagsOf(c, kPP50, kNew),
                 pp100 = stockBagsOf(c, kPP100, kNew);
    const double cost = averageCostOf(c, kWheatLocal);
    QVERIFY(cost > 0);

    ProductionStore store(c);
    store.save(sampleDay(c, addBardana));

    QCOMPARE(stockWeightOf(c, kWheatLocal), wheat - 5000);
    QCOMPARE(stockWeightOf(c, kFlour), flour + 3000);
    QCOMPARE(stockWeightOf(c, kBran), bran + 1900);
    // The consumed wheat's bags are not the mill's to count; the products' are, unless added.
    QCOMPARE(stockBagsOf(c, kJute100, kNew), jute);
    QCOMPARE(stockBagsOf(c, kPP50, kNew), addBardana ? pp50 : pp50 - 60);
    QCOMPARE(stockBagsOf(c, kPP100, kNew), addBardana ? pp100 : pp100 - 19);
    // No average cost moves.
    QCOMPARE(averageCostOf(c, kWheatLocal), cost);

    Query head(c, QStringLiteral("SELECT FactoryTime, Remarks, ProductionCharges, OtherExpenses, "
                                 "IsPosted, AddBardana FROM DailyProduction "
                                 "WHERE ProductionDate = ? AND ProcessId = ?"));
    head.bind({kDay, kMilling}).exec();
    QVERIFY(head.next());
    QCOMPARE(toDouble(head.value(0)), 20.5);
    QCOMPARE(toText(head.value(1)), QStringLiteral("Second shift short of hands"));
    QCOMPARE(toDouble(head.value(2)), 25000.0);
    QCOMPARE(toDouble(head.value(3)), 5000.0);
    QCOMPARE(toInt(head.value(4)), 0);
    QCOMPARE(toInt(head.value(5)), addBardana ? 1 : 0);

    Query consumed(c, QStringLiteral("SELECT CommodityId, BagsTypeId, BagsClassId, NoOfBags, "
                                     "BagWeight, Cost, AddBardana FROM Consumption "
                                     "WHERE ProductionDate = ? AND ProcessId = ?"));
    consumed.bind({kDay, kMilling}).exec();
    QVERIFY(consumed.next());
    QCOMPARE(toInt(consumed.value(0)), qint64(kWheatLocal));
    QCOMPARE(toInt(consumed.value(1)), qint64(kJute100));
    QCOMPARE(toDouble(consumed.value(3)), 50.0);
    QCOMPARE(toDouble(consumed.value(4)), 100.0);
    QCOMPARE(to4(toDouble(consumed.value(5))), to4(cost));
    QCOMPARE(toInt(consumed.value(6)), addBardana ? 1 : 0);
    QVERIFY(!consumed.next());

    // Every product at the same cost: the wheat's cost (four decimals) raised by the 2 percent
    // shortage, plus 30000 / 5000 of expenses.
    const double a = Currency::fromDouble(cost).toDouble();
    const double expected =
        (Currency::fromDouble(a + 2 * a / 100) + Currency::fromDouble(6)).toDouble();
    Query produced(c, QStringLiteral("SELECT CommodityId, NoOfBags, Cost FROM Production "
                                     "WHERE ProductionDate = ? AND ProcessId = ? "
                                     "ORDER BY CommodityId"));
    produced.bind({kDay, kMilling}).exec();
    QVERIFY(produced.next());
    QCOMPARE(toInt(produced.value(0)), qint64(kFlour));
    QCOMPARE(to4(toDouble(produced.value(2))), expected);
    QVERIFY(produced.next());
    QCOMPARE(toInt(produced.value(0)), qint64(kBran));
    QCOMPARE(to4(toDouble(produced.value(2))), expected);

    // Removed, everything is as it was.
    store.remove(kDay, kMilling);
    QCOMPARE(stockWeightOf(c, kWheatLocal), wheat);
    QCOMPARE(stockWeightOf(c, kFlour), flour);
    QCOMPARE(stockWeightOf(c, kBran), bran);
    QCOMPARE(stockBagsOf(c, kPP50, kNew), pp50);
    QCOMPARE(stockBagsOf(c, kPP100, kNew), pp100);
    for (const char* table : {"DailyProduction", "Consumption", "Production"})
        QCOMPARE(rowsOfDay(c, table, kDay, kMilling), 0);
}

void TstProductionStore::savedDayComesBackAsSaved() {
    const Conn& c = *m_conn;
    ProductionStore store(c);
    ProductionDay day = sampleDay(c, true);
    day.factoryTime = 0.0; // unknown
    day.remarks.clear();
    store.save(day);
    QVERIFY(store.dayExists(kDay, kMilling));
    QVERIFY(!store.dayExists(kDay, kFineMilling));
    QVERIFY(!store.dayExists(kDay.addDays(1), kMilling));

    const auto loaded = store.load(kDay, kMilling);
    QVERIFY(loaded);
    QVERIFY(loaded->factoryTime.isBlank());
    QVERIFY(toInt(scalar(c, QStringLiteral("SELECT COUNT(*) FROM DailyProduction WHERE "
                                           "FactoryTime IS NULL"))) == 1);
    QCOMPARE(loaded->remarks, QString());
    QCOMPARE(double(loaded->productionExpense), 25000.0);
    QCOMPARE(double(loaded->otherExpense), 5000.0);
    QVERIFY(loaded->addBardana);
    QCOMPARE(loaded->consumption.size(), size_t(1));
    const ProductionLine& w = loaded->consumption[0];
    QCOMPARE(w.commodity, QStringLiteral("Wheat Local"));
    QCOMPARE(w.bagsType, QStringLiteral("Jute 100 Kg"));
    QCOMPARE(w.bagsClass, QStringLiteral("New"));
    QCOMPARE(double(w.weight), 5000.0);
    QCOMPARE(loaded->production.size(), size_t(2));
    QCOMPARE(loaded->production[0].commodity, QStringLiteral("Flour"));
    QCOMPARE(loaded->production[1].commodity, QStringLiteral("Bran"));
    QCOMPARE(double(loaded->production[1].weight), 1900.0);
    QCOMPARE(loaded->ratio, -2.0);
    QVERIFY(!store.load(kDay, kFineMilling));
}

void TstProductionStore::aDayIsSavedOnce() {
    const Conn& c = *m_conn;
    ProductionStore store(c);
    store.save(sampleDay(c, false));
    const double wheat = stockWeightOf(c, kWheatLocal);

    const auto again = refusalOf([&] { store.save(sampleDay(c, false)); });
    QVERIFY(again);
    QCOMPARE(again->text, kOnceADay);
    QCOMPARE(again->title, QStringLiteral("Alert!"));
    QCOMPARE(again->icon, Objection::Icon::Warning);
    QCOMPARE(rowsOfDay(c, "Consumption", kDay, kMilling), 1);
    QCOMPARE(stockWeightOf(c, kWheatLocal), wheat);

    // Another process may save the same date.
    ProductionDay other = sampleDay(c, false);
    other.processId = kFineMilling;
    other.production = {productionLine(c, kBran, kPP100, kNew, 10, 100)};
    store.save(other);
    QCOMPARE(rowsOfDay(c, "Production", kDay, kFineMilling), 1);

    // A consumption that weighs nothing cannot cost the products, and nothing is written.
    ProductionDay empty = sampleDay(c, false);
    empty.productionDate = kDay.addDays(1);
    empty.consumption[0].noOfBags = 0.0;
    empty.consumption[0].weight = 0.0;
    const auto nothing = refusalOf([&] { store.save(empty); });
    QVERIFY(nothing);
    QCOMPARE(nothing->text, kNothingConsumed);
    QCOMPARE(rowsOfDay(c, "DailyProduction", empty.productionDate, kMilling), 0);

    // A line without its keys is never written under key 0.
    ProductionDay keyless = sampleDay(c, false);
    keyless.productionDate = kDay.addDays(2);
    keyless.production[1].bagsClassId = 0;
    const auto noKey = refusalOf([&] { store.save(keyless); });
    QVERIFY(noKey);
    QCOMPARE(noKey->focus, kProductionGrid);
    QCOMPARE(noKey->row, 1);
    QCOMPARE(rowsOfDay(c, "DailyProduction", keyless.productionDate, kMilling), 0);
}

// Another clerk saves the same day and process while this one is saving: the second waits for
// the first and is told the day is taken, with nothing of its own written.
void TstProductionStore::twoClerksSavingOneDay() {
    const Conn& c = *m_conn;
    const QString location = lastLocation();
    std::promise<void> holding;
    QString failure;
    std::jthread other([&] {
        try {
            QString error;
            auto conn = Conn::open(location, &error);
            if (!conn)
                throw DbError(error);
            Transaction tx(*conn, Transaction::Write);
            execute(*conn,
                    QStringLiteral("INSERT INTO DailyProduction (ProductionDate, ProcessId, "
                                   "IsPosted, AddBardana) VALUES (?, ?, 0, 0)"),
                    {kDay, kMilling});
            holding.set_value();
            std::this_thread::sleep_for(300ms);
            tx.commit();
        } catch (const std::exception& e) {
            failure = QString::fromUtf8(e.what());
            holding.set_value();
        }
    });
    holding.get_future().wait();
    ProductionStore store(c);
    const auto refusal = refusalOf([&] { store.save(sampleDay(c, false)); });
    other.join();
    QVERIFY2(failure.isEmpty(), qPrintable(failure));
    QVERIFY(refusal);
    QCOMPARE(refusal->text, kOnceADay);
    QCOMPARE(rowsOfDay(c, "DailyProduction", kDay, kMilling), 1);
    QCOMPARE(rowsOfDay(c, "Consumption", kDay, kMilling), 0);
    QCOMPARE(rowsOfDay(c, "Production", kDay, kMilling), 0);
}

void TstProductionStore::bagsShortRefuseTheWholeDay_data() {
    QTest::addColumn<QList<double>>("flourBags"); // lines 1 and 3; bran is line 2
    QTest::addColumn<int>("bagsType");
    QTest::addColumn<bool>("addBardana");
    QTest::addColumn<bool>("saved");
    // 100 bags of PP 50 Kg Used are in stock.
    QTest::newRow("third line short") << QList<double>{40, 120} << kPP50 << false << false;
    QTest::newRow("lines together short") << QList<double>{40, 70} << kPP50 << false << false;
    QTest::newRow("exactly the stock") << QList<double>{40, 60} << kPP50 << false << true;
    QTest::newRow("bags added in") << QList<double>{40, 120} << kPP50 << true << true;
    QTest::newRow("a kind never stocked") << QList<double>{400, 500} << kPP10 << false << true;
}

void TstProductionStore::bagsShortRefuseTheWholeDay() {
    QFETCH(QList<double>, flourBags);
    QFETCH(int, bagsType);
    QFETCH(bool, addBardana);
    QFETCH(bool, saved);
    const Conn& c = *m_conn;
    execute(c, QStringLiteral("DELETE FROM BagsCurrentStock WHERE BagsTypeId IN (?, ?)"),
            {kPP50, kPP10});
    execute(c,
            QStringLiteral("INSERT INTO BagsCurrentStock (BagsTypeId, BagsClassId, NoOfBags, Cost) "
                           "VALUES (?, ?, 100, 0)"),
            {kPP50, kUsed});
    const double wheat = stockWeightOf(c, kWheatLocal);
    const double bran = stockBagsOf(c, kPP100, kNew);

    ProductionDay day = sampleDay(c, addBardana);
    day.production = {productionLine(c, kFlour, bagsType, kUsed, flourBags[0], 50),
                      productionLine(c, kBran, kPP100, kNew, 10, 100),
                      productionLine(c, kFlour, bagsType, kUsed, flourBags[1], 50)};
    day.ratio = ratioOf(day);
    ProductionStore store(c);
    const auto refusal = refusalOf([&] { store.save(day); });
    if (saved) {
        QVERIFY2(!refusal, refusal ? qPrintable(refusal->text) : "");
        QCOMPARE(rowsOfDay(c, "Production", kDay, kMilling), 3);
        return;
    }
    QVERIFY(refusal);
    // The bags named are those of the consumption, as the alert has always read.
    QCOMPARE(refusal->text, stockAlert(QStringLiteral("Jute 100 Kg"), QStringLiteral("New")));
    QCOMPARE(refusal->title, QStringLiteral("Stock Alert!"));
    QCOMPARE(refusal->icon, Objection::Icon::Warning);
    QCOMPARE(refusal->focus, kProductionGrid);
    QCOMPARE(refusal->row, 2);
    for (const char* table : {"DailyProduction", "Consumption", "Production"})
        QCOMPARE(rowsOfDay(c, table, kDay, kMilling), 0);
    QCOMPARE(stockWeightOf(c, kWheatLocal), wheat);
    QCOMPARE(stockBagsOf(c, kPP50, kUsed), 100.0);
    QCOMPARE(stockBagsOf(c, kPP100, kNew), bran);
}

void TstProductionStore::screenLookups() {
    const Conn& c = *m_conn;
    ProductionStore store(c);
    QStringList in, out;
    for (const LookupItem& i : store.consumedCommodities(kMilling))
        in << i.name;
    for (const LookupItem& i : store.producedCommodities(kMilling))
        out << i.name;
    QCOMPARE(in, QStringList({"Wheat Government", "Wheat Imported", "Wheat Local"}));
    QCOMPARE(out, QStringList({"Bran", "Flour"}));
    QVERIFY(store.consumedCommodities(99).empty());

    QVERIFY(store.hasStock(kWheatLocal));
    QVERIFY(!store.hasStock(kWheatImported));
    QCOMPARE(store.currentCost(kWheatImported), 0.0);
    const auto flourBag = store.defaultBag(kFlour);
    QVERIFY(flourBag);
    QCOMPARE(flourBag->bagsType, QStringLiteral("PP 50 Kg"));
    QCOMPARE(flourBag->bagCapacity, 50.0);
    execute(c,
            QStringLiteral("UPDATE Commodities SET DefaultBagsTypeID = NULL WHERE "
                           "CommodityId = ?"),
            {kBran});
    QVERIFY(!store.defaultBag(kBran));

    // The stock in the commodity's stock unit, with a saved day's own weight added back.
    execute(c, QStringLiteral("UPDATE Commodities SET StockUnitId = 2 WHERE CommodityId = ?"),
            {kWheatLocal});
    const double kg = stockWeightOf(c, kWheatLocal);
    const auto shown = store.currentStock(kWheatLocal, 400);
    QVERIFY(shown);
    QCOMPARE(shown->unitName, QStringLiteral("Mound"));
    QCOMPARE(roundHalfEven(shown->netWeight, 6), roundHalfEven((kg + 400) / 40, 6));
    QVERIFY(!store.currentStock(kWheatImported));
}

// The sample mill's days went through the store: products costed alike, bags as flagged.
void TstProductionStore::sampleMillDays() {
    const Conn& c = *m_conn;
    ProductionStore store(c);
    const auto milling = store.load(QDate::currentDate().addDays(-2), kMilling);
    QVERIFY(milling);
    QVERIFY(!milling->addBardana);
    QCOMPARE(milling->production.size(), size_t(2));
    QCOMPARE(double(milling->production[0].cost), double(milling->production[1].cost));
    QCOMPARE(to4(milling->production[0].cost), productUnitCost(*milling)->toDouble());
    const auto fine = store.load(QDate::currentDate().addDays(-1), kFineMilling);
    QVERIFY(fine);
    QVERIFY(fine->addBardana);
    QCOMPARE(fine->production.size(), size_t(3));
}

QTEST_GUILESS_MAIN(TstProductionStore)
#include "tst_production_store.moc"
