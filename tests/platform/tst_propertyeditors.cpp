// The property editors of the type kinds, the enumeration of a selection's common properties
// and the editor registry.

#include "platform/kvEditorGroups.h"
#include "platform/kvPropAliases.h"
#include "platform/kvPropEdits.h"
#include "tests/platform/editortests.h"
#include "tests/testsupport.h"

#include <QtTest>
#include <QtWidgets>

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
    Q_PROPERTY(Qt::Alignment alignment MEMBER m_alignment)
    Q_PROPERTY(bool flag MEMBER m_flag)
    Q_PROPERTY(int number MEMBER m_number)
    Q_PROPERTY(qint64 big MEMBER m_big)
    Q_PROPERTY(quint64 huge MEMBER m_huge)
    Q_PROPERTY(double ratio MEMBER m_ratio)
    Q_PROPERTY(float single MEMBER m_single)
    Q_PROPERTY(QString text MEMBER m_text)
    Q_PROPERTY(QString note MEMBER m_note)
    Q_PROPERTY(QChar letter MEMBER m_letter)
    Q_PROPERTY(QObject *link MEMBER m_link)
    Q_PROPERTY(TKindsPart *part READ part)
    Q_PROPERTY(QVariant any MEMBER m_any)
    Q_PROPERTY(int fixed READ fixed)
    Q_PROPERTY(QLocale locale MEMBER m_locale)

public:
    using QObject::QObject;
    TKindsPart *part() { return &m_part; }
    int fixed() const { return 42; }

    TMode m_mode = mdTwo;
    Qt::Alignment m_alignment = Qt::AlignLeft | Qt::AlignTop;
    bool m_flag = true;
    int m_number = -12;
    qint64 m_big = -9000000000LL;
    quint64 m_huge = 18000000000000000000ULL;
    double m_ratio = 0.1 + 0.2;
    float m_single = 0.1f;
    QString m_text = QStringLiteral("Hello");
    QString m_note;
    QChar m_letter = u'x';
    QObject *m_link = nullptr;
    TKindsPart m_part{this};
    QVariant m_any = 5;
    QLocale m_locale = QLocale::c();

Q_SIGNALS:
    void changed(int Amount);
};

namespace {

// A row of texts(): Text written into Name shows as Shown.
void Shows(const char *Name, const char *Text, const char *Shown)
{
    QTest::addRow("%s: %s", Name, Text) << QString::fromLatin1(Name) << QString::fromUtf8(Text) << QString::fromUtf8(Shown)
                                        << QString();
}

// A row of texts(): Text written into Name raises Message.
void Refuses(const char *Name, const char *Text, const char *Message)
{
    QTest::addRow("%s refuses %s", Name, Text) << QString::fromLatin1(Name) << QString::fromUtf8(Text) << QString()
                                               << QString::fromUtf8(Message);
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
    void texts_data();
    void texts();
    void valueListsAndSets();
    void components();
    void classProperty();
    void commonProperties();
    void destroyedObjects();
    void registry();
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
    QTest::newRow("flags") << "alignment" << int(tkSet) << "[AlignLeft,AlignTop]" << (plain | paSubProperties | paReadOnly);
    QTest::newRow("bool") << "flag" << int(tkEnumeration) << "True" << list;
    QTest::newRow("double, shortest exact text") << "ratio" << int(tkFloat) << "0.30000000000000004" << plain;
    QTest::newRow("float, its own precision") << "single" << int(tkFloat) << "0.1" << plain;
    QTest::newRow("caption") << "text" << int(tkLString) << "Hello" << (plain | paAutoUpdate);
    QTest::newRow("string") << "note" << int(tkLString) << "" << plain;
    QTest::newRow("reference, empty") << "link" << int(tkClass) << "" << list;
    QTest::newRow("object") << "part" << int(tkClass) << "(TKindsPart)" << int(paMultiSelect | paSubProperties | paReadOnly);
    QTest::newRow("read-only") << "fixed" << int(tkInteger) << "42" << (plain | paReadOnly);
    QTest::newRow("no editor of its own") << "locale" << int(tkUnknown) << "(QLocale)" << (plain | paReadOnly);
    QTest::newRow("component name") << "objectName" << int(tkLString) << "Kinds1" << int(paRevertable);
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
}

void tst_PropertyEditors::texts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("message");

