#include "foundation/ideSystem_optionstorage.h"

#include "foundation/ideLib_props.h"

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

void SaveComponentToIniFile(const QObject *Obj, const QString &Section)
{
    SaveComponentToIniFile(Obj, Section, OptionsFileName);
}

void LoadComponentFromIniFile(QObject *Obj, const QString &Section)
{
    LoadComponentFromIniFile(Obj, Section, OptionsFileName);
}

} // namespace kv
