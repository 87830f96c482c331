#pragma once

#include "kv_export.h"

// Which editor edits which property, and the enumeration that makes the editors of a
// selection. User-interface thread only.

#include "platform/kvPropertyEditor.h"

#include <QList>
#include <QString>

class QObject;

namespace kv {

// Registers Editor for properties of PropertyType (a class type also covers its
// descendants), of objects of ComponentClass and its descendants (null: any), named
// PropertyName (ignoring case; empty: any). The entry belongs to the current editor group
// and leaves the registry when that group is freed. Raises kv::Exception for a null type
// or editor.
KV_EXPORT void RegisterPropertyEditor(PTypeInfo PropertyType, const QMetaObject *ComponentClass,
                            const QString &PropertyName, TPropertyEditorClass Editor);
// The same for a part of a value-class property: OwnerType is the value's type (QFont for
// its Size).
KV_EXPORT void RegisterPropertyEditor(PTypeInfo PropertyType, PTypeInfo OwnerType,
                            const QString &PropertyName, TPropertyEditorClass Editor);
// Any class (a plain nullptr would name neither a class nor an owner type).
inline void RegisterPropertyEditor(PTypeInfo PropertyType, std::nullptr_t, const QString &PropertyName,
                                   TPropertyEditorClass Editor)
{
    RegisterPropertyEditor(PropertyType, static_cast<const QMetaObject *>(nullptr), PropertyName, Editor);
}

// The editor for a property of PropertyType named PropertyName, of an object of
// ComponentClass (top-level properties) or a part of a value of OwnerType (parts; then
// ComponentClass is null). Of the registered entries that match, the best is taken: an
// exact type before an ancestor class, then one for that name before one for any name,
// then one for a class (the more derived the better) before one for any, then the newest.
// Without a match the standard editor of the type's kind; null for a kind without one. (A
// QObject pointer property without a setter holds a part of its object and gets
// TClassProperty, one with a setter a reference: TComponentProperty.)
KV_EXPORT TPropertyEditorClass GetEditorClass(PTypeInfo PropertyType, const QMetaObject *ComponentClass,
                                    PTypeInfo OwnerType, const QString &PropertyName);

// Makes one editor per property that every object of Selection has (the same name and the
// same type, edited by the same editor class) whose kind is in Filter, and hands each to
// Proc, in the order of the first object's class. Signals are the properties of kind
// tkMethod. With more than one object only editors with paMultiSelect are made. Writes go
// to Designer (may be null). Nothing for an empty selection; null objects are passed over.
KV_EXPORT void GetComponentProperties(const QList<QObject *> &Selection, TTypeKinds Filter,
                            IFormDesigner *Designer, const TGetPropEditProc &Proc);

// The registry as a unit: CM_FREEEDITGROUP takes a group's entries out; Finalize frees the
// registry and the per-class tables (FinalizePropertyEditors).
KV_EXPORT void FinalizePropertyEditors();

} // namespace kv
