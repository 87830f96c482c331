#include "foundation/ideSystem_optionext.h"

#include "foundation/ideSystem_assignprops.h"
#include "foundation/ideSystem_objparams.h"
#include "foundation/ideSystem_optionextlist.h"
#include "foundation/ideSystem_optionstorage.h"
#include "platform/kvClasses.h"
#include "platform/kvException.h"
#include "tests/testsupport.h"

#include <QMap>
#include <QMetaProperty>
#include <QTest>

#include <memory>

using namespace kv;
using kv::test::ErrorOf;
using namespace Qt::StringLiterals;

namespace probe {

QStringList Events;

// Keeps settings in memory, per key and property.
class TFakeStorage : public IOptionStorage
{
public:
    void Load(QObject *Control, const QString &Key) override
    {
        Events.append(u"load "_s + Key);
        const QVariantMap values = Stored.value(Key);
        for (auto it = values.cbegin(); it != values.cend(); ++it)
            Control->setProperty(it.key().toLatin1().constData(), it.value());
    }
    void Save(const QObject *Control, const QString &Key) override
    {
        Events.append(u"save "_s + Key);
        QVariantMap &values = Stored[Key];
        const QMetaObject *cls = Control->metaObject();
        for (int i = QObject::staticMetaObject.propertyCount(); i < cls->propertyCount(); ++i) {
            if (cls->property(i).isStored())
                values.insert(QString::fromLatin1(cls->property(i).name()), cls->property(i).read(Control));
        }
    }

    QMap<QString, QVariantMap> Stored;
};

class TTestOptions : public TOptionExt
{
    Q_OBJECT
    Q_PROPERTY(int Width MEMBER Width)
    Q_PROPERTY(QString Caption MEMBER Caption)
    Q_PROPERTY(int Scratch MEMBER Scratch STORED false)

public:
    explicit TTestOptions(QObject *parent = nullptr) : TOptionExt(parent) {}

    void Update() override
    {
        Events.append(u"update %1%2"_s.arg(StreamClassName(metaObject()), UpdateDisabled() ? u" (disabled)"_s : QString()));
    }

    int Width = 0;
    QString Caption;
    int Scratch = 0;

protected:
    void InitValues() override
    {
        Events.append(u"init "_s + StreamClassName(metaObject()));
        Width = 10;
        Caption = u"initial"_s;
    }
};

class TOtherOptions : public TOptionExt
{
    Q_OBJECT
    Q_PROPERTY(int Level MEMBER Level)

public:
    explicit TOtherOptions(QObject *parent = nullptr) : TOptionExt(parent) {}
    int Level = 1;
};

// A class without the leading T, with a key of its own in a descendant.
class MyOptions : public TOptionExt
{
    Q_OBJECT
public:
    explicit MyOptions(QObject *parent = nullptr) : TOptionExt(parent) {}
};

class TKeyedOptions : public MyOptions
{
    Q_OBJECT
public:
    explicit TKeyedOptions(QObject *parent = nullptr) : MyOptions(parent) {}
    QString GetKey() const override { return u"Tools\\Keyed"_s; }
};

// Known only through the platform class registry.
class TRegistryOptions : public TOptionExt
{
    Q_OBJECT
public:
    Q_INVOKABLE explicit TRegistryOptions(QObject *parent = nullptr) : TOptionExt(parent) {}
};

// Never made known at all.
class TUnknownOptions : public TOptionExt { Q_OBJECT };

// For AssignAllProps: shares some names with TTestOptions.
class TOtherShape : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int Width MEMBER Width)
    Q_PROPERTY(QString Caption READ Caption)
    Q_PROPERTY(int Scratch MEMBER Scratch)
    Q_PROPERTY(int Height MEMBER Height)
public:
    QString Caption() const { return u"read-only"_s; }
    int Width = 0;
    int Scratch = 0;
    int Height = 0;
};

} // namespace probe

using namespace probe;

