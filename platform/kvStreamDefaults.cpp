#include "platform/kvStreamDefaults.h"

#include "platform/kvClasses.h"
#include "platform/kvScreen.h"

#include <QApplication>
#include <QHash>
#include <QIcon>
#include <QImage>
#include <QMetaProperty>
#include <QPixmap>
#include <QPointer>
#include <QWidget>

#include <cmath>
#include <memory>
#include <vector>

namespace kv {

namespace {

struct TDefaultsRegistry
{
    // Declared defaults of each class, by property name.
    QHash<const QMetaObject *, QHash<QByteArray, QVariant>> Declared;
    // Prototypes made so far; a null entry remembers a class that can't be made.
    QHash<const QMetaObject *, QPointer<QObject>> Prototypes;
    QHash<const QMetaObject *, bool> Tried;
    // Resolved defaults per class, by property index; an entry is filled on first use.
    QHash<const QMetaObject *, std::vector<std::pair<bool, QVariant>>> Resolved;
};

TDefaultsRegistry &Registry()
{
    static TDefaultsRegistry registry;
    return registry;
}

QObject *MakePrototype(const QMetaObject *Class)
{
    const bool widget = Class->inherits(&QWidget::staticMetaObject);
    if (widget && !qobject_cast<QApplication *>(QCoreApplication::instance()))
        return nullptr;
    QObject *obj = nullptr;
    if (GetClass(StreamClassName(Class)) == Class) {
        try {
            obj = CreateObject(Class, nullptr);
        } catch (const std::exception &) {
            obj = nullptr;
        }
    }
    if (!obj)
        obj = Class->newInstance();
    if (!obj)
        obj = widget ? Class->newInstance(Q_ARG(QWidget *, nullptr)) : Class->newInstance(Q_ARG(QObject *, nullptr));
    if (!obj)
        return nullptr;
    if (obj->metaObject() != Class) { // a factory that made something else
        delete obj;
        return nullptr;
    }
    if (obj->isWidgetType())
        static_cast<QWidget *>(obj)->setAttribute(Qt::WA_DontShowOnScreen);
    // A prototype is nobody's data module.
    if (Screen().IsDataModule(obj))
        Screen().UnregisterDataModule(obj);
    return obj;
}

const QVariant *DeclaredDefault(const QMetaObject *Class, const char *Name)
{
    const TDefaultsRegistry &registry = Registry();
    for (const QMetaObject *c = Class; c; c = c->superClass()) {
        const auto found = registry.Declared.constFind(c);
        if (found == registry.Declared.cend())
            continue;
        const auto value = found->constFind(QByteArray(Name));
        if (value != found->cend())
            return &*value;
    }
    return nullptr;
}

QVariant EmptyValue(const QMetaProperty &Property)
{
    if (Property.isEnumType())
        return QVariant(Property.metaType(), nullptr).isValid() ? QVariant(Property.metaType(), nullptr) : QVariant(0);
    return QVariant(Property.metaType(), nullptr);
}

QVariant ResolveDefault(const QMetaObject *Class, const QMetaProperty &Property)
{
    if (const QVariant *declared = DeclaredDefault(Class, Property.name()))
        return *declared;
    // Only a prototype of the class itself tells: a base class's prototype would miss what
    // the class's constructor changes, and a value taken for the default is not written.
    if (!HasDeclaredDefaults(Class)) {
        if (QObject *prototype = ClassPrototype(Class))
            return Property.read(prototype);
    }
    // A property of a class that declares its defaults and left this one out has its type's
    // empty value; any other default is unknown, and the value is always written.
    const QMetaObject *owner = Class;
    while (owner->superClass() && Property.propertyIndex() < owner->superClass()->propertyCount())
        owner = owner->superClass();
    return HasDeclaredDefaults(owner) ? EmptyValue(Property) : QVariant();
}

qint64 PictureKey(const QVariant &Value)
{
    switch (Value.metaType().id()) {
    case QMetaType::QPixmap:
    case QMetaType::QBitmap: {
        const QPixmap pixmap = Value.value<QPixmap>();
        return pixmap.isNull() ? 0 : pixmap.cacheKey();
    }
    case QMetaType::QImage: {
        const QImage image = Value.value<QImage>();
        return image.isNull() ? 0 : image.cacheKey();
    }
    case QMetaType::QIcon: {
        const QIcon icon = Value.value<QIcon>();
        return icon.isNull() ? 0 : icon.cacheKey();
    }
    default:
        return -1;
    }
}

} // namespace

void DeclareDefaults(const QMetaObject *Class, std::initializer_list<std::pair<const char *, QVariant>> Defaults)
{
    if (!Class)
        return;
    TDefaultsRegistry &registry = Registry();
    QHash<QByteArray, QVariant> &declared = registry.Declared[Class];
    for (const auto &[name, value] : Defaults)
        declared.insert(QByteArray(name), value);
    // What was resolved for this class or a class below it may have changed.
    registry.Resolved.clear();
}

bool HasDeclaredDefaults(const QMetaObject *Class)
{
    return Registry().Declared.contains(Class);
}

QObject *ClassPrototype(const QMetaObject *Class)
{
    if (!Class || HasDeclaredDefaults(Class))
        return nullptr;
    TDefaultsRegistry &registry = Registry();
    if (QObject *prototype = registry.Prototypes.value(Class))
        return prototype;
    if (registry.Tried.value(Class))
        return nullptr;
    registry.Tried.insert(Class, true);
    QObject *prototype = MakePrototype(Class);
    registry.Prototypes.insert(Class, prototype);
    return prototype;
}

QVariant DefaultPropValue(const QMetaObject *Class, const QMetaProperty &Property)
{
    if (!Class || Property.propertyIndex() < 0 || Property.propertyIndex() >= Class->propertyCount())
        return {};
    const size_t index = size_t(Property.propertyIndex());
    {
        const auto found = Registry().Resolved.constFind(Class);
        if (found != Registry().Resolved.cend() && !found->empty() && (*found)[index].first)
            return (*found)[index].second;
    }
    // Making a prototype may declare defaults and so clear the table: look it up afterwards.
    QVariant value = ResolveDefault(Class, Class->property(Property.propertyIndex()));
    auto &resolved = Registry().Resolved[Class];
    if (resolved.empty())
        resolved.resize(size_t(Class->propertyCount()));
    resolved[index] = {true, value};
    return value;
}

bool IsDefaultPropValue(const QObject *Instance, const QMetaProperty &Property)
{
    if (!Instance)
        return false;
    return SameStreamValue(Property.read(Instance), DefaultPropValue(Instance->metaObject(), Property));
}

bool SameStreamValue(const QVariant &A, const QVariant &B)
{
    const qint64 pictureA = PictureKey(A);
    if (pictureA >= 0)
        return A.metaType() == B.metaType() && pictureA == PictureKey(B);
    if (A.metaType() != B.metaType())
        return A.isValid() == B.isValid() && A == B;
    switch (A.metaType().id()) {
    case QMetaType::Double: {
        const double a = A.toDouble(), b = B.toDouble();
        return a == b ? std::signbit(a) == std::signbit(b) : (std::isnan(a) && std::isnan(b));
    }
    case QMetaType::Float: {
        const float a = A.toFloat(), b = B.toFloat();
        return a == b ? std::signbit(a) == std::signbit(b) : (std::isnan(a) && std::isnan(b));
    }
    default:
        return A == B;
    }
}

void FinalizeStreamDefaults()
{
    TDefaultsRegistry &registry = Registry();
    const auto prototypes = std::exchange(registry.Prototypes, {});
    registry.Tried.clear();
    registry.Resolved.clear();
    for (const QPointer<QObject> &prototype : prototypes)
        delete prototype.data();
}

} // namespace kv
