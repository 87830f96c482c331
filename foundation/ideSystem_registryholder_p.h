#pragma once

// Not part of the library's interface.

#include "foundation/ideSystem_notifiers.h"
#include "platform/kvEditorGroups.h"

namespace kv::detail {

// Call first in the initialiser of the static holder of a process-wide registry that joins
// the notifier and editor-group registries: those are then made before the holder and so
// destroyed after it at exit, when the registry leaves them.
inline void PrepareRegistryHolder()
{
    CurrentGroup();
    NotifierRegistry();
}

} // namespace kv::detail
