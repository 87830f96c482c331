#include "platform/kvComponentEditor.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_inotifier.h"
#include "platform/kvRegistryHolder_p.h"
#include "platform/kvEditorGroups.h"
#include "platform/kvException.h"
#include "platform/kvIFormDesigner.h"
#include "platform/kvPropertyEditor.h"
#include "platform/kvPropertyRegistry.h"

#include <QObject>

#include <algorithm>
#include <vector>

namespace kv {

TComponentEditor::TComponentEditor(QObject *Component, IFormDesigner *Designer)
    : m_component(Component)
    , m_designer(Designer)
    , m_designerObject(dynamic_cast<QObject *>(Designer))
    , m_designerIsObject(!m_designerObject.isNull())
{
}

TComponentEditor::~TComponentEditor() = default;

IFormDesigner *TComponentEditor::Designer() const
{
    if (m_designerIsObject && m_designerObject.isNull())
        return nullptr;
    return m_designer;
}

void TComponentEditor::Edit()
{
    if (Component() && GetVerbCount() > 0)
        ExecuteVerb(0);
}

void TComponentEditor::ExecuteVerb(int)
{
}

QString TComponentEditor::GetVerb(int) const
{
    return {};
}

int TComponentEditor::GetVerbCount() const
{
    return 0;
}

void TComponentEditor::Copy()
{
}

namespace {

// How strongly an event marks the principal event; lower is better. QObject's own signals
// are on every component and so never its principal event while it has another.
int EventPreference(const QMetaMethod &Signal)
{
    const QByteArray name = Signal.name();
    if (name == "clicked")
        return 0;
    if (name == "triggered")
        return 1;
    if (name == "activated")
        return 2;
    const bool changed = name.endsWith("Changed");
    if (Signal.enclosingMetaObject() == &QObject::staticMetaObject)
        return changed ? 5 : 6;
    return changed ? 3 : 4;
}

// How many classes up from Class the declaring class Declaring is.
int ClassDistance(const QMetaObject *Class, const QMetaObject *Declaring)
{
    int distance = 0;
    for (const QMetaObject *meta = Class; meta && meta != Declaring; meta = meta->superClass())
        ++distance;
    return distance;
}

} // namespace

void TDefaultEditor::Edit()
{
    QObject *component = Component();
    if (!component)
        return;

    struct TCandidate
    {
        std::unique_ptr<TPropertyEditor> Editor;
        int Preference;
        int Distance;
        int Index;
    };
    std::vector<TCandidate> candidates;
    const QMetaObject *componentClass = component->metaObject();
    GetComponentProperties({component}, TTypeKinds(tkMethod), Designer(),
                           [&](std::unique_ptr<TPropertyEditor> Editor) {
                               const QMetaMethod signal = Editor->GetPropInfo()->Signal();
                               if (!signal.isValid())
                                   return;
                               candidates.push_back({std::move(Editor), EventPreference(signal),
                                                     ClassDistance(componentClass, signal.enclosingMetaObject()),
                                                     signal.methodIndex()});
                           });
    std::stable_sort(candidates.begin(), candidates.end(), [](const TCandidate &A, const TCandidate &B) {
        if (A.Preference != B.Preference)
            return A.Preference < B.Preference;
        if (A.Distance != B.Distance)
            return A.Distance < B.Distance;
        return A.Index < B.Index;
    });

    for (TCandidate &candidate : candidates) {
        bool proceed = true;
        EditProperty(*candidate.Editor, proceed);
        if (!proceed || !Component())
            break;
    }
}

void TDefaultEditor::EditProperty(TPropertyEditor &, bool &Continue)
{
    Continue = false;
}

namespace {

struct TRegistration
{
    const QMetaObject *Class;
    TComponentEditorClass Editor;
    int Group;
};

class TComponentEditorRegistry final : public INotifier
{
public:
    TComponentEditorRegistry() { RegisterEditorGroupRegistry(this); }
    ~TComponentEditorRegistry() { UnregisterEditorGroupRegistry(this); }
    TComponentEditorRegistry(const TComponentEditorRegistry &) = delete;
    TComponentEditorRegistry &operator=(const TComponentEditorRegistry &) = delete;

    void Add(const QMetaObject *Class, TComponentEditorClass Editor)
    {
        m_entries.push_back({Class, Editor, CurrentGroup()});
    }

    // The most derived registered class Class inherits; the newest of its registrations.
    TComponentEditorClass Find(const QMetaObject *Class) const
    {
        TComponentEditorClass best = nullptr;
        int bestDistance = 0;
        for (const TRegistration &entry : m_entries) {
            if (!Class->inherits(entry.Class))
                continue;
            const int distance = ClassDistance(Class, entry.Class);
            if (!best || distance <= bestDistance) {
                best = entry.Editor;
                bestDistance = distance;
            }
        }
        return best;
    }

    void Dispatch(TMessage &Message) override
    {
        if (Message.Msg != CM_FREEEDITGROUP)
            return;
        const int group = int(Message.WParam);
        std::erase_if(m_entries, [group](const TRegistration &entry) { return entry.Group == group; });
    }

private:
    std::vector<TRegistration> m_entries;
};

} // namespace

void RegisterComponentEditor(const QMetaObject *ComponentClass, TComponentEditorClass Editor)
{
    if (!ComponentClass || !Editor)
        throw Exception(LoadStr(SErrNilRegistration).arg(QStringLiteral("RegisterComponentEditor")));
    detail::LazyRegistry<TComponentEditorRegistry>().Add(ComponentClass, Editor);
}

std::unique_ptr<TComponentEditor> GetComponentEditor(QObject *Component, IFormDesigner *Designer)
{
    if (!Component)
        return nullptr;
    const auto &registry = detail::RegistryHolder<TComponentEditorRegistry>();
    const TComponentEditorClass editor = registry ? registry->Find(Component->metaObject()) : nullptr;
    if (editor)
        return editor(Component, Designer);
    return std::make_unique<TDefaultEditor>(Component, Designer);
}

void FinalizeComponentEditors()
{
    detail::RegistryHolder<TComponentEditorRegistry>().reset();
}

} // namespace kv
