#pragma once

#include "kv_export.h"

// The messages of the notifier registry: the record every notifier receives, the message
// numbers, and the one encoding of each message's parameters. Senders use the Broadcast
// helpers below and receivers the Decode helpers, so that no unit casts a parameter itself.
// Decoded texts and lists point into the sender's data: they are valid while the message
// is being dispatched, and a receiver that keeps them copies them.

#include <QList>
#include <QString>
#include <QStringView>
#include <QtGlobal>

#include <span>

class QObject;

namespace kv {

class IFormDesigner;

// What every notifier of one broadcast receives; the same record goes to each of them, so a
// notifier answers by setting Result.
struct KV_EXPORT TMessage
{
    quint32 Msg = 0;
    qintptr WParam = 0;
    qintptr LParam = 0;
    qintptr Result = 0;
};

// The message numbers. Those marked B are broadcast through the registry; the others go to
// a single object.
inline constexpr quint32 CM_NAMECHANGED = 2025;         // B, BroadcastNameChanged
inline constexpr quint32 CM_PROPCHANGED = 2026;         // B, BroadcastPropChanged
inline constexpr quint32 CM_PACKAGEUNLOADED = 2028;
inline constexpr quint32 CM_PALETTESELECT = 2029;       // B
inline constexpr quint32 CM_OBJINSERT = 2031;           // B, BroadcastObjInsert
inline constexpr quint32 CM_REGISTERACTIVEX = 2032;     // B
inline constexpr quint32 CM_UNREGISTERACTIVEX = 2033;   // B
inline constexpr quint32 CM_INSPECTORCHANGED = 2034;    // B
inline constexpr quint32 CM_POSTVALUE = 2035;
inline constexpr quint32 CM_SELECTIONCHANGED = 2036;    // B
inline constexpr quint32 CM_SHOWINSPECTOR = 2037;       // B, BroadcastShowInspector
inline constexpr quint32 CM_PACKAGELOADED = 2040;
inline constexpr quint32 CM_HIDEINSPECTOR = 2041;       // B, no parameters
inline constexpr quint32 CM_TOOLBARFORM = 2042;
inline constexpr quint32 CM_EDITRESOURCE = 2043;        // B, BroadcastEditResource
inline constexpr quint32 CM_EDITSTRINGSPROPERTY = 2044; // B, BroadcastEditStringsProperty
inline constexpr quint32 CM_IDECHANGED = 2045;          // B, IDEChanged
inline constexpr quint32 CM_SOURCEEMPTY = 2050;         // B, BroadcastSourceEmpty
inline constexpr quint32 CM_IDEENDUPDATE = 2053;        // B, IDEEndUpdate
inline constexpr quint32 CM_IDEBEGINUPDATE = 2055;      // B, IDEBeginUpdate
inline constexpr quint32 CM_TSNOTIFY = 2056;
inline constexpr quint32 CM_TOGGLEINSPECTOR = 2057;     // B, no parameters
inline constexpr quint32 CM_FREEEDITGROUP = 2058;
inline constexpr quint32 CM_OBJDESTROYED = 2059;        // B, NotifyDestroy, NotifyDestroyObjects
inline constexpr quint32 CM_UPDATEEDITOR = 2060;
inline constexpr quint32 CM_INSPECTORRESCAN = 2062;
inline constexpr quint32 CM_SHOWCOMPPALETTE = 2063;     // B, WParam 1
inline constexpr quint32 CM_HIDECOMPPALETTE = 2064;     // B, no parameters
inline constexpr quint32 CM_SHOWALIGNPALETTE = 2065;    // B, WParam 1
inline constexpr quint32 CM_HIDEALIGNPALETTE = 2066;    // B, no parameters
inline constexpr quint32 CM_REGISTERCOMPS = 2069;       // B, no parameters
inline constexpr quint32 CM_OBJECTCHANGED = 2070;
inline constexpr quint32 CM_DESIGNFINISHED = 2072;

// The value of the Version property that every control and source publishes (never stored).
inline constexpr char KVVersion[] = "3.1";

// CM_PROPCHANGED: WParam a const QList<QObject*>* of the changed objects, LParam a
// const QString* property name, null when the whole object changed.
struct KV_EXPORT TPropChangedData
{
    std::span<QObject *const> Objects;
    QStringView PropName; // empty when WholeObject
    bool WholeObject = true;

