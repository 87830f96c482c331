#include "foundation/ideSystem_notifierlist.h"

#include "foundation/ideSystem_walklist_p.h"

namespace kv {

class TNotifierList::Private
{
public:
    // The walk rule is TWalkList's: a snapshot, newest first, each method called only
    // while it is still held by the same registration.
    detail::TWalkList<TNotifierProc> List;
    // Beside the list rather than in it, so that NotifyEvents walks methods only.
    QHash<TNotifierProc, INotifierOwnerListener *> OwnerListeners;
};

TNotifierList::TNotifierList()
    : d(std::make_unique<Private>())
{
}

TNotifierList::~TNotifierList() = default;

void TNotifierList::AddMethod(TNotifierProc Method, INotifierOwnerListener *OwnerListener)
{
    if (!Method)
        return;
    d->List.Add(Method);
    if (OwnerListener)
        d->OwnerListeners.insert(Method, OwnerListener);
    else
        d->OwnerListeners.remove(Method);
}

void TNotifierList::DeleteMethod(TNotifierProc Method)
{
    if (d->List.Remove(Method))
        d->OwnerListeners.remove(Method);
}

void TNotifierList::DeleteWithData(const void *Obj)
{
    const QList<TNotifierProc> removed =
        d->List.RemoveIf([Obj](const TNotifierProc &method) { return method.GetData() == Obj; });
    for (const TNotifierProc &method : removed)
        d->OwnerListeners.remove(method);
}

void TNotifierList::NotifyEvents(QObject *Sender, qintptr wParam, qintptr lParam)
{
    d->List.Walk([&](const TNotifierProc &method) {
        method(Sender, wParam, lParam);
        return true;
    });
}

bool TNotifierList::HasMethod(TNotifierProc Method) const
{
    return d->List.Contains(Method);
}

qsizetype TNotifierList::Count() const
{
    return d->List.Count();
}

QList<TNotifierProc> TNotifierList::Methods() const
{
    return d->List.Items();
}

void NotifyDestroying(QObject *Component, TNotifierList &NotifierList)
{
    TNotifierList::Private *d = NotifierList.d.get();
    if (d->OwnerListeners.isEmpty())
        return;
    // The list may be freed by a listener; the walk then stops, and d is not touched again.
    d->List.Walk([d, Component](const TNotifierProc &method) {
        if (INotifierOwnerListener *listener = d->OwnerListeners.value(method))
            listener->NotifierOwnerDestroying(Component);
        return true;
    });
}

} // namespace kv
