#include "platform/kvColor.h"

#include "platform/kvException.h"
#include "tests/platform/editortests.h"

#include <QColor>
#include <QPalette>
#include <QTest>
#include <QVariant>

namespace kv {
// Failures print colours by name.
char *toString(TColor color) { return qstrdup(qPrintable(ColorToString(color))); }
} // namespace kv

using namespace kv;
using kv::test::ErrorOf;

namespace {

struct NamedColor
{
    const char *ident;
    TColor color;
};

// Every named constant with the identifier it must carry, in the order colour pickers list
// them: the classic 42 up to clNone, then the later additions. The two aliases, which are
// read but never written, come last.
const NamedColor AllNamedColors[] = {
    {"clBlack", clBlack}, {"clMaroon", clMaroon}, {"clGreen", clGreen}, {"clOlive", clOlive},
    {"clNavy", clNavy}, {"clPurple", clPurple}, {"clTeal", clTeal}, {"clGray", clGray},
    {"clSilver", clSilver}, {"clRed", clRed}, {"clLime", clLime}, {"clYellow", clYellow},
    {"clBlue", clBlue}, {"clFuchsia", clFuchsia}, {"clAqua", clAqua}, {"clWhite", clWhite},
    {"clScrollBar", clScrollBar}, {"clBackground", clBackground},
    {"clActiveCaption", clActiveCaption}, {"clInactiveCaption", clInactiveCaption},
    {"clMenu", clMenu}, {"clWindow", clWindow}, {"clWindowFrame", clWindowFrame},
    {"clMenuText", clMenuText}, {"clWindowText", clWindowText}, {"clCaptionText", clCaptionText},
    {"clActiveBorder", clActiveBorder}, {"clInactiveBorder", clInactiveBorder},
    {"clAppWorkSpace", clAppWorkSpace}, {"clHighlight", clHighlight},
    {"clHighlightText", clHighlightText}, {"clBtnFace", clBtnFace}, {"clBtnShadow", clBtnShadow},
    {"clGrayText", clGrayText}, {"clBtnText", clBtnText},
    {"clInactiveCaptionText", clInactiveCaptionText}, {"clBtnHighlight", clBtnHighlight},
    {"cl3DDkShadow", cl3DDkShadow}, {"cl3DLight", cl3DLight}, {"clInfoText", clInfoText},
    {"clInfoBk", clInfoBk}, {"clNone", clNone},
    {"clMoneyGreen", clMoneyGreen}, {"clSkyBlue", clSkyBlue}, {"clCream", clCream},
    {"clMedGray", clMedGray}, {"clHotLight", clHotLight},
    {"clGradientActiveCaption", clGradientActiveCaption},
    {"clGradientInactiveCaption", clGradientInactiveCaption}, {"clMenuHighlight", clMenuHighlight},
    {"clMenuBar", clMenuBar}, {"clDefault", clDefault},
    {"clLtGray", clLtGray}, {"clDkGray", clDkGray},
};
constexpr int AliasCount = 2;

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

class ColorProbe : public QObject
{
    Q_OBJECT
    Q_PROPERTY(kv::TColor Color MEMBER m_color)
public:
    TColor m_color = clBtnFace;
};

} // namespace

