#include "persist/ideSystem_registry.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_optionstorage.h"
#include "platform/kvException.h"

#include <QCoreApplication>
#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QPointer>
#include <QSettings>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QThread>
#include <QTime>
#include <QTimer>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>

namespace kv {

QString RegistryKey = QStringLiteral("Software\\Korvo Company\\Quillon Report\\Version 3.1");
qint32 DefaultRegBlockSize = 8192;
bool UnderWindowsNT = true;

namespace {

HKEY CurrentRoot = HKEY_CURRENT_USER;

constexpr char LongHeaderMark[] = "__Long RegKey__";
constexpr int LongHeaderMarkSize = 15;
constexpr int LongHeaderSize = 36;
constexpr int FallbackBlockSize = 8192;

// The top-level group of a root; none for HKEY_CURRENT_USER.
QString RootGroup(HKEY Key)
{
    switch (Key) {
    case HKEY_CURRENT_USER: return {};
    case HKEY_CLASSES_ROOT: return QStringLiteral("HKEY_CLASSES_ROOT");
    case HKEY_LOCAL_MACHINE: return QStringLiteral("HKEY_LOCAL_MACHINE");
    case HKEY_USERS: return QStringLiteral("HKEY_USERS");
    case HKEY_CURRENT_CONFIG: return QStringLiteral("HKEY_CURRENT_CONFIG");
    default: return QStringLiteral("HKEY_%1").arg(Key, 8, 16, QChar(u'0'));
    }
}

bool IsSeparator(QChar C)
{
    return C == u'\\' || C == u'/';
}

// The key path of a setting and its value name; the key's parts without empty ones, so that
// doubled and trailing separators count once.
struct TRegPath
{
    QStringList key;
    QString value;
};

void AppendParts(QStringList &Parts, QStringView Path)
{
    qsizetype start = 0;
    for (qsizetype i = 0; i <= Path.size(); ++i) {
        if (i == Path.size() || IsSeparator(Path[i])) {
            if (i > start)
                Parts.append(Path.mid(start, i - start).toString());
            start = i + 1;
        }
    }
}

TRegPath SplitName(const QString &Name)
{
    TRegPath path;
    const QString root = RootGroup(CurrentRoot);
    if (!root.isEmpty())
        path.key.append(root);
    AppendParts(path.key, RegistryKey);
    qsizetype last = Name.size() - 1;
    while (last >= 0 && !IsSeparator(Name[last]))
        --last;
    AppendParts(path.key, QStringView(Name).left(std::max<qsizetype>(last, 0)));
    path.value = Name.mid(last + 1);
    return path;
}

QString Folded(const QString &S)
{
    return S.toCaseFolded();
}

QString JoinPath(const QString &Key, const QString &Value)
{
    return Key.isEmpty() ? Value : Key + u'/' + Value;
}

// The file under the user's configuration folder, looked up on first use after a release.
QString &DefaultFileNameCache()
{
    static QString name;
    return name;
}

QString DefaultFileName()
{
    QString &name = DefaultFileNameCache();
    if (name.isEmpty())
        name = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
            + QStringLiteral("/Korvo Company/registry.ini");
    return name;
}

QString WantedFileName()
{
    return StoreOptionsInFile && !OptionsFileName.isEmpty() ? OptionsFileName : DefaultFileName();
}

bool HasTextDamage(const QByteArray &Bytes)
{
    if (Bytes.contains('\0'))
        return true;
    QStringDecoder decoder(QStringDecoder::Utf8);
    (void)QString(decoder.decode(Bytes));
    return decoder.hasError();
}

// Files found damaged, with a digest of their bytes. QSettings reads a file once per process
// and reports its errors only then, so a file read again unchanged is known by its digest.
QHash<QString, size_t> &DamagedFiles()
{
    static QHash<QString, size_t> files;
    return files;
}

QString BackupName(const QString &FileName)
{
    QString name = FileName + QStringLiteral(".damaged");
    for (int i = 1; QFileInfo::exists(name); ++i)
        name = FileName + QStringLiteral(".damaged.%1").arg(i);
    return name;
}

// The one settings object of a file, with case-folded lookups of its keys and values.
class TRegistryStore
{
public:
    explicit TRegistryStore(const QString &FileName) : fileName(FileName)
    {
        const QFileInfo info(FileName);
        QByteArray bytes;
        if (info.exists()) {
            QFile file(FileName);
            if (info.isDir() || !file.open(QIODevice::ReadOnly))
                unreadable = true;
            else
                bytes = file.readAll();
        }
        settings = std::make_unique<QSettings>(FileName, QSettings::IniFormat);
        if (settings->status() == QSettings::AccessError)
            unreadable = true;
        if (unreadable) {
            qWarning("%s", qUtf8Printable(LoadStr(SRegUnreadable).arg(FileName)));
        } else if (const size_t digest = qHash(bytes);
                   settings->status() == QSettings::FormatError || HasTextDamage(bytes)
                   || DamagedFiles().value(FileName, ~digest) == digest) {
            damaged = true;
            DamagedFiles().insert(FileName, digest);
            qWarning("%s", qUtf8Printable(LoadStr(SRegCorrupt).arg(FileName, BackupName(FileName))));
        }
        if (!unreadable)
            IndexKeys();
    }

