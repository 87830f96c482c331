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

#include <QBitmap>
#include <QBuffer>
#include <QColor>
#include <QDataStream>
#include <QDateTime>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QKeySequence>
#include <QPixmap>
#include <QUrl>
#include <QVarLengthArray>
#include <QWidget>

#include <bit>
#include <cstring>
#include <type_traits>

namespace kv {

using namespace filer;

namespace {

// A stream that is not what it should be: never handed to the error hook.
class TStreamError : public Exception
{
public:
    using Exception::Exception;
};

// A value the property can't take: handed to the error hook.
class TValueError : public Exception
{
public:
    using Exception::Exception;
};

[[noreturn]] void ReadError()
{
    throw TStreamError(LoadStr(SReadError));
}

[[noreturn]] void FormatError()
{
    throw TStreamError(LoadStr(SInvalidStreamFormat));
}

[[noreturn]] void ValueError()
{
    throw TValueError(LoadStr(SInvalidPropertyValue));
}

bool IsIntegerTag(TValueType Tag)
{
    return Tag == vaInt8 || Tag == vaInt16 || Tag == vaInt32 || Tag == vaInt64;
}

bool IsStringTag(TValueType Tag)
{
    return Tag == vaString || Tag == vaLString || Tag == vaWString;
}

bool IsFloatTag(TValueType Tag)
{
    return IsIntegerTag(Tag) || Tag == vaExtended || Tag == vaSingle || Tag == vaCurrency || Tag == vaDate;
}

// The value of an enumeration key, the exact key first, then ignoring case.
bool KeyValue(const QMetaEnum &Enum, const QString &Key, int &Value)
{
    const QByteArray key = Key.toLatin1();
    bool ok = false;
    Value = Enum.keyToValue(key.constData(), &ok);
    if (ok)
        return true;
    for (int i = 0; i < Enum.keyCount(); ++i)
        if (qstricmp(Enum.key(i), key.constData()) == 0) {
            Value = Enum.value(i);
            return true;
        }
    return false;
}

// The typed readers look at the tag before taking it, so that a value of another type is
// left whole in the stream for the caller to skip.
void Expect(TReader &Reader, std::initializer_list<TValueType> Tags)
{
    const TValueType tag = Reader.NextValue();
    for (TValueType t : Tags)
        if (t == tag)
            return;
    ValueError();
}

} // namespace

class TReaderPrivate
{
public:
    explicit TReaderPrivate(TReader *Reader) : q(Reader) {}

    TReader *q;
    QIODevice *Device = nullptr;
    bool Sequential = true;
    qint64 DeviceStart = 0;
    QByteArray Buffer;
    qsizetype At = 0;
    qint64 BufferBase = 0; // bytes consumed before Buffer[0]

    TReader::TErrorHook ErrorHook;
    TReader::TFindMethodHook FindMethodHook;
    TReader::TPropertyFilter Filter;

    QObject *Parent = nullptr;
    QList<QPointer<QObject>> Loaded;
    QList<TFixup> Fixups;
    int Depth = 0;
    // The defined property being looked for, and whether a definition read it.
    QString DefinedName;
    bool DefinedDone = false;
    // What was assigned while reading one object's properties, to assign again where a
    // setter depended on the order.
    struct TAssigned
    {
        QObject *Instance; // lives while its properties are read
        QMetaProperty Property;
        QVariant Value;
    };
    QList<TAssigned> Assigned;
    // Children of parents being read, by lower-cased name.
    QHash<QObject *, QHash<QString, QObject *>> ChildIndex;

    // Buffer ----------------------------------------------------------------------------

    qsizetype Available() const { return Buffer.size() - At; }

    // Bytes the device still holds beyond the buffer; -1 when unknown.
    qint64 DeviceLeft() const
    {
        if (Sequential)
            return -1;
        return qMax<qint64>(0, Device->size() - Device->pos());
    }

    void Need(qint64 Count)
    {
        if (Available() >= Count)
            return;
        if (Count < 0)
            FormatError();
        const qint64 left = DeviceLeft();
        if (left >= 0 && Available() + left < Count)
            ReadError();
        if (At > 0) {
            Buffer.remove(0, At);
            BufferBase += At;
            At = 0;
        }
        // Grows only by what the device gives, so that a hostile length allocates nothing.
        while (Buffer.size() < Count) {
            const qint64 want = Sequential ? qMin<qint64>(Count - Buffer.size(), 1 << 20)
                                           : qMin<qint64>(qMax<qint64>(Count - Buffer.size(), 65536), left);
            if (want <= 0)
                ReadError();
            const qsizetype have = Buffer.size();
            Buffer.resize(have + want);
            const qint64 got = Device->read(Buffer.data() + have, want);
            Buffer.resize(have + qMax<qint64>(got, 0));
            if (got <= 0)
                ReadError();
        }
    }

