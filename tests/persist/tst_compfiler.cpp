#include "persist/ideCommon.h"
#include "persist/ideCommon_compfiler.h"

#include "foundation/ideSystem_classitems.h"
#include "hosts/demo/DemoDataModule.h"
#include "hosts/demo/ItemsForm.h"
#include "platform/kvComponentState.h"
#include "platform/kvDataModule.h"
#include "platform/kvFiler.h"
#include "platform/kvObjectText.h"
#include "platform/kvStreamDefaults.h"
#include "tests/testsupport.h"

#include <QApplication>
#include <QBuffer>
#include <QPushButton>
#include <QTest>

using namespace kv;
using kv::test::ErrorOf;

// A form class with an OnCreate event and no slots for the handlers its streams name.
class TFilerForm : public QWidget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit TFilerForm(QWidget *parent = nullptr) : QWidget(parent) {}

Q_SIGNALS:
    void Create();
};

namespace {

const QByteArray FormText = "object Form1: TFilerForm\n  OnCreate = FormCreate\n  object Button1: QPushButton\n"
                            "    OnClicked = Button1Click\n  end\n  object Button2: QPushButton\n"
                            "    OnClicked = button1click\n  end\nend\n";
const QByteArray BadText = "object Form1: TFilerForm\n  Bogus1 = 1\n  Bogus2 = 2\nend\n";

struct TStream : QBuffer
{
    explicit TStream(const QByteArray &Data = {})
    {
        setData(Data);
        open(QIODevice::ReadWrite);
    }
};

QByteArray ToText(const QByteArray &Resource)
{
    TStream in(Resource), out;
    ObjectResourceToText(in, out);
    return out.data();
}

QByteArray Save(TCompFiler &Filer, QObject *Component)
{
    TStream stream;
    Filer.SaveToStream(stream, Component);
    return stream.data();
}

QString Load(TCompFiler &Filer, QObject *Component, const QByteArray &Data)
{
    TStream stream(Data);
    QString rootName;
    Filer.LoadFromStream(stream, Component, rootName);
    return rootName;
}

} // namespace

