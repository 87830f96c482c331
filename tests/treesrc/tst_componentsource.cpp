#include "treelistener.h"

#include "design/ideGen_designer.h"
#include "platform/kvComponentState.h"
#include "treesrc/ideTSLite_stringsource.h"

#include <QCoreApplication>
#include <QWidget>
#include <QtTest>

#include <algorithm>
#include <memory>

using namespace kv;
using namespace Qt::StringLiterals;

class TForm1 : public QObject { Q_OBJECT };

// An object with lines, as a string source finds them.
class TLinesHolder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList Lines MEMBER Lines)
    Q_PROPERTY(QStringList Fixed READ GetFixed)
    Q_PROPERTY(int Count MEMBER Count)

public:
    using QObject::QObject;
    QStringList GetFixed() const { return {u"fixed"_s}; }
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
        const QObjectList children = GetTreeLink() ? GetTreeLink()->children() : QObjectList();
        const auto it = std::find_if(children.begin(), children.end(), [&](QObject *c) { return IdOf(c) == Id; });
        return it != children.end() ? *it : TKVPersistentSource::ObjectOfId(Id);
    }
};

// A form and its designer, which writes into a log shared with the views, so that the order
// of notifications and modifications shows.
struct TDesignedForm : TFDesigner
{
    TDesignedForm() { SetFormDesigner(&Form, this); }
    void Modified() override { Log.append(u"modified"_s); }

    // The log, each view notification replaced by its code, separated by spaces.
    QString Seq() const
    {
        QStringList seq;
        qsizetype notify = 0;
        for (const QString &entry : Log)
            seq.append(entry == "view"_L1 ? QString::number(Views.Entries.at(notify++).Code) : entry);
        return seq.join(u' ');
    }
    void Reset()
    {
        Log.clear();
        Views.Entries.clear();
    }

    QStringList Log;
    QWidget Form;
    TTreeRecorder Views{u"view"_s, &Log};
};

