#include "foundation/ideLib_sortedkeydata.h"

#include <QObject>

namespace kv {

TSortedKeyDataList::TSortedKeyDataList(TSortedDataClass ItemClass)
    : m_itemClass(ItemClass ? ItemClass : SortedDataClassOf<TSortedListData>)
{
}

TSortedKeyDataList::~TSortedKeyDataList()
{
    // Empty the list before the first record dies, so that nothing its destruction sets
    // off finds a freed record here.
    const TFastList items = List();
    TCustomSortedList::Clear();
    for (void *item : items)
        delete static_cast<TSortedCustomData *>(item);
}

TSortedCustomData *TSortedKeyDataList::Add(const void *Key)
{
    std::unique_ptr<TSortedCustomData> item = m_itemClass(Key);
    if (!item)
        return nullptr;
    // With dupError this raises, and the record dies with the unique_ptr.
    const qsizetype index = TSortedKeyList::Add(item.get());
    TSortedCustomData *stored = DataItems(index);
    if (stored != item.get())
        return stored; // dupIgnore: the record already there is the one for Key
    return item.release();
}

void TSortedKeyDataList::Delete(qsizetype Index)
{
    TSortedCustomData *item = DataItems(Index);
    TSortedKeyList::Delete(Index);
    delete item;
}

void TSortedKeyDataList::Clear()
{
    // From the end, where removal moves nothing; through Delete, so descendants see each.
    while (Count() > 0)
        Delete(Count() - 1);
}

void *TSortedKeyDataList::ItemByKey(const void *Key) const
{
    const qsizetype index = IndexOfKey(Key);
    if (index < 0)
        return nullptr;
    const auto *data = dynamic_cast<const TSortedListData *>(DataItems(index));
    return data ? data->Data() : nullptr;
}

const void *TSortedKeyDataList::KeyByItem(const void *Item) const
{
    // Null items appear only where SetCount grew the list.
    return Item ? static_cast<const TSortedCustomData *>(Item)->Key() : nullptr;
}

TSortedCustomData *TSortedKeyDataList::DataItems(qsizetype Index) const
{
    return static_cast<TSortedCustomData *>(Items(Index));
}

TSortedCompKeyList::TSortedCompKeyList(TSortedDataClass ItemClass)
    : TSortedKeyDataList(ItemClass)
{
}

TSortedCompKeyList::~TSortedCompKeyList()
{
    // Withdraw first: a key object destroyed while the records are being freed must not
    // reach a half-destroyed list.
    const TFreeNotifyMethod method = NotifyMethod();
    for (const void *item : List())
        kvRemoveFreeNotification(static_cast<const QObject *>(KeyByItem(item)), method);
}

TSortedCustomData *TSortedCompKeyList::Add(const QObject *Key)
{
    return Add(static_cast<const void *>(Key));
}

TSortedCustomData *TSortedCompKeyList::Add(const void *Key)
{
    const bool watched = HoldsKey(Key, -1);
    TSortedCustomData *item = TSortedKeyDataList::Add(Key);
    if (item && !watched)
        kvAddFreeNotification(static_cast<const QObject *>(Key), NotifyMethod());
    return item;
}

void TSortedCompKeyList::Delete(qsizetype Index)
{
    const void *key = KeyByItem(Items(Index));
    if (!HoldsKey(key, Index))
        kvRemoveFreeNotification(static_cast<const QObject *>(key), NotifyMethod());
    TSortedKeyDataList::Delete(Index);
}

void TSortedCompKeyList::Notification(const void *Sender)
{
    for (qsizetype index = IndexOfKey(Sender); index >= 0; index = IndexOfKey(Sender)) {
        const qsizetype before = Count();
        Delete(index);
        if (Count() >= before)
            break; // a Delete that keeps the item must not make this spin
    }
}

TFreeNotifyMethod TSortedCompKeyList::NotifyMethod()
{
    return TFreeNotifyMethod::Of<&TSortedCompKeyList::Notification>(this);
}

bool TSortedCompKeyList::HoldsKey(const void *Key, qsizetype Except) const
{
    const TFastList &items = List();
    const auto heldAt = [&](qsizetype i) { return i != Except && KeyByItem(items.at(i)) == Key; };
    if (!Sorted()) {
        for (qsizetype i = 0; i < items.size(); ++i) {
            if (heldAt(i))
                return true;
        }
        return false;
    }
    // Items with Key sit in the run of items that compare equal to it.
    qsizetype index = 0;
    if (!FindByKey(Key, index))
        return false;
    for (qsizetype i = index; i >= 0 && CompareWithKey(items.at(i), Key) == 0; --i) {
        if (heldAt(i))
            return true;
    }
    for (qsizetype i = index + 1; i < items.size() && CompareWithKey(items.at(i), Key) == 0; ++i) {
        if (heldAt(i))
            return true;
    }
    return false;
}

} // namespace kv
