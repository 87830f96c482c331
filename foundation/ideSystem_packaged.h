#pragma once

#include "kv_export.h"

// Packaged collections: registries whose entries remember the package and the editor group
// that registered them, and vanish when that group is freed (the package is unloaded).
// User-interface thread only.

#include "foundation/ideSystem_inotifier.h"
#include "platform/kvEditorGroups.h"
#include "shell/ideHook.h"

#include <memory>
#include <type_traits>

namespace kv {

// An entry; descendants add the registered values. A holder that needs to hear of an
// entry's end asks for a free notification.
class KV_EXPORT TPackagedCollectionItem : public TPlainObject
{
public:
    TPackagedCollectionItem() = default;
    TPackagedCollectionItem(const TPackagedCollectionItem &) = delete;
    TPackagedCollectionItem &operator=(const TPackagedCollectionItem &) = delete;

    // The package and the editor group that were current when the entry was added.
    TPackageHandle Package() const { return m_package; }
    int Group() const { return m_group; }

private:
    friend class TPackagedCollection;
    TPackageHandle m_package = 0;
    int m_group = -1;
};

// Makes the entries of one collection: the item class.
using TPackagedItemClass = std::unique_ptr<TPackagedCollectionItem> (*)();

template <typename T>
TPackagedItemClass PackagedItemClass()
{
    static_assert(std::is_base_of_v<TPackagedCollectionItem, T>);
    return [] { return std::unique_ptr<TPackagedCollectionItem>(std::make_unique<T>()); };
}

// Owns its entries, in the order they were added. While it lives it is a notifier and an
// editor-group registry: freeing a group deletes the group's entries, before any other
// notifier hears of it when the group is freed through FreeEditorGroup.
class KV_EXPORT TPackagedCollection : public INotifier
{
public:
    explicit TPackagedCollection(TPackagedItemClass ItemClass);
    virtual ~TPackagedCollection();
    TPackagedCollection(const TPackagedCollection &) = delete;
    TPackagedCollection &operator=(const TPackagedCollection &) = delete;

    // A new last entry stamped with CurrentPackage and CurrentGroup().
    TPackagedCollectionItem *Add();
    // The last entry, or null.
    TPackagedCollectionItem *Last() const;
    qsizetype Count() const;
    // Raises kv::Exception for an index out of range.
    TPackagedCollectionItem *Items(qsizetype Index) const;
    qsizetype IndexOf(const TPackagedCollectionItem *Item) const;

    // Frees one entry; raises kv::Exception for an index out of range.
    void Delete(qsizetype Index);
    // Frees every entry of Group.
    void DeleteItems(int Group);
    void Clear();

    void Dispatch(TMessage &Message) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};

// A packaged collection of one item class, with typed access.
template <typename T>
class TPackagedCollectionOf : public TPackagedCollection
{
public:
    TPackagedCollectionOf() : TPackagedCollection(PackagedItemClass<T>()) {}

    T *Add() { return static_cast<T *>(TPackagedCollection::Add()); }
    T *Last() const { return static_cast<T *>(TPackagedCollection::Last()); }
    T *Items(qsizetype Index) const { return static_cast<T *>(TPackagedCollection::Items(Index)); }
};

} // namespace kv
