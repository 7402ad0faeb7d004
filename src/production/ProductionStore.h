#pragma once

#include "production/ProductionLines.h"
#include "services/LookupItem.h"

#include <QDate>
#include <QString>

#include <optional>

namespace gm {

class Conn;

inline const QString kOnceADay = QStringLiteral(
    "Production has been already saved today. you cannot save/change production in the same day.");
inline const QString kOnceADayTitle = QStringLiteral("Alert!");
inline const QString kNothingConsumed =
    QStringLiteral("The consumption weighs nothing, so the products cannot be costed. Please "
                   "enter the bags and weights consumed.");
inline const QString kStockAlertTitle = QStringLiteral("Stock Alert!");
// The bags named are those of the consumption side, whatever the production line short of
// bags holds: that is how the alert has always read.
QString stockAlert(const QString& bagType, const QString& bagClass);

// The stock of a commodity as the production screen shows it, in the commodity's stock unit.
struct StockShown {
    double netWeight = 0;
    QString unitName;
};

struct DefaultBag {
    QString bagsType;
    double bagCapacity = 0;
};

// Everything the daily production screen reads from and writes to the database. Refusals
// come as Objected, after the transaction has rolled back.
//
// A day's stock moves only through the database's triggers on the lines written here: the
// consumption leaves the commodity's stock, the products come into theirs, and their bags
// leave the bag stock unless the day adds its own bags. No average cost moves.
class ProductionStore {
public:
    explicit ProductionStore(const Conn& conn) : m_conn(conn) {}

    LookupList processes() const;
    // The commodities a process takes in and gives out, by name.
    LookupList consumedCommodities(qint64 processId) const;
    LookupList producedCommodities(qint64 processId) const;
    std::optional<DefaultBag> defaultBag(qint64 commodityId) const;

    // Whether the commodity has a stock row at all.
    bool hasStock(qint64 commodityId) const;
    // The commodity's average cost, 0 when it has none.
    double currentCost(qint64 commodityId) const;
    // Its stock in its stock unit, with `addBack` kilograms added (a saved day's own
    // consumption, already gone from the stock); nothing without a stock row.
    std::optional<StockShown> currentStock(qint64 commodityId, double addBack = 0) const;

    bool dayExists(const QDate& date, qint64 processId) const;
    // The saved day, its lines in the order they were entered; weights worked out again.
    std::optional<ProductionDay> load(const QDate& date, qint64 processId) const;

    // One transaction, or part of one the caller holds. A day is written once: refused when
    // it was saved before, also by another clerk at the same moment; refused when its
    // consumption weighs nothing; refused, with nothing written, when the bag stock held
    // before the day cannot pay for the bags of its products (unless the day adds its own
    // bags). The bag stock rows tested are held until the end. The consumption keeps its
    // costs; every product is saved at productUnitCost().
    void save(const ProductionDay& day);
    // One transaction; refused when anything besides its lines points at the day.
    void remove(const QDate& date, qint64 processId);

private:
    const Conn& m_conn;
};

} // namespace gm
