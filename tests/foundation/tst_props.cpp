#include "foundation/ideLib_props.h"

#include "foundation/ideSystem_optionstorage.h"
#include "platform/kvColor.h"
#include "platform/kvException.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QColor>
#include <QDate>
#include <QFile>
#include <QFont>
#include <QPushButton>
#include <QSettings>
#include <QSize>
#include <QTemporaryDir>
#include <QTest>

using namespace kv;
using namespace Qt::StringLiterals;

namespace {

class TOptions : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int Width MEMBER m_width)
    Q_PROPERTY(bool Visible MEMBER m_visible)
    Q_PROPERTY(TAlign Align MEMBER m_align)
    Q_PROPERTY(TStyles Styles READ Styles WRITE SetStyles)
    Q_PROPERTY(QString Caption MEMBER m_caption)
    Q_PROPERTY(QStringList Items MEMBER m_items)
    Q_PROPERTY(kv::TColor Color MEMBER m_color)
    Q_PROPERTY(QColor Background MEMBER m_background)
    Q_PROPERTY(QFont Font MEMBER m_font)
    Q_PROPERTY(QDate Start MEMBER m_start)
    Q_PROPERTY(QSize Size MEMBER m_size)
    Q_PROPERTY(double Ratio MEMBER m_ratio)
    Q_PROPERTY(qint64 Big MEMBER m_big)
    Q_PROPERTY(QObject *Link MEMBER m_link)
    Q_PROPERTY(int Computed READ Computed)
    Q_PROPERTY(int Transient MEMBER m_transient STORED false)

public:
    enum TAlign { alNone, alTop, alClient };
    Q_ENUM(TAlign)
    enum TStyle { fsBold = 1, fsItalic = 2, fsUnderline = 4 };
    Q_DECLARE_FLAGS(TStyles, TStyle)
    Q_FLAG(TStyles)

    using QObject::QObject;
    int Computed() const { return m_width * 2; }
    TStyles Styles() const { return m_styles; }
    void SetStyles(TStyles styles) { m_styles = styles; }

    int m_width = 10;
    bool m_visible = true;
    TAlign m_align = alNone;
    TStyles m_styles;
    QString m_caption;
    QStringList m_items;
    TColor m_color = clBtnFace;
    QColor m_background = Qt::white;
    QFont m_font;
    QDate m_start;
    QSize m_size;
    double m_ratio = 0;
    qint64 m_big = 0;
    QObject *m_link = nullptr;
    int m_transient = 0;
};
Q_DECLARE_OPERATORS_FOR_FLAGS(TOptions::TStyles)

// A collection item whose display name its class computes.
class TItem : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString DisplayName READ GetDisplayName WRITE SetDisplayName)

public:
    using QObject::QObject;
    virtual QString GetDisplayName() const { return m_name.isEmpty() ? u"TItem"_s : m_name; }
    void SetDisplayName(const QString &name) { m_name = name; }

protected:
    QString m_name;
};

class TColumn : public TItem
{
    Q_OBJECT

public:
    using TItem::TItem;
    QString GetDisplayName() const override { return u"Column "_s + TItem::GetDisplayName(); }
};

void Fill(TOptions &o)
{
    o.m_width = 77;
    o.m_visible = false;
    o.m_align = TOptions::alClient;
    o.m_styles = TOptions::fsBold | TOptions::fsUnderline;
    o.m_caption = u"Größe = 3, \"quoted\""_s;
    o.m_items = {u"a"_s, u"b, c"_s};
    o.m_color = clRed;
    o.m_background = QColor(10, 20, 30, 40);
    o.m_font = QFont(u"DejaVu Sans"_s, 13);
    o.m_font.setBold(true);
    o.m_start = QDate(2024, 2, 29);
    o.m_size = QSize(640, 480);
    o.m_ratio = 0.125;
    o.m_big = Q_INT64_C(1) << 40;
    o.m_transient = 5;
}

} // namespace

