#include "tests/platform/editortests.h"
#include "platform/kvPropEdits_types.h"

#include "platform/kvColor.h"
#include "platform/kvDesignDialogs.h"

#include <QtTest>
#include <QtWidgets>

#include <memory>

using namespace kv;
using namespace kv::test;

Q_DECLARE_METATYPE(kv::TPropertyAttributes)

// One property of every type that the editors under test handle, and a read-only one.
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
    Q_PROPERTY(QPixmap pixmap READ pixmap WRITE setPixmap)
    Q_PROPERTY(QImage image MEMBER m_image)
    Q_PROPERTY(QIcon icon READ icon WRITE setIcon)
    Q_PROPERTY(QColor fixedColor READ fixedColor)

public:
    // Values that no test row uses, so that writing a row's text has something to change.
    TTypesHolder()
    {
        setObjectName(QStringLiteral("holder"));
        m_font.setPointSizeF(10.5);
        m_font.setWeight(QFont::DemiBold);
        m_dateTime = QDateTime(QDate(1999, 9, 9), QTime(9, 9, 9));
        m_sizePolicy.setHeightForWidth(true);
    }
    QPixmap pixmap() const { return m_pixmap; }
    void setPixmap(const QPixmap &Pixmap) { m_pixmap = Pixmap; }
    QIcon icon() const { return m_icon; }
    void setIcon(const QIcon &Icon) { m_icon = Icon; }
    QColor fixedColor() const { return Qt::blue; }

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

TEditorPtr EditorFor(const QList<QObject *> &Objects, const QString &Name, IFormDesigner *Designer = nullptr)
{
    return Take(EditorsOf(Objects, Designer), Name);
}

TEditorPtr SubEditor(const TPropertyEditor &Editor, const QString &Name)
{
    return Take(SubEditors(Editor), Name);
}

// Puts a dialog hook in place until the guard that it returns goes, then the one before.
template <typename THook>
auto HookedBy(THook (*Set)(THook), std::type_identity_t<THook> Hook)
{
    return qScopeGuard([Set, previous = Set(std::move(Hook))] { Set(previous); });
}

// A row of texts(): Text makes Value, and the editor then shows Shown (Text itself when none
// is given).
void Takes(const char *Property, const char *Text, const QVariant &Value, const char *Shown = nullptr)
{
    QTest::addRow("%s: %s", Property, Text) << QString::fromLatin1(Property) << QString::fromUtf8(Text) << Value
                                            << QString::fromUtf8(Shown ? Shown : Text);
}

// A row of texts(): Text makes no value and raises Message.
void Refuses(const char *Property, const char *Text, const char *Message)
{
    QTest::addRow("%s refuses %s", Property, Text) << QString::fromLatin1(Property) << QString::fromUtf8(Text) << QVariant()
                                                   << QString::fromUtf8(Message);
}

} // namespace

class tst_PropEditsTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void texts_data();
    void texts();
    void attributesAndValueLists_data();
    void attributesAndValueLists();
    void parts_data();
    void parts();
    void fontParts();
    void severalObjects();
    void objectsThatDie();
    void dateTimeKeepsItsTimeSpec();
    void dialogs_data();
    void dialogs();
    void standardStringListDialog();
    void pictures();
};

