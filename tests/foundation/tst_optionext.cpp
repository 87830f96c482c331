#include "foundation/ideSystem_optionext.h"

#include "foundation/ideSystem_assignprops.h"
#include "foundation/ideSystem_objparams.h"
#include "foundation/ideSystem_optionextlist.h"
#include "foundation/ideSystem_optionstorage.h"
#include "platform/kvClasses.h"
#include "platform/kvException.h"

#include <QMap>
#include <QMetaProperty>
#include <QTest>

#include <memory>

using namespace kv;
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
    Q_PROPERTY(int Width READ Width WRITE SetWidth)
    Q_PROPERTY(QString Caption MEMBER Caption)
    Q_PROPERTY(bool Flag MEMBER Flag)
    Q_PROPERTY(int Scratch MEMBER Scratch STORED false)

public:
    explicit TTestOptions(QObject *parent = nullptr) : TOptionExt(parent) {}

    int Width() const { return m_width; }
    void SetWidth(int width) { m_width = width; }

    void Update() override
    {
        Events.append(u"update %1%2"_s.arg(StreamClassName(metaObject()), UpdateDisabled() ? u" (disabled)"_s : QString()));
    }

    QString Caption;
    bool Flag = false;
    int Scratch = 0;

protected:
    void InitValues() override
    {
        Events.append(u"init "_s + StreamClassName(metaObject()));
        m_width = 10;
        Caption = u"initial"_s;
    }

private:
    int m_width = 0;
};

class TOtherOptions : public TOptionExt
{
    Q_OBJECT
    Q_PROPERTY(int Level MEMBER Level)

public:
    explicit TOtherOptions(QObject *parent = nullptr) : TOptionExt(parent) {}
    void Update() override { Events.append(u"update TOtherOptions"_s); }
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
    Q_PROPERTY(int Size MEMBER Size)
public:
    Q_INVOKABLE explicit TRegistryOptions(QObject *parent = nullptr) : TOptionExt(parent) {}
    int Size = 3;
};

// Never made known at all.
class TUnknownOptions : public TOptionExt
{
    Q_OBJECT
public:
    explicit TUnknownOptions(QObject *parent = nullptr) : TOptionExt(parent) {}
};

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
    void init();
    void cleanup();
    void firstInstanceLoadsSecondIsACopy();
    void copiesApplyToTheGlobal();
    void updateBrackets();
    void withoutStorage();
    void saveGlobalOptions();
    void keys();
    void assignAllProps();
    void optionExtList();
    void classesKnownByMetaObject();

private:
    TFakeStorage m_storage;
};

void tst_OptionExt::init()
{
    m_storage.Stored.clear();
    m_storage.Stored[u"TestOptions"_s] = QVariantMap{{u"Width"_s, 42}, {u"Caption"_s, u"stored"_s}};
    SetOptionStorage(&m_storage);
    Events.clear();
}

void tst_OptionExt::cleanup()
{
    FinalizeOptionExts();
    FinalizeObjectParamList();
    SetOptionStorage(nullptr);
}

void tst_OptionExt::firstInstanceLoadsSecondIsACopy()
{
    TTestOptions *global = GetOptionsByClass<TTestOptions>();
    QVERIFY(global->IsGlobal());
    QCOMPARE(global->GlobalInstance(), nullptr);
    QCOMPARE(global->Width(), 42);
    QCOMPARE(global->Caption, u"stored"_s);
    // Initialised, then loaded inside a bracket whose end tells the users once.
    QCOMPARE(Events, (QStringList{u"init TTestOptions"_s, u"load TestOptions"_s, u"update TTestOptions"_s}));

    Events.clear();
    std::unique_ptr<TTestOptions> copy(TOptionExt::Create<TTestOptions>());
    std::unique_ptr<TTestOptions> second(TOptionExt::Create<TTestOptions>());
    QVERIFY(!copy->IsGlobal());
    QCOMPARE(copy->GlobalInstance(), global);
    QCOMPARE(copy->Width(), 42);
    QCOMPARE(copy->Caption, u"stored"_s);
    QCOMPARE(second->Width(), 42);
    QVERIFY(Events.isEmpty()); // copies neither initialise nor load
    QCOMPARE(GetOptionsByClass<TTestOptions>(), global);

    // A copy asked for first makes the global, which alone loads.
    FinalizeOptionExts();
    Events.clear();
    QObject owner;
    TTestOptions *owned = TOptionExt::Create<TTestOptions>(&owner);
    QCOMPARE(owned->parent(), &owner);
    QVERIFY(!owned->IsGlobal());
    QCOMPARE(owned->Width(), 42);
    QCOMPARE(Events.count(u"load TestOptions"_s), 1);
    QVERIFY(owned->GlobalInstance()->IsGlobal());
}

