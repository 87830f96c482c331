#pragma once

// Text notes and reports in an MDI area.

#include <QMainWindow>
#include <QFont>
#include <QPointer>

#include <optional>

class DemoDataModule;
class DemoDataSet;
class QMdiArea;
class QMdiSubWindow;
class QPlainTextEdit;
class QTimer;

class DocumentsForm : public QMainWindow
{
    Q_OBJECT

public:
    explicit DocumentsForm(DemoDataModule *dataModule, QWidget *parent = nullptr);

    QMdiArea *mdiArea() const;

    // Opens an empty note.
    QMdiSubWindow *newNote();
    // Opens a text file as a note; returns null and sets errorText when it cannot be read.
    QMdiSubWindow *openNote(const QString &fileName, QString *errorText);
    // Writes the note of subWindow to fileName; false and errorText when that fails.
    bool saveNote(QMdiSubWindow *subWindow, const QString &fileName, QString *errorText);

    // The font, tab width (in spaces) and wrapping of every note, open now or later.
    void setNoteFormat(const QFont &font, int tabWidth, bool wordWrap);
    // Saves changed notes that have a file every so many minutes; 0 stops it.
    void setAutoSaveMinutes(int minutes);
    // The sales tax on the invoice, in percent.
    void setTaxRate(double percent);

Q_SIGNALS:
    void autoSaveFailed(const QString &errorText);


public Q_SLOTS:
    // Ask for a file with the file dialog and report failures in a message box.
    void openNoteWithDialog();
    void saveActiveNoteWithDialog();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void applyNoteFormat(QPlainTextEdit *editor) const;
    void autoSave();
    void showInvoiceTotals();
    QMdiSubWindow *addNote(const QString &title, const QString &text);
    QWidget *createStockReport(const DemoDataSet *items);
    QWidget *createInvoice(const DemoDataSet *customers, const DemoDataSet *items);
    QPlainTextEdit *noteEditor(QMdiSubWindow *subWindow) const;

    QPointer<QMdiArea> m_mdiArea;
    // Asks before a changed note is closed.
    QPointer<QObject> m_closeGuard;
    int m_notesCreated = 0;
    std::optional<QFont> m_noteFont;
    int m_noteTabWidth = 4;
    bool m_noteWordWrap = true;
    double m_taxRate = 0;
    double m_invoiceSubtotal = 0;
    QPointer<QTimer> m_autoSaveTimer;
};
