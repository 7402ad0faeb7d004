#include "arrivals/ArrivalFixture.h"
#include "invoices/InvoiceReport.h"
#include "invoices/InvoiceStore.h"
#include "invoices/InvoiceValidation.h"
#include "reports/PdfText.h"
#include "seed/SampleData.h"
#include "support/TestDb.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <latch>
#include <thread>

using namespace gm;
using namespace gm::test;

namespace {

std::unique_ptr<Conn> bareMill() {
    auto conn = freshConn();
    loadSampleMasterData(*conn);
    return conn;
}

bool near(double a, double b) {
    return std::fabs(a - b) < 1e-8;
}
#define QCOMPARE_NEAR(a, b)                                                                        \
    QVERIFY2(near((a), (b)), qPrintable(QStringLiteral("%1 is not %2").arg(a, 0, 'g', 15).arg(b)))

double wheatCost(const Conn& c) {
    return toDouble(
        scalar(c, "SELECT Cost FROM CurrentStock WHERE CommodityId = ?", {kWheatLocal}));
}

double bagCost(const Conn& c, int type = 2, int cls = 1) {
    return toDouble(scalar(c,
                           "SELECT Cost FROM BagsCurrentStock WHERE BagsTypeId = ? AND "
                           "BagsClassId = ?",
                           {type, cls}));
}

qint64 count(const Conn& c, const char* table) {
    return toInt(scalar(c, QStringLiteral("SELECT COUNT(*) FROM %1").arg(table)));
}

// An invoice of the seller's open vehicles, each priced as `rates` says by vehicle number
// ({rate per mound, bag rate}); vehicles not named stay unpriced.
InvoiceDocument invoiceOf(const InvoiceStore& store, int purchaseId,
                          const std::map<QString, std::pair<double, double>>& rates,
                          const QString& seller = QString::fromLatin1(kSeller)) {
    InvoiceDocument d;
    d.purchaseId = purchaseId;
    d.purchaseDate = QDate::currentDate();
    d.sellerId = seller;
    d.lines = store.linesOfSeller(seller);
    for (InvoiceLine& l : d.lines) {
        const auto it = rates.find(l.vehicleNo);
        if (it == rates.end())
            continue;
        l.rate = it->second.first;
        l.bagRate = it->second.second;
        applyRateRule(l);
    }
    const InvoiceFigures f = computeInvoice(d);
    d.commValue = f.totals.commValue;
    d.whTaxValue = f.totals.whTaxValue;
    return d;
}

QStringList vehiclesOnOffer(const InvoiceStore& store) {
    QStringList out;
    for (const InvoiceLine& l : store.linesOfSeller(QString::fromLatin1(kSeller)))
        out << QStringLiteral("%1/%2").arg(l.arrivalId).arg(l.vehicleNo);
    return out;
}

template <class F> Objection refusalOf(F&& call) {
    try {
        call();
    } catch (const Objected& o) {
        return o.objection();
    }
    return Objection::quiet();
}

// The first break in a stock row's ledger: each move starts from the cost the one before left,
// works the formula over the quantities it names, and the last ends at the row's cost.
QString chainFault(const std::vector<CostLedgerEntry>& entries, double currentCost) {
    double cost = 0;
    for (const CostLedgerEntry& e : entries) {
        if (!near(e.costBefore, cost))
            return QStringLiteral("entry %1 starts from %2, not %3")
                .arg(e.entryId)
                .arg(e.costBefore)
                .arg(cost);
        double worked = e.costAfter; // an opening row states where the chain starts
        if (e.movement == QLatin1String("Save"))
            worked = costAfterReceipt(e.stockQuantity, e.costBefore, e.lotQuantity, e.lotCost);
        else if (e.movement == QLatin1String("Reversal"))
            worked =
                costAfterReversal(e.stockQuantity, e.costBefore, e.lotQuantity, e.lotCost).cost;
        if (!near(e.costAfter, worked))
            return QStringLiteral("entry %1 ends at %2, the formula gives %3")
                .arg(e.entryId)
                .arg(e.costAfter)
                .arg(worked);
        cost = e.costAfter;
    }
    return near(cost, currentCost) ? QString()
                                   : QStringLiteral("the ledger ends at %1, the stock holds %2")
                                         .arg(cost)
                                         .arg(currentCost);
}

// DDL runs unprepared: a server prepares no definitions.
void run(const Conn& c, const QString& sql) {
    QSqlQuery q(c.db());
    if (!q.exec(sql))
        QFAIL(qPrintable(sql + QStringLiteral(": ") + q.lastError().text()));
}

} // namespace

class TestInvoiceStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void savesAndRemovalMoveTheAverages();
    void editEqualsRemovalThenSave();
    void refusalsWriteNothing();
    void listsLoadAndPrint();
    void contractListNewestFirst();
    void upgradeOpensTheLedger();
    void clerksSavingAtOnce();
    void sampleMillCostsAreTheStores();
};

// Three receipts from an empty stock, each invoiced after it arrived: 1,000 kg at 25, 500 at 28
// and 800 at 30 per kg, with bags at 50, 60 and 80.
void TestInvoiceStore::savesAndRemovalMoveTheAverages() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    ArrivalStore arrivals(*conn);
    InvoiceStore store(*conn, 3);
    QCOMPARE(store.nextPurchaseId(), 1);

    struct Receipt {
        const char* vehicle;
        double bags, ratePerMound, bagRate, wheat, bagsAfter;
    };
    // The bag value is folded into the wheat's cost: 24,500 + 500 = 25,000 for 1,000 kg.
    const Receipt receipts[] = {{"A-1", 10, 980, 50, 25, 50},
                                {"B-1", 5, 1096, 60, 26, 800.0 / 15},
                                {"C-1", 8, 1168, 80, 63000.0 / 2300, 1440.0 / 23}};
    int id = 0;
    for (const Receipt& r : receipts) {
        ++id;
        arrivals.save(freeArrival(id, {vehicle(r.vehicle, r.bags, 100)}), true);
        const double weight = stockWeight(*conn, kWheatLocal);
        const double bags = stockBags(*conn, 2, 1);
        // Only what is not yet invoiced is on offer.
        QCOMPARE(vehiclesOnOffer(store),
                 QStringList{QStringLiteral("%1/%2").arg(id).arg(r.vehicle)});
        store.save(invoiceOf(store, id, {{r.vehicle, {r.ratePerMound, r.bagRate}}}), true);
        QCOMPARE_NEAR(wheatCost(*conn), r.wheat);
        QCOMPARE_NEAR(bagCost(*conn), r.bagsAfter);
        // The quantities are the arrivals': an invoice leaves them alone.
        QCOMPARE(stockWeight(*conn, kWheatLocal), weight);
        QCOMPARE(stockBags(*conn, 2, 1), bags);
    }
    QCOMPARE(stockWeight(*conn, kWheatLocal), 2300.0);
    QCOMPARE(toDouble(scalar(*conn, "SELECT Cost FROM PurchaseBody WHERE PurchaseId = 3")), 30.0);
    QCOMPARE(toDouble(scalar(*conn, "SELECT BagsCost FROM PurchaseBody WHERE PurchaseId = 3")),
             80.0);
    QCOMPARE(toInt(scalar(*conn, "SELECT IsPosted FROM Purchases WHERE PurchaseId = 3")), 0);

    // Removing the last brings the averages back exactly, the quantities stay, and the vehicle
    // is on offer again.
    store.remove(3);
    QCOMPARE_NEAR(wheatCost(*conn), 26.0);
    QCOMPARE_NEAR(bagCost(*conn), 800.0 / 15);
    QCOMPARE(stockWeight(*conn, kWheatLocal), 2300.0);
    QCOMPARE(stockBags(*conn, 2, 1), 23.0);
    QCOMPARE(vehiclesOnOffer(store), QStringList{"3/C-1"});
    QVERIFY(!store.exists(3));
    QCOMPARE(toInt(scalar(*conn, "SELECT COUNT(*) FROM PurchaseBody WHERE PurchaseId = 3")), 0);

    // Every move is in the ledger, chained, with who made it and for which lot.
    const auto wheat = store.costLedger(kWheatLocal);
    QCOMPARE(int(wheat.size()), 4);
    QCOMPARE(wheat.back().movement, QStringLiteral("Reversal"));
    QCOMPARE(wheat.back().vehicleNo, QStringLiteral("C-1"));
    QCOMPARE(wheat.back().documentId, qint64(3));
    QCOMPARE(wheat.back().stockQuantity, 2300.0);
    QCOMPARE(chainFault(wheat, wheatCost(*conn)), QString());
    QCOMPARE(chainFault(store.bagCostLedger(2, 1), bagCost(*conn)), QString());
    QCOMPARE(toInt(scalar(*conn, "SELECT MIN(UserNo) FROM StockCostLedger")), 3);
    // The ledger keeps what it was told.
    QSqlQuery change(conn->db());
    QVERIFY(!change.exec(QStringLiteral("UPDATE StockCostLedger SET CostAfter = 0")));
    QVERIFY(!QSqlQuery(conn->db()).exec(QStringLiteral("DELETE FROM StockCostLedger")));
}

