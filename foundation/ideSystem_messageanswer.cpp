#include "foundation/ideSystem_messageanswer.h"

#include "foundation/ideSystem_notifiers.h"

namespace kv {

TMessageAnswer::TMessageAnswer()
{
    RegisterNotifier(this);
}

TMessageAnswer::~TMessageAnswer()
{
    UnregisterNotifier(this);
}

void TMessageAnswer::Dispatch(TMessage &)
{
}

} // namespace kv
