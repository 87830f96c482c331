// The binary component writer and reader: the bytes of each value, round trips of every
// property kind, children, collections, references, events, and hostile input.

#include "foundation/ideConsts.h"
#include "platform/kvClasses.h"
#include "platform/kvCollection.h"
#include "platform/kvComponentState.h"
#include "platform/kvDataModule.h"
#include "platform/kvEventConnections.h"
#include "platform/kvFiler.h"
#include "platform/kvPersistent.h"
#include "platform/kvStreamDefaults.h"
#include "tests/platform/testkinds.h"
#include "tests/testsupport.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace kv;
using namespace kv::test;
using namespace Qt::StringLiterals;

class TNamedItem : public TCollectionItem
{
    Q_OBJECT
    Q_PROPERTY(QString caption MEMBER m_caption)
    Q_PROPERTY(int width MEMBER m_width)

public:
    Q_INVOKABLE explicit TNamedItem(QObject *parent = nullptr) : TCollectionItem(parent) {}
    QString m_caption;
    int m_width = 50;
};

// A data module with a collection, an order-dependent pair and a slot for events.
class TSampleModule : public TDataModule, public TPersistent
{
    Q_OBJECT
    Q_PROPERTY(kv::TCollection *columns READ columns)
    Q_PROPERTY(int value READ value WRITE setValue)
    Q_PROPERTY(int maximum READ maximum WRITE setMaximum)

public:
    Q_INVOKABLE explicit TSampleModule(QObject *parent = nullptr) : TDataModule(parent) {}
    explicit TSampleModule(const QString &Name) { setObjectName(Name); }
    TCollection *columns() { return &m_columns; }
    int value() const { return m_value; }
    void setValue(int v) { m_value = qMin(v, m_maximum); }
    int maximum() const { return m_maximum; }
    void setMaximum(int v) { m_maximum = v; }
    void Loaded() override { ++LoadedCount; }
    void DefineProperties(TFiler &Filer) override
    {
        Filer.DefineProperty(
            QStringLiteral("Secret"), [this](TReader &R) { Secret = R.ReadString(); },
            [this](TWriter &W) { W.WriteString(Secret); }, !Secret.isEmpty());
    }

    TCollection m_columns{&TNamedItem::staticMetaObject, this, QStringLiteral("columns")};
    int m_value = 0;
    int m_maximum = 10;
    int LoadedCount = 0;
    QString Secret;

public Q_SLOTS:
    void ButtonClick() {}
};

namespace {

QByteArray Hex(const char *Text)
{
    return QByteArray::fromHex(QByteArray(Text).replace(' ', ""));
}

QByteArray Written(const std::function<void(TWriter &)> &Write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        TWriter writer(&buffer);
        Write(writer);
    }
    return buffer.data();
}

QByteArray Stream(QObject *Root)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    WriteComponent(buffer, Root);
    return buffer.data();
}

// Reads Bytes into Root (a new root when null), with the reader's hooks set by Setup.
QObject *Read(const QByteArray &Bytes, QObject *Root = nullptr, const std::function<void(TReader &)> &Setup = {})
{
    QBuffer buffer;
    buffer.setData(Bytes);
    buffer.open(QIODevice::ReadOnly);
    TReader reader(&buffer);
    if (Setup)
        Setup(reader);
    return reader.ReadRootComponent(Root);
}

// A short string: length byte and bytes.
QByteArray S(const char *Text)
{
    return char(qstrlen(Text)) + QByteArray(Text);
}

} // namespace

