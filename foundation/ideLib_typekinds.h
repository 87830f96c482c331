#pragma once

// The kinds of property types, with the platform's ordinals so that saved masks keep their
// meaning (0x3FEFF is every kind but tkMethod), and the mapping of Qt's types onto them.

#include <QFlags>
#include <QMetaType>

class QMetaProperty;

namespace kv {

enum TTypeKind {
    tkUnknown = 0,
    tkInteger = 1,
    tkChar = 2,
    tkEnumeration = 3,
    tkFloat = 4,
    tkString = 5,
    tkSet = 6,
    tkClass = 7,
    tkMethod = 8,
    tkWChar = 9,
    tkLString = 10,
    tkWString = 11,
    tkVariant = 12,
    tkArray = 13,
    tkRecord = 14,
    tkInterface = 15,
    tkInt64 = 16,
    tkDynArray = 17,
};

// A set of kinds: bit n stands for the kind with ordinal n.
class TTypeKinds
{
public:
    constexpr TTypeKinds() = default;
    constexpr TTypeKinds(TTypeKind Kind) : m_mask(quint32(1) << Kind) {}
    static constexpr TTypeKinds FromMask(quint32 Mask)
    {
        TTypeKinds kinds;
        kinds.m_mask = Mask & AllMask;
        return kinds;
    }
    // Every kind; every kind but tkMethod (properties rather than events).
    static constexpr TTypeKinds Any() { return FromMask(AllMask); }
    static constexpr TTypeKinds Properties() { return FromMask(AllMask & ~(quint32(1) << tkMethod)); }

    constexpr bool Contains(TTypeKind Kind) const { return (m_mask >> Kind) & 1u; }
    constexpr quint32 Mask() const { return m_mask; }
    constexpr TTypeKinds operator|(TTypeKinds Other) const { return FromMask(m_mask | Other.m_mask); }
    constexpr TTypeKinds &operator|=(TTypeKinds Other)
    {
        m_mask |= Other.m_mask;
        return *this;
    }
    friend constexpr bool operator==(TTypeKinds A, TTypeKinds B) { return A.m_mask == B.m_mask; }

private:
    static constexpr quint32 AllMask = 0x3FFFF;
    quint32 m_mask = 0;
};

constexpr TTypeKinds operator|(TTypeKind A, TTypeKind B)
{
    return TTypeKinds(A) | TTypeKinds(B);
}

// The kind of a Qt type: integers tkInteger, 64-bit integers tkInt64, QChar tkChar, bool and
// enumerations tkEnumeration, floating point tkFloat, QString and QByteArray tkLString,
// QVariant tkVariant, QObject pointers and the value classes with parts (QFont, QSize,
// QPoint, QRect, QSizePolicy, QStringList, their F forms, pictures) tkClass. A colour
// (TColor, QColor), a cursor and a key sequence are tkInteger, as the platform keeps them;
// dates and times tkFloat. Anything else is tkUnknown.
TTypeKind TypeKindOf(QMetaType Type);
// The same for a property, where Q_FLAG types are tkSet and Q_ENUM types tkEnumeration.
TTypeKind TypeKindOf(const QMetaProperty &Property);

} // namespace kv
