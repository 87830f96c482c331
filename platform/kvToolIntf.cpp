#include "platform/kvToolIntf.h"

namespace kv {

TIToolServices *&ToolServices()
{
    static TIToolServices *services = nullptr;
    return services;
}

} // namespace kv
