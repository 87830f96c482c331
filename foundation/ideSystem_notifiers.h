#pragma once

// The process-wide notifier registry and the broadcasts over it. Everything here runs on
// the user-interface thread.

#include "foundation/ideSystem_notifierregistry.h"

#include <QList>

class QObject;

namespace kv {

// The process-wide registry, created on first use and freed by FinalizeNotifiers.
TNotifierRegistry &NotifierRegistry();

// Adds Obj as the newest notifier (a registered Obj moves to the newest place); nil is
// ignored. A notifier must unregister before it is destroyed.
void RegisterNotifier(INotifier *Obj);
void UnregisterNotifier(INotifier *Obj);

// Sender names the broadcaster at the call; notifiers are not told who sent a message.
// Each broadcast builds one record {Msg, WParam, LParam, Result = 0} and hands it to the
// notifiers newest first (TNotifierRegistry::Broadcast tells what may change meanwhile).
// An exception from a notifier ends the broadcast and reaches the caller.
bool BroadcastToNotifierList(QObject *Sender, TNotifierRegistry &List, quint32 Msg,
                             qintptr WParam, qintptr LParam, bool StopOnAnswer);
bool BroadcastToNotifiersEx(QObject *Sender, quint32 Msg, qintptr WParam, qintptr LParam,
                            bool StopOnAnswer);
// Reaches every notifier; always true.
bool BroadCastToNotifiers(QObject *Sender, quint32 Msg, qintptr WParam = 0, qintptr LParam = 0);
// True when no notifier answered; the first one that answers (non-zero Result) ends the
// broadcast.
bool NotifiersAgree(QObject *Sender, quint32 Msg, qintptr WParam = 0, qintptr LParam = 0);
// Msg with no sender and no parameters.
void SimpleBroadCast(quint32 Msg);

// The IDE update bracket: the number of IDEBeginUpdate calls not yet ended. Observers get
// CM_IDEBEGINUPDATE at the outermost begin, CM_IDEENDUPDATE followed by CM_IDECHANGED at
// the matching end, and no CM_IDECHANGED in between.
extern int IDEUpdateCount;
void IDEBeginUpdate();
// Nothing when no bracket is open.
void IDEEndUpdate();
// CM_IDECHANGED, unless a bracket is open.
void IDEChanged();

// CM_OBJDESTROYED for one object (the sender) or for a list of objects that are about to
// go; nothing for nil or an empty list.
void NotifyDestroy(QObject *Obj);
void NotifyDestroyObjects(const QList<QObject *> &List);

// Makes the focus moving to another widget of the application an IDEChanged. Once per
// process: later calls do nothing while that watcher lives. It lives as long as the
// application object, which owns it, or until FinalizeNotifiers; without an application
// object nothing is installed.
void InitIDENotifier();

// Frees the registry and the focus watcher of InitIDENotifier, and closes any open update
// bracket. Notifiers still registered are simply forgotten.
void FinalizeNotifiers();

} // namespace kv
