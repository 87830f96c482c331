#include "design/ideGen_designer.h"
#include "foundation/ideConsts.h"
#include "tests/platform/editortests.h"
#include "platform/kvDataModule.h"
#include "platform/kvEventConnections.h"
#include "platform/kvException.h"
#include "platform/kvMethodProperty.h"
#include "platform/kvPropertyRegistry.h"

#include <QApplication>
#include <QTest>

#include "tests/testsupport.h"

#include <memory>

using namespace kv;
using namespace kv::test;
using kv::test::Make;
using namespace Qt::StringLiterals;

namespace {

class TSender : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void fired();
    void countChanged(int count);
    void described(const QString &text, int level);
    void picked(int index);
    void picked(const QString &name);
    void toggled(bool on = false);
};

// Records every call of its slots as "slot(arguments)".
class TModule : public TDataModule
{
    Q_OBJECT

public:
    using TDataModule::TDataModule;
    QStringList calls;

Q_SIGNALS:
    void moduleReady();

public Q_SLOTS:
    void onFired() { calls.append(u"onFired()"_s); }
    void onCount(int count) { calls.append(u"onCount(%1)"_s.arg(count)); }
    void onDescribed(const QString &text, int level) { calls.append(u"onDescribed(%1,%2)"_s.arg(text).arg(level)); }
    void onText(const QString &text) { calls.append(u"onText(%1)"_s.arg(text)); }
    void onPicked(int index) { calls.append(u"onPicked(int %1)"_s.arg(index)); }
    void onPicked(const QString &name) { calls.append(u"onPicked(QString %1)"_s.arg(name)); }

protected Q_SLOTS:
    void onGuarded() { calls.append(u"onGuarded()"_s); }

private Q_SLOTS:
    void onHidden() { calls.append(u"onHidden()"_s); }
};

class THelper : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    int pings = 0;

public Q_SLOTS:
    void onPing() { ++pings; }
};

// A stand-alone designer that counts what it is told instead of broadcasting it.
class TCountingDesigner : public TFDesigner
{
    Q_OBJECT

public:
    using TFDesigner::TFDesigner;
    int modified = 0;
    void Modified() override { ++modified; }
};

QMetaMethod SignalOf(const QObject *Obj, const char *Signature)
{
    const QByteArray normalized = QMetaObject::normalizedSignature(Signature);
    return Obj->metaObject()->method(Obj->metaObject()->indexOfSignal(normalized.constData()));
}

TEditors EventEditors(const QList<QObject *> &Selection, IFormDesigner *Designer)
{
    return EditorsOf(Selection, Designer, tkMethod);
}

TEditorPtr EventEditor(const QList<QObject *> &Selection, IFormDesigner *Designer, const QString &Name)
{
    return Take(EventEditors(Selection, Designer), Name);
}

// Module1 { Sender1, Sender2, Helper1 } designed by a counting designer.
struct TFixture
{
    TFixture()
    {
        module = std::make_unique<TModule>();
        module->setObjectName(u"Module1"_s);
        sender1 = Make<TSender>(module.get(), u"Sender1"_s);
        sender2 = Make<TSender>(module.get(), u"Sender2"_s);
        helper = Make<THelper>(module.get(), u"Helper1"_s);
        designer = std::make_unique<TCountingDesigner>();
        designer->SetOwnerControl(module.get());
    }
    ~TFixture() { FinalizeEventConnections(); }

    std::unique_ptr<TModule> module;
    TSender *sender1;
    TSender *sender2;
    THelper *helper;
    std::unique_ptr<TCountingDesigner> designer;
};

} // namespace

class tst_Events : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void signalsAreEventEditors();
    void valueListOffersCompatibleSlots();
    void setReplaceAndClear();
    void overloads();
    void clonedSignalIsTheSignal();
    void severalSenders();
    void handlerThatIsNotTheRoot();
    void handlerOrSenderDestroyed();
    void editorOutlivesItsObjects();
    void badInput();
    void handlerRoot();
    void finalizeDisconnects();
};

void tst_Events::signalsAreEventEditors()
{
    TFixture f;
    QStringList names;
    for (const auto &editor : EventEditors({f.sender1}, f.designer.get())) {
        QVERIFY2(dynamic_cast<TMethodProperty *>(editor.get()), qPrintable(editor->GetName()));
        QCOMPARE(editor->GetPropType()->Kind, tkMethod);
        QVERIFY(editor->GetAttributes().testFlags(paValueList | paMultiSelect));
        names.append(editor->GetName());
    }
    // Overloads are told apart by signature; a clone of a default argument is no event.
    for (const QString &name : {u"fired"_s, u"countChanged"_s, u"described"_s, u"picked(int)"_s,
                                u"picked(QString)"_s, u"toggled"_s, u"objectNameChanged"_s})
        QVERIFY2(names.contains(name), qPrintable(names.join(u", ")));
    QCOMPARE(names.count(u"toggled"_s), 1);
}

