#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

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
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.remove(QStringLiteral("KVIDEINSP_PRELOAD"));
    env.remove(QStringLiteral("LD_PRELOAD"));
    if (!preload.isEmpty())
        env.insert(QStringLiteral("LD_PRELOAD"), QString::fromLocal8Bit(preload));
    process.setProcessEnvironment(env);
    process.start(program.isEmpty() ? QStringLiteral(KV_LAUNCHER) : program, args);
    TRun run;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        run.Err = QStringLiteral("timed out");
        return run;
    }
    run.ExitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.Out = QString::fromLocal8Bit(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    run.Err = QString::fromLocal8Bit(process.readAllStandardError());
    return run;
}

QStringList Filter(const QStringList &lines, const QString &prefix)
{
    QStringList kept;
    for (const QString &line : lines) {
        if (line.startsWith(prefix))
            kept << line.mid(prefix.size());
    }
    return kept;
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
    void putsTheItemIntoTheToolsMenu_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::newRow("named ToolsMenu") << QStringLiteral("named");
        QTest::newRow("IDE style name") << QStringLiteral("dotted");
        QTest::newRow("titled Tools") << QStringLiteral("title");
    }

    void putsTheItemIntoTheToolsMenu()
    {
        QFETCH(QString, mode);
        const TRun run = Launch({QStringLiteral(KV_FIXTURE), mode});
        QVERIFY2(run.ExitCode == 0, qPrintable(run.Err));
        QCOMPARE(Filter(run.Out, QStringLiteral("TOOLS ")),
                 QStringList({QStringLiteral("&Options|"), QStringLiteral("Korvo IDE Inspector|ToolsKorvoIDEInspector"),
                              QStringLiteral("&Customize...|")}));
        // The preload is gone from the environment that children would inherit.
        QCOMPARE(Filter(run.Out, QStringLiteral("ENV ")),
                 QStringList({QStringLiteral("LD_PRELOAD="), QStringLiteral("KVIDEINSP_PRELOAD=")}));
        QCOMPARE(Complaints(run.Err), QStringList());
    }

    void programThatLinksThePackageGetsOneItem()
    {
        const QStringList expected = {QStringLiteral("&Options|"), QStringLiteral("Korvo IDE Inspector|ToolsKorvoIDEInspector"),
                                      QStringLiteral("&Customize...|")};
        const TRun alone = Launch({}, {}, QStringLiteral(KV_LINKED_FIXTURE));
        QVERIFY2(alone.ExitCode == 0, qPrintable(alone.Err));
        QCOMPARE(Filter(alone.Out, QStringLiteral("TOOLS ")), expected);
        const TRun launched = Launch({QStringLiteral(KV_LINKED_FIXTURE), QStringLiteral("named")});
        QVERIFY2(launched.ExitCode == 0, qPrintable(launched.Err));
        QCOMPARE(Filter(launched.Out, QStringLiteral("TOOLS ")), expected);
        QCOMPARE(Complaints(launched.Err), QStringList());
    }

    void keepsAPreloadAlreadySet()
    {
        const TRun run = Launch({QStringLiteral(KV_FIXTURE), QStringLiteral("named")}, "libm.so.6");
        QVERIFY2(run.ExitCode == 0, qPrintable(run.Err));
        QCOMPARE(Filter(run.Out, QStringLiteral("ENV LD_PRELOAD=")), QStringList(QStringLiteral("libm.so.6")));
        QCOMPARE(Filter(run.Out, QStringLiteral("TOOLS ")).size(), 3);
    }

    void programWithoutToolsMenu()
    {
        const TRun run = Launch({QStringLiteral(KV_FIXTURE), QStringLiteral("none")});
        QCOMPARE(run.ExitCode, 0);
        QCOMPARE(Complaints(run.Err), QStringList());
    }

    void programWithoutQApplication()
    {
        const TRun run = Launch({QStringLiteral(KV_FIXTURE), QStringLiteral("core")});
        QCOMPARE(run.ExitCode, 0);
        QVERIFY(run.Out.contains(QStringLiteral("CORE OK")));
        QCOMPARE(Complaints(run.Err), QStringList());
    }

    void refusesWhatItCannotRun_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message");
        QTest::newRow("missing path") << QStringLiteral("/nonexistent/prog") << 127 << QStringLiteral("no such program");
        QTest::newRow("missing name") << QStringLiteral("kv-no-such-program-here") << 127 << QStringLiteral("no such program");
        QTest::newRow("directory") << QStringLiteral("/tmp") << 126 << QStringLiteral("not an executable program");
        QTest::newRow("not Qt") << QStringLiteral("/bin/true") << 2 << QStringLiteral("is not a Qt 6 Widgets program");
        QTest::newRow("script") << QStringLiteral(KV_SCRIPT) << 2 << QStringLiteral("is not a Qt 6 Widgets program");
    }

    void refusesWhatItCannotRun()
    {
        QFETCH(QString, program);
        QFETCH(int, exitCode);
        QFETCH(QString, message);
        const TRun run = Launch({program});
        QCOMPARE(run.ExitCode, exitCode);
        QVERIFY2(run.Err.contains(message), qPrintable(run.Err));
        QVERIFY2(run.Err.startsWith(QStringLiteral("kvideinsp-run: ")), qPrintable(run.Err));
    }

    void usage()
    {
        const TRun run = Launch({});
        QCOMPARE(run.ExitCode, 2);
        QVERIFY(run.Err.contains(QStringLiteral("usage: kvideinsp-run PROGRAM")));
    }
};

QTEST_GUILESS_MAIN(tst_Launcher)
#include "tst_launcher.moc"
