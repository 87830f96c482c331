#include "treesrc/ideTSLite_treenotifiers.h"

#include "foundation/ideSystem_messages.h"
#include "platform/kvException.h"
#include "platform/kvRegistryHolder_p.h"
#include "treesrc/ideTSLite_treesource.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>

namespace kv {

namespace {

QEvent::Type PostedNotifyEventType()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

// One posted message for one listener.
class TPostedNotifyEvent final : public QEvent
{
public:
    TPostedNotifyEvent(QObject *Sender, TNotifierProc Listener, quint32 Msg, qintptr WParam,
                       qintptr LParam)
        : QEvent(PostedNotifyEventType())
        , Sender(Sender)
        , Listener(Listener)
        , Msg(Msg)
        , WParam(WParam)
        , LParam(LParam)
    {
    }

    QPointer<QObject> Sender;
    TNotifierProc Listener;
    quint32 Msg;
    qintptr WParam;
    qintptr LParam;
};

} // namespace

// Receives the posted messages of one list; deleting it discards those still queued.
class TNotifierListEx::Dispatcher final : public QObject
{
public:
    explicit Dispatcher(TNotifierListEx &List) : m_list(List) {}

    int Pending = 0;

protected:
    bool event(QEvent *e) override
    {
        if (e->type() != PostedNotifyEventType())
            return QObject::event(e);
        --Pending;
        auto *posted = static_cast<TPostedNotifyEvent *>(e);
        QObject *sender = posted->Sender.data();
        if (!sender || !m_list.HasMethod(posted->Listener))
            return true;
        Guarded([&] {
            if (posted->Msg == CM_TSNOTIFY && posted->WParam != 0) {
                // The record lives in the sender, which is still alive: copy it now.
                const TNodeRec copy = *reinterpret_cast<const TNodeRec *>(posted->WParam);
                posted->Listener(sender, reinterpret_cast<qintptr>(&copy), posted->LParam);
            } else {
                posted->Listener(sender, posted->WParam, posted->LParam);
            }
        });
        return true;
    }

private:
    TNotifierListEx &m_list;
};

TNotifierListEx::TNotifierListEx()
    : m_dispatcher(std::make_unique<Dispatcher>(*this))
{
}

TNotifierListEx::~TNotifierListEx() = default;

void TNotifierListEx::PostMessage(QObject *Sender, quint32 Msg, qintptr WParam, qintptr LParam)
{
    if (!Sender)
        return;
    // The methods held now, newest first; listeners added later do not get this message.
    const QList<TNotifierProc> methods = Methods();
    for (qsizetype i = methods.count() - 1; i >= 0; --i) {
        QCoreApplication::postEvent(m_dispatcher.get(),
                                    new TPostedNotifyEvent(Sender, methods.at(i), Msg, WParam, LParam));
        ++m_dispatcher->Pending;
    }
}

int TNotifierListEx::PendingCount() const
{
    return m_dispatcher->Pending;
}

TNotifierListEx &GetTreeNotifiers()
{
    return detail::LazyRegistry<TNotifierListEx>();
}

void FinalizeTreeNotifiers()
{
    detail::RegistryHolder<TNotifierListEx>().reset();
}

} // namespace kv
