#pragma once

// Private to the component stream converters: the value codes of the binary form, the output
// buffer both directions write through, the input they read and the error they raise.

#include "foundation/ideConsts.h"
#include "platform/kvException.h"
#include "platform/kvWindows1252_p.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <cstdint>
#include <type_traits>

namespace kv::objtext {

// The value codes of the binary form.
enum TTag : std::uint8_t {
    tNull,
    tList,
    tInt8,
    tInt16,
    tInt32,
    tExtended,
    tString,
    tIdent,
    tFalse,
    tTrue,
    tBinary,
    tSet,
    tLString,
    tNil,
    tCollection,
    tSingle,
    tCurrency,
    tDate,
    tWString,
    tInt64,
};

// The flags of the prefix byte 0xF0 | flags that may start an object.
enum : std::uint8_t { fInherited = 1, fChildPos = 2, fInline = 4, fPrefix = 0xF0 };

// Objects, lists, collections and collection items nest at most this deep.
inline constexpr int MaxDepth = 1000;
// Strings are cut into pieces of this many characters in the text form, binary data into
// lines of this many bytes.
inline constexpr int StringPiece = 64;
inline constexpr int BinaryLine = 32;

inline QString ArgText(const QString &s) { return s; }
inline QString ArgText(const char *s) { return QString::fromUtf8(s); }
template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T>>>
QString ArgText(T n)
{
    return QString::number(n);
}

// Raises the message of the table with its arguments.
template <typename... Args>
[[noreturn]] void Fail(const char *Message, const Args &...args)
{
    QString text = LoadStr(Message);
    if constexpr (sizeof...(args) > 0)
        text = text.arg(ArgText(args)...);
    throw Exception(text);
}

// What is written goes to the device in pieces, so that a large result never sits in memory
// whole; on an error the device may hold the part written before it.
class TOutBuffer
{
public:
    explicit TOutBuffer(QIODevice &Device) : m_device(Device) {}
    ~TOutBuffer() = default;
    TOutBuffer(const TOutBuffer &) = delete;
    TOutBuffer &operator=(const TOutBuffer &) = delete;

    void Put(char c)
    {
        m_data.append(c);
        Spill();
    }
    void Put(const char *Data, qsizetype Size)
    {
        m_data.append(Data, Size);
        Spill();
    }
    void Put(QByteArrayView Data) { Put(Data.data(), Data.size()); }

    // Little-endian integers.
    template <typename T>
    void PutLE(T Value)
    {
        using U = std::make_unsigned_t<T>;
        char bytes[sizeof(T)];
        for (std::size_t i = 0; i < sizeof(T); ++i)
            bytes[i] = char(std::uint8_t(U(Value) >> (8 * i)));
        Put(bytes, qsizetype(sizeof(T)));
    }

    void Flush()
    {
        if (m_data.isEmpty())
            return;
        if (m_device.write(m_data) != m_data.size())
            Fail(SWriteError);
        m_data.truncate(0);
    }

private:
    void Spill()
    {
        if (m_data.size() >= 65536)
            Flush();
    }

    QIODevice &m_device;
    QByteArray m_data;
};

// The bytes from a device's position to its end. A device that can seek is put back just after
// what a conversion used (Consume); a sequential one stays read to its end.
struct TInputBytes
{
    explicit TInputBytes(QIODevice &Device)
        : device(Device), start(Device.isSequential() ? -1 : Device.pos()), data(Device.readAll())
    {
    }
    void Consume(qsizetype Used) const
    {
        if (start >= 0)
            device.seek(start + Used);
    }

    QIODevice &device;
    const qint64 start;
    const QByteArray data;
};

inline bool IsIdentStart(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; }
inline bool IsIdentChar(char c) { return IsIdentStart(c) || (c >= '0' && c <= '9'); }

// A name of the text form: letters, digits and underscores, not starting with a digit; with
// Dotted, several such parts joined by dots.
bool IsIdent(QByteArrayView Text, bool Dotted);

// The binary form of the object in Text, to Out; returns the bytes of Text it used.
qsizetype TextToBinary(const QByteArray &Text, TOutBuffer &Out);

} // namespace kv::objtext
