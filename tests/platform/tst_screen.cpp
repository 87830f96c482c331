#include "platform/kvDataModule.h"
#include "platform/kvException.h"
#include "platform/kvScreen.h"
#include "tests/platform/editortests.h"

#include <QApplication>
#include <QDialog>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QSplashScreen>
#include <QTest>

#include "tests/testsupport.h"

#include <memory>

using namespace kv;
using kv::test::ErrorOf;
using kv::test::Make;
using kv::test::NamedWindow;
using namespace Qt::StringLiterals;

namespace {

template <class T>
QStringList NamesOf(const QList<T *> &objects)
{
    QStringList names;
    for (T *obj : objects)
        names.append(obj->objectName());
    return names;
}

QStringList FormNames()
{
    return NamesOf(Screen().FormList());
}

} // namespace

class tst_Screen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Runs first: these windows exist before anything asked the screen.
    void windowsMadeBeforeFirstUse()
    {
        auto early = NamedWindow(u"Early"_s);
        auto hidden = NamedWindow(u"HiddenEarly"_s);
        early->show();
        QStringList names = FormNames(); // in the order Qt lists them, which is no order
        names.sort();
        QCOMPARE(names, (QStringList{u"Early"_s, u"HiddenEarly"_s}));
    }

    void whatIsAForm()
    {
        QMainWindow main;
        main.setObjectName(u"Main"_s);
        Make<QMenu>(&main, u"Popup"_s);
        Make<QDialog>(&main, u"Dialog"_s);
        auto *dock = Make<QDockWidget>(&main, u"Dock"_s);
        main.addDockWidget(Qt::LeftDockWidgetArea, dock);
        dock->setFloating(true);
        auto tip = NamedWindow(u"Tip"_s);
        tip->setWindowFlags(Qt::ToolTip);
        QSplashScreen splash;
        splash.setObjectName(u"Splash"_s);
        auto tool = NamedWindow(u"Tool"_s);
        tool->setWindowFlags(Qt::Tool);

        QCOMPARE(FormNames(), (QStringList{u"Main"_s, u"Dialog"_s, u"Tool"_s}));
        QVERIFY(!TScreen::IsForm(nullptr));
    }

    void formsComeAndGo()
    {
        QSignalSpy changed(&Screen(), &TScreen::FormsChanged);
        auto first = NamedWindow(u"First"_s);
        first->show(); // seen when made and again when shown: listed once
        auto *child = Make<QWidget>(first.get(), u"Child"_s);
        QCOMPARE(FormNames(), QStringList{u"First"_s});
        QCOMPARE(changed.count(), 1);

        // A child that leaves its parent becomes a window, seen last.
        auto second = NamedWindow(u"Second"_s);
        child->setParent(nullptr);
        QCOMPARE(FormNames(), (QStringList{u"First"_s, u"Second"_s, u"Child"_s}));

        // A window embedded into another widget is no form any more.
        second->setParent(first.get());
        QCOMPARE(FormNames(), (QStringList{u"First"_s, u"Child"_s}));
        // A child turned into a window by its flags is a form once it shows.
        second->setWindowFlags(Qt::Window);
        second->show();
        QCOMPARE(FormNames(), (QStringList{u"First"_s, u"Child"_s, u"Second"_s}));

        changed.clear();
        delete child;
        QCOMPARE(changed.count(), 1);
        QCOMPARE(Screen().FormCount(), 2);
        QCOMPARE(Screen().Forms(1), second.get());
        for (int bad : {-1, 2})
            QCOMPARE(ErrorOf([&] { Screen().Forms(bad); }), u"List index out of bounds (%1)"_s.arg(bad));
        second.release(); // owned by first now
        first.reset();
        QCOMPARE(FormNames(), QStringList());
    }

    void dataModules()
    {
        QSignalSpy changed(&Screen(), &TScreen::FormsChanged);
        auto *module = Make<TDataModule, QObject>(nullptr, u"Data1"_s);
        QCOMPARE(changed.count(), 1);
        QObject foreign;
        foreign.setObjectName(u"Foreign"_s);
        Screen().RegisterDataModule(&foreign);
        Screen().RegisterDataModule(&foreign);
        Screen().RegisterDataModule(nullptr);
        QCOMPARE(NamesOf(Screen().DataModuleList()), (QStringList{u"Data1"_s, u"Foreign"_s}));
        QCOMPARE(Screen().DataModules(1), &foreign);

        delete module;
        QCOMPARE(NamesOf(Screen().DataModuleList()), QStringList{u"Foreign"_s});
        Screen().UnregisterDataModule(&foreign);
        QCOMPARE(Screen().DataModuleCount(), 0);

        // A registered foreign object that dies leaves the list too.
        auto *dying = new QObject;
        Screen().RegisterDataModule(dying);
        delete dying;
        QCOMPARE(ErrorOf([] { Screen().DataModules(0); }), u"List index out of bounds (0)"_s);
    }

    void mainForm()
    {
        auto plain = NamedWindow(u"Plain"_s);
        QCOMPARE(Screen().MainForm(), nullptr);
        auto main = std::make_unique<QMainWindow>();
        auto other = std::make_unique<QMainWindow>();
        QCOMPARE(Screen().MainForm(), main.get());
        Screen().SetMainForm(plain.get());
        QCOMPARE(Screen().MainForm(), plain.get());
        plain.reset();
        QCOMPARE(Screen().MainForm(), main.get());
        main.reset();
        QCOMPARE(Screen().MainForm(), other.get());
    }

    void activeForm()
    {
        auto window = NamedWindow(u"Active"_s);
        window->show();
        auto *dialog = new QDialog(window.get());
        dialog->show();
        dialog->activateWindow();
        if (!QTest::qWaitForWindowActive(dialog))
            QSKIP("this platform does not activate windows");
        QTRY_COMPARE(Screen().ActiveForm(), dialog);
        // A popup is no form: the form that opened it stays the active one.
        auto *popup = new QMenu(dialog);
        popup->addAction(u"Item"_s);
        popup->popup(QPoint(0, 0));
        QTRY_VERIFY(QApplication::activePopupWidget() == popup);
        QCOMPARE(Screen().ActiveForm(), dialog);
        popup->close();
    }
};

QTEST_MAIN(tst_Screen)
#include "tst_screen.moc"
