#include "persist/ideLib_objstreams.h"

#include "foundation/ideConsts.h"
#include "foundation/ideLib_files.h"
#include "platform/kvCollection.h"
#include "platform/kvException.h"
#include "platform/kvFiler.h"
#include "platform/kvObjectText.h"
#include "platform/kvOwner.h"

#include <QBuffer>
#include <QScopeGuard>

namespace kv {

quint32 DefaultOpenMode = fmOpenRead | fmShareDenyWrite;

QIODevice::OpenMode FileModeToOpenMode(quint32 Mode)
{
    if (Mode == fmCreate)
        return QIODevice::WriteOnly | QIODevice::Truncate;
    switch (Mode & 3) {
    case fmOpenRead:
        return QIODevice::ReadOnly;
    case fmOpenReadWrite:
        return QIODevice::ReadWrite;
    default:
        return QIODevice::WriteOnly;
    }
}

void OpenFileWithMode(QFile &File, quint32 Mode)
{
    const QIODevice::OpenMode mode = FileModeToOpenMode(Mode);
    if (!File.open(mode))
        throw Exception::Fmt(mode == QIODevice::ReadOnly ? SErrFileRead : SErrFileWrite, File.fileName(),
                             File.errorString());
}

bool IsStreamComponent(const QObject *Obj)
{
    // Collections and their items live inside a component but are written as its
    // properties, never as components of their own.
    if (!Obj || qobject_cast<const TCollection *>(Obj) || qobject_cast<const TCollectionItem *>(Obj))
        return false;
    return IsRoot(Obj) || GetOwner(Obj);
}

TPersHolder::TPersHolder(QObject *parent)
    : QObject(parent)
{
}

TPersHolder::TPersHolder(QObject *Held, QObject *parent)
    : QObject(parent)
    , m_p(Held)
{
}

void WriteObjToStream(QIODevice &Stream, QObject *Obj)
{
    if (!Obj)
        return;
    if (IsStreamComponent(Obj)) {
        WriteComponent(Stream, Obj);
        return;
    }
    TPersHolder holder(Obj, nullptr);
    WriteComponent(Stream, &holder);
}

void ReadObjFromStream(QIODevice &Stream, QObject *Obj)
{
    if (!Obj)
        return;
    BeginGlobalLoading();
    const auto end = qScopeGuard([] { EndGlobalLoading(); });
    if (IsStreamComponent(Obj)) {
        ReadComponent(Stream, Obj);
    } else {
        TPersHolder holder(Obj, nullptr);
        ReadComponent(Stream, &holder);
    }
    NotifyGlobalLoading();
}

void WriteObjToTextStream(QIODevice &Stream, QObject *Obj)
{
    if (!Obj)
        return;
    QBuffer binary;
    binary.open(QIODevice::ReadWrite);
    WriteObjToStream(binary, Obj);
    binary.seek(0);
    ObjectBinaryToText(binary, Stream);
}

QIODevice &TextToBinaryForm(QIODevice &Stream, QBuffer &Buffer)
{
    Buffer.open(QIODevice::ReadWrite);
    ObjectTextToBinary(Stream, Buffer);
    Buffer.seek(0);
    return Buffer;
}

bool StartsAsTextForm(const QByteArray &Head)
{
    return Head.startsWith("object") || Head.startsWith("inherited") || Head.startsWith("inline");
}

QIODevice &BinaryForm(QIODevice &Stream, QBuffer &Buffer)
{
    return StartsAsTextForm(Stream.peek(9)) ? TextToBinaryForm(Stream, Buffer) : Stream;
}

void ReadObjFromTextStream(QIODevice &Stream, QObject *Obj)
{
    if (!Obj)
        return;
    QBuffer binary;
    ReadObjFromStream(TextToBinaryForm(Stream, binary), Obj);
}

namespace {

void WriteFile(QObject *Obj, const QString &FileName, void (*Write)(QIODevice &, QObject *))
{
    SaveFileWith(FileName, [&](QIODevice &File) { Write(File, Obj); });
}

void ReadFile(QObject *Obj, const QString &FileName, void (*Read)(QIODevice &, QObject *))
{
    QFile file(FileName);
    OpenFileWithMode(file, DefaultOpenMode);
    Read(file, Obj);
}

} // namespace

void WriteObjToFile(QObject *Obj, const QString &FileName)
{
    WriteFile(Obj, FileName, &WriteObjToStream);
}

void WriteObjToTextFile(QObject *Obj, const QString &FileName)
{
    WriteFile(Obj, FileName, &WriteObjToTextStream);
}

void ReadObjFromFile(QObject *Obj, const QString &FileName)
{
    ReadFile(Obj, FileName, &ReadObjFromStream);
}

void ReadObjFromTextFile(QObject *Obj, const QString &FileName)
{
    ReadFile(Obj, FileName, &ReadObjFromTextStream);
}

} // namespace kv
