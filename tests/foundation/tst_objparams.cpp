#include "foundation/ideSystem_objparams.h"

#include "foundation/ideSystem_messageanswer.h"
#include "foundation/ideSystem_messages.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvEditorGroups.h"
#include "platform/kvException.h"
#include "tests/testsupport.h"

#include <QTest>
#include <QTimer>

#include <limits>
#include <memory>

using namespace kv;
using kv::test::ErrorOf;
using namespace Qt::StringLiterals;

namespace probe {

class TBase : public QObject { Q_OBJECT };
class TMid : public TBase { Q_OBJECT };
class TLeaf : public TMid { Q_OBJECT };
class TSibling : public TMid { Q_OBJECT };
class TOther : public QObject { Q_OBJECT };

void SomeProc(int) {}

// Records, at CM_FREEEDITGROUP, whether the registry still holds an entry of a class.
class TGroupObserver : public TMessageAnswer
{
public:
    explicit TGroupObserver(const QMetaObject *watched) : m_watched(watched) {}
    void Dispatch(TMessage &Message) override
    {
        if (Message.Msg == CM_FREEEDITGROUP) {
            ++Calls;
            SawEntry = ObjectParamList().ItemByDataPtr(m_watched) != nullptr;
        }
    }
    int Calls = 0;
    bool SawEntry = true;

private:
    const QMetaObject *m_watched;
};

} // namespace probe

using namespace probe;

