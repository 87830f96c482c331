#include "foundation/ideSystem.h"
#include "platform/kvException.h"
#include "platform/kvExptIntf.h"
#include "platform/kvToolIntf.h"
#include "shell/IDEInspReg.h"

#include <QtTest>

using namespace kv;
using namespace Qt::StringLiterals;

namespace {

// Test doubles of the host's tool services that log what they are asked and when each
// interface is released.
struct THostLog : TIToolServices
{
    std::unique_ptr<TIMainMenuIntf> GetMainMenu() const override;

    mutable QStringList Events;
    // The arguments of an insertion that vary; the others are constants of the call.
    struct TInsert
    {
        int Index;
        QString Caption, Name;
        TIMenuFlags Flags;
        TIMenuClickEvent Handler;
    };
    mutable QList<TInsert> Inserts;
    bool HasMainMenu = true;
    bool HasMenuItems = true;
    bool HasTools = true;
    int ToolsItemCount = 5;
    bool InsertThrows = false;
};

class TFakeMenuItem : public TIMenuItemIntf
{
public:
    TFakeMenuItem(const THostLog &log, QString name, int count) : m_log(log), m_name(std::move(name)), m_count(count) {}
    ~TFakeMenuItem() override { m_log.Events << u"release "_s + m_name; }

    int GetItemCount() const override { return m_count; }
    std::unique_ptr<TIMenuItemIntf> GetItem(int) const override { return nullptr; }
    QString GetName() const override { return m_name; }
    QString GetCaption() const override { return m_name; }
    TIMenuFlags GetFlags() const override { return mfEnabled | mfVisible; }
    std::unique_ptr<TIMenuItemIntf> InsertItem(int Index, const QString &Caption, const QString &Name,
                                               const QString &, const QKeySequence &, int, int, TIMenuFlags Flags,
                                               TIMenuClickEvent Handler) override
    {
        if (m_log.InsertThrows)
            throw Exception(u"menu is locked"_s);
        m_log.Inserts.append({Index, Caption, Name, Flags, Handler});
        return std::make_unique<TFakeMenuItem>(m_log, Name, 0);
    }

private:
    const THostLog &m_log;
    QString m_name;
    int m_count;
};

class TFakeMainMenu : public TIMainMenuIntf
{
public:
    explicit TFakeMainMenu(const THostLog &log) : m_log(log) {}
    ~TFakeMainMenu() override { m_log.Events << u"release main menu"_s; }

    std::unique_ptr<TIMenuItemIntf> GetMenuItems() const override
    {
        if (!m_log.HasMenuItems)
            return nullptr;
        return std::make_unique<TFakeMenuItem>(m_log, u"menu items"_s, 6);
    }
    std::unique_ptr<TIMenuItemIntf> FindMenuItem(const QString &Name) const override
    {
        m_log.Events << u"find "_s + Name;
        if (!m_log.HasTools || Name != QLatin1String("ToolsMenu"))
            return nullptr;
        return std::make_unique<TFakeMenuItem>(m_log, Name, m_log.ToolsItemCount);
    }

private:
    const THostLog &m_log;
};

std::unique_ptr<TIMainMenuIntf> THostLog::GetMainMenu() const
{
    if (!HasMainMenu)
        return nullptr;
    return std::make_unique<TFakeMainMenu>(*this);
}

// What the add-in does with the host's menus when it inserts its item, or fails to.
const QStringList FindAndRelease = {u"find ToolsMenu"_s, u"release ToolsMenu"_s, u"release menu items"_s,
                                    u"release main menu"_s};

int g_showCalls = 0;
void CountShow() { ++g_showCalls; }

int g_gateCalls = 0;
void CountGate() { ++g_gateCalls; }

} // namespace

class tst_AddIn : public QObject
{
    Q_OBJECT

    THostLog m_log;

private Q_SLOTS:
    void init()
    {
        m_log = THostLog();
        ToolServices() = &m_log;
        ShowIDEInspectorProc = nullptr;
        g_showCalls = 0;
    }

    void cleanup()
    {
        ToolServices() = nullptr;
        LibraryExpertProc() = {};
        ShowIDEInspectorProc = nullptr;
    }

    void namesFollowTheHostServices()
    {
        {
            TKVExpert expert(u"Korvo IDE Inspector"_s);
            QCOMPARE(expert.GetName(), u"Korvo IDE Inspector Expert"_s);
            QCOMPARE(expert.GetIDString(), u"KorvoCompany.Korvo IDE Inspector"_s);
            QCOMPARE(expert.GetMenuText(), u"Korvo IDE Inspector..."_s);
            expert.Execute(); // does nothing, opens nothing
            QCOMPARE(g_showCalls, 0);
        }
        // Without the host's tool services the add-in stays unnamed and inserts nothing.
        ToolServices() = nullptr;
        TKVExpert expert(u"Korvo IDE Inspector"_s);
        QCOMPARE(expert.GetName(), u" Expert"_s);
        QCOMPARE(expert.GetIDString(), u"KorvoCompany."_s);
        QCOMPARE(expert.MenuItem(), nullptr);
    }

