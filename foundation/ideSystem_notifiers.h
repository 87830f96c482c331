#pragma once

#include "kv_export.h"

// The process-wide notifier registry and the broadcasts over it. Everything here runs on
// the user-interface thread.

#include "foundation/ideSystem_notifierregistry.h"

#include <QList>

class QObject;

namespace kv {

// The process-wide registry, created on first use and freed by FinalizeNotifiers.
KV_EXPORT TNotifierRegistry &NotifierRegistry();

// Adds Obj as the newest notifier (a registered Obj moves to the newest place); nil is
// ignored. A notifier must unregister before it is destroyed.
KV_EXPORT void RegisterNotifier(INotifier *Obj);
KV_EXPORT void UnregisterNotifier(INotifier *Obj);

// Sender names the broadcaster at the call; notifiers are not told who sent a message.
// Each broadcast builds one record {Msg, WParam, LParam, Result = 0} and hands it to the
// notifiers newest first (TNotifierRegistry::Broadcast tells what may change meanwhile).
// An exception from a notifier ends the broadcast and reaches the caller.
KV_EXPORT bool BroadcastToNotifierList(QObject *Sender, TNotifierRegistry &List, quint32 Msg,
                             qintptr WParam, qintptr LParam, bool StopOnAnswer);
KV_EXPORT bool BroadcastToNotifiersEx(QObject *Sender, quint32 Msg, qintptr WParam, qintptr LParam,
                            bool StopOnAnswer);
// Reaches every notifier; always true.
KV_EXPORT bool BroadCastToNotifiers(QObject *Sender, quint32 Msg, qintptr WParam = 0, qintptr LParam = 0);
// True when no notifier answered; the first one that answers (non-zero Result) ends the
// broadcast.
KV_EXPORT bool NotifiersAgree(QObject *Sender, quint32 Msg, qintptr WParam = 0, qintptr LParam = 0);
// Msg with no sender and no parameters.
KV_EXPORT void SimpleBroadCast(quint32 Msg);

// The IDE update bracket: the number of IDEBeginUpdate calls not yet ended. Observers get
// CM_IDEBEGINUPDATE at the outermost begin, CM_IDEENDUPDATE followed by CM_IDECHANGED at
// the matching end, and no CM_IDECHANGED in between.
extern KV_EXPORT int IDEUpdateCount;
KV_EXPORT void IDEBeginUpdate();
// Nothing when no bracket is open.
KV_EXPORT void IDEEndUpdate();
// CM_IDECHANGED, unless a bracket is open.
KV_EXPORT void IDEChanged();

// CM_OBJDESTROYED for one object (the sender) or for a list of objects that are about to
// go; nothing for nil or an empty list.
KV_EXPORT void NotifyDestroy(QObject *Obj);
KV_EXPORT void NotifyDestroyObjects(const QList<QObject *> &List);

// Makes the focus moving to another widget of the application an IDEChanged. Once per
// process: later calls do nothing while that watcher lives. It lives as long as the
// application object, which owns it, or until FinalizeNotifiers; without an application
// object nothing is installed.
KV_EXPORT void InitIDENotifier();

// Frees the registry and the focus watcher of InitIDENotifier, and closes any open update
// bracket. Notifiers still registered are simply forgotten.
KV_EXPORT void FinalizeNotifiers();

} // namespace kv
