#pragma once

#include "kv_export.h"

// The package unit: the table of unit start and stop procedures and the package's entry
// points. Units start in table order, each once, and stop in reverse.

#include <span>

namespace kv {

using TUnitProc = void (*)();

struct KV_EXPORT TUnitInfo
{
    const char *Name;
    TUnitProc Initialize;
    TUnitProc Finalize;
    TUnitProc Register; // the unit's registration procedure, or null
    bool Started = false;
};

// Starts every unit of Units that has not started yet, in order. A unit whose start raises
// stays unstarted and the exception ends the run; the units started before it stay started.
KV_EXPORT void StartUnits(std::span<TUnitInfo> Units);
// Stops every started unit of Units, in reverse order. Never throws: a failing stop
// procedure is reported through ShowException and the others still run.
KV_EXPORT void StopUnits(std::span<TUnitInfo> Units);
// Runs the registration procedure of every started unit, in order.
KV_EXPORT void RegisterUnitsOf(std::span<TUnitInfo> Units);

// The package's own table.
KV_EXPORT std::span<TUnitInfo> GetPackageInfoTable();

namespace kvIDEInspD5 {
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
KV_EXPORT void RegisterUnits();
} // namespace kvIDEInspD5

} // namespace kv
