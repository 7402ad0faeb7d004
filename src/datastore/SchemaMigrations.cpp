#include "datastore/Schema.h"
#include "datastore/SchemaParts.h"

namespace gm {

const std::vector<Migration>& schemaMigrations() {
    static const std::vector<Migration> all = {
        {1, schema::tableStatements(Engine::SQLite), schema::tableStatements(Engine::PostgreSQL)},
        {2, schema::sqliteRoutineStatements(), schema::postgresRoutineStatements()},
        // A party's balance sums its ledger up to a day; with the amounts in the index the sum
        // is read from the index alone, not from a ledger row per entry. A server's index does
        // not carry the row's key as SQLite's does, so there the arrivals of one seller or one
        // centre are listed with their keys as well, sparing a read of the table per arrival.
        {3,
         {QStringLiteral("CREATE INDEX IX_LedgerEntries_Balance "
                         "ON LedgerEntries (AccountNo, EntryDate, Debit, Credit)")},
         {QStringLiteral("CREATE INDEX IX_LedgerEntries_Balance "
                         "ON LedgerEntries (AccountNo, EntryDate, Debit, Credit)"),
          QStringLiteral(
              "CREATE INDEX IX_Arrivals_SellerArrival ON Arrivals (SellerId, ArrivalId)"),
          QStringLiteral(
              "CREATE INDEX IX_Arrivals_CenterArrival ON Arrivals (CenterId, ArrivalId)")}},
        {4, schema::sqliteArrivalPostingRebuild(), {}},
        {5, schema::sqliteQuotaStatements(), schema::postgresQuotaStatements()},
        {6, schema::sqlitePermitRateStatements(), schema::postgresPermitRateStatements()},
        {7, schema::sqliteLetterCountStatements(), schema::postgresLetterCountStatements()},
        // The hourly search finds the first serial after a point that made a commodity; by
        // commodity and serial that is one step, not a walk through every serial since.
        {8,
         {QStringLiteral("CREATE INDEX IX_HProductionBody_CommoditySerial "
                         "ON HProductionBody (CommodityId, SerialNo)")},
         {QStringLiteral("CREATE INDEX IX_HProductionBody_CommoditySerial "
                         "ON HProductionBody (CommodityId, SerialNo)")}},
        {9, schema::sqliteCostLedgerStatements(), schema::postgresCostLedgerStatements()},
        // A payment keeps the number of whoever saved it, and user numbers run past what a
        // small integer holds. SQLite keeps any whole number in the column already.
        {10, {}, {QStringLiteral("ALTER TABLE DFCPayments ALTER COLUMN UserNo TYPE integer")}},
    };
    return all;
}

const QStringList& schemaTableNames() {
    static const QStringList names = {
        QStringLiteral("Cities"),
        QStringLiteral("ChartOfAccounts"),
        QStringLiteral("Parties"),
        QStringLiteral("Units"),
        QStringLiteral("BagsTypes"),
        QStringLiteral("BagsClasses"),
        QStringLiteral("Commodities"),
        QStringLiteral("Processes"),
        QStringLiteral("ProcessComponents"),
        QStringLiteral("PRCenters"),
        QStringLiteral("LedgerEntries"),
        QStringLiteral("PContracts"),
        QStringLiteral("DFCPayments"),
        QStringLiteral("AuthorityLetters"),
        QStringLiteral("Arrivals"),
        QStringLiteral("ArrivalsBody"),
        QStringLiteral("Purchases"),
        QStringLiteral("PurchaseBody"),
        QStringLiteral("DailyProduction"),
        QStringLiteral("Consumption"),
        QStringLiteral("Production"),
        QStringLiteral("HourlyProduction"),
        QStringLiteral("HProductionBody"),
        QStringLiteral("CurrentStock"),
        QStringLiteral("BagsCurrentStock"),
        QStringLiteral("PRCenterQuota"),
        QStringLiteral("PRCenterRates"),
        QStringLiteral("StockCostLedger"),
        QStringLiteral("SchemaVersion"),
    };
    return names;
}

QString canonicalTableName(const QString& anyCase) {
    for (const QString& n : schemaTableNames())
        if (n.compare(anyCase, Qt::CaseInsensitive) == 0)
            return n;
    return anyCase;
}

} // namespace gm
