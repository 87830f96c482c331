#include "platform/kvPropEdits.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"
#include "platform/kvIFormDesigner.h"
#include "platform/kvOwner.h"
#include "platform/kvPropertyRegistry.h"

#include <QLocale>
#include <QObject>

#include <limits>

namespace kv {

namespace {

// Decimal, "$1F" or "0x1F", with an optional sign; blanks around are ignored.
bool ParseInteger(QStringView Text, qint64 &Value)
{
    Text = Text.trimmed();
    bool negative = false;
    if (Text.startsWith(u'-') || Text.startsWith(u'+')) {
        negative = Text.front() == u'-';
        Text = Text.mid(1);
    }
    int base = 10;
    if (Text.startsWith(u'$')) {
        base = 16;
        Text = Text.mid(1);
    } else if (Text.startsWith(u"0x", Qt::CaseInsensitive)) {
        base = 16;
        Text = Text.mid(2);
    }
    if (Text.isEmpty() || Text.front() == u'-' || Text.front() == u'+')
        return false;
    bool ok = false;
    const qulonglong magnitude = Text.toULongLong(&ok, base);
    if (!ok)
        return false;
    if (negative) {
        if (magnitude > qulonglong(std::numeric_limits<qint64>::max()) + 1)
            return false;
        Value = qint64(0 - magnitude);
    } else {
        // Unsigned 64-bit values above the signed range travel as their bit pattern.
        Value = qint64(magnitude);
    }
    return true;
}

bool IsUnsigned64(PTypeInfo Type)
{
    return Type->MetaType.id() == QMetaType::ULongLong
           || (Type->MetaType.id() == QMetaType::ULong && sizeof(unsigned long) == 8);
}

QString OrdinalText(PTypeInfo Type, qint64 Value)
{
    return IsUnsigned64(Type) ? QString::number(quint64(Value)) : QString::number(Value);
}

// Parses an ordinal of Type, checking its range; raises for text that is no number.
qint64 ParseOrdinal(const TPropertyEditor &Editor, const QString &Text, const QString &Kind)
{
    qint64 value = 0;
    PTypeInfo type = Editor.GetPropType();
    if (!ParseInteger(Text, value))
        throw Exception(LoadStr(SInvalidValueOfKind).arg(Text, Kind));
    const bool negativeText = Text.trimmed().startsWith(u'-');
    if (IsUnsigned64(type)) {
        if (negativeText)
            throw Exception(LoadStr(SOutOfRange).arg(0).arg(std::numeric_limits<quint64>::max()));
        return value;
    }
    if (value < type->MinValue || value > type->MaxValue
        || (!negativeText && value < 0 && type->MaxValue == std::numeric_limits<qint64>::max()))
        throw Exception(LoadStr(SOutOfRange).arg(type->MinValue).arg(type->MaxValue));
    return value;
}

// "(ClassName)": an object that has no name to show.
QString ClassText(const QObject *Object)
{
    return QLatin1Char('(') + QLatin1String(Object->metaObject()->className()) + QLatin1Char(')');
}

QString KindWord(PTypeInfo Type)
{
    return Type->MetaType.id() == QMetaType::Bool ? QStringLiteral("Boolean") : Type->Name;
}

} // namespace

// Ordinals -------------------------------------------------------------------------------

bool TOrdinalProperty::AllEqual() const
{
    return AllValuesEqual([this](int Index) { return GetOrdValueAt(Index); });
}

int TOrdinalProperty::GetEditLimit() const
{
    return 63;
}

QString TIntegerProperty::GetValue() const
{
    if (!GetVarValue().isValid())
        return {};
    return OrdinalText(GetPropType(), GetOrdValue());
}

void TIntegerProperty::SetValue(const QString &Value)
{
    SetOrdValue(ParseOrdinal(*this, Value, LoadStr(SKindInteger)));
}

QString TCharProperty::GetValue() const
{
    if (!GetVarValue().isValid())
        return {};
    const qint64 code = GetOrdValue();
    const QChar ch = QChar(char16_t(code));
    if ((code > 32 && code < 127) || (code > 127 && code <= 0xFFFF && ch.isPrint() && !ch.isSpace()))
        return QString(ch);
    return QLatin1Char('#') + QString::number(code);
}

void TCharProperty::SetValue(const QString &Value)
{
    qint64 code = 0;
    if (Value.size() == 1) {
        code = Value.front().unicode();
    } else if (Value.size() > 1 && Value.front() == u'#') {
        if (!ParseInteger(QStringView(Value).mid(1), code))
            RaiseInvalidValue(Value, LoadStr(SKindChar));
        PTypeInfo type = GetPropType();
        if (code < type->MinValue || code > type->MaxValue)
            throw Exception(LoadStr(SOutOfRange).arg(type->MinValue).arg(type->MaxValue));
    } else if (!Value.isEmpty()) {
        RaiseInvalidValue(Value, LoadStr(SKindChar));
    }
    SetOrdValue(code);
}

TPropertyAttributes TEnumProperty::GetAttributes() const
{
    return TOrdinalProperty::GetAttributes() | paValueList | paSortList;
}

QString TEnumProperty::GetValue() const
{
    if (!GetVarValue().isValid())
        return {};
    const qint64 value = GetOrdValue();
    const QString key = GetPropType()->KeyOf(value);
    return key.isEmpty() ? QString::number(value) : key;
}

void TEnumProperty::GetValues(const TGetStrProc &Proc) const
{
    const QList<TEnumKey> &keys = GetPropType()->Keys;
    for (qsizetype i = 0; i < keys.size(); ++i) {
        // A value that several keys name is offered by its first key only.
        bool earlier = false;
        for (qsizetype j = 0; j < i && !earlier; ++j)
            earlier = keys[j].Value == keys[i].Value;
        if (!earlier)
            Proc(keys[i].Name);
    }
}

void TEnumProperty::SetValue(const QString &Value)
{
    PTypeInfo type = GetPropType();
    qint64 value = 0;
    if (!type->ValueOf(Value.trimmed(), value)) {
        if (!ParseInteger(Value, value) || value < type->MinValue || value > type->MaxValue)
            RaiseInvalidValue(Value, KindWord(type));
    }
    SetOrdValue(value);
}

bool TInt64Property::AllEqual() const
{
    return AllValuesEqual([this](int Index) { return GetInt64ValueAt(Index); });
}

QString TInt64Property::GetValue() const
{
    if (!GetVarValue().isValid())
        return {};
    return OrdinalText(GetPropType(), GetInt64Value());
}

void TInt64Property::SetValue(const QString &Value)
{
    SetInt64Value(ParseOrdinal(*this, Value, LoadStr(SKindInteger)));
}

// Floats and strings ---------------------------------------------------------------------

bool TFloatProperty::AllEqual() const
{
    return AllValuesEqual([this](int Index) { return GetFloatValueAt(Index); });
}

QString TFloatProperty::GetValue() const
{
    const QVariant value = GetVarValue();
    if (!value.isValid())
        return {};
    if (value.metaType().id() == QMetaType::Float)
        return FloatText(value.toFloat());
    return FloatText(value.toDouble());
}

void TFloatProperty::SetValue(const QString &Value)
{
    QString text = Value.trimmed();
    text.replace(u',', u'.');
    bool ok = false;
    const double value = QLocale::c().toDouble(text, &ok);
    if (!ok)
        RaiseInvalidValue(Value, LoadStr(SKindFloat));
    SetFloatValue(value);
}

bool TStringProperty::AllEqual() const
{
    return AllValuesEqual([this](int Index) { return GetStrValueAt(Index); });
}

QString TStringProperty::GetValue() const
{
    return GetStrValue();
}

void TStringProperty::SetValue(const QString &Value)
{
    SetStrValue(Value);
}

TPropertyAttributes TCaptionProperty::GetAttributes() const
{
    return TStringProperty::GetAttributes() | paAutoUpdate;
}

TPropertyAttributes TComponentNameProperty::GetAttributes() const
{
    return TStringProperty::GetAttributes() & ~TPropertyAttributes(paMultiSelect);
}

void TComponentNameProperty::SetValue(const QString &Value)
{
    QObject *component = GetComponent(0);
    if (!component)
        return;
    const QString current = component->objectName();
    if (Value == current)
        return;
    if (!Value.isEmpty() && !IsValidIdent(Value))
        throw Exception(LoadStr(SInvalidName).arg(Value));
    if (QObject *other = FindComponent(GetOwner(component), Value); other && other != component)
        throw Exception(LoadStr(SDuplicateName).arg(Value));
    if (IFormDesigner *designer = Designer())
        designer->ValidateRename(component, current, Value);
    SetStrValue(Value);
}

// Sets ----------------------------------------------------------------------------------

TPropertyAttributes TSetProperty::GetAttributes() const
{
    return TOrdinalProperty::GetAttributes() | paSubProperties | paReadOnly;
}

QString TSetProperty::GetValue() const
{
    if (!GetVarValue().isValid())
        return {};
    quint64 bits = quint64(GetOrdValue());
    QStringList names;
    for (const TEnumKey &element : GetPropType()->Elements) {
        if (bits & quint64(element.Value)) {
            names.append(element.Name);
            bits &= ~quint64(element.Value);
        }
    }
    if (bits)
        names.append(QString::number(bits));
    return QLatin1Char('[') + names.join(QLatin1Char(',')) + QLatin1Char(']');
}

void TSetProperty::SetValue(const QString &Value)
{
    QStringView text = QStringView(Value).trimmed();
    if (text.startsWith(u'[') && text.endsWith(u']'))
        text = text.mid(1, text.size() - 2);
    quint64 bits = 0;
    PTypeInfo type = GetPropType();
    for (QStringView part : text.split(u',')) {
        part = part.trimmed();
        if (part.isEmpty())
            continue;
        qint64 value = 0;
        bool found = false;
        for (const TEnumKey &element : type->Elements) {
            if (part.compare(element.Name, Qt::CaseInsensitive) == 0) {
                value = element.Value;
                found = true;
                break;
            }
        }
        if (!found && (!ParseInteger(part, value) || value < 0))
            RaiseInvalidValue(Value, LoadStr(SKindSet));
        bits |= quint64(value);
    }
    SetOrdValue(qint64(bits));
}

void TSetProperty::GetProperties(const TGetPropEditProc &Proc) const
{
    for (const TEnumKey &element : GetPropType()->Elements)
        Proc(std::make_unique<TSetElementProperty>(SameInit(), element));
}

TSetElementProperty::TSetElementProperty(TEditorInit Init, TEnumKey Element)
    : TPropertyEditor(std::move(Init))
    , m_element(std::move(Element))
{
}

TPropertyAttributes TSetElementProperty::GetAttributes() const
{
    TPropertyAttributes attributes = paMultiSelect | paValueList | paSortList;
    if (!GetPropInfo()->IsWritable())
        attributes |= paReadOnly;
    return attributes;
}

QString TSetElementProperty::GetName() const
{
    return m_element.Name;
}

bool TSetElementProperty::IsSetAt(int Index) const
{
    return (quint64(GetOrdValueAt(Index)) & quint64(m_element.Value)) != 0;
}

QString TSetElementProperty::GetValue() const
{
    if (!GetVarValue().isValid())
        return {};
    return IsSetAt(0) ? QStringLiteral("True") : QStringLiteral("False");
}

void TSetElementProperty::GetValues(const TGetStrProc &Proc) const
{
    Proc(QStringLiteral("False"));
    Proc(QStringLiteral("True"));
}

void TSetElementProperty::SetValue(const QString &Value)
{
    const QString text = Value.trimmed();
    bool on = false;
    if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        on = true;
    else if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) != 0)
        RaiseInvalidValue(Value, QStringLiteral("Boolean"));
    // Each object keeps its other elements.
    const QMetaType type = GetPropType()->MetaType;
    const quint64 element = quint64(m_element.Value);
    WriteEach([&](QObject *, const QVariant &Current) {
        const quint64 bits = quint64(OrdinalOf(Current));
        const quint64 changed = on ? (bits | element) : (bits & ~element);
        return changed == bits ? QVariant() : VariantOfOrdinal(type, qint64(changed));
    });
}

