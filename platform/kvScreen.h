#pragma once

#include "kv_export.h"

// The screen: the application's forms and data modules as the lookup routines, the
// inspector's tree and the designers see them.
//
// A form is a top-level window: a widget that is a window of its own, except popups (menus,
// drop-down lists), tool tips, splash screens and dock widgets or tool bars that only float.
// Forms are listed in the order the screen first saw them: widgets are seen when they are
// created or reparented (and windows when they show), so that order is the order of creation
// for every window made once the screen exists; windows that existed before are added in the
// order Qt lists them, the first time the screen is used. A form that is hidden stays on the list; one that is
// destroyed or embedded into another widget leaves it.
//
// Data modules are non-visual roots registered with the screen (kv::TDataModule registers
// itself; any other QObject may be registered as one). They are listed in registration
// order and leave the list when they are destroyed or unregistered.
//
// User-interface thread only.

#include <QList>
#include <QObject>
#include <QPointer>

class QWidget;

namespace kv {

class KV_EXPORT TScreen : public QObject
{
    Q_OBJECT

public:
    // Use kv::Screen() instead; public for the function-local static.
    TScreen();
    ~TScreen() override;

    // Index out of range raises kv::Exception (SListIndexError).
    int FormCount();
    QWidget *Forms(int Index);
    QList<QWidget *> FormList();

    int DataModuleCount() const;
    QObject *DataModules(int Index) const;
    QList<QObject *> DataModuleList() const;

    // The form that holds the active window (the window itself, or the form of a popup or
    // floating part that is active); null when the application is not active.
    QWidget *ActiveForm();

    // The application's main form: the one set with SetMainForm while it lives, else the first
    // QMainWindow among the forms, else null.
    QWidget *MainForm();
    void SetMainForm(QWidget *Form);

    // Registering twice keeps the first place; nil is ignored.
    void RegisterDataModule(QObject *Module);
    void UnregisterDataModule(QObject *Module);
    bool IsDataModule(const QObject *Obj) const;

    // Whether Widget is a form by kind (see above); false for null.
    static bool IsForm(const QWidget *Widget);
    // The same for any object: false for null and for objects that are not widgets.
    static bool IsFormObject(const QObject *Obj);

Q_SIGNALS:
    // A form or data module joined or left the lists. Emitted when the screen notices: a new
    // window once it is first asked about its forms, a destroyed one at once.
    void FormsChanged();

private:
    class TWatcher;
    friend class TWatcher;

    void EnsureWatching();
    void Sync();
    void Seen(QWidget *Widget, bool Shown = false);
    void Track(QObject *Obj);
    void Gone(QObject *Obj);

    QList<QPointer<QWidget>> m_forms;
    QList<QPointer<QWidget>> m_pending; // seen, not yet classified: they may still be under construction
    QList<QPointer<QObject>> m_dataModules;
    QPointer<QWidget> m_mainForm;
    QPointer<QObject> m_watcher;
    bool m_syncing = false;
};

// The process-wide screen, created on first use.
KV_EXPORT TScreen &Screen();

} // namespace kv
