#include "persist/ideCommon_propstore.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_components.h"
#include "foundation/ideSystem_messages.h"
#include "persist/ideCommon_winpos.h"
#include "persist/ideSystem_propstreams.h"
#include "persist/ideSystem_registry.h"
#include "platform/kvComponentState.h"
#include "platform/kvDesignDialogs.h"
#include "platform/kvException.h"
#include "platform/kvFiler.h"
#include "platform/kvOwner.h"
#include "platform/kvScreen.h"

#include <QBuffer>
#include <QEvent>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QWidget>

namespace kv {

struct TKVPropStore::TGroup
{
    QString Path;
    QPointer<QObject> Component;
    QStringList Names;
};

namespace {

// A record of the stored value: the component's name, the names it stored and its
// property-subset stream (length prefix included).
struct TRecord
{
    QString Name;
    QStringList Names;
    QByteArray Block;
    bool Used = false;
};

QStringList SplitLines(const QString &Text)
{
    static const QRegularExpression lineBreak(QStringLiteral("\r\n|\r|\n"));
    return Text.split(lineBreak, Qt::SkipEmptyParts);
}

QStringList IntersectNames(const QStringList &Stored, const QStringList &Wanted)
{
    QStringList result;
    for (const QString &name : Stored) {
        if (Wanted.contains(name, Qt::CaseInsensitive))
            result.append(name);
    }
    return result;
}

// The descendant of Root named Name, ignoring case; for a root that is being destroyed, which
// no longer owns by the usual rules.
QObject *FindDescendant(const QObject *Root, const QString &Name)
{
    for (QObject *child : Root->children()) {
        if (child->objectName().compare(Name, Qt::CaseInsensitive) == 0)
            return child;
        if (QObject *found = FindDescendant(child, Name))
            return found;
    }
    return nullptr;
}

QObject *FindGroupComponent(QObject *Owner, const QString &Path, bool OwnerGoing)
{
    if (Path.isEmpty())
        return Owner;
    if (QObject *found = OwnerGoing ? FindDescendant(Owner, Path) : FindComponent(Owner, Path))
        return found;
    if (Owner) {
        if (QObject *found = GlobalFindObject(Owner->objectName() + QLatin1Char('.') + Path))
            return found;
    }
    return GlobalFindObject(Path);
}

// The records up to the closing False. The values between the blocks are read by a reader
// of their own each, so that every reader's idea of the position stays true.
QList<TRecord> ReadRecords(QIODevice &Stream)
{
    QList<TRecord> records;
    for (;;) {
        TRecord record;
        {
            TReader values(&Stream);
            if (!values.ReadBoolean())
                return records;
            record.Name = values.ReadString();
            if (record.Name == QLatin1String("0"))
                continue;
            record.Names = SplitLines(values.ReadString());
        }
        record.Block = ReadPropsBlock(Stream);
        records.append(record);
    }
}

} // namespace

TKVPropStore::TKVPropStore(QObject *parent)
    : QObject(parent)
{
    HookOnClose();
}

TKVPropStore::~TKVPropStore() = default;

QString TKVPropStore::Version() const
{
    return QString::fromLatin1(KVVersion);
}

QObject *TKVPropStore::OwnerObject() const
{
    return m_goingOwner ? m_goingOwner : GetOwner(this);
}

QString TKVPropStore::GetKey() const
{
    if (!m_key.isEmpty())
        return m_key;
    const QObject *owner = OwnerObject();
    return owner ? owner->objectName() + objectName() : objectName();
}

void TKVPropStore::HookOnClose()
{
    if (ComponentState(this) & csDesigning)
        return;
    QObject *owner = OwnerObject();
    if (owner == m_hooked)
        return;
    if (m_hooked) {
        m_hooked->removeEventFilter(this);
        disconnect(m_hooked, &QObject::destroyed, this, nullptr);
    }
    m_hooked = owner;
    if (TScreen::IsFormObject(owner)) {
        owner->installEventFilter(this);
    } else if (Screen().IsDataModule(owner)) {
        // Emitted while the module's components still live, but once it is no longer a root.
        connect(owner, &QObject::destroyed, this, [this](QObject *Owner) {
            m_goingOwner = Owner;
            Guarded([this] { Save(); });
            m_goingOwner = nullptr;
        });
    }
}

bool TKVPropStore::eventFilter(QObject *Watched, QEvent *Event)
{
    if (Watched == m_hooked) {
        if (Event->type() == QEvent::Polish && !m_loaded) {
            Guarded([this] { Loaded(); });
        } else if (Event->type() == QEvent::Close && !m_closing) {
            OwnerClosing(static_cast<QWidget *>(Watched), Event);
            return true;
        }
    }
    return QObject::eventFilter(Watched, Event);
}

void TKVPropStore::OwnerClosing(QWidget *Form, QEvent *Event)
{
    // The form decides first; the store saves only when the close goes ahead.
    m_closing = true;
    const auto done = qScopeGuard([this] { m_closing = false; });
    const bool exists = Form->testAttribute(Qt::WA_WState_Created);
    QPointer<QWidget> form = Form;
    static_cast<QObject *>(Form)->event(Event);
    if (form && Event->isAccepted() && exists)
        Guarded([this] { Save(); });
}

void TKVPropStore::Loaded()
{
    if (m_loaded || (ComponentState(this) & csDesigning))
        return;
    m_loaded = true;
    HookOnClose();
    BeginGlobalLoading();
    const auto end = qScopeGuard([] { EndGlobalLoading(); });
    Load();
    NotifyGlobalLoading();
}

void TKVPropStore::Save()
{
    bool processed = false;
    Q_EMIT SaveChanges(this, &processed);
    if (processed)
        return;
    const QString key = GetKey();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    SaveToStream(buffer);
    WriteBufToRegistry(key, buffer.data());
    QObject *owner = OwnerObject();
    if (m_storePos && TScreen::IsFormObject(owner))
        WriteWinPosToReg(static_cast<QWidget *>(owner), key);
}

void TKVPropStore::Load()
{
    bool processed = false;
    Q_EMIT LoadChanges(this, &processed);
    if (processed)
        return;
    const QString key = GetKey();
    const qint32 size = GetRegBufSize(key);
    if (size > 0) {
        QByteArray data(size, Qt::Uninitialized);
        data.resize(ReadBufFromRegistry(key, data.data(), size));
        QBuffer buffer(&data);
        buffer.open(QIODevice::ReadOnly);
        LoadFromStream(buffer);
    }
    QObject *owner = OwnerObject();
    if (m_storePos && TScreen::IsFormObject(owner))
        ReadWinPosFromReg(static_cast<QWidget *>(owner), key);
}

void TKVPropStore::SaveToStream(QIODevice &Stream)
{
    TWriter writer(&Stream);
    writer.IgnoreChildren = true;
    ProcessAllProps(writer, true);
}

void TKVPropStore::LoadFromStream(QIODevice &Stream)
{
    TReader reader(&Stream);
    reader.SetErrorHook([this, &reader](const QString &Message, bool &Handled) { ReaderError(reader, Message, Handled); });
    ProcessAllProps(reader, false);
}

QList<TKVPropStore::TGroup> TKVPropStore::Groups() const
{
    QObject *owner = OwnerObject();
    QList<TGroup> groups;
    for (const QString &entry : m_propList) {
        const QString text = entry.trimmed();
        if (text.isEmpty())
            continue;
        const qsizetype dot = text.lastIndexOf(QLatin1Char('.'));
        const QString path = dot < 0 ? QString() : text.left(dot);
        const QString name = text.mid(dot + 1);
        if (!groups.isEmpty() && groups.last().Path.compare(path, Qt::CaseInsensitive) == 0)
            groups.last().Names.append(name);
        else
            groups.append({path, FindGroupComponent(owner, path, owner && owner == m_goingOwner), {name}});
    }
    return groups;
}

void TKVPropStore::ProcessAllProps(TFiler &Filer, bool Writing)
{
    const QList<TGroup> groups = Groups();
    if (Writing) {
        auto *writer = dynamic_cast<TWriter *>(&Filer);
        if (!writer)
            throw Exception(LoadStr(SInvalidCast));
        for (const TGroup &group : groups) {
            writer->WriteBoolean(true);
            if (group.Component) {
                writer->WriteString(group.Component->objectName());
                writer->WriteString(group.Names.join(QLatin1Char('\n')));
                WritePropsToStreamWith(*writer, group.Component, group.Names);
            } else {
                writer->WriteString(QStringLiteral("0"));
            }
        }
        writer->WriteBoolean(false);
        writer->FlushBuffer();
        return;
    }

    auto *reader = dynamic_cast<TReader *>(&Filer);
    if (!reader)
        throw Exception(LoadStr(SInvalidCast));
    QList<TRecord> records;
    reader->FlushBuffer();
    try {
        records = ReadRecords(*reader->Stream());
    } catch (const Exception &error) {
        // A damaged value: nothing of it is applied when the error is passed over.
        bool handled = false;
        ReaderError(*reader, error.Message(), handled);
        if (!handled)
            throw;
    }

    const auto onError = [this, reader](const QString &Message, bool &Handled) { ReaderError(*reader, Message, Handled); };
    for (const TGroup &group : groups) {
        if (!group.Component)
            continue;
        const QString name = group.Component->objectName();
        for (TRecord &record : records) {
            if (record.Used || record.Name.compare(name, Qt::CaseInsensitive) != 0)
                continue;
            record.Used = true;
            const QStringList kept = IntersectNames(record.Names, group.Names);
            if (!kept.isEmpty()) {
                QBuffer block(&record.Block);
                block.open(QIODevice::ReadOnly);
                ReadPropsFromStreamOnly(block, group.Component, kept, onError);
            }
            break;
        }
    }
}

void TKVPropStore::ReaderError(TReader &Reader, const QString &Message, bool &Handled)
{
    Q_UNUSED(Reader);
    if (m_ignoreErrors)
        Handled = true;
    else
        Handled = MessageBox(Message, LoadStr(SErrReadProps), mtError, mbOK | mbCancel) == mrOk;
}

} // namespace kv
