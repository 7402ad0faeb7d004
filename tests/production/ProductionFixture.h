#pragma once

#include "datastore/Conn.h"
#include "datastore/Sql.h"
#include "production/ProductionLines.h"
#include "seed/SampleProduction.h"
#include "services/Numeric.h"

#include <QDate>
#include <QString>

// The sample mill as the production tests use it.
namespace gm::test {

inline constexpr int kMilling = 1;       // takes in the three wheats, gives Flour and Bran
inline constexpr int kFineMilling = 2;   // gives Fine Flour, Suji and Bran
inline constexpr int kWheatLocal = 1;    // stocked and costed by the sample invoices
inline constexpr int kWheatImported = 3; // never arrived: no stock row
inline constexpr int kFlour = 4;         // default bag PP 50 Kg
inline constexpr int kBran = 7;          // default bag PP 100 Kg
inline constexpr int kPP100 = 1, kJute100 = 2, kPP50 = 3, kPP10 = 5;
inline constexpr int kNew = 1, kUsed = 2, kRepaired = 3;

inline double stockWeightOf(const Conn& conn, int commodity) {
    return toDouble(
        scalar(conn, QStringLiteral("SELECT TotalWeight FROM CurrentStock WHERE CommodityId = ?"),
               {commodity}));
}

inline double stockBagsOf(const Conn& conn, int bagsType, int bagsClass) {
    return toDouble(scalar(conn,
                           QStringLiteral("SELECT NoOfBags FROM BagsCurrentStock "
                                          "WHERE BagsTypeId = ? AND BagsClassId = ?"),
                           {bagsType, bagsClass}));
}

inline double averageCostOf(const Conn& conn, int commodity) {
    return toDouble(scalar(
        conn, QStringLiteral("SELECT COALESCE(Cost, 0) FROM CurrentStock WHERE CommodityId = ?"),
        {commodity}));
}

// Rows of a production table for one day.
inline qint64 rowsOfDay(const Conn& conn, const char* table, const QDate& date, int process) {
    return toInt(scalar(conn,
                        QStringLiteral("SELECT COUNT(*) FROM %1 WHERE ProductionDate = ? "
                                       "AND ProcessId = ?")
                            .arg(QLatin1String(table)),
                        {date, process}));
}

// Four decimals, as the costs are compared.
inline double to4(double v) {
    return roundHalfEven(v, 4);
}

} // namespace gm::test