void tst_PropEditsTypes::texts_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("shown");

    Takes("color", " clbtnface ", QVariant::fromValue(clBtnFace), "clBtnFace");
    Refuses("color", "clNoSuch", "'clNoSuch' is not a valid colour value");
    // QColor: opaque colours as the platform writes them, clNone for transparent black,
    // clDefault for no colour, any other transparency as "#AARRGGBB".
    Takes("qcolor", "$00030201", QVariant(QColor(1, 2, 3)));
    Takes("qcolor", "#80ff0000", QVariant(QColor(255, 0, 0, 128)), "#80FF0000");
    Takes("qcolor", "#00FF0000", QVariant(QColor(255, 0, 0, 0)));
    Takes("qcolor", "clNone", QVariant(QColor(Qt::transparent)));
    Takes("qcolor", "clDefault", QVariant(QColor()));
    Refuses("qcolor", "#12", "'#12' is not a valid colour value");
    Takes("cursor", "pointinghandcursor", QVariant(QCursor(Qt::PointingHandCursor)), "PointingHandCursor");
    Refuses("cursor", "Hand", "'Hand' is not a valid cursor value");
    Refuses("cursor", "BitmapCursor", "'BitmapCursor' is not a valid cursor value");
    Takes("shortcut", "Ctrl+K, Ctrl+C", QVariant(QKeySequence(QStringLiteral("Ctrl+K, Ctrl+C"))));
    Takes("shortcut", " Ctrl + S ", QVariant(QKeySequence(Qt::CTRL | Qt::Key_S)), "Ctrl+S");
    Takes("shortcut", "(none)", QVariant(QKeySequence()), "(None)");
    Takes("shortcut", "", QVariant(QKeySequence()), "(None)");
    Refuses("shortcut", "Ctrl+Foo", "'Ctrl+Foo' is not a valid shortcut value");
    Takes("date", "-0044-03-15", QVariant(QDate(-44, 3, 15)));
    Takes("date", "", QVariant(QDate()));
    Refuses("date", "2023-02-29", "'2023-02-29' is not a valid date value");
    Takes("time", "23:59:59.005", QVariant(QTime(23, 59, 59, 5)));
    Takes("time", "9:05", QVariant(QTime(9, 5)), "09:05:00");
    Takes("time", "12:00:00.5", QVariant(QTime(12, 0, 0, 500)), "12:00:00.500");
    Takes("time", "", QVariant(QTime()));
    Refuses("time", "25:00", "'25:00' is not a valid time value");
    Takes("dateTime", "2024-01-02T03:04:05", QVariant(QDateTime(QDate(2024, 1, 2), QTime(3, 4, 5))),
          "2024-01-02 03:04:05");
    Takes("dateTime", "2024-01-02", QVariant(QDateTime(QDate(2024, 1, 2), QTime(0, 0))), "2024-01-02 00:00:00");
    Refuses("dateTime", "2024-01-01 noon", "'2024-01-01 noon' is not a valid date and time value");
    Takes("items", "a,b c,\" d\",\"e,f\",\"g\"\"h\",\"\"",
          QVariant(Strings({"a", "b c", " d", "e,f", "g\"h", ""})));
    // Blanks around entries, a doubled quote, a comma at the end.
    Takes("items", " a , \"y\"\"\" ,", QVariant(Strings({"a", "y\"", ""})),
          "a,\"y\"\"\",\"\"");
    Takes("items", "", QVariant(QStringList()));
    Refuses("items", "a,\"b", "'a,\"b' is not a valid string list value");
    Refuses("items", "\"a\"b", "'\"a\"b' is not a valid string list value");
    // Value classes: blanks anywhere, brackets where they are optional.
    Takes("size", "640x480", QVariant(QSize(640, 480)), "640 x 480");
    Refuses("size", "640 x", "'640 x' is not a valid size value");
    Refuses("size", "99999999999 x 1", "'99999999999 x 1' is not a valid size value");
    Takes("sizeF", "0.30000000000000004 x 16777215", QVariant(QSizeF(0.1 + 0.2, 16777215)));
    Takes("point", "(10, -20)", QVariant(QPoint(10, -20)));
    Takes("point", "10,20", QVariant(QPoint(10, 20)), "(10, 20)");
    Refuses("point", "(1; 2)", "'(1; 2)' is not a valid point value");
    Takes("rect", "[(1, 2), 30 x 40]", QVariant(QRect(1, 2, 30, 40)));
    Takes("rect", "(1,2), 3x4", QVariant(QRect(1, 2, 3, 4)), "[(1, 2), 3 x 4]");
    Takes("rectF", "[(0.5, -1), 1.25 x 3]", QVariant(QRectF(0.5, -1, 1.25, 3)));
    Refuses("rectF", "[(a, 2), 3 x 4]", "'[(a, 2), 3 x 4]' is not a valid rectangle value");
    Takes("margins", "[1, 2, 3, 4]", QVariant::fromValue(QMargins(1, 2, 3, 4)));
    Refuses("margins", "[1, 2, 3]", "'[1, 2, 3]' is not a valid margins value");
    // Height for width as in the holder: the text does not change it.
    QSizePolicy stretched(QSizePolicy::MinimumExpanding, QSizePolicy::Expanding);
    stretched.setHorizontalStretch(3);
    stretched.setVerticalStretch(255);
    stretched.setHeightForWidth(true);
    Takes("sizePolicy", "[MinimumExpanding, Expanding, 3, 255]", QVariant(stretched));
    QSizePolicy policiesOnly(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policiesOnly.setHeightForWidth(true);
    Takes("sizePolicy", "expanding, minimum", QVariant(policiesOnly), "[Expanding, Minimum, 0, 0]");
    Refuses("sizePolicy", "[Huge, Fixed]", "'[Huge, Fixed]' is not a valid size policy value");
    Refuses("sizePolicy", "[Fixed, Fixed, 256, 0]", "Value must be between 0 and 255");
    Refuses("image", "/no/such/picture.png", "'/no/such/picture.png' is not a valid picture value");
}

