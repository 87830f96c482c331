#pragma once

// Registration unit of the IDE inspector window. Its registration procedure has nothing
// to register with the host: the window is reached through the add-in's menu item.

namespace kv::ideTreeInspReg {
void Initialize();
void Finalize();
void Register();
} // namespace kv::ideTreeInspReg
