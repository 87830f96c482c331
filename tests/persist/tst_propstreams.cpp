#include "persist/ideCommon.h"
#include "persist/ideCommon_propstream.h"
#include "persist/ideLib_objstreams.h"
#include "persist/ideSystem_propstreams.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_classitems.h"
#include "platform/kvObjectText.h"
#include "platform/kvPersistent.h"
#include "platform/kvStreamDefaults.h"
#include "tests/testsupport.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace kv;
using kv::test::ErrorOf;

// A streamable object with a defined property (Extra) beside its Qt properties.
class TStreamThing : public QObject, public TPersistent
{
    Q_OBJECT
    Q_PROPERTY(QString Caption MEMBER Caption)
    Q_PROPERTY(int Count MEMBER Count)
    Q_PROPERTY(QStringList Lines MEMBER Lines)

public:
    Q_INVOKABLE explicit TStreamThing(QObject *parent = nullptr) : QObject(parent) {}
    QString Caption, Extra;
    int Count = 0;
    QStringList Lines;

    void DefineProperties(TFiler &Filer) override
    {
        Filer.DefineProperty(
            QStringLiteral("Extra"), [this](TReader &Reader) { Extra = Reader.ReadString(); },
            [this](TWriter &Writer) { Writer.WriteString(Extra); }, !Extra.isEmpty());
    }
    QString State() const { return QStringLiteral("%1|%2|%3|%4").arg(Caption).arg(Count).arg(Lines.join(u','), Extra); }
};

namespace {

QByteArray H(const char *Hex) { return QByteArray::fromHex(Hex); }
QByteArray S(const QByteArray &Text) { return char(Text.size()) + Text; }
QByteArray LE32(qint32 Value)
{
    const qint32 bytes = qToLittleEndian(Value);
    return QByteArray(reinterpret_cast<const char *>(&bytes), 4);
}
QByteArray ResHeader(const QByteArray &Name, qint32 Size) { return H("FF0A00") + Name + H("003010") + LE32(Size); }

// An unregistered root class with what a data module writes, and Extra after it, by hand.
QByteArray ModuleStream(const QByteArray &Extra)
{
    return "TPF0" + S("TDataModule1") + S("DataModule1") + S("Left") + H("0264") + S("Top") + H("0210") + S("Width")
        + H("032C01") + S("Height") + H("03C800") + S("OldCreateOrder") + H("08") + S("OnCreate") + H("07")
        + S("DataModuleCreate") + Extra + H("0000");
}

struct TStream : QBuffer
{
    explicit TStream(const QByteArray &Data = {})
    {
        setData(Data);
        open(QIODevice::ReadWrite);
    }
};

TStreamThing *Thing(QObject *Parent, const QString &Name)
{
    auto *thing = kv::test::Make<TStreamThing>(Parent, Name);
    thing->Caption = QStringLiteral("It's #1");
    thing->Count = 42;
    thing->Lines = {QStringLiteral("a"), QStringLiteral("b")};
    thing->Extra = QStringLiteral("defined");
    return thing;
}

QByteArray Written(const std::function<void(QIODevice &)> &Write)
{
    TStream stream;
    Write(stream);
    return stream.data();
}

int g_designerAsked = 0;

} // namespace

