#pragma once

#include "kv_export.h"

// File names, backups, finding files, permissions and small file writes. Paths use "/".
// Failures that would lose data (a backup that can't be made, a file that can't be written)
// raise kv::Exception with the file's name and the system's reason.

#include <QDir>
#include <QFileDevice>
#include <QString>
#include <QStringList>

#include <functional>

class QFileInfo;

namespace kv {

// The backup name: the extension gets "~" after its point and is cut to 4 characters
// ("Unit1.pas" gives "Unit1.~pa"); a name without an extension gets ".~". Only the file name
// part counts: a point in a folder name is no extension.
KV_EXPORT QString FileBakName(const QString &FileName);

// When the file exists: deletes an existing backup, then renames the file to its backup
// name. Returns false when there is no such file. Raises kv::Exception (SErrFileDelete,
// SErrFileRename) when the old backup can't be deleted or the file can't be renamed.
KV_EXPORT bool RenameToBak(const QString &FileName);

// The file name without folder and extension ("src/Unit1.pas" gives "Unit1").
KV_EXPORT QString ExtractOnlyName(const QString &FileName);

// FileName with its name part (name and extension) replaced by NewName, in the same folder.
KV_EXPORT QString ChangeFileName(const QString &FileName, const QString &NewName);

// Called for every file found; clearing Continue ends the search.
using TFileFoundCallBack = std::function<void(const QString &Path, const QFileInfo &Info, bool &Continue)>;

// Mask is a folder and a name pattern ("src/*.pas"; a mask without a folder looks in the
// current one, one ending in "/" takes every name). Filters chooses the kinds of entries as
// QDir does (QDir::Files, QDir::Dirs, QDir::Hidden…; "." and ".." never come). With Recursive
// every subfolder is searched with the same pattern, whether or not its own name matches;
// symbolic links to folders are not followed. Returns false when Callback stopped the search.
KV_EXPORT bool ForEachFile(const QString &Mask, QDir::Filters Filters, bool Recursive, const TFileFoundCallBack &Callback);
// Appends the paths found (the mask's folder followed by the relative path), sorted.
KV_EXPORT void FindFiles(const QString &Mask, QDir::Filters Filters, bool Recursive, QStringList &Files);
// The same below Path for several patterns ("*.cpp", "*.h").
KV_EXPORT void FindFilesEx(const QString &Path, const QStringList &Masks, QDir::Filters Filters, bool Recursive, QStringList &Files);

// Adds and removes permissions of a file (the counterpart of its attributes: removing the
// write permissions makes it read-only). Returns whether it succeeded.
KV_EXPORT bool ModifyFileAttr(const QString &FileName, QFileDevice::Permissions Add, QFileDevice::Permissions Remove);
// The same for several files, resp. for the files that a mask finds; returns how many
// changed successfully.
KV_EXPORT int ModifyFilesAttr(const QStringList &Files, QFileDevice::Permissions Add, QFileDevice::Permissions Remove);
KV_EXPORT int ModifyFilesAttrInFolder(const QString &Mask, bool Recursive, QFileDevice::Permissions Add,
                            QFileDevice::Permissions Remove);

// Writes S as UTF-8, replacing the file only once everything is written. Raises kv::Exception
// (SErrFileWrite) on failure.
KV_EXPORT void SaveStringToFile(const QString &FileName, const QString &S);
// Writes FileName through Write into a new file that replaces the old one only when all of it
// was written, so that a failure keeps the old file. Raises kv::Exception (SErrFileWrite).
KV_EXPORT void SaveFileWith(const QString &FileName, const std::function<void(QIODevice &File)> &Write);

// A relative FileName (or Path) taken from BasePath, cleaned of "." and ".." parts; an
// absolute one only cleaned. ExpandRelativePath ends with "/".
KV_EXPORT QString ExpandRelativeFileName(const QString &BasePath, const QString &FileName);
KV_EXPORT QString ExpandRelativePath(const QString &BasePath, const QString &Path);

// The folders of Files, each once, in order of first appearance, each ending with "/".
KV_EXPORT QStringList ExtractFilePaths(const QStringList &Files);

// The file's extension and Ext compared ignoring case and ignoring points ("a.PAS" and ".pas"
// agree; a name without extension agrees with an empty Ext).
KV_EXPORT bool CheckFileExt(const QString &FileName, const QString &Ext);

// Whether FileName names a package: a shared library ("libfoo.so", "libfoo.so.1.2").
KV_EXPORT bool FileIsPackage(const QString &FileName);

// The folder browser: asks for a folder with Caption as its title, starting at Dir. True when
// the user chose one; Dir then holds it.
KV_EXPORT bool QueryDirectory(const QString &Caption, QString &Dir);
// How QueryDirectory asks; replaceable so that tests never block. An empty hook restores the
// folder dialog, owned by the active form. Returns the previous hook.
using TQueryDirectoryHook = std::function<bool(const QString &Caption, QString &Dir)>;
KV_EXPORT TQueryDirectoryHook SetQueryDirectoryHook(TQueryDirectoryHook Hook);

// The program file's folder, ending with "/".
KV_EXPORT QString AppFolder();

} // namespace kv
