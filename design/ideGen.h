#pragma once

#include <QString>

namespace kv {

// Whether the running program is itself an IDE that hosts add-ins (Qt Creator, Qt
// Designer), judged by the application's name.
bool HostIsIDE();
bool IsIDEApplicationName(const QString &applicationName);

namespace ideGen {
// Settles UnderDelphiIDE.
void Initialize();
void Finalize();
} // namespace ideGen

} // namespace kv
