#include "foundation/ideSystem_activenotifier.h"

#include "foundation/ideSystem_messages.h"

namespace kv {

TActiveNotifier::TActiveNotifier(QObject *AOwner)
    : TCustomActiveNotifier(AOwner)
{
}

TActiveNotifier::~TActiveNotifier() = default;

QString TActiveNotifier::Version() const
{
    return QString::fromLatin1(KVVersion);
}

} // namespace kv
