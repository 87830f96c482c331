#pragma once

#include "kv_export.h"

// Ownership and names. A root is the application object, a form (see TScreen::IsForm) or a
// registered data module. Every other object belongs to the nearest root above it in the
// parent chain, its owner; that root names it and finds it by name. A form or data module
// that has no root above it belongs to the application object.
//
// Names (objectName) are unique within an owner ignoring case: SetComponentName keeps them
// so, and the lookups compare ignoring case. An empty name is no name: it is never found.

#include <QList>
#include <QString>
#include <QStringView>

#include <functional>

class QObject;

namespace kv {

// Whether Obj is a root; false for null.
KV_EXPORT bool IsRoot(const QObject *Obj);

// The owner of Obj; null for null, for the application object and for an object that no
// root holds (a parentless object that is not a form or data module, and its children).
KV_EXPORT QObject *GetOwner(const QObject *Obj);

// The components that Owner owns, depth first in child order: its descendants whose owner it
// is. A root among them is listed but not what it owns. The application object also owns
// the forms and data modules that no other root holds, listed after its own descendants in
// the screen's order. Empty for null and for an object that is not a root.
KV_EXPORT QList<QObject *> OwnedComponents(const QObject *Owner);

// Calls Proc for each component of OwnedComponents(Owner), in that order, until Proc returns
// false. Returns false when Proc stopped the walk.
KV_EXPORT bool ForEachOwnedComponent(const QObject *Owner, const std::function<bool(QObject *Component)> &Proc);

// The component of Owner named Name, ignoring case; null for an empty name or when there
// is none.
KV_EXPORT QObject *FindComponent(const QObject *Owner, QStringView Name);

// Whether S is an identifier: a letter A-Z or a-z or "_", followed by letters, digits and
// "_".
KV_EXPORT bool IsValidIdent(QStringView S);

// Renames Obj. Raises kv::Exception when Name is neither empty nor an identifier
// (SInvalidName), or when another component of Obj's owner bears it (SDuplicateName).
KV_EXPORT void SetComponentName(QObject *Obj, const QString &Name);

// The object's name path: what its class's invokable GetNamePath() gives when it has one
// (collection items name themselves after their collection), else its objectName; empty
// for null.
KV_EXPORT QString GetCompName(const QObject *Obj);

} // namespace kv
