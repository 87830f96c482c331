#include "platform/kvHost.h"

#include "platform/kvExptIntf.h"
#include "platform/kvQtToolServices.h"
#include "shell/kvIDEInspD5.h"

namespace kv {

TPackageHost::TPackageHost(QObject *parent)
    : QObject(parent)
{
}

TPackageHost::~TPackageHost()
{
    Unload();
}

void TPackageHost::Load()
{
    if (m_loaded)
        return;
    kvIDEInspD5::Initialize();
    m_loaded = true;
}

void TPackageHost::Register(QWidget *mainWindow)
{
    Load();
    m_toolServices = std::make_unique<TQtToolServices>(mainWindow);
    ToolServices() = m_toolServices.get();
    // The host accepts add-ins only while the registration procedures run.
    LibraryExpertProc() = [this](std::unique_ptr<TIExpert> expert) { m_experts.push_back(std::move(expert)); };
    struct TCloseRegistration
    {
        ~TCloseRegistration() { LibraryExpertProc() = {}; }
    } closeRegistration;
    kvIDEInspD5::RegisterUnits();
}

void TPackageHost::Unload()
{
    if (!m_loaded)
        return;
    // The add-ins go first: they release their menu items while the units still run.
    m_experts.clear();
    if (ToolServices() == m_toolServices.get())
        ToolServices() = nullptr;
    m_toolServices.reset();
    kvIDEInspD5::Finalize();
    m_loaded = false;
}

} // namespace kv
