#include "hosts/demo/DemoScreenshot.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QImageWriter>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {

// How long a window or menu may take to appear.
constexpr int ShowTimeoutMs = 5000;

template <typename Condition>
bool WaitFor(Condition condition)
{
    QDeadlineTimer deadline(ShowTimeoutMs);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

void Settle()
{
    // Layouts and deferred updates run from posted events; a few rounds see them done.
    for (int round = 0; round < 5; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

} // namespace

QImage GrabWithOpenMenu(QMainWindow *window, QMenu *menu, QString *errorText)
{
    QMenuBar *bar = window->menuBar();
    if (!bar->actions().contains(menu->menuAction())) {
        *errorText = QCoreApplication::translate("DemoScreenshot", "The menu \"%1\" is not in the menu bar of \"%2\".")
                         .arg(menu->title().remove(u'&'), window->windowTitle());
        return {};
    }
    // Animated or fading menus would be grabbed half drawn.
    QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false);
    QApplication::setEffectEnabled(Qt::UI_FadeMenu, false);

    window->show();
    window->raise();
    window->activateWindow();
    if (!WaitFor([window] { return window->isVisible(); })) {
        *errorText = QCoreApplication::translate("DemoScreenshot", "The window \"%1\" did not appear.")
                         .arg(window->windowTitle());
        return {};
    }
    Settle();

    bar->setActiveAction(menu->menuAction());
    if (!WaitFor([menu] { return menu->isVisible(); })) {
        *errorText = QCoreApplication::translate("DemoScreenshot", "The menu \"%1\" did not open.")
                         .arg(menu->title().remove(u'&'));
        return {};
    }
    Settle();

    const QPixmap windowShot = window->grab();
    const QPixmap menuShot = menu->grab();
    const QPoint menuAt = window->mapFromGlobal(menu->geometry().topLeft());
    menu->hide();
    bar->setActiveAction(nullptr);

    // A menu may reach past the window's edge: the picture then grows to hold it.
    const QRect windowRect(QPoint(0, 0), windowShot.deviceIndependentSize().toSize());
    const QRect menuRect(menuAt, menuShot.deviceIndependentSize().toSize());
    const QRect all = windowRect.united(menuRect);
    const qreal ratio = windowShot.devicePixelRatio();
    QImage picture((all.size() * ratio), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.drawPixmap(windowRect.topLeft() - all.topLeft(), windowShot);
    painter.drawPixmap(menuRect.topLeft() - all.topLeft(), menuShot);
    painter.end();
    return picture;
}

bool SavePng(const QImage &image, const QString &fileName, QString *errorText)
{
    const QString shownName = QDir::toNativeSeparators(fileName);
    if (image.isNull()) {
        *errorText = QCoreApplication::translate("DemoScreenshot", "There is no picture to write to \"%1\".").arg(shownName);
        return false;
    }
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        *errorText = QCoreApplication::translate("DemoScreenshot", "Cannot write \"%1\": %2").arg(shownName, file.errorString());
        return false;
    }
    QImageWriter writer(&file, "png");
    if (!writer.write(image)) {
        *errorText = QCoreApplication::translate("DemoScreenshot", "Cannot write \"%1\": %2").arg(shownName, writer.errorString());
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        *errorText = QCoreApplication::translate("DemoScreenshot", "Cannot write \"%1\": %2").arg(shownName, file.errorString());
        return false;
    }
    return true;
}
