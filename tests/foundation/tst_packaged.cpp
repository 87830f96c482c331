#include "foundation/ideSystem_classitems.h"
#include "foundation/ideSystem_editclasses.h"
#include "foundation/ideSystem_packaged.h"

#include "foundation/ideSystem_messageanswer.h"
#include "foundation/ideSystem_messages.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvClasses.h"
#include "platform/kvEditorGroups.h"
#include "platform/kvException.h"
#include "shell/ideHook.h"

#include <QTest>

#include <memory>

using namespace kv;
using namespace Qt::StringLiterals;

namespace probe {

// Classes to register. The platform class registry is process-wide, so each name is used by
// one test only, unless the test is about registering twice.
class TBase : public QObject { Q_OBJECT public: using QObject::QObject; };
class TMid : public TBase { Q_OBJECT public: using TBase::TBase; };
class TLeaf : public TMid { Q_OBJECT public: using TMid::TMid; };
class TOther : public QObject { Q_OBJECT public: using QObject::QObject; };
class TOtherChild : public TOther { Q_OBJECT public: using TOther::TOther; };
class TColorPopup : public QObject { Q_OBJECT public: using QObject::QObject; };
class TDatePopup : public QObject { Q_OBJECT public: using QObject::QObject; };
class TTextEditor : public QObject { Q_OBJECT public: using QObject::QObject; };
class TCheckEditor : public QObject { Q_OBJECT public: using QObject::QObject; };
class TButtonC : public QObject { Q_OBJECT public: using QObject::QObject; };
class TPlain : public QObject { Q_OBJECT public: using QObject::QObject; };
class TButtonA : public QObject { Q_OBJECT public: using QObject::QObject; };
class TButtonB : public QObject { Q_OBJECT public: using QObject::QObject; };

// Two classes of one stream name.
namespace one {
class TTwin : public QObject { Q_OBJECT };
} // namespace one
namespace two {
class TTwin : public QObject { Q_OBJECT };
} // namespace two

class TMarkItem : public TPackagedCollectionItem
{
public:
    QString Mark;
};

// Counts one message.
class TCounter : public TMessageAnswer
{
public:
    explicit TCounter(quint32 msg) : m_msg(msg) {}
    void Dispatch(TMessage &Message) override
    {
        if (Message.Msg == m_msg)
            ++Count;
    }
    int Count = 0;

private:
    quint32 m_msg;
};

} // namespace probe

using namespace probe;

namespace {

QString Marks(const TPackagedCollectionOf<TMarkItem> &items)
{
    QStringList marks;
    for (qsizetype i = 0; i < items.Count(); ++i)
        marks.append(items.Items(i)->Mark);
    return marks.join(u' ');
}

QString PopupNames()
{
    QStringList names;
    for (qsizetype i = 0; i < PopupClasses().Count(); ++i)
        names.append(PopupClasses().Items(i)->PropertyName);
    return names.join(u' ');
}

} // namespace

