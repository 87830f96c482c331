#pragma once

#include "kv_export.h"

// The dialogs that property editors open. Each goes through a replaceable hook so that
// tests and programs without a screen never block; an empty hook restores the standard
// dialog. Each returns whether the user confirmed, and then the new value in its argument.

#include <functional>

class QColor;
class QFont;
class QString;
#include <QtContainerFwd>

namespace kv {

using TFontDialogHook = std::function<bool(QFont &Font)>;
using TColorDialogHook = std::function<bool(QColor &Color)>;
using TStringListDialogHook = std::function<bool(QStringList &Lines, const QString &Caption)>;
// Picks a picture file; FileName comes in as the file to start from.
using TPictureDialogHook = std::function<bool(QString &FileName)>;

// Each returns the hook it replaces.
KV_EXPORT TFontDialogHook SetFontDialogHook(TFontDialogHook Hook);
KV_EXPORT TColorDialogHook SetColorDialogHook(TColorDialogHook Hook);
KV_EXPORT TStringListDialogHook SetStringListDialogHook(TStringListDialogHook Hook);
KV_EXPORT TPictureDialogHook SetPictureDialogHook(TPictureDialogHook Hook);

KV_EXPORT bool ExecuteFontDialog(QFont &Font);
KV_EXPORT bool ExecuteColorDialog(QColor &Color);
KV_EXPORT bool ExecuteStringListDialog(QStringList &Lines, const QString &Caption);
KV_EXPORT bool ExecutePictureDialog(QString &FileName);

} // namespace kv
