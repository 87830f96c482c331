#pragma once

#include "kv_export.h"

// Run-time type information over Qt's meta-types: the kinds of property types, with the
// platform's ordinals so that saved masks keep their meaning (0x3FEFF is every kind but
// tkMethod), and one interned TTypeInfo per type, so that "the same type" is a pointer
// comparison wherever selections and registries match types.

#include <QFlags>
#include <QList>
#include <QMetaMethod>
#include <QMetaType>
#include <QString>

class QMetaEnum;
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
class KV_EXPORT TTypeKinds
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

// One named value of an enumeration or set type.
struct KV_EXPORT TEnumKey
{
    QString Name;
    qint64 Value = 0;
};

// What is known of one type. Interned: each type has exactly one, living to the end of the
// process, so types compare by address.
class KV_EXPORT TTypeInfo
{
public:
    TTypeKind Kind = tkUnknown;
    // As Qt spells it ("int", "Qt::Alignment", "QWidget*"); a signal type is its parameter
    // list ("void(bool)").
    QString Name;
    // Invalid for signal types and for types Qt does not know.
    QMetaType MetaType;
    // tkClass for QObject pointers: the class pointed to.
    const QMetaObject *ClassType = nullptr;
    // tkEnumeration of an enum with keys, and tkSet: every key in declaration order.
    QList<TEnumKey> Keys;
    // tkSet: the elements, the keys whose value has exactly one bit, each value once.
    QList<TEnumKey> Elements;
    // tkMethod: the parameter types.
    QList<QMetaType> Params;
    // Ordinal types: the values the type can hold.
    qint64 MinValue = 0;
    qint64 MaxValue = 0;

    // The key of Value, empty when none names it.
    QString KeyOf(qint64 Value) const;
    // The value of Key (case-insensitive); false when there is no such key.
    bool ValueOf(const QString &Key, qint64 &Value) const;
};

using PTypeInfo = const TTypeInfo *;

// The kind of a Qt type: integers tkInteger, 64-bit integers tkInt64, QChar tkChar, bool and
// enumerations tkEnumeration, floating point tkFloat, QString and QByteArray tkLString,
// QVariant tkVariant, QObject pointers and the value classes with parts (QFont, QSize,
// QPoint, QRect, QMargins, QSizePolicy, QStringList, their F forms, pictures) tkClass. A
// colour (TColor, QColor), a cursor and a key sequence are tkInteger, as the platform keeps
// them; dates and times tkFloat. Anything else is tkUnknown.
KV_EXPORT TTypeKind TypeKindOf(QMetaType Type);
// The same for a property, where Q_FLAG types are tkSet and Q_ENUM types tkEnumeration.
KV_EXPORT TTypeKind TypeKindOf(const QMetaProperty &Property);

// The interned information of a type, created on first use. Never null: a type Qt does not
// know is interned by its name with kind tkUnknown.
KV_EXPORT PTypeInfo TypeInfoOf(QMetaType Type);
// The property's type; Q_ENUM and Q_FLAG properties get their keys.
KV_EXPORT PTypeInfo TypeInfoOf(const QMetaProperty &Property);
// An enumeration or set type with the keys of Enum (a set when Enum is a flag).
KV_EXPORT PTypeInfo TypeInfoOf(QMetaType Type, const QMetaEnum &Enum);
// The type of a signal: kind tkMethod, one per parameter list.
KV_EXPORT PTypeInfo TypeInfoOf(const QMetaMethod &Signal);
// A set type that Qt has no enumerator for (TFontStyles), interned by Name; Keys are its
// elements. The first call for a name fixes the keys.
KV_EXPORT PTypeInfo SetTypeInfo(const QString &Name, QMetaType Type, const QList<TEnumKey> &Keys);

// Qt's integer types of 32 bits and less: char, short and int, signed or not.
KV_EXPORT bool IsIntegerMetaType(QMetaType Type);

// A public signal of a class, and whether another public signal of the class has its name.
struct KV_EXPORT TPublicSignal
{
    QMetaMethod Signal;
    bool Overloaded = false;
};

// The public signals of Class in declaration order, QObject's first, without the clones that
// default arguments make.
KV_EXPORT QList<TPublicSignal> PublicSignals(const QMetaObject *Class);

template <typename T>
PTypeInfo TypeInfo()
{
    return TypeInfoOf(QMetaType::fromType<T>());
}

} // namespace kv
