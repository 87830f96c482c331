#include "treelistener.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_objparams.h"
#include "platform/kvException.h"
#include "treesrc/ideTSLite_registry.h"

#include <QCoreApplication>
#include <QPointer>
#include <QtTest>

using namespace kv;

// Classes standing for the object classes of the registrations.
class TMenu : public QObject { Q_OBJECT };
class TMainMenu : public TMenu { Q_OBJECT };
class TApplicationObj : public QObject { Q_OBJECT };
class TCustomTreeView : public QObject { Q_OBJECT };
class TTreeView : public TCustomTreeView { Q_OBJECT };
class TCollection : public QObject { Q_OBJECT };
class TUnrelated : public QObject { Q_OBJECT };

// Source classes are only named by the registry, never made here.
class TMenuSourceA : public TTreeSource { Q_OBJECT };
class TTreeViewSourceA : public TTreeSource { Q_OBJECT };
class TCollectSourceA : public TTreeSource { Q_OBJECT };
class TCompViewSourceA : public TTreeSource { Q_OBJECT };
class TOtherTreeViewSource : public TTreeSource { Q_OBJECT };

// A sender that keeps its posted record in itself, as sources do.
class TRecordHolder : public QObject
{
    Q_OBJECT
public:
    TNodeRec Rec;
};

