#pragma once

// Host detection and the registration gates.

namespace kv {

using TProcedure = void (*)();

// True when the package runs inside an IDE host (Qt Creator, Qt Designer); settled when
// unit ideGen starts.
extern bool UnderDelphiIDE;

// Runs Proc at once, in every host.
void RegisterForDelphi(TProcedure Proc);
// Runs Proc at once only outside an IDE host; inside one, never.
void RegisterForQuillon(TProcedure Proc);

namespace ideSystem {
void Initialize();
void Finalize();
} // namespace ideSystem

} // namespace kv
