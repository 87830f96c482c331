#include "platform/kvObjectText.h"

#include "platform/kvException.h"
#include "platform/kvExtended.h"
#include "tests/streamsupport.h"
#include "tests/testsupport.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QTest>

#include <bit>
#include <cmath>
#include <limits>

using namespace kv;
using kv::test::ErrorOf;
using kv::test::Convert;
using kv::test::TStreamConverter;
using kv::test::ToBinary;
using kv::test::ToText;

namespace {

QByteArray H(const char *Hex) { return QByteArray::fromHex(Hex); }
// A short string: its length byte and its bytes.
QByteArray S(const QByteArray &Text) { return char(Text.size()) + Text; }
template <typename T>
QByteArray LE(T Value)
{
    QByteArray bytes;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        bytes.append(char(std::uint64_t(Value) >> (8 * i)));
    return bytes;
}

// A root with one property V, in both forms.
QByteArray ValueStream(const QByteArray &Value) { return "TPF0" + S("TForm") + S("Form1") + S("V") + Value + H("0000"); }
QByteArray ValueText(const QByteArray &Value) { return "object Form1: TForm\n  V = " + Value + "\nend\n"; }

// Every kind of content: prefixes, children, collections, lists, wrapped strings, binary lines.
const QByteArray FormText = R"(inherited Form1: TForm1
  Left = 192
  Caption = 'It''s'#13#10'two lines'
  font.Name = 'Sans'
  Hint = 'A hint that is long enough to be cut into pieces of sixty-four c' +
    'haracters, the way the platform wraps long strings in its text f' +
    'orm - and a last piece with #'#9'tab'
  Items.Strings = (
    'a'
    'b'
    (
      1
      -70000
      4294967296
      ''))
  Data = {
    000102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F
    FFFE}
  Options = [opOne, opTwo]
  Flags = []
  Ref = Form2.Button1
  Empty = nil
  Nothing = Null
  Visible = True
  Scale = 1.5
  Ratio = 0.25s
  Price = 19.99c
  Stamp = 45000.75d
  Title = 'Gr'#252#223'e '#8364#55357#56832
  Items = <
    item
      Caption = 'x'
      Sub = <>
    end
    item [3]
    end>
  object Button1: TButton [2]
    OnClicked = Button1Click
    object TLabel
    end
  end
  inline Frame1: TFrame1
    end = 1
    object.x = False
  end
end
)";

} // namespace

