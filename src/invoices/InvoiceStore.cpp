#include "invoices/InvoiceStore.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "invoices/InvoiceValidation.h"
#include "services/Lookups.h"
#include "services/Numeric.h"
#include "services/ReferentialGuard.h"

#include <QDateTime>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <tuple>

namespace gm {

namespace {

QVariant nullKey(qint64 key) {
    return key != 0 ? QVariant(key) : QVariant(QMetaType(QMetaType::LongLong));
}

QVariant flag(bool on) {
    return QVariant(on ? 1 : 0);
}

// Lines stand in arrival and vehicle order on either engine, whatever the server's collation.
bool arrivalOrder(const InvoiceLine& a, const InvoiceLine& b) {
    return std::tie(a.arrivalId, a.vehicleNo) < std::tie(b.arrivalId, b.vehicleNo);
}

void number(std::vector<InvoiceLine>& lines) {
    std::stable_sort(lines.begin(), lines.end(), arrivalOrder);
    for (size_t i = 0; i < lines.size(); ++i)
        lines[i].serialNo = int(i) + 1;
}

// The vehicles not yet invoiced, under a condition on the arrival head. A vehicle is
// invoiced when an invoice line names that very vehicle of that very arrival.
QString openVehiclesSql(const QString& condition, bool netToTwoDecimals) {
    const QString net = QStringLiteral(
        "ab.NoOfBags * ab.BagWeight - ab.NoOfBags * ab.BagsDeduction - ab.OtherDeduction");
    return QStringLiteral(
               "SELECT a.ArrivalId, a.ArrivalDate, FunGetCommodity(a.CommodityId), ab.VehicleNo, "
               "bt.BagsType, ab.NoOfBags, ab.BagWeight, %1, u.UnitName, u.WeightInKgs, u.UnitId, "
               "a.CommodityId, ab.BagsTypeId, ab.BagsClassId "
               "FROM Arrivals a INNER JOIN ArrivalsBody ab ON a.ArrivalId = ab.ArrivalId "
               "INNER JOIN BagsTypes bt ON ab.BagsTypeId = bt.BagsTypeId "
               "INNER JOIN Commodities co ON a.CommodityId = co.CommodityId "
               "INNER JOIN Units u ON co.RateUnitId = u.UnitId "
               "WHERE %2 AND NOT EXISTS (SELECT 1 FROM PurchaseBody pb "
               "WHERE pb.ArrivalId = ab.ArrivalId AND pb.VehicleNo = ab.VehicleNo) "
               "ORDER BY a.ArrivalId, ab.VehicleNo")
        .arg(netToTwoDecimals ? QStringLiteral("ROUND(%1, 2)").arg(net) : net, condition);
}

std::vector<InvoiceLine> readOpenVehicles(Query& q) {
    std::vector<InvoiceLine> lines;
    while (q.next()) {
        InvoiceLine l;
        l.arrivalId = toInt(q.value(0));
        l.arrivalDate = toDate(q.value(1));
        l.commodity = toText(q.value(2));
        l.vehicleNo = toText(q.value(3));
        l.bagsType = toText(q.value(4));
        l.bags = toDouble(q.value(5));
        l.bagWeight = toDouble(q.value(6));
        l.netWeight = toDouble(q.value(7));
        l.unit = unitDisplayName(q.value(8), q.value(9));
        l.weightInKgs = toDouble(q.value(9));
        l.rateUnitId = toInt(q.value(10));
        l.commodityId = toInt(q.value(11));
        l.bagsTypeId = toInt(q.value(12));
        l.bagsClassId = toInt(q.value(13));
        l.rate = 0.0;
        l.bagRate = 0.0;
        lines.push_back(l);
    }
    number(lines);
    return lines;
}

// ---- Costing ----------------------------------------------------------------------------------

// One line's lot of wheat and of bags, as it is folded into or taken out of the averages.
struct Lot {
    int row = -1; // the grid line, for the refusals of a save
    qint64 arrivalId = 0;
    QString vehicleNo;
    qint64 commodityId = 0;
    double weight = 0;
    double cost = 0; // per kilogram
    qint64 bagsTypeId = 0;
    qint64 bagsClassId = 0;
    double bags = 0;
    double bagCost = 0; // per bag
};

// The unit cost as the line keeps it. Ten decimals is what the cost columns hold: a lot is
// taken out with exactly the cost it went in with.
double lotCostOf(const InvoiceLine& l) {
    return roundHalfEven(invoiceLineCost(l), 10);
}

// A stock row of wheat or of bags.
struct StockKey {
    bool bags = false;
    qint64 commodityId = 0;
    qint64 bagsTypeId = 0;
    qint64 bagsClassId = 0;
    bool isBags() const { return bags; }
    friend bool operator<(const StockKey& a, const StockKey& b) {
        return std::tie(a.bags, a.commodityId, a.bagsTypeId, a.bagsClassId) <
               std::tie(b.bags, b.commodityId, b.bagsTypeId, b.bagsClassId);
    }
};

StockKey wheatOf(const Lot& lot) {
    return {false, lot.commodityId, 0, 0};
}
StockKey bagsOf(const Lot& lot) {
    return {true, 0, lot.bagsTypeId, lot.bagsClassId};
}

enum class Movement { Save, Reversal };

class CostMover {
public:
    CostMover(const Conn& conn, qint64 purchaseId, qint16 user, QString action)
        : m_conn(conn), m_purchaseId(purchaseId), m_user(user), m_action(std::move(action)) {}

