#include "foundation/ideSystem_keys.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_objparams.h"

#include <QString>

namespace kv {

namespace {

constexpr char KeyboardClassID[] = "KeyboardClass.ID";
constexpr char KeyboardClassInitName[] = "KeyboardClass.InitName";
constexpr char KeyboardClassInitProc[] = "KeyboardClass.InitProc";

} // namespace

qsizetype TKeyList::AddKey(int Key, Qt::KeyboardModifiers Shift, TKeyboardMethod Method, qint8 State, qint8 NextState)
{
    m_keys.append(TKeyData{State, NextState, Key, Shift & KeyBindingModifiers, std::move(Method)});
    m_cachedQuery.reset();
    return m_keys.size() - 1;
}

qsizetype TKeyList::AddSimpleKey(int Key, Qt::KeyboardModifiers Shift, TKeyboardMethod Method)
{
    return AddKey(Key, Shift, std::move(Method), 0, 0);
}

qsizetype TKeyList::AddAllKey(int Key, Qt::KeyboardModifiers Shift, TKeyboardMethod Method)
{
    return AddKey(Key, Shift, std::move(Method), -1, 0);
}

void TKeyList::Delete(qsizetype Index)
{
    CheckListIndex(Index, m_keys.size());
    m_keys.removeAt(Index);
    m_cachedQuery.reset();
}

void TKeyList::Clear()
{
    m_keys.clear();
    m_cachedQuery.reset();
}

const TKeyData &TKeyList::Items(qsizetype Index) const
{
    CheckListIndex(Index, m_keys.size());
    return m_keys.at(Index);
}

const TKeyData *TKeyList::FindKeyData(int Key, Qt::KeyboardModifiers Shift, qint8 State) const
{
    const TQuery query{Key, Shift & KeyBindingModifiers, State};
    if (m_cachedQuery != query) {
        m_cachedIndex = -1;
        for (qsizetype i = m_keys.size() - 1; i >= 0; --i) {
            const TKeyData &entry = m_keys.at(i);
            if (entry.Key == query.Key && entry.Shift == query.Shift && (entry.State == State || entry.State == -1)) {
                m_cachedIndex = i;
                break;
            }
        }
        m_cachedQuery = query;
    }
    return m_cachedIndex < 0 ? nullptr : &m_keys.at(m_cachedIndex);
}

void RegisterKeyboardInitProc(const QMetaObject *ControlClass, const QString &Name, TKeyboardInitProc Proc)
{
    RegisterClassExt(ControlClass, {{KeyboardClassID, KeyboardClassID},
                                    {KeyboardClassInitName, Name},
                                    {KeyboardClassInitProc, Proc}});
}

TKeyboardInitProc GetKeyboardInitProc(const QMetaObject *ControlClass, const QString &Name)
{
    const TObjectParamListItem *item = GetItemInherited(
        ControlClass, {{KeyboardClassID, KeyboardClassID}, {KeyboardClassInitName, Name}}, cpIgnoreCase);
    return item ? ParamPointer<TKeyboardInitProc>(item->GetParamByName(QLatin1String(KeyboardClassInitProc)))
                : nullptr;
}

} // namespace kv
