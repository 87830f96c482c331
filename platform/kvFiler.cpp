#include "platform/kvFiler.h"

#include "foundation/ideConsts.h"
#include "platform/kvClasses.h"
#include "platform/kvCollection.h"
#include "platform/kvColor.h"
#include "platform/kvComponentState.h"
#include "platform/kvException.h"
#include "platform/kvFiler_p.h"
#include "platform/kvOwner.h"
#include "platform/kvPersistent.h"
#include "platform/kvPropEdits_types_p.h"
#include "platform/kvScreen.h"
#include "platform/kvTypInfo.h"

#include <QBitmap>
#include <QBuffer>
#include <QColor>
#include <QCursor>
#include <QDataStream>
#include <QDateTime>
#include <QFont>
#include <QIcon>
#include <QImage>
#include <QKeySequence>
#include <QPixmap>
#include <QStringDecoder>
#include <QWidget>

#include <cmath>
#include <unordered_map>

namespace kv {

// Dates -------------------------------------------------------------------------------------

namespace {

constexpr qint64 MSecsPerDay = 86400000;

QDate FilerEpoch()
{
    return QDate(1899, 12, 30);
}

} // namespace

double DateTimeToFilerDate(const QDateTime &Value)
{
    if (!Value.isValid())
        return 0;
    const qint64 days = FilerEpoch().daysTo(Value.date());
    const double fraction = double(Value.time().msecsSinceStartOfDay()) / MSecsPerDay;
    return days < 0 ? double(days) - fraction : double(days) + fraction;
}

QDateTime FilerDateToDateTime(double Value)
{
    if (!std::isfinite(Value) || std::fabs(Value) > 1e9)
        return {};
    const double whole = std::trunc(Value);
    qint64 msecs = std::llround(std::fabs(Value - whole) * MSecsPerDay);
    qint64 days = qint64(whole);
    if (msecs >= MSecsPerDay) { // rounded up to the next midnight
        msecs -= MSecsPerDay;
        days += Value < 0 ? -1 : 1;
    }
    return QDateTime(FilerEpoch().addDays(days), QTime::fromMSecsSinceStartOfDay(int(msecs)));
}

// Events ------------------------------------------------------------------------------------

QString EventPropertyName(const QMetaObject *Class, const QMetaMethod &Signal)
{
    if (!Class || !Signal.isValid())
        return {};
    for (const filer::TEventEntry &entry : filer::PlanOf(Class).Events)
        if (entry.Signal == Signal)
            return QString::fromLatin1(entry.Name);
    // A clone stands for the signal it was made from: the one of the same name with the
    // most parameters that starts with the clone's.
    if (Signal.attributes() & QMetaMethod::Cloned) {
        for (const filer::TEventEntry &entry : filer::PlanOf(Class).Events)
            if (entry.Signal.name() == Signal.name()
                && entry.Signal.methodSignature().startsWith(Signal.methodSignature().chopped(1)))
                return QString::fromLatin1(entry.Name);
    }
    return {};
}

QMetaMethod FindEventSignal(const QMetaObject *Class, const QString &Name)
{
    if (!Class)
        return {};
    const filer::TClassPlan &plan = filer::PlanOf(Class);
    const int index = plan.Find(Name.toUtf8());
    if (index < int(plan.Properties.size()))
        return {};
    return plan.Events[size_t(index) - plan.Properties.size()].Signal;
}

namespace {

struct TKeptNames
{
    QHash<QPair<const QObject *, int>, QString> Names;
    QHash<const QObject *, QMetaObject::Connection> Watches;
};

TKeptNames &KeptNames()
{
    static TKeptNames kept;
    return kept;
}

} // namespace

void SetUnconnectedHandlerName(QObject *Sender, const QMetaMethod &Signal, const QString &Name)
{
    if (!Sender || !Signal.isValid())
        return;
    TKeptNames &kept = KeptNames();
    const QPair<const QObject *, int> key{Sender, Signal.methodIndex()};
    if (Name.isEmpty()) {
        kept.Names.remove(key);
        return;
    }
    kept.Names.insert(key, Name);
    if (!kept.Watches.contains(Sender))
        kept.Watches.insert(Sender, QObject::connect(Sender, &QObject::destroyed, [Sender] {
                                TKeptNames &names = KeptNames();
                                names.Names.removeIf([Sender](const auto &it) { return it.key().first == Sender; });
                                names.Watches.remove(Sender);
                            }));
}

QString UnconnectedHandlerName(const QObject *Sender, const QMetaMethod &Signal)
{
    return KeptNames().Names.value({Sender, Signal.methodIndex()});
}

namespace filer {

QString KeptHandlerName(const QObject *Sender, const QMetaMethod &Signal)
{
    return UnconnectedHandlerName(Sender, Signal);
}

bool HasKeptHandlerNames()
{
    return !KeptNames().Names.isEmpty();
}

// Value parts -------------------------------------------------------------------------------
// The parts the property editors show, each streamed by the kind of its type.

namespace {

// The stream keeps a fraction of a point, which the editors' whole-point Size drops: a whole
// number of points is written as an integer, a fraction as a float.
QVariant FontSize(const QVariant &Whole)
{
    const double size = Whole.value<QFont>().pointSizeF();
    return size == std::floor(size) ? QVariant(int(size)) : QVariant(size);
}

void SetFontSize(QVariant &Whole, const QVariant &Part)
{
    const double size = Part.toDouble();
    QFont font = Whole.value<QFont>();
    if (size > 0 && font.pointSizeF() != size) {
        font.setPointSizeF(size);
        Whole = font;
    }
}

// The enumerator of a type declared with Q_ENUM; invalid for any other.
QMetaEnum EnumOf(QMetaType Type)
{
    const QMetaObject *meta = Type.metaObject();
    if (!meta)
        return {};
    const QByteArray name = Type.name();
    return meta->enumerator(meta->indexOfEnumerator(name.mid(name.lastIndexOf(':') + 1).constData()));
}

TKind PartKind(const TValuePart &Part)
{
    if (Part.Type.flags() & QMetaType::IsEnumeration)
        return TKind::Enum;
    if (Part.PartType && Part.PartType()->Kind == tkSet)
        return TKind::Set;
    switch (Part.Type.id()) {
    case QMetaType::Int:
        return TKind::Int;
    case QMetaType::Double:
        return TKind::Double;
    case QMetaType::Bool:
        return TKind::Bool;
    case QMetaType::QString:
        return TKind::String;
    default:
        return TKind::Skip;
    }
}

// The parts of Parts that a stream can hold.
QList<TPart> StreamParts(const QList<TValuePart> &Parts)
{
    QList<TPart> parts;
    for (const TValuePart &part : Parts) {
        const TKind kind = PartKind(part);
        if (kind != TKind::Skip)
            parts.append({part.Name, kind, part.Get, part.Set, kind == TKind::Enum ? EnumOf(part.Type) : QMetaEnum()});
    }
    return parts;
}

const QList<TPart> &FontParts()
{
    static const QList<TPart> parts = [] {
        QList<TPart> list = StreamParts(detail::FontParts());
        for (TPart &part : list)
            if (qstrcmp(part.Name, "Size") == 0)
                part = {part.Name, TKind::Double, &FontSize, &SetFontSize, {}};
        return list;
    }();
    return parts;
}

} // namespace

const QStringList &FontStyleNames()
{
    static const QStringList names = {QStringLiteral("fsBold"), QStringLiteral("fsItalic"),
                                      QStringLiteral("fsUnderline"), QStringLiteral("fsStrikeOut")};
    return names;
}

const QList<TPart> *PartsOf(QMetaType Type)
{
    if (Type.id() == QMetaType::QFont)
        return &FontParts();
    const QList<TValuePart> *valueParts = detail::ValueClassParts(Type);
    if (!valueParts)
        return nullptr;
    // One list per list of the editors, made on first use; the map keeps its entries in place.
    static std::unordered_map<const QList<TValuePart> *, QList<TPart>> parts;
    auto found = parts.find(valueParts);
    if (found == parts.end())
        found = parts.emplace(valueParts, StreamParts(*valueParts)).first;
    return &found->second;
}

// Kinds and plans ---------------------------------------------------------------------------

TKind KindOf(const QMetaProperty &Property)
{
    const QMetaType type = Property.metaType();
    if (type.flags() & QMetaType::PointerToQObject)
        return Property.isWritable() ? TKind::Reference : TKind::SubObject;
    if (!Property.isWritable() || !Property.isStored() || !Property.isDesignable()
        || qstrcmp(Property.name(), "objectName") == 0)
        return TKind::Skip;
    if (Property.isEnumType())
        return Property.isFlagType() ? TKind::Set : TKind::Enum;
    if (PartsOf(type))
        return TKind::Parts;
    if (type == QMetaType::fromType<TColor>())
        return TKind::Color;
    if (IsIntegerMetaType(type))
        return TKind::Int;
    switch (type.id()) {
    case QMetaType::Long:
        return TKind::Int;
    case QMetaType::LongLong:
    case QMetaType::ULong:
        return TKind::Int64;
    case QMetaType::ULongLong:
        return TKind::UInt64;
    case QMetaType::Bool:
        return TKind::Bool;
    case QMetaType::Double:
        return TKind::Double;
    case QMetaType::Float:
        return TKind::Single;
    case QMetaType::QString:
    case QMetaType::QUrl:
        return TKind::String;
    case QMetaType::QChar:
        return TKind::Char;
    case QMetaType::QByteArray:
        return TKind::Bytes;
    case QMetaType::QDate:
        return TKind::Date;
    case QMetaType::QTime:
        return TKind::Time;
    case QMetaType::QDateTime:
        return TKind::DateTime;
    case QMetaType::QColor:
        return TKind::QColor;
    case QMetaType::QKeySequence:
        return TKind::KeySequence;
    case QMetaType::QVariant:
        return TKind::Variant;
    case QMetaType::QPixmap:
    case QMetaType::QBitmap:
    case QMetaType::QImage:
    case QMetaType::QIcon:
        return TKind::Picture;
    case QMetaType::QStringList:
        return TKind::Strings;
    default:
        break;
    }
    return type.hasRegisteredDataStreamOperators() ? TKind::Other : TKind::Skip;
}

int TClassPlan::Find(const QByteArray &Name) const
{
    const auto exact = ByName.constFind(Name);
    if (exact != ByName.cend())
        return *exact;
    const auto lower = ByLowerName.constFind(Name.toLower());
    return lower == ByLowerName.cend() ? -1 : *lower;
}

namespace {

QByteArray EventNameOf(const QMetaMethod &Signal, bool Overloaded)
{
    QByteArray name = Signal.name();
    if (!name.isEmpty())
        name[0] = char(QChar::toUpper(uchar(name[0])));
    name.prepend("On");
    if (Overloaded) {
        for (const QByteArray &type : Signal.parameterTypes()) {
            QByteArray part = type;
            for (char &c : part)
                if (!(QChar::isLetterOrNumber(uchar(c)) && uchar(c) < 0x80))
                    c = '_';
            name += '_' + part;
        }
    }
    return name;
}

TClassPlan BuildPlan(const QMetaObject *Class)
{
    TClassPlan plan;
    plan.Class = Class;
    for (int i = 0; i < Class->propertyCount(); ++i) {
        const QMetaProperty property = Class->property(i);
        const TKind kind = KindOf(property);
        if (kind == TKind::Skip)
            continue;
        plan.Properties.push_back({property, kind, QByteArray(property.name()), PartsOf(property.metaType())});
    }
    for (const TPublicSignal &signal : PublicSignals(Class))
        plan.Events.push_back({signal.Signal, EventNameOf(signal.Signal, signal.Overloaded)});
    const int propertyCount = int(plan.Properties.size());
    for (int i = 0; i < propertyCount; ++i) {
        plan.ByName.insert(plan.Properties[size_t(i)].Name, i);
        plan.ByLowerName.insert(plan.Properties[size_t(i)].Name.toLower(), i);
    }
    for (int i = 0; i < int(plan.Events.size()); ++i) {
        plan.ByName.insert(plan.Events[size_t(i)].Name, propertyCount + i);
        plan.ByLowerName.insert(plan.Events[size_t(i)].Name.toLower(), propertyCount + i);
    }
    return plan;
}

} // namespace

const TClassPlan &PlanOf(const QMetaObject *Class)
{
    // Meta-objects of classes live as long as their code; a plan is a few entries per class.
    static QHash<const QMetaObject *, TClassPlan> plans;
    auto found = plans.find(Class);
    if (found == plans.end())
        found = plans.insert(Class, BuildPlan(Class));
    return *found;
}

// Strings -----------------------------------------------------------------------------------

bool IsAscii(const QString &Value)
{
    for (QChar c : Value)
        if (c.unicode() >= 0x80)
            return false;
    return true;
}

QByteArray EncodeShortString(const QString &Value)
{
    QByteArray bytes = IsAscii(Value) ? Value.toLatin1() : Value.toUtf8();
    if (bytes.size() > 255) {
        qsizetype size = 255;
        while (size > 0 && (uchar(bytes[size]) & 0xC0) == 0x80) // don't cut a UTF-8 sequence
            --size;
        bytes.truncate(size);
    }
    return bytes;
}

QString DecodeShortString(const char *Data, int Size)
{
    bool ascii = true;
    for (int i = 0; i < Size && ascii; ++i)
        ascii = uchar(Data[i]) < 0x80;
    if (ascii)
        return QString::fromLatin1(Data, Size);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(QByteArrayView(Data, Size));
    return utf8.hasError() ? DecodeWindows1252(Data, Size) : text;
}

// Values without a code ----------------------------------------------------------------------

QByteArray SaveValue(const QVariant &Value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_0);
    if (Value.metaType().id() == QMetaType::QVariant) // never nested
        return {};
    if (!Value.metaType().save(stream, Value.constData()))
        return {};
    return bytes;
}

QVariant LoadValue(QMetaType Type, const QByteArray &Bytes)
{
    QDataStream stream(Bytes);
    stream.setVersion(QDataStream::Qt_6_0);
    QVariant value(Type, nullptr);
    if (!Type.load(stream, value.data()) || stream.status() != QDataStream::Ok || !stream.atEnd())
        return {};
    return value;
}

// Fixups and the loading bracket --------------------------------------------------------------

namespace {

struct TGlobalLoading
{
    int Depth = 0;
    QList<QPointer<QObject>> Loaded;
    QList<TFixup> Pending;
    TFindGlobalComponentProc FindProc;
};

TGlobalLoading &Global()
{
    static TGlobalLoading global;
    return global;
}

QObject *FindRootNamed(const QString &Name, QObject *LookupRoot)
{
    if (LookupRoot && LookupRoot->objectName().compare(Name, Qt::CaseInsensitive) == 0)
        return LookupRoot;
    return FindGlobalRoot(Name);
}

// The components of roots by lower-cased name, built once per root for one resolution pass.
class TNameIndex
{
public:
    QObject *Find(QObject *Root, const QString &Name)
    {
        auto found = m_roots.find(Root);
        if (found == m_roots.end()) {
            QHash<QString, QObject *> names;
            ForEachOwnedComponent(Root, [&](QObject *Component) {
                const QString name = Component->objectName().toLower();
                if (!name.isEmpty() && !names.contains(name)) // the first of a name
                    names.insert(name, Component);
                return true;
            });
            found = m_roots.insert(Root, names);
        }
        return found->value(Name.toLower());
    }

private:
    QHash<QObject *, QHash<QString, QObject *>> m_roots;
};

// The object a reference names; null when it can't be found yet.
QObject *ResolvePath(TNameIndex &Index, const QString &Path, QObject *LookupRoot)
{
    const qsizetype dot = Path.indexOf(QLatin1Char('.'));
    if (dot < 0) {
        if (LookupRoot) {
            if (QObject *found = Index.Find(LookupRoot, Path))
                return found;
        }
        return FindRootNamed(Path, LookupRoot);
    }
    QObject *root = FindRootNamed(Path.left(dot), LookupRoot);
    return root ? Index.Find(root, Path.mid(dot + 1)) : nullptr;
}

} // namespace

QList<TFixup> ResolveFixups(const QList<TFixup> &Fixups)
{
    QList<TFixup> left;
    TNameIndex index;
    for (const TFixup &fixup : Fixups) {
        if (!fixup.Instance)
            continue;
        QObject *target = ResolvePath(index, fixup.Path, fixup.LookupRoot.data());
        if (target && fixup.Property.metaType().metaObject()
            && target->metaObject()->inherits(fixup.Property.metaType().metaObject()))
            fixup.Property.write(fixup.Instance.data(), QVariant::fromValue(target));
        else
            left.append(fixup);
    }
    return left;
}

void AddPendingFixups(const QList<TFixup> &Fixups)
{
    Global().Pending += Fixups;
    RetryPendingFixups();
}

void RetryPendingFixups()
{
    TGlobalLoading &global = Global();
    if (!global.Pending.isEmpty())
        global.Pending = ResolveFixups(global.Pending);
}

bool DeferLoaded(const QList<QPointer<QObject>> &Loaded)
{
    TGlobalLoading &global = Global();
    if (global.Depth == 0)
        return false;
    global.Loaded += Loaded;
    return true;
}

void FinishLoaded(const QList<QPointer<QObject>> &Loaded)
{
    for (const QPointer<QObject> &obj : Loaded) {
        if (!obj)
            continue;
        if (TPersistent *persistent = TPersistent::Of(obj.data()))
            persistent->Loaded();
        if (obj)
            ExcludeState(obj.data(), csLoading);
    }
}

} // namespace filer

