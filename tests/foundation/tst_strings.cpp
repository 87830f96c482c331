#include "foundation/ideLib_charset.h"
#include "foundation/ideLib_strings.h"

#include <QPoint>
#include <QRect>
#include <QTest>

using namespace kv;
using namespace Qt::StringLiterals;

class tst_Strings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void charSet()
    {
        const TCharSet blanks = TCharSet::Blanks();
        QCOMPARE(blanks.Count(), 33);
        QVERIFY(blanks.Contains(u' '));
        QVERIFY(blanks.Contains(QChar(0)));
        QVERIFY(!blanks.Contains(u'!'));

        TCharSet set(u"a,é\u0100");
        QVERIFY(set.Contains(u'a'));
        QVERIFY(set.Contains(u'é'));
        // Only the first 256 code points can be members.
        QVERIFY(!set.Contains(QChar(0x100)));
        QCOMPARE(set.Count(), 3);
        set.Remove(u',');
        QVERIFY(!set.Contains(u','));
        QCOMPARE(set | TCharSet(u","), TCharSet(u"a,é"));
        QCOMPARE(StringToCharSet(u"abca"), TCharSet(u"cba"));
    }

    void positions_data()
    {
        QTest::addColumn<QString>("sub");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("forward");
        QTest::addColumn<int>("backward");

        //                                               forward from start, backward from start
        QTest::newRow("match at start counts") << "ab" << "xxabxab" << 3 << 3 << 3;
        QTest::newRow("between matches") << "ab" << "xxabxab" << 4 << 6 << 3;
        QTest::newRow("just before a match") << "ab" << "xxabxab" << 2 << 3 << 0;
        QTest::newRow("start past the end") << "ab" << "xxabxab" << 50 << 0 << 6;
        QTest::newRow("start below 1") << "ab" << "xxabxab" << 0 << 3 << 0;
        QTest::newRow("start 1") << "ab" << "abxab" << 1 << 1 << 1;
        QTest::newRow("absent") << "zz" << "xxabxab" << 1 << 0 << 0;
        QTest::newRow("empty pattern") << "" << "abc" << 1 << 0 << 0;
        QTest::newRow("case matters") << "AB" << "xxab" << 1 << 0 << 0;
    }

    void positions()
    {
        QFETCH(QString, sub);
        QFETCH(QString, text);
        QFETCH(int, start);
        QFETCH(int, forward);
        QFETCH(int, backward);
        QCOMPARE(PosEx(sub, text, start), forward);
        QCOMPARE(BackPosEx(sub, text, start), backward);
    }

    void characterEdits()
    {
        // With N > 0 every quote is written N + 1 times.
        QCOMPARE(AddCharOccurence(u"it's 'x'"_s, u'\'', 1), u"it''s ''x''"_s);
        QCOMPARE(AddCharOccurence(u"a'b"_s, u'\'', 2), u"a'''b"_s);
        QCOMPARE(AddCharOccurence(u"a'b"_s, u'\'', -3), u"a'b"_s);

        QCOMPARE(ExtractQuotedStr(u"'"_s, u'\''), u"'"_s);
        QCOMPARE(ExtractQuotedStr(u"''"_s, u'\''), QString());
        QCOMPARE(ExtractQuotedStr(u"'abc'"_s, u'\''), u"abc"_s);
        QCOMPARE(ExtractQuotedStr(u"'it''s ''so'''"_s, u'\''), u"it's 'so'"_s);
        QCOMPARE(ExtractQuotedStr(u"'abc"_s, u'\''), u"'abc"_s);
        // Doubled quotes become one even without the outer quotes.
        QCOMPARE(ExtractQuotedStr(u"a''b"_s, u'\''), u"a'b"_s);
        QCOMPARE(ExtractQuotedStr(u"\"a\""_s, u'\''), u"\"a\""_s);

        // Digits go too: only the letters A-Z and a-z and the underscore stay.
        QCOMPARE(RemoveNonIdentChars(u"@AZ[`az{_1-. äö"_s), u"AZaz_"_s);
        QCOMPARE(RemoveCharSet(TCharSet(u"ab"), u"abcabc"_s), u"cc"_s);
        QCOMPARE(RemoveStrSet(u"a,b;c"_s, u",;"), u"abc"_s);
        QCOMPARE(ChangeCharTo(u'/', u'\\', u"a\\b\\c"_s), u"a/b/c"_s);

        const TCharSet separators(u" ,;");
        QCOMPARE(TrimSeparatorsLeft(u" ,a, b ;"_s, separators), u"a, b ;"_s);
        QCOMPARE(TrimSeparatorsRight(u" ,a, b ;"_s, separators), u" ,a, b"_s);
        QCOMPARE(TrimSeparators(u" ,a, b ;"_s, separators), u"a, b"_s);
        QCOMPARE(TrimSeparators(u" ,; "_s, separators), QString());

        QString s = u"Hello World!"_s;
        Replace(s, 7, u"World"_s, u"Qt"_s);
        QCOMPARE(s, u"Hello Qt!"_s);
        Replace(s, 1, QString(), u">"_s);
        QCOMPARE(s, u">Hello Qt!"_s);
    }

    void words_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("n");
        QTest::addColumn<int>("pos");
        QTest::addColumn<QString>("word");

        // Positions are in the text trimmed of separators.
        QTest::newRow("first") << ",,one, two,,three" << 1 << 1 << "one";
        QTest::newRow("second") << ",,one, two,,three" << 2 << 6 << "two";
        QTest::newRow("third") << ",,one, two,,three" << 3 << 11 << "three";
        QTest::newRow("fewer words") << ",,one, two,,three" << 4 << -1 << "";
        QTest::newRow("N below 1") << "one" << 0 << -1 << "";
        QTest::newRow("only separators") << ", ,," << 1 << -1 << "";
    }

    void words()
    {
        QFETCH(QString, text);
        QFETCH(int, n);
        QFETCH(int, pos);
        QFETCH(QString, word);
        const TCharSet separators(u" ,");
        QCOMPARE(GetWordPos(text, n, separators), pos);
        QCOMPARE(GetWordEx(text, n, separators), word);
    }

    void replaceAllOccur_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("oldText");
        QTest::addColumn<QString>("newText");
        QTest::addColumn<bool>("ignoreCase");
        QTest::addColumn<QString>("expected");

        // The replacement contains the pattern: each occurrence is doubled once, no more.
        QTest::newRow("ab to abab ignoring case") << "xABy ab" << "ab" << "abab" << true << "xababy abab";
        QTest::newRow("ab to abab with case") << "xABy ab" << "ab" << "abab" << false << "xABy abab";
        QTest::newRow("growing single letters") << "aaa" << "a" << "aa" << false << "aaaaaa";
        QTest::newRow("shrinking") << "a--b--c" << "--" << "-" << false << "a-b-c";
        QTest::newRow("empty old") << "abc" << "" << "x" << true << "abc";
        // Upper-casing "ß" would give "SS" and shift every later position.
        QTest::newRow("positions after sharp s") << "ßab" << "AB" << "x" << true << "ßx";
    }

    void replaceAllOccur()
    {
        QFETCH(QString, text);
        QFETCH(QString, oldText);
        QFETCH(QString, newText);
        QFETCH(bool, ignoreCase);
        QFETCH(QString, expected);
        QString s = text;
        ReplaceAllOccurEx(s, oldText, newText, ignoreCase);
        QCOMPARE(s, expected);
        if (!ignoreCase) {
            QString plain = text;
            ReplaceAllOccur(plain, oldText, newText);
            QCOMPARE(plain, expected);
        }
    }

    void parseString()
    {
        const auto parse = [](const QString &text) {
            QStringList lines{u"x"_s};
            ParseString(text, u";"_s, lines);
            return lines;
        };
        QCOMPARE(parse(u"a;b;c"_s), (QStringList{u"x"_s, u"a"_s, u"b"_s, u"c"_s}));
        QCOMPARE(parse(u"a;;b"_s), (QStringList{u"x"_s, u"a"_s, QString(), u"b"_s}));
        // No empty last line.
        QCOMPARE(parse(u"a;b;"_s), (QStringList{u"x"_s, u"a"_s, u"b"_s}));
        QCOMPARE(parse(u";a"_s), (QStringList{u"x"_s, QString(), u"a"_s}));
        QCOMPARE(parse(u"a\r\nb;c\rd"_s), (QStringList{u"x"_s, u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
        QCOMPARE(parse(QString()), QStringList{u"x"_s});
    }

    void joining()
    {
        const QStringList list{u"a"_s, QString(), u"b"_s};
        QCOMPARE(StrArrayToDelimStr(list, u";"_s), u"a;b"_s);
        QCOMPARE(StringsToString(list, u";"_s), u"a;;b"_s);
        QCOMPARE(CommaText({u"a b"_s, u"c"_s}), u"a b,c"_s);

        QString padded = u"ab"_s;
        AddBackSpaces(padded, 5);
        QCOMPARE(padded, u"ab   "_s);
        AddBackSpaces(padded, 2);
        QCOMPARE(padded, u"ab   "_s);
        QCOMPARE(StringOfSpace(3), u"   "_s);
        QCOMPARE(StringOfSpace(-1), QString());
        QCOMPARE(RemoveExtraSlash(u"/a//b///c/"_s), u"/a/b/c/"_s);
    }

    void smallHelpers()
    {
        // "True" in any case is true, anything else false.
        QVERIFY(StrToBool(u"True"));
        QVERIFY(StrToBoolean(u"tRUE"));
        QVERIFY(!StrToBool(u" True"));
        QVERIFY(!StrToBoolean(u"1"));
        QCOMPARE(BoolToStr(true), u"True"_s);
        QCOMPARE(BoolToStr(false), u"False"_s);

        QCOMPARE(ExtractControlName(u"Form1.Button1.Caption"_s), u"Button1"_s);
        QCOMPARE(ExtractControlName(u"Form1.Button1"_s), u"Button1"_s);
        QCOMPARE(ExtractControlName(u"Button1"_s), u"Button1"_s);
        QCOMPARE(ExtractControlName(u".a.b"_s), u"a"_s);

        QCOMPARE(GetFirstNotSpace(u"   x"), 4);
        QCOMPARE(GetFirstNotSpace(u"   "), 4);
        QCOMPARE(GetFirstNotSpace(u""), 1);

        QCOMPARE(ShortMonthNameToIndex(u"jan"), 1);
        QCOMPARE(ShortMonthNameToIndex(u"DEC"), 12);
        QCOMPARE(ShortMonthNameToIndex(u"Janu"), 0);

        QVERIFY(!IsLeapHour(-1));
        QVERIFY(IsLeapHour(0));
        QVERIFY(IsLeapHour(23));
        QVERIFY(!IsLeapHour(24));
        QVERIFY(IsLeapMinute(0));
        QVERIFY(IsLeapMinute(59));
        QVERIFY(!IsLeapMinute(60));

        QCOMPARE(PointToStr(QPoint(3, -4)), u"(3, -4)"_s);
        // Right and bottom are exclusive, as the platform counts them.
        QCOMPARE(RectToStr(QRect(10, 20, 100, 50)), u"(10, 20, 110, 70)"_s);
    }
};

QTEST_GUILESS_MAIN(tst_Strings)
#include "tst_strings.moc"
