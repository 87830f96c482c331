#include "persist/ideSystem_registry.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem.h"
#include "foundation/ideSystem_optionext.h"
#include "foundation/ideSystem_optionstorage.h"
#include "persist/ideCommon_winpos.h"
#include "persist/ideLib_objstreams.h"
#include "persist/ideSystem_regprops.h"
#include "persist/ideSystem_regstream.h"
#include "platform/kvCollection.h"
#include "platform/kvColor.h"
#include "platform/kvStreamDefaults.h"
#include "tests/testsupport.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <QtEndian>

#include <array>

using namespace kv;
using kv::test::ErrorOf;
using namespace Qt::StringLiterals;

namespace probe {

class TNamedItem : public TCollectionItem
{
    Q_OBJECT
    Q_PROPERTY(QString Caption MEMBER Caption)
public:
    Q_INVOKABLE explicit TNamedItem(QObject *parent = nullptr) : TCollectionItem(parent) {}
    QString Caption;
};

// Options with a sub-object (a timer), a collection and a reference to another object; Values lists
// what is stored, to compare at once.
class TProbeOptions : public TOptionExt
{
    Q_OBJECT
    Q_PROPERTY(int Width MEMBER Width)
    Q_PROPERTY(QString Caption MEMBER Caption)
    Q_PROPERTY(TAlign Align MEMBER Align)
    Q_PROPERTY(kv::TColor Color MEMBER Color)
    Q_PROPERTY(QStringList Recent MEMBER Recent)
    Q_PROPERTY(QByteArray State MEMBER State)
    Q_PROPERTY(QTimer *Timer READ Timer)
    Q_PROPERTY(int Scratch MEMBER Scratch STORED false)
    Q_PROPERTY(kv::TCollection *Items MEMBER Items)
    Q_PROPERTY(QObject *Buddy MEMBER Buddy)

public:
    enum TAlign { alNone, alTop, alClient };
    Q_ENUM(TAlign)
    Q_INVOKABLE explicit TProbeOptions(QObject *parent = nullptr) : TOptionExt(parent) {}
    QTimer *Timer() { return &m_timer; }
    QVariantList Values() const
    {
        return {Width, Caption, Align, Color, Recent, State, Scratch, Items->Count(), m_timer.interval()};
    }

