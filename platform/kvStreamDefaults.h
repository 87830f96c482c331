#pragma once

#include "kv_export.h"

// Declared defaults: the values a component stream leaves out. Our classes declare the
// defaults of their properties once (DeclareDefaults); such a class is never instantiated to
// find them, and a property it publishes itself without a declared default defaults to its
// type's empty value (0, false, an empty string, null). A class that declares nothing (a
// foreign Qt class) is measured on one prototype: a hidden instance of that very class,
// made through the class registry or an invokable constructor (a widget without a parent,
// and only when a QApplication exists), kept until FinalizeStreamDefaults. Any other
// default is unknown (an invalid QVariant), and such a value is always written: a class
// that can't be made, or a property a class inherits from a foreign base.
//
// User-interface thread only.

#include <QVariant>

#include <initializer_list>
#include <utility>

class QMetaObject;
class QMetaProperty;
class QObject;

namespace kv {

// Declares the defaults of properties of Class, by property name; declaring a name again
// replaces its value. A property inherits the declaration of the nearest class up the
// chain that declares it.
KV_EXPORT void DeclareDefaults(const QMetaObject *Class, std::initializer_list<std::pair<const char *, QVariant>> Defaults);
// Whether Class itself declared defaults (and so is never given a prototype).
KV_EXPORT bool HasDeclaredDefaults(const QMetaObject *Class);

// The prototype of Class, made on first use; null for a class that declared defaults, one
// that can't be made, and a widget class without a QApplication.
KV_EXPORT QObject *ClassPrototype(const QMetaObject *Class);

// The default of Property for objects of Class (invalid for a property Class does not have).
KV_EXPORT QVariant DefaultPropValue(const QMetaObject *Class, const QMetaProperty &Property);
// Whether Instance's value of Property is its class's default (SameStreamValue).
KV_EXPORT bool IsDefaultPropValue(const QObject *Instance, const QMetaProperty &Property);

// Whether A and B are the same value as far as a stream is concerned: equal values of one
// type, or two null pictures, or the same picture; NaN equals NaN.
KV_EXPORT bool SameStreamValue(const QVariant &A, const QVariant &B);

// Deletes the prototypes and forgets what was measured on them (declarations stay). Called
// at the unit stop of ideSystem, before the application object goes.
KV_EXPORT void FinalizeStreamDefaults();

} // namespace kv
