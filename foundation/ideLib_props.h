#pragma once

#include "kv_export.h"

// Run-time access to published properties (an object's Q_PROPERTYs). Property names are
// found ignoring case, as the platform's type information finds them; a missing object or
// property is not an error: reading gives an invalid QVariant, writing does nothing.
//
// AssignAllProps (copy every stored property that both objects have) lives in
// foundation/ideSystem_assignprops.h; the routines here that copy several properties follow
// its rules: a stored, readable source property goes to the stored, writable property of the
// same name, and objectName, the object's identity, is never copied.

#include "platform/kvTypInfo.h"

#include <QList>
#include <QMetaProperty>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVariant>

#include <functional>

class QObject;

namespace kv {

// The property of Obj's class named Name (an exact match first, then ignoring case);
// invalid for null or none.
KV_EXPORT QMetaProperty FindProperty(const QObject *Obj, QStringView Name);
KV_EXPORT bool PropertyExists(const QObject *Obj, QStringView Name);

KV_EXPORT QVariant GetPropValueByPropInfo(const QObject *Obj, const QMetaProperty &Prop);
// Returns whether the property took the value (false for a read-only property or a value
// that does not convert to its type).
KV_EXPORT bool SetPropValueByPropInfo(QObject *Obj, const QMetaProperty &Prop, const QVariant &Value);
KV_EXPORT QVariant GetPropValue(const QObject *Obj, QStringView Name);
KV_EXPORT bool SetPropValue(QObject *Obj, QStringView Name, const QVariant &Value);
KV_EXPORT void SetPropValues(const QList<QObject *> &Objects, QStringView Name, const QVariant &Value);
// The object held by a QObject-pointer property; null when Obj, the property or the object
// is missing.
KV_EXPORT QObject *GetClassProperty(const QObject *Obj, QStringView Name);

// AssignAllProps without the properties that Exclude names (ignoring case).
KV_EXPORT void AssignAllPropsExclude(const QObject *Source, QObject *Dest, const QStringList &Exclude);
// One property, by name or by Source's property; returns whether Dest took it. Nothing when
// the two are the same object or either is null.
KV_EXPORT bool AssignProp(const QObject *Source, QObject *Dest, QStringView Name);
KV_EXPORT bool AssignPropInfo(const QObject *Source, QObject *Dest, const QMetaProperty &Prop);
// The named properties; AssignPropsEx takes them as comma-separated text ("Left, Top").
KV_EXPORT void AssignProps(const QObject *Source, QObject *Dest, const QStringList &Names);
KV_EXPORT void AssignPropsEx(const QObject *Source, QObject *Dest, const QString &Names);

// Appends the names of Obj's properties, in declaration order (QObject's first).
KV_EXPORT void PropNamesToStrings(const QObject *Obj, QStringList &Strings);

// A property value as text, and back: Booleans "True"/"False", enumerations by their key,
// flags as keys joined with "|", colours as ColorToString gives them (QColor as "#AARRGGBB"),
// fonts as QFont::toString, dates and times in ISO 8601, string lists as comma text (an
// entry that is empty or holds a comma, a double quote or blanks at its ends between double
// quotes, its quotes doubled), sizes, points and rectangles as their numbers joined with ","
// ("640,480"; a rectangle's are x, y, width and height), the rest as QVariant converts it.
KV_EXPORT QString PropValueToText(const QMetaProperty &Prop, const QVariant &Value);
// False when Text does not make a value of the property's type.
KV_EXPORT bool PropValueFromText(const QMetaProperty &Prop, const QString &Text, QVariant &Value);

// Sets properties from "name=value" lines (text as PropValueFromText reads it). Lines
// without "=" and unknown names are passed over; a value that the property can't take raises
// kv::Exception (SErrBadPropValue), after the lines before it were set.
KV_EXPORT void AssignPropsFromStrings(QObject *Obj, const QStringList &Strings);

// A Boolean variant that is true becomes the integer 1; anything else is returned unchanged.
KV_EXPORT QVariant CorrectBool(const QVariant &Value);

// A collection item's display name: its DisplayName property, whose getter each item class
// may give its own text; the class name for an object without one; empty for null.
KV_EXPORT QString GetColItemDisplayName(const QObject *Item);
// Writes the DisplayName property; nothing for null or an object without a writable one.
KV_EXPORT void SetColItemDisplayName(QObject *Item, const QString &Name);

// A numeric resource type's standard name ("CURSOR" for 1 … "ANIICON" for 22; 0, 13, 15 and
// 18 have none and give the empty string); any other number as its decimal text. A named
// type is its own name.
KV_EXPORT QString StringFromRType(quint32 Type);
KV_EXPORT QString StringFromRType(const QString &Type);
// A numeric resource name as its decimal text; a named one as itself.
KV_EXPORT QString StringFromRName(quint32 Name);
KV_EXPORT QString StringFromRName(const QString &Name);

// The declaration type name for an automation variant type code 0 to 19 (2 "Smallint",
// 3 "Longint" … 19 "Cardinal"; 0, 1 and 15 have none). Codes outside the table give the
// empty string.
KV_EXPORT QString ConvertDelphiTypeToString(int VarType);

// Called for every property visited.
using TPropCallBack = std::function<void(QObject *Instance, const QMetaProperty &Prop)>;
// Calls Proc for every property of Obj in declaration order, only the stored ones when
// OnlyStored. Nothing for a null Obj or an empty Proc.
KV_EXPORT void ForEachProp(QObject *Obj, const TPropCallBack &Proc, bool OnlyStored = false);
// The same for the properties whose kind (TypeKindOf) is in Kinds.
KV_EXPORT void IterateProps(QObject *Obj, TTypeKinds Kinds, const TPropCallBack &Proc, bool OnlyStored = false);

// Whether Obj's class or one of its ancestors is called ClassName, ignoring case, with or
// without its namespace ("QPushButton", "kv::TDataModule" or "TDataModule").
KV_EXPORT bool InheritsFromClassName(const QObject *Obj, QStringView ClassName);

// The nearest class that both descend from (null when either is null), resp. that the
// classes of all the objects descend from (null for an empty list).
KV_EXPORT const QMetaObject *GetCommonParent(const QMetaObject *A, const QMetaObject *B);
KV_EXPORT const QMetaObject *GetCommonClassesParent(const QList<QObject *> &Objects);

// The file of the loaded module (program or shared library) that holds Class; empty when it
// can't be told.
KV_EXPORT QString GetClassModule(const QMetaObject *Class);

// Obj's stored, writable properties (objectName and object references left out) in the
// options INI file, under the group Section (backslashes in it separate groups). Saving
// raises kv::Exception when no file is named (SErrNoOptionsFile) or the file can't be written
// (SErrFileWrite). Loading sets the properties that the file holds and leaves the others;
// without a file, or for an unreadable value, nothing changes. The forms without FileName,
// which use OptionsFileName, are in foundation/ideSystem_optionstorage.h.
KV_EXPORT void SaveComponentToIniFile(const QObject *Obj, const QString &Section, const QString &FileName);
KV_EXPORT void LoadComponentFromIniFile(QObject *Obj, const QString &Section, const QString &FileName);

} // namespace kv
