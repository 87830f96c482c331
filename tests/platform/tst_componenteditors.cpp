#include "design/ideGen_designer.h"
#include "foundation/ideConsts.h"
#include "platform/kvComponentEditor.h"
#include "platform/kvEditorGroups.h"
#include "platform/kvException.h"
#include "platform/kvPropertyEditor.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace kv;
using namespace Qt::StringLiterals;

namespace {

class TBase : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
Q_SIGNALS:
    void started();
    void levelChanged(int level);
};

class TDerived : public TBase
{
    Q_OBJECT
public:
    using TBase::TBase;
Q_SIGNALS:
    void finished();
    void modeChanged();
};

class TLeaf : public TDerived
{
    Q_OBJECT
public:
    using TDerived::TDerived;
};

class TQuiet : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
Q_SIGNALS:
    void ping();
    void pong();
};

// An editor with one verb named after it, so that tests see which editor they got; its
// verbs run are recorded.
template <char Tag>
class TTaggedEditor : public TComponentEditor
{
public:
    using TComponentEditor::TComponentEditor;
    static inline QStringList executed;

    int GetVerbCount() const override { return 1; }
    QString GetVerb(int) const override { return QString(QLatin1Char(Tag)); }
    void ExecuteVerb(int Index) override { executed.append(GetVerb(Index) + QString::number(Index)); }
};
using TEditorA = TTaggedEditor<'A'>;
using TEditorB = TTaggedEditor<'B'>;
using TEditorC = TTaggedEditor<'C'>;
using TEditorD = TTaggedEditor<'D'>;

QString VerbOf(QObject *Component)
{
    const std::unique_ptr<TComponentEditor> editor = GetComponentEditor(Component, nullptr);
    if (!editor)
        return u"(none)"_s;
    return editor->GetVerbCount() > 0 ? editor->GetVerb(0) : u"(default)"_s;
}

// Records the events Edit hands over; continues for the first Take of them.
class TRecordingEditor : public TDefaultEditor
{
public:
    using TDefaultEditor::TDefaultEditor;
    QStringList handed;
    int take = 1;
    std::function<void(TPropertyEditor &)> onEvent;

protected:
    void EditProperty(TPropertyEditor &Editor, bool &Continue) override
    {
        QVERIFY(Continue);
        handed.append(Editor.GetName());
        if (onEvent)
            onEvent(Editor);
        Continue = handed.size() < take;
    }
};

// Keeps the base's decision whether to go on.
class TBaseDecidesEditor : public TDefaultEditor
{
public:
    using TDefaultEditor::TDefaultEditor;
    QStringList handed;

protected:
    void EditProperty(TPropertyEditor &Editor, bool &Continue) override
    {
        handed.append(Editor.GetName());
        TDefaultEditor::EditProperty(Editor, Continue);
    }
};

QStringList PrincipalFirst(QObject *Component, int Take)
{
    TRecordingEditor editor(Component, nullptr);
    editor.take = Take;
    editor.Edit();
    return editor.handed;
}

} // namespace

class tst_ComponentEditors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void mostDerivedThenNewest();
    void nilRegistration();
    void freeingAGroupTakesItsEditors();
    void baseEditorRunsTheFirstVerb();
    void destroyedComponentOrDesigner();
    void principalEvent_data();
    void principalEvent();
    void editWalksEveryEventInPreference();
    void editStopsWhenTheComponentDies();
};

void tst_ComponentEditors::cleanup()
{
    FinalizeComponentEditors();
    TEditorA::executed.clear();
}

