#pragma once

#include "kv_export.h"

// The key handling of our custom controls, usable by any widget (a plain control or a scroll
// area such as the inspector's grid): the key list filled by the control's key mapping,
// prefix-key states, and which keys the control keeps from the dialog and from the host's
// shortcuts. The widget forwards its ShortcutOverride and KeyPress events here.

#include "foundation/ideSystem_keys.h"

#include <QString>

#include <functional>

class QKeyEvent;
class QWidget;

namespace kv {

class KV_EXPORT TKVKeyHandler
{
public:
    // DefaultMapping fills the key list when no mapping is registered under the current
    // name for the widget's class (or an ancestor).
    TKVKeyHandler(QWidget *Control, std::function<void()> DefaultMapping);

    // The control takes Tab (default no) and Enter (default yes); one it doesn't take is left
    // to the dialog, unless Ctrl is held: then it reaches the key list without modifiers.
    bool WantTabs = false;
    bool WantReturns = true;

    const QString &KeyMapping() const { return m_keyMapping; }
    // Stores Name and fills the key list anew when it changes.
    void SetKeyMapping(const QString &Name);
    // Empties the key list and fills it with the mapping's initialiser, or the default.
    void UpdateKeyMapping();

    TKeyList &Keys() { return m_keys; }
    // 0 when no key sequence is pending.
    qint8 KeyState() const { return m_keyState; }
    bool SequencePending() const { return m_keyState != 0; }

    // ShortcutOverride: accepts the event for a key the list binds in the current state, so
    // that no shortcut of the host takes it. Returns whether it did.
    bool ShortcutOverride(QKeyEvent *Event);
    // KeyPress: runs the bound method and moves to the entry's next state, consuming the
    // key; a key bound to nothing ends a pending sequence. Returns whether the key was used.
    // Tab and Enter that the control doesn't take are ignored, so that they reach the dialog.
    bool KeyPress(QKeyEvent *Event);
    // Whether Tab moves the focus out of the control (QWidget::focusNextPrevChild).
    bool TabLeaves() const { return !WantTabs; }

private:
    // The key and modifiers the list is asked for, or false for a key left to the dialog.
    bool Query(const QKeyEvent *Event, int &Key, Qt::KeyboardModifiers &Shift) const;

    QWidget *m_control;
    std::function<void()> m_defaultMapping;
    QString m_keyMapping;
    qint8 m_keyState = 0;
    TKeyList m_keys;
};

} // namespace kv
