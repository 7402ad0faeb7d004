#pragma once

namespace gm {

class Conn;
struct ProductionLine;

// A line of a production day with the names its keys stand for, as the screen holds it; its
// weight is bags x bag weight.
ProductionLine productionLine(const Conn& conn, int commodity, int bagsType, int bagsClass,
                              double bags, double bagWeight, double cost = 0);

// Two production days for the sample mill, saved through the production store so that the
// stock moves as the screen's would: a milling two days ago in the mill's own bags, and a
// fine milling yesterday with its bags added in. Runs inside the caller's write transaction,
// after the invoices, whose costs the consumption takes.
void loadSampleProduction(const Conn& conn);
// Three hourly records of yesterday's output, saved through the hourly store.
void loadSampleHourlyProduction(const Conn& conn);

} // namespace gm
