#pragma once

#include "kv_export.h"

// The common implementation of the tree-source contract, the base of every concrete source.
// On its own it shows nothing and refuses every action; it turns each change into the
// notifications the views follow and tells the edited form's designer.

#include "foundation/ideSystem_inotifier.h"
#include "treesrc/ideTSLite_treesource.h"

#include <QPointer>

namespace kv {

// The class name without namespaces and without a leading "T" ("TForm1" is "Form1",
// "Alpha" stays "Alpha"); empty for null.
KV_EXPORT QString GetBaseName(const QObject *Obj);
// A cleared record with Id, ParentId, Source and Caption set.
KV_EXPORT TNodeRec GetNodeRec(qintptr Id, qintptr ParentId, TTreeSource *Source, const QString &Caption);

class KV_EXPORT TComponentSource : public TTreeSource, public INotifier
{
    Q_OBJECT
    Q_PROPERTY(QString Version READ Version STORED false)

public:
    // Joins the notifier registry, so that broadcasts reach Dispatch.
    explicit TComponentSource(QObject *parent = nullptr);
    ~TComponentSource() override;

    QString Version() const;

    // Posts a request to select the node of GetSelectedObject() as it is when the views get
    // it; nothing is posted for 0.
    void SetSelectedObject(qintptr Id) override;
    // Watches the link: when it is destroyed the source drops it and broadcasts
    // CM_SOURCEEMPTY. A source being destroyed stores a new link without telling the views.
    void SetTreeLink(QObject *Value) override;
    void ObjectInserted(qintptr Id) override;
    // Image lists are not owned; one that is destroyed is forgotten.
    QObject *GetLargeImages() const override;
    QObject *GetSmallImages() const override;
    QObject *GetStateImages() const override;
    void SetLargeImages(QObject *Value) override;
    void SetSmallImages(QObject *Value) override;
    void SetStateImages(QObject *Value) override;
    qintptr GetSelectedObject() const override;
    QObject *GetTreeLink() const override;
    void GetItems(qintptr ParentId, const TIteratorProc &Proc) override;
    // Announces the caption; descendants change their data first.
    void SetCaption(qintptr Id, const QString &Caption) override;
    void Add(qintptr Id, const QString &Caption, TNodeAttachMode Mode) override;
    // Announces that the children of the tree link's node are gone.
    void Clear() override;
    // Announces the deletion when ActionAllowed(Id, taDelete) agrees.
    void Delete(qintptr Id) override;
    bool CanMove(qintptr Id, qintptr DestId, TNodeAttachMode Mode) override;
    void MoveTo(qintptr Id, qintptr DestId, TNodeAttachMode Mode) override;
    void BeginUpdate() override;
    void EndUpdate() override;
    QObject *GetInspectorControl(qintptr Id) override;
    bool ActionAllowed(qintptr Id, int Action) override;
    // GetBaseName / the class name of the node's object; empty for an id that names no
    // object of this source.
    QString GetDisplayName(qintptr Id) override;
    int GetAttrCount() override;
    QString GetAttrName(int Index) override;
    QString GetAttrValue(qintptr Id, int Index) override;
    QString GetStatusLine(qintptr Id) override;
    bool ValidSource() override;
    void Edit(qintptr Id) override;
    TSortType GetSortType() override;
    bool HasChild(qintptr Id) override;
    qintptr GetParentId(qintptr Id) override;

    // The views of this source re-read everything.
    virtual void RefreshEditor();
    // Every view re-reads the image lists.
    virtual void RefreshImages();
    // Announces the object NewId that a descendant has just created, placed relative to
    // ParentId (0: the tree link) as Mode says, then names it through SetCaption (with
    // GetDisplayName when Caption is empty).
    virtual void DoAfterInsert(qintptr NewId, qintptr ParentId, const QString &Caption,
                               TNodeAttachMode Mode);

    // Broadcasts received as a notifier; the base handles none.
    void Dispatch(TMessage &Message) override;

protected:
    // The object that Id stands for, when Id is an object address that this source hands
    // out and the object lives; null otherwise. The base knows only its tree link; sources
    // whose ids are object addresses override it. Nothing is dereferenced through an id
    // before this answers.
    virtual QObject *ObjectOfId(qintptr Id) const;
    static qintptr IdOf(const QObject *Obj) { return reinterpret_cast<qintptr>(Obj); }
    // Whether Value is the link held now (a link being destroyed still counts).
    bool IsTreeLink(const QObject *Value) const { return Value == m_treeLinkKey; }

    // Data is a TNodeRec, or a TNodeRecList for tnCaptionsChanged.
    void SendNotify(const void *Data, int Code);
    // Record must be a member of this source: it is read when the message is delivered.
    void PostNotify(const TNodeRec *Record, int Code);
    // Tells every notifier that the object of Id got a new Text (a property name or its new
    // caption), then the designer.
    void CaptionChanged(qintptr Id, const QString &Text);

private:
    void TreeLinkDestroyed(QObject *Link);

    QPointer<QObject> m_largeImages;
    QPointer<QObject> m_smallImages;
    QPointer<QObject> m_stateImages;
    QPointer<QObject> m_treeLink;
    // The address of the link, to compare with once the QPointer has cleared.
    const QObject *m_treeLinkKey = nullptr;
    QMetaObject::Connection m_linkWatch;
    qintptr m_selectedObject = 0;
    TNodeRec m_selectionRec;
};

} // namespace kv
