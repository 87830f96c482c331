#pragma once

#include "kv_export.h"

// The platform's component streams in their binary form: the writer and the reader of
// objects with their properties and child components, and the helpers around them.
//
// The form, little-endian: the signature "TPF0"; an optional prefix byte 0xF0 | flags
// (ffInherited, ffChildPos followed by an integer, ffInline); the class name and the object
// name as short strings (a length byte and the bytes); the properties, each a short-string
// name and a tagged value (TValueType), ended by vaNull; the child components the same way,
// ended by vaNull.
//
// What is written of an object: its stored, designable, writable Qt properties whose value
// differs from the declared default (kvStreamDefaults.h) or, with an ancestor, from the
// ancestor's value; value classes as the dotted parts the design-time framework names
// ("font.Name", "geometry.Width"); a string list as "<prop>.Strings", a list of strings; a
// QObject* property with a setter as a reference (an identifier, "Name" or "Form2.Name"),
// one without a setter as a sub-object whose properties follow as dotted paths; a
// TCollection as vaCollection; pictures as PNG binary; a Qt type without a code of its own
// as the QDataStream bytes of the value (binary); events as "On" + the signal name (see
// EventPropertyName) with the handler's name; the defined properties of TPersistent
// classes; then the children (TPersistent::GetChildren, DefaultStreamChildren).
//
// Strings: ASCII-only text as vaString / vaLString, anything else as vaWString (UTF-16);
// vaString and vaLString read as Windows-1252.
//
// Every failure raises kv::Exception with a text of the message table. User-interface
// thread only.

#include <QByteArray>
#include <QFlags>
#include <QMetaMethod>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

class QDateTime;
class QIODevice;

namespace kv {

class TCollection;
class TReader;
class TWriter;

// The value tags of the binary form, with the platform's codes.
enum TValueType : quint8 {
    vaNull = 0,
    vaList = 1,
    vaInt8 = 2,
    vaInt16 = 3,
    vaInt32 = 4,
    vaExtended = 5,
    vaString = 6,
    vaIdent = 7,
    vaFalse = 8,
    vaTrue = 9,
    vaBinary = 10,
    vaSet = 11,
    vaLString = 12,
    vaNil = 13,
    vaCollection = 14,
    vaSingle = 15,
    vaCurrency = 16,
    vaDate = 17,
    vaWString = 18,
    vaInt64 = 19,
};

// The flags of the prefix byte that may precede a component's class name.
enum TFilerFlag {
    ffInherited = 0x01,
    ffChildPos = 0x02,
    ffInline = 0x04,
};
Q_DECLARE_FLAGS(TFilerFlags, TFilerFlag)
Q_DECLARE_OPERATORS_FOR_FLAGS(TFilerFlags)

// The four bytes every binary component stream begins with.
inline constexpr char FilerSignature[] = "TPF0";

// Dates in streams: days since 1899-12-30, the time of day as the fraction (for a date before
// that day the fraction still counts forward from midnight: -1.25 is 1899-12-29 06:00).
// The date-time is taken as wall-clock time; an invalid one is 0.
KV_EXPORT double DateTimeToFilerDate(const QDateTime &Value);
// Invalid for a value outside the dates Qt holds, for NaN and for infinities.
KV_EXPORT QDateTime FilerDateToDateTime(double Value);

// The stream name of Signal in Class: "On" + the signal's name with its first letter in
// upper case ("OnClicked"); where the class has several signals of that name (not counting
// the forms default arguments make), the parameter types follow, each after "_", with
// every character that can't be in an identifier turned into "_" ("OnActivated_int",
// "OnActivated_QString").
KV_EXPORT QString EventPropertyName(const QMetaObject *Class, const QMetaMethod &Signal);
// The signal of Class that EventPropertyName names Name (case-insensitive); invalid when none.
KV_EXPORT QMetaMethod FindEventSignal(const QMetaObject *Class, const QString &Name);

// A handler name the reader could not connect (its slot does not exist) but was told to
// keep: the writer writes it back while the connection registry has no handler for the
// event. Forgotten when Sender is destroyed; an empty Name forgets.
KV_EXPORT void SetUnconnectedHandlerName(QObject *Sender, const QMetaMethod &Signal, const QString &Name);
// The kept name; empty when none.
KV_EXPORT QString UnconnectedHandlerName(const QObject *Sender, const QMetaMethod &Signal);

// What the writer and the reader share: the stream, the root, the ancestor, and the
// definition of properties that are not Qt properties (TPersistent::DefineProperties).
class KV_EXPORT TFiler
{
public:
    using TReaderProc = std::function<void(TReader &Reader)>;
    using TWriterProc = std::function<void(TWriter &Writer)>;
    // The data of a binary property: reading gets a device positioned at the bytes,
    // writing writes them into the device it gets.
    using TStreamProc = std::function<void(QIODevice &Stream)>;

