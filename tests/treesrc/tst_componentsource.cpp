#include "treelistener.h"

#include "design/ideGen_designer.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvComponentState.h"
#include "treesrc/ideTSLite_stringsource.h"

#include <QCoreApplication>
#include <QPointer>
#include <QWidget>
#include <QtTest>

#include <memory>

using namespace kv;

class TForm1 : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
};
class Alpha : public QObject { Q_OBJECT };

// An object with lines, as a string source finds them.
class TLinesHolder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList Lines MEMBER Lines)
    Q_PROPERTY(QStringList Fixed READ GetFixed)
    Q_PROPERTY(int Count MEMBER Count)

public:
    using QObject::QObject;
    QStringList GetFixed() const { return {QStringLiteral("fixed")}; }
    QStringList Lines;
    int Count = 0;
};

// A source whose nodes are the children of its link, and that allows deleting them.
class TChildrenSource : public TKVPersistentSource
{
    Q_OBJECT

public:
    using TKVPersistentSource::TKVPersistentSource;
    int Refreshes = 0;
    void Refresh() override { ++Refreshes; }
    bool ActionAllowed(qintptr, int Action) override { return Action == taDelete; }
    void Rename(qintptr Id, const QString &Text) { CaptionChanged(Id, Text); }

protected:
    QObject *ObjectOfId(qintptr Id) const override
    {
        if (const QObject *link = GetTreeLink()) {
            for (QObject *child : link->children()) {
                if (IdOf(child) == Id)
                    return child;
            }
        }
        return TKVPersistentSource::ObjectOfId(Id);
    }
};

// The designer of the test form; it writes into the shared log.
class TLoggingDesigner : public TFDesigner
{
public:
    explicit TLoggingDesigner(QStringList &Log) : m_log(Log) {}
    void Modified() override { m_log.append(QStringLiteral("modified")); }

private:
    QStringList &m_log;
};

// Records the broadcasts that sources make.
class TBroadcastRecorder final : public INotifier
{
public:
    TBroadcastRecorder() { RegisterNotifier(this); }
    ~TBroadcastRecorder() { UnregisterNotifier(this); }
    void Dispatch(TMessage &Message) override
    {
        if (Message.Msg == CM_SOURCEEMPTY) {
            SourceEmpty.append(DecodeSourceEmpty(Message));
        } else if (Message.Msg == CM_PROPCHANGED) {
            const TPropChangedData data = DecodePropChanged(Message);
            PropChanged.append({QList<QObject *>(data.Objects.begin(), data.Objects.end()), data.PropName.toString()});
        }
    }
    QList<QObject *> SourceEmpty;
    QList<std::pair<QList<QObject *>, QString>> PropChanged;
};

// Puts "view" into the log for each notification, so that Sequence() interleaves them.
class TLoggedViews : public TTreeRecorder
{
public:
    explicit TLoggedViews(QStringList &Log) : TTreeRecorder(QStringLiteral("view"), &Log) {}
};

static QStringList TextList(std::initializer_list<const char *> Texts)
{
    QStringList lines;
    for (const char *text : Texts)
        lines.append(QString::fromUtf8(text));
    return lines;
}

class tst_ComponentSource : public QObject
{
    Q_OBJECT

    static QStringList Seq(const QStringList &Log, const TTreeRecorder &Views)
    {
        QStringList seq;
        qsizetype notify = 0;
        for (const QString &entry : Log)
            seq.append(entry == QLatin1String("view") ? QString::number(Views.Entries.at(notify++).Code) : entry);
        return seq;
    }

private Q_SLOTS:
    void cleanup()
    {
        QCoreApplication::sendPostedEvents();
        FinalizeTreeNotifiers();
        FinalizeDesigners();
        FinalizeNotifiers();
    }

