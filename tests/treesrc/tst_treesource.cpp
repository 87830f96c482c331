#include "treelistener.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_objparams.h"
#include "platform/kvException.h"
#include "treesrc/ideTSLite_registry.h"
#include "tests/testsupport.h"

#include <QCoreApplication>
#include <QtTest>

using namespace kv;
using kv::test::ErrorOf;
using namespace Qt::StringLiterals;

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
        const QString caption = u"Button1|QPushButton|Form1"_s;
        QCOMPARE(TreeCaption(caption), u"Button1"_s);
        QCOMPARE(CaptionColumns(caption), QStringList({u"Button1"_s, u"QPushButton"_s, u"Form1"_s}));
        QCOMPARE(TreeCaption(u"plain"_s), u"plain"_s);
        QCOMPARE(TreeCaption(u"|tail"_s), QString());
    }

    // Sent messages arrive at once, posted ones later; both reach the newest listener first.
    void sentAndPostedReachListenersNewestFirst()
    {
        QStringList log;
        TTreeRecorder older(u"older"_s, &log);
        TTreeRecorder newer(u"newer"_s, &log);
        TRecordHolder sender;
        {
            TNodeRec onStack;
            onStack.Id = 42;
            GetTreeNotifiers().NotifyEvents(&sender, reinterpret_cast<qintptr>(&onStack), tnDeleted);
        }
        QCOMPARE(log, QStringList({u"newer"_s, u"older"_s}));
        QCOMPARE(older.Entries[0].Sender, &sender);
        QCOMPARE(older.Entries[0].Rec.Id, qintptr(42));
        QCOMPARE(older.Entries[0].Code, int(tnDeleted));

        log.clear();
        sender.Rec.Id = 7;
        GetTreeNotifiers().PostMessage(&sender, CM_TSNOTIFY, reinterpret_cast<qintptr>(&sender.Rec), tnSelect);
        QVERIFY(log.isEmpty());
        QCOMPARE(GetTreeNotifiers().PendingCount(), 2);
        // A listener that comes after the post does not get the message; a record reused
        // before delivery is delivered with its newer contents.
        TTreeRecorder late(u"late"_s, &log);
        sender.Rec.Id = 8;
        QCoreApplication::sendPostedEvents();
        QCOMPARE(log, QStringList({u"newer"_s, u"older"_s}));
        QCOMPARE(newer.Entries[1].Sender, &sender);
        QCOMPARE(newer.Entries[1].Code, int(tnSelect));
        QCOMPARE(older.Entries[1].Rec.Id, qintptr(8));
        QCOMPARE(GetTreeNotifiers().PendingCount(), 0);
    }

    // A posted message is dropped when its sender, its listener or the whole list is gone; a
    // listener that fails is shown, and the others still get the message.
    void postedDeliveryIsGuarded()
    {
        TTreeRecorder stays;
        struct TThrower
        {
            void Notify(QObject *, qintptr, qintptr) { throw Exception(u"listener failed"_s); }
        } thrower;
        GetTreeNotifiers().AddListener<&TThrower::Notify>(&thrower); // newer: delivered to first
        auto goes = std::make_unique<TTreeRecorder>();
        auto sender = std::make_unique<TRecordHolder>();
        QStringList shown;
        const TExceptionHandler previous = SetExceptionHandler([&](const QString &m) { shown.append(m); });
        GetTreeNotifiers().PostMessage(sender.get(), CM_TSNOTIFY, reinterpret_cast<qintptr>(&sender->Rec), tnSelect);
        goes.reset();
        QCoreApplication::sendPostedEvents();
        SetExceptionHandler(previous);
        GetTreeNotifiers().DeleteWithData(&thrower);
        QCOMPARE(shown, QStringList{u"listener failed"_s});
        QCOMPARE(stays.Entries.size(), 1);

        // The record died with its sender: delivery must not read it.
        GetTreeNotifiers().PostMessage(sender.get(), CM_TSNOTIFY, reinterpret_cast<qintptr>(&sender->Rec), tnSelect);
        sender.reset();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(stays.Entries.size(), 1);
        QCOMPARE(GetTreeNotifiers().PendingCount(), 0);

        GetTreeNotifiers().PostMessage(nullptr, CM_TSNOTIFY, 0, tnSelect);
        QCOMPARE(GetTreeNotifiers().PendingCount(), 0);

        TRecordHolder other;
        GetTreeNotifiers().PostMessage(&other, CM_TSNOTIFY, reinterpret_cast<qintptr>(&other.Rec), tnSelect);
        FinalizeTreeNotifiers();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(stays.Entries.size(), 1);
    }

    void registryLookupRules()
    {
        const QString inspector = QString::fromUtf8(SVerbIdeInspector);
        RegisterDefaultTreeSource(&TMenu::staticMetaObject, &TMenuSourceA::staticMetaObject, u"Items"_s);
        RegisterDefaultTreeSource(&TTreeView::staticMetaObject, &TTreeViewSourceA::staticMetaObject, u"Items"_s);
        RegisterDefaultTreeSource(&TCollection::staticMetaObject, &TMenuSourceA::staticMetaObject, QString());
        RegisterTreeSource(&TApplicationObj::staticMetaObject, &TTreeViewSourceA::staticMetaObject, inspector);
        RegisterDefaultTreeSource(&TCustomTreeView::staticMetaObject, &TOtherTreeViewSource::staticMetaObject, u"Items"_s);
        QCOMPARE(ObjectParamList().Count(), 8); // two per default registration with a name

        // Through an ancestor.
        QCOMPARE(GetRegisteredTreeSource(&TMainMenu::staticMetaObject, QString()), &TMenuSourceA::staticMetaObject);
        QCOMPARE(GetRegisteredTreeSource(&TMainMenu::staticMetaObject, u"items"_s), &TMenuSourceA::staticMetaObject);
        // Only the named entry exists; its name matches ignoring case.
        QVERIFY(!GetRegisteredTreeSource(&TApplicationObj::staticMetaObject, QString()));
        QCOMPARE(GetRegisteredTreeSource(&TApplicationObj::staticMetaObject, inspector.toLower()), &TTreeViewSourceA::staticMetaObject);
        // Whole names only.
        QVERIFY(!GetRegisteredTreeSource(&TApplicationObj::staticMetaObject, u"Korvo"_s));
        // The first matching entry wins, even over a later one for the class itself.
        QCOMPARE(GetRegisteredTreeSource(&TTreeView::staticMetaObject, u"ITEMS"_s), &TTreeViewSourceA::staticMetaObject);
        QCOMPARE(GetRegisteredTreeSource(&TCustomTreeView::staticMetaObject, u"ITEMS"_s), &TOtherTreeViewSource::staticMetaObject);
        // No entry for the class or its ancestors, or no entry for that property.
        QVERIFY(!GetRegisteredTreeSource(&TUnrelated::staticMetaObject, QString()));
        QVERIFY(!GetRegisteredTreeSource(&TCollection::staticMetaObject, u"Items"_s));
        QVERIFY(!GetRegisteredTreeSource(nullptr, QString()));
    }

    void registryIgnoresOtherEntriesAndRefusesBadClasses()
    {
        // An entry of the same class made for another purpose has no source mark.
        RegisterClassExt(&TMenu::staticMetaObject, {{"Source.EditMethod", QString()}, {"Source.ObjClass", &TTreeViewSourceA::staticMetaObject}});
        QVERIFY(!GetRegisteredTreeSource(&TMenu::staticMetaObject, QString()));
        RegisterTreeSource(&TMenu::staticMetaObject, &TMenuSourceA::staticMetaObject);
        RegisterTreeSource(&TMenu::staticMetaObject, &TMenuSourceA::staticMetaObject);
        QCOMPARE(ObjectParamList().Count(), 3); // nothing is replaced
        QCOMPARE(GetRegisteredTreeSource(&TMenu::staticMetaObject, QString()), &TMenuSourceA::staticMetaObject);

        // Bad classes are refused and leave the registry as it was.
        QCOMPARE(ErrorOf([] { RegisterTreeSource(&TMenu::staticMetaObject, &TUnrelated::staticMetaObject); }),
                 u"Class TUnrelated is not a tree source"_s);
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterTreeSource(&TMenu::staticMetaObject, nullptr));
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterTreeSource(nullptr, &TMenuSourceA::staticMetaObject));
        QCOMPARE(ObjectParamList().Count(), 3);
    }
};

QTEST_GUILESS_MAIN(tst_TreeSource)
#include "tst_treesource.moc"
