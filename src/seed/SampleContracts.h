#pragma once

namespace gm {

class Conn;

// A few purchase contracts for the sample mill, dated in the last weeks so that the contract
// search's default year shows them. Runs inside the caller's write transaction.
void loadSampleContracts(const Conn& conn);

} // namespace gm
