#include "foundation/ideSystem_assignprops.h"

#include <QMetaProperty>
#include <QObject>

namespace kv {

void AssignAllProps(const QObject *Source, QObject *Dest)
{
    if (!Source || !Dest || Source == Dest)
        return;
    const QMetaObject *from = Source->metaObject();
    const QMetaObject *to = Dest->metaObject();
    // QObject's own properties (objectName) are identity, not values.
    const int first = QObject::staticMetaObject.propertyCount();
    for (int i = first; i < from->propertyCount(); ++i) {
        const QMetaProperty source = from->property(i);
        if (!source.isReadable() || !source.isStored())
            continue;
        const int index = to->indexOfProperty(source.name());
        if (index < first)
            continue;
        const QMetaProperty dest = to->property(index);
        if (dest.isWritable() && dest.isStored())
            dest.write(Dest, source.read(Source));
    }
}

} // namespace kv
