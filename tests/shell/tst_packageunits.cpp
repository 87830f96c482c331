#include "design/ideGen.h"
#include "foundation/ideSystem.h"
#include "foundation/ideSystem_verbs.h"
#include "shell/IDEInspReg.h"
#include "platform/kvException.h"
#include "shell/kvIDEInspD5.h"

#include <QtTest>

using namespace kv;
using namespace Qt::StringLiterals;

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
    if (!GetVerbProcAddr(u"tools.korvoideinspector"_s, state, execute) || state || !execute)
        return false;
    const int before = g_shows;
    ShowIDEInspectorProc = CountShow;
    CallVerbByName(u"Tools.KorvoIDEInspector"_s);
    ShowIDEInspectorProc = nullptr;
    return g_shows == before + 1;
}

void StartA() { g_log << u"+A"_s; }
void StopA() { g_log << u"-A"_s; }
void StartB()
{
    if (g_failStart)
        throw Exception(u"B cannot start"_s);
    g_log << u"+B"_s;
}
void StopB() { g_log << u"-B"_s; }
void StartC() { g_log << u"+C"_s; }
void StopC()
{
    g_log << u"-C"_s;
    throw Exception(u"C failed to stop"_s);
}
void RegisterA() { g_log << u"regA"_s; }
void RegisterC() { g_log << u"regC"_s; }

// The full start order of the package's units; the table holds those that exist, in
// this order.
const QStringList FullStartOrder = u"ideApi ideConsts ideHook ideLib ideSystem ideCommon ideCtrls ideStdCtl ideVCLLib "
                                   "ideRerrDlg ideGenReg ideGen idePalet ideEdit idePEdit ideStrLEd ideGlEd ideOInsp "
                                   "ideDTree ideTree ideTSLite ideTSrc ideTreeInsp ideTreeMod ideTreeEd ideActList "
                                   "ideActListReg ideEditReg ideOIReg ideTreeInspReg IDEInspReg"_s.split(u' ');

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
        QCOMPARE(g_log, QStringList({u"+A"_s, u"+B"_s, u"+C"_s, u"regA"_s, u"regC"_s, u"-B"_s, u"-A"_s}));
    }

    void failedStartLeavesLaterUnitsUnstarted()
    {
        g_failStart = true;
        TUnitInfo units[] = {{"A", StartA, StopA, nullptr}, {"B", StartB, StopB, nullptr}, {"C", StartC, StopC, nullptr}};
        QVERIFY_THROWS_EXCEPTION(Exception, StartUnits(units));
        QVERIFY(units[0].Started && !units[1].Started && !units[2].Started);
        RegisterUnitsOf(units); // only started units register
        StopUnits(units);
        QCOMPARE(g_log, QStringList({u"+A"_s, u"-A"_s}));

        // Starting again after the cause is gone completes the table; a unit that fails to
        // stop is shown and does not keep the others from stopping.
        g_failStart = false;
        g_log.clear();
        StartUnits(units);
        const TExceptionHandler previous = SetExceptionHandler([](const QString &m) { g_log << m; });
        StopUnits(units);
        SetExceptionHandler(previous);
        QCOMPARE(g_log, QStringList({u"+A"_s, u"+B"_s, u"+C"_s, u"-C"_s, u"C failed to stop"_s, u"-B"_s, u"-A"_s}));
        QVERIFY(!units[0].Started && !units[1].Started && !units[2].Started);
    }

    void packageTableFollowsTheStartOrder()
    {
        qsizetype position = -1;
        for (const TUnitInfo &unit : GetPackageInfoTable()) {
            const QString name = QString::fromLatin1(unit.Name);
            const qsizetype at = FullStartOrder.indexOf(name);
            QVERIFY2(at >= 0, qPrintable(name + u" is not a unit of the package"_s));
            QVERIFY2(at > position, qPrintable(name + u" starts out of order"_s));
            position = at;
            QVERIFY(unit.Initialize && unit.Finalize);
        }
        QCOMPARE(GetPackageInfoTable().front().Name, "ideConsts");
        QCOMPARE(GetPackageInfoTable().back().Name, "IDEInspReg");
    }

    void packageStartSettlesHostDetection()
    {
        QCoreApplication::setApplicationName(u"QtCreator"_s);
        kvIDEInspD5::Initialize();
        QVERIFY(UnderDelphiIDE);
        QVERIFY(InspectorVerbWorks()); // registered inside an IDE too
        for (const TUnitInfo &unit : GetPackageInfoTable())
            QVERIFY(unit.Started);
        kvIDEInspD5::Initialize(); // once only: a changed name is not looked at again
        kvIDEInspD5::Finalize();
        for (const TUnitInfo &unit : GetPackageInfoTable())
            QVERIFY(!unit.Started);

        QCoreApplication::setApplicationName(u"SomeEditor"_s);
        kvIDEInspD5::Initialize();
        QVERIFY(!UnderDelphiIDE);
        QVERIFY(InspectorVerbWorks());
        kvIDEInspD5::Finalize();
    }

    void hostNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("ide");
        QTest::newRow("Qt Creator") << u"QtCreator"_s << true;
        QTest::newRow("Designer") << u"Designer"_s << true;
        QTest::newRow("case") << u"qtcreator"_s << true;
        QTest::newRow("demo") << u"KorvoDemoHost"_s << false;
        QTest::newRow("prefix only") << u"QtCreatorHelper"_s << false;
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
