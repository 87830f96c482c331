#pragma once

#include "kv_export.h"

// Menu helpers over QMenu and QAction: an item is a QAction, its sub-items the actions of
// its menu. A separator is an action that is a separator or whose text is "-".

class QAction;
class QMenu;

namespace kv {

KV_EXPORT bool IsMenuSeparator(const QAction *Item);

// Among the sub-items: separators at the start are freed, then separators at the end, then,
// from the next-to-last item down to the first, a separator directly followed by another
// one; so no separator is left at either end or next to another. A freed separator is
// deleted unless another widget still shows it, which keeps it. Nothing for null or an
// item without a menu.
KV_EXPORT void RemoveExtraMenuSeparators(QMenu *Menu);
KV_EXPORT void RemoveExtraMenuSeparators(QAction *Item);

// Frees every sub-item, always the first (an item with a sub-menu goes with its menu), then
// enables the item when Flag is false and disables it when Flag is true. Nothing for null.
KV_EXPORT void ClearMenuSubItems(QAction *Item, bool Flag);
KV_EXPORT void ClearMenuSubItems(QMenu *Menu, bool Flag);

} // namespace kv
