#include "shell/ideHook.h"

#include "platform/kvException.h"

#include <QHash>
#include <QList>
#include <QObject>

#include <memory>
#include <unordered_map>

namespace kv {

namespace {

// One watched address and what to call when it goes.
struct TFreeNotifierInfo
{
    QList<TFreeNotifyMethod> Notifiers;
    QMetaObject::Connection Connection; // to QObject::destroyed, for QObjects only
};

// Receives QObject::destroyed of every watched QObject. One receiver for all keeps the
// per-object cost to one connection.
class TFreeNotifyReceiver : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
public Q_SLOTS:
    void ObjectDestroyed(QObject *obj);
};

// The registry: watched address to its registrations. Hashed rather than kept sorted:
// every lookup is by exact address, and destroying a watched object must cost the same
// whatever the number of others watched.
class TFreeNotifiersList
{
public:
    void Add(const void *key, const QObject *qobj, TFreeNotifyMethod method)
    {
        std::unique_ptr<TFreeNotifierInfo> &info = m_infos[key];
        if (!info) {
            info = std::make_unique<TFreeNotifierInfo>();
            if (qobj) {
                info->Connection = QObject::connect(qobj, &QObject::destroyed, Receiver(),
                                                    &TFreeNotifyReceiver::ObjectDestroyed,
                                                    Qt::DirectConnection);
            }
        }
        info->Notifiers.append(method);
    }

    void Remove(const void *key, TFreeNotifyMethod method)
    {
        auto it = m_infos.find(key);
        if (it == m_infos.end())
            return;
        TFreeNotifierInfo &info = *it->second;
        info.Notifiers.removeIf([&](const TFreeNotifyMethod &m) { return m == method; });
        if (info.Notifiers.isEmpty()) {
            QObject::disconnect(info.Connection);
            m_infos.erase(it);
        }
    }

    // The object at key is gone: its entry leaves the registry before any handler runs,
    // so that removals made by the handlers find nothing and a new object at the same
    // address starts afresh.
    void NotifyFree(const void *key)
    {
        auto it = m_infos.find(key);
        if (it == m_infos.end())
            return;
        const std::unique_ptr<TFreeNotifierInfo> info = std::move(it->second);
        m_infos.erase(it);
        // Nothing else can reach this list any more, so a plain walk is safe.
        for (const TFreeNotifyMethod &method : std::as_const(info->Notifiers))
            Guarded([&] { method(key); });
    }

    int Count() const { return int(m_infos.size()); }

    // Forgets every registration without calling anything.
    void Clear()
    {
        m_receiver.reset(); // disconnects from every watched QObject
        m_infos.clear();
    }

private:
    TFreeNotifyReceiver *Receiver()
    {
        if (!m_receiver)
            m_receiver = std::make_unique<TFreeNotifyReceiver>();
        return m_receiver.get();
    }

    std::unordered_map<const void *, std::unique_ptr<TFreeNotifierInfo>> m_infos;
    std::unique_ptr<TFreeNotifyReceiver> m_receiver;
};

TFreeNotifiersList &Registry()
{
    static TFreeNotifiersList registry;
    return registry;
}

void TFreeNotifyReceiver::ObjectDestroyed(QObject *obj)
{
    Registry().NotifyFree(obj);
}

} // namespace

TPlainObject::~TPlainObject()
{
    Registry().NotifyFree(this);
}

void kvAddFreeNotification(const QObject *Obj, TFreeNotifyMethod Method)
{
    if (Obj)
        Registry().Add(Obj, Obj, Method);
}

void kvAddFreeNotification(const TPlainObject *Obj, TFreeNotifyMethod Method)
{
    if (Obj)
        Registry().Add(Obj, nullptr, Method);
}

void kvRemoveFreeNotification(const QObject *Obj, TFreeNotifyMethod Method)
{
    if (Obj)
        Registry().Remove(Obj, Method);
}

void kvRemoveFreeNotification(const TPlainObject *Obj, TFreeNotifyMethod Method)
{
    if (Obj)
        Registry().Remove(Obj, Method);
}

int kvFreeNotificationCount()
{
    return Registry().Count();
}

void ideHook::Initialize()
{
    Registry();
}

void ideHook::Finalize()
{
    Registry().Clear();
}

} // namespace kv

#include "ideHook.moc"
