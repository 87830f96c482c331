// The parser of the text form: reads the text of one object and writes its binary form.

#include "platform/kvExtended.h"
#include "platform/kvObjectText_p.h"

#include <QStringDecoder>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace kv::objtext {

namespace {

enum class TKind { Eof, Ident, String, Number, Char };

struct TToken
{
    TKind kind = TKind::Eof;
    qsizetype start = 0; // the token's bytes
    qsizetype end = 0;
    int line = 1;
    char ch = 0; // a Char token's character; a Number's suffix (s, c, d) or 0
    QString text; // a String token's value
};

int HexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A quoted run as UTF-8, or as Windows-1252 where it is no valid UTF-8.
QString DecodeRun(const QByteArray &Run)
{
    if (std::all_of(Run.begin(), Run.end(), [](char c) { return std::uint8_t(c) < 0x80; }))
        return QString::fromLatin1(Run);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = utf8(Run);
    if (!utf8.hasError())
        return text;
    text.resize(Run.size());
    for (qsizetype i = 0; i < Run.size(); ++i)
        text[i] = QChar(FromCp1252(std::uint8_t(Run.at(i))));
    return text;
}

class TTextToBinary
{
public:
    TTextToBinary(const QByteArray &Text, TOutBuffer &Out) : m_text(Text.constData()), m_size(Text.size()), m_out(Out) {}

    qsizetype Convert()
    {
        if (m_size >= 3 && std::memcmp(m_text, "\xEF\xBB\xBF", 3) == 0)
            m_pos = 3;
        m_out.Put("TPF0", 4);
        Advance();
        if (!IsObjectStart())
            Fail(SParseExpected, m_tok.line, "'object'");
        Object();
        return m_tok.end;
    }

private:
    // Scanning.

    void SkipBlanks()
    {
        while (m_pos < m_size) {
            const char c = m_text[m_pos];
            if (c == '\n') {
                ++m_line;
            } else if (c == '\r') {
                ++m_line;
                if (m_pos + 1 < m_size && m_text[m_pos + 1] == '\n')
                    ++m_pos;
            } else if (std::uint8_t(c) > ' ') {
                return;
            }
            ++m_pos;
        }
    }

    TToken Scan()
    {
        SkipBlanks();
        TToken token;
        token.line = m_line;
        token.start = m_pos;
        if (m_pos >= m_size) {
            token.end = m_pos;
            return token;
        }
        const char c = m_text[m_pos];
        const char next = m_pos + 1 < m_size ? m_text[m_pos + 1] : 0;
        if (IsIdentStart(c)) {
            token.kind = TKind::Ident;
            while (m_pos < m_size && IsIdentChar(m_text[m_pos]))
                ++m_pos;
        } else if (IsDigit(c) || c == '$' || ((c == '-' || c == '+') && (IsDigit(next) || next == '$'))) {
            token.kind = TKind::Number;
            ScanNumber(token);
        } else if (c == '\'' || c == '#') {
            token.kind = TKind::String;
            ScanString(token);
        } else {
            token.kind = TKind::Char;
            token.ch = c;
            ++m_pos;
        }
        token.end = m_pos;
        return token;
    }

    bool At(char c) const { return m_pos < m_size && m_text[m_pos] == c; }
    bool AtDigit() const { return m_pos < m_size && IsDigit(m_text[m_pos]); }

    // [+-] digits [. digits] [E [+-] digits] [s|c|d], or [+-] $ hex digits.
    void ScanNumber(TToken &Token)
    {
        if (At('-') || At('+'))
            ++m_pos;
        if (At('$')) {
            ++m_pos;
            while (m_pos < m_size && HexDigit(m_text[m_pos]) >= 0)
                ++m_pos;
        } else {
            while (AtDigit())
                ++m_pos;
            if (At('.') && m_pos + 1 < m_size && IsDigit(m_text[m_pos + 1])) {
                ++m_pos;
                while (AtDigit())
                    ++m_pos;
            }
            if (At('e') || At('E')) {
                qsizetype exponent = m_pos + 1;
                if (exponent < m_size && (m_text[exponent] == '+' || m_text[exponent] == '-'))
                    ++exponent;
                if (exponent < m_size && IsDigit(m_text[exponent])) {
                    m_pos = exponent;
                    while (AtDigit())
                        ++m_pos;
                }
            }
        }
        if (m_pos < m_size && std::strchr("sScCdD", m_text[m_pos]) && m_text[m_pos] != 0
            && !(m_pos + 1 < m_size && IsIdentChar(m_text[m_pos + 1]))) {
            Token.ch = char(m_text[m_pos] | 0x20);
            ++m_pos;
        }
    }

