#include "foundation/ideLib_props.h"

#include "foundation/ideLib_stringlists.h"

#include "foundation/ideConsts.h"
#include "foundation/ideLib_strings.h"
#include "platform/kvClasses.h"
#include "platform/kvColor.h"
#include "platform/kvCommaText.h"
#include "platform/kvException.h"

#include <QColor>
#include <QDate>
#include <QDateTime>
#include <QFont>
#include <QMetaEnum>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QSettings>
#include <QTime>

#include <dlfcn.h>

namespace kv {

namespace {

// QObject's own properties (objectName) are the object's identity.
int FirstValueProperty()
{
    return QObject::staticMetaObject.propertyCount();
}

bool IsIdentity(const QMetaProperty &Prop)
{
    return Prop.enclosingMetaObject() == &QObject::staticMetaObject;
}

bool IsObjectReference(const QMetaProperty &Prop)
{
    return Prop.metaType().flags().testFlag(QMetaType::PointerToQObject);
}

// Copies Prop (a property of Source's class) to Dest's property of the same name, under the
// rules of AssignAllProps.
bool CopyProperty(const QObject *Source, QObject *Dest, const QMetaProperty &Prop)
{
    if (!Prop.isValid() || IsIdentity(Prop) || !Prop.isReadable() || !Prop.isStored())
        return false;
    const QMetaObject *to = Dest->metaObject();
    const int index = to->indexOfProperty(Prop.name());
    if (index < FirstValueProperty())
        return false;
    const QMetaProperty target = to->property(index);
    if (!target.isWritable() || !target.isStored())
        return false;
    return target.write(Dest, Prop.read(Source));
}

bool SameObjects(const QObject *Source, const QObject *Dest)
{
    return !Source || !Dest || Source == Dest;
}

// Types that QSettings keeps in an INI file as they are.
bool IsNativeSettingsType(QMetaType Type)
{
    switch (Type.id()) {
    case QMetaType::QStringList:
    case QMetaType::QByteArray:
    case QMetaType::QSize:
    case QMetaType::QSizeF:
    case QMetaType::QPoint:
    case QMetaType::QPointF:
    case QMetaType::QRect:
    case QMetaType::QRectF:
        return true;
    default:
        return false;
    }
}

QString SettingsGroup(const QString &Section)
{
    QString group = Section;
    group.replace(u'\\', u'/');
    return group;
}

bool EnumFromText(const QMetaEnum &Enum, const QString &Text, int &Value)
{
    bool ok = false;
    const QByteArray key = Text.trimmed().toLatin1();
    Value = Enum.isFlag() ? Enum.keysToValue(key.constData(), &ok) : Enum.keyToValue(key.constData(), &ok);
    if (ok)
        return true;
    if (!Enum.isFlag()) {
        for (int i = 0; i < Enum.keyCount(); ++i) {
            if (Text.trimmed().compare(QLatin1String(Enum.key(i)), Qt::CaseInsensitive) == 0) {
                Value = Enum.value(i);
                return true;
            }
        }
    }
    Value = Text.trimmed().toInt(&ok);
    return ok;
}

QString NumbersToText(std::initializer_list<double> Numbers)
{
    QStringList parts;
    for (double n : Numbers)
        parts.append(QString::number(n, 'g', 17));
    return parts.join(u',');
}

// Count numbers separated by commas; false unless there are exactly that many.
bool TextToNumbers(const QString &Text, qsizetype Count, bool Integers, QList<double> &Numbers)
{
    const QStringList parts = Text.split(u',');
    if (parts.size() != Count)
        return false;
    Numbers.clear();
    for (const QString &part : parts) {
        bool ok = false;
        const double n = Integers ? double(part.trimmed().toInt(&ok)) : part.trimmed().toDouble(&ok);
        if (!ok)
            return false;
        Numbers.append(n);
    }
    return true;
}

} // namespace

QMetaProperty FindProperty(const QObject *Obj, QStringView Name)
{
    if (!Obj || Name.isEmpty())
        return {};
    const QMetaObject *meta = Obj->metaObject();
    const int exact = meta->indexOfProperty(Name.toLatin1().constData());
    if (exact >= 0)
        return meta->property(exact);
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QMetaProperty prop = meta->property(i);
        if (Name.compare(QLatin1String(prop.name()), Qt::CaseInsensitive) == 0)
            return prop;
    }
    return {};
}

bool PropertyExists(const QObject *Obj, QStringView Name)
{
    return FindProperty(Obj, Name).isValid();
}

QVariant GetPropValueByPropInfo(const QObject *Obj, const QMetaProperty &Prop)
{
    if (!Obj || !Prop.isValid() || !Prop.isReadable())
        return {};
    return Prop.read(Obj);
}

