#include "platform/kvPropertyRegistry.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_inotifier.h"
#include "platform/kvRegistryHolder_p.h"
#include "platform/kvEditorGroups.h"
#include "platform/kvException.h"
#include "platform/kvMethodProperty.h"
#include "platform/kvPropAliases.h"
#include "platform/kvPropEdits.h"
#include "platform/kvPropEdits_types.h"

#include <QHash>
#include <QObject>

#include <algorithm>
#include <unordered_map>

namespace kv {

namespace {

struct TEditorEntry
{
    PTypeInfo Type;
    const QMetaObject *ComponentClass;
    PTypeInfo OwnerType;
    QString Name;
    TPropertyEditorClass Editor;
    int Group;
    bool BuiltIn;
};

// The editor class of each property and signal of one class, for one state of the registry.
struct TClassEditors
{
    quint64 Generation = 0;
    std::vector<TPropertyEditorClass> Properties;
    std::vector<TPropertyEditorClass> Signals;
};

// Where each property and signal of one class is in another, by name (-1: not there).
struct TClassMatch
{
    std::vector<int> Properties;
    std::vector<int> Signals;
};

struct TClassPairHash
{
    size_t operator()(const std::pair<const QMetaObject *, const QMetaObject *> &Pair) const noexcept
    {
        return std::hash<const void *>()(Pair.first) * 31 + std::hash<const void *>()(Pair.second);
    }
};

int ClassDepth(const QMetaObject *Class)
{
    int depth = 0;
    for (; Class; Class = Class->superClass())
        ++depth;
    return depth;
}

// A pointer that the object can't be given another of is to a part of the object (shown with
// its properties); one it can is a reference to another component.
TPropertyEditorClass KindEditor(PTypeInfo Type, bool Writable)
{
    switch (Type->Kind) {
    case tkInteger:
        return PropertyEditorClass<TIntegerProperty>;
    case tkChar:
    case tkWChar:
        return PropertyEditorClass<TCharProperty>;
    case tkEnumeration:
        return Type->MetaType.id() == QMetaType::Bool ? PropertyEditorClass<TBoolProperty>
                                                      : PropertyEditorClass<TEnumProperty>;
    case tkFloat:
        return PropertyEditorClass<TFloatProperty>;
    case tkString:
    case tkLString:
    case tkWString:
        return PropertyEditorClass<TStringProperty>;
    case tkSet:
        return PropertyEditorClass<TSetProperty>;
    case tkClass:
        return Type->ClassType && Writable ? PropertyEditorClass<TComponentProperty> : PropertyEditorClass<TClassProperty>;
    case tkMethod:
        return PropertyEditorClass<TMethodProperty>;
    case tkVariant:
        return PropertyEditorClass<TVariantProperty>;
    case tkInt64:
        return PropertyEditorClass<TInt64Property>;
    case tkUnknown:
        return PropertyEditorClass<TUnknownProperty>;
    default:
        return nullptr;
    }
}

class TPropertyRegistry final : public INotifier
{
public:
    TPropertyRegistry() { RegisterEditorGroupRegistry(this); }

    // The standard editors, which no group owns. They register through the public functions,
    // so this runs once the registry is in place.
    void RegisterBuiltIns()
    {
        m_builtIn = true;
        // The component name and the captions have editors of their own in every host.
        Add(TypeInfo<QString>(), &QObject::staticMetaObject, nullptr, QStringLiteral("objectName"),
            PropertyEditorClass<TComponentNameProperty>);
        for (const QString &name : QtPropertyNames(QStringLiteral("Caption")))
            Add(TypeInfo<QString>(), nullptr, nullptr, name, PropertyEditorClass<TCaptionProperty>);
        RegisterTypePropertyEditors();
        m_builtIn = false;
    }

    ~TPropertyRegistry() { UnregisterEditorGroupRegistry(this); }

    void Add(PTypeInfo Type, const QMetaObject *ComponentClass, PTypeInfo OwnerType, const QString &Name,
             TPropertyEditorClass Editor)
    {
        m_entries.push_back({Type, ComponentClass, OwnerType, Name, Editor, CurrentGroup(), m_builtIn});
        ++m_generation;
    }

    TPropertyEditorClass Find(PTypeInfo Type, const QMetaObject *ComponentClass, PTypeInfo OwnerType,
                              const QString &Name, bool Writable = true) const
    {
        const TEditorEntry *best = nullptr;
        for (auto it = m_entries.rbegin(); it != m_entries.rend(); ++it) {
            if (Matches(*it, Type, ComponentClass, OwnerType, Name) && (!best || Better(*it, *best, Type)))
                best = &*it;
        }
        return best ? best->Editor : KindEditor(Type, Writable);
    }

