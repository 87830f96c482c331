#include "foundation/ideCommon_controls.h"

#include "foundation/ideCommon_forms.h"
#include "foundation/ideSystem_inotifier.h"
#include "platform/kvComponentState.h"
#include "platform/kvException.h"

#include <QChildEvent>
#include <QCoreApplication>
#include <QKeyEvent>

namespace kv {

TKVCustomControl::TKVCustomControl(QWidget *Parent)
    : QWidget(Parent)
    , m_keys(this, [this] { DefaultKeyMapping(); })
{
    setFocusPolicy(Qt::StrongFocus);
}

bool TKVCustomControl::InsertChar(QChar)
{
    return false;
}

bool TKVCustomControl::event(QEvent *Event)
{
    if (Event->type() == QEvent::ShortcutOverride && m_keys.ShortcutOverride(static_cast<QKeyEvent *>(Event)))
        return true;
    return QWidget::event(Event);
}

void TKVCustomControl::keyPressEvent(QKeyEvent *Event)
{
    if (m_keys.KeyPress(Event) || !Event->isAccepted())
        return;
    const QString text = Event->text();
    if (text.size() == 1 && text.at(0).isPrint() && !ComponentState(this).testFlag(csDesigning)
        && InsertChar(text.at(0)))
        return;
    QWidget::keyPressEvent(Event);
}

bool TKVCustomControl::focusNextPrevChild(bool Next)
{
    return m_keys.TabLeaves() && QWidget::focusNextPrevChild(Next);
}

namespace {

QEvent::Type PostedMessageType()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

class TPostedMessage final : public QEvent
{
public:
    explicit TPostedMessage(const TMessage &Message) : QEvent(PostedMessageType()), Message(Message) {}
    TMessage Message;
};

} // namespace

THandleObject::THandleObject(TWindowProc Proc, QObject *Parent)
    : QObject(Parent)
    , m_proc(std::move(Proc))
{
}

void THandleObject::PostMsg(quint32 Msg, qintptr WParam, qintptr LParam)
{
    QCoreApplication::postEvent(this, new TPostedMessage(TMessage{Msg, WParam, LParam, 0}));
}

bool THandleObject::event(QEvent *Event)
{
    if (Event->type() != PostedMessageType())
        return QObject::event(Event);
    if (m_proc)
        Guarded([&] { m_proc(static_cast<TPostedMessage *>(Event)->Message); });
    return true;
}

TKVHandleObject::TKVHandleObject(INotifier *Owner, QObject *Parent)
    : THandleObject([Owner](TMessage &Message) { Owner->Dispatch(Message); }, Parent)
{
}

TKVTabControl::TKVTabControl(QWidget *Parent) : QTabWidget(Parent)
{
    Watch(this);
}

void TKVTabControl::Watch(QObject *Object)
{
    Object->installEventFilter(this);
    const QList<QWidget *> inside = Object->findChildren<QWidget *>();
    for (QWidget *widget : inside)
        widget->installEventFilter(this);
}

QString TKVTabControl::Version() const
{
    return QString::fromLatin1(KVVersion);
}

void TKVTabControl::childEvent(QChildEvent *Event)
{
    // Every widget inside reports its keys here first, whenever it comes in.
    if (Event->added() && Event->child()->isWidgetType())
        Watch(Event->child());
    QTabWidget::childEvent(Event);
}

bool TKVTabControl::eventFilter(QObject *Watched, QEvent *Event)
{
    if (Event->type() == QEvent::ChildAdded) {
        QObject *child = static_cast<QChildEvent *>(Event)->child();
        if (child->isWidgetType())
            Watch(child);
        return false;
    }
    if (Event->type() != QEvent::ShortcutOverride && Event->type() != QEvent::KeyPress)
        return false;
    auto *key = static_cast<QKeyEvent *>(Event);
    const Qt::KeyboardModifiers modifiers = key->modifiers() & KeyBindingModifiers;
    const bool tab = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
    if (!tab || !(modifiers & Qt::ControlModifier) || (modifiers & ~(Qt::ControlModifier | Qt::ShiftModifier)))
        return false;
    // Claim the key for the tabs; the change happens once, on the press.
    key->accept();
    if (Event->type() == QEvent::KeyPress)
        ChangeTab(this, !(modifiers & Qt::ShiftModifier) && key->key() == Qt::Key_Tab);
    return true;
}

TKVSpeedButton::TKVSpeedButton(QWidget *Parent) : QToolButton(Parent)
{
    setAutoRaise(true);
}

QString TKVSpeedButton::Version() const
{
    return QString::fromLatin1(KVVersion);
}

} // namespace kv