// An opened invoice saved again ends where a removal and a fresh save would: its old lines are
// taken out before the new ones go in.
void TestInvoiceStore::editEqualsRemovalThenSave() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    ArrivalStore arrivals(*conn);
    InvoiceStore store(*conn);
    // 1,000 kg already in stock at 20 per kg, its 10 bags at nothing.
    arrivals.save(freeArrival(1, {vehicle("S-1", 10, 100)}), true);
    store.save(invoiceOf(store, 1, {{"S-1", {800, 0}}}), true);
    arrivals.save(freeArrival(2, {vehicle("A-1", 10, 100), vehicle("A-2", 10, 100)}), true);

    // Two lots of one invoice are costed as two invoices in a row would cost them: 25.4 and
    // 30.4 per kg (bags at 40 folded in) with the 1,000 kg at 20.
    store.save(invoiceOf(store, 2, {{"A-1", {1000, 40}}, {"A-2", {1200, 40}}}), true);
    QCOMPARE_NEAR(wheatCost(*conn), (20000.0 + 25400 + 30400) / 3000);
    QCOMPARE_NEAR(bagCost(*conn), 800.0 / 30);
    QCOMPARE(vehiclesOnOffer(store), QStringList());

    // The edit: A-1 at a new rate, A-2 taken off (rate 0), which is on offer again.
    auto opened = store.load(2);
    QVERIFY(opened);
    QCOMPARE(int(opened->lines.size()), 2);
    for (InvoiceLine& l : opened->lines) {
        l.rate = l.vehicleNo == QLatin1String("A-1") ? 1100.0 : 0.0;
        l.rateUnitId = 0; // the unit as its name shows it
        applyRateRule(l);
    }
    opened->specialDiscount = 75.0;
    store.save(*opened, false);
    QCOMPARE(store.load(2)->specialDiscount.toText(), QStringLiteral("75"));
    QCOMPARE(toInt(scalar(*conn, "SELECT RateUnitId FROM PurchaseBody WHERE PurchaseId = 2")), 2);
    const double editedWheat = wheatCost(*conn);
    const double editedBags = bagCost(*conn);
    QCOMPARE(vehiclesOnOffer(store), QStringList{"2/A-2"});
    QCOMPARE(toInt(scalar(*conn, "SELECT COUNT(*) FROM PurchaseBody WHERE PurchaseId = 2")), 1);

    store.remove(2);
    QCOMPARE_NEAR(wheatCost(*conn), 20.0);
    QCOMPARE_NEAR(bagCost(*conn), 0.0);
    store.save(invoiceOf(store, 3, {{"A-1", {1100, 40}}}), true);
    QCOMPARE_NEAR(wheatCost(*conn), editedWheat);
    QCOMPARE_NEAR(bagCost(*conn), editedBags);
    QCOMPARE(chainFault(store.costLedger(kWheatLocal), wheatCost(*conn)), QString());
    QCOMPARE(chainFault(store.bagCostLedger(2, 1), bagCost(*conn)), QString());
}