    void baseNames()
    {
        TForm1 form1;
        Alpha alpha;
        TKVStringSource source;
        QCOMPARE(GetBaseName(&form1), QStringLiteral("Form1"));
        QCOMPARE(GetBaseName(&alpha), QStringLiteral("Alpha"));
        QCOMPARE(GetBaseName(&source), QStringLiteral("KVStringSource")); // without namespace
        QCOMPARE(GetBaseName(nullptr), QString());

    }

    void plainSourceRefusesAndShowsNothing()
    {
        QStringList log;
        QWidget form;
        TLoggingDesigner designer(log);
        SetFormDesigner(&form, &designer);
        QObject *child = new QObject(&form);
        TLoggedViews views(log);
        TComponentSource source;
        source.SetTreeLink(&form);
        log.clear();
        views.Entries.clear();

        source.Delete(7); // refused: nothing at all
        QVERIFY(log.isEmpty());
        int listed = 0;
        source.GetItems(0, [&](const TNodeRec &) { ++listed; });
        QCOMPARE(listed, 0);
        // An id the source never handed out names nothing, and is never followed.
        QCOMPARE(source.GetStatusLine(reinterpret_cast<qintptr>(child)), QString());
        QCOMPARE(source.GetStatusLine(0x1234), QString());
        QCOMPARE(source.GetDisplayName(-1), QString());
        QCOMPARE(source.GetStatusLine(reinterpret_cast<qintptr>(&form)), QStringLiteral("QWidget"));
        QCOMPARE(source.property("Version").toString(), QStringLiteral("3.1"));
        QVERIFY(!source.metaObject()->property(source.metaObject()->indexOfProperty("Version")).isStored());
    }

    void notificationSequences()
    {
        QStringList log;
        QWidget form;
        TLoggingDesigner designer(log);
        SetFormDesigner(&form, &designer);
        QObject *child = new TForm1(&form);
        const qintptr childId = reinterpret_cast<qintptr>(child);
        const qintptr formId = reinterpret_cast<qintptr>(&form);
        TLoggedViews views(log);
        TChildrenSource source;

        source.SetTreeLink(&form);
        QCOMPARE(Seq(log, views), TextList({"2", "122"}));
        QCOMPARE(source.Refreshes, 1);
        log.clear();
        source.SetTreeLink(&form);
        QVERIFY(log.isEmpty());
        QCOMPARE(source.Refreshes, 1);

        views.Entries.clear();
        source.SetCaption(childId, QStringLiteral("Renamed"));
        QCOMPARE(Seq(log, views), TextList({"1", "modified"}));
        QCOMPARE(views.Entries[0].Recs.size(), 1);
        QCOMPARE(views.Entries[0].Recs[0].Id, childId);
        QCOMPARE(views.Entries[0].Recs[0].Caption, QStringLiteral("Renamed"));

        log.clear();
        views.Entries.clear();
        source.Clear();
        QCOMPARE(Seq(log, views), TextList({"3", "modified"}));
        QCOMPARE(views.Entries[0].Rec.Id, formId);
        QCOMPARE(views.Entries[0].Rec.Data, qintptr(1));

        log.clear();
        views.Entries.clear();
        source.SetSelectedObject(childId);
        QCoreApplication::sendPostedEvents();
        views.Entries.clear();
        log.clear();
        source.Delete(childId);
        QCOMPARE(Seq(log, views), TextList({"3", "modified"}));
        QCOMPARE(views.Entries[0].Rec.Id, childId);
        QCOMPARE(views.Entries[0].Rec.Data, qintptr(0));
        QCOMPARE(source.GetSelectedObject(), qintptr(0));

        // A persistent source places a node inserted at the top level under -1.
        log.clear();
        views.Entries.clear();
        source.DoAfterInsert(childId, 0, QString(), naAddChild);
        QCOMPARE(Seq(log, views), TextList({"7", "1", "modified", "modified"}));
        const TNodeRec &inserted = views.Entries[0].Rec;
        QCOMPARE(inserted.Id, childId);
        QCOMPARE(inserted.ParentId, qintptr(-1));
        QCOMPARE(inserted.Source, &source);
        QCOMPARE(inserted.AttachMode, naAddChild);
        QCOMPARE(inserted.Caption, QStringLiteral("Form1")); // GetBaseName of the object
        QCOMPARE(views.Entries[1].Recs[0].Caption, QStringLiteral("Form1"));

        views.Entries.clear();
        source.DoAfterInsert(childId, formId, QStringLiteral("Given"), naInsert);
        QCOMPARE(views.Entries[0].Rec.ParentId, formId);
        QCOMPARE(views.Entries[0].Rec.Caption, QStringLiteral("Given"));

        log.clear();
        views.Entries.clear();
        source.MoveTo(childId, formId, naAdd);
        QCOMPARE(Seq(log, views), TextList({"modified"}));

        // Renaming an object seen elsewhere: every notifier hears of it.
        TBroadcastRecorder broadcasts;
        log.clear();
        source.Rename(childId, QStringLiteral("Caption"));
        QCOMPARE(broadcasts.PropChanged.size(), 1);
        QCOMPARE(broadcasts.PropChanged[0].first, QList<QObject *>{child});
        QCOMPARE(broadcasts.PropChanged[0].second, QStringLiteral("Caption"));
        QCOMPARE(log, QStringList{QStringLiteral("modified")});
        log.clear();
        source.Rename(0, QStringLiteral("Caption"));
        source.Rename(0x1234, QStringLiteral("Caption")); // not an object of this source
        QCOMPARE(broadcasts.PropChanged.size(), 1);
    }