class tst_Color : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyNamedColourRoundTrips()
    {
        const qsizetype written = qsizetype(std::size(AllNamedColors)) - AliasCount;
        QStringList listed;
        GetColorValues([&listed](const QString &ident) { listed << ident; });
        QCOMPARE(listed.size(), written);
        for (qsizetype i = 0; i < qsizetype(std::size(AllNamedColors)); ++i) {
            const NamedColor &named = AllNamedColors[i];
            const QString ident = QLatin1String(named.ident);
            TColor fromIdent = clBlack;
            QVERIFY2(IdentToColor(ident.toUpper(), fromIdent), named.ident);
            QCOMPARE(fromIdent, named.color);
            QCOMPARE(StringToColor(ident.toLower()), named.color);
            QCOMPARE(StringToColor(ColorToString(named.color)), named.color);
            // Listed and written under its own name, unless it is an alias.
            if (i < written) {
                QCOMPARE(listed.at(i), ident);
                QCOMPARE(ColorToString(named.color), ident);
            }
        }
        QCOMPARE(ColorToString(clLtGray), QStringLiteral("clSilver"));
        QCOMPARE(ColorToString(clDkGray), QStringLiteral("clGray"));
    }

    void numbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint32>("value");
        QTest::newRow("decimal") << QStringLiteral("255") << 255;
        QTest::newRow("zero") << QStringLiteral("0") << 0;
        QTest::newRow("plus") << QStringLiteral("+16") << 16;
        QTest::newRow("negative") << QStringLiteral("-1") << -1;
        QTest::newRow("int max") << QStringLiteral("2147483647") << 2147483647;
        QTest::newRow("int min") << QStringLiteral("-2147483648") << qint32(-2147483647 - 1);
        QTest::newRow("dollar lower") << QStringLiteral("$00abcdef") << 0xABCDEF;
        QTest::newRow("dollar full") << QStringLiteral("$FFFFFFFF") << -1;
        // System colours by the platform's index; the two special values above the plain ones.
        QTest::newRow("first system") << QStringLiteral("$80000000") << qint32(clScrollBar);
        QTest::newRow("system") << QStringLiteral("$8000000F") << qint32(clBtnFace);
        QTest::newRow("after the gap") << QStringLiteral("$8000001A") << qint32(clHotLight);
        QTest::newRow("last system") << QStringLiteral("$8000001E") << qint32(clMenuBar);
        QTest::newRow("none") << QStringLiteral("$1FFFFFFF") << qint32(clNone);
        QTest::newRow("default") << QStringLiteral("$20000000") << qint32(clDefault);
        QTest::newRow("dollar leading zeros") << QStringLiteral("$0000000000FF") << 255;
        QTest::newRow("0x") << QStringLiteral("0x1A2B3C") << 0x1A2B3C;
        QTest::newRow("0X") << QStringLiteral("0XfF") << 255;
        QTest::newRow("blanks") << QStringLiteral("  $FF\t") << 255;
        QTest::newRow("ident with blanks") << QStringLiteral(" clRed ") << qint32(clRed);
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
        QCOMPARE(ColorToString(TColor(-1)), QStringLiteral("$FFFFFFFF"));
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
        TColor color = clRed;
        QVERIFY(!IdentToColor(text, color));
        QCOMPARE(color, clRed);
    }

    void systemColoursResolveThroughThePalette()
    {
        // Roles without a named state follow the palette's current group.
        QPalette palette = DistinctPalette();
        palette.setCurrentColorGroup(QPalette::Disabled);
        QCOMPARE(ColorToQColor(clBtnFace, palette), palette.color(QPalette::Disabled, QPalette::Button));
        QCOMPARE(ColorToQColor(clWindow, palette), palette.color(QPalette::Disabled, QPalette::Base));
        QCOMPARE(ColorToQColor(clWindowText, palette), palette.color(QPalette::Disabled, QPalette::Text));
        QCOMPARE(ColorToQColor(clHighlight, palette), palette.color(QPalette::Disabled, QPalette::Highlight));
        QCOMPARE(ColorToQColor(clHighlightText, palette), palette.color(QPalette::Disabled, QPalette::HighlightedText));
        QCOMPARE(ColorToQColor(clBtnText, palette), palette.color(QPalette::Disabled, QPalette::ButtonText));
        QCOMPARE(ColorToQColor(clInfoBk, palette), palette.color(QPalette::Disabled, QPalette::ToolTipBase));
        QCOMPARE(ColorToQColor(clInfoText, palette), palette.color(QPalette::Disabled, QPalette::ToolTipText));
        QCOMPARE(ColorToQColor(clMenuBar, palette), palette.color(QPalette::Disabled, QPalette::Window));
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
        QCOMPARE(ColorToRGB(TColor(0x123456), palette), TColor(0x123456));
    }

    void plainColoursBothWays()
    {
        const QPalette palette = DistinctPalette();
        QCOMPARE(ColorToQColor(TColor(0x123456), palette), QColor(0x56, 0x34, 0x12));
        QCOMPARE(ColorToQColor(TColor(0x02123456), palette), QColor(0x56, 0x34, 0x12));
        QCOMPARE(ColorToQColor(clNone, palette), QColor(Qt::transparent));
        QVERIFY(!ColorToQColor(clDefault, palette).isValid());
        QCOMPARE(QColorToColor(QColor(0x12, 0x34, 0x56)), TColor(0x563412));
        QCOMPARE(QColorToColor(QColor(0x12, 0x34, 0x56, 100)), TColor(0x563412));
        QCOMPARE(QColorToColor(QColor(Qt::transparent)), clNone);
        QCOMPARE(QColorToColor(QColor()), clDefault);
        for (const NamedColor &named : AllNamedColors) {
            if (!IsSystemColor(named.color))
                QCOMPARE(QColorToColor(ColorToQColor(named.color, palette)), named.color);
        }
    }

    void usableAsPropertyAndVariant()
    {
        // Editors are chosen by type: the property must not pass for an int or an enum.
        ColorProbe probe;
        const QMetaProperty property = probe.metaObject()->property(probe.metaObject()->indexOfProperty("Color"));
        QCOMPARE(property.metaType(), QMetaType::fromType<TColor>());
        QVERIFY(!property.isEnumType());
        QCOMPARE(probe.property("Color").toInt(), qint32(clBtnFace));
        QVERIFY(probe.setProperty("Color", QVariant::fromValue(clNavy)));
        QCOMPARE(probe.m_color, clNavy);
        QVERIFY(probe.setProperty("Color", QVariant(0x123456)));
        QCOMPARE(probe.m_color, TColor(0x123456));
    }
};

QTEST_MAIN(tst_Color)
#include "tst_color.moc"