void tst_OptionExt::copiesApplyToTheGlobal()
{
    TTestOptions *global = GetOptionsByClass<TTestOptions>();
    global->Scratch = 5;
    std::unique_ptr<TTestOptions> copy(TOptionExt::Create<TTestOptions>());
    QCOMPARE(copy->Scratch, 0); // not stored: not an option
    copy->SetWidth(7);
    copy->Flag = true;
    copy->Scratch = 9;
    copy->setObjectName(u"EditedCopy"_s);
    QCOMPARE(global->Width(), 42);

    Events.clear();
    copy->ApplyOptions();
    QCOMPARE(global->Width(), 7);
    QVERIFY(global->Flag);
    QCOMPARE(global->Scratch, 5);
    QVERIFY(global->objectName().isEmpty());
    // The global tells its users once, after the bracket closed; the copy tells nobody.
    QCOMPARE(Events, QStringList{u"update TTestOptions"_s});

    Events.clear();
    global->ApplyOptions();
    QCOMPARE(Events, QStringList{u"update TTestOptions"_s});

    // A copy whose global was freed applies to a new global, loaded again.
    FinalizeOptionExts();
    Events.clear();
    copy->SetWidth(99);
    copy->ApplyOptions();
    QCOMPARE(Events.count(u"load TestOptions"_s), 1);
    QCOMPARE(GetOptionsByClass<TTestOptions>()->Width(), 99);
}

void tst_OptionExt::updateBrackets()
{
    TTestOptions *global = GetOptionsByClass<TTestOptions>();
    Events.clear();
    QVERIFY(!global->UpdateDisabled());
    global->BeginUpdate();
    global->BeginUpdate();
    QVERIFY(global->UpdateDisabled());
    global->EndUpdate();
    QVERIFY(Events.isEmpty());
    global->EndUpdate();
    QCOMPARE(Events, QStringList{u"update TTestOptions"_s});
    QVERIFY(!global->UpdateDisabled());
    global->EndUpdate(); // unmatched: nothing
    QCOMPARE(global->UpdateCount(), 0);
    QCOMPARE(Events.size(), 1);

    std::unique_ptr<TTestOptions> copy(TOptionExt::Create<TTestOptions>());
    QVERIFY(copy->UpdateDisabled());
    Events.clear();
    copy->BeginUpdate();
    copy->EndUpdate();
    QCOMPARE(Events, QStringList{u"update TTestOptions (disabled)"_s});
}

void tst_OptionExt::withoutStorage()
{
    SetOptionStorage(nullptr);
    TTestOptions *global = GetOptionsByClass<TTestOptions>();
    QCOMPARE(global->Width(), 10);
    QCOMPARE(global->Caption, u"initial"_s);
    SaveGlobalOptions();
    QCOMPARE(Events, (QStringList{u"init TTestOptions"_s, u"update TTestOptions"_s}));
    QCOMPARE(SetOptionStorage(&m_storage), nullptr);
}

void tst_OptionExt::saveGlobalOptions()
{
    TTestOptions *global = GetOptionsByClass<TTestOptions>();
    GetOptionsByClass<TOtherOptions>()->Level = 4;
    std::unique_ptr<TTestOptions> copy(TOptionExt::Create<TTestOptions>());
    copy->SetWidth(1);
    global->SetWidth(77);
    global->Scratch = 3;
    Events.clear();

    SaveGlobalOptions();
    QCOMPARE(Events.size(), 2);
    QVERIFY(Events.contains(u"save TestOptions"_s));
    QVERIFY(Events.contains(u"save OtherOptions"_s));
    QCOMPARE(m_storage.Stored[u"TestOptions"_s][u"Width"_s], QVariant(77));
    QCOMPARE(m_storage.Stored[u"OtherOptions"_s][u"Level"_s], QVariant(4));
    QVERIFY(!m_storage.Stored[u"TestOptions"_s].contains(u"Scratch"_s));

    // What was saved is what the next global instance loads.
    FinalizeOptionExts();
    QCOMPARE(GetOptionsByClass<TOtherOptions>()->Level, 4);
}

