#pragma once

#include "kv_export.h"

// Loads the package into a Qt Widgets program, as the host IDE's package loader did:
// Load runs the unit start table; Register gives the add-ins the program's main menu and
// runs the units' registration procedures; destruction (or Unload) destroys the
// registered add-ins and runs the unit stop table.
//
// A program may hold the package twice, linked and preloaded by the launcher: the units
// stop when the last host unloads, and the add-ins are registered by the first host that
// registers only, so that the Tools menu gets one item.

#include <QObject>
#include <QPointer>

#include <memory>
#include <vector>

class QWidget;

namespace kv {

class TIExpert;
class TIToolServices;

class KV_EXPORT TPackageHost : public QObject
{
    Q_OBJECT
public:
    explicit TPackageHost(QObject *parent = nullptr);
    ~TPackageHost() override;

    void Load();
    // Registers the add-ins with mainWindow's menu bar as the host's main menu (none when
    // mainWindow is null or has no menu bar: the add-ins are registered without a menu).
    void Register(QWidget *mainWindow);
    void Unload();

    bool IsLoaded() const { return m_loaded; }
    // Whether this host registered the process's add-ins.
    bool IsRegistered() const { return RegisteredHost() == this; }
    // The host that registered the add-ins, or null.
    static TPackageHost *RegisteredHost();
    const std::vector<std::unique_ptr<TIExpert>> &Experts() const { return m_experts; }

private:
    bool m_loaded = false;
    std::unique_ptr<TIToolServices> m_toolServices;
    std::vector<std::unique_ptr<TIExpert>> m_experts;
};

} // namespace kv