// Text written into an object gives the row's value, shows as the row's text and tells the
// designer once; text that makes no value raises the row's message and writes nothing.
void tst_PropEditsTypes::texts()
{
    QFETCH(QString, property);
    QFETCH(QString, text);
    QFETCH(QVariant, value);
    QFETCH(QString, shown);

    TRecordingDesigner designer;
    TTypesHolder holder;
    const QVariant before = holder.property(property.toLatin1());
    TEditorPtr editor = EditorFor({&holder}, property, &designer);
    QVERIFY(editor);
    const QString error = ErrorOf([&] { editor->SetValue(text); });
    if (!value.isValid()) {
        QCOMPARE(error, shown);
        QCOMPARE(holder.property(property.toLatin1()), before);
        QCOMPARE(designer.modified, 0);
        return;
    }
    QCOMPARE(error, QString());
    QCOMPARE(holder.property(property.toLatin1()), value);
    QCOMPARE(editor->GetValue(), shown);
    QCOMPARE(designer.modified, 1);
}

// The attributes of each kind of editor, and the start of its value list; every entry of a
// value list is accepted and reads back as itself.
void tst_PropEditsTypes::attributesAndValueLists_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<TPropertyAttributes>("attributes");
    QTest::addColumn<QStringList>("firstValues");

    const TPropertyAttributes common = paMultiSelect | paRevertable;
    QStringList colors;
    GetColorValues([&](const QString &Ident) { colors.append(Ident); });
    QTest::newRow("TColor") << "color" << (common | paValueList | paDialog) << colors;
    QTest::newRow("QColor read-only") << "fixedColor" << (common | paValueList | paReadOnly) << colors;
    QTest::newRow("font") << "font" << TPropertyAttributes(paMultiSelect | paSubProperties | paReadOnly | paDialog)
                          << QStringList();
    QTest::newRow("cursor") << "cursor" << (common | paValueList)
                            << Strings({"ArrowCursor", "UpArrowCursor", "CrossCursor"});
    QTest::newRow("shortcut") << "shortcut" << (common | paValueList) << Strings({"(None)", "Ctrl+A", "Ctrl+B"});
    QTest::newRow("items") << "items" << (common | paDialog) << QStringList();
    QTest::newRow("size") << "size" << (common | paSubProperties) << QStringList();
    QTest::newRow("picture") << "pixmap" << (common | paDialog) << QStringList();
}

void tst_PropEditsTypes::attributesAndValueLists()
{
    QFETCH(QString, property);
    QFETCH(TPropertyAttributes, attributes);
    QFETCH(QStringList, firstValues);

    TTypesHolder holder;
    TEditorPtr editor = EditorFor({&holder}, property);
    QVERIFY(editor);
    QCOMPARE(editor->GetAttributes(), attributes);
    const QStringList values = ValuesOf(*editor);
    QCOMPARE(values.mid(0, firstValues.size()), firstValues);
    QCOMPARE(QStringList(values).removeDuplicates(), 0);
    // QColor can't hold what clDefault and clNone mean apart from their QColor values, and
    // system colours resolve to plain ones.
    if (property == QLatin1String("qcolor") || attributes.testFlag(paReadOnly))
        return;
    for (const QString &value : values) {
        editor->SetValue(value);
        QCOMPARE(editor->GetValue(), value);
    }
}

