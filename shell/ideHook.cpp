#include "shell/ideHook.h"

#include "platform/kvException.h"

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
#include <QVarLengthArray>

#include <memory>
#include <unordered_map>

namespace kv {

namespace {

// One watched address and what to call when it goes. Most objects have one registration,
// kept inline so that registering and destroying allocate nothing of their own.
struct TFreeNotifierInfo
{
    QVarLengthArray<TFreeNotifyMethod, 1> Notifiers;
    bool IsQObject = false;
};

class TFreeNotifiersList;

// Receives QObject::destroyed of every watched QObject. One receiver for all keeps the
// per-object cost to one connection.
class TFreeNotifyReceiver : public QObject
{
    Q_OBJECT
public:
    explicit TFreeNotifyReceiver(TFreeNotifiersList *List) : m_list(List) {}
    // The watched QObjects can no longer be heard of: their entries go.
    ~TFreeNotifyReceiver() override;

    // By method index: a member-pointer connection allocates a slot object whose teardown
    // makes every watched destruction several times dearer, and holding a
    // QMetaObject::Connection would keep Qt's connection alive past the sender.
    static int DestroyedSignal()
    {
        static const int index = QObject::staticMetaObject.indexOfSignal("destroyed(QObject*)");
        return index;
    }
    static int DestroyedSlot()
    {
        static const int index = staticMetaObject.indexOfSlot("ObjectDestroyed(QObject*)");
        return index;
    }

public Q_SLOTS:
    void ObjectDestroyed(QObject *obj);

private:
    TFreeNotifiersList *m_list;
};

// The registry: watched address to its registrations. Hashed rather than kept sorted:
// every lookup is by exact address, and destroying a watched object must cost the same
// whatever the number of others watched.
class TFreeNotifiersList
{
public:
    TFreeNotifiersList() = default;
    TFreeNotifiersList(const TFreeNotifiersList &) = delete;
    TFreeNotifiersList &operator=(const TFreeNotifiersList &) = delete;
    ~TFreeNotifiersList()
    {
        m_infos.clear();
        delete m_receiver.data();
    }

    void Add(const void *key, const QObject *qobj, TFreeNotifyMethod method)
    {
        TFreeNotifierInfo &info = m_infos[key];
        if (info.Notifiers.isEmpty() && qobj) {
            info.IsQObject = true;
            QMetaObject::connect(qobj, TFreeNotifyReceiver::DestroyedSignal(), Receiver(),
                                 TFreeNotifyReceiver::DestroyedSlot(), Qt::DirectConnection);
        }
        info.Notifiers.append(method);
    }

    void Remove(const void *key, TFreeNotifyMethod method)
    {
        auto it = m_infos.find(key);
        if (it == m_infos.end())
            return;
        TFreeNotifierInfo &info = it->second;
        info.Notifiers.removeIf([&](const TFreeNotifyMethod &m) { return m == method; });
        if (info.Notifiers.isEmpty()) {
            if (info.IsQObject) {
                // A watched QObject is alive while it is in the registry.
                QMetaObject::disconnect(static_cast<const QObject *>(key), TFreeNotifyReceiver::DestroyedSignal(),
                                        Receiver(), TFreeNotifyReceiver::DestroyedSlot());
            }
            m_infos.erase(it);
        }
    }

    // The object at key is gone: its entry leaves the registry before any handler runs,
    // so that removals made by the handlers find nothing and a new object at the same
    // address starts afresh.
    void NotifyFree(const void *key)
    {
        // take() rather than erase(iterator): erase computes the next iterator, which scans
        // the empty buckets of a thinning table and made every watched destruction dear.
        if (m_infos.empty())
            return;
        auto node = m_infos.extract(key);
        if (node.empty())
            return;
        const TFreeNotifierInfo &info = node.mapped();
        // Nothing else can reach this list any more, so a plain walk is safe.
        for (const TFreeNotifyMethod &method : info.Notifiers)
            Guarded([&] { method(key); });
    }

    int Count() const { return int(m_infos.size()); }

    // Forgets every registration without calling anything.
    void Clear()
    {
        delete m_receiver.data(); // disconnects from every watched QObject
        m_infos.clear();
    }

    void ForgetQObjects()
    {
        std::erase_if(m_infos, [](const auto &entry) { return entry.second.IsQObject; });
    }

private:
    // The receiver goes with the application object: when that is destroyed it becomes the
    // application's last child, so it still hears of every other child's destruction and
    // never outlives the application.
    TFreeNotifyReceiver *Receiver()
    {
        if (!m_receiver) {
            m_receiver = new TFreeNotifyReceiver(this);
            if (QCoreApplication::instance())
                qAddPostRoutine(&TFreeNotifiersList::AdoptReceiver);
        }
        return m_receiver.data();
    }

    static void AdoptReceiver();

    std::unordered_map<const void *, TFreeNotifierInfo> m_infos;
    QPointer<TFreeNotifyReceiver> m_receiver;
};

TFreeNotifiersList &Registry()
{
    static TFreeNotifiersList registry;
    return registry;
}

void TFreeNotifiersList::AdoptReceiver()
{
    if (TFreeNotifyReceiver *receiver = Registry().m_receiver.data())
        receiver->setParent(QCoreApplication::instance());
}

TFreeNotifyReceiver::~TFreeNotifyReceiver()
{
    m_list->ForgetQObjects();
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