    explicit TFiler(QIODevice *Stream);
    virtual ~TFiler();
    TFiler(const TFiler &) = delete;
    TFiler &operator=(const TFiler &) = delete;

    QIODevice *Stream() const { return m_stream; }
    // The root being written or read; its components are named within it.
    QObject *Root() const { return m_root; }
    // The root that names references (differs from Root for an inline sub-root).
    QObject *LookupRoot() const { return m_lookupRoot; }
    // While writing: the object the written one is compared with (the ancestor's
    // counterpart); null when values are compared with the defaults. Null while reading.
    QObject *Ancestor() const { return m_ancestor; }
    // The object whose DefineProperties is running; null outside.
    QObject *DefiningObject() const { return m_definingObject; }

    // Defines a property named Name: the writer writes it (calling WriteData) when HasData is
    // true, the reader calls ReadData when the stream holds it. Called from DefineProperties.
    virtual void DefineProperty(const QString &Name, const TReaderProc &ReadData, const TWriterProc &WriteData,
                                bool HasData) = 0;
    // The same for a property whose value is a binary block (vaBinary).
    virtual void DefineBinaryProperty(const QString &Name, const TStreamProc &ReadData, const TStreamProc &WriteData,
                                      bool HasData) = 0;

    // Whether child components are left alone: the writer writes none, the reader reads and
    // drops those in the stream.
    bool IgnoreChildren = false;

protected:
    QIODevice *m_stream;
    QObject *m_root = nullptr;
    QObject *m_lookupRoot = nullptr;
    QObject *m_ancestor = nullptr;
    QObject *m_definingObject = nullptr;
};

class TWriterPrivate;

// Writes objects into a device, through a buffer that is flushed at the end of
// WriteRootComponent / WriteDescendent, by FlushBuffer and by the destructor (which drops a
// write error; call FlushBuffer to be told of one).
class KV_EXPORT TWriter : public TFiler
{
public:
    // Whether the property PropName (a top-level published property or event name) of
    // Instance is written; unset, every property is.
    using TPropertyFilter = std::function<bool(const QObject *Instance, const QString &PropName)>;
    // The class name written for Object; an empty result writes its stream class name.
    using TClassNameHook = std::function<QString(const QObject *Object)>;
    // The handler name written for an event that has no handler in the connection registry
    // (and no kept name); an empty result writes nothing.
    using TEventNameHook = std::function<QString(const QObject *Sender, const QMetaMethod &Signal)>;

    explicit TWriter(QIODevice *Stream);
    ~TWriter() override;

    // The signature, then Root with its properties and children, compared with the defaults.
    void WriteRootComponent(QObject *Root);
    // The same, compared with Ancestor (an object of the class Root derives from, or of the
    // same class) when it is not null: only what differs is written, children that the
    // ancestor has are flagged ffInherited, the root too.
    void WriteDescendent(QObject *Root, QObject *Ancestor);
    // One component (prefix, class name, name, properties, children) at the current place.
    void WriteComponent(QObject *Component);
    // The properties of Instance (published, then defined), without the end marker.
    void WriteProperties(QObject *Instance);
    // The children of Component (without the end marker).
    void WriteChildren(QObject *Component);

    void WriteSignature();
    void WritePrefix(TFilerFlags Flags, int ChildPos);
    // A short string: a length byte and at most 255 bytes of Latin-1 text.
    void WriteStr(const QString &Value);

