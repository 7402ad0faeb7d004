#pragma once

namespace gm {

class Conn;

// Three arrivals for the sample mill, dated in the last days: one from a free party, one
// against a contract no arrival uses yet, one through a PR centre's permit. Writes a contract
// itself, and the sample's DFC payments, when the sample has none. Runs inside the caller's
// write transaction, after the contracts.
void loadSampleArrivals(const Conn& conn);

} // namespace gm