class tst_CompFiler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        RegisterClasses<TFilerForm, QPushButton>();
        SafeRegisterClass(&TDataModule::staticMetaObject);
        ideCommon::Initialize();
    }
    // The prototypes that measured defaults go with the unit stop.
    void cleanupTestCase() { FinalizeStreamDefaults(); }
    void cleanup() { ReaderErrorHandler = nullptr; }

    // Handlers without slots get identifiers in the order met (a name met again keeps its
    // own) and are written back, with the class named after the root. The binary form with
    // and without its resource header and the text form load alike.
    void eventsKeptAndWrittenBack()
    {
        TCompFiler filer;
        TFilerForm form;
        QCOMPARE(Load(filer, &form, FormText), QStringLiteral("Form1"));
        QCOMPARE(filer.EventNames(), (QStringList{QStringLiteral("FormCreate"), QStringLiteral("Button1Click")}));
        QCOMPARE(filer.EventNameByID(2), QStringLiteral("Button1Click"));
        QCOMPARE(filer.EventNameByID(3), QString());
        QCOMPARE(filer.AddEvent(QStringLiteral("BUTTON1CLICK")), 2);
        QVERIFY(!filer.HasErrors);
        TCompFiler copy;
        copy.Assign(filer);
        QCOMPARE(copy.AddEvent(QStringLiteral("Other")), 3);

        const QByteArray saved = Save(filer, &form);
        const QByteArray text = ToText(saved);
        QVERIFY2(text.startsWith("object Form1: TForm1\n"), text.constData());
        for (const char *line : {"\n  OnCreate = FormCreate\n", "\n    OnClicked = Button1Click\n", "\n    OnClicked = button1click\n"})
            QVERIFY2(text.contains(line), text.constData());
        TStream bare(saved);
        ReadResourceHeader(bare);
        for (const QByteArray &data : {saved, bare.readAll(), text}) {
            TCompFiler other;
            TFilerForm again;
            QCOMPARE(Load(other, &again, data), QStringLiteral("Form1"));
            QCOMPARE(other.EventNames(), filer.EventNames());
            QCOMPARE(Save(other, &again), saved);
        }
    }

    // OnError decides alone; otherwise the handler is asked until it ignores all; every
    // error, handled or not, sets HasErrors; an error nobody handles ends the load.
    void readerErrors_data()
    {
        QTest::addColumn<int>("who"); // 0 OnError, 1 handler ignores all, 2 ignores each, 3 cancels, 4 nobody
        QTest::addColumn<int>("asked");
        QTest::addRow("OnError") << 0 << 2;
        QTest::addRow("ignore all") << 1 << 1;
        QTest::addRow("ignore each") << 2 << 2;
        QTest::addRow("cancel") << 3 << 1;
        QTest::addRow("nobody") << 4 << 0;
    }
    void readerErrors()
    {
        QFETCH(int, who);
        QFETCH(int, asked);
        TCompFiler filer;
        filer.IgnoreErrors = true; // a load starts afresh
        QStringList messages;
        if (who == 0)
            filer.OnError = [&](TReader &, const QString &Message, bool &Handled) {
                messages << Message;
                Handled = true;
            };
        else if (who < 4)
            ReaderErrorHandler = [&, who](const QString &Message, bool &Handled, bool &IgnoreAll) {
                messages << Message;
                Handled = who != 3;
                IgnoreAll = who == 1;
            };
        TFilerForm form;
        QCOMPARE(ErrorOf([&] { Load(filer, &form, BadText); }).isEmpty(), who < 3);
        QCOMPARE(messages.size(), asked);
        QVERIFY(filer.HasErrors);
        QVERIFY(messages.isEmpty() || messages.first().contains(QStringLiteral("Bogus1")));
    }

    // A data module or a form of the class asked for, named after the stream's root,
    // designing when asked, OnLoaded after the read and after the naming; the filer's finder
    // for the load only; a failed load leaves nothing behind.
    void createFromStream_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("className");
        QTest::addColumn<bool>("design");
        QTest::addRow("form") << FormText << QStringLiteral("TFilerForm") << false;
        QTest::addRow("designed form") << FormText << QStringLiteral("TFilerForm") << true;
        QTest::addRow("data module") << QByteArray("object Module7: TDataModule\nend\n") << QStringLiteral("kv::TDataModule") << false;
        QTest::addRow("failing") << BadText << QString() << false;
    }
    void createFromStream()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, className);
        QFETCH(bool, design);
        TCompFiler filer;
        filer.UseGlobalFind = true;
        int loaded = 0;
        filer.OnLoaded = [&](TCompFiler &Sender) { loaded += &Sender == &filer; };
        const TFindGlobalComponentProc previous = SetFindGlobalComponentProc([&](const QString &) { return this; });
        const qsizetype windows = QApplication::topLevelWidgets().size();
        TStream stream(text);
        std::unique_ptr<QObject> created;
        const QString error = ErrorOf(
            [&] { created.reset(filer.CreateFromStream(stream, GetClass(className.section(QStringLiteral("::"), -1)), design)); });
        QCOMPARE(SetFindGlobalComponentProc(previous)(QString()), this);
        QCOMPARE(error.isEmpty(), !className.isEmpty());
        if (!created) {
            QCOMPARE(QApplication::topLevelWidgets().size(), windows);
            return;
        }
        QCOMPARE(QString::fromLatin1(created->metaObject()->className()), className);
        QCOMPARE(created->objectName(), QString::fromLatin1(text.split(' ').at(1).chopped(1)));
        QCOMPARE(bool(ComponentState(created.get()) & csDesigning), design);
        QCOMPARE(loaded, 2);
    }

    void findersAndOnCreate()
    {
        QWidget designed, plain;
        designed.setObjectName(QStringLiteral("Other"));
        IncludeState(&designed, csDesigning);
        QCOMPARE(TCompFiler::GlobalFindCompWithoutDesigned(QStringLiteral("other")), nullptr);
        plain.setObjectName(QStringLiteral("Other"));
        QCOMPARE(TCompFiler::GlobalFindCompWithoutDesigned(QStringLiteral("OTHER")), &plain);

        // What a handler raises goes to the exception display.
        TFilerForm form;
        connect(&form, &TFilerForm::Create, this, [] { throw Exception(QStringLiteral("boom")); });
        QString shown;
        const TExceptionHandler previous = SetExceptionHandler([&](const QString &Message) { shown = Message; });
        TCompFiler::CallCompOnCreate(&form);
        SetExceptionHandler(previous);
        QCOMPARE(shown, QStringLiteral("boom"));
    }

    // The demo host's windows, changed from how they are built, saved and loaded into a fresh
    // one through the binary and the text form, save the same again.
    void demoWindowsRoundTrip_data()
    {
        QTest::addColumn<int>("window");
        QTest::addRow("data module") << 0;
        QTest::addRow("items form") << 1;
    }
    void demoWindowsRoundTrip()
    {
        QFETCH(int, window);
        DemoDataModule module;
        const auto make = [&]() -> std::unique_ptr<QObject> {
            if (window == 0)
                return std::make_unique<DemoDataModule>();
            return std::make_unique<ItemsForm>(&module);
        };
        const std::unique_ptr<QObject> original = make();
        if (window == 0)
            original->setProperty("databaseName", QStringLiteral("/tmp/other.db"));
        else if (auto *form = qobject_cast<QWidget *>(original.get())) {
            form->setWindowTitle(QStringLiteral("Changed 'title'"));
            form->setGeometry(12, 34, 567, 321);
            for (QWidget *child : form->findChildren<QWidget *>())
                child->setToolTip(QStringLiteral("Tip of ") + child->objectName());
        }
        TCompFiler filer;
        const QByteArray saved = Save(filer, original.get());
        for (const QByteArray &data : {saved, ToText(saved)}) {
            const std::unique_ptr<QObject> copy = make();
            TCompFiler other;
            const QString error = ErrorOf([&] { Load(other, copy.get(), data); });
            QVERIFY2(error.isEmpty(), qPrintable(error));
            QVERIFY(!other.HasErrors);
            QCOMPARE(Save(other, copy.get()), saved);
        }
    }
};

QTEST_MAIN(tst_CompFiler)
#include "tst_compfiler.moc"
