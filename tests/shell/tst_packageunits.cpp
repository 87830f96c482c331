#include "design/ideGen.h"
#include "foundation/ideSystem.h"
#include "foundation/ideSystem_verbs.h"
#include "shell/IDEInspReg.h"
#include "platform/kvException.h"
#include "shell/kvIDEInspD5.h"

#include <QtTest>

using namespace kv;

namespace {

QStringList g_log;
bool g_failStart = false;
int g_shows = 0;
void CountShow() { ++g_shows; }

// Whether the inspector's verb is registered, and that it opens the inspector.
bool InspectorVerbWorks()
{
    TVerbStateProc state = nullptr;
    TVerbExecProc execute = nullptr;
    if (!GetVerbProcAddr(QStringLiteral("tools.korvoideinspector"), state, execute) || state || !execute)
        return false;
    const int before = g_shows;
    ShowIDEInspectorProc = CountShow;
    CallVerbByName(QStringLiteral("Tools.KorvoIDEInspector"));
    ShowIDEInspectorProc = nullptr;
    return g_shows == before + 1;
}

void StartA() { g_log << QStringLiteral("+A"); }
void StopA() { g_log << QStringLiteral("-A"); }
void StartB()
{
    if (g_failStart)
        throw Exception(QStringLiteral("B cannot start"));
    g_log << QStringLiteral("+B");
}
void StopB() { g_log << QStringLiteral("-B"); }
void StartC() { g_log << QStringLiteral("+C"); }
void StopC()
{
    g_log << QStringLiteral("-C");
    throw Exception(QStringLiteral("C failed to stop"));
}
void RegisterA() { g_log << QStringLiteral("regA"); }
void RegisterC() { g_log << QStringLiteral("regC"); }

// The full start order of the package's units; the table holds those that exist, in
// this order.
const QStringList FullStartOrder = {
    QStringLiteral("ideApi"),       QStringLiteral("ideConsts"),     QStringLiteral("ideHook"),
    QStringLiteral("ideLib"),       QStringLiteral("ideSystem"),     QStringLiteral("ideCommon"),
    QStringLiteral("ideCtrls"),     QStringLiteral("ideStdCtl"),     QStringLiteral("ideVCLLib"),
    QStringLiteral("ideRerrDlg"),   QStringLiteral("ideGenReg"),     QStringLiteral("ideGen"),
    QStringLiteral("idePalet"),     QStringLiteral("ideEdit"),       QStringLiteral("idePEdit"),
    QStringLiteral("ideStrLEd"),    QStringLiteral("ideGlEd"),       QStringLiteral("ideOInsp"),
    QStringLiteral("ideDTree"),     QStringLiteral("ideTree"),       QStringLiteral("ideTSLite"),
    QStringLiteral("ideTSrc"),      QStringLiteral("ideTreeInsp"),   QStringLiteral("ideTreeMod"),
    QStringLiteral("ideTreeEd"),    QStringLiteral("ideActList"),    QStringLiteral("ideActListReg"),
    QStringLiteral("ideEditReg"),   QStringLiteral("ideOIReg"),      QStringLiteral("ideTreeInspReg"),
    QStringLiteral("IDEInspReg"),
};

} // namespace

