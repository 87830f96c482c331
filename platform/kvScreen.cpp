#include "platform/kvScreen.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"

#include <QApplication>
#include <QDockWidget>
#include <QEvent>
#include <QMainWindow>
#include <QToolBar>
#include <QWidget>

#include <algorithm>
#include <memory>
#include <utility>

namespace kv {

namespace {

// Past this many unclassified widgets the pending list drops the ones that can no longer
// become forms, so that a program that builds many widgets without asking stays small.
constexpr qsizetype PendingCompactSize = 256;

template <class T>
bool ContainsObject(const QList<QPointer<T>> &list, const QObject *obj)
{
    return std::any_of(list.cbegin(), list.cend(), [obj](const QPointer<T> &p) { return p.data() == obj; });
}

} // namespace

// Sees every widget as it is created or changes its parent. Only the type of the event is
// looked at for the rest, so the filter costs next to nothing.
class TScreen::TWatcher : public QObject
{
public:
    TWatcher(TScreen *screen, QObject *application)
        : QObject(application), m_screen(screen)
    {
    }

    bool eventFilter(QObject *obj, QEvent *event) override
    {
        const QEvent::Type type = event->type();
        if ((type != QEvent::Create && type != QEvent::ParentChange && type != QEvent::Show) || !obj->isWidgetType())
            return false;
        if (type != QEvent::Show)
            m_screen->Seen(static_cast<QWidget *>(obj));
        // A child made a window by its flags alone gets no parent change; it is seen when
        // it shows.
        else if (static_cast<QWidget *>(obj)->isWindow())
            m_screen->Seen(static_cast<QWidget *>(obj), true);
        return false;
    }

private:
    TScreen *m_screen;
};

TScreen::TScreen()
{
    EnsureWatching();
}

TScreen::~TScreen()
{
    delete m_watcher.data();
}

bool TScreen::IsFormObject(const QObject *Obj)
{
    return Obj && Obj->isWidgetType() && IsForm(static_cast<const QWidget *>(Obj));
}

bool TScreen::IsForm(const QWidget *Widget)
{
    // Widgets that never show (the streams' class prototypes) are nobody's forms.
    if (!Widget || !Widget->isWindow() || Widget->testAttribute(Qt::WA_DontShowOnScreen))
        return false;
    switch (Widget->windowType()) {
    case Qt::Popup:
    case Qt::ToolTip:
    case Qt::SplashScreen:
    case Qt::Desktop:
        return false;
    default:
        break;
    }
    // Parts of a main window that float are windows only while they float.
    return !qobject_cast<const QDockWidget *>(Widget) && !qobject_cast<const QToolBar *>(Widget);
}

void TScreen::EnsureWatching()
{
    if (m_watcher)
        return;
    auto *application = qobject_cast<QApplication *>(QCoreApplication::instance());
    if (!application)
        return;
    auto *watcher = new TWatcher(this, application);
    m_watcher = watcher;
    application->installEventFilter(watcher);
    // Windows made before the screen watched.
    const QWidgetList existing = QApplication::topLevelWidgets();
    for (QWidget *widget : existing)
        Seen(widget);
}

void TScreen::Seen(QWidget *Widget, bool Shown)
{
    // A widget created inside another one is no window and cannot become one without a
    // parent change or a show, which bring it here again.
    if (!Widget->isWindow())
        return;
    if (Shown && ContainsObject(m_forms, Widget))
        return;
    if (m_pending.size() >= PendingCompactSize) {
        m_pending.removeIf([](const QPointer<QWidget> &p) { return !p || !p->isWindow(); });
    }
    m_pending.append(Widget);
}

void TScreen::Sync()
{
    if (m_syncing)
        return;
    m_syncing = true;
    EnsureWatching();
    const qsizetype before = m_forms.size();
    m_forms.removeIf([](const QPointer<QWidget> &p) { return !IsForm(p.data()); });
    bool changed = m_forms.size() != before;
    const QList<QPointer<QWidget>> pending = std::exchange(m_pending, {});
    for (const QPointer<QWidget> &widget : pending) {
        if (IsForm(widget.data()) && !ContainsObject(m_forms, widget.data())) {
            m_forms.append(widget);
            Track(widget.data());
            changed = true;
        }
    }
    m_syncing = false;
    if (changed)
        Q_EMIT FormsChanged();
}

void TScreen::Track(QObject *Obj)
{
    connect(Obj, &QObject::destroyed, this, &TScreen::Gone, Qt::UniqueConnection);
}

void TScreen::Gone(QObject *Obj)
{
    // The guards are already null while destroyed is emitted.
    const auto dead = [Obj](const auto &p) { return !p || p.data() == Obj; };
    const qsizetype removed = m_forms.removeIf(dead) + m_dataModules.removeIf(dead);
    if (removed > 0)
        Q_EMIT FormsChanged();
}

int TScreen::FormCount()
{
    Sync();
    return int(m_forms.size());
}

QWidget *TScreen::Forms(int Index)
{
    Sync();
    CheckListIndex(Index, m_forms.size());
    return m_forms.at(Index).data();
}

QList<QWidget *> TScreen::FormList()
{
    Sync();
    QList<QWidget *> result;
    result.reserve(m_forms.size());
    for (const QPointer<QWidget> &form : std::as_const(m_forms))
        result.append(form.data());
    return result;
}

int TScreen::DataModuleCount() const
{
    return int(m_dataModules.size());
}

QObject *TScreen::DataModules(int Index) const
{
    CheckListIndex(Index, m_dataModules.size());
    return m_dataModules.at(Index).data();
}

QList<QObject *> TScreen::DataModuleList() const
{
    QList<QObject *> result;
    result.reserve(m_dataModules.size());
    for (const QPointer<QObject> &module : m_dataModules)
        result.append(module.data());
    return result;
}

QWidget *TScreen::ActiveForm()
{
    QWidget *window = QApplication::activeWindow();
    while (window && !IsForm(window))
        window = window->parentWidget() ? window->parentWidget()->window() : nullptr;
    return window;
}

QWidget *TScreen::MainForm()
{
    if (m_mainForm)
        return m_mainForm.data();
    Sync();
    for (const QPointer<QWidget> &form : std::as_const(m_forms)) {
        if (qobject_cast<QMainWindow *>(form.data()))
            return form.data();
    }
    return nullptr;
}

void TScreen::SetMainForm(QWidget *Form)
{
    m_mainForm = Form;
}

void TScreen::RegisterDataModule(QObject *Module)
{
    if (!Module || IsDataModule(Module))
        return;
    m_dataModules.append(Module);
    Track(Module);
    Q_EMIT FormsChanged();
}

void TScreen::UnregisterDataModule(QObject *Module)
{
    if (!Module || m_dataModules.removeIf([Module](const QPointer<QObject> &p) { return p.data() == Module; }) == 0)
        return;
    if (!ContainsObject(m_forms, Module))
        disconnect(Module, &QObject::destroyed, this, &TScreen::Gone);
    Q_EMIT FormsChanged();
}

bool TScreen::IsDataModule(const QObject *Obj) const
{
    return Obj && ContainsObject(m_dataModules, Obj);
}

TScreen &Screen()
{
    // Made on first use, and gone with the application object (post routines run in its
    // destructor), so that the screen never outlives it. A use after that makes a screen
    // that watches nothing and goes at exit.
    static std::unique_ptr<TScreen> screen;
    if (!screen) {
        screen = std::make_unique<TScreen>();
        if (QCoreApplication::instance())
            qAddPostRoutine([] { screen.reset(); });
    }
    return *screen;
}

} // namespace kv
