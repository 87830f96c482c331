#include "hosts/demo/DemoOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

QString ProgramName(const QStringList &arguments)
{
    const QString name = QFileInfo(arguments.value(0)).fileName();
    return name.isEmpty() ? QCoreApplication::applicationName() : name;
}

} // namespace

DemoOptions ParseDemoOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"A Qt Widgets program with a Tools menu, several forms and a data module, "
        "in which the Korvo IDE Inspector add-in is shown."_s);
    // Our own help option: Qt's also adds --help-all, which would print and exit by itself.
    const QCommandLineOption helpOption({u"h"_s, u"help"_s}, u"Displays this help."_s);
    const QCommandLineOption extraObjectsOption(
        u"extra-objects"_s,
        u"Creates <N> more QObjects, as a tree under a root object named \"ExtraObjects\" "
        "(for scale tests)."_s,
        u"N"_s);
    const QCommandLineOption screenshotOption(
        u"screenshot"_s,
        u"Saves a PNG picture of the main window with its Tools menu open to <file>, "
        "then exits."_s,
        u"file"_s);
    const QCommandLineOption countOption(
        u"count-objects"_s,
        u"Prints how many QObjects the program holds, then exits."_s);
    parser.addOption(helpOption);
    const QCommandLineOption versionOption = parser.addVersionOption();
    parser.addOption(extraObjectsOption);
    parser.addOption(screenshotOption);
    parser.addOption(countOption);

    DemoOptions options;
    const QString program = ProgramName(arguments);
    auto fail = [&](const QString &text) {
        options.exitNow = true;
        options.exitCode = 1;
        options.message = program + u": "_s + text + u"\nTry '"_s + program
            + u" --help' for more information.\n"_s;
        return options;
    };

    if (!parser.parse(arguments))
        return fail(parser.errorText());
    if (parser.isSet(helpOption)) {
        options.exitNow = true;
        options.message = parser.helpText();
        return options;
    }
    if (parser.isSet(versionOption)) {
        options.exitNow = true;
        options.message = QCoreApplication::applicationName() + u' '
            + QCoreApplication::applicationVersion() + u'\n';
        return options;
    }
    if (const QStringList extra = parser.positionalArguments(); !extra.isEmpty())
        return fail(u"Unexpected argument '%1'."_s.arg(extra.first()));

    if (parser.isSet(extraObjectsOption)) {
        const QString text = parser.value(extraObjectsOption);
        bool ok = false;
        const qlonglong count = text.toLongLong(&ok);
        if (!ok || count < 0 || count > DemoOptions::MaxExtraObjects)
            return fail(u"--extra-objects expects a whole number from 0 to %1, not '%2'."_s
                            .arg(DemoOptions::MaxExtraObjects)
                            .arg(text));
        options.extraObjects = int(count);
    }
    if (parser.isSet(screenshotOption)) {
        options.screenshotFile = parser.value(screenshotOption);
        if (options.screenshotFile.isEmpty())
            return fail(u"--screenshot expects the name of the file to write."_s);
    }
    options.countObjects = parser.isSet(countOption);
    return options;
}

bool AsksForInformationOnly(const QStringList &arguments)
{
    static const QStringList informationOptions = {u"-h"_s, u"--help"_s, u"-v"_s,
                                                   u"--version"_s};
    for (const QString &argument : arguments.mid(1)) {
        if (argument == u"--"_s)
            break;
        if (informationOptions.contains(argument))
            return true;
    }
    return false;
}

int ReportAndExit(const DemoOptions &options)
{
    std::FILE *stream = options.exitCode == 0 ? stdout : stderr;
    std::fputs(options.message.toLocal8Bit().constData(), stream);
    std::fflush(stream);
    return options.exitCode;
}
