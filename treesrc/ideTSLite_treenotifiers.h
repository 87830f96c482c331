#pragma once

#include "kv_export.h"

// The process-wide list of tree listeners: every view of every source registers a method
// (Sender, Data, Code) here, and sources reach them through it, at once or posted.

#include "foundation/ideSystem_notifierlist.h"

#include <QtGlobal>

#include <memory>

class QObject;

namespace kv {

// A notifier list that can also post: a posted message reaches the listeners after the
// current call chain has returned.
class KV_EXPORT TNotifierListEx : public TNotifierList
{
public:
    TNotifierListEx();
    ~TNotifierListEx() override;

    // Queues (Msg, WParam, LParam) from Sender for each listener held now, newest first.
    // On delivery a listener is called only if it is still held and Sender still lives;
    // otherwise its message is dropped. Nothing is posted for a null Sender. For CM_TSNOTIFY, WParam is the address of a
    // TNodeRec that belongs to Sender: it is copied when the message is delivered (so a
    // record changed meanwhile delivers its newer contents) and the listener gets the
    // copy's address and the code (LParam). Other messages reach the listener as
    // (Sender, WParam, LParam). A listener's exception is shown, not propagated.
    void PostMessage(QObject *Sender, quint32 Msg, qintptr WParam, qintptr LParam);

    // Messages posted and not yet delivered or dropped.
    int PendingCount() const;

private:
    class Dispatcher;
    std::unique_ptr<Dispatcher> m_dispatcher;
};

// The single tree listener list, created on first use.
KV_EXPORT TNotifierListEx &GetTreeNotifiers();
// Frees it with whatever is still posted; the next GetTreeNotifiers makes a new one.
KV_EXPORT void FinalizeTreeNotifiers();

} // namespace kv