class tst_ObjectText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values_data()
    {
        QTest::addColumn<QByteArray>("binary");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("canonical"); // text back to binary gives the same bytes
        const QByteArray a64(64, 'a');
        QTest::newRow("null") << H("00") << QByteArray("Null") << true;
        QTest::newRow("int8") << H("02 80") << QByteArray("-128") << true;
        QTest::newRow("int16") << H("03 80 00") << QByteArray("128") << true;
        QTest::newRow("int32") << H("04 00 00 00 80") << QByteArray("-2147483648") << true;
        QTest::newRow("int64") << H("13 00 00 00 80 00 00 00 00") << QByteArray("2147483648") << true;
        QTest::newRow("int64 min") << H("13 0000000000000080") << QByteArray("-9223372036854775808") << true;
        QTest::newRow("int32 holding 5") << H("04 05 00 00 00") << QByteArray("5") << false;
        QTest::newRow("extended 2") << H("05 0000000000000080 0040") << QByteArray("2.0") << true;
        QTest::newRow("extended 0.1") << H("05 00D0CCCCCCCCCCCC FB3F") << QByteArray("0.1") << true;
        QTest::newRow("extended -0") << H("05 0000000000000000 0080") << QByteArray("-0.0") << true;
        QTest::newRow("extended -inf") << H("05 0000000000000080 FFFF") << QByteArray("-Inf") << true;
        QTest::newRow("string") << H("06 09") + "It's\r\ntwo" << QByteArray("'It''s'#13#10'two'") << true;
        QTest::newRow("string 1252") << H("06 02 80 41") << QByteArray("#8364'A'") << false;
        QTest::newRow("long string") << H("0C 2C010000") + QByteArray(300, 'a')
                                     << "'" + a64 + "' +\n    '" + a64 + "' +\n    '" + a64 + "' +\n    '" + a64
                                            + "' +\n    '" + QByteArray(44, 'a') + "'"
                                     << true;
        QTest::newRow("wide string") << H("12 02000000 E900 3DD8") << QByteArray("#233#55357") << true;
        QTest::newRow("wide ascii") << H("12 01000000 4100") << QByteArray("'A'") << false;
        QTest::newRow("empty string") << H("06 00") << QByteArray("''") << true;
        QTest::newRow("ident") << H("07") + S("Form2.Button1") << QByteArray("Form2.Button1") << true;
        QTest::newRow("false true nil") << H("01 08 09 0D 00") << QByteArray("(\n    False\n    True\n    nil)") << true;
        QTest::newRow("binary") << H("0A 03000000 0A0B0C") << QByteArray("{\n    0A0B0C}") << true;
        QTest::newRow("binary 33") << H("0A 21000000") + QByteArray(33, '\x5A')
                                   << "{\n    " + QByteArray(64, '5').replace("55", "5A") + "\n    5A}" << true;
        QTest::newRow("binary empty") << H("0A 00000000") << QByteArray("{}") << true;
        QTest::newRow("set") << H("0B") + S("opOne") + S("opTwo") + H("00") << QByteArray("[opOne, opTwo]") << true;
        QTest::newRow("set empty") << H("0B 00") << QByteArray("[]") << true;
        QTest::newRow("string, +Inf") << H("01 06 01 61 05 0000000000000080 FF7F 00")
                                      << QByteArray("(\n    'a'\n    +Inf)") << true;
        QTest::newRow("list") << H("01 06 01 61 01 00 00") << QByteArray("(\n    'a'\n    ())") << true;
        QTest::newRow("collection") << H("0E 01") + S("Caption") + H("06 01 78 00 02 03 01 00 00")
                                    << QByteArray("<\n    item\n      Caption = 'x'\n    end\n    item [3]\n    end>")
                                    << true;
        QTest::newRow("single") << H("0F CDCCCC3D") << QByteArray("0.1s") << true;
        QTest::newRow("currency") << H("10") + LE(qint64(125000)) << QByteArray("12.5c") << true;
        QTest::newRow("currency small") << H("10") + LE(qint64(-1)) << QByteArray("-0.0001c") << true;
        QTest::newRow("currency min") << H("10 0000000000000080") << QByteArray("-922337203685477.5808c") << true;
        QTest::newRow("date") << H("11") + LE(std::bit_cast<quint64>(45000.5)) << QByteArray("45000.5d") << true;
    }
    void values()
    {
        QFETCH(QByteArray, binary);
        QFETCH(QByteArray, text);
        QFETCH(bool, canonical);
        QCOMPARE(ToText(ValueStream(binary)), ValueText(text));
        const QByteArray back = ToBinary(ValueText(text));
        QCOMPARE(ToText(back), ValueText(text));
        if (canonical)
            QCOMPARE(back.toHex(' '), ValueStream(binary).toHex(' '));
    }

    void objects_data()
    {
        QTest::addColumn<QByteArray>("binary");
        QTest::addColumn<QByteArray>("text");
        const QByteArray empty = H("0000");
        QTest::newRow("inherited") << H("F1") + S("TA") + S("A") + empty << QByteArray("inherited A: TA\nend\n");
        QTest::newRow("inline at 300") << H("F6 03 2C01") + S("TA") + S("A") + empty
                                       << QByteArray("inline A: TA [300]\nend\n");
        QTest::newRow("class name of 240") << H("F0 F0") + QByteArray(240, 'T') + S("A") + empty
                                           << "object A: " + QByteArray(240, 'T') + "\nend\n";
        QTest::newRow("child, unnamed") << "TPF0" + S("TA") + S("A") + H("00") + H("F2 02 00") + S("TB") + S("")
                                               + empty + H("00")
                                        << QByteArray("object A: TA\n  object TB [0]\n  end\nend\n");
    }
    void objects()
    {
        QFETCH(QByteArray, binary);
        QFETCH(QByteArray, text);
        if (!binary.startsWith("TPF0"))
            binary.prepend("TPF0");
        QCOMPARE(ToText(binary), text);
        QCOMPARE(ToBinary(text).toHex(' '), binary.toHex(' '));
    }

    void wholeFormRoundTrips()
    {
        const QByteArray binary = ToBinary(FormText);
        QCOMPARE(ToText(binary), FormText);
        QCOMPARE(ToBinary(ToText(binary)), binary);

        // The resource header: 0xFF, type 10, the class in upper case, flags 0x1030, the size.
        const QByteArray resource = Convert(ObjectTextToResource, FormText);
        QCOMPARE(resource.left(16), H("FF 0A00") + "TFORM1" + H("00 3010") + LE(quint32(binary.size())));
        QCOMPARE(resource.mid(16), binary);
        QCOMPARE(Convert(ObjectResourceToText, resource), FormText);

        // Both converters stop after one object and leave the device there (the text's last
        // line break is not part of it).
        for (const auto &[converter, one] : {std::pair<TStreamConverter, QByteArray>{ObjectBinaryToText, binary}, {ObjectTextToBinary, FormText}}) {
            const QByteArray single = Convert(converter, one);
            QBuffer in;
            in.setData(one + one);
            in.open(QIODevice::ReadOnly);
            QBuffer out;
            out.open(QIODevice::WriteOnly);
            converter(in, out);
            QCOMPARE(in.pos(), one.size() - (one == FormText ? 1 : 0));
            converter(in, out);
            QCOMPARE(out.data(), single + single);
        }
    }

    void floats()
    {
        const double denormal = std::numeric_limits<double>::denorm_min();
        const std::pair<double, const char *> doubles[] = {
            {0.1, "0.1"},       {1e300, "1E300"},    {-0.0, "-0.0"}, {denormal, "5E-324"},
            {2.0, "2.0"},       {1e-7, "1E-7"},      {123456789.0, "123456789.0"},
            {1.0 / 3, "0.3333333333333333"},         {std::numeric_limits<double>::max(), "1.7976931348623157E308"},
            {-std::numeric_limits<double>::infinity(), "-Inf"}, {std::numeric_limits<double>::quiet_NaN(), "+NaN"},
        };
        for (const auto &[value, expected] : doubles) {
            const auto bytes = DoubleToExtended(value);
            const QByteArray binary = ValueStream(H("05") + QByteArray(reinterpret_cast<const char *>(bytes.data()), 10));
            QCOMPARE(ToText(binary), ValueText(expected));
            QCOMPARE(ToBinary(ValueText(expected)), binary);
            const QByteArray date = ValueStream(H("11") + LE(std::bit_cast<quint64>(value)));
            QCOMPARE(ToBinary(ToText(date)), date);
        }
        for (const float value : {0.1f, 3.4028235e38f, std::numeric_limits<float>::denorm_min(), -1.0f / 3,
                                  std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::quiet_NaN()}) {
            const QByteArray binary = ValueStream(H("0F") + LE(std::bit_cast<quint32>(value)));
            QCOMPARE(ToBinary(ToText(binary)), binary);
        }
        QCOMPARE(ToText(ValueStream(H("0F") + LE(std::bit_cast<quint32>(1e-45f)))), ValueText("1E-45s"));
        QCOMPARE(ToText(ValueStream(H("11") + LE(std::bit_cast<quint64>(-std::numeric_limits<double>::infinity())))),
                 ValueText("-Infd"));
        // Text typed by hand: hex, signs, more decimals than currency holds (rounded half away).
        QCOMPARE(ToText(ToBinary(ValueText("($FF -$10 +7 1.23456c -1.00005c 1e2 1.5E+3s)"))),
                 ValueText("(\n    255\n    -16\n    7\n    1.2346c\n    -1.0001c\n    100.0\n    1500.0s)"));
    }

    void badText_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const QByteArray &body, const char *message) {
            QTest::newRow(name) << "object A: TA\n" + body << QString::fromUtf8(message);
        };
        QTest::newRow("not an object") << QByteArray("begin A: TA\nend") << QStringLiteral("Line 1: 'object' expected");
        row("unterminated string", "  S = 'abc\nend\n", "Line 2: Unterminated string");
        row("missing end", "  X = 1\n", "Line 3: 'end' expected");
        row("missing =", "  X 1\nend", "Line 2: '=' expected");
        row("missing value", "  X = =\nend", "Line 2: Property value expected");
        row("bad hex", "  D = {\n    0G}\nend", "Line 3: Invalid binary data");
        row("odd hex", "  D = {ABC}\nend", "Line 2: Invalid binary data");
        row("open binary", "  D = {AB", "Line 2: '}' expected");
        row("open list", "  L = ('a'\n", "Line 3: ')' expected");
        row("open collection", "  C = <item end", "Line 2: '>' expected");
        row("open set", "  S = [a b]\nend", "Line 2: ']' expected");
        row("plus without string", "  S = 'a' + 1\nend", "Line 2: String expected");
        row("bad char code", "  S = #x\nend", "Line 2: Invalid number #");
        row("char code range", "  S = #1114112\nend", "Line 2: Number #1114112 is out of range");
        row("integer range", "  X = 9223372036854775808\nend", "Line 2: Number 9223372036854775808 is out of range");
        row("float range", "  X = 1e400\nend", "Line 2: Number 1e400 is out of range");
        row("hex range", "  X = $10000000000000000\nend", "Line 2: Number $10000000000000000 is out of range");
        row("hex suffix", "  X = $1Fs\nend", "Line 2: Invalid number $1Fs");
        row("bad child position", "  object B: TB [x]\n  end\nend", "Line 2: Integer expected");
        row("null in list", "  L = (Null)\nend", "Line 2: Null can't be an item of a list");
        QTest::newRow("long name") << "object A: TA\n  " + QByteArray(256, 'n') + " = 1\nend"
                                   << QStringLiteral("Line 2: Name %1 is longer than 255 characters").arg(QString(256, u'n'));
        QTest::newRow("CR LF lines") << QByteArray("object A: TA\r\n  X = 1\r\n\r\n  S = 'a\r\nend")
                                     << QStringLiteral("Line 4: Unterminated string");
        QTest::newRow("CR lines") << QByteArray("object A: TA\r  X = 1\r\r  S = 'a\rend") << QStringLiteral("Line 4: Unterminated string");
        row("too deep", "  L = " + QByteArray(1000, '(') + QByteArray(1000, ')') + "\nend",
            "Line 2: Nesting deeper than 1000 levels");
    }
    void badText()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, message);
        QCOMPARE(ErrorOf([&] { ToBinary(text); }), message);
    }

    void deepestNestingConverts()
    {
        const QByteArray text = ValueText(QByteArray(999, '(') + QByteArray(999, ')'));
        const QByteArray binary = ToBinary(text);
        QCOMPARE(binary, ValueStream(QByteArray(999, '\x01') + QByteArray(999, '\0')));
        QCOMPARE(ToBinary(ToText(binary)), binary);
    }

    void badBinary_data()
    {
        QTest::addColumn<QByteArray>("binary");
        QTest::addColumn<QString>("message");
        const QByteArray root = "TPF0" + S("TA") + S("A");
        QTest::newRow("signature") << QByteArray("TPF1") + S("TA") << QStringLiteral("Invalid stream format");
        QTest::newRow("unknown tag") << root + S("X") + H("14") << QStringLiteral("Invalid stream format: unknown value type 20 at offset 11");
        QTest::newRow("2 GB string") << root + S("X") + H("0C FFFFFF7F 41")
                                     << QStringLiteral("Invalid stream format: length 2147483647 at offset 12 exceeds the 1 bytes left");
        QTest::newRow("negative binary") << root + S("X") + H("0A FFFFFFFF")
                                         << QStringLiteral("Invalid stream format: length -1 at offset 12 exceeds the 0 bytes left");
        QTest::newRow("flags") << "TPF0" + H("F8") << QStringLiteral("Invalid stream format: unknown object flags 248 at offset 4");
        QTest::newRow("inherited inline") << "TPF0" + H("F5") << QStringLiteral("Invalid stream format: unknown object flags 245 at offset 4");
        QTest::newRow("name") << root + S("a b") << QStringLiteral("Invalid stream format: 'a b' at offset 9 is not a valid name");
        QTest::newRow("item without list") << root + S("C") + H("0E 02 01 00")
                                           << QStringLiteral("Invalid stream format: unknown value type 0 at offset 14");
        QTest::newRow("too deep") << root + S("L") + QByteArray(1000, '\x01')
                                  << QStringLiteral("Invalid stream format: nesting deeper than 1000 levels at offset 1010");
    }
    void badBinary()
    {
        QFETCH(QByteArray, binary);
        QFETCH(QString, message);
        QCOMPARE(ErrorOf([&] { ToText(binary); }), message);
    }

    void damagedBinary()
    {
        const QByteArray binary = ToBinary(FormText);
        // Cut anywhere, the stream ends early, or a length field reaches past the cut.
        const QRegularExpression lengthError(QStringLiteral("^Invalid stream format: length \\d+ at offset (\\d+) exceeds the (\\d+) bytes left$"));
        for (qsizetype size = 0; size < binary.size(); ++size) {
            const QString error = ErrorOf([&] { ToText(binary.left(size)); });
            const QString ends = size < 4 ? QStringLiteral("Invalid stream format")
                                          : QStringLiteral("Invalid stream format: the stream ends at offset %1").arg(size);
            const QRegularExpressionMatch length = lengthError.match(error);
            QVERIFY2(error == ends || (length.hasMatch() && length.captured(1).toInt() + 4 + length.captured(2).toInt() == size),
                     qPrintable(error));
        }
        // Any byte changed: a clean conversion or an error, never a crash.
        for (qsizetype i = 4; i < binary.size(); ++i) {
            for (const char b : {'\x00', '\x01', '\x13', '\x7F', '\xF2', '\xFF'}) {
                QByteArray damaged = binary;
                damaged[i] = b;
                ErrorOf([&] { ToText(damaged); });
            }
        }
    }

    void badResource_data()
    {
        QTest::addColumn<QByteArray>("resource");
        QTest::addColumn<QString>("message");
        QTest::newRow("first byte") << H("FE 0A00 41 00 3010 00000000") << QStringLiteral("Invalid resource header");
        QTest::newRow("type") << H("FF 0B00 41 00 3010 00000000") << QStringLiteral("Invalid resource header");
        QTest::newRow("no name end") << H("FF 0A00") + QByteArray(300, 'A') + H("00 3010 00000000")
                                     << QStringLiteral("Invalid resource header");
        QTest::newRow("short") << H("FF 0A00 41 00 3010 0000") << QStringLiteral("Invalid resource header");
        QTest::newRow("size") << H("FF 0A00 41 00 3010 FFFFFFFF 00")
                              << QStringLiteral("Invalid stream format: length 4294967295 at offset 7 exceeds the 1 bytes left");
    }
    void badResource()
    {
        QFETCH(QByteArray, resource);
        QFETCH(QString, message);
        QCOMPARE(ErrorOf([&] { Convert(ObjectResourceToText, resource); }), message);
    }
};

QTEST_GUILESS_MAIN(tst_ObjectText)
#include "tst_objecttext.moc"