class tst_Props : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findAndAccess();
    void assignAllPropsExclude();
    void assignNamedProps();
    void textRoundTrip();
    void assignPropsFromStrings();
    void correctBool_data();
    void correctBool();
    void displayNames();
    void resourceNames_data();
    void resourceNames();
    void declarationTypeNames_data();
    void declarationTypeNames();
    void iterate();
    void typeKinds_data();
    void typeKinds();
    void classes();
    void iniFile();
    void iniFileErrors();
};

void tst_Props::findAndAccess()
{
    TOptions o;
    QVERIFY(FindProperty(&o, u"width").isValid());
    QCOMPARE(QLatin1String(FindProperty(&o, u"CAPTION").name()), QLatin1String("Caption"));
    QVERIFY(!FindProperty(&o, u"Nope").isValid());
    QVERIFY(!FindProperty(nullptr, u"Width").isValid());
    QVERIFY(PropertyExists(&o, u"objectName"));

    QVERIFY(SetPropValue(&o, u"width", 5));
    QCOMPARE(GetPropValue(&o, u"Width").toInt(), 5);
    QVERIFY(!SetPropValue(&o, u"Computed", 1));
    QVERIFY(!SetPropValue(&o, u"Nope", 1));
    QVERIFY(!SetPropValue(nullptr, u"Width", 1));
    QVERIFY(!GetPropValue(&o, u"Nope").isValid());
    QVERIFY(!GetPropValue(nullptr, u"Width").isValid());

    TOptions other;
    SetPropValues({&o, nullptr, &other}, u"Caption", u"both"_s);
    QCOMPARE(o.m_caption, u"both"_s);
    QCOMPARE(other.m_caption, u"both"_s);

    QCOMPARE(GetClassProperty(&o, u"Link"), nullptr);
    o.m_link = &other;
    QCOMPARE(GetClassProperty(&o, u"link"), &other);
    QCOMPARE(GetClassProperty(&o, u"Width"), nullptr);

    QStringList names{u"kept"_s};
    PropNamesToStrings(&o, names);
    QCOMPARE(names.mid(0, 3), (QStringList{u"kept"_s, u"objectName"_s, u"Width"_s}));
    QCOMPARE(names.size(), 1 + 1 + 16);
}

void tst_Props::assignAllPropsExclude()
{
    TOptions source;
    Fill(source);
    source.setObjectName(u"Source"_s);
    TOptions dest;
    AssignAllPropsExclude(&source, &dest, {u"caption"_s, u"RATIO"_s});
    QCOMPARE(dest.m_width, 77);
    QCOMPARE(dest.m_align, TOptions::alClient);
    QCOMPARE(dest.m_styles, source.m_styles);
    QCOMPARE(dest.m_items, source.m_items);
    QCOMPARE(dest.m_color, clRed);
    QCOMPARE(dest.m_font, source.m_font);
    QCOMPARE(dest.m_caption, QString());
    QCOMPARE(dest.m_ratio, 0.0);
    // Identity and what is not stored stay.
    QCOMPARE(dest.objectName(), QString());
    QCOMPARE(dest.m_transient, 0);

    AssignAllPropsExclude(&dest, &dest, {});
    AssignAllPropsExclude(nullptr, &dest, {});
    AssignAllPropsExclude(&source, nullptr, {});
}

void tst_Props::assignNamedProps()
{
    TOptions source;
    Fill(source);
    TOptions dest;
    QVERIFY(AssignProp(&source, &dest, u"width"));
    QCOMPARE(dest.m_width, 77);
    QVERIFY(!AssignProp(&source, &dest, u"Computed"));
    QVERIFY(!AssignProp(&source, &dest, u"Transient"));
    QVERIFY(!AssignProp(&source, &dest, u"objectName"));
    QVERIFY(!AssignProp(&source, &source, u"Width"));

    AssignPropsEx(&source, &dest, u"Caption, Visible,,Nope"_s);
    QCOMPARE(dest.m_caption, source.m_caption);
    QCOMPARE(dest.m_visible, false);
    QCOMPARE(dest.m_ratio, 0.0);

    // Between different classes: only what both have.
    QPushButton button;
    TItem item;
    item.setObjectName(u"Item"_s);
    QVERIFY(!AssignPropInfo(&item, &button, FindProperty(&item, u"DisplayName")));
    QCheckBox box;
    box.setText(u"Check"_s);
    QVERIFY(AssignPropInfo(&box, &button, FindProperty(&box, u"text")));
    QCOMPARE(button.text(), u"Check"_s);
}

