#include "hosts/demo/DocumentsForm.h"

#include "hosts/demo/DemoDataModule.h"
#include "hosts/demo/DemoDataSet.h"

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDateEdit>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSaveFile>
#include <QStyle>
#include <QTableWidget>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

// Items with fewer pieces than this appear on the stock report.
constexpr int ReorderLevel = 30;
// Larger files are not opened as notes.
constexpr qint64 MaxNoteSize = 16 * 1024 * 1024;

const char WelcomeNote[] =
    "Notes for this week\n"
    "\n"
    "- Call Kauai Dive Shoppe about the late delivery of order 1017.\n"
    "- Re-order masonry paint and outdoor wall lamps (see the stock report).\n"
    "- Check the credit limit of Action Club before shipping order 1014.\n"
    "- Price list for next quarter: waiting for Rhein Werkzeug GmbH.\n";

class NoteCloseGuard : public QObject
{
public:
    using QObject::QObject;

protected:
    // Asks before a changed note is closed, so that no typing is lost by accident.
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Close)
            return false;
        auto *subWindow = qobject_cast<QMdiSubWindow *>(watched);
        auto *editor = subWindow ? qobject_cast<QPlainTextEdit *>(subWindow->widget()) : nullptr;
        if (!editor || !editor->document()->isModified())
            return false;
        const auto answer = QMessageBox::question(
            subWindow, QCoreApplication::translate("DocumentsForm", "Close Note"),
            QCoreApplication::translate("DocumentsForm", "Discard the changes to \"%1\"?")
                .arg(subWindow->windowTitle().remove(u"[*]"_s)),
            QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Cancel);
        if (answer == QMessageBox::Discard)
            return false;
        event->ignore();
        return true;
    }
};

} // namespace

DocumentsForm::DocumentsForm(DemoDataModule *dataModule, QWidget *parent)
    : QMainWindow(parent)
{
    setObjectName(u"DocumentsForm"_s);
    setWindowTitle(tr("Documents"));
    resize(860, 560);

    m_mdiArea = new QMdiArea(this);
    m_mdiArea->setObjectName(u"MdiArea1"_s);
    m_mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(m_mdiArea);

    m_autoSaveTimer = new QTimer(this);
    m_autoSaveTimer->setObjectName(u"AutoSaveTimer"_s);
    connect(m_autoSaveTimer, &QTimer::timeout, this, &DocumentsForm::autoSave);

    m_closeGuard = new NoteCloseGuard(this);
    m_closeGuard->setObjectName(u"NoteCloseGuard"_s);

    auto *toolBar = addToolBar(tr("Documents"));
    toolBar->setObjectName(u"DocumentsToolBar"_s);
    const QStyle *style = this->style();
    auto *newAction = toolBar->addAction(style->standardIcon(QStyle::SP_FileIcon), tr("&New Note"),
                                         this, &DocumentsForm::newNote);
    newAction->setObjectName(u"NewNoteAction"_s);
    auto *openAction = toolBar->addAction(style->standardIcon(QStyle::SP_DialogOpenButton), tr("&Open..."),
                                          this, &DocumentsForm::openNoteWithDialog);
    openAction->setObjectName(u"OpenNoteAction"_s);
    auto *saveAction = toolBar->addAction(style->standardIcon(QStyle::SP_DialogSaveButton), tr("Save &As..."),
                                          this, &DocumentsForm::saveActiveNoteWithDialog);
    saveAction->setObjectName(u"SaveNoteAction"_s);
    toolBar->addSeparator();

    // The window commands are the data module's shared actions.
    const std::pair<const char16_t *, void (QMdiArea::*)()> windowCommands[] = {
        {u"WindowCascade", &QMdiArea::cascadeSubWindows},
        {u"WindowTile", &QMdiArea::tileSubWindows},
        {u"WindowNext", &QMdiArea::activateNextSubWindow},
        {u"WindowCloseAll", &QMdiArea::closeAllSubWindows}};
    for (const auto &[name, command] : windowCommands) {
        if (QAction *action = dataModule->action(QString::fromUtf16(name))) {
            toolBar->addAction(action);
            connect(action, &QAction::triggered, m_mdiArea, command);
        }
    }

    QMdiSubWindow *notes = addNote(tr("Notes for this week"), QString::fromUtf8(WelcomeNote));

    auto *stock = m_mdiArea->addSubWindow(createStockReport(dataModule->itemsTable()));
    stock->setObjectName(u"StockReportWindow"_s);
    stock->setWindowTitle(tr("Stock Report"));
    stock->setWindowIcon(style->standardIcon(QStyle::SP_FileDialogDetailedView));
    // Tiled: notes and the report on the left, the invoice beside them.
    notes->setGeometry(8, 8, 400, 250);
    stock->setGeometry(8, 266, 400, 250);

    auto *invoice = m_mdiArea->addSubWindow(createInvoice(dataModule->customersTable(), dataModule->itemsTable()));
    invoice->setObjectName(u"InvoiceWindow"_s);
    invoice->setWindowTitle(tr("Invoice 20415"));
    invoice->setWindowIcon(style->standardIcon(QStyle::SP_FileDialogInfoView));
    invoice->setGeometry(416, 8, 436, 508);

    m_mdiArea->setActiveSubWindow(notes);
    showInvoiceTotals();
}

