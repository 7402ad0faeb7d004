#pragma once

#include "datastore/Conn.h"

#include <QStringList>

// The pieces that the migrations are assembled from, one per concern and engine.
namespace gm::schema {

// Tables, keys and indexes, in an order in which every referenced table comes first.
QStringList tableStatements(Engine engine);
// The server routines and the stock triggers.
QStringList sqliteRoutineStatements();
QStringList postgresRoutineStatements();
// The arrival posting triggers of SQLite made anew, for databases made before they listed an
// arrival's bag kinds through its key.
QStringList sqliteArrivalPostingRebuild();
// The PR centres' running quota totals: the table, the triggers that keep it, and its filling
// from the letters and arrivals already there.
QStringList sqliteQuotaStatements();
QStringList postgresQuotaStatements();
// The DFC prices per centre and commodity as running sums and counts, likewise.
QStringList sqlitePermitRateStatements();
QStringList postgresPermitRateStatements();
// The number of letters per centre added to the quota totals.
QStringList sqliteLetterCountStatements();
QStringList postgresLetterCountStatements();
// The ledger of every move of an average cost, and the invoices' charge totals.
QStringList sqliteCostLedgerStatements();
QStringList postgresCostLedgerStatements();

} // namespace gm::schema