void tst_Events::valueListOffersCompatibleSlots()
{
    TFixture f;
    const auto values = [&f](const QString &event) {
        auto editor = EventEditor({f.sender1}, f.designer.get(), event);
        return editor ? ValuesOf(*editor) : QStringList{u"(no editor)"_s};
    };

    // A slot may take fewer arguments than the signal, never more or others; protected
    // slots are offered, private ones are not; an overloaded slot's name comes once.
    const QStringList forFired = values(u"fired"_s);
    QVERIFY(forFired.contains(u"onFired"_s));
    QVERIFY(forFired.contains(u"onGuarded"_s));
    QVERIFY(forFired.contains(u"deleteLater"_s));
    for (const QString &name : {u"onCount"_s, u"onText"_s, u"onDescribed"_s, u"onPicked"_s, u"onHidden"_s})
        QVERIFY2(!forFired.contains(name), qPrintable(name));

    const QStringList forCount = values(u"countChanged"_s);
    QVERIFY(forCount.contains(u"onCount"_s));
    QVERIFY(forCount.contains(u"onFired"_s));
    QCOMPARE(forCount.count(u"onPicked"_s), 1);
    QVERIFY(!forCount.contains(u"onText"_s));

    const QStringList forDescribed = values(u"described"_s);
    QVERIFY(forDescribed.contains(u"onDescribed"_s));
    QVERIFY(forDescribed.contains(u"onText"_s));
    QVERIFY(forDescribed.contains(u"onPicked"_s)); // the QString overload
    QVERIFY(!forDescribed.contains(u"onCount"_s));

    // The editor's list is the registry's for the root's class.
    QCOMPARE(forCount, GetCompatibleSlots(&TModule::staticMetaObject, SignalOf(f.sender1, "countChanged(int)")));
    QVERIFY(GetCompatibleSlots(nullptr, SignalOf(f.sender1, "fired()")).isEmpty());
    QVERIFY(GetCompatibleSlots(&TModule::staticMetaObject, QMetaMethod()).isEmpty());
}

void tst_Events::setReplaceAndClear()
{
    TFixture f;
    auto editor = EventEditor({f.sender1}, f.designer.get(), u"countChanged"_s);
    QVERIFY(editor);
    QCOMPARE(editor->GetValue(), QString());

    editor->SetValue(u"onCount"_s);
    QCOMPARE(editor->GetValue(), u"onCount"_s);
    QCOMPARE(f.designer->modified, 1);
    Q_EMIT f.sender1->countChanged(5);
    QCOMPARE(f.module->calls, QStringList{u"onCount(5)"_s});
    const TEventHandler handler = GetEventHandler(f.sender1, SignalOf(f.sender1, "countChanged(int)"));
    QCOMPARE(handler.Handler, f.module.get());
    QCOMPARE(handler.SlotName, u"onCount"_s);

    // Setting it again changes nothing: still one connection, nothing modified. Nor does a
    // double click step to another slot.
    editor->SetValue(u" onCount "_s);
    editor->Edit();
    QCOMPARE(editor->GetValue(), u"onCount"_s);
    QCOMPARE(f.designer->modified, 1);
    f.module->calls.clear();
    Q_EMIT f.sender1->countChanged(6);
    QCOMPARE(f.module->calls, QStringList{u"onCount(6)"_s});

    // Replacing disconnects the old slot.
    editor->SetValue(u"onFired"_s);
    QCOMPARE(f.designer->modified, 2);
    f.module->calls.clear();
    Q_EMIT f.sender1->countChanged(7);
    QCOMPARE(f.module->calls, QStringList{u"onFired()"_s});
    QCOMPARE(EventHandlerCount(), 1);

    // Other events of the same sender are untouched.
    Q_EMIT f.sender1->fired();
    QCOMPARE(f.module->calls.size(), 1);

    // Slot names are case-sensitive, but a different case that names one slot is taken.
    editor->SetValue(u"ONCOUNT"_s);
    QCOMPARE(editor->GetValue(), u"onCount"_s);
    QCOMPARE(f.designer->modified, 3);
    editor->SetValue(u"oncount"_s);
    QCOMPARE(f.designer->modified, 3);

    // Empty disconnects.
    editor->SetValue(QString());
    QCOMPARE(editor->GetValue(), QString());
    QCOMPARE(f.designer->modified, 4);
    f.module->calls.clear();
    Q_EMIT f.sender1->countChanged(8);
    QVERIFY(f.module->calls.isEmpty());
    QCOMPARE(EventHandlerCount(), 0);
    // Clearing what is clear tells nobody.
    editor->SetValue(QString());
    QCOMPARE(f.designer->modified, 4);
}

