#pragma once

#include "kv_export.h"

// Registration unit of the IDE inspector window. Its registration procedure has nothing
// to register with the host: the window is reached through the add-in's menu item.

namespace kv::ideTreeInspReg {
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
KV_EXPORT void Register();
} // namespace kv::ideTreeInspReg
