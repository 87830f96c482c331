#include "platform/kvColor.h"

#include "platform/kvException.h"

#include <QColor>
#include <QPalette>
#include <QSet>
#include <QTest>
#include <QVariant>

namespace kv {
// Failures print colours by name.
char *toString(TColor color) { return qstrdup(qPrintable(ColorToString(color))); }
} // namespace kv

using namespace kv;

namespace {

struct NamedColor
{
    const char *ident;
    TColor color;
};

// Every named constant with the identifier it must carry.
const NamedColor AllNamedColors[] = {
    {"clBlack", clBlack}, {"clMaroon", clMaroon}, {"clGreen", clGreen}, {"clOlive", clOlive},
    {"clNavy", clNavy}, {"clPurple", clPurple}, {"clTeal", clTeal}, {"clGray", clGray},
    {"clSilver", clSilver}, {"clRed", clRed}, {"clLime", clLime}, {"clYellow", clYellow},
    {"clBlue", clBlue}, {"clFuchsia", clFuchsia}, {"clAqua", clAqua}, {"clLtGray", clLtGray},
    {"clDkGray", clDkGray}, {"clWhite", clWhite}, {"clMoneyGreen", clMoneyGreen},
    {"clSkyBlue", clSkyBlue}, {"clCream", clCream}, {"clMedGray", clMedGray},
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
    {"clInfoBk", clInfoBk}, {"clHotLight", clHotLight},
    {"clGradientActiveCaption", clGradientActiveCaption},
    {"clGradientInactiveCaption", clGradientInactiveCaption}, {"clMenuHighlight", clMenuHighlight},
    {"clMenuBar", clMenuBar}, {"clNone", clNone}, {"clDefault", clDefault},
};

QStringList ColorValues()
{
    QStringList idents;
    GetColorValues([&idents](const QString &ident) { idents << ident; });
    return idents;
}

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

QString RaisedMessage(const QString &text)
{
    try {
        StringToColor(text);
    } catch (const Exception &e) {
        return e.Message();
    }
    return QString();
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
    void systemColorsFollowTheIndexOrder()
    {
        QCOMPARE(quint32(clScrollBar), 0x80000000u);
        QCOMPARE(quint32(clBtnFace), 0x8000000Fu);
        QCOMPARE(quint32(cl3DDkShadow), 0x80000015u);
        QCOMPARE(quint32(clInfoBk), 0x80000018u);
        QCOMPARE(quint32(clHotLight), 0x8000001Au);
        QCOMPARE(quint32(clMenuBar), 0x8000001Eu);
        QCOMPARE(quint32(clNone), 0x1FFFFFFFu);
        QCOMPARE(quint32(clDefault), 0x20000000u);
        QVERIFY(IsSystemColor(clBtnFace));
        QVERIFY(!IsSystemColor(clNone) && !IsSystemColor(clDefault) && !IsSystemColor(clWhite));
    }

    void everyNamedColourRoundTrips()
    {
        for (const NamedColor &named : AllNamedColors) {
            const QString ident = QLatin1String(named.ident);
            TColor fromIdent = clBlack;
            QVERIFY2(IdentToColor(ident, fromIdent), named.ident);
            QCOMPARE(fromIdent, named.color);
            QVERIFY2(IdentToColor(ident.toUpper(), fromIdent), named.ident);
            QCOMPARE(fromIdent, named.color);
            QCOMPARE(StringToColor(ColorToString(named.color)), named.color);
            QCOMPARE(StringToColor(ident.toLower()), named.color);
        }
    }

    void colourValuesEnumerateEachIdentOnce()
    {
        const QStringList idents = ColorValues();
        // Values with two names show and list the first.
        QCOMPARE(idents.size(), int(std::size(AllNamedColors)) - 2);
        QVERIFY(!idents.contains(QStringLiteral("clLtGray")) && !idents.contains(QStringLiteral("clDkGray")));
        QCOMPARE(ColorToString(clLtGray), QStringLiteral("clSilver"));
        QCOMPARE(ColorToString(clDkGray), QStringLiteral("clGray"));
        QCOMPARE(QSet<QString>(idents.begin(), idents.end()).size(), idents.size());
        for (const QString &ident : idents) {
            TColor color = clBlack;
            QVERIFY(IdentToColor(ident, color));
            QString back;
            QVERIFY(ColorToIdent(color, back));
            QCOMPARE(back, ident);
        }
        // The classic list comes first, as colour pickers show it.
        const QStringList classic = QStringLiteral(
            "clBlack clMaroon clGreen clOlive clNavy clPurple clTeal clGray clSilver clRed clLime "
            "clYellow clBlue clFuchsia clAqua clWhite clScrollBar clBackground clActiveCaption "
            "clInactiveCaption clMenu clWindow clWindowFrame clMenuText clWindowText clCaptionText "
            "clActiveBorder clInactiveBorder clAppWorkSpace clHighlight clHighlightText clBtnFace "
            "clBtnShadow clGrayText clBtnText clInactiveCaptionText clBtnHighlight cl3DDkShadow "
            "cl3DLight clInfoText clInfoBk clNone").split(u' ');
        QCOMPARE(classic.size(), 42);
        QCOMPARE(idents.mid(0, classic.size()), classic);
    }

    void unnamedValuesAreWrittenAsHex()
    {
        QCOMPARE(ColorToString(TColor(0x123456)), QStringLiteral("$00123456"));
        QCOMPARE(ColorToString(TColor(-1)), QStringLiteral("$FFFFFFFF"));
        QCOMPARE(ColorToString(TColor(qint32(0x80000019u))), QStringLiteral("$80000019"));
        QString ident;
        QVERIFY(!ColorToIdent(TColor(0x123456), ident));
        for (const TColor color : {TColor(0x123456), TColor(-1), TColor(qint32(0x80000019u)), TColor(0x01000000)})
            QCOMPARE(StringToColor(ColorToString(color)), color);
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
        QTest::newRow("dollar") << QStringLiteral("$FF") << 255;
        QTest::newRow("dollar lower") << QStringLiteral("$00abcdef") << 0xABCDEF;
        QTest::newRow("dollar full") << QStringLiteral("$FFFFFFFF") << -1;
        QTest::newRow("dollar system") << QStringLiteral("$8000000F") << qint32(clBtnFace);
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
        QCOMPARE(RaisedMessage(text), QStringLiteral("'%1' is not a valid colour").arg(text));
        TColor color = clRed;
        QVERIFY(!IdentToColor(text, color));
        QCOMPARE(color, clRed);
    }

    void systemColoursResolveThroughThePalette()
    {
        QPalette palette = DistinctPalette();
        QCOMPARE(ColorToQColor(clBtnFace, palette), palette.color(QPalette::Button));
        QCOMPARE(ColorToQColor(clWindow, palette), palette.color(QPalette::Base));
        QCOMPARE(ColorToQColor(clWindowText, palette), palette.color(QPalette::Text));
        QCOMPARE(ColorToQColor(clHighlight, palette), palette.color(QPalette::Highlight));
        QCOMPARE(ColorToQColor(clHighlightText, palette), palette.color(QPalette::HighlightedText));
        QCOMPARE(ColorToQColor(clBtnText, palette), palette.color(QPalette::ButtonText));
        QCOMPARE(ColorToQColor(clInfoBk, palette), palette.color(QPalette::ToolTipBase));
        QCOMPARE(ColorToQColor(clInfoText, palette), palette.color(QPalette::ToolTipText));
        QCOMPARE(ColorToQColor(clGrayText, palette), palette.color(QPalette::Disabled, QPalette::Text));
        QCOMPARE(ColorToQColor(clActiveCaption, palette), palette.color(QPalette::Active, QPalette::Highlight));
        QCOMPARE(ColorToQColor(clInactiveCaption, palette), palette.color(QPalette::Inactive, QPalette::Highlight));

        // Roles without a named state follow the palette's current group.
        palette.setCurrentColorGroup(QPalette::Disabled);
        QCOMPARE(ColorToQColor(clBtnFace, palette), palette.color(QPalette::Disabled, QPalette::Button));
        QCOMPARE(ColorToQColor(clActiveCaption, palette), palette.color(QPalette::Active, QPalette::Highlight));

        // Every system colour but the unused index 25 paints with something.
        for (quint32 index = 0; index <= 30; ++index) {
            const QColor resolved = ColorToQColor(TColor(qint32(0x80000000u | index)), palette);
            QVERIFY2(resolved.isValid() == (index != 25), qPrintable(QString::number(index)));
        }
        QVERIFY(!ColorToQColor(TColor(qint32(0x8000001Fu)), palette).isValid());

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
        QCOMPARE(QColorToColor(QColor::fromHsv(0, 255, 255)), clRed);
        QCOMPARE(QColorToColor(QColor(Qt::transparent)), clNone);
        QCOMPARE(QColorToColor(QColor()), clDefault);
        for (const NamedColor &named : AllNamedColors) {
            if (!IsSystemColor(named.color))
                QCOMPARE(QColorToColor(ColorToQColor(named.color, palette)), named.color);
        }
    }

    void usableAsPropertyAndVariant()
    {
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