void tst_Events::overloads()
{
    TFixture f;
    auto byInt = EventEditor({f.sender1}, f.designer.get(), u"picked(int)"_s);
    auto byName = EventEditor({f.sender1}, f.designer.get(), u"picked(QString)"_s);
    QVERIFY(byInt && byName);

    // The overloaded slot: the first of the name that fits each signal.
    byInt->SetValue(u"onPicked"_s);
    QCOMPARE(byName->GetValue(), QString());
    byName->SetValue(u"onPicked"_s);
    Q_EMIT f.sender1->picked(3);
    Q_EMIT f.sender1->picked(u"x"_s);
    QCOMPARE(f.module->calls, (QStringList{u"onPicked(int 3)"_s, u"onPicked(QString x)"_s}));

    // Each overload of the signal is its own event.
    byInt->SetValue(QString());
    f.module->calls.clear();
    Q_EMIT f.sender1->picked(4);
    Q_EMIT f.sender1->picked(u"y"_s);
    QCOMPARE(f.module->calls, QStringList{u"onPicked(QString y)"_s});
}

void tst_Events::clonedSignalIsTheSignal()
{
    TFixture f;
    const QMetaMethod original = SignalOf(f.sender1, "toggled(bool)");
    const QMetaMethod clone = SignalOf(f.sender1, "toggled()");
    QVERIFY(clone.attributes() & QMetaMethod::Cloned);

    SetEventHandler(f.sender1, clone, f.module.get(), u"onFired"_s);
    QCOMPARE(GetEventHandler(f.sender1, original).SlotName, u"onFired"_s);
    Q_EMIT f.sender1->toggled(true);
    QCOMPARE(f.module->calls, QStringList{u"onFired()"_s});

    // Set through the original, the clone's handler is replaced, not doubled.
    SetEventHandler(f.sender1, original, f.module.get(), u"onGuarded"_s);
    QCOMPARE(EventHandlerCount(), 1);
    f.module->calls.clear();
    Q_EMIT f.sender1->toggled();
    QCOMPARE(f.module->calls, QStringList{u"onGuarded()"_s});
    ClearEventHandler(f.sender1, clone);
    QCOMPARE(EventHandlerCount(), 0);
}

void tst_Events::severalSenders()
{
    TFixture f;
    auto both = EventEditor({f.sender1, f.sender2}, f.designer.get(), u"fired"_s);
    QVERIFY(both);
    QVERIFY(both->AllEqual());

    SetEventHandler(f.sender1, SignalOf(f.sender1, "fired()"), f.module.get(), u"onFired"_s);
    QVERIFY(!both->AllEqual());
    SetEventHandler(f.sender2, SignalOf(f.sender2, "fired()"), f.module.get(), u"onGuarded"_s);
    QVERIFY(!both->AllEqual());

    both->SetValue(u"onFired"_s);
    QVERIFY(both->AllEqual());
    QCOMPARE(f.designer->modified, 1);
    Q_EMIT f.sender1->fired();
    Q_EMIT f.sender2->fired();
    QCOMPARE(f.module->calls, (QStringList{u"onFired()"_s, u"onFired()"_s}));

    // The same slot of another handler is another handler.
    SetEventHandler(f.sender2, SignalOf(f.sender2, "fired()"), f.helper, u"deleteLater"_s);
    SetEventHandler(f.sender1, SignalOf(f.sender1, "fired()"), f.module.get(), u"deleteLater"_s);
    QVERIFY(!both->AllEqual());

    both->SetValue(QString());
    QVERIFY(both->AllEqual());
    QCOMPARE(EventHandlerCount(), 0);
}

