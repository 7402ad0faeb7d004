#include "arrivals/ArrivalLines.h"
#include "arrivals/ArrivalValidation.h"
#include "services/Lookups.h"

#include <QtTest>

using namespace gm;

namespace {

ArrivalLine line(const QString& qty, const QString& bags, const QString& perBag = {},
                 const QString& other = {}) {
    ArrivalLine l;
    l.noOfBags = Figure::fromText(qty);
    l.bagWeight = Figure::fromText(bags);
    l.bagsDeduction = Figure::fromText(perBag);
    l.otherDeduction = Figure::fromText(other);
    return l;
}

// Key 7 is in use; 9 is the next free one.
class TakenSeven final : public DocumentKeys {
public:
    qint64 nextDocumentId() const override { return 9; }
    bool exists(qint64 id) const override { return id == 7; }
};

struct WeightCase {
    QString qty, bags, perBag, other;
    QString typedGross; // empty: the gross follows qty and bag weight
    QString gross, bagsAfter;
    double net;
};

struct CellCase {
    int column;
    QString text;
    bool withCentre;
    int kind;
    QString message;
};

struct SaveCase {
    QString seller, commodity, id;
    bool opened;
    QString bagWeights; // one line per comma
    QString message, focus;
    int row;
    bool newId;
};

} // namespace

Q_DECLARE_METATYPE(WeightCase)
Q_DECLARE_METATYPE(SaveCase)
Q_DECLARE_METATYPE(CellCase)

class TestArrivalLines : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void weightsOfALine_data();
    void weightsOfALine();
    void cellChecks_data();
    void cellChecks();
    void validationOrder_data();
    void validationOrder();
};

void TestArrivalLines::weightsOfALine_data() {
    QTest::addColumn<WeightCase>("c");
    // clang-format off
    // Other is a lump for the whole line, not per bag.
    QTest::newRow("deductions") << WeightCase{"100", "50.5", "0.25", "20", "", "5050", "50.5", 5005};
    QTest::newRow("no deductions") << WeightCase{"3", "85", "", "", "", "255", "85", 255};
    QTest::newRow("gross rounded to 2") << WeightCase{"3", "33.333", "", "", "", "100", "33.333", 100};
    QTest::newRow("net may go negative") << WeightCase{"2", "10", "5", "30", "", "20", "10", -20};
    // Without a quantity or a bag weight there is no gross, and the net stays as it was.
    QTest::newRow("empty qty") << WeightCase{"", "50", "1", "", "", "", "50", 0};
    QTest::newRow("zero bag weight") << WeightCase{"10", "0", "", "", "", "", "0", 0};
    QTest::newRow("gross by hand: bag weight to 4 decimals") << WeightCase{"3", "7", "", "3", "100", "100", "33.3333", 97};
    // Nothing to divide by: the bag weight is left, the net still follows the gross.
    QTest::newRow("gross by hand without qty") << WeightCase{"", "7", "", "1", "100", "100", "7", 99};
    // clang-format on
}

void TestArrivalLines::weightsOfALine() {
    QFETCH(WeightCase, c);
    ArrivalLine row = line(c.qty, c.bags, c.perBag, c.other);
    if (c.typedGross.isEmpty()) {
        recalcAfterQtyOrBags(row, RateUnitInfo{QStringLiteral("Maund (40)"), 40});
        QCOMPARE(row.rateUnitName.isEmpty(), c.gross.isEmpty());
    } else {
        row.gross = Figure::fromText(c.typedGross);
        recalcAfterGross(row);
    }
    QCOMPARE(row.gross.toText(), c.gross);
    QCOMPARE(row.bagWeight.toText(), c.bagsAfter);
    QCOMPARE(double(row.netWeight), c.net);
}