    int Width = 10;
    QString Caption = u"initial"_s;
    TAlign Align = alNone;
    TColor Color = clBtnFace;
    QStringList Recent;
    QByteArray State;
    int Scratch = 0;
    QTimer m_timer{this};
    TCollection *Items = new TCollection(&TNamedItem::staticMetaObject, this, u"Items"_s);
    QObject *Buddy = nullptr;
};

QByteArray FileBytes(const QString &Name)
{
    QFile file(Name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray LongHeader(const char *Total, const char *Chunk)
{
    return QByteArray("__Long RegKey__") + Total + ' ' + Chunk;
}

// A window-placement record: length, flags, show command, four -1s, the rectangle's edges.
QByteArray Placement(qint32 Length, QRect Rect, int Size = 44)
{
    const std::array<qint32, 11> fields{Length, 0, 1, -1, -1, -1, -1, Rect.x(), Rect.y(), Rect.x() + Rect.width(), Rect.y() + Rect.height()};
    QByteArray bytes(44, '\0');
    for (size_t i = 0; i < fields.size(); ++i)
        qToLittleEndian<qint32>(fields[i], bytes.data() + 4 * i);
    bytes.resize(Size);
    return bytes;
}

} // namespace probe

using namespace probe;

class tst_Registry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_dir.path()));
        QCOMPARE(RegistryFileName(), m_dir.filePath(u"Korvo Company/registry.ini"_s));
    }

    void cleanupTestCase() { FinalizeStreamDefaults(); }

    void init()
    {
        ReleaseRegistry();
        QFile::remove(RegistryFileName());
        RegistryKey = u"Software\\Korvo Company\\Quillon Report\\Version 3.1"_s;
        UnderWindowsNT = true;
        StoreOptionsInFile = false;
    }

    void cleanup() { ReleaseRegistry(); }

    void typedValues_data()
    {
        QTest::addColumn<QVariant>("written"); // invalid: nothing written
        QTest::addColumn<QVariant>("fallback");
        QTest::addColumn<QVariant>("expected");
        const QDateTime moment(QDate(2024, 2, 29), QTime(13, 45, 7, 250));
        const auto row = [](const char *Name, QVariant Written, QVariant Fallback, QVariant Expected) {
            QTest::newRow(Name) << Written << Fallback << Expected;
        };
        row("int", -42, 0, -42);
        row("short", QVariant::fromValue<short>(-7), QVariant::fromValue<short>(1), QVariant::fromValue<short>(-7));
        row("double", 0.1, 2.0, 0.1);
        row("float", 1.25f, 0.0f, 1.25f);
        row("bool", true, false, true);
        row("text", u"@x, \"y\"\n;z"_s, u""_s, u"@x, \"y\"\n;z"_s);
        row("date time", moment, QDateTime(), moment);
        row("integer as text", 42, u"x"_s, u"42"_s);
        row("no number", u"abc"_s, 9, 9);
        row("past short", 70000, QVariant::fromValue<short>(3), QVariant::fromValue<short>(3));
        row("missing", QVariant(), QVariant::fromValue<short>(4), QVariant::fromValue<short>(4));
    }

    // Read back at once and from the file by a new settings object.
    void typedValues()
    {
        QFETCH(QVariant, written);
        QFETCH(QVariant, fallback);
        QFETCH(QVariant, expected);
        if (written.isValid())
            WriteToRegistry(u"Values\\Item"_s, written);
        QCOMPARE(RegValueExists(u"values\\ITEM"_s), written.isValid());
        for (int pass = 0; pass < 2; ++pass, ReleaseRegistry()) {
            const QVariant read = ReadFromRegistry(u"Values\\Item"_s, fallback);
            QCOMPARE((std::pair{read.metaType(), read}), (std::pair{expected.metaType(), expected}));
        }
    }

    // The key is made, no value is written, and reading with such a default refuses too.
    void refusedTypes()
    {
        const QString text = u"This type isn't supported by WriteToRegistry"_s;
        for (const QVariant &value : {QVariant::fromValue<uchar>(1), QVariant(QByteArray("x")), QVariant::fromValue<qint64>(1), QVariant()}) {
            QCOMPARE(ErrorOf([&] { WriteToRegistry(u"Refused\\Value"_s, value); }), text);
            QCOMPARE(ErrorOf([&] { ReadFromRegistry(u"Refused\\Value"_s, value); }), text);
        }
        QVERIFY(RegKeyExists(u"Refused"_s) && !RegValueExists(u"Refused\\Value"_s));
    }

    // Names ignore case and keep their first spelling; separators count once wherever they
    // stand; roots other than the user's are groups of their own.
    void namesAndSeparators()
    {
        RegistryKey = u"Software\\Korvo Company\\Test\\"_s;
        WriteToRegistry(u"Options\\Layout\\Width"_s, 1);
        WriteToRegistry(u"OPTIONS\\\\layout/WIDTH"_s, 2);
        WriteToRegistry(u"\\options\\Layout\\Height"_s, 3);
        WriteToRegistry(u"Options\\"_s, 4); // no value name: nothing
        SetRootRegKey(HKEY_LOCAL_MACHINE);
        WriteToRegistry(u"Options\\Layout\\Width"_s, 6);
        SetRootRegKey(HKEY_CURRENT_USER);
        QCOMPARE(ReadFromRegistry(u"options\\LAYOUT\\width"_s, 0), QVariant(2));
        FlushRegistry();
        QCOMPARE(QSettings(RegistryFileName(), QSettings::IniFormat).allKeys(),
                 (QStringList{u"HKEY_LOCAL_MACHINE/Software/Korvo Company/Test/Options/Layout/Width"_s,
                              u"Software/Korvo Company/Test/Options/Layout/Height"_s, u"Software/Korvo Company/Test/Options/Layout/Width"_s}));
    }

    void longValues_data()
    {
        QTest::addColumn<bool>("nt");
        QTest::addColumn<int>("size");
        QTest::addColumn<QList<int>>("chunks"); // the chunked layout's chunk sizes
        QTest::newRow("one value") << true << 20000 << QList<int>();
        QTest::newRow("chunked") << false << 20000 << QList<int>{8192, 8192, 3616};
        QTest::newRow("chunked, empty") << false << 0 << QList<int>();
    }

    // Each layout replaces what a longer value left, and either reads what the other wrote.
    void longValues()
    {
        QFETCH(bool, nt);
        QFETCH(int, size);
        QFETCH(QList<int>, chunks);
        QByteArray data(size, '\0');
        for (int i = 0; i < size; ++i)
            data[i] = char(i * 7 % 251);
        UnderWindowsNT = false;
        WriteLongBufToRegistry(u"Long\\Data"_s, QByteArray(40000, 'x'));
        UnderWindowsNT = nt;
        WriteLongBufToRegistry(u"Long\\Data"_s, data);
        ReleaseRegistry();
        QByteArray stored(40, '\0');
        stored.resize(ReadBufFromRegistry(u"Long\\Data"_s, stored.data(), 40));
        QCOMPARE(stored, nt ? data.left(40) : LongHeader(qPrintable(u"%1"_s.arg(size, 10, 10, QChar(u'0'))), "0000008192"));
        for (int i = 0; i <= chunks.size(); ++i)
            QCOMPARE(GetRegBufSize(u"Long\\Data__"_s + QString::number(i)), i < chunks.size() ? chunks[i] : -1);
        QCOMPARE(GetLongRegBufSize(u"Long\\Data"_s), size);
        QByteArray read(size + 8, '?');
        QCOMPARE(ReadLongBufFromRegistry(u"Long\\Data"_s, read.data(), qint32(read.size())), size);
        QCOMPARE(read.left(size), data);
        UnderWindowsNT = !nt;
        QCOMPARE(ReadLongBufFromRegistry(u"Long\\Data"_s), data);
    }

    void longHeaders_data()
    {
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QByteArrayList>("chunks"); // a null one is missing
        QTest::addColumn<int>("size");
        QTest::addColumn<QByteArray>("expected"); // what a read without a limit gives
        const QByteArray ten = LongHeader("0000000010", "0000000004");
        const QByteArrayList abc{"abcd", "efgh", "ij"};
        QTest::newRow("header") << ten << abc << 10 << QByteArray("abcdefghij");
        QTest::newRow("missing chunk") << ten << QByteArrayList{"abcd", {}, "ij"} << 10 << QByteArray("abcd");
        QTest::newRow("short chunk") << ten << QByteArrayList{"ab", "cdef"} << 10 << QByteArray("ab");
        QTest::newRow("oversized chunk") << ten << QByteArrayList{"abcdefgh", "ijkl"} << 10 << QByteArray("abcdijkl");
        // A total of zero, a malformed one, one past 32 bits: nothing to read.
        for (const char *total : {"0000000000", "00000x0010", "9999999999"})
            QTest::newRow(total) << LongHeader(total, "0000000004") << abc << 0 << QByteArray();
        // No header: the value reads as it is.
        for (const auto &[label, header] : {std::pair{"chunk size zero", LongHeader("0000000010", "0000000000")},
                                            std::pair{"negative chunk size", LongHeader("0000000010", "-000000004")},
                                            std::pair{"negative total", LongHeader("-000000010", "0000000004")},
                                            std::pair{"37 bytes", QByteArray(ten + ' ')}, std::pair{"35 bytes", ten.chopped(1)}})
            QTest::newRow(label) << header << abc << int(header.size()) << header;
    }

    // Whatever a header claims, reading never passes the caller's room (six bytes, past a chunk's
    // end) nor the data stored.
    void longHeaders()
    {
        QFETCH(QByteArray, header);
        QFETCH(QByteArrayList, chunks);
        QFETCH(int, size);
        QFETCH(QByteArray, expected);
        UnderWindowsNT = false;
        WriteBufToRegistry(u"Long\\Odd"_s, header);
        for (int i = 0; i < chunks.size(); ++i) {
            if (!chunks[i].isNull())
                WriteBufToRegistry(u"Long\\Odd__"_s + QString::number(i), chunks[i]);
        }
        QCOMPARE(GetLongRegBufSize(u"Long\\Odd"_s), size);
        QByteArray buffer(10, '#');
        const qint32 count = ReadLongBufFromRegistry(u"Long\\Odd"_s, buffer.data(), 6);
        QCOMPARE((std::pair{buffer.left(count), buffer.mid(6)}), (std::pair{expected.left(6), QByteArray("####")}));
        QCOMPARE(ReadLongBufFromRegistry(u"Long\\Odd"_s), expected);
    }

    // Reading and dropping a stream, or committing it unchanged, writes nothing; Commit writes a
    // new size or new bytes once; the create mode empties the value at once.
    void registryStream()
    {
        WriteLongBufToRegistry(u"Streams\\Data"_s, QByteArray("abcdef"));
        FlushRegistry();
        const QByteArray before = FileBytes(RegistryFileName());
        {
            TRegistryStream stream(u"Streams\\Data"_s, fmOpenRead);
            QCOMPARE((std::pair{stream.SizeFound(), stream.readAll()}), (std::pair{6, QByteArray("abcdef")}));
            QVERIFY(!stream.Commit());
        }
        FlushRegistry();
        QCOMPARE(FileBytes(RegistryFileName()), before);
        {
            TRegistryStream stream(u"Streams\\Data"_s, fmOpenReadWrite);
            stream.SetSize(3);
            QVERIFY(!stream.Modified() && stream.Commit() && !stream.Commit());
            stream.SetSize(1);
        }
        TRegistryStream fresh(u"Streams\\New"_s, fmOpenWrite);
        QVERIFY(fresh.SizeFound() == -1 && !fresh.Commit() && !RegValueExists(u"Streams\\New"_s));
        fresh.write("xy");
        QVERIFY(fresh.Modified() && fresh.Commit());
        QCOMPARE(ReadLongBufFromRegistry(u"Streams\\Data"_s) + ReadLongBufFromRegistry(u"Streams\\New"_s), QByteArray("abcxy"));
        TRegistryStream created(u"Streams\\Data"_s, fmCreate);
        QCOMPARE((std::array{GetLongRegBufSize(u"Streams\\Data"_s), created.SizeFound(), qint32(created.size())}), (std::array{0, 0, 0}));
        QVERIFY(created.isWritable());
    }

    // Writes reach the file once control returns to the event loop.
    void burstOfWrites()
    {
        for (int i = 0; i < 2000; ++i)
            WriteToRegistry(u"Burst\\Value%1"_s.arg(i % 50), i);
        QVERIFY(!QFile::exists(RegistryFileName()));
        QTRY_VERIFY(FileBytes(RegistryFileName()).contains("Value49=1999"));
    }

    void damagedFiles_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("kept"); // a key readable from the damaged file
        QTest::newRow("broken section") << QByteArray("[Other]\nkept=1\n[Software/Korvo Company\nWidth=5\n") << u"Other/kept"_s;
        QTest::newRow("binary") << QByteArray("\0\xff\xfe[\x01\x02]\n=\xc3(\n", 12) << QString();
    }

    // A damaged file gives the defaults and a warning each time it is read; it stays as it is
    // until something is written, is then kept aside, and what could be read from it stays.
    void damagedFiles()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, kept);
        const QString file = RegistryFileName();
        QDir().mkpath(QFileInfo(file).absolutePath());
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size());
        out.close();
        for (int pass = 0; pass < 3; ++pass, ReleaseRegistry()) {
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"is damaged"_s));
            QCOMPARE(ReadFromRegistry(u"Width"_s, 7), QVariant(7));
            QCOMPARE(FileBytes(file), bytes);
        }
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"is damaged"_s));
        WriteToRegistry(u"Width"_s, 8);
        ReleaseRegistry();
        QCOMPARE(FileBytes(file + u".damaged"_s), bytes);
        QCOMPARE(ReadFromRegistry(u"Width"_s, 0), QVariant(8));
        const QSettings settings(file, QSettings::IniFormat);
        QCOMPARE(settings.status(), QSettings::NoError);
        QVERIFY(kept.isEmpty() || settings.contains(kept));
        QFile::remove(file + u".damaged"_s);
    }

    // A file that can't be read gives the defaults and is never written over.
    void unreadableFile()
    {
        QVERIFY(QDir().mkpath(RegistryFileName()));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"can't be read"_s));
        QCOMPARE(ReadFromRegistry(u"Width"_s, 7), QVariant(7));
        QCOMPARE(ErrorOf([] { WriteToRegistry(u"Width"_s, 1); }), LoadStr(SErrRegWrite).arg(RegistryFileName()));
        ReleaseRegistry();
        QVERIFY(QDir().rmdir(RegistryFileName()));
    }

    void options_data()
    {
        QTest::addColumn<bool>("inFile");
        QTest::newRow("settings") << false;
        QTest::newRow("options file") << true;
    }

    // The unit's start installs the storage, its stop removes it and writes what is pending; a new
    // global instance loads what was saved; values that no longer convert change nothing.
    void options()
    {
        QFETCH(bool, inFile);
        StoreOptionsInFile = inFile;
        OptionsFileName = m_dir.filePath(u"options.ini"_s);
        QFile::remove(OptionsFileName);
        ideSystem::Initialize();
        auto *options = GetOptionsByClass<TProbeOptions>();
        const QVariantList initial = options->Values();
        std::tie(options->Width, options->Caption, options->Align, options->Color) =
            std::tuple(640, u"Main, \"quoted\""_s, TProbeOptions::alClient, clHighlight);
        options->Recent = QStringList{u"a.txt"_s, QString(), u"b, c"_s};
        options->State = QByteArray("\0\1\2", 3);
        options->m_timer.setInterval(3);
        options->Items->Add();
        QVariantList saved = options->Values();
        options->Scratch = 9;
        options->SaveConfig();
        for (const char *prop : {"Width", "Align", "Color"})
            WriteToRegistry(u"Stale\\"_s + QLatin1String(prop), u"nothing of the kind"_s);
        WriteToRegistry(u"Stale\\Caption"_s, u"kept"_s);
        ideSystem::Finalize();
        QCOMPARE(OptionStorage(), nullptr);

        ideSystem::Initialize();
        if (inFile) // the INI file holds no collections nor sub-objects
            saved = saved.first(7) + initial.sliced(7);
        QCOMPARE(GetOptionsByClass<TProbeOptions>()->Values(), saved);
        TProbeOptions stale;
        ReadPropsFromRegistry(&stale, u"Stale\\"_s);
        QVariantList expected = initial;
        expected[1] = u"kept"_s;
        QCOMPARE(stale.Values(), expected);
        ideSystem::Finalize();
    }

    // Collections in text form and references by name, as properties; whole objects in binary form.
    void objectsInSettings()
    {
        QWidget form;
        form.setObjectName(u"Form1"_s);
        auto *lists = new TProbeOptions(&form);
        for (const QString &caption : {u"one"_s, u"two, 'three'"_s})
            static_cast<TNamedItem *>(lists->Items->Add())->Caption = caption;
        lists->Buddy = test::Make<QObject>(&form, u"Buddy1"_s);
        WritePropsToRegistry(lists, u"Lists\\Owner"_s);
        auto *read = new TProbeOptions(&form);
        ReadPropsFromRegistry(read, u"Lists\\Owner"_s);
        QCOMPARE((std::pair{read->Items->Count(), read->Buddy}), (std::pair{2, lists->Buddy}));
        QCOMPARE(static_cast<TNamedItem *>(read->Items->Items(1))->Caption, u"two, 'three'"_s);

        TProbeOptions options, copy, untouched;
        options.Width = 5;
        WriteObjToRegistry(u"Objects\\Binary"_s, &options);
        ReadObjFromRegistry(u"Objects\\Binary"_s, &copy);
        ReadObjFromRegistry(u"Objects\\Missing"_s, &untouched);
        QCOMPARE((std::pair{copy.Width, untouched.Width}), (std::pair{5, 10}));
        WriteLongBufToRegistry(u"Objects\\Garbage"_s, QByteArray("TPF0\xff\xff"));
        QCOMPARE(ErrorOf([&] { ReadObjFromRegistry(u"Objects\\Garbage"_s, &untouched); }), LoadStr(SInvalidStreamFormat));
    }

    // A window comes back in its state with its normal rectangle; a control keeps its place in
    // its parent and has no state.
    void windowPositions()
    {
        // The stored state code; each state has a rectangle of its own, so that nothing is read from
        // what the one before left.
        for (const auto &[state, code] : {std::pair{Qt::WindowNoState, 0}, std::pair{Qt::WindowMaximized, 2},
                                          std::pair{Qt::WindowMinimized, 1}}) {
            const QRect normal(40 + code, 50, 300, 200);
            {
                QWidget window;
                window.setGeometry(normal);
                window.show();
                window.setWindowState(state);
                QTRY_COMPARE(window.windowState(), state);
                WriteWinPosToReg(&window, u"Probe"_s);
                auto *control = new QWidget(&window);
                control->setGeometry(3, 4, 50, 60);
                WriteWinPosToReg(control, u"Probe\\Panel"_s);
            }
            QByteArray record(44, '\0');
            QCOMPARE(ReadBufFromRegistry(u"Forms\\Probe\\WinPos"_s, record.data(), 44), 44);
            QCOMPARE(record.mid(28), Placement(44, normal).mid(28));
            QCOMPARE(ReadFromRegistry(u"Forms\\Probe\\WindowState"_s, -1), QVariant(code));
            QVERIFY(!RegValueExists(u"Forms\\Probe\\Panel\\WindowState"_s));

            QWidget window;
            auto *control = new QWidget(&window);
            ReadWinPosFromReg(&window, u"Probe"_s);
            ReadWinPosFromReg(control, u"Probe\\Panel"_s);
            QCOMPARE(window.windowState(), state);
            window.show();
            QCOMPARE((std::pair{window.normalGeometry(), control->geometry()}), (std::pair{normal, QRect(3, 4, 50, 60)}));
        }
    }

    // A record that is not 44 bytes with the length 44, an empty rectangle, or one that meets no
    // screen changes nothing.
    void refusedWindowPositions()
    {
        const QRect rect(10, 10, 100, 100);
        for (const QByteArray &record : {Placement(44, rect, 43), Placement(44, rect, 45), Placement(40, rect),
                                         Placement(44, QRect(10, 10, 0, 100)), Placement(44, QRect(-90000, -90000, 100, 100))}) {
            WriteBufToRegistry(u"Forms\\Bad\\WinPos"_s, record);
            WriteToRegistry(u"Forms\\Bad\\WindowState"_s, 2);
            QWidget window;
            window.setGeometry(5, 6, 70, 80);
            ReadWinPosFromReg(&window, u"Bad"_s);
            QCOMPARE((std::pair{window.geometry(), window.windowState()}), (std::pair{QRect(5, 6, 70, 80), Qt::WindowStates()}));
        }
    }

private:
    QTemporaryDir m_dir;
};

QTEST_MAIN(tst_Registry)
#include "tst_registry.moc"
