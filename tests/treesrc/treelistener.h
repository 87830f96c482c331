#pragma once

// A tree listener for tests: records every notification it receives, with copies of the
// records, and writes its name into a shared log so that the order of listeners shows.

#include "foundation/ideSystem_messages.h"
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
