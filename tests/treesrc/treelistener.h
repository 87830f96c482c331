#pragma once

// Recorders for tests: a tree listener that keeps every notification it receives, and a
// notifier that writes the broadcasts of designers and sources into a text log.

#include "foundation/ideSystem_inotifier.h"
#include "foundation/ideSystem_messages.h"
#include "foundation/ideSystem_notifiers.h"
#include "treesrc/ideTSLite_treenotifiers.h"
#include "treesrc/ideTSLite_treesource.h"

#include <QList>
#include <QStringList>

struct TRecordedNotify
{
    QObject *Sender = nullptr;
    int Code = 0;
    kv::TNodeRec Rec;          // every code but captions changed
    QList<kv::TNodeRec> Recs;  // captions changed
};

// Records every notification, with copies of the records, and writes its name into a
// shared log so that the order of listeners shows.
class TTreeRecorder
{
public:
    explicit TTreeRecorder(QString Name = QString(), QStringList *Log = nullptr)
        : m_name(std::move(Name)), m_log(Log)
    {
        kv::GetTreeNotifiers().AddListener<&TTreeRecorder::Notify>(this);
    }
    ~TTreeRecorder() { kv::GetTreeNotifiers().DeleteWithData(this); }

    void Notify(QObject *Sender, qintptr Data, qintptr Code)
    {
        if (m_log)
            m_log->append(m_name);
        TRecordedNotify entry;
        entry.Sender = Sender;
        entry.Code = int(Code);
        if (Code == kv::tnCaptionsChanged) {
            for (const kv::TNodeRec *rec : *reinterpret_cast<const kv::TNodeRecList *>(Data))
                entry.Recs.append(*rec);
        } else if (Data) {
            entry.Rec = *reinterpret_cast<const kv::TNodeRec *>(Data);
        }
        Entries.append(entry);
    }

    QList<int> Codes() const
    {
        QList<int> codes;
        for (const TRecordedNotify &entry : Entries)
            codes.append(entry.Code);
        return codes;
    }

    QList<TRecordedNotify> Entries;

private:
    QString m_name;
    QStringList *m_log;
};

// Records the broadcasts as text while they are dispatched: what happened, and to which
// objects (by name).
class TBroadcastLog final : public kv::INotifier
{
public:
    TBroadcastLog() { kv::RegisterNotifier(this); }
    ~TBroadcastLog() { kv::UnregisterNotifier(this); }

    void Dispatch(kv::TMessage &Message) override
    {
        using namespace kv;
        using namespace Qt::StringLiterals;
        if (Message.Msg == CM_SELECTIONCHANGED) {
            const TSelectionChangedData data = DecodeSelectionChanged(Message);
            Designer = data.Designer;
            Log << u"selected "_s + Names(data.Selection);
        } else if (Message.Msg == CM_PROPCHANGED) {
            const TPropChangedData data = DecodePropChanged(Message);
            const QString prop = data.PropName.isEmpty() ? QString() : u' ' + data.PropName.toString();
            Log << u"changed "_s + Names({data.Objects.begin(), data.Objects.end()}) + prop;
        } else if (Message.Msg == CM_NAMECHANGED) {
            const TNameChangedData data = DecodeNameChanged(Message);
            Log << u"renamed "_s + Names({data.Component}) + u" to "_s + data.NewName.toString();
        } else if (Message.Msg == CM_OBJINSERT) {
            Log << u"inserted "_s + Names({DecodeObjInsert(Message)});
        } else if (Message.Msg == CM_SOURCEEMPTY) {
            Log << u"empty "_s + Names({DecodeSourceEmpty(Message)});
        }
    }

    static QString Names(const QList<QObject *> &Objects)
    {
        QStringList names;
        for (const QObject *obj : Objects)
            names << obj->objectName();
        return names.join(u',');
    }

    QStringList Log;
    kv::IFormDesigner *Designer = nullptr;
};