class tst_PropStreams : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        RegisterClass<TStreamThing>();
        ideCommon::Initialize();
    }
    // The prototypes that measured defaults go with the unit stop.
    void cleanupTestCase() { FinalizeStreamDefaults(); }
    void cleanup() { GetDesignerProc = nullptr; }

    // A component goes as itself, with what it owns; anything else through the holder, whose
    // P carries its properties. Streams and files, binary and text, read back equal.
    void objectRoundTrips_data()
    {
        QTest::addColumn<int>("how");
        QTest::addColumn<bool>("component");
        const char *const names[] = {"binary stream", "text stream", "binary file", "text file"};
        for (int how = 0; how < 4; ++how) {
            QTest::addRow("%s, component", names[how]) << how << true;
            QTest::addRow("%s, holder", names[how]) << how << false;
        }
    }
    void objectRoundTrips()
    {
        QFETCH(int, how);
        QFETCH(bool, component);
        QWidget form, copyForm;
        form.setObjectName(QStringLiteral("Form1"));
        std::unique_ptr<TStreamThing> loose(component ? nullptr : Thing(nullptr, {}));
        TStreamThing copyLoose, *original = component ? Thing(&form, QStringLiteral("Thing1")) : loose.get();
        QObject *written = component ? static_cast<QObject *>(&form) : original;
        QObject *target = component ? static_cast<QObject *>(&copyForm) : &copyLoose;
        QCOMPARE(IsStreamComponent(written), component);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("obj.dfm"));
        TStream stream;
        if (how < 2) {
            (how ? WriteObjToTextStream : WriteObjToStream)(stream, written);
            QCOMPARE(stream.data().contains("P.Caption = 'It''s #1'"), how == 1 && !component);
            stream.seek(0);
            (how ? ReadObjFromTextStream : ReadObjFromStream)(stream, target);
        } else {
            (how == 3 ? WriteObjToTextFile : WriteObjToFile)(written, file);
            (how == 3 ? ReadObjFromTextFile : ReadObjFromFile)(target, file);
        }
        const auto *copy = component ? copyForm.findChild<TStreamThing *>(QStringLiteral("Thing1")) : &copyLoose;
        QVERIFY(copy);
        QCOMPARE(copy->State(), original->State());
        if (how == 2)
            QCOMPARE(ErrorOf([&] { ReadObjFromFile(target, file + u'x'); }).section(u':', 0, 0),
                     LoadStr(SErrFileRead).arg(file + u'x').section(u':', 0, 0));
    }

    // The prefix counts the block, which holds the listed properties only (never the root's
    // own defined one); reading sets exactly those, keeps the target's name and stops at the
    // prefix. A stream that has the root's defined property does not set it.
    void subsetStreams()
    {
        std::unique_ptr<TStreamThing> source(Thing(nullptr, QStringLiteral("Source")));
        const QByteArray empty = Written([&](QIODevice &S) { WritePropsToStream(S, source.get(), {}); });
        QCOMPARE(empty.mid(4), QByteArray("TPF0" + S("TStreamThing") + S("Source") + H("0000")));
        QCOMPARE(qFromLittleEndian<qint32>(empty.constData()), empty.size() - 4);
        QCOMPARE(Written([&](QIODevice &S) { WritePropsToStream(S, nullptr, {}); }), QByteArray());

        const QStringList names{QStringLiteral("caption"), QStringLiteral("Lines"), QStringLiteral("Nothing")};
        TStream stream(Written([&](QIODevice &S) { WritePropsToStream(S, source.get(), names); }) + "tail");
        QVERIFY(!stream.data().contains("Extra"));
        TStreamThing target, other;
        target.setObjectName(QStringLiteral("Target"));
        ReadPropsFromStream(stream, &target);
        QCOMPARE(target.State(), QStringLiteral("It's #1|0|a,b|"));
        QCOMPARE(target.objectName(), QStringLiteral("Target"));
        QCOMPARE(stream.readAll(), QByteArray("tail"));

        const QByteArray whole = Written([&](QIODevice &S) { WriteComponent(S, source.get()); });
        QVERIFY(whole.contains("Extra"));
        TStream withDefined(LE32(qint32(whole.size())) + whole);
        ReadPropsFromStream(withDefined, &other);
        QCOMPARE(other.State(), QStringLiteral("It's #1|42|a,b|"));
        QCOMPARE(other.objectName(), QString());
        const QByteArray block = "TPF0" + S("TStreamThing") + S("X") + H("0000");
        for (const QByteArray &bad : {H("0100"), QByteArray(LE32(-1) + block), QByteArray(LE32(qint32(block.size() + 1)) + block),
                                      QByteArray(LE32(0x7FFFFFFF) + block)}) {
            TStream damaged(bad);
            QCOMPARE(ErrorOf([&] { ReadPropsFromStream(damaged, &other); }), LoadStr(SErrBadPropStream));
        }
    }

    // A header is found whole or not at all, and CheckOnly never moves the position.
    void resourceHeaderProbe_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("headerSize"); // 0: none
        QTest::addRow("header") << ResHeader("TFORM1", 0) + "TPF0" << 16;
        QTest::addRow("other type") << H("FF0B00") + "A" + H("00301000000000") << 0;
        QTest::addRow("name without end") << H("FF0A00") + QByteArray(70, 'A') << 0;
        QTest::addRow("cut after the name") << H("FF0A00") + "TFORM1" + H("003010") << 0;
        QTest::addRow("longest name") << ResHeader(QByteArray(63, 'N'), 0) << 73;
        QTest::addRow("too long a name") << ResHeader(QByteArray(64, 'N'), 0) << 0;
    }
    void resourceHeaderProbe()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, headerSize);
        TStream stream("xy" + bytes);
        stream.seek(2);
        QCOMPARE(SmartSkipResHeader(stream, true), headerSize > 0);
        QCOMPARE(stream.pos(), 2);
        QCOMPARE(SmartSkipResHeader(stream, false), headerSize > 0);
        QCOMPARE(stream.pos(), 2 + headerSize);
    }

    // The probes read the same from the bare form, after a resource header and from the text
    // form, and leave the position alone. Only events and the geometry make a data module.
    void rootProbes_data()
    {
        QTest::addColumn<QByteArray>("binary");
        QTest::addColumn<bool>("dataModule");
        QTest::addColumn<QString>("className");
        QTest::addRow("geometry and events") << ModuleStream({}) << true << QString();
        QTest::addRow("and a caption") << ModuleStream(S("Caption") + H("06") + S("Form")) << false << QString();
        // A registered class decides by itself, over properties that would make a form.
        const std::unique_ptr<TStreamThing> thing(Thing(nullptr, QStringLiteral("Thing1")));
        QTest::addRow("registered non-widget") << Written([&](QIODevice &S) { WriteComponent(S, thing.get()); }) << true
                                               << QStringLiteral("TStreamThing");
    }
    void rootProbes()
    {
        QFETCH(QByteArray, binary);
        QFETCH(bool, dataModule);
        QFETCH(QString, className);
        TStream in(binary);
        const QByteArray text = Written([&](QIODevice &S) { ObjectBinaryToText(in, S); });
        for (const QByteArray &bytes : {binary, QByteArray(ResHeader("TX", qint32(binary.size())) + binary), text}) {
            TStream stream("--" + bytes);
            stream.seek(2);
            QCOMPARE(IsTextStream(stream), bytes == text);
            QCOMPARE(StreamContainsDataModule(stream), dataModule);
            const QMetaObject *found = GetClassFromStream(stream);
            QCOMPARE(found ? QString::fromLatin1(found->className()) : QString(), className);
            QCOMPARE(stream.pos(), 2);
        }
    }

    // Damaged streams raise what is wrong with them, and the probes leave the position alone.
    void probesRefuseDamagedStreams()
    {
        const std::pair<QByteArray, QString> damaged[] = {
            {ModuleStream({}).left(40), LoadStr(SReadError)},
            {"object Form1: TForm1\n  Left = \nend\n", QStringLiteral("Line 4: 'end' expected")}};
        for (const auto &[bytes, error] : damaged) {
            TStream stream(bytes);
            QCOMPARE(ErrorOf([&] { StreamContainsDataModule(stream); }), error);
            QCOMPARE(stream.pos(), 0);
        }
        TStream other("TPF1 that is no component stream");
        QCOMPARE(ErrorOf([&] { GetClassFromStream(other); }), LoadStr(SInvalidStreamFormat));
        QCOMPARE(other.pos(), 0);
        TStream shortText("object X");
        QCOMPARE(ErrorOf([&] { IsTextStream(shortText); }), LoadStr(SReadError));
    }

    // Read mode holds the text; the writing modes (every mode masked to two bits) take the
    // content on Commit only, and tell the designer; a string list takes lines.
    void propStream_data()
    {
        QTest::addColumn<QString>("prop");
        QTest::addColumn<quint32>("mode");
        QTest::addColumn<QByteArray>("written");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("state"); // after Commit, or the error
        const QString error = LoadStr(SErrBadPropStream), kept = QStringLiteral("It's #1|42|a,b|defined");
        QTest::addRow("read a string") << "Caption" << fmOpenRead << QByteArray() << QByteArray("It's #1") << kept;
        QTest::addRow("read lines") << "lines" << quint32(0x100) << QByteArray() << QByteArray("a\nb") << kept;
        QTest::addRow("write lines") << "Lines" << fmOpenWrite << QByteArray("x\r\ny\n") << QByteArray("x\r\ny\n")
                                     << "It's #1|42|x,y|defined";
        QTest::addRow("create writes") << "Caption" << fmCreate << QByteArray("Grüße") << QByteArray("Grüße")
                                       << "Grüße|42|a,b|defined";
        QTest::addRow("read and write") << "Caption" << fmOpenReadWrite << QByteArray("!") << QByteArray("!t's #1")
                                        << "!t's #1|42|a,b|defined";
        QTest::addRow("integer") << "Count" << fmOpenRead << QByteArray() << QByteArray() << error;
        QTest::addRow("missing") << "Missing" << fmOpenWrite << QByteArray() << QByteArray() << error;
    }
    void propStream()
    {
        QFETCH(QString, prop);
        QFETCH(quint32, mode);
        QFETCH(QByteArray, written);
        QFETCH(QByteArray, content);
        QFETCH(QString, state);
        std::unique_ptr<TStreamThing> thing(Thing(nullptr, {}));
        g_designerAsked = 0;
        GetDesignerProc = [](const QObject *) -> IFormDesigner * { return ++g_designerAsked, nullptr; };
        std::unique_ptr<TPropStream> stream;
        const QString error = ErrorOf([&] { stream = std::make_unique<TPropStream>(thing.get(), prop, mode); });
        QCOMPARE(error, stream ? QString() : state);
        if (!stream)
            return;
        QCOMPARE(stream->isWritable(), stream->Writes());
        if (stream->isWritable())
            stream->write(written);
        QCOMPARE(stream->data(), content);
        QCOMPARE(thing->Caption, QStringLiteral("It's #1"));
        stream->Commit();
        QCOMPARE(thing->State(), state);
        QCOMPARE(g_designerAsked, stream->Writes() ? 1 : 0);
        thing.reset();
        QCOMPARE(ErrorOf([&] { stream->Commit(); }), stream->Writes() ? LoadStr(SErrBadPropStream) : QString());
    }
};

QTEST_MAIN(tst_PropStreams)
#include "tst_propstreams.moc"