void TestInvoiceStore::refusalsWriteNothing() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    ArrivalStore arrivals(*conn);
    InvoiceStore store(*conn);
    arrivals.save(freeArrival(1, {vehicle("LHR-1'22", 10, 100), vehicle("OKR-7", 10, 100)}), true);
    arrivals.save(freeArrival(2, {vehicle("N-1", 10, 50, 0, 0, 4, 2)}), true);

    // Two clerks build invoices from the same vehicles; the second to save is refused.
    const InvoiceDocument first =
        invoiceOf(store, 1, {{"LHR-1'22", {1000, 10}}, {"OKR-7", {1000, 0}}});
    const InvoiceDocument second =
        invoiceOf(store, 2, {{"LHR-1'22", {1200, 10}}, {"OKR-7", {1200, 0}}});
    store.save(first, true);
    const double cost = wheatCost(*conn);
    const qint64 moves = count(*conn, "StockCostLedger");
    Objection o = refusalOf([&] { store.save(second, true); });
    QCOMPARE(o.text, QStringLiteral("Vehicle LHR-1'22 of arrival 1 is already invoiced in purchase "
                                    "1. Please load the vehicles again."));
    QCOMPARE(o.focus, QStringLiteral("Grid"));
    QCOMPARE(o.row, 0);
    QVERIFY(!store.exists(2));

    // A number another clerk took meanwhile is refused with a fresh one.
    InvoiceDocument late = invoiceOf(store, 1, {{"N-1", {1000, 5}}});
    o = refusalOf([&] { store.save(late, true); });
    QCOMPARE(o.text, kPurchaseIdTaken);
    QCOMPARE(o.newDocumentId, std::optional<qint64>(2));
    QCOMPARE(vehiclesOnOffer(store), QStringList{"2/N-1"});

    // A stock row that the arrivals should have made and is gone: named, not skipped.
    execute(*conn, "DELETE FROM BagsCurrentStock WHERE BagsTypeId = 4 AND BagsClassId = 2");
    late.purchaseId = 2;
    o = refusalOf([&] { store.save(late, true); });
    QCOMPARE(o.text,
             QStringLiteral("There is no stock of bags of type Jute 50 Kg, class Used whose "
                            "average cost this invoice could move, so nothing was saved."));
    QVERIFY(!store.exists(2));
    QCOMPARE(wheatCost(*conn), cost);
    QCOMPARE(count(*conn, "StockCostLedger"), moves);
    QCOMPARE(count(*conn, "PurchaseBody"), qint64(2));

    // Removal behind the guard: a payment that points at the invoice keeps it, costs and all.
    run(*conn, QStringLiteral("CREATE TABLE supplier_payments (PaymentNo integer PRIMARY KEY, "
                              "PurchaseId integer REFERENCES Purchases (PurchaseId))"));
    execute(*conn, "INSERT INTO supplier_payments (PaymentNo, PurchaseId) VALUES (1, 1)");
    o = refusalOf([&] { store.remove(1); });
    QCOMPARE(o.text, QStringLiteral("Cannot remove this purchase because it is used in "
                                    "(supplier_payments) table"));
    QVERIFY(store.exists(1));
    QCOMPARE(wheatCost(*conn), cost);
    QCOMPARE(count(*conn, "StockCostLedger"), moves);

    // Freed, it goes; the vehicle with a quote in its number is reversed like any other.
    execute(*conn, "DELETE FROM supplier_payments");
    store.remove(1);
    QCOMPARE_NEAR(wheatCost(*conn), 0.0);
    QCOMPARE(vehiclesOnOffer(store), QStringList({"1/LHR-1'22", "1/OKR-7", "2/N-1"}));
    QCOMPARE(chainFault(store.costLedger(kWheatLocal), wheatCost(*conn)), QString());
}

