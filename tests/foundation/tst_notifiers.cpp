#include "foundation/ideSystem_activenotifier.h"
#include "foundation/ideSystem_messageanswer.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvException.h"

#include <QApplication>
#include <QLineEdit>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>

using namespace kv;
using namespace Qt::StringLiterals;

namespace {

// Logs its name for every message it receives and runs an optional reaction.
class TProbe : public INotifier
{
public:
    TProbe(QString name, QStringList &log) : Name(std::move(name)), m_log(log) {}
    virtual ~TProbe() { UnregisterNotifier(this); }

    void Dispatch(TMessage &Message) override
    {
        m_log.append(Name);
        Numbers.append(Message.Msg);
        ResultsSeen.append(Message.Result);
        CountsSeen.append(IDEUpdateCount);
        if (OnMessage)
            OnMessage(Message);
    }

    const QString Name;
    std::function<void(TMessage &)> OnMessage;
    QList<quint32> Numbers;
    QList<qintptr> ResultsSeen;
    QList<int> CountsSeen;

private:
    QStringList &m_log;
};

QString RegisteredNames()
{
    QStringList names;
    for (INotifier *n : NotifierRegistry().Notifiers())
        names.append(static_cast<TProbe *>(n)->Name);
    return names.join(u' ');
}

class TAnswer : public TMessageAnswer
{
public:
    void Dispatch(TMessage &Message) override { Message.Result = 1; }
};

// A window with two line edits, active, the first one focused.
struct TFocusFixture
{
    TFocusFixture()
    {
        second->move(0, 40);
        window.show();
        QApplication::setActiveWindow(&window);
        first->setFocus();
    }
    QWidget window;
    QLineEdit *first = new QLineEdit(&window);
    QLineEdit *second = new QLineEdit(&window);
};

} // namespace

class tst_Notifiers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void walk_data();
    void walk();
    void compactionDuringBroadcast();
    void reentrantBroadcast();
    void agreeStopsAtFirstAnswer();
    void updateBracket();
    void payloads();
    void separateRegistry();
    void messageAnswerLifetime();
    void focusChanges();
    void finalizeFreesEverything();
};

void tst_Notifiers::cleanup()
{
    QCOMPARE(NotifierRegistry().Count(), 0);
    QCOMPARE(IDEUpdateCount, 0);
}

void tst_Notifiers::walk_data()
{
    // A B C D are registered in this order; C, the second visited, acts during the first
    // broadcast: "op:X,Y" steps joined by ';', op one of unregister, register (E is not
    // registered beforehand), delete (the probe is destroyed) and throw.
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("visits");
    QTest::addColumn<QString>("after");

    QTest::newRow("nothing") << "" << "D C B A" << "A B C D";
    QTest::newRow("unregisters itself") << "unregister:C" << "D C B A" << "A B D";
    QTest::newRow("destroys itself") << "delete:C" << "D C B A" << "A B D";
    QTest::newRow("unregisters an older one") << "unregister:A" << "D C B" << "B C D";
    QTest::newRow("destroys an older one") << "delete:B" << "D C A" << "A C D";
    QTest::newRow("unregisters two older ones") << "unregister:B,A" << "D C" << "C D";
    QTest::newRow("destroys a visited one") << "delete:D" << "D C B A" << "A B C";
    QTest::newRow("registers a new one") << "register:E" << "D C B A" << "A B C D E";
    QTest::newRow("re-registers an older one") << "register:A" << "D C B A" << "B C D A";
    QTest::newRow("re-registers a visited one") << "register:D" << "D C B A" << "A B C D";
    QTest::newRow("re-registers an older one, unregisters a visited one")
        << "register:A;unregister:D" << "D C B A" << "B C A";
    QTest::newRow("unregisters and registers an older one")
        << "unregister:A;register:A" << "D C B" << "B C D A";
    QTest::newRow("throws") << "throw:" << "D C" << "A B C D";
    QTest::newRow("unregisters an older one, throws") << "unregister:A;throw:" << "D C" << "B C D";
}

