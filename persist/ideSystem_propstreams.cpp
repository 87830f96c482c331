#include "persist/ideSystem_propstreams.h"

#include "foundation/ideConsts.h"
#include "foundation/ideLib_props.h"
#include "persist/ideLib_objstreams.h"
#include "platform/kvClasses.h"
#include "platform/kvException.h"
#include "platform/kvFiler.h"

#include <QBuffer>
#include <QIODevice>
#include <QMetaObject>
#include <QScopeGuard>
#include <QSet>
#include <QWidget>
#include <QtEndian>

#include <functional>

namespace kv {

namespace {

// The longest resource name a header holds, and the bytes around it: 0xFF, the 16-bit
// type, the name's zero, the 16-bit flags and the 32-bit size.
constexpr int MaxResNameLength = 63;
constexpr int ResHeaderExtra = 10;

[[noreturn]] void BadPropStream()
{
    throw Exception(LoadStr(SErrBadPropStream));
}

void WriteBytes(QIODevice &Stream, const char *Data, qint64 Size)
{
    if (Stream.write(Data, Size) != Size)
        throw Exception(LoadStr(SWriteError));
}

// Puts the stream back where it was when the probe began, also when the probe fails.
class TPositionKeeper
{
public:
    explicit TPositionKeeper(QIODevice &Stream) : m_stream(Stream), m_start(Stream.pos()) {}
    ~TPositionKeeper() { m_stream.seek(m_start); }
    TPositionKeeper(const TPositionKeeper &) = delete;
    TPositionKeeper &operator=(const TPositionKeeper &) = delete;

private:
    QIODevice &m_stream;
    qint64 m_start;
};

// Reads the signature, the prefix and the class name, which it returns, and, when
// SkipName, the object's name.
QString ReadRootClassName(TReader &Reader, bool SkipName)
{
    Reader.ReadSignature();
    TFilerFlags flags;
    int childPos = 0;
    Reader.ReadPrefix(flags, childPos);
    const QString className = Reader.ReadStr();
    if (SkipName)
        Reader.ReadStr();
    return className;
}

// Reads the value of a data module's property Name; false for any other property.
bool SkipDataModuleProperty(TReader &Reader, const QString &Name)
{
    if (Name.startsWith(QLatin1String("On"))) {
        Reader.ReadIdent();
        return true;
    }
    for (const char *geometry : {"Left", "Top", "Width", "Height"}) {
        if (Name.compare(QLatin1String(geometry), Qt::CaseInsensitive) == 0) {
            Reader.ReadInteger();
            return true;
        }
    }
    if (Name.compare(QLatin1String("OldCreateOrder"), Qt::CaseInsensitive) == 0) {
        Reader.ReadBoolean();
        return true;
    }
    return false;
}

} // namespace

void WritePropsToStream(QIODevice &Stream, QObject *Component, const QStringList &PropNames)
{
    if (!Component)
        return;
    TWriter writer(&Stream);
    writer.IgnoreChildren = true;
    WritePropsToStreamWith(writer, Component, PropNames);
}

void WritePropsToStreamWith(TWriter &Writer, QObject *Component, const QStringList &PropNames)
{
    if (!Component)
        return;
    QSet<QString> listed;
    for (const QString &name : PropNames)
        listed.insert(name.trimmed().toLower());
    Writer.SetSkipObject(Component);
    Writer.SetPropertyFilter([Component, listed](const QObject *Instance, const QString &PropName) {
        return Instance != Component || listed.contains(PropName.toLower());
    });
    const auto unfilter = qScopeGuard([&Writer] { Writer.SetPropertyFilter({}); });

    // The length goes straight into the device, around what the writer hands it.
    Writer.FlushBuffer();
    QIODevice &stream = *Writer.Stream();
    if (stream.isSequential())
        BadPropStream();
    const char placeholder[4] = {};
    WriteBytes(stream, placeholder, 4);
    const qint64 start = stream.pos();
    Writer.WriteRootComponent(Component);
    Writer.FlushBuffer();
    const qint64 end = stream.pos();
    char length[4];
    qToLittleEndian<qint32>(qint32(end - start), length);
    if (!stream.seek(start - 4))
        BadPropStream();
    WriteBytes(stream, length, 4);
    stream.seek(end);
}

namespace {

// Reads a subset stream (its prefix included); Keep tells which of the component's own
// properties (top-level names) are set.
void ReadPropsInto(QIODevice &Stream, QObject *Component, const std::function<bool(const QString &)> &Keep,
                   const TReader::TErrorHook &OnError)
{
    QByteArray block = ReadPropsBlock(Stream);
    QBuffer buffer(&block);
    buffer.open(QIODevice::ReadOnly);
    buffer.seek(4);
    TReader reader(&buffer);
    reader.IgnoreChildren = true;
    if (OnError)
        reader.SetErrorHook(OnError);
    reader.SetPropertyFilter([Component, &Keep](const QObject *Instance, const QString &PropPath) {
        return Instance != Component || Keep(PropPath.section(QLatin1Char('.'), 0, 0));
    });
    const QString name = Component->objectName();
    const auto keepName = qScopeGuard([Component, &name] {
        if (Component->objectName() != name)
            Component->setObjectName(name);
    });
    reader.ReadRootComponent(Component);
}

} // namespace

QByteArray ReadPropsBlock(QIODevice &Stream)
{
    QByteArray block = Stream.read(4);
    if (block.size() != 4)
        BadPropStream();
    const qint32 length = qFromLittleEndian<qint32>(block.constData());
    if (length < 0 || (!Stream.isSequential() && length > Stream.size() - Stream.pos()))
        BadPropStream();
    // In pieces, so that a length a sequential stream does not hold allocates nothing.
    const qint64 total = 4 + qint64(length);
    while (block.size() < total) {
        const QByteArray piece = Stream.read(qMin<qint64>(total - block.size(), 1 << 16));
        if (piece.isEmpty())
            BadPropStream();
        block.append(piece);
    }
    return block;
}

void ReadPropsFromStream(QIODevice &Stream, QObject *Component)
{
    if (!Component)
        return;
    // The component's own defined properties are not in the stream (the writer leaves them
    // out); a stream that has them anyway does not set them. Those of its sub-objects are
    // read.
    ReadPropsInto(
        Stream, Component,
        [Component](const QString &Name) {
            return FindProperty(Component, Name).isValid() || FindEventSignal(Component->metaObject(), Name).isValid();
        },
        {});
}

void ReadPropsFromStreamOnly(QIODevice &Stream, QObject *Component, const QStringList &Only,
                             const TReader::TErrorHook &OnError)
{
    if (!Component)
        return;
    QSet<QString> only;
    for (const QString &name : Only)
        only.insert(name.trimmed().toLower());
    ReadPropsInto(
        Stream, Component, [&only](const QString &Name) { return only.contains(Name.toLower()); }, OnError);
}

void WriteShortStr(QIODevice &Stream, const QString &S)
{
    const QByteArray bytes = S.left(255).toLatin1();
    const char size = char(bytes.size());
    WriteBytes(Stream, &size, 1);
    WriteBytes(Stream, bytes.constData(), bytes.size());
}

void WriteInt(QIODevice &Stream, qint32 Value)
{
    char bytes[4];
    qToLittleEndian(Value, bytes);
    WriteBytes(Stream, bytes, 4);
}

void WriteWord(QIODevice &Stream, quint16 Value)
{
    char bytes[2];
    qToLittleEndian(Value, bytes);
    WriteBytes(Stream, bytes, 2);
}

bool SmartSkipResHeader(QIODevice &Stream, bool CheckOnly)
{
    const QByteArray head = Stream.peek(MaxResNameLength + ResHeaderExtra);
    if (head.size() < 3 || quint8(head[0]) != 0xFF || head[1] != 10 || head[2] != 0)
        return false;
    const qsizetype nameEnd = head.indexOf('\0', 3);
    if (nameEnd < 0 || nameEnd - 3 > MaxResNameLength)
        return false;
    const qsizetype headerSize = nameEnd - 3 + ResHeaderExtra;
    if (headerSize > head.size())
        return false;
    if (!CheckOnly)
        Stream.read(headerSize);
    return true;
}

bool IsTextStream(QIODevice &Stream)
{
    const QByteArray head = Stream.peek(9);
    if (head.size() < 9)
        throw Exception(LoadStr(SReadError));
    return StartsAsTextForm(head);
}

const QMetaObject *GetClassFromStream(QIODevice &Stream)
{
    TPositionKeeper keeper(Stream);
    QBuffer converted;
    QIODevice &binary = BinaryForm(Stream, converted);
    SmartSkipResHeader(binary);
    QString className;
    {
        TReader reader(&binary);
        className = ReadRootClassName(reader, false);
    }
    return GetClass(className);
}

bool StreamContainsDataModule(QIODevice &Stream)
{
    TPositionKeeper keeper(Stream);
    QBuffer converted;
    QIODevice &binary = BinaryForm(Stream, converted);
    SmartSkipResHeader(binary);
    TReader reader(&binary);
    // A class the registry knows tells by itself; the properties decide for the others.
    if (const QMetaObject *meta = GetClass(ReadRootClassName(reader, true)))
        return !meta->inherits(&QWidget::staticMetaObject);
    while (!reader.EndOfList()) {
        if (!SkipDataModuleProperty(reader, reader.ReadStr()))
            return false;
    }
    return true;
}

} // namespace kv
