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
    QString name; // as registered, for messages
    const QMetaObject *cls = nullptr;
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

QString NameKey(const QString &name) { return name.toCaseFolded(); }

bool IsWidgetClass(const QMetaObject *cls) { return cls->inherits(&QWidget::staticMetaObject); }

// A factory over the class's invokable constructor taking its parent, if it has one.
TObjectFactory InvokableConstructorFactory(const QMetaObject *cls)
{
    const QMetaType parentType = IsWidgetClass(cls) ? QMetaType::fromType<QWidget *>() : QMetaType::fromType<QObject *>();
    for (int i = 0; i < cls->constructorCount(); ++i) {
        const QMetaMethod constructor = cls->constructor(i);
        if (constructor.parameterCount() != 1 || constructor.parameterMetaType(0) != parentType)
            continue;
        if (IsWidgetClass(cls)) {
            return [cls](QObject *owner) -> QObject * {
                return cls->newInstance(Q_ARG(QWidget *, detail::WidgetOwner(owner, cls)));
            };
        }
        return [cls](QObject *owner) -> QObject * { return cls->newInstance(Q_ARG(QObject *, owner)); };
    }
    return {};
}

} // namespace

QString StreamClassName(const QMetaObject *cls)
{
    const QString name = QString::fromLatin1(cls->className());
    const qsizetype scope = name.lastIndexOf(QLatin1String("::"));
    return scope < 0 ? name : name.mid(scope + 2);
}

void RegisterClass(const QMetaObject *cls, TObjectFactory factory, const QString &name)
{
    Q_ASSERT(cls);
    const QString streamName = name.isEmpty() ? StreamClassName(cls) : name;
    TClassRegistry &registry = Registry();
    const auto taken = registry.byName.constFind(NameKey(streamName));
    if (taken != registry.byName.cend() && taken->cls != cls) {
        throw Exception(LoadStr(SDuplicateClassName)
                            .arg(QString::fromLatin1(cls->className()), streamName,
                                 QString::fromLatin1(taken->cls->className())));
    }
    if (taken == registry.byName.cend())
        registry.byName.insert(NameKey(streamName), TNamedClass{streamName, cls});

    TObjectFactory &current = registry.factories[cls];
    if (!current)
        current = factory ? std::move(factory) : InvokableConstructorFactory(cls);
}

void RegisterClasses(std::initializer_list<const QMetaObject *> classes)
{
    for (const QMetaObject *cls : classes)
        RegisterClass(cls);
}

void UnRegisterClass(const QMetaObject *cls)
{
    TClassRegistry &registry = Registry();
    registry.byName.removeIf([cls](const auto &entry) { return entry.value().cls == cls; });
    registry.factories.remove(cls);
}

const QMetaObject *GetClass(const QString &name)
{
    const TClassRegistry &registry = Registry();
    const auto found = registry.byName.constFind(NameKey(name));
    return found == registry.byName.cend() ? nullptr : found->cls;
}

const QMetaObject *FindClass(const QString &name)
{
    if (const QMetaObject *cls = GetClass(name))
        return cls;
    throw Exception(LoadStr(SClassNotFound).arg(name));
}

QObject *CreateObject(const QString &name, QObject *owner)
{
    return CreateObject(FindClass(name), owner);
}

QObject *CreateObject(const QMetaObject *cls, QObject *owner)
{
    Q_ASSERT(cls);
    const TClassRegistry &registry = Registry();
    const auto found = registry.factories.constFind(cls);
    if (found == registry.factories.cend())
        throw Exception(LoadStr(SClassNotFound).arg(StreamClassName(cls)));
    if (!*found)
        throw Exception(LoadStr(SClassNotCreatable).arg(StreamClassName(cls)));
    // A copy: the factory may register classes itself and so rehash the table.
    const TObjectFactory factory = *found;
    return factory(owner);
}

QWidget *detail::WidgetOwner(QObject *owner, const QMetaObject *cls)
{
    if (!owner)
        return nullptr;
    if (owner->isWidgetType())
        return static_cast<QWidget *>(owner);
    const QString ownerText = owner->objectName().isEmpty()
                                  ? QString::fromLatin1(owner->metaObject()->className())
                                  : owner->objectName() + QLatin1String(": ") + QString::fromLatin1(owner->metaObject()->className());
    throw Exception(LoadStr(SWidgetNeedsWidgetOwner).arg(StreamClassName(cls), ownerText));
}

} // namespace kv