TFindGlobalComponentProc SetFindGlobalComponentProc(TFindGlobalComponentProc Proc)
{
    return std::exchange(filer::Global().FindProc, std::move(Proc));
}

QObject *FindGlobalRoot(const QString &Name)
{
    if (Name.isEmpty())
        return nullptr;
    if (const TFindGlobalComponentProc &proc = filer::Global().FindProc)
        return proc(Name);
    for (QWidget *form : Screen().FormList())
        if (form->objectName().compare(Name, Qt::CaseInsensitive) == 0)
            return form;
    for (QObject *module : Screen().DataModuleList())
        if (module->objectName().compare(Name, Qt::CaseInsensitive) == 0)
            return module;
    return nullptr;
}

void BeginGlobalLoading()
{
    ++filer::Global().Depth;
}

void NotifyGlobalLoading()
{
    filer::RetryPendingFixups();
    filer::FinishLoaded(std::exchange(filer::Global().Loaded, {}));
}

void EndGlobalLoading()
{
    filer::TGlobalLoading &global = filer::Global();
    if (global.Depth > 0 && --global.Depth == 0) {
        // What a failed read left: no Loaded for it, but no longer loading either.
        for (const QPointer<QObject> &obj : std::exchange(global.Loaded, {}))
            if (obj)
                ExcludeState(obj.data(), csLoading | csReading);
    }
}

