#pragma once

#include "kv_export.h"

// Window positions in the settings store.

#include <QString>

class QWidget;

namespace kv {

// Stores the position of Control under "Forms\" + Key: "WinPos", the 44-byte placement record
// (32-bit little-endian numbers: its length 44, flags, show command, minimised position,
// maximised position and the normal rectangle as left, top, right and bottom, right and bottom
// exclusive), and for a window "WindowState" (0 normal, 1 minimised, 2 maximised). The normal
// rectangle is the geometry the window has when it is neither minimised nor maximised, without
// its frame; a control's is relative to its parent. Nothing for null.
KV_EXPORT void WriteWinPosToReg(const QWidget *Control, const QString &Key);

// Gives Control the normal rectangle stored under "Forms\" + Key and, for a window, the stored
// state, which a hidden window takes when it is next shown. Nothing for null, for a record that
// is not exactly 44 bytes long with the length 44 in it, for an empty rectangle, and for a
// window whose rectangle meets no screen.
KV_EXPORT void ReadWinPosFromReg(QWidget *Control, const QString &Key);

} // namespace kv