    // Every stock row the lots touch, locked in key order before any is read, so that two
    // clerks costing the same rows queue instead of deadlocking. On SQLite the save's write
    // transaction already holds every other writer off.
    void lock(Transaction& tx, const std::vector<Lot>& a, const std::vector<Lot>& b) {
        QVariantList commodities;
        std::vector<StockKey> bags;
        for (const auto* lots : {&a, &b})
            for (const Lot& lot : *lots) {
                commodities << lot.commodityId;
                bags.push_back(bagsOf(lot));
            }
        tx.lockRows(QStringLiteral("CurrentStock"), QStringLiteral("CommodityId"), commodities);
        if (!m_conn.isPostgres())
            return;
        std::sort(bags.begin(), bags.end());
        bags.erase(
            std::unique(bags.begin(), bags.end(),
                        [](const StockKey& x, const StockKey& y) { return !(x < y) && !(y < x); }),
            bags.end());
        for (const StockKey& k : bags)
            Query(m_conn, QStringLiteral("SELECT 1 FROM BagsCurrentStock WHERE BagsTypeId = ? "
                                         "AND BagsClassId = ? FOR UPDATE"))
                .bind({k.bagsTypeId, k.bagsClassId})
                .exec();
    }

    // The lots folded in one after another, each averaged with the stock that was there
    // before it: the lots of this invoice still to come are not yet part of that stock,
    // although the arrivals already put them in the table. Costing the lines of one invoice
    // is then the same in any order as costing them one invoice each.
    void post(const std::vector<Lot>& lots) {
        read(lots);
        std::map<StockKey, double> toCome;
        for (const Lot& lot : lots) {
            toCome[wheatOf(lot)] += lot.weight;
            toCome[bagsOf(lot)] += lot.bags;
        }
        for (const Lot& lot : lots) {
            toCome[wheatOf(lot)] -= lot.weight;
            move(wheatOf(lot), lot, lot.weight, lot.cost, toCome[wheatOf(lot)], Movement::Save);
            toCome[bagsOf(lot)] -= lot.bags;
            move(bagsOf(lot), lot, lot.bags, lot.bagCost, toCome[bagsOf(lot)], Movement::Save);
        }
        write();
    }

    // The exact inverse of post(): the lots taken out last first, each from the stock that
    // still holds it and the lots taken out before it no longer.
    void reverse(const std::vector<Lot>& lots) {
        read(lots);
        std::map<StockKey, double> gone;
        for (auto it = lots.rbegin(); it != lots.rend(); ++it) {
            const Lot& lot = *it;
            move(wheatOf(lot), lot, lot.weight, lot.cost, gone[wheatOf(lot)], Movement::Reversal);
            gone[wheatOf(lot)] += lot.weight;
            move(bagsOf(lot), lot, lot.bags, lot.bagCost, gone[bagsOf(lot)], Movement::Reversal);
            gone[bagsOf(lot)] += lot.bags;
        }
        write();
    }

private:
    // A stock row as read before the lots move it; `cost` follows it from lot to lot.
    struct Row {
        double quantity = 0;
        double cost = 0;
        bool moved = false;
    };
    // One move of one row's cost, as the ledger keeps it.
    struct Move {
        StockKey key;
        const Lot* lot = nullptr;
        double quantity = 0;
        double unitCost = 0;
        double stock = 0;
        double before = 0;
        double after = 0;
        bool save = true;
        QString note;
        QDateTime at;
    };

    // Each stock row the lots touch, read once. The rows are locked and nothing else writes
    // them until the transaction ends, so one read, the costs carried from lot to lot here and
    // one write per row leave what a read and a write per lot would: an invoice's save costs a
    // few statements, not three for every line and stock row, which on a server are as many
    // round trips. A row not found stays out and refuses the first lot that needs it.
    void read(const std::vector<Lot>& lots) {
        m_rows.clear();
        m_moves.clear();
        if (lots.empty())
            return;
        std::set<qint64> commodities;
        std::set<StockKey> bags;
        for (const Lot& lot : lots) {
            commodities.insert(lot.commodityId);
            bags.insert(bagsOf(lot));
        }
        QStringList marks;
        for (size_t i = 0; i < commodities.size(); ++i)
            marks << QStringLiteral("?");
        Query wheat(m_conn, QStringLiteral("SELECT CommodityId, TotalWeight, Cost FROM "
                                           "CurrentStock WHERE CommodityId IN (%1)")
                                .arg(marks.join(QStringLiteral(", "))));
        for (qint64 id : commodities)
            wheat.bind(id);
        wheat.exec();
        while (wheat.next())
            m_rows[StockKey{false, toInt(wheat.value(0)), 0, 0}] =
                Row{toDouble(wheat.value(1)), toDouble(wheat.value(2))};
        QStringList pairs;
        for (size_t i = 0; i < bags.size(); ++i)
            pairs << QStringLiteral("(BagsTypeId = ? AND BagsClassId = ?)");
        Query bag(m_conn, QStringLiteral("SELECT BagsTypeId, BagsClassId, NoOfBags, Cost FROM "
                                         "BagsCurrentStock WHERE %1")
                              .arg(pairs.join(QStringLiteral(" OR "))));
        for (const StockKey& k : bags)
            bag.bind({k.bagsTypeId, k.bagsClassId});
        bag.exec();
        while (bag.next())
            m_rows[StockKey{true, 0, toInt(bag.value(0)), toInt(bag.value(1))}] =
                Row{toDouble(bag.value(2)), toDouble(bag.value(3))};
    }

