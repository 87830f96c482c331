// The property editors of the type kinds, the enumeration of a selection's common properties
// and the editor registry.

#include "design/ideGen_designer.h"
#include "foundation/ideConsts.h"
#include "platform/kvEditorGroups.h"
#include "platform/kvException.h"
#include "platform/kvColor.h"
#include "platform/kvPropAliases.h"
#include "platform/kvPropEdits.h"
#include "platform/kvPropertyRegistry.h"
#include "tests/platform/editortests.h"
#include "tests/testsupport.h"

#include <QGroupBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QtTest>

using namespace kv;
using namespace kv::test;

// An object held by a property and shown through its own properties.
class TKindsPart : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int depth MEMBER m_depth)
    Q_PROPERTY(QString label MEMBER m_label)

public:
    using QObject::QObject;
    int m_depth = 3;
    QString m_label = QStringLiteral("inner");
};

// One property of each kind the standard editors handle.
class TKinds : public QObject
{
    Q_OBJECT
public:
    enum TMode { mdOne, mdTwo, mdThree = 7 };
    Q_ENUM(TMode)

private:
    Q_PROPERTY(TMode mode MEMBER m_mode)
    Q_PROPERTY(Qt::FocusPolicy focus MEMBER m_focus)
    Q_PROPERTY(Qt::Alignment alignment MEMBER m_alignment)
    Q_PROPERTY(bool flag MEMBER m_flag)
    Q_PROPERTY(int number MEMBER m_number)
    Q_PROPERTY(short small MEMBER m_small)
    Q_PROPERTY(uint count MEMBER m_count)
    Q_PROPERTY(qint64 big MEMBER m_big)
    Q_PROPERTY(quint64 huge MEMBER m_huge)
    Q_PROPERTY(double ratio MEMBER m_ratio)
    Q_PROPERTY(float single MEMBER m_single)
    Q_PROPERTY(QString text MEMBER m_text)
    Q_PROPERTY(QString note MEMBER m_note)
    Q_PROPERTY(QByteArray bytes MEMBER m_bytes)
    Q_PROPERTY(QChar letter MEMBER m_letter)
    Q_PROPERTY(QObject *link MEMBER m_link)
    Q_PROPERTY(TKindsPart *part READ part)
    Q_PROPERTY(QVariant any MEMBER m_any)
    Q_PROPERTY(int fixed READ fixed)
    Q_PROPERTY(QLocale locale MEMBER m_locale)
    Q_PROPERTY(kv::TColor color MEMBER m_color)
    Q_PROPERTY(QColor tint MEMBER m_tint)
    Q_PROPERTY(QFont font MEMBER m_font)
    Q_PROPERTY(QSize extent MEMBER m_extent)
    Q_PROPERTY(QRect frame MEMBER m_frame)
    Q_PROPERTY(QStringList lines MEMBER m_lines)

public:
    using QObject::QObject;
    TKindsPart *part() { return &m_part; }
    int fixed() const { return 42; }

    TMode m_mode = mdTwo;
    Qt::FocusPolicy m_focus = Qt::TabFocus;
    Qt::Alignment m_alignment = Qt::AlignLeft | Qt::AlignTop;
    bool m_flag = true;
    int m_number = -12;
    short m_small = 5;
    uint m_count = 4000000000u;
    qint64 m_big = -9000000000LL;
    quint64 m_huge = 18000000000000000000ULL;
    double m_ratio = 0.1 + 0.2;
    float m_single = 0.1f;
    QString m_text = QStringLiteral("Hello");
    QString m_note;
    QByteArray m_bytes = "raw";
    QChar m_letter = u'x';
    QObject *m_link = nullptr;
    TKindsPart m_part{this};
    QVariant m_any = 5;
    QLocale m_locale = QLocale::c();
    TColor m_color = clBtnFace;
    QColor m_tint = QColor(0x12, 0x34, 0x56);
    QFont m_font;
    QSize m_extent = QSize(640, 480);
    QRect m_frame = QRect(1, 2, 30, 40);
    QStringList m_lines = {QStringLiteral("a"), QStringLiteral("b, c")};

Q_SIGNALS:
    void changed(int Amount);
};