    Shows("mode", "mdThree", "mdThree");
    Shows("mode", "mdtwo", "mdTwo");
    Shows("mode", "5", "5"); // a number without a key
    Shows("alignment", "[AlignRight, AlignBottom]", "[AlignRight,AlignBottom]");
    Shows("alignment", "[]", "[]");
    Shows("alignment", "[AlignLeft,1048576]", "[AlignLeft,1048576]");
    Shows("flag", "false", "False");
    Shows("number", "$1F", "31");
    Shows("number", "-0x10", "-16");
    Shows("number", " 7 ", "7");
    Shows("number", "-2147483648", "-2147483648");
    Shows("number", "2147483647", "2147483647");
    Shows("big", "-9223372036854775808", "-9223372036854775808");
    Shows("huge", "18446744073709551615", "18446744073709551615");
    Shows("ratio", "2.5e-3", "0.0025");
    Shows("ratio", "1,5", "1.5");
    Shows("single", "3.25", "3.25");
    Shows("note", "a, \"b\"", "a, \"b\"");
    Shows("letter", "Q", "Q");
    Shows("letter", "#32", "#32");
    Shows("letter", "", "#0");
    Shows("any", "17", "17"); // keeps its type
    Shows("any", "word", "word");

    Refuses("number", "abc", "'abc' is not a valid integer value");
    Refuses("number", "", "'' is not a valid integer value");
    Refuses("number", "3000000000", "Value must be between -2147483648 and 2147483647");
    Refuses("number", "-2147483649", "Value must be between -2147483648 and 2147483647");
    Refuses("big", "9223372036854775808", "Value must be between -9223372036854775808 and 9223372036854775807");
    Refuses("huge", "-1", "Value must be between 0 and 18446744073709551615");
    Refuses("ratio", "1.2.3", "'1.2.3' is not a valid floating point value");
    Refuses("mode", "mdFour", "'mdFour' is not a valid TKinds::TMode value");
    Refuses("mode", "99999999999", "'99999999999' is not a valid TKinds::TMode value");
    Refuses("flag", "yes", "'yes' is not a valid Boolean value");
    Refuses("alignment", "[AlignLeft,Nowhere]", "'[AlignLeft,Nowhere]' is not a valid set value");
    Refuses("letter", "ab", "'ab' is not a valid character value");
    Refuses("letter", "#x", "'#x' is not a valid character value");
    Refuses("letter", "#65536", "Value must be between 0 and 65535");
    Refuses("fixed", "1", "Property fixed is read-only");
    Refuses("part", "(QObject)", "Invalid property value");
    Refuses("link", "Nobody", "There is no component named 'Nobody' of class QObject");
}

// Text written shows as the row's text, tells the designer once and writes back as the same
// value; text that makes no value raises the row's message and changes nothing.
void tst_PropertyEditors::texts()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(QString, shown);
    QFETCH(QString, message);

    TKinds kinds;
    TRecordingDesigner designer;
    const TEditors editors = EditorsOf({&kinds}, &designer);
    TPropertyEditor *editor = Find(editors, name);
    QVERIFY(editor);
    const QString before = editor->GetValue();
    QCOMPARE(ErrorOf([&] { editor->SetValue(text); }), message);
    if (!message.isEmpty()) {
        QCOMPARE(editor->GetValue(), before);
        QCOMPARE(designer.modified, 0);
        return;
    }
    QCOMPARE(editor->GetValue(), shown);
    QCOMPARE(designer.modified, 1);
    const QVariant written = kinds.property(name.toLatin1().constData());
    editor->SetValue(shown);
    QCOMPARE(kinds.property(name.toLatin1().constData()), written);
    if (name == QLatin1String("any"))
        QCOMPARE(kinds.m_any.metaType(), text == QLatin1String("17") ? QMetaType::fromType<int>() : QMetaType::fromType<QString>());
}