void tst_Props::textRoundTrip()
{
    TOptions source;
    Fill(source);
    TOptions dest;
    const QMetaObject *meta = source.metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QMetaProperty prop = meta->property(i);
        if (!prop.isWritable() || prop.metaType().flags().testFlag(QMetaType::PointerToQObject))
            continue;
        const QString text = PropValueToText(prop, prop.read(&source));
        QVariant value;
        QVERIFY2(PropValueFromText(prop, text, value), prop.name());
        QVERIFY2(prop.write(&dest, value), prop.name());
        QVERIFY2(prop.read(&dest) == prop.read(&source), qPrintable(QLatin1String(prop.name()) + u": "_s + text));
    }
    // The texts as a person reads them in a settings file.
    QCOMPARE(PropValueToText(FindProperty(&source, u"Visible"), false), u"False"_s);
    QCOMPARE(PropValueToText(FindProperty(&source, u"Align"), int(TOptions::alClient)), u"alClient"_s);
    QCOMPARE(PropValueToText(FindProperty(&source, u"Styles"), int(source.m_styles)), u"fsBold|fsUnderline"_s);
    QCOMPARE(PropValueToText(FindProperty(&source, u"Color"), QVariant::fromValue(clRed)), u"clRed"_s);
    QCOMPARE(PropValueToText(FindProperty(&source, u"Start"), source.m_start), u"2024-02-29"_s);

    const QMetaProperty items = FindProperty(&source, u"Items");
    QCOMPARE(PropValueToText(items, source.m_items), u"a,\"b, c\""_s);
    const QStringList awkward{QString(), u" x"_s, u"say \"hi\""_s, u"plain"_s};
    QCOMPARE(PropValueToText(items, awkward), u"\"\",\" x\",\"say \"\"hi\"\"\",plain"_s);

    QVariant value;
    QVERIFY(PropValueFromText(items, PropValueToText(items, awkward), value));
    QCOMPARE(value.toStringList(), awkward);
    QVERIFY(PropValueFromText(items, u" one , two,"_s, value));
    QCOMPARE(value.toStringList(), (QStringList{u"one"_s, u"two"_s, QString()}));
    QVERIFY(!PropValueFromText(items, u"\"open"_s, value));
    QCOMPARE(PropValueToText(FindProperty(&source, u"Size"), QSize(640, 480)), u"640,480"_s);
    QVERIFY(PropValueFromText(FindProperty(&source, u"Size"), u" 3 ,4"_s, value));
    QCOMPARE(value.toSize(), QSize(3, 4));
    QVERIFY(!PropValueFromText(FindProperty(&source, u"Size"), u"3.5,4"_s, value));
    QVERIFY(!PropValueFromText(FindProperty(&source, u"Size"), u"3,4,5"_s, value));
    QVERIFY(PropValueFromText(FindProperty(&source, u"Align"), u"ALCLIENT"_s, value));
    QCOMPARE(value.toInt(), int(TOptions::alClient));
    QVERIFY(PropValueFromText(FindProperty(&source, u"Visible"), u"true"_s, value));
    QCOMPARE(value.toBool(), true);
    QVERIFY(!PropValueFromText(FindProperty(&source, u"Visible"), u"yes"_s, value));
    QVERIFY(!PropValueFromText(FindProperty(&source, u"Width"), u"wide"_s, value));
    QVERIFY(!PropValueFromText(FindProperty(&source, u"Align"), u"alLeft"_s, value));
    QVERIFY(!PropValueFromText(FindProperty(&source, u"Color"), u"clNoSuch"_s, value));
    QVERIFY(!PropValueFromText(FindProperty(&source, u"Start"), u"29.02.2024"_s, value));
}

