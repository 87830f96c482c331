#pragma once

#include "kv_export.h"

#include <QString>

namespace kv {

// Whether the running program is itself an IDE that hosts add-ins (Qt Creator, Qt
// Designer), judged by the application's name.
KV_EXPORT bool HostIsIDE();
KV_EXPORT bool IsIDEApplicationName(const QString &applicationName);

namespace ideGen {
// Settles UnderDelphiIDE.
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
} // namespace ideGen

} // namespace kv