void tst_Events::handlerThatIsNotTheRoot()
{
    TFixture f;
    auto editor = EventEditor({f.sender1}, f.designer.get(), u"fired"_s);
    SetEventHandler(f.sender1, SignalOf(f.sender1, "fired()"), f.helper, u"onPing"_s);
    QCOMPARE(editor->GetValue(), u"Helper1.onPing"_s);
    Q_EMIT f.sender1->fired();
    QCOMPARE(f.helper->pings, 1);

    // The shown text committed unchanged is no change, even though the root has no such slot.
    editor->SetValue(u"Helper1.onPing"_s);
    QCOMPARE(f.designer->modified, 0);
    QCOMPARE(GetEventHandler(f.sender1, SignalOf(f.sender1, "fired()")).Handler, f.helper);

    // An unnamed handler is shown by its class.
    f.helper->setObjectName(QString());
    QCOMPARE(editor->GetValue(), u"THelper.onPing"_s);
}

void tst_Events::handlerOrSenderDestroyed()
{
    TFixture f;
    const QMetaMethod fired = SignalOf(f.sender1, "fired()");

    // The handler goes: its entries leave, the sender emits into nothing.
    SetEventHandler(f.sender1, fired, f.helper, u"onPing"_s);
    SetEventHandler(f.sender2, SignalOf(f.sender2, "fired()"), f.helper, u"onPing"_s);
    SetEventHandler(f.sender2, SignalOf(f.sender2, "countChanged(int)"), f.module.get(), u"onCount"_s);
    QCOMPARE(EventHandlerCount(), 3);
    delete f.helper;
    QCOMPARE(EventHandlerCount(), 1);
    QVERIFY(GetEventHandler(f.sender1, fired).IsEmpty());
    Q_EMIT f.sender1->fired();

    // The sender goes: its entries leave, the handler keeps the others.
    SetEventHandler(f.sender1, fired, f.module.get(), u"onFired"_s);
    delete f.sender2;
    QCOMPARE(EventHandlerCount(), 1);
    Q_EMIT f.sender1->fired();
    QCOMPARE(f.module->calls, QStringList{u"onFired()"_s});

    delete f.sender1;
    QCOMPARE(EventHandlerCount(), 0);

    // A root that handles its own signal, destroyed with it.
    SetEventHandler(f.module.get(), SignalOf(f.module.get(), "moduleReady()"), f.module.get(), u"onFired"_s);
    Q_EMIT f.module->moduleReady();
    QCOMPARE(f.module->calls.size(), 2);
    f.designer.reset();
    f.module.reset();
    QCOMPARE(EventHandlerCount(), 0);
}

void tst_Events::editorOutlivesItsObjects()
{
    TFixture f;
    auto editor = EventEditor({f.sender1, f.sender2}, f.designer.get(), u"fired"_s);
    editor->SetValue(u"onFired"_s);
    QCOMPARE(EventHandlerCount(), 2);

    delete f.sender1;
    QVERIFY(!editor->ValueAvailable());
    QCOMPARE(editor->GetValue(), QString());
    QVERIFY(!editor->AllEqual()); // the living one still has its handler
    editor->SetValue(u"onGuarded"_s); // only the living one takes it
    QCOMPARE(GetEventHandler(f.sender2, SignalOf(f.sender2, "fired()")).SlotName, u"onGuarded"_s);

    delete f.sender2;
    QCOMPARE(EventHandlerCount(), 0);
    QVERIFY(editor->AllEqual());
    QCOMPARE(editor->GetValue(), QString());
    const int modified = f.designer->modified;
    editor->SetValue(u"onFired"_s);
    editor->SetValue(QString());
    QCOMPARE(f.designer->modified, modified);

    // The root gone as well: the list is empty, setting has nothing to connect to.
    auto orphan = EventEditor({f.helper}, f.designer.get(), u"destroyed"_s);
    QVERIFY(orphan);
    f.designer.reset();
    f.module.reset();
    QVERIFY(ValuesOf(*orphan).isEmpty());
    QCOMPARE(orphan->GetValue(), QString());
    orphan->SetValue(QString());
}

