#include "invoices/InvoiceLines.h"
#include "invoices/InvoiceValidation.h"
#include "invoices/PurchaseInvoice.h"

#include <QtTest>

#include <cmath>

using namespace gm;

namespace {

InvoiceLine line(double bags, double net, double rate = 0, double bagRate = 0, double kgs = 40) {
    InvoiceLine l;
    l.arrivalId = 1;
    l.vehicleNo = QStringLiteral("V-%1").arg(bags);
    l.bags = bags;
    l.netWeight = net;
    l.rate = rate;
    l.bagRate = bagRate;
    l.weightInKgs = kgs;
    return l;
}

// Key 7 is in use; 9 is the next free one.
class TakenSeven final : public DocumentKeys {
public:
    qint64 nextDocumentId() const override { return 9; }
    bool exists(qint64 id) const override { return id == 7; }
};

struct CellCase {
    double bags, net, rate, bagRate, kgs;
    int column;
    double newUnitKgs; // for the Unit column
    QString value, savingBags, sWeight;
};

struct ChargeCase {
    bool typedTotal;
    Charge charge;
    QString typed;
    double footerBags, currentLineBags;
    QString partner;
    bool partnerLocked;
};

struct SaveCase {
    QString seller, id;
    bool opened;
    QString lines; // "rate/net" per line, comma between lines; "=" repeats the line before
    QString message, focus;
    int row;
    bool newId;
};

} // namespace

Q_DECLARE_METATYPE(CellCase)
Q_DECLARE_METATYPE(ChargeCase)
Q_DECLARE_METATYPE(SaveCase)

class TestInvoiceLines : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cellRules_data();
    void cellRules();
    void footersCountPricedLinesOnly();
    void chargePairs_data();
    void chargePairs();
    void brokerage();
    void totalsAndBalance();
    void averageCosts();
    void validationOrder_data();
    void validationOrder();
};

void TestInvoiceLines::cellRules_data() {
    QTest::addColumn<CellCase>("c");
    const auto row = [](const char* name, const CellCase& c) { QTest::newRow(name) << c; };
    // clang-format off
    // 1,000 kg at 100 per 40 kg unit, 20 bags at 10: 100 x 25 + 200.
    row("priced", {20, 1000, 100, 10, 40, InvRate, 0, "2700", "20", "1000"});
    row("bag rate typed", {20, 1000, 100, 10, 40, InvBagRate, 0, "2700", "20", "1000"});
    // The whole value rounds half to even: 2.5 -> 2, 7.5 -> 8.
    row("half down to even", {0, 20, 5, 0, 40, InvRate, 0, "2", "0", "20"});
    row("half up to even", {0, 60, 5, 0, 40, InvRate, 0, "8", "0", "60"});
    // A bag rate alone, or a unit of no weight, prices nothing: the line leaves the sums.
    row("bag rate alone", {20, 1000, 0, 10, 40, InvBagRate, 0, "", "0", ""});
    row("unit of no weight", {20, 1000, 100, 0, 0, InvRate, 0, "", "0", ""});
    // The unit rule rounds only the weight part, to 2 decimals: 1001 / 40 x 33.1 = 828.3275,
    // so 828.33 + 210, where the rate rule gives 1038; the line's place in the sums stays.
    row("unit: weight part to 2", {20, 1001, 33.1, 10.5, 40, InvUnit, 40, "1038.33", "", ""});
    row("rate: all to whole", {20, 1001, 33.1, 10.5, 40, InvRate, 0, "1038", "20", "1001"});
    row("unit: tie to even", {0, 10, 0.5, 0, 40, InvUnit, 40, "0.12", "", ""});
    row("unit: new unit's weight", {0, 1000, 100, 0, 40, InvUnit, 100, "1000", "", ""});
    row("unit: bags alone without rate", {20, 1000, 0, 10, 40, InvUnit, 40, "200", "", ""});
    row("unit: no weight refused", {20, 1000, 100, 0, 40, InvUnit, 0, "", "", ""});
    row("other column: nothing", {20, 1000, 100, 10, 40, InvBags, 0, "", "", ""});
    // clang-format on
}

void TestInvoiceLines::cellRules() {
    QFETCH(CellCase, c);
    InvoiceLine l = line(c.bags, c.net, c.rate, c.bagRate, c.kgs);
    const bool taken = applyCellRule(l, c.column, c.newUnitKgs);
    QCOMPARE(taken, !(c.column == InvUnit && c.newUnitKgs <= 0));
    QCOMPARE(l.value.toText(), c.value);
    QCOMPARE(l.savingBags.toText(), c.savingBags);
    QCOMPARE(l.sWeight.toText(), c.sWeight);
    if (c.column == InvUnit && taken)
        QCOMPARE(double(l.weightInKgs), c.newUnitKgs);
}

