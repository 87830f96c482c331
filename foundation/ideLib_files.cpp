#include "foundation/ideLib_files.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"
#include "platform/kvScreen.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>

#include <algorithm>
#include <utility>

namespace kv {

namespace {

// Where the name part of a path begins.
qsizetype NameStart(const QString &Path)
{
    return Path.lastIndexOf(u'/') + 1;
}

// Where the extension's point is in the name part, or -1. A point that begins the name (a
// hidden file such as ".profile") starts no extension.
qsizetype ExtensionStart(const QString &Path)
{
    const qsizetype name = NameStart(Path);
    const qsizetype point = Path.lastIndexOf(u'.');
    return point > name ? point : -1;
}

// A mask split into its folder and its name pattern.
std::pair<QString, QString> SplitMask(const QString &Mask)
{
    const qsizetype name = NameStart(Mask);
    QString folder = Mask.left(name);
    QString pattern = Mask.mid(name);
    if (folder.isEmpty())
        folder = QStringLiteral(".");
    if (pattern.isEmpty())
        pattern = QStringLiteral("*");
    return {folder, pattern};
}

bool Walk(const QString &Folder, const QStringList &Patterns, QDir::Filters Filters, bool Recursive,
          const TFileFoundCallBack &Callback)
{
    QDirIterator it(Folder, Patterns, Filters | QDir::NoDotAndDotDot,
                    Recursive ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags);
    while (it.hasNext()) {
        const QString path = it.next();
        bool goOn = true;
        Callback(path, it.fileInfo(), goOn);
        if (!goOn)
            return false;
    }
    return true;
}

void Collect(const QString &Folder, const QStringList &Patterns, QDir::Filters Filters, bool Recursive, QStringList &Files)
{
    QStringList found;
    Walk(Folder, Patterns, Filters, Recursive, [&found](const QString &path, const QFileInfo &, bool &) {
        found.append(path);
    });
    std::sort(found.begin(), found.end());
    Files += found;
}

QString WithSlash(QString Path)
{
    if (!Path.endsWith(u'/'))
        Path.append(u'/');
    return Path;
}

TQueryDirectoryHook &QueryDirectoryHook()
{
    static TQueryDirectoryHook hook;
    return hook;
}

} // namespace

QString FileBakName(const QString &FileName)
{
    const qsizetype point = ExtensionStart(FileName);
    if (point < 0)
        return FileName + QStringLiteral(".~");
    const QString extension = QString(QStringLiteral(".~") + QStringView(FileName).mid(point + 1)).left(4);
    return FileName.left(point) + extension;
}

bool RenameToBak(const QString &FileName)
{
    if (!QFileInfo::exists(FileName))
        return false;
    const QString backup = FileBakName(FileName);
    QFile old(backup);
    if (old.exists() && !old.remove())
        throw Exception(LoadStr(SErrFileDelete).arg(backup, old.errorString()));
    QFile file(FileName);
    if (!file.rename(backup))
        throw Exception(LoadStr(SErrFileRename).arg(FileName, backup, file.errorString()));
    return true;
}

QString ExtractOnlyName(const QString &FileName)
{
    const qsizetype name = NameStart(FileName);
    const qsizetype point = ExtensionStart(FileName);
    return FileName.mid(name, (point < 0 ? FileName.size() : point) - name);
}

QString ChangeFileName(const QString &FileName, const QString &NewName)
{
    return FileName.left(NameStart(FileName)) + NewName;
}

bool ForEachFile(const QString &Mask, QDir::Filters Filters, bool Recursive, const TFileFoundCallBack &Callback)
{
    const auto [folder, pattern] = SplitMask(Mask);
    return Walk(folder, {pattern}, Filters, Recursive, Callback);
}

void FindFiles(const QString &Mask, QDir::Filters Filters, bool Recursive, QStringList &Files)
{
    const auto [folder, pattern] = SplitMask(Mask);
    Collect(folder, {pattern}, Filters, Recursive, Files);
}

void FindFilesEx(const QString &Path, const QStringList &Masks, QDir::Filters Filters, bool Recursive, QStringList &Files)
{
    Collect(Path.isEmpty() ? QStringLiteral(".") : Path, Masks.isEmpty() ? QStringList{QStringLiteral("*")} : Masks,
            Filters, Recursive, Files);
}

bool ModifyFileAttr(const QString &FileName, QFileDevice::Permissions Add, QFileDevice::Permissions Remove)
{
    QFile file(FileName);
    if (!file.exists())
        return false;
    return file.setPermissions((file.permissions() | Add) & ~Remove);
}

int ModifyFilesAttr(const QStringList &Files, QFileDevice::Permissions Add, QFileDevice::Permissions Remove)
{
    return int(std::count_if(Files.cbegin(), Files.cend(),
                             [Add, Remove](const QString &name) { return ModifyFileAttr(name, Add, Remove); }));
}

int ModifyFilesAttrInFolder(const QString &Mask, bool Recursive, QFileDevice::Permissions Add,
                            QFileDevice::Permissions Remove)
{
    QStringList files;
    FindFiles(Mask, QDir::Files | QDir::Hidden, Recursive, files);
    return ModifyFilesAttr(files, Add, Remove);
}

void SaveFileWith(const QString &FileName, const std::function<void(QIODevice &File)> &Write)
{
    QSaveFile file(FileName);
    if (!file.open(QIODevice::WriteOnly))
        throw Exception(LoadStr(SErrFileWrite).arg(FileName, file.errorString()));
    Write(file);
    if (file.error() != QFileDevice::NoError || !file.commit())
        throw Exception(LoadStr(SErrFileWrite).arg(FileName, file.errorString()));
}

void SaveStringToFile(const QString &FileName, const QString &S)
{
    SaveFileWith(FileName, [&S](QIODevice &File) { File.write(S.toUtf8()); });
}

QString ExpandRelativeFileName(const QString &BasePath, const QString &FileName)
{
    if (QDir::isAbsolutePath(FileName))
        return QDir::cleanPath(FileName);
    return QDir::cleanPath(QDir(BasePath).absoluteFilePath(FileName));
}

QString ExpandRelativePath(const QString &BasePath, const QString &Path)
{
    return WithSlash(ExpandRelativeFileName(BasePath, Path));
}

QStringList ExtractFilePaths(const QStringList &Files)
{
    QStringList folders;
    QSet<QString> seen;
    for (const QString &file : Files) {
        const QString folder = file.left(NameStart(file));
        const QString key = folder.isEmpty() ? QStringLiteral("./") : folder;
        if (!seen.contains(key)) {
            seen.insert(key);
            folders.append(key);
        }
    }
    return folders;
}

bool CheckFileExt(const QString &FileName, const QString &Ext)
{
    const qsizetype point = ExtensionStart(FileName);
    const QStringView extension = point < 0 ? QStringView() : QStringView(FileName).mid(point + 1);
    QStringView wanted(Ext);
    while (wanted.startsWith(u'.'))
        wanted = wanted.mid(1);
    return extension.compare(wanted, Qt::CaseInsensitive) == 0;
}

bool FileIsPackage(const QString &FileName)
{
    const QStringView name = QStringView(FileName).mid(NameStart(FileName));
    const qsizetype so = name.lastIndexOf(u".so");
    if (so <= 0)
        return false;
    // Whatever follows ".so" is a version: points and digits only, starting with a point.
    const QStringView version = name.mid(so + 3);
    if (version.isEmpty())
        return true;
    return version.front() == u'.'
           && std::all_of(version.begin(), version.end(), [](QChar c) { return c == u'.' || c.isDigit(); });
}

bool QueryDirectory(const QString &Caption, QString &Dir)
{
    if (const TQueryDirectoryHook &hook = QueryDirectoryHook())
        return hook(Caption, Dir);
    QWidget *owner = Screen().ActiveForm();
    if (!owner)
        owner = Screen().MainForm();
    const QString chosen = QFileDialog::getExistingDirectory(owner, Caption, Dir);
    if (chosen.isEmpty())
        return false;
    Dir = chosen;
    return true;
}

TQueryDirectoryHook SetQueryDirectoryHook(TQueryDirectoryHook Hook)
{
    return std::exchange(QueryDirectoryHook(), std::move(Hook));
}

QString AppFolder()
{
    return WithSlash(QCoreApplication::applicationDirPath());
}

} // namespace kv
