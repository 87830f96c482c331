#pragma once

// Everything the demo host shows: the data module, the main window and the forms, made in
// the order an application makes them and destroyed in the reverse order.

#include <QPointer>

class CatalogueForm;
class CustomersForm;
class DemoDataModule;
class DemoMainWindow;
class DocumentsForm;
class ItemsForm;
class PlannerForm;
class QObject;

class DemoWorkspace
{
public:
    // extraObjects more QObjects are made below a root named "ExtraObjects".
    explicit DemoWorkspace(int extraObjects = 0);
    ~DemoWorkspace();
    DemoWorkspace(const DemoWorkspace &) = delete;
    DemoWorkspace &operator=(const DemoWorkspace &) = delete;

    // Each of these is null once it was deleted from outside (an inspector can delete any
    // object while the program runs).
    DemoDataModule *dataModule() const;
    DemoMainWindow *mainWindow() const;
    ItemsForm *itemsForm() const;
    CustomersForm *customersForm() const;
    DocumentsForm *documentsForm() const;
    PlannerForm *plannerForm() const;
    CatalogueForm *catalogueForm() const;
    QObject *extraObjects() const;

    // Shows the main window and the windows that the options ask for at start-up.
    void showStartupWindows();

private:
    // Owned here; guarded because they may be deleted from outside.
    QPointer<DemoDataModule> m_dataModule;
    QPointer<QObject> m_extraObjects;
    QPointer<DemoMainWindow> m_mainWindow;
    QPointer<ItemsForm> m_itemsForm;
    QPointer<CustomersForm> m_customersForm;
    QPointer<DocumentsForm> m_documentsForm;
    QPointer<PlannerForm> m_plannerForm;
    QPointer<CatalogueForm> m_catalogueForm;
};
