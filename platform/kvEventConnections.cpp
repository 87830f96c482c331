#include "platform/kvEventConnections.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"
#include "platform/kvOwner.h"
#include "platform/kvRegistryHolder_p.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>

namespace kv {

namespace {

struct TEventKey
{
    const QObject *Sender;
    int SignalIndex;

    friend bool operator==(const TEventKey &A, const TEventKey &B)
    {
        return A.Sender == B.Sender && A.SignalIndex == B.SignalIndex;
    }
};

size_t qHash(const TEventKey &Key, size_t Seed = 0) noexcept
{
    return qHashMulti(Seed, Key.Sender, Key.SignalIndex);
}

struct TEntry
{
    QPointer<QObject> Handler;
    // The handler's address, to find the entry once the handler is gone.
    const QObject *HandlerKey = nullptr;
    QString SlotName;
    QMetaMethod Slot;
    QMetaObject::Connection Connection;
};

// One connection to an object's destroyed signal, shared by every entry the object is
// sender or handler of.
struct TWatch
{
    QMetaObject::Connection Destroyed;
    QSet<TEventKey> Keys;
};

// The absolute index of the signal that Signal stands for: a clone is emitted as its
// original, which precedes it in the method table.
int OriginalSignalIndex(const QMetaMethod &Signal)
{
    const QMetaObject *meta = Signal.enclosingMetaObject();
    int index = Signal.methodIndex();
    while (index > 0 && (meta->method(index).attributes() & QMetaMethod::Cloned))
        --index;
    return index;
}

bool IsSignalOf(const QObject *Sender, const QMetaMethod &Signal)
{
    return Sender && Signal.isValid() && Signal.methodType() == QMetaMethod::Signal
           && Sender->metaObject()->method(Signal.methodIndex()) == Signal;
}

bool IsConnectableSlot(const QMetaMethod &Method, const QMetaMethod &Signal)
{
    return Method.methodType() == QMetaMethod::Slot && Method.access() != QMetaMethod::Private
           && QMetaObject::checkConnectArgs(Signal, Method);
}

// The first slot of that name, in method-table order, that Signal can be connected to.
QMetaMethod FindSlot(const QMetaObject *Handler, const QMetaMethod &Signal, const QString &SlotName)
{
    const QByteArray name = SlotName.toLatin1();
    for (int i = 0; i < Handler->methodCount(); ++i) {
        const QMetaMethod method = Handler->method(i);
        if (method.name() == name && IsConnectableSlot(method, Signal))
            return method;
    }
    return {};
}

QString ObjectText(const QObject *Obj)
{
    const QString name = GetCompName(Obj);
    return name.isEmpty() ? QString::fromLatin1(Obj->metaObject()->className()) : name;
}

QString EventText(const QObject *Sender, const QMetaMethod &Signal)
{
    const QString signature = QString::fromLatin1(Signal.methodSignature());
    const QString name = Sender ? GetCompName(Sender) : QString();
    return name.isEmpty() ? signature : name + u'.' + signature;
}

class TConnectionRegistry
{
public:
    TConnectionRegistry() = default;
    TConnectionRegistry(const TConnectionRegistry &) = delete;
    TConnectionRegistry &operator=(const TConnectionRegistry &) = delete;
    ~TConnectionRegistry() { Clear(); }

    const TEntry *Find(const TEventKey &Key) const
    {
        const auto it = m_entries.constFind(Key);
        return it == m_entries.cend() ? nullptr : &it.value();
    }

    void Set(const TEventKey &Key, QObject *Sender, TEntry Entry)
    {
        Remove(Key);
        Watch(Sender, Key);
        Watch(Entry.HandlerKey, Key);
        m_entries.insert(Key, std::move(Entry));
    }

    void Remove(const TEventKey &Key)
    {
        const auto it = m_entries.find(Key);
        if (it == m_entries.end())
            return;
        QObject::disconnect(it->Connection);
        Unwatch(Key.Sender, Key);
        Unwatch(it->HandlerKey, Key);
        m_entries.erase(it);
    }

    int Count() const { return int(m_entries.size()); }

    void Clear()
    {
        for (TEntry &entry : m_entries)
            QObject::disconnect(entry.Connection);
        m_entries.clear();
        for (TWatch &watch : m_watches)
            QObject::disconnect(watch.Destroyed);
        m_watches.clear();
    }

private:
    void Watch(const QObject *Obj, const TEventKey &Key)
    {
        TWatch &watch = m_watches[Obj];
        if (!watch.Destroyed)
            watch.Destroyed = QObject::connect(Obj, &QObject::destroyed, [this, Obj] { Forget(Obj); });
        watch.Keys.insert(Key);
    }

