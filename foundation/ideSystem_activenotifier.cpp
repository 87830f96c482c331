#include "foundation/ideSystem_activenotifier.h"

#include "foundation/ideSystem_messages.h"

namespace kv {

TActiveNotifier::TActiveNotifier(QObject *Owner)
    : TCustomActiveNotifier(Owner)
{
}

TActiveNotifier::~TActiveNotifier() = default;

QString TActiveNotifier::Version() const
{
    return QString::fromLatin1(KVVersion);
}

} // namespace kv
