// The demo host: its command line, object trees and counts, the forms as an inspector sees
// them (names, the Tools menu), their behaviour, objects deleted while it runs, and the
// picture it takes.

#include "hosts/demo/CatalogueForm.h"
#include "hosts/demo/ColorSwatchButton.h"
#include "hosts/demo/CustomersForm.h"
#include "hosts/demo/DemoDataModule.h"
#include "hosts/demo/DemoDataSet.h"
#include "hosts/demo/DemoMainWindow.h"
#include "hosts/demo/DemoObjects.h"
#include "hosts/demo/DemoOptions.h"
#include "hosts/demo/DemoScreenshot.h"
#include "hosts/demo/DemoWorkspace.h"
#include "hosts/demo/DocumentsForm.h"
#include "hosts/demo/ItemsForm.h"
#include "hosts/demo/OptionsDialog.h"
#include "hosts/demo/PlannerForm.h"
#include "design/ideGen_designer.h"
#include "platform/kvHost.h"
#include "platform/kvOwner.h"
#include "platform/kvPropertyRegistry.h"
#include "platform/kvScreen.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QFontMetricsF>
#include <QDialogButtonBox>
#include <QFile>
#include <QImageReader>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QSettings>
#include <QSignalSpy>
#include <QSpinBox>
#include <QSplitter>
#include <QStatusBar>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeEdit>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// The windows that are roots of a naming scope: forms and dialogs, not popups.
bool IsFormWindow(const QWidget *widget)
{
    return widget->isWindow() && (widget->windowType() == Qt::Window || widget->windowType() == Qt::Dialog);
}

// The names of root's objects, below root down to (not into) other forms; Qt's own inner
// objects ("qt_…" or unnamed) left out.
void CollectNames(const QObject *root, const QObject *object, QStringList &names)
{
    for (const QObject *child : object->children()) {
        if (child->isWidgetType() && IsFormWindow(static_cast<const QWidget *>(child)))
            continue;
        const QString name = child->objectName();
        if (!name.isEmpty() && !name.startsWith(u"qt_"_s))
            names.append(name);
        CollectNames(root, child, names);
    }
}

QStringList DuplicateNames(const QStringList &names)
{
    QSet<QString> seen;
    QStringList duplicates;
    for (const QString &name : names) {
        if (seen.contains(name.toLower()))
            duplicates.append(name);
        seen.insert(name.toLower());
    }
    return duplicates;
}

// The widgets that a form's own code placed in layouts and splitters but left unnamed. The
// layouts that Qt's widgets keep for their inner parts (tool bars, status bars, combo box
// popups, key sequence editors) are not the form's.
QStringList UnnamedPlacedWidgets(const QWidget *window)
{
    QStringList unnamed;
    auto check = [&](const QWidget *widget, const QObject *holder) {
        if (widget && widget->objectName().isEmpty())
            unnamed.append(QString::fromLatin1(widget->metaObject()->className()) + u" in "_s + holder->objectName());
    };
    for (const QLayout *layout : window->findChildren<QLayout *>()) {
        const QWidget *owner = layout->parentWidget();
        const bool qtInner = owner->objectName().startsWith(u"qt_"_s) || qobject_cast<const QToolBar *>(owner)
            || qobject_cast<const QStatusBar *>(owner) || qobject_cast<const QKeySequenceEdit *>(owner)
            || QByteArray(owner->metaObject()->className()).startsWith("QComboBox");
        if (qtInner && owner != window)
            continue;
        for (int i = 0; i < layout->count(); ++i)
            check(layout->itemAt(i)->widget(), owner);
    }
    for (const QSplitter *splitter : window->findChildren<QSplitter *>()) {
        for (int i = 0; i < splitter->count(); ++i)
            check(splitter->widget(i), splitter);
    }
    return unnamed;
}

int VisibleLeaves(const QTreeWidget *tree)
{
    int count = 0;
    for (QTreeWidgetItemIterator it(const_cast<QTreeWidget *>(tree), QTreeWidgetItemIterator::NotHidden); *it; ++it) {
        if ((*it)->childCount() == 0 && !(*it)->isHidden()) {
            bool ancestorsShown = true;
            for (const QTreeWidgetItem *parent = (*it)->parent(); parent; parent = parent->parent())
                ancestorsShown &= !parent->isHidden();
            count += ancestorsShown ? 1 : 0;
        }
    }
    return count;
}

void ProcessDeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

class TestDemoHost : public QObject
{
    Q_OBJECT

    QTemporaryDir m_settingsDir;

private Q_SLOTS:
    void initTestCase();
    void init();

    void commandLine_data();
    void commandLine();
    void informationOnly();

    void extraObjects_data();
    void extraObjects();
    void countReachableObjects();

    void toolsMenuForAddIns();
    void packageInsertsItsToolsItem();
    void formsAreNamedAsADesignerWould();
    void dataModuleHoldsNonVisualObjects();
    void holdsAFewThousandObjects();

    void dataSetNavigationAndFields();
    void connectionClosesAndOpensTables();
    void itemsFilter();
    void customersSearchAndNavigation();
    void cataloguePlacesOrders();
    void plannerShowsMonths();
    void notesAreSavedAndOpened();
    void optionsCancelRestoresValues();
    void optionsShortcutMovesBetweenCommands();
    void optionsAreKept();
    void optionsReachTheForms();

    void objectsDeletedWhileRunning();
    void everyObjectThroughThePropertyEditors();

    void screenshotShowsOpenMenu();
    void screenshotWriteErrors();
};

void TestDemoHost::initTestCase()
{
    QCoreApplication::setApplicationName(u"KorvoDemoHost"_s);
    QCoreApplication::setApplicationVersion(u"3.1"_s);
    // Menus would animate into view and be grabbed half drawn.
    QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false);
    // Never the user's own settings.
    QVERIFY(m_settingsDir.isValid());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settingsDir.path());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_settingsDir.path());
}

void TestDemoHost::init()
{
    // Every test starts from the default options.
    QSettings().clear();
}

