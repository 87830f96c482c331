#include "foundation/ideSystem_objparams.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_messages.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvRegistryHolder_p.h"
#include "platform/kvEditorGroups.h"
#include "platform/kvException.h"

#include <QMap>
#include <QObject>

#include <vector>

namespace kv {

// ---------------------------------------------------------------------------------------
// Values

QVariant NormalizeParamValue(const QVariant &Value)
{
    const QMetaType type = Value.metaType();
    switch (type.id()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return QVariant();
    case QMetaType::Bool:
    case QMetaType::LongLong:
    case QMetaType::QString:
        return Value;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return QVariant(Value.toLongLong());
    case QMetaType::ULongLong:
        return QVariant(static_cast<qlonglong>(Value.toULongLong()));
    case QMetaType::Float:
        return QVariant(Value.toDouble());
    case QMetaType::QByteArray:
        return QVariant(QString::fromUtf8(Value.toByteArray()));
    case QMetaType::VoidStar:
        return QVariant(static_cast<qlonglong>(reinterpret_cast<quintptr>(Value.value<void *>())));
    default:
        break;
    }
    if (type.flags() & QMetaType::IsEnumeration)
        return QVariant(Value.toLongLong());
    if (type.flags() & QMetaType::PointerToQObject)
        return QVariant::fromValue(Value.value<QObject *>());
    return Value;
}

namespace {

bool ValueMatches(const QVariant &Entry, const QVariant &Given, TCompareParams Compare)
{
    if (Entry.metaType() != Given.metaType())
        return false;
    if (!Given.isValid())
        return true; // both null
    if (Given.metaType().id() == QMetaType::QString) {
        const QString &entry = *static_cast<const QString *>(Entry.constData());
        const QString &given = *static_cast<const QString *>(Given.constData());
        const Qt::CaseSensitivity cs = Compare.testFlag(cpIgnoreCase) ? Qt::CaseInsensitive : Qt::CaseSensitive;
        if (Compare.testFlag(cpPartialCompare))
            return entry.contains(given, cs) || given.contains(entry, cs);
        return entry.compare(given, cs) == 0;
    }
    return Entry == Given;
}

QString NameKey(QAnyStringView Name)
{
    return Name.toString().toCaseFolded();
}

} // namespace

// ---------------------------------------------------------------------------------------
// Entries

class TObjectParamListItem::Private
{
public:
    struct TParam
    {
        QString Name;
        QVariant Value;
    };

    QMap<QString, TParam> params; // key: the case-folded name
    const void *ptr = nullptr;
    bool isClass = false;
    int group = -1;
    bool removed = false;                // taken out of the list, not yet freed
    QMetaObject::Connection objectGone; // object entries: removal when the object dies
};

TObjectParamListItem::TObjectParamListItem(const void *Ptr, bool IsClass, int Group)
    : d(std::make_unique<Private>())
{
    d->ptr = Ptr;
    d->isClass = IsClass;
    d->group = Group;
}

TObjectParamListItem::~TObjectParamListItem()
{
    QObject::disconnect(d->objectGone);
}

QVariant TObjectParamListItem::GetParamByName(QAnyStringView Name) const
{
    const auto found = d->params.constFind(NameKey(Name));
    return found == d->params.cend() ? QVariant() : found->Value;
}

void TObjectParamListItem::SetParamByName(const TObjectParam &Param)
{
    Private::TParam &param = d->params[NameKey(Param.Name)];
    if (param.Name.isEmpty())
        param.Name = Param.Name;
    param.Value = Param.Value;
}

QStringList TObjectParamListItem::ParamNames() const
{
    QStringList names;
    names.reserve(d->params.size());
    for (const Private::TParam &param : std::as_const(d->params))
        names.append(param.Name);
    return names;
}

bool TObjectParamListItem::Matches(const TObjectParams &Params, TCompareParams Compare) const
{
    for (const TObjectParam &param : Params) {
        if (!ValueMatches(GetParamByName(param.Name), param.Value, Compare))
            return false;
    }
    return true;
}

bool TObjectParamListItem::IsClass() const
{
    return d->isClass;
}

const void *TObjectParamListItem::GetDataPtr() const
{
    return d->ptr;
}

const QMetaObject *TObjectParamListItem::GetClassPtr() const
{
    return d->isClass ? static_cast<const QMetaObject *>(d->ptr) : nullptr;
}

QObject *TObjectParamListItem::GetObjectPtr() const
{
    // Entries of an object leave the list when the object dies, so the pointer is live.
    return d->isClass ? nullptr : static_cast<QObject *>(const_cast<void *>(d->ptr));
}

int TObjectParamListItem::Group() const
{
    return d->group;
}

// ---------------------------------------------------------------------------------------
// The registry

class TObjectParamList::Private
{
public:
    using TItemPtr = std::unique_ptr<TObjectParamListItem>;

