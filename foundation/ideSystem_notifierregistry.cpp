#include "foundation/ideSystem_notifierregistry.h"

#include "foundation/ideSystem_walklist_p.h"

namespace kv {

class TNotifierRegistry::Private
{
public:
    detail::TWalkList<INotifier *> List;
};

TNotifierRegistry::TNotifierRegistry()
    : d(std::make_unique<Private>())
{
}

TNotifierRegistry::~TNotifierRegistry() = default;

void TNotifierRegistry::Register(INotifier *Obj)
{
    if (Obj)
        d->List.Add(Obj);
}

void TNotifierRegistry::Unregister(INotifier *Obj)
{
    d->List.Remove(Obj);
}

bool TNotifierRegistry::Contains(INotifier *Obj) const
{
    return d->List.Contains(Obj);
}

qsizetype TNotifierRegistry::Count() const
{
    return d->List.Count();
}

QList<INotifier *> TNotifierRegistry::Notifiers() const
{
    return d->List.Items();
}

bool TNotifierRegistry::Broadcast(TMessage &Message, bool StopOnAnswer)
{
    // The walk rule is TWalkList's: a snapshot, newest first, each entry delivered only
    // while its registration lasts.
    return d->List.Walk([&](INotifier *notifier) {
        notifier->Dispatch(Message);
        return !(StopOnAnswer && Message.Result != 0);
    });
}

} // namespace kv
