#include "platform/kvDesignDialogs.h"

#include "foundation/ideConsts.h"
#include "platform/kvScreen.h"

#include <QApplication>
#include <QColor>
#include <QColorDialog>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFont>
#include <QFontDatabase>
#include <QFileDialog>
#include <QFontDialog>
#include <QImageReader>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QVBoxLayout>

#include <utility>

namespace kv {

namespace {

// Each hook type has one slot.
template <typename THook>
THook &HookOf()
{
    static THook hook;
    return hook;
}

// The standard dialogs need a widget application; a console or GUI-only program gets no
// dialog (and nothing changes) rather than a crash.
bool CanShowDialogs()
{
    return qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr;
}

QWidget *DialogOwner()
{
    if (QWidget *active = Screen().ActiveForm())
        return active;
    return Screen().MainForm();
}

// One entry per line, each followed by a line break, so that empty entries (a last one
// included) survive the trip through the editor.
QString LinesToText(const QStringList &Lines)
{
    QString text;
    for (const QString &line : Lines) {
        text += line;
        text += QLatin1Char('\n');
    }
    return text;
}

QStringList TextToLines(const QString &Text)
{
    QStringList lines = Text.split(QLatin1Char('\n'));
    if (lines.constLast().isEmpty()) // the break after the last entry ends it, it adds none
        lines.removeLast();
    for (QString &line : lines) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
    }
    return lines;
}

bool ExecuteDefaultStringListDialog(QStringList &Lines, const QString &Caption)
{
    if (!CanShowDialogs())
        return false;
    QDialog dialog(DialogOwner());
    dialog.setSizeGripEnabled(true);
    dialog.resize(468, 290);

    auto *layout = new QVBoxLayout(&dialog);
    auto *editor = new QPlainTextEdit(&dialog);
    editor->setLineWrapMode(QPlainTextEdit::NoWrap);
    editor->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    editor->setPlainText(LinesToText(Lines));
    editor->setTabChangesFocus(true); // Tab moves on to the buttons, as in the other editors
    layout->addWidget(editor);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    layout->addWidget(buttons);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);

    const QString name = Caption.isEmpty() ? LoadStr(SStringListEditor) : Caption;
    const auto showLineCount = [&dialog, editor, name] {
        dialog.setWindowTitle(LoadStr(SStringListEditing)
                                  .arg(name, QString::number(TextToLines(editor->toPlainText()).size())));
    };
    showLineCount();
    QObject::connect(editor, &QPlainTextEdit::textChanged, &dialog, showLineCount);
    editor->setFocus();

    if (dialog.exec() != QDialog::Accepted)
        return false;
    Lines = TextToLines(editor->toPlainText());
    return true;
}

} // namespace

TFontDialogHook SetFontDialogHook(TFontDialogHook Hook)
{
    return std::exchange(HookOf<TFontDialogHook>(), std::move(Hook));
}

TColorDialogHook SetColorDialogHook(TColorDialogHook Hook)
{
    return std::exchange(HookOf<TColorDialogHook>(), std::move(Hook));
}

TStringListDialogHook SetStringListDialogHook(TStringListDialogHook Hook)
{
    return std::exchange(HookOf<TStringListDialogHook>(), std::move(Hook));
}

TPictureDialogHook SetPictureDialogHook(TPictureDialogHook Hook)
{
    return std::exchange(HookOf<TPictureDialogHook>(), std::move(Hook));
}

bool ExecuteFontDialog(QFont &Font)
{
    if (const TFontDialogHook &hook = HookOf<TFontDialogHook>())
        return hook(Font);
    if (!CanShowDialogs())
        return false;
    bool confirmed = false;
    const QFont chosen = QFontDialog::getFont(&confirmed, Font, DialogOwner());
    if (confirmed)
        Font = chosen;
    return confirmed;
}