void tst_Events::badInput()
{
    TFixture f;
    auto editor = EventEditor({f.sender1}, f.designer.get(), u"fired"_s);
    editor->SetValue(u"onFired"_s);
    const int modified = f.designer->modified;

    // Unknown, private and incompatible slots: an error naming the root, the slot and the
    // event; the handler stays.
    for (const QString &name : {u"noSuchSlot"_s, u"onHidden"_s, u"onCount"_s, u"Helper1.onPing"_s}) {
        const QString error = ErrorOf([&] { editor->SetValue(name); });
        QCOMPARE(error, LoadStr(SErrNoSuchSlot).arg(u"Module1"_s, name, u"fired"_s));
    }
    QCOMPARE(editor->GetValue(), u"onFired"_s);
    QCOMPARE(f.designer->modified, modified);
    f.module->calls.clear();
    Q_EMIT f.sender1->fired();
    QCOMPARE(f.module->calls, QStringList{u"onFired()"_s});

    // The registry says which event it could not connect.
    QCOMPARE(ErrorOf([&] { SetEventHandler(f.sender1, SignalOf(f.sender1, "countChanged(int)"), f.helper, u"onCount"_s); }),
             LoadStr(SErrNoSuchSlot).arg(u"Helper1"_s, u"onCount"_s, u"Sender1.countChanged(int)"_s));
    QCOMPARE(GetEventHandler(f.sender1, SignalOf(f.sender1, "countChanged(int)")), TEventHandler());

    // A signal of another class, or a slot where a signal belongs.
    const QMetaMethod alien = SignalOf(f.module.get(), "moduleReady()");
    QCOMPARE(ErrorOf([&] { SetEventHandler(f.sender1, alien, f.module.get(), u"onFired"_s); }),
             LoadStr(SErrNotASignal).arg(u"moduleReady()"_s, u"Sender1"_s));
    const QMetaMethod slot = f.module->metaObject()->method(f.module->metaObject()->indexOfSlot("onFired()"));
    QVERIFY(!ErrorOf([&] { SetEventHandler(f.module.get(), slot, f.module.get(), u"onFired"_s); }).isEmpty());
    QVERIFY(GetEventHandler(f.sender1, alien).IsEmpty());
    QCOMPARE(EventHandlerCount(), 1);

    // A null handler or an empty slot name clears.
    SetEventHandler(f.sender1, SignalOf(f.sender1, "fired()"), nullptr, u"onFired"_s);
    QCOMPARE(EventHandlerCount(), 0);
}

void tst_Events::handlerRoot()
{
    TFixture f;
    // The designer's root is the handler even of objects it does not own.
    auto other = std::make_unique<TModule>();
    other->setObjectName(u"Module2"_s);
    auto *stranger = Make<TSender>(other.get(), u"Stranger"_s);
    auto designed = EventEditor({stranger}, f.designer.get(), u"fired"_s);
    QCOMPARE(static_cast<TMethodProperty *>(designed.get())->HandlerRoot(), f.module.get());
    designed->SetValue(u"onFired"_s);
    Q_EMIT stranger->fired();
    QCOMPARE(f.module->calls, QStringList{u"onFired()"_s});
    QVERIFY(other->calls.isEmpty());

    // Without a designer: the owner, or the object itself when it is a root.
    auto owned = EventEditor({stranger}, nullptr, u"fired"_s);
    QCOMPARE(static_cast<TMethodProperty *>(owned.get())->HandlerRoot(), other.get());
    // Handled by another root than the owner: shown qualified.
    QCOMPARE(owned->GetValue(), u"Module1.onFired"_s);
    auto own = EventEditor({other.get()}, nullptr, u"moduleReady"_s);
    QCOMPARE(static_cast<TMethodProperty *>(own.get())->HandlerRoot(), other.get());

    // Nothing owns a lone object: no list, and setting says why.
    TSender lone;
    auto unowned = EventEditor({&lone}, nullptr, u"fired"_s);
    QCOMPARE(static_cast<TMethodProperty *>(unowned.get())->HandlerRoot(), nullptr);
    QVERIFY(ValuesOf(*unowned).isEmpty());
    QCOMPARE(ErrorOf([&] { unowned->SetValue(u"onFired"_s); }), LoadStr(SErrNoEventHandler).arg(u"fired"_s));
}

void tst_Events::finalizeDisconnects()
{
    TFixture f;
    SetEventHandler(f.sender1, SignalOf(f.sender1, "fired()"), f.module.get(), u"onFired"_s);
    SetEventHandler(f.sender2, SignalOf(f.sender2, "fired()"), f.helper, u"onPing"_s);
    FinalizeEventConnections();
    QCOMPARE(EventHandlerCount(), 0);
    Q_EMIT f.sender1->fired();
    Q_EMIT f.sender2->fired();
    QVERIFY(f.module->calls.isEmpty());
    QCOMPARE(f.helper->pings, 0);
    // The registry works on after a stop, and objects that die later find nothing stale.
    SetEventHandler(f.sender1, SignalOf(f.sender1, "fired()"), f.helper, u"onPing"_s);
    delete f.helper;
    QCOMPARE(EventHandlerCount(), 0);
}

QTEST_MAIN(tst_Events)
#include "tst_events.moc"