// The parts of a value, in order, with their values ("parts", unless null); a part is written
// through the whole value: the other parts stay, the designer hears of it.
void tst_PropEditsTypes::parts_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("parts");
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("size") << "size" << "Width=9 Height=9" << "Width" << "100" << QVariant(QSize(100, 9));
    QTest::newRow("sizeF") << "sizeF" << "Width=9.5 Height=9.5" << "Height" << "2.25" << QVariant(QSizeF(9.5, 2.25));
    QTest::newRow("point") << "point" << "X=9 Y=9" << "Y" << "-3" << QVariant(QPoint(9, -3));
    QTest::newRow("rect, X moves it") << "rect" << "X=9 Y=9 Width=9 Height=9" << "X" << "0" << QVariant(QRect(0, 9, 9, 9));
    QTest::newRow("rect height") << "rect" << QString() << "Height" << "1" << QVariant(QRect(9, 9, 9, 1));
    QTest::newRow("rectF, Y moves it") << "rectF" << "X=9.5 Y=9.5 Width=9.5 Height=9.5" << "Y" << "0"
                                       << QVariant(QRectF(9.5, 0, 9.5, 9.5));
    QTest::newRow("margins") << "margins" << "Left=9 Top=9 Right=9 Bottom=9" << "Bottom" << "0"
                             << QVariant::fromValue(QMargins(9, 9, 9, 0));
    QSizePolicy vertical(QSizePolicy::Ignored, QSizePolicy::Expanding);
    vertical.setHeightForWidth(true);
    QTest::newRow("sizePolicy") << "sizePolicy"
                                << "HorizontalPolicy=Ignored VerticalPolicy=Ignored HorizontalStretch=0 VerticalStretch=0 "
                                   "HeightForWidth=True WidthForHeight=False RetainSizeWhenHidden=False"
                                << "VerticalPolicy" << "Expanding" << QVariant(vertical);
    QSizePolicy stretched(QSizePolicy::Ignored, QSizePolicy::Ignored);
    stretched.setHeightForWidth(true);
    stretched.setHorizontalStretch(7);
    QTest::newRow("sizePolicy stretch") << "sizePolicy" << QString() << "HorizontalStretch" << "7" << QVariant(stretched);
    QFont sized = TTypesHolder().m_font;
    const QString fontParts = QStringLiteral("Name=") + sized.family()
                              + QStringLiteral(" Size=11 Style=[fsBold] Weight=600 PixelSize=-1 Stretch=0 Kerning=True "
                                               "Overline=False FixedPitch=False");
    sized.setPointSize(20);
    QTest::newRow("font size") << "font" << fontParts << "Size" << "20" << QVariant(sized);
    QFont styled = TTypesHolder().m_font; // demi-bold counts as bold, and stays demi-bold
    styled.setStrikeOut(true);
    QTest::newRow("font style") << "font" << QString() << "Style" << "[fsBold,fsStrikeOut]" << QVariant(styled);
    QFont courier = TTypesHolder().m_font;
    courier.setFamily(QStringLiteral("Courier"));
    QTest::newRow("font name") << "font" << QString() << "Name" << "Courier" << QVariant(courier);
}

void tst_PropEditsTypes::parts()
{
    QFETCH(QString, property);
    QFETCH(QString, parts);
    QFETCH(QString, part);
    QFETCH(QString, text);
    QFETCH(QVariant, value);

    TRecordingDesigner designer;
    TTypesHolder holder;
    const QVariant before = holder.property(property.toLatin1());
    TEditorPtr editor = EditorFor({&holder}, property, &designer);
    QStringList shown;
    for (const TEditorPtr &sub : SubEditors(*editor)) {
        shown.append(sub->GetName() + QLatin1Char('=') + sub->GetValue());
        // Its own text written back leaves the value as it was, even what the part does not
        // show (a fraction of a point, a weight between normal and bold).
        sub->SetValue(sub->GetValue());
        QVERIFY2(holder.property(property.toLatin1()) == before, qPrintable(sub->GetName()));
    }
    if (!parts.isNull())
        QCOMPARE(shown.join(QLatin1Char(' ')), parts);
    designer.modified = 0;
    TEditorPtr sub = SubEditor(*editor, part);
    QVERIFY(sub);
    sub->SetValue(text);
    QCOMPARE(holder.property(property.toLatin1()), value);
    QCOMPARE(sub->GetValue(), text);
    QCOMPARE(designer.modified, 1);
}

