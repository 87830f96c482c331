#pragma once

#include "kv_export.h"

// Host detection and the registration gates.

namespace kv {

using TProcedure = void (*)();

// True when the package runs inside an IDE host (Qt Creator, Qt Designer); settled when
// unit ideGen starts.
extern KV_EXPORT bool UnderDelphiIDE;

// Runs Proc at once, in every host.
KV_EXPORT void RegisterForDelphi(TProcedure Proc);
// Runs Proc at once only outside an IDE host; inside one, never.
KV_EXPORT void RegisterForQuillon(TProcedure Proc);

namespace ideSystem {
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
} // namespace ideSystem

} // namespace kv
