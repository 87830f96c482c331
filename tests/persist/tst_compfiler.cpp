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
#include "tests/streamsupport.h"
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

    // Handlers without slots get identifiers in the order met (a name met again keeps its own)
    // and are written back, with the class named after the root. A form read from text and the
    // demo host's windows, changed from how they are built, saved and loaded into a fresh one
    // through the binary form with and without its resource header and the text form, save the
    // same again.
    void roundTrips_data()
    {
        QTest::addColumn<int>("window");
        QTest::addRow("form with handlers") << 0;
        QTest::addRow("demo data module") << 1;
        QTest::addRow("demo items form") << 2;
    }
    void roundTrips()
    {
        QFETCH(int, window);
        DemoDataModule module;
        const auto make = [&]() -> std::unique_ptr<QObject> {
            if (window == 0)
                return std::make_unique<TFilerForm>();
            if (window == 1)
                return std::make_unique<DemoDataModule>();
            return std::make_unique<ItemsForm>(&module);
        };
        const std::unique_ptr<QObject> original = make();
        TCompFiler filer;
        if (window == 0) {
            QCOMPARE(Load(filer, original.get(), FormText), QStringLiteral("Form1"));
            QCOMPARE(filer.EventNames(), (QStringList{QStringLiteral("FormCreate"), QStringLiteral("Button1Click")}));
            QCOMPARE(filer.EventNameByID(2), QStringLiteral("Button1Click"));
            QCOMPARE(filer.EventNameByID(3), QString());
            QCOMPARE(filer.AddEvent(QStringLiteral("BUTTON1CLICK")), 2);
            TCompFiler copy;
            copy.Assign(filer);
            QCOMPARE(copy.AddEvent(QStringLiteral("Other")), 3);
        } else if (window == 1) {
            original->setProperty("databaseName", QStringLiteral("/tmp/other.db"));
        } else if (auto *form = qobject_cast<QWidget *>(original.get())) {
            form->setWindowTitle(QStringLiteral("Changed 'title'"));
            form->setGeometry(12, 34, 567, 321);
            for (QWidget *child : form->findChildren<QWidget *>())
                child->setToolTip(QStringLiteral("Tip of ") + child->objectName());
        }
        const QByteArray saved = Save(filer, original.get());
        const QByteArray text = kv::test::Convert(ObjectResourceToText, saved);
        const QByteArray name = original->objectName().toLatin1();
        QVERIFY2(text.startsWith(QByteArray("object " + name + ": T" + name + "\n")), text.constData());
        for (const char *line : {"\n  OnCreate = FormCreate\n", "\n    OnClicked = Button1Click\n", "\n    OnClicked = button1click\n"})
            QVERIFY2(window != 0 || text.contains(line), text.constData());
        TStream bare(saved);
        ReadResourceHeader(bare);
        for (const QByteArray &data : {saved, bare.readAll(), text}) {
            const std::unique_ptr<QObject> copy = make();
            TCompFiler other;
            QCOMPARE(Load(other, copy.get(), data), original->objectName());
            QCOMPARE(other.EventNames(), filer.EventNames());
            QCOMPARE(Save(other, copy.get()), saved);
        }
    }

    // A data module or a form of the class asked for, named after the stream's root, designing
    // when asked, OnLoaded after the read and after the naming; the filer's finder for the load
    // only. A load starts afresh and every error, handled or not, sets HasErrors. OnError decides
    // alone (the handler, set beside it, is not asked); otherwise the handler is asked until it
    // ignores all; an error nobody handles ends the load and leaves nothing behind.
    void createFromStream_data()
    {
        QTest::addColumn<QByteArray>("text");
        // An answer an error: OnError handles (E); the handler ignores all (A), ignores (I), cancels (C).
        QTest::addColumn<QString>("answers");
        QTest::addColumn<bool>("design");
        QTest::addColumn<QString>("className"); // empty: the load fails
        const QString form = QStringLiteral("TFilerForm");
        QTest::addRow("designed form") << FormText << QString() << true << form;
        QTest::addRow("data module") << QByteArray("object Module7: TDataModule\nend\n") << QString() << false
                                     << QStringLiteral("kv::TDataModule");
        QTest::addRow("OnError") << BadText << "EE" << false << form;
        QTest::addRow("handler ignores all") << BadText << "A" << false << form;
        QTest::addRow("handler ignores each") << BadText << "II" << false << form;
        QTest::addRow("handler cancels") << BadText << "C" << false << QString();
        QTest::addRow("nobody handles") << BadText << QString() << false << QString();
    }
    void createFromStream()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, answers);
        QFETCH(bool, design);
        QFETCH(QString, className);
        TCompFiler filer;
        filer.UseGlobalFind = true;
        filer.IgnoreErrors = filer.HasErrors = true; // a load starts afresh
        int loaded = 0;
        filer.OnLoaded = [&](TCompFiler &Sender) { loaded += &Sender == &filer; };
        QStringList asked, expected;
        if (answers.startsWith(u'E'))
            filer.OnError = [&](TReader &, const QString &Message, bool &Handled) {
                asked << QStringLiteral("E ") + Message;
                Handled = true;
            };
        if (!answers.isEmpty())
            ReaderErrorHandler = [&](const QString &Message, bool &Handled, bool &IgnoreAll) {
                const QChar answer = asked.size() < answers.size() ? answers[asked.size()] : u'?';
                asked << QStringLiteral("H ") + Message;
                Handled = answer != u'C';
                IgnoreAll = answer == u'A';
            };
        const TFindGlobalComponentProc previous = SetFindGlobalComponentProc([&](const QString &) { return this; });
        const qsizetype windows = QApplication::topLevelWidgets().size();
        TStream stream(text);
        const QMetaObject *rootClass = GetClass(QString::fromLatin1(text.split(' ').at(2).split('\n').at(0)));
        std::unique_ptr<QObject> created;
        const QString error = ErrorOf([&] { created.reset(filer.CreateFromStream(stream, rootClass, design)); });
        QCOMPARE(SetFindGlobalComponentProc(previous)(QString()), this);
        const QString bogus = QStringLiteral("Error reading Form1.Bogus%1: Property Bogus%1 does not exist");
        QCOMPARE(error, className.isEmpty() ? bogus.arg(1) : QString());
        QCOMPARE(filer.HasErrors, text == BadText);
        for (qsizetype i = 0; i < answers.size(); ++i)
            expected << (answers[i] == u'E' ? QStringLiteral("E ") : QStringLiteral("H ")) + bogus.arg(i + 1);
        QCOMPARE(asked, expected);
        QCOMPARE(loaded, created ? 2 : 0);
        if (!created) {
            QCOMPARE(QApplication::topLevelWidgets().size(), windows);
            return;
        }
        QCOMPARE(QString::fromLatin1(created->metaObject()->className()), className);
        QCOMPARE(created->objectName(), QString::fromLatin1(text.split(' ').at(1).chopped(1)));
        QCOMPARE(bool(ComponentState(created.get()) & csDesigning), design);
    }

    void findersAndOnCreate()
    {
        const auto designed = kv::test::NamedWindow(QStringLiteral("Other"));
        IncludeState(designed.get(), csDesigning);
        QCOMPARE(TCompFiler::GlobalFindCompWithoutDesigned(QStringLiteral("other")), nullptr);
        const auto plain = kv::test::NamedWindow(QStringLiteral("Other"));
        QCOMPARE(TCompFiler::GlobalFindCompWithoutDesigned(QStringLiteral("OTHER")), plain.get());

        // What a handler raises goes to the exception display.
        TFilerForm form;
        connect(&form, &TFilerForm::Create, this, [] { throw Exception(QStringLiteral("boom")); });
        QString shown;
        const TExceptionHandler previous = SetExceptionHandler([&](const QString &Message) { shown = Message; });
        TCompFiler::CallCompOnCreate(&form);
        SetExceptionHandler(previous);
        QCOMPARE(shown, QStringLiteral("boom"));
    }
};

QTEST_MAIN(tst_CompFiler)
#include "tst_compfiler.moc"