    bool Concerns(const QObject *Obj) const;
};
KV_EXPORT void BroadcastPropChanged(QObject *Sender, const QList<QObject *> &Objects,
                          const QString &PropName = QString());
KV_EXPORT TPropChangedData DecodePropChanged(const TMessage &Message);

// CM_NAMECHANGED: WParam the component, LParam a const QString* new name.
struct KV_EXPORT TNameChangedData
{
    QObject *Component = nullptr;
    QStringView NewName;
};
KV_EXPORT void BroadcastNameChanged(QObject *Sender, QObject *Component, const QString &NewName);
KV_EXPORT TNameChangedData DecodeNameChanged(const TMessage &Message);

// CM_OBJINSERT: WParam the inserted component.
KV_EXPORT void BroadcastObjInsert(QObject *Sender, QObject *Component);
KV_EXPORT QObject *DecodeObjInsert(const TMessage &Message);

// CM_OBJDESTROYED, sent by NotifyDestroy (WParam the object going away) and by
// NotifyDestroyObjects (WParam 0, LParam a const QList<QObject*>* of the objects going away).
// The objects are still alive while the message is dispatched.
struct KV_EXPORT TObjDestroyedData
{
    QObject *Object = nullptr;         // the single form
    std::span<QObject *const> Objects; // the list form

    bool Concerns(const QObject *Obj) const;
};
KV_EXPORT TObjDestroyedData DecodeObjDestroyed(const TMessage &Message);

// CM_SELECTIONCHANGED: WParam a const QList<QObject*>* of the selected objects, LParam the
// designer's IFormDesigner*.
struct KV_EXPORT TSelectionChangedData
{
    QList<QObject *> Selection;
    IFormDesigner *Designer = nullptr;
};
KV_EXPORT void BroadcastSelectionChanged(QObject *Sender, const QList<QObject *> &Selection, IFormDesigner *Designer);
KV_EXPORT TSelectionChangedData DecodeSelectionChanged(const TMessage &Message);

// CM_SOURCEEMPTY: WParam the source whose object has gone; the source is the sender.
KV_EXPORT void BroadcastSourceEmpty(QObject *Source);
KV_EXPORT QObject *DecodeSourceEmpty(const TMessage &Message);

// CM_SHOWINSPECTOR: WParam 1 when the inspector is to take the focus, else 0.
KV_EXPORT void BroadcastShowInspector(QObject *Sender, bool Focus);
KV_EXPORT bool DecodeShowInspector(const TMessage &Message);

// CM_EDITSTRINGSPROPERTY: WParam the component, LParam a const QString* property name.
struct KV_EXPORT TEditStringsPropertyData
{
    QObject *Component = nullptr;
    QStringView PropName;
};
KV_EXPORT void BroadcastEditStringsProperty(QObject *Sender, QObject *Component, const QString &PropName);
KV_EXPORT TEditStringsPropertyData DecodeEditStringsProperty(const TMessage &Message);

// CM_EDITRESOURCE: WParam a const QString* module file name, LParam the resource within it
// (its name and numeric type).
struct KV_EXPORT TEditResourceData
{
    QStringView FileName;
    QStringView ResName;
    qint32 ResType = 0;
};
KV_EXPORT void BroadcastEditResource(QObject *Sender, const QString &FileName, const QString &ResName,
                           qint32 ResType);
KV_EXPORT TEditResourceData DecodeEditResource(const TMessage &Message);

} // namespace kv