namespace {

// Counts what the editors tell the designer.
class TCountingDesigner : public TFDesigner
{
public:
    using TFDesigner::TFDesigner;
    void Modified() override
    {
        ++modified;
        TFDesigner::Modified();
    }
    void ValidateRename(QObject *Component, const QString &CurName, const QString &NewName) override
    {
        renames.append(CurName + QLatin1String("->") + NewName);
        TFDesigner::ValidateRename(Component, CurName, NewName);
    }
    int modified = 0;
    QStringList renames;
};

QStringList Strings(std::initializer_list<const char *> texts)
{
    QStringList strings;
    for (const char *text : texts)
        strings.append(QString::fromUtf8(text));
    return strings;
}

// Editors for the registry tests, told apart by their values.
template <int N>
class TMarkedEditor : public TIntegerProperty
{
public:
    using TIntegerProperty::TIntegerProperty;
    QString GetValue() const override { return QStringLiteral("editor%1").arg(N); }
};

} // namespace

class tst_PropertyEditors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kinds_data();
    void kinds();
    void writes_data();
    void writes();
    void badInput_data();
    void badInput();
    void valueLists();
    void setElements();
    void writesTellTheDesigner();
    void componentName();
    void componentReference();
    void classProperty();
    void commonProperties();
    void destroyedObjects();
    void registryPrecedence();
    void editorGroups();
    void aliases();
};

void tst_PropertyEditors::kinds_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("attributes");

    const int plain = paMultiSelect | paRevertable;
    const int list = plain | paValueList | paSortList;
    QTest::newRow("Q_ENUM") << "mode" << int(tkEnumeration) << "mdTwo" << list;
    QTest::newRow("Qt enum") << "focus" << int(tkEnumeration) << "TabFocus" << list;
    QTest::newRow("flags") << "alignment" << int(tkSet) << "[AlignLeft,AlignTop]"
                           << (plain | paSubProperties | paReadOnly);
    QTest::newRow("bool") << "flag" << int(tkEnumeration) << "True" << list;
    QTest::newRow("int") << "number" << int(tkInteger) << "-12" << plain;
    QTest::newRow("short") << "small" << int(tkInteger) << "5" << plain;
    QTest::newRow("uint") << "count" << int(tkInteger) << "4000000000" << plain;
    QTest::newRow("int64") << "big" << int(tkInt64) << "-9000000000" << plain;
    QTest::newRow("uint64") << "huge" << int(tkInt64) << "18000000000000000000" << plain;
    QTest::newRow("double, shortest exact text") << "ratio" << int(tkFloat) << "0.30000000000000004" << plain;
    QTest::newRow("float, its own precision") << "single" << int(tkFloat) << "0.1" << plain;
    QTest::newRow("caption") << "text" << int(tkLString) << "Hello" << (plain | paAutoUpdate);
    QTest::newRow("string") << "note" << int(tkLString) << "" << plain;
    QTest::newRow("byte array") << "bytes" << int(tkLString) << "raw" << plain;
    QTest::newRow("char") << "letter" << int(tkChar) << "x" << plain;
    QTest::newRow("reference, empty") << "link" << int(tkClass) << "" << list;
    QTest::newRow("object") << "part" << int(tkClass) << "(TKindsPart)" << int(paMultiSelect | paSubProperties | paReadOnly);
    QTest::newRow("variant") << "any" << int(tkVariant) << "5" << plain;
    QTest::newRow("read-only") << "fixed" << int(tkInteger) << "42" << (plain | paReadOnly);
    QTest::newRow("no editor of its own") << "locale" << int(tkUnknown) << "(QLocale)" << (plain | paReadOnly);
    QTest::newRow("component name") << "objectName" << int(tkLString) << "Kinds1" << int(paRevertable);
    const int dialog = plain | paValueList | paDialog;
    QTest::newRow("TColor") << "color" << int(tkInteger) << "clBtnFace" << dialog;
    QTest::newRow("QColor") << "tint" << int(tkInteger) << "$00563412" << dialog;
    QTest::newRow("QFont") << "font" << int(tkClass) << "(QFont)" << int(paMultiSelect | paSubProperties | paReadOnly | paDialog);
    QTest::newRow("QSize") << "extent" << int(tkClass) << "640 x 480" << (plain | paSubProperties);
    QTest::newRow("QRect") << "frame" << int(tkClass) << "[(1, 2), 30 x 40]" << (plain | paSubProperties);
    QTest::newRow("QStringList") << "lines" << int(tkClass) << "a,\"b, c\"" << (plain | paDialog);
    QTest::newRow("signal") << "changed" << int(tkMethod) << "" << int(paMultiSelect | paValueList | paSortList);
}

