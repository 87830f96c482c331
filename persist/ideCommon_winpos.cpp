#include "persist/ideCommon_winpos.h"

#include "persist/ideSystem_registry.h"

#include <QGuiApplication>
#include <QRect>
#include <QScreen>
#include <QWidget>
#include <QtEndian>

#include <array>

namespace kv {

namespace {

constexpr int PlacementSize = 44;
// Show commands of the placement record.
constexpr qint32 SwShowNormal = 1;
constexpr qint32 SwShowMinimized = 2;
constexpr qint32 SwShowMaximized = 3;
// Flags: a minimised window returns maximised.
constexpr qint32 WpfRestoreToMaximized = 2;

enum TWindowState : qint32 { wsNormal = 0, wsMinimized = 1, wsMaximized = 2 };

QString PosKey(const QString &Key)
{
    return QStringLiteral("Forms\\") + Key + u'\\';
}

// The normal rectangle: a window's geometry when neither minimised nor maximised.
QRect NormalRect(const QWidget *Control)
{
    if (Control->isWindow() && (Control->isMinimized() || Control->isMaximized() || Control->isFullScreen())) {
        const QRect normal = Control->normalGeometry();
        if (normal.isValid())
            return normal;
    }
    return Control->geometry();
}

bool LiesOnScreen(const QRect &Rect)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (const QScreen *screen : screens) {
        if (screen->geometry().intersects(Rect))
            return true;
    }
    return false;
}

} // namespace

void WriteWinPosToReg(const QWidget *Control, const QString &Key)
{
    if (!Control)
        return;
    const QRect normal = NormalRect(Control);
    const bool window = Control->isWindow();
    qint32 show = SwShowNormal;
    qint32 flags = 0;
    TWindowState state = wsNormal;
    if (window && Control->isMinimized()) {
        show = SwShowMinimized;
        state = wsMinimized;
        if (Control->isMaximized())
            flags = WpfRestoreToMaximized;
    } else if (window && Control->isMaximized()) {
        show = SwShowMaximized;
        state = wsMaximized;
    }
    const std::array<qint32, PlacementSize / 4> record = {
        PlacementSize, flags, show, -1, -1, -1, -1,
        normal.x(), normal.y(), normal.x() + normal.width(), normal.y() + normal.height()};
    QByteArray bytes(PlacementSize, '\0');
    for (size_t i = 0; i < record.size(); ++i)
        qToLittleEndian<qint32>(record[i], bytes.data() + 4 * i);
    WriteBufToRegistry(PosKey(Key) + QStringLiteral("WinPos"), bytes);
    if (window)
        WriteToRegistry(PosKey(Key) + QStringLiteral("WindowState"), qint32(state));
}

void ReadWinPosFromReg(QWidget *Control, const QString &Key)
{
    if (!Control)
        return;
    std::array<char, PlacementSize + 1> bytes{};
    if (ReadBufFromRegistry(PosKey(Key) + QStringLiteral("WinPos"), bytes.data(), qint32(bytes.size())) != PlacementSize)
        return;
    const auto field = [&bytes](int Index) { return qFromLittleEndian<qint32>(bytes.data() + 4 * Index); };
    if (field(0) != PlacementSize)
        return;
    const qint64 left = field(7), top = field(8), right = field(9), bottom = field(10);
    if (right <= left || bottom <= top || right - left > QWIDGETSIZE_MAX || bottom - top > QWIDGETSIZE_MAX)
        return;
    const QRect normal(int(left), int(top), int(right - left), int(bottom - top));
    const bool window = Control->isWindow();
    if (window && !LiesOnScreen(normal))
        return;
    if (!window) {
        Control->setGeometry(normal);
        return;
    }
    const int state = ReadFromRegistry(PosKey(Key) + QStringLiteral("WindowState"), qint32(wsNormal)).toInt();
    // The normal geometry first, so that a window maximised or minimised afterwards returns to it.
    Control->setWindowState(Control->windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen));
    Control->setGeometry(normal);
    if (state == wsMaximized)
        Control->setWindowState(Control->windowState() | Qt::WindowMaximized);
    else if (state == wsMinimized)
        Control->setWindowState(Control->windowState() | Qt::WindowMinimized
                                | ((field(1) & WpfRestoreToMaximized) ? Qt::WindowMaximized : Qt::WindowNoState));
}

} // namespace kv
