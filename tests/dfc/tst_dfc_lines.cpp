#include "dfc/DFCLines.h"
#include "dfc/DFCValidation.h"

#include <QtTest>

#include <map>

using namespace gm;

namespace {

// Payment 7 is in use; 9 is the next free one. Permit "0042" belongs to payment 3 and "P-5" to
// payment 7.
class Register final : public DocumentKeys, public PermitRegister {
public:
    qint64 nextDocumentId() const override { return 9; }
    bool exists(qint64 id) const override { return id == 7; }
    qint64 permitHolder(const QString& permit) const override {
        const auto it = m_permits.find(permit);
        return it == m_permits.end() ? 0 : it->second;
    }

private:
    std::map<QString, qint64> m_permits{{QStringLiteral("0042"), 3}, {QStringLiteral("P-5"), 7}};
};

AuthorityLine letter(const QString& permit, qint64 centre, const QString& centreName = {}) {
    AuthorityLine l;
    l.permitNo = permit;
    l.centerId = centre;
    l.centerName = centreName;
    l.noOfBags = 100;
    l.bagWeight = 50;
    l.totalWeight = 5000;
    return l;
}

DFCSaveInput goodPayment() {
    DFCSaveInput in;
    in.challanNo = QStringLiteral("CH-1");
    in.totalWeight = 5000;
    in.value = 12500;
    in.grossValue = 12500;
    in.commodityKey = QStringLiteral("2");
    in.paymentIdText = QStringLiteral("8");
    in.lines = {letter(QStringLiteral("P-1"), 1)};
    return in;
}

struct SaveCase {
    std::function<void(DFCSaveInput&)> change;
    QString message;
    QString focus;
    int row = -1;
    int column = -1;
    qint64 newId = 0; // 0: no fresh number drawn
};

struct CellCase {
    int row;
    int column;
    QString text;
    QString message; // empty: accepted
};

} // namespace

Q_DECLARE_METATYPE(SaveCase)
Q_DECLARE_METATYPE(CellCase)

class TestDFCLines : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void valueArithmetic();
    void cellChecks_data();
    void cellChecks();
    void letterFieldsReadAndShow();
    void validationOrder_data();
    void validationOrder();
    void openedPaymentKeepsItsOwnPermits();
};

void TestDFCLines::valueArithmetic() {
    // Total weight: whole kilograms, ties to even; over the ceiling there is no total.
    QCOMPARE(dfcTotalWeight(100, 50), std::optional<double>(5000));
    QCOMPARE(dfcTotalWeight(3, 0.5), std::optional<double>(2)); // 1.5 -> 2
    QCOMPARE(dfcTotalWeight(5, 0.5), std::optional<double>(2)); // 2.5 -> 2
    QCOMPARE(dfcTotalWeight(10000, 1000), std::optional<double>(10000000));
    QCOMPARE(dfcTotalWeight(5000, 5000), std::nullopt);
    QCOMPARE(dfcTotalWeight(0, 5000), std::optional<double>(0));

    // Value: the weight in units at the rate, whole; no unit weight leaves it empty.
    QCOMPARE(dfcValue(5000, 40, 100), std::optional<double>(12500));
    QCOMPARE(dfcValue(100000, 40, 3900), std::optional<double>(9750000));
    QCOMPARE(dfcValue(1000, 37.5, 3.75), std::optional<double>(100));
    QCOMPARE(dfcValue(10, 40, 5), std::optional<double>(1)); // 1.25 -> 1
    QCOMPARE(dfcValue(5000, 0, 100), std::nullopt);
    QCOMPARE(dfcValue(5000, -1, 100), std::nullopt);
    QCOMPARE(dfcValue(10000000, 1, 100), std::nullopt); // past 999999999
    QCOMPARE(dfcValue(9999999, 1, 100), std::optional<double>(999999900));

    // Bags value is not rounded; gross is.
    QCOMPARE(dfcBagsValue(85.5, 3), 256.5);
    QCOMPARE(dfcGrossValue(12500, 256.5), 12756.0); // 12756.5 -> even
    QCOMPARE(dfcGrossValue(12500, 257.5), 12758.0);

    // Cost: kilograms per unit of money, weight over value, six decimals.
    QCOMPARE(dfcCost(5000, 12500), 0.4);
    QCOMPARE(dfcCost(100000, 9750000), 0.010256);
    QCOMPARE(dfcCost(5000, 0), 0.0);

    // A letter's total keeps the bag weight's decimals until the product is rounded.
    QCOMPARE(letterTotalWeight(999, 50.5), 50450.0); // 50449.5 -> even
    QCOMPARE(letterTotalWeight(3, 33.3333), 100.0);
}