    // Moves one stock row's cost by one lot. `apart` is the quantity of the invoice's own
    // lots that the table holds but the formula must not count.
    void move(const StockKey& key, const Lot& lot, double quantity, double unitCost, double apart,
              Movement movement) {
        const auto found = m_rows.find(key);
        if (found == m_rows.end())
            throw Objected(missingStock(key));
        Row& row = found->second;
        Move m;
        m.key = key;
        m.lot = &lot;
        m.quantity = quantity;
        m.unitCost = unitCost;
        m.stock = roundHalfEven(row.quantity - apart, 4);
        m.before = row.cost;
        m.save = movement == Movement::Save;
        if (m.save) {
            m.after = costAfterReceipt(m.stock, m.before, quantity, unitCost);
        } else {
            const CostReversal r = costAfterReversal(m.stock, m.before, quantity, unitCost);
            m.after = r.cost;
            m.note = r.note;
        }
        m.at = QDateTime::currentDateTime();
        row.cost = kept(m.after);
        row.moved = true;
        m_moves.push_back(std::move(m));
    }

    // The cost as the row hands it back once written: the server keeps ten decimals, SQLite
    // the number itself. The next lot starts from that, as it would after a read.
    double kept(double cost) const {
        return m_conn.isPostgres() ? QString::number(cost, 'f', 10).toDouble() : cost;
    }

