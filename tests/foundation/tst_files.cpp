#include "foundation/ideCommon_system.h"
#include "foundation/ideLib_files.h"
#include "tests/testsupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace kv;
using kv::test::ErrorOf;
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
    void fileNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("onlyName");
        QTest::addColumn<QString>("backup");
        QTest::addColumn<QString>("ext");
        QTest::addColumn<bool>("extMatches");
        QTest::addColumn<bool>("package");

        // The backup's extension is "~" and the first characters of the extension, 4 in all.
        QTest::newRow("one-letter extension") << "x.h" << "x" << "x.~h" << "h" << true << false;
        QTest::newRow("with folders") << "src/Unit1.pas" << "Unit1" << "src/Unit1.~pa" << ".PAS" << true << false;
        QTest::newRow("long extension") << "a.b.json" << "a.b" << "a.b.~js" << "json" << true << false;
        QTest::newRow("point in a folder") << "d.x/Makefile" << "Makefile" << "d.x/Makefile.~" << "" << true << false;
        QTest::newRow("hidden file") << ".profile" << ".profile" << ".profile.~" << "profile" << false << false;
        QTest::newRow("bare point") << "a." << "a" << "a.~" << "." << true << false;
        QTest::newRow("shared library") << "/lib/libkv.so" << "libkv" << "/lib/libkv.~so" << "so" << true << true;
        QTest::newRow("versioned library") << "libkv.so.3.1" << "libkv.so.3" << "libkv.so.3.~1" << "1" << true << true;
        QTest::newRow("not a version") << "lib.so.old" << "lib.so" << "lib.so.~ol" << "so" << false << false;
        QTest::newRow("so inside a name") << "libsound.a" << "libsound" << "libsound.~a" << "A" << true << false;
    }

    void fileNames()
    {
        QFETCH(QString, name);
        QFETCH(QString, onlyName);
        QFETCH(QString, backup);
        QFETCH(QString, ext);
        QFETCH(bool, extMatches);
        QFETCH(bool, package);
        QCOMPARE(ExtractOnlyName(name), onlyName);
        QCOMPARE(FileBakName(name), backup);
        QCOMPARE(CheckFileExt(name, ext), extMatches);
        QCOMPARE(FileIsPackage(name), package);
    }

    void backupsAndWrites()
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

        // A folder in the backup's place can't be deleted as a file: the file stays as it was.
        QVERIFY(QFile::remove(backup));
        WriteFile(backup + u"/inside"_s, "x");
        WriteFile(name, "keep me");
        QVERIFY(ErrorOf([&name] { RenameToBak(name); }).contains(backup));
        QCOMPARE(ReadFile(name), QByteArray("keep me"));

        const QString text = dir.filePath(u"text.txt"_s);
        SaveStringToFile(text, u"Grüße\n"_s);
        QCOMPARE(QString::fromUtf8(ReadFile(text)), u"Grüße\n"_s);
        const QString impossible = dir.filePath(u"no/such/folder/text.txt"_s);
        QVERIFY(ErrorOf([&impossible] { SaveStringToFile(impossible, u"x"_s); }).contains(impossible));
    }

    void findFiles()
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

        int calls = 0;
        const TFileFoundCallBack count = [&calls](const QString &path, const QFileInfo &info, bool &goOn) {
            QCOMPARE(info.filePath(), path);
            goOn = ++calls != 2;
        };
        QVERIFY(ForEachFile(root + u"*.pas"_s, QDir::Files, false, count));
        QCOMPARE(calls, 1);
        // Clearing Continue ends the search at once.
        QVERIFY(!ForEachFile(root, QDir::Files, true, count));
        QCOMPARE(calls, 2);
    }

    void permissions()
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
        QVERIFY(!ModifyFileAttr(dir.filePath(u"missing"_s), {}, write));

        QCOMPARE(ModifyFilesAttrInFolder(dir.path() + u"/*.txt"_s, true, {}, write), 2);
        QVERIFY(!(QFile(b).permissions() & QFileDevice::WriteOwner));
        QCOMPARE(ModifyFilesAttr({a, b, dir.filePath(u"missing"_s)}, write, {}), 2);
        QVERIFY(QFile(b).permissions() & QFileDevice::WriteOwner);
    }

    void paths()
    {
        QCOMPARE(ChangeFileName(u"/a/b/c.txt"_s, u"d.ini"_s), u"/a/b/d.ini"_s);
        QCOMPARE(ExpandRelativeFileName(u"/base/dir"_s, u"../x.txt"_s), u"/base/x.txt"_s);
        QCOMPARE(ExpandRelativeFileName(u"/base/dir"_s, u"./a/./b.txt"_s), u"/base/dir/a/b.txt"_s);
        QCOMPARE(ExpandRelativeFileName(u"/base"_s, u"/abs//./y"_s), u"/abs/y"_s);
        QCOMPARE(ExpandRelativePath(u"/base/dir"_s, u"../lib"_s), u"/base/lib/"_s);
        QCOMPARE(AppFolder(), QCoreApplication::applicationDirPath() + u'/');

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

    void dropFiles()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        WriteFile(dir.filePath(u"one.txt"_s), "x");
        WriteFile(dir.filePath(u"sub/two.txt"_s), "x");
        QDir().mkpath(dir.filePath(u"folder"_s));

        // A file, a folder, a web address and a file.
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(dir.filePath(u"one.txt"_s)), QUrl::fromLocalFile(dir.filePath(u"folder"_s)),
                      QUrl(u"https://example.org/page"_s), QUrl::fromLocalFile(dir.filePath(u"sub/two.txt"_s))});
        QCOMPARE(DropFiles(&data, false, false, u";"_s), dir.filePath(u"one.txt"_s));
        QCOMPARE(DropFiles(&data, false, true, u";"_s), u"%1/one.txt;%1/folder;%1/sub/two.txt"_s.arg(dir.path()));
        QCOMPARE(DropFiles(&data, true, false, u";"_s), dir.path() + u'/');
        QCOMPARE(DropFiles(&data, true, true, u";"_s), u"%1/;%1/folder;%1/sub/"_s.arg(dir.path()));

        QMimeData text;
        text.setText(u"not files"_s);
        QCOMPARE(DropFiles(&text, true, true, u";"_s), QString());
        QCOMPARE(DropFiles(nullptr, false, true, u";"_s), QString());
    }

    void logGuidsAndErrors()
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
        const QString logFile = GetLogDataFileName(dir.path());
        QVERIFY(QFileInfo(dir.filePath(u"LOGS"_s)).isDir());
        QVERIFY2(logFile.startsWith(dir.path() + u"/LOGS/{"_s), qPrintable(logFile));
        QVERIFY(logFile.endsWith(u"}.log"_s));
        QVERIFY(logFile != GetLogDataFileName(dir.path()));
        const QString logGuid = QFileInfo(logFile).completeBaseName();
        QCOMPARE(GUIDToString(StringToGUID(logGuid)), logGuid);

        const QUuid guid = StringToGUID(u"{0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9}"_s);
        QCOMPARE(GUIDToString(guid), u"{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}"_s);
        QCOMPARE(StringToGUID(u" 0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9 "_s), guid);
        QVERIFY(StringToGUID(u"{00000000-0000-0000-0000-000000000000}"_s).isNull());
        for (const QString &bad : {u"{0A1B2C3D-4E5F}"_s, u"hello"_s, QString()})
            QCOMPARE(ErrorOf([&bad] { StringToGUID(bad); }), u"'%1' is not a valid GUID"_s.arg(bad));
        QVERIFY(CreateNewGUID() != CreateNewGUID());

        QCOMPARE(ErrorOf([] { Error(u"plain"_s); }), u"plain"_s);
        // A number fills its place marker rather than being taken as a field width.
        QCOMPARE(ErrorOf([] { ErrorFmt(u"Component %1 doesn't exist (%2)"_s, u"Form1.X"_s, 3); }),
                 u"Component Form1.X doesn't exist (3)"_s);
    }

    void loadedModules()
    {
        const QList<TModuleInfo> modules = LoadedModules();
        QCOMPARE(QFileInfo(modules.first().FileName).canonicalFilePath(),
                 QFileInfo(QCoreApplication::applicationFilePath()).canonicalFilePath());

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
        // The library is a package, and every entry is one: the program itself is left out.
        QVERIFY(std::any_of(packages.cbegin(), packages.cend(), [](const QString &p) { return p.contains(u"/libkvIDEInspD5.so"_s); }));
        for (const QString &package : std::as_const(packages))
            QVERIFY2(FileIsPackage(package), qPrintable(package));
    }
};

QTEST_GUILESS_MAIN(tst_Files)
#include "tst_files.moc"