bool TSetElementProperty::AllEqual() const
{
    return AllValuesEqual([this](int Index) { return IsSetAt(Index); });
}

// Objects -------------------------------------------------------------------------------

TPropertyAttributes TClassProperty::GetAttributes() const
{
    return paMultiSelect | paSubProperties | paReadOnly;
}

QString TClassProperty::GetValue() const
{
    if (GetPropType()->ClassType) {
        const QObject *object = GetObjValue();
        return object ? ClassText(object) : QString();
    }
    return TypeText();
}

void TClassProperty::SetValue(const QString &Value)
{
    // An object can't be typed; its own text changes nothing.
    if (!ShowsAlready(Value))
        throw Exception(LoadStr(SInvalidPropertyValue));
}

void TClassProperty::GetProperties(const TGetPropEditProc &Proc) const
{
    if (!GetPropType()->ClassType)
        return;
    QList<QObject *> objects;
    objects.reserve(PropCount());
    for (int i = 0; i < PropCount(); ++i) {
        QObject *object = GetObjValueAt(i);
        if (!object)
            return;
        objects.append(object);
    }
    GetComponentProperties(objects, TTypeKinds::Properties(), Designer(), Proc);
}

TPropertyAttributes TComponentProperty::GetAttributes() const
{
    return TPropertyEditor::GetAttributes() | paValueList | paSortList;
}

