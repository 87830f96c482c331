#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

struct TRun
{
    int ExitCode = -1;
    QStringList Out;
    QString Err;
};

// Runs the launcher with args.
TRun Launch(const QStringList &args, const QByteArray &preload = {})
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    env.remove(u"KVIDEINSP_PRELOAD"_s);
    env.remove(u"LD_PRELOAD"_s);
    if (!preload.isEmpty())
        env.insert(u"LD_PRELOAD"_s, QString::fromLocal8Bit(preload));
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(KV_LAUNCHER), args);
    // A run that does not end in time is killed with the QProcess, and counts as failed.
    const bool finished = process.waitForFinished(60000);
    TRun run;
    run.ExitCode = finished && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.Out = QString::fromLocal8Bit(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    run.Err = QString::fromLocal8Bit(process.readAllStandardError());
    return run;
}

// What the launcher, the package or a sanitizer said on stderr; Qt's own remarks about the
// offscreen platform are not complaints.
QStringList Complaints(const QString &err)
{
    static const QRegularExpression words(u"kvideinsp|Korvo|Sanitizer|runtime error|rror"_s);
    return err.split(u'\n', Qt::SkipEmptyParts).filter(words);
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
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("preload");
        QTest::addColumn<QStringList>("output");
        const QStringList tools = {u"TOOLS &Options|"_s, u"TOOLS Korvo IDE Inspector|ToolsKorvoIDEInspector"_s,
                                   u"TOOLS &Customize...|"_s};
        const QStringList cleared = {u"ENV LD_PRELOAD="_s, u"ENV KVIDEINSP_PRELOAD="_s};
        const QString fixture = QStringLiteral(KV_FIXTURE);
        const QString linked = QStringLiteral(KV_LINKED_FIXTURE);

        // The program's own preloads stay; the package's go.
        QTest::newRow("ToolsMenu, own preload") << QStringList{fixture, u"named"_s} << QByteArray("libm.so.6")
                                                << tools + QStringList{u"ENV LD_PRELOAD=libm.so.6"_s, cleared[1]};
        QTest::newRow("no Tools menu") << QStringList{fixture, u"none"_s} << QByteArray() << cleared;
        QTest::newRow("no QApplication") << QStringList{fixture, u"core"_s} << QByteArray()
                                         << cleared + QStringList{u"CORE OK"_s};
        // A program that links the package gets one item when launched too.
        QTest::newRow("linked launched") << QStringList{linked, u"named"_s} << QByteArray() << tools + cleared;
    }

    void runsTheProgramWithTheItem()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, preload);
        const TRun run = Launch(arguments, preload);
        QVERIFY2(run.ExitCode == 0, qPrintable(run.Err));
        QTEST(run.Out, "output");
        QCOMPARE(Complaints(run.Err), QStringList());
    }

    void refusesWhatItCannotRun_data()
    {
        QTest::addColumn<QString>("program"); // empty: none given
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message");
        QTest::newRow("usage") << QString() << 2 << u"usage: kvideinsp-run PROGRAM"_s;
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
        const TRun run = Launch(program.isEmpty() ? QStringList() : QStringList{program});
        QCOMPARE(run.ExitCode, exitCode);
        QVERIFY2(run.Err.contains(message), qPrintable(run.Err));
        QVERIFY2(program.isEmpty() || run.Err.startsWith(u"kvideinsp-run: "_s), qPrintable(run.Err));
    }
};

QTEST_GUILESS_MAIN(tst_Launcher)
#include "tst_launcher.moc"