// The font's name offers the installed families; its style's elements are set editors of
// their own.
void tst_PropEditsTypes::fontParts()
{
    TTypesHolder holder;
    TEditorPtr font = EditorFor({&holder}, QStringLiteral("font"));
    TEditorPtr name = SubEditor(*font, QStringLiteral("Name"));
    QCOMPARE(name->GetAttributes(), paMultiSelect | paRevertable | paValueList | paSortList);
    QCOMPARE(ValuesOf(*name), QFontDatabase::families());
    TEditorPtr style = SubEditor(*font, QStringLiteral("Style"));
    QVERIFY(style);
    TEditorPtr italic = SubEditor(*style, QStringLiteral("fsItalic"));
    QVERIFY(italic);
    italic->SetValue(QStringLiteral("True"));
    QVERIFY(holder.m_font.italic());
}

// The editors of several objects: equal where every object shows the same text, showing the
// first one's value otherwise. A write goes into each, keeping what belongs to each object:
// the other parts of a value, the hidden parts of a size policy, a system colour from each
// one's palette. A bitmap cursor has no text to type, unless a shape replaces it among others.
void tst_PropEditsTypes::severalObjects()
{
    TTypesHolder first;
    TTypesHolder second;
    const QList<QObject *> both{&first, &second};

    const TEditors editors = EditorsOf(both, nullptr, TTypeKinds::Properties());
    QVERIFY(editors.size() > 15);
    for (const TEditorPtr &editor : editors)
        QVERIFY2(editor->AllEqual(), qPrintable(editor->GetName()));
    second.m_size = QSize(1, 2);
    second.m_qcolor = QColor(7, 7, 8);
    second.m_shortcut = QKeySequence(QStringLiteral("Alt+W"));
    second.m_dateTime = second.m_dateTime.addMSecs(1);
    for (const char *name : {"size", "qcolor", "shortcut", "dateTime"}) {
        TEditorPtr editor = EditorFor(both, QString::fromLatin1(name));
        QVERIFY2(!editor->AllEqual(), name);
        QCOMPARE(editor->GetValue(), EditorFor({&first}, QString::fromLatin1(name))->GetValue());
    }

    first.m_rect = QRect(1, 1, 10, 10);
    second.m_rect = QRect(2, 2, 20, 20);
    TEditorPtr width = SubEditor(*EditorFor(both, QStringLiteral("rect")), QStringLiteral("Width"));
    QVERIFY(width);
    width->SetValue(QStringLiteral("5"));
    QCOMPARE(first.m_rect, QRect(1, 1, 5, 10));
    QCOMPARE(second.m_rect, QRect(2, 2, 5, 20));

    first.m_sizePolicy.setRetainSizeWhenHidden(true);
    second.m_sizePolicy.setHeightForWidth(false);
    second.m_sizePolicy.setWidthForHeight(true);
    EditorFor(both, QStringLiteral("sizePolicy"))->SetValue(QStringLiteral("[Fixed, Maximum, 1, 2]"));
    QCOMPARE(EditorFor({&first}, QStringLiteral("sizePolicy"))->GetValue(), QStringLiteral("[Fixed, Maximum, 1, 2]"));
    QCOMPARE(EditorFor({&second}, QStringLiteral("sizePolicy"))->GetValue(), QStringLiteral("[Fixed, Maximum, 1, 2]"));
    QVERIFY(first.m_sizePolicy.retainSizeWhenHidden());
    QVERIFY(first.m_sizePolicy.hasHeightForWidth());
    QVERIFY(second.m_sizePolicy.hasWidthForHeight());
    QVERIFY(!second.m_sizePolicy.hasHeightForWidth());

    TTintedWidget plain;
    TTintedWidget custom;
    QPalette palette = custom.palette();
    palette.setColor(QPalette::Button, QColor(1, 2, 3));
    custom.setPalette(palette);
    TEditorPtr tint = EditorFor({&plain, &custom}, QStringLiteral("tint"));
    tint->SetValue(QStringLiteral("clBtnFace"));
    QCOMPARE(plain.m_tint, plain.palette().color(QPalette::Button));
    QCOMPARE(custom.m_tint, QColor(1, 2, 3));
    QVERIFY(!tint->AllEqual());
    EditorFor({&first}, QStringLiteral("qcolor"))->SetValue(QStringLiteral("clBtnFace"));
    QCOMPARE(first.m_qcolor, QGuiApplication::palette().color(QPalette::Button));

    QPixmap picture(16, 16);
    picture.fill(Qt::black);
    second.m_cursor = QCursor(picture);
    TEditorPtr bitmap = EditorFor({&second}, QStringLiteral("cursor"));
    QCOMPARE(bitmap->GetValue(), QStringLiteral("BitmapCursor"));
    QVERIFY(bitmap->GetAttributes().testFlag(paReadOnly));
    bitmap->SetValue(bitmap->GetValue());
    QCOMPARE(second.m_cursor.shape(), Qt::BitmapCursor);
    TEditorPtr cursor = EditorFor(both, QStringLiteral("cursor"));
    QVERIFY(!cursor->GetAttributes().testFlag(paReadOnly));
    QVERIFY(!cursor->AllEqual());
    cursor->SetValue(QStringLiteral("IBeamCursor"));
    QCOMPARE(second.m_cursor.shape(), Qt::IBeamCursor);
}

