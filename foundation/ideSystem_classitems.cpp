#include "foundation/ideSystem_classitems.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_messages.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvRegistryHolder_p.h"
#include "platform/kvException.h"

namespace kv {

TClassItem *TClassItems::RegisterClass(const QMetaObject *Class, TClassItemCats Cats)
{
    if (!Class)
        throw Exception(LoadStr(SErrNilRegistration).arg(QStringLiteral("RegisterClass")));
    TClassItem *item = ItemOfClass(Class);
    if (!item) {
        item = Add();
        item->Class = Class;
    }
    item->Cats |= Cats;
    return item;
}

TClassItem *TClassItems::ItemOfClass(const QMetaObject *Class) const
{
    for (qsizetype i = 0; i < Count(); ++i) {
        if (Items(i)->Class == Class)
            return Items(i);
    }
    return nullptr;
}

QList<const QMetaObject *> TClassItems::ListFieldClasses() const
{
    QList<const QMetaObject *> classes;
    for (qsizetype i = 0; i < Count(); ++i) {
        if (Items(i)->Cats.testFlag(icField))
            classes.append(Items(i)->Class);
    }
    return classes;
}

bool TClassItems::IsIconClass(const QMetaObject *Class) const
{
    if (!Class)
        return true;
    for (qsizetype i = 0; i < Count(); ++i) {
        const TClassItem *item = Items(i);
        if (Class->inherits(item->Class))
            return !item->Cats.testFlag(icNoIcon);
    }
    return true;
}

namespace {

void AddCategory(const QList<const QMetaObject *> &Classes, TClassItemCats Cats)
{
    TClassItems &items = ClassItems();
    for (const QMetaObject *cls : Classes)
        items.RegisterClass(cls, Cats);
}

} // namespace

TClassItems &ClassItems()
{
    return detail::LazyRegistry<TClassItems>();
}

void FinalizeClassItems()
{
    detail::RegistryHolder<TClassItems>().reset();
}

bool IsIconClass(const QMetaObject *Class)
{
    return ClassItems().IsIconClass(Class);
}

void RegisterComponents(const QString &Page, const QList<const QMetaObject *> &Classes)
{
    bool any = false;
    try {
        TClassItems &items = ClassItems();
        for (const QMetaObject *cls : Classes) {
            if (!cls)
                throw Exception(LoadStr(SErrNilRegistration).arg(QStringLiteral("RegisterComponents")));
            kv::RegisterClass(cls);
            TClassItem *item = items.RegisterClass(cls, icShowinPalette);
            if (item->Page.isEmpty())
                item->Page = Page;
            any = true;
        }
    } catch (...) {
        // The palette still learns of the classes registered before the failure.
        if (any)
            Guarded([] { SimpleBroadCast(CM_REGISTERCOMPS); });
        throw;
    }
    if (any)
        SimpleBroadCast(CM_REGISTERCOMPS);
}

void RegisterNoIcon(const QList<const QMetaObject *> &Classes)
{
    AddCategory(Classes, icNoIcon);
}

void RegisterNonActiveX(const QList<const QMetaObject *> &Classes)
{
    AddCategory(Classes, icNonActiveX);
}

void RegisterNonQuillon(const QList<const QMetaObject *> &Classes)
{
    AddCategory(Classes, icNoIcon);
}

bool SafeRegisterClass(const QMetaObject *Class)
{
    if (!Class)
        throw Exception(LoadStr(SErrNilRegistration).arg(QStringLiteral("SafeRegisterClass")));
    if (GetClass(StreamClassName(Class)))
        return false;
    kv::RegisterClass(Class);
    return true;
}

void SafeRegisterClasses(const QList<const QMetaObject *> &Classes)
{
    for (const QMetaObject *cls : Classes)
        SafeRegisterClass(cls);
}

} // namespace kv