class tst_OptionExt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_storage.Stored.clear();
        m_storage.Stored[u"TestOptions"_s] = QVariantMap{{u"Width"_s, 42}, {u"Caption"_s, u"stored"_s}};
        SetOptionStorage(&m_storage);
        Events.clear();
    }

    void cleanup()
    {
        FinalizeOptionExts();
        FinalizeObjectParamList();
        SetOptionStorage(nullptr);
    }

    void globalInstanceAndCopies()
    {
        TTestOptions *global = GetOptionsByClass<TTestOptions>();
        QVERIFY(global->IsGlobal());
        QCOMPARE(global->GlobalInstance(), nullptr);
        QCOMPARE(global->Width, 42);
        // Initialised, then loaded inside a bracket whose end tells the users once.
        QCOMPARE(Events, (QStringList{u"init TTestOptions"_s, u"load TestOptions"_s, u"update TTestOptions"_s}));

        Events.clear();
        global->Scratch = 5;
        std::unique_ptr<TTestOptions> copy(TOptionExt::Create<TTestOptions>());
        QVERIFY(!copy->IsGlobal());
        QCOMPARE(copy->GlobalInstance(), global);
        QCOMPARE(copy->Width, 42);
        QCOMPARE(copy->Scratch, 0); // not stored: not an option
        QCOMPARE(GetOptionsByClass<TTestOptions>(), global);

        // A copy neither initialises nor loads, nor tells anybody; applied, the global tells
        // its users once, after the bracket closed.
        copy->Width = 7;
        copy->ApplyOptions();
        QCOMPARE(global->Width, 7);
        QCOMPARE(Events, QStringList{u"update TTestOptions"_s});
        global->ApplyOptions();
        QCOMPARE(Events, (QStringList{u"update TTestOptions"_s, u"update TTestOptions"_s}));

        // Brackets nest; an EndUpdate without one does nothing; a copy's updates are disabled.
        Events.clear();
        global->BeginUpdate();
        global->BeginUpdate();
        QVERIFY(global->UpdateDisabled());
        global->EndUpdate();
        QVERIFY(Events.isEmpty());
        global->EndUpdate();
        global->EndUpdate();
        QCOMPARE(global->UpdateCount(), 0);
        copy->BeginUpdate();
        copy->EndUpdate();
        QCOMPARE(Events, (QStringList{u"update TTestOptions"_s, u"update TTestOptions (disabled)"_s}));

        // A copy whose global was freed applies to a new global, loaded again.
        FinalizeOptionExts();
        Events.clear();
        copy->Width = 99;
        copy->ApplyOptions();
        QCOMPARE(Events.count(u"load TestOptions"_s), 1);
        QCOMPARE(GetOptionsByClass<TTestOptions>()->Width, 99);

        // A copy asked for first makes the global, which alone loads.
        FinalizeOptionExts();
        Events.clear();
        QObject owner;
        TTestOptions *owned = TOptionExt::Create<TTestOptions>(&owner);
        QCOMPARE(owned->parent(), &owner);
        QCOMPARE(owned->Width, 42);
        QCOMPARE(Events.count(u"load TestOptions"_s), 1);
        QVERIFY(owned->GlobalInstance()->IsGlobal());

        // Without a storage the global keeps the values it was initialised with.
        FinalizeOptionExts();
        QCOMPARE(SetOptionStorage(nullptr), &m_storage);
        Events.clear();
        QCOMPARE(GetOptionsByClass<TTestOptions>()->Caption, u"initial"_s);
        SaveGlobalOptions();
        QCOMPARE(Events, (QStringList{u"init TTestOptions"_s, u"update TTestOptions"_s}));
    }

    void saveGlobalOptions()
    {
        TTestOptions *global = GetOptionsByClass<TTestOptions>();
        GetOptionsByClass<TOtherOptions>()->Level = 4;
        GetOptionsByClass<MyOptions>();
        GetOptionsByClass<TKeyedOptions>();
        std::unique_ptr<TTestOptions> copy(TOptionExt::Create<TTestOptions>());
        copy->Width = 1;
        global->Width = 77;
        Events.clear();

        // The global instances alone are saved, each under its key: the class name without its
        // namespace and leading T, unless the class has a key of its own.
        SaveGlobalOptions();
        Events.sort();
        QCOMPARE(Events, (QStringList{u"save MyOptions"_s, u"save OtherOptions"_s, u"save TestOptions"_s,
                                      u"save Tools\\Keyed"_s}));
        QCOMPARE(m_storage.Stored[u"TestOptions"_s][u"Width"_s], QVariant(77));

        // What was saved is what the next global instance loads.
        FinalizeOptionExts();
        QCOMPARE(GetOptionsByClass<TOtherOptions>()->Level, 4);
    }

    void assignAllProps()
    {
        TTestOptions options;
        options.Width = 5;
        options.Caption = u"mine"_s;
        options.Scratch = 8;
        options.setObjectName(u"Options1"_s);
        TOtherShape shape;
        shape.Width = 1;
        shape.Scratch = 2;
        shape.Height = 3;
        shape.setObjectName(u"Shape1"_s);

        AssignAllProps(&options, &shape);
        QCOMPARE(shape.Width, 5);   // stored and writable on both sides
        QCOMPARE(shape.Scratch, 2); // not stored at the source
        QCOMPARE(shape.Height, 3);  // the source has no such property
        QCOMPARE(shape.objectName(), u"Shape1"_s);

        shape.Width = 6;
        shape.Scratch = 7;
        AssignAllProps(&shape, &options);
        QCOMPARE(options.Width, 6);
        QCOMPARE(options.Caption, u"read-only"_s);
        QCOMPARE(options.Scratch, 8); // not stored at the destination

        AssignAllProps(&options, &options);
        AssignAllProps(nullptr, &options);
        AssignAllProps(&options, nullptr);
        QCOMPARE(options.Width, 6);
    }

    void optionExtList()
    {
        RegisterOptionExt<TTestOptions>();
        RegisterOptionExt<TOtherOptions>();
        RegisterOptionExt<TTestOptions>();
        kv::RegisterClass(&TRegistryOptions::staticMetaObject);
        RegisterOptionExt(&TRegistryOptions::staticMetaObject);
        QCOMPARE(GetItemEx(&TOptionExt::staticMetaObject, {{"Environment.Options", 123}}),
                 ObjectParamList().Items(0));

        // One copy per class, in the order of registration, also of a class known only to the
        // platform class registry, whose global is made and loaded on the way.
        TOptionExtList list;
        QCOMPARE(list.Count(), 3);
        QCOMPARE(list.Items(0)->metaObject(), &TTestOptions::staticMetaObject);
        QCOMPARE(list.Items(1)->metaObject(), &TOtherOptions::staticMetaObject);
        QCOMPARE(list.Items(2)->metaObject(), &TRegistryOptions::staticMetaObject);
        QVERIFY(!list.Items(2)->IsGlobal());
        QVERIFY(Events.contains(u"load RegistryOptions"_s));
        QCOMPARE(list.GetOptionWithClass(u"tOTHERoptions"), list.Items(1));
        QCOMPARE(list.GetOptionWithClass(u"probe::TTestOptions"), list.Items(0));
        QCOMPARE(list.GetOptionWithClass(u"TMissing"), nullptr);
        QVERIFY_THROWS_EXCEPTION(Exception, list.Items(3));

        static_cast<TTestOptions *>(list.Items(0))->Caption = u"edited"_s;
        static_cast<TOtherOptions *>(list.Items(1))->Level = 12;
        list.ApplyOptions();
        QCOMPARE(GetOptionsByClass<TTestOptions>()->Caption, u"edited"_s);
        QCOMPARE(GetOptionsByClass<TOtherOptions>()->Level, 12);

        QVERIFY_THROWS_EXCEPTION(Exception, RegisterOptionExt(&QObject::staticMetaObject));
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterOptionExt(nullptr));
        QVERIFY_THROWS_EXCEPTION(Exception, GetOptionsByClass(&TOtherShape::staticMetaObject));
        // Unknown to every registry: a clear error, no object.
        QVERIFY(ErrorOf([] { GetOptionsByClass(&TUnknownOptions::staticMetaObject); }).contains(u"TUnknownOptions"_s));
    }

private:
    TFakeStorage m_storage;
};

QTEST_GUILESS_MAIN(tst_OptionExt)
#include "tst_optionext.moc"
