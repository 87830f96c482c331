#include "foundation/ideLib_sortedlist.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"

#include <algorithm>
#include <functional>
#include <typeinfo>

namespace kv {

namespace {

[[noreturn]] void RaiseListError(const char *message, qsizetype value)
{
    throw Exception(LoadStr(message).arg(value));
}

// Whether the list's comparisons are the inherited address order: true exactly for the
// classes of this unit that override neither, whatever a descendant might do.
bool KeepsAddressOrder(const TCustomSortedList &list)
{
    const std::type_info &type = typeid(list);
    return type == typeid(TSortedList) || type == typeid(TSortedListEx)
        || type == typeid(TCustomSortedList);
}

// The search loop of InternalFind, stopping at a match, with the address comparison
// inlined.
qsizetype FindAddressStopping(void *const *items, qsizetype count, const void *value)
{
    const std::less<const void *> less;
    qsizetype low = 0;
    qsizetype high = count - 1;
    while (low <= high) {
        const qsizetype probe = qsizetype(size_t(low + high) >> 1);
        if (items[probe] == value)
            return probe;
        if (less(items[probe], value))
            low = probe + 1;
        else
            high = probe - 1;
    }
    return low;
}

// What InternalFind gives for a list in address order. Unless a search that stops at a
// match meets a run of several equal items, that is the lowest index of the run or the
// insertion point, which std::lower_bound finds as fast as the standard containers do; in
// that one case the loop itself decides which item of the run it reports.
bool FindAddress(void *const *items, qsizetype count, const void *value, bool stopAtMatch,
                 qsizetype &index)
{
    void *const *first = std::lower_bound(items, items + count, value, std::less<const void *>());
    index = first - items;
    const bool found = index < count && *first == value;
    if (found && stopAtMatch && index + 1 < count && items[index + 1] == value)
        index = FindAddressStopping(items, count, value);
    return found;
}

// The binary search of InternalFind, which the list's own lookups call directly rather
// than through the exported member.
bool Search(const TCustomSortedList &list, const void *value, qsizetype &index,
            TCustomSortedList::TListCompare compare)
{
    // Read through the const data pointer: the search must never make the array detach.
    void *const *items = list.List().constData();
    const qsizetype count = list.Count();
    const bool stopAtMatch = list.Duplicates() != dupAccept;
    // Plain pointer lists are searched without a call per probe.
    if ((compare == &TCustomSortedList::Compare || compare == &TCustomSortedList::CompareWithKey)
        && KeepsAddressOrder(list))
        return FindAddress(items, count, value, stopAtMatch, index);
    bool found = false;
    qsizetype low = 0;
    qsizetype high = count - 1;
    while (low <= high) {
        const qsizetype probe = qsizetype(size_t(low + high) >> 1);
        const int order = (list.*compare)(items[probe], value);
        if (order < 0) {
            low = probe + 1;
        } else {
            high = probe - 1;
            if (order == 0) {
                found = true;
                if (stopAtMatch)
                    low = probe; // ends the loop at this match
            }
        }
    }
    index = low;
    return found;
}

} // namespace

TCustomSortedList::TCustomSortedList() = default;

TCustomSortedList::~TCustomSortedList() = default;

int TCustomSortedList::CompareWithKey(const void *Item, const void *Key) const
{
    return Compare(Item, Key);
}

int TCustomSortedList::Compare(const void *Item1, const void *Item2) const
{
    return ComparePointers(Item1, Item2);
}

qsizetype TCustomSortedList::Add(void *Item)
{
    if (!m_sorted) {
        m_items.append(Item);
        return m_items.size() - 1;
    }
    qsizetype index = 0;
    if (Search(*this, Item, index, &TCustomSortedList::Compare)) {
        switch (m_duplicates) {
        case dupIgnore:
            return index;
        case dupError:
            throw Exception(LoadStr(SErrDuplicateItem));
        case dupAccept:
            break;
        }
    }
    if (index == m_items.size())
        m_items.append(Item); // QList's insert is slower at the end than append
    else
        m_items.insert(index, Item);
    return index;
}

void TCustomSortedList::Insert(qsizetype Index, void *Item)
{
    if (m_sorted) {
        Add(Item);
        return;
    }
    if (Index < 0 || Index > m_items.size())
        RaiseListError(SListIndexError, Index);
    m_items.insert(Index, Item);
}

void TCustomSortedList::Delete(qsizetype Index)
{
    CheckIndex(Index);
    m_items.remove(Index);
}

qsizetype TCustomSortedList::Remove(const void *Item)
{
    qsizetype index = -1;
    if (!Find(Item, index))
        return -1;
    Delete(index);
    return index;
}

void TCustomSortedList::Clear()
{
    m_items.clear();
}

bool TCustomSortedList::Find(const void *Item, qsizetype &Index) const
{
    if (m_sorted)
        return Search(*this, Item, Index, &TCustomSortedList::Compare);
    Index = m_items.indexOf(const_cast<void *>(Item));
    return Index >= 0;
}

bool TCustomSortedList::FindByKey(const void *Key, qsizetype &Index) const
{
    if (m_sorted)
        return Search(*this, Key, Index, &TCustomSortedList::CompareWithKey);
    Index = IndexOfKey(Key);
    return Index >= 0;
}

qsizetype TCustomSortedList::IndexOf(const void *Item) const
{
    qsizetype index = -1;
    return Find(Item, index) ? index : -1;
}

qsizetype TCustomSortedList::IndexOfKey(const void *Key) const
{
    if (m_sorted) {
        qsizetype index = -1;
        return Search(*this, Key, index, &TCustomSortedList::CompareWithKey) ? index : -1;
    }
    const qsizetype count = m_items.size();
    for (qsizetype i = 0; i < count; ++i) {
        if (CompareWithKey(m_items.at(i), Key) == 0)
            return i;
    }
    return -1;
}

void *TCustomSortedList::ItemByKey(const void *Key) const
{
    const qsizetype index = IndexOfKey(Key);
    return index >= 0 ? m_items.at(index) : nullptr;
}

bool TCustomSortedList::InternalFind(const void *Value, qsizetype &Index, TListCompare Compare) const
{
    return Search(*this, Value, Index, Compare);
}

void *TCustomSortedList::Items(qsizetype Index) const
{
    CheckIndex(Index);
    return m_items.at(Index);
}

void TCustomSortedList::SetCount(qsizetype NewCount)
{
    if (NewCount < 0)
        RaiseListError(SListCountError, NewCount);
    // Through Delete, so that a list that owns its items frees what it drops.
    while (m_items.size() > NewCount)
        Delete(m_items.size() - 1);
    if (NewCount > m_items.size())
        m_items.resize(NewCount);
}

void TCustomSortedList::SetCapacity(qsizetype NewCapacity)
{
    if (NewCapacity < m_items.size())
        RaiseListError(SListCapacityError, NewCapacity);
    if (NewCapacity < m_items.capacity())
        m_items.squeeze(); // QList::reserve never shrinks
    m_items.reserve(NewCapacity);
}

void TCustomSortedList::SetSorted(bool Value)
{
    if (Value == m_sorted)
        return;
    if (Value) {
        // Sort a copy so that a comparison that throws leaves the list as it was. A stable
        // sort also never runs off the array when a comparison is inconsistent.
        TFastList sorted = m_items;
        std::stable_sort(sorted.begin(), sorted.end(), [this](const void *a, const void *b) {
            return Compare(a, b) < 0;
        });
        m_items = std::move(sorted);
    }
    m_sorted = Value;
}

void TCustomSortedList::CheckIndex(qsizetype Index) const
{
    CheckListIndex(Index, m_items.size());
}

TSortedList::~TSortedList() = default;

TSortedKeyList::~TSortedKeyList() = default;

const void *TSortedKeyList::KeyByItem(const void *Item) const
{
    return Item;
}

int TSortedKeyList::CompareWithKey(const void *Item, const void *Key) const
{
    return ComparePointers(KeyByItem(Item), Key);
}

int TSortedKeyList::Compare(const void *Item1, const void *Item2) const
{
    const void *key2 = KeyByItem(Item2);
    return ComparePointers(KeyByItem(Item1), key2);
}

TSortedListEx::~TSortedListEx() = default;

bool TSortedListEx::FindNearest(const void *Item, qsizetype &Index)
{
    if (!Sorted()) {
        m_lastProbeIndex = -1;
        return Find(Item, Index);
    }
    return InternalFindNearest(Item, Index, &TCustomSortedList::Compare);
}

bool TSortedListEx::InternalFindNearest(const void *Value, qsizetype &Index, TListCompare Compare)
{
    m_lastProbeIndex = -1;
    void *const *items = List().constData();
    qsizetype low = 0;
    qsizetype high = Count() - 1;
    if (high < 0) {
        Index = 0;
        return false;
    }
    bool found = false;
    for (;;) {
        const qsizetype probe = qsizetype(size_t(low + high) >> 1);
        m_lastProbeIndex = probe;
        const int order = (this->*Compare)(items[probe], Value);
        if (order < 0) {
            low = probe;
        } else {
            high = probe;
            if (order == 0) {
                found = true;
                low = probe;
                break;
            }
        }
        if (high - low <= 1)
            break;
    }
    Index = low;
    return found;
}

} // namespace kv
