#pragma once

#include "kv_export.h"

// The popup, edit and edit-source class registries from which in-place editing picks the
// popup and the inner editor for a property. User-interface thread only.

#include "foundation/ideSystem_packaged.h"
#include "platform/kvClasses.h"

#include <QMetaType>
#include <QString>

namespace kv {

// A popup class registered for properties of a type, of a component class, of a name.
class KV_EXPORT TPopupClassInfo : public TPackagedCollectionItem
{
public:
    const QMetaObject *PopupClass = nullptr;
    QMetaType PropertyType;
    QString PropertyName;
    const QMetaObject *ComponentClass = nullptr;

    // The same four values; property names compare ignoring case.
    bool Equals(QMetaType Type, const QMetaObject *Component, const QString &Name,
                const QMetaObject *Class) const;
};

// An inner-editor class, in PopupClass, and whether it edits the value as text.
class KV_EXPORT TEditClassInfo : public TPopupClassInfo
{
public:
    const QMetaObject *EditClass() const { return PopupClass; }

    bool TextEdit = false;
};

class KV_EXPORT TEditSourceClassInfo : public TPackagedCollectionItem
{
public:
    const QMetaObject *EditSourceClass = nullptr;
};

using TPopupClasses = TPackagedCollectionOf<TPopupClassInfo>;
using TEditClasses = TPackagedCollectionOf<TEditClassInfo>;
using TEditSourceClasses = TPackagedCollectionOf<TEditSourceClassInfo>;

// Each created on first use; FinalizeEditClasses frees the three.
KV_EXPORT TPopupClasses &PopupClasses();
KV_EXPORT TEditClasses &EditClasses();
KV_EXPORT TEditSourceClasses &EditSourceClasses();
KV_EXPORT void FinalizeEditClasses();

// Adds an entry and registers the popup or edit class with the platform class registry
// (the template forms with a factory calling the class's constructor). Raises
// kv::Exception for a null class, or when the class's stream name belongs to another class;
// then nothing is added.
KV_EXPORT TPopupClassInfo *RegisterPopupClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                                    const QString &PropertyName, const QMetaObject *PopupClass);
KV_EXPORT TEditClassInfo *RegisterEditClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                                  const QString &PropertyName, const QMetaObject *EditClass);
// As RegisterEditClass, for an editor that edits the value as text.
KV_EXPORT TEditClassInfo *RegisterTextEditClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                                      const QString &PropertyName, const QMetaObject *EditClass);

template <typename T>
TPopupClassInfo *RegisterPopupClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                                    const QString &PropertyName)
{
    kv::RegisterClass<T>();
    return RegisterPopupClass(PropertyType, ComponentClass, PropertyName, &T::staticMetaObject);
}
template <typename T>
TEditClassInfo *RegisterEditClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                                  const QString &PropertyName)
{
    kv::RegisterClass<T>();
    return RegisterEditClass(PropertyType, ComponentClass, PropertyName, &T::staticMetaObject);
}
template <typename T>
TEditClassInfo *RegisterTextEditClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                                      const QString &PropertyName)
{
    kv::RegisterClass<T>();
    return RegisterTextEditClass(PropertyType, ComponentClass, PropertyName, &T::staticMetaObject);
}

// Free the first entry equal in all four values; true when there was one. The class stays
// registered with the platform class registry.
KV_EXPORT bool UnRegisterPopupClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                          const QString &PropertyName, const QMetaObject *PopupClass);
KV_EXPORT bool UnRegisterEditClass(QMetaType PropertyType, const QMetaObject *ComponentClass,
                         const QString &PropertyName, const QMetaObject *EditClass);

// Adds an edit-source entry. Raises kv::Exception for a null class.
KV_EXPORT TEditSourceClassInfo *RegisterEditSource(const QMetaObject *Class);

// Whether some edit entry of Class edits as text.
KV_EXPORT bool IsTextEditClass(const QMetaObject *Class);

} // namespace kv
