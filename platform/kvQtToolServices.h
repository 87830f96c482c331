#pragma once

#include "kv_export.h"

// Tool services of a Qt Widgets program: the main menu is the menu bar of the program's
// main window, its items the QMenus and QActions below it.

#include "platform/kvToolIntf.h"

#include <QPointer>

class QMenuBar;
class QWidget;

namespace kv {

class KV_EXPORT TQtToolServices : public TIToolServices
{
public:
    explicit TQtToolServices(QWidget *mainWindow);

    // Null when the window is gone or has no menu bar.
    std::unique_ptr<TIMainMenuIntf> GetMainMenu() const override;

    // The menu bar of window, without creating one (QMainWindow::menuBar would).
    static QMenuBar *MenuBarOf(const QWidget *window);

private:
    QPointer<QWidget> m_window;
};

} // namespace kv
