#include "foundation/ideLib.h"
#include "foundation/ideLib_sortedkeydata.h"
#include "platform/kvException.h"
#include "tests/testsupport.h"

#include <QObject>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace kv;
using kv::test::ErrorOf;

namespace {

void *Addr(quintptr value) { return reinterpret_cast<void *>(value); }

// A record that counts the live instances of its kind.
struct TRecord : TPlainObject
{
    TRecord(int id, int *live) : Id(id), Live(live) { ++*Live; }
    ~TRecord() override { --*Live; }
    int Id;
    int *Live;
};

// Records ordered by Id, keyed by a pointer to an int: distinct records can compare equal.
class TRecordList : public TSortedList
{
public:
    int Compare(const void *a, const void *b) const override { return OrderToInt(Id(a) <=> Id(b)); }
    int CompareWithKey(const void *a, const void *key) const override
    {
        return OrderToInt(Id(a) <=> *static_cast<const int *>(key));
    }
    static int Id(const void *p) { return static_cast<const TRecord *>(p)->Id; }
};

struct TCountedData : TSortedListData
{
    explicit TCountedData(const void *key) : TSortedListData(key) { ++Live; }
    ~TCountedData() override { --Live; }
    static inline int Live = 0;
};

QList<quintptr> Addresses(const TCustomSortedList &list)
{
    QList<quintptr> result;
    for (void *item : list.List())
        result.append(quintptr(item));
    return result;
}

} // namespace

