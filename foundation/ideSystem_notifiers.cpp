#include "foundation/ideSystem_notifiers.h"

#include "foundation/ideSystem_params_p.h"
#include "platform/kvException.h"
#include "shell/ideHook_activenotifier.h"

#include <QCoreApplication>
#include <QPointer>

#include <memory>

namespace kv {

int IDEUpdateCount = 0;

namespace {

std::unique_ptr<TNotifierRegistry> &RegistryHolder()
{
    static std::unique_ptr<TNotifierRegistry> registry;
    return registry;
}

// Owned by the application object; the pointer clears itself when that goes first.
QPointer<TCustomActiveNotifier> &IDENotifier()
{
    static QPointer<TCustomActiveNotifier> notifier;
    return notifier;
}

} // namespace

TNotifierRegistry &NotifierRegistry()
{
    std::unique_ptr<TNotifierRegistry> &registry = RegistryHolder();
    if (!registry)
        registry = std::make_unique<TNotifierRegistry>();
    return *registry;
}

void RegisterNotifier(INotifier *Obj)
{
    if (Obj)
        NotifierRegistry().Register(Obj);
}

void UnregisterNotifier(INotifier *Obj)
{
    // A notifier that outlives FinalizeNotifiers may still unregister.
    if (TNotifierRegistry *registry = RegistryHolder().get())
        registry->Unregister(Obj);
}

bool BroadcastToNotifierList(QObject *Sender, TNotifierRegistry &List, quint32 Msg,
                             qintptr WParam, qintptr LParam, bool StopOnAnswer)
{
    TMessage message{Msg, WParam, LParam, 0};
    return List.Broadcast(message, StopOnAnswer);
}

bool BroadcastToNotifiersEx(QObject *Sender, quint32 Msg, qintptr WParam, qintptr LParam,
                            bool StopOnAnswer)
{
    TNotifierRegistry *registry = RegistryHolder().get();
    if (!registry)
        return true; // nobody has registered yet: nobody to tell
    return BroadcastToNotifierList(Sender, *registry, Msg, WParam, LParam, StopOnAnswer);
}

bool BroadCastToNotifiers(QObject *Sender, quint32 Msg, qintptr WParam, qintptr LParam)
{
    BroadcastToNotifiersEx(Sender, Msg, WParam, LParam, false);
    return true;
}

bool NotifiersAgree(QObject *Sender, quint32 Msg, qintptr WParam, qintptr LParam)
{
    return BroadcastToNotifiersEx(Sender, Msg, WParam, LParam, true);
}

void SimpleBroadCast(quint32 Msg)
{
    BroadCastToNotifiers(nullptr, Msg, 0, 0);
}

void IDEChanged()
{
    if (IDEUpdateCount == 0)
        SimpleBroadCast(CM_IDECHANGED);
}

void IDEBeginUpdate()
{
    // Announced before counting: should a handler throw, the bracket was never opened.
    if (IDEUpdateCount == 0)
        SimpleBroadCast(CM_IDEBEGINUPDATE);
    ++IDEUpdateCount;
}

void IDEEndUpdate()
{
    if (IDEUpdateCount <= 0)
        return;
    if (--IDEUpdateCount == 0) {
        SimpleBroadCast(CM_IDEENDUPDATE);
        IDEChanged();
    }
}

void NotifyDestroy(QObject *Obj)
{
    if (Obj)
        BroadCastToNotifiers(Obj, CM_OBJDESTROYED, detail::PointerParam(Obj), 0);
}

void NotifyDestroyObjects(const QList<QObject *> &List)
{
    if (!List.isEmpty())
        BroadCastToNotifiers(nullptr, CM_OBJDESTROYED, 0, detail::ObjectListParam(List));
}

void InitIDENotifier()
{
    QPointer<TCustomActiveNotifier> &notifier = IDENotifier();
    QCoreApplication *app = QCoreApplication::instance();
    if (notifier || !app)
        return;
    notifier = new TCustomActiveNotifier(app);
    QObject::connect(notifier, &TCustomActiveNotifier::OnActiveChanged, notifier,
                     [] { Guarded([] { IDEChanged(); }); });
}

void FinalizeNotifiers()
{
    delete IDENotifier().data();
    RegistryHolder().reset();
    IDEUpdateCount = 0;
}

} // namespace kv
