#include "tests/platform/editortests.h"
#include "platform/kvPropEdits_types.h"

#include "design/ideGen_designer.h"
#include "foundation/ideConsts.h"
#include "platform/kvColor.h"
#include "platform/kvDesignDialogs.h"
#include "platform/kvException.h"
#include "platform/kvPropertyRegistry.h"

#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QFontDatabase>
#include <QKeySequence>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QTemporaryDir>
#include <QPlainTextEdit>
#include <QSizePolicy>
#include <QTest>
#include <QTimeZone>
#include <QTimer>
#include <QToolButton>

#include <memory>

using namespace kv;
using namespace kv::test;

Q_DECLARE_METATYPE(kv::TPropertyAttributes)

// One property of every type that the editors under test handle, and two read-only ones.
class TTypesHolder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(kv::TColor color MEMBER m_color)
    Q_PROPERTY(QColor qcolor MEMBER m_qcolor)
    Q_PROPERTY(QFont font MEMBER m_font)
    Q_PROPERTY(QCursor cursor MEMBER m_cursor)
    Q_PROPERTY(QKeySequence shortcut MEMBER m_shortcut)
    Q_PROPERTY(QDate date MEMBER m_date)
    Q_PROPERTY(QTime time MEMBER m_time)
    Q_PROPERTY(QDateTime dateTime MEMBER m_dateTime)
    Q_PROPERTY(QStringList items MEMBER m_items)
    Q_PROPERTY(QSize size MEMBER m_size)
    Q_PROPERTY(QSizeF sizeF MEMBER m_sizeF)
    Q_PROPERTY(QPoint point MEMBER m_point)
    Q_PROPERTY(QRect rect MEMBER m_rect)
    Q_PROPERTY(QRectF rectF MEMBER m_rectF)
    Q_PROPERTY(QMargins margins MEMBER m_margins)
    Q_PROPERTY(QSizePolicy sizePolicy MEMBER m_sizePolicy)
    Q_PROPERTY(QColor fixedColor READ fixedColor)
    Q_PROPERTY(QSize fixedSize READ fixedSize)

public:
    // Values that no test row uses, so that writing a row's text has something to change.
    TTypesHolder()
    {
        setObjectName(QStringLiteral("holder"));
        m_font.setPointSize(31);
        m_dateTime = QDateTime(QDate(1999, 9, 9), QTime(9, 9, 9));
        m_sizePolicy.setHeightForWidth(true);
    }
    QColor fixedColor() const { return Qt::blue; }
    QSize fixedSize() const { return QSize(1, 1); }

    TColor m_color = clMoneyGreen;
    QColor m_qcolor = QColor(7, 7, 7);
    QFont m_font;
    QCursor m_cursor = QCursor(Qt::CrossCursor);
    QKeySequence m_shortcut = QKeySequence(QStringLiteral("Alt+Q"));
    QDate m_date = QDate(1999, 9, 9);
    QTime m_time = QTime(9, 9, 9);
    QDateTime m_dateTime;
    QStringList m_items = {QStringLiteral("seed")};
    QSize m_size = QSize(9, 9);
    QSizeF m_sizeF = QSizeF(9.5, 9.5);
    QPoint m_point = QPoint(9, 9);
    QRect m_rect = QRect(9, 9, 9, 9);
    QRectF m_rectF = QRectF(9.5, 9.5, 9.5, 9.5);
    QMargins m_margins = QMargins(9, 9, 9, 9);
    QSizePolicy m_sizePolicy = QSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
};

// Pictures of each kind.
class TPictureHolder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QPixmap pixmap READ pixmap WRITE setPixmap)
    Q_PROPERTY(QImage image MEMBER m_image)
    Q_PROPERTY(QIcon icon READ icon WRITE setIcon)

public:
    QPixmap pixmap() const { return m_pixmap; }
    void setPixmap(const QPixmap &Pixmap) { m_pixmap = Pixmap; }
    QIcon icon() const { return m_icon; }
    void setIcon(const QIcon &Icon) { m_icon = Icon; }

    QPixmap m_pixmap;
    QImage m_image;
    QIcon m_icon;
};

// A widget with a QColor property, for colours that come from the widget's palette.
class TTintedWidget : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QColor tint MEMBER m_tint)

public:
    QColor m_tint;
};

namespace {

class TCountingDesigner : public TFDesigner
{
public:
    void Modified() override { ++ModifiedCount; }
    int ModifiedCount = 0;
};

TEditorPtr EditorFor(const QList<QObject *> &Objects, const QString &Name, IFormDesigner *Designer = nullptr)
{
    return Take(EditorsOf(Objects, Designer), Name);
}

TEditorPtr SubEditor(const TPropertyEditor &Editor, const QString &Name)
{
    return Take(SubEditors(Editor), Name);
}

// The message that SetValue raises; empty when it raises nothing.
QString RaisedBy(TPropertyEditor &Editor, const QString &Text)
{
    return ErrorOf([&] { Editor.SetValue(Text); });
}

// Puts a dialog hook in place for one test and restores the one before.
template <typename THook, THook (*Set)(THook)>
class THookGuard
{
public:
    explicit THookGuard(THook Hook) : m_previous(Set(std::move(Hook))) {}
    ~THookGuard() { Set(std::move(m_previous)); }
    THookGuard(const THookGuard &) = delete;
    THookGuard &operator=(const THookGuard &) = delete;

private:
    THook m_previous;
};
using TColorHookGuard = THookGuard<TColorDialogHook, &SetColorDialogHook>;
using TFontHookGuard = THookGuard<TFontDialogHook, &SetFontDialogHook>;
using TStringListHookGuard = THookGuard<TStringListDialogHook, &SetStringListDialogHook>;

QDateTime LocalDateTime(int Year, int Month, int Day, int Hour, int Minute, int Second, int Msec)
{
    return QDateTime(QDate(Year, Month, Day), QTime(Hour, Minute, Second, Msec));
}

} // namespace

