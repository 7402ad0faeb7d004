#pragma once

#include "dfc/DFCStore.h"
#include "reports/Report.h"
#include "services/Host.h"

namespace gm {

// The printed DFC purchase: the letterhead, the payment with its challan, goods and bags, and
// its authority letters with their PR centres and totals. Without a saved payment (null) the
// page carries the letterhead and nothing else.
Report CrpDFCPurchase(const DFCPayment* payment, const HostSettingsValues& settings);

} // namespace gm
