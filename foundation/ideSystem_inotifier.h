#pragma once

#include "kv_export.h"

#include "foundation/ideSystem_messages.h"

namespace kv {

// An object that receives the messages of a notifier registry. Dispatch switches on
// Message.Msg and ignores the numbers it does not handle; it answers by setting
// Message.Result. An implementer registers itself (RegisterNotifier) and must unregister
// before it is destroyed.
class KV_EXPORT INotifier
{
public:
    virtual void Dispatch(TMessage &Message) = 0;

protected:
    ~INotifier() = default;
};

} // namespace kv
