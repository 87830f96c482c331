#pragma once

#include "kv_export.h"

// Objects and their properties in the settings store, and the option objects' storage.

#include <QString>

class QObject;

namespace kv {

class IOptionStorage;

// Stores Obj's stored, readable properties in class order (objectName, its identity, left
// out) as the settings Key + "\" + property name: integers, floating-point numbers, Booleans,
// dates and text as such; string lists with WriteStringsToRegistry; byte arrays as long binary
// values; enumerations, sets, colours, fonts, sizes and every other type as the text that
// PropValueToText gives. A property that holds an object: a collection in text form
// (WriteObjTextToRegistry), a reference to another object (one with a setter) as that
// object's name, any other object recursively under Key + "\" + property name.
KV_EXPORT void WritePropsToRegistry(const QObject *Obj, const QString &Key);
// Reads back what WritePropsToRegistry stored into the writable properties, each with its
// current value as the default: a missing setting, or one that no longer converts to the
// property's type, leaves the property as it is. A reference is set to the component of that
// name that Obj's owner owns; a name that is found no more leaves it.
KV_EXPORT void ReadPropsFromRegistry(QObject *Obj, const QString &Key);

// Obj in binary or text form (WriteObjToStream, WriteObjToTextStream) as the long value Name.
// The old value is replaced only once Obj was written whole. Nothing for null.
KV_EXPORT void WriteObjToRegistry(const QString &Name, QObject *Obj);
KV_EXPORT void WriteObjTextToRegistry(const QString &Name, QObject *Obj);
// Reads Obj from the long value Name when it holds data; nothing otherwise. Raises
// kv::Exception for data that is not such a stream.
KV_EXPORT void ReadObjFromRegistry(const QString &Name, QObject *Obj);
KV_EXPORT void ReadObjTextFromRegistry(const QString &Name, QObject *Obj);

// The option objects' storage that unit ideSystem installs when it starts: the settings store
// through ReadPropsFromRegistry / WritePropsToRegistry under the option's key, or, when
// StoreOptionsInFile is set, the INI file OptionsFileName. Saving writes the file at once.
KV_EXPORT IOptionStorage *RegistryOptionStorage();

} // namespace kv