void tst_Notifiers::walk()
{
    QFETCH(QString, action);
    QFETCH(QString, visits);
    QFETCH(QString, after);

    QStringList log;
    std::map<QString, std::unique_ptr<TProbe>> probes;
    for (QString name : {u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s})
        probes[name] = std::make_unique<TProbe>(name, log);
    for (QString name : {u"A"_s, u"B"_s, u"C"_s, u"D"_s})
        RegisterNotifier(probes[name].get());
    RegisterNotifier(nullptr);

    probes[u"C"_s]->OnMessage = [&](TMessage &) {
        for (const QString &step : action.split(u';', Qt::SkipEmptyParts)) {
            const QString op = step.section(u':', 0, 0);
            if (op == u"throw")
                throw Exception(u"handler failed"_s);
            for (const QString &target : step.section(u':', 1).split(u',')) {
                if (op == u"unregister")
                    UnregisterNotifier(probes[target].get());
                else if (op == u"register")
                    RegisterNotifier(probes[target].get());
                else if (op == u"delete")
                    probes[target].reset(); // its destructor unregisters it
            }
        }
    };

    QString error;
    try {
        QVERIFY(BroadCastToNotifiers(nullptr, CM_IDECHANGED));
    } catch (const Exception &e) {
        error = e.Message();
    }
    QCOMPARE(error.isEmpty(), !action.contains(u"throw"));
    QCOMPARE(log.join(u' '), visits);
    QCOMPARE(RegisteredNames(), after);

    // The next broadcast walks the registry as the handler left it, newest first.
    if (probes[u"C"_s])
        probes[u"C"_s]->OnMessage = nullptr;
    log.clear();
    BroadCastToNotifiers(nullptr, CM_IDECHANGED);
    std::reverse(log.begin(), log.end());
    QCOMPARE(log.join(u' '), after);
}

void tst_Notifiers::compactionDuringBroadcast()
{
    // Enough removals, visited notifiers and the acting one among them, to compact the
    // registry while a broadcast walks it.
    QStringList log;
    std::vector<std::unique_ptr<TProbe>> probes;
    for (int i = 0; i < 100; ++i) {
        probes.push_back(std::make_unique<TProbe>(QString::number(i), log));
        RegisterNotifier(probes.back().get());
    }
    probes[90]->OnMessage = [&](TMessage &) {
        for (int i = 0; i < 100; ++i) {
            if (i % 4 != 1)
                UnregisterNotifier(probes[i].get());
        }
    };
    BroadCastToNotifiers(nullptr, CM_IDECHANGED);

    QStringList expected;
    for (int i = 99; i >= 0; --i) {
        if (i >= 90 || i % 4 == 1)
            expected.append(QString::number(i));
    }
    QCOMPARE(log, expected);
    QCOMPARE(NotifierRegistry().Count(), 25);
    log.clear();
    BroadCastToNotifiers(nullptr, CM_IDECHANGED);
    QCOMPARE(log.size(), 25);
    QCOMPARE(log.first(), u"97"_s);
}

void tst_Notifiers::reentrantBroadcast()
{
    QStringList log;
    TProbe a(u"A"_s, log), b(u"B"_s, log), c(u"C"_s, log);
    for (TProbe *p : {&a, &b, &c})
        RegisterNotifier(p);
    b.OnMessage = [&](TMessage &m) {
        if (m.Msg == CM_IDECHANGED) {
            UnregisterNotifier(&a);
            SimpleBroadCast(CM_REGISTERCOMPS);
        }
    };
    SimpleBroadCast(CM_IDECHANGED);
    QCOMPARE(log.join(u' '), u"C B C B"_s);
    QCOMPARE(c.Numbers, (QList<quint32>{CM_IDECHANGED, CM_REGISTERCOMPS}));
}

void tst_Notifiers::agreeStopsAtFirstAnswer()
{
    QStringList log;
    TProbe a(u"A"_s, log), b(u"B"_s, log), c(u"C"_s, log);
    for (TProbe *p : {&a, &b, &c})
        RegisterNotifier(p);
    QVERIFY(NotifiersAgree(nullptr, CM_TOOLBARFORM));
    QCOMPARE(log.join(u' '), u"C B A"_s);

    b.OnMessage = [](TMessage &m) { m.Result = 1; };
    log.clear();
    QVERIFY(!NotifiersAgree(nullptr, CM_TOOLBARFORM));
    QCOMPARE(log.join(u' '), u"C B"_s);

    log.clear();
    QVERIFY(BroadCastToNotifiers(nullptr, CM_TOOLBARFORM, 5, 6));
    QCOMPARE(log.join(u' '), u"C B A"_s);
    QCOMPARE(a.ResultsSeen.last(), 1); // carried on to the older ones
}

