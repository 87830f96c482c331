#include "install/ideApi.h"

namespace kv {

// The unit is first in the start order; its services keep no state between calls.
void ideApi::Initialize() {}

void ideApi::Finalize() {}

} // namespace kv