    // Each moved row's last cost, then the ledger rows in the order of the moves, several to
    // a statement.
    void write() {
        for (const auto& [key, row] : m_rows) {
            if (!row.moved)
                continue;
            Query update(m_conn, key.isBags()
                                     ? QStringLiteral("UPDATE BagsCurrentStock SET Cost = ? "
                                                      "WHERE BagsTypeId = ? AND BagsClassId = ?")
                                     : QStringLiteral("UPDATE CurrentStock SET Cost = ? "
                                                      "WHERE CommodityId = ?"));
            update.bind(row.cost);
            if (key.isBags())
                update.bind({key.bagsTypeId, key.bagsClassId});
            else
                update.bind(key.commodityId);
            update.exec();
            if (update.numRowsAffected() != 1)
                throw Objected(missingStock(key));
        }
        constexpr size_t kRowsPerInsert = 10;
        for (size_t from = 0; from < m_moves.size(); from += kRowsPerInsert) {
            const size_t to = std::min(m_moves.size(), from + kRowsPerInsert);
            QStringList rows;
            for (size_t i = from; i < to; ++i)
                rows << QStringLiteral("(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
            Query insert(m_conn, QStringLiteral("INSERT INTO StockCostLedger (DocumentKind, "
                                                "DocumentId, ArrivalId, VehicleNo, CommodityId, "
                                                "BagsTypeId, BagsClassId, LotQuantity, LotCost, "
                                                "StockQuantity, CostBefore, CostAfter, Movement, "
                                                "Note, EnteredAt, UserNo) VALUES %1")
                                     .arg(rows.join(QStringLiteral(", "))));
            for (size_t i = from; i < to; ++i) {
                const Move& m = m_moves[i];
                insert.bind({QStringLiteral("Purchase"), m_purchaseId, m.lot->arrivalId,
                             m.lot->vehicleNo, nullKey(m.key.commodityId),
                             nullKey(m.key.bagsTypeId), nullKey(m.key.bagsClassId), m.quantity,
                             m.unitCost, m.stock, m.before, m.after,
                             m.save ? QStringLiteral("Save") : QStringLiteral("Reversal"),
                             nullIfEmpty(m.note), m.at, m_user});
            }
            insert.exec();
        }
        m_moves.clear();
    }

    // The arrivals' triggers make every stock row a lot needs; one that is missing is damage
    // the clerk must hear of, never a cost silently not kept.
    Objection missingStock(const StockKey& key) const {
        auto named = [](const QVariant& name) {
            return name.isNull() ? QStringLiteral("(none)") : toText(name);
        };
        QString what;
        if (key.isBags()) {
            what = QStringLiteral("bags of type %1, class %2")
                       .arg(named(scalar(m_conn,
                                         QStringLiteral("SELECT BagsType FROM BagsTypes "
                                                        "WHERE BagsTypeId = ?"),
                                         {key.bagsTypeId})),
                            named(scalar(m_conn,
                                         QStringLiteral("SELECT BagsClass FROM BagsClasses "
                                                        "WHERE BagsClassId = ?"),
                                         {key.bagsClassId})));
        } else {
            what = named(scalar(
                m_conn,
                QStringLiteral("SELECT CommodityName FROM Commodities WHERE CommodityId = ?"),
                {key.commodityId}));
        }
        return Objection::warning(
            QStringLiteral("There is no stock of %1 whose average cost this invoice could move, "
                           "so nothing was %2.")
                .arg(what, m_action));
    }

    const Conn& m_conn;
    qint64 m_purchaseId;
    qint16 m_user;
    QString m_action;
    std::map<StockKey, Row> m_rows;
    std::vector<Move> m_moves;
};

// The lines an invoice holds, with their costs as saved and their bags as arrived.
std::vector<Lot> storedLots(const Conn& conn, qint64 purchaseId) {
    Query q(conn, QStringLiteral("SELECT pb.ArrivalId, pb.VehicleNo, pb.CommodityId, "
                                 "pb.TotalWeight, pb.Cost, ab.BagsTypeId, ab.BagsClassId, "
                                 "pb.NoOfBags, pb.BagsCost FROM PurchaseBody pb "
                                 "LEFT JOIN ArrivalsBody ab ON ab.ArrivalId = pb.ArrivalId "
                                 "AND ab.VehicleNo = pb.VehicleNo WHERE pb.PurchaseId = ?"));
    q.bind(purchaseId).exec();
    std::vector<Lot> lots;
    while (q.next()) {
        Lot lot;
        lot.arrivalId = toInt(q.value(0));
        lot.vehicleNo = toText(q.value(1));
        lot.commodityId = toInt(q.value(2));
        lot.weight = toDouble(q.value(3));
        lot.cost = toDouble(q.value(4));
        lot.bagsTypeId = toInt(q.value(5));
        lot.bagsClassId = toInt(q.value(6));
        lot.bags = toDouble(q.value(7));
        lot.bagCost = toDouble(q.value(8));
        lots.push_back(lot);
    }
    std::sort(lots.begin(), lots.end(), [](const Lot& a, const Lot& b) {
        return std::tie(a.arrivalId, a.vehicleNo) < std::tie(b.arrivalId, b.vehicleNo);
    });
    return lots;
}

const char* const kHeadColumns =
    "PurchaseDate, ContractId, SellerId, BrokerId, Brokerage, IsBrokeragePerBag, Unloading, "
    "Freight, Expenses, PreviousCredit, PaidAmount, SpecialDiscount, CommPerMound, CommValue, "
    "WHTaxRatio, WHTaxValue, IsPosted, UnloadingTotal, FreightTotal, ExpensesTotal, PurchaseId";

void bindHead(Query& q, const InvoiceDocument& d) {
    q.bind({d.purchaseDate, nullKey(d.contractId), d.sellerId, nullIfEmpty(d.brokerId),
            double(d.brokerageRate), flag(d.isBrokeragePerBag), double(d.unloading.perBag),
            double(d.freight.perBag), double(d.expense.perBag), d.previousCredit,
            double(d.paidAmount), double(d.specialDiscount), double(d.commPerMound), d.commValue,
            double(d.whTaxRatio), d.whTaxValue,
            // The invoice posts no quantity: the arrival did.
            flag(false), double(d.unloading.total), double(d.freight.total),
            double(d.expense.total), d.purchaseId});
}

} // namespace

int InvoiceStore::nextPurchaseId() const {
    return int(toInt(
        scalar(m_conn, QStringLiteral("SELECT COALESCE(MAX(PurchaseId), 0) + 1 FROM Purchases"))));
}

bool InvoiceStore::exists(qint64 purchaseId) const {
    return toInt(scalar(m_conn,
                        QStringLiteral("SELECT COUNT(*) FROM Purchases WHERE PurchaseId = ?"),
                        {purchaseId})) > 0;
}

LookupList InvoiceStore::contracts() const {
    // Every contract with an arrival, tens of thousands after some years, against a few
    // hundred sellers: each seller's "Name | City" is read once and set beside its contracts
    // here, instead of three joins for every contract. A seller without a city has no such
    // name, and its contracts are not offered.
    QHash<QString, QString> sellers;
    Query names(m_conn, QStringLiteral("SELECT p.PartyId, coa.AccountName || ' | ' || ci.CityName "
                                       "FROM Parties p INNER JOIN ChartOfAccounts coa "
                                       "ON coa.AccountNo = p.PartyId "
                                       "INNER JOIN Cities ci ON ci.CityId = p.CityId"));
    names.exec();
    while (names.next())
        sellers.insert(toText(names.value(0)), toText(names.value(1)));
    Query q(m_conn, QStringLiteral("SELECT pc.ContractId, pc.PartyId FROM PContracts pc "
                                   "WHERE EXISTS (SELECT 1 FROM Arrivals a "
                                   "WHERE a.ContractId = pc.ContractId) "
                                   "ORDER BY pc.ContractId DESC"));
    q.exec();
    LookupList list;
    while (q.next()) {
        const auto seller = sellers.constFind(toText(q.value(1)));
        if (seller != sellers.constEnd())
            list.push_back({toText(q.value(0)), *seller});
    }
    return list;
}

std::optional<ContractOffer> InvoiceStore::linesOfContract(qint64 contractId) const {
    if (contractId == 0)
        return std::nullopt;
    Query head(m_conn, QStringLiteral("SELECT PartyId, FunGetPartyName(PartyId), BrokerId, "
                                      "FunGetPartyName(BrokerId), Brokerage, IsBrokeragePerBag, "
                                      "RatePerUnit FROM PContracts WHERE ContractId = ?"));
    head.bind(contractId).exec();
    if (!head.next())
        return std::nullopt;
    ContractOffer offer;
    InvoiceContract& c = offer.contract;
    c.contractId = contractId;
    c.sellerId = toText(head.value(0));
    c.sellerName = toText(head.value(1));
    c.brokerId = toText(head.value(2));
    c.brokerName = c.brokerId.isEmpty() ? QString() : toText(head.value(3));
    c.brokerageRate = toDouble(head.value(4));
    c.isBrokeragePerBag = toInt(head.value(5)) != 0;
    const double rate = toDouble(head.value(6));

    Query q(m_conn, openVehiclesSql(QStringLiteral("a.ContractId = ?"), false));
    q.bind(contractId).exec();
    offer.lines = readOpenVehicles(q);
    if (offer.lines.empty())
        return std::nullopt;
    for (InvoiceLine& l : offer.lines) {
        l.rate = rate;
        applyRateRule(l);
    }
    return offer;
}

std::vector<InvoiceLine> InvoiceStore::linesOfSeller(const QString& sellerId) const {
    Query q(m_conn, openVehiclesSql(QStringLiteral("a.SellerId = ?"), true));
    q.bind(sellerId).exec();
    return readOpenVehicles(q);
}

double InvoiceStore::currentDebit(const QString& sellerId, const QDate& day) const {
    return toDouble(
        scalar(m_conn, QStringLiteral("SELECT FungrnCurrentDebit(?, ?)"), {sellerId, day}));
}

std::optional<InvoiceDocument> InvoiceStore::load(int purchaseId) const {
    Query head(m_conn, QStringLiteral(
                           "SELECT PurchaseDate, ContractId, SellerId, FunGetPartyName(SellerId), "
                           "BrokerId, FunGetPartyName(BrokerId), Brokerage, IsBrokeragePerBag, "
                           "Unloading, Freight, Expenses, CommPerMound, CommValue, WHTaxRatio, "
                           "WHTaxValue, PaidAmount, SpecialDiscount, PreviousCredit, "
                           "UnloadingTotal, FreightTotal, ExpensesTotal "
                           "FROM Purchases WHERE PurchaseId = ?"));
    head.bind(purchaseId).exec();
    if (!head.next())
        return std::nullopt;
    InvoiceDocument d;
    d.purchaseId = purchaseId;
    d.purchaseDate = toDate(head.value(0));
    d.contractId = toInt(head.value(1));
    d.sellerId = toText(head.value(2));
    d.sellerName = toText(head.value(3));
    d.brokerId = toText(head.value(4));
    d.brokerName = d.brokerId.isEmpty() ? QString() : toText(head.value(5));
    const double brokerage = toDouble(head.value(6));
    d.brokerageRate = brokerage != 0 ? Figure(brokerage) : Figure();
    d.isBrokeragePerBag = toInt(head.value(7)) != 0;
    d.unloading.perBag = toDouble(head.value(8));
    d.freight.perBag = toDouble(head.value(9));
    d.expense.perBag = toDouble(head.value(10));
    auto figureOrBlank = [](const QVariant& v) {
        return v.isNull() ? Figure() : Figure(toDouble(v));
    };
    d.commPerMound = figureOrBlank(head.value(11));
    d.commValue = toDouble(head.value(12));
    d.whTaxRatio = figureOrBlank(head.value(13));
    d.whTaxValue = toDouble(head.value(14));
    d.paidAmount = toDouble(head.value(15));
    d.specialDiscount = toDouble(head.value(16));
    d.previousCredit = toDouble(head.value(17));

    Query lines(m_conn,
                QStringLiteral("SELECT pb.ArrivalId, a.ArrivalDate, pb.VehicleNo, "
                               "FunGetCommodity(pb.CommodityId), bt.BagsType, pb.NoOfBags, "
                               "pb.TotalWeight, pb.RatePerUnit, pb.BagRate, pb.RateUnitId, "
                               "u.UnitName, u.WeightInKgs, pb.TTLValue, pb.CommodityId, "
                               "pb.BagWeight, ab.BagsTypeId, ab.BagsClassId "
                               "FROM PurchaseBody pb INNER JOIN ArrivalsBody ab "
                               "ON pb.ArrivalId = ab.ArrivalId AND pb.VehicleNo = ab.VehicleNo "
                               "INNER JOIN BagsTypes bt ON ab.BagsTypeId = bt.BagsTypeId "
                               "INNER JOIN Arrivals a ON ab.ArrivalId = a.ArrivalId "
                               "LEFT JOIN Units u ON pb.RateUnitId = u.UnitId "
                               "WHERE pb.PurchaseId = ? ORDER BY pb.ArrivalId, pb.VehicleNo"));
    lines.bind(purchaseId).exec();
    while (lines.next()) {
        InvoiceLine l;
        l.arrivalId = toInt(lines.value(0));
        l.arrivalDate = toDate(lines.value(1));
        l.vehicleNo = toText(lines.value(2));
        l.commodity = toText(lines.value(3));
        l.bagsType = toText(lines.value(4));
        l.bags = toDouble(lines.value(5));
        l.netWeight = toDouble(lines.value(6));
        l.rate = figureOrBlank(lines.value(7));
        l.bagRate = figureOrBlank(lines.value(8));
        l.rateUnitId = toInt(lines.value(9));
        l.unit = unitDisplayName(lines.value(10), lines.value(11));
        l.weightInKgs = toDouble(lines.value(11));
        // The value as saved, not worked out again: the invoice shows what it was saved with.
        l.value = toDouble(lines.value(12));
        l.commodityId = toInt(lines.value(13));
        l.bagWeight = toDouble(lines.value(14));
        l.bagsTypeId = toInt(lines.value(15));
        l.bagsClassId = toInt(lines.value(16));
        l.savingBags = l.bags;
        l.sWeight = l.netWeight;
        d.lines.push_back(l);
    }
    if (d.lines.empty())
        return std::nullopt;
    number(d.lines);

    // Totals saved before they were kept are derived from the per-bag figures.
    const double bags = invoiceFooters(d.lines).bags.toDouble();
    auto total = [&](const QVariant& stored, const Figure& perBag) {
        return stored.isNull() ? Figure(chargeTotalOf(perBag, bags)) : Figure(toDouble(stored));
    };
    d.unloading.total = total(head.value(18), d.unloading.perBag);
    d.freight.total = total(head.value(19), d.freight.perBag);
    d.expense.total = total(head.value(20), d.expense.perBag);
    return d;
}

std::optional<InvoicePrint> InvoiceStore::printData(int purchaseId) const {
    auto invoice = load(purchaseId);
    if (!invoice)
        return std::nullopt;
    Query q(m_conn, QStringLiteral("SELECT pb.ArrivalId, pb.VehicleNo, ab.BagWeight * ab.NoOfBags, "
                                   "ab.NoOfBags * ab.BagsDeduction, ab.OtherDeduction, "
                                   "ab.TareWeight FROM PurchaseBody pb INNER JOIN ArrivalsBody ab "
                                   "ON pb.ArrivalId = ab.ArrivalId AND pb.VehicleNo = ab.VehicleNo "
                                   "WHERE pb.PurchaseId = ?"));
    q.bind(purchaseId).exec();
    QHash<QString, InvoicePrintLine> weighed;
    auto keyOf = [](qint64 arrival, const QString& vehicle) {
        return QString::number(arrival) + QLatin1Char('\n') + vehicle;
    };
    while (q.next()) {
        InvoicePrintLine p;
        p.grossWeight = toDouble(q.value(2));
        p.bagsDeduction = toDouble(q.value(3));
        p.otherDeduction = toDouble(q.value(4));
        p.tareWeight = toDouble(q.value(5));
        weighed.insert(keyOf(toInt(q.value(0)), toText(q.value(1))), p);
    }
    InvoicePrint print;
    for (const InvoiceLine& l : invoice->lines) {
        InvoicePrintLine p = weighed.value(keyOf(l.arrivalId, l.vehicleNo));
        p.line = l;
        print.lines.push_back(p);
    }
    print.invoice = std::move(*invoice);
    return print;
}

void InvoiceStore::save(const InvoiceDocument& d, bool isNew) {
    if (auto refusal = checkPricedLines(d.lines))
        throw Objected(*refusal);
    std::vector<Lot> lots;
    std::vector<InvoiceLine> kept;
    for (int i = 0; i < int(d.lines.size()); ++i) {
        const InvoiceLine& l = d.lines[size_t(i)];
        if (!(l.rate > 0))
            continue;
        Lot lot;
        lot.row = i;
        lot.arrivalId = l.arrivalId;
        lot.vehicleNo = l.vehicleNo;
        lot.commodityId = l.commodityId;
        lot.weight = l.netWeight;
        lot.cost = lotCostOf(l);
        lot.bags = l.bags;
        lot.bagCost = l.bagRate;
        lots.push_back(lot);
        kept.push_back(l);
    }
    // A unit chosen by its shown name alone is kept by its key.
    std::optional<LookupList> units;
    for (InvoiceLine& l : kept)
        if (l.rateUnitId == 0 && !l.unit.isEmpty()) {
            if (!units)
                units = loadUnits(m_conn);
            l.rateUnitId = findKey(*units, l.unit).toLongLong();
        }

    Transaction tx(m_conn, Transaction::Write);
    if (!isNew)
        tx.lockRows(QStringLiteral("Purchases"), QStringLiteral("PurchaseId"), {d.purchaseId});
    // Held to the end, so that no other invoice takes these vehicles once they were found
    // free; an arrival save holds the same row while it checks that it is not invoiced.
    QVariantList arrivals;
    for (const Lot& lot : lots)
        arrivals << lot.arrivalId;
    tx.lockRows(QStringLiteral("Arrivals"), QStringLiteral("ArrivalId"), arrivals);

    // Every vehicle of the lots' arrivals as the arrival holds it now, beside the invoice that
    // took it, if another did: one statement for the whole invoice. The bags a vehicle brought
    // are what the bag stock's cost moves by.
    struct Arrived {
        qint64 commodityId = 0;
        qint64 bagsTypeId = 0;
        qint64 bagsClassId = 0;
        double bags = 0;
        QVariant takenBy;
    };
    QHash<QString, Arrived> arrived;
    auto vehicleKey = [](qint64 arrivalId, const QString& vehicleNo) {
        return QString::number(arrivalId) + QLatin1Char('\n') + vehicleNo;
    };
    if (!lots.empty()) {
        std::set<qint64> ids;
        for (const Lot& lot : lots)
            ids.insert(lot.arrivalId);
        QStringList marks;
        for (size_t i = 0; i < ids.size(); ++i)
            marks << QStringLiteral("?");
        Query q(m_conn, QStringLiteral("SELECT ab.ArrivalId, ab.VehicleNo, ab.CommodityId, "
                                       "ab.BagsTypeId, ab.BagsClassId, ab.NoOfBags, pb.PurchaseId "
                                       "FROM ArrivalsBody ab LEFT JOIN PurchaseBody pb "
                                       "ON pb.ArrivalId = ab.ArrivalId "
                                       "AND pb.VehicleNo = ab.VehicleNo AND pb.PurchaseId <> ? "
                                       "WHERE ab.ArrivalId IN (%1)")
                            .arg(marks.join(QStringLiteral(", "))));
        q.bind(d.purchaseId);
        for (qint64 id : ids)
            q.bind(id);
        q.exec();
        while (q.next())
            arrived.insert(vehicleKey(toInt(q.value(0)), toText(q.value(1))),
                           Arrived{toInt(q.value(2)), toInt(q.value(3)), toInt(q.value(4)),
                                   toDouble(q.value(5)),
                                   q.value(6).isNull() ? QVariant() : q.value(6)});
    }
    for (Lot& lot : lots) {
        const auto found = arrived.constFind(vehicleKey(lot.arrivalId, lot.vehicleNo));
        if (found != arrived.constEnd() && found->takenBy.isValid())
            throw Objected(vehicleTaken(lot.vehicleNo, lot.arrivalId, toInt(found->takenBy))
                               .inGrid(QStringLiteral("Grid"), lot.row, InvVehicleNo));
        if (found == arrived.constEnd() || found->commodityId != lot.commodityId ||
            std::fabs(found->bags - lot.bags) > 1e-6)
            throw Objected(
                Objection::warning(QStringLiteral("Vehicle %1 of arrival %2 was changed or removed "
                                                  "after it was loaded. Please load the vehicles "
                                                  "again.")
                                       .arg(lot.vehicleNo)
                                       .arg(lot.arrivalId))
                    .inGrid(QStringLiteral("Grid"), lot.row, InvVehicleNo));
        lot.bagsTypeId = found->bagsTypeId;
        lot.bagsClassId = found->bagsClassId;
    }

    // A number another clerk took since it was drawn is never written over.
    auto insertHead = [&] {
        Query insert(m_conn, QStringLiteral("INSERT INTO Purchases (%1) VALUES (?, ?, ?, ?, ?, "
                                            "?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) "
                                            "ON CONFLICT DO NOTHING")
                                 .arg(QLatin1String(kHeadColumns)));
        bindHead(insert, d);
        insert.exec();
        if (insert.numRowsAffected() != 1)
            throw Objected(
                Objection::warning(kPurchaseIdTaken).withNewDocumentId(nextPurchaseId()));
    };
    std::vector<Lot> old;
    if (isNew) {
        insertHead();
    } else {
        QString columns = QLatin1String(kHeadColumns);
        columns.replace(QStringLiteral(", PurchaseId"), QString());
        columns.replace(QStringLiteral(", "), QStringLiteral(" = ?, "));
        Query update(
            m_conn,
            QStringLiteral("UPDATE Purchases SET %1 = ? WHERE PurchaseId = ?").arg(columns));
        bindHead(update, d);
        update.exec();
        if (update.numRowsAffected() == 0)
            insertHead(); // removed meanwhile: saved afresh under its number
        else
            old = storedLots(m_conn, d.purchaseId);
    }

    CostMover costs(m_conn, d.purchaseId, m_user, QStringLiteral("saved"));
    costs.lock(tx, old, lots);
    costs.reverse(old);
    execute(m_conn, QStringLiteral("DELETE FROM PurchaseBody WHERE PurchaseId = ?"),
            {d.purchaseId});

    // The lines several to a statement. The vehicle's own key backs the check above, should
    // anything have slipped past it: a line it kept out is named by the first line of the
    // statement that is another invoice's, or this invoice's twice.
    constexpr size_t kLinesPerInsert = 10;
    QSet<QString> written;
    for (size_t from = 0; from < kept.size(); from += kLinesPerInsert) {
        const size_t to = std::min(kept.size(), from + kLinesPerInsert);
        QStringList rows;
        for (size_t i = from; i < to; ++i)
            rows << QStringLiteral("(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, 0)");
        Query insert(m_conn, QStringLiteral("INSERT INTO PurchaseBody (PurchaseId, ArrivalId, "
                                            "VehicleNo, CommodityId, BagWeight, NoOfBags, "
                                            "TotalWeight, RateUnitId, RatePerUnit, BagRate, "
                                            "TTLValue, Cost, BagsCost, IsWithBags, "
                                            "BagsPurchased) VALUES %1 ON CONFLICT DO NOTHING")
                                 .arg(rows.join(QStringLiteral(", "))));
        for (size_t i = from; i < to; ++i) {
            const InvoiceLine& l = kept[i];
            insert.bind({d.purchaseId, l.arrivalId, l.vehicleNo, l.commodityId, double(l.bagWeight),
                         double(l.bags), double(l.netWeight), nullKey(l.rateUnitId), double(l.rate),
                         double(l.bagRate), double(l.value), lots[i].cost, lots[i].bagCost});
        }
        insert.exec();
        const bool allIn = insert.numRowsAffected() == int(to - from);
        for (size_t i = from; i < to; ++i) {
            const InvoiceLine& l = kept[i];
            const QString key = vehicleKey(l.arrivalId, l.vehicleNo);
            const bool twice = written.contains(key);
            written.insert(key);
            if (allIn)
                continue;
            const qint64 owner =
                toInt(scalar(m_conn,
                             QStringLiteral("SELECT PurchaseId FROM PurchaseBody WHERE "
                                            "ArrivalId = ? AND VehicleNo = ?"),
                             {l.arrivalId, l.vehicleNo}));
            if (twice || owner != d.purchaseId)
                throw Objected(vehicleTaken(l.vehicleNo, l.arrivalId, owner)
                                   .inGrid(QStringLiteral("Grid"), lots[i].row, InvVehicleNo));
        }
        if (!allIn)
            throw DbError(QStringLiteral("An invoice line was not written."),
                          QStringLiteral("Purchase Invoice"));
    }
    costs.post(lots);
    tx.commit();
}

void InvoiceStore::remove(int purchaseId) {
    Transaction tx(m_conn, Transaction::Write);
    tx.lockRows(QStringLiteral("Purchases"), QStringLiteral("PurchaseId"), {purchaseId});
    const QString usedIn = FindReferencingTable(m_conn, QStringLiteral("Purchases"),
                                                {{QStringLiteral("PurchaseId"), purchaseId}},
                                                {QStringLiteral("PurchaseBody")});
    if (!usedIn.isEmpty())
        throw Objected(Objection::warning(purchaseInUse(usedIn)));
    execute(m_conn, QStringLiteral("UPDATE Purchases SET IsPosted = 0 WHERE PurchaseId = ?"),
            {purchaseId});
    const std::vector<Lot> lots = storedLots(m_conn, purchaseId);
    CostMover costs(m_conn, purchaseId, m_user, QStringLiteral("removed"));
    costs.lock(tx, lots, {});
    costs.reverse(lots);
    execute(m_conn, QStringLiteral("DELETE FROM PurchaseBody WHERE PurchaseId = ?"), {purchaseId});
    execute(m_conn, QStringLiteral("DELETE FROM Purchases WHERE PurchaseId = ?"), {purchaseId});
    tx.commit();
}

namespace {

std::vector<CostLedgerEntry> readLedger(Query& q) {
    std::vector<CostLedgerEntry> out;
    while (q.next()) {
        CostLedgerEntry e;
        e.entryId = toInt(q.value(0));
        e.documentKind = toText(q.value(1));
        e.documentId = toInt(q.value(2));
        e.arrivalId = toInt(q.value(3));
        e.vehicleNo = toText(q.value(4));
        e.commodityId = toInt(q.value(5));
        e.bagsTypeId = toInt(q.value(6));
        e.bagsClassId = toInt(q.value(7));
        e.lotQuantity = toDouble(q.value(8));
        e.lotCost = toDouble(q.value(9));
        e.stockQuantity = toDouble(q.value(10));
        e.costBefore = toDouble(q.value(11));
        e.costAfter = toDouble(q.value(12));
        e.movement = toText(q.value(13));
        e.note = toText(q.value(14));
        out.push_back(e);
    }
    return out;
}

const char* const kLedgerColumns =
    "SELECT EntryId, DocumentKind, DocumentId, ArrivalId, VehicleNo, CommodityId, BagsTypeId, "
    "BagsClassId, LotQuantity, LotCost, StockQuantity, CostBefore, CostAfter, Movement, Note "
    "FROM StockCostLedger ";

} // namespace

std::vector<CostLedgerEntry> InvoiceStore::costLedger(qint64 commodityId) const {
    Query q(m_conn, QLatin1String(kLedgerColumns) +
                        QStringLiteral("WHERE CommodityId = ? ORDER BY EntryId"));
    q.bind(commodityId).exec();
    return readLedger(q);
}

std::vector<CostLedgerEntry> InvoiceStore::bagCostLedger(qint64 bagsTypeId,
                                                         qint64 bagsClassId) const {
    Query q(m_conn,
            QLatin1String(kLedgerColumns) +
                QStringLiteral("WHERE BagsTypeId = ? AND BagsClassId = ? ORDER BY EntryId"));
    q.bind({bagsTypeId, bagsClassId}).exec();
    return readLedger(q);
}

} // namespace gm
