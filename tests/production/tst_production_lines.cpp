#include "production/HourlyLines.h"
#include "production/ProductionLines.h"
#include "production/ProductionValidation.h"

#include <QtTest>

using namespace gm;

namespace {

Currency money(double v) {
    return Currency::fromDouble(v);
}

ProductionLine line(const char* commodity, const char* type, const char* cls, double bags,
                    double bagWeight, double cost = 0) {
    ProductionLine l;
    l.commodity = QString::fromLatin1(commodity);
    l.bagsType = QString::fromLatin1(type);
    l.bagsClass = QString::fromLatin1(cls);
    l.noOfBags = bags;
    l.bagWeight = bagWeight;
    l.weight = bags * bagWeight;
    l.cost = cost;
    return l;
}

ProductionLists sampleLists() {
    ProductionLists l;
    l.consumedCommodities = {"Wheat Local", "Wheat Government"};
    l.producedCommodities = {"Flour", "Bran"};
    l.bagTypes = {"Jute 100 Kg", "PP 50 Kg"};
    l.bagClasses = {"New", "Used"};
    return l;
}

ProductionDay validDay() {
    ProductionDay d;
    d.processId = 1;
    d.consumption = {line("Wheat Local", "Jute 100 Kg", "New", 50, 100, 80)};
    d.production = {line("Flour", "PP 50 Kg", "New", 60, 50),
                    line("Bran", "Jute 100 Kg", "New", 19, 100)};
    return d;
}

} // namespace

class TstProductionLines : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void balance_data();
    void balance();
    void productCost_data();
    void productCost();
    void productsCostTheSameWhateverTheirWeight();
    void bagsAndWeights();
    void footersAddCellsAsShown();
    void saveChecks_data();
    void saveChecks();
    void typedNames();
    void hourlyLines();
};

void TstProductionLines::balance_data() {
    QTest::addColumn<double>("consumed");
    QTest::addColumn<double>("produced");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("ratio");
    QTest::newRow("more out than in") << 1000.0 << 1020.0 << "Gain"
                                      << "20"
                                      << "2";
    QTest::newRow("half a kilo short reads as gain") << 1000.0 << 999.5 << "Gain"
                                                     << "0.5"
                                                     << "0.05";
    QTest::newRow("ten short") << 1000.0 << 990.0 << "Shortage"
                               << "10"
                               << "-1";
    QTest::newRow("exactly one short") << 1000.0 << 999.0 << "Shortage"
                                       << "1"
                                       << "-0.1";
    QTest::newRow("0.99 short") << 1000.0 << 999.01 << "Gain"
                                << "0.99"
                                << "0.1";
    QTest::newRow("even") << 1000.0 << 1000.0 << "Gain"
                          << "0"
                          << "0";
    QTest::newRow("nothing consumed yet") << 0.0 << 500.0 << "Gain"
                                          << "500"
                                          << "0";
    QTest::newRow("ratio rounds half to even") << 800.0 << 799.9 << "Gain"
                                               << "0.1"
                                               << "0.01";
    QTest::newRow("four decimals exactly") << 3000.1234 << 2000.0001 << "Shortage"
                                           << "1000.1233"
                                           << "-33.34";
}

void TstProductionLines::balance() {
    QFETCH(double, consumed);
    QFETCH(double, produced);
    const Balance b = ShowBalance(money(consumed), money(produced));
    QTEST(b.status(), "status");
    QTEST(b.resultText(), "result");
    QTEST(b.ratioText(), "ratio");
}

void TstProductionLines::productCost_data() {
    QTest::addColumn<double>("consumedCost");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<double>("cost");
    QTest::newRow("small gain raises the cost") << 100.0 << 0.5 << 100.5;
    QTest::newRow("gain of one percent lowers it") << 100.0 << 1.0 << 99.0;
    QTest::newRow("shortage raises it") << 100.0 << -2.0 << 102.0;
    QTest::newRow("even") << 100.0 << 0.0 << 100.0;
    QTest::newRow("four decimals") << 83.3333 << -1.37 << 84.4750; // 84.474966...
}

void TstProductionLines::productCost() {
    QFETCH(double, consumedCost);
    QFETCH(double, ratio);
    QFETCH(double, cost);
    QCOMPARE(ComputeProductCost(money(consumedCost), ratio), money(cost));
}

