#include "persist/ideCommon.h"

#include "foundation/ideSystem_classitems.h"
#include "platform/kvStreamDefaults.h"
#include "persist/ideCommon_propstore.h"
#include "persist/ideLib_objstreams.h"

namespace kv {

TReaderErrorHandler ReaderErrorHandler;
TGetDesignerProc GetDesignerProc = nullptr;

void ideCommon::Initialize()
{
    // Streams name these classes; the reader creates them by name.
    SafeRegisterClasses({&TPersHolder::staticMetaObject, &TKVPropStore::staticMetaObject});
    DeclareDefaults(&TKVPropStore::staticMetaObject, {{"IgnoreErrors", true}, {"StorePos", true}});
}

void ideCommon::Finalize()
{
    ReaderErrorHandler = nullptr;
    GetDesignerProc = nullptr;
}

} // namespace kv
