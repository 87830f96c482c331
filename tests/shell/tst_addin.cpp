#include "foundation/ideSystem.h"
#include "platform/kvException.h"
#include "platform/kvExptIntf.h"
#include "platform/kvToolIntf.h"
#include "shell/IDEInspReg.h"

#include <QtTest>

using namespace kv;

namespace {

// Test doubles of the host's tool services that log what they are asked and when each
// interface is released.
struct THostLog
{
    QStringList Events;
    struct TInsert
    {
        int Index;
        QString Caption, Name, Hint;
        QKeySequence ShortCut;
        int Context, GroupIndex;
        TIMenuFlags Flags;
        TIMenuClickEvent Handler;
    };
    QList<TInsert> Inserts;
    bool HasMainMenu = true;
    bool HasMenuItems = true;
    bool HasTools = true;
    int ToolsItemCount = 5;
    bool InsertThrows = false;
};

class TFakeMenuItem : public TIMenuItemIntf
{
public:
    TFakeMenuItem(THostLog &log, QString name, int count) : m_log(log), m_name(std::move(name)), m_count(count) {}
    ~TFakeMenuItem() override { m_log.Events << QStringLiteral("release ") + m_name; }

    int GetItemCount() const override { return m_count; }
    std::unique_ptr<TIMenuItemIntf> GetItem(int) const override { return nullptr; }
    QString GetName() const override { return m_name; }
    QString GetCaption() const override { return m_name; }
    TIMenuFlags GetFlags() const override { return mfEnabled | mfVisible; }
    std::unique_ptr<TIMenuItemIntf> InsertItem(int Index, const QString &Caption, const QString &Name,
                                               const QString &Hint, const QKeySequence &ShortCut, int Context,
                                               int GroupIndex, TIMenuFlags Flags, TIMenuClickEvent Handler) override
    {
        if (m_log.InsertThrows)
            throw Exception(QStringLiteral("menu is locked"));
        m_log.Inserts.append({Index, Caption, Name, Hint, ShortCut, Context, GroupIndex, Flags, Handler});
        return std::make_unique<TFakeMenuItem>(m_log, Name, 0);
    }

private:
    THostLog &m_log;
    QString m_name;
    int m_count;
};

class TFakeMainMenu : public TIMainMenuIntf
{
public:
    explicit TFakeMainMenu(THostLog &log) : m_log(log) {}
    ~TFakeMainMenu() override { m_log.Events << QStringLiteral("release main menu"); }

    std::unique_ptr<TIMenuItemIntf> GetMenuItems() const override
    {
        if (!m_log.HasMenuItems)
            return nullptr;
        return std::make_unique<TFakeMenuItem>(m_log, QStringLiteral("menu items"), 6);
    }
    std::unique_ptr<TIMenuItemIntf> FindMenuItem(const QString &Name) const override
    {
        m_log.Events << QStringLiteral("find ") + Name;
        if (!m_log.HasTools || Name != QLatin1String("ToolsMenu"))
            return nullptr;
        return std::make_unique<TFakeMenuItem>(m_log, Name, m_log.ToolsItemCount);
    }

private:
    THostLog &m_log;
};

class TFakeToolServices : public TIToolServices
{
public:
    explicit TFakeToolServices(THostLog &log) : m_log(log) {}
    std::unique_ptr<TIMainMenuIntf> GetMainMenu() const override
    {
        if (!m_log.HasMainMenu)
            return nullptr;
        return std::make_unique<TFakeMainMenu>(m_log);
    }

private:
    THostLog &m_log;
};

int g_showCalls = 0;
void CountShow() { ++g_showCalls; }

int g_gateCalls = 0;
void CountGate() { ++g_gateCalls; }

} // namespace

class tst_AddIn : public QObject
{
    Q_OBJECT

    THostLog m_log;
    std::unique_ptr<TFakeToolServices> m_services;

private Q_SLOTS:
    void init()
    {
        m_log = THostLog();
        m_services = std::make_unique<TFakeToolServices>(m_log);
        ToolServices() = m_services.get();
        ShowIDEInspectorProc = nullptr;
        g_showCalls = 0;
    }

    void cleanup()
    {
        ToolServices() = nullptr;
        LibraryExpertProc() = {};
        ShowIDEInspectorProc = nullptr;
    }

