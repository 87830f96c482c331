#pragma once

#include "kv_export.h"

// The settings store: every setting is named by a path below RegistryKey ("Options\Layout":
// the value Layout in the key Options). Keys are groups of one INI file kept by QSettings,
// "Korvo Company/registry.ini" under the user's configuration directory, or OptionsFileName
// when StoreOptionsInFile is set. Backslashes and slashes both separate keys, doubled or
// trailing separators count once, and names are compared ignoring case: a value or key keeps
// the spelling it was first written with.
//
// One QSettings object serves the whole process. It is made on first use and written to disk
// once after a burst of writes (when control returns to the event loop; at once when there is
// no application object), by FlushRegistry, and when the unit stops. A damaged or unreadable
// file gives the defaults for what can't be read and a warning in the log, and it is not
// touched until something is written; a damaged file is then kept beside the new one.
//
// Values keep their kind: text, integers, floating-point numbers, Booleans (stored as the
// integers 0 and 1), dates and times (ISO 8601 text) and binary data. A value is read back as
// the type of the default that the reader gives; one that does not convert gives the default.
//
// User-interface thread only.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace kv {

// The base of every setting's path. Initially "Software\Korvo Company\Quillon Report\Version 3.1".
extern KV_EXPORT QString RegistryKey;

// The chunk size of long binary values in the chunked layout; initially 8192.
extern KV_EXPORT qint32 DefaultRegBlockSize;

// Selects the layout of long binary values: true (the default) stores one binary value;
// false stores a 36-byte header at the name and the data in chunks named Name__0, Name__1…
// Reading recognises the header in either layout, so each reads back what the other wrote.
extern KV_EXPORT bool UnderWindowsNT;

// The root that RegistryKey is below. HKEY_CURRENT_USER, the default, is the top of the file;
// every other root is a top-level group of that name in the same file (an unknown one is named
// by its number, "HKEY_80000004").
using HKEY = quint32;
inline constexpr HKEY HKEY_CLASSES_ROOT = 0x80000000u;
inline constexpr HKEY HKEY_CURRENT_USER = 0x80000001u;
inline constexpr HKEY HKEY_LOCAL_MACHINE = 0x80000002u;
inline constexpr HKEY HKEY_USERS = 0x80000003u;
inline constexpr HKEY HKEY_CURRENT_CONFIG = 0x80000005u;
KV_EXPORT void SetRootRegKey(HKEY Key);
KV_EXPORT HKEY RootRegKey();

// Writes Value by its type: 16- and 32-bit integers, float and double, bool, QDateTime, QDate,
// QTime and QString. Nothing for an empty name. The key is made first; any other type (invalid,
// byte, 64-bit or unsigned integer, byte array, list…) then raises kv::Exception
// (SErrUnknRegType) and writes no value.
KV_EXPORT void WriteToRegistry(const QString &Name, const QVariant &Value);
// The value converted to Default's type; Default itself when the name is empty, the value is
// missing or it does not convert. A Default of a type WriteToRegistry refuses raises the same
// exception.
KV_EXPORT QVariant ReadFromRegistry(const QString &Name, const QVariant &Default);
KV_EXPORT bool RegValueExists(const QString &Name);
// Whether the key exists: it holds values or keys, or was made during this run.
KV_EXPORT bool RegKeyExists(const QString &Key);
// Removes the value; nothing when it is missing.
KV_EXPORT void DeleteRegValue(const QString &Name);

// A string list as one text value, each line followed by a line break. Reading keeps Strings
// as they are when the value is missing.
KV_EXPORT void WriteStringsToRegistry(const QString &Name, const QStringList &Strings);
KV_EXPORT void ReadStringsFromRegistry(const QString &Name, QStringList &Strings);

// Binary values. Writing does nothing for an empty key or value name or a negative size.
// Reading copies at most Size bytes and returns how many it copied: 0 when the value is
// missing (a text value reads as its UTF-8 bytes). GetRegBufSize is the value's size in bytes,
// -1 when it is missing.
KV_EXPORT void WriteBufToRegistry(const QString &Name, const void *Buffer, qint32 Size);
KV_EXPORT void WriteBufToRegistry(const QString &Name, const QByteArray &Data);
KV_EXPORT qint32 ReadBufFromRegistry(const QString &Name, void *Buffer, qint32 Size);
KV_EXPORT qint32 GetRegBufSize(const QString &Name);

// Long binary values, in the layout UnderWindowsNT selects. Writing removes the chunks that an
// earlier, longer value left behind. Reading finds the layout by the header: exactly 36 bytes,
// "__Long RegKey__", the total and the chunk size as ten digits each with one blank between;
// a chunk size below 1 or a negative total is no header. Chunks are read until the total is
// reached, a chunk is missing or one is short, and never past Size.
KV_EXPORT void WriteLongBufToRegistry(const QString &Name, const void *Buffer, qint32 Size);
KV_EXPORT void WriteLongBufToRegistry(const QString &Name, const QByteArray &Data);
KV_EXPORT qint32 ReadLongBufFromRegistry(const QString &Name, void *Buffer, qint32 Size);
// The whole long value; its size is bounded by the data actually stored, whatever the header
// claims. Empty when it is missing.
KV_EXPORT QByteArray ReadLongBufFromRegistry(const QString &Name);
// The total that the header gives, else GetRegBufSize.
KV_EXPORT qint32 GetLongRegBufSize(const QString &Name);

// "Software\Korvo Company\" followed by S.
KV_EXPORT QString GetKorvoRegKey(const QString &S);

// The file the settings are kept in now.
KV_EXPORT QString RegistryFileName();
// Writes pending changes to disk. Raises kv::Exception (SErrRegWrite) when the file can't be
// written; the changes stay pending.
KV_EXPORT void FlushRegistry();
// Writes pending changes (a failure is a warning in the log) and frees the settings object;
// the next use looks the user's configuration folder up again and reads the file again.
KV_EXPORT void ReleaseRegistry();

} // namespace kv
