#pragma once

// Private to the notifier units: the ordered set under the notifier registry and the
// notifier lists.

#include "platform/kvMethod.h"

#include <QHash>
#include <QList>
#include <QtGlobal>

#include <memory>

namespace kv {

template <typename... Args>
size_t qHash(const TMethod<Args...> &method, size_t seed = 0) noexcept
{
    return qHashMulti(seed, reinterpret_cast<quintptr>(method.GetCode()), method.GetData());
}

namespace detail {

// An ordered set of items, oldest first, walked newest first by calls that may add and
// remove items while they run.
//
// The walk rule: a walk goes over a snapshot of the list taken when it starts, newest
// first, and delivers an item only if the registration it had in the snapshot is still in
// the list. So an item removed before its turn is never reached, an item added during the
// walk is not reached by it, and nothing is reached twice. Re-adding an item that is held
// only moves it to the newest position: it is the same registration and a running walk
// still reaches it once, at its old place. Removing an item and adding it again makes a new
// registration, which that walk does not reach (so an object at a freed address is never
// mistaken for the one that was removed).
//
// Cost: the snapshot shares the list's storage until the list changes; the "still
// registered" check is skipped while nothing has been removed since the walk began, and is
// otherwise a comparison with the serial now in the same slot, or a hash lookup when the
// item has moved. Removal is a hash lookup that leaves a hole in the list; holes
// are compacted once they outnumber the items. Registration serials sit in their own array
// so that a walk with nothing removed reads only the items.
//
// Key must be hashable and false when default-constructed (a hole); items added are true.
template <typename Key>
class TWalkList
{
public:
    TWalkList() = default;
    TWalkList(const TWalkList &) = delete;
    TWalkList &operator=(const TWalkList &) = delete;
    // A walk still running over this list finds every registration gone and stops
    // delivering.
    ~TWalkList() { m_state->Clear(); }

    // Appends Item as the newest; an item already held moves there.
    void Add(const Key &item)
    {
        Q_ASSERT(bool(item));
        State &s = *m_state;
        const auto it = s.Positions.find(item);
        if (it == s.Positions.end()) {
            const quint64 serial = s.NextSerial++;
            s.Positions.insert(item, Position{s.Items.size(), serial});
            s.Append(item, serial);
            return;
        }
        const qsizetype old = it->Slot;
        if (old == s.Items.size() - 1)
            return;
        it->Slot = s.Items.size();
        s.Append(item, it->Serial);
        s.Vacate(old);
    }

    bool Remove(const Key &item)
    {
        State &s = *m_state;
        const auto it = s.Positions.find(item);
        if (it == s.Positions.end())
            return false;
        const qsizetype slot = it->Slot;
        s.Positions.erase(it);
        ++s.Removals;
        s.Vacate(slot);
        return true;
    }

    // Removes every item that Pred accepts, deciding from the newest to the oldest, and
    // returns them in that order.
    template <typename Pred>
    QList<Key> RemoveIf(Pred pred)
    {
        QList<Key> doomed;
        const QList<Key> &items = m_state->Items;
        for (qsizetype i = items.size() - 1; i >= 0; --i) {
            if (items.at(i) && pred(items.at(i)))
                doomed.append(items.at(i));
        }
        for (const Key &item : std::as_const(doomed))
            Remove(item);
        return doomed;
    }

    bool Contains(const Key &item) const { return m_state->Positions.contains(item); }
    qsizetype Count() const { return m_state->Positions.size(); }

    // The items, oldest first.
    QList<Key> Items() const
    {
        QList<Key> items;
        items.reserve(Count());
        for (const Key &item : std::as_const(m_state->Items)) {
            if (item)
                items.append(item);
        }
        return items;
    }

    // Calls Deliver(item) for every item, newest first, under the walk rule above; a false
    // answer ends the walk, and Walk then answers false.
    template <typename Deliver>
    bool Walk(Deliver &&deliver) const
    {
        // The state is kept alive by the walk in case a handler destroys the list.
        const std::shared_ptr<State> state = m_state;
        const QList<Key> snapshot = state->Items;
        const QList<quint64> serials = state->Serials;
        const quint64 removals = state->Removals;
        const Key *items = snapshot.constData();
        qsizetype i = snapshot.size() - 1;
        // While nothing has been removed, every item of the snapshot is still registered.
        for (; i >= 0 && state->Removals == removals; --i) {
            if (items[i] && !deliver(items[i])) [[unlikely]]
                return false;
        }
        for (; i >= 0; --i) {
            if (items[i] && state->IsCurrentAt(i, items[i], serials.at(i)) && !deliver(items[i]))
                return false;
        }
        return true;
    }

private:
    struct Position
    {
        qsizetype Slot = 0;
        quint64 Serial = 0;
    };

    struct State
    {
        QList<Key> Items;       // oldest first; a default Key is a hole
        QList<quint64> Serials; // beside Items: the registration each slot holds
        QHash<Key, Position> Positions;
        quint64 NextSerial = 1;
        quint64 Removals = 0; // tells a walk whether any item may have gone
        qsizetype Holes = 0;

        // Whether the registration that a walk's snapshot holds at Slot is still in the list.
        // Serials are unique, so finding it still at Slot settles it without the hash; a
        // registration moved by re-adding or compaction is looked up.
        bool IsCurrentAt(qsizetype slot, const Key &item, quint64 serial) const
        {
            if (slot < Serials.size() && Serials.at(slot) == serial)
                return true;
            const auto it = Positions.constFind(item);
            return it != Positions.cend() && it->Serial == serial;
        }

        void Append(const Key &item, quint64 serial)
        {
            Items.append(item);
            Serials.append(serial);
        }

        void Vacate(qsizetype slot)
        {
            Items[slot] = Key{};
            Serials[slot] = 0;
            ++Holes;
            while (!Items.isEmpty() && !Items.constLast()) {
                Items.removeLast();
                Serials.removeLast();
                --Holes;
            }
            if (Holes > 16 && Holes > Items.size() / 2)
                Compact();
        }

        void Compact()
        {
            QList<Key> liveItems;
            QList<quint64> liveSerials;
            liveItems.reserve(Items.size() - Holes);
            liveSerials.reserve(Items.size() - Holes);
            for (qsizetype i = 0; i < Items.size(); ++i) {
                if (!Items.at(i))
                    continue;
                Positions[Items.at(i)].Slot = liveItems.size();
                liveItems.append(Items.at(i));
                liveSerials.append(Serials.at(i));
            }
            Items = std::move(liveItems);
            Serials = std::move(liveSerials);
            Holes = 0;
        }

        void Clear()
        {
            Items.clear();
            Serials.clear();
            Positions.clear();
            Holes = 0;
            ++Removals;
        }
    };

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace detail
} // namespace kv