    void insertsJustAheadOfTheLastItem_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("index");
        QTest::newRow("five items") << 5 << 4;
        QTest::newRow("one item") << 1 << 0;
        QTest::newRow("empty menu") << 0 << -1;
    }

    void insertsJustAheadOfTheLastItem()
    {
        QFETCH(int, count);
        QFETCH(int, index);
        m_log.ToolsItemCount = count;
        {
            TKVExpert expert(u"Korvo IDE Inspector"_s);
            QVERIFY(expert.MenuItem());
            QCOMPARE(m_log.Inserts.size(), 1);
            const THostLog::TInsert &insert = m_log.Inserts.first();
            QCOMPARE(insert.Index, index);
            QCOMPARE(insert.Caption, u"Korvo IDE Inspector"_s);
            QCOMPARE(insert.Name, u"ToolsKorvoIDEInspector"_s);
            QCOMPARE(insert.Flags, TIMenuFlags(mfEnabled | mfVisible));
            // The Tools menu, the menu items and the main menu are released, in that order,
            // once the item is in; the item itself is kept.
            QCOMPARE(m_log.Events, FindAndRelease);
            m_log.Events.clear();

            // A click opens the inspector when its window unit has installed it.
            QVERIFY(bool(insert.Handler));
            insert.Handler(expert.MenuItem());
            QCOMPARE(g_showCalls, 0);
            ShowIDEInspectorProc = CountShow;
            insert.Handler(expert.MenuItem());
            QCOMPARE(g_showCalls, 1);
        }
        QCOMPARE(m_log.Events, QStringList(u"release ToolsKorvoIDEInspector"_s));
    }

    void missingMenusInsertNothing_data()
    {
        QTest::addColumn<QString>("missing");
        QTest::addColumn<QStringList>("events");
        QTest::newRow("no main menu") << u"main menu"_s << QStringList();
        QTest::newRow("no menu items") << u"menu items"_s << QStringList({u"release main menu"_s});
        QTest::newRow("no Tools menu") << u"Tools menu"_s << QStringList({u"find ToolsMenu"_s, u"release menu items"_s,
                                                                          u"release main menu"_s});
    }

    void missingMenusInsertNothing()
    {
        QFETCH(QString, missing);
        m_log.HasMainMenu = missing != "main menu"_L1;
        m_log.HasMenuItems = missing != "menu items"_L1;
        m_log.HasTools = missing != "Tools menu"_L1;
        TKVExpert expert(u"Korvo IDE Inspector"_s);
        QCOMPARE(expert.MenuItem(), nullptr);
        QVERIFY(m_log.Inserts.isEmpty());
        QCOMPARE(expert.GetName(), u"Korvo IDE Inspector Expert"_s); // still registered, named
        QTEST(m_log.Events, "events");
    }

    void failedInsertReleasesEverythingAndPropagates()
    {
        m_log.InsertThrows = true;
        QVERIFY_THROWS_EXCEPTION(Exception, TKVExpert(u"Korvo IDE Inspector"_s));
        QCOMPARE(m_log.Events, FindAndRelease);
    }

    void registerHandsTheAddInToTheHost()
    {
        std::vector<std::unique_ptr<TIExpert>> registered;
        IDEInspReg::Register(); // the host accepts no add-ins now: nothing happens
        QVERIFY(m_log.Inserts.isEmpty());

        LibraryExpertProc() = [&](std::unique_ptr<TIExpert> e) { registered.push_back(std::move(e)); };
        IDEInspReg::Register();
        QCOMPARE(registered.size(), size_t(1));
        QCOMPARE(registered.front()->GetName(), u"Korvo IDE Inspector Expert"_s);
        QCOMPARE(m_log.Inserts.size(), 1);
        registered.clear();
        QCOMPARE(m_log.Events.last(), u"release ToolsKorvoIDEInspector"_s);
    }

    void registrationGates()
    {
        g_gateCalls = 0;
        UnderDelphiIDE = false;
        RegisterForDelphi(CountGate);
        RegisterForQuillon(CountGate);
        QCOMPARE(g_gateCalls, 2);
        UnderDelphiIDE = true;
        RegisterForDelphi(CountGate);
        RegisterForQuillon(CountGate);
        QCOMPARE(g_gateCalls, 3);
        RegisterForDelphi(nullptr);
        UnderDelphiIDE = false;
    }
};

QTEST_GUILESS_MAIN(tst_AddIn)
#include "tst_addin.moc"