    const char *Take(qint64 Count)
    {
        Need(Count);
        const char *data = Buffer.constData() + At;
        At += Count;
        return data;
    }

    quint8 Byte()
    {
        if (At < Buffer.size())
            return quint8(Buffer[At++]);
        return quint8(*Take(1));
    }

    template <typename T>
    T Raw()
    {
        const char *data = Take(sizeof(T));
        quint64 value = 0;
        for (size_t i = 0; i < sizeof(T); ++i)
            value |= quint64(uchar(data[i])) << (8 * i);
        return T(value);
    }

    // The value of the fixed-size type Tag: its bits as T.
    template <typename T>
    T Fixed(TValueType Tag)
    {
        Expect(*q, {Tag});
        q->ReadValue();
        return std::bit_cast<T>(Raw<std::conditional_t<sizeof(T) == 4, quint32, quint64>>());
    }

    qint32 Length()
    {
        const qint32 length = Raw<qint32>();
        if (length < 0)
            FormatError();
        return length;
    }

    void Skip(qint64 Count)
    {
        const qint64 left = DeviceLeft();
        if (left >= 0 && Available() + left < Count)
            ReadError();
        while (Count > 0) {
            if (Available() == 0)
                Need(1);
            const qint64 take = qMin<qint64>(Available(), Count);
            At += take;
            Count -= take;
        }
    }

    QByteArray ShortBytes()
    {
        const int size = Byte();
        return QByteArray(Take(size), size);
    }

    // Reading ---------------------------------------------------------------------------

    void Enter()
    {
        if (++Depth > MaxDepth) {
            --Depth;
            throw TStreamError(LoadStr(SStreamNesting));
        }
    }

    // One level deeper while it lives.
    class TNesting
    {
    public:
        explicit TNesting(TReaderPrivate &D) : m_depth(D.Depth) { D.Enter(); }
        ~TNesting() { --m_depth; }
        TNesting(const TNesting &) = delete;
        TNesting &operator=(const TNesting &) = delete;

    private:
        int &m_depth;
    };

    void Error(const QString &Message)
    {
        bool handled = false;
        if (ErrorHook)
            ErrorHook(Message, handled);
        if (!handled)
            throw Exception(Message);
    }

    void SkipProperties()
    {
        while (!q->EndOfList()) {
            Skip(Byte());
            q->SkipValue();
        }
        q->ReadListEnd();
    }

    void SkipComponentBody()
    {
        const TNesting nesting(*this);
        SkipProperties();
        while (!q->EndOfList()) {
            TFilerFlags flags;
            int position;
            q->ReadPrefix(flags, position);
            Skip(Byte());
            Skip(Byte());
            SkipComponentBody();
        }
        q->ReadListEnd();
    }

    // A component's properties and children, up to the end of its children.
    void ReadBody(QObject *Component)
    {
        q->ReadProperties(Component);
        while (!q->EndOfList())
            if (q->IgnoreChildren)
                SkipComponentBody();
            else
                q->ReadComponent(nullptr);
        q->ReadListEnd();
    }

