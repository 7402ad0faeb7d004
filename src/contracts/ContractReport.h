#pragma once

#include "contracts/PurchaseContract.h"
#include "reports/Report.h"
#include "services/Host.h"

namespace gm {

// The printed contract: title "PURCHASE CONTRACT", the three letterhead lines and every
// field of the stored contract. Built from data alone, so it can be checked without a window.
Report CrpPurchaseContract(const ContractRecord& record, const HostSettingsValues& settings);

} // namespace gm
