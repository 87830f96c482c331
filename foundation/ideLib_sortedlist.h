#pragma once

#include "kv_export.h"

// Pointer lists kept in the order of a virtual comparison and searched by halving. The
// rest of the library derives small lists from TSortedList and overrides Compare and
// CompareWithKey; a list that keys its items by a pointer or a number only overrides
// KeyByItem of TSortedKeyList.

#include <QList>
#include <QtGlobal>

#include <compare>

namespace kv {

// The item array. QList<void*> releases its storage without visiting the items.
using TFastList = QList<void *>;

enum TDuplicates : quint8 { dupIgnore = 0, dupAccept = 1, dupError = 2 };

// -1, 0 or 1 as a three-way result. Pointers are ordered as unsigned addresses; never
// subtract them, the difference of two far-apart addresses does not fit an int.
constexpr int OrderToInt(std::strong_ordering order) noexcept
{
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

inline int ComparePointers(const void *A, const void *B) noexcept
{
    return OrderToInt(std::compare_three_way{}(A, B));
}

// Items are untyped pointers that the list never frees (descendants that own their items
// say so through OwnsItems). While Sorted is set, the items are in non-decreasing order of
// Compare, and CompareWithKey must agree with that order.
class KV_EXPORT TCustomSortedList
{
public:
    // The comparison a search runs with: the item first, the sought value second. A
    // descendant passes a comparison of its own as static_cast<TListCompare>(&Class::Method).
    using TListCompare = int (TCustomSortedList::*)(const void *Item, const void *Value) const;

    TCustomSortedList();
    virtual ~TCustomSortedList();

    TCustomSortedList(const TCustomSortedList &) = delete;
    TCustomSortedList &operator=(const TCustomSortedList &) = delete;

    // Compares an item with a key; by default as Compare(Item, Key).
    virtual int CompareWithKey(const void *Item, const void *Key) const;
    // Compares two items; by default by address.
    virtual int Compare(const void *Item1, const void *Item2) const;

    // Sorted: inserts where the order wants it and returns that index; an item equal to
    // one present is handled by Duplicates (dupIgnore returns the present item's index).
    // Unsorted: appends.
    qsizetype Add(void *Item);
    // On a sorted list the same as Add (Index is ignored); otherwise inserts at Index.
    void Insert(qsizetype Index, void *Item);
    // Takes the item at Index out of the list.
    virtual void Delete(qsizetype Index);
    // Deletes the item that Find finds; returns its index, or -1.
    qsizetype Remove(const void *Item);
    // Empties the list; a list that owns its items frees them.
    virtual void Clear();

    // Sorted: searches by Compare; unsorted: looks for the identical pointer (Index is -1
    // when absent). Absent from a sorted list, Index is where the item would go.
    bool Find(const void *Item, qsizetype &Index) const;
    // Sorted: searches by CompareWithKey; unsorted: Index is IndexOfKey(Key).
    bool FindByKey(const void *Key, qsizetype &Index) const;
    qsizetype IndexOf(const void *Item) const;
    // Unsorted lists give the lowest index whose item matches Key.
    qsizetype IndexOfKey(const void *Key) const;
    // The item at IndexOfKey(Key), or nullptr.
    virtual void *ItemByKey(const void *Key) const;

    // Binary search with the given comparison. Unless Duplicates is dupAccept it stops at
    // the first equal item it meets; with dupAccept Index ends at the lowest of the equal
    // run. When nothing is found, Index is the insertion point that keeps the order.
    bool InternalFind(const void *Value, qsizetype &Index, TListCompare Compare) const;

    void *Items(qsizetype Index) const;
    qsizetype Count() const { return m_items.size(); }
    // Growing appends null items; shrinking deletes the surplus from the end through Delete.
    void SetCount(qsizetype NewCount);
    qsizetype Capacity() const { return m_items.capacity(); }
    // Reserves room for NewCapacity items; less than Count raises an error.
    void SetCapacity(qsizetype NewCapacity);

    bool Sorted() const { return m_sorted; }
    // Turning the flag on sorts the items by Compare (equal items keep their relative
    // order, duplicates stay); turning it off keeps the order as it is.
    void SetSorted(bool Value);

    // Applies to later additions only.
    TDuplicates Duplicates() const { return m_duplicates; }
    void SetDuplicates(TDuplicates Value) { m_duplicates = Value; }

    // True when removing an item through Delete also frees it.
    virtual bool OwnsItems() const { return false; }

    // The items, read-only, for iteration.
    const TFastList &List() const { return m_items; }

protected:
    void CheckIndex(qsizetype Index) const;

private:
    TFastList m_items;
    TDuplicates m_duplicates = dupIgnore;
    bool m_sorted = true;
};

class KV_EXPORT TSortedList : public TCustomSortedList
{
public:
    TSortedList() = default;
    ~TSortedList() override;
};

// Items compared through their keys: a list that keys by a pointer or a number only
// overrides KeyByItem.
class KV_EXPORT TSortedKeyList : public TSortedList
{
public:
    TSortedKeyList() = default;
    ~TSortedKeyList() override;

    // The item's key; by default the item itself.
    virtual const void *KeyByItem(const void *Item) const;

    int CompareWithKey(const void *Item, const void *Key) const override;
    int Compare(const void *Item1, const void *Item2) const override;
};

// Adds a bracketing search that reports how far it got.
class KV_EXPORT TSortedListEx : public TSortedList
{
public:
    TSortedListEx() = default;
    ~TSortedListEx() override;

    // Sorted: halves the list by Compare until the bracket is two items wide. Index is the
    // exact match or the lower end of the last bracket, whose upper end is never compared.
    // Unsorted: the identity search of Find.
    bool FindNearest(const void *Item, qsizetype &Index);
    bool InternalFindNearest(const void *Value, qsizetype &Index, TListCompare Compare);

    // The index of the last item FindNearest compared; -1 when it compared none.
    qsizetype LastProbeIndex() const { return m_lastProbeIndex; }

private:
    qsizetype m_lastProbeIndex = -1;
};

} // namespace kv