    void WriteValue(TValueType Value);
    // In the smallest of vaInt8, vaInt16, vaInt32 and vaInt64 that holds it.
    void WriteInteger(qint64 Value);
    void WriteBoolean(bool Value);
    // ASCII-only text as vaString (up to 255 bytes) or vaLString, any other as vaWString.
    void WriteString(const QString &Value);
    void WriteWideString(const QString &Value);
    void WriteIdent(const QString &Value);
    // vaExtended (the 80-bit form).
    void WriteFloat(double Value);
    void WriteSingle(float Value);
    // The value times 10,000, as the platform's currency type holds it.
    void WriteCurrency(qint64 Scaled);
    // Days since 1899-12-30 (see DateTimeToFilerDate).
    void WriteDate(double Value);
    void WriteBinary(const QByteArray &Value);
    // vaSet, the element identifiers, an empty one.
    void WriteSet(const QStringList &Elements);
    void WriteListBegin();
    void WriteListEnd();
    // vaCollection and the items with their properties; vaNil for null.
    void WriteCollection(const TCollection *Collection);
    // A property value written as its type asks (the encoding of a Qt property); raises
    // kv::Exception for a value that cannot be written.
    void WriteVariant(const QVariant &Value);

    // Bytes written so far, counted from the device's position when the writer was made.
    qint64 Position() const;
    // Hands the buffer to the device; raises kv::Exception when the device refuses it.
    void FlushBuffer();

    void SetPropertyFilter(TPropertyFilter Filter);
    // The object whose own defined properties are not written; those of its sub-objects are.
    void SetSkipObject(QObject *Object);
    QObject *SkipObject() const;
    void SetClassNameHook(TClassNameHook Hook);
    void SetEventNameHook(TEventNameHook Hook);

    void DefineProperty(const QString &Name, const TReaderProc &ReadData, const TWriterProc &WriteData,
                        bool HasData) override;
    void DefineBinaryProperty(const QString &Name, const TStreamProc &ReadData, const TStreamProc &WriteData,
                              bool HasData) override;

private:
    friend class TWriterPrivate;
    std::unique_ptr<TWriterPrivate> d;
};

class TReaderPrivate;

// Reads objects from a device. It reads ahead through a buffer on random-access devices;
// FlushBuffer, the end of ReadRootComponent and the destructor put the device back at the
// first byte not read. A length field larger than what is left in the device is an error.
class KV_EXPORT TReader : public TFiler
{
public:
    // Called for each error met while reading a property or creating a component. Setting
    // Handled skips the property or component and goes on; otherwise the read fails with
    // kv::Exception (Message).
    using TErrorHook = std::function<void(const QString &Message, bool &Handled)>;
    // Called when the handler named MethodName has no slot (Error is true): setting Error to
    // false keeps the name as an unconnected handler (SetUnconnectedHandlerName).
    using TFindMethodHook = std::function<void(const QString &MethodName, bool &Error)>;
    // Whether the value read for the property at PropPath (a name, or a dotted path) of
    // Instance is assigned; when not, the value is read and dropped.
    using TPropertyFilter = std::function<bool(const QObject *Instance, const QString &PropPath)>;

    explicit TReader(QIODevice *Stream);
    ~TReader() override;

    // The signature, the root's header, properties and children, into Root; a null Root is
    // created through the class registry (and deleted again when the read fails). The
    // root's name is taken from the stream unless Root was given and already has one.
    // The root and the components of our classes (TPersistent) carry csLoading and csReading
    // while they are read; then references are fixed up and Loaded() is called (deferred to
    // NotifyGlobalLoading inside the global loading bracket). Returns the root.
    QObject *ReadRootComponent(QObject *Root);
    // One child component of the current parent: its header, properties and children. Reads
    // into Component when it is not null, else into the parent's child of that name and
    // class, else into a new one (deleted again when the read fails). Returns it; null when
    // an error about it was handled and it was skipped.
    QObject *ReadComponent(QObject *Component);
    // The properties of Instance up to the end marker (consumed).
    void ReadProperties(QObject *Instance);

    // Raises kv::Exception (SInvalidStreamFormat) unless the next four bytes are "TPF0".
    void ReadSignature();
    // Reads a prefix byte when there is one; ChildPos is set only with ffChildPos.
    void ReadPrefix(TFilerFlags &Flags, int &ChildPos);
    // A short string (Windows-1252).
    QString ReadStr();

    TValueType ReadValue();
    // The next tag, not consumed.
    TValueType NextValue();
    // Skips the next tagged value, nested lists and collections included.
    void SkipValue();
    // Whether the next tag is vaNull (not consumed).
    bool EndOfList();
    void ReadListBegin();
    void ReadListEnd();