bool SetPropValueByPropInfo(QObject *Obj, const QMetaProperty &Prop, const QVariant &Value)
{
    if (!Obj || !Prop.isValid() || !Prop.isWritable())
        return false;
    return Prop.write(Obj, Value);
}

QVariant GetPropValue(const QObject *Obj, QStringView Name)
{
    return GetPropValueByPropInfo(Obj, FindProperty(Obj, Name));
}

bool SetPropValue(QObject *Obj, QStringView Name, const QVariant &Value)
{
    return SetPropValueByPropInfo(Obj, FindProperty(Obj, Name), Value);
}

void SetPropValues(const QList<QObject *> &Objects, QStringView Name, const QVariant &Value)
{
    for (QObject *obj : Objects)
        SetPropValue(obj, Name, Value);
}

QObject *GetClassProperty(const QObject *Obj, QStringView Name)
{
    const QMetaProperty prop = FindProperty(Obj, Name);
    if (!prop.isValid() || !IsObjectReference(prop))
        return nullptr;
    return prop.read(Obj).value<QObject *>();
}

void AssignAllPropsExclude(const QObject *Source, QObject *Dest, const QStringList &Exclude)
{
    if (SameObjects(Source, Dest))
        return;
    const QMetaObject *from = Source->metaObject();
    for (int i = FirstValueProperty(); i < from->propertyCount(); ++i) {
        const QMetaProperty prop = from->property(i);
        if (!Exclude.contains(QLatin1String(prop.name()), Qt::CaseInsensitive))
            CopyProperty(Source, Dest, prop);
    }
}

bool AssignProp(const QObject *Source, QObject *Dest, QStringView Name)
{
    if (SameObjects(Source, Dest))
        return false;
    return CopyProperty(Source, Dest, FindProperty(Source, Name));
}

bool AssignPropInfo(const QObject *Source, QObject *Dest, const QMetaProperty &Prop)
{
    if (SameObjects(Source, Dest))
        return false;
    return CopyProperty(Source, Dest, Prop);
}

void AssignProps(const QObject *Source, QObject *Dest, const QStringList &Names)
{
    for (const QString &name : Names)
        AssignProp(Source, Dest, name.trimmed());
}

void AssignPropsEx(const QObject *Source, QObject *Dest, const QString &Names)
{
    AssignProps(Source, Dest, Names.split(u',', Qt::SkipEmptyParts));
}

void PropNamesToStrings(const QObject *Obj, QStringList &Strings)
{
    if (!Obj)
        return;
    const QMetaObject *meta = Obj->metaObject();
    for (int i = 0; i < meta->propertyCount(); ++i)
        Strings.append(QLatin1String(meta->property(i).name()));
}

QString PropValueToText(const QMetaProperty &Prop, const QVariant &Value)
{
    const QMetaType type = Prop.metaType();
    if (Prop.isEnumType()) {
        const QMetaEnum enumerator = Prop.enumerator();
        const int value = Value.toInt();
        const QByteArray keys = enumerator.isFlag() ? enumerator.valueToKeys(value) : QByteArray(enumerator.valueToKey(value));
        return keys.isEmpty() ? QString::number(value) : QString::fromLatin1(keys);
    }
    if (type == QMetaType::fromType<TColor>())
        return ColorToString(Value.value<TColor>());
    switch (type.id()) {
    case QMetaType::Bool:
        return BoolToStr(Value.toBool());
    case QMetaType::QColor:
        return Value.value<QColor>().name(QColor::HexArgb);
    case QMetaType::QFont:
        return Value.value<QFont>().toString();
    case QMetaType::QDate:
        return Value.toDate().toString(Qt::ISODate);
    case QMetaType::QTime:
        return Value.toTime().toString(Qt::ISODateWithMs);
    case QMetaType::QDateTime:
        return Value.toDateTime().toString(Qt::ISODateWithMs);
    case QMetaType::QStringList:
        return QuotedCommaText(Value.toStringList());
    case QMetaType::QSize:
    case QMetaType::QSizeF: {
        const QSizeF size = Value.toSizeF();
        return NumbersToText({size.width(), size.height()});
    }
    case QMetaType::QPoint:
    case QMetaType::QPointF: {
        const QPointF point = Value.toPointF();
        return NumbersToText({point.x(), point.y()});
    }
    case QMetaType::QRect:
    case QMetaType::QRectF: {
        const QRectF rect = Value.toRectF();
        return NumbersToText({rect.x(), rect.y(), rect.width(), rect.height()});
    }
    default:
        return Value.toString();
    }
}

