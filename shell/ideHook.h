#pragma once

#include "kv_export.h"

// Free notifications: being told when any object, a QObject or one of our plain
// objects, is destroyed. The handler gets the object's address after the object is
// gone, so it may only compare it with addresses it holds, never use it.

#include "platform/kvMethod.h"

class QObject;

namespace kv {

using TFreeNotifyMethod = TMethod<const void *>;

// Base of the library's classes that are not QObjects but can be watched: its
// destructor reports the object's end to the free-notification registry.
class KV_EXPORT TPlainObject
{
public:
    TPlainObject() = default;
    TPlainObject(const TPlainObject &) {}
    TPlainObject &operator=(const TPlainObject &) { return *this; }
    virtual ~TPlainObject();
};

// Registers Method to be called with the object's address when Obj is destroyed.
// Nothing for nil. Registering the same method twice gives two calls.
KV_EXPORT void kvAddFreeNotification(const QObject *Obj, TFreeNotifyMethod Method);
KV_EXPORT void kvAddFreeNotification(const TPlainObject *Obj, TFreeNotifyMethod Method);

// Removes every registration of Obj with this method (same code, same object).
KV_EXPORT void kvRemoveFreeNotification(const QObject *Obj, TFreeNotifyMethod Method);
KV_EXPORT void kvRemoveFreeNotification(const TPlainObject *Obj, TFreeNotifyMethod Method);

// The address under which Obj is watched and which handlers receive.
inline const void *FreeNotifyKey(const QObject *Obj) { return Obj; }
inline const void *FreeNotifyKey(const TPlainObject *Obj) { return Obj; }

// How many objects are watched now; for diagnostics and tests.
KV_EXPORT int kvFreeNotificationCount();

namespace ideHook {
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
} // namespace ideHook

} // namespace kv
