#pragma once

#include "kv_export.h"

// The system's rules name the platform's properties ("Caption", "Name", "Hint", "Font",
// "Items"); Qt objects call them otherwise. This table matches the two. Inspectors show
// each object's own names; the library's own classes publish the system's names.

#include <QMetaProperty>
#include <QString>
#include <QStringList>

class QObject;

namespace kv {

// The Qt names that stand for PlatformName (ignoring case), most specific first: "Caption"
// gives text, title and windowTitle (a group box has the last two; title is its caption);
// "Name" objectName; "Hint" toolTip; "Font" font; "Items" items. Empty for a name the table
// does not know.
KV_EXPORT QStringList QtPropertyNames(const QString &PlatformName);
// The platform name that QtName stands for ("windowTitle" gives "Caption"); empty when
// none.
KV_EXPORT QString PlatformPropertyName(const QString &QtName);
// Whether a property called Name (either way) is the one PlatformName means.
KV_EXPORT bool IsAliasOf(const QString &Name, const QString &PlatformName);
// Obj's property for PlatformName: the property of that very name when Obj has one (the
// library's own classes), else the first of the Qt names that Obj has; invalid when none.
KV_EXPORT QMetaProperty FindAliasedProperty(const QObject *Obj, const QString &PlatformName);

} // namespace kv