class tst_PropEditsTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textRoundTrip_data();
    void textRoundTrip();
    void typedForms_data();
    void typedForms();
    void invalidText_data();
    void invalidText();
    void attributes_data();
    void attributes();
    void bitmapCursorIsReadOnly();
    void valueListsReadBack_data();
    void valueListsReadBack();
    void fontNames();
    void subProperties_data();
    void subProperties();
    void writingPartWritesParent_data();
    void writingPartWritesParent();
    void fontPartsWrittenBackChangeNothing();
    void severalObjects();
    void objectsThatDie();
    void systemColourFromEachPalette();
    void dateTimeKeepsItsTimeSpec();
    void sizePolicyKeepsHiddenParts();
    void colourDialog();
    void fontDialog();
    void stringListDialog();
    void standardStringListDialog();
    void pictures();
};

// Each value shows as its text, and that text written into an object with another value
// gives the value again.
void tst_PropEditsTypes::textRoundTrip_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("TColor named") << "color" << QVariant::fromValue(clRed) << "clRed";
    QTest::newRow("TColor system") << "color" << QVariant::fromValue(clBtnFace) << "clBtnFace";
    QTest::newRow("TColor number") << "color" << QVariant::fromValue(TColor(0x123456)) << "$00123456";
    QTest::newRow("QColor named") << "qcolor" << QVariant(QColor(255, 0, 0)) << "clRed";
    QTest::newRow("QColor number") << "qcolor" << QVariant(QColor(1, 2, 3)) << "$00030201";
    QTest::newRow("QColor half alpha") << "qcolor" << QVariant(QColor(255, 0, 0, 128)) << "#80FF0000";
    QTest::newRow("QColor transparent red") << "qcolor" << QVariant(QColor(255, 0, 0, 0)) << "#00FF0000";
    QTest::newRow("QColor transparent") << "qcolor" << QVariant(QColor(Qt::transparent)) << "clNone";
    QTest::newRow("QColor invalid") << "qcolor" << QVariant(QColor()) << "clDefault";
    QTest::newRow("cursor") << "cursor" << QVariant(QCursor(Qt::IBeamCursor)) << "IBeamCursor";
    QTest::newRow("shortcut") << "shortcut" << QVariant(QKeySequence(Qt::CTRL | Qt::Key_S)) << "Ctrl+S";
    QTest::newRow("shortcut chord") << "shortcut" << QVariant(QKeySequence(QStringLiteral("Ctrl+K, Ctrl+C")))
                                    << "Ctrl+K, Ctrl+C";
    QTest::newRow("shortcut none") << "shortcut" << QVariant(QKeySequence()) << "(None)";
    QTest::newRow("date") << "date" << QVariant(QDate(2024, 2, 29)) << "2024-02-29";
    QTest::newRow("date BC") << "date" << QVariant(QDate(-44, 3, 15)) << "-0044-03-15";
    QTest::newRow("date null") << "date" << QVariant(QDate()) << "";
    QTest::newRow("time") << "time" << QVariant(QTime(9, 5, 7)) << "09:05:07";
    QTest::newRow("time ms") << "time" << QVariant(QTime(23, 59, 59, 5)) << "23:59:59.005";
    QTest::newRow("time null") << "time" << QVariant(QTime()) << "";
    QTest::newRow("dateTime") << "dateTime" << QVariant(LocalDateTime(2024, 2, 29, 23, 59, 58, 0))
                              << "2024-02-29 23:59:58";
    QTest::newRow("dateTime ms") << "dateTime" << QVariant(LocalDateTime(2024, 2, 29, 0, 0, 0, 120))
                                 << "2024-02-29 00:00:00.120";
    QTest::newRow("items") << "items"
                           << QVariant(QStringList{QStringLiteral("a"), QStringLiteral("b c"), QStringLiteral(" d"),
                                                   QStringLiteral("e,f"), QStringLiteral("g\"h"), QString()})
                           << "a,b c,\" d\",\"e,f\",\"g\"\"h\",\"\"";
    QTest::newRow("items none") << "items" << QVariant(QStringList()) << "";
    QTest::newRow("size") << "size" << QVariant(QSize(640, 480)) << "640 x 480";
    QTest::newRow("sizeF") << "sizeF" << QVariant(QSizeF(0.1, 2.5)) << "0.1 x 2.5";
    QTest::newRow("sizeF shortest") << "sizeF" << QVariant(QSizeF(0.1 + 0.2, 16777215)) << "0.30000000000000004 x 16777215";
    QTest::newRow("point") << "point" << QVariant(QPoint(10, -20)) << "(10, -20)";
    QTest::newRow("rect") << "rect" << QVariant(QRect(1, 2, 30, 40)) << "[(1, 2), 30 x 40]";
    QTest::newRow("rectF") << "rectF" << QVariant(QRectF(0.5, -1, 1.25, 3)) << "[(0.5, -1), 1.25 x 3]";
    QTest::newRow("margins") << "margins" << QVariant::fromValue(QMargins(1, 2, 3, 4)) << "[1, 2, 3, 4]";
    QSizePolicy plain(QSizePolicy::Preferred, QSizePolicy::Fixed);
    plain.setHeightForWidth(true); // as in the holder, which the text does not change
    QTest::newRow("sizePolicy") << "sizePolicy" << QVariant(plain) << "[Preferred, Fixed, 0, 0]";
    QSizePolicy stretched(QSizePolicy::MinimumExpanding, QSizePolicy::Expanding);
    stretched.setHorizontalStretch(3);
    stretched.setVerticalStretch(255);
    stretched.setHeightForWidth(true); // as in the holder, which the text does not change
    QTest::newRow("sizePolicy stretched") << "sizePolicy" << QVariant(stretched)
                                          << "[MinimumExpanding, Expanding, 3, 255]";
}