void tst_Notifiers::updateBracket()
{
    QStringList log;
    TProbe probe(u"P"_s, log);
    RegisterNotifier(&probe);

    IDEEndUpdate(); // none open: nothing
    IDEBeginUpdate();
    IDEBeginUpdate();
    IDEChanged();
    QCOMPARE(IDEUpdateCount, 2);
    IDEEndUpdate();
    QCOMPARE(probe.Numbers, QList<quint32>{CM_IDEBEGINUPDATE});
    IDEEndUpdate();
    IDEEndUpdate();
    QCOMPARE(IDEUpdateCount, 0);
    QCOMPARE(probe.Numbers, (QList<quint32>{CM_IDEBEGINUPDATE, CM_IDEENDUPDATE, CM_IDECHANGED}));
    // Observers see the bracket closed both when it opens and when it ends.
    QCOMPARE(probe.CountsSeen, (QList<int>{0, 0, 0}));
}

void tst_Notifiers::payloads()
{
    QStringList log, decoded;
    TProbe probe(u"P"_s, log);
    RegisterNotifier(&probe);
    QObject a, b, c;
    a.setObjectName(u"a"_s);
    b.setObjectName(u"b"_s);
    c.setObjectName(u"c"_s);

    const auto name = [](const QObject *o) { return o ? o->objectName() : u"-"_s; };
    const auto names = [&](std::span<QObject *const> objects) {
        QStringList n;
        for (QObject *o : objects)
            n.append(name(o));
        return n.join(u',');
    };
    probe.OnMessage = [&](TMessage &m) {
        switch (m.Msg) {
        case CM_PROPCHANGED: {
            const TPropChangedData d = DecodePropChanged(m);
            decoded << u"prop %1 %2 %3"_s.arg(names(d.Objects), d.PropName.toString(),
                                              d.WholeObject ? u"whole"_s : u"part"_s);
            QCOMPARE(d.Concerns(&b), names(d.Objects).contains(u'b'));
            break;
        }
        case CM_OBJDESTROYED: {
            const TObjDestroyedData d = DecodeObjDestroyed(m);
            decoded << u"destroyed %1 %2 %3"_s.arg(name(d.Object), names(d.Objects))
                           .arg(d.Concerns(&a) ? u"a"_s : u"not-a"_s);
            break;
        }
        case CM_NAMECHANGED:
            decoded << u"name %1 %2"_s.arg(name(DecodeNameChanged(m).Component),
                                           DecodeNameChanged(m).NewName.toString());
            break;
        case CM_OBJINSERT:
            decoded << u"insert "_s + name(DecodeObjInsert(m));
            break;
        case CM_SOURCEEMPTY:
            decoded << u"empty "_s + name(DecodeSourceEmpty(m));
            break;
        case CM_SHOWINSPECTOR:
            decoded << u"show %1"_s.arg(int(DecodeShowInspector(m)));
            break;
        case CM_EDITSTRINGSPROPERTY: {
            const TEditStringsPropertyData d = DecodeEditStringsProperty(m);
            decoded << u"strings %1 %2"_s.arg(name(d.Component), d.PropName.toString());
            break;
        }
        case CM_EDITRESOURCE: {
            const TEditResourceData d = DecodeEditResource(m);
            decoded << u"resource %1 %2 %3"_s.arg(d.FileName.toString(), d.ResName.toString())
                           .arg(d.ResType);
            break;
        }
        }
    };

    BroadcastPropChanged(&c, {&a, &b}, u"Caption"_s);
    BroadcastPropChanged(&c, {&a});
    BroadcastPropChanged(&c, {&a}, u""_s);
    NotifyDestroy(&a);
    NotifyDestroyObjects({&b, &a});
    NotifyDestroyObjects({&b});
    NotifyDestroy(nullptr); // nothing
    NotifyDestroyObjects({}); // nothing
    BroadcastNameChanged(&c, &b, u"Button2"_s);
    BroadcastObjInsert(&c, &a);
    BroadcastSourceEmpty(&b);
    BroadcastShowInspector(&c, true);
    BroadcastShowInspector(&c, false);
    BroadcastEditStringsProperty(&c, &a, u"Lines"_s);
    BroadcastEditResource(&c, u"/opt/app/module.so"_s, u"MAINICON"_s, 14);
    QCOMPARE(decoded, (QStringList{
        u"prop a,b Caption part"_s, u"prop a  whole"_s, u"prop a  whole"_s,
        u"destroyed a  a"_s, u"destroyed - b,a a"_s, u"destroyed - b not-a"_s,
        u"name b Button2"_s, u"insert a"_s, u"empty b"_s, u"show 1"_s, u"show 0"_s,
        u"strings a Lines"_s, u"resource /opt/app/module.so MAINICON 14"_s}));

    // The wire form of CM_PROPCHANGED that code outside these helpers may rely on.
    const QList<QObject *> changed{&a};
    probe.OnMessage = [&](TMessage &m) {
        QCOMPARE(*reinterpret_cast<const QList<QObject *> *>(m.WParam), changed);
        QCOMPARE(*reinterpret_cast<const QString *>(m.LParam), u"Text"_s);
    };
    BroadcastPropChanged(nullptr, changed, u"Text"_s);
}