    // The editor classes of a class's properties and signals, kept until the registry changes.
    const TClassEditors &EditorsOf(const TClassPropInfos &Infos)
    {
        TClassEditors &editors = m_classEditors[Infos.Class()];
        if (editors.Generation != m_generation || editors.Properties.size() != Infos.Properties().size()) {
            editors.Generation = m_generation;
            editors.Properties.clear();
            editors.Signals.clear();
            for (const TPropInfoPtr &info : Infos.Properties())
                editors.Properties.push_back(
                    Find(info->PropType(), Infos.Class(), nullptr, info->Name(), info->IsWritable()));
            for (const TPropInfoPtr &info : Infos.Signals())
                editors.Signals.push_back(Find(info->PropType(), Infos.Class(), nullptr, info->Name()));
        }
        return editors;
    }

    // Computed once per pair of classes: a selection of many objects must not look names up
    // per object or per call.
    const TClassMatch &MatchOf(const TClassPropInfos &From, const TClassPropInfos &To)
    {
        auto [it, inserted] = m_classMatches.try_emplace({From.Class(), To.Class()});
        if (inserted) {
            auto indexes = [](const std::vector<TPropInfoPtr> &from, const std::vector<TPropInfoPtr> &to,
                              const TPropInfoPtr *(TClassPropInfos::*find)(const QString &) const,
                              const TClassPropInfos &toInfos) {
                std::vector<int> result;
                result.reserve(from.size());
                for (const TPropInfoPtr &info : from) {
                    const TPropInfoPtr *found = (toInfos.*find)(info->Name());
                    result.push_back(found ? int(found - to.data()) : -1);
                }
                return result;
            };
            it->second.Properties = indexes(From.Properties(), To.Properties(), &TClassPropInfos::FindProperty, To);
            it->second.Signals = indexes(From.Signals(), To.Signals(), &TClassPropInfos::FindSignal, To);
        }
        return it->second;
    }

    void Dispatch(TMessage &Message) override
    {
        if (Message.Msg != CM_FREEEDITGROUP)
            return;
        const int group = int(Message.WParam);
        std::erase_if(m_entries, [group](const TEditorEntry &entry) { return !entry.BuiltIn && entry.Group == group; });
        ++m_generation;
        // A freed group's package may take its classes with it; their addresses may come back
        // as other classes.
        m_classEditors.clear();
        m_classMatches.clear();
        ClearClassPropInfos();
    }

private:
    static bool Matches(const TEditorEntry &Entry, PTypeInfo Type, const QMetaObject *ComponentClass,
                        PTypeInfo OwnerType, const QString &Name)
    {
        if (Entry.Type != Type
            && !(Entry.Type->Kind == tkClass && Type->Kind == tkClass && Entry.Type->ClassType && Type->ClassType
                 && Type->ClassType->inherits(Entry.Type->ClassType)))
            return false;
        if (Entry.OwnerType) {
            if (Entry.OwnerType != OwnerType)
                return false;
        } else if (Entry.ComponentClass) {
            if (!ComponentClass || !ComponentClass->inherits(Entry.ComponentClass))
                return false;
        }
        return Entry.Name.isEmpty() || Entry.Name.compare(Name, Qt::CaseInsensitive) == 0;
    }

    // Whether Candidate (older) beats Best (newer): an exact type, then a name, then a class
    // (the more derived the better); among equals the newer stays.
    static bool Better(const TEditorEntry &Candidate, const TEditorEntry &Best, PTypeInfo Type)
    {
        const bool candidateExact = Candidate.Type == Type;
        const bool bestExact = Best.Type == Type;
        if (candidateExact != bestExact)
            return candidateExact;
        if (!candidateExact && Candidate.Type != Best.Type)
            return ClassDepth(Candidate.Type->ClassType) > ClassDepth(Best.Type->ClassType);
        const bool candidateNamed = !Candidate.Name.isEmpty();
        const bool bestNamed = !Best.Name.isEmpty();
        if (candidateNamed != bestNamed)
            return candidateNamed;
        const int candidateDepth = Candidate.OwnerType ? 1 : ClassDepth(Candidate.ComponentClass);
        const int bestDepth = Best.OwnerType ? 1 : ClassDepth(Best.ComponentClass);
        return candidateDepth > bestDepth;
    }

