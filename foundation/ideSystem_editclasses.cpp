#include "foundation/ideSystem_editclasses.h"

#include "foundation/ideConsts.h"
#include "platform/kvRegistryHolder_p.h"
#include "platform/kvException.h"

namespace kv {

bool TPopupClassInfo::Equals(QMetaType Type, const QMetaObject *Component, const QString &Name,
                             const QMetaObject *Class) const
{
    return PropertyType == Type && ComponentClass == Component && PopupClass == Class
           && PropertyName.compare(Name, Qt::CaseInsensitive) == 0;
}

namespace {

struct TEditClassRegistries
{
    TPopupClasses popups;
    TEditClasses edits;
    TEditSourceClasses sources;
};

TEditClassRegistries &Registries()
{
    return detail::LazyRegistry<TEditClassRegistries>();
}

void CheckClass(const QMetaObject *Class, const char *Routine)
{
    if (!Class)
        throw Exception(LoadStr(SErrNilRegistration).arg(QLatin1String(Routine)));
}

void Fill(TPopupClassInfo *item, QMetaType PropertyType, const QMetaObject *ComponentClass,
          const QString &PropertyName, const QMetaObject *Class)
{
    item->PopupClass = Class;
    item->PropertyType = PropertyType;
    item->PropertyName = PropertyName;
    item->ComponentClass = ComponentClass;
}

TEditClassInfo *AddEditClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                             const QString &PropertyName, const QMetaObject *EditClass, bool TextEdit,
                             const char *Routine)
{
    CheckClass(EditClass, Routine);
    kv::RegisterClass(EditClass);
    TEditClassInfo *item = EditClasses().Add();
    Fill(item, PropertyType, ComponentClass, PropertyName, EditClass);
    item->TextEdit = TextEdit;
    return item;
}

template <typename Collection>
bool DeleteFirstEqual(Collection &collection, QMetaType PropertyType, const QMetaObject *ComponentClass,
                      const QString &PropertyName, const QMetaObject *Class)
{
    for (qsizetype i = 0; i < collection.Count(); ++i) {
        if (collection.Items(i)->Equals(PropertyType, ComponentClass, PropertyName, Class)) {
            collection.Delete(i);
            return true;
        }
    }
    return false;
}

} // namespace

TPopupClasses &PopupClasses()
{
    return Registries().popups;
}

TEditClasses &EditClasses()
{
    return Registries().edits;
}

TEditSourceClasses &EditSourceClasses()
{
    return Registries().sources;
}

void FinalizeEditClasses()
{
    detail::RegistryHolder<TEditClassRegistries>().reset();
}

TPopupClassInfo *RegisterPopupClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                                    const QString &PropertyName, const QMetaObject *PopupClass)
{
    CheckClass(PopupClass, "RegisterPopupClass");
    kv::RegisterClass(PopupClass);
    TPopupClassInfo *item = PopupClasses().Add();
    Fill(item, PropertyType, ComponentClass, PropertyName, PopupClass);
    return item;
}

TEditClassInfo *RegisterEditClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                                  const QString &PropertyName, const QMetaObject *EditClass)
{
    return AddEditClass(PropertyType, ComponentClass, PropertyName, EditClass, false, "RegisterEditClass");
}

TEditClassInfo *RegisterTextEditClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                                      const QString &PropertyName, const QMetaObject *EditClass)
{
    return AddEditClass(PropertyType, ComponentClass, PropertyName, EditClass, true, "RegisterTextEditClass");
}

bool UnRegisterPopupClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                          const QString &PropertyName, const QMetaObject *PopupClass)
{
    return DeleteFirstEqual(PopupClasses(), PropertyType, ComponentClass, PropertyName, PopupClass);
}

bool UnRegisterEditClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                         const QString &PropertyName, const QMetaObject *EditClass)
{
    return DeleteFirstEqual(EditClasses(), PropertyType, ComponentClass, PropertyName, EditClass);
}

TEditSourceClassInfo *RegisterEditSource(const QMetaObject *Class)
{
    CheckClass(Class, "RegisterEditSource");
    TEditSourceClassInfo *item = EditSourceClasses().Add();
    item->EditSourceClass = Class;
    return item;
}

bool IsTextEditClass(const QMetaObject *Class)
{
    const TEditClasses &edits = EditClasses();
    for (qsizetype i = 0; i < edits.Count(); ++i) {
        if (edits.Items(i)->EditClass() == Class && edits.Items(i)->TextEdit)
            return true;
    }
    return false;
}

} // namespace kv
