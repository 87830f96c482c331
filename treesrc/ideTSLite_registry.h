#pragma once

#include "kv_export.h"

// Which tree-source class shows an object of a given class, optionally when it is opened
// through a given property. Registrations are entries of the object parameter registry.

#include <QString>

struct QMetaObject;

namespace kv {

// Objects of ObjClass and its descendants, opened through the property PropName (may be
// empty), are shown by SourceClass. Registering a pair again adds another entry. Raises
// kv::Exception for a null ObjClass, or a SourceClass that is null or no tree source.
KV_EXPORT void RegisterTreeSource(const QMetaObject *ObjClass, const QMetaObject *SourceClass,
                        const QString &PropName = QString());
// The same for PropName when it is not empty, and then always for the empty name, so the
// source also answers a lookup without a property name.
KV_EXPORT void RegisterDefaultTreeSource(const QMetaObject *ObjClass, const QMetaObject *SourceClass,
                               const QString &PropName = QString());
// The source class of the first registration, in registration order, whose class is
// ObjClass or one of its ancestors and whose property name equals PropName ignoring case;
// null when none matches. An earlier registration wins over a later one for a nearer
// ancestor.
KV_EXPORT const QMetaObject *GetRegisteredTreeSource(const QMetaObject *ObjClass,
                                           const QString &PropName = QString());

} // namespace kv
