#include "platform/kvObjectText.h"

#include "platform/kvExtended.h"
#include "platform/kvObjectText_p.h"

#include <QBuffer>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

namespace kv {

namespace objtext {

namespace {

// The shortest text that reads back as Value, with a "." or an exponent ("E300", "E-7").
void PutFloat(TOutBuffer &Out, double Value, bool Single, char Suffix)
{
    if (std::isnan(Value) || std::isinf(Value)) {
        Out.Put(std::signbit(Value) ? '-' : '+');
        Out.Put(std::isnan(Value) ? QByteArrayView("NaN") : QByteArrayView("Inf"));
    } else {
        char raw[64];
        const auto result = Single ? std::to_chars(raw, raw + sizeof raw, float(Value))
                                   : std::to_chars(raw, raw + sizeof raw, Value);
        char text[72];
        qsizetype size = 0;
        bool point = false;
        for (const char *p = raw; p != result.ptr; ++p) {
            if (*p == 'e') {
                text[size++] = 'E';
                point = true;
                if (p[1] == '+' || p[1] == '-') {
                    if (p[1] == '-')
                        text[size++] = '-';
                    ++p;
                }
                while (p + 1 != result.ptr && p[1] == '0' && p + 2 != result.ptr)
                    ++p;
                continue;
            }
            point = point || *p == '.';
            text[size++] = *p;
        }
        if (!point) {
            text[size++] = '.';
            text[size++] = '0';
        }
        Out.Put(text, size);
    }
    if (Suffix)
        Out.Put(Suffix);
}

void PutInteger(TOutBuffer &Out, qint64 Value)
{
    char text[24];
    const auto result = std::to_chars(text, text + sizeof text, Value);
    Out.Put(text, result.ptr - text);
}

// Currency: the value times 10,000, written as exact decimals.
void PutCurrency(TOutBuffer &Out, qint64 Value)
{
    std::uint64_t magnitude = Value < 0 ? 0 - std::uint64_t(Value) : std::uint64_t(Value);
    if (Value < 0)
        Out.Put('-');
    char text[32];
    auto result = std::to_chars(text, text + sizeof text, magnitude / 10000);
    Out.Put(text, result.ptr - text);
    Out.Put('.');
    unsigned fraction = unsigned(magnitude % 10000);
    int digits = 4;
    while (digits > 1 && fraction % 10 == 0) {
        fraction /= 10;
        --digits;
    }
    result = std::to_chars(text, text + sizeof text, fraction);
    for (int pad = digits - int(result.ptr - text); pad > 0; --pad)
        Out.Put('0');
    Out.Put(text, result.ptr - text);
    Out.Put('c');
}

// Reads the binary form and writes the text form, one value at a time.
class TBinaryToText
{
public:
    TBinaryToText(QByteArrayView Data, TOutBuffer &Out)
        : m_data(reinterpret_cast<const std::uint8_t *>(Data.data())), m_size(Data.size()), m_out(Out)
    {
    }