// Value lists: an enumeration's keys, a Boolean's two values; Edit steps through them, from
// the last to the first. A set's elements are its single bits (not composites, masks or
// aliases), each a Boolean that, written into several objects, keeps each one's other bits.
void tst_PropertyEditors::valueListsAndSets()
{
    TKinds kinds;
    const TEditors editors = EditorsOf({&kinds}, nullptr);
    TPropertyEditor *mode = Find(editors, QStringLiteral("mode"));
    QCOMPARE(ValuesOf(*mode), Strings({"mdOne", "mdTwo", "mdThree"}));
    QCOMPARE(ValuesOf(*Find(editors, QStringLiteral("flag"))), Strings({"False", "True"}));
    mode->Edit();
    QCOMPARE(kinds.m_mode, TKinds::mdThree);
    mode->Edit();
    QCOMPARE(kinds.m_mode, TKinds::mdOne);

    TPropertyEditor *alignment = Find(editors, QStringLiteral("alignment"));
    const TEditors elements = SubEditors(*alignment);
    QCOMPARE(Names(elements), Strings({"AlignLeft", "AlignRight", "AlignHCenter", "AlignJustify", "AlignAbsolute",
                                       "AlignTop", "AlignBottom", "AlignVCenter", "AlignBaseline"}));
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

    TKinds other;
    other.m_alignment = Qt::AlignRight;
    const TEditors bothElements = SubEditors(*Find(EditorsOf({&kinds, &other}, nullptr), QStringLiteral("alignment")));
    TPropertyEditor *vcenter = Find(bothElements, QStringLiteral("AlignVCenter"));
    QVERIFY(vcenter->AllEqual());
    QVERIFY(!Find(bothElements, QStringLiteral("AlignTop"))->AllEqual());
    vcenter->SetValue(QStringLiteral("True"));
    QCOMPARE(kinds.m_alignment, Qt::AlignTop | Qt::AlignBottom | Qt::AlignVCenter);
    QCOMPARE(other.m_alignment, Qt::AlignRight | Qt::AlignVCenter);
}

// References to components are offered and found by name, through the designer or without
// one. A component's name is one object's at a time; renaming asks the designer and refuses a
// name that is taken or is no identifier.
void tst_PropertyEditors::components()
{
    auto form = test::NamedWindow(QStringLiteral("Form1"));
    auto *kinds = test::Make<TKinds>(form.get(), QStringLiteral("Kinds1"));
    auto *button = test::Make<QPushButton>(form.get(), QStringLiteral("Button1"));
    test::Make<QLabel>(form.get(), QStringLiteral("Label1"));
    TRecordingDesigner designer;
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

    designer.modified = 0;
    const TEditors buttonEditors = EditorsOf({button}, &designer);
    TPropertyEditor *name = Find(buttonEditors, QStringLiteral("objectName"));
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
    QVERIFY(!Find(EditorsOf({button, form.get()}, &designer), QStringLiteral("objectName")));
}

void tst_PropertyEditors::classProperty()
{
    TKinds kinds;
    TRecordingDesigner designer;
    const TEditors editors = EditorsOf({&kinds}, &designer);
    const TEditors parts = SubEditors(*Find(editors, QStringLiteral("part")));
    QCOMPARE(Names(parts), Strings({"objectName", "depth", "label"}));
    TPropertyEditor *depth = Find(parts, QStringLiteral("depth"));
    QCOMPARE(depth->GetValue(), QStringLiteral("3"));
    depth->SetValue(QStringLiteral("8"));
    QCOMPARE(kinds.m_part.m_depth, 8);
    QCOMPARE(designer.modified, 1);

    // Of two objects' parts only what can be set for several at once: not the name.
    TKinds other;
    const TEditors twoParts = SubEditors(*Find(EditorsOf({&kinds, &other}), QStringLiteral("part")));
    QCOMPARE(Names(twoParts), Strings({"depth", "label"}));

    // A null object has no sub-properties and shows nothing.
    QVERIFY(SubEditors(*Find(editors, QStringLiteral("link"))).empty());
}