void TestDFCLines::cellChecks_data() {
    QTest::addColumn<CellCase>("c");
    const QString valid = QStringLiteral("Please provide a valid pr center.");
    // Row 0 holds "PR Centre Okara"; the other rows are free.
    QTest::newRow("centre listed") << CellCase{1, ColCenter, "PR Centre Depalpur", {}};
    QTest::newRow("centre unknown") << CellCase{1, ColCenter, "Nowhere", valid};
    QTest::newRow("centre empty") << CellCase{1, ColCenter, "", valid};
    QTest::newRow("centre in another letter")
        << CellCase{1, ColCenter, "PR Centre Okara", kCenterTwice};
    QTest::newRow("centre retyped on its own letter")
        << CellCase{0, ColCenter, "PR Centre Okara", {}};
    QTest::newRow("centre on the new-letter row")
        << CellCase{2, ColCenter, "PR Centre Okara", kCenterTwice};
    QTest::newRow("999 bags") << CellCase{1, ColLetterBags, "999", {}};
    QTest::newRow("1000 bags") << CellCase{1, ColLetterBags, "1000", kLetterBagsRange};
    QTest::newRow("no bags") << CellCase{1, ColLetterBags, "0", kLetterBagsRange};
    QTest::newRow("bags left empty") << CellCase{1, ColLetterBags, "", kLetterBagsRange};
    QTest::newRow("weight 9999.75") << CellCase{1, ColLetterBagWeight, "9999.75", {}};
    QTest::newRow("weight 10000") << CellCase{1, ColLetterBagWeight, "10000", kLetterWeightRange};
    QTest::newRow("weight 0") << CellCase{1, ColLetterBagWeight, "0", kLetterWeightRange};
}

void TestDFCLines::cellChecks() {
    QFETCH(CellCase, c);
    const QStringList centres = {QStringLiteral("PR Centre Okara"),
                                 QStringLiteral("PR Centre Depalpur")};
    const std::vector<AuthorityLine> lines = {letter("P-1", 1, QStringLiteral("PR Centre Okara")),
                                              letter("P-2", 0)};
    const auto refusal = checkAuthorityCell(c.row, c.column, c.text, centres, lines);
    QCOMPARE(refusal ? refusal->text : QString(), c.message);
    if (refusal) {
        QCOMPARE(refusal->title, QStringLiteral("Alert"));
        QCOMPARE(refusal->icon, Objection::Icon::Information);
    }
}

void TestDFCLines::letterFieldsReadAndShow() {
    const auto& fields = authorityLineFields();
    AuthorityLine l;
    fields[ColPermitNo].take(l, QStringLiteral("00123"));
    fields[ColLetterDate].take(l, QStringLiteral("29/02/2024"));
    fields[ColLetterBagWeight].take(l, QStringLiteral("50.125"));
    fields[ColLetterBags].take(l, QString());
    QCOMPARE(l.permitNo, QStringLiteral("00123"));
    QCOMPARE(l.date, QDate(2024, 2, 29));
    QCOMPARE(fields[ColLetterDate].show(l), QStringLiteral("29/02/2024"));
    // The bag weight keeps its decimals; a blank figure shows blank.
    QCOMPARE(fields[ColLetterBagWeight].show(l), QStringLiteral("50.125"));
    QCOMPARE(fields[ColLetterBags].show(l), QString());
    fields[ColLetterDate].take(l, QStringLiteral("31/02/2024"));
    QVERIFY(!l.date.isValid());
    QCOMPARE(fields[ColLetterDate].show(l), QString());
}