class tst_SortedLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { TCountedData::Live = 0; }

    void emptyList()
    {
        for (bool sorted : {true, false}) {
            TSortedListEx list;
            list.SetSorted(sorted);
            qsizetype index = 42, keyIndex = 42, nearIndex = 42;
            QVERIFY(!list.Find(Addr(16), index));
            QVERIFY(!list.FindByKey(Addr(16), keyIndex));
            QVERIFY(!list.FindNearest(Addr(16), nearIndex));
            QCOMPARE(index, sorted ? 0 : -1); // where it would go; unsorted lists have no such place
            QCOMPARE(keyIndex, index);
            QCOMPARE(nearIndex, index);
            QCOMPARE(list.IndexOf(Addr(16)), -1);
            QCOMPARE(list.IndexOfKey(Addr(16)), -1);
            QCOMPARE(list.ItemByKey(Addr(16)), nullptr);
            QCOMPARE(list.LastProbeIndex(), -1);
        }
    }

    void addressOrder()
    {
        constexpr quintptr top = UINTPTR_MAX;
        // Pairs whose difference overflows a 32-bit or a 64-bit signed result.
        const QList<quintptr> addresses{top - 7, 8, top & ~quintptr(0xF), 0x10, top / 2 + 8,
                                        top / 2 - 8, 0x80000008, 0x7FFFFFF8, 0x100000000};
        class TDescendant : public TSortedList // searches through the inherited Compare
        {
        };
        TSortedList list;
        TDescendant descendant, sortedLater;
        sortedLater.SetSorted(false);
        for (quintptr a : addresses) {
            list.Add(Addr(a));
            descendant.Add(Addr(a));
            sortedLater.Add(Addr(a));
        }
        sortedLater.SetSorted(true);
        QList<quintptr> expected = addresses;
        std::sort(expected.begin(), expected.end());
        QCOMPARE(Addresses(list), expected);
        QCOMPARE(Addresses(descendant), expected);
        QCOMPARE(Addresses(sortedLater), expected);
        for (qsizetype i = 0; i < expected.size(); ++i) {
            QCOMPARE(list.IndexOfKey(Addr(expected[i])), i);
            QCOMPARE(list.ItemByKey(Addr(expected[i])), Addr(expected[i]));
            QCOMPARE(sortedLater.IndexOf(Addr(expected[i])), i);
        }
        // Absent values report where they would go.
        qsizetype index = -1;
        QVERIFY(!list.Find(Addr(expected.last() + 1), index));
        QCOMPARE(index, expected.size());
    }

    void plainAndDerivedSearchesAgree_data()
    {
        QTest::addColumn<TDuplicates>("mode");
        QTest::newRow("stop at a match") << dupIgnore;
        QTest::newRow("lowest of the run") << dupAccept;
    }

    void plainAndDerivedSearchesAgree()
    {
        // The same order as a plain list, but reached through an overridden comparison.
        class TDerivedList : public TSortedList
        {
        public:
            int Compare(const void *a, const void *b) const override { return ComparePointers(a, b); }
        };
        QFETCH(TDuplicates, mode);
        TSortedList plain;
        TDerivedList derived;
        for (TCustomSortedList *list : {static_cast<TCustomSortedList *>(&plain), static_cast<TCustomSortedList *>(&derived)}) {
            list->SetDuplicates(dupAccept);
            for (int i = 0; i < 200; ++i)
                list->Add(Addr(8 * (1 + (i * 7919) % 61))); // 8..488, three or four times each
            list->SetDuplicates(mode);
        }
        QCOMPARE(Addresses(plain), Addresses(derived));
        for (quintptr key = 0; key <= 8 * 63; key += 4) {
            qsizetype plainIndex = -1, derivedIndex = -2, keyIndex = -3;
            const bool found = plain.Find(Addr(key), plainIndex);
            QCOMPARE(found, key % 8 == 0 && key >= 8 && key <= 8 * 61);
            QCOMPARE(derived.Find(Addr(key), derivedIndex), found);
            QCOMPARE(plainIndex, derivedIndex);
            QCOMPARE(plain.FindByKey(Addr(key), keyIndex), found);
            QCOMPARE(keyIndex, derivedIndex);
        }
    }

    void duplicates_data()
    {
        QTest::addColumn<TDuplicates>("mode");
        QTest::newRow("ignore") << dupIgnore;
        QTest::newRow("accept") << dupAccept;
        QTest::newRow("error") << dupError;
    }

    void duplicates()
    {
        QFETCH(TDuplicates, mode);
        const QString raised = mode == dupError ? QStringLiteral("Can't insert duplicate item") : QString();
        int live = 0;
        TRecord records[] = {{1, &live}, {2, &live}, {2, &live}, {2, &live}, {3, &live}};
        TRecordList list;
        list.SetDuplicates(dupAccept);
        for (TRecord &r : records)
            list.Add(&r);
        list.SetDuplicates(mode);
        TRecord extra(2, &live);
        QList<quintptr> expected = Addresses(list);
        qsizetype index = -1;
        QCOMPARE(ErrorOf([&] { index = list.Add(&extra); }), raised);
        if (mode == dupAccept)
            expected.insert(1, quintptr(&extra)); // before the run of equal items
        QCOMPARE(Addresses(list), expected);
        // dupIgnore gives the first equal item the search probes, the middle one.
        QCOMPARE(index, mode == dupIgnore ? 2 : mode == dupAccept ? 1 : -1);

        // A key-data list frees a record that it does not store.
        TSortedKeyDataList dataList(SortedDataClassOf<TCountedData>);
        dataList.SetDuplicates(mode);
        TSortedCustomData *first = dataList.Add(Addr(8));
        TSortedCustomData *again = nullptr;
        QCOMPARE(ErrorOf([&] { again = dataList.Add(Addr(8)); }), raised);
        QCOMPARE(TCountedData::Live, int(dataList.Count()));
        QCOMPARE(dataList.Count(), mode == dupAccept ? 2 : 1);
        if (mode == dupIgnore)
            QCOMPARE(again, first); // the record already there
        if (mode == dupAccept)
            QCOMPARE(dataList.DataItems(0), again);
    }

    void insertSortAndIndexErrors()
    {
        TSortedList list;
        for (quintptr a : {10, 20, 30})
            list.Add(Addr(a));
        list.Insert(5, Addr(15)); // the order decides, not the index
        QCOMPARE(Addresses(list), (QList<quintptr>{10, 15, 20, 30}));
        QCOMPARE(ErrorOf([&] { list.Items(4); }), QStringLiteral("List index out of bounds (4)"));
        QCOMPARE(ErrorOf([&] { list.Delete(-1); }), QStringLiteral("List index out of bounds (-1)"));

        // Unsorted: the order stays as it is; Insert goes by the index, Add appends.
        list.SetSorted(false);
        list.Insert(1, Addr(99));
        list.Insert(5, Addr(98)); // at the end
        list.Add(Addr(15));
        QCOMPARE(Addresses(list), (QList<quintptr>{10, 99, 15, 20, 30, 98, 15}));
        QCOMPARE(ErrorOf([&] { list.Insert(8, Addr(1)); }), QStringLiteral("List index out of bounds (8)"));
        QCOMPARE(list.Count(), 7);
        QCOMPARE(ErrorOf([&] { list.SetCount(-2); }), QStringLiteral("List count out of bounds (-2)"));
        QCOMPARE(ErrorOf([&] { list.SetCapacity(6); }), QStringLiteral("List capacity out of bounds (6)"));

        // Sorted again: the items are sorted, duplicates and all, and Add goes by the order.
        list.SetSorted(true);
        QCOMPARE(list.Add(Addr(25)), 4);
        QCOMPARE(Addresses(list), (QList<quintptr>{10, 15, 15, 20, 25, 30, 98, 99}));
    }

    void equalVersusIdentical()
    {
        int live = 0;
        TRecord a(1, &live), b(1, &live), c(1, &live), d(2, &live), e(3, &live);
        const int one = 1, two = 2, three = 3;
        TRecordList list;
        list.SetDuplicates(dupAccept);
        for (TRecord *r : {&a, &b, &d}) // b goes before a
            list.Add(r);
        // Sorted: c is not held but compares equal, so the first equal item goes.
        QCOMPARE(list.Remove(&c), 0);
        QCOMPARE(Addresses(list), (QList<quintptr>{quintptr(&a), quintptr(&d)}));

        // Unsorted: identity for items, the lowest index for keys.
        list.Clear();
        list.SetSorted(false);
        for (TRecord *r : {&e, &a, &d, &b})
            list.Add(r);
        QCOMPARE(list.Remove(&c), -1);
        QCOMPARE(list.ItemByKey(&one), static_cast<void *>(&a));
        QCOMPARE(list.Remove(&a), 1);
        QCOMPARE(list.ItemByKey(&one), static_cast<void *>(&b));
        qsizetype index = -1;
        QVERIFY(list.FindByKey(&two, index));
        QCOMPARE(index, 1);
        QCOMPARE(list.IndexOfKey(&three), 0);
    }

    void findNearest_data()
    {
        QTest::addColumn<quintptr>("key");
        QTest::addColumn<bool>("found");
        QTest::addColumn<qsizetype>("index");
        QTest::addColumn<QList<quintptr>>("probes");
        QTest::newRow("20") << quintptr(20) << true << qsizetype(1) << QList<quintptr>{30, 20};
        // The ends of the last bracket are never compared: Index is its lower end.
        QTest::newRow("10") << quintptr(10) << false << qsizetype(0) << QList<quintptr>{30, 20};
        QTest::newRow("50") << quintptr(50) << false << qsizetype(3) << QList<quintptr>{30, 40};
    }

    void findNearest()
    {
        class TProbedList : public TSortedListEx
        {
        public:
            int Compare(const void *a, const void *b) const override
            {
                Probes.append(quintptr(a));
                return TSortedListEx::Compare(a, b);
            }
            mutable QList<quintptr> Probes;
        };
        QFETCH(quintptr, key);
        QFETCH(bool, found);
        QFETCH(qsizetype, index);
        QFETCH(QList<quintptr>, probes);
        TProbedList list;
        for (quintptr a : {50, 10, 40, 20, 30})
            list.Add(Addr(a));
        list.Probes.clear();
        qsizetype result = -7;
        QCOMPARE(list.FindNearest(Addr(key), result), found);
        QCOMPARE(result, index);
        QCOMPARE(list.Probes, probes);
        QCOMPARE(quintptr(list.Items(list.LastProbeIndex())), probes.last());
        list.SetSorted(false); // the identity search of Find, which probes nothing
        list.FindNearest(Addr(key), result);
        QCOMPARE(list.LastProbeIndex(), -1);
    }

    void keyDataOwnsItems()
    {
        {
            TSortedKeyDataList list(SortedDataClassOf<TCountedData>);
            int payload[5] = {};
            for (quintptr k : {3, 1, 2, 4, 5})
                static_cast<TSortedListData *>(list.Add(Addr(k)))->SetData(&payload[k - 1]);
            QCOMPARE(list.DataItems(0)->Key(), Addr(1));
            QCOMPARE(list.ItemByKey(Addr(2)), static_cast<void *>(&payload[1]));
            QCOMPARE(list.ItemByKey(Addr(6)), nullptr);
            list.Delete(0);
            QCOMPARE(list.Remove(list.DataItems(0)), 0);
            list.SetCount(2);
            QCOMPARE(TCountedData::Live, 2);
            QCOMPARE(list.DataItems(1)->Key(), Addr(4));
        }
        QCOMPARE(TCountedData::Live, 0); // the destructor frees what is left

        // Data comes only from TSortedListData records.
        TSortedKeyDataList plain(SortedDataClassOf<TSortedCustomData>);
        plain.Add(Addr(8));
        QCOMPARE(plain.IndexOfKey(Addr(8)), 0);
        QCOMPARE(plain.ItemByKey(Addr(8)), nullptr);
    }

    void compKeyItemsFollowTheirKeys()
    {
        const int watched = kvFreeNotificationCount();
        auto list = std::make_unique<TSortedCompKeyList>(SortedDataClassOf<TCountedData>);
        list->SetDuplicates(dupAccept);
        auto a = std::make_unique<QObject>(), b = std::make_unique<QObject>(), c = std::make_unique<QObject>();
        for (QObject *key : {a.get(), b.get(), c.get(), a.get()})
            list->Add(key);
        QCOMPARE(kvFreeNotificationCount(), watched + 3); // a key is watched once

        b.reset();
        QCOMPARE(list->Count(), 3);
        QCOMPARE(TCountedData::Live, 3);
        QCOMPARE(kvFreeNotificationCount(), watched + 2);

        // The second of a's two items leaves: a stays watched, and its death takes the other.
        list->Delete(list->IndexOfKey(a.get()) + 1);
        QCOMPARE(kvFreeNotificationCount(), watched + 2);
        a.reset();
        QCOMPARE(list->Count(), 1);
        QCOMPARE(list->DataItems(0)->Key(), c.get());

        list->SetDuplicates(dupIgnore);
        QCOMPARE(list->Add(c.get()), list->DataItems(0));
        list->Delete(0); // withdraws c's registration
        QCOMPARE(kvFreeNotificationCount(), watched);
        QCOMPARE(TCountedData::Live, 0);

        // A list freed before its keys withdraws from all of them: the keys, destroyed at the
        // end, reach no list (AddressSanitizer would report a use after free).
        auto d = std::make_unique<QObject>();
        for (QObject *key : {c.get(), d.get()})
            list->Add(key);
        list.reset();
        QCOMPARE(kvFreeNotificationCount(), watched);
        QCOMPARE(TCountedData::Live, 0);
    }

    void ownershipHelpers()
    {
        int live = 0;
        auto list = std::make_unique<TRecordList>();
        list->SetDuplicates(dupAccept);
        auto add = [&](int id) {
            auto *r = new TRecord(id, &live);
            list->Add(static_cast<TPlainObject *>(r));
            return r;
        };
        add(3);
        add(2);
        ClearSortedList(list.get());
        QCOMPARE(list->Count(), 0);
        QCOMPARE(live, 0);

        // Of equal items, the one given is removed, not the first equal one, the last included.
        TRecord *second = add(1);
        TRecord *first = add(1);
        QCOMPARE(list->Items(0), static_cast<void *>(static_cast<TPlainObject *>(first)));
        QCOMPARE(RemoveSortedItem<TPlainObject>(list.get(), second), 1);
        QCOMPARE(list->Items(0), static_cast<void *>(static_cast<TPlainObject *>(first)));
        QCOMPARE(RemoveSortedItem<TPlainObject>(list.get(), new TRecord(1, &live)), -1); // freed anyway
        QCOMPARE(live, 1);
        FreeSortedList(list);
        QVERIFY(!list);
        QCOMPARE(live, 0);

        // Only TSortedList descendants are freed.
        class TOtherList : public TCustomSortedList
        {
        };
        TRecord kept(1, &live);
        std::unique_ptr<TCustomSortedList> other = std::make_unique<TOtherList>();
        other->Add(static_cast<TPlainObject *>(&kept));
        QCOMPARE(ErrorOf([&] { FreeSortedList(other); }), QStringLiteral("Invalid class typecast"));
        QVERIFY(other);
        QCOMPARE(live, 1);

        // A list that owns its items frees each once.
        TSortedKeyDataList owning(SortedDataClassOf<TCountedData>);
        TSortedCustomData *held = owning.Add(Addr(1));
        owning.Add(Addr(2));
        QCOMPARE(RemoveSortedItem(&owning, held), 0);
        ClearSortedList(&owning);
        QCOMPARE(TCountedData::Live, 0);
    }
};

QTEST_GUILESS_MAIN(tst_SortedLists)
#include "tst_sortedlists.moc"
