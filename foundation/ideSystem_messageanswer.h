#pragma once

#include "kv_export.h"

#include "foundation/ideSystem_inotifier.h"
#include "shell/ideHook.h"

namespace kv {

// A plain object that is a notifier for as long as it lives: registered by its constructor
// as the newest notifier, unregistered by its destructor. It ignores every message;
// descendants override Dispatch for the numbers they handle.
class KV_EXPORT TMessageAnswer : public TPlainObject, public INotifier
{
public:
    TMessageAnswer();
    // Its identity is its registration: a copy would be another notifier.
    TMessageAnswer(const TMessageAnswer &) = delete;
    TMessageAnswer &operator=(const TMessageAnswer &) = delete;
    ~TMessageAnswer() override;

    void Dispatch(TMessage &Message) override;
};

} // namespace kv
