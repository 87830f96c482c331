#pragma once

#include "kv_export.h"

// The dialog that asks what to do when reading a form or data module fails: ignore this
// error, ignore every further error of the load, or cancel the load. The unit installs it as
// the component filer's ReaderErrorHandler when it starts.

#include <QDialog>
#include <QPointer>

class QLabel;
class QPushButton;

namespace kv {

class KV_EXPORT TReaderErrorDlg : public QDialog
{
    Q_OBJECT
public:
    explicit TReaderErrorDlg(QWidget *Parent = nullptr);

    // Puts Message into the question (the template's one placeholder).
    void SetMessage(const QString &Message);
    QString MessageText() const;

private:
    QLabel *m_message = nullptr;
};

// The dialog while it is shown; null otherwise.
extern KV_EXPORT QPointer<TReaderErrorDlg> ReaderErrorDlg;

// Asks the user about Message. Ignore: Handled. Ignore all: Handled and IgnoreAll. Cancel or
// closing the dialog: not Handled. Any other result changes neither.
KV_EXPORT void AskReaderError(const QString &Message, bool &Handled, bool &IgnoreAll);

namespace ideRerrDlg {
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
} // namespace ideRerrDlg

} // namespace kv
