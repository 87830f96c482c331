#include "foundation/ideSystem_optionstorage.h"

#include <utility>

namespace kv {

bool StoreOptionsInFile = false;
QString OptionsFileName;

namespace {
IOptionStorage *InstalledStorage = nullptr;
} // namespace

IOptionStorage *SetOptionStorage(IOptionStorage *Storage)
{
    return std::exchange(InstalledStorage, Storage);
}

IOptionStorage *OptionStorage()
{
    return InstalledStorage;
}

} // namespace kv