void tst_PropertyEditors::kinds()
{
    QFETCH(QString, name);
    QFETCH(int, kind);
    QFETCH(QString, value);
    QFETCH(int, attributes);

    TKinds kinds;
    kinds.setObjectName(QStringLiteral("Kinds1"));
    const TEditors editors = EditorsOf({&kinds}, nullptr);
    TPropertyEditor *editor = Find(editors, name);
    QVERIFY2(editor, qPrintable(name));
    QCOMPARE(int(editor->GetPropType()->Kind), kind);
    QCOMPARE(editor->GetValue(), value);
    QCOMPARE(int(editor->GetAttributes()), attributes);
    QVERIFY(editor->ValueAvailable());
    QCOMPARE(editor->PropCount(), 1);
    QCOMPARE(editor->GetComponent(0), &kinds);
}

void tst_PropertyEditors::writes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");

    QTest::newRow("enum key") << "mode" << "mdThree" << "mdThree";
    QTest::newRow("enum key, any case") << "focus" << "strongfocus" << "StrongFocus";
    QTest::newRow("enum number without a key") << "mode" << "5" << "5";
    QTest::newRow("flags") << "alignment" << "[AlignRight, AlignBottom]" << "[AlignRight,AlignBottom]";
    QTest::newRow("flags, empty") << "alignment" << "[]" << "[]";
    QTest::newRow("flags, bits no key names") << "alignment" << "[AlignLeft,1048576]" << "[AlignLeft,1048576]";
    QTest::newRow("bool") << "flag" << "false" << "False";
    QTest::newRow("int, hex") << "number" << "$1F" << "31";
    QTest::newRow("int, 0x") << "number" << "-0x10" << "-16";
    QTest::newRow("int, blanks") << "number" << " 7 " << "7";
    QTest::newRow("short, lowest") << "small" << "-32768" << "-32768";
    QTest::newRow("uint, highest") << "count" << "4294967295" << "4294967295";
    QTest::newRow("int64, lowest") << "big" << "-9223372036854775808" << "-9223372036854775808";
    QTest::newRow("uint64, highest") << "huge" << "18446744073709551615" << "18446744073709551615";
    QTest::newRow("double") << "ratio" << "2.5e-3" << "0.0025";
    QTest::newRow("double, comma") << "ratio" << "1,5" << "1.5";
    QTest::newRow("float") << "single" << "3.25" << "3.25";
    QTest::newRow("string") << "note" << "a, \"b\"" << "a, \"b\"";
    QTest::newRow("caption") << "text" << "" << "";
    QTest::newRow("byte array") << "bytes" << "\u00e9t\u00e9" << "\u00e9t\u00e9";
    QTest::newRow("char") << "letter" << "Q" << "Q";
    QTest::newRow("char by code") << "letter" << "#32" << "#32";
    QTest::newRow("char, empty is #0") << "letter" << "" << "#0";
    QTest::newRow("variant keeps its type") << "any" << "17" << "17";
    QTest::newRow("variant, text") << "any" << "word" << "word";
}

void tst_PropertyEditors::writes()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(QString, shown);

    TKinds kinds;
    const TEditors editors = EditorsOf({&kinds}, nullptr);
    TPropertyEditor *editor = Find(editors, name);
    QVERIFY(editor);
    editor->SetValue(text);
    QCOMPARE(editor->GetValue(), shown);
    // What is shown writes back as the same value.
    const QVariant before = kinds.property(name.toLatin1().constData());
    editor->SetValue(editor->GetValue());
    QCOMPARE(kinds.property(name.toLatin1().constData()), before);
    if (name == QLatin1String("any"))
        QCOMPARE(kinds.m_any.metaType(), text == QLatin1String("17") ? QMetaType::fromType<int>() : QMetaType::fromType<QString>());
}