    // Quoted runs and #n character codes, with nothing between them.
    void ScanString(TToken &Token)
    {
        QByteArray run;
        for (;;) {
            if (At('\'')) {
                run.clear();
                for (++m_pos;; ++m_pos) {
                    if (m_pos >= m_size || m_text[m_pos] == '\n' || m_text[m_pos] == '\r')
                        Fail(SParseUnterminatedString, Token.line);
                    if (m_text[m_pos] == '\'') {
                        if (m_pos + 1 < m_size && m_text[m_pos + 1] == '\'')
                            ++m_pos;
                        else
                            break;
                    }
                    run.append(m_text[m_pos]);
                }
                ++m_pos;
                Token.text += DecodeRun(run);
            } else if (At('#')) {
                const qsizetype start = m_pos++;
                const bool hex = At('$');
                m_pos += hex;
                std::uint32_t code = 0;
                qsizetype digits = 0;
                for (; m_pos < m_size; ++m_pos, ++digits) {
                    const int digit = hex ? HexDigit(m_text[m_pos]) : (IsDigit(m_text[m_pos]) ? m_text[m_pos] - '0' : -1);
                    if (digit < 0)
                        break;
                    code = std::min<std::uint32_t>(code * (hex ? 16 : 10) + std::uint32_t(digit), 0x110000);
                }
                const QString written = QString::fromLatin1(m_text + start, m_pos - start);
                if (digits == 0)
                    Fail(SParseBadNumber, Token.line, written);
                if (code > 0x10FFFF)
                    Fail(SParseNumberRange, Token.line, written);
                if (code > 0xFFFF) {
                    Token.text += QChar(QChar::highSurrogate(code));
                    Token.text += QChar(QChar::lowSurrogate(code));
                } else {
                    Token.text += QChar(char16_t(code));
                }
            } else {
                return;
            }
        }
    }

    void Advance()
    {
        if (m_havePeek) {
            m_tok = std::move(m_peek);
            m_havePeek = false;
        } else {
            m_tok = Scan();
        }
    }

    // The token after the current one. One that can't be scanned is left for Advance to
    // report and seen here as the end.
    const TToken &Peek()
    {
        if (!m_havePeek) {
            const qsizetype pos = m_pos;
            const int line = m_line;
            try {
                m_peek = Scan();
                m_havePeek = true;
            } catch (const Exception &) {
                m_pos = pos;
                m_line = line;
                m_peek = TToken();
                return m_peek;
            }
        }
        return m_peek;
    }

    // Tests of the current token.

    QByteArrayView Bytes(const TToken &Token) const { return QByteArrayView(m_text + Token.start, Token.end - Token.start); }
    bool Is(char c) const { return m_tok.kind == TKind::Char && m_tok.ch == c; }
    bool IsWord(const char *Word) const { return m_tok.kind == TKind::Ident && Bytes(m_tok) == QByteArrayView(Word); }
    bool IsKeyword(const char *Word) const
    {
        const QByteArrayView bytes = Bytes(m_tok);
        return m_tok.kind == TKind::Ident && qstrnicmp(bytes.data(), bytes.size(), Word, qsizetype(std::strlen(Word))) == 0;
    }
    bool IsObjectStart() const { return IsKeyword("object") || IsKeyword("inherited") || IsKeyword("inline"); }
    // A name followed by '=' or '.': a keyword too is a property's name there.
    bool IsPropertyStart()
    {
        if (m_tok.kind != TKind::Ident)
            return false;
        if (!IsObjectStart() && !IsKeyword("end"))
            return true;
        const TToken &next = Peek();
        return next.kind == TKind::Char && (next.ch == '=' || next.ch == '.');
    }
    void Expect(char c, const char *Shown)
    {
        if (!Is(c))
            Fail(SParseExpected, m_tok.line, Shown);
        Advance();
    }
    void Enter()
    {
        if (++m_depth > MaxDepth)
            Fail(SParseTooDeep, m_tok.line, MaxDepth);
    }

    // Reading.

    QByteArrayView Ident()
    {
        if (m_tok.kind != TKind::Ident)
            Fail(SParseIdentExpected, m_tok.line);
        const QByteArrayView name = Bytes(m_tok);
        Advance();
        return name;
    }

    QByteArray DottedName()
    {
        QByteArray name = Ident().toByteArray();
        while (Is('.')) {
            Advance();
            name.append('.').append(Ident());
        }
        return name;
    }