    void identity()
    {
        TKVExpert expert(QStringLiteral("Korvo IDE Inspector"));
        QCOMPARE(expert.GetName(), QStringLiteral("Korvo IDE Inspector Expert"));
        QCOMPARE(expert.GetAuthor(), QStringLiteral("Korvo Company"));
        QCOMPARE(expert.GetComment(), QString());
        QCOMPARE(expert.GetPage(), QString());
        QCOMPARE(expert.GetGlyph(), nullptr);
        QCOMPARE(expert.GetStyle(), esAddIn);
        QCOMPARE(expert.GetState(), TExpertState(esEnabled));
        QCOMPARE(expert.GetIDString(), QStringLiteral("KorvoCompany.Korvo IDE Inspector"));
        QCOMPARE(expert.GetMenuText(), QStringLiteral("Korvo IDE Inspector..."));
        expert.Execute(); // does nothing, opens nothing
        QCOMPARE(g_showCalls, 0);
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
            TKVExpert expert(QStringLiteral("Korvo IDE Inspector"));
            QVERIFY(expert.MenuItem());
            QCOMPARE(m_log.Inserts.size(), 1);
            const THostLog::TInsert &insert = m_log.Inserts.first();
            QCOMPARE(insert.Index, index);
            QCOMPARE(insert.Caption, QStringLiteral("Korvo IDE Inspector"));
            QCOMPARE(insert.Name, QStringLiteral("ToolsKorvoIDEInspector"));
            QCOMPARE(insert.Hint, QString());
            QVERIFY(insert.ShortCut.isEmpty());
            QCOMPARE(insert.Context, 0);
            QCOMPARE(insert.GroupIndex, 0);
            QCOMPARE(insert.Flags, TIMenuFlags(6));
            // The Tools menu, the menu items and the main menu are released, in that order,
            // once the item is in; the item itself is kept.
            QCOMPARE(m_log.Events, QStringList({QStringLiteral("find ToolsMenu"), QStringLiteral("release ToolsMenu"),
                                                QStringLiteral("release menu items"), QStringLiteral("release main menu")}));
            m_log.Events.clear();
        }
        QCOMPARE(m_log.Events, QStringList(QStringLiteral("release ToolsKorvoIDEInspector")));
    }

    void clickOpensTheInspectorWhenThereIsOne()
    {
        TKVExpert expert(QStringLiteral("Korvo IDE Inspector"));
        const TIMenuClickEvent click = m_log.Inserts.first().Handler;
        QVERIFY(bool(click));
        click(expert.MenuItem()); // no window unit yet: nothing happens
        QCOMPARE(g_showCalls, 0);
        ShowIDEInspectorProc = CountShow;
        click(expert.MenuItem());
        click(expert.MenuItem());
        QCOMPARE(g_showCalls, 2);
    }

    void noToolServices()
    {
        ToolServices() = nullptr;
        TKVExpert expert(QStringLiteral("Korvo IDE Inspector"));
        QCOMPARE(expert.GetName(), QStringLiteral(" Expert"));
        QCOMPARE(expert.GetIDString(), QStringLiteral("KorvoCompany."));
        QCOMPARE(expert.MenuItem(), nullptr);
    }

    void missingMenusInsertNothing_data()
    {
        QTest::addColumn<bool>("mainMenu");
        QTest::addColumn<bool>("menuItems");
        QTest::addColumn<bool>("tools");
        QTest::addColumn<QStringList>("events");
        QTest::newRow("no main menu") << false << true << true << QStringList();
        QTest::newRow("no menu items") << true << false << true << QStringList({QStringLiteral("release main menu")});
        QTest::newRow("no Tools menu") << true << true << false
                                       << QStringList({QStringLiteral("find ToolsMenu"), QStringLiteral("release menu items"),
                                                       QStringLiteral("release main menu")});
    }

    void missingMenusInsertNothing()
    {
        QFETCH(bool, mainMenu);
        QFETCH(bool, menuItems);
        QFETCH(bool, tools);
        QFETCH(QStringList, events);
        m_log.HasMainMenu = mainMenu;
        m_log.HasMenuItems = menuItems;
        m_log.HasTools = tools;
        TKVExpert expert(QStringLiteral("Korvo IDE Inspector"));
        QCOMPARE(expert.MenuItem(), nullptr);
        QVERIFY(m_log.Inserts.isEmpty());
        QCOMPARE(expert.GetName(), QStringLiteral("Korvo IDE Inspector Expert")); // still registered, named
        QCOMPARE(m_log.Events, events);
    }

    void failedInsertReleasesEverythingAndPropagates()
    {
        m_log.InsertThrows = true;
        QVERIFY_THROWS_EXCEPTION(Exception, TKVExpert(QStringLiteral("Korvo IDE Inspector")));
        QCOMPARE(m_log.Events, QStringList({QStringLiteral("find ToolsMenu"), QStringLiteral("release ToolsMenu"),
                                            QStringLiteral("release menu items"), QStringLiteral("release main menu")}));
    }

    void registerHandsTheAddInToTheHost()
    {
        std::vector<std::unique_ptr<TIExpert>> registered;
        IDEInspReg::Register(); // the host accepts no add-ins now: nothing happens
        QVERIFY(m_log.Inserts.isEmpty());

        LibraryExpertProc() = [&](std::unique_ptr<TIExpert> e) { registered.push_back(std::move(e)); };
        IDEInspReg::Register();
        QCOMPARE(registered.size(), size_t(1));
        QCOMPARE(registered.front()->GetName(), QStringLiteral("Korvo IDE Inspector Expert"));
        QCOMPARE(m_log.Inserts.size(), 1);
        registered.clear();
        QCOMPARE(m_log.Events.last(), QStringLiteral("release ToolsKorvoIDEInspector"));
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
