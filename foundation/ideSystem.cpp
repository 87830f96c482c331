#include "foundation/ideSystem.h"

#include "foundation/ideSystem_classitems.h"
#include "foundation/ideSystem_editclasses.h"
#include "foundation/ideSystem_notifiers.h"
#include "foundation/ideSystem_objparams.h"
#include "foundation/ideSystem_optionext.h"

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
    // Option objects and registries first: they leave the notifier registry as they go.
    FinalizeOptionExts();
    FinalizeEditClasses();
    FinalizeClassItems();
    FinalizeObjectParamList();
    FinalizeNotifiers();
}

} // namespace kv
