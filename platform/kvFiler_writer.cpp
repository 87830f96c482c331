#include "platform/kvFiler.h"

#include "foundation/ideConsts.h"
#include "platform/kvClasses.h"
#include "platform/kvCollection.h"
#include "platform/kvColor.h"
#include "platform/kvComponentState.h"
#include "platform/kvEventConnections.h"
#include "platform/kvException.h"
#include "platform/kvExtended.h"
#include "platform/kvFiler_p.h"
#include "platform/kvOwner.h"
#include "platform/kvPersistent.h"
#include "platform/kvStreamDefaults.h"
#include "platform/kvTypInfo.h"

#include <QBuffer>
#include <QColor>
#include <QDataStream>
#include <QDateTime>
#include <QIcon>
#include <QImage>
#include <QKeySequence>
#include <QPixmap>
#include <QUrl>
#include <QWidget>

#include <cstring>

namespace kv {

using namespace filer;

class TWriterPrivate
{
public:
    explicit TWriterPrivate(TWriter *Writer) : q(Writer) {}

    TWriter *q;
    QByteArray Buffer;
    qint64 Flushed = 0; // bytes handed to the device
    TWriter::TPropertyFilter Filter;
    TWriter::TClassNameHook ClassNameHook;
    TWriter::TEventNameHook EventNameHook;
    QObject *SkipObject = nullptr;
    QByteArray Prefix; // the dotted path of the sub-object being written
    QHash<const QMetaObject *, QByteArray> ClassNames;
    // Per class: the defaults of its plan's properties, and whether it is one of ours.
    struct TClassInfo
    {
        std::vector<QVariant> Defaults;
        bool Persistent = false;
    };
    QHash<const QMetaObject *, TClassInfo> Classes;
    const TClassInfo &InfoOf(QObject *Instance)
    {
        const QMetaObject *meta = Instance->metaObject();
        auto found = Classes.constFind(meta);
        if (found == Classes.cend()) {
            TClassInfo info;
            for (const TPropEntry &entry : PlanOf(meta).Properties)
                info.Defaults.push_back(DefaultPropValue(meta, entry.Property));
            info.Persistent = TPersistent::Of(Instance) != nullptr;
            found = Classes.insert(meta, std::move(info));
        }
        return *found;
    }
    int Depth = 0;

    void Byte(quint8 Value) { Buffer.append(char(Value)); }
    template <typename T>
    void Raw(T Value) // little-endian
    {
        char bytes[sizeof(T)];
        for (size_t i = 0; i < sizeof(T); ++i)
            bytes[i] = char(quint64(Value) >> (8 * i));
        Buffer.append(bytes, sizeof(T));
    }
    void ShortBytes(const QByteArray &Bytes)
    {
        Byte(quint8(Bytes.size()));
        Buffer.append(Bytes);
    }
    void Name(const QByteArray &Name)
    {
        if (Prefix.isEmpty() && Name.size() <= 255)
            ShortBytes(Name);
        else
            ShortBytes(QByteArray(Prefix + Name).left(255));
    }
    void MaybeFlush()
    {
        if (Buffer.size() >= 65536)
            q->FlushBuffer();
    }

