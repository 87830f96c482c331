#pragma once

#include "kv_export.h"

#include "foundation/ideSystem_inotifier.h"

#include <QList>

#include <memory>

namespace kv {

// An ordered set of notifiers that receive broadcasts newest first. The process-wide one
// is NotifierRegistry(); a unit may keep its own for a narrower audience.
//
// Broadcasts may change the registry while they run: a handler may unregister itself or
// others, register new notifiers, re-register, broadcast again, or destroy the registry.
// A broadcast delivers to the notifiers that were registered when it began and are still
// registered when their turn comes, each at most once; notifiers registered during it are
// not reached by it.
class KV_EXPORT TNotifierRegistry
{
public:
    TNotifierRegistry();
    ~TNotifierRegistry();
    TNotifierRegistry(const TNotifierRegistry &) = delete;
    TNotifierRegistry &operator=(const TNotifierRegistry &) = delete;

    // Adds Obj as the newest notifier; a registered Obj moves to the newest place. Nil is
    // ignored.
    void Register(INotifier *Obj);
    // Removes Obj; nothing when it is not registered.
    void Unregister(INotifier *Obj);

    bool Contains(INotifier *Obj) const;
    qsizetype Count() const;
    // The registered notifiers, oldest first.
    QList<INotifier *> Notifiers() const;

    // Delivers Message to every notifier, newest first. With StopOnAnswer the first
    // notifier that leaves a non-zero Result ends the broadcast and the answer is false;
    // otherwise Result is carried on to the rest and the answer is true. An exception from
    // a notifier ends the broadcast and propagates; the registry stays as the handlers
    // left it.
    bool Broadcast(TMessage &Message, bool StopOnAnswer);

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace kv
