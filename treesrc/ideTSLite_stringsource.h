#pragma once

#include "kv_export.h"

// A source that shows a string-list property of its tree link line by line. Node ids are
// line numbers counted from 1; lines have no children.

#include "treesrc/ideTSLite_persistentsource.h"

#include <QMetaProperty>
#include <QStringList>

namespace kv {

class KV_EXPORT TCustomKVStringSource : public TKVPersistentSource
{
    Q_OBJECT

public:
    explicit TCustomKVStringSource(QObject *parent = nullptr);
    ~TCustomKVStringSource() override;

    // Whether the link has a QStringList property named PropName: there are lines to show.
    bool HasStrings() const;
    // The lines as the link holds them now; empty without strings.
    QStringList Strings() const;

    void Refresh() override;
    void GetItems(qintptr ParentId, const TIteratorProc &Proc) override;
    // Replaces line Id; nothing for an id that names no line.
    void SetCaption(qintptr Id, const QString &Caption) override;
    void Clear() override;
    bool ActionAllowed(qintptr Id, int Action) override;
    // Moves line Id before line DestId (naInsert) or to the end (any other mode), then has
    // the views re-read the lines and select the moved one.
    void MoveTo(qintptr Id, qintptr DestId, TNodeAttachMode Mode) override;
    // The text of line Id; empty for an id that names no line.
    QString GetDisplayName(qintptr Id) override;

private:
    // Writes the lines back; false when the property cannot be written.
    bool WriteStrings(const QStringList &Strings);
    bool IsLine(qintptr Id, qsizetype Count) const { return Id >= 1 && Id <= Count; }

    QMetaProperty m_property;
};

// The string source as a component: everything it needs is published.
class KV_EXPORT TKVStringSource : public TCustomKVStringSource
{
    Q_OBJECT
    Q_PROPERTY(QObject *Link READ GetTreeLink WRITE SetTreeLink)
    Q_PROPERTY(QString PropName READ PropName WRITE SetPropName)
    Q_PROPERTY(QObject *LargeImages READ GetLargeImages WRITE SetLargeImages)
    Q_PROPERTY(QObject *SmallImages READ GetSmallImages WRITE SetSmallImages)
    Q_PROPERTY(QObject *StateImages READ GetStateImages WRITE SetStateImages)

public:
    Q_INVOKABLE explicit TKVStringSource(QObject *parent = nullptr);
    ~TKVStringSource() override;
};

} // namespace kv