bool PropValueFromText(const QMetaProperty &Prop, const QString &Text, QVariant &Value)
{
    const QMetaType type = Prop.metaType();
    if (Prop.isEnumType()) {
        int value = 0;
        if (!EnumFromText(Prop.enumerator(), Text, value))
            return false;
        Value = value;
        return true;
    }
    if (type == QMetaType::fromType<TColor>()) {
        try {
            Value = QVariant::fromValue(StringToColor(Text));
            return true;
        } catch (const Exception &) {
            return false;
        }
    }
    switch (type.id()) {
    case QMetaType::Bool:
        if (Text.trimmed().compare(u"False", Qt::CaseInsensitive) != 0 && !StrToBool(Text.trimmed()))
            return false;
        Value = StrToBool(Text.trimmed());
        return true;
    case QMetaType::QColor: {
        const QColor color = QColor::fromString(Text.trimmed());
        Value = color;
        return color.isValid();
    }
    case QMetaType::QFont: {
        QFont font;
        if (!font.fromString(Text))
            return false;
        Value = font;
        return true;
    }
    case QMetaType::QDate:
        Value = QDate::fromString(Text.trimmed(), Qt::ISODate);
        return Value.toDate().isValid();
    case QMetaType::QTime:
        Value = QTime::fromString(Text.trimmed(), Qt::ISODateWithMs);
        return Value.toTime().isValid();
    case QMetaType::QDateTime:
        Value = QDateTime::fromString(Text.trimmed(), Qt::ISODateWithMs);
        return Value.toDateTime().isValid();
    case QMetaType::QStringList: {
        QStringList list;
        if (!SplitQuotedCommaText(Text, list))
            return false;
        Value = list;
        return true;
    }
    case QMetaType::QSize:
    case QMetaType::QSizeF:
    case QMetaType::QPoint:
    case QMetaType::QPointF:
    case QMetaType::QRect:
    case QMetaType::QRectF: {
        const bool rect = type.id() == QMetaType::QRect || type.id() == QMetaType::QRectF;
        const bool integers = type.id() == QMetaType::QSize || type.id() == QMetaType::QPoint || type.id() == QMetaType::QRect;
        QList<double> n;
        if (!TextToNumbers(Text, rect ? 4 : 2, integers, n))
            return false;
        if (rect)
            Value = QRectF(n[0], n[1], n[2], n[3]);
        else if (type.id() == QMetaType::QSize || type.id() == QMetaType::QSizeF)
            Value = QSizeF(n[0], n[1]);
        else
            Value = QPointF(n[0], n[1]);
        return Value.convert(type);
    }
    case QMetaType::QChar:
        if (Text.size() != 1)
            return false;
        Value = Text.front();
        return true;
    default: {
        QVariant converted(Text);
        if (!converted.convert(type))
            return false;
        Value = converted;
        return true;
    }
    }
}

void AssignPropsFromStrings(QObject *Obj, const QStringList &Strings)
{
    if (!Obj)
        return;
    for (const QString &line : Strings) {
        const qsizetype eq = line.indexOf(u'=');
        if (eq < 0)
            continue;
        const QString name = line.left(eq).trimmed();
        const QString text = line.mid(eq + 1);
        const QMetaProperty prop = FindProperty(Obj, name);
        if (!prop.isValid())
            continue;
        QVariant value;
        if (!PropValueFromText(prop, text, value) || !SetPropValueByPropInfo(Obj, prop, value))
            throw Exception(LoadStr(SErrBadPropValue).arg(text, QLatin1String(prop.name())));
    }
}

QVariant CorrectBool(const QVariant &Value)
{
    if (Value.metaType() == QMetaType::fromType<bool>() && Value.toBool())
        return QVariant(1);
    return Value;
}

QString GetColItemDisplayName(const QObject *Item)
{
    if (!Item)
        return {};
    const QMetaProperty prop = FindProperty(Item, u"DisplayName");
    if (prop.isValid() && prop.isReadable())
        return prop.read(Item).toString();
    return StreamClassName(Item->metaObject());
}

void SetColItemDisplayName(QObject *Item, const QString &Name)
{
    SetPropValueByPropInfo(Item, FindProperty(Item, u"DisplayName"), Name);
}

QString StringFromRType(quint32 Type)
{
    // Indexed by type; the numbers without a name give the empty string.
    static const char *const names[] = {
        "",             "CURSOR",     "BITMAP",      "ICON",      "MENU",         "DIALOG",
        "STRING",       "FONTDIR",    "FONT",        "ACCELERATOR", "RCDATA",     "MESSAGETABLE",
        "GROUP_CURSOR", "",           "GROUP_ICON",  "",          "VERSION",      "DLGINCLUDE",
        "",             "PLUGPLAY",   "VXD",         "ANICURSOR", "ANIICON",
    };
    if (Type < std::size(names))
        return QString::fromLatin1(names[Type]);
    return QString::number(Type);
}

QString StringFromRType(const QString &Type)
{
    return Type;
}

QString StringFromRName(quint32 Name)
{
    return QString::number(Name);
}

