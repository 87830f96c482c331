#include "platform/kvColor.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>

namespace kv {

namespace {

struct ColorIdent
{
    TColor color;
    const char *ident;
};

// The order of this table is the order of GetColorValues; where two identifiers share a
// value the first one names it.
constexpr ColorIdent ColorIdents[] = {
    {clBlack, "clBlack"},
    {clMaroon, "clMaroon"},
    {clGreen, "clGreen"},
    {clOlive, "clOlive"},
    {clNavy, "clNavy"},
    {clPurple, "clPurple"},
    {clTeal, "clTeal"},
    {clGray, "clGray"},
    {clSilver, "clSilver"},
    {clRed, "clRed"},
    {clLime, "clLime"},
    {clYellow, "clYellow"},
    {clBlue, "clBlue"},
    {clFuchsia, "clFuchsia"},
    {clAqua, "clAqua"},
    {clWhite, "clWhite"},
    {clScrollBar, "clScrollBar"},
    {clBackground, "clBackground"},
    {clActiveCaption, "clActiveCaption"},
    {clInactiveCaption, "clInactiveCaption"},
    {clMenu, "clMenu"},
    {clWindow, "clWindow"},
    {clWindowFrame, "clWindowFrame"},
    {clMenuText, "clMenuText"},
    {clWindowText, "clWindowText"},
    {clCaptionText, "clCaptionText"},
    {clActiveBorder, "clActiveBorder"},
    {clInactiveBorder, "clInactiveBorder"},
    {clAppWorkSpace, "clAppWorkSpace"},
    {clHighlight, "clHighlight"},
    {clHighlightText, "clHighlightText"},
    {clBtnFace, "clBtnFace"},
    {clBtnShadow, "clBtnShadow"},
    {clGrayText, "clGrayText"},
    {clBtnText, "clBtnText"},
    {clInactiveCaptionText, "clInactiveCaptionText"},
    {clBtnHighlight, "clBtnHighlight"},
    {cl3DDkShadow, "cl3DDkShadow"},
    {cl3DLight, "cl3DLight"},
    {clInfoText, "clInfoText"},
    {clInfoBk, "clInfoBk"},
    {clNone, "clNone"},
    {clMoneyGreen, "clMoneyGreen"},
    {clSkyBlue, "clSkyBlue"},
    {clCream, "clCream"},
    {clMedGray, "clMedGray"},
    {clHotLight, "clHotLight"},
    {clGradientActiveCaption, "clGradientActiveCaption"},
    {clGradientInactiveCaption, "clGradientInactiveCaption"},
    {clMenuHighlight, "clMenuHighlight"},
    {clMenuBar, "clMenuBar"},
    {clDefault, "clDefault"},
};

// Read but never written: their values already have a name above.
constexpr ColorIdent ColorAliases[] = {
    {clLtGray, "clLtGray"},
    {clDkGray, "clDkGray"},
};

struct SystemColorRole
{
    QPalette::ColorGroup group;
    QPalette::ColorRole role;
};

// Indexed by system colour index; std::nullopt where the index has no colour.
constexpr std::optional<SystemColorRole> SystemColorRoles[] = {
    SystemColorRole{QPalette::Current, QPalette::Button},            // clScrollBar
    SystemColorRole{QPalette::Current, QPalette::Window},            // clBackground
    SystemColorRole{QPalette::Active, QPalette::Highlight},          // clActiveCaption
    SystemColorRole{QPalette::Inactive, QPalette::Highlight},        // clInactiveCaption
    SystemColorRole{QPalette::Current, QPalette::Window},            // clMenu
    SystemColorRole{QPalette::Current, QPalette::Base},              // clWindow
    SystemColorRole{QPalette::Current, QPalette::Dark},              // clWindowFrame
    SystemColorRole{QPalette::Current, QPalette::WindowText},        // clMenuText
    SystemColorRole{QPalette::Current, QPalette::Text},              // clWindowText
    SystemColorRole{QPalette::Active, QPalette::HighlightedText},    // clCaptionText
    SystemColorRole{QPalette::Current, QPalette::Button},            // clActiveBorder
    SystemColorRole{QPalette::Current, QPalette::Button},            // clInactiveBorder
    SystemColorRole{QPalette::Current, QPalette::Dark},              // clAppWorkSpace (as QMdiArea)
    SystemColorRole{QPalette::Current, QPalette::Highlight},         // clHighlight
    SystemColorRole{QPalette::Current, QPalette::HighlightedText},   // clHighlightText
    SystemColorRole{QPalette::Current, QPalette::Button},            // clBtnFace
    SystemColorRole{QPalette::Current, QPalette::Dark},              // clBtnShadow
    SystemColorRole{QPalette::Disabled, QPalette::Text},             // clGrayText
    SystemColorRole{QPalette::Current, QPalette::ButtonText},        // clBtnText
    SystemColorRole{QPalette::Inactive, QPalette::HighlightedText},  // clInactiveCaptionText
    SystemColorRole{QPalette::Current, QPalette::Light},             // clBtnHighlight
    SystemColorRole{QPalette::Current, QPalette::Shadow},            // cl3DDkShadow
    SystemColorRole{QPalette::Current, QPalette::Midlight},          // cl3DLight
    SystemColorRole{QPalette::Current, QPalette::ToolTipText},       // clInfoText
    SystemColorRole{QPalette::Current, QPalette::ToolTipBase},       // clInfoBk
    std::nullopt,                                                    // index 25
    SystemColorRole{QPalette::Current, QPalette::Link},              // clHotLight
    SystemColorRole{QPalette::Active, QPalette::Highlight},          // clGradientActiveCaption
    SystemColorRole{QPalette::Inactive, QPalette::Highlight},        // clGradientInactiveCaption
    SystemColorRole{QPalette::Current, QPalette::Highlight},         // clMenuHighlight
    SystemColorRole{QPalette::Current, QPalette::Window},            // clMenuBar
};

std::optional<SystemColorRole> RoleOfSystemColor(TColor color)
{
    const quint32 index = quint32(color) & 0x7FFFFFFFu;
    if (index >= std::size(SystemColorRoles))
        return std::nullopt;
    return SystemColorRoles[index];
}

TColor PlainColor(int red, int green, int blue)
{
    return TColor(qint32(quint32(red) | quint32(green) << 8 | quint32(blue) << 16));
}

bool IsAsciiDigit(QChar c) { return c >= u'0' && c <= u'9'; }

bool IsAsciiHexDigit(QChar c)
{
    return IsAsciiDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

// The platform's integer syntax: an optionally signed decimal in the 32-bit signed range,
// or up to 32 bits of hex after "$" or "0x" (so "$FFFFFFFF" is -1, as the platform reads it).
std::optional<TColor> ParseColorNumber(QStringView text)
{
    QStringView hex;
    if (text.startsWith(u'$'))
        hex = text.mid(1);
    else if (text.startsWith(u"0x", Qt::CaseInsensitive))
        hex = text.mid(2);

    if (!hex.isNull()) {
        if (hex.isEmpty() || !std::all_of(hex.begin(), hex.end(), IsAsciiHexDigit))
            return std::nullopt;
        bool ok = false;
        const qulonglong value = hex.toULongLong(&ok, 16);
        if (!ok || value > 0xFFFFFFFFull)
            return std::nullopt;
        return TColor(qint32(quint32(value)));
    }

    QStringView digits = text;
    if (digits.startsWith(u'+') || digits.startsWith(u'-'))
        digits = digits.mid(1);
    if (digits.isEmpty() || !std::all_of(digits.begin(), digits.end(), IsAsciiDigit))
        return std::nullopt;
    bool ok = false;
    const qlonglong value = text.toLongLong(&ok, 10);
    if (!ok || value < std::numeric_limits<qint32>::min() || value > std::numeric_limits<qint32>::max())
        return std::nullopt;
    return TColor(qint32(value));
}

template <std::size_t N>
bool FindIdent(const ColorIdent (&table)[N], QStringView ident, TColor &color)
{
    for (const ColorIdent &entry : table) {
        if (ident.compare(QLatin1String(entry.ident), Qt::CaseInsensitive) == 0) {
            color = entry.color;
            return true;
        }
    }
    return false;
}

} // namespace

bool ColorToIdent(TColor color, QString &ident)
{
    for (const ColorIdent &entry : ColorIdents) {
        if (entry.color == color) {
            ident = QLatin1String(entry.ident);
            return true;
        }
    }
    return false;
}

bool IdentToColor(QStringView ident, TColor &color)
{
    return FindIdent(ColorIdents, ident, color) || FindIdent(ColorAliases, ident, color);
}

QString ColorToString(TColor color)
{
    QString ident;
    if (ColorToIdent(color, ident))
        return ident;
    return QLatin1Char('$') + QString::number(quint32(color), 16).rightJustified(8, QLatin1Char('0')).toUpper();
}

TColor StringToColor(const QString &text)
{
    const QStringView trimmed = QStringView(text).trimmed();
    TColor color = clBlack;
    if (IdentToColor(trimmed, color))
        return color;
    if (const std::optional<TColor> number = ParseColorNumber(trimmed))
        return *number;
    throw Exception(LoadStr(SInvalidColor).arg(text));
}

void GetColorValues(const std::function<void(const QString &ident)> &proc)
{
    for (const ColorIdent &entry : ColorIdents)
        proc(QLatin1String(entry.ident));
}

QColor ColorToQColor(TColor color, const QPalette &palette)
{
    if (color == clNone)
        return QColor(Qt::transparent);
    if (color == clDefault)
        return QColor();
    if (IsSystemColor(color)) {
        const std::optional<SystemColorRole> role = RoleOfSystemColor(color);
        return role ? palette.color(role->group, role->role) : QColor();
    }
    const quint32 bgr = quint32(color);
    return QColor(int(bgr & 0xFF), int(bgr >> 8 & 0xFF), int(bgr >> 16 & 0xFF));
}

QColor ColorToQColor(TColor color)
{
    return ColorToQColor(color, QGuiApplication::palette());
}

TColor ColorToRGB(TColor color, const QPalette &palette)
{
    if (!IsSystemColor(color))
        return color;
    const QColor resolved = ColorToQColor(color, palette);
    if (!resolved.isValid())
        return clBlack;
    return PlainColor(resolved.red(), resolved.green(), resolved.blue());
}

TColor QColorToColor(const QColor &color)
{
    if (!color.isValid())
        return clDefault;
    if (color.alpha() == 0)
        return clNone;
    const QColor rgb = color.toRgb();
    return PlainColor(rgb.red(), rgb.green(), rgb.blue());
}

} // namespace kv
