#include "foundation/ideCommon_system.h"

#include "foundation/ideConsts.h"
#include "foundation/ideLib_files.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QStandardPaths>
#include <QUrl>

#include <cstdio>
#include <link.h>

namespace kv {

TWriteLogEvent WriteLogEvent;

namespace {

QString DroppedItem(const QString &Name, bool PathOnly)
{
    if (!PathOnly)
        return Name;
    const QFileInfo info(Name);
    if (!info.isFile())
        return Name;
    QString folder = info.absolutePath();
    if (!folder.endsWith(u'/'))
        folder.append(u'/');
    return folder;
}

int CollectModule(dl_phdr_info *info, size_t, void *data)
{
    auto *modules = static_cast<QList<TModuleInfo> *>(data);
    quintptr handle = 0;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        if (info->dlpi_phdr[i].p_type == PT_LOAD) {
            handle = quintptr(info->dlpi_addr + info->dlpi_phdr[i].p_vaddr);
            break;
        }
    }
    QString fileName = QString::fromLocal8Bit(info->dlpi_name);
    // The program itself comes first, without a name.
    if (fileName.isEmpty() && modules->isEmpty())
        fileName = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
    if (handle != 0 && QFileInfo::exists(fileName))
        modules->append(TModuleInfo{handle, fileName});
    return 0;
}

} // namespace

bool JumpToURL(const QString &URL)
{
    return QDesktopServices::openUrl(QUrl::fromUserInput(URL, QDir::currentPath()));
}

QString DropFiles(const QMimeData *Data, bool PathOnly, bool Multiple, const QString &Delimiter)
{
    if (!Data || !Data->hasUrls())
        return {};
    QStringList items;
    const QList<QUrl> urls = Data->urls();
    for (const QUrl &url : urls) {
        if (!url.isLocalFile())
            continue;
        items.append(DroppedItem(url.toLocalFile(), PathOnly));
        if (!Multiple)
            break;
    }
    return items.join(Delimiter);
}

void WriteToLog(const QVariant &Value)
{
    if (WriteLogEvent)
        WriteLogEvent(Value);
}

void MapLogFileToWriteln()
{
    WriteLogEvent = [](const QVariant &Value) {
        const QByteArray line = Value.toString().toLocal8Bit() + '\n';
        std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
        std::fflush(stdout);
    };
}

QString GetLogDataFileName()
{
    return GetLogDataFileName(AppFolder());
}

QString GetLogDataFileName(const QString &ProgramFolder)
{
    QString folder = ProgramFolder;
    if (!folder.endsWith(u'/'))
        folder.append(u'/');
    folder.append(QStringLiteral("LOGS/"));
    if (!QDir().mkpath(folder) || !QFileInfo(folder).isWritable()) {
        folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + QStringLiteral("/LOGS/");
        QDir().mkpath(folder);
    }
    return folder + GUIDToString(CreateNewGUID()) + QStringLiteral(".log");
}

QString GUIDToString(const QUuid &GUID)
{
    return GUID.toString(QUuid::WithBraces).toUpper();
}

QUuid StringToGUID(const QString &S)
{
    const QString text = S.trimmed();
    const QUuid guid = QUuid::fromString(text);
    // fromString gives the null GUID for bad text; the null GUID's own text is good text.
    if (guid.isNull() && text != QUuid().toString(QUuid::WithBraces) && text != QUuid().toString(QUuid::WithoutBraces))
        throw Exception(LoadStr(SInvalidGUID).arg(S));
    return guid;
}

QUuid CreateNewGUID()
{
    return QUuid::createUuid();
}

Qt::KeyboardModifiers KeysToShift()
{
    return QGuiApplication::queryKeyboardModifiers();
}

bool ShiftIsPressed()
{
    return KeysToShift().testFlag(Qt::ShiftModifier);
}

bool IsAltKeyDown()
{
    return KeysToShift().testFlag(Qt::AltModifier);
}

QList<TModuleInfo> LoadedModules()
{
    QList<TModuleInfo> modules;
    dl_iterate_phdr(&CollectModule, &modules);
    return modules;
}

void ModulesToList(QList<quintptr> &List)
{
    List.clear();
    for (const TModuleInfo &module : LoadedModules())
        List.append(module.Handle);
}

void ResModulesToList(QList<quintptr> &List)
{
    ModulesToList(List);
}

void GetLoadedPackagesPaths(QStringList &Strings)
{
    Strings.clear();
    for (const TModuleInfo &module : LoadedModules()) {
        if (FileIsPackage(module.FileName))
            Strings.append(module.FileName);
    }
}

void Error(const QString &Msg)
{
    throw Exception(Msg);
}

} // namespace kv
