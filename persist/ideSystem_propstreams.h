#pragma once

#include "kv_export.h"

// Property-subset streams (chosen properties of one component behind a length prefix) and
// the probes that tell what a component stream holds before it is read.
//
// A property-subset stream: N, a 32-bit little-endian length, then N bytes that the component
// writer made of the component as a root with no ancestor and no children, holding only the
// listed properties that it would store anyway (values that differ from the defaults) and
// the defined properties of their sub-objects; the component's own defined properties are
// left out on both sides.

#include "platform/kvFiler.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

class QIODevice;
class QMetaObject;
class QObject;

namespace kv {

// Writes Component's properties named in PropNames (ignoring case; names that are not
// properties or events of its class add nothing) as a subset stream at the stream's
// position, which must allow seeking back over the length. Nothing for a null Component.
// Raises kv::Exception when the stream can't be written.
KV_EXPORT void WritePropsToStream(QIODevice &Stream, QObject *Component, const QStringList &PropNames);
// The same through a writer the caller made (and configured: children, hooks): the writer's
// skipped object becomes Component and its property filter keeps only PropNames for the
// call (it is unset afterwards).
KV_EXPORT void WritePropsToStreamWith(TWriter &Writer, QObject *Component, const QStringList &PropNames);
// Reads a subset stream into Component: exactly the N bytes its length prefix gives (the
// stream is left just past them), the properties set, Component's name kept. Nothing for a
// null Component. Raises kv::Exception for a length beyond the stream (SErrBadPropStream)
// and for what the reader refuses.
KV_EXPORT void ReadPropsFromStream(QIODevice &Stream, QObject *Component);
// A subset stream's length prefix and the block it counts, read whole and nothing past it.
// Raises kv::Exception (SErrBadPropStream) for a negative length or one beyond the stream.
KV_EXPORT QByteArray ReadPropsBlock(QIODevice &Stream);
// ReadPropsFromStream, setting only the properties named in Only (ignoring case; the others are read
// and dropped), with the reader's errors handed to OnError when it is set.
KV_EXPORT void ReadPropsFromStreamOnly(QIODevice &Stream, QObject *Component, const QStringList &Only,
                                       const TReader::TErrorHook &OnError = {});

// S cut to 255 characters, as a length byte and its Latin-1 bytes.
KV_EXPORT void WriteShortStr(QIODevice &Stream, const QString &S);
// 4, resp. 2 bytes little-endian.
KV_EXPORT void WriteInt(QIODevice &Stream, qint32 Value);
KV_EXPORT void WriteWord(QIODevice &Stream, quint16 Value);

// Whether a form resource header (0xFF, the 16-bit type 10, a zero-terminated name of at
// most 63 characters, the 16-bit flags and the 32-bit size) stands whole at the position.
// When it does and CheckOnly is false, the position is left just past it; otherwise the
// position is unchanged. Reads nothing past the end of the stream.
KV_EXPORT bool SmartSkipResHeader(QIODevice &Stream, bool CheckOnly = false);
// Whether the stream at its position holds the text form: its next bytes are "object",
// "inherited" or "inline" (case-sensitive); the position is unchanged. Raises kv::Exception (SReadError)
// when fewer than 9 bytes are left.
KV_EXPORT bool IsTextStream(QIODevice &Stream);
// The registered class of the root that the binary stream at the position holds (after a
// resource header, if there is one); null when that class is not registered. The position
// is unchanged. Raises kv::Exception for a stream that is not a component stream.
KV_EXPORT const QMetaObject *GetClassFromStream(QIODevice &Stream);
// Whether the stream (binary, with or without a resource header, or text) holds a data
// module. A root class the registry knows decides by itself (a widget class makes a form);
// otherwise the root is a data module when it has no properties but events and Left, Top,
// Width, Height and OldCreateOrder: a form always holds more (its caption and size). The
// position is unchanged. Raises kv::Exception for a stream that is not a component stream.
KV_EXPORT bool StreamContainsDataModule(QIODevice &Stream);

} // namespace kv
