// libFuzzer entry point for the settings store: the input is the settings file. The store reads
// it afresh and every value it holds is read as each kind of value, as a buffer and as a long
// value in both layouts. Nothing may crash, hang or allocate more than the input's size calls for.

#include "persist/ideLib_objstreams.h"
#include "persist/ideSystem_registry.h"
#include "persist/ideSystem_regstream.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace {

// A new folder for every input: QSettings keeps what it read of a file for the whole process
// and reads it again only when its size or time changed, which a quick run can't tell.
QString NextSettingsFile()
{
    static QTemporaryDir dir;
    static int count = 0;
    static bool quiet = (qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}), true);
    Q_UNUSED(quiet);
    QDir(dir.filePath(QString::number(count))).removeRecursively();
    ++count;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(dir.filePath(QString::number(count))));
    return kv::RegistryFileName();
}

void ReadEverything(const QString &Name)
{
    static std::array<char, 70000> buffer;
    kv::ReadFromRegistry(Name, 0);
    kv::ReadFromRegistry(Name, QVariant::fromValue<short>(0));
    kv::ReadFromRegistry(Name, 0.0);
    kv::ReadFromRegistry(Name, 0.0f);
    kv::ReadFromRegistry(Name, false);
    kv::ReadFromRegistry(Name, QString());
    kv::ReadFromRegistry(Name, QDateTime());
    kv::ReadFromRegistry(Name, QDate());
    kv::ReadFromRegistry(Name, QTime());
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
    const QString file = NextSettingsFile();
    QDir().mkpath(QFileInfo(file).absolutePath());
    {
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        out.write(reinterpret_cast<const char *>(Data), qint64(Size));
    }
    // Names relative to the top of the file, so that every key the file holds can be named.
    kv::RegistryKey.clear();
    QStringList names{QStringLiteral("Width"), QStringLiteral("Forms\\Main\\WinPos"), QStringLiteral("a\\b")};
    {
        const QSettings keys(file, QSettings::IniFormat);
        const QStringList all = keys.allKeys();
        for (qsizetype i = 0; i < all.size() && i < 64; ++i)
            names.append(QString(all[i]).replace(u'/', u'\\'));
    }
    for (const QString &name : std::as_const(names)) {
        ReadEverything(name);
        ReadEverything(name.toUpper());
    }
    kv::ReleaseRegistry();
    return 0;
}