void tst_OptionExt::keys()
{
    QCOMPARE(GetOptionsByClass<TTestOptions>()->GetKey(), u"TestOptions"_s);
    QCOMPARE(GetOptionsByClass<MyOptions>()->GetKey(), u"MyOptions"_s);
    Events.clear();
    GetOptionsByClass<TKeyedOptions>();
    QVERIFY(Events.contains(u"load Tools\\Keyed"_s));
}

void tst_OptionExt::assignAllProps()
{
    TTestOptions options;
    options.SetWidth(5);
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
    QCOMPARE(options.Width(), 6);
    QCOMPARE(options.Caption, u"read-only"_s);
    QCOMPARE(options.Scratch, 8); // not stored at the destination

    AssignAllProps(&options, &options);
    AssignAllProps(nullptr, &options);
    AssignAllProps(&options, nullptr);
    QCOMPARE(options.Width(), 6);
}

void tst_OptionExt::optionExtList()
{
    RegisterOptionExt<TTestOptions>();
    TObjectParamListItem *other = RegisterOptionExt<TOtherOptions>();
    RegisterOptionExt<TTestOptions>();
    QCOMPARE(other->GetParamByName(SOptionsParam), QVariant(qlonglong(OptionsParamValue)));
    QCOMPARE(GetItemEx(&TOptionExt::staticMetaObject, {{"Environment.Options", 123}}),
             ObjectParamList().Items(0));

    TOptionExtList list;
    QCOMPARE(list.Count(), 2);
    QCOMPARE(list.Items(0)->metaObject(), &TTestOptions::staticMetaObject);
    QCOMPARE(list.Items(1)->metaObject(), &TOtherOptions::staticMetaObject);
    QVERIFY(!list.Items(0)->IsGlobal());
    QVERIFY(!list.Items(1)->IsGlobal());
    QCOMPARE(list.GetOptionWithClass(u"tOTHERoptions"), list.Items(1));
    QCOMPARE(list.GetOptionWithClass(u"probe::TTestOptions"), list.Items(0));
    QCOMPARE(list.GetOptionWithClass(u"TMissing"), nullptr);
    QVERIFY_THROWS_EXCEPTION(Exception, list.Items(2));

    auto *test = static_cast<TTestOptions *>(list.GetOptionWithClass(u"TTestOptions"));
    auto *level = static_cast<TOtherOptions *>(list.GetOptionWithClass(u"TOtherOptions"));
    test->Caption = u"edited"_s;
    level->Level = 12;
    QCOMPARE(GetOptionsByClass<TOtherOptions>()->Level, 1);
    list.ApplyOptions();
    QCOMPARE(GetOptionsByClass<TTestOptions>()->Caption, u"edited"_s);
    QCOMPARE(GetOptionsByClass<TOtherOptions>()->Level, 12);

    QVERIFY_THROWS_EXCEPTION(Exception, RegisterOptionExt(&QObject::staticMetaObject));
    QVERIFY_THROWS_EXCEPTION(Exception, RegisterOptionExt(nullptr));
    QVERIFY_THROWS_EXCEPTION(Exception, GetOptionsByClass(&TOtherShape::staticMetaObject));
}

void tst_OptionExt::classesKnownByMetaObject()
{
    // Unknown to every registry: a clear error, no object.
    try {
        GetOptionsByClass(&TUnknownOptions::staticMetaObject);
        QFAIL("options of an unknown class were made");
    } catch (const Exception &e) {
        QVERIFY2(e.Message().contains(u"TUnknownOptions"_s), qPrintable(e.Message()));
    }

    kv::RegisterClass(&TRegistryOptions::staticMetaObject);
    RegisterOptionExt(&TRegistryOptions::staticMetaObject);
    TOptionExtList list;
    QCOMPARE(list.Count(), 1);
    QCOMPARE(list.Items(0)->metaObject(), &TRegistryOptions::staticMetaObject);
    QVERIFY(!list.Items(0)->IsGlobal());
    QVERIFY(GetOptionsByClass(&TRegistryOptions::staticMetaObject)->IsGlobal());
    QCOMPARE(Events, QStringList{u"load RegistryOptions"_s});
}

QTEST_GUILESS_MAIN(tst_OptionExt)
#include "tst_optionext.moc"
