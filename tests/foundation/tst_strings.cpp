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
    void charSet();
    void positions_data();
    void positions();
    void extractQuotedStr_data();
    void extractQuotedStr();
    void addCharOccurence_data();
    void addCharOccurence();
    void removeCharacters();
    void trimSeparators();
    void words_data();
    void words();
    void replaceAllOccur_data();
    void replaceAllOccur();
    void replaceAtIndex();
    void parseString_data();
    void parseString();
    void joining();
    void booleans_data();
    void booleans();
    void extractControlName_data();
    void extractControlName();
    void smallHelpers();
};

void tst_Strings::charSet()
{
    const TCharSet blanks = TCharSet::Blanks();
    QCOMPARE(blanks.Count(), 33);
    QVERIFY(blanks.Contains(u' '));
    QVERIFY(blanks.Contains(QChar(0)));
    QVERIFY(blanks.Contains(u'\t'));
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

void tst_Strings::positions_data()
{
    QTest::addColumn<QString>("sub");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("forward");
    QTest::addColumn<int>("backward");

    //                                               forward from start, backward from start
    QTest::newRow("match at start counts") << "ab" << "xxabxab" << 3 << 3 << 3;
    QTest::newRow("between matches") << "ab" << "xxabxab" << 4 << 6 << 3;
    QTest::newRow("start past the end") << "ab" << "xxabxab" << 50 << 0 << 6;
    QTest::newRow("start below 1") << "ab" << "xxabxab" << 0 << 3 << 0;
    QTest::newRow("start 1") << "ab" << "abxab" << 1 << 1 << 1;
    QTest::newRow("absent") << "zz" << "xxabxab" << 1 << 0 << 0;
    QTest::newRow("empty pattern") << "" << "abc" << 1 << 0 << 0;
    QTest::newRow("empty text") << "a" << "" << 1 << 0 << 0;
    QTest::newRow("case matters") << "AB" << "xxab" << 1 << 0 << 0;
}

void tst_Strings::positions()
{
    QFETCH(QString, sub);
    QFETCH(QString, text);
    QFETCH(int, start);
    QFETCH(int, forward);
    QFETCH(int, backward);
    QCOMPARE(PosEx(sub, text, start), forward);
    QCOMPARE(BackPosEx(sub, text, start), backward);
}

void tst_Strings::extractQuotedStr_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("empty") << "" << "";
    QTest::newRow("one quote") << "'" << "'";
    QTest::newRow("quoted") << "'abc'" << "abc";
    QTest::newRow("two doubled quotes") << "'it''s ''so'''" << "it's 'so'";
    QTest::newRow("only the opening quote") << "'abc" << "'abc";
    QTest::newRow("doubled without outer quotes") << "a''b" << "a'b";
    QTest::newRow("two quotes") << "''" << "";
    QTest::newRow("other quote char untouched") << "\"a\"" << "\"a\"";
}

void tst_Strings::extractQuotedStr()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(ExtractQuotedStr(text, u'\''), expected);
}

void tst_Strings::addCharOccurence_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("n");
    QTest::addColumn<QString>("expected");

    QTest::newRow("N=1 doubles") << "it's 'x'" << 1 << "it''s ''x''";
    QTest::newRow("N=2 triples") << "a'b" << 2 << "a'''b";
    QTest::newRow("N=0 unchanged") << "a'b" << 0 << "a'b";
    QTest::newRow("negative unchanged") << "a'b" << -3 << "a'b";
}

void tst_Strings::addCharOccurence()
{
    QFETCH(QString, text);
    QFETCH(int, n);
    QFETCH(QString, expected);
    QCOMPARE(AddCharOccurence(text, u'\'', n), expected);
}

void tst_Strings::removeCharacters()
{
    // Digits go too: only letters and the underscore stay.
    QCOMPARE(RemoveNonIdentChars(u"Button1_x"_s), u"Button_x"_s);
    QCOMPARE(RemoveNonIdentChars(u"a-b c.d"_s), u"abcd"_s);
    QCOMPARE(RemoveNonIdentChars(u"äöx"_s), u"x"_s);
    QCOMPARE(RemoveCharSet(TCharSet(u"ab"), u"abcabc"_s), u"cc"_s);
    QCOMPARE(RemoveStrSet(u"a,b;c"_s, u",;"), u"abc"_s);
    QCOMPARE(ChangeCharTo(u'/', u'\\', u"a\\b\\c"_s), u"a/b/c"_s);
}