QMdiArea *DocumentsForm::mdiArea() const
{
    return m_mdiArea;
}

void DocumentsForm::closeEvent(QCloseEvent *event)
{
    // Closing the form closes its notes, asking about changed ones: a note that the user
    // keeps open keeps the form open.
    const QList<QMdiSubWindow *> subWindows = m_mdiArea ? m_mdiArea->subWindowList() : QList<QMdiSubWindow *>();
    for (QMdiSubWindow *subWindow : subWindows) {
        if (noteEditor(subWindow) && !subWindow->close()) {
            event->ignore();
            return;
        }
    }
    QMainWindow::closeEvent(event);
}

void DocumentsForm::setNoteFormat(const QFont &font, int tabWidth, bool wordWrap)
{
    m_noteFont = font;
    m_noteTabWidth = std::max(1, tabWidth);
    m_noteWordWrap = wordWrap;
    const QList<QMdiSubWindow *> subWindows = m_mdiArea ? m_mdiArea->subWindowList() : QList<QMdiSubWindow *>();
    for (QMdiSubWindow *subWindow : subWindows) {
        if (QPlainTextEdit *editor = noteEditor(subWindow))
            applyNoteFormat(editor);
    }
}

void DocumentsForm::applyNoteFormat(QPlainTextEdit *editor) const
{
    if (m_noteFont)
        editor->setFont(*m_noteFont);
    editor->setTabStopDistance(m_noteTabWidth * QFontMetricsF(editor->font()).horizontalAdvance(u' '));
    editor->setLineWrapMode(m_noteWordWrap ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
}

void DocumentsForm::setAutoSaveMinutes(int minutes)
{
    if (!m_autoSaveTimer)
        return;
    if (minutes <= 0) {
        m_autoSaveTimer->stop();
        return;
    }
    m_autoSaveTimer->start(minutes * 60'000);
}

void DocumentsForm::autoSave()
{
    // Notes without a file wait for the user to save them: nothing asks in the middle of typing.
    const QList<QMdiSubWindow *> subWindows = m_mdiArea ? m_mdiArea->subWindowList() : QList<QMdiSubWindow *>();
    for (QMdiSubWindow *subWindow : subWindows) {
        const QPlainTextEdit *editor = noteEditor(subWindow);
        const QString fileName = subWindow->property("fileName").toString();
        if (!editor || fileName.isEmpty() || !editor->document()->isModified())
            continue;
        QString errorText;
        if (!saveNote(subWindow, fileName, &errorText))
            Q_EMIT autoSaveFailed(errorText);
    }
}

void DocumentsForm::setTaxRate(double percent)
{
    m_taxRate = percent;
    showInvoiceTotals();
}

void DocumentsForm::showInvoiceTotals()
{
    auto *totalLabel = findChild<QLabel *>(u"TotalLabel"_s);
    if (!totalLabel)
        return;
    const QLocale locale;
    const double tax = m_invoiceSubtotal * m_taxRate / 100;
    totalLabel->setText(tr("Subtotal %1   Tax (%2 %) %3   Total %4")
                            .arg(locale.toString(m_invoiceSubtotal, 'f', 2), locale.toString(m_taxRate, 'f', 2),
                                 locale.toString(tax, 'f', 2), locale.toString(m_invoiceSubtotal + tax, 'f', 2)));
}

QMdiSubWindow *DocumentsForm::addNote(const QString &title, const QString &text)
{
    ++m_notesCreated;
    auto *editor = new QPlainTextEdit;
    editor->setObjectName(u"NoteMemo"_s + QString::number(m_notesCreated));
    editor->setPlainText(text);
    editor->document()->setModified(false);
    applyNoteFormat(editor);

    QMdiSubWindow *subWindow = m_mdiArea->addSubWindow(editor);
    subWindow->setObjectName(u"NoteWindow"_s + QString::number(m_notesCreated));
    subWindow->setAttribute(Qt::WA_DeleteOnClose);
    subWindow->setWindowTitle(title + u"[*]"_s);
    subWindow->setWindowIcon(style()->standardIcon(QStyle::SP_FileIcon));
    subWindow->resize(420, 280);
    if (m_closeGuard)
        subWindow->installEventFilter(m_closeGuard);
    connect(editor->document(), &QTextDocument::modificationChanged, subWindow, &QWidget::setWindowModified);
    return subWindow;
}

QMdiSubWindow *DocumentsForm::newNote()
{
    if (!m_mdiArea)
        return nullptr;
    QMdiSubWindow *subWindow = addNote(tr("Untitled %1").arg(m_notesCreated + 1), QString());
    subWindow->show();
    m_mdiArea->setActiveSubWindow(subWindow);
    return subWindow;
}

QMdiSubWindow *DocumentsForm::openNote(const QString &fileName, QString *errorText)
{
    if (!m_mdiArea)
        return nullptr;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        *errorText = tr("Cannot open \"%1\": %2").arg(QDir::toNativeSeparators(fileName), file.errorString());
        return nullptr;
    }
    if (file.size() > MaxNoteSize) {
        *errorText = tr("\"%1\" is too large to open as a note (more than %2 MB).")
                         .arg(QDir::toNativeSeparators(fileName))
                         .arg(MaxNoteSize / (1024 * 1024));
        return nullptr;
    }
    const QString text = QString::fromUtf8(file.readAll());
    QMdiSubWindow *subWindow = addNote(QFileInfo(fileName).fileName(), text);
    subWindow->setProperty("fileName", QFileInfo(fileName).absoluteFilePath());
    subWindow->show();
    m_mdiArea->setActiveSubWindow(subWindow);
    return subWindow;
}

bool DocumentsForm::saveNote(QMdiSubWindow *subWindow, const QString &fileName, QString *errorText)
{
    QPlainTextEdit *editor = noteEditor(subWindow);
    if (!editor) {
        *errorText = tr("Only notes can be saved as text files.");
        return false;
    }
    // Written to a temporary file first, so that a failure leaves the old file as it was.
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text) || file.write(editor->toPlainText().toUtf8()) < 0
        || !file.commit()) {
        *errorText = tr("Cannot save \"%1\": %2").arg(QDir::toNativeSeparators(fileName), file.errorString());
        return false;
    }
    editor->document()->setModified(false);
    subWindow->setProperty("fileName", QFileInfo(fileName).absoluteFilePath());
    subWindow->setWindowTitle(QFileInfo(fileName).fileName() + u"[*]"_s);
    return true;
}

