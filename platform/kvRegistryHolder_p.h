#pragma once

// Not part of the library's interface.

#include "foundation/ideSystem_notifiers.h"
#include "platform/kvEditorGroups.h"

#include <memory>

namespace kv::detail {

// Call first in the initialiser of the static holder of a process-wide registry that joins
// the notifier and editor-group registries: those are then made before the holder and so
// destroyed after it at exit, when the registry leaves them.
inline void PrepareRegistryHolder()
{
    CurrentGroup();
    NotifierRegistry();
}

// The holder of the process-wide registry T: empty until first use, emptied by the unit stop
// that frees the registry.
template <typename T>
std::unique_ptr<T> &RegistryHolder()
{
    static std::unique_ptr<T> holder = (PrepareRegistryHolder(), std::unique_ptr<T>());
    return holder;
}

// The registry T, made on first use.
template <typename T>
T &LazyRegistry()
{
    std::unique_ptr<T> &holder = RegistryHolder<T>();
    if (!holder)
        holder = std::make_unique<T>();
    return *holder;
}

} // namespace kv::detail
