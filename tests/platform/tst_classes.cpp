#include "platform/kvClasses.h"

#include "platform/kvException.h"

#include <QPointer>
#include <QTest>
#include <QWidget>

#include <memory>

using namespace kv;

namespace probe {

class TThing : public QObject
{
    Q_OBJECT
public:
    explicit TThing(QObject *parent = nullptr) : QObject(parent) {}
};

class TPanel : public QWidget
{
    Q_OBJECT
public:
    explicit TPanel(QWidget *parent = nullptr) : QWidget(parent) {}
};

class TInvokableThing : public QObject
{
    Q_OBJECT
public:
    Q_INVOKABLE explicit TInvokableThing(QObject *parent = nullptr) : QObject(parent) {}
};

class TInvokablePanel : public QWidget
{
    Q_OBJECT
public:
    Q_INVOKABLE explicit TInvokablePanel(QWidget *parent = nullptr) : QWidget(parent) {}
};

// No constructor that takes just an owner.
class TSized : public QObject
{
    Q_OBJECT
public:
    TSized(int size, QObject *parent) : QObject(parent), m_size(size) {}
    int m_size;
};

} // namespace probe

namespace other {
// Same stream name as probe::TThing.
class TThing : public QObject
{
    Q_OBJECT
public:
    explicit TThing(QObject *parent = nullptr) : QObject(parent) {}
};
} // namespace other

namespace {

template <typename F>
QString RaisedMessage(F &&f)
{
    try {
        f();
    } catch (const Exception &e) {
        return e.Message();
    }
    return QStringLiteral("(nothing raised)");
}

} // namespace

