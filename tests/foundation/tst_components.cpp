#include "foundation/ideCommon_forms.h"
#include "foundation/ideCommon_menus.h"
#include "foundation/ideCommon_optionforms.h"
#include "foundation/ideLib_graphics.h"
#include "foundation/ideSystem_components.h"
#include "foundation/ideSystem_messageanswer.h"
#include "foundation/ideSystem_messages.h"
#include "platform/kvClasses.h"
#include "platform/kvComponentState.h"
#include "platform/kvDataModule.h"
#include "platform/kvException.h"
#include "platform/kvScreen.h"

#include <QAction>
#include <QApplication>
#include <QFontDatabase>
#include <QImage>
#include <QMainWindow>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include "tests/testsupport.h"
#include <QToolButton>

#include <memory>

using namespace kv;
using kv::test::ErrorOf;
using kv::test::Make;
using kv::test::NamedWindow;
using namespace Qt::StringLiterals;

namespace {

class TInvokableForm : public QWidget
{
    Q_OBJECT
public:
    Q_INVOKABLE explicit TInvokableForm(QWidget *parent = nullptr) : QWidget(parent) {}
};

class TOrdersModule : public TDataModule
{
    Q_OBJECT
public:
    Q_INVOKABLE explicit TOrdersModule(QObject *parent = nullptr) : TDataModule(parent) {}
};

// A collection item that names itself after its collection.
class TColumnItem : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    Q_INVOKABLE QString GetNamePath() const { return u"Columns[2]"_s; }
};

class TListener : public TMessageAnswer
{
public:
    void Dispatch(TMessage &Message) override
    {
        received.append(Message.Msg);
        if (Message.Msg == CM_SHOWINSPECTOR)
            focus.append(DecodeShowInspector(Message));
        if (Message.Msg == CM_EDITSTRINGSPROPERTY) {
            const TEditStringsPropertyData data = DecodeEditStringsProperty(Message);
            edited = data.PropName.toString() + u'@' + data.Component->objectName();
        }
    }
    QList<quint32> received;
    QList<bool> focus;
    QString edited;
};

// An editor that takes messages, as the button edits do.
class TEditor : public QWidget, public INotifier
{
public:
    using QWidget::QWidget;
    void Dispatch(TMessage &Message) override
    {
        if (Message.Msg == CM_POSTVALUE)
            ++posted;
        if (victim)
            delete victim.data();
    }
    int posted = 0;
    QPointer<QWidget> victim;
};

QString MenuPattern(const QMenu &menu)
{
    QString pattern;
    for (QAction *action : menu.actions())
        pattern += IsMenuSeparator(action) ? u"-"_s : action->text();
    return pattern;
}

} // namespace

