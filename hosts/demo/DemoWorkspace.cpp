#include "hosts/demo/DemoWorkspace.h"

#include "hosts/demo/CatalogueForm.h"
#include "hosts/demo/CustomersForm.h"
#include "hosts/demo/DemoDataModule.h"
#include "hosts/demo/DemoMainWindow.h"
#include "hosts/demo/DemoObjects.h"
#include "hosts/demo/DocumentsForm.h"
#include "hosts/demo/ItemsForm.h"
#include "hosts/demo/OptionsDialog.h"
#include "hosts/demo/PlannerForm.h"

#include <QCoreApplication>
#include <QStyle>

using namespace Qt::StringLiterals;

DemoWorkspace::DemoWorkspace(int extraObjects)
{
    // The data module and the extra objects belong to the application object, as an
    // application's data modules do; the forms are windows of their own.
    m_dataModule = new DemoDataModule(QCoreApplication::instance());
    m_extraObjects = CreateExtraObjects(QCoreApplication::instance(), extraObjects).release();

    m_mainWindow = new DemoMainWindow(m_dataModule);
    m_itemsForm = new ItemsForm(m_dataModule);
    m_customersForm = new CustomersForm(m_dataModule);
    m_documentsForm = new DocumentsForm(m_dataModule);
    m_plannerForm = new PlannerForm(m_dataModule);
    m_catalogueForm = new CatalogueForm(m_dataModule);

    const QStyle *style = m_mainWindow->style();
    m_mainWindow->addWindowItem(m_itemsForm, QCoreApplication::translate("DemoWorkspace", "&Items"),
                                style->standardIcon(QStyle::SP_DirIcon), QKeySequence(Qt::CTRL | Qt::Key_1));
    m_mainWindow->addWindowItem(m_customersForm, QCoreApplication::translate("DemoWorkspace", "&Customers"),
                                style->standardIcon(QStyle::SP_FileDialogDetailedView),
                                QKeySequence(Qt::CTRL | Qt::Key_2));
    m_mainWindow->addWindowItem(m_documentsForm, QCoreApplication::translate("DemoWorkspace", "&Documents"),
                                style->standardIcon(QStyle::SP_FileDialogContentsView),
                                QKeySequence(Qt::CTRL | Qt::Key_3));
    m_mainWindow->addWindowItem(m_plannerForm, QCoreApplication::translate("DemoWorkspace", "&Planner"),
                                style->standardIcon(QStyle::SP_FileDialogInfoView), QKeySequence(Qt::CTRL | Qt::Key_4));
    m_mainWindow->addWindowItem(m_catalogueForm, QCoreApplication::translate("DemoWorkspace", "C&atalogue"),
                                style->standardIcon(QStyle::SP_DriveHDIcon), QKeySequence(Qt::CTRL | Qt::Key_5));

    // The main window's File commands work on the documents form's notes.
    const QPointer<DocumentsForm> documents = m_documentsForm;
    auto showDocuments = [documents] {
        if (documents) {
            documents->show();
            documents->raise();
            documents->activateWindow();
        }
    };
    QObject::connect(m_mainWindow, &DemoMainWindow::newNoteRequested, m_documentsForm, [documents, showDocuments] {
        showDocuments();
        documents->newNote();
    });
    QObject::connect(m_mainWindow, &DemoMainWindow::openNoteRequested, m_documentsForm, [documents, showDocuments] {
        showDocuments();
        documents->openNoteWithDialog();
    });
    QObject::connect(m_mainWindow, &DemoMainWindow::saveNoteRequested, m_documentsForm, [documents, showDocuments] {
        showDocuments();
        documents->saveActiveNoteWithDialog();
    });
    // The options reach the forms now and each time they are applied.
    OptionsDialog *options = m_mainWindow->optionsDialog();
    auto applyToDocuments = [documents, options] {
        documents->setNoteFormat(options->noteFont(), options->noteTabWidth(), options->noteWordWrap());
        documents->setAutoSaveMinutes(options->autoSaveMinutes());
        documents->setTaxRate(options->taxRate());
    };
    const QPointer<PlannerForm> planner = m_plannerForm;
    auto applyToPlanner = [planner, options] {
        planner->setFirstDayOfWeek(options->firstDayOfWeek());
        planner->setStocktake(options->nextStocktake());
    };
    applyToDocuments();
    applyToPlanner();
    QObject::connect(options, &OptionsDialog::applied, m_documentsForm, applyToDocuments);
    QObject::connect(options, &OptionsDialog::applied, m_plannerForm, applyToPlanner);
    const QPointer<DemoMainWindow> mainWindow = m_mainWindow;
    QObject::connect(m_documentsForm, &DocumentsForm::autoSaveFailed, m_mainWindow, [mainWindow](const QString &errorText) {
        mainWindow->logActivity(errorText);
    });
}

void DemoWorkspace::showStartupWindows()
{
    if (!m_mainWindow)
        return;
    m_mainWindow->show();
    const OptionsDialog *options = m_mainWindow->optionsDialog();
    const OptionsDialog::StartupWindows startup = options ? options->startupWindows() : OptionsDialog::MainWindowOnly;
    if (startup == OptionsDialog::MainWindowOnly)
        return;
    QList<QWidget *> windows = {m_documentsForm};
    if (startup == OptionsDialog::AllWindows)
        windows = {m_itemsForm, m_customersForm, m_plannerForm, m_catalogueForm, m_documentsForm};
    for (QWidget *window : windows) {
        if (window)
            window->show();
    }
    m_mainWindow->raise();
    m_mainWindow->activateWindow();
}

DemoWorkspace::~DemoWorkspace()
{
    // Windows first, then what they use. Deleting an object also clears the guarded
    // pointers to its children.
    delete m_catalogueForm.data();
    delete m_plannerForm.data();
    delete m_documentsForm.data();
    delete m_customersForm.data();
    delete m_itemsForm.data();
    delete m_mainWindow.data();
    delete m_extraObjects.data();
    delete m_dataModule.data();
}

DemoDataModule *DemoWorkspace::dataModule() const
{
    return m_dataModule;
}

DemoMainWindow *DemoWorkspace::mainWindow() const
{
    return m_mainWindow;
}

ItemsForm *DemoWorkspace::itemsForm() const
{
    return m_itemsForm;
}

CustomersForm *DemoWorkspace::customersForm() const
{
    return m_customersForm;
}

DocumentsForm *DemoWorkspace::documentsForm() const
{
    return m_documentsForm;
}

PlannerForm *DemoWorkspace::plannerForm() const
{
    return m_plannerForm;
}

CatalogueForm *DemoWorkspace::catalogueForm() const
{
    return m_catalogueForm;
}

QObject *DemoWorkspace::extraObjects() const
{
    return m_extraObjects;
}
