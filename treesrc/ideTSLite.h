#pragma once

// Unit start and stop of the light tree sources.

namespace kv::ideTSLite {
// Enters the unit's source classes in the class registry, so that streams create them.
void Initialize();
void Finalize();
} // namespace kv::ideTSLite
