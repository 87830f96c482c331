#include "foundation/ideCommon_controls.h"
#include "foundation/ideSystem_inotifier.h"
#include "foundation/ideSystem_objparams.h"

#include <QAction>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

using namespace kv;
using namespace Qt::StringLiterals;

namespace {

// Records what its keys did and what it was asked to insert.
class TKeyedControl : public TKVCustomControl
{
    Q_OBJECT
public:
    using TKVCustomControl::TKVCustomControl;
    QStringList Log;

protected:
    void DefaultKeyMapping() override
    {
        Keys().AddSimpleKey(Qt::Key_Return, {}, [this] { Log << QStringLiteral("return"); });
        Keys().AddSimpleKey(Qt::Key_Tab, {}, [this] { Log << QStringLiteral("tab"); });
        Keys().AddKey(Qt::Key_K, Qt::ControlModifier, [this] { Log << QStringLiteral("prefix"); }, 0, 5);
        Keys().AddKey(Qt::Key_B, {}, [this] { Log << QStringLiteral("K B"); }, 5, 0);
        Keys().AddSimpleKey(Qt::Key_A, {}, [this] { Log << QStringLiteral("a bound"); });
    }
    bool InsertChar(QChar Char) override
    {
        Log << QStringLiteral("insert ") + Char;
        return true;
    }
};

void BriefMapping(QObject *Control)
{
    static_cast<TKeyedControl *>(Control)->Keys().AddSimpleKey(Qt::Key_F1, {}, [Control] {
        static_cast<TKeyedControl *>(Control)->Log << QStringLiteral("brief F1");
    });
}

class TRecorder : public INotifier
{
public:
    QList<quint32> Got;
    std::function<void(TMessage &)> During;
    void Dispatch(TMessage &Message) override
    {
        Got << Message.Msg;
        if (During)
            During(Message);
    }
};

} // namespace

class tst_Controls : public QObject
{
    Q_OBJECT

    // A dialog with a default button, the control and an edit after it, shown and active.
    struct TFixture
    {
        QDialog Dialog;
        TKeyedControl *Control = new TKeyedControl(&Dialog);
        QLineEdit *After = new QLineEdit(&Dialog);
        QPushButton *Ok = new QPushButton(QStringLiteral("OK"), &Dialog);
        int Accepted = 0;
        TFixture()
        {
            auto *layout = new QVBoxLayout(&Dialog);
            layout->addWidget(Control);
            layout->addWidget(After);
            layout->addWidget(Ok);
            Ok->setDefault(true);
            QObject::connect(Ok, &QPushButton::clicked, [this] { ++Accepted; });
            Control->UpdateKeyMapping();
            Dialog.show();
            Dialog.activateWindow();
            Control->setFocus();
        }
    };

private Q_SLOTS:
    void cleanup() { FinalizeObjectParamList(); }

