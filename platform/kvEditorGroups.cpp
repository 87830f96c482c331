#include "platform/kvEditorGroups.h"

#include "foundation/ideSystem_messages.h"
#include "foundation/ideSystem_notifierregistry.h"
#include "foundation/ideSystem_notifiers.h"

#include <QList>

namespace kv {

TPackageHandle CurrentPackage = 0;

namespace {

struct TEditorGroups
{
    QList<int> open; // ascending: groups are numbered in the order they were opened
    int current = -1;
    int last = -1;
    TNotifierRegistry registries;
};

TEditorGroups &Groups()
{
    static TEditorGroups groups;
    return groups;
}

} // namespace

int CurrentGroup()
{
    return Groups().current;
}

int NewEditorGroup()
{
    TEditorGroups &groups = Groups();
    groups.current = ++groups.last;
    groups.open.append(groups.current);
    return groups.current;
}

void FreeEditorGroup(int Group)
{
    TEditorGroups &groups = Groups();
    if (groups.open.removeOne(Group) && groups.current == Group)
        groups.current = groups.open.isEmpty() ? -1 : groups.open.last();

    TMessage message{CM_FREEEDITGROUP, Group, 0, 0};
    groups.registries.Broadcast(message, false);
    BroadCastToNotifiers(nullptr, CM_FREEEDITGROUP, Group, 0);
}

void RegisterEditorGroupRegistry(INotifier *Registry)
{
    Groups().registries.Register(Registry);
}

void UnregisterEditorGroupRegistry(INotifier *Registry)
{
    Groups().registries.Unregister(Registry);
}

} // namespace kv
