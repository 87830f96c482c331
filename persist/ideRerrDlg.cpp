#include "persist/ideRerrDlg.h"

#include "foundation/ideConsts.h"
#include "persist/ideCommon.h"
#include "platform/kvDesignDialogs.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kv {

QPointer<TReaderErrorDlg> ReaderErrorDlg;

TReaderErrorDlg::TReaderErrorDlg(QWidget *Parent) : QDialog(Parent)
{
    setObjectName(QStringLiteral("ReaderErrorDlg"));
    setWindowTitle(LoadStr(SErrDlg));

    auto *bevel = new QFrame(this);
    bevel->setObjectName(QStringLiteral("Bevel1"));
    bevel->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    m_message = new QLabel(LoadStr(SErrMess), bevel);
    m_message->setObjectName(QStringLiteral("LerrMess"));
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // The message wraps inside the frame's width; a long one makes the dialog taller.
    m_message->setFixedWidth(283);
    m_message->setMinimumHeight(61);
    m_message->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto *frameLayout = new QVBoxLayout(bevel);
    frameLayout->setContentsMargins(6, 4, 11, 4);
    frameLayout->addWidget(m_message);

    struct Button {
        const char *Name;
        const char *Text;
        int Result;
    };
    static constexpr Button buttons[] = {
        {"IgnoreButton", SIgnoreButton, mrOk},
        {"CancelButton", SCancelButton, mrCancel},
        {"IgnoreAllButton", SIgnoreAll, mrIgnore},
    };
    auto *buttonRow = new QHBoxLayout;
    buttonRow->addStretch();
    for (const Button &b : buttons) {
        auto *button = new QPushButton(LoadStr(b.Text), this);
        button->setObjectName(QLatin1String(b.Name));
        button->setMinimumSize(75, 25);
        const int result = b.Result;
        connect(button, &QPushButton::clicked, this, [this, result] { done(result); });
        buttonRow->addWidget(button);
    }
    buttonRow->addStretch();

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 4, 7);
    layout->addWidget(bevel);
    layout->addLayout(buttonRow);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void TReaderErrorDlg::SetMessage(const QString &Message)
{
    // The template's own text follows the message as it is: nothing is trimmed.
    m_message->setText(LoadStr(SErrMess).arg(Message));
}

QString TReaderErrorDlg::MessageText() const
{
    return m_message->text();
}

void AskReaderError(const QString &Message, bool &Handled, bool &IgnoreAll)
{
    TReaderErrorDlg dialog(qobject_cast<QApplication *>(QCoreApplication::instance()) ? QApplication::activeWindow()
                                                                                       : nullptr);
    dialog.SetMessage(Message);
    ReaderErrorDlg = &dialog;
    // Esc and the close box end the dialog as Cancel does (QDialog rejects with 0).
    const int result = ExecuteModal(dialog);
    ReaderErrorDlg = nullptr;
    switch (result) {
    case mrOk:
        Handled = true;
        break;
    case mrIgnore:
        Handled = true;
        IgnoreAll = true;
        break;
    case mrCancel:
    case QDialog::Rejected:
        Handled = false;
        break;
    default:
        break;
    }
}

void ideRerrDlg::Initialize()
{
    ReaderErrorHandler = &AskReaderError;
}

void ideRerrDlg::Finalize()
{
    ReaderErrorHandler = nullptr;
}

} // namespace kv
