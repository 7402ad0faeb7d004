#include "arrivals/ArrivalLines.h"
#include "arrivals/ArrivalValidation.h"
#include "services/Lookups.h"

#include <QtTest>

using namespace gm;

namespace {

ArrivalRow line(const QString& qty, const QString& bags, const QString& perBag = {},
                const QString& other = {}) {
    ArrivalRow row = emptyArrivalRow();
    row[ColQty] = qty;
    row[ColBags] = bags;
    row[ColPerBag] = perBag;
    row[ColOther] = other;
    return row;
}

} // namespace

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
    QTest::addColumn<QString>("qty");
    QTest::addColumn<QString>("bags");
    QTest::addColumn<QString>("perBag");
    QTest::addColumn<QString>("other");
    QTest::addColumn<QString>("typedGross"); // empty: the gross follows qty and bag weight
    QTest::addColumn<QString>("gross");
    QTest::addColumn<QString>("bagsAfter");
    QTest::addColumn<double>("net");
    const auto row = [](const char* name, const char* qty, const char* bags, const char* perBag,
                        const char* other, const char* typedGross, const char* gross,
                        const char* bagsAfter, double net) {
        QTest::newRow(name) << QString(qty) << QString(bags) << QString(perBag) << QString(other)
                            << QString(typedGross) << QString(gross) << QString(bagsAfter) << net;
    };
    // Other is a lump for the whole line, not per bag.
    row("deductions", "100", "50.5", "0.25", "20", "", "5050", "50.5", 5005.0);
    row("no deductions", "3", "85", "", "", "", "255", "85", 255.0);
    row("gross rounded to 2", "3", "33.333", "", "", "", "100", "33.333", 100.0);
    row("net may go negative", "2", "10", "5", "30", "", "20", "10", -20.0);
    // Without a quantity or a bag weight there is no gross, and the net stays as it was.
    row("empty qty", "", "50", "1", "", "", "", "50", 0.0);
    row("zero bag weight", "10", "0", "", "", "", "", "0", 0.0);
    row("gross by hand: bag weight to 4 decimals", "3", "7", "", "3", "100", "100", "33.3333",
        97.0);
    // Nothing to divide by: the bag weight is left, the net still follows the gross.
    row("gross by hand without qty", "", "7", "", "1", "100", "100", "7", 99.0);
}

void TestArrivalLines::weightsOfALine() {
    QFETCH(QString, qty);
    QFETCH(QString, bags);
    QFETCH(QString, perBag);
    QFETCH(QString, other);
    QFETCH(QString, typedGross);
    QFETCH(QString, gross);
    QFETCH(QString, bagsAfter);
    QFETCH(double, net);
    ArrivalRow row = line(qty, bags, perBag, other);
    if (typedGross.isEmpty()) {
        recalcAfterQtyOrBags(row, RateUnitInfo{QStringLiteral("Maund (40)"), 40});
        QCOMPARE(row[ColRateUnitId].isEmpty(), gross.isEmpty());
    } else {
        row[ColGross] = typedGross;
        recalcAfterGross(row);
    }
    QCOMPARE(row[ColGross], gross);
    QCOMPARE(row[ColBags], bagsAfter);
    QCOMPARE(leadingNumber(row[ColNetWeight]), net);
}

void TestArrivalLines::cellChecks_data() {
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("withCentre");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("message");
    const int ok = ArrivalCellVerdict::Accept, no = ArrivalCellVerdict::Refuse,
              ask = ArrivalCellVerdict::AskQuota;
    const QString vehicle = QStringLiteral("Vehicle no must be less then 15 charactors.");
    const QString weight =
        QStringLiteral("Weight must be greator then 0 and less then remaining Weight.");
    QTest::newRow("vehicle of 15") << 0 << QString(15, 'V') << false << ok << QString();
    QTest::newRow("vehicle of 16") << 0 << QString(16, 'V') << false << no << vehicle;
    QTest::newRow("class listed") << 1 << "A" << false << ok << QString();
    QTest::newRow("class unknown") << 1 << "Z" << false << no << "Please provide a valid class.";
    QTest::newRow("type unknown") << 2 << "Jute" << false << no << "Please provide a valid type.";
    QTest::newRow("per bag 99999") << 6 << "99999" << false << ok << QString();
    QTest::newRow("per bag 99999.5")
        << 6 << "99999.5" << false << no << "Please provide a valid per bag.";
    QTest::newRow("other negative") << 7 << "-1" << false << no << "Please provide a valid other.";
    QTest::newRow("driver of 25") << 9 << QString(25, 'd') << false << ok << QString();
    QTest::newRow("driver of 26") << 9 << QString(26, 'd') << false << no
                                  << "Please provide a valid driver name.";
    QTest::newRow("bilty of 16") << 10 << QString(16, 'b') << false << no
                                 << "Please provide a valid bilty no.";
    // Free arrivals have no quota and no test of zero.
    QTest::newRow("free qty zero") << 3 << "0" << false << ok << QString();
    QTest::newRow("free big bag") << 4 << "900" << false << ok << QString();
    QTest::newRow("qty within quota") << 3 << "100" << true << ok << QString();
    QTest::newRow("qty over quota") << 3 << "101" << true << ask << kQuotaQuestion;
    QTest::newRow("qty zero at centre") << 3 << "0" << true << ask << kQuotaQuestion;
    QTest::newRow("bag weight within") << 4 << "50" << true << ok << QString();
    QTest::newRow("bag weight over remainder") << 4 << "500.5" << true << no << weight;
    QTest::newRow("bag weight zero at centre") << 4 << "0" << true << no << weight;
}