    ~TRegistryStore() { FlushQuietly(); }

    // The stored spelling of a value; empty when it is missing.
    QString Find(const TRegPath &Path) const
    {
        if (Path.value.isEmpty())
            return {};
        return values.value(Folded(JoinPath(Path.key.join(u'/'), Path.value)));
    }

    bool KeyExists(const QStringList &Key) const { return groups.contains(Folded(Key.join(u'/'))); }

    // The stored spelling of the key, made when missing.
    QString MakeKey(const QStringList &Key)
    {
        QString stored;
        QString folded;
        for (const QString &part : Key) {
            if (!folded.isEmpty()) {
                folded += u'/';
                stored += u'/';
            }
            folded += Folded(part);
            auto it = groups.constFind(folded);
            if (it != groups.constEnd()) {
                stored = *it;
            } else {
                stored += part;
                groups.insert(folded, stored);
            }
        }
        return stored;
    }

    QVariant Read(const TRegPath &Path) const
    {
        const QString stored = Find(Path);
        return stored.isEmpty() ? QVariant() : settings->value(stored);
    }

    void Write(const TRegPath &Path, const QVariant &Value)
    {
        PrepareWrite();
        QString stored = Find(Path);
        if (stored.isEmpty()) {
            stored = JoinPath(MakeKey(Path.key), Path.value);
            values.insert(Folded(stored), stored);
        }
        settings->setValue(stored, Value);
        ScheduleFlush();
    }

    void Remove(const TRegPath &Path)
    {
        const QString stored = Find(Path);
        if (stored.isEmpty())
            return;
        PrepareWrite();
        settings->remove(stored);
        values.remove(Folded(stored));
        ScheduleFlush();
    }

    void Flush()
    {
        if (timer)
            timer->stop();
        if (unreadable || !settings)
            return;
        settings->sync();
        if (settings->status() == QSettings::AccessError)
            throw Exception::Fmt(SErrRegWrite, fileName);
    }

    void FlushQuietly() noexcept
    {
        try {
            Flush();
        } catch (const std::exception &e) {
            qWarning("%s", e.what());
        }
    }

    const QString fileName;

private:
    void IndexKeys()
    {
        const QStringList keys = settings->allKeys();
        for (const QString &key : keys) {
            if (key.isEmpty())
                continue;
            values.insert(Folded(key), key);
            for (qsizetype slash = key.indexOf(u'/'); slash > 0; slash = key.indexOf(u'/', slash + 1)) {
                const QString group = key.left(slash);
                groups.insert(Folded(group), group);
            }
        }
    }

    // A file that could not be read is never overwritten; a damaged one is kept aside and
    // replaced by a clean file that holds everything that could be read from it.
    void PrepareWrite()
    {
        if (unreadable)
            throw Exception::Fmt(SErrRegWrite, fileName);
        if (!damaged) {
            if (!folderMade)
                folderMade = QDir().mkpath(QFileInfo(fileName).absolutePath());
            return;
        }
        const QString backup = BackupName(fileName);
        if (!QFile::copy(fileName, backup))
            throw Exception::Fmt(SErrRegWrite, backup);
        damaged = false;
        QList<std::pair<QString, QVariant>> kept;
        const QStringList keys = settings->allKeys();
        for (const QString &key : keys) {
            if (!key.isEmpty())
                kept.append({key, settings->value(key)});
        }
        settings.reset();
        QFile::remove(fileName);
        settings = std::make_unique<QSettings>(fileName, QSettings::IniFormat);
        for (const auto &[key, value] : std::as_const(kept))
            settings->setValue(key, value);
        DamagedFiles().remove(fileName);
    }

