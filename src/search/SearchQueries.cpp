#include "search/SearchQueries.h"

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "services/Lookups.h"
#include "services/Numeric.h"

#include <QStringList>

#include <cmath>

namespace gm {

namespace {

// The date range includes both ends. Comparing with the day after the end keeps rows whose
// stored date carries a time of day as well.
QString dateRange(const char* column, const SearchFilters& f, QVariantList& binds) {
    binds << f.from << f.to.addDays(1);
    return QStringLiteral(" WHERE %1 >= ? AND %1 < ?").arg(QLatin1String(column));
}

// The clerk's text is data: its %, _ and the escape character match only themselves.
QString nameCondition(const Conn& conn, const QString& expression, const QString& pattern,
                      QVariantList& binds) {
    binds << pattern;
    return QStringLiteral(" AND ") + likeCondition(conn, expression);
}

QString placeholders(qsizetype count) {
    QStringList marks;
    for (qsizetype i = 0; i < count; ++i)
        marks << QStringLiteral("?");
    return marks.join(QStringLiteral(", "));
}

// The newest rows of a date range, a page at a time, are best found by walking the keys
// backward from the range's last key and stopping at a page, not by sorting every row of the
// range. SQLite's planner is told so: the walk is bounded by the first and last key of the
// range, read from the date index, and the dates are then only checked, not used to search.
// A server's planner weighs this itself from its statistics.
QString newestKeysOfRange(const Conn& conn, const char* table, const char* alias, const char* key,
                          const char* date, const SearchFilters& f, QVariantList& binds) {
    const QString dateColumn = QLatin1String(alias) + QLatin1Char('.') + QLatin1String(date);
    // A key typed in the filter finds its row through the key itself.
    if (conn.isPostgres() || f.byId)
        return dateRange(qPrintable(dateColumn), f, binds);
    Query bounds(conn, QStringLiteral("SELECT MIN(%1), MAX(%1) FROM %2 WHERE %3 >= ? AND %3 < ?")
                           .arg(QLatin1String(key), QLatin1String(table), QLatin1String(date)));
    bounds.bind({f.from, f.to.addDays(1)}).exec();
    if (!bounds.next() || bounds.value(0).isNull())
        return QStringLiteral(" WHERE 1 = 0");
    binds << f.from << f.to.addDays(1) << bounds.value(0) << bounds.value(1);
    return QStringLiteral(" WHERE +%1 >= ? AND +%1 < ? AND %2.%3 BETWEEN ? AND ?")
        .arg(dateColumn, QLatin1String(alias), QLatin1String(key));
}

// The parties whose name, as the lists show it, contains the text. Read first and bound, so
// that a planner knows how many of the documents the filter keeps instead of guessing at a
// pattern; an empty list keeps none.
QString partiesNamed(const Conn& conn, const QString& column, const QString& text,
                     QVariantList& binds) {
    Query named(conn, QStringLiteral("SELECT xa.AccountNo FROM ChartOfAccounts xa "
                                     "LEFT JOIN Parties xp ON xp.PartyId = xa.AccountNo "
                                     "LEFT JOIN Cities xc ON xc.CityId = xp.CityId WHERE ") +
                          likeCondition(conn, partyNameSql("xa", "xc")));
    named.bind(likeContains(text)).exec();
    qsizetype keys = 0;
    while (named.next()) {
        binds << named.value(0);
        ++keys;
    }
    if (keys == 0)
        return QStringLiteral(" AND 1 = 0");
    return QStringLiteral(" AND %1 IN (%2)").arg(column, placeholders(keys));
}

// A list newest first is read a page at a time, each page starting after the last key read.
QString newestFirst(const char* key, const SearchFilters& f, QVariantList& binds) {
    QString sql;
    if (!f.before.isNull()) {
        sql += QStringLiteral(" AND %1 < ?").arg(QLatin1String(key));
        binds << f.before;
    }
    sql += QStringLiteral(" ORDER BY %1 DESC").arg(QLatin1String(key));
    if (f.pageRows > 0) {
        sql += QStringLiteral(" LIMIT ?");
        binds << f.pageRows;
    }
    return sql;
}

} // namespace

QVariant typedId(const QString& text) {
    const double typed = leadingNumber(text);
    return typed == std::trunc(typed) ? QVariant(qint64(typed)) : QVariant(typed);
}

QString arrivalsStatement(const Conn& conn, const SearchFilters& f, QVariantList& binds) {
    const QString seller = partyNameSql("ca", "ci");
    QString sql = QStringLiteral("SELECT a.ArrivalId, a.ArrivalDate, %1 AS AccountName, "
                                 "co.CommodityName AS Commodity "
                                 "FROM Arrivals a "
                                 "INNER JOIN Commodities co ON a.CommodityId = co.CommodityId "
                                 "INNER JOIN Parties p ON a.SellerId = p.PartyId "
                                 "INNER JOIN ChartOfAccounts ca ON p.PartyId = ca.AccountNo "
                                 "LEFT JOIN Cities ci ON p.CityId = ci.CityId")
                      .arg(seller);
    sql += newestKeysOfRange(conn, "Arrivals", "a", "ArrivalId", "ArrivalDate", f, binds);
    if (f.byId) {
        sql += QStringLiteral(" AND a.ArrivalId = ?");
        binds << f.id;
    }
    if (!f.name.isEmpty())
        sql += partiesNamed(conn, QStringLiteral("a.SellerId"), f.name, binds);
    return sql + newestFirst("a.ArrivalId", f, binds);
}

QString purchasesStatement(const Conn& conn, const SearchFilters& f, QVariantList& binds) {
    const QString seller = partyNameSql("sa", "sc");
    const QString broker = partyNameSql("ba", "bc");
    // Each line is valued and rounded on its own before the invoice's lines are added, as
    // the invoice itself does; a line whose arrival is gone adds nothing. The sum is taken
    // per invoice through its key, so the names need no grouping; an invoice without lines
    // is not listed.
    QString sql =
        QStringLiteral("SELECT pu.PurchaseId, pu.PurchaseDate, %1 AS BrokerName, %2 AS SellerName, "
                       "(SELECT SUM(ROUND(CAST(pb.TotalWeight * pb.RatePerUnit * 1.0 / "
                       "NULLIF(u.WeightInKgs, 0) AS NUMERIC), 2)) "
                       "FROM PurchaseBody pb "
                       "LEFT JOIN Arrivals a ON a.ArrivalId = pb.ArrivalId "
                       "LEFT JOIN Commodities co ON a.CommodityId = co.CommodityId "
                       "LEFT JOIN Units u ON co.RateUnitId = u.UnitId "
                       "WHERE pb.PurchaseId = pu.PurchaseId) AS Value, pu.SellerId "
                       "FROM Purchases pu "
                       "LEFT JOIN ChartOfAccounts sa ON sa.AccountNo = pu.SellerId "
                       "LEFT JOIN Parties sp ON sp.PartyId = pu.SellerId "
                       "LEFT JOIN Cities sc ON sc.CityId = sp.CityId "
                       "LEFT JOIN ChartOfAccounts ba ON ba.AccountNo = pu.BrokerId "
                       "LEFT JOIN Parties bp ON bp.PartyId = pu.BrokerId "
                       "LEFT JOIN Cities bc ON bc.CityId = bp.CityId")
            .arg(broker, seller);
    sql += newestKeysOfRange(conn, "Purchases", "pu", "PurchaseId", "PurchaseDate", f, binds);
    sql += QStringLiteral(
        " AND EXISTS (SELECT 1 FROM PurchaseBody pl WHERE pl.PurchaseId = pu.PurchaseId)");
    if (!f.name.isEmpty())
        sql += partiesNamed(conn, QStringLiteral("pu.SellerId"), f.name, binds);
    if (f.byId) {
        sql += QStringLiteral(" AND pu.PurchaseId = ?");
        binds << f.id;
    }
    return sql + newestFirst("pu.PurchaseId", f, binds);
}

QString contractsStatement(const Conn& conn, const SearchFilters& f, QVariantList& binds) {
    // The broker is joined from the outside so that a contract without one stays listed.
    QString sql = QStringLiteral(
        "SELECT pc.ContractId, pc.ContractDate, ba.AccountName AS Broker, "
        "sa.AccountName AS Seller, pc.Quantity, pc.ContractMode, pc.BrokerId, pc.PartyId "
        "FROM PContracts pc "
        "INNER JOIN Parties s ON pc.PartyId = s.PartyId "
        "INNER JOIN ChartOfAccounts sa ON s.PartyId = sa.AccountNo "
        "LEFT JOIN Parties b ON b.PartyId = pc.BrokerId "
        "LEFT JOIN ChartOfAccounts ba ON ba.AccountNo = b.PartyId");
    sql += dateRange("pc.ContractDate", f, binds);
    if (!f.name.isEmpty())
        sql += nameCondition(conn, QStringLiteral("sa.AccountName"), likeContains(f.name), binds);
    return sql + newestFirst("pc.ContractId", f, binds);
}

QString dfcPurchasesStatement(const Conn& conn, const SearchFilters& f, QVariantList& binds) {
    QString sql = QStringLiteral(
        "SELECT d.PaymentId, d.PaymentDate, co.CommodityName, d.TotalWeight AS TTLWeight, "
        "SUM(d.TTLValueWheet + d.TTLValueBags) AS GrossValue "
        "FROM DFCPayments d INNER JOIN Commodities co ON d.CommodityId = co.CommodityId");
    sql += dateRange("d.PaymentDate", f, binds);
    // The commodity filter matches the beginning of the name only.
    if (!f.name.isEmpty())
        sql +=
            nameCondition(conn, QStringLiteral("co.CommodityName"), likeStartsWith(f.name), binds);
    return sql + QStringLiteral(" GROUP BY d.PaymentId, d.PaymentDate, co.CommodityName, "
                                "d.TotalWeight ORDER BY d.PaymentId");
}

// Oldest first, a page of serials at a time: a page ends on the last of its serials that have
// production lines, so a serial with two commodities, which stands on two rows, is never split.
// The keys guarantee that a line has its serial and its commodity, so the page's serials are
// counted on the lines alone, along their serial index. That last serial is read first and
// bound, so the planner sees how narrow the page is. Repeats of a commodity within a serial
// are dropped as the rows are read, which spares the server a sort of the whole list.
QString hourlyStatement(const Conn& conn, const SearchFilters& f, QVariantList& binds) {
    // A server's time of day is read as text: made into a date and time on reading, each value
    // would be converted to local time, which costs more than the rest of the row.
    QString sql = QStringLiteral("SELECT h.SerialNo, %1 AS ProcessTime, co.CommodityName "
                                 "FROM HourlyProduction h "
                                 "INNER JOIN HProductionBody hb ON h.SerialNo = hb.SerialNo "
                                 "INNER JOIN Commodities co ON hb.CommodityId = co.CommodityId "
                                 "WHERE 1 = 1")
                      .arg(conn.isPostgres() ? QStringLiteral("CAST(h.ProcessTime AS VARCHAR(32))")
                                             : QStringLiteral("h.ProcessTime"));
    if (!f.before.isNull()) {
        sql += QStringLiteral(" AND h.SerialNo > ? AND hb.SerialNo > ?");
        binds << f.before << f.before;
    }
    if (f.pageRows > 0) {
        QString last = QStringLiteral("SELECT MAX(k.SerialNo) FROM "
                                      "(SELECT DISTINCT b.SerialNo FROM HProductionBody b");
        if (!f.before.isNull())
            last += QStringLiteral(" WHERE b.SerialNo > ?");
        last += QStringLiteral(" ORDER BY b.SerialNo LIMIT ?) k");
        Query through(conn, last);
        if (!f.before.isNull())
            through.bind(f.before);
        through.bind(f.pageRows).exec();
        const QVariant until = through.next() ? through.value(0) : QVariant();
        if (until.isNull())
            return sql + QStringLiteral(" AND 1 = 0");
        sql += QStringLiteral(" AND h.SerialNo <= ? AND hb.SerialNo <= ?");
        binds << until << until;
    }
    return sql + QStringLiteral(" ORDER BY h.SerialNo, co.CommodityName");
}

QString partiesStatement(const Conn& conn, const QString& name, QVariantList& binds) {
    // Party accounts are the branch of the chart that begins with 6; a party without a city
    // is not offered here.
    QString sql =
        QStringLiteral("SELECT P.PartyId, C.AccountName, Ct.CityName FROM Parties P "
                       "INNER JOIN ChartOfAccounts C ON P.PartyId = C.AccountNo "
                       "INNER JOIN Cities Ct ON P.CityId = Ct.CityId WHERE P.PartyId LIKE '6%'");
    if (!name.isEmpty())
        sql += nameCondition(conn, QStringLiteral("C.AccountName"), likeContains(name), binds);
    return sql + QStringLiteral(" ORDER BY P.PartyId");
}

namespace hourly {

namespace {
void bindAll(Query& q, const QVariantList& values) {
    for (const QVariant& v : values)
        q.bind(v);
}
} // namespace

bool anyLineOf(const Conn& conn, const QVariantList& commodityIds) {
    if (commodityIds.isEmpty())
        return false;
    // The index by commodity answers this in one step, without a look through the lines.
    Query any(conn, QStringLiteral("SELECT 1 FROM HProductionBody WHERE CommodityId IN (%1) "
                                   "LIMIT 1")
                        .arg(placeholders(commodityIds.size())));
    bindAll(any, commodityIds);
    any.exec();
    return any.next();
}

QVariant firstSerialWith(const Conn& conn, const QVariant& after,
                         const QVariantList& commodityIds) {
    if (commodityIds.isEmpty())
        return {};
    // Walked along the serials' index from `after`.
    Query first(conn,
                QStringLiteral("SELECT hb.SerialNo FROM HProductionBody hb WHERE hb.SerialNo > ? "
                               "AND hb.CommodityId IN (%1) ORDER BY hb.SerialNo LIMIT 1")
                    .arg(placeholders(commodityIds.size())));
    first.bind(after);
    bindAll(first, commodityIds);
    first.exec();
    return first.next() ? first.value(0) : QVariant();
}

int serialsBetween(const Conn& conn, const QVariant& after, const QVariant& through) {
    return int(toInt(scalar(conn,
                            QStringLiteral("SELECT COUNT(DISTINCT SerialNo) FROM HProductionBody "
                                           "WHERE SerialNo > ? AND SerialNo <= ?"),
                            {after, through})));
}

QVariant serialBeforeLast(const Conn& conn) {
    return scalar(conn, QStringLiteral("SELECT MAX(SerialNo) FROM HProductionBody "
                                       "WHERE SerialNo < (SELECT MAX(SerialNo) "
                                       "FROM HProductionBody)"));
}

} // namespace hourly

} // namespace gm