    void Object()
    {
        Enter();
        const int line = m_tok.line;
        std::uint8_t flags = IsKeyword("inherited") ? fInherited : IsKeyword("inline") ? fInline : 0;
        Advance();
        QByteArrayView name;
        QByteArrayView className = Ident();
        if (Is(':')) {
            Advance();
            name = className;
            className = Ident();
        }
        qint64 position = 0;
        if (Is('[')) {
            Advance();
            position = Integer();
            Expect(']', "']'");
            flags |= fChildPos;
        }
        // A class name of 240 characters or more has a length byte that looks like a prefix:
        // an empty prefix goes before it.
        if (flags || className.size() >= fPrefix) {
            m_out.Put(char(fPrefix | flags));
            if (flags & fChildPos)
                PutInteger(position);
        }
        PutShortString(className, line);
        PutShortString(name, line);
        Properties();
        while (IsObjectStart()) {
            Object();
            Advance();
        }
        m_out.Put(char(0));
        if (!IsKeyword("end"))
            Fail(SParseExpected, m_tok.line, "'end'");
        --m_depth;
    }

    // Name = value up to the first token that starts no property.
    void Properties()
    {
        while (IsPropertyStart()) {
            const int line = m_tok.line;
            const QByteArray name = DottedName();
            Expect('=', "'='");
            PutShortString(name, line);
            Value();
        }
        m_out.Put(char(0));
    }

    void Value()
    {
        switch (m_tok.kind) {
        case TKind::Number:
            Number();
            Advance();
            return;
        case TKind::String: {
            QString text = std::move(m_tok.text);
            Advance();
            // '+' joins the next string; before Inf or NaN it is the sign of a list's next item.
            while (Is('+') && !IsSpecialFloat(Peek())) {
                Advance();
                if (m_tok.kind != TKind::String)
                    Fail(SParseStringExpected, m_tok.line);
                text += m_tok.text;
                Advance();
            }
            PutString(text);
            return;
        }
        case TKind::Ident: {
            const int line = m_tok.line;
            const QByteArray name = DottedName();
            if (name == "True") {
                m_out.Put(char(tTrue));
            } else if (name == "False") {
                m_out.Put(char(tFalse));
            } else if (name == "nil") {
                m_out.Put(char(tNil));
            } else if (name == "Null") {
                m_out.Put(char(tNull));
            } else {
                m_out.Put(char(tIdent));
                PutShortString(name, line);
            }
            return;
        }
        case TKind::Char:
            switch (m_tok.ch) {
            case '(':
                return List();
            case '[':
                return Set();
            case '{':
                return Binary();
            case '<':
                return Collection();
            case '-':
            case '+':
                return SpecialFloat();
            }
            break;
        case TKind::Eof:
            break;
        }
        Fail(SParseValueExpected, m_tok.line);
    }

    void List()
    {
        Enter();
        m_out.Put(char(tList));
        Advance();
        while (!Is(')')) {
            if (m_tok.kind == TKind::Eof)
                Fail(SParseExpected, m_tok.line, "')'");
            if (IsWord("Null") && !(Peek().kind == TKind::Char && Peek().ch == '.'))
                Fail(SParseNullInList, m_tok.line);
            Value();
        }
        m_out.Put(char(0));
        Advance();
        --m_depth;
    }

    void Set()
    {
        m_out.Put(char(tSet));
        Advance();
        if (!Is(']')) {
            for (;;) {
                const int line = m_tok.line;
                PutShortString(Ident(), line);
                if (!Is(','))
                    break;
                Advance();
            }
        }
        Expect(']', "']'");
        m_out.Put(char(0));
    }

    // Hex digits in pairs, blanks between pairs, up to '}'. Read from the characters after
    // the current token, which is the '{'.
    void Binary()
    {
        QByteArray bytes;
        for (;;) {
            SkipBlanks();
            if (m_pos >= m_size)
                Fail(SParseExpected, m_line, "'}'");
            if (m_text[m_pos] == '}') {
                ++m_pos;
                break;
            }
            const int high = HexDigit(m_text[m_pos]);
            const int low = m_pos + 1 < m_size ? HexDigit(m_text[m_pos + 1]) : -1;
            if (high < 0 || low < 0)
                Fail(SParseBadBinary, m_line);
            bytes.append(char(high << 4 | low));
            m_pos += 2;
        }
        if (bytes.size() > std::numeric_limits<qint32>::max())
            Fail(SParseBadBinary, m_line);
        m_out.Put(char(tBinary));
        m_out.PutLE(qint32(bytes.size()));
        m_out.Put(bytes);
        Advance();
    }