void TstProductionLines::productsCostTheSameWhateverTheirWeight() {
    ProductionDay d = validDay();
    d.productionExpense = 25000;
    d.otherExpense = 5000;
    // 5000 in, 3000 + 1900 out: a shortage of 2 percent.
    d.ratio = ratioOf(d);
    QCOMPARE(d.ratio, -2.0);
    // 80 raised by 2 percent, and 30000 of expenses over 5000 kg.
    QCOMPARE(productUnitCost(d), std::optional<Currency>(money(81.6 + 6)));
    QCOMPARE(ExpensePerWeight(1, 0, money(3)), money(0.3333));
    // Two consumption lines: their unit costs add up, they are not averaged.
    d.consumption.push_back(line("Wheat Government", "Jute 100 Kg", "New", 50, 100, 90));
    d.ratio = 0;
    QCOMPARE(productUnitCost(d), std::optional<Currency>(money(170 + 3)));
    d.consumption.clear();
    QVERIFY(!productUnitCost(d));
}

void TstProductionLines::bagsAndWeights() {
    ProductionLine l = line("Flour", "PP 50 Kg", "New", 0, 50);
    l.weight = 120.0;
    // No bags yet: nothing is worked out and the weight stays.
    QVERIFY(!recalcAfterBags(l));
    QCOMPARE(double(l.weight), 120.0);
    l.noOfBags = 3;
    QVERIFY(recalcAfterBags(l));
    QCOMPARE(double(l.weight), 150.0);

    // A typed weight corrects the bag weight, never the bags.
    l.weight = 100.0;
    QVERIFY(recalcAfterWeight(l));
    QCOMPARE(double(l.bagWeight), 33.333333);
    QCOMPARE(double(l.noOfBags), 3.0);
    for (double bags : {0.0, 0.5}) {
        l.noOfBags = bags;
        l.weight = 75.0;
        QCOMPARE(recalcAfterWeight(l), bags != 0);
        QCOMPARE(double(l.bagWeight), 75.0);
    }
}

void TstProductionLines::footersAddCellsAsShown() {
    std::vector<ProductionLine> lines = {line("Flour", "PP 50 Kg", "New", 3, 33.333333, 10.12345),
                                         line("Flour", "PP 50 Kg", "New", 1.5, 2, 0.00005)};
    const LineTotals t = totalsOf(lines);
    QCOMPARE(t.bags, money(4.5));
    QCOMPARE(t.weight, money(103));   // each cell to four decimals first: 100 + 3
    QCOMPARE(t.cost, money(10.1234)); // 10.12345 -> 10.1234, 0.00005 -> 0 (ties to even)
}

void TstProductionLines::saveChecks_data() {
    QTest::addColumn<QString>("grid");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("words");
    QTest::addColumn<int>("focusColumn");
    const QString c = kConsumptionGrid, p = kProductionGrid;
    QTest::newRow("empty commodity") << c << 0 << "commodity"
                                     << ""
                                     << "Bag Type cannot be null" << 1;
    QTest::newRow("empty class") << c << 0 << "class"
                                 << ""
                                 << "No Of Bags cannot be null" << 3;
    QTest::newRow("empty weight") << c << 0 << "weight"
                                  << ""
                                  << "Weight cannot be 0" << 5;
    QTest::newRow("zero weight passes") << c << 0 << "weight"
                                        << "0"
                                        << "" << -1;
    QTest::newRow("empty bag type") << c << 0 << "type"
                                    << ""
                                    << "Please provide a valid bag type." << 1;
    QTest::newRow("product not of the list") << p << 1 << "commodity"
                                             << "Suji"
                                             << "Please provide a valid commodity." << 0;
    QTest::newRow("product's empty commodity") << p << 0 << "commodity"
                                               << ""
                                               << "Bag Type cannot be null" << 1;
    QTest::newRow("product's class unknown") << p << 1 << "class"
                                             << "Torn"
                                             << "Please provide a valid bag class." << 2;
    QTest::newRow("consumed commodity of the products' list")
        << c << 0 << "commodity"
        << "Flour"
        << "Please provide a valid commodity." << 0;
}

