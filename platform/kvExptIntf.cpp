#include "platform/kvExptIntf.h"

namespace kv {

TExpertRegisterProc &LibraryExpertProc()
{
    static TExpertRegisterProc proc;
    return proc;
}

void RegisterLibraryExpert(std::unique_ptr<TIExpert> expert)
{
    if (const TExpertRegisterProc &proc = LibraryExpertProc())
        proc(std::move(expert));
}

} // namespace kv