void TestDemoHost::commandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode"); // -1: the program goes on
    QTest::addColumn<QString>("messagePart");
    QTest::addColumn<int>("extraObjects");
    QTest::addColumn<QString>("screenshot");
    QTest::addColumn<bool>("count");

    QTest::newRow("nothing") << QStringList() << -1 << QString() << 0 << QString() << false;
    QTest::newRow("extra objects") << QStringList{u"--extra-objects"_s, u"25"_s} << -1 << QString() << 25 << QString() << false;
    QTest::newRow("extra objects, largest") << QStringList{u"--extra-objects=10000000"_s} << -1 << QString() << 10'000'000
                                            << QString() << false;
    QTest::newRow("all options") << QStringList{u"--count-objects"_s, u"--screenshot"_s, u"a.png"_s, u"--extra-objects"_s, u"0"_s}
                                 << -1 << QString() << 0 << u"a.png"_s << true;
    QTest::newRow("negative count") << QStringList{u"--extra-objects"_s, u"-1"_s} << 1 << u"not '-1'"_s << 0 << QString() << false;
    QTest::newRow("count not a number") << QStringList{u"--extra-objects"_s, u"many"_s} << 1 << u"not 'many'"_s << 0 << QString()
                                        << false;
    QTest::newRow("count too large") << QStringList{u"--extra-objects"_s, u"10000001"_s} << 1 << u"from 0 to 10000000"_s << 0
                                     << QString() << false;
    QTest::newRow("count missing") << QStringList{u"--extra-objects"_s} << 1 << u"Missing value"_s << 0 << QString() << false;
    QTest::newRow("empty file name") << QStringList{u"--screenshot="_s} << 1 << u"--screenshot expects"_s << 0 << QString() << false;
    QTest::newRow("unknown option") << QStringList{u"--no-such-option"_s} << 1 << u"Unknown option 'no-such-option'"_s << 0
                                    << QString() << false;
    QTest::newRow("stray argument") << QStringList{u"file.txt"_s} << 1 << u"Unexpected argument 'file.txt'"_s << 0 << QString()
                                    << false;
    QTest::newRow("help") << QStringList{u"--help"_s} << 0 << u"--extra-objects <N>"_s << 0 << QString() << false;
    QTest::newRow("version") << QStringList{u"--version"_s} << 0 << u"KorvoDemoHost 3.1"_s << 0 << QString() << false;
}

void TestDemoHost::commandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, messagePart);

    const DemoOptions options = ParseDemoOptions(QStringList{u"/usr/bin/kvdemohost"_s} + arguments);
    QCOMPARE(options.exitNow, exitCode >= 0);
    if (exitCode >= 0) {
        QCOMPARE(options.exitCode, exitCode);
        QVERIFY2(options.message.contains(messagePart), qPrintable(options.message));
        if (exitCode != 0) {
            // An error names the program and points to the help.
            QVERIFY(options.message.startsWith(u"kvdemohost: "_s));
            QVERIFY(options.message.contains(u"--help"_s));
        }
        return;
    }
    QTEST(options.extraObjects, "extraObjects");
    QTEST(options.screenshotFile, "screenshot");
    QTEST(options.countObjects, "count");
    QCOMPARE(options.RunsInteractively(), options.screenshotFile.isEmpty() && !options.countObjects);
}

void TestDemoHost::informationOnly()
{
    const QString program = u"kvdemohost"_s;
    QVERIFY(AsksForInformationOnly({program, u"--help"_s}));
    QVERIFY(AsksForInformationOnly({program, u"--extra-objects"_s, u"5"_s, u"-v"_s}));
    QVERIFY(!AsksForInformationOnly({program}));
    QVERIFY(!AsksForInformationOnly({program, u"--helpful"_s}));
    // After "--" nothing is an option.
    QVERIFY(!AsksForInformationOnly({program, u"--"_s, u"--help"_s}));
    // The program path itself is not an argument.
    QVERIFY(!AsksForInformationOnly({u"--help"_s}));
}

void TestDemoHost::extraObjects_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("maxDepth");
    for (const auto &[count, depth] : {std::pair{1, 1}, {10, 1}, {11, 2}, {110, 2}, {111, 3}, {5000, 4}})
        QTest::addRow("%d", count) << count << depth;
}

void TestDemoHost::extraObjects()
{
    QFETCH(int, count);
    QFETCH(int, maxDepth);

    QObject owner;
    const std::unique_ptr<QObject> root = CreateExtraObjects(&owner, count);
    QVERIFY(root);
    QCOMPARE(root->parent(), &owner);
    QCOMPARE(root->objectName(), u"ExtraObjects"_s);

    const QList<QObject *> all = root->findChildren<QObject *>();
    QCOMPARE(all.size(), count);
    QSet<QString> names;
    int deepest = 0;
    for (const QObject *object : all) {
        names.insert(object->objectName());
        QVERIFY(object->children().size() <= ExtraObjectsFanOut);
        int depth = 0;
        for (const QObject *up = object; up != root.get(); up = up->parent())
            ++depth;
        deepest = std::max(deepest, depth);
    }
    QCOMPARE(deepest, maxDepth);
    QCOMPARE(names.size(), count);
    QVERIFY(names.contains(u"ExtraObject1"_s));
    QVERIFY(names.contains(u"ExtraObject"_s + QString::number(count)));

    QVERIFY(!CreateExtraObjects(&owner, 0));
    QCOMPARE(owner.children().size(), 1);
}

void TestDemoHost::countReachableObjects()
{
    const ObjectCount before = CountReachableObjects();

    // A parentless window with three children, one of which holds a dialog (itself a
    // top-level widget, to be counted once) with two children of its own.
    QWidget window;
    auto *panel = new QWidget(&window);
    new QLabel(&window);
    new QLabel(&window);
    auto *dialog = new QDialog(panel);
    new QLabel(dialog);
    new QTimer(dialog);
    // Two objects below the application object; a parentless plain object is not reachable.
    QObject appChild(qApp);
    new QObject(&appChild);
    QObject unreachable;
    new QObject(&unreachable);

    const ObjectCount after = CountReachableObjects();
    QCOMPARE(after.objects - before.objects, 1 + 3 + 1 + 2 + 2);
    QCOMPARE(after.topLevelWidgets - before.topLevelWidgets, 2);
}

void TestDemoHost::toolsMenuForAddIns()
{
    DemoWorkspace workspace;
    DemoMainWindow *window = workspace.mainWindow();
    QMenu *tools = window->toolsMenu();
    QVERIFY(tools);
    QCOMPARE(tools->objectName(), u"ToolsMenu"_s);
    QCOMPARE(tools->title(), u"&Tools"_s);
    QVERIFY(window->menuBar()->actions().contains(tools->menuAction()));
    QCOMPARE(window->findChildren<QMenu *>(u"ToolsMenu"_s).size(), 1);

    // Add-ins go just ahead of the last item.
    const QList<QAction *> items = tools->actions();
    QVERIFY(items.size() >= 3);
    QCOMPARE(items.last()->objectName(), u"ToolsCustomizeItem"_s);
    for (const QAction *item : items)
        QVERIFY2(!item->objectName().isEmpty(), qPrintable(item->text()));

    // The Edit menu has a nested sub-menu, for an inspector's menu tree.
    const auto *edit = window->findChild<QMenu *>(u"EditMenu"_s);
    QVERIFY(edit);
    const auto *insert = edit->findChild<QMenu *>(u"EditInsertMenu"_s);
    QVERIFY(insert);
    QVERIFY(edit->actions().contains(insert->menuAction()));
    QVERIFY(insert->actions().size() >= 3);
}

