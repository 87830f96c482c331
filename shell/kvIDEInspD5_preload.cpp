// Loading the package into any Qt 6 Widgets program: the launcher preloads this library
// and names it in KVIDEINSP_PRELOAD. When the program creates its QApplication the package
// starts, and once a window with a menu bar is shown the add-ins are registered with it.

#include "shell/kvIDEInspD5_host.h"
#include "platform/kvQtToolServices.h"

#include <QApplication>
#include <QEvent>
#include <QMenuBar>
#include <QWidget>

namespace kv {

namespace {

const char PreloadVariable[] = "KVIDEINSP_PRELOAD";

// Takes Library out of a preload list (entries separated by colons or spaces), keeping
// every other entry in its place, so that the program's children do not inherit it.
QByteArray WithoutLibrary(const QByteArray &preload, const QByteArray &library)
{
    QByteArrayList kept;
    QByteArray entry;
    auto flush = [&] {
        if (!entry.isEmpty() && entry != library)
            kept.append(entry);
        entry.clear();
    };
    for (char c : preload) {
        if (c == ':' || c == ' ')
            flush();
        else
            entry.append(c);
    }
    flush();
    return kept.join(':');
}

class TPreloadSession : public QObject
{
public:
    explicit TPreloadSession(QApplication *app)
        : QObject(app)
        , m_host(this)
    {
        m_host.Load();
        app->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && watched->isWidgetType()) {
            auto *widget = static_cast<QWidget *>(watched);
            if (widget->isWindow() && HasMenus(widget)) {
                qApp->removeEventFilter(this);
                m_host.Register(widget);
            }
        }
        return false;
    }

private:
    static bool HasMenus(const QWidget *window)
    {
        const QMenuBar *menuBar = TQtToolServices::MenuBarOf(window);
        return menuBar && !menuBar->actions().isEmpty();
    }

    TPackageHost m_host;
};

}

void StartPreloadedPackage()
{
    const QByteArray library = qgetenv(PreloadVariable);
    if (library.isEmpty())
        return; // linked into a program, not preloaded: the program drives the package
    qunsetenv(PreloadVariable);
    const QByteArray rest = WithoutLibrary(qgetenv("LD_PRELOAD"), library);
    if (rest.isEmpty())
        qunsetenv("LD_PRELOAD");
    else
        qputenv("LD_PRELOAD", rest);

    if (auto *app = qobject_cast<QApplication *>(QCoreApplication::instance()))
        new TPreloadSession(app); // owned by the application object
}

} // namespace kv

static void kvStartPreloadedPackage()
{
    kv::StartPreloadedPackage();
}

Q_COREAPP_STARTUP_FUNCTION(kvStartPreloadedPackage)
