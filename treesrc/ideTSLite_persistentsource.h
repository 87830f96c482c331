#pragma once

#include "kv_export.h"

// A source bound to one property of its tree link: it re-reads the property whenever the
// link or the property name changes.

#include "treesrc/ideTSLite_componentsource.h"

namespace kv {

class KV_EXPORT TKVPersistentSource : public TComponentSource
{
    Q_OBJECT

public:
    explicit TKVPersistentSource(QObject *parent = nullptr);
    ~TKVPersistentSource() override;

    QString PropName() const { return m_propName; }
    // Names compare case-sensitively here: another spelling is re-read.
    void SetPropName(const QString &Value);

    void SetTreeLink(QObject *Value) override;
    // A ParentId of 0 places the new node at the top level of this source.
    void DoAfterInsert(qintptr NewId, qintptr ParentId, const QString &Caption,
                       TNodeAttachMode Mode) override;

    // Re-reads the presented property from the tree link.
    virtual void Refresh() = 0;

private:
    QString m_propName;
};

} // namespace kv
