#include "platform/kvClasses.h"

#include "platform/kvException.h"
#include "tests/platform/editortests.h"

#include <QTest>
#include <QWidget>

#include <memory>

using namespace kv;
using kv::test::ErrorOf;

namespace probe {

// Constructors taking the owner that both the template's factories and the meta-object's
// invokable constructors can call.
class TThing : public QObject
{
    Q_OBJECT
public:
    Q_INVOKABLE explicit TThing(QObject *parent = nullptr) : QObject(parent) {}
};

class TPanel : public QWidget
{
    Q_OBJECT
public:
    Q_INVOKABLE explicit TPanel(QWidget *parent = nullptr) : QWidget(parent) {}
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

class tst_Classes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        // The registry is process-wide: leave it as each test found it.
        for (const QMetaObject *cls : {&probe::TThing::staticMetaObject, &probe::TPanel::staticMetaObject,
                                       &probe::TSized::staticMetaObject, &other::TThing::staticMetaObject})
            UnRegisterClass(cls);
    }

    void namesCompareIgnoringCase()
    {
        QCOMPARE(StreamClassName(&QObject::staticMetaObject), QStringLiteral("QObject"));
        QCOMPARE(ErrorOf([] { FindClass(QStringLiteral("TThing")); }), QStringLiteral("Class TThing not found"));
        RegisterClass<probe::TThing>();
        QCOMPARE(GetClass(QStringLiteral("tthing")), &probe::TThing::staticMetaObject);
        QVERIFY(!GetClass(QStringLiteral("TThin")));
    }

    void registeringTwice()
    {
        RegisterClasses<probe::TThing, probe::TPanel>();
        RegisterClass<probe::TThing>();

        // Another class may not take the name; the first keeps it.
        const QString message = ErrorOf([] { RegisterClass<other::TThing>(); });
        QVERIFY2(message.contains(QLatin1String("other::TThing")) && message.contains(QLatin1String("probe::TThing")),
                 qPrintable(message));
        QCOMPARE(GetClass(QStringLiteral("TThing")), &probe::TThing::staticMetaObject);
        QVERIFY(ErrorOf([] { RegisterClass<other::TThing>(QStringLiteral("tthing")); }).contains(QLatin1String("tthing")));

        // Under a name of its own it is welcome, and one class may have several names.
        RegisterClass<other::TThing>(QStringLiteral("TOtherThing"));
        RegisterClass<probe::TThing>(QStringLiteral("TThingAlias"));
        QCOMPARE(GetClass(QStringLiteral("TOtherThing")), &other::TThing::staticMetaObject);
        QCOMPARE(GetClass(QStringLiteral("TThingAlias")), &probe::TThing::staticMetaObject);

        // One unregistration forgets every name of the class, and its factory, and nothing else.
        UnRegisterClass(&probe::TThing::staticMetaObject);
        QVERIFY(!GetClass(QStringLiteral("TThing")));
        QVERIFY(!GetClass(QStringLiteral("TThingAlias")));
        QCOMPARE(GetClass(QStringLiteral("TPanel")), &probe::TPanel::staticMetaObject);
        QCOMPARE(ErrorOf([] { CreateObject(&probe::TThing::staticMetaObject, nullptr); }),
                 QStringLiteral("Class TThing not found"));
    }

    void createsTheRegisteredClassForItsOwner()
    {
        QWidget form;
        QObject module;
        module.setObjectName(QStringLiteral("DataModule1"));
        for (const bool byTemplate : {true, false}) {
            if (byTemplate)
                RegisterClasses<probe::TThing, probe::TPanel>();
            else
                RegisterClasses({&probe::TThing::staticMetaObject, &probe::TPanel::staticMetaObject});
            for (const QMetaObject *cls : {&probe::TThing::staticMetaObject, &probe::TPanel::staticMetaObject}) {
                const QString name = StreamClassName(cls);
                QObject *made = CreateObject(name.toLower(), &form);
                QCOMPARE(made->metaObject(), cls);
                QCOMPARE(made->parent(), &form);
                // No owner: the caller owns it.
                std::unique_ptr<QObject> loose(CreateObject(cls, nullptr));
                QVERIFY(!loose->parent());
                // A widget needs a widget owner; anything else may be owned by a non-widget.
                if (cls->inherits(&QWidget::staticMetaObject)) {
                    QCOMPARE(ErrorOf([&] { CreateObject(cls, &module); }),
                             QStringLiteral("Class %1 is a widget class and can't be owned by DataModule1: QObject, "
                                            "which is not a widget").arg(name));
                } else {
                    QCOMPARE(CreateObject(cls, &module)->parent(), &module);
                }
            }
            UnRegisterClass(&probe::TThing::staticMetaObject);
            UnRegisterClass(&probe::TPanel::staticMetaObject);
        }
    }

    void classesWithoutAnOwnerConstructor()
    {
        // Known by name but not creatable until a factory is given.
        RegisterClasses({&probe::TSized::staticMetaObject});
        QObject owner;
        QCOMPARE(ErrorOf([&] { CreateObject(QStringLiteral("TSized"), &owner); }),
                 QStringLiteral("Class TSized can't be created: it has no constructor that takes an owner"));
        RegisterClass(&probe::TSized::staticMetaObject, [](QObject *owner) { return new probe::TSized(42, owner); });
        QCOMPARE(qobject_cast<probe::TSized *>(CreateObject(QStringLiteral("TSized"), &owner))->m_size, 42);

        // A factory already known is kept.
        RegisterClass(&probe::TSized::staticMetaObject, [](QObject *owner) { return new probe::TSized(7, owner); });
        QCOMPARE(qobject_cast<probe::TSized *>(CreateObject(QStringLiteral("TSized"), &owner))->m_size, 42);
    }
};

QTEST_MAIN(tst_Classes)
#include "tst_classes.moc"