class tst_Classes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        // The registry is process-wide: leave it as each test found it.
        for (const QMetaObject *cls : {&probe::TThing::staticMetaObject, &probe::TPanel::staticMetaObject,
                                       &probe::TInvokableThing::staticMetaObject, &probe::TInvokablePanel::staticMetaObject,
                                       &probe::TSized::staticMetaObject, &other::TThing::staticMetaObject})
            UnRegisterClass(cls);
    }

    void namesCompareIgnoringCase()
    {
        QCOMPARE(StreamClassName(&probe::TThing::staticMetaObject), QStringLiteral("TThing"));
        QCOMPARE(StreamClassName(&QObject::staticMetaObject), QStringLiteral("QObject"));
        QVERIFY(!GetClass(QStringLiteral("TThing")));
        RegisterClass<probe::TThing>();
        QCOMPARE(GetClass(QStringLiteral("TThing")), &probe::TThing::staticMetaObject);
        QCOMPARE(GetClass(QStringLiteral("tthing")), &probe::TThing::staticMetaObject);
        QCOMPARE(FindClass(QStringLiteral("TTHING")), &probe::TThing::staticMetaObject);
        QVERIFY(!GetClass(QStringLiteral("TThin")));
    }

    void unknownNames()
    {
        QVERIFY(!GetClass(QStringLiteral("TNoSuchClass")));
        QCOMPARE(RaisedMessage([] { FindClass(QStringLiteral("TNoSuchClass")); }),
                 QStringLiteral("Class TNoSuchClass not found"));
        QCOMPARE(RaisedMessage([] { CreateObject(QStringLiteral("TNoSuchClass"), nullptr); }),
                 QStringLiteral("Class TNoSuchClass not found"));
        QCOMPARE(RaisedMessage([] { CreateObject(&probe::TThing::staticMetaObject, nullptr); }),
                 QStringLiteral("Class TThing not found"));
    }

    void registeringTwice()
    {
        RegisterClasses<probe::TThing, probe::TPanel>();
        RegisterClass<probe::TThing>();
        QCOMPARE(GetClass(QStringLiteral("TThing")), &probe::TThing::staticMetaObject);

        // Another class may not take the name; the first keeps it.
        const QString message = RaisedMessage([] { RegisterClass<other::TThing>(); });
        QVERIFY2(message.contains(QLatin1String("other::TThing")) && message.contains(QLatin1String("probe::TThing")),
                 qPrintable(message));
        QCOMPARE(GetClass(QStringLiteral("TThing")), &probe::TThing::staticMetaObject);
        QVERIFY(RaisedMessage([] { RegisterClass<other::TThing>(QStringLiteral("tthing")); }).contains(QLatin1String("tthing")));

        // Under a name of its own it is welcome, and one class may have several names.
        RegisterClass<other::TThing>(QStringLiteral("TOtherThing"));
        RegisterClass<probe::TThing>(QStringLiteral("TThingAlias"));
        QCOMPARE(GetClass(QStringLiteral("TOtherThing")), &other::TThing::staticMetaObject);
        QCOMPARE(GetClass(QStringLiteral("TThingAlias")), &probe::TThing::staticMetaObject);

        // One unregistration forgets every name of the class and nothing else.
        UnRegisterClass(&probe::TThing::staticMetaObject);
        QVERIFY(!GetClass(QStringLiteral("TThing")));
        QVERIFY(!GetClass(QStringLiteral("TThingAlias")));
        QCOMPARE(GetClass(QStringLiteral("TPanel")), &probe::TPanel::staticMetaObject);
        QVERIFY(RaisedMessage([] { CreateObject(&probe::TThing::staticMetaObject, nullptr); }).contains(QLatin1String("not found")));
        UnRegisterClass(&probe::TThing::staticMetaObject);
    }

    void createsTheRegisteredClassForItsOwner()
    {
        RegisterClasses<probe::TThing, probe::TPanel>();
        QObject owner;
        QObject *thing = CreateObject(QStringLiteral("tthing"), &owner);
        QCOMPARE(thing->metaObject(), &probe::TThing::staticMetaObject);
        QCOMPARE(thing->parent(), &owner);

        QWidget form;
        QObject *panel = CreateObject(&probe::TPanel::staticMetaObject, &form);
        QCOMPARE(panel->metaObject(), &probe::TPanel::staticMetaObject);
        QCOMPARE(static_cast<QWidget *>(panel)->parentWidget(), &form);

        // A non-widget may be owned by a widget.
        QObject *thingOfForm = CreateObject(QStringLiteral("TThing"), &form);
        QCOMPARE(thingOfForm->parent(), &form);

        // No owner: the caller owns it.
        std::unique_ptr<QObject> loose(CreateObject(QStringLiteral("TPanel"), nullptr));
        QVERIFY(loose->isWidgetType());
        QVERIFY(!loose->parent());
    }

    void widgetNeedsAWidgetOwner()
    {
        RegisterClass<probe::TPanel>();
        RegisterClass(&probe::TInvokablePanel::staticMetaObject);
        QObject module;
        module.setObjectName(QStringLiteral("DataModule1"));
        for (const char *name : {"TPanel", "TInvokablePanel"}) {
            const QString message = RaisedMessage([&] { CreateObject(QString::fromLatin1(name), &module); });
            QCOMPARE(message, QStringLiteral("Class %1 is a widget class and can't be owned by DataModule1: QObject, which is not a widget")
                                  .arg(QString::fromLatin1(name)));
        }
        QVERIFY(module.children().isEmpty());
    }

    void invokableConstructorsAndFactories()
    {
        RegisterClasses({&probe::TInvokableThing::staticMetaObject, &probe::TInvokablePanel::staticMetaObject,
                         &probe::TSized::staticMetaObject});
        QWidget form;
        QObject *thing = CreateObject(QStringLiteral("TInvokableThing"), &form);
        QCOMPARE(thing->metaObject(), &probe::TInvokableThing::staticMetaObject);
        QCOMPARE(thing->parent(), &form);
        QObject *panel = CreateObject(QStringLiteral("TInvokablePanel"), &form);
        QCOMPARE(panel->metaObject(), &probe::TInvokablePanel::staticMetaObject);
        QCOMPARE(static_cast<QWidget *>(panel)->parentWidget(), &form);

        // Known by name but not creatable until a factory is given.
        QCOMPARE(GetClass(QStringLiteral("TSized")), &probe::TSized::staticMetaObject);
        QCOMPARE(RaisedMessage([&] { CreateObject(QStringLiteral("TSized"), &form); }),
                 QStringLiteral("Class TSized can't be created: it has no constructor that takes an owner"));
        RegisterClass(&probe::TSized::staticMetaObject, [](QObject *owner) { return new probe::TSized(42, owner); });
        auto *sized = qobject_cast<probe::TSized *>(CreateObject(QStringLiteral("TSized"), &form));
        QVERIFY(sized);
        QCOMPARE(sized->m_size, 42);
        QCOMPARE(sized->parent(), &form);

        // A factory already known is kept.
        RegisterClass(&probe::TSized::staticMetaObject, [](QObject *owner) { return new probe::TSized(7, owner); });
        QCOMPARE(qobject_cast<probe::TSized *>(CreateObject(QStringLiteral("TSized"), &form))->m_size, 42);
    }
};

QTEST_MAIN(tst_Classes)
#include "tst_classes.moc"