void tst_Props::assignPropsFromStrings()
{
    TOptions o;
    AssignPropsFromStrings(&o, {u"Width=12"_s, u"no equals sign"_s, u"Nope=1"_s, u" align =alTop"_s,
                                u"Caption=a=b"_s, u"Color=$00FF0000"_s});
    QCOMPARE(o.m_width, 12);
    QCOMPARE(o.m_align, TOptions::alTop);
    QCOMPARE(o.m_caption, u"a=b"_s);
    QCOMPARE(o.m_color, clBlue);
    try {
        AssignPropsFromStrings(&o, {u"Width=13"_s, u"Visible=maybe"_s, u"Ratio=2"_s});
        QFAIL("a bad value must raise");
    } catch (const Exception &e) {
        QCOMPARE(e.Message(), u"'maybe' is not a valid value for property Visible"_s);
    }
    // The lines before the bad one were set, the ones after it not.
    QCOMPARE(o.m_width, 13);
    QCOMPARE(o.m_ratio, 0.0);
}

void tst_Props::correctBool_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("expected");

    QTest::newRow("true") << QVariant(true) << QVariant(1);
    QTest::newRow("false") << QVariant(false) << QVariant(false);
    QTest::newRow("integer") << QVariant(5) << QVariant(5);
    QTest::newRow("text") << QVariant(u"True"_s) << QVariant(u"True"_s);
    QTest::newRow("invalid") << QVariant() << QVariant();
}

void tst_Props::correctBool()
{
    QFETCH(QVariant, value);
    QFETCH(QVariant, expected);
    const QVariant corrected = CorrectBool(value);
    QCOMPARE(corrected.metaType(), expected.metaType());
    QCOMPARE(corrected, expected);
}

void tst_Props::displayNames()
{
    TColumn column;
    QCOMPARE(GetColItemDisplayName(&column), u"Column TItem"_s);
    SetColItemDisplayName(&column, u"Name"_s);
    QCOMPARE(GetColItemDisplayName(&column), u"Column Name"_s);
    QObject plain;
    QCOMPARE(GetColItemDisplayName(&plain), u"QObject"_s);
    SetColItemDisplayName(&plain, u"x"_s);
    QCOMPARE(GetColItemDisplayName(nullptr), QString());
}

void tst_Props::resourceNames_data()
{
    QTest::addColumn<uint>("type");
    QTest::addColumn<QString>("name");

    const char *const names[] = {"",        "CURSOR",       "BITMAP",     "ICON",   "MENU",       "DIALOG",
                                 "STRING",  "FONTDIR",      "FONT",       "ACCELERATOR", "RCDATA", "MESSAGETABLE",
                                 "GROUP_CURSOR", "",        "GROUP_ICON", "",       "VERSION",    "DLGINCLUDE",
                                 "",        "PLUGPLAY",     "VXD",        "ANICURSOR", "ANIICON"};
    for (uint type = 0; type < std::size(names); ++type)
        QTest::addRow("%u", type) << type << QString::fromLatin1(names[type]);
    QTest::newRow("23") << 23u << "23";
    QTest::newRow("240") << 240u << "240";
}

void tst_Props::resourceNames()
{
    QFETCH(uint, type);
    QFETCH(QString, name);
    QCOMPARE(StringFromRType(type), name);
    QCOMPARE(StringFromRName(type), QString::number(type));
    QCOMPARE(StringFromRType(u"MYTYPE"_s), u"MYTYPE"_s);
    QCOMPARE(StringFromRName(u"MAINICON"_s), u"MAINICON"_s);
}

void tst_Props::declarationTypeNames_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("name");

    const char *const names[] = {"", "", "Smallint", "Longint", "Single", "Double", "Currency",
                                 "TDateTime", "PWideChar", "Pointer", "Integer", "WordBool", "Variant",
                                 "Pointer", "PWideChar", "", "ShortInt", "Byte", "Word", "Cardinal"};
    for (int code = 0; code < int(std::size(names)); ++code)
        QTest::addRow("%d", code) << code << QString::fromLatin1(names[code]);
    QTest::newRow("20 is outside") << 20 << "";
    QTest::newRow("negative") << -1 << "";
}

void tst_Props::declarationTypeNames()
{
    QFETCH(int, code);
    QFETCH(QString, name);
    QCOMPARE(ConvertDelphiTypeToString(code), name);
}

