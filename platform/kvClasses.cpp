#include "platform/kvClasses.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"

#include <QHash>
#include <QMetaMethod>
#include <QWidget>

namespace kv {

namespace {

struct TNamedClass
{
    QString Name; // as registered, for messages
    const QMetaObject *Class = nullptr;
};

struct TClassRegistry
{
    QHash<QString, TNamedClass> byName; // key: case-folded name
    QHash<const QMetaObject *, TObjectFactory> factories;
};

TClassRegistry &Registry()
{
    static TClassRegistry registry;
    return registry;
}

QString NameKey(const QString &Name) { return Name.toCaseFolded(); }

bool IsWidgetClass(const QMetaObject *Class) { return Class->inherits(&QWidget::staticMetaObject); }

// A factory over the class's invokable constructor taking its parent, if it has one.
TObjectFactory InvokableConstructorFactory(const QMetaObject *Class)
{
    const QMetaType parentType = IsWidgetClass(Class) ? QMetaType::fromType<QWidget *>() : QMetaType::fromType<QObject *>();
    for (int i = 0; i < Class->constructorCount(); ++i) {
        const QMetaMethod constructor = Class->constructor(i);
        if (constructor.parameterCount() != 1 || constructor.parameterMetaType(0) != parentType)
            continue;
        if (IsWidgetClass(Class)) {
            return [Class](QObject *Owner) -> QObject * {
                return Class->newInstance(Q_ARG(QWidget *, detail::WidgetOwner(Owner, Class)));
            };
        }
        return [Class](QObject *Owner) -> QObject * { return Class->newInstance(Q_ARG(QObject *, Owner)); };
    }
    return {};
}

} // namespace

QString StreamClassName(const QMetaObject *Class)
{
    const QString Name = QString::fromLatin1(Class->className());
    const qsizetype scope = Name.lastIndexOf(QLatin1String("::"));
    return scope < 0 ? Name : Name.mid(scope + 2);
}

void RegisterClass(const QMetaObject *Class, TObjectFactory Factory, const QString &Name)
{
    Q_ASSERT(Class);
    const QString streamName = Name.isEmpty() ? StreamClassName(Class) : Name;
    TClassRegistry &registry = Registry();
    const auto taken = registry.byName.constFind(NameKey(streamName));
    if (taken != registry.byName.cend() && taken->Class != Class) {
        throw Exception(LoadStr(SDuplicateClassName)
                            .arg(QString::fromLatin1(Class->className()), streamName,
                                 QString::fromLatin1(taken->Class->className())));
    }
    if (taken == registry.byName.cend())
        registry.byName.insert(NameKey(streamName), TNamedClass{streamName, Class});

    TObjectFactory &current = registry.factories[Class];
    if (!current)
        current = Factory ? std::move(Factory) : InvokableConstructorFactory(Class);
}

void RegisterClasses(std::initializer_list<const QMetaObject *> Classes)
{
    for (const QMetaObject *Class : Classes)
        RegisterClass(Class);
}

void UnRegisterClass(const QMetaObject *Class)
{
    TClassRegistry &registry = Registry();
    registry.byName.removeIf([Class](const auto &entry) { return entry.value().Class == Class; });
    registry.factories.remove(Class);
}

const QMetaObject *GetClass(const QString &Name)
{
    const TClassRegistry &registry = Registry();
    const auto found = registry.byName.constFind(NameKey(Name));
    return found == registry.byName.cend() ? nullptr : found->Class;
}

const QMetaObject *FindClass(const QString &Name)
{
    if (const QMetaObject *Class = GetClass(Name))
        return Class;
    throw Exception(LoadStr(SClassNotFound).arg(Name));
}

QObject *CreateObject(const QString &Name, QObject *Owner)
{
    return CreateObject(FindClass(Name), Owner);
}

QObject *CreateObject(const QMetaObject *Class, QObject *Owner)
{
    Q_ASSERT(Class);
    const TClassRegistry &registry = Registry();
    const auto found = registry.factories.constFind(Class);
    if (found == registry.factories.cend())
        throw Exception(LoadStr(SClassNotFound).arg(StreamClassName(Class)));
    if (!*found)
        throw Exception(LoadStr(SClassNotCreatable).arg(StreamClassName(Class)));
    // A copy: the factory may register classes itself and so rehash the table.
    const TObjectFactory Factory = *found;
    return Factory(Owner);
}

QWidget *detail::WidgetOwner(QObject *Owner, const QMetaObject *Class)
{
    if (!Owner)
        return nullptr;
    if (Owner->isWidgetType())
        return static_cast<QWidget *>(Owner);
    const QString ownerText = Owner->objectName().isEmpty()
                                  ? QString::fromLatin1(Owner->metaObject()->className())
                                  : Owner->objectName() + QLatin1String(": ") + QString::fromLatin1(Owner->metaObject()->className());
    throw Exception(LoadStr(SWidgetNeedsWidgetOwner).arg(StreamClassName(Class), ownerText));
}

} // namespace kv
