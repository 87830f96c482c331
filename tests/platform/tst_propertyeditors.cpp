// The property editors of the type kinds, the enumeration of a selection's common properties
// and the editor registry.

#include "platform/kvEditorGroups.h"
#include "platform/kvPropAliases.h"
#include "platform/kvPropEdits.h"
#include "tests/platform/editortests.h"
#include "tests/platform/testkinds.h"
#include "tests/testsupport.h"

#include <QtTest>
#include <QtWidgets>

using namespace kv;
using namespace kv::test;


// Editors for the registry tests, told apart by their values.
template <int N>
class TMarkedEditor : public TIntegerProperty
{
public:
    using TIntegerProperty::TIntegerProperty;
    QString GetValue() const override { return QStringLiteral("editor%1").arg(N); }
};

class tst_PropertyEditors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data()
    {
        ReadColumns();
        const int plain = paMultiSelect | paRevertable;
        const int list = plain | paValueList | paSortList;
        Reads("mode", "mdTwo", list, Strings({"mdOne", "mdTwo", "mdThree"}));
        Reads("alignment", "[AlignLeft,AlignTop]", plain | paSubProperties | paReadOnly);
        Reads("flag", "True", list, Strings({"False", "True"}));
        Reads("single", "0.1", plain); // in a float's own precision
        Reads("text", "Hello", plain | paAutoUpdate); // a caption
        Reads("link", "", list);
        Reads("part", "(QTimer)", paMultiSelect | paSubProperties | paReadOnly);
        Reads("fixed", "42", plain | paReadOnly);
        Reads("locale", "(QLocale)", plain | paReadOnly); // no editor of its own
        Reads("objectName", "", paRevertable);
    }

    void reads()
    {
        TKinds kinds;
        CheckReadRow(kinds);
    }

    void texts_data()
    {
        TextColumns();
        Shows("mode", "mdthree", "mdThree");
        Shows("mode", "5"); // a number without a key
        Shows("alignment", "[AlignRight, AlignBottom]", "[AlignRight,AlignBottom]");
        Shows("alignment", "[]");
        Shows("alignment", "[AlignLeft,1048576]");
        Shows("flag", "false", "False");
        Shows("number", "$1F", "31");
        Shows("number", " -0x10 ", "-16");
        Shows("number", "-2147483648");
        Shows("number", "2147483647");
        Shows("big", "-9223372036854775808");
        Shows("huge", "18446744073709551615");
        Shows("ratio", "2,5e-3", "0.0025");
        Shows("letter", "Q");
        Shows("letter", "#32");
        Shows("letter", "", "#0");
        Shows("any", "17"); // keeps its type
        Shows("any", "word");

        Refuses("number", "", "'' is not a valid integer value");
        Refuses("number", "2147483648", "Value must be between -2147483648 and 2147483647");
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

    void texts()
    {
        TKinds kinds;
        CheckTextRow(kinds);
        if (QLatin1String(QTest::currentDataTag()) == QLatin1String("any: 17"))
            QCOMPARE(kinds.m_any.metaType(), QMetaType::fromType<int>());
    }

    // Edit steps through a value list, from the last entry to the first. A set's elements are its
    // single bits (not composites, masks or aliases), each a Boolean that, written into several
    // objects, keeps each one's other bits.
    void valueListsAndSets()
    {
        TKinds kinds;
        const TEditors editors = EditorsOf({&kinds});
        TPropertyEditor *mode = Find(editors, QStringLiteral("mode"));
        mode->Edit();
        QCOMPARE(kinds.m_mode, TKinds::mdThree);
        mode->Edit();
        QCOMPARE(kinds.m_mode, TKinds::mdOne);

        TPropertyEditor *alignment = Find(editors, QStringLiteral("alignment"));
        const TEditors elements = SubEditors(*alignment);
        QCOMPARE(Names(elements), Strings({"AlignLeft", "AlignRight", "AlignHCenter", "AlignJustify", "AlignAbsolute",
                                           "AlignTop", "AlignBottom", "AlignVCenter", "AlignBaseline"}));
        Find(elements, QStringLiteral("AlignBottom"))->SetValue(QStringLiteral("True"));
        Find(elements, QStringLiteral("AlignLeft"))->SetValue(QStringLiteral("false"));
        QCOMPARE(alignment->GetValue(), QStringLiteral("[AlignTop,AlignBottom]"));
        QCOMPARE(ErrorOf([&] { elements.front()->SetValue(QStringLiteral("maybe")); }),
                 QStringLiteral("'maybe' is not a valid Boolean value"));

        TKinds other;
        other.m_alignment = Qt::AlignRight;
        const TEditors bothElements = SubEditors(*Find(EditorsOf({&kinds, &other}), QStringLiteral("alignment")));
        TPropertyEditor *vcenter = Find(bothElements, QStringLiteral("AlignVCenter"));
        QVERIFY(vcenter->AllEqual());
        QVERIFY(!Find(bothElements, QStringLiteral("AlignTop"))->AllEqual());
        vcenter->SetValue(QStringLiteral("True"));
        QCOMPARE(kinds.m_alignment, Qt::AlignTop | Qt::AlignBottom | Qt::AlignVCenter);
        QCOMPARE(other.m_alignment, Qt::AlignRight | Qt::AlignVCenter);
    }

    // References to components are offered and found by name, through the designer or without
    // one; an unnamed object still reads as one. A component's name is one object's at a time;
    // renaming asks the designer and refuses a name that is taken or is no identifier.
    void components()
    {
        auto form = test::NamedWindow(QStringLiteral("Form1"));
        auto *kinds = test::Make<TKinds>(form.get(), QStringLiteral("Kinds1"));
        auto *button = test::Make<QPushButton>(form.get(), QStringLiteral("Button1"));
        test::Make<QLabel>(form.get(), QStringLiteral("Label1"));
        TRecordingDesigner designer;
        designer.SetOwnerControl(form.get());

        QObject unnamed;
        for (IFormDesigner *with : {static_cast<IFormDesigner *>(&designer), static_cast<IFormDesigner *>(nullptr)}) {
            TEditorPtr link = EditorFor({kinds}, QStringLiteral("link"), with);
            QCOMPARE(ValuesOf(*link), Strings({"Kinds1", "Button1", "Label1"}));
            link->SetValue(QStringLiteral("button1"));
            QCOMPARE(kinds->m_link, button);
            QCOMPARE(link->GetValue(), QStringLiteral("Button1"));
            kinds->m_link = &unnamed;
            QCOMPARE(link->GetValue(), QStringLiteral("(QObject)"));
            link->SetValue(link->GetValue());
            QCOMPARE(kinds->m_link, &unnamed);
            link->SetValue(QString());
            QCOMPARE(kinds->m_link, nullptr);
        }

        designer.modified = 0;
        TEditorPtr name = EditorFor({button}, QStringLiteral("objectName"), &designer);
        name->SetValue(QStringLiteral("OkButton"));
        name->SetValue(QStringLiteral("OkButton")); // its own name again is no rename
        QCOMPARE(button->objectName(), QStringLiteral("OkButton"));
        QCOMPARE(designer.modified, 1);
        QCOMPARE(ErrorOf([&] { name->SetValue(QStringLiteral("label1")); }),
                 QStringLiteral("A component named label1 already exists"));
        QCOMPARE(ErrorOf([&] { name->SetValue(QStringLiteral("2nd")); }), QStringLiteral("'2nd' is not a valid component name"));
        QCOMPARE(designer.renames, Strings({"Button1->OkButton"}));
        // An empty name is no name, and allowed.
        name->SetValue(QString());
        QVERIFY(button->objectName().isEmpty());
    }

    void commonProperties()
    {
        QPushButton button(QStringLiteral("Same"));
        QLabel label(QStringLiteral("Same"));
        const TEditors both = EditorsOf({&button, &label});
        // QAbstractButton::text and QLabel::text are two properties of one name and type; checkable
        // and wordWrap are one class's only. In the order of the first object's class.
        const QRegularExpression some(QStringLiteral("^(text|enabled|checkable|wordWrap)$"));
        QCOMPARE(Names(both).filter(some), Strings({"enabled", "text"}));

        TPropertyEditor *text = Find(both, QStringLiteral("text"));
        QCOMPARE(text->PropCount(), 2);
        QVERIFY(text->AllEqual());
        QCOMPARE(text->GetPropInfo(2), text->GetPropInfo(-1)); // past the end: the editor's own
        text->SetValue(QStringLiteral("Changed"));
        QCOMPARE(button.text(), QStringLiteral("Changed"));
        QCOMPARE(label.text(), QStringLiteral("Changed"));

        // A property of the same name but another type is not common (QLCDNumber::mode); signals
        // are common the same way, and listed only when asked for.
        TKinds kinds;
        QLCDNumber lcd;
        QCOMPARE(Names(EditorsOf({&kinds, &lcd}, nullptr, TTypeKinds::Properties())), Strings({"locale"}));
        QCOMPARE(Names(EditorsOf({&kinds, &lcd}, nullptr, tkMethod)), Strings({"destroyed", "objectNameChanged"}));

        // Null objects are passed over; an empty selection gives nothing.
        QCOMPARE(Find(EditorsOf({nullptr, &button}), QStringLiteral("text"))->PropCount(), 1);
        QVERIFY(EditorsOf({}).empty());
    }

    // An object held by a property shows its own properties; of two objects' parts only what can
    // be set for several at once (not the name). An object destroyed while its editors are shown
    // reads as nothing and is left out of writes; a designer that is gone is not called (the
    // write below would reach it).
    void objectsAndDestroyedObjects()
    {
        auto kept = std::make_unique<TKinds>();
        auto doomed = std::make_unique<TKinds>();
        auto designer = std::make_unique<TRecordingDesigner>();
        const TEditors parts = SubEditors(*Find(EditorsOf({kept.get()}, designer.get()), QStringLiteral("part")));
        Find(parts, QStringLiteral("interval"))->SetValue(QStringLiteral("8"));
        QCOMPARE(kept->m_part.interval(), 8);
        QCOMPARE(designer->modified, 1);

        const TEditors editors = EditorsOf({doomed.get(), kept.get()}, designer.get(), TTypeKinds::Properties());
        const TEditors bothParts = SubEditors(*Find(editors, QStringLiteral("part")));
        QCOMPARE(Names(bothParts), Names(parts).mid(1));
        doomed.reset();
        designer.reset();
        for (const TEditorPtr &editor : editors) {
            QVERIFY2(editor->GetValue().isEmpty(), qPrintable(editor->GetName()));
            QVERIFY(!editor->ValueAvailable());
            QVERIFY(editor->AllEqual());
        }
        Find(editors, QStringLiteral("number"))->SetValue(QStringLiteral("77"));
        QCOMPARE(kept->m_number, 77);
    }

    // The registry: the exact type before a class's ancestor, then a name (ignoring case) before a
    // class, then the more derived class, then the newer entry; freeing a group takes its entries.
    void registry()
    {
        TKinds kinds;
        QPushButton button;
        auto valueOf = [](QObject *object, const QString &name) { return EditorFor({object}, name)->GetValue(); };

        const int group = NewEditorGroup();
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
        const PTypeInfo partType = TypeInfo<QTimer *>();
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

        QCOMPARE(ErrorOf([] { RegisterPropertyEditor(nullptr, nullptr, QString(), PropertyEditorClass<TIntegerProperty>); }),
                 QStringLiteral("RegisterPropertyEditor can't register nil"));
        // Freeing a group takes its entries, and only its; the standard editors belong to no
        // group, and freeing every group leaves them.
        FreeEditorGroup(later);
        QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("editor2"));
        FreeEditorGroup(group);
        QCOMPARE(valueOf(&kinds, QStringLiteral("number")), QStringLiteral("-12"));
        FreeEditorGroup(-1);
        QCOMPARE(EditorFor({&kinds}, QStringLiteral("text"))->GetAttributes() & paAutoUpdate, paAutoUpdate);
    }

    void aliases()
    {
        QCOMPARE(QtPropertyNames(QStringLiteral("caption")), Strings({"text", "title", "windowTitle"}));
        QCOMPARE(PlatformPropertyName(QStringLiteral("title")), QStringLiteral("Caption"));
        QVERIFY(IsAliasOf(QStringLiteral("windowTitle"), QStringLiteral("Caption")));
        QVERIFY(!IsAliasOf(QStringLiteral("toolTip"), QStringLiteral("Caption")));

        // The first of the names that the object has.
        QLabel label;
        QWidget widget;
        QCOMPARE(QLatin1String(FindAliasedProperty(&label, QStringLiteral("Caption")).name()), QLatin1String("text"));
        QCOMPARE(QLatin1String(FindAliasedProperty(&widget, QStringLiteral("Caption")).name()), QLatin1String("windowTitle"));
        QVERIFY(!FindAliasedProperty(nullptr, QStringLiteral("Caption")).isValid());
    }
};

QTEST_MAIN(tst_PropertyEditors)
#include "tst_propertyeditors.moc"
