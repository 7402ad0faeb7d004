#include "production/ProductionStore.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "production/ProductionValidation.h"
#include "services/Lookups.h"
#include "services/ReferentialGuard.h"

#include <map>
#include <utility>

namespace gm {

QString stockAlert(const QString& bagType, const QString& bagClass) {
    const QString crlf = QStringLiteral("\r\n");
    return QStringLiteral("Sufficient Bags Stock not available for the followings:") + crlf +
           QStringLiteral(" Type  : ") + bagType + crlf + QStringLiteral(" Class  : ") + bagClass +
           crlf + crlf + QStringLiteral("Please check the stock and try again.");
}

namespace {

QVariant nullDouble() {
    return QVariant(QMetaType(QMetaType::Double));
}

// The components of a process that it takes in (IsForInput) or gives out (IsForOutPut).
LookupList components(const Conn& conn, qint64 processId, const char* flag) {
    return loadList(conn,
                    QStringLiteral("SELECT FunGetCommodity(c.CommodityId) AS Name, "
                                   "c.CommodityId AS ID FROM ProcessComponents pc "
                                   "INNER JOIN Commodities c ON pc.CommodityId = c.CommodityId "
                                   "WHERE pc.ProcessId = ? AND pc.%1 = 1 "
                                   "GROUP BY c.CommodityName, c.CommodityId "
                                   "ORDER BY c.CommodityName, c.CommodityId")
                        .arg(QLatin1String(flag)),
                    {processId});
}

// Lines as linesSql() reads them; `flag` receives the extra column of the first line, when
// asked for.
std::vector<ProductionLine> readLines(Query& q, bool* flag = nullptr) {
    std::vector<ProductionLine> lines;
    while (q.next()) {
        if (flag && lines.empty())
            *flag = toInt(q.value(9)) != 0;
        ProductionLine l;
        l.commodity = toText(q.value(0));
        l.bagsType = toText(q.value(1));
        l.bagsClass = toText(q.value(2));
        l.noOfBags = toDouble(q.value(3));
        l.bagWeight = toDouble(q.value(4));
        l.weight = double(l.noOfBags) * double(l.bagWeight);
        l.cost = toDouble(q.value(5));
        l.commodityId = toInt(q.value(6));
        l.bagsTypeId = toInt(q.value(7));
        l.bagsClassId = toInt(q.value(8));
        lines.push_back(l);
    }
    return lines;
}

QString linesSql(const char* table, const char* order, const char* extra) {
    return QStringLiteral("SELECT FunGetCommodity(x.CommodityId), bt.BagsType, bc.BagsClass, "
                          "x.NoOfBags, x.BagWeight, x.Cost, x.CommodityId, x.BagsTypeId, "
                          "x.BagsClassId%3 FROM %1 x "
                          "INNER JOIN BagsClasses bc ON x.BagsClassId = bc.BagsClassId "
                          "INNER JOIN BagsTypes bt ON x.BagsTypeId = bt.BagsTypeId "
                          "WHERE x.ProcessId = ? AND x.ProductionDate = ? ORDER BY x.%2")
        .arg(QLatin1String(table), QLatin1String(order), QLatin1String(extra));
}

// A line without one of its keys would be kept under key 0; the screen's checks stop that
// first, this stops any other writer.
void refuseMissingKeys(const std::vector<ProductionLine>& lines, const QString& grid) {
    for (int row = 0; row < int(lines.size()); ++row) {
        const ProductionLine& l = lines[size_t(row)];
        if (l.commodityId == 0)
            throw Objected(productionCellRefusal(grid, row, PrdCommodity));
        if (l.bagsTypeId == 0)
            throw Objected(productionCellRefusal(grid, row, PrdBagType));
        if (l.bagsClassId == 0)
            throw Objected(productionCellRefusal(grid, row, PrdBagClass));
    }
}

using BagKind = std::pair<qint64, qint64>; // type, class

} // namespace

LookupList ProductionStore::processes() const {
    return loadProcesses(m_conn);
}

LookupList ProductionStore::consumedCommodities(qint64 processId) const {
    return components(m_conn, processId, "IsForInput");
}

LookupList ProductionStore::producedCommodities(qint64 processId) const {
    return components(m_conn, processId, "IsForOutPut");
}

std::optional<DefaultBag> ProductionStore::defaultBag(qint64 commodityId) const {
    Query q(m_conn, QStringLiteral("SELECT bt.BagsType, bt.BagCapacity FROM Commodities c "
                                   "INNER JOIN BagsTypes bt ON c.DefaultBagsTypeID = bt.BagsTypeId "
                                   "WHERE c.CommodityId = ?"));
    q.bind(commodityId).exec();
    if (!q.next())
        return std::nullopt;
    return DefaultBag{toText(q.value(0)), toDouble(q.value(1))};
}

bool ProductionStore::hasStock(qint64 commodityId) const {
    return toInt(scalar(m_conn,
                        QStringLiteral("SELECT COUNT(*) FROM CurrentStock WHERE CommodityId = ?"),
                        {commodityId})) > 0;
}

double ProductionStore::currentCost(qint64 commodityId) const {
    return toDouble(scalar(
        m_conn, QStringLiteral("SELECT COALESCE(Cost, 0) FROM CurrentStock WHERE CommodityId = ?"),
        {commodityId}));
}

std::optional<StockShown> ProductionStore::currentStock(qint64 commodityId, double addBack) const {
    // Times 1.0 so that SQLite does not divide whole numbers as whole numbers.
    Query q(m_conn, QStringLiteral("SELECT (cs.TotalWeight + ?) * 1.0 / NULLIF(u.WeightInKgs, 0), "
                                   "u.UnitName FROM Units u "
                                   "INNER JOIN Commodities c ON u.UnitId = c.StockUnitId "
                                   "INNER JOIN CurrentStock cs ON c.CommodityId = cs.CommodityId "
                                   "WHERE c.CommodityId = ?"));
    q.bind({addBack, commodityId}).exec();
    if (!q.next())
        return std::nullopt;
    return StockShown{toDouble(q.value(0)), toText(q.value(1))};
}

bool ProductionStore::dayExists(const QDate& date, qint64 processId) const {
    return toInt(scalar(m_conn,
                        QStringLiteral("SELECT COUNT(*) FROM DailyProduction "
                                       "WHERE ProductionDate = ? AND ProcessId = ?"),
                        {date, processId})) == 1;
}

std::optional<ProductionDay> ProductionStore::load(const QDate& date, qint64 processId) const {
    Query head(m_conn, QStringLiteral("SELECT FactoryTime, Remarks, OtherExpenses, "
                                      "ProductionCharges FROM DailyProduction "
                                      "WHERE ProcessId = ? AND ProductionDate = ?"));
    head.bind({processId, date}).exec();
    if (!head.next())
        return std::nullopt;
    ProductionDay day;
    day.productionDate = date;
    day.processId = processId;
    if (!head.value(0).isNull())
        day.factoryTime = toDouble(head.value(0));
    day.remarks = toText(head.value(1));
    day.otherExpense = toDouble(head.value(2));
    day.productionExpense = toDouble(head.value(3));

    Query consumed(m_conn, linesSql("Consumption", "ConsumptionId", ", COALESCE(x.AddBardana, 0)"));
    consumed.bind({processId, date}).exec();
    // The day's flag as its first consumption line carries it.
    day.consumption = readLines(consumed, &day.addBardana);

    Query produced(m_conn, linesSql("Production", "ProductionLineId", ""));
    produced.bind({processId, date}).exec();
    day.production = readLines(produced);
    day.ratio = ratioOf(day);
    return day;
}

void ProductionStore::save(const ProductionDay& day) {
    if (dayExists(day.productionDate, day.processId))
        throw Objected(
            Objection::warning(kOnceADay).titled(kOnceADayTitle, Objection::Icon::Warning));
    const std::optional<Currency> unitCost = productUnitCost(day);
    if (!unitCost)
        throw Objected(
            Objection::warning(kNothingConsumed).inGrid(kConsumptionGrid, 0, PrdNoOfBags));
    if (day.processId == 0)
        throw Objected(Objection::info(kInvalidProcess, QStringLiteral("CboProcesses")));
    refuseMissingKeys(day.consumption, kConsumptionGrid);
    refuseMissingKeys(day.production, kProductionGrid);

    Transaction tx(m_conn, Transaction::Write);
    const QVariant date = day.productionDate;
    const double factoryTime = day.factoryTime;
    // The day's key is the table's: of two clerks saving the same day at once, the second
    // waits for the first and then finds the day taken.
    Query head(m_conn, QStringLiteral("INSERT INTO DailyProduction (ProductionDate, ProcessId, "
                                      "FactoryTime, Remarks, ProductionCharges, OtherExpenses, "
                                      "IsPosted, AddBardana) VALUES (?, ?, ?, ?, ?, ?, 0, ?) "
                                      "ON CONFLICT DO NOTHING"));
    head.bind({date, day.processId, factoryTime == 0 ? nullDouble() : QVariant(factoryTime),
               day.remarks.isNull() ? QStringLiteral("") : day.remarks,
               double(day.productionExpense), double(day.otherExpense), day.addBardana ? 1 : 0})
        .exec();
    if (head.numRowsAffected() != 1)
        throw Objected(
            Objection::warning(kOnceADay).titled(kOnceADayTitle, Objection::Icon::Warning));

    for (const ProductionLine& l : day.consumption)
        Query(m_conn, QStringLiteral("INSERT INTO Consumption (ProductionDate, ProcessId, "
                                     "CommodityId, BagsTypeId, BagsClassId, NoOfBags, BagWeight, "
                                     "Cost, AddBardana) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"))
            .bind({date, day.processId, l.commodityId, l.bagsTypeId, l.bagsClassId,
                   double(l.noOfBags), double(l.bagWeight), double(l.cost), day.addBardana ? 1 : 0})
            .exec();

    if (!day.addBardana) {
        // The bags the products are packed in come out of the mill's stock. Each kind is held
        // from its test to the end, so two clerks cannot both spend the same bags; a kind the
        // stock has never held is not tested.
        std::map<BagKind, Currency> held;
        std::map<BagKind, Currency> needed;
        for (const ProductionLine& l : day.production)
            needed[{l.bagsTypeId, l.bagsClassId}] = Currency();
        const QString read = QStringLiteral("SELECT NoOfBags FROM BagsCurrentStock "
                                            "WHERE BagsTypeId = ? AND BagsClassId = ?") +
                             (m_conn.isPostgres() ? QStringLiteral(" FOR UPDATE") : QString());
        for (const auto& [kind, none] : needed) {
            Query q(m_conn, read);
            q.bind({kind.first, kind.second}).exec();
            if (q.next())
                held[kind] = Currency::fromDouble(toDouble(q.value(0)));
        }
        const ProductionLine* lastConsumed = &day.consumption.back();
        for (int row = 0; row < int(day.production.size()); ++row) {
            const ProductionLine& l = day.production[size_t(row)];
            const BagKind kind{l.bagsTypeId, l.bagsClassId};
            Currency& need = needed[kind];
            need += Currency::fromDouble(l.noOfBags);
            const auto stock = held.find(kind);
            if (stock != held.end() && stock->second.raw() < need.raw())
                throw Objected(
                    Objection::warning(stockAlert(lastConsumed->bagsType, lastConsumed->bagsClass))
                        .titled(kStockAlertTitle, Objection::Icon::Warning)
                        .inGrid(kProductionGrid, row, PrdNoOfBags));
        }
    }

    for (const ProductionLine& l : day.production)
        Query(m_conn, QStringLiteral("INSERT INTO Production (ProductionDate, ProcessId, "
                                     "CommodityId, BagsTypeId, BagsClassId, NoOfBags, BagWeight, "
                                     "Cost) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"))
            .bind({date, day.processId, l.commodityId, l.bagsTypeId, l.bagsClassId,
                   double(l.noOfBags), double(l.bagWeight), unitCost->toDouble()})
            .exec();
    tx.commit();
}

void ProductionStore::remove(const QDate& date, qint64 processId) {
    Transaction tx(m_conn, Transaction::Write);
    if (m_conn.isPostgres())
        execute(m_conn,
                QStringLiteral("SELECT 1 FROM DailyProduction WHERE ProductionDate = ? "
                               "AND ProcessId = ? FOR UPDATE"),
                {date, processId});
    refuseIfReferenced(
        m_conn, QStringLiteral("DailyProduction"),
        {{QStringLiteral("ProductionDate"), date}, {QStringLiteral("ProcessId"), processId}},
        {QStringLiteral("Consumption"), QStringLiteral("Production")});
    // The products first, while the day still tells whether their bags came from the stock.
    const QString where = QStringLiteral(" WHERE ProductionDate = ? AND ProcessId = ?");
    execute(m_conn, QStringLiteral("DELETE FROM Production") + where, {date, processId});
    execute(m_conn, QStringLiteral("DELETE FROM Consumption") + where, {date, processId});
    execute(m_conn, QStringLiteral("DELETE FROM DailyProduction") + where, {date, processId});
    tx.commit();
}

} // namespace gm
