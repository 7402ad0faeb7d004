#include "ArrivalFixture.h"
#include "arrivals/ArrivalReport.h"
#include "arrivals/ArrivalStore.h"
#include "seed/SampleData.h"
#include "services/ReferentialGuard.h"
#include "support/TestDb.h"

#include <QtTest>

using namespace gm;
using namespace gm::test;

namespace {
// Master data without sample documents, so that keys and stock start from nothing.
std::unique_ptr<Conn> bareMill() {
    auto conn = freshConn();
    loadSampleMasterData(*conn);
    return conn;
}

// The words of the refusal the call met (and its row), or nothing when it went through.
template <class F> QString refusalOf(F&& call, int* row = nullptr) {
    try {
        call();
    } catch (const Objected& r) {
        if (row)
            *row = r.objection().row;
        return r.objection().text;
    }
    return {};
}

int bodyLines(const Conn& conn, int arrivalId) {
    return int(
        toInt(scalar(conn, "SELECT COUNT(*) FROM ArrivalsBody WHERE ArrivalId = ?", {arrivalId})));
}
} // namespace

class TestArrivalStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void savedVehiclesRaiseStockAndPrint();
    void editRefusalsAndRemoval();
    void centreListAndQuotaFollowLetters();
    void permitRatesAverageOverLetters();
};

void TestArrivalStore::savedVehiclesRaiseStockAndPrint() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    ArrivalStore store(*conn);
    QCOMPARE(store.nextArrivalId(), 1);
    ArrivalDocument a =
        freeArrival(1, {vehicle("LHR-1'22", 100, 100.5, 0.5, 20), vehicle("OKR-7", 50, 100, 1, 0),
                        vehicle("SWL-3", 20, 50, 0, 5, 4, 2)});
    a.lines[0].rateUnit = 3900;
    a.lines[0].rateUnitId = 2;
    a.lines[0].weightInKgs = 40;
    a.lines[0].driverName = QStringLiteral("Akram");
    store.save(a, true);

    QCOMPARE(store.nextArrivalId(), 2);
    QCOMPARE(toInt(scalar(*conn, "SELECT IsPosted FROM Arrivals WHERE ArrivalId = 1")), 1);
    // Net = bags x bag weight - bags x per-bag deduction - the lump.
    QCOMPARE(toDouble(scalar(*conn, "SELECT NetWeight FROM ArrivalsBody WHERE VehicleNo = ?",
                             {QStringLiteral("LHR-1'22")})),
             9980.0);
    QCOMPARE(toDouble(scalar(*conn, "SELECT Cost FROM ArrivalsBody WHERE VehicleNo = ?",
                             {QStringLiteral("LHR-1'22")})),
             97.5);
    QVERIFY(scalar(*conn, "SELECT BiltyNo FROM ArrivalsBody WHERE VehicleNo = 'OKR-7'").isNull());
    QCOMPARE(stockWeight(*conn, kWheatLocal), 9980.0 + 4950.0 + 995.0);
    QCOMPARE(stockBags(*conn, 2, 1), 150.0);
    QCOMPARE(stockBags(*conn, 4, 2), 20.0);

    const auto back = store.load(1);
    QVERIFY(back);
    QCOMPARE(back->lines.size(), size_t(3));
    QCOMPARE(back->sellerName, QStringLiteral("Haji Muhammad Aslam & Sons-Okara"));
    QCOMPARE(back->lines[0].rateUnitName, QStringLiteral("Mound (40)"));
    QCOMPARE(back->lines[0].driverName, QStringLiteral("Akram"));

    HostSettingsValues s;
    s.HeaderLine1 = QStringLiteral("Model Flour Mills");
    s.HeaderLine2 = QStringLiteral("Okara");
    s.HeaderLine3Main = QStringLiteral("Phone 1234");
    s.HeaderLine3Extra = QStringLiteral("Fax 5678");
    s.HeaderEmail = QStringLiteral("mill@example.com");
    const Report report = CrpArrival(&*back, s);
    QCOMPARE(report.letterhead, QStringList({"Model Flour Mills", "Okara", "Phone 1234,Fax 5678",
                                             "Email: mill@example.com"}));
    QCOMPARE(report.tables.size(), 1);
    QCOMPARE(report.tables[0].rows.size(), 3);
    QCOMPARE(report.tables[0].totals.at(3), QStringLiteral("170"));
    QCOMPARE(report.tables[0].totals.at(8), QStringLiteral("15925"));
    // A key without saved vehicles prints the letterhead alone.
    QVERIFY(CrpArrival(nullptr, s).tables.isEmpty());
}