void tst_PropEditsTypes::textRoundTrip()
{
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    QFETCH(QString, text);

    TTypesHolder shown;
    QVERIFY(shown.setProperty(property.toLatin1(), value));
    TEditorPtr reader = EditorFor({&shown}, property);
    QVERIFY(reader);
    QCOMPARE(reader->GetValue(), text);

    TCountingDesigner designer;
    TTypesHolder written;
    TEditorPtr writer = EditorFor({&written}, property, &designer);
    QCOMPARE(RaisedBy(*writer, text), QString());
    QCOMPARE(written.property(property.toLatin1()), value);
    QCOMPARE(writer->GetValue(), text);
    QCOMPARE(designer.ModifiedCount, 1);
}

// What users type besides the texts the editors show.
void tst_PropEditsTypes::typedForms_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("TColor ident any case") << "color" << " clbtnface " << QVariant::fromValue(clBtnFace);
    QTest::newRow("QColor Qt name") << "qcolor" << "red" << QVariant(QColor(Qt::red));
    QTest::newRow("QColor #RRGGBB") << "qcolor" << "#102030" << QVariant(QColor(0x10, 0x20, 0x30));
    QTest::newRow("QColor #AARRGGBB lower") << "qcolor" << "#80ff0000" << QVariant(QColor(255, 0, 0, 128));
    QTest::newRow("cursor any case") << "cursor" << "pointinghandcursor" << QVariant(QCursor(Qt::PointingHandCursor));
    QTest::newRow("shortcut lower") << "shortcut" << "ctrl+shift+f5"
                                    << QVariant(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F5));
    QTest::newRow("shortcut blanks") << "shortcut" << " Ctrl + S " << QVariant(QKeySequence(Qt::CTRL | Qt::Key_S));
    QTest::newRow("shortcut (none) any case") << "shortcut" << "(none)" << QVariant(QKeySequence());
    QTest::newRow("shortcut empty") << "shortcut" << "" << QVariant(QKeySequence());
    QTest::newRow("time without seconds") << "time" << "9:05" << QVariant(QTime(9, 5));
    QTest::newRow("time tenths") << "time" << "12:00:00.5" << QVariant(QTime(12, 0, 0, 500));
    QTest::newRow("dateTime ISO") << "dateTime" << "2024-01-02T03:04:05" << QVariant(LocalDateTime(2024, 1, 2, 3, 4, 5, 0));
    QTest::newRow("dateTime date only") << "dateTime" << "2024-01-02" << QVariant(LocalDateTime(2024, 1, 2, 0, 0, 0, 0));
    QTest::newRow("items blanks") << "items" << " a , b c ,c"
                                  << QVariant(QStringList{QStringLiteral("a"), QStringLiteral("b c"), QStringLiteral("c")});
    QTest::newRow("items quoted") << "items" << "\"x\" , \"y\"\"\""
                                  << QVariant(QStringList{QStringLiteral("x"), QStringLiteral("y\"")});
    QTest::newRow("items trailing comma") << "items" << "a,"
                                          << QVariant(QStringList{QStringLiteral("a"), QString()});
    QTest::newRow("size tight") << "size" << "640x480" << QVariant(QSize(640, 480));
    QTest::newRow("sizeF exponent") << "sizeF" << "1.5 x 2e3" << QVariant(QSizeF(1.5, 2000));
    QTest::newRow("point bare") << "point" << "10,20" << QVariant(QPoint(10, 20));
    QTest::newRow("rect no brackets") << "rect" << "(1,2), 3x4" << QVariant(QRect(1, 2, 3, 4));
    QSizePolicy policiesOnly(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policiesOnly.setHeightForWidth(true);
    QTest::newRow("sizePolicy policies only") << "sizePolicy" << "expanding, minimum" << QVariant(policiesOnly);
}

void tst_PropEditsTypes::typedForms()
{
    QFETCH(QString, property);
    QFETCH(QString, text);
    QFETCH(QVariant, value);

    TTypesHolder holder;
    TEditorPtr editor = EditorFor({&holder}, property);
    QVERIFY(editor);
    QCOMPARE(RaisedBy(*editor, text), QString());
    QCOMPARE(holder.property(property.toLatin1()), value);
}

