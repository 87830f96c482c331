#pragma once

#include "kv_export.h"

// The object parameter registry: classes and objects registered with named values and
// found again by class relationship and values. Verbs, control binders, option classes and
// tree sources are registered here, so that units find each other's classes and procedures
// without referring to them. User-interface thread only.

#include "foundation/ideSystem_inotifier.h"
#include "foundation/ideSystem_objparamitem.h"

#include <QList>
#include <QVariant>

#include <functional>
#include <memory>

namespace kv {

// Called for each entry by ForEveryClass with the caller's Params; setting Finish ends the
// walk, whose result is what the last call returned.
using TObjectParamListIterator =
    std::function<QVariant(TObjectParamListItem *Item, const QVariant &Params, bool &Finish)>;

// The process-wide registry (ObjectParamList()). Entries keep their registration order.
// A parameter set matches an entry when, for every given name, the entry's value for that
// name is of the same kind as the given value and equal to it: strings under the compare
// modes, other values exactly. An entry without the name has a null value there, which
// matches only a null given value.
//
// Entries of a freed editor group are dropped before observers hear of it (see
// FreeEditorGroup). Entries of an object go when the object is destroyed.
class KV_EXPORT TObjectParamList final : public INotifier
{
public:
    TObjectParamList();
    ~TObjectParamList();
    TObjectParamList(const TObjectParamList &) = delete;
    TObjectParamList &operator=(const TObjectParamList &) = delete;

    // Appends an entry for Class (or Obj), stamped with the current editor group. Raises
    // kv::Exception for a null class or object.
    TObjectParamListItem *RegisterClassExt(const QMetaObject *Class, const TObjectParams &Params);
    TObjectParamListItem *RegisterObjectEx(QObject *Obj, const TObjectParams &Params);
    // Frees every entry registered for Ptr, a class or an object.
    void UnRegisterClassExt(const void *Ptr);
    // Frees every entry stamped with Group.
    void DeleteGroup(int Group);
    void Clear();

    qsizetype Count() const;
    TObjectParamListItem *Items(qsizetype Index) const;
    // The first entry registered for Ptr, or null.
    TObjectParamListItem *ItemByDataPtr(const void *Ptr) const;

    // The first class entry, in registration order, whose class is Class or descends from it
    // and whose parameters match.
    TObjectParamListItem *GetItemEx(const QMetaObject *Class, const TObjectParams &Params = {},
                                    TCompareParams Compare = {}) const;
    // Every such entry, in registration order.
    QList<TObjectParamListItem *> GetItemsEx(const QMetaObject *Class, const TObjectParams &Params = {},
                                             TCompareParams Compare = {}) const;
    // The first class entry whose class is Class or one of its ancestors.
    TObjectParamListItem *GetItemInherited(const QMetaObject *Class, const TObjectParams &Params = {},
                                           TCompareParams Compare = {}) const;
    // The first class entry whose class is exactly Class.
    TObjectParamListItem *GetItemEqual(const QMetaObject *Class, const TObjectParams &Params = {},
                                       TCompareParams Compare = {}) const;
    // GetItemEx for Class, then for its parent, and so on up to and including StopClass (or
    // to the root when StopClass is not an ancestor of Class).
    TObjectParamListItem *GetItemExParent(const QMetaObject *Class, const QMetaObject *StopClass,
                                          const TObjectParams &Params = {},
                                          TCompareParams Compare = {}) const;
    // The distinct classes of the class entries of Class and its descendants, in the order of
    // their first registration.
    QList<const QMetaObject *> GetRegisteredClasses(const QMetaObject *Class) const;

    // Calls Iterator for every class entry of Class or a descendant, in registration order,
    // until it sets Finish. Entries registered meanwhile are not visited; entries freed
    // meanwhile are skipped. Returns the last result (null when nothing was visited).
    QVariant ForEveryClass(const QMetaObject *Class, const QVariant &Params,
                           const TObjectParamListIterator &Iterator);

    void Dispatch(TMessage &Message) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

// Created on first use; FinalizeObjectParamList frees every entry.
KV_EXPORT TObjectParamList &ObjectParamList();
KV_EXPORT void FinalizeObjectParamList();

// The registry's operations on ObjectParamList().
KV_EXPORT TObjectParamListItem *RegisterClassExt(const QMetaObject *Class, const TObjectParams &Params);
KV_EXPORT TObjectParamListItem *RegisterObjectEx(QObject *Obj, const TObjectParams &Params);
KV_EXPORT void UnRegisterClassExt(const void *Ptr);
KV_EXPORT TObjectParamListItem *GetItemEx(const QMetaObject *Class, const TObjectParams &Params = {},
                                TCompareParams Compare = {});
KV_EXPORT QList<TObjectParamListItem *> GetItemsEx(const QMetaObject *Class, const TObjectParams &Params = {},
                                         TCompareParams Compare = {});
KV_EXPORT const QMetaObject *GetClassEx(const QMetaObject *Class, const TObjectParams &Params = {},
                              TCompareParams Compare = {});
KV_EXPORT TObjectParamListItem *GetItemInherited(const QMetaObject *Class, const TObjectParams &Params = {},
                                       TCompareParams Compare = {});
KV_EXPORT const QMetaObject *GetClassInherited(const QMetaObject *Class, const TObjectParams &Params = {},
                                     TCompareParams Compare = {});
KV_EXPORT TObjectParamListItem *GetItemEqual(const QMetaObject *Class, const TObjectParams &Params = {},
                                   TCompareParams Compare = {});
KV_EXPORT TObjectParamListItem *GetItemExParent(const QMetaObject *Class, const QMetaObject *StopClass,
                                      const TObjectParams &Params = {}, TCompareParams Compare = {});
KV_EXPORT QList<const QMetaObject *> GetRegisteredClasses(const QMetaObject *Class);

} // namespace kv