void TestInvoiceStore::listsLoadAndPrint() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    ArrivalStore arrivals(*conn);
    InvoiceStore store(*conn);
    const QString seller = QString::fromLatin1(kSeller);
    insertContract(*conn, 5, seller, kWheatLocal); // 3900 per mound
    execute(*conn, "UPDATE PContracts SET BrokerId = '6300001', Brokerage = 2, "
                   "IsBrokeragePerBag = 1 WHERE ContractId = 5");
    insertContract(*conn, 6, seller, kWheatLocal); // no arrival
    ArrivalDocument onContract =
        freeArrival(1, {vehicle("C-1", 300, 100, 0.5, 10), vehicle("C-2", 3, 33.3333)});
    onContract.contractId = 5;
    arrivals.save(onContract, true);
    arrivals.save(freeArrival(2, {vehicle("F-1", 3, 33.3333)}), true);

    const LookupList contracts = store.contracts();
    QCOMPARE(int(contracts.size()), 1);
    QCOMPARE(contracts[0].name, QStringLiteral("5"));
    QCOMPARE(contracts[0].key, QStringLiteral("Haji Muhammad Aslam & Sons | Okara"));
    QVERIFY(!store.linesOfContract(6));

    // The contract brings its terms and its own vehicles only, priced at its rate; the net
    // weight as the vehicle has it, where the seller route takes it to 2 decimals.
    auto offer = store.linesOfContract(5);
    QVERIFY(offer);
    QCOMPARE(offer->contract.sellerName, QStringLiteral("Haji Muhammad Aslam & Sons-Okara"));
    QCOMPARE(offer->contract.brokerName, QStringLiteral("Mian Javed Commission Agent-Okara"));
    QCOMPARE(offer->contract.brokerageRate, 2.0);
    QVERIFY(offer->contract.isBrokeragePerBag);
    QCOMPARE(int(offer->lines.size()), 2);
    const InvoiceLine& c1 = offer->lines[0];
    QCOMPARE(c1.serialNo, 1);
    QCOMPARE(c1.vehicleNo, QStringLiteral("C-1"));
    QCOMPARE(double(c1.netWeight), 29840.0); // 30,000 less 150 less 10
    QCOMPARE(c1.unit, QStringLiteral("Mound (40)"));
    QCOMPARE(c1.value.toText(), QStringLiteral("2909400")); // 746 mounds at 3900
    QCOMPARE(c1.savingBags.toText(), QStringLiteral("300"));
    QCOMPARE(c1.bagRate.toText(), QStringLiteral("0"));
    QCOMPARE(offer->lines[1].netWeight.toText(), QStringLiteral("99.9999"));
    const auto bySeller = store.linesOfSeller(seller);
    QCOMPARE(int(bySeller.size()), 3);
    QCOMPARE(bySeller[2].netWeight.toText(), QStringLiteral("100"));
    QVERIFY(bySeller[2].value.isBlank());
    QCOMPARE(bySeller[2].rate.toText(), QStringLiteral("0"));
    // The seller owes nothing: the mill owes them 250,000, which the box shows positive.
    QCOMPARE(previousCreditShown(previousBalance(store.currentDebit(seller, QDate::currentDate()))),
             250000.0);

    // Saved from the contract with C-2 left unpriced, charges typed as totals.
    InvoiceDocument d;
    d.purchaseId = 1;
    d.purchaseDate = QDate::currentDate().addDays(-1);
    d.contractId = 5;
    d.sellerId = seller;
    d.brokerId = offer->contract.brokerId;
    d.brokerageRate = offer->contract.brokerageRate;
    d.isBrokeragePerBag = true;
    d.lines = offer->lines;
    d.lines[0].bagRate = 10.0;
    applyRateRule(d.lines[0]);
    d.lines[1].rate = 0.0;
    applyRateRule(d.lines[1]);
    const double bags = invoiceFooters(d.lines).bags.toDouble();
    QCOMPARE(bags, 300.0);
    d.unloading.total = 1000.0;
    chargeTotalTyped(d.unloading, Charge::Unloading, bags, bags);
    QCOMPARE(d.unloading.perBag.toText(), QStringLiteral("3.33")); // 999 again from the per bag
    d.freight.perBag = 2.5;
    chargePerBagTyped(d.freight, bags);
    d.commPerMound = 10.0;
    d.whTaxRatio = 10.0;
    d.specialDiscount = 20.0;
    d.previousCredit = 250000;
    d.paidAmount = 1000.0;
    const InvoiceFigures shown = computeInvoice(d);
    d.commValue = shown.totals.commValue;
    d.whTaxValue = shown.totals.whTaxValue;
    store.save(d, true);
    QCOMPARE(toDouble(scalar(*conn, "SELECT Unloading FROM Purchases")), 3.33);
    QCOMPARE(toDouble(scalar(*conn, "SELECT Brokerage FROM Purchases")), 2.0);
    // C-1 is invoiced; C-2 stays on offer, and C-1 coming again under a new arrival is offered.
    arrivals.save(freeArrival(3, {vehicle("C-1", 10, 100)}), true);
    QCOMPARE(vehiclesOnOffer(store), QStringList({"1/C-2", "2/F-1", "3/C-1"}));
    QCOMPARE(int(store.linesOfContract(5)->lines.size()), 1);

    // Opened, it is the invoice as saved: flag, date, figures, and the totals it was saved with.
    auto back = store.load(1);
    QVERIFY(back);
    QCOMPARE(back->purchaseDate, d.purchaseDate);
    QCOMPARE(back->contractId, qint64(5));
    QCOMPARE(back->sellerName, QStringLiteral("Haji Muhammad Aslam & Sons-Okara"));
    QCOMPARE(back->brokerName, QStringLiteral("Mian Javed Commission Agent-Okara"));
    QVERIFY(back->isBrokeragePerBag);
    QCOMPARE(back->unloading.total.toText(), QStringLiteral("1000"));
    QCOMPARE(back->freight.total.toText(), QStringLiteral("750"));
    QCOMPARE(int(back->lines.size()), 1);
    QCOMPARE(back->lines[0].value.toText(), d.lines[0].value.toText());
    QCOMPARE(back->lines[0].weightInKgs.toText(), QStringLiteral("40"));
    QCOMPARE(back->lines[0].unit, QStringLiteral("Mound (40)"));
    const InvoiceFigures reopened = computeInvoice(*back);
    QCOMPARE(reopened.grossValue, shown.grossValue);
    QCOMPARE(reopened.totals.netAmount, shown.totals.netAmount);
    QCOMPARE(reopened.totals.totalPayable, shown.totals.totalPayable);
    QCOMPARE(back->commValue, shown.totals.commValue);

    // Printed, with and without the balance.
    const auto print = store.printData(1);
    QVERIFY(print);
    HostSettingsValues s;
    s.HeaderLine1 = QStringLiteral("Model Flour Mills");
    s.HeaderLine3Main = QStringLiteral("Okara");
    const InvoicePrintFigures figures = printFigures(d, shown);
    Report withBalance = CrpPurchase(&*print, figures, false, s);
    const Report hidden = CrpPurchase(&*print, figures, true, s);
    QCOMPARE(withBalance.tables[0].rows[0].at(5), QStringLiteral("30000")); // gross weight
    QCOMPARE(withBalance.tables[0].rows[0].at(6), QStringLiteral("160"));   // deductions
    QCOMPARE(withBalance.field("PreviousCredit1")->value, QStringLiteral("250000"));
    QCOMPARE(withBalance.field("TotalPayable")->value, formatNumber(shown.totals.totalPayable, 2));
    QVERIFY(hidden.field("PreviousCredit1")->suppressed);
    QCOMPARE(hidden.field("TotalPayable")->value,
             formatNumber(roundHalfEven(shown.totals.netAmount, 0), 2));
    QCOMPARE(hidden.field("Unloading")->value, QStringLiteral("1000"));
    QVERIFY(CrpPurchase(nullptr, figures, false, s).tables.isEmpty());

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("invoice.pdf"));
    QVERIFY(writeReportPdf(hidden, path));
    const QString text = pdfPages(path).join(QLatin1Char('\n'));
    QVERIFY2(text.contains(QStringLiteral("PURCHASE INVOICE")), qPrintable(text));
    QVERIFY(text.contains(QStringLiteral("C-1")));
    QVERIFY(!text.contains(QStringLiteral("Previous Bal")));
}

