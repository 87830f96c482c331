#include "design/ideGen.h"

#include "design/ideGen_designer.h"
#include "foundation/ideSystem.h"
#include "persist/ideCommon.h"
#include "platform/kvComponentEditor.h"
#include "platform/kvEventConnections.h"
#include "platform/kvPropertyRegistry.h"

#include <QCoreApplication>

namespace kv {

bool IsIDEApplicationName(const QString &applicationName)
{
    static const char *const ideNames[] = {"QtCreator", "Qt Creator", "Designer", "Qt Designer"};
    for (const char *name : ideNames) {
        if (applicationName.compare(QLatin1String(name), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

bool HostIsIDE()
{
    return QCoreApplication::instance() && IsIDEApplicationName(QCoreApplication::applicationName());
}

void ideGen::Initialize()
{
    UnderDelphiIDE = HostIsIDE();
    // Units that start earlier reach the designers through this.
    GetDesignerProc = &GetDesigner;
}

void ideGen::Finalize()
{
    GetDesignerProc = nullptr;
    FinalizeDesigners();
    // The design-time framework goes with the design-time unit: connections first (they
    // name objects), then the editor registries.
    FinalizeEventConnections();
    FinalizeComponentEditors();
    FinalizePropertyEditors();
}

} // namespace kv
