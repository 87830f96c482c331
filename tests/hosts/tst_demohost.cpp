// The demo host: its command line, object trees and counts, the forms as an inspector sees
// them (names, the Tools menu, the data module), objects deleted while it runs, every
// object through the property editors, and the picture it takes.

#include "hosts/demo/CatalogueForm.h"
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
#include "shell/kvIDEInspD5_host.h"
#include "platform/kvOwner.h"
#include "platform/kvPropertyRegistry.h"
#include "platform/kvScreen.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QImageReader>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLayout>
#include <QListWidget>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSet>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
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

void ProcessDeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

class tst_DemoHost : public QObject
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
    void formsAreNamedAsADesignerWould();
    void dataModuleHoldsNonVisualObjects();
    void holdsAFewThousandObjects();


    void objectsDeletedWhileRunning();
    void everyObjectThroughThePropertyEditors();

    void screenshotShowsOpenMenu();
    void screenshotWriteErrors();
};

void tst_DemoHost::initTestCase()
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

void tst_DemoHost::init()
{
    // Every test starts from the default options.
    QSettings().clear();
}

void tst_DemoHost::commandLine_data()
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

void tst_DemoHost::commandLine()
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

void tst_DemoHost::informationOnly()
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

void tst_DemoHost::extraObjects_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("maxDepth");
    for (const auto &[count, depth] : {std::pair{1, 1}, {10, 1}, {11, 2}, {110, 2}, {111, 3}, {5000, 4}})
        QTest::addRow("%d", count) << count << depth;
}

void tst_DemoHost::extraObjects()
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

void tst_DemoHost::countReachableObjects()
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

void tst_DemoHost::toolsMenuForAddIns()
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


void tst_DemoHost::formsAreNamedAsADesignerWould()
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

void tst_DemoHost::dataModuleHoldsNonVisualObjects()
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

void tst_DemoHost::holdsAFewThousandObjects()
{
    const qsizetype before = CountReachableObjects().objects;
    DemoWorkspace workspace;
    const qsizetype demo = CountReachableObjects().objects - before;
    QVERIFY2(demo >= 2000, qPrintable(QString::number(demo)));
}












void tst_DemoHost::objectsDeletedWhileRunning()
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

void tst_DemoHost::screenshotShowsOpenMenu()
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

void tst_DemoHost::screenshotWriteErrors()
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
void tst_DemoHost::everyObjectThroughThePropertyEditors()
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

QTEST_MAIN(tst_DemoHost)
#include "tst_demohost.moc"