void tst_PropertyEditors::badInput_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");

    QTest::newRow("int") << "number" << "abc" << "'abc' is not a valid integer value";
    QTest::newRow("int, empty") << "number" << "" << "'' is not a valid integer value";
    QTest::newRow("int, too big") << "number" << "3000000000" << "Value must be between -2147483648 and 2147483647";
    QTest::newRow("short, too small") << "small" << "-32769" << "Value must be between -32768 and 32767";
    QTest::newRow("uint, negative") << "count" << "-1" << "Value must be between 0 and 4294967295";
    QTest::newRow("int64, beyond") << "big" << "9223372036854775808" << "Value must be between -9223372036854775808 and 9223372036854775807";
    QTest::newRow("uint64, negative") << "huge" << "-1" << "Value must be between 0 and 18446744073709551615";
    QTest::newRow("double") << "ratio" << "1.2.3" << "'1.2.3' is not a valid floating point value";
    QTest::newRow("enum") << "mode" << "mdFour" << "'mdFour' is not a valid TKinds::TMode value";
    QTest::newRow("enum, number out of range") << "focus" << "99999999999" << "'99999999999' is not a valid Qt::FocusPolicy value";
    QTest::newRow("bool") << "flag" << "yes" << "'yes' is not a valid Boolean value";
    QTest::newRow("set") << "alignment" << "[AlignLeft,Nowhere]" << "'[AlignLeft,Nowhere]' is not a valid set value";
    QTest::newRow("char") << "letter" << "ab" << "'ab' is not a valid character value";
    QTest::newRow("char code") << "letter" << "#x" << "'#x' is not a valid character value";
    QTest::newRow("char code, too big") << "letter" << "#65536" << "Value must be between 0 and 65535";
    QTest::newRow("read-only") << "fixed" << "1" << "Property fixed is read-only";
    QTest::newRow("object") << "part" << "(QObject)" << "Invalid property value";
    QTest::newRow("reference") << "link" << "Nobody" << "There is no component named 'Nobody' of class QObject";
}

void tst_PropertyEditors::badInput()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(QString, message);

    TKinds kinds;
    TCountingDesigner designer;
    const TEditors editors = EditorsOf({&kinds}, &designer);
    TPropertyEditor *editor = Find(editors, name);
    QVERIFY(editor);
    const QString before = editor->GetValue();
    QCOMPARE(ErrorOf([&] { editor->SetValue(text); }), message);
    QCOMPARE(editor->GetValue(), before);
    QCOMPARE(designer.modified, 0);
}

void tst_PropertyEditors::valueLists()
{
    TKinds kinds;
    const TEditors editors = EditorsOf({&kinds}, nullptr);
    QCOMPARE(ValuesOf(*Find(editors, QStringLiteral("mode"))), Strings({"mdOne", "mdTwo", "mdThree"}));
    QCOMPARE(ValuesOf(*Find(editors, QStringLiteral("flag"))), Strings({"False", "True"}));
    QVERIFY(ValuesOf(*Find(editors, QStringLiteral("focus"))).contains(QStringLiteral("WheelFocus")));
    QVERIFY(ValuesOf(*Find(editors, QStringLiteral("number"))).isEmpty());

    // Edit steps through a value list, from the last to the first.
    TPropertyEditor *mode = Find(editors, QStringLiteral("mode"));
    mode->Edit();
    QCOMPARE(kinds.m_mode, TKinds::mdThree);
    mode->Edit();
    QCOMPARE(kinds.m_mode, TKinds::mdOne);
}

void tst_PropertyEditors::setElements()
{
    TKinds kinds;
    const TEditors editors = EditorsOf({&kinds}, nullptr);
    TPropertyEditor *alignment = Find(editors, QStringLiteral("alignment"));
    const TEditors elements = SubEditors(*alignment);
    const QStringList names = Names(elements);
    // Single bits only: composites (AlignCenter), masks and aliases are not elements.
    QVERIFY(names.contains(QStringLiteral("AlignLeft")));
    QVERIFY(names.contains(QStringLiteral("AlignHCenter")));
    QVERIFY(!names.contains(QStringLiteral("AlignCenter")));
    QVERIFY(!names.contains(QStringLiteral("AlignHorizontal_Mask")));
    QVERIFY(!names.contains(QStringLiteral("AlignLeading")));
    QCOMPARE(names.count(QStringLiteral("AlignLeft")), 1);

    TPropertyEditor *left = Find(elements, QStringLiteral("AlignLeft"));
    TPropertyEditor *bottom = Find(elements, QStringLiteral("AlignBottom"));
    QCOMPARE(left->GetValue(), QStringLiteral("True"));
    QCOMPARE(bottom->GetValue(), QStringLiteral("False"));
    QCOMPARE(ValuesOf(*left), Strings({"False", "True"}));
    bottom->SetValue(QStringLiteral("True"));
    left->SetValue(QStringLiteral("false"));
    QCOMPARE(kinds.m_alignment, Qt::AlignTop | Qt::AlignBottom);
    QCOMPARE(alignment->GetValue(), QStringLiteral("[AlignTop,AlignBottom]"));
    QCOMPARE(ErrorOf([&] { left->SetValue(QStringLiteral("maybe")); }), QStringLiteral("'maybe' is not a valid Boolean value"));

    // With two objects an element is written into each, keeping each one's other bits.
    TKinds other;
    other.m_alignment = Qt::AlignRight;
    const TEditors both = EditorsOf({&kinds, &other}, nullptr);
    const TEditors bothElements = SubEditors(*Find(both, QStringLiteral("alignment")));
    TPropertyEditor *vcenter = Find(bothElements, QStringLiteral("AlignVCenter"));
    QVERIFY(vcenter->AllEqual());
    QVERIFY(!Find(bothElements, QStringLiteral("AlignTop"))->AllEqual());
    vcenter->SetValue(QStringLiteral("True"));
    QCOMPARE(kinds.m_alignment, Qt::AlignTop | Qt::AlignBottom | Qt::AlignVCenter);
    QCOMPARE(other.m_alignment, Qt::AlignRight | Qt::AlignVCenter);
}

