#pragma once

// The demo host's command line.

#include <QString>
#include <QStringList>

struct DemoOptions
{
    // The most extra objects that --extra-objects accepts (about 3 GB of QObjects).
    static constexpr int MaxExtraObjects = 10'000'000;

    int extraObjects = 0;
    QString screenshotFile;
    bool countObjects = false;

    // Set when the program should stop at once: after --help or --version, or on bad input.
    bool exitNow = false;
    int exitCode = 0;
    // What to print before stopping: the help or version text (stdout) or an error (stderr).
    QString message;

    bool RunsInteractively() const { return !exitNow && screenshotFile.isEmpty() && !countObjects; }
};

// Reads arguments (the program path first, as QCoreApplication::arguments gives them).
// Uses the application's name and version, which must be set before.
DemoOptions ParseDemoOptions(const QStringList &arguments);

// True when arguments ask only for --help or --version, which need no display.
bool AsksForInformationOnly(const QStringList &arguments);

// Prints options.message to stdout or stderr, as its exit code says, and returns the code.
int ReportAndExit(const DemoOptions &options);