void TstProductionLines::saveChecks() {
    QFETCH(QString, grid);
    QFETCH(int, row);
    QFETCH(QString, field);
    QFETCH(QString, value);
    QFETCH(QString, words);
    QFETCH(int, focusColumn);
    ProductionDay d = validDay();
    ProductionLine& l = (grid == kConsumptionGrid ? d.consumption : d.production)[size_t(row)];
    if (field == QLatin1String("commodity"))
        l.commodity = value;
    else if (field == QLatin1String("class"))
        l.bagsClass = value;
    else if (field == QLatin1String("type"))
        l.bagsType = value;
    else
        l.weight = Figure::fromText(value);
    const auto o = ValidateProduction(d, sampleLists());
    if (words.isEmpty()) {
        QVERIFY(!o);
        return;
    }
    QVERIFY(o);
    QCOMPARE(o->text, words);
    QCOMPARE(o->icon, Objection::Icon::Information);
    QCOMPARE(o->focus, grid);
    QCOMPARE(o->row, row);
    QCOMPARE(o->column, focusColumn);
}

void TstProductionLines::typedNames() {
    const ProductionLists lists = sampleLists();
    QVERIFY(!checkConsumptionName(PrdCommodity, "Wheat Local", lists));
    QCOMPARE(checkConsumptionName(PrdCommodity, "", lists)->text,
             QStringLiteral("Please provide a valid commodity."));
    QCOMPARE(checkConsumptionName(PrdBagType, "PP 100 Kg", lists)->text,
             QStringLiteral("Please provide a valid bag type."));
    QCOMPARE(checkConsumptionName(PrdBagClass, "Torn", lists)->text,
             QStringLiteral("Please provide a valid bag class."));
    QVERIFY(!checkConsumptionName(PrdNoOfBags, "abc", lists));

    // Without lines on both sides, or without a process, nothing else is looked at.
    ProductionDay d = validDay();
    d.production.clear();
    QCOMPARE(ValidateProduction(d, lists)->text, kLinesMissing);
    QCOMPARE(ValidateProduction(d, lists)->icon, Objection::Icon::Warning);
    d = validDay();
    d.processId = 0;
    QCOMPARE(ValidateProduction(d, lists)->focus, QStringLiteral("CboProcesses"));
}

void TstProductionLines::hourlyLines() {
    // Columns are found by their caption in any case.
    QCOMPARE(hourlyColumnNamed("No Of Bags"), int(HrNoOfBags));
    QCOMPARE(hourlyColumnNamed("net weight"), int(HrNetWeight));
    QCOMPARE(hourlyColumnNamed("Weight"), -1);

    const HourlyLists lists{{"Flour", "Bran"}, {"PP 50 Kg"}, {"New"}};
    QVERIFY(!checkHourlyCell(HrCommodity, QString(), lists));
    QCOMPARE(checkHourlyCell(HrCommodity, "Wheat", lists)->text,
             QStringLiteral("Please provide a valid commodity and try again"));
    QCOMPARE(checkHourlyCell(HrBagType, "Sack", lists)->text,
             QStringLiteral("Please provide a valid bag type and try again"));
    QCOMPARE(checkHourlyCell(HrBagClass, "Torn", lists)->text,
             QStringLiteral("Please provide a valid bag class and try again"));
    QVERIFY(!checkHourlyCell(HrNoOfBags, "x", lists));

    HourlyLine good;
    good.commodity = "Flour";
    good.bagsType = "PP 50 Kg";
    good.bagsClass = "New";
    good.noOfBags = 20;
    good.bagWeight = 50;
    QCOMPARE(lineWeight(good), 1000.0);
    const HourlyLine empty;
    QVERIFY(empty.isEmpty());

    // Nothing but empty lines is an empty grid.
    QCOMPARE(ValidateHourly({}, lists)->text, kGridEmpty);
    QCOMPARE(ValidateHourly({empty, empty}, lists)->icon, Objection::Icon::Warning);
    // An empty line is skipped; a line with names missing is refused where they are missing.
    QVERIFY(!ValidateHourly({empty, good}, lists));
    QCOMPARE(linesToKeep({empty, good, empty}).size(), size_t(1));
    HourlyLine noClass = good;
    noClass.bagsClass.clear();
    const auto o = ValidateHourly({good, empty, noClass}, lists);
    QVERIFY(o);
    QCOMPARE(o->text, QStringLiteral("Please provide a valid bag class and try again"));
    QCOMPARE(o->focus, kHourlyGrid);
    QCOMPARE(o->row, 2);
    QCOMPARE(o->column, int(HrBagClass));
    HourlyLine bagsOnly;
    bagsOnly.noOfBags = 5;
    QCOMPARE(ValidateHourly({bagsOnly}, lists)->column, int(HrCommodity));
}

QTEST_GUILESS_MAIN(TstProductionLines)
#include "tst_production_lines.moc"
