#pragma once

#include "kv_export.h"

// Storing any object in the component stream format, binary ("TPF0") or text ("object …
// end"), in a stream or a file.
//
// A component (a root: form, data module, or an object a root owns) is written as itself,
// with the components it owns. Any other object (one that no root owns and that is no root
// itself: a collection, an options object, a parentless helper) is written through a
// TPersHolder, so that its properties appear in the stream as the sub-properties of the
// holder's P ("P.Caption"), and read back the same way into the object given.

#include <QByteArray>
#include <QFile>
#include <QIODevice>
#include <QObject>
#include <QPointer>
#include <QString>

class QBuffer;

namespace kv {

// The platform's file modes. The two low bits are the access: fmOpenRead 0, fmOpenWrite 1,
// fmOpenReadWrite 2 (3, what fmCreate masked to two bits gives, opens for writing too). The
// share bits (fmShareDenyWrite…) tell what other openers may do; this platform has no
// mandatory locks, so they are kept for the callers' sake and change nothing. fmCreate
// creates the file, or empties an existing one.
inline constexpr quint32 fmOpenRead = 0x0000;
inline constexpr quint32 fmOpenWrite = 0x0001;
inline constexpr quint32 fmOpenReadWrite = 0x0002;
inline constexpr quint32 fmShareExclusive = 0x0010;
inline constexpr quint32 fmShareDenyWrite = 0x0020;
inline constexpr quint32 fmShareDenyNone = 0x0040;
inline constexpr quint32 fmCreate = 0xFFFF;

// The mode in which the Read…FromFile routines (and the component filer) open files;
// initially fmOpenRead | fmShareDenyWrite.
extern KV_EXPORT quint32 DefaultOpenMode;

// The QIODevice mode for one of the platform's file modes: fmCreate writes a new (or
// emptied) file; otherwise the access bits decide: read, write (also 3) or both.
KV_EXPORT QIODevice::OpenMode FileModeToOpenMode(quint32 Mode);
// Opens File in Mode. Raises kv::Exception with the file's name and the system's reason when
// it can't: SErrFileRead for fmOpenRead, SErrFileWrite for the others.
KV_EXPORT void OpenFileWithMode(QFile &File, quint32 Mode);

// Whether Obj is written as a component: a root, or an object that a root owns other than a
// collection or a collection item (those are written as properties).
KV_EXPORT bool IsStreamComponent(const QObject *Obj);

// The holder of an object that is not a component: the object is the sub-object P, whose
// properties the writer stores as "P.Name" paths and the reader sets on the same object.
// The holder never owns P.
class KV_EXPORT TPersHolder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QObject *P READ P)

public:
    Q_INVOKABLE explicit TPersHolder(QObject *parent = nullptr);
    TPersHolder(QObject *Held, QObject *parent);

    QObject *P() const { return m_p; }

private:
    QPointer<QObject> m_p;
};

// Writes Obj in binary at the stream's position: a component with the platform's component
// writer, anything else through a TPersHolder. Nothing for null. Raises kv::Exception when
// the stream can't be written.
KV_EXPORT void WriteObjToStream(QIODevice &Stream, QObject *Obj);
// Reads what WriteObjToStream wrote into Obj (inside the global-loading bracket, so that
// references to other roots are fixed up once every root is read). Raises kv::Exception
// for a stream that is not one (SErrBadPropStream and the reader's own messages). Nothing
// for null.
KV_EXPORT void ReadObjFromStream(QIODevice &Stream, QObject *Obj);

// The same in the text form.
KV_EXPORT void WriteObjToTextStream(QIODevice &Stream, QObject *Obj);
KV_EXPORT void ReadObjFromTextStream(QIODevice &Stream, QObject *Obj);

// Whether Head, the first bytes of a stream, begin the text form ("object", "inherited" or
// "inline").
KV_EXPORT bool StartsAsTextForm(const QByteArray &Head);
// The text form at Stream's position converted into Buffer, which is opened and rewound.
KV_EXPORT QIODevice &TextToBinaryForm(QIODevice &Stream, QBuffer &Buffer);
// The binary form of the object at Stream's position: Stream itself when it holds the
// binary form, else its text converted into Buffer.
KV_EXPORT QIODevice &BinaryForm(QIODevice &Stream, QBuffer &Buffer);

// Writes Obj to a new file (fmCreate) in binary or text. The file is replaced only once it
// is written whole: a failed write leaves the old one. Raises kv::Exception (SErrFileWrite).
KV_EXPORT void WriteObjToFile(QObject *Obj, const QString &FileName);
KV_EXPORT void WriteObjToTextFile(QObject *Obj, const QString &FileName);
// Opens the file with DefaultOpenMode and reads Obj from it. Raises kv::Exception
// (SErrFileRead) when it can't be opened.
KV_EXPORT void ReadObjFromFile(QObject *Obj, const QString &FileName);
KV_EXPORT void ReadObjFromTextFile(QObject *Obj, const QString &FileName);

} // namespace kv