    qsizetype Convert()
    {
        if (m_size < 4 || std::memcmp(m_data, "TPF0", 4) != 0)
            Fail(SInvalidStreamFormat);
        m_pos = 4;
        Object(0);
        return m_pos;
    }

private:
    [[noreturn]] void Ends() const { Fail(SObjStreamEnds, m_size); }
    void Need(qsizetype Count) const
    {
        if (Count > m_size - m_pos)
            Ends();
    }
    std::uint8_t Peek() const
    {
        Need(1);
        return m_data[m_pos];
    }
    std::uint64_t Bits(int Bytes)
    {
        Need(Bytes);
        std::uint64_t value = 0;
        for (int i = 0; i < Bytes; ++i)
            value |= std::uint64_t(m_data[m_pos + i]) << (8 * i);
        m_pos += Bytes;
        return value;
    }
    std::uint8_t Byte() { return std::uint8_t(Bits(1)); }
    // A 32-bit length at least 0 and at most the bytes left over Unit.
    qsizetype Length(qsizetype Unit)
    {
        const qsizetype at = m_pos;
        const qint32 length = qint32(std::uint32_t(Bits(4)));
        if (length < 0 || length > (m_size - m_pos) / Unit)
            Fail(SObjStreamBadLength, length, at, m_size - m_pos);
        return length;
    }
    QByteArrayView ShortString()
    {
        const qsizetype length = Byte();
        Need(length);
        const QByteArrayView text(reinterpret_cast<const char *>(m_data + m_pos), length);
        m_pos += length;
        return text;
    }
    // A name of the text form (or the empty name where EmptyOk), as it is written.
    QByteArrayView Name(bool Dotted, bool EmptyOk = false)
    {
        const qsizetype at = m_pos;
        const QByteArrayView name = ShortString();
        if (!(EmptyOk && name.isEmpty()) && !IsIdent(name, Dotted))
            Fail(SObjStreamBadName, QString::fromLatin1(name.data(), name.size()), at);
        return name;
    }
    qint64 Integer()
    {
        const qsizetype at = m_pos;
        switch (Byte()) {
        case tInt8:
            return qint8(Bits(1));
        case tInt16:
            return qint16(Bits(2));
        case tInt32:
            return qint32(Bits(4));
        case tInt64:
            return qint64(Bits(8));
        default:
            Fail(SObjStreamBadValue, m_data[at], at);
        }
    }
    void Enter(qsizetype At)
    {
        if (++m_depth > MaxDepth)
            Fail(SObjStreamTooDeep, MaxDepth, At);
    }

    void Indent(int Level)
    {
        for (int i = 0; i < Level; ++i)
            m_out.Put("  ", 2);
    }

    void Object(int Level)
    {
        Enter(m_pos);
        std::uint8_t flags = 0;
        qint64 position = 0;
        if ((Peek() & fPrefix) == fPrefix) {
            const qsizetype at = m_pos;
            const std::uint8_t prefix = Byte();
            flags = prefix & 0x0F;
            if ((flags & ~(fInherited | fChildPos | fInline)) || (flags & (fInherited | fInline)) == (fInherited | fInline))
                Fail(SObjStreamBadFlags, prefix, at);
            if (flags & fChildPos)
                position = Integer();
        }
        const QByteArrayView className = Name(false);
        const QByteArrayView name = Name(false, true);
        Indent(Level);
        m_out.Put((flags & fInherited) ? QByteArrayView("inherited ")
                  : (flags & fInline)  ? QByteArrayView("inline ")
                                       : QByteArrayView("object "));
        if (!name.isEmpty()) {
            m_out.Put(name);
            m_out.Put(": ", 2);
        }
        m_out.Put(className);
        if (flags & fChildPos) {
            m_out.Put(" [", 2);
            PutInteger(m_out, position);
            m_out.Put(']');
        }
        m_out.Put('\n');
        Properties(Level + 1);
        while (Peek() != 0)
            Object(Level + 1);
        ++m_pos;
        Indent(Level);
        m_out.Put("end\n", 4);
        --m_depth;
    }

    // Name = value lines up to the closing 0.
    void Properties(int Level)
    {
        while (Peek() != 0) {
            const QByteArrayView name = Name(true);
            Indent(Level);
            m_out.Put(name);
            m_out.Put(" = ", 3);
            Value(Level);
            m_out.Put('\n');
        }
        ++m_pos;
    }

