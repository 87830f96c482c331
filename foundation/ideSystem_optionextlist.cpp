#include "foundation/ideSystem_optionextlist.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_objparams.h"
#include "foundation/ideSystem_optionext.h"
#include "platform/kvClasses.h"
#include "platform/kvException.h"

#include <vector>

namespace kv {

class TOptionExtList::Private
{
public:
    std::vector<std::unique_ptr<TOptionExt>> options;
};

TOptionExtList::TOptionExtList() : d(std::make_unique<Private>())
{
    const QList<TObjectParamListItem *> registrations =
        GetItemsEx(&TOptionExt::staticMetaObject, {{SOptionsParam, OptionsParamValue}});
    QList<const QMetaObject *> classes;
    for (const TObjectParamListItem *registration : registrations) {
        if (!classes.contains(registration->GetClassPtr()))
            classes.append(registration->GetClassPtr());
    }
    for (const QMetaObject *cls : std::as_const(classes))
        d->options.emplace_back(TOptionExt::Create(cls));
}

TOptionExtList::~TOptionExtList() = default;

qsizetype TOptionExtList::Count() const
{
    return qsizetype(d->options.size());
}

TOptionExt *TOptionExtList::Items(qsizetype Index) const
{
    CheckListIndex(Index, Count());
    return d->options[size_t(Index)].get();
}

TOptionExt *TOptionExtList::GetOptionWithClass(QStringView ClassName) const
{
    for (const std::unique_ptr<TOptionExt> &option : d->options) {
        const QMetaObject *cls = option->metaObject();
        if (StreamClassName(cls).compare(ClassName, Qt::CaseInsensitive) == 0
            || QLatin1String(cls->className()).compare(ClassName, Qt::CaseInsensitive) == 0)
            return option.get();
    }
    return nullptr;
}

void TOptionExtList::ApplyOptions()
{
    for (const std::unique_ptr<TOptionExt> &option : d->options)
        option->ApplyOptions();
}

} // namespace kv