void TestDemoHost::packageInsertsItsToolsItem()
{
    DemoWorkspace workspace;
    QMenu *tools = workspace.mainWindow()->toolsMenu();
    const int before = int(tools->actions().size());
    {
        kv::TPackageHost host;
        host.Load();
        host.Register(workspace.mainWindow());
        const QList<QAction *> items = tools->actions();
        QCOMPARE(items.size(), before + 1);
        QCOMPARE(items.at(before - 1)->objectName(), u"ToolsKorvoIDEInspector"_s);
        QCOMPARE(items.at(before - 1)->text(), u"Korvo IDE Inspector"_s);
        QCOMPARE(items.last()->objectName(), u"ToolsCustomizeItem"_s);
        host.Unload();
    }
    // The windows outlive the package: the program goes on without the add-in's host.
    QVERIFY(workspace.mainWindow());
    QCOMPARE(tools->actions().last()->objectName(), u"ToolsCustomizeItem"_s);
}

void TestDemoHost::formsAreNamedAsADesignerWould()
{
    DemoWorkspace workspace;
    const QStringList expectedForms = {u"MainForm"_s,     u"ItemsForm"_s,   u"CustomersForm"_s, u"DocumentsForm"_s,
                                       u"PlannerForm"_s,  u"CatalogueForm"_s, u"OptionsDialog"_s};
    QStringList forms;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (!IsFormWindow(window) || window->objectName().isEmpty() || window->objectName().startsWith(u"qt_"_s))
            continue;
        forms.append(window->objectName());
        QVERIFY2(!window->windowTitle().isEmpty(), qPrintable(window->objectName()));

        QStringList names;
        CollectNames(window, window, names);
        QVERIFY2(names.size() > 5, qPrintable(window->objectName()));
        const QStringList duplicates = DuplicateNames(names);
        QVERIFY2(duplicates.isEmpty(), qPrintable(window->objectName() + u": "_s + duplicates.join(u", "_s)));

        const QStringList unnamed = UnnamedPlacedWidgets(window);
        QVERIFY2(unnamed.isEmpty(), qPrintable(window->objectName() + u": "_s + unnamed.join(u", "_s)));
    }
    for (const QString &form : expectedForms)
        QVERIFY2(forms.contains(form), qPrintable(form));

    // The kinds of windows an inspector has to show.
    QVERIFY(qobject_cast<QDialog *>(workspace.mainWindow()->optionsDialog()));
    QVERIFY(workspace.itemsForm()->findChild<QTreeWidget *>(u"TreeWidget1"_s)->topLevelItemCount() > 2);
    QVERIFY(workspace.itemsForm()->findChild<QListWidget *>(u"ListWidget1"_s)->count() > 2);
    QVERIFY(workspace.documentsForm()->mdiArea()->subWindowList().size() >= 3);
}

void TestDemoHost::dataModuleHoldsNonVisualObjects()
{
    DemoWorkspace workspace;
    DemoDataModule *module = workspace.dataModule();
    QCOMPARE(module->objectName(), u"DataModule1"_s);
    QCOMPARE(module->parent(), qApp);
    QVERIFY(kv::Screen().IsDataModule(module));
    QVERIFY(module->findChildren<QTimer *>().size() >= 1);
    QVERIFY(module->findChildren<QAction *>().size() >= 8);
    QVERIFY(module->findChildren<QActionGroup *>().size() >= 1);
    QVERIFY(module->findChildren<DemoDataSet *>().size() >= 4);
    // Fields describe themselves through dynamic properties, and refer to their table.
    const QObject *city = module->findChild<QObject *>(u"CustomersTableCity"_s);
    QVERIFY(city);
    QVERIFY(city->dynamicPropertyNames().contains("displayLabel"));
    QCOMPARE(city->property("dataSet").value<QObject *>(), module->customersTable());
    // Published properties of the module itself.
    QVERIFY(module->metaObject()->indexOfProperty("connected") >= 0);
    QCOMPARE(module->property("databaseName").toString(), module->databaseName());

    // Names are unique below the application object, the data module's scope or not.
    QStringList names;
    CollectNames(qApp, qApp, names);
    QVERIFY(names.contains(u"DataModule1"_s));
    const QStringList duplicates = DuplicateNames(names);
    QVERIFY2(duplicates.isEmpty(), qPrintable(duplicates.join(u", "_s)));
}

void TestDemoHost::holdsAFewThousandObjects()
{
    const qsizetype before = CountReachableObjects().objects;
    DemoWorkspace workspace;
    const qsizetype demo = CountReachableObjects().objects - before;
    QVERIFY2(demo >= 2000, qPrintable(QString::number(demo)));
}

void TestDemoHost::dataSetNavigationAndFields()
{
    DemoDataSet set(u"PartsTable"_s);
    set.addField(u"PartNo"_s, u"Part"_s, u"String"_s, 8);
    set.addField(u"Price"_s, u"Price"_s, u"Currency"_s, 8);
    set.addField(u"Stock"_s, u"Stock"_s, u"Integer"_s, 5);
    set.appendRecord({u"A"_s, 1.5, 10});
    set.appendRecord({u"B"_s, 2.5, 20});
    set.appendRecord({u"C"_s, 3.5}); // a missing value is null
    QCOMPARE(set.recordCount(), 0);
    QCOMPARE(set.recNo(), 0);
    QVERIFY(!set.value(0, 0).isValid());

    QSignalSpy scrolled(&set, &DemoDataSet::recNoChanged);
    set.setActive(true);
    QCOMPARE(set.recordCount(), 3);
    QCOMPARE(set.recNo(), 1);
    set.prior();
    QCOMPARE(set.recNo(), 1);
    set.last();
    QCOMPARE(set.recNo(), 3);
    set.next();
    QCOMPARE(set.recNo(), 3);
    set.setRecNo(-5);
    QCOMPARE(set.recNo(), 1);
    QCOMPARE(scrolled.size(), 3); // opened at 1, last, back to 1
    QVERIFY(!set.value(2, u"Stock"_s).isValid());
    QCOMPARE(set.value(1, u"stock"_s).toInt(), 20);
    QVERIFY(!set.value(3, 0).isValid());

    // A field deleted from outside takes its column along.
    QCOMPARE(set.findChild<QObject *>(u"PartsTablePrice"_s)->property("dataSet").value<QObject *>(), &set);
    delete set.findChild<QObject *>(u"PartsTablePrice"_s);
    QCOMPARE(set.fieldCount(), 2);
    QCOMPARE(set.fieldIndex(u"Price"_s), -1);
    QCOMPARE(set.value(1, u"Stock"_s).toInt(), 20);
    QCOMPARE(set.value(1, 0).toString(), u"B"_s);

    set.setActive(false);
    QCOMPARE(set.recNo(), 0);
    QCOMPARE(set.recordCount(), 0);
}

