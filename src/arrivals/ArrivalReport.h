#pragma once

#include "arrivals/ArrivalStore.h"
#include "reports/Report.h"
#include "services/Host.h"

namespace gm {

// The printed arrival: the letterhead, the arrival's head, one row per vehicle with its bags,
// weights and deductions, and the totals. Without a saved arrival (null, or one without
// vehicles) the page carries the letterhead and nothing else.
Report CrpArrival(const ArrivalDocument* arrival, const HostSettingsValues& settings);

} // namespace gm