QString StringFromRName(const QString &Name)
{
    return Name;
}

QString ConvertDelphiTypeToString(int VarType)
{
    // Indexed by variant type code.
    static const char *const names[] = {
        "",          "",          "Smallint", "Longint", "Single",  "Double",   "Currency",
        "TDateTime", "PWideChar", "Pointer",  "Integer", "WordBool", "Variant", "Pointer",
        "PWideChar", "",          "ShortInt", "Byte",    "Word",    "Cardinal",
    };
    if (VarType < 0 || VarType >= int(std::size(names)))
        return {};
    return QString::fromLatin1(names[VarType]);
}

void ForEachProp(QObject *Obj, const TPropCallBack &Proc, bool OnlyStored)
{
    IterateProps(Obj, TTypeKinds::Any(), Proc, OnlyStored);
}

void IterateProps(QObject *Obj, TTypeKinds Kinds, const TPropCallBack &Proc, bool OnlyStored)
{
    if (!Obj || !Proc)
        return;
    const QMetaObject *meta = Obj->metaObject();
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QMetaProperty prop = meta->property(i);
        if (OnlyStored && !prop.isStored())
            continue;
        if (Kinds.Contains(TypeKindOf(prop)))
            Proc(Obj, prop);
    }
}

bool InheritsFromClassName(const QObject *Obj, QStringView ClassName)
{
    if (!Obj)
        return false;
    for (const QMetaObject *meta = Obj->metaObject(); meta; meta = meta->superClass()) {
        if (ClassName.compare(QLatin1String(meta->className()), Qt::CaseInsensitive) == 0
            || ClassName.compare(StreamClassName(meta), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

const QMetaObject *GetCommonParent(const QMetaObject *A, const QMetaObject *B)
{
    for (const QMetaObject *candidate = A; candidate && B; candidate = candidate->superClass()) {
        if (B->inherits(candidate))
            return candidate;
    }
    return nullptr;
}

const QMetaObject *GetCommonClassesParent(const QList<QObject *> &Objects)
{
    const QMetaObject *common = nullptr;
    for (const QObject *obj : Objects) {
        if (!obj)
            continue;
        common = common ? GetCommonParent(common, obj->metaObject()) : obj->metaObject();
    }
    return common;
}

QString GetClassModule(const QMetaObject *Class)
{
    Dl_info info{};
    if (!Class || !dladdr(static_cast<const void *>(Class), &info) || !info.dli_fname)
        return {};
    return QString::fromLocal8Bit(info.dli_fname);
}

void SaveComponentToIniFile(const QObject *Obj, const QString &Section, const QString &FileName)
{
    if (!Obj)
        return;
    if (FileName.isEmpty())
        throw Exception(LoadStr(SErrNoOptionsFile));
    QSettings settings(FileName, QSettings::IniFormat);
    settings.beginGroup(SettingsGroup(Section));
    const QMetaObject *meta = Obj->metaObject();
    for (int i = FirstValueProperty(); i < meta->propertyCount(); ++i) {
        const QMetaProperty prop = meta->property(i);
        if (!prop.isReadable() || !prop.isWritable() || !prop.isStored() || IsObjectReference(prop))
            continue;
        const QVariant value = prop.read(Obj);
        const QString key = QLatin1String(prop.name());
        if (IsNativeSettingsType(prop.metaType()))
            settings.setValue(key, value);
        else
            settings.setValue(key, PropValueToText(prop, value));
    }
    settings.endGroup();
    settings.sync();
    if (settings.status() != QSettings::NoError)
        throw Exception(LoadStr(SErrFileWrite).arg(FileName, LoadStr(SAccessDenied)));
}

void LoadComponentFromIniFile(QObject *Obj, const QString &Section, const QString &FileName)
{
    if (!Obj || FileName.isEmpty())
        return;
    QSettings settings(FileName, QSettings::IniFormat);
    settings.beginGroup(SettingsGroup(Section));
    const QMetaObject *meta = Obj->metaObject();
    for (int i = FirstValueProperty(); i < meta->propertyCount(); ++i) {
        const QMetaProperty prop = meta->property(i);
        const QString key = QLatin1String(prop.name());
        if (!prop.isWritable() || !prop.isStored() || IsObjectReference(prop) || !settings.contains(key))
            continue;
        QVariant value = settings.value(key);
        if (IsNativeSettingsType(prop.metaType())) {
            // An empty list is stored as an invalid value.
            if (!value.isValid() && prop.metaType() == QMetaType::fromType<QStringList>())
                value = QStringList();
            else if (!value.convert(prop.metaType()))
                continue;
        } else if (!PropValueFromText(prop, value.toString(), value)) {
            continue;
        }
        prop.write(Obj, value);
    }
}

} // namespace kv
