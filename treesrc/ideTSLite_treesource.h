#pragma once

#include "kv_export.h"

// The tree-source contract: the abstract source that views read nodes from and send their
// requests to, the record a source hands out per node, and the codes of actions and
// notifications. Views own no data; they change their nodes only when a source tells them
// (see ideTSLite_treenotifiers.h).

#include "platform/kvColor.h"

#include <QFlags>
#include <QObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace kv {

class TTreeSource;

// Where a new or moved node goes relative to a target node (the platform's values).
enum TNodeAttachMode : quint8 {
    naAdd = 0,           // after the target, as the last of its siblings
    naAddFirst = 1,      // first of the target's siblings
    naAddChild = 2,      // last child of the target
    naAddChildFirst = 3, // first child of the target
    naInsert = 4,        // just before the target
};
constexpr bool IsChildMode(TNodeAttachMode Mode) { return Mode == naAddChild || Mode == naAddChildFirst; }

// The platform's sort types, in its order.
enum TSortType : quint8 { stNone = 0, stData = 1, stText = 2, stBoth = 3 };

// The platform's font styles, in its bit order.
enum TFontStyle : quint8 { fsBold = 0x1, fsItalic = 0x2, fsUnderline = 0x4, fsStrikeOut = 0x8 };
Q_DECLARE_FLAGS(TFontStyles, TFontStyle)
Q_DECLARE_OPERATORS_FOR_FLAGS(TFontStyles)

// Node ids are chosen by their source and mean something only to it. 0 is no node and, as a
// parent, the top level; -1 is reserved (as a ParentId: "the node's own id").
inline constexpr qintptr NoNodeId = 0;
inline constexpr qintptr ReservedNodeId = -1;

// ActionAllowed(Id, Action): may the user do Action on node Id (Id 0: on the source as a
// whole, or the view's behaviour as a whole).
enum TTreeAction : int {
    taRefreshClears = 0,      // a whole-tree refresh clears and rebuilds (else reuses nodes)
    taUnused1 = 1,            // nobody asks; sources may answer
    taDelete = 2,             // the node may be deleted
    taInsertSibling = 3,      // a sibling may be inserted
    taAddChild = 4,           // a child may be added
    taDblClickAccepts = 5,    // a double click accepts the dialog
    taMultiSelect = 6,        // the view allows multiple selection
    taShowLines = 7,          // the view shows lines and root lines
    taShowToolBar = 8,        // the window shows its tool bar
    taDrag = 9,               // nodes may be dragged (moved)
    taEditCaption = 10,       // the caption may be edited in place
    taPopupMenu = 11,         // the design-time popup menu may be shown
    taSourceVerbs = 12,       // the popup offers the source's own verbs
    taShowInspector = 13,     // the selected nodes' objects go to the object inspector
    taRefreshAfterDelete = 14, // refresh the whole tree after a delete
    taShowTreePane = 15,      // the tree editor shows its tree pane
    taShowListPane = 16,      // the tree editor shows its list pane
};

// Notification codes (Sender, Data, Code). Data is the address of a TNodeRec, except for
// tnCaptionsChanged, whose Data is the address of a TNodeRecList.
enum TTreeNotification : int {
    tnCaptionsChanged = 1, // apply each record to the node with its Id
    tnRefresh = 2,         // re-read the children of Id (0: everything); sender's views only
    tnDeleted = 3,         // Id deleted; with Data non-zero only its children
    tnSelect = 4,          // select Id (0: the source's selected object); sender's views only
    tnExpandSelect = 6,    // expand and select Id if shown; sender's views only
    tnInserted = 7,        // a node was inserted: ParentId and AttachMode place it
    tnMoved = 9,           // Id moved relative to DestId as AttachMode says
    tnImagesChanged = 122, // the source's image lists changed
};

