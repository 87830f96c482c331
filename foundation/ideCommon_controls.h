#pragma once

#include "kv_export.h"

// Small bases shared by the library's controls: a custom control with configurable keys, a
// tab control that moves between tabs with Ctrl+Tab, a tool button, and handle objects that
// let any object receive posted messages, to defer work until the current event is done.

#include "foundation/ideCommon_keyhandler.h"
#include "foundation/ideSystem_messages.h"

#include <QObject>
#include <QTabWidget>
#include <QToolButton>
#include <QWidget>

#include <functional>

namespace kv {

class INotifier;

class KV_EXPORT TKVCustomControl : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool WantTabs READ WantTabs WRITE SetWantTabs)
    Q_PROPERTY(bool WantReturns READ WantReturns WRITE SetWantReturns)
    Q_PROPERTY(QString KeyMapping READ KeyMapping WRITE SetKeyMapping)

public:
    explicit TKVCustomControl(QWidget *Parent = nullptr);

    bool WantTabs() const { return m_keys.WantTabs; }
    void SetWantTabs(bool Value) { m_keys.WantTabs = Value; }
    bool WantReturns() const { return m_keys.WantReturns; }
    void SetWantReturns(bool Value) { m_keys.WantReturns = Value; }
    const QString &KeyMapping() const { return m_keys.KeyMapping(); }
    void SetKeyMapping(const QString &Name) { m_keys.SetKeyMapping(Name); }
    void UpdateKeyMapping() { m_keys.UpdateKeyMapping(); }

    TKeyList &Keys() { return m_keys.Keys(); }
    qint8 KeyState() const { return m_keys.KeyState(); }

protected:
    // Fills the key list when no mapping is registered under KeyMapping; the base binds
    // nothing.
    virtual void DefaultKeyMapping() {}
    // A typed character that no binding took; returns whether the control used it.
    virtual bool InsertChar(QChar Char);

    bool event(QEvent *Event) override;
    void keyPressEvent(QKeyEvent *Event) override;
    bool focusNextPrevChild(bool Next) override;

private:
    TKVKeyHandler m_keys;
};

// Receives the messages posted to it, each once the current event is done, in the order
// posted. Messages still queued when it goes are dropped.
class KV_EXPORT THandleObject : public QObject
{
    Q_OBJECT
public:
    using TWindowProc = std::function<void(TMessage &Message)>;

    explicit THandleObject(TWindowProc Proc, QObject *Parent = nullptr);

    void PostMsg(quint32 Msg, qintptr WParam = 0, qintptr LParam = 0);

protected:
    bool event(QEvent *Event) override;

private:
    TWindowProc m_proc;
};

// A handle object whose messages go to the message handlers of its owner.
class KV_EXPORT TKVHandleObject : public THandleObject
{
    Q_OBJECT
public:
    explicit TKVHandleObject(INotifier *Owner, QObject *Parent = nullptr);
};

class KV_EXPORT TKVTabControl : public QTabWidget
{
    Q_OBJECT
    Q_PROPERTY(QString Version READ Version STORED false)

public:
    explicit TKVTabControl(QWidget *Parent = nullptr);
    QString Version() const;

protected:
    // Ctrl+Tab and Ctrl+Shift+Tab anywhere inside move to the next and the previous tab,
    // before an editor inside can take them.
    bool eventFilter(QObject *Watched, QEvent *Event) override;
    void childEvent(QChildEvent *Event) override;

private:
    // Object and the widgets inside it.
    void Watch(QObject *Object);
};

// Qt shares a tool button's icon pixmaps already, so the glyph needs no compacting.
class KV_EXPORT TKVSpeedButton : public QToolButton
{
    Q_OBJECT
    Q_PROPERTY(QString Version READ Version STORED false)

public:
    explicit TKVSpeedButton(QWidget *Parent = nullptr);
    QString Version() const;
};

} // namespace kv