// An edit replaces the lines and the stock follows; a refused edit or removal leaves the saved
// arrival and its stock as they were.
void TestArrivalStore::editRefusalsAndRemoval() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    ArrivalStore store(*conn);
    store.save(freeArrival(1, {vehicle("A-1", 100, 100), vehicle("A-2", 100, 100)}), true);
    QCOMPARE(stockWeight(*conn, kWheatLocal), 20000.0);

    // The line without a bag weight is named, not dropped, and not the lines after it.
    int row = -1;
    QCOMPARE(refusalOf(
                 [&] {
                     store.save(freeArrival(1, {vehicle("A-1", 10, 100), vehicle("A-2", 10, 0),
                                                vehicle("A-3", 10, 100)}),
                                false);
                 },
                 &row),
             QStringLiteral("Please provide a valid bags."));
    QCOMPARE(row, 1);
    // Nor is a line whose deductions outweigh it saved: it would take stock away.
    QCOMPARE(refusalOf(
                 [&] {
                     store.save(freeArrival(1, {vehicle("A-1", 10, 100, 0, 1000),
                                                vehicle("A-2", 10, 100, 0, 1001)}),
                                false);
                 },
                 &row),
             QStringLiteral("Please provide a valid other."));
    QCOMPARE(row, 0);
    QCOMPARE(bodyLines(*conn, 1), 2);
    QCOMPARE(stockWeight(*conn, kWheatLocal), 20000.0);

    // One contract, one arrival: a contract another arrival has taken is refused.
    insertContract(*conn, 77, QString::fromLatin1(kSeller), kWheatLocal);
    ArrivalDocument viaContract = freeArrival(2, {vehicle("C-1", 10, 100)});
    viaContract.contractId = 77;
    store.save(viaContract, true);
    viaContract.arrivalId = 3;
    QCOMPARE(refusalOf([&] { store.save(viaContract, true); }),
             QStringLiteral("Please provide a valid Contract Id."));
    QVERIFY(!store.exists(3));
    viaContract.arrivalId = 2; // its own arrival may still be saved again
    store.save(viaContract, false);
    store.remove(2);

    ArrivalDocument edited = freeArrival(1, {vehicle("A-3", 10, 100, 0, 0, 3, 2)});
    edited.commodityId = kWheatGovernment;
    store.save(edited, false);
    QCOMPARE(bodyLines(*conn, 1), 1);
    QCOMPARE(stockWeight(*conn, kWheatLocal), 0.0);
    QCOMPARE(stockWeight(*conn, kWheatGovernment), 1000.0);
    QCOMPARE(stockBags(*conn, 2, 1), 0.0);
    QCOMPARE(stockBags(*conn, 3, 2), 10.0);

    invoiceVehicle(*conn, 7, 1, QStringLiteral("A-3"), kWheatGovernment);
    QCOMPARE(store.isInvoiced(1), 7);
    QCOMPARE(refusalOf([&] { store.remove(1); }),
             QStringLiteral("Cannot remove this invoice because it is used in (PurchaseBody) "
                            "table"));
    QCOMPARE(bodyLines(*conn, 1), 1);
    QCOMPARE(stockWeight(*conn, kWheatGovernment), 1000.0);
}

