#include "foundation/ideSystem_packaged.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_messages.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvException.h"

#include <vector>

namespace kv {

class TPackagedCollection::Private
{
public:
    using TItemPtr = std::unique_ptr<TPackagedCollectionItem>;

    TPackagedItemClass itemClass = nullptr;
    std::vector<TItemPtr> items;

    void CheckIndex(qsizetype index) const { CheckListIndex(index, qsizetype(items.size())); }

    // Takes the entries out, from the last, and frees them once the list is consistent:
    // freeing tells free-notification handlers, which may look at the collection.
    template <typename Pred>
    void RemoveIf(Pred pred)
    {
        std::vector<TItemPtr> taken;
        for (qsizetype i = qsizetype(items.size()) - 1; i >= 0; --i) {
            if (pred(*items[size_t(i)])) {
                taken.push_back(std::move(items[size_t(i)]));
                items.erase(items.begin() + i);
            }
        }
    }
};

TPackagedCollection::TPackagedCollection(TPackagedItemClass ItemClass) : d(std::make_unique<Private>())
{
    Q_ASSERT(ItemClass);
    d->itemClass = ItemClass;
    RegisterNotifier(this);
    RegisterEditorGroupRegistry(this);
}

TPackagedCollection::~TPackagedCollection()
{
    UnregisterEditorGroupRegistry(this);
    UnregisterNotifier(this);
    Clear();
}

TPackagedCollectionItem *TPackagedCollection::Add()
{
    Private::TItemPtr item = d->itemClass();
    item->m_package = CurrentPackage;
    item->m_group = CurrentGroup();
    d->items.push_back(std::move(item));
    return d->items.back().get();
}

TPackagedCollectionItem *TPackagedCollection::Last() const
{
    return d->items.empty() ? nullptr : d->items.back().get();
}

qsizetype TPackagedCollection::Count() const
{
    return qsizetype(d->items.size());
}

TPackagedCollectionItem *TPackagedCollection::Items(qsizetype Index) const
{
    d->CheckIndex(Index);
    return d->items[size_t(Index)].get();
}

qsizetype TPackagedCollection::IndexOf(const TPackagedCollectionItem *Item) const
{
    for (size_t i = 0; i < d->items.size(); ++i) {
        if (d->items[i].get() == Item)
            return qsizetype(i);
    }
    return -1;
}

void TPackagedCollection::Delete(qsizetype Index)
{
    d->CheckIndex(Index);
    const TPackagedCollectionItem *doomed = d->items[size_t(Index)].get();
    d->RemoveIf([doomed](const TPackagedCollectionItem &item) { return &item == doomed; });
}

void TPackagedCollection::DeleteItems(int Group)
{
    d->RemoveIf([Group](const TPackagedCollectionItem &item) { return item.Group() == Group; });
}

void TPackagedCollection::Clear()
{
    d->RemoveIf([](const TPackagedCollectionItem &) { return true; });
}

void TPackagedCollection::Dispatch(TMessage &Message)
{
    if (Message.Msg == CM_FREEEDITGROUP)
        DeleteItems(int(Message.WParam));
}

} // namespace kv
