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

// Whether the inspector's verb is registered and opens the inspector.
bool InspectorVerbWorks()
{
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
void StartC() { g_log << u"+C"_s; }
void StopC()
{
    g_log << u"-C"_s;
    throw Exception(u"C failed to stop"_s);
}
void RegisterA() { g_log << u"regA"_s; }
void RegisterC() { g_log << u"regC"_s; }

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

    // Units start in table order and stop in reverse, each once; only started units register
    // and stop. A failed start leaves the later units unstarted.
    void startsInOrderStopsInReverseOnce()
    {
        g_failStart = true;
        TUnitInfo units[] = {{"A", StartA, StopA, RegisterA}, {"B", StartB, nullptr, nullptr}, {"C", StartC, StopC, RegisterC}};
        QVERIFY_THROWS_EXCEPTION(Exception, StartUnits(units));
        QVERIFY(units[0].Started && !units[1].Started && !units[2].Started);
        RegisterUnitsOf(units);
        StopUnits(units);
        QCOMPARE(g_log, QStringList({u"+A"_s, u"regA"_s, u"-A"_s}));

        // Starting again after the cause is gone completes the table; a unit that fails to
        // stop is shown and does not keep the others from stopping.
        g_failStart = false;
        g_log.clear();
        StartUnits(units);
        StartUnits(units); // a second start does nothing
        RegisterUnitsOf(units);
        const TExceptionHandler previous = SetExceptionHandler([](const QString &m) { g_log << m; });
        StopUnits(units);
        StopUnits(units); // nor does a second stop
        SetExceptionHandler(previous);
        QCOMPARE(g_log, QStringList({u"+A"_s, u"+B"_s, u"+C"_s, u"regA"_s, u"regC"_s, u"-C"_s, u"C failed to stop"_s,
                                     u"-A"_s}));
        QVERIFY(!units[0].Started && !units[1].Started && !units[2].Started);
    }

    // Each unit starts after those it uses: the hooks and the foundation before the designer,
    // the tree sources and the registrations.
    void packageTableFollowsTheStartOrder()
    {
        QStringList names;
        for (const TUnitInfo &unit : GetPackageInfoTable())
            names << QString::fromLatin1(unit.Name);
        QCOMPARE(names, u"ideApi ideConsts ideHook ideLib ideSystem ideCommon ideRerrDlg ideGen ideTSLite ideTreeInspReg IDEInspReg"_s.split(u' '));
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

        // An IDE is known by its whole name, in any case.
        QVERIFY(IsIDEApplicationName(u"designer"_s));
        QVERIFY(!IsIDEApplicationName(u"QtCreatorHelper"_s));
    }
};

QTEST_GUILESS_MAIN(tst_PackageUnits)
#include "tst_packageunits.moc"
