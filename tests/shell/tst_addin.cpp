#include "foundation/ideSystem.h"
#include "platform/kvException.h"
#include "platform/kvExptIntf.h"
#include "platform/kvToolIntf.h"
#include "shell/IDEInspReg.h"

#include <QtTest>

using namespace kv;
using namespace Qt::StringLiterals;

namespace {

// A test double of the host's tool services that logs what it is asked, what is inserted
// and when each interface is released.
struct THostLog : TIToolServices
{
    std::unique_ptr<TIMainMenuIntf> GetMainMenu() const override;

    mutable QStringList Events;
    mutable TIMenuClickEvent Handler; // of the last insertion
    QString Missing;                  // the menu the host does not have, or "insertion" when it fails
    int ToolsItemCount = 1;
};

// The host's main menu and every item of it.
class TFakeMenu final : public TIMainMenuIntf, public TIMenuItemIntf
{
public:
    TFakeMenu(const THostLog &log, QString name, int count) : m_log(log), m_name(std::move(name)), m_count(count) {}
    ~TFakeMenu() override { m_log.Events << u"release "_s + m_name; }

    // The menu of that name, or null when the host has none.
    static std::unique_ptr<TFakeMenu> Make(const THostLog &log, const QString &name, int count)
    {
        return log.Missing == name ? nullptr : std::make_unique<TFakeMenu>(log, name, count);
    }

    std::unique_ptr<TIMenuItemIntf> GetMenuItems() const override { return Make(m_log, u"menu items"_s, 6); }
    std::unique_ptr<TIMenuItemIntf> FindMenuItem(const QString &Name) const override
    {
        m_log.Events << u"find "_s + Name;
        return Name == "ToolsMenu"_L1 ? Make(m_log, Name, m_log.ToolsItemCount) : nullptr;
    }

    int GetItemCount() const override { return m_count; }
    std::unique_ptr<TIMenuItemIntf> GetItem(int) const override { return nullptr; }
    QString GetName() const override { return m_name; }
    QString GetCaption() const override { return m_name; }
    TIMenuFlags GetFlags() const override { return mfEnabled | mfVisible; }
    std::unique_ptr<TIMenuItemIntf> InsertItem(int Index, const QString &Caption, const QString &Name,
                                               const QString &, const QKeySequence &, int, int, TIMenuFlags Flags,
                                               TIMenuClickEvent Handler) override
    {
        if (m_log.Missing == "insertion"_L1)
            throw Exception(u"menu is locked"_s);
        m_log.Events << u"insert %1 '%2' %3 flags %4"_s.arg(Index).arg(Caption, Name).arg(Flags);
        m_log.Handler = Handler;
        return std::make_unique<TFakeMenu>(m_log, Name, 0);
    }

private:
    const THostLog &m_log;
    QString m_name;
    int m_count;
};

std::unique_ptr<TIMainMenuIntf> THostLog::GetMainMenu() const
{
    return TFakeMenu::Make(*this, u"main menu"_s, 0);
}

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
        g_showCalls = 0;
    }

    void cleanup()
    {
        ToolServices() = nullptr;
        LibraryExpertProc() = {};
        ShowIDEInspectorProc = nullptr;
    }

    // Without the host's tool services the add-in stays unnamed.
    void namesFollowTheHostServices()
    {
        ToolServices() = nullptr;
        TKVExpert expert(u"Korvo IDE Inspector"_s);
        QCOMPARE(expert.GetName(), u" Expert"_s);
    }

    // What the add-in does with the host's menus: the item goes just ahead of the Tools menu's
    // last item; the Tools menu, the menu items and the main menu are released, in that order,
    // whether the item went in or not; the item itself is kept while the add-in lives.
    void insertsJustAheadOfTheLastItem_data()
    {
        QTest::addColumn<QString>("missing");
        QTest::addColumn<int>("count");
        QTest::addColumn<QStringList>("events");
        const QStringList found = {u"find ToolsMenu"_s};
        const QStringList released = {u"release ToolsMenu"_s, u"release menu items"_s, u"release main menu"_s};
        const QString inserted = u"insert %2 'Korvo IDE Inspector' ToolsKorvoIDEInspector flags %1"_s
                                     .arg(mfEnabled | mfVisible);
        const QStringList item = {u"release ToolsKorvoIDEInspector"_s};
        QTest::newRow("one item") << QString() << 1 << QStringList{found[0], inserted.arg(0)} + released + item;
        QTest::newRow("empty menu") << QString() << 0 << QStringList{found[0], inserted.arg(-1)} + released + item;
        QTest::newRow("no main menu") << u"main menu"_s << 1 << QStringList();
        QTest::newRow("no menu items") << u"menu items"_s << 1 << QStringList{u"release main menu"_s};
        QTest::newRow("no Tools menu") << u"ToolsMenu"_s << 1 << found + released.mid(1);
        QTest::newRow("insertion fails") << u"insertion"_s << 1 << found + released + QStringList{u"thrown"_s};
    }

    void insertsJustAheadOfTheLastItem()
    {
        QFETCH(QString, missing);
        QFETCH(int, count);
        m_log.Missing = missing;
        m_log.ToolsItemCount = count;
        try {
            TKVExpert expert(u"Korvo IDE Inspector"_s);
            QCOMPARE(expert.GetName(), u"Korvo IDE Inspector Expert"_s); // registered, named
        } catch (const Exception &) {
            m_log.Events << u"thrown"_s; // the failure goes to the caller
        }
        QTEST(m_log.Events, "events");
    }

    // A click opens the inspector once its window unit has installed it.
    void clickOpensTheInspector()
    {
        TKVExpert expert(u"Korvo IDE Inspector"_s);
        m_log.Handler(expert.MenuItem());
        QCOMPARE(g_showCalls, 0);
        ShowIDEInspectorProc = CountShow;
        m_log.Handler(expert.MenuItem());
        QCOMPARE(g_showCalls, 1);
    }

    void registerHandsTheAddInToTheHost()
    {
        std::vector<std::unique_ptr<TIExpert>> registered;
        IDEInspReg::Register(); // the host accepts no add-ins now: nothing happens
        QVERIFY(m_log.Events.isEmpty());

        LibraryExpertProc() = [&](std::unique_ptr<TIExpert> e) { registered.push_back(std::move(e)); };
        IDEInspReg::Register();
        QCOMPARE(registered.size(), size_t(1));
        QCOMPARE(registered.front()->GetName(), u"Korvo IDE Inspector Expert"_s);
    }

    void registrationGates()
    {
        g_gateCalls = 0;
        RegisterForQuillon(CountGate);
        UnderDelphiIDE = true; // inside the IDE only the registrations for it run
        RegisterForDelphi(CountGate);
        RegisterForQuillon(CountGate);
        RegisterForDelphi(nullptr);
        UnderDelphiIDE = false;
        QCOMPARE(g_gateCalls, 2);
    }
};

QTEST_GUILESS_MAIN(tst_AddIn)
#include "tst_addin.moc"
