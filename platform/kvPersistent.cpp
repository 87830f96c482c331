#include "platform/kvPersistent.h"

#include "platform/kvCollection.h"
#include "platform/kvOwner.h"
#include "platform/kvStreamDefaults.h"

#include <QHash>
#include <QLayout>
#include <QMetaProperty>
#include <QObject>

namespace kv {

// Receives the destroyed signals of the watched components for its persistent object.
class TPersistent::TWatcher : public QObject
{
public:
    explicit TWatcher(TPersistent *Owner) : m_owner(Owner) {}
    void Watch(QObject *Component)
    {
        if (m_watched.contains(Component))
            return;
        m_watched.insert(Component, connect(Component, &QObject::destroyed, this, [this, Component] {
                             m_watched.remove(Component);
                             m_owner->Notification(Component, opRemove);
                         }));
    }
    void Unwatch(QObject *Component)
    {
        const auto found = m_watched.constFind(Component);
        if (found == m_watched.cend())
            return;
        disconnect(*found);
        m_watched.erase(found);
    }

private:
    TPersistent *m_owner;
    QHash<QObject *, QMetaObject::Connection> m_watched;
};

TPersistent::TPersistent() = default;
TPersistent::~TPersistent() = default;

void TPersistent::DefineProperties(TFiler &) {}

void TPersistent::GetChildren(const TGetChildProc &Proc, QObject *)
{
    if (QObject *self = dynamic_cast<QObject *>(this)) {
        for (QObject *child : DefaultStreamChildren(self))
            Proc(child);
    }
}

void TPersistent::Notification(QObject *, TOperation) {}

void TPersistent::FreeNotification(QObject *Component)
{
    if (!Component)
        return;
    if (!m_watcher)
        m_watcher = std::make_unique<TWatcher>(this);
    m_watcher->Watch(Component);
}

void TPersistent::RemoveFreeNotification(QObject *Component)
{
    if (m_watcher && Component)
        m_watcher->Unwatch(Component);
}

TPersistent *TPersistent::Of(QObject *Obj)
{
    return dynamic_cast<TPersistent *>(Obj);
}

QList<QObject *> DefaultStreamChildren(const QObject *Obj)
{
    QList<QObject *> result;
    if (!Obj || Obj->children().isEmpty())
        return result;
    // What a fresh instance has, by class and name, counted.
    QHash<QPair<const QMetaObject *, QString>, int> internal;
    if (const QObject *prototype = ClassPrototype(Obj->metaObject())) {
        for (const QObject *child : prototype->children())
            ++internal[{child->metaObject(), child->objectName()}];
    }
    // Sub-objects are written as properties (those without a setter).
    QList<const QObject *> subObjects;
    const QMetaObject *meta = Obj->metaObject();
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        if (!property.isWritable() && (property.metaType().flags() & QMetaType::PointerToQObject))
            subObjects.append(property.read(Obj).value<QObject *>());
    }
    for (QObject *child : Obj->children()) {
        // A child without a name can't be referred to, nor matched when read back into a form
        // built in code: Qt's helpers inside widgets (line controls, delegates, unnamed
        // layouts) are such. Layouts stay out even when named, as their items are no
        // properties: one read back would hold nothing.
        if (child->objectName().isEmpty() || qobject_cast<QLayout *>(child))
            continue;
        if (subObjects.contains(child) || child->objectName().startsWith(QLatin1String("qt_")) || IsRoot(child)
            || qobject_cast<TCollection *>(child) || qobject_cast<TCollectionItem *>(child))
            continue;
        if (!internal.isEmpty()) {
            const auto found = internal.find({child->metaObject(), child->objectName()});
            if (found != internal.end() && *found > 0) {
                --*found;
                continue;
            }
        }
        result.append(child);
    }
    return result;
}

void GetStreamChildren(QObject *Obj, QObject *Root, const TGetChildProc &Proc)
{
    if (TPersistent *persistent = TPersistent::Of(Obj))
        persistent->GetChildren(Proc, Root);
    else
        for (QObject *child : DefaultStreamChildren(Obj))
            Proc(child);
}

} // namespace kv