void TestDemoHost::connectionClosesAndOpensTables()
{
    DemoWorkspace workspace;
    DemoDataModule *module = workspace.dataModule();
    QAction *next = module->action(u"DataSetNext"_s);
    QAction *first = module->action(u"DataSetFirst"_s);
    QVERIFY(next && first);
    QVERIFY(next->isEnabled());
    QVERIFY(!first->isEnabled());
    const int openOrders = module->openOrders();
    QVERIFY(openOrders > 0);

    module->setConnected(false);
    for (const DemoDataSet *set : module->findChildren<DemoDataSet *>())
        QVERIFY2(!set->isActive(), qPrintable(set->objectName()));
    QVERIFY(!next->isEnabled());
    QCOMPARE(module->openOrders(), 0);
    auto *recent = workspace.mainWindow()->findChild<QTableWidget *>(u"RecentOrdersGrid"_s);
    QCOMPARE(recent->rowCount(), 0);
    QVERIFY(!workspace.mainWindow()->findChild<QAction *>(u"ToolsConnectItem"_s)->isChecked());

    module->setConnected(true);
    QCOMPARE(module->customersTable()->recNo(), 1);
    QCOMPARE(module->openOrders(), openOrders);
    QCOMPARE(recent->rowCount(), module->ordersTable()->recordCount());
    QVERIFY(workspace.mainWindow()->findChild<QAction *>(u"ToolsConnectItem"_s)->isChecked());
}

void TestDemoHost::itemsFilter()
{
    DemoWorkspace workspace;
    ItemsForm *form = workspace.itemsForm();
    auto *tree = form->findChild<QTreeWidget *>(u"TreeWidget1"_s);
    auto *filter = form->findChild<QLineEdit *>(u"FilterEdit"_s);
    auto *countLabel = form->findChild<QLabel *>(u"CountLabel"_s);
    const int all = workspace.dataModule()->itemsTable()->recordCount();
    QCOMPARE(VisibleLeaves(tree), all);

    filter->setText(u"DRILL"_s);
    QCOMPARE(VisibleLeaves(tree), 1);
    QCOMPARE(countLabel->text(), u"1 item"_s);
    // The item's category and group stay visible, the other categories go.
    const QList<QTreeWidgetItem *> drill = tree->findItems(u"TL-2101"_s, Qt::MatchExactly | Qt::MatchRecursive, 1);
    QCOMPARE(drill.size(), 1);
    QVERIFY(!drill.first()->parent()->isHidden());
    QVERIFY(!drill.first()->parent()->parent()->isHidden());
    int shownCategories = 0;
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        shownCategories += tree->topLevelItem(i)->isHidden() ? 0 : 1;
    QCOMPARE(shownCategories, 1);

    filter->setText(u"hw-10"_s); // part numbers too
    QCOMPARE(VisibleLeaves(tree), 6);
    filter->setText(u"no such thing"_s);
    QCOMPARE(VisibleLeaves(tree), 0);
    QCOMPARE(countLabel->text(), u"0 items"_s);
    filter->clear();
    QCOMPARE(VisibleLeaves(tree), all);

    // Favourites: an item goes in once, however often it is added.
    auto *favourites = form->findChild<QListWidget *>(u"ListWidget1"_s);
    const int favouritesBefore = favourites->count();
    const QList<QTreeWidgetItem *> jigsaw = tree->findItems(u"TL-2102"_s, Qt::MatchExactly | Qt::MatchRecursive, 1);
    jigsaw.first()->setSelected(true);
    auto *add = form->findChild<QPushButton *>(u"AddButton"_s);
    QVERIFY(add->isEnabled());
    add->click();
    add->click();
    QCOMPARE(favourites->count(), favouritesBefore + 1);
}

void TestDemoHost::customersSearchAndNavigation()
{
    DemoWorkspace workspace;
    CustomersForm *form = workspace.customersForm();
    DemoDataSet *customers = workspace.dataModule()->customersTable();
    auto *grid = form->findChild<QTableWidget *>(u"CustomersGrid"_s);
    auto *label = form->findChild<QLabel *>(u"RecordLabel"_s);
    QCOMPARE(grid->rowCount(), customers->recordCount());

    // Three customers in the Bahamas; the search goes on from the current one and wraps.
    QVERIFY(form->findNext(u"bahamas"_s));
    QCOMPARE(customers->value(customers->recNo() - 1, u"Company"_s).toString(), u"Unisco"_s);
    QVERIFY(form->findNext(u"bahamas"_s));
    QCOMPARE(customers->value(customers->recNo() - 1, u"Company"_s).toString(), u"SCUBA Heaven"_s);
    QVERIFY(form->findNext(u"bahamas"_s));
    QVERIFY(form->findNext(u"bahamas"_s));
    QCOMPARE(customers->value(customers->recNo() - 1, u"Company"_s).toString(), u"Unisco"_s);
    QCOMPARE(grid->currentRow(), customers->recNo() - 1);
    QVERIFY(!form->findNext(u"Atlantis"_s));
    QVERIFY(!form->findNext(u"   "_s));

    // The data module's shared actions move the record, and the form follows.
    workspace.dataModule()->action(u"DataSetLast"_s)->trigger();
    QCOMPARE(grid->currentRow(), customers->recordCount() - 1);
    QCOMPARE(label->text(), u"Record %1 of %1"_s.arg(customers->recordCount()));
    QVERIFY(!workspace.dataModule()->action(u"DataSetNext"_s)->isEnabled());
    workspace.dataModule()->action(u"DataSetPrior"_s)->trigger();
    QCOMPARE(grid->currentRow(), customers->recordCount() - 2);
    // Choosing a row in the grid moves the record.
    grid->setCurrentCell(4, 0);
    QCOMPARE(customers->recNo(), 5);
}

