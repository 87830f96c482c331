#include "treesrc/ideTSLite_persistentsource.h"

namespace kv {

TKVPersistentSource::TKVPersistentSource(QObject *parent)
    : TComponentSource(parent)
{
}

TKVPersistentSource::~TKVPersistentSource() = default;

void TKVPersistentSource::SetPropName(const QString &Value)
{
    if (Value == m_propName)
        return;
    m_propName = Value;
    Refresh();
}

void TKVPersistentSource::SetTreeLink(QObject *Value)
{
    if (IsTreeLink(Value))
        return;
    TComponentSource::SetTreeLink(Value);
    Refresh();
}

void TKVPersistentSource::DoAfterInsert(qintptr NewId, qintptr ParentId, const QString &Caption,
                                        TNodeAttachMode Mode)
{
    TComponentSource::DoAfterInsert(NewId, ParentId == 0 ? ReservedNodeId : ParentId, Caption, Mode);
}

} // namespace kv
