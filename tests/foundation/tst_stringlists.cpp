#include "foundation/ideLib_stringlists.h"

#include "platform/kvException.h"
#include "tests/testsupport.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace kv;
using kv::test::ErrorOf;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(kv::TSearchParams)

namespace {

const QStringList Lines{
    u"alpha beta alphabet"_s, // 0
    u"  "_s,                  // 1
    u"Beta gamma   "_s,       // 2
    u"betamax beta"_s,        // 3
};

struct TCounted
{
    explicit TCounted(int *counter) : m_counter(counter) {}
    ~TCounted() { ++*m_counter; }
    int *m_counter;
};

} // namespace

class tst_StringLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findInStrings_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<TSearchParams>("params");
        QTest::addColumn<QPoint>("start");
        QTest::addColumn<bool>("found");
        QTest::addColumn<QPoint>("end");

        const TSearchParams none;
        const TSearchParams cs = spCaseSens;
        const TSearchParams whole = spCaseSens | spWholeWords;
        const TSearchParams back = spCaseSens | spBackSearch;
        const TSearchParams backWhole = spCaseSens | spBackSearch | spWholeWords;

        QTest::newRow("forward, first") << "beta" << none << QPoint(1, 0) << true << QPoint(7, 0);
        QTest::newRow("forward, match at Pos.X counts") << "beta" << none << QPoint(7, 0) << true << QPoint(7, 0);
        QTest::newRow("forward, ignoring case") << "BETA" << none << QPoint(8, 0) << true << QPoint(1, 2);
        QTest::newRow("forward, with case") << "beta" << cs << QPoint(8, 0) << true << QPoint(1, 3);
        QTest::newRow("forward, line shorter than Pos.X") << "beta" << none << QPoint(30, 0) << true << QPoint(1, 2);
        QTest::newRow("forward, whole word skips betamax") << "beta" << whole << QPoint(1, 3) << true << QPoint(9, 3);
        QTest::newRow("forward, whole word alpha") << "alpha" << whole << QPoint(1, 0) << true << QPoint(1, 0);
        QTest::newRow("forward, whole word at a word's end") << "a" << whole << QPoint(1, 0) << false << QPoint(1, 4);
        QTest::newRow("forward, alphabet is no whole alpha") << "alpha" << whole << QPoint(2, 0) << false << QPoint(1, 4);
        QTest::newRow("forward, trailing blanks are not searched") << "gamma " << none << QPoint(1, 0) << false << QPoint(1, 4);
        QTest::newRow("forward, runs off the end") << "zeta" << none << QPoint(1, 0) << false << QPoint(1, 4);
        QTest::newRow("forward, line above the list") << "alpha" << cs << QPoint(5, -3) << true << QPoint(1, 0);

        QTest::newRow("back, last on the line") << "beta" << back << QPoint(12, 3) << true << QPoint(9, 3);
        QTest::newRow("back, starts at or before Pos.X") << "beta" << back << QPoint(8, 3) << true << QPoint(1, 3);
        QTest::newRow("back, Pos.X 0 goes up") << "beta" << back << QPoint(0, 3) << true << QPoint(7, 0);
        QTest::newRow("back, Pos.X past the line end") << "beta" << back << QPoint(99, 0) << true << QPoint(7, 0);
        QTest::newRow("back, whole word") << "beta" << backWhole << QPoint(12, 3) << true << QPoint(9, 3);
        QTest::newRow("back, whole word skips betamax") << "beta" << backWhole << QPoint(8, 3) << true << QPoint(7, 0);
        QTest::newRow("back, ignoring case") << "beta" << TSearchParams(spBackSearch) << QPoint(0, 3) << true << QPoint(1, 2);
        QTest::newRow("back, runs off the beginning") << "zeta" << back << QPoint(5, 3) << false << QPoint(0, -1);
        QTest::newRow("back, line just below the list") << "beta" << back << QPoint(1, 4) << true << QPoint(9, 3);
    }

    void findInStrings()
    {
        QFETCH(QString, pattern);
        QFETCH(TSearchParams, params);
        QFETCH(QPoint, start);
        QFETCH(bool, found);
        QFETCH(QPoint, end);

        QPoint pos = start;
        QCOMPARE(FindInStringsEx(pattern, Lines, params, TCharSet(u" .,;"), pos), found);
        QCOMPARE(pos, end);
    }

    void findFirstAndNext()
    {
        QPoint pos(7, 7);
        QVERIFY(FindFirstInStrings(u"a"_s, Lines, true, pos));
        QCOMPARE(pos, QPoint(1, 0));
        // Without moving past the match the same match comes again.
        QVERIFY(FindNextInStrings(u"a"_s, Lines, true, pos));
        QCOMPARE(pos, QPoint(1, 0));

        QList<QPoint> matches{pos};
        for (pos.rx() += 1; FindNextInStrings(u"a"_s, Lines, true, pos); pos.rx() += 1)
            matches.append(pos);
        const QList<QPoint> expected{{1, 0}, {5, 0}, {10, 0}, {12, 0}, {16, 0}, {4, 2}, {7, 2}, {10, 2}, {4, 3}, {6, 3}, {12, 3}};
        QCOMPARE(matches, expected);
        QCOMPARE(pos, QPoint(1, 4));

        QVERIFY(!FindFirstInStrings(u"A"_s, Lines, true, pos));
        QVERIFY(FindFirstInStrings(u"A"_s, Lines, false, pos));

        // Nothing to search for or in: Pos stays.
        pos = QPoint(3, 1);
        QVERIFY(!FindInStringsEx(QString(), Lines, {}, TCharSet(), pos));
        QVERIFY(!FindInStringsEx(u"a"_s, QStringList(), {}, TCharSet(), pos));
        QCOMPARE(pos, QPoint(3, 1));
    }

    void listOperations()
    {
        QStringList a{u"One"_s, u"two"_s, u"one"_s, u"three"_s};
        QCOMPARE(RemoveFromStrings(a, u"ONE"_s), 0);
        QCOMPARE(a, (QStringList{u"two"_s, u"one"_s, u"three"_s}));
        QCOMPARE(RemoveFromStrings(a, u"ONE"_s, Qt::CaseSensitive), -1);

        // One removal per entry of B.
        QStringList b{u"x"_s, u"y"_s, u"x"_s, u"x"_s, u"z"_s};
        RemoveStrings(b, {u"X"_s, u"X"_s});
        QCOMPARE(b, (QStringList{u"y"_s, u"x"_s, u"z"_s}));

        QStringList names{u"Left"_s, u"Top"_s, u"Width"_s, u"left"_s};
        IntersectStrings(names, {u"LEFT"_s, u"width"_s});
        QCOMPARE(names, (QStringList{u"Left"_s, u"Width"_s, u"left"_s}));
        SubtractStrings(names, {u"left"_s});
        QCOMPARE(names, QStringList{u"Width"_s});

        QStringList dups{u"b"_s, u"A"_s, u"a"_s, u"B"_s, u"c"_s, u"a"_s};
        SortAndRemoveDups(dups);
        QCOMPARE(dups, (QStringList{u"A"_s, u"b"_s, u"c"_s}));
        QStringList exact{u"b"_s, u"A"_s, u"a"_s, u"a"_s};
        SortAndRemoveDups(exact, Qt::CaseSensitive);
        QCOMPARE(exact, (QStringList{u"A"_s, u"a"_s, u"b"_s}));

        QStringList holes{QString(), u"a"_s, QString(), u" "_s};
        RemoveEmptyStrings(holes);
        QCOMPARE(holes, (QStringList{u"a"_s, u" "_s}));

        const QStringList lines{u"Name=Value"_s, u"Path=a=b"_s, u"bare"_s, u"=v"_s};
        QStringList nameParts = lines;
        NamePartToStrings(nameParts);
        QCOMPARE(nameParts, (QStringList{u"Name"_s, u"Path"_s, u"bare"_s, QString()}));
        QStringList values = lines;
        ValuePartToStrings(values);
        QCOMPARE(values, (QStringList{u"Value"_s, u"a=b"_s, QString(), u"v"_s}));

        QStringList cased{u"aB"_s, u"Cd"_s};
        AnsiUpperCaseStrings(cased);
        QCOMPARE(cased, (QStringList{u"AB"_s, u"CD"_s}));
        AnsiLowerCaseStrings(cased);
        QCOMPARE(cased, (QStringList{u"ab"_s, u"cd"_s}));
        OperateStrings(cased, [](const QString &s) { return s + s; });
        QCOMPARE(cased, (QStringList{u"abab"_s, u"cdcd"_s}));
    }

    void changeParams_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("delim");
        QTest::addColumn<QString>("expected");

        QTest::newRow("one") << "Hello %NAME%!" << "%" << "Hello World!";
        QTest::newRow("names ignore case") << "%name% and %Name%" << "%" << "World and World";
        QTest::newRow("unknown stays") << "100% of %X% is %NAME%" << "%" << "100% of %X% is World";
        QTest::newRow("values are not searched again") << "%SELF%" << "%" << "%NAME%";
        QTest::newRow("empty value") << "[%EMPTY%]" << "%" << "[]";
        QTest::newRow("first line of a name wins") << "%DUP%" << "%" << "first";
        QTest::newRow("other delimiter") << "$NAME$ %NAME%" << "$" << "World %NAME%";
        QTest::newRow("unclosed") << "%NAME" << "%" << "%NAME";
        QTest::newRow("empty delimiter") << "%NAME%" << "" << "%NAME%";
    }

    void changeParams()
    {
        QFETCH(QString, text);
        QFETCH(QString, delim);
        QFETCH(QString, expected);
        const QStringList params{u"NAME=World"_s, u"SELF=%NAME%"_s, u"EMPTY="_s, u"DUP=first"_s, u"dup=second"_s};
        QCOMPARE(ChangeParamsEx(text, params, delim), expected);

        QStringList lines{text, text};
        if (delim == u"%"_s)
            ChangeParamsInStrings(lines, params);
        else
            ChangeParamsInStringsEx(lines, params, delim);
        QCOMPARE(lines, (QStringList{expected, expected}));
    }

    void changeParamsInFile()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString name = dir.filePath(u"setup.ini"_s);
        {
            QFile file(name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(u"Path=%APP%\nÜber=%APP%/ü\n"_s.toUtf8());
        }
        QVERIFY(ChangeParamsInFile(name, {u"APP=/opt/ä"_s}));
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(file.readAll()), u"Path=/opt/ä\nÜber=/opt/ä/ü\n"_s);
        // Nothing left to replace: the file is not written again.
        QVERIFY(!ChangeParamsInFile(name, {u"APP=/opt/ä"_s}));

        const QString missing = dir.filePath(u"missing.ini"_s);
        QVERIFY(ErrorOf([&] { ChangeParamsInFiles({name, missing}, {u"APP=x"_s}); }).contains(missing));
    }

    void ownedLists()
    {
        int freed = 0;
        QList<TCounted *> list{new TCounted(&freed), new TCounted(&freed), new TCounted(&freed)};
        TCounted *middle = list.at(1);
        QCOMPARE(RemoveItem(list, middle), 1);
        QCOMPARE(freed, 1);
        QCOMPARE(list.size(), 2);
        // An item the list does not hold is freed all the same.
        QCOMPARE(RemoveItem(list, new TCounted(&freed)), -1);
        QCOMPARE(freed, 2);
        ClearList(list);
        QCOMPARE(freed, 4);
        QVERIFY(list.isEmpty());

        QVERIFY(ListsInterSect(QList<int>{1, 2, 3}, QList<int>{5, 3}));
        QVERIFY(!ListsInterSect(QList<int>{1, 2}, QList<int>{}));
    }
};

QTEST_GUILESS_MAIN(tst_StringLists)
#include "tst_stringlists.moc"
