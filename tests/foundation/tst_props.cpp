#include "foundation/ideLib_props.h"

#include "foundation/ideSystem_optionstorage.h"
#include "platform/kvColor.h"
#include "platform/kvException.h"
#include "tests/testsupport.h"

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
using kv::test::ErrorOf;
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

// A collection item: its DisplayName is what GetColItemDisplayName shows.
class TItem : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString DisplayName MEMBER m_name)

public:
    using QObject::QObject;
    QString m_name;
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
    void findAndAccess()
    {
        TOptions o;
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

    void assignProps()
    {
        TOptions source;
        Fill(source);
        source.setObjectName(u"Source"_s);
        TOptions dest;
        AssignAllPropsExclude(&source, &dest, {u"caption"_s, u"RATIO"_s});
        QCOMPARE(dest.m_width, 77);
        QCOMPARE(dest.m_font, source.m_font);
        QCOMPARE(dest.m_caption, QString());
        QCOMPARE(dest.m_ratio, 0.0);
        // Identity and what is not stored stay.
        QCOMPARE(dest.objectName(), QString());
        QCOMPARE(dest.m_transient, 0);
        AssignAllPropsExclude(&dest, &dest, {});
        AssignAllPropsExclude(nullptr, &dest, {});
        AssignAllPropsExclude(&source, nullptr, {});

        TOptions named;
        QVERIFY(AssignProp(&source, &named, u"width"));
        QCOMPARE(named.m_width, 77);
        QVERIFY(!AssignProp(&source, &named, u"Computed"));
        QVERIFY(!AssignProp(&source, &named, u"Transient"));
        QVERIFY(!AssignProp(&source, &named, u"objectName"));
        QVERIFY(!AssignProp(&source, &source, u"Width"));
        AssignPropsEx(&source, &named, u"Caption, Visible,,Nope"_s);
        QCOMPARE(named.m_caption, source.m_caption);
        QCOMPARE(named.m_visible, false);
        QCOMPARE(named.m_ratio, 0.0);

        // Between different classes: only what both have.
        QPushButton button;
        TItem item;
        QVERIFY(!AssignPropInfo(&item, &button, FindProperty(&item, u"DisplayName")));
        QCheckBox box;
        box.setText(u"Check"_s);
        QVERIFY(AssignPropInfo(&box, &button, FindProperty(&box, u"text")));
        QCOMPARE(button.text(), u"Check"_s);
    }

    void textRoundTrip()
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
        // The texts as a person reads them in a settings file (iniFile checks more of them).
        QCOMPARE(PropValueToText(FindProperty(&source, u"Styles"), int(source.m_styles)), u"fsBold|fsUnderline"_s);
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

        // Only a true Boolean becomes the integer 1 (QVariant compares true and 1 as equal).
        QCOMPARE(CorrectBool(true).metaType(), QMetaType::fromType<int>());
        QCOMPARE(CorrectBool(true), QVariant(1));
        QCOMPARE(CorrectBool(false).metaType(), QMetaType::fromType<bool>());
        QCOMPARE(CorrectBool(5), QVariant(5));
        QCOMPARE(CorrectBool(u"True"_s), QVariant(u"True"_s));
    }

    void assignPropsFromStrings()
    {
        TOptions o;
        AssignPropsFromStrings(&o, {u"Width=12"_s, u"no equals sign"_s, u"Nope=1"_s, u" align =alTop"_s,
                                    u"Caption=a=b"_s, u"Color=$00FF0000"_s});
        QCOMPARE(o.m_width, 12);
        QCOMPARE(o.m_align, TOptions::alTop);
        QCOMPARE(o.m_caption, u"a=b"_s);
        QCOMPARE(o.m_color, clBlue);
        QCOMPARE(ErrorOf([&o] { AssignPropsFromStrings(&o, {u"Width=13"_s, u"Visible=maybe"_s, u"Ratio=2"_s}); }),
                 u"'maybe' is not a valid value for property Visible"_s);
        // The lines before the bad one were set, the ones after it not.
        QCOMPARE(o.m_width, 13);
        QCOMPARE(o.m_ratio, 0.0);
    }

    void codeTables()
    {
        // The ends of each table, one of its gaps, and the numbers outside it.
        QCOMPARE(StringFromRType(0), QString());
        QCOMPARE(StringFromRType(1), u"CURSOR"_s);
        QCOMPARE(StringFromRType(13), QString());
        QCOMPARE(StringFromRType(22), u"ANIICON"_s);
        QCOMPARE(StringFromRType(23), u"23"_s);
        QCOMPARE(StringFromRName(240), u"240"_s);
        QCOMPARE(StringFromRType(u"MYTYPE"_s), u"MYTYPE"_s);
        QCOMPARE(StringFromRName(u"MAINICON"_s), u"MAINICON"_s);

        QCOMPARE(ConvertDelphiTypeToString(1), QString());
        QCOMPARE(ConvertDelphiTypeToString(2), u"Smallint"_s);
        QCOMPARE(ConvertDelphiTypeToString(15), QString());
        QCOMPARE(ConvertDelphiTypeToString(19), u"Cardinal"_s);
        QCOMPARE(ConvertDelphiTypeToString(20), QString());
        QCOMPARE(ConvertDelphiTypeToString(-1), QString());
    }

    void kindsAndIteration()
    {
        TOptions o;
        QStringList seen;
        const auto collect = [&seen](QObject *instance, const QMetaProperty &prop) {
            QVERIFY(instance);
            seen.append(QLatin1String(prop.name()));
        };
        // Colours are integers.
        IterateProps(&o, TTypeKinds(tkInteger), collect);
        QCOMPARE(seen, (QStringList{u"Width"_s, u"Color"_s, u"Background"_s, u"Computed"_s, u"Transient"_s}));
        seen.clear();
        IterateProps(&o, tkInteger | tkSet, collect, true);
        QCOMPARE(seen, (QStringList{u"Width"_s, u"Styles"_s, u"Color"_s, u"Background"_s, u"Computed"_s}));
        seen.clear();
        // Booleans are enumerations and dates floats; lists, fonts, sizes and references are classes.
        IterateProps(&o, tkEnumeration | tkFloat | tkInt64 | tkClass, collect);
        QCOMPARE(seen, (QStringList{u"Visible"_s, u"Align"_s, u"Items"_s, u"Font"_s, u"Start"_s, u"Size"_s,
                                    u"Ratio"_s, u"Big"_s, u"Link"_s}));
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

        QCOMPARE(TypeKindOf(QMetaType::fromType<QVariant>()), tkVariant);
        QCOMPARE(TypeKindOf(QMetaType::fromType<QChar>()), tkChar);
        QCOMPARE(TypeKindOf(QMetaType()), tkUnknown);
        QCOMPARE(TTypeKinds::Properties().Mask(), 0x3FEFFu);
    }

    void classesAndDisplayNames()
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

        TItem item;
        SetColItemDisplayName(&item, u"Name"_s);
        QCOMPARE(item.m_name, u"Name"_s);
        item.m_name = u"Other"_s;
        QCOMPARE(GetColItemDisplayName(&item), u"Other"_s);
        // Without a DisplayName property: the class name.
        QObject plain;
        QCOMPARE(GetColItemDisplayName(&plain), u"QObject"_s);
        SetColItemDisplayName(&plain, u"x"_s);
        QCOMPARE(GetColItemDisplayName(nullptr), QString());
    }

    void iniFile()
    {
        TOptions o;
        QCOMPARE(ErrorOf([&o] { SaveComponentToIniFile(&o, u"S"_s, QString()); }),
                 u"The options can't be saved: no options file is set"_s);
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        // A folder where the file should be: it can't be written.
        const QString blocked = dir.filePath(u"blocked.ini"_s);
        QVERIFY(QDir().mkpath(blocked + u"/inside"_s));
        QVERIFY(ErrorOf([&o, &blocked] { SaveComponentToIniFile(&o, u"S"_s, blocked); }).contains(blocked));

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
            for (const char *left : {"objectName", "Transient", "Computed", "Link"})
                QVERIFY2(!settings.contains(u"Inspector/Options/"_s + QLatin1String(left)), left);
            // A value nobody wrote by hand correctly is passed over.
            settings.setValue(u"Inspector/Options/Width"_s, u"wide"_s);
        }

        TOptions dest;
        LoadComponentFromIniFile(&dest, u"Inspector\\Options"_s, file);
        QCOMPARE(dest.m_width, 10);
        QCOMPARE(dest.objectName(), QString());
        for (const char *name : {"Visible", "Align", "Styles", "Caption", "Items", "Color", "Background", "Font",
                                 "Start", "Size", "Ratio", "Big"})
            QVERIFY2(dest.property(name) == source.property(name), name);

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
};

QTEST_MAIN(tst_Props)
#include "tst_props.moc"
