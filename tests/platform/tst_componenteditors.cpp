#include "design/ideGen_designer.h"
#include "foundation/ideConsts.h"
#include "platform/kvComponentEditor.h"
#include "platform/kvEditorGroups.h"
#include "platform/kvException.h"
#include "platform/kvPropertyEditor.h"
#include "tests/platform/editortests.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <memory>

using namespace kv;
using kv::test::ErrorOf;
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
    void aborted();
    void modeChanged();
};

class TLeaf : public TDerived
{
    Q_OBJECT
public:
    using TDerived::TDerived;
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

QString VerbOf(QObject *Component)
{
    const std::unique_ptr<TComponentEditor> editor = GetComponentEditor(Component, nullptr);
    return editor->GetVerbCount() > 0 ? editor->GetVerb(0) : u"(default)"_s;
}

// Records the events Edit hands over; continues for the first Take of them, or as the
// default editor decides when Take is 0.
class TRecordingEditor : public TDefaultEditor
{
public:
    using TDefaultEditor::TDefaultEditor;
    QStringList handed;
    int take = 0;
    std::function<void(TPropertyEditor &)> onEvent;

protected:
    void EditProperty(TPropertyEditor &Editor, bool &Continue) override
    {
        QVERIFY(Continue);
        handed.append(Editor.GetName());
        if (onEvent)
            onEvent(Editor);
        if (take > 0)
            Continue = handed.size() < take;
        else
            TDefaultEditor::EditProperty(Editor, Continue);
    }
};

// The events the default editor hands over when Edit walks them, Take of them at most.
QStringList EventsHanded(QObject *Component, int Take = 0)
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
    void cleanup()
    {
        FinalizeComponentEditors();
        TEditorA::executed.clear();
    }

    void mostDerivedThenNewest()
    {
        TBase base;
        TLeaf leaf;
        QObject plain;
        QVERIFY(dynamic_cast<TDefaultEditor *>(GetComponentEditor(&leaf, nullptr).get()));
        QVERIFY(!GetComponentEditor(nullptr, nullptr));

        // Registration order does not matter: the most derived class wins.
        RegisterComponentEditor(&TDerived::staticMetaObject, ComponentEditorClass<TEditorB>);
        RegisterComponentEditor(&TBase::staticMetaObject, ComponentEditorClass<TEditorA>);
        QCOMPARE(VerbOf(&leaf), u"B"_s);
        QCOMPARE(VerbOf(&base), u"A"_s);
        QCOMPARE(VerbOf(&plain), u"(default)"_s);

        // Among registrations of one class the newest; a newer one for an ancestor does not
        // displace a more derived one.
        RegisterComponentEditor(&TBase::staticMetaObject, ComponentEditorClass<TEditorC>);
        QCOMPARE(VerbOf(&base), u"C"_s);
        QCOMPARE(VerbOf(&leaf), u"B"_s);
        RegisterComponentEditor(&TDerived::staticMetaObject, ComponentEditorClass<TEditorA>);
        QCOMPARE(VerbOf(&leaf), u"A"_s);

        // A null class or editor is refused and registers nothing.
        const QString nilError = LoadStr(SErrNilRegistration).arg(u"RegisterComponentEditor"_s);
        QCOMPARE(ErrorOf([] { RegisterComponentEditor(nullptr, ComponentEditorClass<TEditorA>); }), nilError);
        QCOMPARE(ErrorOf([] { RegisterComponentEditor(&TLeaf::staticMetaObject, nullptr); }), nilError);
        QCOMPARE(VerbOf(&leaf), u"A"_s);

        FinalizeComponentEditors();
        QCOMPARE(VerbOf(&leaf), u"(default)"_s);
    }

