#pragma once

#include "kv_export.h"

// A memory stream over one long binary value of the settings store.

#include <QBuffer>
#include <QIODevice>
#include <QString>

namespace kv {

// Opened on a setting's name, the stream holds the value's bytes. Nothing is written back by
// itself: Commit stores the stream when it was written to, or when a value existed at opening
// and the stream's size now differs from the size found then. The destructor never writes, so
// a stream dropped without Commit leaves the settings as they were.
class KV_EXPORT TRegistryStream : public QBuffer
{
    Q_OBJECT

public:
    // Mode is one of the platform's file modes (persist/ideLib_objstreams.h): fmCreate stores
    // an empty value at Name at once and opens the empty stream for writing; any other mode
    // loads the value stored at Name and opens it with the access of its two lowest bits.
    TRegistryStream(const QString &Name, quint32 Mode, QObject *Parent = nullptr);
    ~TRegistryStream() override;

    bool Modified() const { return m_modified; }
    const QString &Name() const { return m_name; }
    // The size of the value at opening; -1 when there was none, 0 in the create mode.
    qint32 SizeFound() const { return m_sizeFound; }

    // Changes the size, keeping the bytes up to it; the position is kept within the data.
    void SetSize(qint64 Size);

    // Stores the stream as the long value Name when it is due (see above) and returns whether it
    // wrote. Afterwards the stream counts as unchanged. Raises kv::Exception when the settings
    // can't be written.
    bool Commit();

protected:
    qint64 writeData(const char *Data, qint64 Len) override;

private:
    QString m_name;
    qint32 m_sizeFound = -1;
    bool m_modified = false;
};

} // namespace kv
