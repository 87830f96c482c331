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
#include "platform/kvOwner.h"
#include "platform/kvPropertyRegistry.h"
#include "platform/kvScreen.h"

#include <QAction>
#include <QApplication>
#include <QHash>
#include <QImageReader>
#include <QLabel>
#include <QListWidget>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSet>
#include <QSettings>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <memory>

using namespace Qt::StringLiterals;

class tst_DemoHost : public QObject
{
    Q_OBJECT

    QTemporaryDir m_settingsDir;

private Q_SLOTS:
    void initTestCase()
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

    void init()
    {
        // Every test starts from the default options.
        QSettings().clear();
    }

    void commandLine_data()
    {
        QTest::addColumn<QString>("arguments"); // separated by spaces
        QTest::addColumn<int>("exitCode");      // -1: the program goes on
        QTest::addColumn<QString>("expected");  // going on: what was parsed; else part of the message

        QTest::newRow("nothing") << QString() << -1 << u"extra=0 shot= count=0"_s;
        QTest::newRow("largest") << u"--extra-objects=10000000"_s << -1 << u"extra=10000000 shot= count=0"_s;
        QTest::newRow("all options") << u"--count-objects --screenshot a.png --extra-objects 0"_s << -1
                                     << u"extra=0 shot=a.png count=1"_s;
        QTest::newRow("negative count") << u"--extra-objects -1"_s << 1 << u"not '-1'"_s;
        QTest::newRow("not a number") << u"--extra-objects many"_s << 1 << u"not 'many'"_s;
        QTest::newRow("too large") << u"--extra-objects 10000001"_s << 1 << u"from 0 to 10000000"_s;
        QTest::newRow("empty file name") << u"--screenshot="_s << 1 << u"--screenshot expects"_s;
        QTest::newRow("unknown option") << u"--helpful"_s << 1 << u"Unknown option 'helpful'"_s;
        // After "--" nothing is an option.
        QTest::newRow("stray argument") << u"-- --help"_s << 1 << u"Unexpected argument '--help'"_s;
        QTest::newRow("help") << u"--help"_s << 0 << u"--extra-objects <N>"_s;
        QTest::newRow("version amid") << u"--extra-objects 5 -v"_s << 0 << u"KorvoDemoHost 3.1"_s;
    }

    void commandLine()
    {
        QFETCH(QString, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, expected);

        const QStringList args = arguments.split(u' ', Qt::SkipEmptyParts);
        const DemoOptions options = ParseDemoOptions(QStringList{u"/usr/bin/kvdemohost"_s} + args);
        // Help and version are asked for before the application is made, by the same rules.
        QCOMPARE(AsksForInformationOnly(QStringList{u"kvdemohost"_s} + args), exitCode == 0);
        QVERIFY(!AsksForInformationOnly({args.value(0)})); // the program path itself is not an argument
        QCOMPARE(options.exitNow, exitCode >= 0);
        if (exitCode < 0) {
            QCOMPARE(u"extra=%1 shot=%2 count=%3"_s.arg(options.extraObjects).arg(options.screenshotFile)
                         .arg(int(options.countObjects)),
                     expected);
            return;
        }
        QCOMPARE(options.exitCode, exitCode);
        QVERIFY2(options.message.contains(expected), qPrintable(options.message));
        if (exitCode != 0) {
            // An error names the program and points to the help.
            QVERIFY(options.message.startsWith(u"kvdemohost: "_s));
            QVERIFY(options.message.contains(u"--help"_s));
        }
    }

    // What --count-objects counts: every object reachable from the application object and
    // the top-level widgets; and what --extra-objects adds to it.
    void extraAndReachableObjects()
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
        // The extra objects and their root below the application object; a parentless plain
        // object is not reachable.
        const std::unique_ptr<QObject> root = CreateExtraObjects(qApp, 111);
        QObject unreachable;
        new QObject(&unreachable);

        const ObjectCount after = CountReachableObjects();
        QCOMPARE(after.objects - before.objects, 1 + 3 + 1 + 2 + 1 + 111);
        QCOMPARE(after.topLevelWidgets - before.topLevelWidgets, 2);