bool TComponentProperty::AllEqual() const
{
    return AllValuesEqual([this](int Index) { return GetObjValueAt(Index); });
}

QString TComponentProperty::GetValue() const
{
    QObject *object = GetObjValue();
    if (!object)
        return {};
    QString name;
    if (IFormDesigner *designer = Designer())
        name = designer->GetComponentName(object);
    else
        name = GetCompName(object);
    // An unnamed object still shows that there is one.
    if (name.isEmpty())
        name = ClassText(object);
    return name;
}

void TComponentProperty::GetValues(const TGetStrProc &Proc) const
{
    const QMetaObject *requiredClass = GetPropType()->ClassType;
    if (IFormDesigner *designer = Designer(); designer && designer->GetRoot()) {
        designer->GetComponentNames(requiredClass, Proc);
        return;
    }
    QObject *first = GetComponent(0);
    const QObject *owner = first ? GetOwner(first) : nullptr;
    if (!owner)
        return;
    ForEachOwnedComponent(owner, [&](QObject *component) {
        if (!component->objectName().isEmpty() && (!requiredClass || component->metaObject()->inherits(requiredClass)))
            Proc(component->objectName());
        return true;
    });
}

void TComponentProperty::SetValue(const QString &Value)
{
    const QString text = Value.trimmed();
    if (text.isEmpty()) {
        SetObjValue(nullptr);
        return;
    }
    if (ShowsAlready(text))
        return;
    QObject *found = nullptr;
    IFormDesigner *designer = Designer();
    if (designer && designer->GetRoot()) {
        found = designer->GetComponent(text);
    } else if (QObject *first = GetComponent(0)) {
        found = FindComponent(GetOwner(first), text);
    }
    const QMetaObject *requiredClass = GetPropType()->ClassType;
    if (!found || (requiredClass && !found->metaObject()->inherits(requiredClass))) {
        const QString className = requiredClass ? QLatin1String(requiredClass->className()) : QStringLiteral("QObject");
        throw Exception(LoadStr(SUnknownComponent).arg(text, className));
    }
    SetObjValue(found);
}

// Variants and the rest -----------------------------------------------------------------

QString TVariantProperty::GetValue() const
{
    return GetVarValue().toString();
}

void TVariantProperty::SetValue(const QString &Value)
{
    const QVariant current = GetVarValue();
    if (ShowsAlready(Value))
        return;
    // The value keeps its type where the text converts to it.
    QVariant value(Value);
    if (current.isValid() && current.metaType() != value.metaType()) {
        QVariant converted = value;
        if (converted.convert(current.metaType()) && converted.toString() == Value)
            value = converted;
    }
    SetVarValue(value);
}

TPropertyAttributes TUnknownProperty::GetAttributes() const
{
    return TPropertyEditor::GetAttributes() | paReadOnly;
}

QString TUnknownProperty::GetValue() const
{
    const QVariant value = GetVarValue();
    if (!value.isValid())
        return {};
    const QString text = value.canConvert<QString>() ? value.toString() : QString();
    return text.isEmpty() ? TypeText() : text;
}

void TUnknownProperty::SetValue(const QString &Value)
{
    if (!ShowsAlready(Value))
        throw Exception(LoadStr(SErrReadOnlyProperty).arg(GetName()));
}

} // namespace kv
