#include "shell/kvIDEInspD5.h"

#include "design/ideGen.h"
#include "foundation/ideConsts.h"
#include "foundation/ideLib.h"
#include "foundation/ideSystem.h"
#include "install/ideApi.h"
#include "persist/ideCommon.h"
#include "persist/ideRerrDlg.h"
#include "platform/kvException.h"
#include "shell/IDEInspReg.h"
#include "shell/ideHook.h"
#include "shell/ideTreeInspReg.h"
#include "treesrc/ideTSLite.h"


namespace kv {

void StartUnits(std::span<TUnitInfo> Units)
{
    for (TUnitInfo &unit : Units) {
        if (unit.Started)
            continue;
        if (unit.Initialize)
            unit.Initialize();
        unit.Started = true;
    }
}

void StopUnits(std::span<TUnitInfo> Units)
{
    for (auto it = Units.rbegin(); it != Units.rend(); ++it) {
        TUnitInfo &unit = *it;
        if (!unit.Started)
            continue;
        unit.Started = false;
        if (unit.Finalize)
            Guarded(unit.Finalize);
    }
}

void RegisterUnitsOf(std::span<TUnitInfo> Units)
{
    for (const TUnitInfo &unit : Units) {
        if (unit.Started && unit.Register)
            unit.Register();
    }
}

std::span<TUnitInfo> GetPackageInfoTable()
{
    // The units in their start order; a unit joins the table at its place in that order.
    static TUnitInfo table[] = {
        {"ideApi", ideApi::Initialize, ideApi::Finalize, nullptr},
        {"ideConsts", ideConsts::Initialize, ideConsts::Finalize, nullptr},
        {"ideHook", ideHook::Initialize, ideHook::Finalize, nullptr},
        {"ideLib", ideLib::Initialize, ideLib::Finalize, nullptr},
        {"ideSystem", ideSystem::Initialize, ideSystem::Finalize, nullptr},
        {"ideCommon", ideCommon::Initialize, ideCommon::Finalize, nullptr},
        {"ideRerrDlg", ideRerrDlg::Initialize, ideRerrDlg::Finalize, nullptr},
        {"ideGen", ideGen::Initialize, ideGen::Finalize, nullptr},
        {"ideTSLite", ideTSLite::Initialize, ideTSLite::Finalize, nullptr},
        {"ideTreeInspReg", ideTreeInspReg::Initialize, ideTreeInspReg::Finalize, ideTreeInspReg::Register},
        {"IDEInspReg", IDEInspReg::Initialize, IDEInspReg::Finalize, IDEInspReg::Register},
    };
    return table;
}

void kvIDEInspD5::Initialize()
{
    StartUnits(GetPackageInfoTable());
}

void kvIDEInspD5::Finalize()
{
    StopUnits(GetPackageInfoTable());
}

void kvIDEInspD5::RegisterUnits()
{
    RegisterUnitsOf(GetPackageInfoTable());
}

} // namespace kv