    void Collection()
    {
        Enter();
        m_out.Put(char(tCollection));
        Advance();
        while (!Is('>')) {
            if (!IsKeyword("item"))
                Fail(SParseExpected, m_tok.line, "'>'");
            Enter();
            Advance();
            if (Is('[')) {
                Advance();
                PutInteger(Integer());
                Expect(']', "']'");
            }
            m_out.Put(char(tList));
            Properties();
            if (!IsKeyword("end"))
                Fail(SParseExpected, m_tok.line, "'end'");
            Advance();
            --m_depth;
        }
        m_out.Put(char(0));
        Advance();
        --m_depth;
    }

    // Numbers.

    [[noreturn]] void BadNumber(const char *Message) const
    {
        Fail(Message, m_tok.line, QString::fromLatin1(Bytes(m_tok).data(), Bytes(m_tok).size()));
    }

    // The current token as an integer, decimal or $ hex (which may fill all 64 bits).
    qint64 IntegerValue(QByteArrayView Text) const
    {
        const bool negative = Text.startsWith('-');
        if (Text.startsWith('-') || Text.startsWith('+'))
            Text = Text.sliced(1);
        const bool hex = Text.startsWith('$');
        if (hex)
            Text = Text.sliced(1);
        if (Text.isEmpty())
            BadNumber(SParseBadNumber);
        std::uint64_t value = 0;
        for (const char c : Text) {
            const int digit = hex ? HexDigit(c) : IsDigit(c) ? c - '0' : -1;
            if (digit < 0)
                BadNumber(SParseBadNumber);
            const unsigned base = hex ? 16 : 10;
            if (value > (std::numeric_limits<std::uint64_t>::max() - unsigned(digit)) / base)
                BadNumber(SParseNumberRange);
            value = value * base + unsigned(digit);
        }
        if (!hex && value > (negative ? std::uint64_t(1) << 63 : std::uint64_t(std::numeric_limits<qint64>::max())))
            BadNumber(SParseNumberRange);
        return qint64(negative ? 0 - value : value);
    }

    qint64 Integer()
    {
        if (m_tok.kind != TKind::Number)
            Fail(SParseIntegerExpected, m_tok.line);
        if (m_tok.ch)
            BadNumber(SParseBadNumber);
        const qint64 value = IntegerValue(Bytes(m_tok));
        Advance();
        return value;
    }

    template <typename T>
    T FloatValue(QByteArrayView Text) const
    {
        if (Text.startsWith('+'))
            Text = Text.sliced(1);
        T value{};
        const auto result = std::from_chars(Text.data(), Text.data() + Text.size(), value);
        if (result.ec == std::errc::invalid_argument || result.ptr != Text.data() + Text.size())
            BadNumber(SParseBadNumber);
        if (result.ec == std::errc::result_out_of_range)
            BadNumber(SParseNumberRange);
        return value;
    }

    // Exact decimals times 10,000, the fifth decimal rounding half away from zero.
    qint64 CurrencyValue(QByteArrayView Text) const
    {
        const bool negative = Text.startsWith('-');
        if (Text.startsWith('-') || Text.startsWith('+'))
            Text = Text.sliced(1);
        unsigned __int128 value = 0;
        int decimals = -1;
        bool roundUp = false;
        for (const char c : Text) {
            if (c == '.' && decimals < 0) {
                decimals = 0;
                continue;
            }
            if (!IsDigit(c))
                BadNumber(SParseBadNumber);
            if (decimals >= 4) {
                roundUp = roundUp || (decimals == 4 && c >= '5');
                ++decimals;
                continue;
            }
            value = value * 10 + unsigned(c - '0');
            if (value > (unsigned __int128)(1) << 64)
                BadNumber(SParseNumberRange);
            decimals += decimals >= 0;
        }
        for (int i = std::max(decimals, 0); i < 4; ++i)
            value *= 10;
        value += roundUp;
        if (value > (negative ? (unsigned __int128)(1) << 63 : (unsigned __int128)std::numeric_limits<qint64>::max()))
            BadNumber(SParseNumberRange);
        return qint64(negative ? 0 - std::uint64_t(value) : std::uint64_t(value));
    }

