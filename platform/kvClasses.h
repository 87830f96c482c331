#pragma once

#include "kv_export.h"

// The platform class registry: a stream class name maps to a class (its QMetaObject) and a
// factory that creates an object of that class for an owner. Streams, editors and the
// palette find classes here by name. Registration happens in start procedures; names
// compare ignoring case.

#include <QObject>
#include <QString>

#include <functional>
#include <initializer_list>
#include <type_traits>

class QWidget;

namespace kv {

// Creates an object whose Qt parent is the owner (none for a null owner, and then the
// caller owns the object).
using TObjectFactory = std::function<QObject *(QObject *Owner)>;

// The name under which streams know a class: its class name without namespaces
// ("kv::TKVTreeView" is "TKVTreeView").
KV_EXPORT QString StreamClassName(const QMetaObject *Class);

// Registers Class under Name (StreamClassName(Class) when empty). Without a factory, objects are
// created through an invokable constructor (Q_INVOKABLE) taking the parent as QWidget* or
// QObject*, if the class has one. Registering a class again is harmless (a factory given
// now fills in a missing one); a name that belongs to another class raises kv::Exception.
KV_EXPORT void RegisterClass(const QMetaObject *Class, TObjectFactory Factory = {}, const QString &Name = {});
KV_EXPORT void RegisterClasses(std::initializer_list<const QMetaObject *> Classes);

// Forgets every name of Class and its factory. Nothing for a class not registered.
KV_EXPORT void UnRegisterClass(const QMetaObject *Class);

// The class registered under Name, or null.
KV_EXPORT const QMetaObject *GetClass(const QString &Name);
// The same, but an unknown name raises kv::Exception (SClassNotFound).
KV_EXPORT const QMetaObject *FindClass(const QString &Name);

// A new object of a registered class, owned by Owner. A widget class gets Owner as its
// parent widget and so needs a widget (or null) owner. Raises kv::Exception for an unknown
// class, a class without a factory or a widget class with a non-widget owner.
KV_EXPORT QObject *CreateObject(const QString &Name, QObject *Owner);
KV_EXPORT QObject *CreateObject(const QMetaObject *Class, QObject *Owner);

namespace detail {
// Owner as a widget parent for a widget of class Class; raises when Owner is not a widget.
KV_EXPORT QWidget *WidgetOwner(QObject *Owner, const QMetaObject *Class);

template <typename T>
KV_EXPORT QObject *CreateForOwner(QObject *Owner)
{
    if constexpr (std::is_base_of_v<QWidget, T>)
        return new T(WidgetOwner(Owner, &T::staticMetaObject));
    else
        return new T(Owner);
}
} // namespace detail

// Registers a QObject class with a factory calling its constructor that takes the parent
// (QWidget* for widgets, QObject* for the rest).
template <typename T>
void RegisterClass(const QString &Name = {})
{
    static_assert(std::is_base_of_v<QObject, T>, "only QObject classes can be registered");
    // Without Q_OBJECT the class would be registered as its base class.
    static_assert(QtPrivate::HasQ_OBJECT_Macro<T>::Value, "the class needs the Q_OBJECT macro");
    if constexpr (std::is_base_of_v<QWidget, T>)
        static_assert(std::is_constructible_v<T, QWidget *>, "a widget class needs a constructor taking its parent QWidget*");
    else
        static_assert(std::is_constructible_v<T, QObject *>, "a class needs a constructor taking its parent QObject*");
    RegisterClass(&T::staticMetaObject, &detail::CreateForOwner<T>, Name);
}

template <typename... T>
void RegisterClasses()
{
    (RegisterClass<T>(), ...);
}

} // namespace kv