void TestDemoHost::cataloguePlacesOrders()
{
    DemoWorkspace workspace;
    CatalogueForm *form = workspace.catalogueForm();
    DemoDataSet *orders = workspace.dataModule()->ordersTable();
    const int ordersBefore = orders->recordCount();
    const int openBefore = workspace.dataModule()->openOrders();
    const int cards = int(form->findChildren<QFrame *>(QRegularExpression(u"^Card\\d+$"_s)).size());
    QCOMPARE(cards, workspace.dataModule()->itemsTable()->recordCount());

    QVERIFY(!form->placeOrder()); // nothing in the basket
    QVERIFY(form->addToBasket(u"TL-2101"_s, 2)); // 129.00 each
    QVERIFY(form->addToBasket(u"EL-4201"_s, 10)); // 3.90 each
    QVERIFY(form->addToBasket(u"TL-2101"_s, 1));
    QVERIFY(!form->addToBasket(u"XX-0000"_s, 1));
    QVERIFY(!form->addToBasket(u"EL-4201"_s, 0));
    QCOMPARE(form->basketLineCount(), 2);
    QCOMPARE(form->basketTotal(), 3 * 129.00 + 10 * 3.90);

    auto *customer = form->findChild<QComboBox *>(u"CustomerCombo"_s);
    customer->setCurrentIndex(customer->findText(u"Ocean Paradise"_s));
    QVERIFY(form->placeOrder());
    QCOMPARE(form->basketLineCount(), 0);
    QCOMPARE(orders->recordCount(), ordersBefore + 1);
    const int row = orders->recordCount() - 1;
    QCOMPARE(orders->value(row, u"OrderNo"_s).toInt(), 1018);
    QCOMPARE(orders->value(row, u"CustNo"_s).toInt(), 1510);
    QCOMPARE(orders->value(row, u"Lines"_s).toInt(), 2);
    QCOMPARE(orders->value(row, u"Status"_s).toString(), u"Open"_s);
    // The dashboard shows it.
    QCOMPARE(workspace.dataModule()->openOrders(), openBefore + 1);
    QCOMPARE(workspace.mainWindow()->findChild<QTableWidget *>(u"RecentOrdersGrid"_s)->rowCount(), ordersBefore + 1);

    // No orders without a database.
    QVERIFY(form->addToBasket(u"TL-2101"_s, 1));
    workspace.dataModule()->setConnected(false);
    QVERIFY(!form->placeOrder());
    QCOMPARE(form->basketLineCount(), 1);
    QVERIFY(form->findChild<QLabel *>(u"BasketStatusLabel"_s)->text().contains(u"not connected"_s));
}

void TestDemoHost::plannerShowsMonths()
{
    DemoWorkspace workspace;
    PlannerForm *planner = workspace.plannerForm();
    const QDate today = QDate::currentDate();
    QCOMPARE(planner->month(), QDate(today.year(), today.month(), 1));

    for (const QDate &date : {QDate(2024, 2, 29), QDate(2026, 3, 1), QDate(2021, 2, 1), QDate(2023, 12, 31)}) {
        planner->showMonth(date);
        const QDate first = planner->firstShownDay();
        QCOMPARE(first.dayOfWeek(), 1);
        QVERIFY(first <= QDate(date.year(), date.month(), 1));
        QVERIFY(first.daysTo(QDate(date.year(), date.month(), 1)) < 7);
        const QDate last = first.addDays(PlannerForm::Weeks * 7 - 1);
        QVERIFY(last >= QDate(date.year(), date.month(), date.daysInMonth()));
    }

    // The week may start on another day.
    planner->setFirstDayOfWeek(Qt::Saturday);
    planner->showMonth(QDate(2026, 8, 1)); // a Saturday
    QCOMPARE(planner->firstShownDay(), QDate(2026, 8, 1));
    QCOMPARE(planner->findChild<QLabel *>(u"DayNameLabel2"_s)->text(), QLocale().dayName(Qt::Sunday, QLocale::ShortFormat));
    planner->setFirstDayOfWeek(Qt::Monday);
    QCOMPARE(planner->firstShownDay(), QDate(2026, 7, 27));

    // The stocktake has an entry of its own.
    planner->setStocktake(QDate(2026, 8, 12));
    const auto *stocktakeDay = planner->findChild<QListWidget *>(u"DayList"_s + QString::number(QDate(2026, 7, 27).daysTo(QDate(2026, 8, 12)) + 1));
    QVERIFY(!stocktakeDay->findItems(u"Stocktake"_s, Qt::MatchExactly).isEmpty());
    planner->setStocktake(QDate());

    // Today's three appointments are in today's panel, in time order.
    planner->showMonth(today);
    const int index = int(planner->firstShownDay().daysTo(today));
    auto *list = planner->findChild<QListWidget *>(u"DayList"_s + QString::number(index + 1));
    QVERIFY(list);
    QCOMPARE(list->count(), 3);
    QVERIFY(list->item(0)->text().startsWith(u"09:00"_s));
    QVERIFY(list->item(1)->text().contains(u"Credit limit review"_s));
}

void TestDemoHost::notesAreSavedAndOpened()
{
    DemoWorkspace workspace;
    DocumentsForm *documents = workspace.documentsForm();
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QString errorText;

    QMdiSubWindow *note = documents->newNote();
    QVERIFY(note);
    auto *editor = qobject_cast<QPlainTextEdit *>(note->widget());
    editor->insertPlainText(u"Order 1018: deliver on Friday.\nÄrger mit der Lieferung."_s);
    QVERIFY(editor->document()->isModified());
    const QString fileName = dir.filePath(u"note.txt"_s);
    QVERIFY2(documents->saveNote(note, fileName, &errorText), qPrintable(errorText));
    QVERIFY(!editor->document()->isModified());
    QCOMPARE(note->windowTitle(), u"note.txt[*]"_s);

    QMdiSubWindow *opened = documents->openNote(fileName, &errorText);
    QVERIFY2(opened, qPrintable(errorText));
    QCOMPARE(qobject_cast<QPlainTextEdit *>(opened->widget())->toPlainText(), editor->toPlainText());
    QVERIFY(opened->objectName() != note->objectName());

    // Failures name the file and change nothing.
    QVERIFY(!documents->openNote(dir.filePath(u"missing.txt"_s), &errorText));
    QVERIFY(errorText.contains(u"missing.txt"_s));
    const QString unwritable = dir.filePath(u"no/such/folder/note.txt"_s);
    QVERIFY(!documents->saveNote(note, unwritable, &errorText));
    QVERIFY(errorText.contains(u"note.txt"_s));
    QVERIFY(!QFile::exists(unwritable));
    // Only notes are text files.
    QMdiSubWindow *report = documents->findChild<QMdiSubWindow *>(u"StockReportWindow"_s);
    QVERIFY(!documents->saveNote(report, dir.filePath(u"report.txt"_s), &errorText));

    // The note format of the options reaches open notes.
    documents->setNoteFormat(QFont(u"DejaVu Sans Mono"_s, 13), 8, false);
    QCOMPARE(editor->font().pointSize(), 13);
    QCOMPARE(editor->lineWrapMode(), QPlainTextEdit::NoWrap);
    QCOMPARE(editor->tabStopDistance(), 8 * QFontMetricsF(editor->font()).horizontalAdvance(u' '));
}

