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

namespace {

int g_shows = 0;
void CountShow() { ++g_shows; }

QStringList Texts(const QMenu *menu)
{
    QStringList texts;
    for (const QAction *a : menu->actions())
        texts << (a->isSeparator() ? QStringLiteral("-") : a->text());
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
        m_tools->addAction(QStringLiteral("&Options"));
        m_tools->addSeparator();
        m_tools->addAction(QStringLiteral("&Customize..."));
        return m_tools;
    }

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QMainWindow>();
        QMenu *file = m_window->menuBar()->addMenu(QStringLiteral("&File"));
        file->setObjectName(QStringLiteral("FileMenu"));
        QMenu *recent = file->addMenu(QStringLiteral("Recent"));
        recent->setObjectName(QStringLiteral("RecentMenu"));
        recent->addAction(QStringLiteral("a.txt"))->setObjectName(QStringLiteral("RecentFile1"));
        g_shows = 0;
    }

    void cleanup()
    {
        m_window.reset();
        ShowIDEInspectorProc = nullptr;
    }

    void findsTheToolsMenu_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("objectName");
        QTest::newRow("named ToolsMenu") << QStringLiteral("&Extras") << QStringLiteral("ToolsMenu");
        QTest::newRow("IDE style name") << QStringLiteral("&Werkzeuge") << QStringLiteral("QtCreator.Menu.Tools");
        QTest::newRow("titled Tools") << QStringLiteral("&Tools") << QString();
        QTest::newRow("mnemonic inside") << QStringLiteral("T&ools") << QStringLiteral("menuTools");
    }

    void findsTheToolsMenu()
    {
        QFETCH(QString, title);
        QFETCH(QString, objectName);
        addTools(title, objectName);
        TQtToolServices services(m_window.get());
        const auto mainMenu = services.GetMainMenu();
        QVERIFY(mainMenu);
        const auto tools = mainMenu->FindMenuItem(QStringLiteral("ToolsMenu"));
        QVERIFY(tools);
        QCOMPARE(tools->GetItemCount(), 3);
        QCOMPARE(tools->GetCaption(), title);
    }

    void namedItemsAnywhereInTheTree()
    {
        TQtToolServices services(m_window.get());
        const auto mainMenu = services.GetMainMenu();
        const auto recent = mainMenu->FindMenuItem(QStringLiteral("RecentMenu"));
        QVERIFY(recent);
        QCOMPARE(recent->GetItemCount(), 1);
        const auto file = mainMenu->FindMenuItem(QStringLiteral("RecentFile1"));
        QVERIFY(file);
        QCOMPARE(file->GetCaption(), QStringLiteral("a.txt"));
        QCOMPARE(mainMenu->FindMenuItem(QStringLiteral("ToolsMenu")), nullptr);
        QCOMPARE(mainMenu->FindMenuItem(QString()), nullptr);
        const auto items = mainMenu->GetMenuItems();
        QCOMPARE(items->GetItemCount(), 1);
        QCOMPARE(items->GetItem(0)->GetName(), QStringLiteral("FileMenu"));
        QVERIFY_THROWS_EXCEPTION(Exception, items->GetItem(1));
    }

    void windowWithoutMenuBar()
    {
        QWidget plain;
        TQtToolServices services(&plain);
        QCOMPARE(services.GetMainMenu(), nullptr);
        QMainWindow bare;
        TQtToolServices bareServices(&bare);
        QCOMPARE(bareServices.GetMainMenu(), nullptr);
        QCOMPARE(bare.menuWidget(), nullptr); // looking did not create one
        TQtToolServices none(nullptr);
        QCOMPARE(none.GetMainMenu(), nullptr);
    }

    void insertedItemBelongsToItsInterface()
    {
        addTools(QStringLiteral("&Tools"), QStringLiteral("ToolsMenu"));
        TQtToolServices services(m_window.get());
        const auto tools = services.GetMainMenu()->FindMenuItem(QStringLiteral("ToolsMenu"));
        QStringList senders;
        auto item = tools->InsertItem(2, QStringLiteral("Item"), QStringLiteral("MyItem"), QStringLiteral("hint"),
                                      QKeySequence(QStringLiteral("Ctrl+K")), 7, 1, mfEnabled | mfVisible,
                                      [&](TIMenuItemIntf *sender) { senders << sender->GetName(); });
        QCOMPARE(Texts(m_tools), QStringList({QStringLiteral("&Options"), QStringLiteral("-"), QStringLiteral("Item"),
                                              QStringLiteral("&Customize...")}));
        QAction *action = m_tools->actions().at(2);
        QCOMPARE(action->objectName(), QStringLiteral("MyItem"));
        QCOMPARE(action->statusTip(), QStringLiteral("hint"));
        QCOMPARE(action->shortcut(), QKeySequence(QStringLiteral("Ctrl+K")));
        QCOMPARE(item->GetFlags(), TIMenuFlags(mfEnabled | mfVisible));
        action->trigger();
        QCOMPARE(senders, QStringList(QStringLiteral("MyItem")));
        item.reset();
        QCOMPARE(m_tools->actions().size(), 3);

        auto hidden = tools->InsertItem(-1, QStringLiteral("Hidden"), QStringLiteral("H"), {}, {}, 0, 0, 0, {});
        QCOMPARE(m_tools->actions().last()->text(), QStringLiteral("Hidden"));
        QVERIFY(!m_tools->actions().last()->isVisible());
        QVERIFY(!m_tools->actions().last()->isEnabled());
        QCOMPARE(hidden->GetFlags(), TIMenuFlags(0));
    }

    void menuGoneWhileHeld()
    {
        addTools(QStringLiteral("&Tools"), QStringLiteral("ToolsMenu"));
        TQtToolServices services(m_window.get());
        const auto tools = services.GetMainMenu()->FindMenuItem(QStringLiteral("ToolsMenu"));
        auto item = tools->InsertItem(0, QStringLiteral("Item"), QStringLiteral("MyItem"), {}, {}, 0, 0, 6, {});
        m_window.reset(); // the menus die first; the interfaces must cope
        QCOMPARE(tools->GetItemCount(), 0);
        QCOMPARE(item->GetFlags(), TIMenuFlags(mfInvalid));
        QVERIFY_THROWS_EXCEPTION(Exception, tools->InsertItem(0, QStringLiteral("X"), QStringLiteral("X"), {}, {}, 0, 0, 6, {}));
        item.reset();
    }

    void packageHostPutsTheItemAheadOfTheLast()
    {
        addTools(QStringLiteral("&Tools"), QStringLiteral("ToolsMenu"));
        {
            TPackageHost host;
            host.Load();
            QVERIFY(host.IsLoaded());
            host.Register(m_window.get());
            QCOMPARE(host.Experts().size(), size_t(1));
            QVERIFY(!LibraryExpertProc()); // the host accepts add-ins only while registering
            QCOMPARE(Texts(m_tools), QStringList({QStringLiteral("&Options"), QStringLiteral("-"),
                                                  QStringLiteral("Korvo IDE Inspector"), QStringLiteral("&Customize...")}));
            QAction *item = m_tools->findChild<QAction *>(QStringLiteral("ToolsKorvoIDEInspector"));
            QVERIFY(item);
            ShowIDEInspectorProc = CountShow;
            item->trigger();
            QCOMPARE(g_shows, 1);
        }
        // Unloading took the item out again.
        QCOMPARE(m_tools->actions().size(), 3);
    }

    void secondHostInTheProcessRegistersNothing()
    {
        addTools(QStringLiteral("&Tools"), QStringLiteral("ToolsMenu"));
        auto linked = std::make_unique<TPackageHost>();
        TPackageHost preloaded;
        linked->Load();
        preloaded.Register(m_window.get());
        linked->Register(m_window.get());
        QVERIFY(preloaded.IsRegistered());
        QVERIFY(!linked->IsRegistered());
        QCOMPARE(m_tools->findChildren<QAction *>(QStringLiteral("ToolsKorvoIDEInspector")).size(), 1);
        QVERIFY(linked->Experts().empty());
        // The units stay up until the last host goes.
        linked.reset();
        QCOMPARE(m_tools->findChildren<QAction *>(QStringLiteral("ToolsKorvoIDEInspector")).size(), 1);
        QVERIFY(GetPackageInfoTable().front().Started);
        preloaded.Unload();
        QVERIFY(!GetPackageInfoTable().front().Started);
        QCOMPARE(TPackageHost::RegisteredHost(), nullptr);
    }

    void programWithoutToolsMenuGetsNoItem()
    {
        TPackageHost host;
        host.Register(m_window.get());
        QCOMPARE(host.Experts().size(), size_t(1));
        QCOMPARE(m_window->findChild<QAction *>(QStringLiteral("ToolsKorvoIDEInspector")), nullptr);
    }
};

QTEST_MAIN(tst_QtToolServices)
#include "tst_qttoolservices.moc"
