// Feeds arbitrary bytes to the text-to-binary converter. Bad input must end in kv::Exception;
// what converts must convert back to text and to the very same binary again.

#include "platform/kvException.h"
#include "platform/kvObjectText.h"
#include "tests/streamsupport.h"

#include <QBuffer>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using kv::test::Convert;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *Data, size_t Size)
{
    QByteArray first;
    try {
        first = Convert(kv::ObjectTextToBinary, QByteArray(reinterpret_cast<const char *>(Data), qsizetype(Size)));
    } catch (const kv::Exception &) {
        return 0;
    }
    QByteArray text;
    QByteArray second;
    try {
        text = Convert(kv::ObjectBinaryToText, first);
        second = Convert(kv::ObjectTextToBinary, text);
    } catch (const kv::Exception &error) {
        std::fprintf(stderr, "converting back failed: %s\n", error.what());
        std::abort();
    }
    if (second != first) {
        std::fprintf(stderr, "binary differs after a round trip through\n%s\n", text.constData());
        std::abort();
    }
    return 0;
}