// Text that makes no value raises a message naming it, and nothing is written.
void tst_PropEditsTypes::invalidText_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");

    QTest::newRow("TColor") << "color" << "clNoSuch" << "'clNoSuch' is not a valid colour value";
    QTest::newRow("QColor") << "qcolor" << "#12" << "'#12' is not a valid colour value";
    QTest::newRow("cursor unknown") << "cursor" << "Hand" << "'Hand' is not a valid cursor value";
    QTest::newRow("cursor bitmap") << "cursor" << "BitmapCursor" << "'BitmapCursor' is not a valid cursor value";
    QTest::newRow("shortcut") << "shortcut" << "Ctrl+Foo" << "'Ctrl+Foo' is not a valid shortcut value";
    QTest::newRow("date not in calendar") << "date" << "2023-02-29" << "'2023-02-29' is not a valid date value";
    QTest::newRow("time") << "time" << "25:00" << "'25:00' is not a valid time value";
    QTest::newRow("dateTime") << "dateTime" << "2024-01-01 noon"
                              << "'2024-01-01 noon' is not a valid date and time value";
    QTest::newRow("items open quote") << "items" << "a,\"b" << "'a,\"b' is not a valid string list value";
    QTest::newRow("items text after quote") << "items" << "\"a\"b" << "'\"a\"b' is not a valid string list value";
    QTest::newRow("size word") << "size" << "abc" << "'abc' is not a valid size value";
    QTest::newRow("size one number") << "size" << "640 x" << "'640 x' is not a valid size value";
    QTest::newRow("size overflow") << "size" << "99999999999 x 1" << "'99999999999 x 1' is not a valid size value";
    QTest::newRow("point") << "point" << "(1; 2)" << "'(1; 2)' is not a valid point value";
    QTest::newRow("rect") << "rect" << "[(1, 2), 3]" << "'[(1, 2), 3]' is not a valid rectangle value";
    QTest::newRow("rectF") << "rectF" << "[(a, 2), 3 x 4]" << "'[(a, 2), 3 x 4]' is not a valid rectangle value";
    QTest::newRow("margins") << "margins" << "[1, 2, 3]" << "'[1, 2, 3]' is not a valid margins value";
    QTest::newRow("sizePolicy key") << "sizePolicy" << "[Huge, Fixed]" << "'[Huge, Fixed]' is not a valid size policy value";
    QTest::newRow("sizePolicy stretch") << "sizePolicy" << "[Fixed, Fixed, 256, 0]" << "Value must be between 0 and 255";
}

void tst_PropEditsTypes::invalidText()
{
    QFETCH(QString, property);
    QFETCH(QString, text);
    QFETCH(QString, message);

    TCountingDesigner designer;
    TTypesHolder holder;
    const QVariant before = holder.property(property.toLatin1());
    TEditorPtr editor = EditorFor({&holder}, property, &designer);
    QVERIFY(editor);
    QCOMPARE(RaisedBy(*editor, text), message);
    QCOMPARE(holder.property(property.toLatin1()), before);
    QCOMPARE(designer.ModifiedCount, 0);
}

void tst_PropEditsTypes::attributes_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<TPropertyAttributes>("attributes");

    const TPropertyAttributes common = paMultiSelect | paRevertable;
    QTest::newRow("TColor") << "color" << (common | paValueList | paDialog);
    QTest::newRow("QColor") << "qcolor" << (common | paValueList | paDialog);
    QTest::newRow("QColor read-only") << "fixedColor" << (common | paValueList | paReadOnly);
    QTest::newRow("font") << "font" << TPropertyAttributes(paMultiSelect | paSubProperties | paReadOnly | paDialog);
    QTest::newRow("cursor") << "cursor" << (common | paValueList);
    QTest::newRow("date") << "date" << common;
    QTest::newRow("items") << "items" << (common | paDialog);
    QTest::newRow("size") << "size" << (common | paSubProperties);
    QTest::newRow("size read-only") << "fixedSize" << (common | paSubProperties | paReadOnly);
    QTest::newRow("sizePolicy") << "sizePolicy" << (common | paSubProperties);
}

void tst_PropEditsTypes::attributes()
{
    QFETCH(QString, property);
    QFETCH(TPropertyAttributes, attributes);

    TTypesHolder holder;
    TEditorPtr editor = EditorFor({&holder}, property);
    QVERIFY(editor);
    QCOMPARE(editor->GetAttributes(), attributes);
}

void tst_PropEditsTypes::bitmapCursorIsReadOnly()
{
    TTypesHolder plain;
    TTypesHolder bitmap;
    QPixmap picture(16, 16);
    picture.fill(Qt::black);
    bitmap.m_cursor = QCursor(picture);

    TEditorPtr editor = EditorFor({&bitmap}, QStringLiteral("cursor"));
    QCOMPARE(editor->GetValue(), QStringLiteral("BitmapCursor"));
    QVERIFY(editor->GetAttributes().testFlag(paReadOnly));
    // Its own text written back changes nothing.
    editor->SetValue(editor->GetValue());
    QCOMPARE(bitmap.m_cursor.shape(), Qt::BitmapCursor);
    // The shown value decides; a shape chosen for several replaces a bitmap among them.
    TEditorPtr both = EditorFor({&plain, &bitmap}, QStringLiteral("cursor"));
    QVERIFY(!both->GetAttributes().testFlag(paReadOnly));
    QVERIFY(!both->AllEqual());
    both->SetValue(QStringLiteral("IBeamCursor"));
    QCOMPARE(bitmap.m_cursor.shape(), Qt::IBeamCursor);
    QVERIFY(!EditorFor({&plain}, QStringLiteral("cursor"))->GetAttributes().testFlag(paReadOnly));
}

// Every entry of a value list is accepted and reads back as itself.
void tst_PropEditsTypes::valueListsReadBack_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QStringList>("expectedStart");
    QTest::addColumn<QStringList>("excluded");

    QStringList colors;
    GetColorValues([&](const QString &Ident) { colors.append(Ident); });
    QTest::newRow("TColor") << "color" << colors << QStringList();
    QTest::newRow("QColor") << "qcolor" << colors << QStringList();
    QTest::newRow("cursor") << "cursor"
                            << QStringList{QStringLiteral("ArrowCursor"), QStringLiteral("UpArrowCursor"),
                                           QStringLiteral("CrossCursor")}
                            << QStringList{QStringLiteral("BitmapCursor"), QStringLiteral("CustomCursor"),
                                           QStringLiteral("LastCursor")};
    QTest::newRow("shortcut") << "shortcut"
                              << QStringList{QStringLiteral("(None)"), QStringLiteral("Ctrl+A"), QStringLiteral("Ctrl+B")}
                              << QStringList();
}

