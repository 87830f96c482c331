#include "platform/kvPropAliases.h"

#include <QObject>

namespace kv {

namespace {

struct TAlias
{
    const char *PlatformName;
    QList<const char *> QtNames;
};

const QList<TAlias> &Aliases()
{
    static const QList<TAlias> aliases = {
        {"Caption", {"text", "title", "windowTitle"}},
        {"Name", {"objectName"}},
        {"Hint", {"toolTip"}},
        {"Font", {"font"}},
        {"Items", {"items"}},
    };
    return aliases;
}

} // namespace

QStringList QtPropertyNames(const QString &PlatformName)
{
    QStringList names;
    for (const TAlias &alias : Aliases()) {
        if (PlatformName.compare(QLatin1String(alias.PlatformName), Qt::CaseInsensitive) == 0) {
            for (const char *name : alias.QtNames)
                names.append(QLatin1String(name));
        }
    }
    return names;
}

QString PlatformPropertyName(const QString &QtName)
{
    for (const TAlias &alias : Aliases()) {
        for (const char *name : alias.QtNames) {
            if (QtName == QLatin1String(name))
                return QLatin1String(alias.PlatformName);
        }
    }
    return {};
}

bool IsAliasOf(const QString &Name, const QString &PlatformName)
{
    if (Name.compare(PlatformName, Qt::CaseInsensitive) == 0)
        return true;
    return QtPropertyNames(PlatformName).contains(Name);
}

QMetaProperty FindAliasedProperty(const QObject *Obj, const QString &PlatformName)
{
    if (!Obj)
        return {};
    const QMetaObject *metaObject = Obj->metaObject();
    const int own = metaObject->indexOfProperty(PlatformName.toLatin1().constData());
    if (own >= 0)
        return metaObject->property(own);
    for (const QString &name : QtPropertyNames(PlatformName)) {
        const int index = metaObject->indexOfProperty(name.toLatin1().constData());
        if (index >= 0)
            return metaObject->property(index);
    }
    return {};
}

} // namespace kv
