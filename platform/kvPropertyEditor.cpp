#include "platform/kvPropertyEditor.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"
#include "platform/kvIFormDesigner.h"
#include "platform/kvPropertyRegistry.h"

#include <QObject>

#include <charconv>
#include <cmath>
#include <cstring>

namespace kv {

TEditorContext::TEditorContext(IFormDesigner *Designer, const QList<QObject *> &Objects, std::vector<int> ClassOf)
    : m_designer(Designer)
    , m_designerObject(dynamic_cast<QObject *>(Designer))
    , m_designerIsObject(!m_designerObject.isNull())
    , m_classOf(std::move(ClassOf))
{
    m_objects.reserve(Objects.size());
    for (QObject *object : Objects)
        m_objects.append(object);
}

IFormDesigner *TEditorContext::Designer() const
{
    if (m_designerIsObject && m_designerObject.isNull())
        return nullptr;
    return m_designer;
}

QList<QObject *> TEditorContext::Objects() const
{
    QList<QObject *> living;
    living.reserve(m_objects.size());
    for (const QPointer<QObject> &object : m_objects) {
        if (object)
            living.append(object.data());
    }
    return living;
}

qint64 OrdinalOf(const QVariant &Value)
{
    const QMetaType type = Value.metaType();
    switch (type.id()) {
    case QMetaType::UnknownType:
        return 0;
    case QMetaType::Bool:
        return Value.toBool() ? 1 : 0;
    case QMetaType::QChar:
        return Value.toChar().unicode();
    case QMetaType::Char16:
        return qint64(Value.value<char16_t>());
    case QMetaType::ULongLong:
    case QMetaType::ULong:
        return qint64(Value.toULongLong());
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return Value.toLongLong();
    default:
        break;
    }
    // Enumerations, flags and colours: the raw value of their own width.
    const qsizetype size = type.sizeOf();
    if (size == 1 || size == 2 || size == 4 || size == 8) {
        const bool isSigned = type.flags().testFlag(QMetaType::IsEnumeration)
                              && !type.flags().testFlag(QMetaType::IsUnsignedEnumeration);
        const void *data = Value.constData();
        switch (size) {
        case 1: {
            quint8 v;
            std::memcpy(&v, data, 1);
            return isSigned ? qint64(qint8(v)) : qint64(v);
        }
        case 2: {
            quint16 v;
            std::memcpy(&v, data, 2);
            return isSigned ? qint64(qint16(v)) : qint64(v);
        }
        case 4: {
            quint32 v;
            std::memcpy(&v, data, 4);
            return isSigned ? qint64(qint32(v)) : qint64(v);
        }
        default: {
            qint64 v;
            std::memcpy(&v, data, 8);
            return v;
        }
        }
    }
    bool ok = false;
    const qlonglong number = Value.toLongLong(&ok);
    return ok ? number : 0;
}

QVariant VariantOfOrdinal(QMetaType Type, qint64 Ordinal)
{
    switch (Type.id()) {
    case QMetaType::Bool:
        return QVariant(Ordinal != 0);
    case QMetaType::QChar:
        return QVariant(QChar(char16_t(Ordinal)));
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar: {
        QVariant value = QVariant::fromValue(qlonglong(Ordinal));
        value.convert(Type);
        return value;
    }
    default:
        break;
    }
    const qsizetype size = Type.sizeOf();
    if (size > 0 && size <= 8) {
        QVariant raw(Type);
        std::memcpy(raw.data(), &Ordinal, size_t(size)); // the low bytes on a little-endian machine
        return raw;
    }
    return QVariant(qlonglong(Ordinal));
}

namespace {

template <typename T>
QString NumberText(T Value)
{
    if (std::isfinite(Value) && Value == std::trunc(Value) && std::abs(Value) < T(1e15)) {
        const QString digits = QString::number(qint64(std::abs(Value)));
        return std::signbit(Value) ? QLatin1Char('-') + digits : digits;
    }
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, Value);
    return QString::fromLatin1(buffer, result.ptr - buffer);
}

} // namespace

QString FloatText(double Value)
{
    return NumberText(Value);
}

QString FloatText(float Value)
{
    return NumberText(Value);
}

TPropertyEditor::TPropertyEditor(TEditorInit Init)
    : m_context(std::move(Init.Context))
    , m_info(std::move(Init.Info))
    , m_infos(std::move(Init.Infos))
{
    if (!m_info && !m_infos.empty())
        m_info = m_infos.front();
}

TPropertyEditor::~TPropertyEditor() = default;

const TPropInfoPtr &TPropertyEditor::GetPropInfo(int Index) const
{
    if (m_infos.empty() || Index < 0 || Index >= PropCount())
        return m_info;
    return m_infos[size_t(m_context->ClassOf(Index))];
}

TPropertyAttributes TPropertyEditor::GetAttributes() const
{
    TPropertyAttributes attributes = paMultiSelect | paRevertable;
    if (!m_info->IsWritable())
        attributes |= paReadOnly;
    return attributes;
}

QString TPropertyEditor::GetName() const
{
    return m_info->Name();
}

QString TPropertyEditor::GetValue() const
{
    const QVariant value = GetVarValue();
    if (!value.isValid())
        return {};
    if (value.canConvert<QString>())
        return value.toString();
    return TypeText();
}

QString TPropertyEditor::TypeText() const
{
    return QLatin1Char('(') + GetPropType()->Name + QLatin1Char(')');
}

void TPropertyEditor::SetValue(const QString &Value)
{
    SetVarValue(QVariant(Value));
}

void TPropertyEditor::GetValues(const TGetStrProc &) const
{
}

void TPropertyEditor::GetProperties(const TGetPropEditProc &) const
{
}

