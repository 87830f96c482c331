#include "foundation/ideCommon_system.h"
#include "foundation/ideLib_files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace kv;
using namespace Qt::StringLiterals;

namespace {

void WriteFile(const QString &name, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(name).absolutePath());
    QFile file(name);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(name));
    file.write(data);
}

QByteArray ReadFile(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_Files : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fileBakName_data();
    void fileBakName();
    void renameToBak();
    void renameToBakFailure();
    void fileNames_data();
    void fileNames();
    void findFiles();
    void forEachFileStops();
    void permissions();
    void saveStringToFile();
    void expandRelative();
    void queryDirectory();
    void dropFiles_data();
    void dropFiles();
    void log();
    void guids();
    void loadedModules();
    void errors();
};

void tst_Files::fileBakName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("backup");

    QTest::newRow("three-letter extension") << "Unit1.pas" << "Unit1.~pa";
    QTest::newRow("one-letter extension") << "x.h" << "x.~h";
    QTest::newRow("long extension") << "a.b.json" << "a.b.~js";
    QTest::newRow("no extension") << "Makefile" << "Makefile.~";
    QTest::newRow("point in a folder only") << "src.d/Makefile" << "src.d/Makefile.~";
    QTest::newRow("with folders") << "/tmp/p/Unit1.dfm" << "/tmp/p/Unit1.~df";
    QTest::newRow("hidden file") << ".profile" << ".profile.~";
    QTest::newRow("bare point") << "a." << "a.~";
}

void tst_Files::fileBakName()
{
    QFETCH(QString, name);
    QFETCH(QString, backup);
    QCOMPARE(FileBakName(name), backup);
}

void tst_Files::renameToBak()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString name = dir.filePath(u"Unit1.pas"_s);
    const QString backup = dir.filePath(u"Unit1.~pa"_s);

    QVERIFY(!RenameToBak(name));
    QVERIFY(!QFileInfo::exists(backup));

    WriteFile(name, "new");
    WriteFile(backup, "old backup");
    QVERIFY(RenameToBak(name));
    QVERIFY(!QFileInfo::exists(name));
    QCOMPARE(ReadFile(backup), QByteArray("new"));
}

void tst_Files::renameToBakFailure()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString name = dir.filePath(u"Unit1.pas"_s);
    WriteFile(name, "keep me");
    // A folder in the backup's place can't be deleted as a file.
    WriteFile(dir.filePath(u"Unit1.~pa/inside"_s), "x");
    try {
        RenameToBak(name);
        QFAIL("the backup can't be made: RenameToBak must raise");
    } catch (const Exception &e) {
        QVERIFY2(e.Message().contains(u"Unit1.~pa"_s), qPrintable(e.Message()));
    }
    QCOMPARE(ReadFile(name), QByteArray("keep me"));
}

void tst_Files::fileNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("onlyName");
    QTest::addColumn<QString>("ext");
    QTest::addColumn<bool>("extMatches");
    QTest::addColumn<bool>("package");

    QTest::newRow("source") << "src/Unit1.pas" << "Unit1" << ".PAS" << true << false;
    QTest::newRow("ext without point") << "Unit1.pas" << "Unit1" << "pas" << true << false;
    QTest::newRow("other ext") << "Unit1.pas" << "Unit1" << "dfm" << false << false;
    QTest::newRow("no ext") << "dir.x/README" << "README" << "" << true << false;
    QTest::newRow("no ext, ext wanted") << "README" << "README" << "txt" << false << false;
    QTest::newRow("shared library") << "/usr/lib/libkv.so" << "libkv" << "so" << true << true;
    QTest::newRow("versioned library") << "libQt6Core.so.6.4.2" << "libQt6Core.so.6.4" << "2" << true << true;
    QTest::newRow("not a version") << "lib.so.old" << "lib.so" << "old" << true << false;
    QTest::newRow("so inside a name") << "libsound.a" << "libsound" << "a" << true << false;
}

