#pragma once

#include "kv_export.h"

// A set of characters of the first 256 code points (Latin-1), the platform's character set:
// separator sets for word splitting and text search. A character above U+00FF is never in
// a set.

#include <QChar>
#include <QStringView>

#include <bitset>

namespace kv {

class KV_EXPORT TCharSet
{
public:
    TCharSet() = default;
    // The characters of Chars (those above U+00FF are left out).
    explicit TCharSet(QStringView Chars) { Add(Chars); }

    // The characters First to Last, both included.
    static TCharSet Range(char16_t First, char16_t Last)
    {
        TCharSet set;
        for (char16_t c = First; c <= Last && c < 256; ++c)
            set.m_bits.set(c);
        return set;
    }
    // #0 to #31 and the blank: what separates words by default.
    static TCharSet Blanks() { return Range(0, 32); }

    bool Contains(QChar C) const { return C.unicode() < 256 && m_bits.test(C.unicode()); }
    bool IsEmpty() const { return m_bits.none(); }
    int Count() const { return int(m_bits.count()); }

    TCharSet &Add(QChar C)
    {
        if (C.unicode() < 256)
            m_bits.set(C.unicode());
        return *this;
    }
    TCharSet &Add(QStringView Chars)
    {
        for (QChar c : Chars)
            Add(c);
        return *this;
    }
    TCharSet &Remove(QChar C)
    {
        if (C.unicode() < 256)
            m_bits.reset(C.unicode());
        return *this;
    }

    TCharSet &operator|=(const TCharSet &Other)
    {
        m_bits |= Other.m_bits;
        return *this;
    }
    friend TCharSet operator|(TCharSet A, const TCharSet &B) { return A |= B; }
    friend bool operator==(const TCharSet &A, const TCharSet &B) { return A.m_bits == B.m_bits; }

private:
    std::bitset<256> m_bits;
};

} // namespace kv