class tst_PackageUnits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        g_log.clear();
        g_failStart = false;
    }

    void startsInOrderStopsInReverseOnce()
    {
        TUnitInfo units[] = {{"A", StartA, StopA, RegisterA}, {"B", StartB, StopB, nullptr}, {"C", StartC, nullptr, RegisterC}};
        StartUnits(units);
        StartUnits(units); // a second start does nothing
        RegisterUnitsOf(units);
        StopUnits(units);
        StopUnits(units); // nor does a second stop
        QCOMPARE(g_log, QStringList({QStringLiteral("+A"), QStringLiteral("+B"), QStringLiteral("+C"),
                                     QStringLiteral("regA"), QStringLiteral("regC"),
                                     QStringLiteral("-B"), QStringLiteral("-A")}));
    }

    void failedStartLeavesLaterUnitsUnstarted()
    {
        g_failStart = true;
        TUnitInfo units[] = {{"A", StartA, StopA, nullptr}, {"B", StartB, StopB, nullptr}, {"C", StartC, StopC, nullptr}};
        QVERIFY_THROWS_EXCEPTION(Exception, StartUnits(units));
        QVERIFY(units[0].Started);
        QVERIFY(!units[1].Started);
        QVERIFY(!units[2].Started);
        RegisterUnitsOf(units); // only started units register
        StopUnits(units);
        QCOMPARE(g_log, QStringList({QStringLiteral("+A"), QStringLiteral("-A")}));

        // Starting again after the cause is gone completes the table.
        g_failStart = false;
        g_log.clear();
        StartUnits(units);
        QCOMPARE(g_log, QStringList({QStringLiteral("+A"), QStringLiteral("+B"), QStringLiteral("+C")}));
        const TExceptionHandler previous = SetExceptionHandler([](const QString &m) { g_log << m; });
        StopUnits(units);
        SetExceptionHandler(previous);
    }

    void failingStopDoesNotStopTheOthers()
    {
        TUnitInfo units[] = {{"A", StartA, StopA, nullptr}, {"C", StartC, StopC, nullptr}};
        StartUnits(units);
        QStringList shown;
        const TExceptionHandler previous = SetExceptionHandler([&](const QString &m) { shown << m; });
        StopUnits(units);
        SetExceptionHandler(previous);
        QCOMPARE(shown, QStringList(QStringLiteral("C failed to stop")));
        QCOMPARE(g_log.last(), QStringLiteral("-A"));
        QVERIFY(!units[0].Started && !units[1].Started);
    }

    void packageTableFollowsTheStartOrder()
    {
        qsizetype position = -1;
        QStringList names;
        for (const TUnitInfo &unit : GetPackageInfoTable()) {
            const QString name = QString::fromLatin1(unit.Name);
            const qsizetype at = FullStartOrder.indexOf(name);
            QVERIFY2(at >= 0, qPrintable(name + QStringLiteral(" is not a unit of the package")));
            QVERIFY2(at > position, qPrintable(name + QStringLiteral(" starts out of order")));
            position = at;
            names << name;
            QVERIFY(unit.Initialize && unit.Finalize);
        }
        QCOMPARE(names.first(), QStringLiteral("ideConsts"));
        QCOMPARE(names.last(), QStringLiteral("IDEInspReg"));
    }

    void packageStartSettlesHostDetection()
    {
        QCoreApplication::setApplicationName(QStringLiteral("QtCreator"));
        kvIDEInspD5::Initialize();
        QVERIFY(UnderDelphiIDE);
        QVERIFY(InspectorVerbWorks()); // registered inside an IDE too
        for (const TUnitInfo &unit : GetPackageInfoTable())
            QVERIFY(unit.Started);
        kvIDEInspD5::Initialize(); // once only: a changed name is not looked at again
        kvIDEInspD5::Finalize();
        for (const TUnitInfo &unit : GetPackageInfoTable())
            QVERIFY(!unit.Started);

        QCoreApplication::setApplicationName(QStringLiteral("SomeEditor"));
        kvIDEInspD5::Initialize();
        QVERIFY(!UnderDelphiIDE);
        QVERIFY(InspectorVerbWorks());
        kvIDEInspD5::Finalize();
    }

    void hostNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("ide");
        QTest::newRow("Qt Creator") << QStringLiteral("QtCreator") << true;
        QTest::newRow("Designer") << QStringLiteral("Designer") << true;
        QTest::newRow("case") << QStringLiteral("qtcreator") << true;
        QTest::newRow("demo") << QStringLiteral("KorvoDemoHost") << false;
        QTest::newRow("prefix only") << QStringLiteral("QtCreatorHelper") << false;
        QTest::newRow("empty") << QString() << false;
    }

    void hostNames()
    {
        QFETCH(QString, name);
        QFETCH(bool, ide);
        QCOMPARE(IsIDEApplicationName(name), ide);
    }
};

QTEST_GUILESS_MAIN(tst_PackageUnits)
#include "tst_packageunits.moc"