    void freeingAGroupTakesItsEditors()
    {
        TLeaf leaf;
        RegisterComponentEditor(&TBase::staticMetaObject, ComponentEditorClass<TEditorA>); // no group open
        const int first = NewEditorGroup();
        RegisterComponentEditor(&TDerived::staticMetaObject, ComponentEditorClass<TEditorB>);
        const int second = NewEditorGroup();
        RegisterComponentEditor(&TDerived::staticMetaObject, ComponentEditorClass<TEditorC>);
        const int unused = NewEditorGroup();
        FreeEditorGroup(unused);
        QCOMPARE(VerbOf(&leaf), u"C"_s);
        FreeEditorGroup(second);
        QCOMPARE(VerbOf(&leaf), u"B"_s);
        // Registered while another group is current again: it belongs to that one.
        RegisterComponentEditor(&TLeaf::staticMetaObject, ComponentEditorClass<TEditorC>);
        QCOMPARE(VerbOf(&leaf), u"C"_s);
        FreeEditorGroup(first);
        QCOMPARE(VerbOf(&leaf), u"A"_s);

        // A freed registry no longer hears of groups, and a new one starts empty.
        FinalizeComponentEditors();
        FreeEditorGroup(-1);
        QCOMPARE(VerbOf(&leaf), u"(default)"_s);
    }

    void editRunsTheFirstVerbWhileTheComponentLives()
    {
        RegisterComponentEditor(&TBase::staticMetaObject, ComponentEditorClass<TEditorA>);
        auto designer = std::make_unique<TFDesigner>();
        auto base = std::make_unique<TBase>();
        auto plain = std::make_unique<QObject>();
        const std::unique_ptr<TComponentEditor> tagged = GetComponentEditor(base.get(), designer.get());
        TRecordingEditor recording(plain.get(), designer.get());
        tagged->Edit();
        QCOMPARE(TEditorA::executed, QStringList{u"A0"_s});
        QCOMPARE(tagged->Designer(), static_cast<IFormDesigner *>(designer.get()));

        designer.reset();
        QCOMPARE(tagged->Designer(), nullptr);
        base.reset();
        plain.reset();
        QCOMPARE(tagged->Component(), nullptr);

        // What a menu or a double click asks of them now: nothing happens, nothing crashes.
        tagged->Edit();
        QCOMPARE(TEditorA::executed.size(), 1);
        recording.Edit();
        QVERIFY(recording.handed.isEmpty());
    }

    void editWalksEveryEventInPreference()
    {
        // The default editor takes the principal event and goes no further.
        QCOMPARE(EventsHanded(std::make_unique<QPushButton>().get()), QStringList{u"clicked"_s});
        QCOMPARE(EventsHanded(std::make_unique<QAction>().get()), QStringList{u"triggered"_s});
        QCOMPARE(EventsHanded(std::make_unique<QComboBox>().get()), QStringList{u"activated"_s});
        QCOMPARE(EventsHanded(std::make_unique<QLineEdit>().get()), QStringList{u"textChanged"_s});

        // Every event once: the preferred kinds first, each the own class's before the
        // ancestors', in declaration order within a class, QObject's last.
        TLeaf leaf;
        QCOMPARE(EventsHanded(&leaf, 100), (QStringList{u"modeChanged"_s, u"levelChanged"_s, u"finished"_s,
                                                        u"aborted"_s, u"started"_s, u"objectNameChanged"_s,
                                                        u"destroyed"_s}));

        // The editors handed over are live event editors of the component, and the walk ends
        // when the component dies.
        auto dying = std::make_unique<TLeaf>();
        TRecordingEditor editor(dying.get(), nullptr);
        editor.take = 100;
        editor.onEvent = [&](TPropertyEditor &Event) {
            QCOMPARE(Event.GetComponent(0), static_cast<QObject *>(dying.get()));
            dying.reset();
        };
        editor.Edit();
        QCOMPARE(editor.handed, QStringList{u"modeChanged"_s});
        QCOMPARE(editor.Component(), nullptr);
    }
};

QTEST_MAIN(tst_ComponentEditors)
#include "tst_componenteditors.moc"
