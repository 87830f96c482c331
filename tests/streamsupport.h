#pragma once

// Component streams converted in memory, for the tests and the fuzz targets.

#include "platform/kvObjectText.h"

#include <QBuffer>
#include <QByteArray>

namespace kv::test {

using TStreamConverter = void (*)(QIODevice &Input, QIODevice &Output);

inline QByteArray Convert(TStreamConverter Converter, const QByteArray &Input)
{
    QBuffer in;
    in.setData(Input);
    in.open(QIODevice::ReadOnly);
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    Converter(in, out);
    return out.data();
}

inline QByteArray ToText(const QByteArray &Binary) { return Convert(ObjectBinaryToText, Binary); }
inline QByteArray ToBinary(const QByteArray &Text) { return Convert(ObjectTextToBinary, Text); }

} // namespace kv::test