// A database whose stock already carried costs before the ledger: the upgrade opens each row's
// chain where its cost stood, and invoices saved without their charge totals derive them.
// The contract list sets each seller's name and city beside its contracts: newest first,
// only contracts some arrival used, and none of a seller who has no city to show.
void TestInvoiceStore::contractListNewestFirst() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    ArrivalStore arrivals(*conn);
    const struct {
        int contract;
        const char* seller;
        bool arrived;
    } contracts[] = {{3, "6100002", true},
                     {9, kSeller, true},
                     {4, "6100004", true}, // Malik Tariq Farms: no city
                     {12, kSeller, false},
                     {7, "6100002", true}};
    int arrivalId = 0;
    for (const auto& c : contracts) {
        insertContract(*conn, c.contract, QString::fromLatin1(c.seller), kWheatLocal);
        if (!c.arrived)
            continue;
        ArrivalDocument a = freeArrival(++arrivalId, {vehicle("V-1", 10, 100)});
        a.sellerId = QString::fromLatin1(c.seller);
        a.contractId = c.contract;
        arrivals.save(a, true);
    }
    QStringList shown;
    for (const LookupItem& item : InvoiceStore(*conn).contracts())
        shown << item.name + QStringLiteral(": ") + item.key;
    QCOMPARE(shown, QStringList({"9: Haji Muhammad Aslam & Sons | Okara",
                                 "7: Chaudhry Grain Traders | Sahiwal",
                                 "3: Chaudhry Grain Traders | Sahiwal"}));
}