void DocumentsForm::openNoteWithDialog()
{
    const QString fileName = QFileDialog::getOpenFileName(this, tr("Open Note"), QString(),
                                                          tr("Text files (*.txt *.md);;All files (*)"));
    if (fileName.isEmpty())
        return;
    QString errorText;
    if (!openNote(fileName, &errorText))
        QMessageBox::warning(this, tr("Open Note"), errorText);
}

void DocumentsForm::saveActiveNoteWithDialog()
{
    QMdiSubWindow *subWindow = m_mdiArea ? m_mdiArea->activeSubWindow() : nullptr;
    if (!noteEditor(subWindow)) {
        QMessageBox::information(this, tr("Save Note"), tr("Select the note to save first."));
        return;
    }
    const QString fileName = QFileDialog::getSaveFileName(this, tr("Save Note"),
                                                          subWindow->property("fileName").toString(),
                                                          tr("Text files (*.txt);;All files (*)"));
    if (fileName.isEmpty())
        return;
    QString errorText;
    if (!saveNote(subWindow, fileName, &errorText))
        QMessageBox::warning(this, tr("Save Note"), errorText);
}

QPlainTextEdit *DocumentsForm::noteEditor(QMdiSubWindow *subWindow) const
{
    return subWindow ? qobject_cast<QPlainTextEdit *>(subWindow->widget()) : nullptr;
}

QWidget *DocumentsForm::createStockReport(const DemoDataSet *items)
{
    struct Row
    {
        QString partNo, description;
        int stock;
    };
    QList<Row> rows;
    const int count = items ? items->recordCount() : 0;
    for (int row = 0; row < count; ++row) {
        const int stock = items->value(row, u"OnHand"_s).toInt();
        if (stock < ReorderLevel)
            rows.append({items->value(row, u"PartNo"_s).toString(),
                         items->value(row, u"Description"_s).toString(), stock});
    }
    std::stable_sort(rows.begin(), rows.end(), [](const Row &a, const Row &b) { return a.stock < b.stock; });

    auto *grid = new QTableWidget(int(rows.size()), 3);
    grid->setObjectName(u"StockGrid"_s);
    grid->setHorizontalHeaderLabels({tr("Part No."), tr("Description"), tr("In Stock")});
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setAlternatingRowColors(true);
    grid->verticalHeader()->hide();
    grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 6);
    const QLocale locale;
    for (int row = 0; row < rows.size(); ++row) {
        grid->setItem(row, 0, new QTableWidgetItem(rows[row].partNo));
        grid->setItem(row, 1, new QTableWidgetItem(rows[row].description));
        auto *stock = new QTableWidgetItem(locale.toString(rows[row].stock));
        stock->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->setItem(row, 2, stock);
    }
    grid->resizeColumnsToContents();
    grid->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    return grid;
}

