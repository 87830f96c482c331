#include "treesrc/ideTSLite_componentsource.h"

#include "design/ideGen_designer.h"
#include "foundation/ideSystem_messages.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvClasses.h"
#include "platform/kvComponentState.h"
#include "platform/kvException.h"
#include "treesrc/ideTSLite_treenotifiers.h"

namespace kv {

QString GetBaseName(const QObject *Obj)
{
    if (!Obj)
        return QString();
    const QString name = StreamClassName(Obj->metaObject());
    return name.startsWith(QLatin1Char('T')) ? name.mid(1) : name;
}

TNodeRec GetNodeRec(qintptr Id, qintptr ParentId, TTreeSource *Source, const QString &Caption)
{
    TNodeRec rec;
    rec.Id = Id;
    rec.ParentId = ParentId;
    rec.Source = Source;
    rec.Caption = Caption;
    return rec;
}

TComponentSource::TComponentSource(QObject *parent)
    : TTreeSource(parent)
{
    RegisterNotifier(this);
}

TComponentSource::~TComponentSource()
{
    IncludeState(this, csDestroying);
    UnregisterNotifier(this);
    QObject::disconnect(m_linkWatch);
}

QString TComponentSource::Version() const
{
    return QString::fromLatin1(KVVersion);
}

void TComponentSource::SetSelectedObject(qintptr Id)
{
    m_selectedObject = Id;
    if (Id == 0)
        return;
    m_selectionRec = TNodeRec();
    m_selectionRec.Data = IdOf(this);
    PostNotify(&m_selectionRec, tnSelect);
}

void TComponentSource::SetTreeLink(QObject *Value)
{
    if (IsTreeLink(Value))
        return;
    QObject::disconnect(m_linkWatch);
    m_treeLink = Value;
    m_treeLinkKey = Value;
    if (Value)
        m_linkWatch = connect(Value, &QObject::destroyed, this, &TComponentSource::TreeLinkDestroyed);
    if (!(ComponentState(this) & csDestroying)) {
        RefreshEditor();
        RefreshImages();
    }
}

void TComponentSource::TreeLinkDestroyed(QObject *Link)
{
    if (Link != m_treeLinkKey)
        return;
    Guarded([this] {
        SetTreeLink(nullptr);
        BroadcastSourceEmpty(this);
    });
}

void TComponentSource::ObjectInserted(qintptr) {}

QObject *TComponentSource::GetLargeImages() const { return m_largeImages.data(); }
QObject *TComponentSource::GetSmallImages() const { return m_smallImages.data(); }
QObject *TComponentSource::GetStateImages() const { return m_stateImages.data(); }

void TComponentSource::SetLargeImages(QObject *Value)
{
    if (m_largeImages == Value)
        return;
    m_largeImages = Value;
    RefreshImages();
}

void TComponentSource::SetSmallImages(QObject *Value)
{
    if (m_smallImages == Value)
        return;
    m_smallImages = Value;
    RefreshImages();
}

void TComponentSource::SetStateImages(QObject *Value)
{
    if (m_stateImages == Value)
        return;
    m_stateImages = Value;
    RefreshImages();
}

qintptr TComponentSource::GetSelectedObject() const { return m_selectedObject; }

QObject *TComponentSource::GetTreeLink() const { return m_treeLink.data(); }

void TComponentSource::GetItems(qintptr, const TIteratorProc &) {}

void TComponentSource::SetCaption(qintptr Id, const QString &Caption)
{
    TNodeRec rec;
    rec.Id = Id;
    rec.Caption = Caption;
    const TNodeRecList changed{&rec};
    SendNotify(&changed, tnCaptionsChanged);
    DesignerModified(GetTreeLink());
}

void TComponentSource::Add(qintptr, const QString &, TNodeAttachMode) {}

void TComponentSource::Clear()
{
    TNodeRec rec;
    rec.Id = IdOf(GetTreeLink());
    rec.Data = 1; // only the children
    SendNotify(&rec, tnDeleted);
    DesignerModified(GetTreeLink());
}

void TComponentSource::Delete(qintptr Id)
{
    if (!ActionAllowed(Id, taDelete))
        return;
    m_selectedObject = 0;
    TNodeRec rec;
    rec.Id = Id;
    SendNotify(&rec, tnDeleted);
    DesignerModified(GetTreeLink());
}

bool TComponentSource::CanMove(qintptr Id, qintptr DestId, TNodeAttachMode)
{
    return DestId != Id;
}

void TComponentSource::MoveTo(qintptr, qintptr, TNodeAttachMode)
{
    DesignerModified(GetTreeLink());
}

void TComponentSource::BeginUpdate() {}
void TComponentSource::EndUpdate() {}

QObject *TComponentSource::GetInspectorControl(qintptr) { return nullptr; }

bool TComponentSource::ActionAllowed(qintptr, int) { return false; }

QString TComponentSource::GetDisplayName(qintptr Id)
{
    return GetBaseName(ObjectOfId(Id));
}

int TComponentSource::GetAttrCount() { return 0; }
QString TComponentSource::GetAttrName(int) { return QString(); }
QString TComponentSource::GetAttrValue(qintptr, int) { return QString(); }

QString TComponentSource::GetStatusLine(qintptr Id)
{
    const QObject *obj = ObjectOfId(Id);
    return obj ? StreamClassName(obj->metaObject()) : QString();
}

bool TComponentSource::ValidSource()
{
    const QObject *link = GetTreeLink();
    return link && !(ComponentState(link) & csDestroying);
}

void TComponentSource::Edit(qintptr) {}

TSortType TComponentSource::GetSortType() { return stNone; }

bool TComponentSource::HasChild(qintptr) { return false; }

qintptr TComponentSource::GetParentId(qintptr) { return 0; }

void TComponentSource::RefreshEditor()
{
    const TNodeRec rec;
    SendNotify(&rec, tnRefresh);
}

void TComponentSource::RefreshImages()
{
    const TNodeRec rec;
    SendNotify(&rec, tnImagesChanged);
}

void TComponentSource::DoAfterInsert(qintptr NewId, qintptr ParentId, const QString &Caption,
                                     TNodeAttachMode Mode)
{
    TNodeRec rec;
    rec.Id = NewId;
    rec.ParentId = ParentId != 0 ? ParentId : IdOf(GetTreeLink());
    rec.Source = this;
    rec.AttachMode = Mode;
    rec.Caption = Caption.isEmpty() ? GetDisplayName(NewId) : Caption;
    SendNotify(&rec, tnInserted);
    SetCaption(NewId, rec.Caption);
    DesignerModified(GetTreeLink());
}

void TComponentSource::Dispatch(TMessage &) {}

QObject *TComponentSource::ObjectOfId(qintptr Id) const
{
    return Id != 0 && Id == IdOf(m_treeLink.data()) ? m_treeLink.data() : nullptr;
}

void TComponentSource::SendNotify(const void *Data, int Code)
{
    GetTreeNotifiers().NotifyEvents(this, reinterpret_cast<qintptr>(Data), Code);
}

void TComponentSource::PostNotify(const TNodeRec *Record, int Code)
{
    GetTreeNotifiers().PostMessage(this, CM_TSNOTIFY, reinterpret_cast<qintptr>(Record), Code);
}

void TComponentSource::CaptionChanged(qintptr Id, const QString &Text)
{
    if (Id == 0)
        return;
    if (QObject *obj = ObjectOfId(Id))
        BroadcastPropChanged(this, {obj}, Text);
    DesignerModified(GetTreeLink());
}

} // namespace kv
