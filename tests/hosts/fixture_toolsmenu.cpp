// A small Qt Widgets program for the launcher tests. Built twice: as a foreign program
// that does not link the package, and (KV_LINKED_HOST) as a program that links it and
// registers the add-ins itself, as the demo host does. It shows a main window with a Tools
// menu ("none": without one; "core": no window and no QApplication), then prints its Tools
// menu and the preload variables it sees, and quits.

#include <QApplication>
#include <QCoreApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>

#include <cstdio>

#ifdef KV_LINKED_HOST
#include "shell/kvIDEInspD5_host.h"
#endif

static void PrintLine(const QString &line)
{
    std::fputs(qPrintable(line + u'\n'), stdout);
    std::fflush(stdout);
}

static void PrintEnvironment()
{
    PrintLine(QStringLiteral("ENV LD_PRELOAD=") + qEnvironmentVariable("LD_PRELOAD"));
    PrintLine(QStringLiteral("ENV KVIDEINSP_PRELOAD=") + qEnvironmentVariable("KVIDEINSP_PRELOAD"));
}

int main(int argc, char **argv)
{
    const QString mode = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("named");
    if (mode == QLatin1String("core")) {
        QCoreApplication app(argc, argv);
        QTimer::singleShot(0, &app, [] {
            PrintEnvironment();
            PrintLine(QStringLiteral("CORE OK"));
            QCoreApplication::quit();
        });
        return app.exec();
    }

    QApplication app(argc, argv);
#ifdef KV_LINKED_HOST
    kv::TPackageHost host;
    host.Load();
#endif
    QMainWindow window;
    QMenu *file = window.menuBar()->addMenu(QStringLiteral("&File"));
    file->addAction(QStringLiteral("&Quit"));
    QMenu *tools = nullptr;
    if (mode == QLatin1String("named")) {
        tools = window.menuBar()->addMenu(QStringLiteral("E&xtras"));
        tools->setObjectName(QStringLiteral("ToolsMenu"));
        tools->addAction(QStringLiteral("&Options"));
        tools->addAction(QStringLiteral("&Customize..."));
    } else {
        window.menuBar()->addMenu(QStringLiteral("&Help"))->addAction(QStringLiteral("&About"));
    }
    window.show();
#ifdef KV_LINKED_HOST
    host.Register(&window); // after show: a preloaded package has registered by now
#endif
    QTimer::singleShot(0, &app, [tools] {
        if (tools) {
            for (const QAction *action : tools->actions())
                PrintLine(QStringLiteral("TOOLS ") + action->text() + u'|' + action->objectName());
        }
        PrintEnvironment();
        QCoreApplication::quit();
    });
    return app.exec();
}
