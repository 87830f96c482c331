#pragma once

#include "kv_export.h"

#include <QString>
#include <QByteArray>

#include <exception>
#include <functional>
#include <type_traits>

namespace kv {

// The library's general exception: a message text, usually from the ideConsts table.
class KV_EXPORT Exception : public std::exception
{
public:
    explicit Exception(const QString &message);
    // Formats a message of the table: %1, %2… take the arguments in order. Numbers are
    // turned into text first, so that QString::arg never reads one as a field width.
    template <typename... Args>
    static Exception Fmt(const char *message, const Args &...args)
    {
        return Exception(QString::fromUtf8(message).arg(ArgText(args)...));
    }

    const QString &Message() const noexcept { return m_message; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    static QString ArgText(const QString &s) { return s; }
    static QString ArgText(QStringView s) { return s.toString(); }
    static QString ArgText(QLatin1String s) { return s; }
    static QString ArgText(const char *s) { return QString::fromUtf8(s); }
    template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T>>>
    static QString ArgText(T n)
    {
        return QString::number(n);
    }

    QString m_message;
    QByteArray m_utf8;
};

// How the application shows an error that reached an event handler, slot or timer.
using TExceptionHandler = std::function<void(const QString &message)>;

// Shows the error through the installed handler (a message box by default, or a
// warning on the log when there is no QApplication).
KV_EXPORT void ShowException(const std::exception &e);
KV_EXPORT void ShowException(const QString &message);

// Replaces the handler; an empty handler restores the default. Returns the previous one.
KV_EXPORT TExceptionHandler SetExceptionHandler(TExceptionHandler handler);

// Runs f and hands any exception it raises to ShowException, so that nothing of ours
// throws through Qt's event or signal dispatch.
template <typename F>
void Guarded(F &&f) noexcept
{
    try {
        f();
    } catch (const std::exception &e) {
        ShowException(e);
    } catch (...) {
        ShowException(QStringLiteral("Unknown error"));
    }
}

} // namespace kv