    void Unwatch(const QObject *Obj, const TEventKey &Key)
    {
        const auto it = m_watches.find(Obj);
        if (it == m_watches.end())
            return;
        it->Keys.remove(Key);
        if (it->Keys.isEmpty()) {
            QObject::disconnect(it->Destroyed);
            m_watches.erase(it);
        }
    }

    // Obj is being destroyed: its address may only be compared. Qt drops the connections
    // of a dying sender or receiver itself; the entries go with them.
    void Forget(const QObject *Obj)
    {
        const TWatch watch = m_watches.take(Obj);
        for (const TEventKey &key : watch.Keys) {
            const auto it = m_entries.find(key);
            if (it == m_entries.end())
                continue;
            const QObject *other = key.Sender == Obj ? it->HandlerKey : key.Sender;
            m_entries.erase(it);
            if (other != Obj)
                Unwatch(other, key);
        }
    }

    QHash<TEventKey, TEntry> m_entries;
    QHash<const QObject *, TWatch> m_watches;
};

TConnectionRegistry &Registry()
{
    return detail::LazyRegistry<TConnectionRegistry>();
}

} // namespace

TEventHandler GetEventHandler(const QObject *Sender, const QMetaMethod &Signal)
{
    if (!IsSignalOf(Sender, Signal))
        return {};
    const TEntry *entry = Registry().Find({Sender, OriginalSignalIndex(Signal)});
    if (!entry || !entry->Handler)
        return {};
    return {entry->Handler.data(), entry->SlotName};
}

void SetEventHandler(QObject *Sender, const QMetaMethod &Signal, QObject *Handler, const QString &SlotName)
{
    if (!IsSignalOf(Sender, Signal)) {
        const QString signal = Signal.isValid() ? QString::fromLatin1(Signal.methodSignature()) : QStringLiteral("(none)");
        throw Exception(LoadStr(SErrNotASignal)
                            .arg(signal, Sender ? ObjectText(Sender) : QStringLiteral("nil")));
    }
    if (!Handler || SlotName.isEmpty()) {
        ClearEventHandler(Sender, Signal);
        return;
    }
    const QMetaMethod slot = FindSlot(Handler->metaObject(), Signal, SlotName);
    if (!slot.isValid())
        throw Exception(LoadStr(SErrNoSuchSlot).arg(ObjectText(Handler), SlotName, EventText(Sender, Signal)));

    const TEventKey key{Sender, OriginalSignalIndex(Signal)};
    TConnectionRegistry &registry = Registry();
    if (const TEntry *entry = registry.Find(key); entry && entry->Handler == Handler && entry->Slot == slot)
        return;

    // The new connection first, so that a failure leaves the old one in place.
    TEntry entry;
    entry.Handler = Handler;
    entry.HandlerKey = Handler;
    entry.SlotName = QString::fromLatin1(slot.name());
    entry.Slot = slot;
    const QMetaMethod original = Signal.enclosingMetaObject()->method(key.SignalIndex);
    entry.Connection = QObject::connect(Sender, original, Handler, slot);
    if (!entry.Connection)
        throw Exception(LoadStr(SErrConnectFailed).arg(EventText(Sender, Signal), ObjectText(Handler) + u'.' + SlotName));
    registry.Set(key, Sender, std::move(entry));
}

void ClearEventHandler(QObject *Sender, const QMetaMethod &Signal)
{
    if (IsSignalOf(Sender, Signal))
        Registry().Remove({Sender, OriginalSignalIndex(Signal)});
}

QStringList GetCompatibleSlots(const QMetaObject *Handler, const QMetaMethod &Signal)
{
    QStringList names;
    if (!Handler || !Signal.isValid() || Signal.methodType() != QMetaMethod::Signal)
        return names;
    QSet<QByteArray> seen;
    for (int i = 0; i < Handler->methodCount(); ++i) {
        const QMetaMethod method = Handler->method(i);
        if (!IsConnectableSlot(method, Signal))
            continue;
        const QByteArray name = method.name();
        if (!seen.contains(name)) {
            seen.insert(name);
            names.append(QString::fromLatin1(name));
        }
    }
    return names;
}

int EventHandlerCount()
{
    return Registry().Count();
}

void FinalizeEventConnections()
{
    detail::RegistryHolder<TConnectionRegistry>().reset();
}

} // namespace kv