    void baseInsertPlacesUnderTheLink()
    {
        // The base class (not a persistent source) names the tree link as the parent.
        QObject link;
        TTreeRecorder views;
        TComponentSource source;
        source.SetTreeLink(&link);
        views.Entries.clear();
        source.DoAfterInsert(99, 0, QStringLiteral("x"), naAdd);
        QCOMPARE(views.Entries[0].Rec.ParentId, reinterpret_cast<qintptr>(&link));
    }

    void imagesAndDestroyingSource()
    {
        TTreeRecorder views;
        auto images = std::make_unique<QObject>();
        TKVStringSource source;
        source.SetSmallImages(images.get());
        QCOMPARE(views.Codes(), QList<int>{tnImagesChanged});
        source.SetSmallImages(images.get());
        QCOMPARE(views.Entries.size(), 1);
        images.reset(); // forgotten without a refresh
        QVERIFY(!source.GetSmallImages());
        QCOMPARE(views.Entries.size(), 1);

        // A source that is being destroyed takes a link without telling anyone.
        QObject owner;
        auto *dying = new TKVStringSource(&owner);
        QObject link;
        views.Entries.clear();
        IncludeState(&owner, csDestroying);
        dying->SetTreeLink(&link);
        QCOMPARE(dying->GetTreeLink(), &link);
        QVERIFY(views.Entries.isEmpty());
    }

    void selectionRequestIsPosted()
    {
        TTreeRecorder views;
        auto source = std::make_unique<TKVStringSource>();
        source->SetSelectedObject(0);
        QCOMPARE(source->GetSelectedObject(), qintptr(0));
        QCOMPARE(GetTreeNotifiers().PendingCount(), 0);

        source->SetSelectedObject(3);
        QVERIFY(views.Entries.isEmpty());
        QCoreApplication::sendPostedEvents();
        QCOMPARE(views.Codes(), QList<int>{tnSelect});
        QCOMPARE(views.Entries[0].Rec.Id, qintptr(0)); // the view asks the source
        QCOMPARE(views.Entries[0].Rec.Data, reinterpret_cast<qintptr>(source.get()));
        QCOMPARE(views.Entries[0].Sender, source.get());
        QCOMPARE(source->GetSelectedObject(), qintptr(3));

        source->SetSelectedObject(4);
        source.reset();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(views.Entries.size(), 1);
    }

