#include "persist/ideCommon_propstream.h"

#include "foundation/ideConsts.h"
#include "foundation/ideLib_props.h"
#include "persist/ideCommon.h"
#include "persist/ideLib_objstreams.h"
#include "platform/kvException.h"
#include "platform/kvIFormDesigner.h"
#include "platform/kvTypInfo.h"

#include <QMetaProperty>
#include <QRegularExpression>
#include <QStringList>

namespace kv {

TPropStream::TPropStream(QObject *Instance, const QString &PropName, quint32 Mode, QObject *parent)
    : QBuffer(parent)
    , m_instance(Instance)
    , m_propName(PropName)
    , m_mode(Mode & 3)
{
    UpdatePropInfo();
    if (m_mode == fmOpenRead || m_mode == fmOpenReadWrite)
        setData(GetPropValue().toUtf8());
    open(m_mode == fmOpenRead ? QIODevice::ReadOnly : QIODevice::ReadWrite);
}

TPropStream::~TPropStream() = default;

bool TPropStream::UpdatePropInfo()
{
    if (!m_instance || m_propName.isEmpty())
        BadPropInfo();
    const QMetaProperty prop = FindProperty(m_instance, m_propName);
    if (!prop.isValid())
        BadPropInfo();
    if (prop.metaType().id() == QMetaType::QStringList)
        return true;
    switch (TypeKindOf(prop)) {
    case tkString:
    case tkWChar:
    case tkLString:
    case tkWString:
        return false;
    default:
        BadPropInfo();
    }
}

void TPropStream::BadPropInfo() const
{
    throw Exception(LoadStr(SErrBadPropStream));
}

QString TPropStream::GetPropValue()
{
    const bool strings = UpdatePropInfo();
    const QVariant value = kv::GetPropValue(m_instance, m_propName);
    return strings ? value.toStringList().join(QLatin1Char('\n')) : value.toString();
}

void TPropStream::SetPropValue(const QString &Value)
{
    const bool strings = UpdatePropInfo();
    const QMetaProperty prop = FindProperty(m_instance, m_propName);
    if (!prop.isWritable())
        throw Exception::Fmt(SErrReadOnlyProperty, QString::fromLatin1(prop.name()));
    QVariant value = Value;
    if (strings) {
        static const QRegularExpression lineBreak(QStringLiteral("\r\n|\r|\n"));
        QStringList lines = Value.split(lineBreak);
        // A break at the end closes the last line; it does not open another.
        if (lines.last().isEmpty())
            lines.removeLast();
        value = lines;
    }
    if (!SetPropValueByPropInfo(m_instance, prop, value))
        throw Exception::Fmt(SErrBadPropValue, Value, QString::fromLatin1(prop.name()));
    if (GetDesignerProc) {
        if (IFormDesigner *designer = GetDesignerProc(m_instance))
            designer->Modified();
    }
}

void TPropStream::Commit()
{
    if (Writes())
        SetPropValue(QString::fromUtf8(data()));
}

} // namespace kv