void tst_PropEditsTypes::valueListsReadBack()
{
    QFETCH(QString, property);
    QFETCH(QStringList, expectedStart);
    QFETCH(QStringList, excluded);

    TTypesHolder holder;
    TEditorPtr editor = EditorFor({&holder}, property);
    const QStringList values = ValuesOf(*editor);
    QCOMPARE(values.mid(0, expectedStart.size()), expectedStart);
    QCOMPARE(QStringList(values).removeDuplicates(), 0);
    for (const QString &value : values) {
        QVERIFY2(!excluded.contains(value), qPrintable(value));
        // QColor can't hold what clDefault and clNone mean apart from their QColor values,
        // and system colours resolve to plain ones.
        if (property == QLatin1String("qcolor"))
            continue;
        editor->SetValue(value);
        QCOMPARE(editor->GetValue(), value);
    }
}

void tst_PropEditsTypes::fontNames()
{
    TTypesHolder holder;
    TEditorPtr font = EditorFor({&holder}, QStringLiteral("font"));
    TEditorPtr name = SubEditor(*font, QStringLiteral("Name"));
    QVERIFY(name);
    QVERIFY(dynamic_cast<TFontNameProperty *>(name.get()));
    QVERIFY(name->GetAttributes().testFlag(paValueList));
    QCOMPARE(ValuesOf(*name), QFontDatabase::families());
    name->SetValue(QStringLiteral("Courier"));
    QCOMPARE(holder.m_font.family(), QStringLiteral("Courier"));
    QCOMPARE(holder.m_font.pointSize(), 31);
}

void tst_PropEditsTypes::subProperties_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QStringList>("parts");

    QTest::newRow("size") << "size" << QStringList{QStringLiteral("Width=9"), QStringLiteral("Height=9")};
    QTest::newRow("sizeF") << "sizeF" << QStringList{QStringLiteral("Width=9.5"), QStringLiteral("Height=9.5")};
    QTest::newRow("point") << "point" << QStringList{QStringLiteral("X=9"), QStringLiteral("Y=9")};
    QTest::newRow("rect") << "rect"
                          << QStringList{QStringLiteral("X=9"), QStringLiteral("Y=9"), QStringLiteral("Width=9"),
                                         QStringLiteral("Height=9")};
    QTest::newRow("margins") << "margins"
                             << QStringList{QStringLiteral("Left=9"), QStringLiteral("Top=9"),
                                            QStringLiteral("Right=9"), QStringLiteral("Bottom=9")};
    QTest::newRow("sizePolicy") << "sizePolicy"
                                << QStringList{QStringLiteral("HorizontalPolicy=Ignored"),
                                               QStringLiteral("VerticalPolicy=Ignored"),
                                               QStringLiteral("HorizontalStretch=0"),
                                               QStringLiteral("VerticalStretch=0"),
                                               QStringLiteral("HeightForWidth=True"),
                                               QStringLiteral("WidthForHeight=False"),
                                               QStringLiteral("RetainSizeWhenHidden=False")};
    const QFont font = TTypesHolder().m_font;
    QTest::newRow("font") << "font"
                          << QStringList{QStringLiteral("Name=") + font.family(), QStringLiteral("Size=31"),
                                         QStringLiteral("Style=[]"), QStringLiteral("Weight=400"),
                                         QStringLiteral("PixelSize=-1"), QStringLiteral("Stretch=0"),
                                         QStringLiteral("Kerning=True"), QStringLiteral("Overline=False"),
                                         QStringLiteral("FixedPitch=False")};
}

void tst_PropEditsTypes::subProperties()
{
    QFETCH(QString, property);
    QFETCH(QStringList, parts);

    TTypesHolder holder;
    TEditorPtr editor = EditorFor({&holder}, property);
    QStringList shown;
    for (const TEditorPtr &sub : SubEditors(*editor))
        shown.append(sub->GetName() + QLatin1Char('=') + sub->GetValue());
    QCOMPARE(shown, parts);
}

// A part is written through the whole value: the other parts stay, the designer hears of it.
void tst_PropEditsTypes::writingPartWritesParent_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("size width") << "size" << "Width" << "100" << QVariant(QSize(100, 9));
    QTest::newRow("sizeF height") << "sizeF" << "Height" << "2.25" << QVariant(QSizeF(9.5, 2.25));
    QTest::newRow("rect x moves") << "rect" << "X" << "0" << QVariant(QRect(0, 9, 9, 9));
    QTest::newRow("rect height") << "rect" << "Height" << "1" << QVariant(QRect(9, 9, 9, 1));
    QTest::newRow("rectF y moves") << "rectF" << "Y" << "0" << QVariant(QRectF(9.5, 0, 9.5, 9.5));
    QTest::newRow("margins bottom") << "margins" << "Bottom" << "0" << QVariant::fromValue(QMargins(9, 9, 9, 0));
    QSizePolicy vertical(QSizePolicy::Ignored, QSizePolicy::Expanding);
    vertical.setHeightForWidth(true);
    QTest::newRow("sizePolicy vertical") << "sizePolicy" << "VerticalPolicy" << "Expanding" << QVariant(vertical);
    QSizePolicy stretched(QSizePolicy::Ignored, QSizePolicy::Ignored);
    stretched.setHeightForWidth(true);
    stretched.setHorizontalStretch(7);
    QTest::newRow("sizePolicy stretch") << "sizePolicy" << "HorizontalStretch" << "7" << QVariant(stretched);
    QFont sized = TTypesHolder().m_font;
    sized.setPointSize(20);
    QTest::newRow("font size") << "font" << "Size" << "20" << QVariant(sized);
    QFont styled = TTypesHolder().m_font;
    styled.setBold(true);
    styled.setStrikeOut(true);
    QTest::newRow("font style") << "font" << "Style" << "[fsBold,fsStrikeOut]" << QVariant(styled);
}

