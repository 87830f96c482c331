#include "platform/kvColor.h"

#include "platform/kvException.h"
#include "tests/platform/editortests.h"

#include <QColor>
#include <QPalette>
#include <QTest>

namespace kv {
// Failures print colours by name.
char *toString(TColor color) { return qstrdup(qPrintable(ColorToString(color))); }
} // namespace kv

using namespace kv;
using kv::test::ErrorOf;

namespace {

// A palette in which every group and role has a colour of its own.
QPalette DistinctPalette()
{
    QPalette palette;
    for (int group = QPalette::Active; group <= QPalette::Inactive; ++group) {
        for (int role = 0; role < QPalette::NColorRoles; ++role) {
            palette.setColor(QPalette::ColorGroup(group), QPalette::ColorRole(role),
                             QColor(10 + 7 * role, 60 * group, 200 - 5 * role));
        }
    }
    palette.setCurrentColorGroup(QPalette::Active);
    return palette;
}

} // namespace

class tst_Color : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyNamedColourRoundTrips()
    {
        // Listed as colour pickers show them: the classic 42 up to clNone, then the later additions;
        // each is read in any case and written under its own name, so no two share a value.
        QStringList listed;
        GetColorValues([&listed](const QString &ident) { listed << ident; });
        QCOMPARE(listed.size(), 52);
        QCOMPARE(listed.indexOf(QStringLiteral("clNone")), 41);
        QCOMPARE(listed.constLast(), QStringLiteral("clDefault"));
        for (const QString &ident : listed) {
            TColor color = TColor(0x123456);
            QVERIFY2(IdentToColor(ident.toUpper(), color), qPrintable(ident));
            QCOMPARE(ColorToString(color), ident);
            QCOMPARE(StringToColor(ident.toLower()), color);
        }
        // The two aliases are read but never written.
        QCOMPARE(StringToColor(QStringLiteral("clltgray")), clSilver);
        QCOMPARE(StringToColor(QStringLiteral("clDkGray")), clGray);
    }

    void numbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint32>("value");
        QTest::newRow("plus") << QStringLiteral("+16") << 16;
        QTest::newRow("int max") << QStringLiteral("2147483647") << 2147483647;
        QTest::newRow("int min") << QStringLiteral("-2147483648") << qint32(-2147483647 - 1);
        QTest::newRow("dollar lower") << QStringLiteral("$00abcdef") << 0xABCDEF;
        QTest::newRow("dollar full") << QStringLiteral("$FFFFFFFF") << -1;
        QTest::newRow("dollar leading zeros") << QStringLiteral("$0000000000FF") << 255;
        QTest::newRow("0X") << QStringLiteral("0XfF") << 255;
        QTest::newRow("blanks") << QStringLiteral("  $FF\t") << 255;
    }

    void numbers()
    {
        QFETCH(QString, text);
        QFETCH(qint32, value);
        QCOMPARE(StringToColor(text), TColor(value));
    }

    void unnamedValuesAreWrittenAsHex()
    {
        QVERIFY(IsSystemColor(clBtnFace));
        QVERIFY(!IsSystemColor(clNone) && !IsSystemColor(clDefault) && !IsSystemColor(clWhite));
        QCOMPARE(ColorToString(TColor(0x123456)), QStringLiteral("$00123456"));
        QCOMPARE(ColorToString(TColor(qint32(0x80000019u))), QStringLiteral("$80000019"));
    }

    void badTexts_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *bad : {"", " ", "xyz", "cl", "clRedd", "Red", "$", "0x", "$G0", "12a", "1 2",
                                "2147483648", "-2147483649", "$100000000", "0x1FFFFFFFF", "--1",
                                "+$10", "-$10", "0x-1", "$ FF", "1e3", "0.5"})
            QTest::newRow(bad) << QString::fromLatin1(bad);
        QTest::newRow("arabic digits") << QStringLiteral("\u0661\u0662");
        QTest::newRow("fullwidth digits") << QStringLiteral("\uFF11\uFF12");
    }

    void badTexts()
    {
        QFETCH(QString, text);
        QCOMPARE(ErrorOf([&] { StringToColor(text); }), QStringLiteral("'%1' is not a valid colour").arg(text));
    }

    void toAndFromQColor()
    {
        // Roles without a named state follow the palette's current group.
        QPalette palette = DistinctPalette();
        palette.setCurrentColorGroup(QPalette::Disabled);
        QCOMPARE(ColorToQColor(clBtnFace, palette), palette.color(QPalette::Disabled, QPalette::Button));
        QCOMPARE(ColorToQColor(clInfoBk, palette), palette.color(QPalette::Disabled, QPalette::ToolTipBase));
        // Those that name a state take it from its group.
        QCOMPARE(ColorToQColor(clActiveCaption, palette), palette.color(QPalette::Active, QPalette::Highlight));
        QCOMPARE(ColorToQColor(clInactiveCaption, palette), palette.color(QPalette::Inactive, QPalette::Highlight));
        palette.setCurrentColorGroup(QPalette::Active);
        QCOMPARE(ColorToQColor(clGrayText, palette), palette.color(QPalette::Disabled, QPalette::Text));

        // Every system colour but the unused index 25 paints with something; none beyond the last.
        for (quint32 index = 0; index <= 31; ++index) {
            const QColor painted = ColorToQColor(TColor(qint32(0x80000000u | index)), palette);
            QVERIFY2(painted.isValid() == (index != 25 && index != 31), qPrintable(QString::number(index)));
        }

        const QColor face = palette.color(QPalette::Button);
        QCOMPARE(ColorToRGB(clBtnFace, palette), TColor(face.red() | face.green() << 8 | face.blue() << 16));
        QCOMPARE(ColorToRGB(TColor(qint32(0x80000019u)), palette), clBlack);
        QCOMPARE(ColorToRGB(clNone, palette), clNone);

        // Plain colours both ways; the high byte is ignored.
        QCOMPARE(ColorToQColor(TColor(0x123456), palette), QColor(0x56, 0x34, 0x12));
        QCOMPARE(ColorToQColor(TColor(0x02123456), palette), QColor(0x56, 0x34, 0x12));
        QCOMPARE(ColorToQColor(clNone, palette), QColor(Qt::transparent));
        QVERIFY(!ColorToQColor(clDefault, palette).isValid());
        QCOMPARE(QColorToColor(QColor(0x12, 0x34, 0x56)), TColor(0x563412));
        QCOMPARE(QColorToColor(QColor(0x12, 0x34, 0x56, 100)), TColor(0x563412));
        QCOMPARE(QColorToColor(QColor(Qt::transparent)), clNone);
        QCOMPARE(QColorToColor(QColor()), clDefault);
    }
};

QTEST_MAIN(tst_Color)
#include "tst_color.moc"