void tst_Files::fileNames()
{
    QFETCH(QString, name);
    QFETCH(QString, onlyName);
    QFETCH(QString, ext);
    QFETCH(bool, extMatches);
    QFETCH(bool, package);
    QCOMPARE(ExtractOnlyName(name), onlyName);
    QCOMPARE(CheckFileExt(name, ext), extMatches);
    QCOMPARE(FileIsPackage(name), package);
    QCOMPARE(ChangeFileName(u"/a/b/c.txt"_s, u"d.ini"_s), u"/a/b/d.ini"_s);
}

void tst_Files::findFiles()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString root = dir.path() + u'/';
    for (const char *name : {"a.txt", "b.pas", "sub/c.txt", "sub/deeper/d.txt", "other/e.pas", ".hidden.txt"})
        WriteFile(root + QLatin1String(name), "x");

    QStringList files{u"kept"_s};
    FindFiles(root + u"*.txt"_s, QDir::Files, false, files);
    QCOMPARE(files, (QStringList{u"kept"_s, root + u"a.txt"_s}));

    // Subfolders are searched although their names don't match the pattern.
    files.clear();
    FindFiles(root + u"*.txt"_s, QDir::Files, true, files);
    QCOMPARE(files, (QStringList{root + u"a.txt"_s, root + u"sub/c.txt"_s, root + u"sub/deeper/d.txt"_s}));

    files.clear();
    FindFiles(root + u"*.txt"_s, QDir::Files | QDir::Hidden, false, files);
    QCOMPARE(files, (QStringList{root + u".hidden.txt"_s, root + u"a.txt"_s}));

    files.clear();
    FindFiles(root, QDir::Dirs, false, files);
    QCOMPARE(files, (QStringList{root + u"other"_s, root + u"sub"_s}));

    files.clear();
    FindFilesEx(dir.path(), {u"*.pas"_s, u"c.*"_s}, QDir::Files, true, files);
    QCOMPARE(files, (QStringList{root + u"b.pas"_s, root + u"other/e.pas"_s, root + u"sub/c.txt"_s}));

    QCOMPARE(ExtractFilePaths(files), (QStringList{root, root + u"other/"_s, root + u"sub/"_s}));
    QCOMPARE(ExtractFilePaths({u"x.txt"_s}), QStringList{u"./"_s});
}

void tst_Files::forEachFileStops()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    for (const char *name : {"1.txt", "2.txt", "3.txt"})
        WriteFile(dir.filePath(QLatin1String(name)), "x");
    int calls = 0;
    const bool completed = ForEachFile(dir.path() + u"/*.txt"_s, QDir::Files, false,
                                       [&calls](const QString &path, const QFileInfo &info, bool &goOn) {
                                           QCOMPARE(info.filePath(), path);
                                           goOn = ++calls < 2;
                                       });
    QVERIFY(!completed);
    QCOMPARE(calls, 2);
}

void tst_Files::permissions()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString a = dir.filePath(u"a.txt"_s);
    const QString b = dir.filePath(u"sub/b.txt"_s);
    WriteFile(a, "x");
    WriteFile(b, "x");
    const QFileDevice::Permissions write = QFileDevice::WriteOwner | QFileDevice::WriteUser;

    QVERIFY(ModifyFileAttr(a, {}, write));
    QVERIFY(!(QFile(a).permissions() & QFileDevice::WriteOwner));
    QVERIFY(ModifyFileAttr(a, QFileDevice::WriteOwner | QFileDevice::ExeOwner, {}));
    QVERIFY(QFile(a).permissions() & QFileDevice::ExeOwner);
    QVERIFY(!ModifyFileAttr(dir.filePath(u"missing"_s), {}, write));

    QCOMPARE(ModifyFilesAttrInFolder(dir.path() + u"/*.txt"_s, true, {}, write), 2);
    QVERIFY(!(QFile(b).permissions() & QFileDevice::WriteOwner));
    QCOMPARE(ModifyFilesAttr({a, b, dir.filePath(u"missing"_s)}, write, {}), 2);
    QVERIFY(QFile(b).permissions() & QFileDevice::WriteOwner);
}

