#include "datastore/SampleData.h"

namespace gm {

void loadSampleMill(const Conn&) {}

} // namespace gm