void tst_PropEditsTypes::writingPartWritesParent()
{
    QFETCH(QString, property);
    QFETCH(QString, part);
    QFETCH(QString, text);
    QFETCH(QVariant, value);

    TCountingDesigner designer;
    TTypesHolder holder;
    TEditorPtr editor = EditorFor({&holder}, property, &designer);
    TEditorPtr sub = SubEditor(*editor, part);
    QVERIFY(sub);
    sub->SetValue(text);
    QCOMPARE(holder.property(property.toLatin1()), value);
    QCOMPARE(sub->GetValue(), text);
    QCOMPARE(designer.ModifiedCount, 1);
}

// Writing back the text of a font part leaves what the part does not show: a fraction of a
// point, a weight between normal and bold.
void tst_PropEditsTypes::fontPartsWrittenBackChangeNothing()
{
    TTypesHolder holder;
    holder.m_font.setPointSizeF(10.5);
    holder.m_font.setWeight(QFont::DemiBold);
    const QFont before = holder.m_font;
    TEditorPtr font = EditorFor({&holder}, QStringLiteral("font"));
    for (const TEditorPtr &part : SubEditors(*font)) {
        part->SetValue(part->GetValue());
        QVERIFY2(holder.m_font == before, qPrintable(part->GetName()));
        QCOMPARE(holder.m_font.pointSizeF(), 10.5);
        QCOMPARE(holder.m_font.weight(), QFont::DemiBold);
    }
    // The Style's elements are set editors of their own.
    TEditorPtr style = SubEditor(*font, QStringLiteral("Style"));
    QVERIFY(style);
    TEditorPtr italic = SubEditor(*style, QStringLiteral("fsItalic"));
    QVERIFY(italic);
    italic->SetValue(QStringLiteral("True"));
    QVERIFY(holder.m_font.italic());
    QCOMPARE(holder.m_font.weight(), QFont::DemiBold);
}

void tst_PropEditsTypes::severalObjects()
{
    TCountingDesigner designer;
    TTypesHolder first;
    TTypesHolder second;
    const QList<QObject *> both{&first, &second};

    for (const char *name : {"qcolor", "cursor", "shortcut", "dateTime", "items", "rectF", "sizePolicy"}) {
        TEditorPtr editor = EditorFor(both, QString::fromLatin1(name), &designer);
        QVERIFY2(editor, name);
        QVERIFY2(editor->AllEqual(), name);
    }

    second.m_size = QSize(1, 2);
    second.m_qcolor = QColor(7, 7, 8);
    second.m_dateTime = second.m_dateTime.addMSecs(1);
    for (const char *name : {"size", "qcolor", "dateTime"}) {
        TEditorPtr editor = EditorFor(both, QString::fromLatin1(name), &designer);
        QVERIFY2(!editor->AllEqual(), name);
        QCOMPARE(editor->GetValue(), EditorFor({&first}, QString::fromLatin1(name))->GetValue());
    }

    designer.ModifiedCount = 0;
    EditorFor(both, QStringLiteral("size"), &designer)->SetValue(QStringLiteral("3 x 4"));
    QCOMPARE(first.m_size, QSize(3, 4));
    QCOMPARE(second.m_size, QSize(3, 4));
    QCOMPARE(designer.ModifiedCount, 1);

    // A part of several objects is written into each, keeping each one's other parts.
    first.m_rect = QRect(1, 1, 10, 10);
    second.m_rect = QRect(2, 2, 20, 20);
    TEditorPtr rect = EditorFor(both, QStringLiteral("rect"), &designer);
    QVERIFY(!rect->AllEqual());
    TEditorPtr width = SubEditor(*rect, QStringLiteral("Width"));
    QVERIFY(width);
    width->SetValue(QStringLiteral("5"));
    QCOMPARE(first.m_rect, QRect(1, 1, 5, 10));
    QCOMPARE(second.m_rect, QRect(2, 2, 5, 20));
}

// An object destroyed while its editor is shown reads as nothing and is left out of writes.
void tst_PropEditsTypes::objectsThatDie()
{
    auto first = std::make_unique<TTypesHolder>();
    TTypesHolder second;
    const QList<QObject *> both{first.get(), &second};
    const char *const properties[] = {"color",    "qcolor", "font",  "cursor", "shortcut", "date",
                                      "dateTime", "items",  "size",  "rect",   "sizePolicy"};
    std::vector<TEditorPtr> editors;
    for (const char *name : properties)
        editors.push_back(EditorFor(both, QString::fromLatin1(name)));
    first.reset();
    for (const TEditorPtr &editor : editors) {
        QVERIFY2(editor->GetValue().isEmpty(), qPrintable(editor->GetName()));
        QVERIFY2(editor->AllEqual(), qPrintable(editor->GetName()));
        QVERIFY(!editor->ValueAvailable());
        for (const TEditorPtr &sub : SubEditors(*editor))
            QVERIFY(sub->GetValue().isEmpty());
    }
    editors[8]->SetValue(QStringLiteral("5 x 6"));
    QCOMPARE(second.m_size, QSize(5, 6));
    editors[10]->SetValue(QStringLiteral("[Fixed, Fixed]"));
    QCOMPARE(second.m_sizePolicy.horizontalPolicy(), QSizePolicy::Fixed);
    editors[1]->SetValue(QStringLiteral("clBtnFace"));
    QCOMPARE(second.m_qcolor, QGuiApplication::palette().color(QPalette::Button));
}

