#pragma once

#include "kv_export.h"

// Collections: an ordered list of items of one class, owned by a component and published
// by it as a read-only property (Q_PROPERTY(kv::TCollection *Items READ Items)). Items are
// QObjects with Q_PROPERTYs; streams write them as a collection value, not as components.
// An item's Qt parent is its collection.

#include <QList>
#include <QObject>
#include <QString>

#include <functional>

namespace kv {

class TCollection;

class KV_EXPORT TCollectionItem : public QObject
{
    Q_OBJECT

public:
    // An item class needs such an invokable constructor; the item joins Collection (the
    // parent) at its end when it is a TCollection.
    Q_INVOKABLE explicit TCollectionItem(QObject *parent = nullptr);
    ~TCollectionItem() override;

    TCollection *Collection() const { return m_collection; }
    // Moves the item from its collection into Collection (at its end); null takes it out.
    void SetCollection(TCollection *Collection);

    // The position in the collection; -1 outside one. Setting it moves the item (clamped
    // to the collection).
    int Index() const;
    void SetIndex(int Index);
    // A number unique in the collection, kept for the item's life.
    int ID() const { return m_id; }

    // What lists show: the class name unless overridden.
    virtual QString DisplayName() const;
    // The collection's name path and the index: "Items[2]".
    Q_INVOKABLE QString GetNamePath() const;

protected:
    // Tells the collection that this item (or, with AllItems, every item) changed.
    void Changed(bool AllItems);

private:
    friend class TCollection;
    TCollection *m_collection = nullptr;
    int m_id = -1;
};

class KV_EXPORT TCollection : public QObject
{
    Q_OBJECT

public:
    // Creates items through Factory; without one, through ItemClass's invokable constructor.
    using TItemFactory = std::function<TCollectionItem *()>;

    // Owner is the component that publishes the collection (its Qt parent); PropName the
    // property it is published as, for the name path.
    explicit TCollection(const QMetaObject *ItemClass, QObject *Owner = nullptr, const QString &PropName = {},
                         TItemFactory Factory = {});
    ~TCollection() override;

    const QMetaObject *ItemClass() const { return m_itemClass; }
    QObject *Owner() const { return parent(); }
    const QString &PropName() const { return m_propName; }

    int Count() const { return int(m_items.size()); }
    // Raises kv::Exception (SListIndexError) for an index out of range.
    TCollectionItem *Items(int Index) const;
    const QList<TCollectionItem *> &ItemList() const { return m_items; }

    // A new item at the end, or at Index (clamped).
    TCollectionItem *Add();
    TCollectionItem *Insert(int Index);
    // Deletes the item at Index; raises for an index out of range.
    void Delete(int Index);
    void Clear();
    // The item with that ID; null when none.
    TCollectionItem *FindItemID(int ID) const;

    // Changes inside the bracket are announced once, at its end, as a change of all.
    void BeginUpdate();
    void EndUpdate();
    int UpdateCount() const { return m_updateCount; }

    // "Owner.PropName": the name path of items' collection.
    QString GetNamePath() const;

Q_SIGNALS:
    // Item changed; null when the whole collection did (items added, removed, moved).
    void Changed(kv::TCollectionItem *Item);

protected:
    // Announces a change (unless inside the update bracket); emits Changed.
    virtual void Update(TCollectionItem *Item);

private:
    friend class TCollectionItem;
    void InsertItem(TCollectionItem *Item, int Index);
    void RemoveItem(TCollectionItem *Item);
    void NotifyChanged(TCollectionItem *Item);

    const QMetaObject *m_itemClass;
    QString m_propName;
    TItemFactory m_factory;
    QList<TCollectionItem *> m_items;
    int m_nextId = 0;
    int m_updateCount = 0;
    bool m_clearing = false;
};

} // namespace kv
