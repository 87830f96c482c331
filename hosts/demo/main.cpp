// The demo host: a stand-alone Qt Widgets program that loads the package as an IDE loads
// its design-time packages, so that the add-in's item appears in its Tools menu.

#include "hosts/demo/DemoMainWindow.h"
#include "hosts/demo/DemoObjects.h"
#include "hosts/demo/DemoOptions.h"
#include "hosts/demo/DemoScreenshot.h"
#include "hosts/demo/DemoWorkspace.h"
#include "shell/kvIDEInspD5_host.h"

#include <QApplication>
#include <QFileInfo>

#include <cstdio>
#include <exception>

using namespace Qt::StringLiterals;

namespace {

QStringList ArgumentsOf(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

void PrintError(const QString &text)
{
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    std::fprintf(stderr, "%s: %s\n", qPrintable(program), qPrintable(text));
}

// Runs what the command line asked for instead of the event loop; returns the exit code.
int RunBatch(const DemoOptions &options, DemoWorkspace &workspace)
{
    DemoMainWindow *window = workspace.mainWindow();
    for (int round = 0; round < 5; ++round)
        QCoreApplication::processEvents();

    if (options.countObjects) {
        const ObjectCount count = CountReachableObjects();
        std::printf("%lld QObjects reachable from the application object and %lld top-level widgets\n",
                    static_cast<long long>(count.objects), static_cast<long long>(count.topLevelWidgets));
        std::fflush(stdout);
    }
    if (!options.screenshotFile.isEmpty()) {
        QString errorText;
        const QImage picture = GrabWithOpenMenu(window, window->toolsMenu(), &errorText);
        if (picture.isNull() || !SavePng(picture, options.screenshotFile, &errorText)) {
            PrintError(errorText);
            return 1;
        }
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(u"KorvoDemoHost"_s);
    QCoreApplication::setApplicationVersion(u"3.1"_s);
    QCoreApplication::setOrganizationName(u"Korvo Company"_s);

    // --help and --version need no display, so they are answered before a GUI exists.
    if (AsksForInformationOnly(ArgumentsOf(argc, argv))) {
        QCoreApplication app(argc, argv);
        return ReportAndExit(ParseDemoOptions(QCoreApplication::arguments()));
    }

    QApplication app(argc, argv);
    app.setObjectName(QCoreApplication::applicationName());
    const DemoOptions options = ParseDemoOptions(QCoreApplication::arguments());
    if (options.exitNow)
        return ReportAndExit(options);

    try {
        // The host is made before the windows so that, should anything below throw, it
        // still unloads the package after they are gone.
        kv::TPackageHost host;
        host.Load();
        DemoWorkspace workspace(options.extraObjects);
        host.Register(workspace.mainWindow());
        workspace.showStartupWindows();

        const int exitCode = options.RunsInteractively() ? app.exec() : RunBatch(options, workspace);

        // The package stops while every object it may be showing is still alive, as an IDE
        // unloads its packages before it closes its own windows.
        host.Unload();
        return exitCode;
    } catch (const std::exception &e) {
        PrintError(QString::fromUtf8(e.what()));
        return 1;
    }
}
