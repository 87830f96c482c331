#include "foundation/ideCommon_keyhandler.h"

#include "foundation/ideConsts.h"
#include "platform/kvComponentState.h"
#include "platform/kvException.h"

#include <QKeyEvent>
#include <QWidget>

namespace kv {

TKVKeyHandler::TKVKeyHandler(QWidget *Control, std::function<void()> DefaultMapping)
    : m_control(Control)
    , m_defaultMapping(std::move(DefaultMapping))
    , m_keyMapping(LoadStr(SKBDDefault))
{
}

void TKVKeyHandler::SetKeyMapping(const QString &Name)
{
    if (Name == m_keyMapping)
        return;
    m_keyMapping = Name;
    UpdateKeyMapping();
}

void TKVKeyHandler::UpdateKeyMapping()
{
    m_keys.Clear();
    m_keyState = 0;
    if (TKeyboardInitProc init = GetKeyboardInitProc(m_control->metaObject(), m_keyMapping))
        init(m_control);
    else if (m_defaultMapping)
        m_defaultMapping();
}

bool TKVKeyHandler::Query(const QKeyEvent *Event, int &Key, Qt::KeyboardModifiers &Shift) const
{
    Key = Event->key();
    Shift = Event->modifiers() & KeyBindingModifiers;
    const bool isReturn = Key == Qt::Key_Return || Key == Qt::Key_Enter;
    const bool isTab = Key == Qt::Key_Tab || Key == Qt::Key_Backtab;
    if ((isReturn && !WantReturns) || (isTab && !WantTabs)) {
        if (!(Shift & Qt::ControlModifier))
            return false;
        Shift = {};
    }
    return Key != 0 && !ComponentState(m_control).testFlag(csDesigning);
}

bool TKVKeyHandler::ShortcutOverride(QKeyEvent *Event)
{
    int key;
    Qt::KeyboardModifiers shift;
    if (!Query(Event, key, shift) || !m_keys.FindKeyData(key, shift, m_keyState))
        return false;
    Event->accept();
    return true;
}

bool TKVKeyHandler::KeyPress(QKeyEvent *Event)
{
    int key;
    Qt::KeyboardModifiers shift;
    if (!Query(Event, key, shift)) {
        Event->ignore();
        return false;
    }
    const TKeyData *data = m_keys.FindKeyData(key, shift, m_keyState);
    if (!data) {
        m_keyState = 0;
        return false;
    }
    // The method may change the list: take what is needed first.
    const qint8 next = data->NextState;
    const TKeyboardMethod method = data->Method;
    m_keyState = next;
    if (method)
        Guarded(method);
    Event->accept();
    return true;
}

} // namespace kv