// What a source hands out per node. Default-constructed it is the cleared record: no ids, no
// images, black font, no style. Listeners that keep anything copy it: a record lives only
// for the call (sent) or until its source reuses it (posted).
struct KV_EXPORT TNodeRec
{
    qintptr Id = 0;
    // Enumerated: where the node's children are asked for (-1: at Id, 0: the top level of
    // Source). Inserted: the node the new one is placed relative to (-1 or the tree link:
    // the top level).
    qintptr ParentId = 0;
    qintptr DestId = 0; // moved: the node the move is relative to
    // The part before the first "|" is the text in trees; list views show every further
    // "|"-separated part in the next column.
    QString Caption;
    int ImageIndex = 0;
    int SelectedIndex = 0;
    int StateIndex = 0;
    int OverlayIndex = 0;
    // The view node's data; deleted: non-zero means only the children; posted: the sender.
    qintptr Data = 0;
    TTreeSource *Source = nullptr; // enumerated: supplies the children; inserted: the sender
    TNodeAttachMode AttachMode = naAdd;
    TColor FontColor = clBlack;
    TFontStyles FontStyle;
};

// Data of tnCaptionsChanged: the changed records.
using TNodeRecList = QList<const TNodeRec *>;

// Called once per enumerated node, in display order.
using TIteratorProc = std::function<void(const TNodeRec &NodeRec)>;

// The part of a caption that a tree shows, and the columns of a list view: Columns[0] is
// the item caption, Columns[i] the text of extra column i - 1.
KV_EXPORT QString TreeCaption(const QString &Caption);
KV_EXPORT QStringList CaptionColumns(const QString &Caption);

// The abstract source. Image lists are QObjects handed in and out by pointer; a source does
// not own them.
class KV_EXPORT TTreeSource : public QObject
{
    Q_OBJECT

public:
    explicit TTreeSource(QObject *parent = nullptr);
    ~TTreeSource() override;

    // Makes Id the current object and asks the views of this source to select it.
    virtual void SetSelectedObject(qintptr Id) = 0;
    // The object the source presents (its tree link, the root of its data).
    virtual void SetTreeLink(QObject *Value) = 0;
    // Told by a view after it created the node of an inserted notification.
    virtual void ObjectInserted(qintptr Id) = 0;
    virtual QObject *GetLargeImages() const = 0;
    virtual QObject *GetSmallImages() const = 0;
    virtual QObject *GetStateImages() const = 0;
    virtual void SetLargeImages(QObject *Value) = 0;
    virtual void SetSmallImages(QObject *Value) = 0;
    virtual void SetStateImages(QObject *Value) = 0;
    virtual qintptr GetSelectedObject() const = 0;
    virtual QObject *GetTreeLink() const = 0;
    // Calls Proc once per child of ParentId (0: the top level), in display order.
    virtual void GetItems(qintptr ParentId, const TIteratorProc &Proc) = 0;
    virtual void SetCaption(qintptr Id, const QString &Caption) = 0;
    // Creates a new object placed relative to node Id (0: the top level) as Mode says.
    virtual void Add(qintptr Id, const QString &Caption, TNodeAttachMode Mode) = 0;
    virtual void Clear() = 0;
    virtual void Delete(qintptr Id) = 0;
    virtual bool CanMove(qintptr Id, qintptr DestId, TNodeAttachMode Mode) = 0;
    virtual void MoveTo(qintptr Id, qintptr DestId, TNodeAttachMode Mode) = 0;
    virtual void BeginUpdate() = 0;
    virtual void EndUpdate() = 0;
    // The object an object inspector shows for the node; null: nothing.
    virtual QObject *GetInspectorControl(qintptr Id) = 0;
    virtual bool ActionAllowed(qintptr Id, int Action) = 0;
    virtual QString GetDisplayName(qintptr Id) = 0;
    // Extra columns for list views.
    virtual int GetAttrCount() = 0;
    virtual QString GetAttrName(int Index) = 0;
    virtual QString GetAttrValue(qintptr Id, int Index) = 0;
    virtual QString GetStatusLine(qintptr Id) = 0;
    // The source's data can be used now: its link exists and is not being destroyed.
    virtual bool ValidSource() = 0;
    // Opens the source's own editor for the node (double click, Enter).
    virtual void Edit(qintptr Id) = 0;
    virtual TSortType GetSortType() = 0;
    virtual bool HasChild(qintptr Id) = 0;
    // The node's parent (0: top level), so that a view can expand the path to a node.
    virtual qintptr GetParentId(qintptr Id) = 0;
};

} // namespace kv
