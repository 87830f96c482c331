#pragma once

#include "kv_export.h"

// IDE-level system services: opening URLs, dropped files, the log, GUIDs, the keyboard
// state, the loaded modules, and raising errors.

#include "platform/kvException.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>
#include <QVariant>

#include <functional>
#include <type_traits>

class QMimeData;

namespace kv {

// Opens URL (a web address, a file name…) with the desktop's default handler for it.
// Returns whether a handler took it.
KV_EXPORT bool JumpToURL(const QString &URL);

// The text for a drop of files: the local files of Data in drop order. With PathOnly a name
// that is an existing file becomes its folder, ending with "/" (a folder stays as it is).
// Without Multiple the result is the first item only; with Multiple the items joined with
// Delimiter. Empty when no local file was dropped. The caller accepts the drop event.
KV_EXPORT QString DropFiles(const QMimeData *Data, bool PathOnly, bool Multiple, const QString &Delimiter);

// The log: WriteToLog hands Value to WriteLogEvent when it is set and does nothing otherwise.
using TWriteLogEvent = std::function<void(const QVariant &Value)>;
extern KV_EXPORT TWriteLogEvent WriteLogEvent;
KV_EXPORT void WriteToLog(const QVariant &Value);
// Sets WriteLogEvent to write the value's text and a line end to the standard output.
KV_EXPORT void MapLogFileToWriteln();
// A new log file name: the folder "LOGS/" beside the program file (created when missing),
// then a new GUID's text and ".log". Where that folder can't be made (a program installed
// read-only), "LOGS/" in the application's data folder instead. The second form puts "LOGS/"
// in ProgramFolder rather than the program's own folder.
KV_EXPORT QString GetLogDataFileName();
KV_EXPORT QString GetLogDataFileName(const QString &ProgramFolder);

// The braced, upper-case form "{0A1B2C3D-…}".
KV_EXPORT QString GUIDToString(const QUuid &GUID);
// Reads the braced or bare form; raises kv::Exception (SInvalidGUID) for anything else.
KV_EXPORT QUuid StringToGUID(const QString &S);
KV_EXPORT QUuid CreateNewGUID();

// The modifier keys held down now, as the keyboard reports them.
KV_EXPORT Qt::KeyboardModifiers KeysToShift();
KV_EXPORT bool ShiftIsPressed();
KV_EXPORT bool IsAltKeyDown();

// A module loaded into the process: the program or a shared library. Handle is the address
// its first segment is loaded at (never 0).
struct KV_EXPORT TModuleInfo
{
    quintptr Handle = 0;
    QString FileName;
};
// The modules in the dynamic linker's order: the program first, then the libraries in load
// order. Modules without a file (the kernel's vDSO) are left out.
KV_EXPORT QList<TModuleInfo> LoadedModules();
// Clear List, then add the handle of every loaded module. Modules hold their resources
// themselves, so ResModulesToList gives the same list.
KV_EXPORT void ModulesToList(QList<quintptr> &List);
KV_EXPORT void ResModulesToList(QList<quintptr> &List);
// Clears Strings and adds the file name of every loaded module that is a package
// (FileIsPackage).
KV_EXPORT void GetLoadedPackagesPaths(QStringList &Strings);

namespace detail {
// One argument of ErrorFmt as text, so that numbers fill a place marker rather than being
// taken by QString::arg as a field width.
template <typename T>
QString FmtArg(const T &Value)
{
    if constexpr (std::is_convertible_v<const T &, QString>)
        return QString(Value);
    else if constexpr (std::is_arithmetic_v<T>)
        return QString::number(Value);
    else
        return QVariant::fromValue(Value).toString();
}
} // namespace detail

// Raise kv::Exception with the message, resp. with Fmt whose place markers %1, %2… are
// filled with the arguments in order.
[[noreturn]] KV_EXPORT void Error(const QString &Msg);
template <typename... Args>
[[noreturn]] void ErrorFmt(const QString &Fmt, const Args &...Arguments)
{
    throw Exception(Fmt.arg(detail::FmtArg(Arguments)...));
}

} // namespace kv
