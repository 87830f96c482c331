#include "design/ideGen_designer.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_inotifier.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvDataModule.h"
#include "platform/kvException.h"

#include <QClipboard>
#include <QFrame>
#include <QMimeData>
#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace kv;

namespace {

// Records the designer broadcasts, decoded while they are dispatched.
class TDesignerRecorder final : public INotifier
{
public:
    struct Entry
    {
        quint32 Msg = 0;
        QList<QObject *> Objects;
        QString Text;
        bool WholeObject = false;
        IFormDesigner *Designer = nullptr;
    };

    TDesignerRecorder() { RegisterNotifier(this); }
    ~TDesignerRecorder() { UnregisterNotifier(this); }

    void Dispatch(TMessage &Message) override
    {
        Entry entry;
        entry.Msg = Message.Msg;
        switch (Message.Msg) {
        case CM_SELECTIONCHANGED: {
            const TSelectionChangedData data = DecodeSelectionChanged(Message);
            entry.Objects = data.Selection;
            entry.Designer = data.Designer;
            break;
        }
        case CM_PROPCHANGED: {
            const TPropChangedData data = DecodePropChanged(Message);
            entry.Objects = QList<QObject *>(data.Objects.begin(), data.Objects.end());
            entry.WholeObject = data.WholeObject;
            break;
        }
        case CM_NAMECHANGED: {
            const TNameChangedData data = DecodeNameChanged(Message);
            entry.Objects = {data.Component};
            entry.Text = data.NewName.toString();
            break;
        }
        case CM_OBJINSERT:
            entry.Objects = {DecodeObjInsert(Message)};
            break;
        default:
            return;
        }
        Entries.append(entry);
    }

    QList<Entry> Entries;
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
    explicit TForm(const QString &Name)
    {
        Form->setObjectName(Name);
        Button->setObjectName(QStringLiteral("Button1"));
        Frame->setObjectName(QStringLiteral("Frame1"));
    }
    std::unique_ptr<QWidget> Form = std::make_unique<QWidget>();
    QPushButton *Button = new QPushButton(Form.get());
    QFrame *Frame = new QFrame(Form.get());
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
        TForm form1(QStringLiteral("Form1"));
        TForm form2(QStringLiteral("Form2"));
        TFDesigner designer;
        designer.SetCustomForm(form1.Form.get());
        QCOMPARE(designer.GetRoot(), form1.Form.get());
        QCOMPARE(designer.GetRootClassName(), QStringLiteral("QWidget"));

        QCOMPARE(designer.GetComponentName(form1.Button), QStringLiteral("Button1"));
        QCOMPARE(designer.GetComponentName(form1.Form.get()), QStringLiteral("Form1"));
        QCOMPARE(designer.GetComponentName(form2.Button), QStringLiteral("Form2.Button1"));
        QCOMPARE(designer.GetComponentName(nullptr), QString());
        QPushButton unnamed(form1.Form.get());
        QCOMPARE(designer.GetComponentName(&unnamed), QString());

        QCOMPARE(designer.GetComponent(QStringLiteral("button1")), form1.Button);
        QCOMPARE(designer.GetComponent(QStringLiteral("FORM1")), form1.Form.get());
        QCOMPARE(designer.GetComponent(QStringLiteral("Form2.Button1")), form2.Button);
        QVERIFY(!designer.GetComponent(QStringLiteral("Button2")));
        QVERIFY(!designer.GetComponent(QString()));

        // The owner control takes the place of the custom form as the root.
        designer.SetOwnerControl(form2.Form.get());
        QCOMPARE(designer.GetComponentName(form2.Button), QStringLiteral("Button1"));
        QCOMPARE(designer.GetComponentName(form1.Button), QStringLiteral("Form1.Button1"));
        QCOMPARE(designer.GetCustomForm(), form1.Form.get());

        TFDesigner rootless;
        QVERIFY(!rootless.GetComponent(QStringLiteral("Button1")));
        QCOMPARE(rootless.GetRootClassName(), QString());
    }

    void uniqueNamesIgnoreCase()
    {
        TForm form(QStringLiteral("Form1"));
        form.Frame->setObjectName(QStringLiteral("button2"));
        TFDesigner designer;
        designer.SetCustomForm(form.Form.get());
        QCOMPARE(designer.UniqueName(QStringLiteral("Button")), QStringLiteral("Button3"));
        QCOMPARE(designer.UniqueName(QStringLiteral("Label")), QStringLiteral("Label1"));
        QStringList names;
        designer.GetComponentNames(&QAbstractButton::staticMetaObject, [&](const QString &n) { names.append(n); });
        QCOMPARE(names, QStringList{QStringLiteral("Button1")});
    }

    void selectionIsGuardedAndValidated()
    {
        TForm form(QStringLiteral("Form1"));
        TDesignerRecorder recorder;
        TFDesigner designer;
        designer.SetCustomForm(form.Form.get());

        designer.SelectComponent(form.Button);
        QCOMPARE(recorder.Entries.size(), 1);
        QCOMPARE(recorder.Entries[0].Msg, CM_SELECTIONCHANGED);
        QCOMPARE(recorder.Entries[0].Objects, QList<QObject *>{form.Button});
        QCOMPARE(recorder.Entries[0].Designer, static_cast<IFormDesigner *>(&designer));

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

        // An empty selection falls back on the root, unless a limit control is set.
        designer.SetSelections({});
        QCOMPARE(designer.GetSelections(), QList<QObject *>{form.Form.get()});
        QCOMPARE(recorder.Entries.last().Objects, QList<QObject *>{form.Form.get()});
        designer.SetLimitControl(form.Frame);
        designer.SetSelections({});
        QVERIFY(designer.GetSelections().isEmpty());
    }