    std::vector<TItemPtr> items;
    int walks = 0;                 // ForEveryClass calls running
    std::vector<TItemPtr> removed; // entries freed during a walk, kept until it ends

    TObjectParamListItem *Append(TItemPtr item, const TObjectParams &params)
    {
        for (const TObjectParam &param : params)
            item->SetParamByName(param);
        items.push_back(std::move(item));
        return items.back().get();
    }

    // Takes the entries out first and frees them afterwards: freeing tells free-notification
    // handlers, which may call back into the list.
    template <typename Pred>
    void RemoveIf(Pred pred)
    {
        std::vector<TItemPtr> taken;
        for (auto it = items.begin(); it != items.end();) {
            if (pred(**it)) {
                (*it)->d->removed = true;
                taken.push_back(std::move(*it));
                it = items.erase(it);
            } else {
                ++it;
            }
        }
        if (walks > 0)
            std::move(taken.begin(), taken.end(), std::back_inserter(removed));
    }

    template <typename Pred>
    TObjectParamListItem *FirstClassEntry(Pred classMatches, const TObjectParams &params,
                                          TCompareParams compare) const
    {
        for (const TItemPtr &item : items) {
            if (item->IsClass() && classMatches(item->GetClassPtr()) && item->Matches(params, compare))
                return item.get();
        }
        return nullptr;
    }
};

TObjectParamList::TObjectParamList() : d(std::make_unique<Private>())
{
    RegisterNotifier(this);
    RegisterEditorGroupRegistry(this);
}

TObjectParamList::~TObjectParamList()
{
    UnregisterEditorGroupRegistry(this);
    UnregisterNotifier(this);
    Clear();
}

TObjectParamListItem *TObjectParamList::RegisterClassExt(const QMetaObject *Class, const TObjectParams &Params)
{
    if (!Class)
        throw Exception(LoadStr(SErrNilRegistration).arg(QStringLiteral("RegisterClassExt")));
    return d->Append(Private::TItemPtr(new TObjectParamListItem(Class, true, CurrentGroup())), Params);
}

TObjectParamListItem *TObjectParamList::RegisterObjectEx(QObject *Obj, const TObjectParams &Params)
{
    if (!Obj)
        throw Exception(LoadStr(SErrNilRegistration).arg(QStringLiteral("RegisterObjectEx")));
    Private::TItemPtr item(new TObjectParamListItem(Obj, false, CurrentGroup()));
    item->d->objectGone = QObject::connect(Obj, &QObject::destroyed, [this, Obj] { UnRegisterClassExt(Obj); });
    return d->Append(std::move(item), Params);
}

void TObjectParamList::UnRegisterClassExt(const void *Ptr)
{
    d->RemoveIf([Ptr](const TObjectParamListItem &item) { return item.GetDataPtr() == Ptr; });
}

void TObjectParamList::DeleteGroup(int Group)
{
    d->RemoveIf([Group](const TObjectParamListItem &item) { return item.Group() == Group; });
}

void TObjectParamList::Clear()
{
    d->RemoveIf([](const TObjectParamListItem &) { return true; });
}

qsizetype TObjectParamList::Count() const
{
    return qsizetype(d->items.size());
}

TObjectParamListItem *TObjectParamList::Items(qsizetype Index) const
{
    CheckListIndex(Index, Count());
    return d->items[size_t(Index)].get();
}

TObjectParamListItem *TObjectParamList::ItemByDataPtr(const void *Ptr) const
{
    for (const Private::TItemPtr &item : d->items) {
        if (item->GetDataPtr() == Ptr)
            return item.get();
    }
    return nullptr;
}

TObjectParamListItem *TObjectParamList::GetItemEx(const QMetaObject *Class, const TObjectParams &Params,
                                                  TCompareParams Compare) const
{
    if (!Class)
        return nullptr;
    return d->FirstClassEntry([Class](const QMetaObject *entry) { return entry->inherits(Class); }, Params,
                              Compare);
}

QList<TObjectParamListItem *> TObjectParamList::GetItemsEx(const QMetaObject *Class, const TObjectParams &Params,
                                                           TCompareParams Compare) const
{
    QList<TObjectParamListItem *> found;
    if (!Class)
        return found;
    for (const Private::TItemPtr &item : d->items) {
        if (item->IsClass() && item->GetClassPtr()->inherits(Class) && item->Matches(Params, Compare))
            found.append(item.get());
    }
    return found;
}

TObjectParamListItem *TObjectParamList::GetItemInherited(const QMetaObject *Class, const TObjectParams &Params,
                                                         TCompareParams Compare) const
{
    if (!Class)
        return nullptr;
    return d->FirstClassEntry([Class](const QMetaObject *entry) { return Class->inherits(entry); }, Params,
                              Compare);
}

TObjectParamListItem *TObjectParamList::GetItemEqual(const QMetaObject *Class, const TObjectParams &Params,
                                                     TCompareParams Compare) const
{
    if (!Class)
        return nullptr;
    return d->FirstClassEntry([Class](const QMetaObject *entry) { return entry == Class; }, Params, Compare);
}

TObjectParamListItem *TObjectParamList::GetItemExParent(const QMetaObject *Class, const QMetaObject *StopClass,
                                                        const TObjectParams &Params,
                                                        TCompareParams Compare) const
{
    for (const QMetaObject *cls = Class; cls; cls = cls->superClass()) {
        if (TObjectParamListItem *item = GetItemEx(cls, Params, Compare))
            return item;
        if (cls == StopClass)
            break;
    }
    return nullptr;
}

QList<const QMetaObject *> TObjectParamList::GetRegisteredClasses(const QMetaObject *Class) const
{
    QList<const QMetaObject *> classes;
    for (const TObjectParamListItem *item : GetItemsEx(Class)) {
        if (!classes.contains(item->GetClassPtr()))
            classes.append(item->GetClassPtr());
    }
    return classes;
}

QVariant TObjectParamList::ForEveryClass(const QMetaObject *Class, const QVariant &Params,
                                         const TObjectParamListIterator &Iterator)
{
    QVariant result;
    if (!Iterator)
        return result;
    const QList<TObjectParamListItem *> entries = GetItemsEx(Class);

    struct TWalk
    {
        Private &list;
        explicit TWalk(Private &l) : list(l) { ++list.walks; }
        ~TWalk()
        {
            if (--list.walks == 0) {
                // Freed outside the member so that handlers calling back find it empty.
                std::vector<Private::TItemPtr> removed = std::move(list.removed);
                list.removed.clear();
            }
        }
    } walk(*d);

    for (TObjectParamListItem *item : entries) {
        if (item->d->removed)
            continue;
        bool finish = false;
        result = Iterator(item, Params, finish);
        if (finish)
            break;
    }
    return result;
}

void TObjectParamList::Dispatch(TMessage &Message)
{
    if (Message.Msg == CM_FREEEDITGROUP)
        DeleteGroup(int(Message.WParam));
}

// ---------------------------------------------------------------------------------------
// The process-wide registry

TObjectParamList &ObjectParamList()
{
    return detail::LazyRegistry<TObjectParamList>();
}

void FinalizeObjectParamList()
{
    detail::RegistryHolder<TObjectParamList>().reset();
}

TObjectParamListItem *RegisterClassExt(const QMetaObject *Class, const TObjectParams &Params)
{
    return ObjectParamList().RegisterClassExt(Class, Params);
}

TObjectParamListItem *RegisterObjectEx(QObject *Obj, const TObjectParams &Params)
{
    return ObjectParamList().RegisterObjectEx(Obj, Params);
}

void UnRegisterClassExt(const void *Ptr)
{
    ObjectParamList().UnRegisterClassExt(Ptr);
}

TObjectParamListItem *GetItemEx(const QMetaObject *Class, const TObjectParams &Params, TCompareParams Compare)
{
    return ObjectParamList().GetItemEx(Class, Params, Compare);
}

QList<TObjectParamListItem *> GetItemsEx(const QMetaObject *Class, const TObjectParams &Params,
                                         TCompareParams Compare)
{
    return ObjectParamList().GetItemsEx(Class, Params, Compare);
}

const QMetaObject *GetClassEx(const QMetaObject *Class, const TObjectParams &Params, TCompareParams Compare)
{
    const TObjectParamListItem *item = GetItemEx(Class, Params, Compare);
    return item ? item->GetClassPtr() : nullptr;
}

TObjectParamListItem *GetItemInherited(const QMetaObject *Class, const TObjectParams &Params,
                                       TCompareParams Compare)
{
    return ObjectParamList().GetItemInherited(Class, Params, Compare);
}

const QMetaObject *GetClassInherited(const QMetaObject *Class, const TObjectParams &Params,
                                     TCompareParams Compare)
{
    const TObjectParamListItem *item = GetItemInherited(Class, Params, Compare);
    return item ? item->GetClassPtr() : nullptr;
}

TObjectParamListItem *GetItemEqual(const QMetaObject *Class, const TObjectParams &Params, TCompareParams Compare)
{
    return ObjectParamList().GetItemEqual(Class, Params, Compare);
}

TObjectParamListItem *GetItemExParent(const QMetaObject *Class, const QMetaObject *StopClass,
                                      const TObjectParams &Params, TCompareParams Compare)
{
    return ObjectParamList().GetItemExParent(Class, StopClass, Params, Compare);
}

QList<const QMetaObject *> GetRegisteredClasses(const QMetaObject *Class)
{
    return ObjectParamList().GetRegisteredClasses(Class);
}

} // namespace kv
