#include "foundation/ideConsts.h"
#include "tests/platform/editortests.h"
#include "platform/kvDataModule.h"
#include "platform/kvEventConnections.h"
#include "platform/kvException.h"
#include "platform/kvMethodProperty.h"
#include "platform/kvPropertyRegistry.h"

#include <QTest>

#include "tests/testsupport.h"

#include <memory>

using namespace kv;
using namespace kv::test;
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
    void onFired(int count) { calls.append(u"onFired(int %1)"_s.arg(count)); }
    void onPicked(int index) { calls.append(u"onPicked(int %1)"_s.arg(index)); }
    void onPicked(const QString &name) { calls.append(u"onPicked(QString %1)"_s.arg(name)); }

protected Q_SLOTS:
    void onGuarded() { calls.append(u"onGuarded()"_s); }

private Q_SLOTS:
    void onHidden() { calls.append(u"onHidden()"_s); }
};

TEditorPtr EventEditor(const QList<QObject *> &Selection, IFormDesigner *Designer, const QString &Name)
{
    return Take(EditorsOf(Selection, Designer, tkMethod), Name);
}

// Module1 { Sender1, Sender2, Helper1 (a module of its own) } designed by a recording designer.
struct TFixture
{
    TFixture()
    {
        module = std::make_unique<TModule>();
        module->setObjectName(u"Module1"_s);
        sender1 = Make<TSender>(module.get(), u"Sender1"_s);
        sender2 = Make<TSender>(module.get(), u"Sender2"_s);
        helper = Make<TModule>(module.get(), u"Helper1"_s);
        designer = std::make_unique<TRecordingDesigner>();
        designer->SetOwnerControl(module.get());
    }
    ~TFixture() { FinalizeEventConnections(); }

    // The calls the module's slots recorded while Emit ran.
    QStringList CallsDuring(const std::function<void()> &Emit)
    {
        module->calls.clear();
        Emit();
        return module->calls;
    }

    std::unique_ptr<TModule> module;
    TSender *sender1;
    TSender *sender2;
    TModule *helper;
    std::unique_ptr<TRecordingDesigner> designer;
    // Signals of both senders.
    const QMetaMethod fired = QMetaMethod::fromSignal(&TSender::fired);
    const QMetaMethod countChanged = QMetaMethod::fromSignal(&TSender::countChanged);
};

} // namespace

