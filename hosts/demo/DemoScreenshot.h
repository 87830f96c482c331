#pragma once

// Pictures of a main window with one of its menus open. They work without a display
// (QT_QPA_PLATFORM=offscreen), where no window system composes the open menu over the
// window: both are grabbed and the menu is painted in at its place.

#include <QImage>
#include <QString>

class QMainWindow;
class QMenu;

// Shows window, opens menu from the window's menu bar, grabs both and closes the menu
// again. Returns a null image and sets errorText when the menu does not open.
QImage GrabWithOpenMenu(QMainWindow *window, QMenu *menu, QString *errorText);

// Writes image to fileName as PNG (whatever the file's extension), replacing the file only
// once the whole picture is written. Returns false and sets errorText when that fails.
bool SavePng(const QImage &image, const QString &fileName, QString *errorText);