    void ScheduleFlush()
    {
        QCoreApplication *app = QCoreApplication::instance();
        if (!app || QThread::currentThread() != app->thread()) {
            FlushQuietly();
            return;
        }
        if (!timer) {
            timer = std::make_unique<QTimer>();
            timer->setSingleShot(true);
            timer->setInterval(0);
            QObject::connect(timer.get(), &QTimer::timeout, [this] { FlushQuietly(); });
        }
        if (!timer->isActive())
            timer->start();
    }

    std::unique_ptr<QSettings> settings;
    QHash<QString, QString> values; // case-folded path → stored spelling
    QHash<QString, QString> groups;
    std::unique_ptr<QTimer> timer;
    bool unreadable = false;
    bool damaged = false;
    bool folderMade = false;
};

std::unique_ptr<TRegistryStore> &StoreHolder()
{
    static std::unique_ptr<TRegistryStore> holder;
    return holder;
}

void ReleaseAtExit()
{
    ReleaseRegistry();
}

// The store of the file in use, made (or remade for another file) on demand.
TRegistryStore &Store()
{
    std::unique_ptr<TRegistryStore> &holder = StoreHolder();
    const QString fileName = WantedFileName();
    if (holder && holder->fileName != fileName)
        ReleaseRegistry();
    if (!holder) {
        static QPointer<QCoreApplication> hookedApp;
        if (QCoreApplication *app = QCoreApplication::instance(); app && hookedApp != app) {
            hookedApp = app;
            qAddPostRoutine(&ReleaseAtExit);
        }
        holder = std::make_unique<TRegistryStore>(fileName);
    }
    return *holder;
}

bool IsIntegerType(int Type)
{
    return Type == QMetaType::Int || Type == QMetaType::Short;
}

bool IsFloatType(int Type)
{
    return Type == QMetaType::Double || Type == QMetaType::Float;
}

bool IsDateType(int Type)
{
    return Type == QMetaType::QDateTime || Type == QMetaType::QDate || Type == QMetaType::QTime;
}

bool IsSupportedType(const QVariant &Value)
{
    const int type = Value.metaType().id();
    return IsIntegerType(type) || IsFloatType(type) || IsDateType(type) || type == QMetaType::Bool
        || type == QMetaType::QString;
}

QString StoredText(const QVariant &Value)
{
    switch (Value.metaType().id()) {
    case QMetaType::Bool:
        return Value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    case QMetaType::Float:
        return QString::number(Value.toFloat(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::Double:
        return QString::number(Value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::QDateTime:
        return Value.toDateTime().toString(Qt::ISODateWithMs);
    case QMetaType::QDate:
        return Value.toDate().toString(Qt::ISODate);
    case QMetaType::QTime:
        return Value.toTime().toString(Qt::ISODateWithMs);
    default:
        return Value.toString();
    }
}

QString TextOf(const QVariant &Stored)
{
    if (Stored.metaType().id() == QMetaType::QStringList)
        return Stored.toStringList().join(u',');
    return Stored.toString();
}

QDateTime DateTimeFromText(const QString &Text)
{
    QDateTime result = QDateTime::fromString(Text, Qt::ISODateWithMs);
    if (!result.isValid()) {
        const QDate date = QDate::fromString(Text, Qt::ISODate);
        if (date.isValid())
            result = date.startOfDay();
    }
    return result;
}

// Stored converted to Default's type; Default when it does not convert.
QVariant Converted(const QVariant &Stored, const QVariant &Default)
{
    if (Stored.metaType().id() == QMetaType::QByteArray)
        return Default;
    const QString text = TextOf(Stored).trimmed();
    bool ok = false;
    switch (Default.metaType().id()) {
    case QMetaType::QString:
        return TextOf(Stored);
    case QMetaType::Int: {
        const int n = text.toInt(&ok);
        return ok ? QVariant(n) : Default;
    }
    case QMetaType::Short: {
        const short n = text.toShort(&ok);
        return ok ? QVariant::fromValue(n) : Default;
    }
    case QMetaType::Bool: {
        const int n = text.toInt(&ok);
        if (ok)
            return QVariant(n != 0);
        if (text.compare(u"true", Qt::CaseInsensitive) == 0 || text.compare(u"false", Qt::CaseInsensitive) == 0)
            return QVariant(text.compare(u"true", Qt::CaseInsensitive) == 0);
        return Default;
    }
    case QMetaType::Double: {
        const double n = text.toDouble(&ok);
        return ok ? QVariant(n) : Default;
    }
    case QMetaType::Float: {
        const float n = text.toFloat(&ok);
        return ok ? QVariant(n) : Default;
    }
    case QMetaType::QDateTime: {
        const QDateTime value = DateTimeFromText(text);
        return value.isValid() ? QVariant(value) : Default;
    }
    case QMetaType::QDate: {
        const QDateTime value = DateTimeFromText(text);
        return value.isValid() ? QVariant(value.date()) : Default;
    }
    case QMetaType::QTime: {
        QTime value = QTime::fromString(text, Qt::ISODateWithMs);
        if (!value.isValid())
            value = DateTimeFromText(text).time();
        return value.isValid() ? QVariant(value) : Default;
    }
    default:
        return Default;
    }
}

QByteArray BytesOf(const QVariant &Stored)
{
    if (!Stored.isValid())
        return {};
    if (Stored.metaType().id() == QMetaType::QByteArray)
        return Stored.toByteArray();
    return TextOf(Stored).toUtf8();
}

QByteArray StoredBytes(const QString &Name)
{
    return Name.isEmpty() ? QByteArray() : BytesOf(Store().Read(SplitName(Name)));
}

QString ChunkName(const QString &Name, qint64 Index)
{
    return Name + QStringLiteral("__") + QString::number(Index);
}

// The header of a chunked long value: the total and the chunk size.
struct TLongHeader
{
    qint32 total = 0;
    qint32 chunk = 0;
};

// A number of the header: a malformed one counts as 0.
qint32 HeaderNumber(const QByteArray &Digits)
{
    bool ok = false;
    const qint64 n = Digits.trimmed().toLongLong(&ok);
    return ok && n >= std::numeric_limits<qint32>::min() && n <= std::numeric_limits<qint32>::max() ? qint32(n) : 0;
}

bool ReadLongHeader(const QString &Name, TLongHeader &Header)
{
    // Looked for in both layouts, so that switching them loses nothing.
    const QByteArray bytes = StoredBytes(Name);
    if (bytes.size() != LongHeaderSize || !bytes.startsWith(LongHeaderMark))
        return false;
    Header.total = HeaderNumber(bytes.mid(LongHeaderMarkSize, 10));
    Header.chunk = HeaderNumber(bytes.mid(LongHeaderMarkSize + 11, 10));
    return Header.chunk > 0 && Header.total >= 0;
}

void RemoveChunks(const QString &Name, qint64 From)
{
    for (qint64 i = From; RegValueExists(ChunkName(Name, i)); ++i)
        DeleteRegValue(ChunkName(Name, i));
}

} // namespace

void SetRootRegKey(HKEY Key)
{
    CurrentRoot = Key;
}

HKEY RootRegKey()
{
    return CurrentRoot;
}

void WriteToRegistry(const QString &Name, const QVariant &Value)
{
    if (Name.isEmpty())
        return;
    const TRegPath path = SplitName(Name);
    TRegistryStore &store = Store();
    store.MakeKey(path.key);
    if (!IsSupportedType(Value))
        throw Exception(LoadStr(SErrUnknRegType));
    if (!path.value.isEmpty())
        store.Write(path, StoredText(Value));
}

QVariant ReadFromRegistry(const QString &Name, const QVariant &Default)
{
    if (!IsSupportedType(Default))
        throw Exception(LoadStr(SErrUnknRegType));
    if (Name.isEmpty())
        return Default;
    const QVariant stored = Store().Read(SplitName(Name));
    return stored.isValid() ? Converted(stored, Default) : Default;
}

bool RegValueExists(const QString &Name)
{
    return !Name.isEmpty() && !Store().Find(SplitName(Name)).isEmpty();
}

bool RegKeyExists(const QString &Key)
{
    TRegPath path = SplitName(Key);
    if (!path.value.isEmpty())
        path.key.append(path.value);
    return Store().KeyExists(path.key);
}

void DeleteRegValue(const QString &Name)
{
    if (!Name.isEmpty())
        Store().Remove(SplitName(Name));
}

void WriteStringsToRegistry(const QString &Name, const QStringList &Strings)
{
    QString text;
    for (const QString &line : Strings)
        text += line + u'\n';
    WriteToRegistry(Name, text);
}

void ReadStringsFromRegistry(const QString &Name, QStringList &Strings)
{
    if (!RegValueExists(Name))
        return;
    QString text = ReadFromRegistry(Name, QString()).toString();
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    if (text.isEmpty()) {
        Strings.clear();
        return;
    }
    if (text.endsWith(u'\n'))
        text.chop(1);
    Strings = text.split(u'\n');
}

void WriteBufToRegistry(const QString &Name, const void *Buffer, qint32 Size)
{
    if (Name.isEmpty() || Size < 0 || (Size > 0 && !Buffer))
        return;
    const TRegPath path = SplitName(Name);
    if (path.key.isEmpty() || path.value.isEmpty())
        return;
    Store().Write(path, QByteArray(static_cast<const char *>(Buffer), Size));
}

void WriteBufToRegistry(const QString &Name, const QByteArray &Data)
{
    WriteBufToRegistry(Name, Data.constData(), qint32(std::min<qsizetype>(Data.size(), std::numeric_limits<qint32>::max())));
}

qint32 ReadBufFromRegistry(const QString &Name, void *Buffer, qint32 Size)
{
    if (!Buffer || Size <= 0)
        return 0;
    const QByteArray bytes = StoredBytes(Name);
    const qint32 count = qint32(std::min<qsizetype>(bytes.size(), Size));
    if (count > 0)
        std::memcpy(Buffer, bytes.constData(), size_t(count));
    return count;
}

qint32 GetRegBufSize(const QString &Name)
{
    if (!RegValueExists(Name))
        return -1;
    return qint32(std::min<qsizetype>(StoredBytes(Name).size(), std::numeric_limits<qint32>::max()));
}

void WriteLongBufToRegistry(const QString &Name, const void *Buffer, qint32 Size)
{
    if (Name.isEmpty() || Size < 0 || (Size > 0 && !Buffer))
        return;
    if (UnderWindowsNT) {
        WriteBufToRegistry(Name, Buffer, Size);
        RemoveChunks(Name, 0);
        return;
    }
    const qint32 chunk = DefaultRegBlockSize > 0 ? DefaultRegBlockSize : FallbackBlockSize;
    const QByteArray header = QByteArray(LongHeaderMark)
        + QStringLiteral("%1 %2").arg(Size, 10, 10, QChar(u'0')).arg(chunk, 10, 10, QChar(u'0')).toLatin1();
    WriteBufToRegistry(Name, header);
    const char *data = static_cast<const char *>(Buffer);
    qint64 index = 0;
    for (qint64 offset = 0; offset < Size; offset += chunk, ++index)
        WriteBufToRegistry(ChunkName(Name, index), data + offset, qint32(std::min<qint64>(chunk, Size - offset)));
    RemoveChunks(Name, index);
}

void WriteLongBufToRegistry(const QString &Name, const QByteArray &Data)
{
    WriteLongBufToRegistry(Name, Data.constData(), qint32(std::min<qsizetype>(Data.size(), std::numeric_limits<qint32>::max())));
}

qint32 ReadLongBufFromRegistry(const QString &Name, void *Buffer, qint32 Size)
{
    TLongHeader header;
    if (!ReadLongHeader(Name, header))
        return ReadBufFromRegistry(Name, Buffer, Size);
    if (!Buffer || Size <= 0)
        return 0;
    char *data = static_cast<char *>(Buffer);
    qint32 result = 0;
    qint32 toRead = std::min(Size, header.total);
    for (qint64 index = 0; toRead > 0; ++index) {
        // Chunks are placed one after the other, never past the caller's buffer.
        const qint32 wanted = std::min(header.chunk, toRead);
        const qint32 count = ReadBufFromRegistry(ChunkName(Name, index), data + result, wanted);
        result += count;
        toRead -= count;
        if (count < wanted)
            break;
    }
    return result;
}

QByteArray ReadLongBufFromRegistry(const QString &Name)
{
    TLongHeader header;
    if (!ReadLongHeader(Name, header))
        return StoredBytes(Name);
    QByteArray result;
    for (qint64 index = 0; result.size() < header.total; ++index) {
        const qsizetype wanted = std::min<qsizetype>(header.chunk, header.total - result.size());
        const QByteArray chunk = StoredBytes(ChunkName(Name, index)).left(wanted);
        result += chunk;
        if (chunk.size() < wanted)
            break;
    }
    return result;
}

qint32 GetLongRegBufSize(const QString &Name)
{
    TLongHeader header;
    return ReadLongHeader(Name, header) ? header.total : GetRegBufSize(Name);
}

QString GetKorvoRegKey(const QString &S)
{
    return QStringLiteral("Software\\Korvo Company\\") + S;
}

QString RegistryFileName()
{
    return WantedFileName();
}

void FlushRegistry()
{
    if (std::unique_ptr<TRegistryStore> &holder = StoreHolder())
        holder->Flush();
}

void ReleaseRegistry()
{
    // The holder is emptied first: a warning shown while flushing must not find it.
    std::unique_ptr<TRegistryStore> store = std::move(StoreHolder());
    store.reset();
    DefaultFileNameCache().clear();
}

} // namespace kv
