#pragma once

#include "kv_export.h"

// Installation services for set-up programs of add-ins.

namespace kv {

namespace ideApi {
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
} // namespace ideApi

} // namespace kv