    void Number()
    {
        QByteArrayView text = Bytes(m_tok);
        const char suffix = m_tok.ch;
        if (suffix)
            text.chop(1);
        if (text.contains('$')) {
            if (suffix)
                BadNumber(SParseBadNumber);
            PutInteger(IntegerValue(text));
            return;
        }
        switch (suffix) {
        case 's':
            m_out.Put(char(tSingle));
            m_out.PutLE(std::bit_cast<std::uint32_t>(FloatValue<float>(text)));
            return;
        case 'c':
            m_out.Put(char(tCurrency));
            m_out.PutLE(CurrencyValue(text));
            return;
        case 'd':
            m_out.Put(char(tDate));
            m_out.PutLE(std::bit_cast<std::uint64_t>(FloatValue<double>(text)));
            return;
        }
        if (text.contains('.') || text.contains('e') || text.contains('E'))
            PutExtended(FloatValue<double>(text));
        else
            PutInteger(IntegerValue(text));
    }

    // Inf or NaN, with the suffix s or d where there is one.
    bool IsSpecialFloat(const TToken &Token) const
    {
        const QByteArrayView word = Bytes(Token);
        return Token.kind == TKind::Ident && (word.startsWith("Inf") || word.startsWith("NaN"))
               && (word.size() == 3 || (word.size() == 4 && (word.back() == 's' || word.back() == 'd')));
    }

    // +Inf, -Inf, +NaN, -NaN, with the suffix s or d where there is one.
    void SpecialFloat()
    {
        const bool negative = m_tok.ch == '-';
        const TToken &next = Peek();
        if (!IsSpecialFloat(next))
            Fail(SParseValueExpected, m_tok.line);
        const QByteArrayView word = Bytes(next);
        const bool inf = word.startsWith("Inf");
        const double value = std::copysign(inf ? std::numeric_limits<double>::infinity()
                                               : std::numeric_limits<double>::quiet_NaN(),
                                           negative ? -1.0 : 1.0);
        if (word.size() == 3) {
            PutExtended(value);
        } else if (word.back() == 's') {
            m_out.Put(char(tSingle));
            m_out.PutLE(std::bit_cast<std::uint32_t>(float(value)));
        } else {
            m_out.Put(char(tDate));
            m_out.PutLE(std::bit_cast<std::uint64_t>(value));
        }
        Advance();
        Advance();
    }

    // Writing.

    void PutInteger(qint64 Value)
    {
        if (Value >= -128 && Value <= 127) {
            m_out.Put(char(tInt8));
            m_out.PutLE(qint8(Value));
        } else if (Value >= -32768 && Value <= 32767) {
            m_out.Put(char(tInt16));
            m_out.PutLE(qint16(Value));
        } else if (Value >= std::numeric_limits<qint32>::min() && Value <= std::numeric_limits<qint32>::max()) {
            m_out.Put(char(tInt32));
            m_out.PutLE(qint32(Value));
        } else {
            m_out.Put(char(tInt64));
            m_out.PutLE(Value);
        }
    }

    void PutExtended(double Value)
    {
        const TExtendedBytes bytes = DoubleToExtended(Value);
        m_out.Put(char(tExtended));
        m_out.Put(reinterpret_cast<const char *>(bytes.data()), qsizetype(bytes.size()));
    }

    void PutShortString(QByteArrayView Text, int Line)
    {
        if (Text.size() > 255)
            Fail(SParseNameTooLong, Line, QString::fromLatin1(Text.data(), Text.size()));
        m_out.Put(char(Text.size()));
        m_out.Put(Text);
    }

    // ASCII-only text as a short or long string, anything else as a wide string.
    void PutString(const QString &Text)
    {
        const bool ascii = std::all_of(Text.begin(), Text.end(), [](QChar c) { return c.unicode() < 0x80; });
        if (!ascii) {
            m_out.Put(char(tWString));
            m_out.PutLE(qint32(Text.size()));
            if constexpr (std::endian::native == std::endian::little) {
                m_out.Put(reinterpret_cast<const char *>(Text.utf16()), Text.size() * 2);
            } else {
                for (const QChar c : Text)
                    m_out.PutLE(c.unicode());
            }
            return;
        }
        if (Text.size() <= 255) {
            m_out.Put(char(tString));
            m_out.Put(char(Text.size()));
        } else {
            m_out.Put(char(tLString));
            m_out.PutLE(qint32(Text.size()));
        }
        m_out.Put(Text.toLatin1());
    }

    const char *m_text;
    const qsizetype m_size;
    qsizetype m_pos = 0;
    int m_line = 1;
    int m_depth = 0;
    TToken m_tok;
    TToken m_peek;
    bool m_havePeek = false;
    TOutBuffer &m_out;
};

} // namespace

qsizetype TextToBinary(const QByteArray &Text, TOutBuffer &Out)
{
    return TTextToBinary(Text, Out).Convert();
}

} // namespace kv::objtext