void tst_PropEditsTypes::systemColourFromEachPalette()
{
    TTintedWidget plain;
    TTintedWidget custom;
    QPalette palette = custom.palette();
    palette.setColor(QPalette::Button, QColor(1, 2, 3));
    custom.setPalette(palette);
    TTypesHolder holder; // no palette of its own: the application's

    TEditorPtr tint = EditorFor({&plain, &custom}, QStringLiteral("tint"));
    tint->SetValue(QStringLiteral("clBtnFace"));
    QCOMPARE(plain.m_tint, plain.palette().color(QPalette::Button));
    QCOMPARE(custom.m_tint, QColor(1, 2, 3));
    QVERIFY(!tint->AllEqual());

    EditorFor({&holder}, QStringLiteral("qcolor"))->SetValue(QStringLiteral("clBtnFace"));
    QCOMPARE(holder.m_qcolor, QGuiApplication::palette().color(QPalette::Button));
}

void tst_PropEditsTypes::dateTimeKeepsItsTimeSpec()
{
    TTypesHolder holder;
    const QDateTime utc(QDate(2024, 6, 1), QTime(12, 0, 0, 250), Qt::UTC);
    holder.m_dateTime = utc;
    TEditorPtr editor = EditorFor({&holder}, QStringLiteral("dateTime"));
    QCOMPARE(editor->GetValue(), QStringLiteral("2024-06-01 12:00:00.250"));
    editor->SetValue(editor->GetValue());
    QCOMPARE(holder.m_dateTime, utc);
    QCOMPARE(holder.m_dateTime.timeSpec(), Qt::UTC);

    const QDateTime offset(QDate(2024, 6, 1), QTime(12, 0), Qt::OffsetFromUTC, 3600);
    holder.m_dateTime = offset;
    editor->SetValue(QStringLiteral("2024-06-01 13:00:00"));
    QCOMPARE(holder.m_dateTime.offsetFromUtc(), 3600);
    QCOMPARE(holder.m_dateTime, offset.addSecs(3600));
}

// Typing a size policy changes the policies and stretches of each object and nothing else.
void tst_PropEditsTypes::sizePolicyKeepsHiddenParts()
{
    TTypesHolder first;
    TTypesHolder second;
    first.m_sizePolicy.setRetainSizeWhenHidden(true);
    second.m_sizePolicy.setHeightForWidth(false);
    second.m_sizePolicy.setWidthForHeight(true);
    EditorFor({&first, &second}, QStringLiteral("sizePolicy"))->SetValue(QStringLiteral("[Fixed, Maximum, 1, 2]"));
    for (const TTypesHolder *holder : {&first, &second}) {
        QCOMPARE(holder->m_sizePolicy.horizontalPolicy(), QSizePolicy::Fixed);
        QCOMPARE(holder->m_sizePolicy.verticalPolicy(), QSizePolicy::Maximum);
        QCOMPARE(holder->m_sizePolicy.horizontalStretch(), 1);
        QCOMPARE(holder->m_sizePolicy.verticalStretch(), 2);
    }
    QVERIFY(first.m_sizePolicy.retainSizeWhenHidden());
    QVERIFY(first.m_sizePolicy.hasHeightForWidth());
    QVERIFY(second.m_sizePolicy.hasWidthForHeight());
    QVERIFY(!second.m_sizePolicy.hasHeightForWidth());
}

void tst_PropEditsTypes::colourDialog()
{
    TCountingDesigner designer;
    TTypesHolder first;
    TTypesHolder second;
    first.m_color = clBtnFace;
    QColor offered;
    bool confirm = false;
    TColorHookGuard guard([&](QColor &Color) {
        offered = Color;
        Color = QColor(0x10, 0x20, 0x30);
        return confirm;
    });

    TEditorPtr color = EditorFor({&first, &second}, QStringLiteral("color"), &designer);
    color->Edit();
    // The dialog starts from the colour a system colour stands for.
    QCOMPARE(offered, QGuiApplication::palette().color(QPalette::Button));
    QCOMPARE(first.m_color, clBtnFace);
    QCOMPARE(designer.ModifiedCount, 0);

    confirm = true;
    color->Edit();
    QCOMPARE(first.m_color, TColor(0x302010));
    QCOMPARE(second.m_color, TColor(0x302010));
    QCOMPARE(designer.ModifiedCount, 1);

    first.m_qcolor = QColor(1, 2, 3, 4);
    EditorFor({&first}, QStringLiteral("qcolor"))->Edit();
    QCOMPARE(offered, QColor(1, 2, 3, 4));
    QCOMPARE(first.m_qcolor, QColor(0x10, 0x20, 0x30));
}

void tst_PropEditsTypes::fontDialog()
{
    TCountingDesigner designer;
    TTypesHolder first;
    TTypesHolder second;
    second.m_font.setPointSize(8);
    QFont offered;
    bool confirm = false;
    TFontHookGuard guard([&](QFont &Font) {
        offered = Font;
        Font.setItalic(true);
        return confirm;
    });

    TEditorPtr font = EditorFor({&first, &second}, QStringLiteral("font"), &designer);
    font->Edit();
    QCOMPARE(offered, first.m_font);
    QVERIFY(!first.m_font.italic());
    QCOMPARE(second.m_font.pointSize(), 8);
    QCOMPARE(designer.ModifiedCount, 0);

    confirm = true;
    font->Edit();
    QVERIFY(first.m_font.italic());
    QCOMPARE(second.m_font, first.m_font);
    QCOMPARE(designer.ModifiedCount, 1);
}

