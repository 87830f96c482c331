#include <QProcess>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

struct TRun
{
    int ExitCode = -1;
    QStringList Out;
    QString Err;
};

// Runs the launcher with args, or program directly when it is given.
TRun Launch(const QStringList &args, const QByteArray &preload = {}, const QString &program = {})
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    env.remove(u"KVIDEINSP_PRELOAD"_s);
    env.remove(u"LD_PRELOAD"_s);
    if (!preload.isEmpty())
        env.insert(u"LD_PRELOAD"_s, QString::fromLocal8Bit(preload));
    process.setProcessEnvironment(env);
    process.start(program.isEmpty() ? QStringLiteral(KV_LAUNCHER) : program, args);
    TRun run;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        run.Err = u"timed out"_s;
        return run;
    }
    run.ExitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.Out = QString::fromLocal8Bit(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    run.Err = QString::fromLocal8Bit(process.readAllStandardError());
    return run;
}

// What the launcher, the package or a sanitizer said on stderr; Qt's own remarks about the
// offscreen platform are not complaints.
QStringList Complaints(const QString &err)
{
    QStringList found;
    for (const QString &line : err.split(u'\n', Qt::SkipEmptyParts)) {
        for (const char *word : {"kvideinsp", "Korvo", "Sanitizer", "runtime error", "rror"}) {
            if (line.contains(QLatin1String(word)))
                found << line;
        }
    }
    return found;
}

} // namespace

class tst_Launcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What the program prints: its Tools menu, then the preload variables that its children
    // would inherit.
    void runsTheProgramWithTheItem_data()
    {
        QTest::addColumn<QString>("program"); // empty: the launcher, with the arguments
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("preload");
        QTest::addColumn<QStringList>("output");
        const QStringList tools = {u"TOOLS &Options|"_s, u"TOOLS Korvo IDE Inspector|ToolsKorvoIDEInspector"_s,
                                   u"TOOLS &Customize...|"_s};
        const QStringList cleared = {u"ENV LD_PRELOAD="_s, u"ENV KVIDEINSP_PRELOAD="_s};
        const QStringList withItem = tools + cleared;
        const QString fixture = QStringLiteral(KV_FIXTURE);
        const QString linked = QStringLiteral(KV_LINKED_FIXTURE);

        QTest::newRow("named ToolsMenu") << QString() << QStringList{fixture, u"named"_s} << QByteArray() << withItem;
        QTest::newRow("IDE style name") << QString() << QStringList{fixture, u"dotted"_s} << QByteArray() << withItem;
        QTest::newRow("titled Tools") << QString() << QStringList{fixture, u"title"_s} << QByteArray() << withItem;
        QTest::newRow("preload kept") << QString() << QStringList{fixture, u"named"_s} << QByteArray("libm.so.6")
                                      << tools + QStringList{u"ENV LD_PRELOAD=libm.so.6"_s, u"ENV KVIDEINSP_PRELOAD="_s};
        QTest::newRow("no Tools menu") << QString() << QStringList{fixture, u"none"_s} << QByteArray() << cleared;
        QTest::newRow("no QApplication") << QString() << QStringList{fixture, u"core"_s} << QByteArray()
                                         << cleared + QStringList{u"CORE OK"_s};
        // A program that links the package gets one item, launched or not.
        QTest::newRow("linked alone") << linked << QStringList() << QByteArray() << withItem;
        QTest::newRow("linked launched") << QString() << QStringList{linked, u"named"_s} << QByteArray() << withItem;
    }

    void runsTheProgramWithTheItem()
    {
        QFETCH(QString, program);
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, preload);
        const TRun run = Launch(arguments, preload, program);
        QVERIFY2(run.ExitCode == 0, qPrintable(run.Err));
        QTEST(run.Out, "output");
        QCOMPARE(Complaints(run.Err), QStringList());
    }

    void refusesWhatItCannotRun_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message");
        QTest::newRow("missing path") << u"/nonexistent/prog"_s << 127 << u"no such program"_s;
        QTest::newRow("missing name") << u"kv-no-such-program-here"_s << 127 << u"no such program"_s;
        QTest::newRow("directory") << u"/tmp"_s << 126 << u"not an executable program"_s;
        QTest::newRow("not Qt") << u"/bin/true"_s << 2 << u"is not a Qt 6 Widgets program"_s;
        QTest::newRow("script") << QStringLiteral(KV_SCRIPT) << 2 << u"is not a Qt 6 Widgets program"_s;
    }

    void refusesWhatItCannotRun()
    {
        QFETCH(QString, program);
        QFETCH(int, exitCode);
        QFETCH(QString, message);
        const TRun run = Launch({program});
        QCOMPARE(run.ExitCode, exitCode);
        QVERIFY2(run.Err.contains(message), qPrintable(run.Err));
        QVERIFY2(run.Err.startsWith(u"kvideinsp-run: "_s), qPrintable(run.Err));
    }

    void usage()
    {
        const TRun run = Launch({});
        QCOMPARE(run.ExitCode, 2);
        QVERIFY(run.Err.contains(u"usage: kvideinsp-run PROGRAM"_s));
    }
};

QTEST_GUILESS_MAIN(tst_Launcher)
#include "tst_launcher.moc"