void tst_PropertyEditors::writesTellTheDesigner()
{
    TKinds kinds;
    TCountingDesigner designer;
    const TEditors editors = EditorsOf({&kinds}, &designer);
    Find(editors, QStringLiteral("number"))->SetValue(QStringLiteral("3"));
    QCOMPARE(designer.modified, 1);
    Find(editors, QStringLiteral("mode"))->SetValue(QStringLiteral("mdOne"));
    QCOMPARE(designer.modified, 2);

    // A designer that is gone is not called.
    TEditors orphans;
    {
        TCountingDesigner shortLived;
        orphans = EditorsOf({&kinds}, &shortLived);
    }
    QVERIFY(!Find(orphans, QStringLiteral("number"))->Designer());
    Find(orphans, QStringLiteral("number"))->SetValue(QStringLiteral("9"));
    QCOMPARE(kinds.m_number, 9);
}

void tst_PropertyEditors::componentName()
{
    auto form = test::NamedWindow(QStringLiteral("Form1"));
    auto *button = test::Make<QPushButton>(form.get(), QStringLiteral("Button1"));
    test::Make<QLabel>(form.get(), QStringLiteral("Label1"));
    TCountingDesigner designer;
    designer.SetOwnerControl(form.get());

    const TEditors editors = EditorsOf({button}, &designer);
    TPropertyEditor *name = Find(editors, QStringLiteral("objectName"));
    QVERIFY(!(name->GetAttributes() & paMultiSelect));
    name->SetValue(QStringLiteral("OkButton"));
    QCOMPARE(button->objectName(), QStringLiteral("OkButton"));
    QCOMPARE(designer.renames, Strings({"Button1->OkButton"}));
    QCOMPARE(designer.modified, 1);

    // Its own name again is no rename.
    name->SetValue(QStringLiteral("OkButton"));
    QCOMPARE(designer.renames.size(), 1);

    QCOMPARE(ErrorOf([&] { name->SetValue(QStringLiteral("label1")); }),
             QStringLiteral("A component named label1 already exists"));
    QCOMPARE(ErrorOf([&] { name->SetValue(QStringLiteral("2nd")); }), QStringLiteral("'2nd' is not a valid component name"));
    QCOMPARE(button->objectName(), QStringLiteral("OkButton"));
    QCOMPARE(designer.renames.size(), 1);

    // An empty name is no name, and allowed.
    name->SetValue(QString());
    QVERIFY(button->objectName().isEmpty());

    // Renaming is one object at a time: two objects have no name editor.
    QVERIFY(!Find(EditorsOf({button, form.get()}, &designer), QStringLiteral("objectName")));
}

void tst_PropertyEditors::componentReference()
{
    auto form = test::NamedWindow(QStringLiteral("Form1"));
    auto *kinds = test::Make<TKinds>(form.get(), QStringLiteral("Kinds1"));
    auto *button = test::Make<QPushButton>(form.get(), QStringLiteral("Button1"));
    test::Make<QLabel>(form.get(), QStringLiteral("Label1"));
    TFDesigner designer;
    designer.SetOwnerControl(form.get());

    for (IFormDesigner *with : {static_cast<IFormDesigner *>(&designer), static_cast<IFormDesigner *>(nullptr)}) {
        kinds->m_link = nullptr;
        const TEditors editors = EditorsOf({kinds}, with);
        TPropertyEditor *link = Find(editors, QStringLiteral("link"));
        const QStringList values = ValuesOf(*link);
        QVERIFY2(values.contains(QStringLiteral("Button1")) && values.contains(QStringLiteral("Label1")),
                 qPrintable(values.join(QLatin1Char(','))));
        link->SetValue(QStringLiteral("button1"));
        QCOMPARE(kinds->m_link, button);
        QCOMPARE(link->GetValue(), QStringLiteral("Button1"));
        link->SetValue(QString());
        QCOMPARE(kinds->m_link, nullptr);
    }

    // An unnamed object still reads as one, and its text writes back as itself.
    QObject unnamed;
    kinds->m_link = &unnamed;
    const TEditors editors = EditorsOf({kinds}, &designer);
    TPropertyEditor *link = Find(editors, QStringLiteral("link"));
    QCOMPARE(link->GetValue(), QStringLiteral("(QObject)"));
    link->SetValue(link->GetValue());
    QCOMPARE(kinds->m_link, &unnamed);
}

