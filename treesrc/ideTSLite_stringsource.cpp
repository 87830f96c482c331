#include "treesrc/ideTSLite_stringsource.h"

#include "platform/kvComponentState.h"

#include <algorithm>
#include <iterator>

namespace kv {

namespace {
// The actions a list of lines supports, whatever the line.
constexpr int StringSourceActions[] = {taUnused1, taInsertSibling, taMultiSelect, taShowToolBar,
                                       taDrag, taEditCaption, taSourceVerbs, taShowTreePane};
} // namespace

TCustomKVStringSource::TCustomKVStringSource(QObject *parent)
    : TKVPersistentSource(parent)
{
}

TCustomKVStringSource::~TCustomKVStringSource() = default;

bool TCustomKVStringSource::HasStrings() const
{
    return m_property.isValid() && GetTreeLink();
}

QStringList TCustomKVStringSource::Strings() const
{
    if (!HasStrings())
        return QStringList();
    return m_property.read(GetTreeLink()).toStringList();
}

bool TCustomKVStringSource::WriteStrings(const QStringList &Strings)
{
    return HasStrings() && m_property.isWritable() && m_property.write(GetTreeLink(), Strings);
}

void TCustomKVStringSource::Refresh()
{
    m_property = QMetaProperty();
    if (const QObject *link = GetTreeLink(); link && !PropName().isEmpty()) {
        const QMetaObject *cls = link->metaObject();
        const int index = cls->indexOfProperty(PropName().toUtf8().constData());
        // Only a list of strings can be shown line by line.
        if (index >= 0 && cls->property(index).metaType().id() == QMetaType::QStringList)
            m_property = cls->property(index);
    }
    if (!(ComponentState(this) & csDestroying))
        RefreshEditor();
}

void TCustomKVStringSource::GetItems(qintptr ParentId, const TIteratorProc &Proc)
{
    if (ParentId != 0 || !HasStrings())
        return;
    // A copy: Proc may change the lines while they are listed.
    const QStringList lines = Strings();
    for (qsizetype i = 0; i < lines.size(); ++i)
        Proc(GetNodeRec(i + 1, ReservedNodeId, this, lines.at(i)));
}

void TCustomKVStringSource::SetCaption(qintptr Id, const QString &Caption)
{
    QStringList lines = Strings();
    if (!IsLine(Id, lines.size()))
        return;
    lines[Id - 1] = Caption;
    if (!WriteStrings(lines))
        return;
    TKVPersistentSource::SetCaption(Id, Caption);
}

void TCustomKVStringSource::Clear()
{
    if (!HasStrings() || !WriteStrings(QStringList()))
        return;
    TKVPersistentSource::Clear();
}

bool TCustomKVStringSource::ActionAllowed(qintptr, int Action)
{
    return std::find(std::begin(StringSourceActions), std::end(StringSourceActions), Action)
        != std::end(StringSourceActions);
}

void TCustomKVStringSource::MoveTo(qintptr Id, qintptr DestId, TNodeAttachMode Mode)
{
    QStringList lines = Strings();
    const bool movable = IsLine(Id, lines.size()) && (Mode != naInsert || IsLine(DestId, lines.size()));
    if (movable && CanMove(Id, DestId, Mode)) {
        qsizetype from = Id - 1;
        qintptr movedId = 0;
        if (Mode == naInsert) {
            lines.insert(DestId - 1, lines.at(from));
            if (Id > DestId) {
                ++from; // the original moved one line down
                movedId = DestId;
            } else {
                movedId = DestId - 1;
            }
        } else {
            lines.append(lines.at(from));
            movedId = lines.size() - 1;
        }
        lines.removeAt(from);
        if (WriteStrings(lines)) {
            RefreshEditor();
            TNodeRec rec;
            rec.Id = movedId;
            rec.Data = IdOf(this);
            SendNotify(&rec, tnSelect);
        }
    }
    TKVPersistentSource::MoveTo(Id, DestId, Mode);
}

QString TCustomKVStringSource::GetDisplayName(qintptr Id)
{
    const QStringList lines = Strings();
    return IsLine(Id, lines.size()) ? lines.at(Id - 1) : QString();
}

TKVStringSource::TKVStringSource(QObject *parent)
    : TCustomKVStringSource(parent)
{
}

TKVStringSource::~TKVStringSource() = default;

} // namespace kv