void TestArrivalLines::cellChecks_data() {
    QTest::addColumn<CellCase>("t");
    const int ok = 0, no = 1, ask = 2; // taken, refused, the quota question asked
    const QString vehicle = QStringLiteral("Vehicle no must be less then 15 charactors.");
    const QString weight =
        QStringLiteral("Weight must be greator then 0 and less then remaining Weight.");
    // clang-format off
    QTest::newRow("vehicle of 15") << CellCase{0, QString(15, 'V'), false, ok, QString()};
    QTest::newRow("vehicle of 16") << CellCase{0, QString(16, 'V'), false, no, vehicle};
    QTest::newRow("class listed") << CellCase{1, "A", false, ok, QString()};
    QTest::newRow("class unknown") << CellCase{1, "Z", false, no, "Please provide a valid class."};
    QTest::newRow("type unknown") << CellCase{2, "Jute", false, no, "Please provide a valid type."};
    QTest::newRow("per bag 99999") << CellCase{6, "99999", false, ok, QString()};
    QTest::newRow("per bag 99999.5") << CellCase{6, "99999.5", false, no, "Please provide a valid per bag."};
    QTest::newRow("other negative") << CellCase{7, "-1", false, no, "Please provide a valid other."};
    QTest::newRow("driver of 25") << CellCase{9, QString(25, 'd'), false, ok, QString()};
    QTest::newRow("driver of 26") << CellCase{9, QString(26, 'd'), false, no, "Please provide a valid driver name."};
    QTest::newRow("bilty of 16") << CellCase{10, QString(16, 'b'), false, no, "Please provide a valid bilty no."};
    // Free arrivals have no quota and no test of zero.
    QTest::newRow("free qty zero") << CellCase{3, "0", false, ok, QString()};
    QTest::newRow("free big bag") << CellCase{4, "900", false, ok, QString()};
    QTest::newRow("qty within quota") << CellCase{3, "100", true, ok, QString()};
    QTest::newRow("qty over quota") << CellCase{3, "101", true, ask, kQuotaQuestion};
    QTest::newRow("qty zero at centre") << CellCase{3, "0", true, ask, kQuotaQuestion};
    QTest::newRow("bag weight within") << CellCase{4, "50", true, ok, QString()};
    QTest::newRow("bag weight over remainder") << CellCase{4, "500.5", true, no, weight};
    QTest::newRow("bag weight zero at centre") << CellCase{4, "0", true, no, weight};
    // clang-format on
}

void TestArrivalLines::cellChecks() {
    QFETCH(CellCase, t);
    ArrivalCellContext c;
    c.hasCenter = t.withCentre; // 100 bags and 500 kg still to come
    c.remainingBags = QStringLiteral("100");
    c.remainingWeight = QStringLiteral("500");
    c.bagClasses = {QStringLiteral("A"), QStringLiteral("B")};
    c.bagTypes = {QStringLiteral("PP 100kg")};
    const auto refusal = checkArrivalCell(t.column, t.text, c);
    const bool asks = exceedsQuota(t.column, t.text, c);
    QCOMPARE(refusal ? 1 : asks ? 2 : 0, t.kind);
    QCOMPARE(refusal ? refusal->text : asks ? kQuotaQuestion : QString(), t.message);
}

void TestArrivalLines::validationOrder_data() {
    QTest::addColumn<SaveCase>("c");
    const char* taken =
        "The Arrival ID already exists. A new ID has been generated. Please save your record again";
    const auto row = [](const char* name, const SaveCase& c) { QTest::newRow(name) << c; };
    // clang-format off
    row("no seller", {"", "", "1", false, "50", "Please select a valid Party and try again", "CboSeller", -1, false});
    row("no commodity", {"601", "", "1", false, "50", "Please select a valid commodity and try again", "CboCommodity", -1, false});
    row("zero id", {"601", "1", "0", false, "50", "Invalid Arrival ID. A new Arrival has been automatically generated. Please save again", "", -1, true});
    row("key taken", {"601", "1", "7", false, "50,,1", taken, "", -1, true});
    row("no lines", {"601", "1", "8", false, "", "There is no record to save.Please enter atleast one commodity and save again", "Grid", -1, false});
    // An opened arrival saves over its own key; then the line without a bag weight is named,
    // not dropped, and the lines after it are not the ones blamed.
    row("opened, line without bag weight", {"601", "1", "7", true, "50,,1", "Please provide a valid bags.", "Grid", 1, false});
    row("passes", {"601", "1", "8", false, "50,50", "", "", -1, false});
    // clang-format on
}

void TestArrivalLines::validationOrder() {
    QFETCH(SaveCase, c);
    ArrivalSaveInput in;
    in.sellerKey = c.seller;
    in.commodityKey = c.commodity;
    in.arrivalIdText = c.id;
    in.isOpened = c.opened;
    if (!c.bagWeights.isEmpty())
        for (const QString& bags : c.bagWeights.split(QLatin1Char(',')))
            in.lines.push_back(line(QStringLiteral("10"), bags));
    const auto f = ValidateArrival(in, TakenSeven());
    QCOMPARE(f ? f->text : QString(), c.message);
    QCOMPARE(f ? f->focus : QString(), c.focus);
    QCOMPARE(f ? f->row : -1, c.row);
    QCOMPARE(f && f->newDocumentId == 9, c.newId);
    if (c.row >= 0)
        QCOMPARE(int(f->icon), int(Objection::Icon::Information));
}

QTEST_APPLESS_MAIN(TestArrivalLines)
#include "tst_arrival_lines.moc"