class tst_ObjParams : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { FinalizeObjectParamList(); }

    void lookups()
    {
        TLeaf leaf;
        RegisterObjectEx(&leaf, {{"Kind", "leaf-object"}});
        TObjectParamListItem *mid = RegisterClassExt(&TMid::staticMetaObject,
                                                     {{"Kind", "mid"}, {"Verb.Name", "File.Open"}, {"N", 5}});
        TObjectParamListItem *base = RegisterClassExt(&TBase::staticMetaObject, {{"Kind", "base"}, {"N", "5"}});
        TObjectParamListItem *leafEntry = RegisterClassExt(&TLeaf::staticMetaObject, {{"Kind", "leaf"}, {"N", 5}});
        RegisterClassExt(&TOther::staticMetaObject, {{"Kind", "other"}});
        TObjectParamListItem *sibling = RegisterClassExt(&TSibling::staticMetaObject, {{"Kind", "sibling"}});
        RegisterClassExt(&TMid::staticMetaObject, {{"N", 6}});

        enum TLookup { Ex, Inherited, Equal };
        struct TCase
        {
            const char *name;
            TLookup lookup;
            const QMetaObject *cls;
            TObjectParams params;
            TCompareParams compare;
            TObjectParamListItem *expected;
        };
        const QMetaObject *const Base = &TBase::staticMetaObject;
        const QMetaObject *const Mid = &TMid::staticMetaObject;
        const QMetaObject *const Leaf = &TLeaf::staticMetaObject;
        const TCompareParams none;
        const TCase cases[] = {
            // class relationship
            {"Ex: first descendant in registration order", Ex, Base, {}, none, mid},
            {"Ex: object entries are never class entries", Ex, Leaf, {{"Kind", "leaf-object"}}, none, nullptr},
            {"Ex: an ancestor's entry does not descend", Ex, Mid, {{"Kind", "base"}}, none, nullptr},
            {"Ex: the class itself", Ex, Leaf, {}, none, leafEntry},
            {"Inherited: an ancestor's entry", Inherited, Leaf, {{"Kind", "base"}}, none, base},
            {"Inherited: the first registration wins over a nearer one", Inherited, Leaf, {}, none, mid},
            {"Inherited: a descendant's entry is not inherited", Inherited, Mid, {{"Kind", "leaf"}}, none, nullptr},
            {"Equal: the exact class", Equal, Mid, {}, none, mid},
            {"Equal: no descendants", Equal, Base, {{"Kind", "mid"}}, none, nullptr},
            {"null class", Ex, nullptr, {}, none, nullptr},
            {"null class, inherited", Inherited, nullptr, {}, none, nullptr},
            // strings and compare modes
            {"upper case without cpIgnoreCase", Ex, Base, {{"Verb.Name", "FILE.OPEN"}}, none, nullptr},
            {"upper case with cpIgnoreCase", Ex, Base, {{"Verb.Name", "FILE.OPEN"}}, cpIgnoreCase, mid},
            {"parameter names ignore case", Ex, Base, {{"verb.NAME", "File.Open"}}, none, mid},
            {"part of the text without cpPartialCompare", Ex, Base, {{"Verb.Name", "Open"}}, none, nullptr},
            {"given text inside the entry's", Ex, Base, {{"Verb.Name", "Open"}}, cpPartialCompare, mid},
            {"entry's text inside the given", Ex, Base, {{"Verb.Name", "Menu.File.Open.All"}}, cpPartialCompare, mid},
            {"partial compare keeps case", Ex, Base, {{"Verb.Name", "open"}}, cpPartialCompare, nullptr},
            {"partial compare ignoring case", Ex, Base, {{"Verb.Name", "open"}}, cpPartialCompare | cpIgnoreCase, mid},
            // kinds of values (every integer type arrives as one, see valuesAreNormalised)
            {"a string matches only a string", Ex, Base, {{"N", "5"}}, none, base},
            {"an integer never matches a string", Ex, Mid, {{"N", "5"}}, cpIgnoreCase | cpPartialCompare, nullptr},
            {"an integer", Ex, Base, {{"N", quint8(5)}}, none, mid},
            {"a different integer", Ex, Base, {{"N", 7}}, none, nullptr},
            {"a double is not an integer", Ex, Base, {{"N", 5.0}}, none, nullptr},
            {"a bool is not an integer", Ex, Base, {{"N", true}}, none, nullptr},
            {"every given name must match", Ex, Base, {{"Kind", "mid"}, {"N", 6}}, none, nullptr},
            {"a missing name never matches a value", Ex, Base, {{"Missing", 1}}, none, nullptr},
            {"a missing name matches null", Ex, Base, {{"Missing", QVariant()}}, none, mid},
        };
        for (const TCase &c : cases) {
            TObjectParamListItem *found = nullptr;
            switch (c.lookup) {
            case Ex:
                found = GetItemEx(c.cls, c.params, c.compare);
                break;
            case Inherited:
                found = GetItemInherited(c.cls, c.params, c.compare);
                break;
            case Equal:
                found = GetItemEqual(c.cls, c.params, c.compare);
                break;
            }
            QVERIFY2(found == c.expected, c.name);
        }

        QCOMPARE(GetItemsEx(Mid, {{"N", 5}}), (QList<TObjectParamListItem *>{mid, leafEntry}));
        QCOMPARE(GetClassEx(Base, {{"N", 6}}), Mid);
        QCOMPARE(GetClassInherited(&TSibling::staticMetaObject, {{"N", 6}}), Mid);
        QCOMPARE(GetClassEx(&TOther::staticMetaObject, {{"N", 6}}), nullptr);
        // Distinct classes, in the order of their first registration.
        QCOMPARE(GetRegisteredClasses(Base),
                 (QList<const QMetaObject *>{Mid, Base, Leaf, &TSibling::staticMetaObject}));

        // Up from a class: the stop class is the last one tried, and each step looks at the
        // descendants of the parent, so a sibling class is found.
        QCOMPARE(GetItemExParent(Leaf, Base, {{"Kind", "mid"}}), mid);
        QCOMPARE(GetItemExParent(Leaf, Leaf, {{"Kind", "mid"}}), nullptr);
        QCOMPARE(GetItemExParent(Leaf, Mid, {{"Kind", "sibling"}}), sibling);
        QCOMPARE(GetItemExParent(Leaf, Mid, {{"Kind", "base"}}), nullptr);
        // Without a stop class on the way the walk goes to the root.
        QCOMPARE(GetItemExParent(Leaf, nullptr, {{"Kind", "base"}}), base);
        QCOMPARE(GetItemExParent(Leaf, &TOther::staticMetaObject, {{"Kind", "base"}}), base);
        QCOMPARE(GetItemExParent(Leaf, nullptr, {{"Kind", "none"}}), nullptr);
    }

    void valuesAreNormalised()
    {
        QTimer timer;
        const QVariant longLong = QVariant(qlonglong(7));
        struct TCase
        {
            const char *name;
            TObjectParam param;
            QVariant expected;
        };
        const TCase cases[] = {
            {"int", {"V", 7}, longLong},
            {"QVariant(short)", {"V", QVariant::fromValue<short>(7)}, longLong},
            {"QVariant(ulong)", {"V", QVariant::fromValue<ulong>(7)}, longLong},
            {"QVariant(Q_ENUM)", {"V", QVariant::fromValue(Qt::AlignRight)}, QVariant(qlonglong(Qt::AlignRight))},
            {"quint64 keeps its bits", {"V", QVariant(std::numeric_limits<quint64>::max())}, QVariant(qlonglong(-1))},
            {"literal", {"V", "text"}, QVariant(u"text"_s)},
            {"QByteArray", {"V", QByteArray("text")}, QVariant(u"text"_s)},
            {"QLatin1String", {"V", QLatin1String("text")}, QVariant(u"text"_s)},
            {"float", {"V", 2.5f}, QVariant(2.5)},
            {"bool stays bool", {"V", true}, QVariant(true)},
            {"nullptr", {"V", nullptr}, QVariant()},
            {"a QObject descendant", {"V", &timer}, QVariant::fromValue<QObject *>(&timer)},
            {"QVariant(QTimer*)", {"V", QVariant::fromValue(&timer)}, QVariant::fromValue<QObject *>(&timer)},
            {"a class", {"V", &TMid::staticMetaObject},
             QVariant(qlonglong(reinterpret_cast<quintptr>(&TMid::staticMetaObject)))},
        };
        for (const TCase &c : cases) {
            QVERIFY2(c.param.Value.metaType() == c.expected.metaType(), c.name);
            QVERIFY2(c.param.Value == c.expected, c.name);
        }

        // Addresses come back as what they were.
        const TObjectParam proc("P", &SomeProc);
        QVERIFY(ParamPointer<void (*)(int)>(proc.Value) == &SomeProc);
        QVERIFY(ParamPointer<void (*)(int)>(QVariant(u"text"_s)) == nullptr);
    }

    void parameters()
    {
        TObjectParamListItem *item = RegisterClassExt(&TMid::staticMetaObject, {{"beta", 1}, {"Alpha", "a"}});
        QVERIFY(!item->GetParamByName(u"Gamma").isValid());
        QCOMPARE(item->GetParamByName(u"ALPHA"), QVariant(u"a"_s));

        // Replacing keeps one name, spelt as first given, and normalises the new value.
        item->SetParamByName("BETA", 2u);
        item->SetParamByName("gamma", "g");
        QCOMPARE(item->ParamNames(), (QStringList{u"Alpha"_s, u"beta"_s, u"gamma"_s}));
        QCOMPARE(item->GetParamByName(u"Beta"), QVariant(qlonglong(2)));
        QCOMPARE(GetItemEx(&TBase::staticMetaObject, {{"beta", 2}, {"Gamma", "g"}}), item);
    }

    void registrationAndRemoval()
    {
        auto object = std::make_unique<TLeaf>();
        TLeaf keeper;
        TObjectParamListItem *first = RegisterClassExt(&TMid::staticMetaObject, {{"N", 1}});
        TObjectParamListItem *entry = RegisterObjectEx(object.get(), {{"N", 1}});
        RegisterClassExt(&TMid::staticMetaObject, {{"N", 2}});
        RegisterObjectEx(object.get(), {{"N", 2}});
        TObjectParamListItem *kept = RegisterObjectEx(&keeper, {{"N", 3}});
        QCOMPARE(ObjectParamList().ItemByDataPtr(&TMid::staticMetaObject), first);
        QCOMPARE(first->GetObjectPtr(), nullptr);
        QCOMPARE(entry->GetObjectPtr(), object.get());
        QCOMPARE(entry->GetClassPtr(), nullptr);

        // Every entry of the pointer goes, the others stay; an object's go with the object.
        UnRegisterClassExt(&TMid::staticMetaObject);
        object.reset();
        QCOMPARE(ObjectParamList().Count(), 1);
        QCOMPARE(ObjectParamList().Items(0), kept);
        UnRegisterClassExt(&TLeaf::staticMetaObject); // nothing registered: nothing happens
        QCOMPARE(ObjectParamList().Count(), 1);

        QVERIFY_THROWS_EXCEPTION(Exception, ObjectParamList().Items(1));
        QVERIFY(ErrorOf([] { RegisterClassExt(nullptr, {{"N", 1}}); }).contains(u"RegisterClassExt"_s));
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterObjectEx(nullptr, {}));
        QCOMPARE(ObjectParamList().Count(), 1);

        // An entry unregistered by hand stops following its object.
        UnRegisterClassExt(&keeper);
        QCOMPARE(ObjectParamList().Count(), 0);
    }

    void forEveryClass()
    {
        TObjectParamListItem *mid = RegisterClassExt(&TMid::staticMetaObject, {{"I", 0}});
        RegisterClassExt(&TOther::staticMetaObject, {{"I", 1}});
        RegisterClassExt(&TLeaf::staticMetaObject, {{"I", 2}});
        TObjectParamListItem *base = RegisterClassExt(&TBase::staticMetaObject, {{"I", 3}});

        QList<qlonglong> seen;
        qlonglong stopAt = -1;
        const auto record = [&](TObjectParamListItem *item, const QVariant &params, bool &finish) -> QVariant {
            seen.append(item->GetParamByName(u"I").toLongLong());
            finish = seen.last() == stopAt;
            return params.toInt() + item->GetParamByName(u"I").toInt();
        };
        QCOMPARE(ObjectParamList().ForEveryClass(&TBase::staticMetaObject, 100, record), QVariant(103));
        QCOMPARE(seen, (QList<qlonglong>{0, 2, 3}));
        QVERIFY(!ObjectParamList().ForEveryClass(&TSibling::staticMetaObject, 0, record).isValid());

        // Finish ends the walk; the result is that call's.
        seen.clear();
        stopAt = 2;
        QCOMPARE(ObjectParamList().ForEveryClass(&TBase::staticMetaObject, 100, record), QVariant(102));
        QCOMPARE(seen, (QList<qlonglong>{0, 2}));

        // Changes made by the iterator: the entry being visited and one not yet visited are
        // freed, a new entry is added; the walk neither crashes nor visits the freed or the new.
        seen.clear();
        ObjectParamList().ForEveryClass(&TBase::staticMetaObject, 0,
                                        [&](TObjectParamListItem *item, const QVariant &, bool &) {
                                            seen.append(item->GetParamByName(u"I").toLongLong());
                                            if (item == mid) {
                                                UnRegisterClassExt(&TMid::staticMetaObject);
                                                UnRegisterClassExt(&TLeaf::staticMetaObject);
                                                RegisterClassExt(&TMid::staticMetaObject, {{"I", 4}});
                                            }
                                            return QVariant();
                                        });
        QCOMPARE(seen, (QList<qlonglong>{0, 3}));
        QCOMPARE(ObjectParamList().ItemByDataPtr(&TLeaf::staticMetaObject), nullptr);
        QCOMPARE(ObjectParamList().Count(), 3);
        QCOMPARE(ObjectParamList().Items(1), base);
    }

    void freeingAGroup()
    {
        const int outer = CurrentGroup();
        TObjectParamListItem *before = RegisterClassExt(&TBase::staticMetaObject, {{"N", 1}});
        const int group = NewEditorGroup();
        QVERIFY(group > outer);
        QCOMPARE(CurrentGroup(), group);
        RegisterClassExt(&TMid::staticMetaObject, {{"N", 2}});
        TLeaf object;
        RegisterObjectEx(&object, {{"N", 3}});

        const int later = NewEditorGroup();
        RegisterClassExt(&TOther::staticMetaObject, {{"N", 4}});

        // An observer newer than the registry already finds the group's entries gone.
        TGroupObserver observer(&TMid::staticMetaObject);
        FreeEditorGroup(group);
        QCOMPARE(observer.Calls, 1);
        QVERIFY(!observer.SawEntry);
        QCOMPARE(CurrentGroup(), later); // the freed group was not the current one
        QCOMPARE(ObjectParamList().Count(), 2);
        QCOMPARE(ObjectParamList().Items(0), before);
        QVERIFY(ObjectParamList().ItemByDataPtr(&TOther::staticMetaObject));

        // A broadcast from elsewhere frees a group too.
        BroadCastToNotifiers(nullptr, CM_FREEEDITGROUP, later, 0);
        QCOMPARE(ObjectParamList().ItemByDataPtr(&TOther::staticMetaObject), nullptr);

        // Freeing the current group makes the newest open one current; numbers are not reused.
        FreeEditorGroup(later);
        QCOMPARE(CurrentGroup(), outer);
        QVERIFY(NewEditorGroup() > later);
        QCOMPARE(ObjectParamList().Count(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_ObjParams)
#include "tst_objparams.moc"
