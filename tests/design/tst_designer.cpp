#include "design/ideGen_designer.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_inotifier.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvDataModule.h"
#include "platform/kvException.h"
#include "tests/testsupport.h"

#include <QClipboard>
#include <QFrame>
#include <QMimeData>
#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace kv;
using namespace Qt::StringLiterals;

namespace {

// Records the designer broadcasts as text while they are dispatched: what happened, and to
// which objects (by name).
class TDesignerRecorder final : public INotifier
{
public:
    TDesignerRecorder() { RegisterNotifier(this); }
    ~TDesignerRecorder() { UnregisterNotifier(this); }

    void Dispatch(TMessage &Message) override
    {
        if (Message.Msg == CM_SELECTIONCHANGED) {
            const TSelectionChangedData data = DecodeSelectionChanged(Message);
            Designer = data.Designer;
            Log << u"selected "_s + Names(data.Selection);
        } else if (Message.Msg == CM_PROPCHANGED) {
            const TPropChangedData data = DecodePropChanged(Message);
            Log << u"changed "_s + Names({data.Objects.begin(), data.Objects.end()}) + data.PropName.toString();
        } else if (Message.Msg == CM_NAMECHANGED) {
            const TNameChangedData data = DecodeNameChanged(Message);
            Log << u"renamed "_s + Names({data.Component}) + u" to "_s + data.NewName.toString();
        } else if (Message.Msg == CM_OBJINSERT) {
            Log << u"inserted "_s + Names({DecodeObjInsert(Message)});
        }
    }

    static QString Names(const QList<QObject *> &Objects)
    {
        QStringList names;
        for (const QObject *obj : Objects)
            names << obj->objectName();
        return names.join(u',');
    }

    QStringList Log;
    IFormDesigner *Designer = nullptr;
};

// A designer of the IDE's own: it implements the host interface only.
class THostDesigner final : public QObject, public IFormDesigner
{
    Q_OBJECT
    Q_INTERFACES(kv::IFormDesigner)

public:
    int ModifiedCount = 0;

    QObject *GetRoot() const override { return nullptr; }
    QString GetRootClassName() const override { return {}; }
    QWidget *GetCustomForm() const override { return nullptr; }
    void SetCustomForm(QWidget *) override {}
    bool AllowPropShow(QObject *, const QString &) override { return true; }
    bool AllowEdit(QObject *, const QString &) override { return true; }
    bool AllowPropShowList(const QList<QObject *> &, const QString &) override { return true; }
    bool AllowEditList(const QList<QObject *> &, const QString &) override { return true; }
    bool CanBeSelected(QObject *) override { return true; }
    QList<QObject *> GetSelections() const override { return {}; }
    void SetSelections(const QList<QObject *> &) override {}
    void SelectComponent(QObject *) override {}
    void Modified() override { ++ModifiedCount; }
    void ComponentInserted(QObject *) override {}
    void ValidateRename(QObject *, const QString &, const QString &) override {}
    QString UniqueName(const QString &) override { return {}; }
    QObject *GetComponent(const QString &) override { return nullptr; }
    QString GetComponentName(QObject *) override { return {}; }
    void GetComponentNames(const QMetaObject *, const std::function<void(const QString &)> &) override {}
    QString GetObjectName(QObject *) override { return {}; }
    void Edit(QObject *) override {}
    QString GetPrivateDirectory() override { return {}; }
    bool CanPaste() override { return false; }
    void CopySelection() override {}
    void CutSelection() override {}
    void PasteSelection() override {}
    void DeleteSelection() override {}
    void ClearSelection() override {}
};

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
        QCOMPARE(designer.GetRoot(), form1.Form.get());
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
        QCOMPARE(designer.UniqueName(u"Label"_s), u"Label1"_s);
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
        TDesignerRecorder recorder;
        TFDesigner designer;
        designer.SetCustomForm(form.Form.get());

        designer.SelectComponent(form.Button);
        QCOMPARE(recorder.Log, QStringList{u"selected Button1"_s});
        QCOMPARE(recorder.Designer, static_cast<IFormDesigner *>(&designer));

        // A selected object that dies leaves a null entry, which is never handed out.
        auto *doomed1 = new QFrame(form.Form.get());
        auto *doomed2 = new QFrame(form.Form.get());
        designer.SetSelections({doomed1, doomed2, form.Button});
        delete doomed1;
        delete doomed2;
        QCOMPARE(designer.Selection().size(), 3);
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
        TDesignerRecorder recorder;

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
    }

    void findingTheDesignerOfAnObject()
    {
        TForm form(u"Form1"_s);
        TDesignerRecorder recorder;
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

        // The IDE's own designer is not a stand-alone one.
        THostDesigner host;
        SetFormDesigner(form.Form.get(), &host);
        QVERIFY(!IsFDesigner(GetDesigner(form.Frame)));
        DesignerModified(form.Frame);
        QCOMPARE(host.ModifiedCount, 1);
        QVERIFY(!IsFDesigner(nullptr));

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