    void WriteObject(QObject *Component, QObject *Ancestor, TFilerFlags Flags, int ChildPos);
    void WriteProps(QObject *Instance, QObject *Ancestor);
    void WriteEvents(QObject *Instance, QObject *Ancestor, const TClassPlan &Plan);
    void WriteValueOf(const TPropEntry &Entry, const QVariant &Value);
    bool WritePart(const TPart &Part, const QVariant &Value);
    QString ReferenceName(const QObject *Target) const;
    QString HandlerName(const QObject *Sender, const QMetaMethod &Signal) const;
    void Enter()
    {
        if (++Depth > MaxDepth) {
            --Depth;
            throw Exception(LoadStr(SStreamNesting));
        }
    }
};

namespace {

// A widget's font, palette and locale follow its parent's until they are set on the widget
// itself; only a value of its own is the widget's to write.
bool TakenFromParent(const QObject *Instance, const QByteArray &Name)
{
    if (!Instance->isWidgetType())
        return false;
    const auto *widget = static_cast<const QWidget *>(Instance);
    if (Name == "font")
        return !widget->testAttribute(Qt::WA_SetFont);
    if (Name == "palette")
        return !widget->testAttribute(Qt::WA_SetPalette);
    if (Name == "locale")
        return !widget->testAttribute(Qt::WA_SetLocale);
    return false;
}

// The counterpart of Child among Ancestor's children: the one of that name.
QObject *AncestorChild(QObject *Ancestor, const QObject *Child, QObject *Root, int &Index)
{
    Index = -1;
    if (!Ancestor || Child->objectName().isEmpty())
        return nullptr;
    QObject *found = nullptr;
    int i = 0;
    GetStreamChildren(Ancestor, Root, [&](QObject *c) {
        if (!found && c->objectName().compare(Child->objectName(), Qt::CaseInsensitive) == 0) {
            found = c;
            Index = i;
        }
        ++i;
    });
    return found;
}

QVariant AncestorValue(QObject *Ancestor, const QMetaProperty &Property)
{
    const QMetaObject *meta = Ancestor->metaObject();
    const int index = meta->indexOfProperty(Property.name());
    return index < 0 ? QVariant() : meta->property(index).read(Ancestor);
}

} // namespace

QString TWriterPrivate::ReferenceName(const QObject *Target) const
{
    if (!Target || Target->objectName().isEmpty())
        return {};
    if (Target == q->LookupRoot() || IsRoot(Target))
        return Target->objectName();
    QObject *owner = GetOwner(Target);
    if (owner == q->LookupRoot())
        return Target->objectName();
    if (!owner || owner->objectName().isEmpty())
        return {};
    return owner->objectName() + QLatin1Char('.') + Target->objectName();
}

QString TWriterPrivate::HandlerName(const QObject *Sender, const QMetaMethod &Signal) const
{
    const TEventHandler handler = GetEventHandler(Sender, Signal);
    if (!handler.IsEmpty()) {
        if (handler.Handler == q->LookupRoot())
            return handler.SlotName;
        if (GetOwner(handler.Handler) == q->LookupRoot() && !handler.Handler->objectName().isEmpty())
            return handler.Handler->objectName() + QLatin1Char('.') + handler.SlotName;
        return {};
    }
    QString kept = KeptHandlerName(Sender, Signal);
    if (kept.isEmpty() && EventNameHook)
        kept = EventNameHook(Sender, Signal);
    return kept;
}

bool TWriterPrivate::WritePart(const TPart &Part, const QVariant &Value)
{
    switch (Part.Kind) {
    case TKind::Int:
        q->WriteInteger(Value.toLongLong());
        return true;
    case TKind::Double:
        if (Value.metaType().id() == QMetaType::Int)
            q->WriteInteger(Value.toInt());
        else
            q->WriteFloat(Value.toDouble());
        return true;
    case TKind::Bool:
        q->WriteBoolean(Value.toBool());
        return true;
    case TKind::String:
        q->WriteString(Value.toString());
        return true;
    case TKind::Enum: {
        const char *key = Part.Enum.valueToKey(Value.toInt());
        if (key)
            q->WriteIdent(QString::fromLatin1(key));
        else
            q->WriteInteger(Value.toInt());
        return true;
    }
    case TKind::Set: {
        QStringList elements;
        const int bits = Value.toInt();
        for (int i = 0; i < FontStyleNames().size(); ++i)
            if (bits & (1 << i))
                elements.append(FontStyleNames()[i]);
        q->WriteSet(elements);
        return true;
    }
    default:
        return false;
    }
}

void TWriterPrivate::WriteValueOf(const TPropEntry &Entry, const QVariant &Value)
{
    const QMetaProperty &property = Entry.Property;
    switch (Entry.Kind) {
    case TKind::Int:
    case TKind::Int64:
        q->WriteInteger(Value.toLongLong());
        return;
    case TKind::UInt64:
        q->WriteInteger(qint64(Value.toULongLong()));
        return;
    case TKind::Bool:
        q->WriteBoolean(Value.toBool());
        return;
    case TKind::Enum: {
        const int value = Value.toInt();
        if (const char *key = property.enumerator().valueToKey(value))
            q->WriteIdent(QString::fromLatin1(key));
        else
            q->WriteInteger(value);
        return;
    }
    case TKind::Set: {
        const QMetaEnum meta = property.enumerator();
        const qint64 value = Value.toLongLong();
        qint64 covered = 0;
        QStringList elements;
        for (int i = 0; i < meta.keyCount(); ++i) {
            const quint64 bit = quint64(uint(meta.value(i)));
            if (bit && !(bit & (bit - 1)) && (quint64(value) & bit) && !(quint64(covered) & bit)) {
                elements.append(QString::fromLatin1(meta.key(i)));
                covered |= qint64(bit);
            }
        }
        if (covered == value)
            q->WriteSet(elements);
        else
            q->WriteInteger(value);
        return;
    }
    case TKind::Double:
        q->WriteFloat(Value.toDouble());
        return;
    case TKind::Single:
        q->WriteSingle(Value.toFloat());
        return;
    case TKind::String:
        q->WriteString(Value.metaType().id() == QMetaType::QUrl ? Value.toUrl().toString() : Value.toString());
        return;
    case TKind::Char:
        q->WriteString(Value.toChar().isNull() ? QString() : QString(Value.toChar()));
        return;
    case TKind::Bytes:
        q->WriteBinary(Value.toByteArray());
        return;
    case TKind::Date:
        q->WriteDate(DateTimeToFilerDate(Value.toDate().startOfDay()));
        return;
    case TKind::Time:
        q->WriteDate(Value.toTime().isValid() ? double(Value.toTime().msecsSinceStartOfDay()) / 86400000 : 0);
        return;
    case TKind::DateTime:
        q->WriteDate(DateTimeToFilerDate(Value.toDateTime()));
        return;
    case TKind::Color: {
        QString ident;
        if (ColorToIdent(Value.value<TColor>(), ident))
            q->WriteIdent(ident);
        else
            q->WriteInteger(qint32(Value.value<TColor>()));
        return;
    }
    case TKind::QColor: {
        const QColor color = Value.value<QColor>();
        if (color.isValid() && color.spec() == QColor::Rgb && color.alpha() == 255
            && color == QColor::fromRgb(color.red(), color.green(), color.blue()))
            q->WriteInteger(qint32(QColorToColor(color)));
        else
            q->WriteBinary(SaveValue(Value));
        return;
    }
    case TKind::KeySequence:
        q->WriteString(Value.value<QKeySequence>().toString(QKeySequence::PortableText));
        return;
    case TKind::Variant:
        q->WriteVariant(Value);
        return;
    case TKind::Picture: {
        QImage image;
        switch (Value.metaType().id()) {
        case QMetaType::QImage:
            image = Value.value<QImage>();
            break;
        case QMetaType::QIcon: {
            const QIcon icon = Value.value<QIcon>();
            QSize largest;
            for (const QSize &size : icon.availableSizes())
                if (size.width() * size.height() > largest.width() * largest.height())
                    largest = size;
            image = icon.pixmap(largest.isValid() ? largest : QSize(32, 32)).toImage();
            break;
        }
        default:
            image = Value.value<QPixmap>().toImage();
            break;
        }
        QByteArray png;
        if (!image.isNull()) {
            QBuffer buffer(&png);
            buffer.open(QIODevice::WriteOnly);
            image.save(&buffer, "PNG");
        }
        q->WriteBinary(png);
        return;
    }
    case TKind::Other: {
        q->WriteBinary(SaveValue(Value));
        return;
    }
    default:
        throw Exception::Fmt(SUnwritableValue, property.name(), property.typeName());
    }
}

void TWriterPrivate::WriteProps(QObject *Instance, QObject *Ancestor)
{
    Enter();
    const TClassPlan &plan = PlanOf(Instance->metaObject());
    const TClassInfo &info = InfoOf(Instance);
    const bool widgetRoot = Instance == q->Root() && Prefix.isEmpty() && Instance->isWidgetType();
    for (size_t i = 0; i < plan.Properties.size(); ++i) {
        const TPropEntry &entry = plan.Properties[i];
        if ((Filter && !Filter(Instance, QString::fromLatin1(entry.Name))) || TakenFromParent(Instance, entry.Name))
            continue;
        const QVariant value = entry.Property.read(Instance);
        const QVariant base = Ancestor ? AncestorValue(Ancestor, entry.Property) : info.Defaults[i];
        switch (entry.Kind) {
        case TKind::SubObject: {
            QObject *sub = value.value<QObject *>();
            if (!sub)
                break;
            QObject *ancestorSub = base.value<QObject *>();
            if (auto *collection = qobject_cast<TCollection *>(sub)) {
                auto *ancestorCollection = qobject_cast<TCollection *>(ancestorSub);
                if (collection->Count() == 0 && (!ancestorCollection || ancestorCollection->Count() == 0))
                    break;
                Name(entry.Name);
                q->WriteCollection(collection);
                break;
            }
            const QByteArray saved = Prefix;
            Prefix += entry.Name + '.';
            WriteProps(sub, ancestorSub && ancestorSub->metaObject() == sub->metaObject() ? ancestorSub : nullptr);
            Prefix = saved;
            break;
        }
        case TKind::Parts: {
            const bool geometry = widgetRoot && entry.Name == "geometry";
            for (const TPart &part : *entry.Parts) {
                const QVariant partValue = part.Get(value);
                const bool always = geometry && (qstrcmp(part.Name, "Width") == 0 || qstrcmp(part.Name, "Height") == 0);
                if (!always && base.isValid() && SameStreamValue(partValue, part.Get(base)))
                    continue;
                Name(entry.Name + '.' + part.Name);
                WritePart(part, partValue);
            }
            break;
        }
        case TKind::Strings: {
            const QStringList lines = value.toStringList();
            if (base.isValid() && lines == base.toStringList())
                break;
            Name(entry.Name + ".Strings");
            q->WriteListBegin();
            for (const QString &line : lines)
                q->WriteString(line);
            q->WriteListEnd();
            break;
        }
        case TKind::Reference: {
            const QString name = ReferenceName(value.value<QObject *>());
            const QString baseName = Ancestor ? ReferenceName(base.value<QObject *>()) : QString();
            if (name == baseName)
                break;
            Name(entry.Name);
            if (name.isEmpty())
                q->WriteValue(vaNil);
            else
                q->WriteIdent(name);
            break;
        }
        default:
            if (SameStreamValue(value, base) && !(widgetRoot && entry.Name == "windowTitle"))
                break;
            Name(entry.Name);
            WriteValueOf(entry, value);
            break;
        }
        MaybeFlush();
    }
    WriteEvents(Instance, Ancestor, plan);
    if (TPersistent *persistent = info.Persistent ? TPersistent::Of(Instance) : nullptr) {
        QObject *saved = std::exchange(q->m_definingObject, Instance);
        QObject *savedAncestor = std::exchange(q->m_ancestor, Ancestor);
        try {
            persistent->DefineProperties(*q);
        } catch (...) {
            q->m_definingObject = saved;
            q->m_ancestor = savedAncestor;
            --Depth;
            throw;
        }
        q->m_definingObject = saved;
        q->m_ancestor = savedAncestor;
    }
    --Depth;
}

void TWriterPrivate::WriteEvents(QObject *Instance, QObject *Ancestor, const TClassPlan &Plan)
{
    if (EventHandlerCount() == 0 && !HasKeptHandlerNames() && !EventNameHook)
        return;
    for (const TEventEntry &entry : Plan.Events) {
        const QString name = HandlerName(Instance, entry.Signal);
        if (name.isEmpty())
            continue;
        if (Filter && !Filter(Instance, QString::fromLatin1(entry.Name)))
            continue;
        if (Ancestor && Ancestor->metaObject()->indexOfSignal(entry.Signal.methodSignature()) >= 0
            && HandlerName(Ancestor, entry.Signal) == name)
            continue;
        Name(entry.Name);
        q->WriteIdent(name);
    }
}

void TWriterPrivate::WriteObject(QObject *Component, QObject *Ancestor, TFilerFlags Flags, int ChildPos)
{
    Enter();
    // The root carries csWriting while it is written (a record per component would cost
    // more than the writing).
    const bool wasWriting = Component != q->Root() || (ComponentState(Component) & csWriting);
    if (!wasWriting)
        IncludeState(Component, csWriting);
    QObject *savedAncestor = q->m_ancestor;
    try {
        q->WritePrefix(Flags, ChildPos);
        const QString className = ClassNameHook ? ClassNameHook(Component) : QString();
        if (!className.isEmpty()) {
            q->WriteStr(className);
        } else {
            auto found = ClassNames.constFind(Component->metaObject());
            if (found == ClassNames.cend())
                found = ClassNames.insert(Component->metaObject(),
                                          EncodeShortString(StreamClassName(Component->metaObject())));
            ShortBytes(*found);
        }
        q->WriteStr(Component->objectName());
        savedAncestor = std::exchange(q->m_ancestor, Ancestor);
        WriteProps(Component, Ancestor);
        q->WriteListEnd();
        if (!q->IgnoreChildren)
            q->WriteChildren(Component);
        q->WriteListEnd();
        q->m_ancestor = savedAncestor;
    } catch (...) {
        q->m_ancestor = savedAncestor;
        if (!wasWriting)
            ExcludeState(Component, csWriting);
        --Depth;
        throw;
    }
    if (!wasWriting)
        ExcludeState(Component, csWriting);
    --Depth;
}

// TWriter -----------------------------------------------------------------------------------

TWriter::TWriter(QIODevice *Stream) : TFiler(Stream), d(std::make_unique<TWriterPrivate>(this)) {}

TWriter::~TWriter()
{
    try {
        FlushBuffer();
    } catch (...) {
        // Destructors don't throw; FlushBuffer tells of a failure when called.
    }
}

void TWriter::WriteRootComponent(QObject *Root)
{
    WriteDescendent(Root, nullptr);
}

void TWriter::WriteDescendent(QObject *Root, QObject *Ancestor)
{
    if (!Root)
        return;
    m_root = Root;
    m_lookupRoot = Root;
    WriteSignature();
    d->WriteObject(Root, Ancestor, Ancestor ? TFilerFlags(ffInherited) : TFilerFlags(), 0);
    FlushBuffer();
}

void TWriter::WriteComponent(QObject *Component)
{
    if (Component)
        d->WriteObject(Component, m_ancestor, {}, 0);
}

void TWriter::WriteProperties(QObject *Instance)
{
    if (Instance)
        d->WriteProps(Instance, m_ancestor);
}

void TWriter::WriteChildren(QObject *Component)
{
    QObject *ancestor = m_ancestor;
    int position = 0;
    GetStreamChildren(Component, m_root, [&](QObject *Child) {
        int ancestorIndex = -1;
        QObject *ancestorChild = AncestorChild(ancestor, Child, m_root, ancestorIndex);
        TFilerFlags flags;
        if (ancestorChild) {
            flags |= ffInherited;
            if (ancestorIndex != position)
                flags |= ffChildPos;
        }
        QObject *saved = std::exchange(m_ancestor, ancestorChild);
        try {
            d->WriteObject(Child, ancestorChild, flags, position);
        } catch (...) {
            m_ancestor = saved;
            throw;
        }
        m_ancestor = saved;
        ++position;
    });
}

void TWriter::WriteSignature()
{
    d->Buffer.append(FilerSignature, 4);
}

void TWriter::WritePrefix(TFilerFlags Flags, int ChildPos)
{
    if (!Flags)
        return;
    d->Byte(quint8(0xF0 | (int(Flags) & 0x0F)));
    if (Flags & ffChildPos)
        WriteInteger(ChildPos);
}

void TWriter::WriteStr(const QString &Value)
{
    d->ShortBytes(EncodeShortString(Value));
}

void TWriter::WriteValue(TValueType Value)
{
    d->Byte(Value);
}

void TWriter::WriteInteger(qint64 Value)
{
    if (Value >= -128 && Value <= 127) {
        d->Byte(vaInt8);
        d->Raw<qint8>(qint8(Value));
    } else if (Value >= -32768 && Value <= 32767) {
        d->Byte(vaInt16);
        d->Raw<qint16>(qint16(Value));
    } else if (Value >= INT32_MIN && Value <= INT32_MAX) {
        d->Byte(vaInt32);
        d->Raw<qint32>(qint32(Value));
    } else {
        d->Byte(vaInt64);
        d->Raw<qint64>(Value);
    }
}

void TWriter::WriteBoolean(bool Value)
{
    d->Byte(Value ? vaTrue : vaFalse);
}

void TWriter::WriteString(const QString &Value)
{
    if (!IsAscii(Value)) {
        WriteWideString(Value);
        return;
    }
    const qsizetype size = Value.size();
    if (size <= 255) {
        d->Byte(vaString);
        d->Byte(quint8(size));
    } else {
        d->Byte(vaLString);
        d->Raw<qint32>(qint32(size));
    }
    const qsizetype at = d->Buffer.size();
    d->Buffer.resize(at + size);
    char *out = d->Buffer.data() + at;
    const QChar *in = Value.constData();
    for (qsizetype i = 0; i < size; ++i)
        out[i] = char(in[i].unicode());
}

void TWriter::WriteWideString(const QString &Value)
{
    d->Byte(vaWString);
    d->Raw<qint32>(qint32(Value.size()));
    for (QChar c : Value)
        d->Raw<quint16>(c.unicode());
}

void TWriter::WriteIdent(const QString &Value)
{
    if (Value.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
        d->Byte(vaFalse);
    else if (Value.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        d->Byte(vaTrue);
    else if (Value.compare(QLatin1String("nil"), Qt::CaseInsensitive) == 0)
        d->Byte(vaNil);
    else if (Value.compare(QLatin1String("Null"), Qt::CaseInsensitive) == 0)
        d->Byte(vaNull);
    else {
        d->Byte(vaIdent);
        WriteStr(Value);
    }
}

void TWriter::WriteFloat(double Value)
{
    d->Byte(vaExtended);
    const TExtendedBytes bytes = DoubleToExtended(Value);
    d->Buffer.append(reinterpret_cast<const char *>(bytes.data()), 10);
}

void TWriter::WriteSingle(float Value)
{
    d->Byte(vaSingle);
    quint32 bits;
    std::memcpy(&bits, &Value, 4);
    d->Raw<quint32>(bits);
}

void TWriter::WriteCurrency(qint64 Scaled)
{
    d->Byte(vaCurrency);
    d->Raw<qint64>(Scaled);
}

void TWriter::WriteDate(double Value)
{
    d->Byte(vaDate);
    quint64 bits;
    std::memcpy(&bits, &Value, 8);
    d->Raw<quint64>(bits);
}

void TWriter::WriteBinary(const QByteArray &Value)
{
    d->Byte(vaBinary);
    d->Raw<qint32>(qint32(Value.size()));
    d->Buffer.append(Value);
    d->MaybeFlush();
}

void TWriter::WriteSet(const QStringList &Elements)
{
    d->Byte(vaSet);
    for (const QString &element : Elements)
        if (!element.isEmpty())
            WriteStr(element);
    d->Byte(0);
}

void TWriter::WriteListBegin()
{
    d->Byte(vaList);
}

void TWriter::WriteListEnd()
{
    d->Byte(vaNull);
}

void TWriter::WriteCollection(const TCollection *Collection)
{
    if (!Collection) {
        d->Byte(vaNil);
        return;
    }
    d->Byte(vaCollection);
    const QByteArray saved = std::exchange(d->Prefix, {});
    QObject *savedAncestor = std::exchange(m_ancestor, nullptr);
    try {
        for (TCollectionItem *item : Collection->ItemList()) {
            WriteListBegin();
            d->WriteProps(item, nullptr);
            WriteListEnd();
        }
    } catch (...) {
        d->Prefix = saved;
        m_ancestor = savedAncestor;
        throw;
    }
    d->Prefix = saved;
    m_ancestor = savedAncestor;
    WriteListEnd();
}

void TWriter::WriteVariant(const QVariant &Value)
{
    if (IsIntegerMetaType(Value.metaType())) {
        WriteInteger(Value.toLongLong());
        return;
    }
    switch (Value.metaType().id()) {
    case QMetaType::UnknownType:
        d->Byte(vaNil);
        return;
    case QMetaType::Nullptr:
        d->Byte(vaNull);
        return;
    case QMetaType::Long:
    case QMetaType::LongLong:
        WriteInteger(Value.toLongLong());
        return;
    case QMetaType::Bool:
        WriteBoolean(Value.toBool());
        return;
    case QMetaType::Double:
        WriteFloat(Value.toDouble());
        return;
    case QMetaType::Float:
        WriteSingle(Value.toFloat());
        return;
    case QMetaType::QString:
        WriteString(Value.toString());
        return;
    default: {
        // Anything else as the QDataStream bytes of the variant itself, type included.
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setVersion(QDataStream::Qt_6_0);
        stream << Value;
        if (stream.status() != QDataStream::Ok)
            throw Exception::Fmt(SUnwritableValue, "", Value.typeName());
        WriteBinary(bytes);
        return;
    }
    }
}

qint64 TWriter::Position() const
{
    return d->Flushed + d->Buffer.size();
}

void TWriter::FlushBuffer()
{
    if (d->Buffer.isEmpty())
        return;
    const QByteArray bytes = std::exchange(d->Buffer, {});
    d->Buffer.reserve(bytes.capacity());
    if (!m_stream || m_stream->write(bytes) != bytes.size())
        throw Exception(LoadStr(SWriteError));
    d->Flushed += bytes.size();
}

void TWriter::SetPropertyFilter(TPropertyFilter Filter)
{
    d->Filter = std::move(Filter);
}

void TWriter::SetSkipObject(QObject *Object)
{
    d->SkipObject = Object;
}

QObject *TWriter::SkipObject() const
{
    return d->SkipObject;
}

void TWriter::SetClassNameHook(TClassNameHook Hook)
{
    d->ClassNameHook = std::move(Hook);
}

void TWriter::SetEventNameHook(TEventNameHook Hook)
{
    d->EventNameHook = std::move(Hook);
}

void TWriter::DefineProperty(const QString &Name, const TReaderProc &, const TWriterProc &WriteData, bool HasData)
{
    if (!HasData || !WriteData || (d->SkipObject && m_definingObject == d->SkipObject))
        return;
    d->Name(Name.toUtf8());
    WriteData(*this);
}

void TWriter::DefineBinaryProperty(const QString &Name, const TStreamProc &, const TStreamProc &WriteData, bool HasData)
{
    if (!HasData || !WriteData || (d->SkipObject && m_definingObject == d->SkipObject))
        return;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    WriteData(buffer);
    d->Name(Name.toUtf8());
    WriteBinary(bytes);
}

} // namespace kv