class tst_Components : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void componentNames()
    {
        auto form = NamedWindow(u"Form1"_s);
        Make<QAction>(form.get(), u"N1"_s);
        Make<QAction>(form.get(), u"n2"_s);
        Make<QAction>(form.get(), u"N4"_s);
        QCOMPARE(UniqueName(form.get(), u"N"_s), u"N3"_s);
        QCOMPARE(UniqueName(nullptr, u"Base"_s), u"Base1"_s);
        // The owners above count too: the application owns the form named Form1.
        QCOMPARE(UniqueName(form.get(), u"Form"_s), u"Form2"_s);
        QVERIFY(!NameIsUnique(form.get(), u"FORM1"_s));
        QVERIFY(!NameIsUnique(form.get(), u"n4"_s));
        QVERIFY(NameIsUnique(form.get(), u"N6"_s));
        QVERIFY(NameIsUnique(nullptr, u"N1"_s));
        // Within a nested root its own owner chain is searched; the form does not see into it.
        auto *dialog = Make<QWidget>(form.get(), u"Dialog"_s);
        dialog->setWindowFlags(Qt::Dialog);
        Make<QAction>(dialog, u"N3"_s);
        QCOMPARE(UniqueName(dialog, u"N"_s), u"N5"_s);
        QCOMPARE(UniqueName(form.get(), u"N"_s), u"N3"_s);

        QPushButton *ok = Make<QPushButton>(form.get(), u"OkButton"_s);
        QCOMPARE(BuildCompName(ok), u"OkButton: QPushButton"_s);
        QCOMPARE(BuildCompName(ok, u"Other"_s), u"Other: QPushButton"_s);
        QPushButton unnamed;
        QCOMPARE(BuildCompName(&unnamed), QString());
        QCOMPARE(BuildCompName(nullptr, u"X"_s), QString());
        TColumnItem column;
        QCOMPARE(GetCompName(&column), u"Columns[2]"_s);
        QCOMPARE(BuildCompName(&column), u"Columns[2]: TColumnItem"_s);
        QCOMPARE(GetCompName(nullptr), QString());

        BuildCompNameFunc = [](const QObject *, const QString &name) -> QString { return u"custom "_s + name; };
        QCOMPARE(BuildCompName(nullptr, u"X"_s), u"custom X"_s);
        BuildCompNameFunc = nullptr;

        Make<QPushButton>(form.get(), u"CancelButton"_s);
        Make<QAction>(form.get(), u"Action1"_s);
        TDataModule module;
        module.setObjectName(u"Data"_s);
        Make<QAction>(&module, u"Strange"_s);
        QStringList names;
        const TStrProc collect = [&names](const QString &s) { names.append(s); };
        CompNamesToProc(form.get(), form.get(), &QPushButton::staticMetaObject, collect);
        QCOMPARE(names, (QStringList{u"OkButton"_s, u"CancelButton"_s}));
        names.clear();
        CompNamesToProc(&module, form.get(), nullptr, collect);
        QCOMPARE(names, QStringList{u"Data.Strange"_s});
        names.clear();
        CompListNamesToProc({ok, module.findChild<QObject *>(u"Strange"_s), &unnamed, nullptr}, form.get(), collect);
        QCOMPARE(names, (QStringList{u"OkButton"_s, u"Data.Strange"_s}));
    }

    void globalNamesAndOwners()
    {
        auto main = NamedWindow(u"MainForm"_s);
        auto copy = NamedWindow(u"MainForm_1"_s);
        QPushButton *ok = Make<QPushButton>(Make<QWidget>(main.get(), u"Panel"_s), u"OkButton"_s);
        TDataModule module;
        module.setObjectName(u"Data"_s);
        QObject *table = Make<QObject>(&module, u"Table1"_s);
        // A form and a data module of the same name: forms are searched first.
        TDataModule twin;
        twin.setObjectName(u"MainForm"_s);
        Make<QObject>(&twin, u"OkButton"_s);

        QCOMPARE(FindGlobalComponent(u"mainform"_s), main.get());
        QCOMPARE(FindGlobalComponent(u"data"_s), &module);
        QCOMPARE(FindGlobalComponent(QString()), nullptr);
        QCOMPARE(FindUniqueName(u"MainForm"_s), u"MainForm_2"_s);
        QCOMPARE(FindUniqueName(u"Data"_s), u"Data_1"_s);
        QCOMPARE(FindUniqueName(u"Fresh"_s), u"Fresh"_s);

        QCOMPARE(GlobalFindObject(u"mainform"_s), main.get());
        QCOMPARE(GlobalFindObject(u"MainForm.okbutton"_s), ok);
        QCOMPARE(GlobalFindObject(u"Data.Table1"_s), table);
        QCOMPARE(GlobalFindObject(u"data"_s), &module);
        QCOMPARE(GlobalFindObject(u"Data.Nope"_s), nullptr);
        QCOMPARE(GlobalFindObject(u"Nope.Table1"_s), nullptr);
        QCOMPARE(GlobalFindObject(u"MainForm.Panel.OkButton"_s), nullptr);
        QCOMPARE(GlobalFindObject(QString()), nullptr);

        auto form = NamedWindow(u"Form1"_s);
        QWidget *panel = Make<QWidget>(form.get(), u"Panel1"_s);
        QPushButton *button = Make<QPushButton>(panel, u"Button1"_s);
        QMenu *menu = Make<QMenu>(form.get(), u"PopupMenu1"_s);
        QAction *action = Make<QAction>(menu, u"Action1"_s);
        auto *dialog = Make<QWidget>(form.get(), u"Dialog1"_s);
        dialog->setWindowFlags(Qt::Dialog);
        QWidget *inDialog = Make<QWidget>(dialog, u"Edit1"_s);
        QObject *connection = Make<QObject>(Make<QObject>(&module, u"Connection"_s), u"Link1"_s);
        auto *moduleInForm = new TDataModule(panel);
        QObject *timer = Make<QObject>(moduleInForm, u"Timer1"_s);

        QCOMPARE(GetPForm(button), form.get());
        QCOMPARE(GetPForm(form.get()), form.get());
        QCOMPARE(GetPForm(action), form.get());
        QCOMPARE(GetPForm(menu), form.get());
        QCOMPARE(GetPForm(inDialog), dialog);
        QCOMPARE(GetPForm(connection), nullptr);
        QCOMPARE(GetPForm(timer), form.get());
        QCOMPARE(GetPForm(nullptr), nullptr);

        QCOMPARE(GetTopOwner(connection), &module);
        QCOMPARE(GetTopOwner(&module), &module);
        QCOMPARE(GetTopOwner(timer), moduleInForm);
        QCOMPARE(GetTopOwner(button), form.get());
        QCOMPARE(GetTopOwner(nullptr), nullptr);
        QObject loose;
        QCOMPARE(GetTopOwner(&loose), nullptr);

        QCOMPARE(ScreenFormCount(), Screen().FormList().size());
        QCOMPARE(ScreenForms(1), Screen().FormList().at(1));
    }

    void createByClass()
    {
        // A registered class is made by its factory, which builds the form's contents.
        RegisterClass(&QTabWidget::staticMetaObject, [](QObject *) -> QObject * {
            auto *form = new QTabWidget;
            form->setObjectName(u"FromFactory"_s);
            return form;
        });
        std::unique_ptr<QWidget> made(CreateFormWithClass(&QTabWidget::staticMetaObject));
        QCOMPARE(made->objectName(), u"FromFactory"_s);
        UnRegisterClass(&QTabWidget::staticMetaObject);

        std::unique_ptr<QWidget> invokable(CreateFormWithClass(&TInvokableForm::staticMetaObject));
        QVERIFY(qobject_cast<TInvokableForm *>(invokable.get()));
        QCOMPARE(FindFormWithClass(&TInvokableForm::staticMetaObject), invokable.get());
        QCOMPARE(FindOrCreateFormWithClass(&TInvokableForm::staticMetaObject), invokable.get());
        QCOMPARE(FindFormWithClass(&QMainWindow::staticMetaObject), nullptr);

        std::unique_ptr<QWidget> plain(CreateFormWithClass(&QObject::staticMetaObject));
        QCOMPARE(plain->metaObject(), &QWidget::staticMetaObject);
        std::unique_ptr<QWidget> none(CreateFormWithClass(nullptr));
        QCOMPARE(none->metaObject(), &QWidget::staticMetaObject);
        // Neither registered nor with an invokable constructor.
        QVERIFY(ErrorOf([] { CreateFormWithClass(&QPushButton::staticMetaObject); }).contains(u"QPushButton"_s));

        std::unique_ptr<QObject> orders(CreateDataModuleWithClass(&TOrdersModule::staticMetaObject));
        QVERIFY(qobject_cast<TOrdersModule *>(orders.get()));
        QVERIFY(Screen().IsDataModule(orders.get()));
        QCOMPARE(orders->parent(), nullptr);
        std::unique_ptr<QObject> module(CreateDataModuleWithClass(&QWidget::staticMetaObject));
        QCOMPARE(module->metaObject(), &TDataModule::staticMetaObject);
    }

    void formFontAndFlatButtons()
    {
        auto form = NamedWindow(u"Form"_s);
        SetFormFont(form.get());
        QCOMPARE(form->testAttribute(Qt::WA_SetFont), false);

        QMainWindow main;
        QFont big(u"DejaVu Serif"_s, 17);
        main.setFont(big);
        auto own = NamedWindow(u"Own"_s);
        QFont mine(u"DejaVu Sans Mono"_s, 9);
        own->setFont(mine);

        UseOneFont = false;
        SetFormFont(form.get());
        QVERIFY(form->font() != big);
        UseOneFont = true;
        SetFormFont(form.get());
        QCOMPARE(form->font(), big);
        SetFormFont(own.get());
        QCOMPARE(own->font(), mine);
        SetFormFont(&main);
        QCOMPARE(main.font(), big);
        SetFormFont(nullptr);

        auto *a = Make<QToolButton>(Make<QWidget>(form.get(), u"Bar"_s), u"A"_s);
        auto *b = Make<QToolButton>(form.get(), u"B"_s);
        auto *c = Make<QToolButton>(own.get(), u"C"_s);
        SetFlatPropToAll(form.get(), true);
        QVERIFY(a->autoRaise());
        QVERIFY(b->autoRaise());
        QVERIFY(!c->autoRaise());
        SetFlatProp({a, nullptr}, false);
        QVERIFY(!a->autoRaise());
    }

    void tabPages()
    {
        QTabWidget tabs;
        for (int i = 0; i < 5; ++i)
            tabs.addTab(new QWidget, QString::number(i));
        tabs.setTabEnabled(1, false);
        tabs.setTabVisible(3, false);
        // From, forward, to: over the disabled tab 1 and the hidden tab 3, wrapping at both ends.
        const std::tuple<int, bool, int> moves[] = {{0, true, 2}, {2, true, 4}, {4, true, 0},
                                                    {0, false, 4}, {4, false, 2}};
        for (const auto &[current, forward, expected] : moves) {
            tabs.setCurrentIndex(current);
            QVERIFY(ChangeTab(&tabs, forward));
            QCOMPARE(tabs.currentIndex(), expected);
            tabs.tabBar()->setCurrentIndex(current);
            QVERIFY(ChangeTab(tabs.tabBar(), forward));
            QCOMPARE(tabs.tabBar()->currentIndex(), expected);
        }

        QTabWidget single;
        single.addTab(new QWidget, u"only"_s);
        QVERIFY(!ChangeTab(&single, true));
        QVERIFY(!ChangeTab(static_cast<QTabWidget *>(nullptr), false));

        auto form = NamedWindow(u"Form"_s);
        auto *source = Make<QTabWidget>(form.get(), u"Source"_s);
        auto *dest = Make<QTabWidget>(form.get(), u"Dest"_s);
        QWidget *existing = AddNewTab(dest, u"Existing"_s);
        QCOMPARE(existing->objectName(), u"TabSheet1"_s);
        QWidget *first = AddNewTab(source, u"First"_s);
        QWidget *second = AddNewTab(source, u"Second"_s);
        QCOMPARE(second->objectName(), u"TabSheet3"_s);
        QCOMPARE(source->currentWidget(), second);
        source->setTabToolTip(1, u"tip"_s);
        source->setTabEnabled(0, false);

        MovePages(source, dest);
        QCOMPARE(dest->count(), 3);
        QCOMPARE(dest->widget(0), existing);
        QCOMPARE(dest->widget(1), first);
        QCOMPARE(dest->widget(2), second);
        QCOMPARE(dest->tabText(1), u"First"_s);
        QCOMPARE(dest->tabToolTip(2), u"tip"_s);
        QVERIFY(!dest->isTabEnabled(1));
    }

    void menuSeparators_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");

        QTest::newRow("ends and doubles") << "--a--b-c--" << "a-b-c";
        QTest::newRow("run of three") << "a---b" << "a-b";
        QTest::newRow("only separators") << "---" << "";
        QTest::newRow("nothing to do") << "a-b" << "a-b";
    }

    void menuSeparators()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QMenu menu;
        QList<QPointer<QAction>> separators;
        bool real = true;
        for (QChar c : before) {
            if (c != u'-') {
                menu.addAction(QString(c));
                continue;
            }
            // Both kinds of separator: Qt's own and an item captioned "-".
            separators.append(real ? menu.addSeparator() : menu.addAction(u"-"_s));
            real = !real;
        }
        RemoveExtraMenuSeparators(&menu);
        QCOMPARE(MenuPattern(menu), after);
        const qsizetype alive = std::count_if(separators.cbegin(), separators.cend(), [](const QPointer<QAction> &p) { return !p.isNull(); });
        QCOMPARE(alive, after.count(u'-'));

        QMenu bar;
        QMenu *sub = bar.addMenu(u"Sub"_s);
        sub->addSeparator();
        sub->addAction(u"x"_s);
        RemoveExtraMenuSeparators(sub->menuAction());
        QCOMPARE(MenuPattern(*sub), u"x"_s);
        RemoveExtraMenuSeparators(static_cast<QAction *>(nullptr));
    }

    void clearMenuSubItems()
    {
        QMenu bar;
        QMenu *file = bar.addMenu(u"File"_s);
        QPointer<QAction> open = file->addAction(u"Open"_s);
        QMenu *recent = file->addMenu(u"Recent"_s);
        QPointer<QMenu> recentGuard(recent);
        QPointer<QAction> recentItem = recent->addAction(u"a.txt"_s);
        QPointer<QAction> separator = file->addSeparator();
        QMenu elsewhere;
        QAction *shared = file->addAction(u"Shared"_s);
        elsewhere.addAction(shared);

        QAction *item = file->menuAction();
        ClearMenuSubItems(item, true);
        QVERIFY(file->actions().isEmpty());
        QVERIFY(!open);
        QVERIFY(!recentGuard);
        QVERIFY(!recentItem);
        QVERIFY(!separator);
        QCOMPARE(elsewhere.actions(), QList<QAction *>{shared});
        QVERIFY(!item->isEnabled());
        ClearMenuSubItems(item, false);
        QVERIFY(item->isEnabled());

        file->addAction(u"Again"_s);
        ClearMenuSubItems(file, true);
        QVERIFY(file->actions().isEmpty());
        QVERIFY(!file->menuAction()->isEnabled());
        ClearMenuSubItems(static_cast<QAction *>(nullptr), true);
        ClearMenuSubItems(static_cast<QMenu *>(nullptr), true);

        // A separator that another menu shows too is taken out but not deleted.
        QMenu menu;
        QAction *sharedSeparator = menu.addSeparator();
        elsewhere.addAction(sharedSeparator);
        menu.addAction(u"a"_s);
        RemoveExtraMenuSeparators(&menu);
        QCOMPARE(MenuPattern(menu), u"a"_s);
        QCOMPARE(elsewhere.actions(), (QList<QAction *>{shared, sharedSeparator}));
    }

    void optionForms()
    {
        const QMetaObject *a = &QWidget::staticMetaObject;
        const QMetaObject *b = &QMainWindow::staticMetaObject;
        const QMetaObject *c = &QTabWidget::staticMetaObject;
        const QMetaObject *d = &QMenu::staticMetaObject;
        const QMetaObject *e = &QToolButton::staticMetaObject;
        RegisterOptionsFormOrder(a, 10);
        RegisterOptionsForm(b);
        RegisterOptionsFormOrder(c, 100);
        RegisterOptionsFormOrder(d, 10);
        RegisterOptionsForm(e);

        const auto order = [] {
            QList<const QMetaObject *> classes;
            for (const TOptionFormClass &item : OptionFormClasses())
                classes.append(item.Class);
            return classes;
        };
        QCOMPARE(order(), (QList<const QMetaObject *>{b, e, a, d, c}));
        QCOMPARE(OptionFormClasses().first().Key, u"   -1"_s);
        QCOMPARE(OptionFormClasses().last().Key, u"  100"_s);

        // Keys sort as text: a one-digit order comes before the right-aligned "-1".
        RegisterOptionsFormOrder(a, 5);
        QCOMPARE(order(), (QList<const QMetaObject *>{a, b, e, d, c}));
        UnregisterOptionsForm(e);
        UnregisterOptionsForm(e);
        QCOMPARE(order(), (QList<const QMetaObject *>{a, b, d, c}));
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterOptionsForm(nullptr));
        for (const QMetaObject *cls : {a, b, c, d})
            UnregisterOptionsForm(cls);
        QVERIFY(OptionFormClasses().isEmpty());
    }

    void messages()
    {
        TListener listener;
        ShowInspector();
        ShowInspectorEx(false);
        HideInspector();
        ToggleInspector();
        QObject component;
        component.setObjectName(u"Memo1"_s);
        EditStringsProperty(&component, u"Lines"_s);

        const QList<quint32> sent{CM_SHOWINSPECTOR, CM_SHOWINSPECTOR, CM_HIDEINSPECTOR, CM_TOGGLEINSPECTOR,
                                  CM_EDITSTRINGSPROPERTY};
        QCOMPARE(listener.received, sent);
        QCOMPARE(listener.focus, (QList<bool>{true, false}));
        QCOMPARE(listener.edited, u"Lines@Memo1"_s);

        CallPropEditProc = nullptr;
        CallPropertyEdit(&component, u"Lines"_s);
        QVERIFY(!component.property("edited").isValid());
        CallPropEditProc = [](QObject *obj, const QString &propName) { obj->setProperty("edited", propName); };
        CallPropertyEdit(&component, u"SelectedColor"_s);
        QCOMPARE(component.property("edited").toString(), u"SelectedColor"_s);
        CallPropEditProc = nullptr;

        SetDesign(&component, true);
        QVERIFY(ComponentState(&component).testFlag(csDesigning));
        SetDesign(&component, false);
        QVERIFY(!ComponentState(&component).testFlag(csDesigning));

        QWidget panel;
        auto *first = new TEditor(&panel);
        auto *plain = new QWidget(&panel);
        auto *second = new TEditor(&panel);
        auto *nested = new TEditor(plain);
        new QObject(&panel);
        // The first editor deletes a sibling while it posts its value.
        auto *doomed = new TEditor(&panel);
        first->victim = doomed;
        UpdateEditors(&panel);
        QCOMPARE(first->posted, 1);
        QCOMPARE(second->posted, 1);
        QCOMPARE(nested->posted, 0);
        UpdateEditors(nullptr);
    }

    void graphics()
    {
        const QRect r(5, 6, 20, 10);
        const QRect bounds(100, 200, 100, 100);
        QCOMPARE(AlignRectByRect(r, bounds, haNone, vaNone), r);
        QCOMPARE(AlignRectByRect(r, bounds, haLeft, vaLeft), QRect(100, 200, 20, 10));
        QCOMPARE(AlignRectByRect(r, bounds, haCenter, vaCenter), QRect(140, 245, 20, 10));
        QCOMPARE(AlignRectByRect(r, bounds, haRight, vaRight), QRect(180, 290, 20, 10));
        QCOMPARE(AlignRectByRect(r, bounds, haRight, vaNone), QRect(180, 6, 20, 10));

        QCOMPARE(CorrectRectByRect(QRect(190, 250, 20, 10), bounds), QRect(180, 250, 20, 10));
        QCOMPARE(CorrectRectByRect(QRect(50, 150, 20, 10), bounds), QRect(100, 200, 20, 10));
        QCOMPARE(CorrectRectByRect(QRect(150, 295, 20, 10), bounds), QRect(150, 290, 20, 10));
        // Larger than the bounds: the left and top edges win.
        QCOMPARE(CorrectRectByRect(QRect(0, 0, 300, 300), bounds), QRect(100, 200, 300, 300));

        QImage source(2, 2, QImage::Format_RGB32);
        source.fill(Qt::blue);
        source.setPixelColor(0, 1, Qt::red); // left bottom: the transparent colour
        source.setPixelColor(1, 0, Qt::red);
        QCOMPARE(GetTransparentColor(source, QRect(0, 0, 2, 2)), QColor(Qt::red));
        QVERIFY(!GetTransparentColor(source, QRect(0, 5, 2, 2)).isValid());

        QImage target(4, 2, QImage::Format_RGB32);
        target.fill(Qt::white);
        {
            QPainter painter(&target);
            TransparentBitBltEx(painter, QPoint(2, 0), QPixmap::fromImage(source), QRect(0, 0, 2, 2));
            TransparentBitBlt(painter, QPoint(0, 0), QPixmap::fromImage(source), QRect(0, 0, 2, 2), QColor(Qt::blue));
        }
        QCOMPARE(target.pixelColor(2, 0), QColor(Qt::blue));
        QCOMPARE(target.pixelColor(3, 0), QColor(Qt::white));
        QCOMPARE(target.pixelColor(2, 1), QColor(Qt::white));
        QCOMPARE(target.pixelColor(0, 0), QColor(Qt::white));
        QCOMPARE(target.pixelColor(1, 0), QColor(Qt::red));

        QImage filled(10, 10, QImage::Format_RGB32);
        filled.fill(Qt::white);
        {
            QPainter painter(&filled);
            DrawTextWithFill(painter, QRect(0, 0, 10, 5), QString(), Qt::AlignLeft, QColor(Qt::green));
        }
        QCOMPARE(filled.pixelColor(9, 4), QColor(Qt::green));
        QCOMPARE(filled.pixelColor(9, 5), QColor(Qt::white));
    }

    void fonts()
    {
        if (!QFontDatabase::hasFamily(u"DejaVu Sans Mono"_s) || !QFontDatabase::hasFamily(u"DejaVu Sans"_s))
            QSKIP("the DejaVu fonts are not installed");
        QVERIFY(IsFontMonoSpaced(QFont(u"DejaVu Sans Mono"_s, 10)));
        QVERIFY(!IsFontMonoSpaced(QFont(u"DejaVu Sans"_s, 10)));
    }
};

QTEST_MAIN(tst_Components)
#include "tst_components.moc"
