#include "shell/ideHook_activenotifier.h"

#include "platform/kvException.h"

#include <QApplication>
#include <QList>
#include <QWidget>

namespace kv {

namespace {

struct TActiveHook
{
    QList<TCustomActiveNotifier *> Notifiers;
    QMetaObject::Connection Connection;
};

TActiveHook &Hook()
{
    static TActiveHook hook;
    return hook;
}

} // namespace

TCustomActiveNotifier::TCustomActiveNotifier(QObject *Owner)
    : QObject(Owner)
{
    TActiveHook &hook = Hook();
    if (hook.Notifiers.isEmpty()) {
        if (auto *app = qobject_cast<QApplication *>(QCoreApplication::instance()))
            hook.Connection = connect(app, &QApplication::focusChanged, app, &DispatchFocusChange);
    }
    hook.Notifiers.append(this);
}

TCustomActiveNotifier::~TCustomActiveNotifier()
{
    TActiveHook &hook = Hook();
    hook.Notifiers.removeOne(this);
    if (hook.Notifiers.isEmpty()) {
        disconnect(hook.Connection);
        hook.Connection = {};
    }
}

bool TCustomActiveNotifier::HookInstalled()
{
    return bool(Hook().Connection);
}

void TCustomActiveNotifier::HookProc(const TFocusChange &)
{
    Q_EMIT OnActiveChanged(this);
}

void TCustomActiveNotifier::DispatchFocusChange(QWidget *old, QWidget *now)
{
    if (!now)
        return; // the focus left the application: no widget received it
    const TFocusChange data{old, now};
    // A handler may destroy notifiers, its own among them: walk a snapshot and skip
    // those that have gone meanwhile.
    const QList<TCustomActiveNotifier *> snapshot = Hook().Notifiers;
    for (TCustomActiveNotifier *notifier : snapshot) {
        if (Hook().Notifiers.contains(notifier))
            Guarded([&] { notifier->HookProc(data); });
    }
}

} // namespace kv