bool ExecuteColorDialog(QColor &Color)
{
    if (const TColorDialogHook &hook = HookOf<TColorDialogHook>())
        return hook(Color);
    if (!CanShowDialogs())
        return false;
    // An invalid colour (the control's default) starts the dialog on white, as Qt does.
    const QColor chosen = QColorDialog::getColor(Color.isValid() ? Color : QColor(Qt::white), DialogOwner(),
                                                 QString(), QColorDialog::ShowAlphaChannel);
    if (!chosen.isValid()) // cancelled
        return false;
    Color = chosen;
    return true;
}

bool ExecuteStringListDialog(QStringList &Lines, const QString &Caption)
{
    if (const TStringListDialogHook &hook = HookOf<TStringListDialogHook>())
        return hook(Lines, Caption);
    return ExecuteDefaultStringListDialog(Lines, Caption);
}

bool ExecutePictureDialog(QString &FileName)
{
    if (const TPictureDialogHook &hook = HookOf<TPictureDialogHook>())
        return hook(FileName);
    if (!CanShowDialogs())
        return false;
    QStringList patterns;
    for (const QByteArray &format : QImageReader::supportedImageFormats())
        patterns.append(QLatin1String("*.") + QString::fromLatin1(format));
    const QString filter = LoadStr(SPictureFiles).arg(patterns.join(QLatin1Char(' ')));
    const QString chosen = QFileDialog::getOpenFileName(DialogOwner(), LoadStr(SLoadPicture), FileName, filter);
    if (chosen.isEmpty())
        return false;
    FileName = chosen;
    return true;
}

TMessageBoxHook SetMessageBoxHook(TMessageBoxHook Hook)
{
    return std::exchange(HookOf<TMessageBoxHook>(), std::move(Hook));
}

int MessageBox(const QString &Text, const QString &Caption, TMsgDlgType Type, TMsgDlgButtons Buttons)
{
    if (const TMessageBoxHook &hook = HookOf<TMessageBoxHook>())
        return hook(Text, Caption, Type, Buttons);
    if (!CanShowDialogs())
        return mrCancel;
    static constexpr struct {
        TMsgDlgBtn Button;
        QMessageBox::StandardButton Qt;
        TModalResult Result;
    } buttons[] = {
        {mbYes, QMessageBox::Yes, mrYes}, {mbNo, QMessageBox::No, mrNo}, {mbOK, QMessageBox::Ok, mrOk},
        {mbCancel, QMessageBox::Cancel, mrCancel}, {mbAbort, QMessageBox::Abort, mrAbort},
        {mbRetry, QMessageBox::Retry, mrRetry}, {mbIgnore, QMessageBox::Ignore, mrIgnore},
        {mbAll, QMessageBox::YesAll, mrAll}, {mbNoToAll, QMessageBox::NoToAll, mrNoToAll},
        {mbYesToAll, QMessageBox::YesToAll, mrYesToAll}, {mbHelp, QMessageBox::Help, mrNone},
    };
    static constexpr QMessageBox::Icon icons[] = {QMessageBox::Warning, QMessageBox::Critical,
                                                  QMessageBox::Information, QMessageBox::Question,
                                                  QMessageBox::NoIcon};
    QMessageBox box(icons[Type], Caption, Text, QMessageBox::NoButton, DialogOwner());
    for (const auto &b : buttons) {
        if (Buttons & b.Button)
            box.addButton(b.Qt);
    }
    if (box.buttons().isEmpty())
        box.addButton(QMessageBox::Ok);
    const int chosen = box.exec();
    for (const auto &b : buttons) {
        if (chosen == b.Qt)
            return b.Result;
    }
    return mrCancel;
}

TModalDialogHook SetModalDialogHook(TModalDialogHook Hook)
{
    return std::exchange(HookOf<TModalDialogHook>(), std::move(Hook));
}

int ExecuteModal(QDialog &Dialog)
{
    if (const TModalDialogHook &hook = HookOf<TModalDialogHook>())
        return hook(Dialog);
    return Dialog.exec();
}

} // namespace kv
