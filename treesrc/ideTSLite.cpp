#include "treesrc/ideTSLite.h"

#include "foundation/ideSystem_classitems.h"
#include "treesrc/ideTSLite_stringsource.h"

namespace kv {

void ideTSLite::Initialize()
{
    SafeRegisterClass(&TKVStringSource::staticMetaObject);
}

void ideTSLite::Finalize() {}

} // namespace kv
