#pragma once

#include "kv_export.h"

// The class items: every component class registered for the palette, with its categories
// and page, and the component registration that fills them. User-interface thread only.

#include "foundation/ideSystem_packaged.h"
#include "platform/kvClasses.h"

#include <QFlags>
#include <QList>
#include <QString>

namespace kv {

// The platform's bit order, so that saved masks keep their meaning.
enum TClassItemCat {
    icNonActiveX = 0x1,
    icField = 0x2,
    icNoIcon = 0x4,
    icShowinPalette = 0x8,
};
Q_DECLARE_FLAGS(TClassItemCats, TClassItemCat)
Q_DECLARE_OPERATORS_FOR_FLAGS(TClassItemCats)

class KV_EXPORT TClassItem : public TPackagedCollectionItem
{
public:
    const QMetaObject *Class = nullptr;
    TClassItemCats Cats;
    QString Page; // the palette page; empty until a registration names one
};

class KV_EXPORT TClassItems : public TPackagedCollectionOf<TClassItem>
{
public:
    // The item of Class (added when there is none) with Cats added to its categories.
    // Raises kv::Exception for a null class.
    TClassItem *RegisterClass(const QMetaObject *Class, TClassItemCats Cats);
    // The first item of Class, or null.
    TClassItem *ItemOfClass(const QMetaObject *Class) const;
    // The classes of the items with icField, in item order.
    QList<const QMetaObject *> ListFieldClasses() const;
    // Decided by the first item, in item order, whose class is Class or an ancestor of it:
    // true unless that item has icNoIcon; true when there is no such item.
    bool IsIconClass(const QMetaObject *Class) const;
};

// Created on first use; FinalizeClassItems frees it.
KV_EXPORT TClassItems &ClassItems();
KV_EXPORT void FinalizeClassItems();

KV_EXPORT bool IsIconClass(const QMetaObject *Class);

// Component registration for the palette. Each class is registered with the platform class
// registry (the template forms with a factory calling the class's constructor) and gets
// icShowinPalette; Page becomes its page unless it has one already. Then, when any class was
// registered, CM_REGISTERCOMPS is broadcast, also when a registration failed part way (the
// exception then passes on), so that the palette shows whatever was registered. Raises
// kv::Exception for a null class.
KV_EXPORT void RegisterComponents(const QString &Page, const QList<const QMetaObject *> &Classes);
template <typename... T>
void RegisterComponents(const QString &Page)
{
    (kv::RegisterClass<T>(), ...);
    RegisterComponents(Page, {&T::staticMetaObject...});
}
// icNoIcon for each class: the palette shows no icon for it.
KV_EXPORT void RegisterNoIcon(const QList<const QMetaObject *> &Classes);
// icNonActiveX for each class.
KV_EXPORT void RegisterNonActiveX(const QList<const QMetaObject *> &Classes);
// icNoIcon as well: classes that the stand-alone palette leaves out.
KV_EXPORT void RegisterNonQuillon(const QList<const QMetaObject *> &Classes);

// Registers Class with the platform class registry unless a class of its stream name is
// registered already (which is then left alone); true when it registered it now.
KV_EXPORT bool SafeRegisterClass(const QMetaObject *Class);
KV_EXPORT void SafeRegisterClasses(const QList<const QMetaObject *> &Classes);
template <typename T>
bool SafeRegisterClass()
{
    if (GetClass(StreamClassName(&T::staticMetaObject)))
        return false;
    kv::RegisterClass<T>();
    return true;
}

} // namespace kv