void tst_ComponentEditors::mostDerivedThenNewest()
{
    TBase base;
    TDerived derived;
    TLeaf leaf;
    QObject plain;

    QCOMPARE(VerbOf(&leaf), u"(default)"_s);
    QVERIFY(dynamic_cast<TDefaultEditor *>(GetComponentEditor(&leaf, nullptr).get()));
    QVERIFY(!GetComponentEditor(nullptr, nullptr));

    // Registration order does not matter: the most derived class wins.
    RegisterComponentEditor(&TDerived::staticMetaObject, ComponentEditorClass<TEditorB>);
    RegisterComponentEditor(&TBase::staticMetaObject, ComponentEditorClass<TEditorA>);
    QCOMPARE(VerbOf(&leaf), u"B"_s);
    QCOMPARE(VerbOf(&derived), u"B"_s);
    QCOMPARE(VerbOf(&base), u"A"_s);
    QCOMPARE(VerbOf(&plain), u"(default)"_s);

    // Among registrations of one class the newest; a newer one for an ancestor does not
    // displace a more derived one.
    RegisterComponentEditor(&TBase::staticMetaObject, ComponentEditorClass<TEditorC>);
    QCOMPARE(VerbOf(&base), u"C"_s);
    QCOMPARE(VerbOf(&leaf), u"B"_s);
    RegisterComponentEditor(&TDerived::staticMetaObject, ComponentEditorClass<TEditorD>);
    QCOMPARE(VerbOf(&leaf), u"D"_s);

    // The editor is made for the component and designer asked for.
    TFDesigner designer;
    const std::unique_ptr<TComponentEditor> editor = GetComponentEditor(&leaf, &designer);
    QCOMPARE(editor->Component(), &leaf);
    QCOMPARE(editor->Designer(), static_cast<IFormDesigner *>(&designer));

    FinalizeComponentEditors();
    QCOMPARE(VerbOf(&leaf), u"(default)"_s);
}

void tst_ComponentEditors::nilRegistration()
{
    const auto errorOf = [](const QMetaObject *Class, TComponentEditorClass Editor) {
        try {
            RegisterComponentEditor(Class, Editor);
        } catch (const Exception &e) {
            return e.Message();
        }
        return QString();
    };
    const QString expected = LoadStr(SErrNilRegistration).arg(u"RegisterComponentEditor"_s);
    QCOMPARE(errorOf(nullptr, ComponentEditorClass<TEditorA>), expected);
    QCOMPARE(errorOf(&TBase::staticMetaObject, nullptr), expected);
    TBase base;
    QCOMPARE(VerbOf(&base), u"(default)"_s);
}

void tst_ComponentEditors::freeingAGroupTakesItsEditors()
{
    TLeaf leaf;
    RegisterComponentEditor(&TBase::staticMetaObject, ComponentEditorClass<TEditorA>); // no group open
    const int first = NewEditorGroup();
    RegisterComponentEditor(&TDerived::staticMetaObject, ComponentEditorClass<TEditorB>);
    const int second = NewEditorGroup();
    RegisterComponentEditor(&TDerived::staticMetaObject, ComponentEditorClass<TEditorC>);
    const int unused = NewEditorGroup();
    QCOMPARE(VerbOf(&leaf), u"C"_s);

    FreeEditorGroup(unused);
    QCOMPARE(VerbOf(&leaf), u"C"_s);
    FreeEditorGroup(second);
    QCOMPARE(VerbOf(&leaf), u"B"_s);
    // Registered while another group is current again: it belongs to that one.
    RegisterComponentEditor(&TLeaf::staticMetaObject, ComponentEditorClass<TEditorD>);
    QCOMPARE(VerbOf(&leaf), u"D"_s);
    FreeEditorGroup(first);
    QCOMPARE(VerbOf(&leaf), u"A"_s);
    FreeEditorGroup(first);
    QCOMPARE(VerbOf(&leaf), u"A"_s);

    // A freed registry no longer hears of groups, and a new one starts empty.
    FinalizeComponentEditors();
    FreeEditorGroup(-1);
    QCOMPARE(VerbOf(&leaf), u"(default)"_s);
}

void tst_ComponentEditors::baseEditorRunsTheFirstVerb()
{
    TBase base;
    RegisterComponentEditor(&TBase::staticMetaObject, ComponentEditorClass<TEditorA>);
    GetComponentEditor(&base, nullptr)->Edit();
    QCOMPARE(TEditorA::executed, QStringList{u"A0"_s});

    // Without verbs the base editor does nothing; the others are empty.
    TComponentEditor bare(&base, nullptr);
    bare.Edit();
    bare.ExecuteVerb(0);
    bare.Copy();
    QCOMPARE(bare.GetVerbCount(), 0);
    QCOMPARE(bare.GetVerb(0), QString());
    QCOMPARE(TEditorA::executed.size(), 1);
}