void tst_PropertyEditors::classProperty()
{
    TKinds kinds;
    TCountingDesigner designer;
    const TEditors editors = EditorsOf({&kinds}, &designer);
    const TEditors parts = SubEditors(*Find(editors, QStringLiteral("part")));
    QCOMPARE(Names(parts), Strings({"objectName", "depth", "label"}));
    TPropertyEditor *depth = Find(parts, QStringLiteral("depth"));
    QCOMPARE(depth->GetValue(), QStringLiteral("3"));
    depth->SetValue(QStringLiteral("8"));
    QCOMPARE(kinds.m_part.m_depth, 8);
    QCOMPARE(depth->GetComponent(0), &kinds.m_part);
    QCOMPARE(designer.modified, 1);

    // Of two objects' parts only what can be set for several at once: not the name.
    TKinds other;
    const TEditors twoParts = SubEditors(*Find(EditorsOf({&kinds, &other}), QStringLiteral("part")));
    QCOMPARE(Names(twoParts), Strings({"depth", "label"}));

    // A null object has no sub-properties and shows nothing.
    kinds.m_link = nullptr;
    TPropertyEditor *link = Find(editors, QStringLiteral("link"));
    QVERIFY(SubEditors(*link).empty());
}

void tst_PropertyEditors::commonProperties()
{
    auto form = test::NamedWindow(QStringLiteral("Form1"));
    auto *button = test::Make<QPushButton>(form.get(), QStringLiteral("Button1"));
    auto *label = test::Make<QLabel>(form.get(), QStringLiteral("Label1"));
    button->setText(QStringLiteral("Same"));
    label->setText(QStringLiteral("Same"));
    TCountingDesigner designer;

    const TEditors one = EditorsOf({button}, &designer);
    const TEditors both = EditorsOf({button, label}, &designer);
    const QStringList names = Names(both);
    // QAbstractButton::text and QLabel::text are two properties of one name and type.
    QVERIFY(names.contains(QStringLiteral("text")));
    QVERIFY(names.contains(QStringLiteral("enabled")));
    QVERIFY(!names.contains(QStringLiteral("checkable")));
    QVERIFY(!names.contains(QStringLiteral("wordWrap")));
    QVERIFY(!names.contains(QStringLiteral("objectName")));
    QVERIFY(names.size() < int(one.size()));
    // In the order of the first object's class.
    QVERIFY(names.indexOf(QStringLiteral("enabled")) < names.indexOf(QStringLiteral("text")));

    TPropertyEditor *text = Find(both, QStringLiteral("text"));
    QCOMPARE(text->PropCount(), 2);
    QVERIFY(text->AllEqual());
    QVERIFY(text->GetPropInfo(0) != text->GetPropInfo(1));
    QCOMPARE(text->GetPropInfo(2), text->GetPropInfo(-1)); // past the end: the editor's own
    text->SetValue(QStringLiteral("Changed"));
    QCOMPARE(button->text(), QStringLiteral("Changed"));
    QCOMPARE(label->text(), QStringLiteral("Changed"));
    QCOMPARE(designer.modified, 1);

    TPropertyEditor *enabled = Find(both, QStringLiteral("enabled"));
    label->setEnabled(false);
    QVERIFY(!enabled->AllEqual());
    QCOMPARE(enabled->GetValue(), QStringLiteral("True"));
    enabled->SetValue(QStringLiteral("False"));
    QVERIFY(!button->isEnabled());

    // A property of the same name but another type is not common.
    TKinds kinds;
    kinds.m_number = 1;
    QObject plain;
    QCOMPARE(Names(EditorsOf({&kinds, &plain}, nullptr, TTypeKinds::Properties())), QStringList());
    // Signals are common the same way.
    QCOMPARE(Names(EditorsOf({&kinds, &plain}, nullptr, tkMethod)), Strings({"destroyed", "objectNameChanged"}));

    // Events are listed only when asked for, properties only when asked for.
    const TEditors events = EditorsOf({button}, nullptr, tkMethod);
    QVERIFY(Names(events).contains(QStringLiteral("clicked")));
    QVERIFY(!Names(events).contains(QStringLiteral("text")));
    QVERIFY(!Names(EditorsOf({button}, nullptr, TTypeKinds::Properties())).contains(QStringLiteral("clicked")));

    // Null objects are passed over; an empty selection gives nothing.
    QCOMPARE(Find(EditorsOf({nullptr, button}, nullptr), QStringLiteral("text"))->PropCount(), 1);
    QVERIFY(EditorsOf({}, nullptr).empty());
}

