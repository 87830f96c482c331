#include "foundation/ideLib.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"

namespace kv {

namespace {

// The index of Item itself; on a sorted list it is searched for among the items that
// compare equal to it.
qsizetype IndexOfIdentical(const TCustomSortedList &List, const void *Item)
{
    qsizetype index = -1;
    if (!List.Find(Item, index))
        return -1;
    const TFastList &items = List.List();
    if (!List.Sorted() || items.at(index) == Item)
        return index;
    for (qsizetype i = index - 1; i >= 0 && List.Compare(items.at(i), Item) == 0; --i) {
        if (items.at(i) == Item)
            return i;
    }
    for (qsizetype i = index + 1; i < items.size() && List.Compare(items.at(i), Item) == 0; ++i) {
        if (items.at(i) == Item)
            return i;
    }
    return -1;
}

} // namespace

void detail::ClearSortedList(TCustomSortedList *List, TItemDeleter FreeItem)
{
    if (!List)
        return;
    const bool listFrees = List->OwnsItems();
    while (List->Count() > 0) {
        const qsizetype before = List->Count();
        void *item = List->Items(0);
        List->Delete(0);
        if (List->Count() >= before)
            break; // a Delete that keeps its item must not make this spin
        if (!listFrees)
            FreeItem(item);
    }
}

qsizetype detail::RemoveSortedItem(TCustomSortedList *List, void *Item, TItemDeleter FreeItem)
{
    qsizetype index = -1;
    bool freedByList = false;
    if (List) {
        index = IndexOfIdentical(*List, Item);
        if (index >= 0) {
            List->Delete(index);
            freedByList = List->OwnsItems();
        }
    }
    if (!freedByList)
        FreeItem(Item);
    return index;
}

void detail::CheckIsSortedList(const TCustomSortedList *List)
{
    if (!dynamic_cast<const TSortedList *>(List))
        throw Exception(LoadStr(SInvalidCast));
}

// The unit keeps no state of its own.
void ideLib::Initialize() {}
void ideLib::Finalize() {}

} // namespace kv
