#pragma once

#include "kv_export.h"

class QObject;

namespace kv {

// Copies the value of every stored, readable Q_PROPERTY of Source to the stored, writable
// property of the same name of Dest, in Source's property order; properties that Dest lacks
// or cannot take are left out. objectName, the object's identity, is not copied. Nothing
// when either is null or both are the same object.
KV_EXPORT void AssignAllProps(const QObject *Source, QObject *Dest);

} // namespace kv