    void keysReachTheControlOrTheDialog_data()
    {
        QTest::addColumn<bool>("wantReturns");
        QTest::addColumn<bool>("wantTabs");
        QTest::addColumn<QList<QKeyCombination>>("keys");
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<int>("accepted");
        QTest::addColumn<bool>("focusLeft");
        const QKeyCombination ret(Qt::Key_Return), ctrlRet(Qt::ControlModifier, Qt::Key_Return);
        const QKeyCombination tab(Qt::Key_Tab), ctrlK(Qt::ControlModifier, Qt::Key_K);
        QTest::newRow("Enter is the control's") << true << false << QList{ret} << QStringList{u"return"_s} << 0 << false;
        QTest::newRow("Enter left to the dialog") << false << false << QList{ret} << QStringList{} << 1 << false;
        QTest::newRow("Ctrl+Enter without modifiers")
            << false << false << QList{ctrlRet} << QStringList{u"return"_s} << 0 << false;
        QTest::newRow("Tab moves on") << true << false << QList{tab} << QStringList{} << 0 << true;
        QTest::newRow("Tab is the control's") << true << true << QList{tab} << QStringList{u"tab"_s} << 0 << false;
        QTest::newRow("prefix, then its key")
            << true << false << QList{ctrlK, QKeyCombination(Qt::Key_B)} << QStringList{u"prefix"_s, u"K B"_s} << 0 << false;
        QTest::newRow("prefix, then nothing bound, then the key alone")
            << true << false << QList{ctrlK, QKeyCombination(Qt::Key_C), QKeyCombination(Qt::Key_B)}
            << QStringList{u"prefix"_s, u"insert c"_s, u"insert b"_s} << 0 << false;
        QTest::newRow("a bound key inserts nothing")
            << true << false << QList{QKeyCombination(Qt::Key_A)} << QStringList{u"a bound"_s} << 0 << false;
    }
    void keysReachTheControlOrTheDialog()
    {
        QFETCH(bool, wantReturns);
        QFETCH(bool, wantTabs);
        QFETCH(QList<QKeyCombination>, keys);
        TFixture f;
        f.Control->SetWantReturns(wantReturns);
        f.Control->SetWantTabs(wantTabs);
        QVERIFY(QTest::qWaitForWindowActive(&f.Dialog));
        for (const QKeyCombination key : keys)
            QTest::keyClick(f.Control, key.key(), key.keyboardModifiers());
        QTEST(f.Control->Log, "log");
        QTEST(f.Accepted, "accepted");
        QTEST(f.After->hasFocus(), "focusLeft");
    }

    // A key the control binds is not the host's shortcut while the control has the focus.
    void boundKeysBeatShortcuts()
    {
        TFixture f;
        int fired = 0;
        auto *action = new QAction(&f.Dialog);
        action->setShortcut(QKeySequence(Qt::ControlModifier | Qt::Key_K));
        f.Dialog.addAction(action);
        connect(action, &QAction::triggered, [&] { ++fired; });
        QVERIFY(QTest::qWaitForWindowActive(&f.Dialog));
        QTest::keyClick(f.Control, Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(fired, 0);
        f.After->setFocus();
        QTest::keyClick(f.After, Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(fired, 1);
    }

    void mappingsByName()
    {
        RegisterKeyboardInitProc(&TKVCustomControl::staticMetaObject, QStringLiteral("Brief"), BriefMapping);
        TKeyedControl control;
        control.SetKeyMapping(QStringLiteral("brief"));
        QCOMPARE(control.Keys().Count(), 1); // the registered mapping, not the default one
        control.SetKeyMapping(QStringLiteral("Epsilon"));
        QCOMPARE(control.Keys().Count(), 5);
        QCOMPARE(control.KeyMapping(), QStringLiteral("Epsilon"));
    }

    void postedMessagesComeAfterTheHandler()
    {
        TRecorder owner;
        auto handle = std::make_unique<TKVHandleObject>(&owner);
        owner.During = [&](TMessage &Message) {
            if (Message.Msg == 1) {
                handle->PostMsg(2);
                QCOMPARE(owner.Got, QList<quint32>{1}); // not delivered inside the handler
            }
        };
        handle->PostMsg(1);
        QVERIFY(owner.Got.isEmpty());
        QTRY_COMPARE(owner.Got, (QList<quint32>{1, 2}));
        // Messages still queued when the object goes are dropped.
        handle->PostMsg(3);
        handle.reset();
        QCoreApplication::processEvents();
        QCOMPARE(owner.Got.size(), 2);
    }

    void ctrlTabMovesBetweenTabs()
    {
        TKVTabControl tabs;
        auto *editor = new QLineEdit;
        auto *page = new QWidget;
        (new QVBoxLayout(page))->addWidget(editor); // added after the page joined below
        tabs.addTab(page, QStringLiteral("one"));
        tabs.addTab(new QLineEdit, QStringLiteral("two"));
        tabs.addTab(new QLineEdit, QStringLiteral("three"));
        tabs.show();
        QVERIFY(QTest::qWaitForWindowActive(&tabs));
        editor->setFocus();
        QTest::keyClick(editor, Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(tabs.currentIndex(), 1);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(tabs.currentIndex(), 0);
        QCOMPARE(tabs.property("Version").toString(), QStringLiteral("3.1"));
    }
};

QTEST_MAIN(tst_Controls)
#include "tst_controls.moc"