void tst_PropEditsTypes::stringListDialog()
{
    TCountingDesigner designer;
    TTypesHolder first;
    TTypesHolder second;
    first.m_items = {QStringLiteral("one"), QStringLiteral("two")};
    QStringList offered;
    QString caption;
    bool confirm = false;
    TStringListHookGuard guard([&](QStringList &Lines, const QString &Caption) {
        offered = Lines;
        caption = Caption;
        Lines = {QStringLiteral("a, b"), QString()};
        return confirm;
    });

    TEditorPtr items = EditorFor({&first, &second}, QStringLiteral("items"), &designer);
    items->Edit();
    QCOMPARE(offered, first.m_items);
    QCOMPARE(caption, QStringLiteral("holder.items"));
    QCOMPARE(second.m_items, QStringList{QStringLiteral("seed")});
    QCOMPARE(designer.ModifiedCount, 0);

    confirm = true;
    items->Edit();
    const QStringList expected{QStringLiteral("a, b"), QString()};
    QCOMPARE(first.m_items, expected);
    QCOMPARE(second.m_items, expected);
    QCOMPARE(items->GetValue(), QStringLiteral("\"a, b\",\"\""));
    QCOMPARE(designer.ModifiedCount, 1);
}

// The dialog shown without a hook: one entry per line, empty entries kept, the line count in
// the title.
void tst_PropEditsTypes::standardStringListDialog()
{
    TStringListHookGuard standard{TStringListDialogHook()};
    QString title;
    // Answers the dialog once it is shown: types Text (unless null) and accepts or rejects.
    const auto answer = [&title](const QString &Text, bool Accept) {
        QTimer::singleShot(0, [&title, Text, Accept] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            title = dialog->windowTitle();
            if (!Text.isNull())
                dialog->findChild<QPlainTextEdit *>()->setPlainText(Text);
            Accept ? dialog->accept() : dialog->reject();
        });
    };

    QStringList lines{QStringLiteral("a"), QString(), QString()};
    answer(QString(), true);
    QVERIFY(ExecuteStringListDialog(lines, QStringLiteral("holder.items")));
    QCOMPARE(lines, (QStringList{QStringLiteral("a"), QString(), QString()}));
    QCOMPARE(title, QStringLiteral("Editing holder.items (3 lines)"));

    answer(QStringLiteral("x\ny\n"), true);
    QVERIFY(ExecuteStringListDialog(lines, QStringLiteral("holder.items")));
    QCOMPARE(lines, (QStringList{QStringLiteral("x"), QStringLiteral("y")}));

    answer(QStringLiteral("z"), false);
    QVERIFY(!ExecuteStringListDialog(lines, QString()));
    QCOMPARE(lines, (QStringList{QStringLiteral("x"), QStringLiteral("y")}));
    QCOMPARE(title, QStringLiteral("Editing String list editor (2 lines)"));
}

// Pictures load from files, clear with "(None)", keep their picture when their own text is
// written back, and come from the picture dialog.
void tst_PropEditsTypes::pictures()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString file = dir.filePath(QStringLiteral("red.png"));
    QImage red(12, 8, QImage::Format_ARGB32);
    red.fill(Qt::red);
    QVERIFY(red.save(file));

    TPictureHolder holder;
    TCountingDesigner designer;
    const TEditors editors = EditorsOf({&holder}, &designer, TTypeKinds::Properties());
    TPropertyEditor *pixmap = Find(editors, QStringLiteral("pixmap"));
    TPropertyEditor *image = Find(editors, QStringLiteral("image"));
    TPropertyEditor *icon = Find(editors, QStringLiteral("icon"));
    QVERIFY(pixmap && image && icon);
    QCOMPARE(pixmap->GetValue(), QStringLiteral("(None)"));
    QCOMPARE(pixmap->GetAttributes(), paMultiSelect | paRevertable | paDialog);

    pixmap->SetValue(file);
    image->SetValue(file);
    icon->SetValue(file);
    QCOMPARE(holder.m_pixmap.size(), QSize(12, 8));
    QCOMPARE(holder.m_image.pixelColor(0, 0), QColor(Qt::red));
    QVERIFY(!holder.m_icon.isNull());
    QCOMPARE(pixmap->GetValue(), QStringLiteral("(QPixmap 12 x 8)"));
    QCOMPARE(image->GetValue(), QStringLiteral("(QImage 12 x 8)"));
    QCOMPARE(icon->GetValue(), QStringLiteral("(QIcon)"));
    QCOMPARE(designer.ModifiedCount, 3);

    // Its own text is no file name: the picture stays, nothing is written.
    const qint64 key = holder.m_pixmap.cacheKey();
    pixmap->SetValue(pixmap->GetValue());
    QCOMPARE(holder.m_pixmap.cacheKey(), key);
    QCOMPARE(designer.ModifiedCount, 3);

    const QString missing = dir.filePath(QStringLiteral("missing.png"));
    QCOMPARE(RaisedBy(*pixmap, missing), QStringLiteral("'%1' is not a valid picture value").arg(missing));
    QCOMPARE(holder.m_pixmap.cacheKey(), key);

    // Two objects share a picture only when it is the same one.
    TPictureHolder other;
    other.m_pixmap = holder.m_pixmap;
    TEditorPtr both = EditorFor({&holder, &other}, QStringLiteral("pixmap"));
    QVERIFY(both->AllEqual());
    other.m_pixmap = QPixmap(12, 8);
    QVERIFY(!both->AllEqual());

    pixmap->SetValue(QStringLiteral("(None)"));
    icon->SetValue(QString());
    QVERIFY(holder.m_pixmap.isNull());
    QVERIFY(holder.m_icon.isNull());

    // The dialog: cancelled changes nothing, confirmed loads the file chosen.
    QString chosen;
    const auto previous = SetPictureDialogHook([&chosen](QString &FileName) {
        FileName = chosen;
        return !chosen.isEmpty();
    });
    image->SetValue(QString());
    image->Edit();
    QVERIFY(holder.m_image.isNull());
    chosen = file;
    image->Edit();
    QCOMPARE(holder.m_image.size(), QSize(12, 8));
    SetPictureDialogHook(previous);
}

QTEST_MAIN(tst_PropEditsTypes)
#include "tst_propedits_types.moc"
