#include "treesrc/ideTSLite.h"

#include "foundation/ideSystem_classitems.h"
#include "treesrc/ideTSLite_stringsource.h"
#include "treesrc/ideTSLite_treenotifiers.h"

namespace kv {

void ideTSLite::Initialize()
{
    SafeRegisterClass(&TKVStringSource::staticMetaObject);
}

// The tree notifiers are this unit's: what is still posted to them goes with them.
void ideTSLite::Finalize()
{
    FinalizeTreeNotifiers();
}

} // namespace kv
