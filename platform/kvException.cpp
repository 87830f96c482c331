#include "platform/kvException.h"

#include <QApplication>
#include <QMessageBox>
#include <QWidget>
#include <QtDebug>

namespace kv {

Exception::Exception(const QString &message)
    : m_message(message)
    , m_utf8(message.toUtf8())
{
}

namespace {

TExceptionHandler &CurrentHandler()
{
    static TExceptionHandler handler;
    return handler;
}

void DefaultShow(const QString &message)
{
    if (qobject_cast<QApplication *>(QCoreApplication::instance())
        && QGuiApplication::platformName() != QLatin1String("offscreen")) {
        QMessageBox::critical(QApplication::activeWindow(), QCoreApplication::applicationName(), message);
        return;
    }
    qWarning().noquote() << message;
}

} // namespace

void ShowException(const std::exception &e)
{
    if (const auto *own = dynamic_cast<const Exception *>(&e))
        ShowException(own->Message());
    else
        ShowException(QString::fromLocal8Bit(e.what()));
}

void ShowException(const QString &message)
{
    if (const TExceptionHandler &handler = CurrentHandler())
        handler(message);
    else
        DefaultShow(message);
}

TExceptionHandler SetExceptionHandler(TExceptionHandler handler)
{
    TExceptionHandler previous = std::move(CurrentHandler());
    CurrentHandler() = std::move(handler);
    return previous;
}

} // namespace kv