    std::vector<TEditorEntry> m_entries;
    std::unordered_map<const QMetaObject *, TClassEditors> m_classEditors;
    std::unordered_map<std::pair<const QMetaObject *, const QMetaObject *>, TClassMatch, TClassPairHash> m_classMatches;
    quint64 m_generation = 1;
    bool m_builtIn = false;
};

TPropertyRegistry &Registry()
{
    std::unique_ptr<TPropertyRegistry> &registry = detail::RegistryHolder<TPropertyRegistry>();
    if (!registry) {
        registry = std::make_unique<TPropertyRegistry>();
        registry->RegisterBuiltIns();
    }
    return *registry;
}

void CheckRegistration(PTypeInfo PropertyType, TPropertyEditorClass Editor)
{
    if (!PropertyType || !Editor)
        throw Exception(LoadStr(SErrNilRegistration).arg(QStringLiteral("RegisterPropertyEditor")));
}

// One class of the selection: its properties and signals and their editor classes.
struct TSelectionClass
{
    const TClassPropInfos *Infos;
    const TClassEditors *Editors;
};

} // namespace

void RegisterPropertyEditor(PTypeInfo PropertyType, const QMetaObject *ComponentClass,
                            const QString &PropertyName, TPropertyEditorClass Editor)
{
    CheckRegistration(PropertyType, Editor);
    Registry().Add(PropertyType, ComponentClass, nullptr, PropertyName, Editor);
}

void RegisterPropertyEditor(PTypeInfo PropertyType, PTypeInfo OwnerType, const QString &PropertyName,
                            TPropertyEditorClass Editor)
{
    CheckRegistration(PropertyType, Editor);
    Registry().Add(PropertyType, nullptr, OwnerType, PropertyName, Editor);
}

TPropertyEditorClass GetEditorClass(PTypeInfo PropertyType, const QMetaObject *ComponentClass,
                                    PTypeInfo OwnerType, const QString &PropertyName)
{
    if (!PropertyType)
        return nullptr;
    return Registry().Find(PropertyType, ComponentClass, OwnerType, PropertyName);
}

void GetComponentProperties(const QList<QObject *> &Selection, TTypeKinds Filter, IFormDesigner *Designer,
                            const TGetPropEditProc &Proc)
{
    QList<QObject *> objects = Selection; // shared, unless there are nulls to drop
    if (objects.contains(nullptr))
        objects.removeAll(nullptr);
    if (objects.isEmpty() || !Proc)
        return;

    TPropertyRegistry &registry = Registry();
    // The distinct classes of the selection, and each object's.
    std::vector<TSelectionClass> classes;
    std::vector<int> classOfObject;
    classOfObject.reserve(size_t(objects.size()));
    // Selections mostly hold few classes: the last one found is tried first, then a scan.
    std::vector<const QMetaObject *> classObjects;
    int last = -1;
    for (QObject *object : std::as_const(objects)) {
        const QMetaObject *metaObject = object->metaObject();
        if (last < 0 || classObjects[size_t(last)] != metaObject) {
            const auto found = std::find(classObjects.cbegin(), classObjects.cend(), metaObject);
            last = int(found - classObjects.cbegin());
            if (found == classObjects.cend()) {
                const TClassPropInfos &infos = GetClassPropInfos(metaObject);
                classes.push_back({&infos, &registry.EditorsOf(infos)});
                classObjects.push_back(metaObject);
            }
        }
        classOfObject.push_back(last);
    }

    const auto context = std::make_shared<const TEditorContext>(
        Designer, objects, classes.size() > 1 ? std::move(classOfObject) : std::vector<int>());
    const bool several = objects.size() > 1;
    const TSelectionClass &first = classes.front();
    std::vector<const TClassMatch *> matches(classes.size(), nullptr);
    for (size_t c = 1; c < classes.size(); ++c)
        matches[c] = &registry.MatchOf(*first.Infos, *classes[c].Infos);

    auto enumerate = [&](bool signalList) {
        auto infosOf = [signalList](const TSelectionClass &c) -> const std::vector<TPropInfoPtr> & {
            return signalList ? c.Infos->Signals() : c.Infos->Properties();
        };
        auto editorsOf = [signalList](const TSelectionClass &c) -> const std::vector<TPropertyEditorClass> & {
            return signalList ? c.Editors->Signals : c.Editors->Properties;
        };
        const std::vector<TPropInfoPtr> &firstInfos = infosOf(first);
        std::vector<const TPropInfoPtr *> matching(classes.size(), nullptr);
        for (size_t p = 0; p < firstInfos.size(); ++p) {
            const TPropInfoPtr &info = firstInfos[p];
            if (!Filter.Contains(info->PropType()->Kind))
                continue;
            const TPropertyEditorClass editorClass = editorsOf(first)[p];
            if (!editorClass)
                continue;

            // The same property (name, type and editor class) in every other class.
            matching[0] = &info;
            bool common = true;
            bool sameInfo = true;
            for (size_t c = 1; c < classes.size() && common; ++c) {
                const int index = (signalList ? matches[c]->Signals : matches[c]->Properties)[p];
                const TPropInfoPtr *other = index < 0 ? nullptr : &infosOf(classes[c])[size_t(index)];
                common = other && (*other)->PropType() == info->PropType()
                         && editorsOf(classes[c])[size_t(index)] == editorClass;
                matching[c] = other;
                sameInfo = sameInfo && common && other->get() == info.get();
            }
            if (!common)
                continue;

            TEditorInit init{context, info, {}};
            if (!sameInfo) {
                init.Infos.reserve(classes.size());
                for (const TPropInfoPtr *classInfo : matching)
                    init.Infos.push_back(*classInfo);
            }
            std::unique_ptr<TPropertyEditor> editor = editorClass(std::move(init));
            if (several && !(editor->GetAttributes() & paMultiSelect))
                continue;
            Proc(std::move(editor));
        }
    };

    enumerate(false);
    if (Filter.Contains(tkMethod))
        enumerate(true);
}

void FinalizePropertyEditors()
{
    detail::RegistryHolder<TPropertyRegistry>().reset();
    ClearClassPropInfos();
}

} // namespace kv