void TestInvoiceStore::upgradeOpensTheLedger() {
    GM_REQUIRE_ENGINE();
    auto conn = bareMill();
    const QString location = lastLocation();
    ArrivalStore arrivals(*conn);
    {
        InvoiceStore store(*conn);
        arrivals.save(freeArrival(1, {vehicle("A-1", 10, 100)}), true);
        InvoiceDocument d = invoiceOf(store, 1, {{"A-1", {1000, 0}}});
        d.freight.perBag = 3.33;
        store.save(d, true);
    }
    run(*conn, QStringLiteral("DROP TABLE StockCostLedger"));
    if (conn->isPostgres())
        run(*conn, QStringLiteral("DROP FUNCTION gm_stockcostledger_kept()"));
    for (const char* column : {"FreightTotal", "UnloadingTotal", "ExpensesTotal"})
        run(*conn, QStringLiteral("ALTER TABLE Purchases DROP COLUMN %1").arg(column));
    execute(*conn, "DELETE FROM SchemaVersion WHERE Version >= 9");
    conn.reset();

    QString error;
    auto reopened = Conn::open(location, &error);
    QVERIFY2(reopened, qPrintable(error));
    InvoiceStore store(*reopened);
    const auto opening = store.costLedger(kWheatLocal);
    QCOMPARE(int(opening.size()), 1);
    QCOMPARE(opening[0].movement, QStringLiteral("Opening"));
    QCOMPARE_NEAR(opening[0].costAfter, 25.0);
    QCOMPARE(store.load(1)->freight.total.toText(), QStringLiteral("33")); // 3.33 x 10 bags
    store.remove(1);
    QCOMPARE(chainFault(store.costLedger(kWheatLocal), wheatCost(*reopened)), QString());
    QCOMPARE(wheatCost(*reopened), 0.0);
}

