#pragma once

// The customers table in a grid, with a search field and record navigation.

#include <QPointer>
#include <QWidget>

class DemoDataModule;
class DemoDataSet;
class QLabel;
class QLineEdit;
class QTableWidget;

class CustomersForm : public QWidget
{
    Q_OBJECT

public:
    explicit CustomersForm(DemoDataModule *dataModule, QWidget *parent = nullptr);

    // Makes the first customer after the current one whose company, city or country
    // contains text the current record, wrapping around; false when none matches.
    bool findNext(const QString &text);

private:
    void fillGrid();
    void showRecNo(int recNo);

    QPointer<DemoDataSet> m_customers;
    // Guarded: an inspector may delete any widget of the form while it runs.
    QPointer<QLineEdit> m_searchEdit;
    QPointer<QTableWidget> m_grid;
    QPointer<QLabel> m_recordLabel;
};
