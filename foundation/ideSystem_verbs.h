#pragma once

#include "kv_export.h"

// Verbs: named global commands, each with a procedure that executes it and one that reports
// whether it is visible, enabled and checked. They live in the object parameter registry as
// entries of TVerbObject and are looked up by name ignoring case. User-interface thread only.

#include "foundation/ideSystem_objparams.h"

#include <QFlags>
#include <QList>
#include <QObject>
#include <QString>

namespace kv {

// The platform's bit order: bit 0 visible, bit 1 enabled, bit 2 checked.
enum TVerbState {
    vsVisible = 0x1,
    vsEnabled = 0x2,
    vsChecked = 0x4,
};
Q_DECLARE_FLAGS(TVerbStates, TVerbState)
Q_DECLARE_OPERATORS_FOR_FLAGS(TVerbStates)

// May add or remove states.
using TVerbStateProc = void (*)(TVerbStates &States);
using TVerbExecProc = void (*)();

struct KV_EXPORT TVerbData
{
    QString Name;
    TVerbStateProc StateProc = nullptr;
    TVerbExecProc ExecProc = nullptr;
};

// The registry key of verbs: verbs are registered as entries of this class.
class KV_EXPORT TVerbObject : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
};

// The parameters of a verb entry: its name and the addresses of its procedures (0 for none).
inline constexpr char SVerbNameParam[] = "Verb.Name";
inline constexpr char SVerbGetStateParam[] = "Verb.GetState";
inline constexpr char SVerbExecuteParam[] = "Verb.Execute";

// Registers a verb (stamped with the current editor group), then IDEChanged. A later
// registration of the same name does not replace the first: lookups find the first. Raises
// kv::Exception for an empty name.
KV_EXPORT TObjectParamListItem *RegisterVerb(const QString &Name, TVerbStateProc StateProc, TVerbExecProc ExecProc);
// RegisterVerb for each, in order, inside one IDE update bracket: observers see one change.
KV_EXPORT void RegisterVerbArray(const QList<TVerbData> &Verbs);

// The registration of the verb Name (ignoring case) with its procedures stored in StateProc
// and ExecProc; null, with the two left as they were, when there is none.
KV_EXPORT TObjectParamListItem *GetVerbProcAddr(const QString &Name, TVerbStateProc &StateProc, TVerbExecProc &ExecProc);
// Runs the verb's execute procedure, when the verb exists and has one. No IDE update bracket.
KV_EXPORT void CallVerbByName(const QString &Name);

// The binding of verbs to a control class: applies an item's current states to a control and
// sets or clears the control's click handler.
class TVerbListItem;
using TAssignVerbProc = void (*)(QObject *Control, TVerbListItem *Item);

inline constexpr char SAssignVerbParam[] = "AssignVerb";
inline constexpr char SAssignVerbProcParam[] = "AssignVerb.VerbProc";

// Registers Proc for controls of ControlClass and its descendants. Raises kv::Exception for
// a null class or procedure.
KV_EXPORT TObjectParamListItem *RegisterAssignVerbProc(const QMetaObject *ControlClass, TAssignVerbProc Proc);
// The procedure that serves a control of ControlClass: the first registration, in
// registration order, for ControlClass or one of its ancestors; null when none. Registration,
// when given, receives that registration.
KV_EXPORT TAssignVerbProc GetAssignVerbProc(const QMetaObject *ControlClass, TObjectParamListItem **Registration = nullptr);

} // namespace kv