void tst_PropertyEditors::destroyedObjects()
{
    auto kept = std::make_unique<TKinds>();
    auto doomed = std::make_unique<TKinds>();
    const TEditors editors = EditorsOf({doomed.get(), kept.get()}, nullptr);
    TPropertyEditor *number = Find(editors, QStringLiteral("number"));
    const TEditors parts = SubEditors(*Find(editors, QStringLiteral("part")));
    doomed.reset();

    QVERIFY(!number->ValueAvailable());
    QCOMPARE(number->GetComponent(0), nullptr);
    QCOMPARE(number->GetValue(), QString());
    number->SetValue(QStringLiteral("77"));
    QCOMPARE(kept->m_number, 77);
    QVERIFY(!Find(parts, QStringLiteral("depth"))->ValueAvailable());
}

void tst_PropertyEditors::registryPrecedence()
{
    const int group = NewEditorGroup();
    TKinds kinds;
    QPushButton button;
    auto valueOf = [](QObject *object, const QString &name) {
        const TEditors editors = EditorsOf({object}, nullptr);
        return Find(editors, name)->GetValue();
    };

    QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("-12"));
    RegisterPropertyEditor(TypeInfo<int>(), nullptr, QString(), PropertyEditorClass<TMarkedEditor<1>>);
    QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("editor1"));
    // A class-specific entry beats one for any class, however old.
    RegisterPropertyEditor(TypeInfo<int>(), &TKinds::staticMetaObject, QString(), PropertyEditorClass<TMarkedEditor<2>>);
    RegisterPropertyEditor(TypeInfo<int>(), nullptr, QString(), PropertyEditorClass<TMarkedEditor<3>>);
    QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("editor2"));
    QCOMPARE(valueOf(&button, QStringLiteral("width")), QStringLiteral("editor3"));
    // A name beats a class, compared ignoring case.
    RegisterPropertyEditor(TypeInfo<int>(), nullptr, QStringLiteral("NUMBER"), PropertyEditorClass<TMarkedEditor<4>>);
    RegisterPropertyEditor(TypeInfo<int>(), &TKinds::staticMetaObject, QString(), PropertyEditorClass<TMarkedEditor<5>>);
    QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("editor4"));
    QCOMPARE(valueOf(&kinds, QStringLiteral("count")), QString::number(kinds.m_count)); // uint: another type
    // Among equals the newest wins.
    RegisterPropertyEditor(TypeInfo<int>(), nullptr, QStringLiteral("number"), PropertyEditorClass<TMarkedEditor<6>>);
    QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("editor6"));
    // A more derived class beats its ancestor.
    RegisterPropertyEditor(TypeInfo<int>(), &QAbstractButton::staticMetaObject, QString(), PropertyEditorClass<TMarkedEditor<7>>);
    RegisterPropertyEditor(TypeInfo<int>(), &QWidget::staticMetaObject, QString(), PropertyEditorClass<TMarkedEditor<8>>);
    QCOMPARE(valueOf(&button, QStringLiteral("width")), QStringLiteral("editor7"));

    // Class types: the exact type before an ancestor class, whatever the age.
    const PTypeInfo objectType = TypeInfo<QObject *>();
    const PTypeInfo partType = TypeInfo<TKindsPart *>();
    QVERIFY(GetEditorClass(partType, nullptr, nullptr, QString()) == PropertyEditorClass<TComponentProperty>);
    RegisterPropertyEditor(partType, nullptr, QString(), PropertyEditorClass<TClassProperty>);
    RegisterPropertyEditor(objectType, nullptr, QStringLiteral("part"), PropertyEditorClass<TVariantProperty>);
    QVERIFY(GetEditorClass(partType, &TKinds::staticMetaObject, nullptr, QStringLiteral("part")) ==
             PropertyEditorClass<TClassProperty>);
    QVERIFY(GetEditorClass(TypeInfo<TKinds *>(), nullptr, nullptr, QStringLiteral("part")) ==
             PropertyEditorClass<TVariantProperty>);

    // Parts match entries for their owner type only.
    const PTypeInfo intType = TypeInfo<int>();
    RegisterPropertyEditor(intType, TypeInfo<QSize>(), QStringLiteral("Width"), PropertyEditorClass<TMarkedEditor<9>>);
    QVERIFY(GetEditorClass(intType, nullptr, TypeInfo<QSize>(), QStringLiteral("width")) == PropertyEditorClass<TMarkedEditor<9>>);
    QVERIFY(GetEditorClass(intType, nullptr, TypeInfo<QRect>(), QStringLiteral("Width")) != PropertyEditorClass<TMarkedEditor<9>>);
    QVERIFY(GetEditorClass(intType, &QWidget::staticMetaObject, nullptr, QStringLiteral("Width")) != PropertyEditorClass<TMarkedEditor<9>>);

    QCOMPARE(ErrorOf([] { RegisterPropertyEditor(nullptr, nullptr, QString(), PropertyEditorClass<TIntegerProperty>); }),
             QStringLiteral("RegisterPropertyEditor can't register nil"));
    FreeEditorGroup(group);
    QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("-12"));
}

