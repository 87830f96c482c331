#include "foundation/ideConsts.h"
#include "platform/kvException.h"
#include "platform/kvExptIntf.h"
#include "shell/kvIDEInspD5_host.h"
#include "platform/kvQtToolServices.h"
#include "shell/IDEInspReg.h"
#include "shell/kvIDEInspD5.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QtTest>

#include <memory>

using namespace kv;
using namespace Qt::StringLiterals;

namespace {

QStringList Texts(const QMenu *menu)
{
    QStringList texts;
    for (const QAction *a : menu->actions())
        texts << (a->isSeparator() ? u"-"_s : a->text());
    return texts;
}

} // namespace

class tst_QtToolServices : public QObject
{
    Q_OBJECT

    std::unique_ptr<QMainWindow> m_window;
    QMenu *m_tools = nullptr;

    QMenu *addTools(const QString &title, const QString &objectName)
    {
        m_tools = m_window->menuBar()->addMenu(title);
        m_tools->setObjectName(objectName);
        m_tools->addAction(u"&Options"_s);
        m_tools->addSeparator();
        m_tools->addAction(u"&Customize..."_s);
        return m_tools;
    }

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QMainWindow>();
        QMenu *file = m_window->menuBar()->addMenu(u"&File"_s);
        file->setObjectName(u"FileMenu"_s);
        QMenu *recent = file->addMenu(u"Recent"_s);
        recent->setObjectName(u"RecentMenu"_s);
        recent->addAction(u"a.txt"_s)->setObjectName(u"RecentFile1"_s);
    }

    void cleanup() { m_window.reset(); }

    void findsTheToolsMenu_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("objectName");
        QTest::newRow("named ToolsMenu") << u"&Extras"_s << u"ToolsMenu"_s;
        QTest::newRow("IDE style name") << u"&Werkzeuge"_s << u"QtCreator.Menu.Tools"_s;
        QTest::newRow("titled Tools") << u"&Tools"_s << QString();
        QTest::newRow("mnemonic inside") << u"T&ools"_s << u"menuTools"_s;
    }

    void findsTheToolsMenu()
    {
        QFETCH(QString, title);
        QFETCH(QString, objectName);
        addTools(title, objectName);
        const auto tools = TQtToolServices(m_window.get()).GetMainMenu()->FindMenuItem(u"ToolsMenu"_s);
        QVERIFY(tools);
        QCOMPARE(tools->GetCaption(), title);
    }

    void namedItemsAnywhereInTheTree()
    {
        TQtToolServices services(m_window.get());
        const auto mainMenu = services.GetMainMenu();
        QCOMPARE(mainMenu->FindMenuItem(u"RecentMenu"_s)->GetItemCount(), 1);
        QCOMPARE(mainMenu->FindMenuItem(u"RecentFile1"_s)->GetCaption(), u"a.txt"_s);
        QCOMPARE(mainMenu->FindMenuItem(u"ToolsMenu"_s), nullptr);
        QCOMPARE(mainMenu->FindMenuItem(QString()), nullptr);
        const auto items = mainMenu->GetMenuItems();
        QCOMPARE(items->GetItem(0)->GetName(), u"FileMenu"_s);
        QVERIFY_THROWS_EXCEPTION(Exception, items->GetItem(1));

        // No menu bar, and looking did not create one.
        QMainWindow bare;
        QCOMPARE(TQtToolServices(&bare).GetMainMenu(), nullptr);
        QCOMPARE(bare.menuWidget(), nullptr);
        QCOMPARE(TQtToolServices(nullptr).GetMainMenu(), nullptr);
    }

    void insertedItemBelongsToItsInterface()
    {
        addTools(u"&Tools"_s, u"ToolsMenu"_s);
        TQtToolServices services(m_window.get());
        const auto tools = services.GetMainMenu()->FindMenuItem(u"ToolsMenu"_s);
        QStringList senders;
        auto item = tools->InsertItem(2, u"Item"_s, u"MyItem"_s, u"hint"_s, QKeySequence(u"Ctrl+K"_s), 7, 1,
                                      mfEnabled | mfVisible,
                                      [&](TIMenuItemIntf *sender) { senders << sender->GetName(); });
        QCOMPARE(Texts(m_tools), QStringList({u"&Options"_s, u"-"_s, u"Item"_s, u"&Customize..."_s}));
        QAction *action = m_tools->actions().at(2);
        QCOMPARE(action->statusTip(), u"hint"_s);
        QCOMPARE(action->shortcut(), QKeySequence(u"Ctrl+K"_s));
        QCOMPARE(item->GetFlags(), TIMenuFlags(mfEnabled | mfVisible));
        action->trigger();
        QCOMPARE(senders, QStringList(u"MyItem"_s));
        item.reset();
        QCOMPARE(m_tools->actions().size(), 3);

        // Beyond the ends: last; without flags: hidden and disabled.
        auto hidden = tools->InsertItem(-1, u"Hidden"_s, u"H"_s, {}, {}, 0, 0, 0, {});
        QCOMPARE(m_tools->actions().last()->text(), u"Hidden"_s);
        QCOMPARE(hidden->GetFlags(), TIMenuFlags(0));

        // The menus die first; the interfaces must cope.
        m_window.reset();
        QCOMPARE(tools->GetItemCount(), 0);
        QCOMPARE(hidden->GetFlags(), TIMenuFlags(mfInvalid));
        QVERIFY_THROWS_EXCEPTION(Exception, tools->InsertItem(0, u"X"_s, u"X"_s, {}, {}, 0, 0, 6, {}));
    }

    void secondHostInTheProcessRegistersNothing()
    {
        addTools(u"&Tools"_s, u"ToolsMenu"_s);
        auto linked = std::make_unique<TPackageHost>();
        TPackageHost preloaded;
        linked->Load();
        preloaded.Register(m_window.get());
        linked->Register(m_window.get());
        QVERIFY(preloaded.IsRegistered());
        QCOMPARE(preloaded.Experts().size(), size_t(1));
        QVERIFY(!LibraryExpertProc()); // the host accepts add-ins only while registering
        QVERIFY(!linked->IsRegistered());
        // The units stay up until the last host goes.
        linked.reset();
        QCOMPARE(Texts(m_tools),
                 QStringList({u"&Options"_s, u"-"_s, u"Korvo IDE Inspector"_s, u"&Customize..."_s}));
        QVERIFY(GetPackageInfoTable().front().Started);
        // Unloading takes the item out again.
        preloaded.Unload();
        QCOMPARE(m_tools->actions().size(), 3);
        QVERIFY(!GetPackageInfoTable().front().Started);
        QCOMPARE(TPackageHost::RegisteredHost(), nullptr);
    }
};

QTEST_MAIN(tst_QtToolServices)
#include "tst_qttoolservices.moc"