void tst_Notifiers::separateRegistry()
{
    QStringList log;
    TProbe global(u"G"_s, log), x(u"X"_s, log), y(u"Y"_s, log);
    RegisterNotifier(&global);
    auto local = std::make_unique<TNotifierRegistry>();
    local->Register(&x);
    local->Register(&y);
    // Y frees the registry being walked: X is not reached, and nothing breaks.
    y.OnMessage = [&](TMessage &) { local.reset(); };
    QVERIFY(BroadcastToNotifierList(nullptr, *local, CM_SELECTIONCHANGED, 0, 0, false));
    QCOMPARE(log.join(u' '), u"Y"_s);
}

void tst_Notifiers::messageAnswerLifetime()
{
    QStringList log;
    TProbe older(u"O"_s, log);
    RegisterNotifier(&older);
    auto answer = std::make_unique<TAnswer>();
    QVERIFY(!NotifiersAgree(nullptr, CM_TOOLBARFORM)); // the newest answers first
    QVERIFY(log.isEmpty());
    {
        TMessageAnswer silent; // ignores everything
        QCOMPARE(NotifierRegistry().Count(), 3);
    }
    QCOMPARE(NotifierRegistry().Count(), 2);

    // Destroyed by a newer notifier before its turn: never reached.
    TProbe killer(u"K"_s, log);
    RegisterNotifier(&killer);
    killer.OnMessage = [&](TMessage &) { answer.reset(); };
    QVERIFY(NotifiersAgree(nullptr, CM_TOOLBARFORM));
    QCOMPARE(log.join(u' '), u"K O"_s);
    QCOMPARE(RegisteredNames(), u"O K"_s);
}

void tst_Notifiers::focusChanges()
{
    TFocusFixture f;
    QVERIFY(QTest::qWaitForWindowActive(&f.window));
    QStringList log;
    TProbe probe(u"P"_s, log);
    RegisterNotifier(&probe);
    TActiveNotifier published;
    QSignalSpy spy(&published, &TActiveNotifier::OnActiveChanged);
    InitIDENotifier();
    InitIDENotifier(); // still one watcher

    f.second->setFocus();
    f.first->setFocus();
    QCOMPARE(probe.Numbers, (QList<quint32>{CM_IDECHANGED, CM_IDECHANGED}));
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0).at(0).value<QObject *>(), static_cast<QObject *>(&published));

    // Inside an update bracket the change is folded into the closing IDEChanged.
    probe.Numbers.clear();
    IDEBeginUpdate();
    f.second->setFocus();
    IDEEndUpdate();
    QCOMPARE(probe.Numbers, (QList<quint32>{CM_IDEBEGINUPDATE, CM_IDEENDUPDATE, CM_IDECHANGED}));

    const QMetaProperty version = published.metaObject()->property(
        published.metaObject()->indexOfProperty("Version"));
    QVERIFY(!version.isStored());
    QCOMPARE(version.read(&published).toString(), u"3.1"_s);
}

void tst_Notifiers::finalizeFreesEverything()
{
    QStringList log;
    TProbe forgotten(u"F"_s, log);
    RegisterNotifier(&forgotten);
    IDEBeginUpdate();
    FinalizeNotifiers(); // also drops the focus watcher of focusChanges
    QCOMPARE(IDEUpdateCount, 0);
    QCOMPARE(NotifierRegistry().Count(), 0);

    TFocusFixture f;
    QVERIFY(QTest::qWaitForWindowActive(&f.window));
    TProbe probe(u"P"_s, log);
    RegisterNotifier(&probe);
    f.second->setFocus();
    QVERIFY(probe.Numbers.isEmpty());
    InitIDENotifier(); // and it can be installed again
    f.first->setFocus();
    QCOMPARE(probe.Numbers, QList<quint32>{CM_IDECHANGED});
    QCOMPARE(forgotten.Numbers, QList<quint32>{CM_IDEBEGINUPDATE});
    UnregisterNotifier(&probe);
    FinalizeNotifiers();
}

QTEST_MAIN(tst_Notifiers)
#include "tst_notifiers.moc"