    void Value(int Level)
    {
        const qsizetype at = m_pos;
        const std::uint8_t tag = Byte();
        switch (tag) {
        case tNull:
            m_out.Put("Null", 4);
            break;
        case tList:
            Enter(at);
            m_out.Put('(');
            while (Peek() != 0) {
                m_out.Put('\n');
                Indent(Level + 1);
                Value(Level + 1);
            }
            ++m_pos;
            m_out.Put(')');
            --m_depth;
            break;
        case tInt8:
        case tInt16:
        case tInt32:
        case tInt64:
            m_pos = at;
            PutInteger(m_out, Integer());
            break;
        case tExtended: {
            Need(10);
            TExtendedBytes bytes;
            std::memcpy(bytes.data(), m_data + m_pos, 10);
            m_pos += 10;
            PutFloat(m_out, ExtendedToDouble(bytes), false, 0);
            break;
        }
        case tString:
            AnsiString(Byte(), Level);
            break;
        case tLString:
            AnsiString(Length(1), Level);
            break;
        case tWString: {
            const qsizetype count = Length(2);
            QString text(count, Qt::Uninitialized);
            for (qsizetype i = 0; i < count; ++i)
                text[i] = QChar(char16_t(m_data[m_pos + 2 * i] | (m_data[m_pos + 2 * i + 1] << 8)));
            m_pos += 2 * count;
            String(text, Level);
            break;
        }
        case tIdent:
            m_out.Put(Name(true));
            break;
        case tFalse:
            m_out.Put("False", 5);
            break;
        case tTrue:
            m_out.Put("True", 4);
            break;
        case tNil:
            m_out.Put("nil", 3);
            break;
        case tBinary:
            Binary(Length(1), Level);
            break;
        case tSet: {
            m_out.Put('[');
            for (bool first = true;; first = false) {
                if (Peek() == 0) {
                    ++m_pos;
                    break;
                }
                if (!first)
                    m_out.Put(", ", 2);
                m_out.Put(Name(false));
            }
            m_out.Put(']');
            break;
        }
        case tCollection:
            Collection(at, Level);
            break;
        case tSingle:
            PutFloat(m_out, std::bit_cast<float>(std::uint32_t(Bits(4))), true, 's');
            break;
        case tCurrency:
            PutCurrency(m_out, qint64(Bits(8)));
            break;
        case tDate:
            PutFloat(m_out, std::bit_cast<double>(Bits(8)), false, 'd');
            break;
        default:
            Fail(SObjStreamBadValue, tag, at);
        }
    }

    void AnsiString(qsizetype Length, int Level)
    {
        Need(Length);
        QString text(Length, Qt::Uninitialized);
        for (qsizetype i = 0; i < Length; ++i) {
            const std::uint8_t c = m_data[m_pos + i];
            text[i] = QChar(FromCp1252(c));
        }
        m_pos += Length;
        String(text, Level);
    }

    void String(const QString &Text, int Level)
    {
        if (Text.isEmpty()) {
            m_out.Put("''", 2);
            return;
        }
        for (qsizetype start = 0; start < Text.size(); start += StringPiece) {
            if (start > 0) {
                m_out.Put(" +\n", 3);
                Indent(Level + 1);
            }
            const qsizetype end = std::min(Text.size(), start + StringPiece);
            bool quoted = false;
            for (qsizetype i = start; i < end; ++i) {
                const char16_t c = Text.at(i).unicode();
                if (c >= 32 && c <= 126) {
                    if (!quoted)
                        m_out.Put('\'');
                    quoted = true;
                    if (c == '\'')
                        m_out.Put('\'');
                    m_out.Put(char(c));
                } else {
                    if (quoted)
                        m_out.Put('\'');
                    quoted = false;
                    m_out.Put('#');
                    PutInteger(m_out, c);
                }
            }
            if (quoted)
                m_out.Put('\'');
        }
    }

    void Binary(qsizetype Length, int Level)
    {
        static constexpr char Hex[] = "0123456789ABCDEF";
        m_out.Put('{');
        for (qsizetype i = 0; i < Length; ++i) {
            if (i % BinaryLine == 0) {
                m_out.Put('\n');
                Indent(Level + 1);
            }
            const std::uint8_t b = m_data[m_pos + i];
            const char pair[2] = {Hex[b >> 4], Hex[b & 15]};
            m_out.Put(pair, 2);
        }
        m_pos += Length;
        m_out.Put('}');
    }

    // Items, each an optional integer and a list of properties, up to a 0.
    void Collection(qsizetype At, int Level)
    {
        Enter(At);
        m_out.Put('<');
        while (Peek() != 0) {
            const qsizetype itemAt = m_pos;
            Enter(itemAt);
            m_out.Put('\n');
            Indent(Level + 1);
            m_out.Put("item", 4);
            const std::uint8_t tag = Peek();
            if (tag == tInt8 || tag == tInt16 || tag == tInt32 || tag == tInt64) {
                m_out.Put(" [", 2);
                PutInteger(m_out, Integer());
                m_out.Put(']');
            }
            if (Peek() != tList)
                Fail(SObjStreamBadValue, m_data[m_pos], m_pos);
            ++m_pos;
            m_out.Put('\n');
            Properties(Level + 2);
            Indent(Level + 1);
            m_out.Put("end", 3);
            --m_depth;
        }
        ++m_pos;
        m_out.Put('>');
        --m_depth;
    }

