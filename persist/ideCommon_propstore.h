#pragma once

#include "kv_export.h"

// The settings store of a form or data module: it saves chosen properties of the owner and
// of other components, and the window position of a form, when the form closes (the close
// accepted) or the data module is destroyed, and restores them once when the owner is
// loaded (read from a stream, or, for a form built in code, when it is first polished).
//
// The stored value is one binary setting at GetKey(): a record per group of PropList (the
// entries naming one component in a row) in the component streams' value encoding: True,
// the component's name, its property names as lines, and the property-subset stream of
// those properties; "0" alone when the component was missing; False after the last group.
// Reading matches records to groups by the component's name, so that after PropList
// changed a record no group names is passed over and a group reads only the properties both
// name.

#include "platform/kvPersistent.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class QIODevice;

namespace kv {

class TFiler;
class TReader;

class KV_EXPORT TKVPropStore : public QObject, public TPersistent
{
    Q_OBJECT
    Q_PROPERTY(bool IgnoreErrors READ IgnoreErrors WRITE SetIgnoreErrors)
    Q_PROPERTY(QString Key READ Key WRITE SetKey)
    Q_PROPERTY(QStringList PropList READ PropList WRITE SetPropList)
    Q_PROPERTY(bool StorePos READ StorePos WRITE SetStorePos)
    Q_PROPERTY(QString Version READ Version STORED false)

public:
    // Hooks the owner (the root above parent) unless designing.
    Q_INVOKABLE explicit TKVPropStore(QObject *parent = nullptr);
    ~TKVPropStore() override;

    // Reading errors are passed over; otherwise each is asked about (OK goes on, Cancel
    // ends the load). Default true.
    bool IgnoreErrors() const { return m_ignoreErrors; }
    void SetIgnoreErrors(bool Value) { m_ignoreErrors = Value; }
    // The setting's name; empty: GetKey() makes one.
    const QString &Key() const { return m_key; }
    void SetKey(const QString &Value) { m_key = Value; }
    // Each entry "Component.Property" (the component owned by the owner, else
    // "Owner.Component", else a global path "Form2.Component" as GlobalFindObject finds it),
    // or "Property" of the owner itself.
    const QStringList &PropList() const { return m_propList; }
    void SetPropList(const QStringList &Value) { m_propList = Value; }
    // Whether a form owner's window position is kept too. Default true.
    bool StorePos() const { return m_storePos; }
    void SetStorePos(bool Value) { m_storePos = Value; }
    QString Version() const;

    // Key, or the owner's name followed by the store's own ("MainForm" + "KVPropStore1").
    QString GetKey() const;

    // Unless SaveChanges is answered as processed: writes the records at GetKey() and, with
    // StorePos and a form owner, its window position.
    virtual void Save();
    // Unless LoadChanges is answered as processed: reads the records at GetKey() when there
    // are any and, with StorePos and a form owner, the window position.
    virtual void Load();
    void SaveToStream(QIODevice &Stream);
    void LoadFromStream(QIODevice &Stream);
    // Writes the records of the groups with Filer (a TWriter), or reads them (a TReader).
    void ProcessAllProps(TFiler &Filer, bool Writing);

    // Hooks the owner and loads, inside the global-loading bracket; nothing when designing
    // or when the store has loaded already.
    void Loaded() override;
    void ReaderError(TReader &Reader, const QString &Message, bool &Handled);

Q_SIGNALS:
    // Asked first by Load, resp. Save; a handler that does the work itself sets *Processed.
    void LoadChanges(QObject *Sender, bool *Processed);
    void SaveChanges(QObject *Sender, bool *Processed);

protected:
    bool eventFilter(QObject *Watched, QEvent *Event) override;

private:
    struct TGroup;
    QObject *OwnerObject() const;
    QList<TGroup> Groups() const;
    void HookOnClose();
    void OwnerClosing(QWidget *Form, QEvent *Event);

    bool m_ignoreErrors = true;
    bool m_storePos = true;
    bool m_loaded = false;
    bool m_closing = false;
    QString m_key;
    QStringList m_propList;
    QPointer<QObject> m_hooked;
    // The data module owner while its destroyed signal saves.
    QObject *m_goingOwner = nullptr;
};

} // namespace kv