// An object destroyed while its editors are shown reads as nothing and is left out of writes.
void tst_PropEditsTypes::objectsThatDie()
{
    auto first = std::make_unique<TTypesHolder>();
    TTypesHolder second;
    const TEditors editors = EditorsOf({first.get(), &second});
    first.reset();
    for (const TEditorPtr &editor : editors) {
        QVERIFY2(editor->GetValue().isEmpty(), qPrintable(editor->GetName()));
        QVERIFY2(editor->AllEqual(), qPrintable(editor->GetName()));
        QVERIFY(!editor->ValueAvailable());
        for (const TEditorPtr &sub : SubEditors(*editor))
            QVERIFY(sub->GetValue().isEmpty());
    }
    Find(editors, QStringLiteral("size"))->SetValue(QStringLiteral("5 x 6"));
    QCOMPARE(second.m_size, QSize(5, 6));
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

// Each dialog starts from the first object's value (a system colour as the colour it stands
// for); cancelled it changes nothing, confirmed it writes every object and tells the designer.
void tst_PropEditsTypes::dialogs_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("offered");
    QTest::addColumn<QVariant>("chosen");

    QTest::newRow("TColor") << "color" << QVariant(QGuiApplication::palette().color(QPalette::Button))
                            << QVariant::fromValue(TColor(0x302010));
    QTest::newRow("QColor") << "qcolor" << QVariant(QColor(1, 2, 3, 4)) << QVariant(QColor(0x10, 0x20, 0x30));
    QFont font = TTypesHolder().m_font;
    QFont italic = font;
    italic.setItalic(true);
    QTest::newRow("font") << "font" << QVariant(font) << QVariant(italic);
    QTest::newRow("string list") << "items" << QVariant(Strings({"one", "two"})) << QVariant(Strings({"a, b", ""}));
}

void tst_PropEditsTypes::dialogs()
{
    QFETCH(QString, property);
    QFETCH(QVariant, offered);
    QFETCH(QVariant, chosen);

    TRecordingDesigner designer;
    TTypesHolder first;
    TTypesHolder second;
    first.m_color = clBtnFace;
    first.m_qcolor = QColor(1, 2, 3, 4);
    first.m_items = {QStringLiteral("one"), QStringLiteral("two")};
    second.m_font.setPointSize(8);
    QVariant shown;
    QString caption;
    bool confirm = false;
    // Each dialog shows its value and is answered with the one chosen.
    const auto answer = [&](auto &Value, const auto &Chosen) {
        shown = QVariant::fromValue(Value);
        Value = Chosen;
        return confirm;
    };
    const QColor picked(0x10, 0x20, 0x30);
    const auto colorHook = HookedBy(&SetColorDialogHook, [&](QColor &Color) { return answer(Color, picked); });
    const auto fontHook = HookedBy(&SetFontDialogHook, [&](QFont &Font) { return answer(Font, chosen.value<QFont>()); });
    const auto listHook = HookedBy(&SetStringListDialogHook, [&](QStringList &Lines, const QString &Caption) {
        caption = Caption;
        return answer(Lines, chosen.toStringList());
    });

    const QByteArray name = property.toLatin1();
    TEditorPtr editor = EditorFor({&first, &second}, property, &designer);
    editor->Edit();
    QCOMPARE(shown, offered);
    QVERIFY(first.property(name) != chosen);
    QVERIFY(second.property(name) != chosen);
    QCOMPARE(designer.modified, 0);

    confirm = true;
    editor->Edit();
    QCOMPARE(first.property(name), chosen);
    QCOMPARE(second.property(name), chosen);
    QCOMPARE(designer.modified, 1);
    if (property == QLatin1String("items"))
        QCOMPARE(caption, QStringLiteral("holder.items"));
}

