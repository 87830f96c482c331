#pragma once

#include "kv_export.h"

// The connection registry behind events: for each (object, signal) connected through the
// design-time framework, the handler object, the name of its slot and the connection.
// Entries leave when the sender or the handler is destroyed. Connections made elsewhere are
// not seen (Qt does not tell who is connected to a signal). User-interface thread only.

#include <QMetaMethod>
#include <QString>
#include <QStringList>

class QObject;

namespace kv {

struct KV_EXPORT TEventHandler
{
    QObject *Handler = nullptr;
    QString SlotName;

    bool IsEmpty() const { return !Handler; }
    friend bool operator==(const TEventHandler &A, const TEventHandler &B)
    {
        return A.Handler == B.Handler && A.SlotName == B.SlotName;
    }
};

// The handler of Signal of Sender; empty when the registry has none.
KV_EXPORT TEventHandler GetEventHandler(const QObject *Sender, const QMetaMethod &Signal);

// Connects Signal of Sender to the slot of Handler named SlotName (the first of that name
// whose parameters fit the signal), replacing the handler the registry had; setting the
// handler it has changes nothing. A null Handler or an empty SlotName clears. Raises
// kv::Exception when Signal is not a signal of Sender's class (SErrNotASignal) and when
// Handler has no such slot (SErrNoSuchSlot); then nothing changes. A signal's clones (the
// forms that default arguments make) are the signal itself.
KV_EXPORT void SetEventHandler(QObject *Sender, const QMetaMethod &Signal, QObject *Handler, const QString &SlotName);
// Disconnects the handler the registry has for Signal of Sender; nothing when none.
KV_EXPORT void ClearEventHandler(QObject *Sender, const QMetaMethod &Signal);

// The names of Handler's slots that Signal can be connected to: public and protected, each
// name once, in declaration order, the ancestors' first.
KV_EXPORT QStringList GetCompatibleSlots(const QMetaObject *Handler, const QMetaMethod &Signal);

// How many handlers the registry holds; for diagnostics and tests.
KV_EXPORT int EventHandlerCount();

// Disconnects and forgets everything (unit stop).
KV_EXPORT void FinalizeEventConnections();

} // namespace kv