void tst_Props::iterate()
{
    TOptions o;
    QStringList seen;
    const auto collect = [&seen](QObject *instance, const QMetaProperty &prop) {
        QVERIFY(instance);
        seen.append(QLatin1String(prop.name()));
    };
    IterateProps(&o, TTypeKinds(tkInteger), collect);
    QCOMPARE(seen, (QStringList{u"Width"_s, u"Color"_s, u"Background"_s, u"Computed"_s, u"Transient"_s}));
    seen.clear();
    IterateProps(&o, tkInteger | tkSet, collect, true);
    QCOMPARE(seen, (QStringList{u"Width"_s, u"Styles"_s, u"Color"_s, u"Background"_s, u"Computed"_s}));
    seen.clear();
    ForEachProp(&o, collect, false);
    QCOMPARE(seen.size(), 17);
    seen.clear();
    ForEachProp(&o, collect, true);
    QCOMPARE(seen.size(), 16);
    ForEachProp(nullptr, collect);
    ForEachProp(&o, {});
    IterateProps(&o, TTypeKinds(), collect);
    QCOMPARE(seen.size(), 16);
}

void tst_Props::typeKinds_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<int>("kind");

    QTest::newRow("bool") << "Visible" << int(tkEnumeration);
    QTest::newRow("enum") << "Align" << int(tkEnumeration);
    QTest::newRow("flags") << "Styles" << int(tkSet);
    QTest::newRow("string list") << "Items" << int(tkClass);
    QTest::newRow("TColor") << "Color" << int(tkInteger);
    QTest::newRow("QColor") << "Background" << int(tkInteger);
    QTest::newRow("font") << "Font" << int(tkClass);
    QTest::newRow("date") << "Start" << int(tkFloat);
    QTest::newRow("int64") << "Big" << int(tkInt64);
    QTest::newRow("object") << "Link" << int(tkClass);
}

void tst_Props::typeKinds()
{
    QFETCH(QString, property);
    QFETCH(int, kind);
    TOptions o;
    QCOMPARE(int(TypeKindOf(FindProperty(&o, property))), kind);
    QCOMPARE(TypeKindOf(QMetaType::fromType<QVariant>()), tkVariant);
    QCOMPARE(TypeKindOf(QMetaType::fromType<QChar>()), tkChar);
    QCOMPARE(TypeKindOf(QMetaType()), tkUnknown);
    QCOMPARE(TTypeKinds::Properties().Mask(), 0x3FEFFu);
    QVERIFY(!TTypeKinds::Properties().Contains(tkMethod));
}

void tst_Props::classes()
{
    QPushButton button;
    QVERIFY(InheritsFromClassName(&button, u"qabstractbutton"));
    QVERIFY(InheritsFromClassName(&button, u"QObject"));
    QVERIFY(!InheritsFromClassName(&button, u"QCheckBox"));
    QVERIFY(!InheritsFromClassName(nullptr, u"QObject"));
    TOptions o;
    QVERIFY(InheritsFromClassName(&o, u"TOptions"));

    QCOMPARE(GetCommonParent(&QPushButton::staticMetaObject, &QCheckBox::staticMetaObject), &QAbstractButton::staticMetaObject);
    QCOMPARE(GetCommonParent(&QPushButton::staticMetaObject, &TOptions::staticMetaObject), &QObject::staticMetaObject);
    QCOMPARE(GetCommonParent(&QCheckBox::staticMetaObject, &QCheckBox::staticMetaObject), &QCheckBox::staticMetaObject);
    QCOMPARE(GetCommonParent(nullptr, &QCheckBox::staticMetaObject), nullptr);
    QCheckBox box;
    QCOMPARE(GetCommonClassesParent({&button, nullptr, &box}), &QAbstractButton::staticMetaObject);
    QCOMPARE(GetCommonClassesParent({&button, &box, &o}), &QObject::staticMetaObject);
    QCOMPARE(GetCommonClassesParent({}), nullptr);

    QVERIFY(GetClassModule(&QObject::staticMetaObject).contains(u"libQt6Core.so"_s));
    QVERIFY(GetClassModule(&TOptions::staticMetaObject).endsWith(u"tst_props"_s));
    QCOMPARE(GetClassModule(nullptr), QString());
}