// The dialog shown without a hook: one entry per line, empty entries kept, the line count in
// the title.
void tst_PropEditsTypes::standardStringListDialog()
{
    const auto standard = HookedBy(&SetStringListDialogHook, TStringListDialogHook());
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
    QCOMPARE(lines, Strings({"a", "", ""}));
    QCOMPARE(title, QStringLiteral("Editing holder.items (3 lines)"));

    answer(QStringLiteral("x\ny\n"), true);
    QVERIFY(ExecuteStringListDialog(lines, QStringLiteral("holder.items")));
    QCOMPARE(lines, Strings({"x", "y"}));

    answer(QStringLiteral("z"), false);
    QVERIFY(!ExecuteStringListDialog(lines, QString()));
    QCOMPARE(lines, Strings({"x", "y"}));
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

    TTypesHolder holder;
    TRecordingDesigner designer;
    const TEditors editors = EditorsOf({&holder}, &designer, TTypeKinds::Properties());
    TPropertyEditor *pixmap = Find(editors, QStringLiteral("pixmap"));
    TPropertyEditor *image = Find(editors, QStringLiteral("image"));
    TPropertyEditor *icon = Find(editors, QStringLiteral("icon"));
    QVERIFY(pixmap && image && icon);
    QCOMPARE(pixmap->GetValue(), QStringLiteral("(None)"));

    pixmap->SetValue(file);
    image->SetValue(file);
    icon->SetValue(file);
    QCOMPARE(holder.m_pixmap.size(), QSize(12, 8));
    QCOMPARE(holder.m_image.pixelColor(0, 0), QColor(Qt::red));
    QVERIFY(!holder.m_icon.isNull());
    QCOMPARE(pixmap->GetValue(), QStringLiteral("(QPixmap 12 x 8)"));
    QCOMPARE(image->GetValue(), QStringLiteral("(QImage 12 x 8)"));
    QCOMPARE(icon->GetValue(), QStringLiteral("(QIcon)"));
    QCOMPARE(designer.modified, 3);

    // Its own text is no file name: the picture stays, nothing is written.
    const qint64 key = holder.m_pixmap.cacheKey();
    pixmap->SetValue(pixmap->GetValue());
    QCOMPARE(holder.m_pixmap.cacheKey(), key);
    QCOMPARE(designer.modified, 3);


    // Two objects share a picture only when it is the same one.
    TTypesHolder other;
    other.m_pixmap = holder.m_pixmap;
    TEditorPtr both = EditorFor({&holder, &other}, QStringLiteral("pixmap"));
    QVERIFY(both->AllEqual());
    other.m_pixmap = QPixmap(12, 8);
    QVERIFY(!both->AllEqual());

    pixmap->SetValue(QStringLiteral("(None)"));
    QVERIFY(holder.m_pixmap.isNull());

    // The dialog: cancelled changes nothing, confirmed loads the file chosen.
    QString chosen;
    const auto pictureHook = HookedBy(&SetPictureDialogHook, [&chosen](QString &FileName) {
        FileName = chosen;
        return !chosen.isEmpty();
    });
    image->SetValue(QString());
    image->Edit();
    QVERIFY(holder.m_image.isNull());
    chosen = file;
    image->Edit();
    QCOMPARE(holder.m_image.size(), QSize(12, 8));
}

QTEST_MAIN(tst_PropEditsTypes)
#include "tst_propedits_types.moc"