void TestInvoiceLines::footersCountPricedLinesOnly() {
    std::vector<InvoiceLine> lines = {line(20, 1000.1, 100), line(10, 500.2, 0),
                                      line(5, 0.2, 40, 1)};
    for (InvoiceLine& l : lines)
        applyRateRule(l);
    InvoiceFooters f = invoiceFooters(lines);
    // 2500.25 rounds to 2500; 0.2 / 40 x 40 + 5 = 5.2 rounds to 5.
    QCOMPARE(f.value.toString(), QStringLiteral("2505"));
    QCOMPARE(f.bags.toString(), QStringLiteral("25"));
    // Four decimals in fixed point: no binary remainder in 1000.1 + 0.2.
    QCOMPARE(f.netWeight, Currency::fromRaw(10003000));

    // A rate taken back to 0: the line leaves the value, bags and weight sums.
    lines[0].rate = 0.0;
    applyRateRule(lines[0]);
    f = invoiceFooters(lines);
    QCOMPARE(f.value.toString(), QStringLiteral("5"));
    QCOMPARE(f.bags.toString(), QStringLiteral("5"));
    QCOMPARE(f.netWeight.toString(), QStringLiteral("0.2"));

    // The grid reads and writes each column through the line's fields.
    InvoiceLine l = line(20, 1000, 100);
    l.serialNo = 3;
    l.arrivalId = 12;
    l.arrivalDate = QDate(2025, 3, 5);
    l.commodityId = 1;
    const auto& fields = invoiceLineFields();
    QCOMPARE(int(fields.size()), int(InvoiceColumnCount));
    QCOMPARE(invoiceColumnCaptions().size(), int(InvoiceColumnCount));
    QCOMPARE(fields[InvSN].show(l), QStringLiteral("3"));
    QCOMPARE(fields[InvArrivalDate].show(l), QStringLiteral("05/03/2025"));
    fields[InvArrivalDate].take(l, QStringLiteral("06/04/2025"));
    QCOMPARE(l.arrivalDate, QDate(2025, 4, 6));
    fields[InvBagRate].take(l, QString());
    QVERIFY(l.bagRate.isBlank());
    fields[InvArrivalId].take(l, QStringLiteral("15"));
    QCOMPARE(l.arrivalId, qint64(15));
}

void TestInvoiceLines::chargePairs_data() {
    QTest::addColumn<ChargeCase>("c");
    const auto row = [](const char* name, const ChargeCase& c) { QTest::newRow(name) << c; };
    // clang-format off
    row("total drives per bag", {true, Charge::Unloading, "1000", 30, 0, "33.33", true});
    row("per bag drives total", {false, Charge::Freight, "12.345", 30, 0, "370", true});
    row("total back to 0 frees per bag", {true, Charge::Expense, "0", 30, 30, "", false});
    row("per bag back to 0 frees total", {false, Charge::Unloading, "", 30, 0, "", false});
    // With no priced bags nothing is derived.
    row("no priced bags", {true, Charge::Unloading, "1000", 0, 20, "7", false});
    row("no priced bags per bag", {false, Charge::Expense, "5", 0, 20, "7", false});
    // Freight and expense test the grid's current line for bags, unloading the footer.
    row("freight, current line bagless", {true, Charge::Freight, "1000", 30, 0, "7", false});
    row("freight, current line with bags", {true, Charge::Freight, "1000", 30, 5, "33.33", true});
    row("unloading, current line bagless", {true, Charge::Unloading, "1000", 30, 0, "33.33", true});
    // A current line with bags, but no priced bags to divide by.
    row("expense, nothing to divide by", {true, Charge::Expense, "1000", 0, 5, "7", false});
    // clang-format on
}

void TestInvoiceLines::chargePairs() {
    QFETCH(ChargeCase, c);
    ChargePair p;
    // The partner holds 7 before: a case that derives nothing leaves it.
    if (c.typedTotal) {
        p.perBag = 7.0;
        p.total = Figure::fromText(c.typed);
        chargeTotalTyped(p, c.charge, c.footerBags, c.currentLineBags);
        QCOMPARE(p.perBag.toText(), c.partner);
        QCOMPARE(p.perBagLocked, c.partnerLocked);
        QVERIFY(!p.totalLocked);
    } else {
        p.total = 7.0;
        p.perBag = Figure::fromText(c.typed);
        chargePerBagTyped(p, c.footerBags);
        QCOMPARE(p.total.toText(), c.partner);
        QCOMPARE(p.totalLocked, c.partnerLocked);
        QVERIFY(!p.perBagLocked);
    }
}

