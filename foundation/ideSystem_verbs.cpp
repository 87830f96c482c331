#include "foundation/ideSystem_verbs.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvException.h"

namespace kv {

namespace {

TObjectParamListItem *FindVerb(const QString &Name)
{
    return GetItemEx(&TVerbObject::staticMetaObject, {{SVerbNameParam, Name}}, cpIgnoreCase);
}

} // namespace

TObjectParamListItem *RegisterVerb(const QString &Name, TVerbStateProc StateProc, TVerbExecProc ExecProc)
{
    if (Name.isEmpty())
        throw Exception(LoadStr(SErrVerbNoName));
    TObjectParamListItem *item = RegisterClassExt(&TVerbObject::staticMetaObject,
                                                  {{SVerbNameParam, Name},
                                                   {SVerbGetStateParam, StateProc},
                                                   {SVerbExecuteParam, ExecProc}});
    IDEChanged();
    return item;
}

void RegisterVerbArray(const QList<TVerbData> &Verbs)
{
    IDEBeginUpdate();
    try {
        for (const TVerbData &verb : Verbs)
            RegisterVerb(verb.Name, verb.StateProc, verb.ExecProc);
    } catch (...) {
        // The bracket closes also after a failed registration; the failure is what the
        // caller hears of.
        Guarded([] { IDEEndUpdate(); });
        throw;
    }
    IDEEndUpdate();
}

TObjectParamListItem *GetVerbProcAddr(const QString &Name, TVerbStateProc &StateProc, TVerbExecProc &ExecProc)
{
    TObjectParamListItem *item = FindVerb(Name);
    if (item) {
        StateProc = ParamPointer<TVerbStateProc>(item->GetParamByName(SVerbGetStateParam));
        ExecProc = ParamPointer<TVerbExecProc>(item->GetParamByName(SVerbExecuteParam));
    }
    return item;
}

void CallVerbByName(const QString &Name)
{
    TVerbStateProc state = nullptr;
    TVerbExecProc exec = nullptr;
    if (GetVerbProcAddr(Name, state, exec) && exec)
        exec();
}

TObjectParamListItem *RegisterAssignVerbProc(const QMetaObject *ControlClass, TAssignVerbProc Proc)
{
    if (!ControlClass || !Proc)
        throw Exception(LoadStr(SErrNilRegistration).arg(QStringLiteral("RegisterAssignVerbProc")));
    return RegisterClassExt(ControlClass, {{SAssignVerbParam, QString()}, {SAssignVerbProcParam, Proc}});
}

TAssignVerbProc GetAssignVerbProc(const QMetaObject *ControlClass, TObjectParamListItem **Registration)
{
    TObjectParamListItem *item = GetItemInherited(ControlClass, {{SAssignVerbParam, QString()}});
    if (Registration)
        *Registration = item;
    return item ? ParamPointer<TAssignVerbProc>(item->GetParamByName(SAssignVerbProcParam)) : nullptr;
}

} // namespace kv
