#include "foundation/ideCommon_menus.h"

#include <QAction>
#include <QMenu>

namespace kv {

namespace {

// Takes Item out of Menu and deletes it, or its sub-menu, unless it is shown elsewhere too.
void FreeItem(QMenu *Menu, QAction *Item)
{
    Menu->removeAction(Item);
    if (QMenu *sub = Item->menu(); sub && sub->menuAction() == Item) {
        // The menu owns its action: deleting the action alone would leave the menu holding it.
        if (Item->associatedObjects().isEmpty())
            delete sub;
        return;
    }
    if (Item->associatedObjects().isEmpty())
        delete Item;
}

} // namespace

bool IsMenuSeparator(const QAction *Item)
{
    return Item && (Item->isSeparator() || Item->text() == QLatin1String("-"));
}

void RemoveExtraMenuSeparators(QMenu *Menu)
{
    if (!Menu)
        return;
    QList<QAction *> items = Menu->actions();
    while (!items.isEmpty() && IsMenuSeparator(items.first()))
        FreeItem(Menu, items.takeFirst());
    while (!items.isEmpty() && IsMenuSeparator(items.last()))
        FreeItem(Menu, items.takeLast());
    for (qsizetype i = items.size() - 2; i >= 0; --i) {
        if (IsMenuSeparator(items.at(i)) && IsMenuSeparator(items.at(i + 1)))
            FreeItem(Menu, items.takeAt(i));
    }
}

void RemoveExtraMenuSeparators(QAction *Item)
{
    if (Item)
        RemoveExtraMenuSeparators(Item->menu());
}

void ClearMenuSubItems(QMenu *Menu, bool Flag)
{
    if (!Menu)
        return;
    while (!Menu->actions().isEmpty())
        FreeItem(Menu, Menu->actions().first());
    Menu->menuAction()->setEnabled(!Flag);
}

void ClearMenuSubItems(QAction *Item, bool Flag)
{
    if (!Item)
        return;
    if (QMenu *menu = Item->menu()) {
        while (!menu->actions().isEmpty())
            FreeItem(menu, menu->actions().first());
    }
    Item->setEnabled(!Flag);
}

} // namespace kv
