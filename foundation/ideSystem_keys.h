#pragma once

#include "kv_export.h"

// Key bindings: a control's key list maps a key, its modifiers and a sequence state to a
// method, so that controls don't hard-code their keys. A mapping (a named initialiser that
// fills the list) is registered for a control class and serves its descendants too.
// Sequence states make prefix keys: a first key moves the control into state N, and the
// next key is looked up in state N. User-interface thread only.

#include <QList>
#include <Qt>

#include <functional>
#include <optional>

class QMetaObject;
class QObject;
class QString;

namespace kv {

using TKeyboardMethod = std::function<void()>;

// The modifiers a binding tells apart: Shift, Ctrl, Alt and Meta. Keypad and group-switch
// flags don't make another key.
inline constexpr Qt::KeyboardModifiers KeyBindingModifiers =
    Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

struct KV_EXPORT TKeyData
{
    qint8 State = 0;     // the sequence state the entry applies in; -1: every state
    qint8 NextState = 0; // the control's sequence state once the entry is used
    int Key = 0;         // a Qt::Key
    Qt::KeyboardModifiers Shift;
    TKeyboardMethod Method; // may be empty
};

class KV_EXPORT TKeyList
{
public:
    // Appends an entry and returns its index. Later entries override earlier ones for the
    // same key, modifiers and state.
    qsizetype AddKey(int Key, Qt::KeyboardModifiers Shift, TKeyboardMethod Method, qint8 State, qint8 NextState);
    // For state 0, leading to state 0.
    qsizetype AddSimpleKey(int Key, Qt::KeyboardModifiers Shift, TKeyboardMethod Method);
    // For every state, leading to state 0.
    qsizetype AddAllKey(int Key, Qt::KeyboardModifiers Shift, TKeyboardMethod Method);
    void Delete(qsizetype Index);
    void Clear();

    qsizetype Count() const { return m_keys.size(); }
    const TKeyData &Items(qsizetype Index) const;

    // The entry for Key with exactly the modifiers Shift (of KeyBindingModifiers) in State,
    // the last added first; null when none. The last answer is kept for the same query
    // until the list changes.
    const TKeyData *FindKeyData(int Key, Qt::KeyboardModifiers Shift, qint8 State) const;

private:
    struct TQuery
    {
        int Key;
        Qt::KeyboardModifiers Shift;
        qint8 State;
        friend bool operator==(const TQuery &, const TQuery &) = default;
    };

    QList<TKeyData> m_keys;
    mutable std::optional<TQuery> m_cachedQuery;
    mutable qsizetype m_cachedIndex = -1;
};

// Fills Control's key list for one mapping.
using TKeyboardInitProc = void (*)(QObject *Control);

// Registers Proc as the mapping Name for ControlClass and its descendants.
KV_EXPORT void RegisterKeyboardInitProc(const QMetaObject *ControlClass, const QString &Name, TKeyboardInitProc Proc);
// The initialiser of the first registration (in registration order) for ControlClass or an
// ancestor whose name is Name, ignoring case; null when none.
KV_EXPORT TKeyboardInitProc GetKeyboardInitProc(const QMetaObject *ControlClass, const QString &Name);

} // namespace kv
