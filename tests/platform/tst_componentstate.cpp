#include "platform/kvComponentState.h"

#include <QTest>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <new>

using namespace kv;

namespace {

// One of our classes: it says so when its destruction begins.
class TOwnComponent : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~TOwnComponent() override
    {
        IncludeState(this, csDestroying);
        if (onDestroying)
            onDestroying();
    }
    std::function<void()> onDestroying;
};

// Records the state of obj at the moment its destroyed signal reaches the test.
TComponentState *RecordStateWhenDestroyed(QObject *obj)
{
    auto *seen = new TComponentState;
    QObject::connect(obj, &QObject::destroyed, [seen](QObject *dying) { *seen = ComponentState(dying); });
    return seen;
}

} // namespace

class tst_ComponentState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QCOMPARE(ComponentStateCount(), 0); }
    void cleanup() { QCOMPARE(ComponentStateCount(), 0); }

    void foreignObjectsKeepStateBesideThem()
    {
        QTimer timer;
        QCOMPARE(ComponentState(nullptr), TComponentState());
        SetComponentState(nullptr, csLoading); // ignored

        SetComponentState(&timer, csLoading | csReading);
        QCOMPARE(ComponentState(&timer), csLoading | csReading);
        ExcludeState(&timer, csLoading);
        QCOMPARE(ComponentState(&timer), TComponentState(csReading));
        IncludeState(&timer, csWriting);
        QCOMPARE(ComponentState(&timer), csReading | csWriting);
        QCOMPARE(ComponentStateCount(), 1);

        // An empty state keeps no record.
        ExcludeState(&timer, csReading | csWriting);
        QCOMPARE(ComponentStateCount(), 0);
    }

    void designingHoldsForTheSubtree()
    {
        QWidget form;
        auto *panel = new QWidget(&form);
        auto *button = new QWidget(panel);
        QObject outside;

        IncludeState(&form, csDesigning);
        QCOMPARE(ComponentState(button), TComponentState(csDesigning));
        QCOMPARE(ComponentStateCount(), 1);

        // Created or moved in later: designing too; moved out: no longer.
        auto *later = new QObject(panel);
        QVERIFY(ComponentState(later).testFlag(csDesigning));
        outside.setParent(button);
        QVERIFY(ComponentState(&outside).testFlag(csDesigning));
        outside.setParent(nullptr);
        QVERIFY(!ComponentState(&outside).testFlag(csDesigning));

        // Other flags stay on their object.
        IncludeState(panel, csLoading);
        QCOMPARE(ComponentState(button), TComponentState(csDesigning));

        // Writing back a state read below the root does not pin csDesigning there.
        SetComponentState(button, ComponentState(button) | csReading);
        ExcludeState(panel, csDesigning); // no effect: set on the form
        QVERIFY(ComponentState(panel).testFlag(csDesigning));
        ExcludeState(&form, csDesigning);
        QCOMPARE(ComponentState(panel), TComponentState(csLoading));
        QCOMPARE(ComponentState(button), TComponentState(csReading));
        QCOMPARE(ComponentState(later), TComponentState());
    }

    void destructionMarksTheSubtree()
    {
        // Ours mark themselves first thing, and their children still are when ~QObject deletes them.
        auto *own = new TOwnComponent;
        auto *child = new QObject(own);
        auto *grandChild = new QObject(child);
        TComponentState grandChildSeen;
        own->onDestroying = [&] { grandChildSeen = ComponentState(grandChild); };
        std::unique_ptr<TComponentState> childSeen(RecordStateWhenDestroyed(child));
        delete own;
        QCOMPARE(grandChildSeen, TComponentState(csDestroying));
        QCOMPARE(*childSeen, TComponentState(csDestroying));

        // A designed foreign form being closed: its widgets die designing and destroying.
        auto *form = new QWidget;
        auto *panel = new QWidget(form);
        auto *label = new QWidget(panel);
        IncludeState(form, csDesigning);
        std::unique_ptr<TComponentState> panelSeen(RecordStateWhenDestroyed(panel));
        std::unique_ptr<TComponentState> labelSeen(RecordStateWhenDestroyed(label));
        delete form;
        QCOMPARE(*panelSeen, csDesigning | csDestroying);
        QCOMPARE(*labelSeen, csDesigning | csDestroying);

        // The same for plain QObjects, whose destroyed comes from ~QObject itself.
        auto *module = new QObject;
        auto *item = new QObject(module);
        IncludeState(module, csLoading);
        std::unique_ptr<TComponentState> itemSeen(RecordStateWhenDestroyed(item));
        delete module;
        QCOMPARE(*itemSeen, TComponentState(csDestroying));
    }

    void deadRecordsAreNeverReused()
    {
        // Placement new gives the second object the first one's address for certain.
        alignas(QObject) unsigned char storage[sizeof(QObject)];

        auto *first = new (storage) QObject;
        IncludeState(first, csDesigning | csLoading);
        first->~QObject();
        QCOMPARE(ComponentStateCount(), 0);
        auto *second = new (storage) QObject;
        QCOMPARE(ComponentState(second), TComponentState());
        second->~QObject();

        // Foreign code may cut every connection of an object, ours to destroyed included.
        auto *cut = new (storage) QObject;
        IncludeState(cut, csDesigning | csLoading);
        cut->disconnect();
        cut->~QObject();
        auto *third = new (storage) QObject;
        auto *thirdChild = new QObject(third);
        QCOMPARE(ComponentState(thirdChild), TComponentState());
        QCOMPARE(ComponentState(third), TComponentState());
        IncludeState(third, csReading);
        QCOMPARE(ComponentState(third), TComponentState(csReading));
        third->~QObject();
    }
};

QTEST_MAIN(tst_ComponentState)
#include "tst_componentstate.moc"