void tst_PropertyEditors::commonProperties()
{
    auto form = test::NamedWindow(QStringLiteral("Form1"));
    auto *button = test::Make<QPushButton>(form.get(), QStringLiteral("Button1"));
    auto *label = test::Make<QLabel>(form.get(), QStringLiteral("Label1"));
    button->setText(QStringLiteral("Same"));
    label->setText(QStringLiteral("Same"));
    TRecordingDesigner designer;

    const TEditors both = EditorsOf({button, label}, &designer);
    // QAbstractButton::text and QLabel::text are two properties of one name and type; checkable
    // and wordWrap are one class's only. In the order of the first object's class.
    const QRegularExpression some(QStringLiteral("^(text|enabled|checkable|wordWrap)$"));
    QCOMPARE(Names(both).filter(some), Strings({"enabled", "text"}));

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

    // A property of the same name but another type is not common; signals are common the
    // same way.
    TKinds kinds;
    QObject plain;
    QCOMPARE(Names(EditorsOf({&kinds, &plain}, nullptr, TTypeKinds::Properties())), QStringList());
    QCOMPARE(Names(EditorsOf({&kinds, &plain}, nullptr, tkMethod)), Strings({"destroyed", "objectNameChanged"}));

    // Properties are listed only when asked for.
    QVERIFY(!Names(EditorsOf({button}, nullptr, tkMethod)).contains(QStringLiteral("text")));

    // Null objects are passed over; an empty selection gives nothing.
    QCOMPARE(Find(EditorsOf({nullptr, button}, nullptr), QStringLiteral("text"))->PropCount(), 1);
    QVERIFY(EditorsOf({}, nullptr).empty());
}

// An object destroyed while its editors are shown reads as nothing and is left out of writes;
// a designer that is gone is not called.
void tst_PropertyEditors::destroyedObjects()
{
    auto kept = std::make_unique<TKinds>();
    auto doomed = std::make_unique<TKinds>();
    auto designer = std::make_unique<TRecordingDesigner>();
    const TEditors editors = EditorsOf({doomed.get(), kept.get()}, designer.get(), TTypeKinds::Properties());
    const TEditors parts = SubEditors(*Find(editors, QStringLiteral("part")));
    doomed.reset();
    designer.reset();

    for (const TEditorPtr &editor : editors) {
        QVERIFY2(editor->GetValue().isEmpty(), qPrintable(editor->GetName()));
        QVERIFY(!editor->ValueAvailable());
        QVERIFY(editor->AllEqual());
    }
    QVERIFY(!Find(parts, QStringLiteral("depth"))->ValueAvailable());
    TPropertyEditor *number = Find(editors, QStringLiteral("number"));
    QVERIFY(!number->Designer());
    number->SetValue(QStringLiteral("77"));
    QCOMPARE(kept->m_number, 77);
}