    void limitControlMustTakeChildren()
    {
        TForm form(QStringLiteral("Form1"));
        TFDesigner designer;
        designer.SetLimitControl(form.Frame);
        try {
            designer.SetLimitControl(form.Button);
            QFAIL("a button became the limit control");
        } catch (const Exception &e) {
            QCOMPARE(e.Message(), LoadStr(SInvalidPropertyValue));
        }
        QCOMPARE(designer.GetLimitControl(), form.Frame);
        designer.SetLimitControl(nullptr);
        QVERIFY(!designer.GetLimitControl());
    }

    void broadcasts()
    {
        TForm form(QStringLiteral("Form1"));
        TForm other(QStringLiteral("Form2"));
        TFDesigner designer;
        designer.SetCustomForm(form.Form.get());
        TDesignerRecorder recorder;

        // Nothing selected: the root stands for the change, and the selection stays empty.
        designer.Modified();
        QCOMPARE(recorder.Entries.size(), 1);
        QCOMPARE(recorder.Entries[0].Msg, CM_PROPCHANGED);
        QCOMPARE(recorder.Entries[0].Objects, QList<QObject *>{form.Form.get()});
        QVERIFY(recorder.Entries[0].WholeObject);
        QVERIFY(designer.Selection().isEmpty());

        designer.SelectComponent(form.Button);
        recorder.Entries.clear();
        designer.Modified();
        QCOMPARE(recorder.Entries[0].Objects, QList<QObject *>{form.Button});

        recorder.Entries.clear();
        designer.ValidateRename(nullptr, QStringLiteral("Form1"), QStringLiteral("MainForm"));
        designer.ValidateRename(form.Button, QStringLiteral("Button1"), QStringLiteral("OkButton"));
        QCOMPARE(recorder.Entries.size(), 2);
        QCOMPARE(recorder.Entries[0].Msg, CM_NAMECHANGED);
        QCOMPARE(recorder.Entries[0].Objects, QList<QObject *>{form.Form.get()});
        QCOMPARE(recorder.Entries[0].Text, QStringLiteral("MainForm"));
        QCOMPARE(recorder.Entries[1].Objects, QList<QObject *>{form.Button});

        recorder.Entries.clear();
        designer.ComponentInserted(other.Button); // not this designer's
        designer.ComponentInserted(form.Frame);
        QCOMPARE(recorder.Entries.size(), 1);
        QCOMPARE(recorder.Entries[0].Msg, CM_OBJINSERT);
        QCOMPARE(recorder.Entries[0].Objects, QList<QObject *>{form.Frame});
    }

    void findingTheDesignerOfAnObject()
    {
        TForm form(QStringLiteral("Form1"));
        TDesignerRecorder recorder;
        // Forms that nobody designs have no designer: nothing happens.
        QVERIFY(!GetDesigner(form.Button));
        DesignerModified(form.Button);
        DesignerModified(nullptr);
        QVERIFY(recorder.Entries.isEmpty());

        auto designer = std::make_unique<TFDesigner>();
        designer->SetCustomForm(form.Form.get());
        SetFormDesigner(form.Form.get(), designer.get());
        QCOMPARE(GetDesigner(form.Button), static_cast<IFormDesigner *>(designer.get()));
        QVERIFY(IsFDesigner(GetDesigner(form.Button)));
        DesignerModified(form.Button);
        QCOMPARE(recorder.Entries.size(), 1);
        QCOMPARE(recorder.Entries[0].Msg, CM_PROPCHANGED);

        // The IDE's own designer is not a stand-alone one.
        THostDesigner host;
        SetFormDesigner(form.Form.get(), &host);
        QVERIFY(!IsFDesigner(GetDesigner(form.Frame)));
        DesignerModified(form.Frame);
        QCOMPARE(host.ModifiedCount, 1);
        QVERIFY(!IsFDesigner(nullptr));

        // A data module's components find the data module's designer.
        TDataModule module;
        module.setObjectName(QStringLiteral("DataModule1"));
        QObject table(&module);
        SetFormDesigner(&module, designer.get());
        QCOMPARE(GetDesigner(&table), static_cast<IFormDesigner *>(designer.get()));

        // The association ends with the designer.
        designer.reset();
        QVERIFY(!GetDesigner(&table));
        QVERIFY_THROWS_EXCEPTION(Exception, SetFormDesigner(&module, &table));
    }

    void designerListHoldsTheLivingDesigners()
    {
        const int before = DesignerList().Count();
        auto first = std::make_unique<TFDesigner>();
        TFDesigner second;
        QCOMPARE(DesignerList().Count(), before + 2);
        QCOMPARE(DesignerList().GetDesigner(before + 1), &second);
        first.reset();
        QCOMPARE(DesignerList().Count(), before + 1);
        QVERIFY(DesignerList().Contains(&second));
    }

    void pasteFollowsTheClipboard()
    {
        TFDesigner designer;
        QGuiApplication::clipboard()->setText(QStringLiteral("object Button1: QPushButton end"));
        if (!QGuiApplication::clipboard()->mimeData()->hasText())
            QSKIP("the platform has no clipboard");
        QVERIFY(designer.CanPaste());
        QGuiApplication::clipboard()->clear();
        QVERIFY(!DesignerCanPaste());
    }
};

QTEST_MAIN(tst_Designer)
#include "tst_designer.moc"