    // Each raises kv::Exception (SInvalidPropertyValue) for a tag of another type.
    qint32 ReadInteger();
    qint64 ReadInt64();
    bool ReadBoolean();
    // vaString, vaLString, vaWString.
    QString ReadString();
    // vaIdent, and vaFalse, vaTrue, vaNil, vaNull as their names.
    QString ReadIdent();
    // vaExtended, vaSingle, vaCurrency, vaDate and the integer tags.
    double ReadFloat();
    float ReadSingle();
    qint64 ReadCurrency();
    double ReadDate();
    QByteArray ReadBinary();
    QStringList ReadSet();
    // Reads the items of a vaCollection into Collection, which is cleared first.
    void ReadCollection(TCollection *Collection);
    // The next value whatever its tag, as a QVariant (lists as QVariantList, sets as
    // QStringList, identifiers as QString, vaNil and vaNull as an invalid QVariant).
    QVariant ReadVariant();

    // Bytes consumed so far, counted from the device's position when the reader was made.
    qint64 Position() const;
    // Puts the device back at the first byte not consumed.
    void FlushBuffer();

    // The object whose children are being read.
    QObject *Parent() const;

    void SetErrorHook(TErrorHook Hook);
    void SetFindMethodHook(TFindMethodHook Hook);
    void SetPropertyFilter(TPropertyFilter Filter);
    // The root's own defined properties are not read: one in the stream is an unknown
    // property (those of sub-objects, and string lists, still read).
    bool IgnoreDefinedProperties = false;

    void DefineProperty(const QString &Name, const TReaderProc &ReadData, const TWriterProc &WriteData,
                        bool HasData) override;
    void DefineBinaryProperty(const QString &Name, const TStreamProc &ReadData, const TStreamProc &WriteData,
                              bool HasData) override;

private:
    friend class TReaderPrivate;
    std::unique_ptr<TReaderPrivate> d;
};

// Finds a root for a reference across roots ("Form2.Button1" looks up "Form2"). The default
// looks among the screen's forms and data modules, ignoring case.
using TFindGlobalComponentProc = std::function<QObject *(const QString &Name)>;
// Installs Proc (an empty one restores the default); returns the previous one.
KV_EXPORT TFindGlobalComponentProc SetFindGlobalComponentProc(TFindGlobalComponentProc Proc);
// The root a reference across roots names: what the installed procedure finds, else the
// screen's form or data module of that name (ignoring case); null when none.
KV_EXPORT QObject *FindGlobalRoot(const QString &Name);

// The loading bracket: roots read inside it are finished together. NotifyGlobalLoading
// resolves the references between them and calls their Loaded(); EndGlobalLoading closes
// the bracket (call it also when reading failed). Brackets nest.
KV_EXPORT void BeginGlobalLoading();
KV_EXPORT void NotifyGlobalLoading();
KV_EXPORT void EndGlobalLoading();

// References to other roots that no root loaded so far could resolve; they are fixed up
// when a root of that name is read. For diagnostics and tests.
KV_EXPORT int PendingGlobalFixupCount();

// Writes Instance as a root into Stream.
KV_EXPORT void WriteComponent(QIODevice &Stream, QObject *Instance);
// Reads a root from Stream into Instance, or into a new object of the stream's class
// (owned by the caller) when Instance is null. Returns the root.
KV_EXPORT QObject *ReadComponent(QIODevice &Stream, QObject *Instance = nullptr);

// The resource header of a form resource: byte 0xFF, the 16-bit type 10, the name in upper
// case (at most 63 characters) ended by a zero byte, the 16-bit flags 0x1030, and the 32-bit
// size of the data that follows. Returns the position of the size field, for
// FixupResourceHeader.
KV_EXPORT qint64 WriteResourceHeader(QIODevice &Stream, const QString &ResName);
// Writes the size of the data written since the header into its size field and returns to
// the end.
KV_EXPORT void FixupResourceHeader(QIODevice &Stream, qint64 SizePosition);
// Reads a resource header; returns the resource name. Raises kv::Exception
// (SInvalidResourceHeader) for anything else; the position is then undefined.
KV_EXPORT QString ReadResourceHeader(QIODevice &Stream);

// The header, then Instance as a root.
KV_EXPORT void WriteComponentRes(QIODevice &Stream, const QString &ResName, QObject *Instance);
KV_EXPORT QObject *ReadComponentRes(QIODevice &Stream, QObject *Instance = nullptr);

} // namespace kv
