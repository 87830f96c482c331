#include "foundation/ideCommon_controls.h"
#include "foundation/ideSystem_inotifier.h"
#include "foundation/ideSystem_objparams.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QTest>

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

    void DefaultKeyMapping() override
    {
        Keys().AddSimpleKey(Qt::Key_Return, {}, [this] { Log << u"return"_s; });
        Keys().AddSimpleKey(Qt::Key_Tab, {}, [this] { Log << u"tab"_s; });
        Keys().AddKey(Qt::Key_K, Qt::ControlModifier, [this] { Log << u"prefix"_s; }, 0, 5);
        Keys().AddKey(Qt::Key_B, {}, [this] { Log << u"K B"_s; }, 5, 0);
        Keys().AddSimpleKey(Qt::Key_A, {}, [this] { Log << u"a bound"_s; });
    }
    bool InsertChar(QChar Char) override
    {
        Log << u"insert "_s + Char;
        return true;
    }
};

} // namespace

class tst_Controls : public QObject, public INotifier
{
    Q_OBJECT

    // The handler of the first message posts a second one before recording the first.
    QList<quint32> m_got;
    std::unique_ptr<TKVHandleObject> m_handle = std::make_unique<TKVHandleObject>(this);
    void Dispatch(TMessage &Message) override
    {
        if (Message.Msg == 1)
            m_handle->PostMsg(2);
        m_got << Message.Msg;
    }

private Q_SLOTS:
    void cleanup() { FinalizeObjectParamList(); }

    void keysReachTheControlOrTheDialog_data()
    {
        QTest::addColumn<bool>("wantReturns");
        QTest::addColumn<bool>("wantTabs");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("log");
        QTest::newRow("Enter and Tab wanted") << true << true << u"Return, Tab"_s << u"return, tab"_s;
        QTest::newRow("Enter left to the dialog") << false << false << u"Return"_s << u"accepted"_s;
        QTest::newRow("Ctrl+Enter without modifiers") << false << false << u"Ctrl+Return"_s << u"return"_s;
        // Ctrl+K is the host's shortcut only once the focus has left the control.
        QTest::newRow("Tab moves on") << true << false << u"Tab, Ctrl+K"_s << u"shortcut"_s;
        QTest::newRow("prefix, then its key") << true << false << u"Ctrl+K, B"_s << u"prefix, K B"_s;
        QTest::newRow("prefix, then nothing bound, then the key alone")
            << true << false << u"Ctrl+K, C, B"_s << u"prefix, insert c, insert b"_s;
        QTest::newRow("a bound key inserts nothing") << true << false << u"A"_s << u"a bound"_s;
    }
    // A dialog with the control and a default button after it, and a shortcut.
    void keysReachTheControlOrTheDialog()
    {
        QDialog dialog;
        auto *control = new TKeyedControl(&dialog);
        auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &dialog); // OK is the default button
        connect(buttons, &QDialogButtonBox::accepted, [control] { control->Log << u"accepted"_s; });
        dialog.addAction(u"Host"_s, QKeySequence(u"Ctrl+K"_s), [control] { control->Log << u"shortcut"_s; });
        QFETCH(bool, wantReturns);
        QFETCH(bool, wantTabs);
        QFETCH(QString, keys);
        control->SetWantReturns(wantReturns);
        control->SetWantTabs(wantTabs);
        control->UpdateKeyMapping();
        dialog.show();
        control->setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        for (const QString &key : keys.split(u", "_s))
            QTest::keySequence(QApplication::focusWidget(), QKeySequence(key));
        QTEST(control->Log.join(u", "), "log");
    }

    void mappingsByName()
    {
        RegisterKeyboardInitProc(&TKVCustomControl::staticMetaObject, u"Brief"_s, [](QObject *Control) {
            static_cast<TKVCustomControl *>(Control)->Keys().AddSimpleKey(Qt::Key_F1, {}, {});
        });
        TKeyedControl control;
        control.SetKeyMapping(u"brief"_s);
        QCOMPARE(control.Keys().Count(), 1); // the registered mapping, not the default one
        control.SetKeyMapping(u"Epsilon"_s);
        QCOMPARE(control.Keys().Count(), 5);
    }

    // A message posted inside the handler would come first if it were delivered at once.
    void postedMessagesComeAfterTheHandler()
    {
        m_handle->PostMsg(1);
        QTRY_COMPARE(m_got, (QList<quint32>{1, 2}));
        // Messages still queued when the object goes are dropped.
        m_handle->PostMsg(3);
        m_handle.reset();
        QCoreApplication::processEvents();
        QCOMPARE(m_got.size(), 2);
    }

    void ctrlTabMovesBetweenTabs()
    {
        TKVTabControl tabs;
        auto *page = new QWidget;
        auto *before = new QLineEdit(page); // inside the page before it joins the tabs
        tabs.addTab(page, u"one"_s);
        auto *after = new QLineEdit(page); // and after it joined
        tabs.addTab(new QLineEdit, u"two"_s);
        tabs.addTab(new QLineEdit, u"three"_s);
        tabs.show();
        QVERIFY(QTest::qWaitForWindowActive(&tabs));
        QTest::keyClick(after, Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(tabs.currentIndex(), 1);
        QTest::keyClick(before, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(tabs.currentIndex(), 0);
        QCOMPARE(tabs.property("Version").toString(), u"3.1"_s);
    }
};

QTEST_MAIN(tst_Controls)
#include "tst_controls.moc"