void tst_Props::iniFile()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString file = dir.filePath(u"options.ini"_s);
    TOptions source;
    Fill(source);
    source.setObjectName(u"Saved"_s);
    SaveComponentToIniFile(&source, u"Inspector\\Options"_s, file);

    {
        QSettings settings(file, QSettings::IniFormat);
        QCOMPARE(settings.value(u"Inspector/Options/Align"_s).toString(), u"alClient"_s);
        QCOMPARE(settings.value(u"Inspector/Options/Visible"_s).toString(), u"False"_s);
        QCOMPARE(settings.value(u"Inspector/Options/Color"_s).toString(), u"clRed"_s);
        QVERIFY(!settings.contains(u"Inspector/Options/objectName"_s));
        QVERIFY(!settings.contains(u"Inspector/Options/Transient"_s));
        QVERIFY(!settings.contains(u"Inspector/Options/Computed"_s));
        QVERIFY(!settings.contains(u"Inspector/Options/Link"_s));
        // A value nobody wrote by hand correctly is passed over.
        settings.setValue(u"Inspector/Options/Width"_s, u"wide"_s);
    }

    TOptions dest;
    LoadComponentFromIniFile(&dest, u"Inspector\\Options"_s, file);
    QCOMPARE(dest.m_width, 10);
    QCOMPARE(dest.m_visible, false);
    QCOMPARE(dest.m_align, source.m_align);
    QCOMPARE(dest.m_styles, source.m_styles);
    QCOMPARE(dest.m_caption, source.m_caption);
    QCOMPARE(dest.m_items, source.m_items);
    QCOMPARE(dest.m_color, source.m_color);
    QCOMPARE(dest.m_background, source.m_background);
    QCOMPARE(dest.m_font, source.m_font);
    QCOMPARE(dest.m_start, source.m_start);
    QCOMPARE(dest.m_size, source.m_size);
    QCOMPARE(dest.m_ratio, source.m_ratio);
    QCOMPARE(dest.m_big, source.m_big);
    QCOMPARE(dest.objectName(), QString());

    // Lists of one and of no entries come back as lists.
    source.m_items = {u"only"_s};
    SaveComponentToIniFile(&source, u"One"_s, file);
    LoadComponentFromIniFile(&dest, u"One"_s, file);
    QCOMPARE(dest.m_items, QStringList{u"only"_s});
    source.m_items.clear();
    SaveComponentToIniFile(&source, u"None"_s, file);
    LoadComponentFromIniFile(&dest, u"None"_s, file);
    QCOMPARE(dest.m_items, QStringList());

    // A section the file doesn't have changes nothing.
    TOptions untouched;
    LoadComponentFromIniFile(&untouched, u"Missing"_s, file);
    QCOMPARE(untouched.m_width, 10);
    QCOMPARE(untouched.m_color, clBtnFace);

    // The forms without a file name use OptionsFileName.
    const QString previous = OptionsFileName;
    OptionsFileName = dir.filePath(u"global.ini"_s);
    source.m_width = 321;
    SaveComponentToIniFile(&source, u"Global"_s);
    LoadComponentFromIniFile(&untouched, u"Global"_s);
    QCOMPARE(untouched.m_width, 321);
    OptionsFileName = previous;
}

void tst_Props::iniFileErrors()
{
    TOptions o;
    try {
        SaveComponentToIniFile(&o, u"S"_s, QString());
        QFAIL("saving without a file must raise");
    } catch (const Exception &e) {
        QCOMPARE(e.Message(), u"The options can't be saved: no options file is set"_s);
    }
    LoadComponentFromIniFile(&o, u"S"_s, QString());
    QCOMPARE(o.m_width, 10);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    // A folder where the file should be: it can't be written.
    const QString blocked = dir.filePath(u"blocked.ini"_s);
    QVERIFY(QDir().mkpath(blocked + u"/inside"_s));
    try {
        SaveComponentToIniFile(&o, u"S"_s, blocked);
        QFAIL("an unwritable file must raise");
    } catch (const Exception &e) {
        QVERIFY2(e.Message().contains(blocked), qPrintable(e.Message()));
    }
}

QTEST_MAIN(tst_Props)
#include "tst_props.moc"