    const std::uint8_t *m_data;
    const qsizetype m_size;
    qsizetype m_pos = 0;
    int m_depth = 0;
    TOutBuffer &m_out;
};

} // namespace

bool IsIdent(QByteArrayView Text, bool Dotted)
{
    bool start = true;
    for (const char c : Text) {
        if (start ? !IsIdentStart(c) : (!IsIdentChar(c) && !(Dotted && c == '.')))
            return false;
        start = c == '.';
    }
    return !start;
}

} // namespace objtext

using namespace objtext;

void ObjectBinaryToText(QIODevice &Input, QIODevice &Output)
{
    const TInputBytes input(Input);
    TOutBuffer out(Output);
    const qsizetype used = TBinaryToText(input.data, out).Convert();
    out.Flush();
    input.Consume(used);
}

void ObjectTextToBinary(QIODevice &Input, QIODevice &Output)
{
    const TInputBytes input(Input);
    TOutBuffer out(Output);
    const qsizetype used = TextToBinary(input.data, out);
    out.Flush();
    input.Consume(used);
}

void ObjectResourceToText(QIODevice &Input, QIODevice &Output)
{
    const TInputBytes input(Input);
    const QByteArray &data = input.data;
    const auto byteAt = [&data](qsizetype i) { return std::uint8_t(data.at(i)); };
    // 0xFF, type 10, a name of at most 255 characters and its zero, flags, size.
    if (data.size() < 3 || byteAt(0) != 0xFF || byteAt(1) != 10 || byteAt(2) != 0)
        Fail(SInvalidResourceHeader);
    const qsizetype nameEnd = QByteArrayView(data).sliced(3, std::min<qsizetype>(256, data.size() - 3)).indexOf('\0');
    if (nameEnd < 0 || data.size() - (3 + nameEnd + 1) < 6)
        Fail(SInvalidResourceHeader);
    const qsizetype sizeAt = 3 + nameEnd + 3;
    const std::uint32_t size = std::uint32_t(byteAt(sizeAt)) | std::uint32_t(byteAt(sizeAt + 1)) << 8
                               | std::uint32_t(byteAt(sizeAt + 2)) << 16 | std::uint32_t(byteAt(sizeAt + 3)) << 24;
    const qsizetype body = sizeAt + 4;
    if (size > std::uint64_t(data.size() - body))
        Fail(SObjStreamBadLength, size, sizeAt, data.size() - body);
    TOutBuffer out(Output);
    TBinaryToText(QByteArrayView(data).sliced(body, size), out).Convert();
    out.Flush();
    input.Consume(body + size);
}

void ObjectTextToResource(QIODevice &Input, QIODevice &Output)
{
    QBuffer binary;
    binary.open(QIODevice::WriteOnly);
    ObjectTextToBinary(Input, binary);
    const QByteArray &stream = binary.data();

    // The root's class name, after the signature and any prefix with its child position.
    qsizetype at = 4;
    const auto byteAt = [&stream](qsizetype i) { return std::uint8_t(stream.at(i)); };
    if ((byteAt(at) & fPrefix) == fPrefix) {
        const bool position = byteAt(at++) & fChildPos;
        if (position) {
            const std::uint8_t tag = byteAt(at++);
            at += tag == tInt8 ? 1 : tag == tInt16 ? 2 : tag == tInt32 ? 4 : 8;
        }
    }
    const QByteArray name = stream.mid(at + 1, byteAt(at)).toUpper();

    QByteArray header;
    header.reserve(name.size() + 10);
    header.append(char(0xFF)).append(char(10)).append(char(0)).append(name).append(char(0));
    header.append(char(0x30)).append(char(0x10));
    for (int i = 0; i < 4; ++i)
        header.append(char(std::uint8_t(std::uint32_t(stream.size()) >> (8 * i))));
    if (Output.write(header) != header.size() || Output.write(stream) != stream.size())
        Fail(SWriteError);
}

} // namespace kv