class tst_Packaged : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        FinalizeClassItems();
        FinalizeEditClasses();
        FreedItems.clear();
        CountsSeen.clear();
    }

    void packagedCollection()
    {
        TPackagedCollectionOf<TMarkItem> items;
        QCOMPARE(items.Last(), nullptr);

        const TPackageHandle savedPackage = CurrentPackage;
        CurrentPackage = 0x5150;
        TMarkItem *a = items.Add();
        a->Mark = u"a"_s;
        const int group = NewEditorGroup();
        TMarkItem *b = items.Add();
        b->Mark = u"b"_s;
        CurrentPackage = savedPackage;
        TMarkItem *c = items.Add();
        c->Mark = u"c"_s;
        const int later = NewEditorGroup();
        TMarkItem *d = items.Add();
        d->Mark = u"d"_s;

        QCOMPARE(b->Package(), TPackageHandle(0x5150));
        QCOMPARE(c->Package(), savedPackage);
        QCOMPARE(items.Last(), d);
        QCOMPARE(items.IndexOf(c), 2);

        // Freed items are out of the collection by the time anyone hears of their end.
        Watched = &items;
        kvAddFreeNotification(b, TFreeNotifyMethod::Of<&tst_Packaged::Freed>(this));
        kvAddFreeNotification(c, TFreeNotifyMethod::Of<&tst_Packaged::Freed>(this));
        FreeEditorGroup(group);
        QCOMPARE(Marks(items), u"a d"_s);
        QCOMPARE(CountsSeen, (QList<qsizetype>{2, 2}));
        QVERIFY(FreedItems.contains(b) && FreedItems.contains(c));

        // A broadcast from elsewhere frees a group as well; index errors are reported.
        BroadCastToNotifiers(nullptr, CM_FREEEDITGROUP, later, 0);
        QCOMPARE(Marks(items), u"a"_s);
        QVERIFY_THROWS_EXCEPTION(Exception, items.Items(1));
        QVERIFY_THROWS_EXCEPTION(Exception, items.Delete(-1));
        items.Delete(0);
        QCOMPARE(items.Count(), 0);
        FreeEditorGroup(later);

        // A collection that is gone no longer listens.
        auto gone = std::make_unique<TPackagedCollectionOf<TMarkItem>>();
        gone->Add();
        gone.reset();
        BroadCastToNotifiers(nullptr, CM_FREEEDITGROUP, CurrentGroup(), 0);
    }

    void editClasses()
    {
        const QMetaType intType = QMetaType::fromType<int>();
        const QMetaType stringType = QMetaType::fromType<QString>();
        const QMetaObject *const Base = &TBase::staticMetaObject;
        const QMetaObject *const Color = &TColorPopup::staticMetaObject;
        RegisterPopupClass(intType, Base, u"Value"_s, Color)->PropertyName = u"first"_s;
        RegisterPopupClass(stringType, Base, u"Value"_s, Color);                       // other type
        RegisterPopupClass(intType, &TMid::staticMetaObject, u"Value"_s, Color);       // other component
        RegisterPopupClass(intType, Base, u"Other"_s, Color);                          // other name
        RegisterPopupClass(intType, Base, u"Value"_s, &TDatePopup::staticMetaObject); // other popup
        RegisterPopupClass(intType, Base, u"Value"_s, Color)->PropertyName = u"VALUE"_s;

        // The first entry equal in all four goes; names compare ignoring case.
        QVERIFY(!UnRegisterPopupClass(intType, Base, u"First"_s, &TDatePopup::staticMetaObject));
        QVERIFY(UnRegisterPopupClass(intType, Base, u"first"_s, Color));
        QCOMPARE(PopupNames(), u"Value Value Other Value VALUE"_s);
        QVERIFY(UnRegisterPopupClass(intType, Base, u"value"_s, Color));
        QCOMPARE(PopupNames(), u"Value Value Other Value"_s);

        const QMetaObject *const Text = &TTextEditor::staticMetaObject;
        const QMetaObject *const Check = &TCheckEditor::staticMetaObject;
        RegisterEditClass(intType, Base, u"Count"_s, Check);
        RegisterTextEditClass(intType, Base, u"Count"_s, Text);
        RegisterEditClass(stringType, Base, u"Name"_s, Text);
        QVERIFY(IsTextEditClass(Text));
        QVERIFY(!IsTextEditClass(Check));
        QVERIFY(UnRegisterEditClass(intType, Base, u"COUNT"_s, Text));
        QVERIFY(!IsTextEditClass(Text)); // the remaining entry of the class is not a text editor

        // Freeing a package's group takes exactly its entries out of the three registries.
        const int package = NewEditorGroup();
        RegisterPopupClass<TColorPopup>(intType, Base, u"Color"_s);
        RegisterEditClass<TTextEditor>(stringType, Base, u"Text"_s);
        RegisterEditSource(&TLeaf::staticMetaObject);
        NewEditorGroup();
        RegisterPopupClass<TDatePopup>(intType, Base, u"After"_s);
        FreeEditorGroup(package);
        QCOMPARE(PopupNames(), u"Value Value Other Value After"_s);
        QCOMPARE(EditClasses().Count(), 2);
        QCOMPARE(EditSourceClasses().Count(), 0);
        // The classes stay known to the platform: they may be registered again.
        QCOMPARE(GetClass(u"TColorPopup"_s), Color);

        // Bad registrations add nothing.
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterPopupClass(intType, Base, u"X"_s, nullptr));
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterTextEditClass(intType, Base, u"X"_s, nullptr));
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterEditSource(nullptr));
        QCOMPARE(PopupClasses().Count(), 5);
        QCOMPARE(EditClasses().Count(), 2);
        QCOMPARE(EditSourceClasses().Count(), 0);
    }

    void classItems()
    {
        TClassItems &items = ClassItems();
        TClassItem *mid = items.RegisterClass(&TMid::staticMetaObject, icNoIcon);
        QCOMPARE(items.RegisterClass(&TMid::staticMetaObject, icField), mid);
        QCOMPARE(mid->Cats, TClassItemCats(icNoIcon | icField));
        items.RegisterClass(&TBase::staticMetaObject, {});
        items.RegisterClass(&TOther::staticMetaObject, icField);
        QCOMPARE(items.ListFieldClasses(),
                 (QList<const QMetaObject *>{&TMid::staticMetaObject, &TOther::staticMetaObject}));
        // The first item that is the class or an ancestor decides, not the nearest one.
        QVERIFY(!IsIconClass(&TLeaf::staticMetaObject));
        QVERIFY(IsIconClass(&TBase::staticMetaObject));
        QVERIFY(IsIconClass(&TColorPopup::staticMetaObject)); // no item: an icon
        items.RegisterClass(&TOtherChild::staticMetaObject, icNoIcon);
        QVERIFY(IsIconClass(&TOtherChild::staticMetaObject)); // TOther's item came first
        QVERIFY_THROWS_EXCEPTION(Exception, items.RegisterClass(nullptr, icField));

        RegisterNonActiveX({&TLeaf::staticMetaObject});
        RegisterNonQuillon({&TBase::staticMetaObject});
        QCOMPARE(items.Last()->Cats, TClassItemCats(icNonActiveX));
        QCOMPARE(items.Last()->Class, &TLeaf::staticMetaObject);
        QVERIFY(!IsIconClass(&TBase::staticMetaObject));
    }

    void registerComponents()
    {
        TCounter announced(CM_REGISTERCOMPS);
        RegisterNoIcon({&TButtonB::staticMetaObject});
        QCOMPARE(announced.Count, 0);

        RegisterComponents(u"Standard"_s, {&TButtonA::staticMetaObject, &TButtonB::staticMetaObject});
        QCOMPARE(announced.Count, 1);
        RegisterComponents(u"Additional"_s, {&TButtonA::staticMetaObject});
        RegisterComponents<TButtonC>(u"Additional"_s);
        QCOMPARE(announced.Count, 3);

        TClassItems &items = ClassItems();
        const TClassItem *a = items.ItemOfClass(&TButtonA::staticMetaObject);
        const TClassItem *b = items.ItemOfClass(&TButtonB::staticMetaObject);
        const TClassItem *c = items.ItemOfClass(&TButtonC::staticMetaObject);
        QCOMPARE(a->Page, u"Standard"_s); // the first page given stays
        QCOMPARE(b->Page, u"Standard"_s); // an item without a page gets one
        QCOMPARE(c->Page, u"Additional"_s);
        QCOMPARE(a->Cats, TClassItemCats(icShowinPalette));
        QCOMPARE(b->Cats, TClassItemCats(icNoIcon | icShowinPalette));

        // The palette can make them by name.
        QCOMPARE(GetClass(u"TButtonA"_s), &TButtonA::staticMetaObject);
        std::unique_ptr<QObject> made(CreateObject(u"TButtonC"_s, nullptr));
        QCOMPARE(made->metaObject(), &TButtonC::staticMetaObject);

        // A failure part way: what was registered before it is announced, the failure passes on.
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterComponents(u"Broken"_s, {&TPlain::staticMetaObject, nullptr}));
        QCOMPARE(announced.Count, 4);
        QCOMPARE(items.ItemOfClass(&TPlain::staticMetaObject)->Page, u"Broken"_s);
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterComponents(u"Broken"_s, {nullptr}));
        QCOMPARE(announced.Count, 4);
    }

    void safeRegisterClass()
    {
        const QMetaObject *const One = &one::TTwin::staticMetaObject;
        const QMetaObject *const Two = &two::TTwin::staticMetaObject;
        QVERIFY(SafeRegisterClass(One));
        // The name is taken: the plain registration refuses, the safe one leaves it alone.
        QVERIFY_THROWS_EXCEPTION(Exception, kv::RegisterClass(Two));
        QVERIFY(!SafeRegisterClass(Two));
        SafeRegisterClasses({Two, &TOtherChild::staticMetaObject});
        QCOMPARE(GetClass(u"TTwin"_s), One);
        QCOMPARE(GetClass(u"TOtherChild"_s), &TOtherChild::staticMetaObject);

        // The template form registers a factory.
        QVERIFY(SafeRegisterClass<TOther>());
        QVERIFY(!SafeRegisterClass<TOther>());
        std::unique_ptr<QObject> made(CreateObject(u"TOther"_s, nullptr));
        QVERIFY(qobject_cast<TOther *>(made.get()));
        QVERIFY_THROWS_EXCEPTION(Exception, SafeRegisterClass(nullptr));
    }

private:
    // Receives the addresses of freed items, with the count of the watched collection then.
    void Freed(const void *Item)
    {
        FreedItems.append(Item);
        CountsSeen.append(Watched->Count());
    }
    QList<const void *> FreedItems;
    QList<qsizetype> CountsSeen;
    const TPackagedCollection *Watched = nullptr;
};

QTEST_GUILESS_MAIN(tst_Packaged)
#include "tst_packaged.moc"
