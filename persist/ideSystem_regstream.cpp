#include "persist/ideSystem_regstream.h"

#include "persist/ideLib_objstreams.h"
#include "persist/ideSystem_registry.h"

#include <algorithm>
#include <limits>

namespace kv {

TRegistryStream::TRegistryStream(const QString &Name, quint32 Mode, QObject *Parent)
    : QBuffer(Parent), m_name(Name)
{
    if (Mode == fmCreate) {
        WriteLongBufToRegistry(Name, QByteArray());
        m_sizeFound = 0;
    } else {
        m_sizeFound = GetLongRegBufSize(Name);
        if (m_sizeFound > 0)
            setData(ReadLongBufFromRegistry(Name));
    }
    open(FileModeToOpenMode(Mode));
}

TRegistryStream::~TRegistryStream() = default;

void TRegistryStream::SetSize(qint64 Size)
{
    const qint64 at = pos();
    buffer().resize(std::max<qint64>(Size, 0));
    seek(std::min(at, size()));
}

bool TRegistryStream::Commit()
{
    const bool resized = m_sizeFound >= 0 && size() != m_sizeFound;
    if (!m_modified && !resized)
        return false;
    const QByteArray &bytes = data();
    WriteLongBufToRegistry(m_name, bytes.constData(),
                           qint32(std::min<qint64>(bytes.size(), std::numeric_limits<qint32>::max())));
    m_modified = false;
    m_sizeFound = qint32(std::min<qint64>(bytes.size(), std::numeric_limits<qint32>::max()));
    return true;
}

qint64 TRegistryStream::writeData(const char *Data, qint64 Len)
{
    const qint64 written = QBuffer::writeData(Data, Len);
    if (written > 0)
        m_modified = true;
    return written;
}

} // namespace kv
