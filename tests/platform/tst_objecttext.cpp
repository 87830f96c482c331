#include "platform/kvObjectText.h"

#include "platform/kvExtended.h"
#include "tests/streamsupport.h"
#include "tests/testsupport.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QTest>

#include <bit>
#include <limits>

using namespace kv;
using namespace kv::test;
using namespace Qt::StringLiterals;

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
  font.Name = 'Sans'
  Hint = 'A hint that is long enough to be cut into pieces of sixty-four c' +
    'haracters, the way the platform wraps long strings in its text f' +
    'orm - and a last piece with #'#9'tab'
  Items.Strings = (
    'a'
    (
      1
      -70000
      4294967296
      ''))
  Data = {
    000102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F
    FFFE}
  Options = [opOne, opTwo]
  Scale = 1.5
  Ratio = 0.25s
  Price = 19.99c
  Stamp = 45000.75d
  Title = 'Gr'#252#223'e '#8364#55357#56832
  Items = <
    item [3]
      Sub = <>
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
    // Binary to text; the text back to itself, and to the same bytes where it is the canonical form.
    void conversions_data()
    {
        QTest::addColumn<QByteArray>("binary");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("canonical");
        const auto value = [](const char *name, const QByteArray &binary, const QByteArray &text,
                              bool canonical = true) {
            QTest::newRow(name) << ValueStream(binary) << ValueText(text) << canonical;
        };
        const QByteArray a64(64, 'a');
        value("null", H("00"), "Null");
        // Each integer in the fewest bytes that hold it: the bounds of int8, int16, int32 and int64.
        value("integers", H("01 02 80 03 8000 04 00000080 13 0000008000000000 13 0000000000000080 00"),
              "(\n    -128\n    128\n    -2147483648\n    2147483648\n    -9223372036854775808)");
        value("int32 holding 5", H("04 05 00 00 00"), "5", false);
        value("string", H("06 09") + "It's\r\ntwo", "'It''s'#13#10'two'");
        value("string 1252", H("06 02 80 41"), "#8364'A'", false);
        value("long string", H("0C 2C010000") + QByteArray(300, 'a'),
              QByteArray("'" + a64 + "' +\n    ").repeated(4) + "'" + QByteArray(44, 'a') + "'");
        value("wide string", H("12 02000000 E900 3DD8"), "#233#55357");
        value("wide ascii", H("12 01000000 4100"), "'A'", false);
        value("empty string", H("06 00"), "''");
        value("ident", H("07") + S("Form2.Button1"), "Form2.Button1");
        value("false true nil", H("01 08 09 0D 00"), "(\n    False\n    True\n    nil)");
        value("binary 33", H("0A 21000000") + QByteArray(33, '\x5A'),
              "{\n    " + QByteArray(64, '5').replace("55", "5A") + "\n    5A}");
        value("binary empty", H("0A 00000000"), "{}");
        value("set", H("0B") + S("opOne") + S("opTwo") + H("00"), "[opOne, opTwo]");
        value("set empty", H("0B 00"), "[]");
        value("list", H("01 06 01 61 01 00 00"), "(\n    'a'\n    ())");
        value("collection", H("0E 01") + S("Caption") + H("06 01 78 00 02 03 01 00 00"),
              "<\n    item\n      Caption = 'x'\n    end\n    item [3]\n    end>");
        value("singles", H("01 0F CDCCCC3D 0F") + LE(std::bit_cast<quint32>(1e-45f)) + H("00"),
              "(\n    0.1s\n    1E-45s)");
        value("currencies", H("01 10") + LE(qint64(125000)) + H("10") + LE(qint64(-1)) + H("10 0000000000000080 00"),
              "(\n    12.5c\n    -0.0001c\n    -922337203685477.5808c)");
        const quint64 minusInf = std::bit_cast<quint64>(-std::numeric_limits<double>::infinity());
        value("dates", H("01 11") + LE(std::bit_cast<quint64>(45000.5)) + H("11") + LE(minusInf) + H("00"),
              "(\n    45000.5d\n    -Infd)");

        // Whole streams, for the object prefixes.
        const auto object = [](const char *name, const QByteArray &binary, const QByteArray &text) {
            QTest::newRow(name) << "TPF0" + binary << text << true;
        };
        const QByteArray end = H("0000");
        object("inherited", H("F1") + S("TA") + S("A") + end, "inherited A: TA\nend\n");
        object("inline at 300", H("F6 03 2C01") + S("TA") + S("A") + end, "inline A: TA [300]\nend\n");
        object("class name of 240", H("F0 F0") + QByteArray(240, 'T') + S("A") + end,
               "object A: " + QByteArray(240, 'T') + "\nend\n");
        object("child, unnamed", S("TA") + S("A") + H("00 F2 02 00") + S("TB") + S("") + end + H("00"),
               "object A: TA\n  object TB [0]\n  end\nend\n");
    }
    void conversions()
    {
        QFETCH(QByteArray, binary);
        QFETCH(QByteArray, text);
        QFETCH(bool, canonical);
        QCOMPARE(ToText(binary), text);
        const QByteArray back = ToBinary(text);
        QCOMPARE(ToText(back), text);
        if (canonical)
            QCOMPARE(back.toHex(' '), binary.toHex(' '));
    }

    void wholeFormRoundTrips()
    {
        const QByteArray binary = ToBinary(FormText);
        QCOMPARE(ToText(binary), FormText);

        // The resource header: 0xFF, type 10, the class in upper case, flags 0x1030, the size.
        const QByteArray resource = Convert(ObjectTextToResource, FormText);
        QCOMPARE(resource.left(16), H("FF 0A00") + "TFORM1" + H("00 3010") + LE(quint32(binary.size())));
        QCOMPARE(resource.mid(16), binary);
        QCOMPARE(Convert(ObjectResourceToText, resource), FormText);

        // Both converters stop after one object and leave the device there (the text's last
        // line break is not part of it).
        for (const auto &[converter, one] : {std::pair<TStreamConverter, QByteArray>{ObjectBinaryToText, binary}, {ObjectTextToBinary, FormText}}) {
            QBuffer in;
            in.setData(one + one);
            in.open(QIODevice::ReadOnly);
            QBuffer out;
            out.open(QIODevice::WriteOnly);
            converter(in, out);
            QCOMPARE(in.pos(), one.size() - (one == FormText ? 1 : 0));
            converter(in, out);
            QCOMPARE(out.data(), Convert(converter, one).repeated(2));
        }

        // The deepest nesting the readers take, one level short of the limit.
        const QByteArray deepest = ToBinary(ValueText(QByteArray(999, '(') + QByteArray(999, ')')));
        QCOMPARE(deepest, ValueStream(QByteArray(999, '\x01') + QByteArray(999, '\0')));
        QCOMPARE(ToBinary(ToText(deepest)), deepest);
    }

    void floats()
    {
        const double denormal = std::numeric_limits<double>::denorm_min();
        const std::pair<double, const char *> doubles[] = {
            {0.1, "0.1"},       {1e300, "1E300"},    {-0.0, "-0.0"}, {denormal, "5E-324"},
            {2.0, "2.0"},       {1e-7, "1E-7"},      {123456789.0, "123456789.0"},
            {1.0 / 3, "0.3333333333333333"},         {std::numeric_limits<double>::max(), "1.7976931348623157E308"},
            {-std::numeric_limits<double>::infinity(), "-Inf"}, {std::numeric_limits<double>::infinity(), "+Inf"},
            {std::numeric_limits<double>::quiet_NaN(), "+NaN"},
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
        // Text typed by hand: hex, signs, more decimals than currency holds (rounded half away).
        QCOMPARE(ToText(ToBinary(ValueText("($FF -$10 +7 1.23456c -1.00005c 1e2 1.5E+3s)"))),
                 ValueText("(\n    255\n    -16\n    7\n    1.2346c\n    -1.0001c\n    100.0\n    1500.0s)"));
    }

    // Each converter's message for bad input, with the line or the offset where it was found.
    void badInput_data()
    {
        QTest::addColumn<TStreamConverter>("converter");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, TStreamConverter convert, const QByteArray &input, const QString &message) {
            QTest::newRow(name) << convert << input << message;
        };
        const auto text = [&](const char *name, const QByteArray &body, const char *message) {
            row(name, ObjectTextToBinary, "object A: TA\n" + body, QString::fromUtf8(message));
        };
        const auto binary = [&](const char *name, const QByteArray &input, const char *message) {
            row(name, ObjectBinaryToText, input, "Invalid stream format"_L1 + QString::fromUtf8(message));
        };
        row("not an object", ObjectTextToBinary, "begin A: TA\nend", u"Line 1: 'object' expected"_s);
        text("unterminated string", "  S = 'abc\nend\n", "Line 2: Unterminated string");
        text("missing end", "  X = 1\n", "Line 3: 'end' expected");
        text("missing =", "  X 1\nend", "Line 2: '=' expected");
        text("missing value", "  X = =\nend", "Line 2: Property value expected");
        text("bad hex", "  D = {\n    0G}\nend", "Line 3: Invalid binary data");
        text("odd hex", "  D = {ABC}\nend", "Line 2: Invalid binary data");
        text("open binary", "  D = {AB", "Line 2: '}' expected");
        text("open list", "  L = ('a'\n", "Line 3: ')' expected");
        text("open collection", "  C = <item end", "Line 2: '>' expected");
        text("open set", "  S = [a b]\nend", "Line 2: ']' expected");
        text("plus without string", "  S = 'a' + 1\nend", "Line 2: String expected");
        text("bad char code", "  S = #x\nend", "Line 2: Invalid number #");
        text("char code range", "  S = #1114112\nend", "Line 2: Number #1114112 is out of range");
        text("integer range", "  X = 9223372036854775808\nend", "Line 2: Number 9223372036854775808 is out of range");
        text("float range", "  X = 1e400\nend", "Line 2: Number 1e400 is out of range");
        text("hex range", "  X = $10000000000000000\nend", "Line 2: Number $10000000000000000 is out of range");
        text("hex suffix", "  X = $1Fs\nend", "Line 2: Invalid number $1Fs");
        text("bad child position", "  object B: TB [x]\n  end\nend", "Line 2: Integer expected");
        text("null in list", "  L = (Null)\nend", "Line 2: Null can't be an item of a list");
        row("long name", ObjectTextToBinary, "object A: TA\n  " + QByteArray(256, 'n') + " = 1\nend",
            u"Line 2: Name %1 is longer than 255 characters"_s.arg(QString(256, u'n')));
        row("CR LF lines", ObjectTextToBinary, "object A: TA\r\n  X = 1\r\n\r\n  S = 'a\r\nend",
            u"Line 4: Unterminated string"_s);
        row("CR lines", ObjectTextToBinary, "object A: TA\r  X = 1\r\r  S = 'a\rend", u"Line 4: Unterminated string"_s);
        text("too deep", "  L = " + QByteArray(1000, '(') + QByteArray(1000, ')') + "\nend",
             "Line 2: Nesting deeper than 1000 levels");

        const QByteArray root = "TPF0" + S("TA") + S("A");
        binary("signature", "TPF1" + S("TA"), "");
        binary("unknown tag", root + S("X") + H("14"), ": unknown value type 20 at offset 11");
        binary("2 GB string", root + S("X") + H("0C FFFFFF7F 41"),
               ": length 2147483647 at offset 12 exceeds the 1 bytes left");
        binary("negative binary", root + S("X") + H("0A FFFFFFFF"), ": length -1 at offset 12 exceeds the 0 bytes left");
        binary("flags", "TPF0" + H("F8"), ": unknown object flags 248 at offset 4");
        binary("inherited inline", "TPF0" + H("F5"), ": unknown object flags 245 at offset 4");
        binary("name", root + S("a b"), ": 'a b' at offset 9 is not a valid name");
        binary("item without list", root + S("C") + H("0E 02 01 00"), ": unknown value type 0 at offset 14");
        binary("too deep", root + S("L") + QByteArray(1000, '\x01'), ": nesting deeper than 1000 levels at offset 1010");

        const QString header = u"Invalid resource header"_s;
        row("resource first byte", ObjectResourceToText, H("FE 0A00 41 00 3010 00000000"), header);
        row("resource type", ObjectResourceToText, H("FF 0B00 41 00 3010 00000000"), header);
        row("resource name without end", ObjectResourceToText,
            H("FF 0A00") + QByteArray(300, 'A') + H("00 3010 00000000"), header);
        row("resource short", ObjectResourceToText, H("FF 0A00 41 00 3010 0000"), header);
        row("resource size", ObjectResourceToText, H("FF 0A00 41 00 3010 FFFFFFFF 00"),
            u"Invalid stream format: length 4294967295 at offset 7 exceeds the 1 bytes left"_s);
    }
    void badInput()
    {
        QFETCH(TStreamConverter, converter);
        QFETCH(QByteArray, input);
        QTEST(ErrorOf([&] { Convert(converter, input); }), "message");
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
};

QTEST_GUILESS_MAIN(tst_ObjectText)
#include "tst_objecttext.moc"
