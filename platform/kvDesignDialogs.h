#pragma once

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
TFontDialogHook SetFontDialogHook(TFontDialogHook Hook);
TColorDialogHook SetColorDialogHook(TColorDialogHook Hook);
TStringListDialogHook SetStringListDialogHook(TStringListDialogHook Hook);
TPictureDialogHook SetPictureDialogHook(TPictureDialogHook Hook);

bool ExecuteFontDialog(QFont &Font);
bool ExecuteColorDialog(QColor &Color);
bool ExecuteStringListDialog(QStringList &Lines, const QString &Caption);
bool ExecutePictureDialog(QString &FileName);

} // namespace kv
