#pragma once

// What the component writer and reader share: how each property is streamed, the value
// parts of value classes, short strings and the limits of the format. Private to the library.

#include "platform/kvFiler.h"
#include "platform/kvWindows1252_p.h"

#include <QHash>
#include <QList>
#include <QMetaEnum>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPointer>
#include <QVariant>

#include <vector>

namespace kv::filer {

// Deeper nesting of components, lists or sub-objects is taken for a hostile stream.
inline constexpr int MaxDepth = 200;

// How a property is streamed.
enum class TKind {
    Skip,
    Int,       // integers of 32 bits and less
    Int64,
    UInt64,    // written as the 64-bit pattern
    Bool,
    Enum,      // identifier, or the number for a value without a key
    Set,       // set of single-bit keys, or the number when keys don't cover it
    Double,
    Single,
    String,
    Char,
    Bytes,     // binary
    Date,
    Time,
    DateTime,
    Color,     // kv::TColor: identifier or number
    QColor,    // an opaque RGB colour as a TColor number, any other as binary
    KeySequence,
    Variant,
    Picture,   // PNG binary
    Strings,   // "<prop>.Strings", a list of strings
    Parts,     // "<prop>.<Part>"
    Reference, // a QObject* with a setter: an identifier
    SubObject, // a QObject* without a setter: dotted paths, or a collection
    Other,     // the QDataStream bytes of the value
};

// One part of a value class: how it is read from and changed in the whole value.
struct TPart
{
    const char *Name;
    TKind Kind;
    QVariant (*Get)(const QVariant &Whole);
    void (*Set)(QVariant &Whole, const QVariant &Part);
    // Enum parts: the enumerator; set parts: the element names, by bit.
    QMetaEnum Enum;
};

// The parts of a value class, in the order the design-time framework lists them; null for a
// type without parts.
const QList<TPart> *PartsOf(QMetaType Type);

// The names of the font style set's elements, by bit.
const QStringList &FontStyleNames();

TKind KindOf(const QMetaProperty &Property);

// A class's streamed properties and events, built once per writer or reader.
struct TPropEntry
{
    QMetaProperty Property;
    TKind Kind;
    QByteArray Name;
    const QList<TPart> *Parts = nullptr;
};

struct TEventEntry
{
    QMetaMethod Signal;
    QByteArray Name; // EventPropertyName
};

struct TClassPlan
{
    const QMetaObject *Class = nullptr;
    std::vector<TPropEntry> Properties;
    std::vector<TEventEntry> Events;
    // Exact names first, then the same lower-cased, to the index in Properties or, from
    // Properties.size() on, in Events.
    QHash<QByteArray, int> ByName;
    QHash<QByteArray, int> ByLowerName;

    // The entry named Name; -1 when none.
    int Find(const QByteArray &Name) const;
};

const TClassPlan &PlanOf(const QMetaObject *Class);

// Short strings are UTF-8 when they hold anything but ASCII (the names of the platform are
// ASCII, which both read alike); otherwise Windows-1252.
QByteArray EncodeShortString(const QString &Value);
QString DecodeShortString(const char *Data, int Size);

// Whether Value holds only ASCII characters.
bool IsAscii(const QString &Value);

// The QDataStream bytes of Value (version Qt 6.0); empty when the type has no stream
// operators.
QByteArray SaveValue(const QVariant &Value);
// Value read back from Bytes as Type; invalid when it does not read to its end.
QVariant LoadValue(QMetaType Type, const QByteArray &Bytes);

// Unconnected handler names kept for the writer.
QString KeptHandlerName(const QObject *Sender, const QMetaMethod &Signal);
bool HasKeptHandlerNames();

// Fixups of references across roots waiting for their root to be read.
struct TFixup
{
    QPointer<QObject> Instance;
    QMetaProperty Property;
    QString Path;
    QPointer<QObject> LookupRoot;
};
// Resolves what it can of Fixups, returns the rest (and those whose instance is gone are
// dropped).
QList<TFixup> ResolveFixups(const QList<TFixup> &Fixups);
// Adds fixups that could not be resolved to the process-wide pending list, and retries the
// whole list.
void AddPendingFixups(const QList<TFixup> &Fixups);
void RetryPendingFixups();

// Inside the global loading bracket: the roots' objects whose Loaded waits for
// NotifyGlobalLoading. False outside the bracket.
bool DeferLoaded(const QList<QPointer<QObject>> &Loaded);
// Calls Loaded() of our classes and clears csLoading.
void FinishLoaded(const QList<QPointer<QObject>> &Loaded);

} // namespace kv::filer