int PendingGlobalFixupCount()
{
    filer::TGlobalLoading &global = filer::Global();
    global.Pending.removeIf([](const filer::TFixup &f) { return !f.Instance; });
    return int(global.Pending.size());
}

// TFiler ------------------------------------------------------------------------------------

TFiler::TFiler(QIODevice *Stream) : m_stream(Stream) {}
TFiler::~TFiler() = default;

// Streams and resources ----------------------------------------------------------------------

void WriteComponent(QIODevice &Stream, QObject *Instance)
{
    TWriter writer(&Stream);
    writer.WriteRootComponent(Instance);
}

QObject *ReadComponent(QIODevice &Stream, QObject *Instance)
{
    TReader reader(&Stream);
    return reader.ReadRootComponent(Instance);
}

qint64 WriteResourceHeader(QIODevice &Stream, const QString &ResName)
{
    QByteArray header;
    header.append(char(0xFF));
    header.append(char(10));
    header.append(char(0));
    header.append(ResName.left(63).toUpper().toLatin1());
    header.append(char(0));
    header.append(char(0x30));
    header.append(char(0x10));
    header.append(4, char(0));
    if (Stream.write(header) != header.size())
        throw Exception(LoadStr(SWriteError));
    return Stream.pos() - 4;
}

void FixupResourceHeader(QIODevice &Stream, qint64 SizePosition)
{
    const qint64 end = Stream.pos();
    const qint64 size = end - SizePosition - 4;
    if (size < 0 || size > 0x7FFFFFFF)
        throw Exception(LoadStr(SWriteError));
    const char bytes[4] = {char(size), char(size >> 8), char(size >> 16), char(size >> 24)};
    if (!Stream.seek(SizePosition) || Stream.write(bytes, 4) != 4 || !Stream.seek(end))
        throw Exception(LoadStr(SWriteError));
}

QString ReadResourceHeader(QIODevice &Stream)
{
    char start[3];
    if (Stream.read(start, 3) != 3 || uchar(start[0]) != 0xFF || start[1] != 10 || start[2] != 0)
        throw Exception(LoadStr(SInvalidResourceHeader));
    QByteArray name;
    for (;;) {
        char c;
        if (!Stream.getChar(&c) || name.size() > 255)
            throw Exception(LoadStr(SInvalidResourceHeader));
        if (c == 0)
            break;
        name.append(c);
    }
    char tail[6];
    if (Stream.read(tail, 6) != 6)
        throw Exception(LoadStr(SInvalidResourceHeader));
    return QString::fromLatin1(name);
}

void WriteComponentRes(QIODevice &Stream, const QString &ResName, QObject *Instance)
{
    const qint64 sizePosition = WriteResourceHeader(Stream, ResName);
    WriteComponent(Stream, Instance);
    FixupResourceHeader(Stream, sizePosition);
}

QObject *ReadComponentRes(QIODevice &Stream, QObject *Instance)
{
    ReadResourceHeader(Stream);
    return ReadComponent(Stream, Instance);
}

} // namespace kv
