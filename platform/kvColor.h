#pragma once

#include "kv_export.h"

// Colours in the platform's encoding: 0x00BBGGRR for plain colours, 0x80000000 | index for
// the system colours (resolved at paint time, here through a QPalette), and two special
// values: clNone (no colour, paint nothing) and clDefault (whatever the control's default is).

#include <QMetaType>
#include <QString>
#include <QStringView>
#include <QtGlobal>

#include <functional>

class QColor;
class QPalette;

namespace kv {

// An enum rather than an int alias so that QMetaType and QVariant tell a colour from an
// integer (editors are chosen by type), while it still converts to int where arithmetic
// needs it. It is deliberately not a Q_ENUM: a colour is a number with names, not a
// closed enumeration.
enum TColor : qint32 {
    clBlack = 0x000000,
    clMaroon = 0x000080,
    clGreen = 0x008000,
    clOlive = 0x008080,
    clNavy = 0x800000,
    clPurple = 0x800080,
    clTeal = 0x808000,
    clGray = 0x808080,
    clSilver = 0xC0C0C0,
    clRed = 0x0000FF,
    clLime = 0x00FF00,
    clYellow = 0x00FFFF,
    clBlue = 0xFF0000,
    clFuchsia = 0xFF00FF,
    clAqua = 0xFFFF00,
    clLtGray = 0xC0C0C0,
    clDkGray = 0x808080,
    clWhite = 0xFFFFFF,
    clMoneyGreen = 0xC0DCC0,
    clSkyBlue = 0xF0CAA6,
    clCream = 0xF0FBFF,
    clMedGray = 0xA4A0A0,

    // System colours, by the platform's system colour index.
    clScrollBar = qint32(0x80000000u),
    clBackground = qint32(0x80000001u),
    clActiveCaption = qint32(0x80000002u),
    clInactiveCaption = qint32(0x80000003u),
    clMenu = qint32(0x80000004u),
    clWindow = qint32(0x80000005u),
    clWindowFrame = qint32(0x80000006u),
    clMenuText = qint32(0x80000007u),
    clWindowText = qint32(0x80000008u),
    clCaptionText = qint32(0x80000009u),
    clActiveBorder = qint32(0x8000000Au),
    clInactiveBorder = qint32(0x8000000Bu),
    clAppWorkSpace = qint32(0x8000000Cu),
    clHighlight = qint32(0x8000000Du),
    clHighlightText = qint32(0x8000000Eu),
    clBtnFace = qint32(0x8000000Fu),
    clBtnShadow = qint32(0x80000010u),
    clGrayText = qint32(0x80000011u),
    clBtnText = qint32(0x80000012u),
    clInactiveCaptionText = qint32(0x80000013u),
    clBtnHighlight = qint32(0x80000014u),
    cl3DDkShadow = qint32(0x80000015u),
    cl3DLight = qint32(0x80000016u),
    clInfoText = qint32(0x80000017u),
    clInfoBk = qint32(0x80000018u),
    // index 25 has no colour
    clHotLight = qint32(0x8000001Au),
    clGradientActiveCaption = qint32(0x8000001Bu),
    clGradientInactiveCaption = qint32(0x8000001Cu),
    clMenuHighlight = qint32(0x8000001Du),
    clMenuBar = qint32(0x8000001Eu),

    clNone = 0x1FFFFFFF,
    clDefault = 0x20000000,
};

constexpr bool IsSystemColor(TColor color) { return (quint32(color) & 0x80000000u) != 0; }

// The identifier of a named colour ("clBtnFace"), or "$" and eight hex digits ("$00123456").
KV_EXPORT QString ColorToString(TColor color);
// An identifier (ignoring case) or a number: decimal, "$1A2B3C" or "0x1A2B3C". Leading and
// trailing blanks are ignored. Raises kv::Exception (SInvalidColor) for anything else.
KV_EXPORT TColor StringToColor(const QString &text);

// Neither raises. Identifiers compare ignoring case; the aliases clLtGray and clDkGray are
// accepted by IdentToColor, while ColorToIdent names those values clSilver and clGray.
KV_EXPORT bool ColorToIdent(TColor color, QString &ident);
KV_EXPORT bool IdentToColor(QStringView ident, TColor &color);

// Every colour identifier in the platform's order: the sixteen basic colours, the system
// colours by index, clNone (the classic 42), then the later additions and clDefault.
KV_EXPORT void GetColorValues(const std::function<void(const QString &ident)> &proc);

// The colour to paint with. System colours come from the palette's roles (in its current
// colour group, except where the colour names a state: captions use the active and
// inactive groups, clGrayText the disabled text). clNone gives Qt::transparent; clDefault
// and system indexes without a role give an invalid QColor, meaning "use your default".
// The high byte of a plain colour is ignored.
KV_EXPORT QColor ColorToQColor(TColor color, const QPalette &palette);
// The same through the application's palette.
KV_EXPORT QColor ColorToQColor(TColor color);

// A system colour resolved to its plain value (black for an index without a role); any
// other value unchanged, clNone and clDefault included.
KV_EXPORT TColor ColorToRGB(TColor color, const QPalette &palette);

// The plain colour of a QColor; alpha is ignored, except that a fully transparent colour is
// clNone and an invalid one clDefault, so that both survive a round trip through QColor.
KV_EXPORT TColor QColorToColor(const QColor &color);

} // namespace kv

Q_DECLARE_METATYPE(kv::TColor)