class tst_TreeSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        QCoreApplication::sendPostedEvents();
        FinalizeTreeNotifiers();
        FinalizeObjectParamList();
    }

    void captionParts()
    {
        const QString caption = QStringLiteral("Button1|QPushButton|Form1");
        QCOMPARE(TreeCaption(caption), QStringLiteral("Button1"));
        QCOMPARE(CaptionColumns(caption),
                 QStringList({QStringLiteral("Button1"), QStringLiteral("QPushButton"), QStringLiteral("Form1")}));
        QCOMPARE(TreeCaption(QStringLiteral("plain")), QStringLiteral("plain"));
        QCOMPARE(TreeCaption(QStringLiteral("|tail")), QString());
    }

    void sentReachesListenersNewestFirstAtOnce()
    {
        QStringList log;
        TTreeRecorder older(QStringLiteral("older"), &log);
        TTreeRecorder newer(QStringLiteral("newer"), &log);
        TRecordHolder sender;
        {
            TNodeRec onStack;
            onStack.Id = 42;
            GetTreeNotifiers().NotifyEvents(&sender, reinterpret_cast<qintptr>(&onStack), tnDeleted);
        }
        QCOMPARE(log, QStringList({QStringLiteral("newer"), QStringLiteral("older")}));
        QCOMPARE(older.Entries.size(), 1);
        QCOMPARE(older.Entries[0].Sender, &sender);
        QCOMPARE(older.Entries[0].Rec.Id, qintptr(42));
        QCOMPARE(older.Entries[0].Code, int(tnDeleted));
    }

    void postedArrivesLaterNewestFirst()
    {
        QStringList log;
        TTreeRecorder older(QStringLiteral("older"), &log);
        TTreeRecorder newer(QStringLiteral("newer"), &log);
        TRecordHolder sender;
        sender.Rec.Id = 7;
        sender.Rec.Data = reinterpret_cast<qintptr>(&sender);
        GetTreeNotifiers().PostMessage(&sender, CM_TSNOTIFY, reinterpret_cast<qintptr>(&sender.Rec), tnSelect);
        QVERIFY(log.isEmpty());
        QCOMPARE(GetTreeNotifiers().PendingCount(), 2);

        // A listener that comes after the post does not get the message.
        TTreeRecorder late(QStringLiteral("late"), &log);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(log, QStringList({QStringLiteral("newer"), QStringLiteral("older")}));
        QCOMPARE(newer.Entries[0].Sender, &sender);
        QCOMPARE(newer.Entries[0].Code, int(tnSelect));
        QCOMPARE(newer.Entries[0].Rec.Id, qintptr(7));
        QCOMPARE(GetTreeNotifiers().PendingCount(), 0);
    }

    void postedRecordReusedBeforeDeliveryDeliversNewerContents()
    {
        TTreeRecorder listener;
        TRecordHolder sender;
        sender.Rec.Id = 1;
        GetTreeNotifiers().PostMessage(&sender, CM_TSNOTIFY, reinterpret_cast<qintptr>(&sender.Rec), tnSelect);
        sender.Rec.Id = 2;
        sender.Rec.Caption = QStringLiteral("newer");
        QCoreApplication::sendPostedEvents();
        QCOMPARE(listener.Entries.size(), 1);
        QCOMPARE(listener.Entries[0].Rec.Id, qintptr(2));
        QCOMPARE(listener.Entries[0].Rec.Caption, QStringLiteral("newer"));
    }

    void postedDroppedWhenSenderOrListenerIsGone()
    {
        TTreeRecorder stays;
        auto goes = std::make_unique<TTreeRecorder>();
        auto sender = std::make_unique<TRecordHolder>();
        GetTreeNotifiers().PostMessage(sender.get(), CM_TSNOTIFY, reinterpret_cast<qintptr>(&sender->Rec), tnSelect);
        goes.reset();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(stays.Entries.size(), 1);

        // The record died with its sender: delivery must not read it.
        GetTreeNotifiers().PostMessage(sender.get(), CM_TSNOTIFY, reinterpret_cast<qintptr>(&sender->Rec), tnSelect);
        sender.reset();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(stays.Entries.size(), 1);
        QCOMPARE(GetTreeNotifiers().PendingCount(), 0);

        GetTreeNotifiers().PostMessage(nullptr, CM_TSNOTIFY, 0, tnSelect);
        QCOMPARE(GetTreeNotifiers().PendingCount(), 0);
    }

    void postedToAFreedListDoesNothing()
    {
        auto listener = std::make_unique<TTreeRecorder>();
        TRecordHolder sender;
        GetTreeNotifiers().PostMessage(&sender, CM_TSNOTIFY, reinterpret_cast<qintptr>(&sender.Rec), tnSelect);
        FinalizeTreeNotifiers();
        QCoreApplication::sendPostedEvents();
        QVERIFY(listener->Entries.isEmpty());
        listener.reset(); // removes itself from a fresh list
    }

    void postedListenerErrorIsShownNotThrown()
    {
        struct TThrower
        {
            void Notify(QObject *, qintptr, qintptr) { throw Exception(QStringLiteral("listener failed")); }
        } thrower;
        GetTreeNotifiers().AddListener<&TThrower::Notify>(&thrower);
        TTreeRecorder after;
        QStringList shown;
        const TExceptionHandler previous = SetExceptionHandler([&](const QString &m) { shown.append(m); });
        TRecordHolder sender;
        GetTreeNotifiers().PostMessage(&sender, CM_TSNOTIFY, reinterpret_cast<qintptr>(&sender.Rec), tnRefresh);
        QCoreApplication::sendPostedEvents();
        SetExceptionHandler(previous);
        GetTreeNotifiers().DeleteWithData(&thrower);
        QCOMPARE(shown, QStringList{QStringLiteral("listener failed")});
        QCOMPARE(after.Entries.size(), 1); // the other listener still got its message
    }

    void registryLookupRules()
    {
        const QString inspector = QString::fromUtf8(SVerbIdeInspector);
        RegisterDefaultTreeSource(&TMenu::staticMetaObject, &TMenuSourceA::staticMetaObject, QStringLiteral("Items"));
        RegisterDefaultTreeSource(&TTreeView::staticMetaObject, &TTreeViewSourceA::staticMetaObject, QStringLiteral("Items"));
        RegisterDefaultTreeSource(&TCollection::staticMetaObject, &TCollectSourceA::staticMetaObject, QString());
        RegisterTreeSource(&TApplicationObj::staticMetaObject, &TCompViewSourceA::staticMetaObject, inspector);
        RegisterDefaultTreeSource(&TCustomTreeView::staticMetaObject, &TOtherTreeViewSource::staticMetaObject, QStringLiteral("Items"));
        QCOMPARE(ObjectParamList().Count(), 8); // two per default registration with a name

        // Through an ancestor.
        QCOMPARE(GetRegisteredTreeSource(&TMainMenu::staticMetaObject, QString()), &TMenuSourceA::staticMetaObject);
        QCOMPARE(GetRegisteredTreeSource(&TMainMenu::staticMetaObject, QStringLiteral("items")), &TMenuSourceA::staticMetaObject);
        // Only the named entry exists; its name matches ignoring case.
        QVERIFY(!GetRegisteredTreeSource(&TApplicationObj::staticMetaObject, QString()));
        QCOMPARE(GetRegisteredTreeSource(&TApplicationObj::staticMetaObject, inspector.toLower()), &TCompViewSourceA::staticMetaObject);
        // Whole names only.
        QVERIFY(!GetRegisteredTreeSource(&TApplicationObj::staticMetaObject, QStringLiteral("Korvo")));
        // The first matching entry wins, even over a later one for the class itself.
        QCOMPARE(GetRegisteredTreeSource(&TTreeView::staticMetaObject, QStringLiteral("ITEMS")), &TTreeViewSourceA::staticMetaObject);
        QCOMPARE(GetRegisteredTreeSource(&TCustomTreeView::staticMetaObject, QStringLiteral("ITEMS")), &TOtherTreeViewSource::staticMetaObject);
        // No entry for the class or its ancestors, or no entry for that property.
        QVERIFY(!GetRegisteredTreeSource(&TUnrelated::staticMetaObject, QString()));
        QVERIFY(!GetRegisteredTreeSource(&TCollection::staticMetaObject, QStringLiteral("Items")));
        QVERIFY(!GetRegisteredTreeSource(nullptr, QString()));
    }

    void registryIgnoresOtherEntriesOfTheClass()
    {
        // An entry of the same class made for another purpose has no source mark.
        RegisterClassExt(&TMenu::staticMetaObject, {{"Source.EditMethod", QString()}, {"Source.ObjClass", &TCollectSourceA::staticMetaObject}});
        QVERIFY(!GetRegisteredTreeSource(&TMenu::staticMetaObject, QString()));
        RegisterTreeSource(&TMenu::staticMetaObject, &TMenuSourceA::staticMetaObject);
        RegisterTreeSource(&TMenu::staticMetaObject, &TMenuSourceA::staticMetaObject);
        QCOMPARE(ObjectParamList().Count(), 3); // nothing is replaced
        QCOMPARE(GetRegisteredTreeSource(&TMenu::staticMetaObject, QString()), &TMenuSourceA::staticMetaObject);
    }

    void registryRejectsBadClasses()
    {
        try {
            RegisterTreeSource(&TMenu::staticMetaObject, &TUnrelated::staticMetaObject);
            QFAIL("a class that is no tree source was registered");
        } catch (const Exception &e) {
            QCOMPARE(e.Message(), QStringLiteral("Class TUnrelated is not a tree source"));
        }
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterTreeSource(&TMenu::staticMetaObject, nullptr));
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterTreeSource(nullptr, &TMenuSourceA::staticMetaObject));
        QCOMPARE(ObjectParamList().Count(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_TreeSource)
#include "tst_treesource.moc"