void TestInvoiceLines::brokerage() {
    // A percentage of the gross rounds as the server does: 40.5 up, where half to even gives 40.
    QCOMPARE(ComputeBrokerage({}, 2700, 1.5, false), 41.0);
    QCOMPARE(ComputeBrokerage({}, 2700, 0, false), 0.0);
    // Per bag over every line with a net weight, priced or not, and no other: (20 + 10) x 2.5.
    const std::vector<InvoiceLine> lines = {line(20, 1000, 100), line(10, 500, 0), line(5, 0, 0)};
    QCOMPARE(ComputeBrokerage(lines, 2700, 2.5, true), 75.0);
    // Per bag rounds half to even: 10 x 0.25 = 2.5 -> 2, 30 x 0.25 = 7.5 -> 8.
    QCOMPARE(ComputeBrokerage({line(10, 1)}, 0, 0.25, true), 2.0);
    QCOMPARE(ComputeBrokerage({line(30, 1)}, 0, 0.25, true), 8.0);

    // The whole invoice: footers, gross, brokerage and totals together.
    InvoiceDocument d;
    d.lines = {line(20, 1000, 100, 10), line(10, 500)};
    for (InvoiceLine& l : d.lines)
        applyRateRule(l);
    d.brokerageRate = 1.0;
    d.isBrokeragePerBag = true;
    d.commPerMound = 10.0;
    d.freight.total = 100.0;
    d.unloading.total = 40.0;
    const InvoiceFigures f = computeInvoice(d);
    QCOMPARE(f.grossValue, 2700.0);
    QCOMPARE(f.brokerage, 30.0);
    QCOMPARE(f.totals.commValue, 250.0); // only the priced 1,000 kg
    QCOMPARE(f.totals.netAmount, 2700.0 + 100 - 40 + 250);
}

void TestInvoiceLines::totalsAndBalance() {
    // Commission 10 per mound on 4,000 kg is 1000, the tax of 10 per cent on it 100: 900 added.
    TotalsInput in;
    in.netWeightFooter = 4000;
    in.commPerMound = 10;
    in.whTaxRatio = 10;
    InvoiceTotals t = ComputeTotals(in);
    QCOMPARE(t.commValue, 1000.0);
    QCOMPARE(t.whTaxValue, 100.0);
    QCOMPARE(t.netAmount, 900.0);

    // Freight and expense add, the discount and unloading come off; the balance is added.
    in = TotalsInput{};
    in.grossValue = 2700;
    in.freight = 100;
    in.expense = 50.25;
    in.specialDiscount = 20;
    in.unloading = 30;
    in.previousCredit = -500.5;
    t = ComputeTotals(in);
    QCOMPARE(t.netAmount, 2800.25);
    QCOMPARE(t.totalPayable, 2300.0); // 2299.75 to a whole number

    // The total payable rounds half to even.
    for (const auto& [net, payable] : {std::pair{10.5, 10.0}, {11.5, 12.0}}) {
        in = TotalsInput{};
        in.grossValue = net;
        QCOMPARE(ComputeTotals(in).totalPayable, payable);
    }

    // The balance shows with its sign turned: a debit is owed by the seller.
    QCOMPARE(previousCreditShown(previousBalance(500)), -500.0);
    QCOMPARE(previousCreditShown(previousBalance(-300)), 300.0);
    QCOMPARE(previousCreditShown(previousBalance(0)), 0.0);
    QCOMPARE(previousCreditShown(previousBalance(0.5)), 0.0); // half to even: 0
    QCOMPARE(previousCreditShown(previousBalance(1.5)), -2.0);
    QVERIFY(!std::signbit(previousCreditShown(previousBalance(-0.4))));
}

