#include "design/ideGen_designer.h"

#include "platform/kvDataModule.h"
#include "platform/kvException.h"
#include "tests/testsupport.h"
#include "tests/treesrc/treelistener.h"

#include <QClipboard>
#include <QFrame>
#include <QMimeData>
#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace kv;
using namespace Qt::StringLiterals;

namespace {

// A form with a button and a frame, named as a designer would name them.
struct TForm
{
    explicit TForm(const QString &Name) : Form(test::NamedWindow(Name)) {}
    std::unique_ptr<QWidget> Form;
    QPushButton *Button = test::Make<QPushButton>(Form.get(), u"Button1"_s);
    QFrame *Frame = test::Make<QFrame>(Form.get(), u"Frame1"_s);
};

} // namespace

class tst_Designer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        FinalizeDesigners();
        FinalizeNotifiers();
    }

    void namesWithinTheRoot()
    {
        TForm form1(u"Form1"_s);
        TForm form2(u"Form2"_s);
        TFDesigner designer;
        designer.SetCustomForm(form1.Form.get());
        QCOMPARE(designer.GetRootClassName(), u"QWidget"_s);

        QCOMPARE(designer.GetComponentName(form1.Button), u"Button1"_s);
        QCOMPARE(designer.GetComponentName(form1.Form.get()), u"Form1"_s);
        QCOMPARE(designer.GetComponentName(form2.Button), u"Form2.Button1"_s);
        QCOMPARE(designer.GetComponentName(nullptr), QString());

        QPushButton unnamed(form1.Form.get());
        QCOMPARE(designer.GetComponentName(&unnamed), QString());

        QCOMPARE(designer.GetComponent(u"button1"_s), form1.Button);
        QCOMPARE(designer.GetComponent(u"FORM1"_s), form1.Form.get());
        QCOMPARE(designer.GetComponent(u"Form2.Button1"_s), form2.Button);
        QVERIFY(!designer.GetComponent(u"Button2"_s));
        QVERIFY(!designer.GetComponent(QString()));

        // New names are unique ignoring case; names are listed by class.
        form1.Frame->setObjectName(u"button2"_s);
        QCOMPARE(designer.UniqueName(u"Button"_s), u"Button3"_s);
        QStringList names;
        designer.GetComponentNames(&QAbstractButton::staticMetaObject, [&](const QString &n) { names.append(n); });
        QCOMPARE(names, QStringList{u"Button1"_s});

        // The owner control takes the place of the custom form as the root.
        designer.SetOwnerControl(form2.Form.get());
        QCOMPARE(designer.GetComponentName(form2.Button), u"Button1"_s);
        QCOMPARE(designer.GetComponentName(form1.Button), u"Form1.Button1"_s);

        TFDesigner rootless;
        QVERIFY(!rootless.GetComponent(u"Button1"_s));
        QCOMPARE(rootless.GetRootClassName(), QString());
    }

    void selectionIsGuardedAndValidated()
    {
        TForm form(u"Form1"_s);
        TBroadcastLog recorder;
        TFDesigner designer;
        designer.SetCustomForm(form.Form.get());

        // A selected object that dies leaves a null entry, which is never handed out.
        auto *doomed1 = new QFrame(form.Form.get());
        auto *doomed2 = new QFrame(form.Form.get());
        designer.SetSelections({doomed1, doomed2, form.Button});
        delete doomed1;
        delete doomed2;
        QCOMPARE(designer.GetSelections(), QList<QObject *>{form.Button});
        designer.ValidateSelection();
        QCOMPARE(designer.Selection().size(), 2); // only the first null goes
        QVERIFY(designer.Selection().at(0).isNull());

        // An empty selection falls back on the root, unless a limit control is set; only a
        // control that takes children can be one.
        designer.SetSelections({});
        QCOMPARE(designer.GetSelections(), QList<QObject *>{form.Form.get()});
        QCOMPARE(recorder.Log.last(), u"selected Form1"_s);
        designer.SetLimitControl(form.Frame);
        QVERIFY_THROWS_EXCEPTION(Exception, designer.SetLimitControl(form.Button));
        QCOMPARE(designer.GetLimitControl(), form.Frame);
        designer.SetSelections({});
        QVERIFY(designer.GetSelections().isEmpty());
        designer.SetLimitControl(nullptr);
        designer.SetSelections({});
        QCOMPARE(designer.GetSelections(), QList<QObject *>{form.Form.get()});
    }

    void broadcasts()
    {
        TForm form(u"Form1"_s);
        TForm other(u"Form2"_s);
        TFDesigner designer;
        designer.SetCustomForm(form.Form.get());
        TBroadcastLog recorder;

        designer.Modified(); // nothing selected: the root stands for the change
        QVERIFY(designer.Selection().isEmpty()); // and the selection stays empty
        designer.SelectComponent(form.Button);
        designer.Modified();
        designer.ValidateRename(nullptr, u"Form1"_s, u"MainForm"_s); // null: the root
        designer.ValidateRename(form.Button, u"Button1"_s, u"OkButton"_s);
        designer.ComponentInserted(other.Button); // not this designer's
        designer.ComponentInserted(form.Frame);
        QCOMPARE(recorder.Log, QStringList({u"changed Form1"_s, u"selected Button1"_s, u"changed Button1"_s,
                                            u"renamed Form1 to MainForm"_s, u"renamed Button1 to OkButton"_s,
                                            u"inserted Frame1"_s}));
        QCOMPARE(recorder.Designer, static_cast<IFormDesigner *>(&designer));
    }

    void findingTheDesignerOfAnObject()
    {
        TForm form(u"Form1"_s);
        TBroadcastLog recorder;
        // Forms that nobody designs have no designer: nothing happens.
        QVERIFY(!GetDesigner(form.Button));
        DesignerModified(form.Button);
        DesignerModified(nullptr);
        QVERIFY(recorder.Log.isEmpty());

        // The designer list holds the living designers, in the order they were made.
        const int before = DesignerList().Count();
        auto designer = std::make_unique<TFDesigner>();
        TFDesigner second;
        QCOMPARE(DesignerList().Count(), before + 2);
        QCOMPARE(DesignerList().GetDesigner(before + 1), &second);

        designer->SetCustomForm(form.Form.get());
        SetFormDesigner(form.Form.get(), designer.get());
        QCOMPARE(GetDesigner(form.Button), static_cast<IFormDesigner *>(designer.get()));
        QVERIFY(IsFDesigner(GetDesigner(form.Button)));
        DesignerModified(form.Button);
        QCOMPARE(recorder.Log, QStringList{u"changed Form1"_s});

        // A data module's components find the data module's designer.
        TDataModule module;
        module.setObjectName(u"DataModule1"_s);
        QObject table(&module);
        SetFormDesigner(&module, designer.get());
        QCOMPARE(GetDesigner(&table), static_cast<IFormDesigner *>(designer.get()));
        QVERIFY_THROWS_EXCEPTION(Exception, SetFormDesigner(&module, &table)); // not a designer

        // The association ends with the designer, or with the form.
        auto doomed = std::make_unique<QWidget>();
        const QObject *doomedKey = doomed.get();
        SetFormDesigner(doomed.get(), &second);
        doomed.reset();
        QVERIFY(!FormDesigner(doomedKey));
        designer.reset();
        QVERIFY(!GetDesigner(&table));
        QCOMPARE(DesignerList().Count(), before + 1);
        QVERIFY(DesignerList().Contains(&second));
    }

    void pasteFollowsTheClipboard()
    {
        TFDesigner designer;
        QGuiApplication::clipboard()->setText(u"object Button1: QPushButton end"_s);
        if (!QGuiApplication::clipboard()->mimeData()->hasText())
            QSKIP("the platform has no clipboard");
        QVERIFY(designer.CanPaste());
        QGuiApplication::clipboard()->clear();
        QVERIFY(!DesignerCanPaste());
    }
};

QTEST_MAIN(tst_Designer)
#include "tst_designer.moc"
