#pragma once

#include "kv_export.h"

// General helpers of the library.

#include "foundation/ideLib_sortedlist.h"
#include "shell/ideHook.h"

#include <memory>
#include <type_traits>
#include <utility>

namespace kv {

namespace detail {

using TItemDeleter = void (*)(void *Item);

template <class T>
void DeleteItemAs(void *Item)
{
    delete static_cast<T *>(Item);
}

KV_EXPORT void ClearSortedList(TCustomSortedList *List, TItemDeleter FreeItem);
KV_EXPORT qsizetype RemoveSortedItem(TCustomSortedList *List, void *Item, TItemDeleter FreeItem);
// Raises the invalid-cast error unless List is a TSortedList.
KV_EXPORT void CheckIsSortedList(const TCustomSortedList *List);

} // namespace detail

// Sorted lists whose items are objects that the list's user owns. The items must have been
// stored as pointers to T (the template argument, by default TPlainObject), so that they
// can be freed as T. A list that owns its items itself (OwnsItems) frees them in Delete;
// the helpers then leave the freeing to it.

// Deletes the items one by one from the front through the list's Delete and frees each.
// Nothing for a null list.
template <class T = TPlainObject>
void ClearSortedList(TCustomSortedList *List)
{
    detail::ClearSortedList(List, &detail::DeleteItemAs<T>);
}

// Clears the list as ClearSortedList does, frees it and sets the variable to null. A list
// that is not a TSortedList raises the invalid-cast error and nothing is freed.
template <class T = TPlainObject, class L>
void FreeSortedList(L *&List)
{
    static_assert(std::is_base_of_v<TCustomSortedList, L>, "FreeSortedList takes a sorted list");
    if (!List)
        return;
    detail::CheckIsSortedList(List);
    ClearSortedList<T>(List);
    delete std::exchange(List, nullptr);
}

template <class T = TPlainObject, class L>
void FreeSortedList(std::unique_ptr<L> &List)
{
    static_assert(std::is_base_of_v<TCustomSortedList, L>, "FreeSortedList takes a sorted list");
    if (!List)
        return;
    detail::CheckIsSortedList(List.get());
    ClearSortedList<T>(List.get());
    List.reset();
}

// Takes Item out of the list and frees it, whether or not the list held it. Returns the
// index Item had, or -1. Of several items that compare equal, Item itself is the one
// removed, so that the list never keeps a freed pointer.
template <class T = TPlainObject>
qsizetype RemoveSortedItem(TCustomSortedList *List, T *Item)
{
    return detail::RemoveSortedItem(List, Item, &detail::DeleteItemAs<T>);
}

namespace ideLib {
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
} // namespace ideLib

} // namespace kv
