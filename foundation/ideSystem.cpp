#include "foundation/ideSystem.h"

#include "foundation/ideSystem_classitems.h"
#include "foundation/ideSystem_editclasses.h"
#include "foundation/ideSystem_notifiers.h"
#include "foundation/ideSystem_objparams.h"
#include "foundation/ideSystem_optionext.h"
#include "foundation/ideSystem_optionstorage.h"
#include "persist/ideSystem_registry.h"
#include "persist/ideSystem_regprops.h"
#include "platform/kvDataModule.h"
#include "platform/kvScreen.h"
#include "platform/kvStreamDefaults.h"

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

void ideSystem::Initialize()
{
    // The screen lists windows in the order it first sees them: start watching now.
    Screen();
    SafeRegisterClass(&TDataModule::staticMetaObject);
    // Option objects load from and save to the settings store from now on.
    SetOptionStorage(RegistryOptionStorage());
}

void ideSystem::Finalize()
{
    // Option objects and registries first: they leave the notifier registry as they go.
    FinalizeOptionExts();
    if (OptionStorage() == RegistryOptionStorage())
        SetOptionStorage(nullptr);
    ReleaseRegistry();
    FinalizeStreamDefaults();
    FinalizeEditClasses();
    FinalizeClassItems();
    FinalizeObjectParamList();
    FinalizeNotifiers();
}

} // namespace kv