void TestDemoHost::optionsCancelRestoresValues()
{
    DemoWorkspace workspace;
    OptionsDialog *dialog = workspace.mainWindow()->optionsDialog();
    auto *tabWidth = dialog->findChild<QSpinBox *>(u"TabWidthSpin"_s);
    auto *userName = dialog->findChild<QLineEdit *>(u"UserNameEdit"_s);
    auto *accent = dialog->findChild<ColorSwatchButton *>(u"AccentColorButton"_s);
    auto *startLast = dialog->findChild<QRadioButton *>(u"StartAllRadio"_s);
    auto *startDashboard = dialog->findChild<QRadioButton *>(u"StartMainRadio"_s);
    auto *showToolBar = dialog->findChild<QCheckBox *>(u"ShowToolBarCheck"_s);
    QVERIFY(tabWidth && userName && accent && startLast && startDashboard && showToolBar);
    const QColor accentBefore = accent->color();

    dialog->openPage(OptionsDialog::EditorPage);
    tabWidth->setValue(8);
    userName->setText(u"Someone Else"_s);
    accent->setColor(Qt::red);
    startLast->setChecked(true);
    dialog->reject();
    QCOMPARE(tabWidth->value(), 4);
    QCOMPARE(userName->text(), u"Demo User"_s);
    QCOMPARE(accent->color(), accentBefore);
    QVERIFY(startDashboard->isChecked());
    QVERIFY(!startLast->isChecked());

    // Applied values stay when the dialog is then cancelled, and reach the main window.
    QSignalSpy applied(dialog, &OptionsDialog::applied);
    dialog->openPage(OptionsDialog::AppearancePage);
    tabWidth->setValue(8);
    showToolBar->setChecked(false);
    dialog->apply();
    QCOMPARE(applied.size(), 1);
    QVERIFY(workspace.mainWindow()->findChild<QToolBar *>(u"ToolBar1"_s)->isHidden());
    tabWidth->setValue(9);
    dialog->reject();
    QCOMPARE(tabWidth->value(), 8);

    // Restore Defaults resets the page on show, and only that page.
    dialog->openPage(OptionsDialog::EditorPage);
    userName->setText(u"Changed"_s);
    dialog->findChild<QPushButton *>(u"DefaultsButton"_s)->click();
    QCOMPARE(tabWidth->value(), 4);
    QCOMPARE(userName->text(), u"Changed"_s);
    dialog->accept();
    QCOMPARE(userName->text(), u"Changed"_s);
    QCOMPARE(applied.size(), 2);
}

void TestDemoHost::optionsShortcutMovesBetweenCommands()
{
    OptionsDialog dialog;
    QAction newNote(u"&New Note"_s);
    newNote.setShortcut(QKeySequence(u"Ctrl+N"_s));
    QAction refresh(u"&Refresh"_s);
    refresh.setShortcut(QKeySequence(u"F5"_s));
    auto gone = std::make_unique<QAction>(u"Gone"_s);
    dialog.setCommands({&newNote, &refresh, gone.get()});
    gone.reset(); // a command that no longer exists is left out

    auto *tree = dialog.findChild<QTreeWidget *>(u"CommandTree"_s);
    auto *edit = dialog.findChild<QKeySequenceEdit *>(u"ShortcutEdit"_s);
    auto *conflict = dialog.findChild<QLabel *>(u"ConflictLabel"_s);
    dialog.openPage(OptionsDialog::KeyboardPage);
    QCOMPARE(tree->topLevelItemCount(), 2);
    QCOMPARE(edit->keySequence(), QKeySequence(u"Ctrl+N"_s)); // the first command is selected

    // Giving Refresh the shortcut of New Note takes it from New Note.
    tree->setCurrentItem(tree->topLevelItem(1));
    QCOMPARE(edit->keySequence(), QKeySequence(u"F5"_s));
    edit->setKeySequence(QKeySequence(u"Ctrl+N"_s));
    QVERIFY2(conflict->text().contains(u"New Note"_s), qPrintable(conflict->text()));
    QCOMPARE(tree->topLevelItem(0)->text(1), QString());
    // Nothing changes before the dialog is applied...
    QCOMPARE(newNote.shortcut(), QKeySequence(u"Ctrl+N"_s));
    dialog.accept();
    QCOMPARE(refresh.shortcut(), QKeySequence(u"Ctrl+N"_s));
    QVERIFY(newNote.shortcut().isEmpty());

    // ...and nothing when it is cancelled.
    dialog.openPage(OptionsDialog::KeyboardPage);
    tree->setCurrentItem(tree->topLevelItem(0));
    edit->setKeySequence(QKeySequence(u"Ctrl+R"_s));
    dialog.reject();
    QVERIFY(newNote.shortcut().isEmpty());

    // Restore Defaults on this page brings back the shortcuts the commands came with.
    dialog.openPage(OptionsDialog::KeyboardPage);
    dialog.findChild<QPushButton *>(u"DefaultsButton"_s)->click();
    dialog.accept();
    QCOMPARE(newNote.shortcut(), QKeySequence(u"Ctrl+N"_s));
    QCOMPARE(refresh.shortcut(), QKeySequence(u"F5"_s));
}