    void linkDestruction()
    {
        TBroadcastRecorder broadcasts;
        TTreeRecorder views;
        auto link = std::make_unique<TLinesHolder>();
        link->Lines = QStringList{QStringLiteral("a")};
        TKVStringSource source;
        source.SetPropName(QStringLiteral("Lines"));
        source.SetTreeLink(link.get());
        QVERIFY(source.HasStrings());
        QVERIFY(source.ValidSource());
        views.Entries.clear();

        link.reset();
        QVERIFY(!source.GetTreeLink());
        QVERIFY(!source.HasStrings());
        QVERIFY(!source.ValidSource());
        QCOMPARE(views.Codes(), QList<int>({tnRefresh, tnImagesChanged, tnRefresh}));
        QCOMPARE(broadcasts.SourceEmpty, QList<QObject *>{&source});
        int listed = 0;
        source.GetItems(0, [&](const TNodeRec &) { ++listed; });
        QCOMPARE(listed, 0);

        // A link that was replaced is no longer watched.
        auto old = std::make_unique<QObject>();
        QObject current;
        source.SetTreeLink(old.get());
        source.SetTreeLink(&current);
        old.reset();
        QCOMPARE(source.GetTreeLink(), &current);
        QCOMPARE(broadcasts.SourceEmpty.size(), 1);
    }

    void stringSourceLines()
    {
        QStringList log;
        QWidget form;
        TLoggingDesigner designer(log);
        SetFormDesigner(&form, &designer);
        auto *link = new TLinesHolder(&form);
        link->Lines = QStringList{QStringLiteral("a"), QStringLiteral("b|x")};
        TLoggedViews views(log);
        TKVStringSource source;
        source.setProperty("Link", QVariant::fromValue<QObject *>(link));
        QVERIFY(!source.HasStrings());
        source.setProperty("PropName", QStringLiteral("Lines"));
        QVERIFY(source.HasStrings());

        QList<TNodeRec> recs;
        source.GetItems(0, [&](const TNodeRec &rec) { recs.append(rec); });
        QCOMPARE(recs.size(), 2);
        QCOMPARE(recs[1].Id, qintptr(2));
        QCOMPARE(recs[1].ParentId, qintptr(-1));
        QCOMPARE(recs[1].Source, &source);
        QCOMPARE(recs[1].Caption, QStringLiteral("b|x"));
        recs.clear();
        source.GetItems(1, [&](const TNodeRec &rec) { recs.append(rec); });
        QVERIFY(recs.isEmpty());
        QCOMPARE(source.GetDisplayName(1), QStringLiteral("a"));
        QCOMPARE(source.GetDisplayName(3), QString());

        log.clear();
        views.Entries.clear();
        source.SetCaption(2, QStringLiteral("B"));
        QCOMPARE(link->Lines, TextList({"a", "B"}));
        QCOMPARE(Seq(log, views), TextList({"1", "modified"}));
        log.clear();
        source.SetCaption(0, QStringLiteral("zero"));
        source.SetCaption(3, QStringLiteral("three"));
        QVERIFY(log.isEmpty());
        QCOMPARE(link->Lines, TextList({"a", "B"}));

        // The name is compared case-sensitively: another spelling is re-read (and found
        // nowhere).
        views.Entries.clear();
        source.SetPropName(QStringLiteral("Lines"));
        QVERIFY(views.Entries.isEmpty());
        source.SetPropName(QStringLiteral("lines"));
        QCOMPARE(views.Codes(), QList<int>{tnRefresh});
        QVERIFY(!source.HasStrings());
        source.SetPropName(QStringLiteral("Count")); // not a list of strings
        QVERIFY(!source.HasStrings());
        log.clear();
        source.Clear();
        QVERIFY(log.isEmpty());

        // A read-only list is shown but not changed.
        source.SetPropName(QStringLiteral("Fixed"));
        QCOMPARE(source.Strings(), QStringList{QStringLiteral("fixed")});
        log.clear();
        source.SetCaption(1, QStringLiteral("changed"));
        QVERIFY(log.isEmpty());

        source.SetPropName(QStringLiteral("Lines"));
        log.clear();
        views.Entries.clear();
        source.Clear();
        QVERIFY(link->Lines.isEmpty());
        QCOMPARE(Seq(log, views), TextList({"3", "modified"}));
        QCOMPARE(views.Entries[0].Rec.Data, qintptr(1));
    }