void TestDFCLines::validationOrder_data() {
    QTest::addColumn<SaveCase>("c");
    const QString grid = QStringLiteral("GridBagsSale");
    const auto row = [](std::function<void(DFCSaveInput&)> change, const QString& message,
                        const QString& focus, int r = -1, int column = -1, qint64 newId = 0) {
        return SaveCase{std::move(change), message, focus, r, column, newId};
    };
    QTest::newRow("good") << row([](DFCSaveInput&) {}, {}, {});
    QTest::newRow("challan 15 passes")
        << row([](DFCSaveInput& in) { in.challanNo = QString(15, QLatin1Char('9')); }, {}, {});
    QTest::newRow("challan 16") << row(
        [](DFCSaveInput& in) { in.challanNo = QString(16, QLatin1Char('9')); }, kChallanRule,
        "TxtChallanNo");
    QTest::newRow("challan blanks only")
        << row([](DFCSaveInput& in) { in.challanNo = QStringLiteral("   "); }, kChallanRule,
               "TxtChallanNo");
    // The challan comes before everything else that is wrong.
    QTest::newRow("challan first") << row(
        [](DFCSaveInput& in) {
            in.challanNo.clear();
            in.totalWeight = 0;
            in.lines.clear();
        },
        kChallanRule, "TxtChallanNo");
    QTest::newRow("no weight") << row(
        [](DFCSaveInput& in) {
            in.totalWeight = -5;
            in.value = 0;
        },
        kWeightRule, "TxtNoOfBags");
    QTest::newRow("no value") << row(
        [](DFCSaveInput& in) {
            in.value = 0;
            in.grossValue = 0;
        },
        kValueRule, "CboUnit");
    QTest::newRow("no gross") << row([](DFCSaveInput& in) { in.grossValue = 0; }, kGrossRule,
                                     "TxtBagsQty");
    QTest::newRow("no commodity") << row([](DFCSaveInput& in) { in.commodityKey.clear(); },
                                         kCommodityRule, "CboCommodities");
    QTest::newRow("no number") << row(
        [](DFCSaveInput& in) { in.paymentIdText = QStringLiteral("x"); }, kInvalidPaymentId, {}, -1,
        -1, 9);
    QTest::newRow("no letters") << row([](DFCSaveInput& in) { in.lines.clear(); }, kNoLetters,
                                       grid);
    QTest::newRow("permit of another payment, as text")
        << row([](DFCSaveInput& in) { in.lines.push_back(letter("0042", 2)); },
               permitTakenRefusal("0042"), grid, 1, ColPermitNo);
    QTest::newRow("same digits, no leading zeros")
        << row([](DFCSaveInput& in) { in.lines.push_back(letter("42", 2)); }, {}, {});
    QTest::newRow("permit twice") << row(
        [](DFCSaveInput& in) { in.lines.push_back(letter(" P-1 ", 2)); }, permitTakenRefusal("P-1"),
        grid, 1, ColPermitNo);
    QTest::newRow("permit empty") << row(
        [](DFCSaveInput& in) { in.lines.push_back(letter(" ", 2)); },
        QStringLiteral("Please provide a valid permit no."), grid, 1, ColPermitNo);
    QTest::newRow("letter without centre")
        << row([](DFCSaveInput& in) { in.lines.push_back(letter("P-2", 0)); }, kCenterRule, grid, 1,
               ColCenter);
    QTest::newRow("number taken meanwhile")
        << row([](DFCSaveInput& in) { in.paymentIdText = QStringLiteral("7"); }, kPaymentIdTaken,
               {}, -1, -1, 9);
    // Letters are looked at before the number: the clerk mends them first.
    QTest::newRow("letters before the number") << row(
        [](DFCSaveInput& in) {
            in.paymentIdText = QStringLiteral("7");
            in.lines[0].centerId = 0;
        },
        kCenterRule, grid, 0, ColCenter);
}

void TestDFCLines::validationOrder() {
    QFETCH(SaveCase, c);
    DFCSaveInput in = goodPayment();
    c.change(in);
    Register keys;
    const auto o = ValidateDFCPayment(in, keys, keys);
    QCOMPARE(o ? o->text : QString(), c.message);
    if (!o)
        return;
    QCOMPARE(o->focus, c.focus);
    QCOMPARE(o->row, c.row);
    QCOMPARE(o->column, c.column);
    QCOMPARE(o->newDocumentId.value_or(0), c.newId);
    if (c.message == kInvalidPaymentId) {
        QCOMPARE(o->title, QString());
        QCOMPARE(o->icon, Objection::Icon::None);
    } else if (c.message == kNoLetters) {
        QCOMPARE(o->title, QStringLiteral("Alert!"));
        QCOMPARE(o->icon, Objection::Icon::Information);
    } else {
        QCOMPARE(o->title, QStringLiteral("Alert"));
        QCOMPARE(o->icon, Objection::Icon::Warning);
    }
}

void TestDFCLines::openedPaymentKeepsItsOwnPermits() {
    Register keys;
    DFCSaveInput in = goodPayment();
    in.paymentIdText = QStringLiteral("7");
    in.isOpened = true;
    in.lines = {letter("P-5", 1)};
    // Its own number and its own permit stand.
    QVERIFY(!ValidateDFCPayment(in, keys, keys));
    // Another payment's permit does not, opened or not.
    in.lines.push_back(letter("0042", 2));
    const auto o = ValidateDFCPayment(in, keys, keys);
    QVERIFY(o);
    QCOMPARE(o->text, permitTakenRefusal("0042"));
    // A new payment may not take the permit of payment 7 either.
    in.isOpened = false;
    in.paymentIdText = QStringLiteral("8");
    in.lines = {letter("P-5", 1)};
    QCOMPARE(ValidateDFCPayment(in, keys, keys).value_or(Objection()).text,
             permitTakenRefusal("P-5"));
}

QTEST_APPLESS_MAIN(TestDFCLines)
#include "tst_dfc_lines.moc"
