#include "foundation/ideSystem_activenotifier.h"
#include "foundation/ideSystem_messageanswer.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvException.h"

#include <QApplication>
#include <QLineEdit>
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
    void cleanup()
    {
        QCOMPARE(NotifierRegistry().Count(), 0);
        QCOMPARE(IDEUpdateCount, 0);
    }

    void walk_data()
    {
        // A B C D are registered in this order; C, the second visited, acts during the first
        // broadcast: "op:X,Y" steps joined by ';', op one of unregister, register (E is not
        // registered beforehand), delete (the probe is destroyed), throw and broadcast (a
        // nested broadcast of another message, which C ignores).
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("visits");
        QTest::addColumn<QString>("after");

        QTest::newRow("destroys itself") << "delete:C" << "D C B A" << "A B D";
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
        QTest::newRow("unregisters an older one, throws") << "unregister:A;throw:" << "D C" << "B C D";
        QTest::newRow("unregisters an older one, broadcasts")
            << "unregister:A;broadcast:" << "D C D C B B" << "B C D";
    }

    void walk()
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

        probes[u"C"_s]->OnMessage = [&](TMessage &m) {
            if (m.Msg != CM_IDECHANGED)
                return;
            for (const QString &step : action.split(u';', Qt::SkipEmptyParts)) {
                const QString op = step.section(u':', 0, 0);
                if (op == u"throw")
                    throw Exception(u"handler failed"_s);
                if (op == u"broadcast")
                    SimpleBroadCast(CM_REGISTERCOMPS);
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

    void compactionDuringBroadcast()
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

    void agreeStopsAtFirstAnswer()
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

        // A message answer is the newest notifier for as long as it lives.
        b.OnMessage = nullptr;
        log.clear();
        {
            TMessageAnswer silent; // ignores everything
            QVERIFY(NotifiersAgree(nullptr, CM_TOOLBARFORM));
            TAnswer answer;
            QVERIFY(!NotifiersAgree(nullptr, CM_TOOLBARFORM));
            QCOMPARE(log.join(u' '), u"C B A"_s);
        }
        QCOMPARE(NotifierRegistry().Count(), 3);
    }

    void updateBracket()
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

    void payloads()
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

        BroadcastPropChanged(&c, {&b, &a}, u"Caption"_s);
        BroadcastPropChanged(&c, {&a}, u""_s); // no name: the whole object
        NotifyDestroy(&a);
        NotifyDestroyObjects({&a, &b});
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
            u"prop b,a Caption part"_s, u"prop a  whole"_s,
            u"destroyed a  a"_s, u"destroyed - a,b a"_s, u"destroyed - b not-a"_s,
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

    void focusChangesAndFinalize()
    {
        TFocusFixture f;
        QVERIFY(QTest::qWaitForWindowActive(&f.window));
        QStringList log;
        TProbe probe(u"P"_s, log);
        RegisterNotifier(&probe);
        InitIDENotifier();
        InitIDENotifier(); // still one watcher

        f.second->setFocus();
        f.first->setFocus();
        QCOMPARE(probe.Numbers, (QList<quint32>{CM_IDECHANGED, CM_IDECHANGED}));
        QCOMPARE(TActiveNotifier().property("Version").toString(), u"3.1"_s);

        // Inside an update bracket the change is folded into the closing IDEChanged.
        probe.Numbers.clear();
        IDEBeginUpdate();
        f.second->setFocus();
        IDEEndUpdate();
        QCOMPARE(probe.Numbers, (QList<quint32>{CM_IDEBEGINUPDATE, CM_IDEENDUPDATE, CM_IDECHANGED}));

        // Finalizing forgets the notifiers, closes the open bracket and drops the focus watcher,
        // which can be installed again.
        probe.Numbers.clear();
        IDEBeginUpdate();
        FinalizeNotifiers();
        QCOMPARE(IDEUpdateCount, 0);
        QCOMPARE(NotifierRegistry().Count(), 0);
        RegisterNotifier(&probe);
        f.first->setFocus();
        QCOMPARE(probe.Numbers, QList<quint32>{CM_IDEBEGINUPDATE});
        InitIDENotifier();
        f.second->setFocus();
        QCOMPARE(probe.Numbers, (QList<quint32>{CM_IDEBEGINUPDATE, CM_IDECHANGED}));
        UnregisterNotifier(&probe);
        FinalizeNotifiers();
    }
};

QTEST_MAIN(tst_Notifiers)
#include "tst_notifiers.moc"
