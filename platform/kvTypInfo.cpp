#include "platform/kvTypInfo.h"

#include "platform/kvColor.h"

#include <QHash>
#include <QMargins>
#include <QMetaEnum>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QVariant>

#include <limits>
#include <memory>

namespace kv {

namespace {

// The interned types. Entries are never removed: a TTypeInfo is as permanent as the
// QMetaType it describes, and callers keep its address.
struct TTypeTable
{
    // By id, not by QMetaType::iface(): Qt built with clang gives each binary its own
    // interface for a Gui or Widgets type, while the id is one per process.
    QHash<int, TTypeInfo *> byMetaType;
    QHash<QString, TTypeInfo *> byName;          // unknown, signal and synthetic types
    std::vector<std::unique_ptr<TTypeInfo>> all;

    TTypeInfo *Add(std::unique_ptr<TTypeInfo> info)
    {
        all.push_back(std::move(info));
        return all.back().get();
    }
};

TTypeTable &Types()
{
    static TTypeTable table;
    return table;
}

void SetIntegerRange(TTypeInfo &info, int size, bool isSigned)
{
    if (size >= 8) {
        info.MinValue = isSigned ? std::numeric_limits<qint64>::min() : 0;
        info.MaxValue = std::numeric_limits<qint64>::max();
        return;
    }
    const int bits = size * 8;
    if (isSigned) {
        info.MinValue = -(qint64(1) << (bits - 1));
        info.MaxValue = (qint64(1) << (bits - 1)) - 1;
    } else {
        info.MinValue = 0;
        info.MaxValue = (qint64(1) << bits) - 1;
    }
}

bool IsUnsignedInteger(QMetaType type)
{
    switch (type.id()) {
    case QMetaType::UInt:
    case QMetaType::UShort:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
    case QMetaType::UChar:
    case QMetaType::Char16:
    case QMetaType::QChar:
        return true;
    default:
        return type.flags().testFlag(QMetaType::IsUnsignedEnumeration);
    }
}

void FillKeys(TTypeInfo &info, const QMetaEnum &metaEnum)
{
    info.Keys.reserve(metaEnum.keyCount());
    for (int i = 0; i < metaEnum.keyCount(); ++i)
        info.Keys.append({QString::fromLatin1(metaEnum.key(i)), qint64(metaEnum.value(i))});
    if (metaEnum.isFlag()) {
        info.Kind = tkSet;
        quint64 seen = 0;
        for (const TEnumKey &key : std::as_const(info.Keys)) {
            const quint64 bits = quint64(key.Value) & 0xFFFFFFFFu;
            if (bits != 0 && (bits & (bits - 1)) == 0 && !(seen & bits)) {
                seen |= bits;
                info.Elements.append(key);
            }
        }
    } else {
        info.Kind = tkEnumeration;
    }
}

std::unique_ptr<TTypeInfo> MakeInfo(QMetaType type)
{
    auto info = std::make_unique<TTypeInfo>();
    info->MetaType = type;
    info->Name = QString::fromLatin1(type.name());
    info->Kind = TypeKindOf(type);
    if (type.flags().testFlag(QMetaType::PointerToQObject))
        info->ClassType = type.metaObject();
    switch (info->Kind) {
    case tkInteger:
    case tkInt64:
    case tkChar:
        SetIntegerRange(*info, type.sizeOf(), !IsUnsignedInteger(type));
        break;
    case tkEnumeration:
        if (type.id() == QMetaType::Bool) {
            info->Keys = {{QStringLiteral("False"), 0}, {QStringLiteral("True"), 1}};
            info->MaxValue = 1;
        } else {
            SetIntegerRange(*info, type.sizeOf(), !IsUnsignedInteger(type));
            // A Q_ENUM declared in a class or namespace with a meta-object brings its keys.
            if (const QMetaObject *scope = type.metaObject()) {
                QByteArray name = type.name();
                const qsizetype colon = name.lastIndexOf(':');
                if (colon >= 0)
                    name = name.mid(colon + 1);
                const int index = scope->indexOfEnumerator(name.constData());
                if (index >= 0)
                    FillKeys(*info, scope->enumerator(index));
            }
        }
        break;
    default:
        break;
    }
    return info;
}

} // namespace

QString TTypeInfo::KeyOf(qint64 Value) const
{
    for (const TEnumKey &key : Keys) {
        if (key.Value == Value)
            return key.Name;
    }
    return {};
}

bool TTypeInfo::ValueOf(const QString &Key, qint64 &Value) const
{
    for (const TEnumKey &key : Keys) {
        if (key.Name.compare(Key, Qt::CaseInsensitive) == 0) {
            Value = key.Value;
            return true;
        }
    }
    return false;
}

bool IsIntegerMetaType(QMetaType Type)
{
    switch (Type.id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

QList<TPublicSignal> PublicSignals(const QMetaObject *Class)
{
    QList<TPublicSignal> signalList;
    if (!Class)
        return signalList;
    QHash<QByteArray, int> nameCount;
    for (int i = 0; i < Class->methodCount(); ++i) {
        const QMetaMethod method = Class->method(i);
        if (method.methodType() != QMetaMethod::Signal || method.access() != QMetaMethod::Public
            || (method.attributes() & QMetaMethod::Cloned))
            continue;
        signalList.append({method});
        ++nameCount[method.name()];
    }
    for (TPublicSignal &signal : signalList)
        signal.Overloaded = nameCount.value(signal.Signal.name()) > 1;
    return signalList;
}

TTypeKind TypeKindOf(QMetaType Type)
{
    if (!Type.isValid())
        return tkUnknown;
    if (Type == QMetaType::fromType<TColor>() || IsIntegerMetaType(Type))
        return tkInteger;
    switch (Type.id()) {
    case QMetaType::QColor:
    case QMetaType::QCursor:
    case QMetaType::QKeySequence:
        return tkInteger;
    case QMetaType::Long:
    case QMetaType::ULong:
        return sizeof(long) == 8 ? tkInt64 : tkInteger;
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return tkInt64;
    case QMetaType::QChar:
    case QMetaType::Char16:
        return tkChar;
    case QMetaType::Bool:
        return tkEnumeration;
    case QMetaType::Float:
    case QMetaType::Double:
    case QMetaType::QDate:
    case QMetaType::QTime:
    case QMetaType::QDateTime:
        return tkFloat;
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::QUrl:
        return tkLString;
    case QMetaType::QVariant:
        return tkVariant;
    case QMetaType::QFont:
    case QMetaType::QSize:
    case QMetaType::QSizeF:
    case QMetaType::QPoint:
    case QMetaType::QPointF:
    case QMetaType::QRect:
    case QMetaType::QRectF:
    case QMetaType::QSizePolicy:
    case QMetaType::QStringList:
    case QMetaType::QIcon:
    case QMetaType::QPixmap:
    case QMetaType::QImage:
    case QMetaType::QBitmap:
    case QMetaType::QPalette:
        return tkClass;
    default:
        break;
    }
    if (Type == QMetaType::fromType<QMargins>() || Type == QMetaType::fromType<QMarginsF>())
        return tkClass;
    if (Type.flags().testFlag(QMetaType::PointerToQObject))
        return tkClass;
    if (Type.flags().testFlag(QMetaType::IsEnumeration))
        return tkEnumeration;
    return tkUnknown;
}

TTypeKind TypeKindOf(const QMetaProperty &Property)
{
    if (Property.isFlagType())
        return tkSet;
    if (Property.isEnumType())
        return tkEnumeration;
    return TypeKindOf(Property.metaType());
}

PTypeInfo TypeInfoOf(QMetaType Type)
{
    TTypeTable &table = Types();
    if (Type.isValid()) {
        if (TTypeInfo *found = table.byMetaType.value(Type.id()))
            return found;
        TTypeInfo *info = table.Add(MakeInfo(Type));
        table.byMetaType.insert(Type.id(), info);
        return info;
    }
    const QString name = QStringLiteral("<unknown>");
    if (TTypeInfo *found = table.byName.value(name))
        return found;
    auto info = std::make_unique<TTypeInfo>();
    info->Name = name;
    TTypeInfo *added = table.Add(std::move(info));
    table.byName.insert(name, added);
    return added;
}

PTypeInfo TypeInfoOf(QMetaType Type, const QMetaEnum &Enum)
{
    TTypeTable &table = Types();
    if (Type.isValid()) {
        TTypeInfo *info = table.byMetaType.value(Type.id());
        if (!info) {
            info = table.Add(MakeInfo(Type));
            table.byMetaType.insert(Type.id(), info);
        }
        // A type first met without its enumerator (a bare QMetaType) gets its keys now.
        if (info->Keys.isEmpty() && Enum.isValid() && Enum.keyCount() > 0) {
            FillKeys(*info, Enum);
            if (info->MaxValue == 0 && info->MinValue == 0)
                SetIntegerRange(*info, qMax(Type.sizeOf(), 4), !Type.flags().testFlag(QMetaType::IsUnsignedEnumeration));
        }
        return info;
    }
    // An enumeration Qt has no meta-type for: interned by its scoped name.
    const QString name = QString::fromLatin1(Enum.scope()) + QLatin1String("::") + QString::fromLatin1(Enum.enumName());
    if (TTypeInfo *found = table.byName.value(name))
        return found;
    auto info = std::make_unique<TTypeInfo>();
    info->Name = name;
    SetIntegerRange(*info, 4, true);
    FillKeys(*info, Enum);
    TTypeInfo *added = table.Add(std::move(info));
    table.byName.insert(name, added);
    return added;
}

PTypeInfo TypeInfoOf(const QMetaProperty &Property)
{
    if (Property.isEnumType() || Property.isFlagType())
        return TypeInfoOf(Property.metaType(), Property.enumerator());
    return TypeInfoOf(Property.metaType());
}

PTypeInfo TypeInfoOf(const QMetaMethod &Signal)
{
    QString name = QStringLiteral("void(");
    for (int i = 0; i < Signal.parameterCount(); ++i) {
        if (i > 0)
            name += QLatin1Char(',');
        name += QString::fromLatin1(Signal.parameterTypeName(i));
    }
    name += QLatin1Char(')');
    TTypeTable &table = Types();
    if (TTypeInfo *found = table.byName.value(name))
        return found;
    auto info = std::make_unique<TTypeInfo>();
    info->Kind = tkMethod;
    info->Name = name;
    for (int i = 0; i < Signal.parameterCount(); ++i)
        info->Params.append(Signal.parameterMetaType(i));
    TTypeInfo *added = table.Add(std::move(info));
    table.byName.insert(name, added);
    return added;
}

PTypeInfo SetTypeInfo(const QString &Name, QMetaType Type, const QList<TEnumKey> &Keys)
{
    TTypeTable &table = Types();
    if (TTypeInfo *found = table.byName.value(Name))
        return found;
    auto info = std::make_unique<TTypeInfo>();
    info->Kind = tkSet;
    info->Name = Name;
    info->MetaType = Type;
    info->Keys = Keys;
    info->Elements = Keys;
    SetIntegerRange(*info, qMax(Type.sizeOf(), 1), false);
    TTypeInfo *added = table.Add(std::move(info));
    table.byName.insert(Name, added);
    return added;
}

} // namespace kv
