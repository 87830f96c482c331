#include "shell/kvIDEInspD5_host.h"

#include "platform/kvExptIntf.h"
#include "platform/kvQtToolServices.h"
#include "shell/kvIDEInspD5.h"

#include <QAction>
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QMenu>
#include <QWidget>

namespace kv {

Q_LOGGING_CATEGORY(lcHost, "kv.host", QtWarningMsg)

namespace {

// Where the add-in's item went, for QT_LOGGING_RULES="kv.host.debug=true".
void LogToolsMenu(const QWidget *mainWindow)
{
    if (!lcHost().isDebugEnabled())
        return;
    const auto *item = mainWindow ? mainWindow->findChild<QAction *>(QStringLiteral("ToolsKorvoIDEInspector")) : nullptr;
    const auto *menu = item ? qobject_cast<const QMenu *>(item->parent()) : nullptr;
    if (!menu) {
        qCDebug(lcHost) << "no Tools menu item was inserted";
        return;
    }
    QStringList texts;
    for (const QAction *action : menu->actions())
        texts << (action->isSeparator() ? QStringLiteral("---") : action->text());
    qCDebug(lcHost).noquote() << "Tools menu" << menu->objectName() << menu->title() << ":" << texts.join(QLatin1String(" | "));
}

struct THostState
{
    int LoadCount = 0;
    TPackageHost *Registered = nullptr;
};

THostState &HostState()
{
    static THostState state;
    return state;
}

} // namespace

TPackageHost *TPackageHost::RegisteredHost()
{
    return HostState().Registered;
}

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
    if (HostState().LoadCount++ == 0)
        kvIDEInspD5::Initialize();
    m_loaded = true;
    qCDebug(lcHost) << "package started in" << QCoreApplication::applicationName();
}

void TPackageHost::Register(QWidget *mainWindow)
{
    Load();
    if (HostState().Registered) {
        qCDebug(lcHost) << "add-ins are already registered; nothing to do for" << mainWindow;
        return;
    }
    HostState().Registered = this;
    m_toolServices = std::make_unique<TQtToolServices>(mainWindow);
    ToolServices() = m_toolServices.get();
    // The host accepts add-ins only while the registration procedures run.
    LibraryExpertProc() = [this](std::unique_ptr<TIExpert> expert) { m_experts.push_back(std::move(expert)); };
    struct TCloseRegistration
    {
        ~TCloseRegistration() { LibraryExpertProc() = {}; }
    } closeRegistration;
    qCDebug(lcHost) << "registering add-ins with" << mainWindow;
    kvIDEInspD5::RegisterUnits();
    LogToolsMenu(mainWindow);
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
    if (HostState().Registered == this)
        HostState().Registered = nullptr;
    if (--HostState().LoadCount == 0)
        kvIDEInspD5::Finalize();
    m_loaded = false;
}

} // namespace kv