    void ReadProperty(QObject *Instance);
    void ReadPropertyAt(QObject *Instance, QObject *Target, const QByteArray &Path);
    void AssignValue(QObject *Instance, const TPropEntry &Entry);
    QVariant ValueFor(const TPropEntry &Entry);
    // A number, or a key of Enum.
    QVariant EnumValue(const QMetaEnum &Enum);
    QVariant PartValue(const TPart &Part);
    void ReadEvent(QObject *Instance, const TEventEntry &Entry);
    QObject *FindChild(QObject *ParentObj, const QString &Name, const QString &ClassName);
    QHash<QString, const QMetaObject *> Classes;
    const QMetaObject *ClassOf(const QString &Name)
    {
        auto found = Classes.constFind(Name);
        if (found == Classes.cend())
            found = Classes.insert(Name, GetClass(Name));
        return *found;
    }
    void MoveChild(QObject *Child, int Position);
    void Reapply(qsizetype From);
    void Finish(bool Failed);
};

// Values ------------------------------------------------------------------------------------

QVariant TReaderPrivate::EnumValue(const QMetaEnum &Enum)
{
    const TValueType tag = q->NextValue();
    if (IsIntegerTag(tag))
        return QVariant(q->ReadInteger());
    if (tag != vaIdent)
        ValueError();
    int value;
    if (!KeyValue(Enum, q->ReadIdent(), value))
        ValueError();
    return QVariant(value);
}

QVariant TReaderPrivate::PartValue(const TPart &Part)
{
    const TValueType tag = q->NextValue();
    switch (Part.Kind) {
    case TKind::Int:
        if (!IsIntegerTag(tag))
            ValueError();
        return QVariant(q->ReadInteger());
    case TKind::Double:
        if (!IsFloatTag(tag))
            ValueError();
        return QVariant(q->ReadFloat());
    case TKind::Bool:
        if (tag != vaFalse && tag != vaTrue)
            ValueError();
        return QVariant(q->ReadBoolean());
    case TKind::String:
        if (!IsStringTag(tag))
            ValueError();
        return QVariant(q->ReadString());
    case TKind::Enum:
        return EnumValue(Part.Enum);
    case TKind::Set: {
        if (tag != vaSet)
            ValueError();
        int bits = 0;
        for (const QString &element : q->ReadSet()) {
            const qsizetype bit = FontStyleNames().indexOf(element, 0);
            if (bit < 0)
                ValueError();
            bits |= 1 << bit;
        }
        return QVariant(bits);
    }
    default:
        ValueError();
    }
}

QVariant TReaderPrivate::ValueFor(const TPropEntry &Entry)
{
    const QMetaProperty &property = Entry.Property;
    const TValueType tag = q->NextValue();
    switch (Entry.Kind) {
    case TKind::Int:
    case TKind::Int64:
    case TKind::UInt64: {
        qint64 value;
        if (IsIntegerTag(tag))
            value = q->ReadInt64();
        else if (tag == vaFalse || tag == vaTrue)
            value = q->ReadBoolean();
        else
            ValueError();
        if (Entry.Kind == TKind::UInt64)
            return QVariant(quint64(value));
        QVariant result(value);
        if (!result.convert(property.metaType()) || result.toLongLong() != value)
            ValueError();
        return result;
    }
    case TKind::Bool:
        if (tag == vaFalse || tag == vaTrue)
            return QVariant(q->ReadBoolean());
        if (IsIntegerTag(tag))
            return QVariant(q->ReadInt64() != 0);
        ValueError();
    case TKind::Enum:
        return EnumValue(property.enumerator());
    case TKind::Set: {
        if (IsIntegerTag(tag))
            return QVariant(q->ReadInteger());
        if (tag != vaSet)
            ValueError();
        int bits = 0;
        for (const QString &element : q->ReadSet()) {
            int value;
            if (!KeyValue(property.enumerator(), element, value))
                ValueError();
            bits |= value;
        }
        return QVariant(bits);
    }
    case TKind::Double:
        if (!IsFloatTag(tag))
            ValueError();
        return QVariant(q->ReadFloat());
    case TKind::Single:
        if (!IsFloatTag(tag))
            ValueError();
        return QVariant(tag == vaSingle ? q->ReadSingle() : float(q->ReadFloat()));
    case TKind::String:
        if (!IsStringTag(tag))
            ValueError();
        if (property.metaType().id() == QMetaType::QUrl)
            return QVariant(QUrl(q->ReadString()));
        return QVariant(q->ReadString());
    case TKind::Char: {
        if (!IsStringTag(tag))
            ValueError();
        const QString text = q->ReadString();
        if (text.size() > 1)
            ValueError();
        return QVariant(text.isEmpty() ? QChar() : text[0]);
    }
    case TKind::Bytes:
        if (tag == vaBinary)
            return QVariant(q->ReadBinary());
        if (IsStringTag(tag))
            return QVariant(q->ReadString().toUtf8());
        ValueError();
    case TKind::Date:
    case TKind::Time:
    case TKind::DateTime: {
        if (!IsFloatTag(tag))
            ValueError();
        const double value = q->ReadFloat();
        const QDateTime dateTime = FilerDateToDateTime(value);
        if (!dateTime.isValid())
            ValueError();
        if (Entry.Kind == TKind::Date)
            return QVariant(dateTime.date());
        if (Entry.Kind == TKind::Time)
            return QVariant(dateTime.time());
        return QVariant(dateTime);
    }
    case TKind::Color: {
        if (IsIntegerTag(tag))
            return QVariant::fromValue(TColor(q->ReadInteger()));
        if (tag != vaIdent)
            ValueError();
        TColor color;
        if (!IdentToColor(q->ReadIdent(), color))
            ValueError();
        return QVariant::fromValue(color);
    }
    case TKind::QColor: {
        if (IsIntegerTag(tag))
            return QVariant(ColorToQColor(TColor(q->ReadInteger())));
        if (tag != vaBinary)
            ValueError();
        const QVariant color = LoadValue(property.metaType(), q->ReadBinary());
        if (!color.isValid())
            ValueError();
        return color;
    }
    case TKind::KeySequence:
        if (!IsStringTag(tag))
            ValueError();
        return QVariant(QKeySequence::fromString(q->ReadString(), QKeySequence::PortableText));
    case TKind::Variant: {
        if (tag != vaBinary)
            return QVariant::fromValue(q->ReadVariant());
        const QByteArray bytes = q->ReadBinary();
        QDataStream stream(bytes);
        stream.setVersion(QDataStream::Qt_6_0);
        QVariant value;
        stream >> value;
        if (stream.status() != QDataStream::Ok || !stream.atEnd())
            ValueError();
        return QVariant::fromValue(value);
    }
    case TKind::Picture: {
        if (tag != vaBinary)
            ValueError();
        const QByteArray png = q->ReadBinary();
        QImage image;
        if (!png.isEmpty() && !image.loadFromData(png, "PNG"))
            ValueError();
        switch (property.metaType().id()) {
        case QMetaType::QImage:
            return QVariant(image);
        case QMetaType::QPixmap:
            return image.isNull() ? QVariant(QPixmap()) : QVariant(QPixmap::fromImage(image));
        case QMetaType::QBitmap:
            return image.isNull() ? QVariant(QBitmap()) : QVariant(QBitmap::fromImage(image));
        default:
            return image.isNull() ? QVariant(QIcon()) : QVariant(QIcon(QPixmap::fromImage(image)));
        }
    }
    case TKind::Strings: {
        if (tag != vaList)
            ValueError();
        QStringList lines;
        q->ReadListBegin();
        bool valid = true;
        while (!q->EndOfList()) {
            if (valid && IsStringTag(q->NextValue()))
                lines.append(q->ReadString());
            else {
                valid = false; // read to the end, then refuse
                q->SkipValue();
            }
        }
        q->ReadListEnd();
        if (!valid)
            ValueError();
        return QVariant(lines);
    }
    case TKind::Other: {
        if (tag != vaBinary)
            ValueError();
        const QVariant value = LoadValue(property.metaType(), q->ReadBinary());
        if (!value.isValid())
            ValueError();
        return value;
    }
    default:
        ValueError();
    }
}

void TReaderPrivate::AssignValue(QObject *Instance, const TPropEntry &Entry)
{
    switch (Entry.Kind) {
    case TKind::Reference: {
        const TValueType tag = q->NextValue();
        if (tag == vaNil) {
            q->ReadValue();
            if (!Entry.Property.write(Instance, QVariant::fromValue<QObject *>(nullptr)))
                ValueError();
            return;
        }
        if (tag != vaIdent)
            ValueError();
        Fixups.append({Instance, Entry.Property, q->ReadIdent(), q->LookupRoot()});
        return;
    }
    case TKind::SubObject: {
        const TValueType tag = q->NextValue();
        auto *collection = qobject_cast<TCollection *>(Entry.Property.read(Instance).value<QObject *>());
        if (tag == vaCollection && collection) {
            q->ReadCollection(collection);
            return;
        }
        if (tag == vaNil) {
            q->ReadValue();
            return;
        }
        ValueError();
    }
    case TKind::Parts:
        ValueError();
    default:
        break;
    }
    const QVariant value = ValueFor(Entry);
    if (!Entry.Property.write(Instance, value))
        ValueError();
    Assigned.append({Instance, Entry.Property, value});
}

void TReaderPrivate::ReadEvent(QObject *Instance, const TEventEntry &Entry)
{
    if (q->NextValue() == vaNil || q->NextValue() == vaNull) {
        q->ReadValue();
        ClearEventHandler(Instance, Entry.Signal);
        return;
    }
    if (q->NextValue() != vaIdent)
        ValueError();
    const QString name = q->ReadIdent();
    QObject *handler = q->LookupRoot();
    QString slot = name;
    const qsizetype dot = name.indexOf(QLatin1Char('.'));
    if (dot >= 0) {
        handler = FindComponent(q->LookupRoot(), QStringView(name).left(dot));
        slot = name.mid(dot + 1);
    }
    if (handler && GetCompatibleSlots(handler->metaObject(), Entry.Signal).contains(slot)) {
        SetEventHandler(Instance, Entry.Signal, handler, slot);
        return;
    }
    bool error = true;
    if (FindMethodHook)
        FindMethodHook(name, error);
    if (error)
        throw TValueError(Exception::Fmt(SUnknownEventHandler, name, QString::fromLatin1(Entry.Name)).Message());
    ClearEventHandler(Instance, Entry.Signal);
    SetUnconnectedHandlerName(Instance, Entry.Signal, name);
}

void TReaderPrivate::ReadPropertyAt(QObject *Instance, QObject *Target, const QByteArray &Path)
{
    QVarLengthArray<QByteArray, 4> Segments;
    if (Path.contains('.')) {
        for (const QByteArray &segment : Path.split('.'))
            Segments.append(segment);
    } else {
        Segments.append(Path);
    }
    QObject *obj = Target;
    for (qsizetype i = 0; i < Segments.size(); ++i) {
        const QByteArray &segment = Segments[i];
        const bool last = i == Segments.size() - 1;
        const TClassPlan &plan = PlanOf(obj->metaObject());
        const int index = plan.Find(segment);
        const int propertyCount = int(plan.Properties.size());
        if (index >= propertyCount) {
            if (!last)
                throw TValueError(LoadStr(SInvalidPropertyPath));
            ReadEvent(obj, plan.Events[size_t(index - propertyCount)]);
            return;
        }
        if (index >= 0) {
            const TPropEntry &entry = plan.Properties[size_t(index)];
            if (last) {
                AssignValue(obj, entry);
                return;
            }
            const bool beforeLast = i == Segments.size() - 2;
            if (entry.Kind == TKind::SubObject) {
                obj = entry.Property.read(obj).value<QObject *>();
                if (!obj)
                    throw TValueError(LoadStr(SInvalidPropertyPath));
                continue;
            }
            if (entry.Kind == TKind::Parts && beforeLast) {
                const QByteArray &partName = Segments[i + 1];
                for (const TPart &part : *entry.Parts) {
                    if (qstricmp(part.Name, partName.constData()) != 0)
                        continue;
                    const QVariant value = PartValue(part);
                    QVariant whole = entry.Property.read(obj);
                    part.Set(whole, value);
                    if (!entry.Property.write(obj, whole))
                        ValueError();
                    Assigned.append({obj, entry.Property, whole});
                    return;
                }
                throw TValueError(Exception::Fmt(SUnknownProperty, QString::fromUtf8(Path)).Message());
            }
            if (entry.Kind == TKind::Strings && beforeLast && qstricmp(Segments[i + 1].constData(), "Strings") == 0) {
                AssignValue(obj, entry);
                return;
            }
            throw TValueError(LoadStr(SInvalidPropertyPath));
        }
        // Not a Qt property: a defined one.
        TPersistent *persistent = TPersistent::Of(obj);
        if (!last || !persistent || (q->IgnoreDefinedProperties && obj == q->Root()))
            break;
        DefinedName = QString::fromUtf8(segment);
        DefinedDone = false;
        QObject *saved = std::exchange(q->m_definingObject, obj);
        try {
            persistent->DefineProperties(*q);
        } catch (...) {
            q->m_definingObject = saved;
            throw;
        }
        q->m_definingObject = saved;
        if (DefinedDone)
            return;
        break;
    }
    throw TValueError(Exception::Fmt(SUnknownProperty, QString::fromUtf8(Path)).Message());
}

void TReaderPrivate::ReadProperty(QObject *Instance)
{
    // The name on the stack: no allocation for the common property.
    char name[256];
    const int size = Byte();
    std::memcpy(name, Take(size), size_t(size));
    const QByteArray path = QByteArray::fromRawData(name, size);
    if (Filter && !Filter(Instance, QString::fromUtf8(path))) {
        q->SkipValue();
        return;
    }
    const qint64 start = q->Position();
    try {
        ReadPropertyAt(Instance, Instance, path);
    } catch (const TValueError &error) {
        // The reader's own message, with the object and property named.
        Error(Exception::Fmt(SPropertyException, GetCompName(Instance), ".", QString::fromUtf8(path), error.Message())
                  .Message());
        if (q->Position() == start)
            q->SkipValue();
    }
}

void TReaderPrivate::Reapply(qsizetype From)
{
    // A setter may have changed a value set before it (a minimum above the value): assign
    // once more what doesn't read back.
    if (Assigned.size() - From < 2) { // a single value depends on no other
        Assigned.resize(From);
        return;
    }
    for (qsizetype i = From; i < Assigned.size(); ++i) {
        const TAssigned &entry = Assigned[i];
        if (!SameStreamValue(entry.Property.read(entry.Instance), entry.Value))
            entry.Property.write(entry.Instance, entry.Value);
    }
    Assigned.resize(From);
}

QObject *TReaderPrivate::FindChild(QObject *ParentObj, const QString &Name, const QString &ClassName)
{
    if (!ParentObj || Name.isEmpty())
        return nullptr;
    // The children the parent had before its first child was read: what the reader creates
    // is not looked for again.
    auto index = ChildIndex.find(ParentObj);
    if (index == ChildIndex.end()) {
        QHash<QString, QObject *> names;
        for (QObject *child : ParentObj->children())
            if (!child->objectName().isEmpty())
                names.insert(child->objectName().toLower(), child);
        index = ChildIndex.insert(ParentObj, names);
    }
    if (index->isEmpty())
        return nullptr;
    QObject *child = index->value(Name.toLower());
    if (!child)
        return nullptr;
    const QMetaObject *cls = ClassOf(ClassName);
    if (StreamClassName(child->metaObject()).compare(ClassName, Qt::CaseInsensitive) == 0
        || (cls && child->metaObject()->inherits(cls)))
        return child;
    return nullptr;
}

void TReaderPrivate::MoveChild(QObject *Child, int Position)
{
    QObject *parent = Child->parent();
    if (!parent)
        return;
    const QObjectList siblings = parent->children();
    if (Position < 0 || Position >= siblings.size() || siblings.indexOf(Child) == Position)
        return;
    QObject *before = siblings[Position];
    if (Child->isWidgetType() && before->isWidgetType()) {
        static_cast<QWidget *>(Child)->stackUnder(static_cast<QWidget *>(before));
        return;
    }
    if (Child->isWidgetType() || before->isWidgetType())
        return;
    // Re-parenting appends: the child, then everything that stood from the position on.
    Child->setParent(nullptr);
    Child->setParent(parent);
    for (qsizetype i = Position; i < siblings.size(); ++i)
        if (siblings[i] != Child && !siblings[i]->isWidgetType()) {
            siblings[i]->setParent(nullptr);
            siblings[i]->setParent(parent);
        }
}

void TReaderPrivate::Finish(bool Failed)
{
    for (const QPointer<QObject> &obj : std::as_const(Loaded))
        if (obj)
            ExcludeState(obj.data(), Failed ? (csLoading | csReading) : TComponentState(csReading));
    ChildIndex.clear();
    Assigned.clear();
}

// TReader -----------------------------------------------------------------------------------

TReader::TReader(QIODevice *Stream) : TFiler(Stream), d(std::make_unique<TReaderPrivate>(this))
{
    d->Device = Stream;
    if (Stream) {
        d->Sequential = Stream->isSequential();
        d->DeviceStart = Stream->pos();
    }
}

TReader::~TReader()
{
    try {
        FlushBuffer();
    } catch (...) {
    }
}

QObject *TReader::ReadRootComponent(QObject *Root)
{
    ReadSignature();
    TFilerFlags flags;
    int position = 0;
    ReadPrefix(flags, position);
    const QString className = ReadStr();
    const QString name = ReadStr();
    bool created = false;
    if (!Root) {
        const QMetaObject *cls = GetClass(className);
        if (!cls)
            throw Exception::Fmt(SClassNotFound, className);
        Root = CreateObject(cls, nullptr);
        created = true;
    }
    QPointer<QObject> root = Root;
    try {
        // A root made here takes the stream's name even when its constructor named it.
        if (created || Root->objectName().isEmpty())
            Root->setObjectName(name);
        m_root = m_lookupRoot = Root;
        d->Parent = Root;
        d->Loaded = {Root};
        IncludeState(Root, csLoading | csReading);
        d->ReadBody(Root);
    } catch (...) {
        d->Finish(true);
        d->Fixups.clear();
        d->Loaded.clear();
        if (created)
            delete root.data();
        m_root = m_lookupRoot = nullptr;
        try {
            FlushBuffer();
        } catch (...) {
        }
        throw;
    }
    d->Finish(false);
    const QList<TFixup> left = ResolveFixups(std::exchange(d->Fixups, {}));
    AddPendingFixups(left);
    const QList<QPointer<QObject>> loaded = std::exchange(d->Loaded, {});
    FlushBuffer();
    if (!DeferLoaded(loaded))
        FinishLoaded(loaded);
    return root.data();
}

QObject *TReader::ReadComponent(QObject *Component)
{
    const TReaderPrivate::TNesting nesting(*d);
    TFilerFlags flags;
    int position = -1;
    ReadPrefix(flags, position);
    const QString className = ReadStr();
    const QString name = ReadStr();
    QObject *parent = d->Parent;
    bool created = false;
    if (!Component)
        Component = d->FindChild(parent, name, className);
    if (!Component) {
        QString message;
        if (flags & ffInherited) {
            message = Exception::Fmt(SAncestorNotFound, name).Message();
        } else if (const QMetaObject *cls = d->ClassOf(className)) {
            try {
                Component = CreateObject(cls, parent);
                created = true;
            } catch (const Exception &error) {
                message = error.Message();
            }
        } else {
            message = Exception::Fmt(SClassNotFound, className).Message();
        }
        if (!Component) {
            d->Error(message);
            d->SkipComponentBody();
            return nullptr;
        }
        Component->setObjectName(name);
        if (TPersistent *root = TPersistent::Of(m_root))
            root->Notification(Component, opInsert);
    }
    QPointer<QObject> guard = Component;
    if (flags & ffChildPos)
        d->MoveChild(Component, position);
    // Our classes are marked as loading and told when they are loaded; a record per foreign
    // component would cost more than reading it.
    if (TPersistent::Of(Component) && !(ComponentState(Component) & csLoading)) {
        IncludeState(Component, csLoading | csReading);
        d->Loaded.append(Component);
    }
    QObject *savedLookupRoot = m_lookupRoot;
    if (flags & ffInline)
        m_lookupRoot = Component;
    d->Parent = Component;
    try {
        d->ReadBody(Component);
    } catch (...) {
        d->Parent = parent;
        m_lookupRoot = savedLookupRoot;
        d->ChildIndex.remove(Component);
        if (created && guard) {
            ExcludeState(Component, csLoading | csReading);
            delete guard.data();
        }
        throw;
    }
    d->ChildIndex.remove(Component);
    d->Parent = parent;
    m_lookupRoot = savedLookupRoot;
    return guard.data();
}

void TReader::ReadProperties(QObject *Instance)
{
    const TReaderPrivate::TNesting nesting(*d);
    const qsizetype from = d->Assigned.size();
    while (!EndOfList())
        d->ReadProperty(Instance);
    ReadListEnd();
    d->Reapply(from);
}

void TReader::ReadSignature()
{
    const char *signature = d->Take(4);
    if (std::memcmp(signature, FilerSignature, 4) != 0)
        throw TStreamError(LoadStr(SInvalidStreamFormat));
}

void TReader::ReadPrefix(TFilerFlags &Flags, int &ChildPos)
{
    Flags = {};
    d->Need(1);
    const quint8 prefix = quint8(d->Buffer[d->At]);
    if ((prefix & 0xF0) != 0xF0)
        return;
    ++d->At;
    Flags = TFilerFlags(prefix & 0x0F);
    if (Flags & ffChildPos) {
        if (!IsIntegerTag(NextValue()))
            FormatError();
        ChildPos = ReadInteger();
    }
}

QString TReader::ReadStr()
{
    const int size = d->Byte();
    return DecodeShortString(d->Take(size), size);
}

TValueType TReader::ReadValue()
{
    const quint8 tag = d->Byte();
    if (tag > vaInt64)
        FormatError();
    return TValueType(tag);
}

TValueType TReader::NextValue()
{
    d->Need(1);
    const quint8 tag = quint8(d->Buffer[d->At]);
    if (tag > vaInt64)
        FormatError();
    return TValueType(tag);
}

void TReader::SkipValue()
{
    const TReaderPrivate::TNesting nesting(*d);
    switch (ReadValue()) {
    case vaNull:
    case vaFalse:
    case vaTrue:
    case vaNil:
        return;
    case vaList:
        while (!EndOfList())
            SkipValue();
        ReadListEnd();
        return;
    case vaInt8:
        d->Skip(1);
        return;
    case vaInt16:
        d->Skip(2);
        return;
    case vaInt32:
    case vaSingle:
        d->Skip(4);
        return;
    case vaInt64:
    case vaCurrency:
    case vaDate:
        d->Skip(8);
        return;
    case vaExtended:
        d->Skip(10);
        return;
    case vaString:
    case vaIdent:
        d->Skip(d->Byte());
        return;
    case vaBinary:
    case vaLString:
        d->Skip(d->Length());
        return;
    case vaWString:
        d->Skip(qint64(d->Length()) * 2);
        return;
    case vaSet:
        while (const int size = d->Byte())
            d->Skip(size);
        return;
    case vaCollection:
        while (!EndOfList()) {
            if (IsIntegerTag(NextValue()))
                SkipValue();
            ReadListBegin();
            d->SkipProperties();
        }
        ReadListEnd();
        return;
    }
}

bool TReader::EndOfList()
{
    d->Need(1);
    return d->Buffer[d->At] == char(vaNull);
}

void TReader::ReadListBegin()
{
    if (ReadValue() != vaList)
        FormatError();
}

void TReader::ReadListEnd()
{
    if (ReadValue() != vaNull)
        FormatError();
}

qint32 TReader::ReadInteger()
{
    Expect(*this, {vaInt8, vaInt16, vaInt32});
    switch (ReadValue()) {
    case vaInt8:
        return d->Raw<qint8>();
    case vaInt16:
        return d->Raw<qint16>();
    default:
        return d->Raw<qint32>();
    }
}

qint64 TReader::ReadInt64()
{
    if (NextValue() == vaInt64) {
        ReadValue();
        return d->Raw<qint64>();
    }
    return ReadInteger();
}

bool TReader::ReadBoolean()
{
    Expect(*this, {vaFalse, vaTrue});
    switch (ReadValue()) {
    case vaFalse:
        return false;
    case vaTrue:
        return true;
    default:
        ValueError();
    }
}

QString TReader::ReadString()
{
    Expect(*this, {vaString, vaLString, vaWString});
    switch (ReadValue()) {
    case vaString: {
        const int size = d->Byte();
        return DecodeWindows1252(d->Take(size), size);
    }
    case vaLString: {
        const qint32 size = d->Length();
        return DecodeWindows1252(d->Take(size), size);
    }
    case vaWString: {
        const qint32 count = d->Length();
        const char *data = d->Take(qint64(count) * 2);
        QString text(count, Qt::Uninitialized);
        for (qint32 i = 0; i < count; ++i)
            text[i] = QChar(ushort(uchar(data[2 * i]) | (uchar(data[2 * i + 1]) << 8)));
        return text;
    }
    default:
        ValueError();
    }
}

QString TReader::ReadIdent()
{
    Expect(*this, {vaIdent, vaFalse, vaTrue, vaNil, vaNull});
    switch (ReadValue()) {
    case vaIdent:
        return ReadStr();
    case vaFalse:
        return QStringLiteral("False");
    case vaTrue:
        return QStringLiteral("True");
    case vaNil:
        return QStringLiteral("nil");
    case vaNull:
        return QStringLiteral("Null");
    default:
        ValueError();
    }
}

double TReader::ReadFloat()
{
    switch (NextValue()) {
    case vaExtended: {
        ReadValue();
        TExtendedBytes bytes;
        std::memcpy(bytes.data(), d->Take(10), 10);
        return ExtendedToDouble(bytes);
    }
    case vaSingle:
        return ReadSingle();
    case vaCurrency:
        return double(ReadCurrency()) / 10000;
    case vaDate:
        return ReadDate();
    default:
        Expect(*this, {vaInt8, vaInt16, vaInt32, vaInt64});
        return double(ReadInt64());
    }
}

float TReader::ReadSingle()
{
    return d->Fixed<float>(vaSingle);
}

qint64 TReader::ReadCurrency()
{
    return d->Fixed<qint64>(vaCurrency);
}

double TReader::ReadDate()
{
    return d->Fixed<double>(vaDate);
}

QByteArray TReader::ReadBinary()
{
    Expect(*this, {vaBinary});
    ReadValue();
    const qint32 size = d->Length();
    return QByteArray(d->Take(size), size);
}

QStringList TReader::ReadSet()
{
    Expect(*this, {vaSet});
    ReadValue();
    QStringList elements;
    for (;;) {
        const QString element = ReadStr();
        if (element.isEmpty())
            return elements;
        elements.append(element);
    }
}

void TReader::ReadCollection(TCollection *Collection)
{
    Expect(*this, {vaCollection});
    ReadValue();
    const TReaderPrivate::TNesting nesting(*d);
    Collection->BeginUpdate();
    struct TEndUpdate
    {
        TCollection *C;
        ~TEndUpdate() { C->EndUpdate(); }
    } end{Collection};
    Collection->Clear();
    while (!EndOfList()) {
        if (IsIntegerTag(NextValue()))
            ReadInteger();
        ReadListBegin();
        ReadProperties(Collection->Add());
    }
    ReadListEnd();
}

QVariant TReader::ReadVariant()
{
    switch (NextValue()) {
    case vaNull:
    case vaNil:
        ReadValue();
        return {};
    case vaList: {
        const TReaderPrivate::TNesting nesting(*d);
        ReadValue();
        QVariantList list;
        while (!EndOfList())
            list.append(ReadVariant());
        ReadListEnd();
        return list;
    }
    case vaInt8:
    case vaInt16:
    case vaInt32:
        return ReadInteger();
    case vaInt64:
        return ReadInt64();
    case vaExtended:
        return ReadFloat();
    case vaSingle:
        return ReadSingle();
    case vaCurrency:
        return double(ReadCurrency()) / 10000;
    case vaDate:
        return FilerDateToDateTime(ReadDate());
    case vaString:
    case vaLString:
    case vaWString:
        return ReadString();
    case vaIdent:
        return ReadIdent();
    case vaFalse:
    case vaTrue:
        return ReadBoolean();
    case vaBinary:
        return ReadBinary();
    case vaSet:
        return ReadSet();
    case vaCollection:
        ValueError();
    }
    FormatError();
}

qint64 TReader::Position() const
{
    return d->BufferBase + d->At;
}

void TReader::FlushBuffer()
{
    if (d->Sequential || !m_stream || d->Available() == 0)
        return;
    m_stream->seek(d->DeviceStart + Position());
    d->BufferBase += d->At;
    d->Buffer.clear();
    d->At = 0;
}

QObject *TReader::Parent() const
{
    return d->Parent;
}

void TReader::SetErrorHook(TErrorHook Hook)
{
    d->ErrorHook = std::move(Hook);
}

void TReader::SetFindMethodHook(TFindMethodHook Hook)
{
    d->FindMethodHook = std::move(Hook);
}

void TReader::SetPropertyFilter(TPropertyFilter Filter)
{
    d->Filter = std::move(Filter);
}

void TReader::DefineProperty(const QString &Name, const TReaderProc &ReadData, const TWriterProc &, bool)
{
    if (d->DefinedDone || !ReadData || Name.compare(d->DefinedName, Qt::CaseInsensitive) != 0)
        return;
    d->DefinedDone = true;
    ReadData(*this);
}

void TReader::DefineBinaryProperty(const QString &Name, const TStreamProc &ReadData, const TStreamProc &, bool)
{
    if (d->DefinedDone || !ReadData || Name.compare(d->DefinedName, Qt::CaseInsensitive) != 0)
        return;
    d->DefinedDone = true;
    QByteArray bytes = ReadBinary();
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    ReadData(buffer);
}

} // namespace kv
