#include "foundation/ideCommon_optionforms.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"

#include <algorithm>

namespace kv {

namespace {

QList<TOptionFormClass> &Classes()
{
    static QList<TOptionFormClass> classes;
    return classes;
}

} // namespace

const QList<TOptionFormClass> &OptionFormClasses()
{
    return Classes();
}

void RegisterOptionsFormOrder(const QMetaObject *Class, int Order)
{
    if (!Class)
        throw Exception(LoadStr(SErrNilRegistration).arg(QStringLiteral("RegisterOptionsForm")));
    UnregisterOptionsForm(Class);
    TOptionFormClass entry{QStringLiteral("%1").arg(Order, 5), Class};
    QList<TOptionFormClass> &classes = Classes();
    const auto at = std::upper_bound(classes.begin(), classes.end(), entry.Key,
                                     [](const QString &key, const TOptionFormClass &item) { return key < item.Key; });
    classes.insert(at, std::move(entry));
}

void RegisterOptionsForm(const QMetaObject *Class)
{
    RegisterOptionsFormOrder(Class, -1);
}

void UnregisterOptionsForm(const QMetaObject *Class)
{
    Classes().removeIf([Class](const TOptionFormClass &item) { return item.Class == Class; });
}

} // namespace kv
