#pragma once

#include "kv_export.h"

// Unit start and stop of the light tree sources.

namespace kv::ideTSLite {
// Enters the unit's source classes in the class registry, so that streams create them.
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
} // namespace kv::ideTSLite