void tst_Strings::trimSeparators()
{
    const TCharSet separators(u" ,;");
    QCOMPARE(TrimSeparatorsLeft(u" ,a, b ;"_s, separators), u"a, b ;"_s);
    QCOMPARE(TrimSeparatorsRight(u" ,a, b ;"_s, separators), u" ,a, b"_s);
    QCOMPARE(TrimSeparators(u" ,a, b ;"_s, separators), u"a, b"_s);
    QCOMPARE(TrimSeparators(u" ,; "_s, separators), QString());
}

void tst_Strings::words_data()
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

void tst_Strings::words()
{
    QFETCH(QString, text);
    QFETCH(int, n);
    QFETCH(int, pos);
    QFETCH(QString, word);
    const TCharSet separators(u" ,");
    QCOMPARE(GetWordPos(text, n, separators), pos);
    QCOMPARE(GetWordEx(text, n, separators), word);
}

void tst_Strings::replaceAllOccur_data()
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

void tst_Strings::replaceAllOccur()
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

void tst_Strings::replaceAtIndex()
{
    QString s = u"Hello World!"_s;
    Replace(s, 7, u"World"_s, u"Qt"_s);
    QCOMPARE(s, u"Hello Qt!"_s);
    Replace(s, 1, QString(), u">"_s);
    QCOMPARE(s, u">Hello Qt!"_s);
}

void tst_Strings::parseString_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("pieces") << "a;b;c" << QStringList{u"x"_s, u"a"_s, u"b"_s, u"c"_s};
    QTest::newRow("empty piece stays") << "a;;b" << QStringList{u"x"_s, u"a"_s, u""_s, u"b"_s};
    QTest::newRow("no empty last line") << "a;b;" << QStringList{u"x"_s, u"a"_s, u"b"_s};
    QTest::newRow("leading separator") << ";a" << QStringList{u"x"_s, u""_s, u"a"_s};
    QTest::newRow("line breaks split too") << "a\r\nb;c\rd" << QStringList{u"x"_s, u"a"_s, u"b"_s, u"c"_s, u"d"_s};
    QTest::newRow("empty text adds nothing") << "" << QStringList{u"x"_s};
}

void tst_Strings::parseString()
{
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    QStringList lines{u"x"_s};
    ParseString(text, u";"_s, lines);
    QCOMPARE(lines, expected);
}

void tst_Strings::joining()
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

void tst_Strings::booleans_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");

    QTest::newRow("True") << "True" << true;
    QTest::newRow("lower") << "true" << true;
    QTest::newRow("upper") << "TRUE" << true;
    QTest::newRow("blank around") << " True" << false;
    QTest::newRow("one") << "1" << false;
    QTest::newRow("yes") << "yes" << false;
    QTest::newRow("empty") << "" << false;
}

void tst_Strings::booleans()
{
    QFETCH(QString, text);
    QFETCH(bool, expected);
    QCOMPARE(StrToBool(text), expected);
    QCOMPARE(StrToBoolean(text), expected);
    QCOMPARE(StrToBool(BoolToStr(expected)), expected);
}

void tst_Strings::extractControlName_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("property path") << "Form1.Button1.Caption" << "Button1";
    QTest::newRow("programmatic id") << "Library.Control.1" << "Control";
    QTest::newRow("two parts") << "Form1.Button1" << "Button1";
    QTest::newRow("no point") << "Button1" << "Button1";
    QTest::newRow("leading point") << ".a.b" << "a";
}

void tst_Strings::extractControlName()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(ExtractControlName(text), expected);
}

void tst_Strings::smallHelpers()
{
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
    QVERIFY(IsLeapMinute(59));
    QVERIFY(!IsLeapMinute(60));

    QCOMPARE(PointToStr(QPoint(3, -4)), u"(3, -4)"_s);
    // Right and bottom are exclusive, as the platform counts them.
    QCOMPARE(RectToStr(QRect(10, 20, 100, 50)), u"(10, 20, 110, 70)"_s);
}

QTEST_GUILESS_MAIN(tst_Strings)
#include "tst_strings.moc"