class tst_ComponentSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        QCoreApplication::sendPostedEvents();
        FinalizeTreeNotifiers();
        FinalizeDesigners();
        FinalizeNotifiers();
    }

    void notificationSequences()
    {
        TDesignedForm f;
        QObject *child = new TForm1;
        child->setParent(&f.Form);
        child->setObjectName(u"Child"_s);
        const qintptr childId = reinterpret_cast<qintptr>(child);
        const qintptr formId = reinterpret_cast<qintptr>(&f.Form);

        // The plain base class refuses to delete, and knows no object but its link.
        TComponentSource plain;
        plain.SetTreeLink(&f.Form);
        f.Reset();
        plain.Delete(childId);
        QVERIFY(f.Log.isEmpty());
        QCOMPARE(plain.GetStatusLine(childId), QString()); // an id it never handed out is not followed
        QCOMPARE(plain.GetStatusLine(formId), u"QWidget"_s);
        // Display names are class names without namespace and without a leading "T".
        QCOMPARE(GetBaseName(&plain), u"ComponentSource"_s);
        plain.DoAfterInsert(99, 0, u"x"_s, naAdd);
        QCOMPARE(f.Views.Entries[0].Rec.ParentId, formId); // the tree link stands for the top level
        f.Reset();

        TChildrenSource source;

        source.SetTreeLink(&f.Form);
        QCOMPARE(f.Seq(), u"2 122"_s);
        QCOMPARE(source.Refreshes, 1);
        f.Reset();
        source.SetTreeLink(&f.Form);
        QVERIFY(f.Log.isEmpty());
        QCOMPARE(source.Refreshes, 1);

        source.SetCaption(childId, u"Renamed"_s);
        QCOMPARE(f.Seq(), u"1 modified"_s);
        QCOMPARE(f.Views.Entries[0].Recs.size(), 1);
        QCOMPARE(f.Views.Entries[0].Recs[0].Id, childId);
        QCOMPARE(f.Views.Entries[0].Recs[0].Caption, u"Renamed"_s);

        f.Reset();
        source.Clear();
        QCOMPARE(f.Seq(), u"3 modified"_s);
        QCOMPARE(f.Views.Entries[0].Rec.Id, formId);
        QCOMPARE(f.Views.Entries[0].Rec.Data, qintptr(1));

        // A selection request is posted; the view asks the source which node it is.
        f.Reset();
        source.SetSelectedObject(0); // no request
        source.SetSelectedObject(childId);
        QVERIFY(f.Log.isEmpty());
        QCoreApplication::sendPostedEvents();
        QCOMPARE(f.Seq(), u"4"_s);
        QCOMPARE(f.Views.Entries[0].Rec.Id, qintptr(0));
        QCOMPARE(f.Views.Entries[0].Rec.Data, reinterpret_cast<qintptr>(&source));
        QCOMPARE(source.GetSelectedObject(), childId);

        f.Reset();
        source.Delete(childId);
        QCOMPARE(f.Seq(), u"3 modified"_s);
        QCOMPARE(f.Views.Entries[0].Rec.Id, childId);
        QCOMPARE(f.Views.Entries[0].Rec.Data, qintptr(0));
        QCOMPARE(source.GetSelectedObject(), qintptr(0));

        // A persistent source places a node inserted at the top level under -1.
        f.Reset();
        source.DoAfterInsert(childId, 0, QString(), naAddChild);
        QCOMPARE(f.Seq(), u"7 1 modified modified"_s);
        const TNodeRec &inserted = f.Views.Entries[0].Rec;
        QCOMPARE(inserted.Id, childId);
        QCOMPARE(inserted.ParentId, qintptr(-1));
        QCOMPARE(inserted.Source, &source);
        QCOMPARE(inserted.AttachMode, naAddChild);
        QCOMPARE(inserted.Caption, u"Form1"_s); // GetBaseName of the object

        f.Views.Entries.clear();
        source.DoAfterInsert(childId, formId, u"Given"_s, naInsert);
        QCOMPARE(f.Views.Entries[0].Rec.ParentId, formId);
        QCOMPARE(f.Views.Entries[0].Rec.Caption, u"Given"_s);

        // Renaming an object seen elsewhere: every notifier hears of it.
        TBroadcastLog broadcasts;
        f.Reset();
        source.Rename(childId, u"Caption"_s);
        QCOMPARE(f.Log, QStringList{u"modified"_s});
        source.Rename(0, u"Caption"_s);
        source.Rename(0x1234, u"Caption"_s); // not an object of this source
        QCOMPARE(broadcasts.Log, QStringList{u"changed Child Caption"_s});
    }

    // Destroyed images and links are forgotten; a source that is being destroyed tells no
    // one.
    void destroyedObjects()
    {
        TBroadcastLog broadcasts;
        TTreeRecorder views;
        auto images = std::make_unique<QObject>();
        auto link = std::make_unique<TLinesHolder>();
        TKVStringSource source;
        source.setObjectName(u"Source"_s);
        source.SetSmallImages(images.get());
        QCOMPARE(views.Codes(), QList<int>{tnImagesChanged});
        source.SetSmallImages(images.get());
        QCOMPARE(views.Entries.size(), 1);
        images.reset(); // forgotten without a refresh
        QVERIFY(!source.GetSmallImages());
        QCOMPARE(views.Entries.size(), 1);

        link->Lines = QStringList{u"a"_s};
        source.SetPropName(u"Lines"_s);
        source.SetTreeLink(link.get());
        QVERIFY(source.ValidSource());
        views.Entries.clear();
        link.reset();
        QVERIFY(!source.GetTreeLink());
        QCOMPARE(views.Codes(), QList<int>({tnRefresh, tnImagesChanged, tnRefresh}));
        QCOMPARE(broadcasts.Log, QStringList{u"empty Source"_s});

        // A link that was replaced is no longer watched.
        auto old = std::make_unique<QObject>();
        QObject current;
        source.SetTreeLink(old.get());
        source.SetTreeLink(&current);
        old.reset();
        QCOMPARE(source.GetTreeLink(), &current);
        QCOMPARE(broadcasts.Log.size(), 1);

        QObject owner;
        auto *dying = new TKVStringSource(&owner);
        views.Entries.clear();
        IncludeState(&owner, csDestroying);
        dying->SetTreeLink(&current);
        QCOMPARE(dying->GetTreeLink(), &current);
        QVERIFY(views.Entries.isEmpty());
    }

    void stringSourceLines()
    {
        TDesignedForm f;
        auto *link = new TLinesHolder(&f.Form);
        link->Lines = QStringList{u"a"_s, u"b|x"_s};
        TKVStringSource source;
        source.setProperty("Link", QVariant::fromValue<QObject *>(link));
        QVERIFY(!source.HasStrings());
        source.setProperty("PropName", u"Lines"_s);
        QVERIFY(source.HasStrings());

        QList<TNodeRec> recs;
        source.GetItems(0, [&](const TNodeRec &rec) { recs.append(rec); });
        QCOMPARE(recs.size(), 2);
        QCOMPARE(recs[1].Id, qintptr(2));
        QCOMPARE(recs[1].ParentId, qintptr(-1));
        QCOMPARE(recs[1].Source, &source);
        QCOMPARE(recs[1].Caption, u"b|x"_s);
        source.GetItems(1, [&](const TNodeRec &rec) { recs.append(rec); });
        QCOMPARE(recs.size(), 2);
        QCOMPARE(source.GetDisplayName(1), u"a"_s);
        QCOMPARE(source.GetDisplayName(3), QString());

        f.Reset();
        source.SetCaption(2, u"B"_s);
        QCOMPARE(link->Lines, QStringList({u"a"_s, u"B"_s}));
        QCOMPARE(f.Seq(), u"1 modified"_s);
        f.Reset();
        source.SetCaption(0, u"zero"_s);
        source.SetCaption(3, u"three"_s);
        QVERIFY(f.Log.isEmpty());
        QCOMPARE(link->Lines, QStringList({u"a"_s, u"B"_s}));

        // Another name is read again; one that names no list of strings gives none.
        source.SetPropName(u"Lines"_s);
        QVERIFY(f.Views.Entries.isEmpty());
        source.SetPropName(u"Count"_s);
        QCOMPARE(f.Views.Codes(), QList<int>{tnRefresh});
        QVERIFY(!source.HasStrings());
        f.Reset();
        source.Clear();
        QVERIFY(f.Log.isEmpty());

        // The actions of a list of lines are the same for every line.
        QVERIFY(source.ActionAllowed(2, taEditCaption) && source.ActionAllowed(0, taDrag));
        QVERIFY(!source.ActionAllowed(1, taDelete));

        // A read-only list is shown but not changed.
        source.SetPropName(u"Fixed"_s);
        QCOMPARE(source.Strings(), QStringList{u"fixed"_s});
        f.Reset();
        source.SetCaption(1, u"changed"_s);
        QVERIFY(f.Log.isEmpty());

        source.SetPropName(u"Lines"_s);
        f.Reset();
        source.Clear();
        QVERIFY(link->Lines.isEmpty());
        QCOMPARE(f.Seq(), u"3 modified"_s);
    }

    void stringSourceMoves_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<int>("destId");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("lines");
        QTest::addColumn<int>("selected"); // 0: nothing moved

        QTest::newRow("last before second") << 4 << 2 << int(naInsert) << u"adbc"_s << 2;
        QTest::newRow("first before third") << 1 << 3 << int(naInsert) << u"bacd"_s << 2;
        QTest::newRow("second to the end") << 2 << 4 << int(naAdd) << u"acdb"_s << 4;
        QTest::newRow("child mode appends") << 1 << 2 << int(naAddChild) << u"bcda"_s << 4;
        QTest::newRow("onto itself") << 2 << 2 << int(naInsert) << u"abcd"_s << 0;
        QTest::newRow("no such line") << 5 << 1 << int(naInsert) << u"abcd"_s << 0;
        QTest::newRow("before no line") << 1 << 0 << int(naInsert) << u"abcd"_s << 0;
        QTest::newRow("line zero") << 0 << 1 << int(naAdd) << u"abcd"_s << 0;
    }

    // Lines "a" to "d", one letter each, moved as the row says.
    void stringSourceMoves()
    {
        QFETCH(int, id);
        QFETCH(int, destId);
        QFETCH(int, mode);
        QFETCH(QString, lines);
        QFETCH(int, selected);

        TDesignedForm f;
        auto *link = new TLinesHolder(&f.Form);
        link->Lines = QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
        TKVStringSource source;
        source.SetPropName(u"Lines"_s);
        source.SetTreeLink(link);
        f.Reset();

        source.MoveTo(id, destId, TNodeAttachMode(mode));
        QCOMPARE(link->Lines.join(QString()), lines);
        if (selected) {
            QCOMPARE(f.Seq(), u"2 4 modified"_s);
            QCOMPARE(f.Views.Entries[1].Rec.Id, qintptr(selected));
            QCOMPARE(f.Views.Entries[1].Rec.Data, reinterpret_cast<qintptr>(&source));
        } else {
            QCOMPARE(f.Seq(), u"modified"_s);
        }
    }
};

QTEST_MAIN(tst_ComponentSource)
#include "tst_componentsource.moc"