// Eight clerks save an invoice each on one commodity at the same moment, two of them under the
// same number: each number is given once, and the costs come out as the saves in the ledger's
// order would give them one after another.
void TestInvoiceStore::clerksSavingAtOnce() {
    GM_REQUIRE_ENGINE();
    constexpr int kClerks = 8;
    auto conn = bareMill();
    const QString location = lastLocation();
    {
        ArrivalStore arrivals(*conn);
        for (int i = 1; i <= kClerks; ++i)
            arrivals.save(freeArrival(i, {vehicle(QStringLiteral("V-%1").arg(i), 10, 100)}), true);
    }
    const std::vector<InvoiceLine> open = InvoiceStore(*conn).linesOfSeller(kSeller);
    QCOMPARE(int(open.size()), kClerks);

    std::latch start(kClerks);
    std::vector<QString> failures(kClerks);
    {
        std::vector<std::jthread> clerks;
        for (int i = 0; i < kClerks; ++i)
            clerks.emplace_back([&, i] {
                try {
                    QString why;
                    auto own = Conn::open(location, &why);
                    if (!own)
                        throw DbError(why);
                    InvoiceStore store(*own, qint16(i + 1));
                    InvoiceDocument d;
                    // Numbers of their own, but the first two clerks drew the same.
                    d.purchaseId = i == 1 ? 1 : i + 1;
                    d.purchaseDate = QDate::currentDate();
                    d.sellerId = QString::fromLatin1(kSeller);
                    d.lines = {open[size_t(i)]};
                    d.lines[0].rate = 800.0 + 40 * i; // 20 to 27 per kg
                    d.lines[0].bagRate = 30.0 + i;
                    applyRateRule(d.lines[0]);
                    start.arrive_and_wait();
                    for (;;) {
                        try {
                            store.save(d, true);
                            break;
                        } catch (const Objected& o) {
                            if (!o.objection().newDocumentId)
                                throw;
                            d.purchaseId = int(*o.objection().newDocumentId);
                        }
                    }
                } catch (const std::exception& e) {
                    failures[size_t(i)] = QString::fromUtf8(e.what());
                }
            });
    }
    for (const QString& f : failures)
        QCOMPARE(f, QString());
    QCOMPARE(count(*conn, "Purchases"), qint64(kClerks));
    QCOMPARE(count(*conn, "PurchaseBody"), qint64(kClerks));
    InvoiceStore store(*conn);
    const auto wheat = store.costLedger(kWheatLocal);
    QCOMPARE(int(wheat.size()), kClerks);
    for (const CostLedgerEntry& e : wheat)
        QCOMPARE(e.stockQuantity, 1000.0 * kClerks);
    QCOMPARE(chainFault(wheat, wheatCost(*conn)), QString());
    QCOMPARE(chainFault(store.bagCostLedger(2, 1), bagCost(*conn)), QString());
}

// The sample mill's invoices went through the store: their costs are in the stock and the
// ledger, and a vehicle of each invoiced arrival is left to invoice.
void TestInvoiceStore::sampleMillCostsAreTheStores() {
    GM_REQUIRE_ENGINE();
    auto conn = freshSampleConn();
    InvoiceStore store(*conn);
    QCOMPARE(count(*conn, "Purchases"), qint64(2));
    QVERIFY(store.load(1) && store.load(2));
    Query rows(*conn, "SELECT CommodityId, Cost FROM CurrentStock WHERE Cost <> 0");
    rows.exec();
    int costed = 0;
    while (rows.next()) {
        ++costed;
        QCOMPARE(chainFault(store.costLedger(toInt(rows.value(0))), toDouble(rows.value(1))),
                 QString());
    }
    QCOMPARE(costed, 1);
    QVERIFY(!store.linesOfSeller(QStringLiteral("6100002")).empty());
    QVERIFY(store.linesOfContract(toInt(scalar(*conn, "SELECT ContractId FROM Purchases "
                                                      "WHERE ContractId IS NOT NULL"))));
}

QTEST_MAIN(TestInvoiceStore)
#include "tst_invoice_store.moc"
