#pragma once

#include "kv_export.h"

// The dialogs that property editors open. Each goes through a replaceable hook so that
// tests and programs without a screen never block; an empty hook restores the standard
// dialog. Each returns whether the user confirmed, and then the new value in its argument.

#include <functional>

class QColor;
class QDialog;
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

// Message boxes, with the platform's kinds, buttons and results.
enum TMsgDlgType { mtWarning, mtError, mtInformation, mtConfirmation, mtCustom };
enum TMsgDlgBtn {
    mbYes = 0x1, mbNo = 0x2, mbOK = 0x4, mbCancel = 0x8, mbAbort = 0x10, mbRetry = 0x20,
    mbIgnore = 0x40, mbAll = 0x80, mbNoToAll = 0x100, mbYesToAll = 0x200, mbHelp = 0x400
};
using TMsgDlgButtons = int; // an or of TMsgDlgBtn
enum TModalResult { mrNone = 0, mrOk, mrCancel, mrAbort, mrRetry, mrIgnore, mrYes, mrNo, mrAll, mrNoToAll, mrYesToAll };

using TMessageBoxHook = std::function<int(const QString &Text, const QString &Caption, TMsgDlgType Type, TMsgDlgButtons Buttons)>;
KV_EXPORT TMessageBoxHook SetMessageBoxHook(TMessageBoxHook Hook);
// Shows Text modally and returns the TModalResult of the button chosen; mrCancel when the box
// is closed otherwise, or when there is no widget application to show it in.
KV_EXPORT int MessageBox(const QString &Text, const QString &Caption, TMsgDlgType Type, TMsgDlgButtons Buttons);

// Runs one of our modal dialogs and returns its result (QDialog::exec by default). Tests
// install a hook that answers for the user, so that nothing blocks.
using TModalDialogHook = std::function<int(QDialog &Dialog)>;
KV_EXPORT TModalDialogHook SetModalDialogHook(TModalDialogHook Hook);
KV_EXPORT int ExecuteModal(QDialog &Dialog);

} // namespace kv