class tst_Filer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        RegisterClasses<TKinds, TTypesHolder, TSampleModule, QTimer, QPushButton, QLabel>();
        RegisterClass<QWidget>();
    }

    void cleanupTestCase() { FinalizeStreamDefaults(); }

    // Each value's bytes from the writer, and what the reader makes of them; a row without a
    // writer is a form that the writer never makes.
    void valueBytes_data()
    {
        QTest::addColumn<std::function<void(TWriter &)>>("write");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QVariant>("read");
        auto row = [](const char *name, std::function<void(TWriter &)> write, const char *hex, QVariant read) {
            QTest::newRow(name) << write << Hex(hex) << read;
        };
        row("int8", [](TWriter &w) { w.WriteInteger(-1); }, "02 FF", -1);
        row("int16 low", [](TWriter &w) { w.WriteInteger(-129); }, "03 7F FF", -129);
        row("int32", [](TWriter &w) { w.WriteInteger(100000); }, "04 A0 86 01 00", 100000);
        row("int64", [](TWriter &w) { w.WriteInteger(1LL << 40); }, "13 00 00 00 00 00 01 00 00", 1LL << 40);
        row("wide string", [](TWriter &w) { w.WriteString(u"\u00e9\u20ac"_s); }, "12 02 00 00 00 E9 00 AC 20",
            u"\u00e9\u20ac"_s);
        // 0x81 has no character in Windows-1252 and stays itself.
        row("windows-1252", nullptr, "06 04 80 93 E9 81", u"\u20ac\u201c\u00e9\u0081"_s);
        row("nil", [](TWriter &w) { w.WriteIdent(u"nil"_s); }, "0D", QVariant());
        row("extended", [](TWriter &w) { w.WriteFloat(-2.5); }, "05 00 00 00 00 00 00 00 A0 00 C0", -2.5);
        row("single", [](TWriter &w) { w.WriteSingle(1.0f); }, "0F 00 00 80 3F", 1.0f);
        row("currency", [](TWriter &w) { w.WriteCurrency(15000); }, "10 98 3A 00 00 00 00 00 00", 1.5);
        row("date", [](TWriter &w) { w.WriteDate(1.25); }, "11 00 00 00 00 00 00 F4 3F",
            QDateTime(QDate(1899, 12, 31), QTime(6, 0)));
        row("binary", [](TWriter &w) { w.WriteBinary("\x01\x02"_ba); }, "0A 02 00 00 00 01 02", "\x01\x02"_ba);
        row("set", [](TWriter &w) { w.WriteSet({u"a"_s, u"bc"_s}); }, "0B 01 61 02 62 63 00",
            QStringList{u"a"_s, u"bc"_s});
        row("list", [](TWriter &w) { w.WriteListBegin(); w.WriteInteger(1); w.WriteBoolean(true); w.WriteListEnd(); },
            "01 02 01 09 00", QVariantList{1, true});
        QString longText(256, u'a');
        row("long string", [longText](TWriter &w) { w.WriteString(longText); },
            QByteArray("0C 00 01 00 00" + QByteArray(256, 'a').toHex()).constData(), longText);
    }

    void valueBytes()
    {
        QFETCH(std::function<void(TWriter &)>, write);
        QFETCH(QByteArray, bytes);
        QFETCH(QVariant, read);
        if (write)
            QCOMPARE(Written(write).toHex(' '), bytes.toHex(' '));
        QBuffer buffer;
        buffer.setData(bytes);
        buffer.open(QIODevice::ReadOnly);
        TReader reader(&buffer);
        QCOMPARE(reader.ReadVariant(), read);
        QCOMPARE(reader.Position(), bytes.size());
    }

    // A component's bytes with and without the writer's hooks, and in a resource.
    void componentBytes()
    {
        TSampleModule module(u"Mod1"_s);
        module.setMaximum(300);
        module.Secret = u"x"_s;
        Make<QTimer>(&module, u"Timer1"_s)->setInterval(1000);
        const QByteArray expected = "TPF0" + S("TSampleModule") + S("Mod1") + S("maximum") + Hex("03 2C 01") + S("Secret")
                                    + Hex("06 01 78") + Hex("00") + S("QTimer") + S("Timer1") + S("interval")
                                    + Hex("03 E8 03") + Hex("00 00") + Hex("00");
        QCOMPARE(Stream(&module).toHex(' '), expected.toHex(' '));
        const QByteArray hooked = Written([&](TWriter &Writer) {
            Writer.IgnoreChildren = true;
            Writer.SetSkipObject(&module);
            Writer.SetClassNameHook([](const QObject *) { return u"TM"_s; });
            Writer.SetPropertyFilter([](const QObject *, const QString &Name) { return Name != "maximum"_L1; });
            Writer.WriteRootComponent(&module);
        });
        QCOMPARE(hooked.toHex(' '), QByteArray("TPF0" + S("TM") + S("Mod1") + Hex("00 00")).toHex(' '));

        QBuffer resource;
        resource.open(QIODevice::ReadWrite);
        WriteComponentRes(resource, u"TSampleModule"_s, &module);
        const QByteArray header = Hex("FF 0A 00") + "TSAMPLEMODULE" + Hex("00 30 10")
                                  + QByteArray(1, char(expected.size())) + Hex("00 00 00");
        QCOMPARE(resource.data().toHex(' '), QByteArray(header + expected).toHex(' '));
        resource.seek(0);
        std::unique_ptr<TSampleModule> read(static_cast<TSampleModule *>(ReadComponentRes(resource)));
        QCOMPARE(read->findChild<QTimer *>(u"Timer1"_s)->interval(), 1000);
        QCOMPARE(read->Secret, u"x"_s);
        QCOMPARE(read->LoadedCount, 1);
    }

    void allKinds()
    {
        TSampleModule root(u"Root"_s);
        auto *kinds = Make<TKinds>(&root, u"Kinds"_s);
        auto *types = Make<TTypesHolder>(&root, u"Types"_s);
        auto *other = Make<QTimer>(&root, u"Other"_s);
        kinds->m_mode = TKinds::mdThree;
        kinds->m_alignment = Qt::AlignRight | Qt::AlignBottom;
        kinds->m_flag = false;
        kinds->m_number = 123456;
        kinds->m_big = 1LL << 50;
        kinds->m_huge = 18000000000000000001ULL;
        kinds->m_ratio = 1.0 / 3;
        kinds->m_single = 2.5f;
        kinds->m_text = u"caf\u00e9 \u20ac"_s;
        kinds->m_letter = u'\u00df';
        kinds->m_link = other;
        kinds->part()->setInterval(77);
        kinds->m_any = QVariant(QSize(3, 4));
        kinds->m_locale = QLocale(QLocale::German);
        types->m_color = clRed;
        types->m_qcolor = QColor(10, 20, 30, 40);
        types->m_font.setFamily(u"Serif"_s);
        types->m_font.setPointSizeF(10.5);
        types->m_font.setWeight(QFont::DemiBold);
        types->m_font.setItalic(true);
        types->m_cursor = QCursor(Qt::IBeamCursor);
        types->m_shortcut = QKeySequence(u"Ctrl+Shift+S"_s);
        types->m_date = QDate(1850, 1, 2);
        types->m_time = QTime(23, 59, 58, 500);
        types->m_dateTime = QDateTime(QDate(2024, 2, 29), QTime(12, 30));
        types->m_items = {u"one"_s, QString(), u"thr\u00e9e"_s};
        types->m_size = QSize(-1, 40);
        types->m_sizeF = QSizeF(0.25, 1e300);
        types->m_point = QPoint(-5, 6);
        types->m_rect = QRect(1, 2, 3, 4);
        types->m_rectF = QRectF(0.5, 1.5, 2.5, 3.5);
        types->m_margins = QMargins(1, 2, 3, 4);
        types->m_sizePolicy = QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        types->m_sizePolicy.setHorizontalStretch(3);
        types->m_image = QImage(4, 3, QImage::Format_ARGB32);
        types->m_image.fill(QColor(1, 2, 3, 4));

        const QByteArray bytes = Stream(&root);
        TSampleModule copy;
        Read(bytes, &copy);
        for (const QObject *written : {static_cast<QObject *>(kinds), static_cast<QObject *>(types)}) {
            const QObject *read = copy.findChild<QObject *>(written->objectName());
            QVERIFY(read);
            const QMetaObject *meta = written->metaObject();
            for (int i = QObject::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
                const QMetaProperty property = meta->property(i);
                const QVariant expected = property.read(written), actual = property.read(read);
                if (property.name() == QByteArray("link") || property.name() == QByteArray("part"))
                    continue;
                if (property.name() == QByteArray("image"))
                    QCOMPARE(actual.value<QImage>(), expected.value<QImage>());
                else
                    QVERIFY2(SameStreamValue(actual, expected), property.name());
            }
        }
        const auto *read = copy.findChild<TKinds *>(u"Kinds"_s);
        QCOMPARE(read->m_link, copy.findChild<QTimer *>(u"Other"_s));
        QCOMPARE(read->m_part.interval(), 77);
        // The sub-object is a property, not a child: no twin of it.
        QCOMPARE(read->findChildren<QTimer *>().size(), 1);
        // A second write of what was read is the same stream.
        QCOMPARE(Stream(&copy), bytes);
        WriteSeed("allkinds", bytes);
    }

    void defaultsAreLeftOut()
    {
        TKinds kinds;
        kinds.setObjectName(u"K"_s);
        DeclareDefaults(&TKinds::staticMetaObject, {{"number", -12}, {"text", u"Hello"_s}});
        const QByteArray bytes = Stream(&kinds);
        QVERIFY(!bytes.contains(S("number")));
        QVERIFY(!bytes.contains(S("text")));
        QVERIFY(bytes.contains(S("ratio"))); // no declaration: against the type's zero
        kinds.m_number = 0;
        QVERIFY(Stream(&kinds).contains(QByteArray(S("number") + Hex("02 00"))));
    }

    // Items replace what the collection held; "value" comes before "maximum" and is assigned again;
    // under global loading the root is told that it was loaded only at the end.
    void collectionsAndReapply()
    {
        TSampleModule module(u"M"_s);
        for (int i = 0; i < 3; ++i) {
            auto *item = static_cast<TNamedItem *>(module.columns()->Add());
            item->m_caption = u"Col%1"_s.arg(i);
            item->m_width = i == 1 ? 50 : 10 * i;
        }
        module.setMaximum(100);
        module.setValue(60);
        const QByteArray bytes = Stream(&module);
        QVERIFY(bytes.contains(QByteArray(S("columns") + Hex("0E 01") + S("caption") + Hex("06 04") + "Col0"
                                          + S("width") + Hex("02 00 00"))));
        TSampleModule copy;
        copy.columns()->Add();
        BeginGlobalLoading();
        Read(bytes, &copy);
        QCOMPARE(copy.LoadedCount, 0);
        QVERIFY(ComponentState(&copy) & csLoading);
        NotifyGlobalLoading();
        EndGlobalLoading();
        QCOMPARE(copy.LoadedCount, 1);
        QCOMPARE(ComponentState(&copy), TComponentState());
        QCOMPARE(copy.columns()->Count(), 3);
        QCOMPARE(static_cast<TNamedItem *>(copy.columns()->Items(2))->m_caption, u"Col2"_s);
        QCOMPARE(static_cast<TNamedItem *>(copy.columns()->Items(1))->m_width, 50);
        QCOMPARE(copy.value(), 60);
        WriteSeed("collection", bytes);
    }

    void childrenIntoExistingAndNew()
    {
        auto form = NamedWindow(u"Form1"_s);
        Make<QPushButton>(form.get(), u"Button1"_s)->setText(u"&OK"_s);
        auto *panel = Make<QWidget>(form.get(), u"Panel"_s);
        Make<QLabel>(panel, u"Label1"_s)->setText(u"Name:"_s);
        Make<QObject>(form.get(), u"qt_internal"_s);
        const QByteArray bytes = Stream(form.get());
        QVERIFY(!bytes.contains("qt_internal"));

        auto copy = NamedWindow(QString());
        auto *existing = Make<QPushButton>(copy.get(), u"button1"_s);
        Read(bytes, copy.get());
        QCOMPARE(copy->objectName(), u"Form1"_s);
        QCOMPARE(copy->findChildren<QPushButton *>().size(), 1);
        QCOMPARE(existing->text(), u"&OK"_s);
        QCOMPARE(copy->findChild<QLabel *>(u"Label1"_s)->parent()->objectName(), u"Panel"_s);
        QCOMPARE(copy->windowTitle(), form->windowTitle());
        WriteSeed("form", bytes);
    }

    void referencesAcrossRoots()
    {
        auto first = std::make_unique<TSampleModule>(u"First"_s);
        auto second = std::make_unique<TSampleModule>(u"Second"_s);
        Make<TKinds>(first.get(), u"Kinds"_s)->m_link = Make<QTimer>(second.get(), u"Clock"_s);
        const QByteArray firstBytes = Stream(first.get()), secondBytes = Stream(second.get());
        QVERIFY(firstBytes.contains(QByteArray(S("link") + Hex("07") + S("Second.Clock"))));
        first.reset();
        second.reset();

        std::unique_ptr<QObject> a(Read(firstBytes));
        QCOMPARE(PendingGlobalFixupCount(), 1);
        std::unique_ptr<QObject> b(Read(secondBytes));
        QCOMPARE(PendingGlobalFixupCount(), 0);
        QCOMPARE(a->findChild<TKinds *>()->m_link, b->findChild<QTimer *>(u"Clock"_s));
    }

    // A handler is written as the slot's name and connected again; one without a slot fails
    // (see badInput) unless the find-method hook keeps the name, which is then written back.
    void events()
    {
        TSampleModule module(u"M"_s);
        const QMetaMethod timeout = QMetaMethod::fromSignal(&QTimer::timeout);
        SetEventHandler(Make<QTimer>(&module, u"T"_s), timeout, &module, u"ButtonClick"_s);
        const QByteArray bytes = Stream(&module);
        QVERIFY(bytes.contains(QByteArray(S("OnTimeout") + Hex("07") + S("ButtonClick"))));
        TSampleModule copy;
        Read(bytes, &copy);
        QCOMPARE(GetEventHandler(copy.findChild<QTimer *>(), timeout).SlotName, u"ButtonClick"_s);

        QByteArray missing = bytes;
        missing.replace(S("ButtonClick"), S("FormCreate"));
        TSampleModule kept;
        QStringList asked;
        Read(missing, &kept, [&](TReader &Reader) {
            Reader.SetFindMethodHook([&](const QString &Name, bool &Error) {
                asked << Name;
                Error = false;
            });
        });
        QCOMPARE(asked, QStringList{u"FormCreate"_s});
        QCOMPARE(Stream(&kept), missing);
    }

    void badInput_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("error");
        const auto row = [](const char *name, const QByteArray &bytes, const QString &error) {
            QTest::newRow(name) << bytes << error;
        };
        const QByteArray head = "TPF0" + S("TSampleModule") + S("M");
        const QByteArray kinds = "TPF0" + S("TKinds") + S("K");
        const QByteArray types = "TPF0" + S("TTypesHolder") + S("K");
        const QString invalid = u"Error reading M.maximum: Invalid property value"_s;
        row("signature", "TPF1", LoadStr(SInvalidStreamFormat));
        row("unknown class", "TPF0" + S("TNope") + S("M") + Hex("00 00"), u"Class TNope not found"_s);
        row("unknown child class", head + Hex("00") + S("TNope") + S("X") + Hex("00 00 00"), u"Class TNope not found"_s);
        row("unknown property", head + S("nope") + Hex("02 01 00 00"),
            u"Error reading M.nope: Property nope does not exist"_s);
        row("wrong type", head + S("maximum") + Hex("06 01 61 00 00"), invalid);
        row("out of range", head + S("maximum") + Hex("13 00 00 00 00 01 00 00 00 00 00"), invalid);
        row("bad part", types + S("size.Depth") + Hex("02 01 00 00"),
            u"Error reading K.size.Depth: Property size.Depth does not exist"_s);
        row("missing handler", head + Hex("00") + S("QTimer") + S("T") + S("OnTimeout") + Hex("07") + S("FormCreate")
                                   + Hex("00 00 00"),
            u"Error reading T.OnTimeout: Handler FormCreate of event OnTimeout not found"_s);
        row("bad tag", head + S("maximum") + Hex("55 00 00"), LoadStr(SInvalidStreamFormat));
        row("huge binary", types + S("image") + Hex("0A FF FF FF 7F 00 00"), LoadStr(SReadError));
        row("negative length", kinds + S("text") + Hex("0C 00 00 00 80 00 00"), LoadStr(SInvalidStreamFormat));
        QByteArray deep = types + S("items.Strings");
        for (int i = 0; i < 1000; ++i)
            deep += Hex("01");
        row("deep lists", deep, LoadStr(SStreamNesting));
        QByteArray nested = head + Hex("00");
        for (int i = 0; i < 1000; ++i)
            nested += S("QTimer") + S("") + Hex("00");
        row("deep children", nested, LoadStr(SStreamNesting));
    }

    void badInput()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, error);
        QCOMPARE(ErrorOf([&] { delete Read(bytes); }), error);
        if (QTest::currentDataTag() == QByteArray("unknown class") || bytes.size() < 5)
            return; // a given root is read whatever class the stream names
        // Into an existing root: what the read created is gone, the states are cleared.
        std::unique_ptr<QObject> into(CreateObject(QString::fromLatin1(bytes.mid(5, uchar(bytes[4]))), nullptr));
        into->setObjectName(QString()); // so that it takes the stream's name, as the messages say
        const qsizetype children = into->children().size();
        QCOMPARE(ErrorOf([&] { Read(bytes, into.get()); }), error);
        QCOMPARE(into->children().size(), children);
        QCOMPARE(ComponentState(into.get()), TComponentState());
    }

    // Every cut of a valid stream fails cleanly, with nothing left behind.
    void truncated()
    {
        TSampleModule module(u"M"_s);
        module.columns()->Add();
        Make<TKinds>(&module, u"K"_s)->m_text = QString(300, u'x');
        const QByteArray bytes = Stream(&module);
        for (int size = 0; size < bytes.size(); ++size)
            QCOMPARE(ErrorOf([&] { delete Read(bytes.left(size)); }), LoadStr(SReadError));
    }

    void errorHookSkipsAndGoesOn()
    {
        const QByteArray bytes = "TPF0" + S("TSampleModule") + S("M") + S("nope") + Hex("01 02 01 06 01 61 00")
                                 + S("maximum") + Hex("06 01 61") + S("value") + Hex("02 07") + Hex("00")
                                 + S("TNope") + S("X") + S("a") + Hex("02 01 00") + S("QTimer") + S("Y") + Hex("00 00")
                                 + Hex("00") + S("QTimer") + S("Z") + Hex("00 00") + Hex("00");
        QStringList errors;
        std::unique_ptr<QObject> read(Read(bytes, nullptr, [&](TReader &Reader) {
            Reader.SetErrorHook([&](const QString &Message, bool &Handled) {
                errors << Message;
                Handled = true;
            });
        }));
        QCOMPARE(errors.size(), 3);
        QCOMPARE(errors[2], u"Class TNope not found"_s);
        QCOMPARE(static_cast<TSampleModule *>(read.get())->value(), 7);
        QCOMPARE(read->findChildren<QTimer *>().size(), 1);
        QCOMPARE(read->findChild<QTimer *>()->objectName(), u"Z"_s);
    }

    void dates_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QDateTime>("dateTime");
        QTest::newRow("epoch") << 0.0 << QDateTime(QDate(1899, 12, 30), QTime(0, 0));
        QTest::newRow("noon") << 2.5 << QDateTime(QDate(1900, 1, 1), QTime(12, 0));
        QTest::newRow("before") << -1.25 << QDateTime(QDate(1899, 12, 29), QTime(6, 0));
        QTest::newRow("2000") << 36526.75 << QDateTime(QDate(2000, 1, 1), QTime(18, 0));
    }

    void dates()
    {
        QFETCH(double, value);
        QFETCH(QDateTime, dateTime);
        QCOMPARE(FilerDateToDateTime(value), dateTime);
        QCOMPARE(DateTimeToFilerDate(dateTime), value);
    }

    void collectionItems()
    {
        int changes = 0;
        TCollection collection(&TNamedItem::staticMetaObject, nullptr, u"Items"_s);
        connect(&collection, &TCollection::Changed, [&] { ++changes; });
        auto *a = collection.Add();
        auto *b = collection.Insert(0);
        QCOMPARE(collection.ItemList(), (QList<TCollectionItem *>{b, a}));
        a->SetIndex(0);
        QCOMPARE(a->GetNamePath(), u"Items[0]"_s);
        collection.BeginUpdate();
        changes = 0;
        collection.Add();
        delete b;
        collection.EndUpdate();
        QCOMPARE(changes, 1);
        QCOMPARE(collection.Count(), 2);
        QVERIFY(collection.FindItemID(a->ID()) == a);
        QCOMPARE(ErrorOf([&] { collection.Items(2); }), u"List index out of bounds (2)"_s);
    }

private:
    // Seeds for the reader's fuzz target, written when KV_FILER_SEEDS names a directory.
    static void WriteSeed(const char *Name, const QByteArray &Bytes)
    {
        const QString dir = qEnvironmentVariable("KV_FILER_SEEDS");
        if (dir.isEmpty())
            return;
        QFile file(QDir(dir).filePath(QString::fromLatin1(Name) + QLatin1String(".bin")));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(Bytes) == Bytes.size());
    }
};

QTEST_MAIN(tst_Filer)
#include "tst_filer.moc"
