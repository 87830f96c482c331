#include "foundation/ideSystem_notifierlist.h"
#include "platform/kvException.h"

#include <QTest>

#include <functional>
#include <map>
#include <memory>

using namespace kv;
using namespace Qt::StringLiterals;

namespace {

// Logs its name when one of its methods is called.
class TListener : public INotifierOwnerListener
{
public:
    TListener(QString name, QStringList &log) : Name(std::move(name)), m_log(log) {}
    virtual ~TListener() = default;

    void OnNotify(QObject *Sender, qintptr wParam, qintptr lParam)
    {
        m_log.append(Sender ? u"%1(%2,%3)"_s.arg(Name).arg(wParam).arg(lParam) : Name);
        if (Action)
            Action();
    }
    void OnOther(QObject *, qintptr, qintptr) { m_log.append(Name + u"/other"_s); }
    void NotifierOwnerDestroying(QObject *Owner) override
    {
        m_log.append(Name + u":"_s + Owner->objectName());
        if (Action)
            Action();
    }

    TNotifierProc Notify() { return TNotifierProc::Of<&TListener::OnNotify>(this); }
    TNotifierProc Other() { return TNotifierProc::Of<&TListener::OnOther>(this); }

    const QString Name;
    std::function<void()> Action;

private:
    QStringList &m_log;
};

} // namespace

class tst_NotifierList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addDeleteAndOrder()
    {
        QStringList log;
        TListener a(u"A"_s, log), b(u"B"_s, log), c(u"C"_s, log);
        TNotifierList list;
        list.AddMethod(a.Notify());
        list.AddMethod(b.Notify());
        list.AddMethod(a.Other());
        list.AddMethod(c.Notify());
        list.AddMethod(TNotifierProc()); // empty: ignored
        list.AddMethod(a.Notify());      // held: moves to the newest place
        QCOMPARE(list.Methods(), (QList<TNotifierProc>{b.Notify(), a.Other(), c.Notify(), a.Notify()}));

        list.NotifyEvents(this, 3, -4);
        QCOMPARE(log.join(u' '), u"A(3,-4) C(3,-4) A/other B(3,-4)"_s);

        // Same object and same member only; deleting what is not held changes nothing.
        list.DeleteMethod(a.Notify());
        list.DeleteMethod(a.Notify());
        list.DeleteMethod(c.Other());
        QCOMPARE(list.Methods(), (QList<TNotifierProc>{b.Notify(), a.Other(), c.Notify()}));
        list.AddMethod(a.Notify());
        list.DeleteWithData(&a);
        list.DeleteWithData(nullptr);
        QCOMPARE(list.Methods(), (QList<TNotifierProc>{b.Notify(), c.Notify()}));
    }

    void walk_data()
    {
        // Methods of A B C D are added in this order; C, the second called, acts during the
        // first call: delete (DeleteMethod), add, data (DeleteWithData, then the listener is
        // destroyed), list (the list is freed), throw. The walk rule is the one tst_notifiers
        // covers row by row for the registry; these rows cover the list's own ways in.
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("calls");
        QTest::addColumn<QString>("after");

        QTest::newRow("deletes itself") << "delete:C" << "D C B A" << "A B D";
        QTest::newRow("destroys an older one") << "data:B" << "D C A" << "A C D";
        QTest::newRow("re-adds an older one, deletes a called one")
            << "add:A;delete:D" << "D C B A" << "B C A";
        QTest::newRow("deletes and re-adds an older one") << "delete:A;add:A" << "D C B" << "B C D A";
        QTest::newRow("frees the list") << "list:" << "D C" << "-";
        QTest::newRow("throws") << "throw:" << "D C" << "A B C D";
    }

    void walk()
    {
        QFETCH(QString, action);
        QFETCH(QString, calls);
        QFETCH(QString, after);

        QStringList log;
        std::map<QString, std::unique_ptr<TListener>> listeners;
        auto list = std::make_unique<TNotifierList>();
        for (QString name : {u"A"_s, u"B"_s, u"C"_s, u"D"_s}) {
            listeners[name] = std::make_unique<TListener>(name, log);
            list->AddMethod(listeners[name]->Notify());
        }

        listeners[u"C"_s]->Action = [&] {
            for (const QString &step : action.split(u';')) {
                const QString op = step.section(u':', 0, 0);
                const QString target = step.section(u':', 1);
                if (op == u"delete") {
                    list->DeleteMethod(listeners[target]->Notify());
                } else if (op == u"add") {
                    list->AddMethod(listeners[target]->Notify());
                } else if (op == u"data") {
                    list->DeleteWithData(listeners[target].get());
                    listeners[target].reset();
                } else if (op == u"list") {
                    list.reset();
                } else if (op == u"throw") {
                    throw Exception(u"listener failed"_s);
                }
            }
        };

        TNotifierList *called = list.get();
        try {
            called->NotifyEvents(nullptr, 0, 0);
        } catch (const Exception &e) {
            QCOMPARE(e.Message(), u"listener failed"_s);
        }
        QCOMPARE(log.join(u' '), calls);

        QStringList held;
        if (list) {
            for (const TNotifierProc &method : list->Methods())
                held.append(static_cast<TListener *>(method.GetData())->Name);
        }
        QCOMPARE(list ? held.join(u' ') : u"-"_s, after);
    }

    void notifyDestroying()
    {
        QStringList log;
        QObject owner;
        owner.setObjectName(u"owner"_s);
        TListener byTemplate(u"T"_s, log), explicitly(u"X"_s, log), notAsked(u"N"_s, log);
        TNotifierList list;
        list.AddListener<&TListener::OnNotify>(&byTemplate);
        list.AddMethod(notAsked.Notify()); // implements the interface without registering it
        list.AddMethod(explicitly.Notify(), &explicitly);

        NotifyDestroying(&owner, list);
        QCOMPARE(log.join(u' '), u"X:owner T:owner"_s);
        QCOMPARE(list.Count(), 3);

        // A listener that deletes an older one while being told: that one is not told.
        log.clear();
        explicitly.Action = [&] { list.DeleteWithData(&byTemplate); };
        NotifyDestroying(&owner, list);
        QCOMPARE(log.join(u' '), u"X:owner"_s);

        // Re-added without the interface, a method is no longer told.
        log.clear();
        explicitly.Action = nullptr;
        list.AddMethod(explicitly.Notify());
        NotifyDestroying(&owner, list);
        QVERIFY(log.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_NotifierList)
#include "tst_notifierlist.moc"