void tst_Files::saveStringToFile()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString name = dir.filePath(u"text.txt"_s);
    SaveStringToFile(name, u"Grüße\n"_s);
    QCOMPARE(QString::fromUtf8(ReadFile(name)), u"Grüße\n"_s);

    const QString impossible = dir.filePath(u"no/such/folder/text.txt"_s);
    try {
        SaveStringToFile(impossible, u"x"_s);
        QFAIL("writing into a missing folder must raise");
    } catch (const Exception &e) {
        QVERIFY2(e.Message().contains(impossible), qPrintable(e.Message()));
    }
}

void tst_Files::expandRelative()
{
    QCOMPARE(ExpandRelativeFileName(u"/base/dir"_s, u"../x.txt"_s), u"/base/x.txt"_s);
    QCOMPARE(ExpandRelativeFileName(u"/base/dir"_s, u"./a/./b.txt"_s), u"/base/dir/a/b.txt"_s);
    QCOMPARE(ExpandRelativeFileName(u"/base"_s, u"/abs//./y"_s), u"/abs/y"_s);
    QCOMPARE(ExpandRelativePath(u"/base/dir"_s, u"../lib"_s), u"/base/lib/"_s);
    QCOMPARE(AppFolder(), QCoreApplication::applicationDirPath() + u'/');
}

void tst_Files::queryDirectory()
{
    QString asked;
    const TQueryDirectoryHook previous = SetQueryDirectoryHook([&asked](const QString &caption, QString &dir) {
        asked = caption + u'|' + dir;
        if (dir.isEmpty())
            return false;
        dir += u"/chosen"_s;
        return true;
    });
    QString dir = u"/start"_s;
    QVERIFY(QueryDirectory(u"Select Directory"_s, dir));
    QCOMPARE(asked, u"Select Directory|/start"_s);
    QCOMPARE(dir, u"/start/chosen"_s);
    QString none;
    QVERIFY(!QueryDirectory(u"Pick"_s, none));
    QVERIFY(none.isEmpty());
    SetQueryDirectoryHook(previous);
}

void tst_Files::dropFiles_data()
{
    QTest::addColumn<bool>("pathOnly");
    QTest::addColumn<bool>("multiple");
    QTest::addColumn<QString>("expected");

    // %1 is the temporary folder; the drop is a file, a folder, a web address and a file.
    QTest::newRow("first name") << false << false << "%1/one.txt";
    QTest::newRow("all names") << false << true << "%1/one.txt;%1/folder;%1/sub/two.txt";
    QTest::newRow("first as folder") << true << false << "%1/";
    QTest::newRow("all as folders") << true << true << "%1/;%1/folder;%1/sub/";
}

void tst_Files::dropFiles()
{
    QFETCH(bool, pathOnly);
    QFETCH(bool, multiple);
    QFETCH(QString, expected);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    WriteFile(dir.filePath(u"one.txt"_s), "x");
    WriteFile(dir.filePath(u"sub/two.txt"_s), "x");
    QDir().mkpath(dir.filePath(u"folder"_s));

    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(dir.filePath(u"one.txt"_s)), QUrl::fromLocalFile(dir.filePath(u"folder"_s)),
                  QUrl(u"https://example.org/page"_s), QUrl::fromLocalFile(dir.filePath(u"sub/two.txt"_s))});
    QCOMPARE(DropFiles(&data, pathOnly, multiple, u";"_s), expected.arg(dir.path()));

    QMimeData text;
    text.setText(u"not files"_s);
    QCOMPARE(DropFiles(&text, pathOnly, multiple, u";"_s), QString());
    QCOMPARE(DropFiles(nullptr, pathOnly, multiple, u";"_s), QString());
}

