#include "foundation/ideSystem.h"

#include "foundation/ideSystem_notifiers.h"

namespace kv {

bool UnderDelphiIDE = false;

void RegisterForDelphi(TProcedure Proc)
{
    if (Proc)
        Proc();
}

void RegisterForQuillon(TProcedure Proc)
{
    if (Proc && !UnderDelphiIDE)
        Proc();
}

void ideSystem::Initialize() {}

void ideSystem::Finalize()
{
    FinalizeNotifiers();
}

} // namespace kv