void tst_PropertyEditors::editorGroups()
{
    TKinds kinds;
    auto numberValue = [&] {
        const TEditors editors = EditorsOf({&kinds}, nullptr);
        return Find(editors, QStringLiteral("number"))->GetValue();
    };
    const int first = NewEditorGroup();
    RegisterPropertyEditor(TypeInfo<int>(), nullptr, QString(), PropertyEditorClass<TMarkedEditor<1>>);
    const int second = NewEditorGroup();
    RegisterPropertyEditor(TypeInfo<int>(), nullptr, QString(), PropertyEditorClass<TMarkedEditor<2>>);
    QCOMPARE(numberValue(), QStringLiteral("editor2"));
    // Freeing a group takes its entries, and only its.
    FreeEditorGroup(second);
    QCOMPARE(numberValue(), QStringLiteral("editor1"));
    FreeEditorGroup(first);
    QCOMPARE(numberValue(), QStringLiteral("-12"));
    // The standard editors belong to no group: freeing every group leaves them.
    FreeEditorGroup(-1);
    QCOMPARE(Find(EditorsOf({&kinds}, nullptr), QStringLiteral("text"))->GetAttributes() & paAutoUpdate, paAutoUpdate);
    QVERIFY(!(Find(EditorsOf({&kinds}, nullptr), QStringLiteral("objectName"))->GetAttributes() & paMultiSelect));
}

void tst_PropertyEditors::aliases()
{
    QCOMPARE(QtPropertyNames(QStringLiteral("caption")), Strings({"text", "title", "windowTitle"}));
    QCOMPARE(QtPropertyNames(QStringLiteral("Hint")), Strings({"toolTip"}));
    QVERIFY(QtPropertyNames(QStringLiteral("Color")).isEmpty());
    QCOMPARE(PlatformPropertyName(QStringLiteral("objectName")), QStringLiteral("Name"));
    QCOMPARE(PlatformPropertyName(QStringLiteral("title")), QStringLiteral("Caption"));
    QVERIFY(IsAliasOf(QStringLiteral("windowTitle"), QStringLiteral("Caption")));
    QVERIFY(!IsAliasOf(QStringLiteral("toolTip"), QStringLiteral("Caption")));

    QLabel label;
    QGroupBox box;
    QWidget widget;
    QCOMPARE(QLatin1String(FindAliasedProperty(&label, QStringLiteral("Caption")).name()), QLatin1String("text"));
    QCOMPARE(QLatin1String(FindAliasedProperty(&box, QStringLiteral("Caption")).name()), QLatin1String("title"));
    QCOMPARE(QLatin1String(FindAliasedProperty(&widget, QStringLiteral("Caption")).name()), QLatin1String("windowTitle"));
    QVERIFY(!FindAliasedProperty(&widget, QStringLiteral("Items")).isValid());
    QVERIFY(!FindAliasedProperty(nullptr, QStringLiteral("Caption")).isValid());
}

QTEST_MAIN(tst_PropertyEditors)
#include "tst_propertyeditors.moc"