void TPropertyEditor::Edit()
{
    if (!(GetAttributes() & paValueList))
        return;
    QStringList values;
    GetValues([&values](const QString &value) { values.append(value); });
    if (values.isEmpty())
        return;
    const qsizetype index = values.indexOf(GetValue());
    SetValue(values.at((index + 1) % values.size()));
}

bool TPropertyEditor::AllEqual() const
{
    return AllValuesEqual([this](int Index) { return GetVarValueAt(Index); });
}

int TPropertyEditor::GetEditLimit() const
{
    return 0;
}

bool TPropertyEditor::AutoFill() const
{
    return true;
}

bool TPropertyEditor::ValueAvailable() const
{
    for (int i = 0; i < PropCount(); ++i) {
        if (!GetComponent(i) || !GetPropInfo(i)->IsReadable())
            return false;
    }
    return PropCount() > 0;
}

void TPropertyEditor::Initialize()
{
}

void TPropertyEditor::Activate()
{
}

void TPropertyEditor::Revert()
{
}

QVariant TPropertyEditor::GetVarValueAt(int Index) const
{
    if (Index < 0 || Index >= PropCount())
        return {};
    return GetPropInfo(Index)->Read(GetComponent(Index));
}

void TPropertyEditor::SetVarValue(const QVariant &Value)
{
    WriteAll(Value);
}

qint64 TPropertyEditor::GetOrdValueAt(int Index) const
{
    return OrdinalOf(GetVarValueAt(Index));
}

void TPropertyEditor::SetOrdValue(qint64 Value)
{
    WriteAll(VariantOfOrdinal(GetPropType()->MetaType, Value));
}

double TPropertyEditor::GetFloatValueAt(int Index) const
{
    return GetVarValueAt(Index).toDouble();
}

void TPropertyEditor::SetFloatValue(double Value)
{
    QVariant value(Value);
    const QMetaType type = GetPropType()->MetaType;
    if (type.isValid() && type != value.metaType())
        value.convert(type);
    WriteAll(value);
}

QString TPropertyEditor::GetStrValueAt(int Index) const
{
    return GetVarValueAt(Index).toString();
}

void TPropertyEditor::SetStrValue(const QString &Value)
{
    WriteAll(QVariant(Value));
}

QObject *TPropertyEditor::GetObjValueAt(int Index) const
{
    const QVariant value = GetVarValueAt(Index);
    return value.metaType().flags().testFlag(QMetaType::PointerToQObject) ? value.value<QObject *>() : nullptr;
}

void TPropertyEditor::SetObjValue(QObject *Value)
{
    // A pointer variant of the property's own class, so that Qt's write takes it.
    const QMetaType type = GetPropType()->MetaType;
    if (type.isValid() && type.flags().testFlag(QMetaType::PointerToQObject))
        WriteAll(QVariant(type, &Value));
    else
        WriteAll(QVariant::fromValue(Value));
}

void TPropertyEditor::Modified()
{
    if (IFormDesigner *designer = Designer())
        designer->Modified();
}

void TPropertyEditor::RaiseInvalidValue(const QString &Text, const QString &Kind) const
{
    throw Exception(LoadStr(SInvalidValueOfKind).arg(Text, Kind));
}

TEditorInit TPropertyEditor::SubInit(TPropInfoPtr Info) const
{
    return TEditorInit{m_context, std::move(Info), {}};
}

void TPropertyEditor::GetPartProperties(const QList<TValuePart> &Parts, const TGetPropEditProc &Proc) const
{
    for (const TValuePart &part : Parts) {
        TEditorInit init{m_context, nullptr, {}};
        if (m_infos.empty()) {
            init.Info = std::make_shared<TPartInfo>(m_info, part);
        } else {
            init.Infos.reserve(m_infos.size());
            for (const TPropInfoPtr &info : m_infos)
                init.Infos.push_back(std::make_shared<TPartInfo>(info, part));
            init.Info = init.Infos.front();
        }
        const TPropertyEditorClass editorClass =
            GetEditorClass(init.Info->PropType(), nullptr, GetPropType(), init.Info->Name());
        if (!editorClass)
            continue;
        std::unique_ptr<TPropertyEditor> editor = editorClass(std::move(init));
        if (PropCount() > 1 && !(editor->GetAttributes() & paMultiSelect))
            continue;
        Proc(std::move(editor));
    }
}

bool TPropertyEditor::HoldsAlready(PTypeInfo Type, const QVariant &Current, const QVariant &Value)
{
    const QMetaType type = Type->MetaType;
    if (!type.isValid() || !type.isEqualityComparable() || Current.metaType() != type)
        return false;
    QVariant converted = Value;
    if (converted.metaType() != type && !converted.convert(type))
        return false;
    return Current == converted;
}

void TPropertyEditor::WriteEach(const std::function<QVariant(QObject *Object, const QVariant &Current)> &ValueFor)
{
    if (!m_info->IsWritable())
        throw Exception(LoadStr(SErrReadOnlyProperty).arg(GetName()));
    for (int i = 0; i < PropCount(); ++i) {
        QObject *object = GetComponent(i);
        if (!object)
            continue;
        const TPropInfo &info = *GetPropInfo(i);
        const QVariant current = info.Read(object);
        const QVariant value = ValueFor(object, current);
        // Writing what an object holds can still do something (a text edit forgets its undo
        // history, a spin box fills in its text): leave such objects alone.
        if (!value.isValid() || HoldsAlready(info.PropType(), current, value))
            continue;
        if (!info.Write(object, value))
            throw Exception(LoadStr(SErrBadPropValue).arg(value.toString(), GetName()));
    }
    Modified();
}

void TPropertyEditor::WriteAll(const QVariant &Value)
{
    WriteEach([&Value](QObject *, const QVariant &) { return Value; });
}

} // namespace kv