// The registry: the exact type before a class's ancestor, then a name (ignoring case) before a
// class, then the more derived class, then the newer entry; freeing a group takes its entries.
void tst_PropertyEditors::registry()
{
    TKinds kinds;
    QPushButton button;
    auto valueOf = [](QObject *object, const QString &name) {
        const TEditors editors = EditorsOf({object}, nullptr);
        return Find(editors, name)->GetValue();
    };

    const int group = NewEditorGroup();
    RegisterPropertyEditor(TypeInfo<int>(), nullptr, QString(), PropertyEditorClass<TMarkedEditor<1>>);
    QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("editor1"));
    // A class-specific entry beats one for any class, however old.
    RegisterPropertyEditor(TypeInfo<int>(), &TKinds::staticMetaObject, QString(), PropertyEditorClass<TMarkedEditor<2>>);
    RegisterPropertyEditor(TypeInfo<int>(), nullptr, QString(), PropertyEditorClass<TMarkedEditor<3>>);
    QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("editor2"));
    QCOMPARE(valueOf(&button, QStringLiteral("width")), QStringLiteral("editor3"));
    // A name beats a class, compared ignoring case.
    const int later = NewEditorGroup();
    RegisterPropertyEditor(TypeInfo<int>(), nullptr, QStringLiteral("NUMBER"), PropertyEditorClass<TMarkedEditor<4>>);
    RegisterPropertyEditor(TypeInfo<int>(), &TKinds::staticMetaObject, QString(), PropertyEditorClass<TMarkedEditor<5>>);
    QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("editor4"));
    QCOMPARE(valueOf(&kinds, QStringLiteral("big")), QString::number(kinds.m_big)); // another type
    // Among equals the newest wins.
    RegisterPropertyEditor(TypeInfo<int>(), nullptr, QStringLiteral("number"), PropertyEditorClass<TMarkedEditor<6>>);
    QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("editor6"));
    // A more derived class beats its ancestor.
    RegisterPropertyEditor(TypeInfo<int>(), &QAbstractButton::staticMetaObject, QString(), PropertyEditorClass<TMarkedEditor<7>>);
    RegisterPropertyEditor(TypeInfo<int>(), &QWidget::staticMetaObject, QString(), PropertyEditorClass<TMarkedEditor<8>>);
    QCOMPARE(valueOf(&button, QStringLiteral("width")), QStringLiteral("editor7"));

    // Class types: the exact type before an ancestor class, whatever the age.
    const PTypeInfo partType = TypeInfo<TKindsPart *>();
    QVERIFY(GetEditorClass(partType, nullptr, nullptr, QString()) == PropertyEditorClass<TComponentProperty>);
    RegisterPropertyEditor(partType, nullptr, QString(), PropertyEditorClass<TClassProperty>);
    RegisterPropertyEditor(TypeInfo<QObject *>(), nullptr, QStringLiteral("part"), PropertyEditorClass<TVariantProperty>);
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
    // Freeing a group takes its entries, and only its; the standard editors belong to no
    // group, and freeing every group leaves them.
    FreeEditorGroup(later);
    QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("editor2"));
    FreeEditorGroup(group);
    QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("-12"));
    FreeEditorGroup(-1);
    QCOMPARE(Find(EditorsOf({&kinds}, nullptr), QStringLiteral("text"))->GetAttributes() & paAutoUpdate, paAutoUpdate);
}

void tst_PropertyEditors::aliases()
{
    QCOMPARE(QtPropertyNames(QStringLiteral("caption")), Strings({"text", "title", "windowTitle"}));
    QVERIFY(QtPropertyNames(QStringLiteral("Color")).isEmpty());
    QCOMPARE(PlatformPropertyName(QStringLiteral("title")), QStringLiteral("Caption"));
    QVERIFY(IsAliasOf(QStringLiteral("windowTitle"), QStringLiteral("Caption")));
    QVERIFY(!IsAliasOf(QStringLiteral("toolTip"), QStringLiteral("Caption")));

    // The first of the names that the object has.
    QLabel label;
    QWidget widget;
    QCOMPARE(QLatin1String(FindAliasedProperty(&label, QStringLiteral("Caption")).name()), QLatin1String("text"));
    QCOMPARE(QLatin1String(FindAliasedProperty(&widget, QStringLiteral("Caption")).name()), QLatin1String("windowTitle"));
    QVERIFY(!FindAliasedProperty(&widget, QStringLiteral("Items")).isValid());
    QVERIFY(!FindAliasedProperty(nullptr, QStringLiteral("Caption")).isValid());
}

QTEST_MAIN(tst_PropertyEditors)
#include "tst_propertyeditors.moc"
