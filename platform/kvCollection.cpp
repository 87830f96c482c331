#include "platform/kvCollection.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"
#include "platform/kvOwner.h"

#include <memory>

namespace kv {

// TCollectionItem ----------------------------------------------------------------------------

TCollectionItem::TCollectionItem(QObject *parent) : QObject(parent)
{
    if (auto *collection = qobject_cast<TCollection *>(parent))
        collection->InsertItem(this, collection->Count());
}

TCollectionItem::~TCollectionItem()
{
    if (m_collection)
        m_collection->RemoveItem(this);
}

void TCollectionItem::SetCollection(TCollection *Collection)
{
    if (Collection == m_collection)
        return;
    if (m_collection)
        m_collection->RemoveItem(this);
    setParent(Collection);
    if (Collection)
        Collection->InsertItem(this, Collection->Count());
}

int TCollectionItem::Index() const
{
    return m_collection ? int(m_collection->m_items.indexOf(this)) : -1;
}

void TCollectionItem::SetIndex(int Index)
{
    if (!m_collection)
        return;
    const int from = this->Index();
    const int to = qBound(0, Index, m_collection->Count() - 1);
    if (from == to)
        return;
    m_collection->m_items.move(from, to);
    m_collection->NotifyChanged(nullptr);
}

QString TCollectionItem::DisplayName() const
{
    return QString::fromLatin1(metaObject()->className()).section(QLatin1String("::"), -1);
}

QString TCollectionItem::GetNamePath() const
{
    const QString index = QStringLiteral("[%1]").arg(Index());
    return m_collection ? m_collection->GetNamePath() + index : DisplayName() + index;
}

void TCollectionItem::Changed(bool AllItems)
{
    if (m_collection)
        m_collection->NotifyChanged(AllItems ? nullptr : this);
}

// TCollection --------------------------------------------------------------------------------

TCollection::TCollection(const QMetaObject *ItemClass, QObject *Owner, const QString &PropName, TItemFactory Factory)
    : QObject(Owner), m_itemClass(ItemClass ? ItemClass : &TCollectionItem::staticMetaObject), m_propName(PropName),
      m_factory(std::move(Factory))
{
}

TCollection::~TCollection()
{
    Clear();
}

TCollectionItem *TCollection::Items(int Index) const
{
    CheckListIndex(Index, m_items.size());
    return m_items[Index];
}

TCollectionItem *TCollection::Add()
{
    return Insert(Count());
}

TCollectionItem *TCollection::Insert(int Index)
{
    std::unique_ptr<TCollectionItem> item;
    if (m_factory)
        item.reset(m_factory());
    else
        item.reset(qobject_cast<TCollectionItem *>(m_itemClass->newInstance(Q_ARG(QObject *, nullptr))));
    if (!item)
        throw Exception::Fmt(SClassNotCreatable, m_itemClass->className());
    if (item->m_collection)
        item->m_collection->RemoveItem(item.get());
    item->setParent(this);
    InsertItem(item.get(), qBound(0, Index, Count()));
    return item.release();
}

void TCollection::Delete(int Index)
{
    delete Items(Index);
}

void TCollection::Clear()
{
    if (m_items.isEmpty())
        return;
    BeginUpdate();
    m_clearing = true;
    while (!m_items.isEmpty())
        delete m_items.takeLast();
    m_clearing = false;
    EndUpdate();
}

TCollectionItem *TCollection::FindItemID(int ID) const
{
    for (TCollectionItem *item : m_items)
        if (item->m_id == ID)
            return item;
    return nullptr;
}

void TCollection::BeginUpdate()
{
    ++m_updateCount;
}

void TCollection::EndUpdate()
{
    if (m_updateCount > 0 && --m_updateCount == 0)
        Update(nullptr);
}

QString TCollection::GetNamePath() const
{
    const QString owner = GetCompName(parent());
    return owner.isEmpty() ? m_propName : owner + QLatin1Char('.') + m_propName;
}

void TCollection::Update(TCollectionItem *Item)
{
    Q_EMIT Changed(Item);
}

void TCollection::InsertItem(TCollectionItem *Item, int Index)
{
    Item->m_collection = this;
    Item->m_id = m_nextId++;
    m_items.insert(Index, Item);
    NotifyChanged(nullptr);
}

void TCollection::RemoveItem(TCollectionItem *Item)
{
    Item->m_collection = nullptr;
    m_items.removeOne(Item);
    if (!m_clearing)
        NotifyChanged(nullptr);
}

void TCollection::NotifyChanged(TCollectionItem *Item)
{
    if (m_updateCount == 0)
        Update(Item);
}

} // namespace kv