// Letters alone authorise, each centre its own; what has arrived counts by its net weight and
// still counts once the letters are gone, and removing them all takes the centre off the list.
void TestArrivalStore::centreListAndQuotaFollowLetters() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    ArrivalStore store(*conn);
    QVERIFY(store.prCentres().empty());
    QCOMPARE(store.remaining(4).weight, 0.0);
    insertDfcPayment(*conn, 1, kWheatGovernment, 3900, 80, 2,
                     {{"P-100", 2, 300, 30000.25}, {"P-101", 1, 100, 10000}});
    insertDfcPayment(*conn, 2, kWheatGovernment, 3900, 80, 2, {{"P-200", 2, 20, 2000.5}});
    QCOMPARE(store.prCentres(),
             LookupList({{QStringLiteral("PR Centre Okara"), QStringLiteral("1")},
                         {QStringLiteral("PR Centre Renala Khurd"), QStringLiteral("2")}}));
    QCOMPARE(store.remaining(2).bags, 320.0);
    QCOMPARE(store.remaining(2).weight, 32000.75);

    ArrivalDocument a = freeArrival(1, {vehicle("G-1", 50, 100, 0.5, 10)});
    a.commodityId = kWheatGovernment;
    a.centerId = 1;
    a.sellerId = QString::fromLatin1(kDfcAccount);
    store.save(a, true);
    const double net = 5000.0 - 25.0 - 10.0;
    QCOMPARE(store.remaining(1).bags, 50.0);
    QCOMPARE(store.remaining(1).weight, 10000.0 - net);
    QCOMPARE(store.remaining(2).weight, 32000.75);
    execute(*conn, QStringLiteral("DELETE FROM AuthorityLetters WHERE CenterId = 1"));
    QCOMPARE(store.prCentres(),
             LookupList({{QStringLiteral("PR Centre Renala Khurd"), QStringLiteral("2")}}));
    QCOMPARE(store.remaining(1).bags, -50.0);
    QCOMPARE(store.remaining(1).weight, -net);

    // The arrival moves to the other centre on a later save, then goes.
    a.centerId = 2;
    store.save(a, false);
    QCOMPARE(store.remaining(1).bags, 0.0);
    QCOMPARE(store.remaining(2).weight, 32000.75 - net);
    store.remove(1);
    QCOMPARE(store.remaining(2).weight, 32000.75);
    // The totals the database keeps for a centre nobody uses any more do not hold it back.
    QCOMPARE(FindReferencingTable(*conn, QStringLiteral("PRCenters"), {{"CenterId", 1}}),
             QString());
    execute(*conn, QStringLiteral("DELETE FROM PRCenters WHERE CenterId = 1"));
    QCOMPARE(store.prCentres(),
             LookupList({{QStringLiteral("PR Centre Renala Khurd"), QStringLiteral("2")}}));
}

// Each letter weighs its payment's prices once; an empty price is left out of its average, and
// the unit is that of the centre's earliest payment of the commodity.
void TestArrivalStore::permitRatesAverageOverLetters() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    ArrivalStore store(*conn);
    insertDfcPayment(*conn, 5, kWheatGovernment, 4100.5, 95, 1, {{"P-500", 1, 10, 1000}});
    insertDfcPayment(*conn, 2, kWheatGovernment, 3900, 80, 2,
                     {{"P-200", 1, 10, 1000}, {"P-201", 1, 10, 1000}, {"P-202", 3, 10, 1000}});
    insertDfcPayment(*conn, 7, kWheatLocal, 1, 1, 3, {{"P-700", 1, 10, 1000}});
    execute(*conn, QStringLiteral("UPDATE DFCPayments SET PricePerBag = NULL WHERE PaymentId = 5"));
    auto r = store.permitRates(1, kWheatGovernment);
    QVERIFY(r);
    QCOMPARE(r->ratePerUnit, 3966.8333); // (3900 + 3900 + 4100.5) / 3
    QCOMPARE(r->pricePerBag, 80.0);
    QCOMPARE(r->rateUnitId, qint64(2));
    QVERIFY(!store.permitRates(3, kWheatLocal));

    // A payment that changes commodity takes its letters' prices along.
    execute(*conn, QStringLiteral("UPDATE DFCPayments SET CommodityId = ? WHERE PaymentId = 2"),
            {kWheatLocal});
    r = store.permitRates(1, kWheatGovernment);
    QVERIFY(r);
    QCOMPARE(r->ratePerUnit, 4100.5);
    QCOMPARE(r->pricePerBag, 0.0); // no price to average
    QCOMPARE(r->rateUnitId, qint64(1));
    QCOMPARE(store.permitRates(1, kWheatLocal)->ratePerUnit, 2600.3333); // (3900 x 2 + 1) / 3
    QCOMPARE(store.permitRates(3, kWheatLocal)->rateUnitId, qint64(2));
    execute(*conn, QStringLiteral("DELETE FROM AuthorityLetters WHERE PermitNo = 'P-500'"));
    QVERIFY(!store.permitRates(1, kWheatGovernment));
}

QTEST_MAIN(TestArrivalStore)
#include "tst_arrival_store.moc"
