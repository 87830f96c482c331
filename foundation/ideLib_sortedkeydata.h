#pragma once

#include "kv_export.h"

// Keyed lists that own their items: one record object per key, created by the list from
// an item class and freed when it leaves the list.

#include "foundation/ideLib_sortedlist.h"
#include "shell/ideHook.h"

#include <memory>
#include <type_traits>

class QObject;

namespace kv {

// A record that carries one key.
class KV_EXPORT TSortedCustomData : public TPlainObject
{
public:
    explicit TSortedCustomData(const void *Key) : m_key(Key) {}
    TSortedCustomData(const TSortedCustomData &) = delete;
    TSortedCustomData &operator=(const TSortedCustomData &) = delete;

    const void *Key() const { return m_key; }

private:
    const void *m_key;
};

// A record with a key and a data pointer that the user of the list fills in.
class KV_EXPORT TSortedListData : public TSortedCustomData
{
public:
    using TSortedCustomData::TSortedCustomData;

    void *Data() const { return m_data; }
    void SetData(void *Value) { m_data = Value; }

private:
    void *m_data = nullptr;
};

// The item class of a key-data list: makes one record for a key.
using TSortedDataClass = std::unique_ptr<TSortedCustomData> (*)(const void *Key);

template <class T>
KV_EXPORT std::unique_ptr<TSortedCustomData> CreateSortedData(const void *Key)
{
    static_assert(std::is_base_of_v<TSortedCustomData, T>,
                  "the items of a key-data list are TSortedCustomData descendants");
    return std::make_unique<T>(Key);
}

// The item class of T, for any descendant of TSortedCustomData.
template <class T>
inline constexpr TSortedDataClass SortedDataClassOf = &CreateSortedData<T>;

// Owns its items from Add until Delete, Clear or destruction.
class KV_EXPORT TSortedKeyDataList : public TSortedKeyList
{
public:
    // A null ItemClass stands for TSortedListData.
    explicit TSortedKeyDataList(TSortedDataClass ItemClass = SortedDataClassOf<TSortedListData>);
    ~TSortedKeyDataList() override;

    TSortedDataClass ItemClass() const { return m_itemClass; }

    // Creates a record for Key, stores it and returns it. When an item with that key is
    // present and Duplicates is dupIgnore, the new record is dropped and the present one
    // returned; with dupError the new record is freed again and an exception raised.
    virtual TSortedCustomData *Add(const void *Key);
    // Frees the record at Index after taking it out of the list.
    void Delete(qsizetype Index) override;
    void Clear() override;
    bool OwnsItems() const override { return true; }

    // The Data of the record for Key when the records are TSortedListData; otherwise, or
    // when Key is absent, nullptr.
    void *ItemByKey(const void *Key) const override;
    const void *KeyByItem(const void *Item) const override;

    // The record at Index.
    TSortedCustomData *DataItems(qsizetype Index) const;

private:
    TSortedDataClass m_itemClass;
};

// Keys are objects: an item leaves the list by itself when its key object is destroyed.
class KV_EXPORT TSortedCompKeyList : public TSortedKeyDataList
{
public:
    explicit TSortedCompKeyList(TSortedDataClass ItemClass = SortedDataClassOf<TSortedListData>);
    ~TSortedCompKeyList() override;

    TSortedCustomData *Add(const QObject *Key);
    void Delete(qsizetype Index) override;

protected:
    // Key must be a QObject's address. Callers of this class go through the QObject
    // overload, so that nothing else is watched as an object.
    TSortedCustomData *Add(const void *Key) override;
    // Key object Sender is being destroyed: every item keyed by it leaves the list.
    virtual void Notification(const void *Sender);

private:
    TFreeNotifyMethod NotifyMethod();
    // Whether an item other than the one at index Except has exactly Key: a key object is
    // watched once however many items it keys.
    bool HoldsKey(const void *Key, qsizetype Except) const;
};

} // namespace kv
