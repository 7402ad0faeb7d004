#pragma once

namespace gm {

class Conn;

// Fills an empty database with a small working mill: cities, parties, accounts, commodities,
// units, bags, processes, PR centres and a few ledger balances, so that a new user can work at
// once. One transaction; throws DbError if the database already holds master data.
void loadSampleMill(const Conn& conn);
// The same master data without any sample documents, for work that needs a bare mill.
void loadSampleMasterData(const Conn& conn);

} // namespace gm
