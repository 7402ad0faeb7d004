#pragma once

namespace gm {

class Conn;

// Two DFC payments for the sample mill, saved through the DFC store: government wheat with
// bags, each under two authority letters at different PR centres, so that the arrival screen
// has permits and quotas to work with. Runs inside the caller's write transaction, before the
// arrivals.
void loadSampleDFCPayments(const Conn& conn);

} // namespace gm