void TestDemoHost::optionsAreKept()
{
    QAction refresh(u"&Refresh"_s);
    refresh.setObjectName(u"ViewRefreshItem"_s);
    refresh.setShortcut(QKeySequence(u"F5"_s));
    {
        OptionsDialog dialog;
        dialog.setCommands({&refresh});
        dialog.openPage(OptionsDialog::RegionalPage);
        dialog.findChild<QSpinBox *>(u"TabWidthSpin"_s)->setValue(7);
        dialog.findChild<ColorSwatchButton *>(u"AccentColorButton"_s)->setColor(QColor(0x12, 0x34, 0x56));
        dialog.findChild<QRadioButton *>(u"StartDocumentsRadio"_s)->setChecked(true);
        dialog.findChild<QDateEdit *>(u"NextStocktakeEdit"_s)->setDate(QDate(2031, 5, 6));
        dialog.findChild<QComboBox *>(u"WeekStartCombo"_s)->setCurrentIndex(1);
        auto *tree = dialog.findChild<QTreeWidget *>(u"CommandTree"_s);
        tree->setCurrentItem(tree->topLevelItem(0));
        dialog.findChild<QKeySequenceEdit *>(u"ShortcutEdit"_s)->setKeySequence(QKeySequence(u"Ctrl+F5"_s));
        dialog.accept();
    }
    // A new dialog (the next run of the program) reads them back, and puts the stored
    // shortcut on the command.
    refresh.setShortcut(QKeySequence(u"F5"_s));
    OptionsDialog dialog;
    QCOMPARE(dialog.noteTabWidth(), 7);
    QCOMPARE(dialog.accentColor(), QColor(0x12, 0x34, 0x56));
    QCOMPARE(dialog.startupWindows(), OptionsDialog::WithDocuments);
    QCOMPARE(dialog.nextStocktake(), QDate(2031, 5, 6));
    QCOMPARE(dialog.firstDayOfWeek(), Qt::Sunday);
    dialog.setCommands({&refresh});
    QCOMPARE(refresh.shortcut(), QKeySequence(u"Ctrl+F5"_s));
    // The default is still the one the command came with.
    dialog.openPage(OptionsDialog::KeyboardPage);
    dialog.findChild<QPushButton *>(u"DefaultsButton"_s)->click();
    dialog.accept();
    QCOMPARE(refresh.shortcut(), QKeySequence(u"F5"_s));
    QVERIFY(!QSettings().contains(u"Shortcuts/ViewRefreshItem"_s));

    // A stored value of the wrong kind leaves the default.
    QSettings().setValue(u"Options/TabWidthSpin"_s, u"lots"_s);
    QSettings().setValue(u"Options/OpeningTimeEdit"_s, u"noon"_s);
    OptionsDialog damaged;
    QCOMPARE(damaged.noteTabWidth(), 4);
    QCOMPARE(damaged.openingTime(), QTime(8, 30));
}

void TestDemoHost::optionsReachTheForms()
{
    DemoWorkspace workspace;
    DemoMainWindow *window = workspace.mainWindow();
    OptionsDialog *dialog = window->optionsDialog();
    DemoDataSet *orders = workspace.dataModule()->ordersTable();
    auto *recent = window->findChild<QTableWidget *>(u"RecentOrdersGrid"_s);
    QCOMPARE(recent->rowCount(), orders->recordCount());
    QVERIFY(workspace.documentsForm()->findChild<QLabel *>(u"TotalLabel"_s)->text().contains(u"19.00 %"_s));

    dialog->openPage(OptionsDialog::RegionalPage);
    const QDate since = QDate::currentDate().addDays(-2);
    dialog->findChild<QDateTimeEdit *>(u"OrdersSinceEdit"_s)->setDateTime(QDateTime(since, QTime(0, 0)));
    dialog->findChild<QTimeEdit *>(u"OpeningTimeEdit"_s)->setTime(QTime(0, 0));
    dialog->findChild<QTimeEdit *>(u"ClosingTimeEdit"_s)->setTime(QTime(0, 0));
    dialog->findChild<QComboBox *>(u"WeekStartCombo"_s)->setCurrentIndex(1); // Sunday
    dialog->findChild<QDoubleSpinBox *>(u"TaxRateSpin"_s)->setValue(7.5);
    dialog->findChild<QLineEdit *>(u"CompanyEdit"_s)->setText(u"Hardware Heaven"_s);
    dialog->findChild<QComboBox *>(u"ThemeCombo"_s)->setCurrentIndex(1);
    dialog->accept();

    int recentOrders = 0;
    for (int row = 0; row < orders->recordCount(); ++row)
        recentOrders += orders->value(row, u"SaleDate"_s).toDate() >= since ? 1 : 0;
    QVERIFY(recentOrders < orders->recordCount());
    QCOMPARE(recent->rowCount(), recentOrders);
    QVERIFY(window->findChild<QLabel *>(u"ShopLabel"_s)->text().startsWith(u"Shop closed"_s));
    QCOMPARE(window->windowTitle(), u"Korvo Demo Host - Hardware Heaven"_s);
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() < 100);
    QCOMPARE(workspace.plannerForm()->firstDayOfWeek(), Qt::Sunday);
    QCOMPARE(workspace.plannerForm()->firstShownDay().dayOfWeek(), int(Qt::Sunday));
    QVERIFY(workspace.documentsForm()->findChild<QLabel *>(u"TotalLabel"_s)->text().contains(u"7.50 %"_s));

    dialog->openPage(OptionsDialog::AppearancePage);
    dialog->findChild<QComboBox *>(u"ThemeCombo"_s)->setCurrentIndex(0);
    dialog->accept();
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() > 150);
}

void TestDemoHost::objectsDeletedWhileRunning()
{
    // An inspector can delete any object of the program; what is left must go on working.
    DemoWorkspace workspace;
    DemoDataModule *module = workspace.dataModule();

    delete workspace.itemsForm()->findChild<QTreeWidget *>(u"TreeWidget1"_s);
    workspace.itemsForm()->setFilterText(u"drill"_s);
    workspace.itemsForm()->findChild<QPushButton *>(u"AddButton"_s)->click();

    delete module->findChild<QObject *>(u"OrdersTableCompany"_s);
    module->ordersTable()->setActive(false);
    module->ordersTable()->setActive(true);
    QCOMPARE(workspace.mainWindow()->findChild<QTableWidget *>(u"RecentOrdersGrid"_s)->rowCount(),
             module->ordersTable()->recordCount());

    delete module->customersTable();
    QVERIFY(!module->customersTable());
    module->action(u"DataSetNext"_s)->trigger();
    module->action(u"DataSetRefresh"_s)->trigger();
    QVERIFY(!workspace.customersForm()->findNext(u"Unisco"_s));
    module->setConnected(false);
    module->setConnected(true);

    delete workspace.mainWindow()->findChild<QListWidget *>(u"ActivityList"_s);
    workspace.mainWindow()->logActivity(u"still running"_s);
    workspace.mainWindow()->findChild<QAction *>(u"ViewRefreshItem"_s)->trigger();

    // A whole form: its View item goes too, and the workspace does not delete it twice.
    delete workspace.itemsForm();
    ProcessDeferredDeletes();
    QVERIFY(!workspace.itemsForm());
    QVERIFY(!workspace.mainWindow()->findChild<QAction *>(u"ViewItemsFormItem"_s));
    QVERIFY(workspace.mainWindow()->findChild<QAction *>(u"ViewCustomersFormItem"_s));

    delete workspace.documentsForm()->mdiArea();
    QVERIFY(!workspace.documentsForm()->newNote());
    workspace.dataModule()->action(u"WindowCascade"_s)->trigger();

    delete workspace.mainWindow()->optionsDialog();
    workspace.mainWindow()->findChild<QAction *>(u"ToolsOptionsItem"_s)->trigger();

    delete workspace.dataModule();
    QVERIFY(!workspace.dataModule());
}

