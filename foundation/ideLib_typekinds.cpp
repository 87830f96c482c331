#include "foundation/ideLib_typekinds.h"

#include "platform/kvColor.h"

#include <QMetaProperty>
#include <QVariant>

namespace kv {

TTypeKind TypeKindOf(QMetaType Type)
{
    if (!Type.isValid())
        return tkUnknown;
    if (Type == QMetaType::fromType<TColor>())
        return tkInteger;
    switch (Type.id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::QColor:
    case QMetaType::QCursor:
    case QMetaType::QKeySequence:
        return tkInteger;
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

} // namespace kv
