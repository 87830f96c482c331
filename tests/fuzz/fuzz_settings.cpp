// libFuzzer entry point for the settings store: the input is the settings file. The store reads
// it afresh and every value it holds is read as each kind of value, as a buffer and as a long
// value in both layouts. Nothing may crash, hang or allocate more than the input's size calls for.

#include "persist/ideLib_objstreams.h"
#include "persist/ideSystem_registry.h"
#include "persist/ideSystem_regstream.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <array>
#include <cstddef>
#include <cstdint>

namespace {

// The input as the settings file of a new folder: QSettings keeps what it read of a file for the
// whole process and reads it again only when its size or time changed, which a quick run can't tell.
bool WriteSettingsFile(const uint8_t *Data, size_t Size)
{
    static QTemporaryDir dir;
    static int count = 0;
    [[maybe_unused]] static const bool quiet =
        (qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}), true);
    QDir(dir.filePath(QString::number(count))).removeRecursively();
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(dir.filePath(QString::number(++count))));
    QFile out(kv::RegistryFileName());
    if (!QDir().mkpath(QFileInfo(out).absolutePath()) || !out.open(QIODevice::WriteOnly))
        return false;
    out.write(reinterpret_cast<const char *>(Data), qint64(Size));
    return true;
}

void ReadEverything(const QString &Name)
{
    static std::array<char, 70000> buffer;
    // A default of every type the store reads.
    static const QVariantList defaults{0, QVariant::fromValue<short>(0), 0.0, 0.0f, false, QString(),
                                       QDateTime(), QDate(), QTime()};
    for (const QVariant &fallback : defaults)
        kv::ReadFromRegistry(Name, fallback);
    QStringList lines;
    kv::ReadStringsFromRegistry(Name, lines);
    kv::GetRegBufSize(Name);
    kv::ReadBufFromRegistry(Name, buffer.data(), 44);
    for (bool nt : {true, false}) {
        kv::UnderWindowsNT = nt;
        kv::GetLongRegBufSize(Name);
        kv::ReadLongBufFromRegistry(Name, buffer.data(), qint32(buffer.size()));
        kv::ReadLongBufFromRegistry(Name);
        kv::TRegistryStream stream(Name, kv::fmOpenRead);
        stream.readAll();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *Data, size_t Size)
{
    kv::ReleaseRegistry();
    if (!WriteSettingsFile(Data, Size))
        return 0;
    // Names relative to the top of the file, so that every key the file holds can be named.
    kv::RegistryKey.clear();
    QStringList names{QStringLiteral("Width"), QStringLiteral("Forms\\Main\\WinPos"), QStringLiteral("a\\b")};
    for (const QString &key : QSettings(kv::RegistryFileName(), QSettings::IniFormat).allKeys().mid(0, 64))
        names.append(QString(key).replace(u'/', u'\\'));
    for (const QString &name : std::as_const(names)) {
        ReadEverything(name);
        ReadEverything(name.toUpper());
    }
    kv::ReleaseRegistry();
    return 0;
}