void tst_ComponentEditors::destroyedComponentOrDesigner()
{
    RegisterComponentEditor(&TBase::staticMetaObject, ComponentEditorClass<TEditorA>);
    auto designer = std::make_unique<TFDesigner>();
    auto base = std::make_unique<TBase>();
    auto quiet = std::make_unique<TQuiet>();
    const std::unique_ptr<TComponentEditor> tagged = GetComponentEditor(base.get(), designer.get());
    const std::unique_ptr<TComponentEditor> plain = GetComponentEditor(quiet.get(), designer.get());
    TRecordingEditor recording(quiet.get(), designer.get());

    designer.reset();
    QCOMPARE(tagged->Designer(), nullptr);
    base.reset();
    quiet.reset();
    QCOMPARE(tagged->Component(), nullptr);
    QCOMPARE(plain->Component(), nullptr);

    // What a menu or a double click asks of them now: nothing happens, nothing crashes.
    QCOMPARE(tagged->GetVerbCount(), 1);
    tagged->Edit();
    QVERIFY(TEditorA::executed.isEmpty());
    plain->Edit();
    plain->Copy();
    recording.Edit();
    QVERIFY(recording.handed.isEmpty());
}

void tst_ComponentEditors::principalEvent_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("event");

    QTest::newRow("button: clicked") << "button" << "clicked";
    QTest::newRow("action: triggered") << "action" << "triggered";
    QTest::newRow("combo box: activated") << "combo" << "activated";
    QTest::newRow("line edit: its own …Changed") << "edit" << "textChanged";
    QTest::newRow("timer: its only signal") << "timer" << "timeout";
    QTest::newRow("own class before ancestors") << "leaf" << "modeChanged";
    QTest::newRow("…Changed before the first") << "base" << "levelChanged";
    QTest::newRow("no …Changed: the first") << "quiet" << "ping";
    QTest::newRow("bare object") << "object" << "objectNameChanged";
}

void tst_ComponentEditors::principalEvent()
{
    QFETCH(QString, kind);
    QFETCH(QString, event);

    std::unique_ptr<QObject> component;
    if (kind == u"button")
        component = std::make_unique<QPushButton>();
    else if (kind == u"action")
        component = std::make_unique<QAction>();
    else if (kind == u"combo")
        component = std::make_unique<QComboBox>();
    else if (kind == u"edit")
        component = std::make_unique<QLineEdit>();
    else if (kind == u"timer")
        component = std::make_unique<QTimer>();
    else if (kind == u"leaf")
        component = std::make_unique<TLeaf>();
    else if (kind == u"base")
        component = std::make_unique<TBase>();
    else if (kind == u"quiet")
        component = std::make_unique<TQuiet>();
    else
        component = std::make_unique<QObject>();

    QCOMPARE(PrincipalFirst(component.get(), 1), QStringList{event});

    // The default editor takes the principal event and goes no further.
    TBaseDecidesEditor standard(component.get(), nullptr);
    standard.Edit();
    QCOMPARE(standard.handed, QStringList{event});
}

void tst_ComponentEditors::editWalksEveryEventInPreference()
{
    TLeaf leaf;
    // Every event once: the preferred kinds first, each the own class's before the
    // ancestors', QObject's last.
    QCOMPARE(PrincipalFirst(&leaf, 100), (QStringList{u"modeChanged"_s, u"levelChanged"_s, u"finished"_s,
                                                      u"started"_s, u"objectNameChanged"_s, u"destroyed"_s}));
    QCOMPARE(PrincipalFirst(&leaf, 3), (QStringList{u"modeChanged"_s, u"levelChanged"_s, u"finished"_s}));

    // The editors handed over are live event editors of the component.
    TRecordingEditor editor(&leaf, nullptr);
    bool sawLeaf = false;
    editor.onEvent = [&](TPropertyEditor &Event) {
        QCOMPARE(Event.GetPropType()->Kind, tkMethod);
        sawLeaf = Event.GetComponent(0) == &leaf;
    };
    editor.Edit();
    QVERIFY(sawLeaf);
}

void tst_ComponentEditors::editStopsWhenTheComponentDies()
{
    auto leaf = std::make_unique<TLeaf>();
    TRecordingEditor editor(leaf.get(), nullptr);
    editor.take = 100;
    editor.onEvent = [&](TPropertyEditor &) { leaf.reset(); };
    editor.Edit();
    QCOMPARE(editor.handed, QStringList{u"modeChanged"_s});
    QCOMPARE(editor.Component(), nullptr);
}

QTEST_MAIN(tst_ComponentEditors)
#include "tst_componenteditors.moc"