    void stringSourceActions()
    {
        TKVStringSource source;
        QList<int> allowed;
        for (int action = 0; action <= 20; ++action) {
            if (source.ActionAllowed(1, action))
                allowed.append(action);
            QCOMPARE(source.ActionAllowed(0, action), source.ActionAllowed(7, action));
        }
        QCOMPARE(allowed, QList<int>({1, 3, 6, 8, 9, 10, 12, 15}));
    }

    void stringSourceMoves_data()
    {
        QTest::addColumn<qintptr>("id");
        QTest::addColumn<qintptr>("destId");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<qintptr>("selected"); // 0: nothing moved

        QTest::newRow("last before second") << qintptr(4) << qintptr(2) << int(naInsert) << TextList({"a", "d", "b", "c"}) << qintptr(2);
        QTest::newRow("first before third") << qintptr(1) << qintptr(3) << int(naInsert) << TextList({"b", "a", "c", "d"}) << qintptr(2);
        QTest::newRow("second to the end") << qintptr(2) << qintptr(4) << int(naAdd) << TextList({"a", "c", "d", "b"}) << qintptr(4);
        QTest::newRow("child mode appends") << qintptr(1) << qintptr(2) << int(naAddChild) << TextList({"b", "c", "d", "a"}) << qintptr(4);
        QTest::newRow("onto itself") << qintptr(2) << qintptr(2) << int(naInsert) << TextList({"a", "b", "c", "d"}) << qintptr(0);
        QTest::newRow("no such line") << qintptr(5) << qintptr(1) << int(naInsert) << TextList({"a", "b", "c", "d"}) << qintptr(0);
        QTest::newRow("before no line") << qintptr(1) << qintptr(0) << int(naInsert) << TextList({"a", "b", "c", "d"}) << qintptr(0);
        QTest::newRow("line zero") << qintptr(0) << qintptr(1) << int(naAdd) << TextList({"a", "b", "c", "d"}) << qintptr(0);
    }

    void stringSourceMoves()
    {
        QFETCH(qintptr, id);
        QFETCH(qintptr, destId);
        QFETCH(int, mode);
        QFETCH(QStringList, lines);
        QFETCH(qintptr, selected);

        QStringList log;
        QWidget form;
        TLoggingDesigner designer(log);
        SetFormDesigner(&form, &designer);
        auto *link = new TLinesHolder(&form);
        link->Lines = TextList({"a", "b", "c", "d"});
        TLoggedViews views(log);
        TKVStringSource source;
        source.SetPropName(QStringLiteral("Lines"));
        source.SetTreeLink(link);
        log.clear();
        views.Entries.clear();

        source.MoveTo(id, destId, TNodeAttachMode(mode));
        QCOMPARE(link->Lines, lines);
        if (selected) {
            QCOMPARE(Seq(log, views), TextList({"2", "4", "modified"}));
            QCOMPARE(views.Entries[1].Rec.Id, selected);
            QCOMPARE(views.Entries[1].Rec.Data, reinterpret_cast<qintptr>(&source));
        } else {
            QCOMPARE(Seq(log, views), QStringList{QStringLiteral("modified")});
        }
    }
};

QTEST_MAIN(tst_ComponentSource)
#include "tst_componentsource.moc"
