#pragma once

namespace gm {

class Conn;

// Two purchase invoices for the sample mill, saved through the invoice store so that the stock
// costs are its own: two vehicles of the contract's arrival, and one vehicle of the free
// arrival, leaving a vehicle of each open to invoice. Runs inside the caller's write
// transaction, after the arrivals.
void loadSampleInvoices(const Conn& conn);

} // namespace gm
