#include "platform/kvComponentState.h"

#include <QHash>
#include <QObject>
#include <QPointer>

namespace kv {

namespace {

// The flags that a subtree shares with its root.
constexpr TComponentState SubtreeFlags = csDesigning | csDestroying;

struct TStateRecord
{
    TComponentState state;
    // Null once the object's ~QObject has begun.
    QPointer<QObject> guard;
    // Our destroyed connection; ~QObject cuts it right after the signal, and so can foreign
    // code (QObject::disconnect() with no arguments cuts everything).
    QMetaObject::Connection watch;

    // ~QObject has begun and destroyed is being emitted: the object is still there.
    bool Dying() const { return guard.isNull() && watch; }
    // The object is gone without our handler having run, and its address may already hold
    // a new object: the record must never be read.
    bool Dead() const { return guard.isNull() && !watch; }
};

class TStateTable
{
public:
    TComponentState Read(const QObject *obj)
    {
        if (m_records.isEmpty())
            return {};
        TComponentState state = Stored(obj);
        if (m_subtreeRecords > 0) {
            for (const QObject *up = obj->parent(); up && (state & SubtreeFlags) != SubtreeFlags; up = up->parent())
                state |= Stored(up) & SubtreeFlags;
        }
        return state;
    }

    TComponentState Stored(const QObject *obj)
    {
        const auto found = Find(obj);
        if (found == m_records.end())
            return {};
        return found->Dying() ? found->state | csDestroying : found->state;
    }

    // Stores state on obj, leaving out what obj already has from its ancestors.
    void Store(QObject *obj, TComponentState state)
    {
        state &= ~Inherited(obj);
        auto found = Find(obj);
        if (!state) {
            if (found != m_records.end())
                Drop(found);
            return;
        }
        if (found == m_records.end()) {
            found = m_records.insert(obj, TStateRecord{{}, QPointer<QObject>(obj), {}});
            // Direct: the record must go before ~QObject returns and the address is free.
            found->watch = QObject::connect(obj, &QObject::destroyed, &m_context,
                                            [this](QObject *dying) { Destroyed(dying); }, Qt::DirectConnection);
        }
        Count(found->state, -1);
        found->state = state;
        Count(found->state, +1);
    }

    int Size() const { return int(m_records.size()); }

private:
    using Records = QHash<const QObject *, TStateRecord>;

    Records::iterator Find(const QObject *obj)
    {
        auto found = m_records.find(obj);
        if (found != m_records.end() && found->Dead()) {
            Drop(found);
            return m_records.end();
        }
        return found;
    }

    TComponentState Inherited(const QObject *obj)
    {
        TComponentState inherited;
        if (m_subtreeRecords > 0) {
            for (const QObject *up = obj->parent(); up; up = up->parent())
                inherited |= Stored(up) & SubtreeFlags;
        }
        return inherited;
    }

    void Drop(Records::iterator record)
    {
        QObject::disconnect(record->watch);
        Count(record->state, -1);
        m_records.erase(record);
    }

    void Count(TComponentState state, int delta)
    {
        if (state & SubtreeFlags)
            m_subtreeRecords += delta;
    }

    // The object's children are deleted next, inside its destructor: like the platform's
    // destroying of owned components, they report csDestroying while that happens, and keep
    // being designed when the dying object was.
    void Destroyed(QObject *dying)
    {
        if (!m_records.contains(dying))
            return;
        // Walk first: looking at ancestors may drop dead records and move this one.
        const TComponentState inherited = Inherited(dying);
        const auto found = m_records.find(dying);
        const TComponentState passedOn = csDestroying | ((found->state | inherited) & csDesigning);
        Drop(found);
        const QObjectList children = dying->children();
        for (QObject *child : children) {
            if (child)
                Store(child, Stored(child) | passedOn);
        }
    }

    Records m_records;
    int m_subtreeRecords = 0; // records holding csDesigning or csDestroying
    QObject m_context;        // receiver of the destroyed connections; they end with the table
};

TStateTable &Table()
{
    static TStateTable table;
    return table;
}

} // namespace

TComponentState ComponentState(const QObject *obj)
{
    return obj ? Table().Read(obj) : TComponentState();
}

void SetComponentState(QObject *obj, TComponentState state)
{
    if (obj)
        Table().Store(obj, state);
}

void IncludeState(QObject *obj, TComponentState state)
{
    if (obj)
        Table().Store(obj, Table().Stored(obj) | state);
}

void ExcludeState(QObject *obj, TComponentState state)
{
    if (obj)
        Table().Store(obj, Table().Stored(obj) & ~state);
}

int ComponentStateCount()
{
    return Table().Size();
}

} // namespace kv