void TestInvoiceLines::averageCosts() {
    // Three receipts from an empty stock, each already in the stock when it is costed: 1,000 kg
    // at 25, 500 at 28 and 800 at 30 per kg.
    double cost = costAfterReceipt(1000, 0, 1000, 25);
    QCOMPARE(cost, 25.0);
    cost = costAfterReceipt(1500, cost, 500, 28);
    QCOMPARE(cost, 26.0);
    cost = costAfterReceipt(2300, cost, 800, 30);
    QCOMPARE(cost, 63000.0 / 2300);
    // Removing the last brings back the cost before it; removing the rest empties the stock.
    CostReversal back = costAfterReversal(2300, cost, 800, 30);
    QVERIFY(back.changed);
    QCOMPARE(back.cost, 26.0);
    back = costAfterReversal(1000, 25, 1000, 25);
    QCOMPARE(back.cost, 0.0);
    QVERIFY(!back.note.isEmpty());
    // A remainder of binary arithmetic is no stock: 0.1 + 0.2 less 0.3 is nothing.
    QCOMPARE(costAfterReversal(0.1 + 0.2, 25, 0.3, 25).cost, 0.0);

    // Where the stock before the lot was below 0, or nothing is left, the lot's cost stands.
    QCOMPARE(costAfterReceipt(500, 99, 800, 30), 30.0);
    QCOMPARE(costAfterReceipt(0, 99, 0, 30), 30.0);
    // A reversal never makes a cost absurd: it is left as it was, and says why.
    back = costAfterReversal(500, 26, 800, 30); // the stock was consumed meanwhile
    QCOMPARE(back.cost, 26.0);
    QVERIFY(!back.changed);
    QVERIFY(!back.note.isEmpty());
    back = costAfterReversal(1000, 10, 500, 30); // would be -10
    QCOMPARE(back.cost, 10.0);
    QVERIFY(!back.changed);

    // Bags the same way: 100 new bags at 80 into 300 at 50 (the 100 already counted).
    QCOMPARE(costAfterReceipt(400, 50, 100, 80), 57.5);
    QCOMPARE(costAfterReversal(400, 57.5, 100, 80).cost, 50.0);

    // A line's wheat cost is its whole value, bags included, over its weight.
    InvoiceLine l = line(20, 1000, 100, 10);
    applyRateRule(l);
    QCOMPARE(invoiceLineCost(l), 2.7);
}

void TestInvoiceLines::validationOrder_data() {
    QTest::addColumn<SaveCase>("c");
    const auto row = [](const char* name, const SaveCase& c) { QTest::newRow(name) << c; };
    const char* taken = "The Purchase ID already exists. A new ID has been generated. Please save "
                        "your record again";
    // clang-format off
    row("no seller", {"", "1", false, "100/10", "Please select a seller and try again", "CboSeller", -1, false});
    row("empty id", {"601", " ", false, "100/10", "Invalid purchase Id. A new Purchase has been automatically generated. Please save again", "", -1, true});
    row("id taken", {"601", "7", false, "100/10", taken, "", -1, true});
    row("no priced line", {"601", "8", false, "0/10,0/20", "Please specify Rate.", "Grid", 0, false});
    row("priced line weighs nothing", {"601", "8", false, "0/0,100/0", "Vehicle V-1 of arrival 1 has no net weight, so it cannot be priced. Please set its rate to 0.", "Grid", 1, false});
    row("vehicle twice", {"601", "8", false, "100/10,=", "Vehicle V-0 of arrival 1 stands twice in this invoice.", "Grid", 1, false});
    // An opened invoice saves over its own number; an unpriced line weighing nothing is no fault.
    row("opened passes", {"601", "7", true, "100/10,0/0", "", "", -1, false});
    // clang-format on
}

void TestInvoiceLines::validationOrder() {
    QFETCH(SaveCase, c);
    PurchaseSaveInput in;
    in.sellerKey = c.seller;
    in.purchaseIdText = c.id;
    in.isOpened = c.opened;
    for (const QString& text : c.lines.split(QLatin1Char(','))) {
        if (text == QLatin1String("=")) {
            in.lines.push_back(in.lines.back());
            continue;
        }
        const QStringList parts = text.split(QLatin1Char('/'));
        InvoiceLine l = line(0, parts[1].toDouble(), parts[0].toDouble());
        l.vehicleNo = QStringLiteral("V-%1").arg(in.lines.size());
        in.lines.push_back(l);
    }
    const auto f = ValidatePurchase(in, TakenSeven());
    QCOMPARE(f ? f->text : QString(), c.message);
    QCOMPARE(f ? f->focus : QString(), c.focus);
    QCOMPARE(f ? f->row : -1, c.row);
    QCOMPARE(f && f->newDocumentId == 9, c.newId);
}

QTEST_APPLESS_MAIN(TestInvoiceLines)
#include "tst_invoice_lines.moc"