void TestDemoHost::screenshotShowsOpenMenu()
{
    DemoWorkspace workspace;
    DemoMainWindow *window = workspace.mainWindow();
    QString errorText;
    const QImage picture = GrabWithOpenMenu(window, window->toolsMenu(), &errorText);
    QVERIFY2(!picture.isNull(), qPrintable(errorText));
    QVERIFY(!window->toolsMenu()->isVisible()); // closed again
    QVERIFY(picture.deviceIndependentSize().toSize().width() >= window->width());
    QVERIFY(picture.deviceIndependentSize().toSize().height() >= window->height());

    // Below the Tools title the picture shows the menu, not the window.
    const QImage plain = window->grab().toImage().convertToFormat(picture.format());
    const QRect title = window->menuBar()->actionGeometry(window->toolsMenu()->menuAction());
    const QPoint inMenu = window->menuBar()->mapTo(window, title.bottomLeft()) + QPoint(20, 30);
    int differing = 0;
    for (int dy = 0; dy < 40; ++dy)
        for (int dx = 0; dx < 60; ++dx)
            differing += picture.pixel(inMenu + QPoint(dx, dy)) != plain.pixel(inMenu + QPoint(dx, dy)) ? 1 : 0;
    QVERIFY2(differing > 100, qPrintable(QString::number(differing)));

    QTemporaryDir dir;
    const QString fileName = dir.filePath(u"shot.jpg"_s); // PNG whatever the extension
    QVERIFY2(SavePng(picture, fileName, &errorText), qPrintable(errorText));
    QImageReader reader(fileName);
    QCOMPARE(reader.format(), QByteArray("png"));
    QCOMPARE(reader.size(), picture.size());

    // A menu of another window is refused.
    QMenu stray(u"&Stray"_s);
    QVERIFY(GrabWithOpenMenu(window, &stray, &errorText).isNull());
    QVERIFY(errorText.contains(u"Stray"_s));
}

void TestDemoHost::screenshotWriteErrors()
{
    QTemporaryDir dir;
    QImage image(20, 10, QImage::Format_ARGB32);
    image.fill(Qt::blue);
    QString errorText;

    const QString inMissingFolder = dir.filePath(u"missing/shot.png"_s);
    QVERIFY(!SavePng(image, inMissingFolder, &errorText));
    QVERIFY2(errorText.contains(inMissingFolder), qPrintable(errorText));
    QVERIFY(!QFile::exists(inMissingFolder));

    // A failed write leaves an earlier picture as it was.
    const QString existing = dir.filePath(u"existing.png"_s);
    QVERIFY(SavePng(image, existing, &errorText));
    const QByteArray before = [&] {
        QFile file(existing);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }();
    QVERIFY(!SavePng(QImage(), existing, &errorText));
    QFile file(existing);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), before);

    QVERIFY(!SavePng(image, dir.path(), &errorText)); // a folder
    QVERIFY(!errorText.isEmpty());
}

// The design-time framework on a real program: every property and event of every object
// of the demo's windows and data module is read through the editors, with its value list and
// its sub-properties, and written back with its own text; nothing may change.
void TestDemoHost::everyObjectThroughThePropertyEditors()
{
    DemoWorkspace workspace;
    QList<QObject *> objects;
    for (QObject *root : std::initializer_list<QObject *>{workspace.mainWindow(), workspace.dataModule(),
                                                         workspace.itemsForm(), workspace.customersForm(),
                                                         workspace.documentsForm(), workspace.plannerForm(),
                                                         workspace.catalogueForm()}) {
        objects.append(root);
        objects.append(root->findChildren<QObject *>());
    }
    QVERIFY(objects.size() > 2000);

    enum TPass { ReadWithLists, Read, WriteBack };
    qsizetype listed = 0;
    using TTexts = QMap<QString, QString>;
    std::function<void(kv::TPropertyEditor &, const QString &, int, TTexts &, TPass)> visit;
    visit = [&](kv::TPropertyEditor &editor, const QString &prefix, int depth, TTexts &texts, TPass pass) {
        const QString path = prefix + u'.' + editor.GetName();
        const QString text = editor.GetValue();
        texts.insert(path, text);
        if (pass == ReadWithLists && (editor.GetAttributes() & kv::paValueList))
            editor.GetValues([&](const QString &) { ++listed; });
        if (pass == WriteBack && editor.ValueAvailable() && !(editor.GetAttributes() & kv::paReadOnly))
            editor.SetValue(text);
        if (depth < 1 && (editor.GetAttributes() & kv::paSubProperties)) {
            editor.GetProperties([&](std::unique_ptr<kv::TPropertyEditor> sub) {
                visit(*sub, path, depth + 1, texts, pass);
            });
        }
    };
    auto walk = [&](TPass pass) {
        TTexts texts;
        for (QObject *object : std::as_const(objects)) {
            kv::TFDesigner designer;
            designer.SetOwnerControl(kv::IsRoot(object) ? object : kv::GetOwner(object));
            const QString prefix = QString::fromLatin1(object->metaObject()->className()) + u':' + object->objectName()
                                   + u':' + QString::number(quintptr(object), 16);
            kv::GetComponentProperties({object}, kv::TTypeKinds::Any(), &designer,
                                       [&](std::unique_ptr<kv::TPropertyEditor> editor) {
                                           visit(*editor, prefix, 0, texts, pass);
                                       });
        }
        return texts;
    };

    walk(ReadWithLists); // some getters also build what they report on first use
    QVERIFY(listed > 10000);
    const TTexts before = walk(Read);
    walk(WriteBack);
    const TTexts after = walk(Read);
    QStringList changed;
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        // A running timer's remaining time is the clock's, not the object's.
        if (after.value(it.key()) != it.value() && !it.key().endsWith(u".remainingTime"_s))
            changed.append(it.key() + u": '"_s + it.value() + u"' became '"_s + after.value(it.key()) + u'\'');
    }
    QVERIFY2(changed.isEmpty(), qPrintable(changed.mid(0, 20).join(u'\n')));
    QVERIFY(before.size() > 50000);
}

QTEST_MAIN(TestDemoHost)
#include "tst_demohost.moc"
