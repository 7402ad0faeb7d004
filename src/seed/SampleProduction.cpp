#include "seed/SampleProduction.h"

#include "datastore/Sql.h"
#include "production/HourlyStore.h"
#include "production/ProductionStore.h"

#include <QDate>

namespace gm {

namespace {

constexpr int kMilling = 1, kFineMilling = 2;
constexpr int kWheatLocal = 1, kFlour = 4, kFineFlour = 5, kSuji = 6, kBran = 7;
constexpr int kPP100 = 1, kJute100 = 2, kPP50 = 3;
constexpr int kNew = 1, kUsed = 2;

QString nameOf(const Conn& conn, const char* sql, int key) {
    return toText(scalar(conn, QString::fromLatin1(sql), {key}));
}

} // namespace

ProductionLine productionLine(const Conn& conn, int commodity, int bagsType, int bagsClass,
                              double bags, double bagWeight, double cost) {
    ProductionLine l;
    l.commodityId = commodity;
    l.bagsTypeId = bagsType;
    l.bagsClassId = bagsClass;
    l.commodity =
        nameOf(conn, "SELECT CommodityName FROM Commodities WHERE CommodityId = ?", commodity);
    l.bagsType = nameOf(conn, "SELECT BagsType FROM BagsTypes WHERE BagsTypeId = ?", bagsType);
    l.bagsClass =
        nameOf(conn, "SELECT BagsClass FROM BagsClasses WHERE BagsClassId = ?", bagsClass);
    l.noOfBags = bags;
    l.bagWeight = bagWeight;
    l.weight = bags * bagWeight;
    l.cost = cost;
    return l;
}

void loadSampleProduction(const Conn& conn) {
    ProductionStore store(conn);
    const QDate today = QDate::currentDate();

    ProductionDay milling;
    milling.productionDate = today.addDays(-2);
    milling.processId = kMilling;
    milling.factoryTime = 22.0;
    milling.productionExpense = 25000.0;
    milling.otherExpense = 5000.0;
    milling.consumption = {productionLine(conn, kWheatLocal, kJute100, kNew, 100, 100,
                                          store.currentCost(kWheatLocal))};
    milling.production = {productionLine(conn, kFlour, kPP100, kNew, 70, 100),
                          productionLine(conn, kBran, kPP100, kNew, 28, 100)};
    milling.ratio = ratioOf(milling);
    store.save(milling);

    ProductionDay fine;
    fine.productionDate = today.addDays(-1);
    fine.processId = kFineMilling;
    fine.factoryTime = 18.5;
    fine.remarks = QStringLiteral("Bags bought at the market for the fine flour");
    fine.productionExpense = 14000.0;
    fine.otherExpense = 2500.0;
    fine.addBardana = true;
    fine.consumption = {productionLine(conn, kWheatLocal, kJute100, kUsed, 50, 100,
                                       store.currentCost(kWheatLocal))};
    fine.production = {productionLine(conn, kFineFlour, kPP50, kNew, 60, 50),
                       productionLine(conn, kSuji, kPP50, kNew, 20, 50),
                       productionLine(conn, kBran, kPP100, kNew, 9, 100)};
    fine.ratio = ratioOf(fine);
    store.save(fine);
}

void loadSampleHourlyProduction(const Conn& conn) {
    HourlyStore store(conn);
    const QDate yesterday = QDate::currentDate().addDays(-1);
    const auto hourLine = [](int commodity, int bagsType, double bags, double bagWeight) {
        HourlyLine l;
        l.commodityId = commodity;
        l.bagsTypeId = bagsType;
        l.bagsClassId = kNew;
        l.noOfBags = bags;
        l.bagWeight = bagWeight;
        return l;
    };
    const double flourBags[] = {22, 25, 19};
    for (int i = 0; i < 3; ++i) {
        HourlyEntry entry;
        entry.serialNo = store.nextSerialNo();
        entry.processTime = QDateTime(yesterday, QTime(8 + i, 0));
        entry.lines = {hourLine(kFineFlour, kPP50, flourBags[i], 50),
                       hourLine(kBran, kPP100, 3 + i, 100)};
        store.save(entry, true);
    }
}

} // namespace gm