void TestArrivalLines::cellChecks() {
    QFETCH(int, column);
    QFETCH(QString, text);
    QFETCH(bool, withCentre);
    QFETCH(int, kind);
    QFETCH(QString, message);
    ArrivalCellContext c;
    c.hasCenter = withCentre; // 100 bags and 500 kg still to come
    c.remainingBags = QStringLiteral("100");
    c.remainingWeight = QStringLiteral("500");
    c.bagClasses = {QStringLiteral("A"), QStringLiteral("B")};
    c.bagTypes = {QStringLiteral("PP 100kg")};
    const ArrivalCellVerdict v = checkArrivalCell(column, text, c);
    QCOMPARE(int(v.kind), kind);
    QCOMPARE(v.message, message);
}

void TestArrivalLines::validationOrder_data() {
    QTest::addColumn<QString>("seller");
    QTest::addColumn<QString>("commodity");
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("opened");
    QTest::addColumn<QString>("bagWeights"); // one line per comma
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("focus");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("newId");
    const auto row = [](const char* name, const char* seller, const char* commodity, const char* id,
                        bool opened, const char* bagWeights, const char* message, const char* focus,
                        int line, bool newId) {
        QTest::newRow(name) << QString(seller) << QString(commodity) << QString(id) << opened
                            << QString(bagWeights) << QString(message) << QString(focus) << line
                            << newId;
    };
    const char* taken =
        "The Arrival ID already exists. A new ID has been generated. Please save your record again";
    row("no seller", "", "", "1", false, "50", "Please select a valid Party and try again",
        "CboSeller", -1, false);
    row("no commodity", "601", "", "1", false, "50",
        "Please select a valid commodity and try again", "CboCommodity", -1, false);
    row("zero id", "601", "1", "0", false, "50",
        "Invalid Arrival ID. A new Arrival has been automatically generated. Please save again", "",
        -1, true);
    row("key taken", "601", "1", "7", false, "50,,1", taken, "", -1, true);
    row("no lines", "601", "1", "8", false, "",
        "There is no record to save.Please enter atleast one commodity and save again", "Grid", -1,
        false);
    // An opened arrival saves over its own key; then the line without a bag weight is named,
    // not dropped, and the lines after it are not the ones blamed.
    row("opened, line without bag weight", "601", "1", "7", true, "50,,1",
        "Please provide a valid bags.", "Grid", 1, false);
    row("passes", "601", "1", "8", false, "50,50", "", "", -1, false);
}

void TestArrivalLines::validationOrder() {
    QFETCH(QString, seller);
    QFETCH(QString, commodity);
    QFETCH(QString, id);
    QFETCH(bool, opened);
    QFETCH(QString, bagWeights);
    QFETCH(QString, message);
    QFETCH(QString, focus);
    QFETCH(int, row);
    QFETCH(bool, newId);
    ArrivalSaveInput in;
    in.sellerKey = seller;
    in.commodityKey = commodity;
    in.arrivalIdText = id;
    in.isOpened = opened;
    if (!bagWeights.isEmpty())
        for (const QString& bags : bagWeights.split(QLatin1Char(',')))
            in.rows.push_back(line(QStringLiteral("10"), bags));
    const auto f = ValidateArrival(in, [](int key) { return key == 7; });
    QCOMPARE(f ? f->message : QString(), message);
    QCOMPARE(f ? f->focus : QString(), focus);
    QCOMPARE(f ? f->row : -1, row);
    QCOMPARE(f && f->drawNewId, newId);
    if (row >= 0)
        QCOMPARE(int(f->icon), int(ArrivalValidationFailure::Icon::Information));
}

QTEST_APPLESS_MAIN(TestArrivalLines)
#include "tst_arrival_lines.moc"