        // A tree of the given fan-out, each level full before the next: 10 + 100 + 1.
        QCOMPARE(root->objectName(), u"ExtraObjects"_s);
        QCOMPARE(root->children().size(), ExtraObjectsFanOut);
        QSet<QString> names;
        int deepest = 0;
        for (const QObject *object : root->findChildren<QObject *>()) {
            names.insert(object->objectName());
            QVERIFY(object->children().size() <= ExtraObjectsFanOut);
            int depth = 0;
            for (const QObject *up = object; up != root.get(); up = up->parent())
                ++depth;
            deepest = std::max(deepest, depth);
        }
        QCOMPARE(deepest, 3);
        QCOMPARE(names.size(), 111);
        QVERIFY(names.contains(u"ExtraObject111"_s));
        QVERIFY(!CreateExtraObjects(qApp, 0));
    }

    // Components are named as a designer names them: uniquely among those of their owner (a
    // form, a dialog, the data module, the application), ignoring case. Qt's own inner objects
    // ("qt_…" or unnamed) are left out. Every form and dialog has a title.
    void formsAreNamedAsADesignerWould()
    {
        DemoWorkspace workspace;
        QList<QObject *> objects = qApp->findChildren<QObject *>();
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (!window->parent())
                objects += QList<QObject *>{window} + window->findChildren<QObject *>();
            if (kv::IsRoot(window) && !window->objectName().isEmpty())
                QVERIFY2(!window->windowTitle().isEmpty(), qPrintable(window->objectName()));
        }
        QHash<const QObject *, QSet<QString>> names;
        QStringList duplicates;
        for (const QObject *object : std::as_const(objects)) {
            const QString name = object->objectName().toLower();
            if (name.isEmpty() || name.startsWith(u"qt_"_s))
                continue;
            QSet<QString> &used = names[kv::GetOwner(object)];
            if (used.contains(name))
                duplicates.append(object->objectName());
            used.insert(name);
        }
        QVERIFY2(duplicates.isEmpty(), qPrintable(duplicates.join(u", "_s)));
        QVERIFY(names.size() >= 1 + 7 + 1); // the application, the forms and dialog, the data module

        // The data module: non-visual objects below the application object.
        QCOMPARE(workspace.dataModule()->parent(), qApp);
        QVERIFY(kv::Screen().IsDataModule(workspace.dataModule()));
    }

    void objectsDeletedWhileRunning()
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
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
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

    void screenshotShowsOpenMenuAndIsWrittenSafely()
    {
        DemoWorkspace workspace;
        DemoMainWindow *window = workspace.mainWindow();
        // Add-ins find the Tools menu by its name and go just ahead of its last item.
        QCOMPARE(window->toolsMenu()->objectName(), u"ToolsMenu"_s);
        QCOMPARE(window->toolsMenu()->actions().last()->objectName(), u"ToolsCustomizeItem"_s);
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

        // Written as PNG whatever the extension; failed writes name the file and leave an
        // earlier picture as it was.
        QTemporaryDir dir;
        const QString fileName = dir.filePath(u"shot.jpg"_s);
        QVERIFY2(SavePng(picture, fileName, &errorText), qPrintable(errorText));
        QCOMPARE(QImageReader(fileName).format(), QByteArray("png"));
        QVERIFY(!SavePng(QImage(), fileName, &errorText));
        QVERIFY(errorText.contains(fileName));
        QCOMPARE(QImageReader(fileName).size(), picture.size());
        const QString inMissingFolder = dir.filePath(u"missing/shot.png"_s);
        QVERIFY(!SavePng(picture, inMissingFolder, &errorText));
        QVERIFY2(errorText.contains(inMissingFolder), qPrintable(errorText));

        // A menu of another window is refused.
        QMenu stray(u"&Stray"_s);
        QVERIFY(GrabWithOpenMenu(window, &stray, &errorText).isNull());
        QVERIFY(errorText.contains(u"Stray"_s));
    }

    // The design-time framework on a real program: every property and event of every object
    // of the demo's windows and data module is read through the editors, with its value list and
    // its sub-properties, and written back with its own text; nothing may change.
    void everyObjectThroughThePropertyEditors()
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

        // A walk reads the text of every editor and of its sub-properties, one level down, by
        // path; the first also reads the value lists, another writes every value back.
        enum TPass { ReadWithLists, Read, WriteBack };
        qsizetype listed = 0;
        using TTexts = QMap<QString, QString>;
        auto walk = [&](TPass pass) {
            TTexts texts;
            std::function<void(kv::TPropertyEditor &, const QString &, int)> visit;
            visit = [&](kv::TPropertyEditor &editor, const QString &prefix, int depth) {
                const QString path = prefix + u'.' + editor.GetName();
                const QString text = editor.GetValue();
                texts.insert(path, text);
                if (pass == ReadWithLists && (editor.GetAttributes() & kv::paValueList))
                    editor.GetValues([&](const QString &) { ++listed; });
                if (pass == WriteBack && editor.ValueAvailable() && !(editor.GetAttributes() & kv::paReadOnly))
                    editor.SetValue(text);
                if (depth < 1 && (editor.GetAttributes() & kv::paSubProperties))
                    editor.GetProperties([&](auto sub) { visit(*sub, path, depth + 1); });
            };
            for (QObject *object : std::as_const(objects)) {
                kv::TFDesigner designer;
                designer.SetOwnerControl(kv::IsRoot(object) ? object : kv::GetOwner(object));
                const QString prefix = QString::fromLatin1(object->metaObject()->className()) + u':' + object->objectName()
                                       + u':' + QString::number(quintptr(object), 16);
                kv::GetComponentProperties({object}, kv::TTypeKinds::Any(), &designer,
                                           [&](auto editor) { visit(*editor, prefix, 0); });
            }
            return texts;
        };

        const TTexts before = walk(ReadWithLists);
        QVERIFY(listed > 10000);
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
};

QTEST_MAIN(tst_DemoHost)
#include "tst_demohost.moc"
