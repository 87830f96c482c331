#pragma once

// Windows-1252, the code page of the short and long strings of component streams: bytes
// 0x80..0x9F are its own characters, every other byte is its Latin-1 character.

#include <QString>

#include <cstdint>

namespace kv {

inline constexpr char16_t Cp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

inline char16_t FromCp1252(std::uint8_t c)
{
    return c >= 0x80 && c < 0xA0 ? Cp1252High[c - 0x80] : c;
}

inline QString DecodeWindows1252(const char *Data, qsizetype Size)
{
    QString text(Size, Qt::Uninitialized);
    QChar *out = text.data();
    for (qsizetype i = 0; i < Size; ++i)
        out[i] = QChar(FromCp1252(std::uint8_t(Data[i])));
    return text;
}

} // namespace kv