QWidget *DocumentsForm::createInvoice(const DemoDataSet *customers, const DemoDataSet *items)
{
    auto *page = new QWidget;
    page->setObjectName(u"InvoicePanel"_s);

    auto *invoiceNoEdit = new QLineEdit(u"20415"_s, page);
    invoiceNoEdit->setObjectName(u"InvoiceNoEdit"_s);
    invoiceNoEdit->setReadOnly(true);
    auto *dateEdit = new QDateEdit(QDate::currentDate(), page);
    dateEdit->setObjectName(u"InvoiceDateEdit"_s);
    dateEdit->setCalendarPopup(true);
    auto *customerCombo = new QComboBox(page);
    customerCombo->setObjectName(u"CustomerCombo"_s);
    const int customerCount = customers ? customers->recordCount() : 0;
    for (int row = 0; row < customerCount; ++row)
        customerCombo->addItem(customers->value(row, u"Company"_s).toString(), customers->value(row, u"CustNo"_s));
    customerCombo->setCurrentIndex(customerCombo->findText(u"Action Club"_s));
    auto *termsCombo = new QComboBox(page);
    termsCombo->setObjectName(u"PaymentTermsCombo"_s);
    termsCombo->addItems({tr("Net 14 days"), tr("Net 30 days"), tr("Net 60 days"), tr("Cash on delivery")});
    termsCombo->setCurrentIndex(1);

    // Three lines of the catalogue, as a sample invoice.
    const std::pair<const char16_t *, int> lines[] = {{u"TL-2101", 4}, {u"TL-2002", 10}, {u"EL-4201", 50}};
    auto *linesGrid = new QTableWidget(int(std::size(lines)), 5, page);
    linesGrid->setObjectName(u"InvoiceLinesGrid"_s);
    linesGrid->setHorizontalHeaderLabels({tr("Part No."), tr("Description"), tr("Qty"), tr("Price"), tr("Amount")});
    linesGrid->verticalHeader()->hide();
    linesGrid->verticalHeader()->setDefaultSectionSize(linesGrid->fontMetrics().height() + 6);
    const QLocale locale;
    double total = 0;
    for (int line = 0; line < int(std::size(lines)); ++line) {
        const QString partNo = QString::fromUtf16(lines[line].first);
        const int quantity = lines[line].second;
        QString description;
        double price = 0;
        for (int row = 0; items && row < items->recordCount(); ++row) {
            if (items->value(row, u"PartNo"_s).toString() == partNo) {
                description = items->value(row, u"Description"_s).toString();
                price = items->value(row, u"ListPrice"_s).toDouble();
            }
        }
        total += quantity * price;
        const QString cells[] = {partNo, description, locale.toString(quantity), locale.toString(price, 'f', 2),
                                 locale.toString(quantity * price, 'f', 2)};
        for (int column = 0; column < 5; ++column) {
            auto *cell = new QTableWidgetItem(cells[column]);
            if (column >= 2)
                cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            linesGrid->setItem(line, column, cell);
        }
    }
    linesGrid->resizeColumnsToContents();
    linesGrid->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);

    m_invoiceSubtotal = total;
    auto *totalLabel = new QLabel(page);
    totalLabel->setObjectName(u"TotalLabel"_s);
    totalLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont bold = totalLabel->font();
    bold.setBold(true);
    totalLabel->setFont(bold);

    auto *form = new QFormLayout;
    form->addRow(tr("Invoice no.:"), invoiceNoEdit);
    form->addRow(tr("Date:"), dateEdit);
    form->addRow(tr("Customer:"), customerCombo);
    form->addRow(tr("Terms:"), termsCombo);
    // The row labels are made by the layout; they get names as a designer would give them.
    for (int row = 0; row < form->rowCount(); ++row) {
        if (QLayoutItem *label = form->itemAt(row, QFormLayout::LabelRole); label && label->widget())
            label->widget()->setObjectName(u"InvoiceLabel"_s + QString::number(row + 1));
    }
    auto *layout = new QVBoxLayout(page);
    layout->addLayout(form);
    layout->addWidget(linesGrid, 1);
    layout->addWidget(totalLabel);
    return page;
}