class tst_Events : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void signalsAreEventEditorsOfCompatibleSlots()
    {
        TFixture f;
        // Overloads are told apart by signature; a clone of a default argument is no event.
        QCOMPARE(Names(EditorsOf({f.sender1}, f.designer.get(), tkMethod)),
                 (QStringList{u"destroyed"_s, u"objectNameChanged"_s, u"fired"_s, u"countChanged"_s,
                              u"picked(int)"_s, u"picked(QString)"_s, u"toggled"_s}));

        // A slot may take fewer arguments than the signal, never more or others; protected
        // slots are offered, private ones are not; an overloaded slot's name comes once. The
        // order is the declaration order, the ancestors' first.
        QCOMPARE(ValuesOf(*EventEditor({f.sender1}, f.designer.get(), u"fired"_s)),
                 (QStringList{u"deleteLater"_s, u"onFired"_s, u"onGuarded"_s}));
        QCOMPARE(ValuesOf(*EventEditor({f.sender1}, f.designer.get(), u"countChanged"_s)),
                 (QStringList{u"deleteLater"_s, u"onFired"_s, u"onCount"_s, u"onPicked"_s, u"onGuarded"_s}));
        QVERIFY(GetCompatibleSlots(nullptr, f.fired).isEmpty());
        QVERIFY(GetCompatibleSlots(&TModule::staticMetaObject, QMetaMethod()).isEmpty());
    }

    void setReplaceAndClear()
    {
        TFixture f;
        auto editor = EventEditor({f.sender1}, f.designer.get(), u"countChanged"_s);
        editor->SetValue(u"onCount"_s);
        QCOMPARE(f.designer->modified, 1);
        QCOMPARE(f.CallsDuring([&] { Q_EMIT f.sender1->countChanged(5); }), QStringList{u"onCount(5)"_s});

        // Setting it again changes nothing: still one connection, nothing modified.
        editor->SetValue(u" onCount "_s);
        QCOMPARE(editor->GetValue(), u"onCount"_s);
        QCOMPARE(f.designer->modified, 1);
        QCOMPARE(f.CallsDuring([&] { Q_EMIT f.sender1->countChanged(6); }), QStringList{u"onCount(6)"_s});

        // Replacing disconnects the old slot; other events of the sender stay unconnected.
        editor->SetValue(u"onFired"_s);
        QCOMPARE(f.designer->modified, 2);
        QCOMPARE(f.CallsDuring([&] {
            Q_EMIT f.sender1->countChanged(7);
            Q_EMIT f.sender1->fired();
        }), QStringList{u"onFired()"_s});

        // Slot names are case-sensitive, but a different case that names one slot is taken.
        editor->SetValue(u"ONCOUNT"_s);
        QCOMPARE(editor->GetValue(), u"onCount"_s);
        QCOMPARE(f.designer->modified, 3);

        // Empty disconnects; clearing what is clear tells nobody.
        editor->SetValue(QString());
        QCOMPARE(editor->GetValue(), QString());
        QCOMPARE(f.designer->modified, 4);
        QVERIFY(f.CallsDuring([&] { Q_EMIT f.sender1->countChanged(8); }).isEmpty());
        QCOMPARE(EventHandlerCount(), 0);
        editor->SetValue(QString());
        QCOMPARE(editor->GetValue(), QString());
        QCOMPARE(f.designer->modified, 4);
    }

    void overloadsAndClones()
    {
        TFixture f;
        auto byInt = EventEditor({f.sender1}, f.designer.get(), u"picked(int)"_s);
        auto byName = EventEditor({f.sender1}, f.designer.get(), u"picked(QString)"_s);

        // Each overload is an event of its own, connected to the first slot of the name that fits.
        byInt->SetValue(u"onPicked"_s);
        byName->SetValue(u"onPicked"_s);
        QCOMPARE(f.CallsDuring([&] {
            Q_EMIT f.sender1->picked(3);
            Q_EMIT f.sender1->picked(u"x"_s);
        }), (QStringList{u"onPicked(int 3)"_s, u"onPicked(QString x)"_s}));

        // A signal's clone (from a default argument) is the signal itself.
        const QMetaMethod original = QMetaMethod::fromSignal(&TSender::toggled);
        const QMetaMethod clone = TSender::staticMetaObject.method(TSender::staticMetaObject.indexOfSignal("toggled()"));
        SetEventHandler(f.sender1, clone, f.module.get(), u"onFired"_s);
        QCOMPARE(f.CallsDuring([&] { Q_EMIT f.sender1->toggled(true); }), QStringList{u"onFired()"_s});
        // Set through the original, the clone's handler is replaced, not doubled.
        SetEventHandler(f.sender1, original, f.module.get(), u"onGuarded"_s);
        QCOMPARE(EventHandlerCount(), 3);
        QCOMPARE(f.CallsDuring([&] { Q_EMIT f.sender1->toggled(); }), QStringList{u"onGuarded()"_s});
        ClearEventHandler(f.sender1, clone);
        QCOMPARE(EventHandlerCount(), 2);
    }

    void severalSendersOneDying()
    {
        TFixture f;
        auto both = EventEditor({f.sender1, f.sender2}, f.designer.get(), u"fired"_s);
        SetEventHandler(f.sender1, f.fired, f.module.get(), u"onFired"_s);
        SetEventHandler(f.sender2, f.fired, f.module.get(), u"onGuarded"_s);
        QVERIFY(!both->AllEqual());

        both->SetValue(u"onFired"_s);
        QVERIFY(both->AllEqual());
        QCOMPARE(f.designer->modified, 1);
        QCOMPARE(f.CallsDuring([&] {
            Q_EMIT f.sender1->fired();
            Q_EMIT f.sender2->fired();
        }), (QStringList{u"onFired()"_s, u"onFired()"_s}));

        // The same slot of another handler is another handler.
        SetEventHandler(f.sender2, f.fired, f.helper, u"deleteLater"_s);
        SetEventHandler(f.sender1, f.fired, f.module.get(), u"deleteLater"_s);
        QVERIFY(!both->AllEqual());

        both->SetValue(QString());
        QVERIFY(both->AllEqual());
        QCOMPARE(EventHandlerCount(), 0);

        // One destroyed: it shows and takes nothing, the living one keeps its handler.
        both->SetValue(u"onFired"_s);
        delete f.sender1;
        QCOMPARE(both->GetValue(), QString());
        QVERIFY(!both->AllEqual());
        both->SetValue(u"onGuarded"_s);
        QCOMPARE(GetEventHandler(f.sender2, f.fired).SlotName, u"onGuarded"_s);

        // Both destroyed: nothing to set, nobody told.
        delete f.sender2;
        QVERIFY(both->AllEqual());
        const int modified = f.designer->modified;
        both->SetValue(u"onFired"_s);
        both->SetValue(QString());
        QCOMPARE(f.designer->modified, modified);
    }

    void handlerRoot()
    {
        TFixture f;
        // The designer's root is the handler even of objects it does not own.
        auto other = std::make_unique<TModule>();
        other->setObjectName(u"Module2"_s);
        auto *stranger = Make<TSender>(other.get(), u"Stranger"_s);
        EventEditor({stranger}, f.designer.get(), u"fired"_s)->SetValue(u"onFired"_s);
        QCOMPARE(f.CallsDuring([&] { Q_EMIT stranger->fired(); }), QStringList{u"onFired()"_s});

        // Without a designer: the owner, or the object itself when it is a root. A handler
        // that is not the root is shown qualified.
        auto owned = EventEditor({stranger}, nullptr, u"fired"_s);
        QCOMPARE(static_cast<TMethodProperty *>(owned.get())->HandlerRoot(), other.get());
        QCOMPARE(owned->GetValue(), u"Module1.onFired"_s);
        auto own = EventEditor({other.get()}, nullptr, u"moduleReady"_s);
        QCOMPARE(static_cast<TMethodProperty *>(own.get())->HandlerRoot(), other.get());

        // The shown text committed unchanged is no change, though it names no slot of the root.
        auto editor = EventEditor({f.sender1}, f.designer.get(), u"fired"_s);
        SetEventHandler(f.sender1, f.fired, f.helper, u"onGuarded"_s);
        QCOMPARE(editor->GetValue(), u"Helper1.onGuarded"_s);
        editor->SetValue(u"Helper1.onGuarded"_s);
        QCOMPARE(f.designer->modified, 1);
        Q_EMIT f.sender1->fired();
        QCOMPARE(f.helper->calls, QStringList{u"onGuarded()"_s});
        // An unnamed handler is shown by its class.
        f.helper->setObjectName(QString());
        QCOMPARE(editor->GetValue(), u"TModule.onGuarded"_s);

        // Nothing owns a lone object: no list, and setting says why.
        TSender lone;
        auto unowned = EventEditor({&lone}, nullptr, u"fired"_s);
        QVERIFY(ValuesOf(*unowned).isEmpty());
        QCOMPARE(ErrorOf([&] { unowned->SetValue(u"onFired"_s); }), LoadStr(SErrNoEventHandler).arg(u"fired"_s));
    }

    void stopOrHandlerOrSenderDestroyed()
    {
        TFixture f;
        // A stop disconnects and forgets everything. The registry works on after it, and
        // objects that die later find nothing stale.
        SetEventHandler(f.sender1, f.fired, f.module.get(), u"onFired"_s);
        SetEventHandler(f.sender2, f.fired, f.helper, u"onFired"_s);
        FinalizeEventConnections();
        QCOMPARE(EventHandlerCount(), 0);
        QVERIFY(f.CallsDuring([&] {
            Q_EMIT f.sender1->fired();
            Q_EMIT f.sender2->fired();
        }).isEmpty());
        QVERIFY(f.helper->calls.isEmpty());

        // The handler goes: its entries leave, the sender emits into nothing.
        SetEventHandler(f.sender1, f.fired, f.helper, u"onFired"_s);
        SetEventHandler(f.sender2, f.fired, f.helper, u"onFired"_s);
        SetEventHandler(f.sender2, f.countChanged, f.module.get(), u"onCount"_s);
        QCOMPARE(EventHandlerCount(), 3);
        delete f.helper;
        QCOMPARE(EventHandlerCount(), 1);
        QVERIFY(GetEventHandler(f.sender1, f.fired).IsEmpty());
        Q_EMIT f.sender1->fired();

        // The sender goes: its entries leave, the handler keeps the others.
        SetEventHandler(f.sender1, f.fired, f.module.get(), u"onFired"_s);
        delete f.sender2;
        QCOMPARE(EventHandlerCount(), 1);
        QCOMPARE(f.CallsDuring([&] { Q_EMIT f.sender1->fired(); }), QStringList{u"onFired()"_s});
        delete f.sender1;
        QCOMPARE(EventHandlerCount(), 0);

        // A root that handles its own signal, destroyed with it.
        SetEventHandler(f.module.get(), QMetaMethod::fromSignal(&TModule::moduleReady), f.module.get(), u"onFired"_s);
        QCOMPARE(f.CallsDuring([&] { Q_EMIT f.module->moduleReady(); }), QStringList{u"onFired()"_s});
        f.designer.reset();
        f.module.reset();
        QCOMPARE(EventHandlerCount(), 0);
    }

    void badInput()
    {
        TFixture f;
        auto editor = EventEditor({f.sender1}, f.designer.get(), u"fired"_s);
        editor->SetValue(u"onFired"_s);

        // Unknown, private and incompatible slots: an error naming the root, the slot and the
        // event; the handler stays.
        for (const QString &name : {u"noSuchSlot"_s, u"onHidden"_s, u"onCount"_s, u"Helper1.onFired"_s}) {
            const QString error = ErrorOf([&] { editor->SetValue(name); });
            QCOMPARE(error, LoadStr(SErrNoSuchSlot).arg(u"Module1"_s, name, u"fired"_s));
        }
        QCOMPARE(f.designer->modified, 1);
        QCOMPARE(f.CallsDuring([&] { Q_EMIT f.sender1->fired(); }), QStringList{u"onFired()"_s});

        // The registry says which event it could not connect.
        QCOMPARE(ErrorOf([&] { SetEventHandler(f.sender2, f.fired, f.helper, u"onCount"_s); }),
                 LoadStr(SErrNoSuchSlot).arg(u"Helper1"_s, u"onCount"_s, u"Sender2.fired()"_s));
        QCOMPARE(GetEventHandler(f.sender2, f.fired), TEventHandler());

        // A signal of another class, or a slot where a signal belongs.
        const QMetaMethod alien = QMetaMethod::fromSignal(&TModule::moduleReady);
        QCOMPARE(ErrorOf([&] { SetEventHandler(f.sender1, alien, f.module.get(), u"onFired"_s); }),
                 LoadStr(SErrNotASignal).arg(u"moduleReady()"_s, u"Sender1"_s));
        const QMetaMethod slot = f.module->metaObject()->method(f.module->metaObject()->indexOfSlot("onFired()"));
        QVERIFY(!ErrorOf([&] { SetEventHandler(f.module.get(), slot, f.module.get(), u"onFired"_s); }).isEmpty());
        QVERIFY(GetEventHandler(f.sender1, alien).IsEmpty());
        QCOMPARE(EventHandlerCount(), 1);

        // A null handler or an empty slot name clears.
        SetEventHandler(f.sender1, f.fired, nullptr, u"onFired"_s);
        QCOMPARE(EventHandlerCount(), 0);
    }
};

QTEST_MAIN(tst_Events)
#include "tst_events.moc"