void tst_Files::log()
{
    WriteLogEvent = nullptr;
    WriteToLog(u"nobody listens"_s);

    QVariantList logged;
    WriteLogEvent = [&logged](const QVariant &value) { logged.append(value); };
    WriteToLog(u"Form Unit1.dfm converted"_s);
    WriteToLog(42);
    QCOMPARE(logged, (QVariantList{u"Form Unit1.dfm converted"_s, 42}));
    MapLogFileToWriteln();
    QVERIFY(WriteLogEvent);
    WriteLogEvent = nullptr;

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString first = GetLogDataFileName(dir.path());
    const QString second = GetLogDataFileName(dir.path());
    QVERIFY(QFileInfo(dir.filePath(u"LOGS"_s)).isDir());
    QVERIFY2(first.startsWith(dir.path() + u"/LOGS/{"_s), qPrintable(first));
    QVERIFY(first.endsWith(u"}.log"_s));
    QVERIFY(first != second);
    const QString guid = QFileInfo(first).completeBaseName();
    QCOMPARE(GUIDToString(StringToGUID(guid)), guid);
}

void tst_Files::guids()
{
    const QUuid guid = StringToGUID(u"{0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9}"_s);
    QCOMPARE(GUIDToString(guid), u"{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}"_s);
    QCOMPARE(StringToGUID(u" 0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9 "_s), guid);
    QVERIFY(StringToGUID(u"{00000000-0000-0000-0000-000000000000}"_s).isNull());
    for (const QString &bad : {u"{0A1B2C3D-4E5F}"_s, u"hello"_s, QString()}) {
        try {
            StringToGUID(bad);
            QFAIL(qPrintable(u"'%1' must not read as a GUID"_s.arg(bad)));
        } catch (const Exception &e) {
            QCOMPARE(e.Message(), u"'%1' is not a valid GUID"_s.arg(bad));
        }
    }
    QVERIFY(CreateNewGUID() != CreateNewGUID());
}

void tst_Files::loadedModules()
{
    const QList<TModuleInfo> modules = LoadedModules();
    QVERIFY(modules.size() > 3);
    QCOMPARE(QFileInfo(modules.first().FileName).canonicalFilePath(),
             QFileInfo(QCoreApplication::applicationFilePath()).canonicalFilePath());
    const auto has = [&modules](const QString &part) {
        return std::any_of(modules.cbegin(), modules.cend(), [&part](const TModuleInfo &m) { return m.FileName.contains(part); });
    };
    QVERIFY(has(u"libkvIDEInspD5.so"_s));
    QVERIFY(has(u"libQt6Core.so"_s));

    QList<quintptr> handles{1, 2, 3};
    ModulesToList(handles);
    QCOMPARE(handles.size(), modules.size());
    QVERIFY(!handles.contains(0));
    QCOMPARE(QSet<quintptr>(handles.cbegin(), handles.cend()).size(), handles.size());
    QList<quintptr> resources;
    ResModulesToList(resources);
    QCOMPARE(resources, handles);

    QStringList packages{u"stale"_s};
    GetLoadedPackagesPaths(packages);
    QVERIFY(!packages.contains(u"stale"_s));
    QVERIFY(!packages.contains(modules.first().FileName));
    QVERIFY(std::any_of(packages.cbegin(), packages.cend(), [](const QString &p) { return p.contains(u"/libkvIDEInspD5.so"_s); }));
    for (const QString &package : std::as_const(packages))
        QVERIFY2(FileIsPackage(package), qPrintable(package));
}

void tst_Files::errors()
{
    try {
        Error(u"plain"_s);
        QFAIL("Error must raise");
    } catch (const Exception &e) {
        QCOMPARE(e.Message(), u"plain"_s);
    }
    try {
        ErrorFmt(u"Component %1 doesn't exist (%2)"_s, u"Form1.X"_s, 3);
        QFAIL("ErrorFmt must raise");
    } catch (const Exception &e) {
        QCOMPARE(e.Message(), u"Component Form1.X doesn't exist (3)"_s);
    }
}

QTEST_GUILESS_MAIN(tst_Files)
#include "tst_files.moc"
