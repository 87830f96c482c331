#include "hosts/demo/CustomersForm.h"

#include "hosts/demo/DemoDataModule.h"
#include "hosts/demo/DemoDataSet.h"

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QTableWidget>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

CustomersForm::CustomersForm(DemoDataModule *dataModule, QWidget *parent)
    : QWidget(parent)
    , m_customers(dataModule->customersTable())
{
    setObjectName(u"CustomersForm"_s);
    setWindowTitle(tr("Customers"));
    resize(820, 460);

    auto *searchLabel = new QLabel(tr("&Search:"), this);
    searchLabel->setObjectName(u"SearchLabel"_s);
    m_searchEdit = new QLineEdit(this);
    m_searchEdit->setObjectName(u"SearchEdit"_s);
    m_searchEdit->setPlaceholderText(tr("Company, city or country"));
    searchLabel->setBuddy(m_searchEdit);
    auto *findButton = new QPushButton(tr("&Find Next"), this);
    findButton->setObjectName(u"FindButton"_s);
    findButton->setAutoDefault(false);
    auto find = [this] {
        if (m_searchEdit && !findNext(m_searchEdit->text()) && m_recordLabel)
            m_recordLabel->setText(tr("No customer matches \"%1\"").arg(m_searchEdit->text()));
    };
    connect(findButton, &QPushButton::clicked, this, find);
    connect(m_searchEdit, &QLineEdit::returnPressed, this, find);

    m_grid = new QTableWidget(this);
    m_grid->setObjectName(u"CustomersGrid"_s);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setAlternatingRowColors(true);
    m_grid->verticalHeader()->setDefaultSectionSize(m_grid->fontMetrics().height() + 6);
    m_grid->verticalHeader()->hide();
    m_grid->horizontalHeader()->setHighlightSections(false);
    connect(m_grid, &QTableWidget::currentCellChanged, this, [this](int row) {
        if (m_customers && row >= 0)
            m_customers->setRecNo(row + 1);
    });

    // Record navigation through the data module's shared actions.
    auto *navigator = new QWidget(this);
    navigator->setObjectName(u"NavigatorPanel"_s);
    auto *navigatorLayout = new QHBoxLayout(navigator);
    navigatorLayout->setContentsMargins(0, 0, 0, 0);
    navigatorLayout->setSpacing(2);
    const std::pair<const char16_t *, const char16_t *> buttons[] = {
        {u"FirstButton", u"DataSetFirst"}, {u"PriorButton", u"DataSetPrior"},
        {u"NextButton", u"DataSetNext"}, {u"LastButton", u"DataSetLast"},
        {u"RefreshButton", u"DataSetRefresh"}};
    for (const auto &[buttonName, actionName] : buttons) {
        auto *button = new QToolButton(navigator);
        button->setObjectName(QString::fromUtf16(buttonName));
        button->setDefaultAction(dataModule->action(QString::fromUtf16(actionName)));
        navigatorLayout->addWidget(button);
    }
    m_recordLabel = new QLabel(this);
    m_recordLabel->setObjectName(u"RecordLabel"_s);
    auto *closeButton = new QPushButton(tr("Close"), this);
    closeButton->setObjectName(u"CloseButton"_s);
    connect(closeButton, &QPushButton::clicked, this, &QWidget::close);

    auto *searchRow = new QHBoxLayout;
    searchRow->addWidget(searchLabel);
    searchRow->addWidget(m_searchEdit, 1);
    searchRow->addWidget(findButton);
    auto *bottomRow = new QHBoxLayout;
    bottomRow->addWidget(navigator);
    bottomRow->addSpacing(8);
    bottomRow->addWidget(m_recordLabel, 1);
    bottomRow->addWidget(closeButton);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(searchRow);
    layout->addWidget(m_grid, 1);
    layout->addLayout(bottomRow);

    fillGrid();
    if (m_customers) {
        connect(m_customers, &DemoDataSet::recordsChanged, this, &CustomersForm::fillGrid);
        connect(m_customers, &DemoDataSet::recNoChanged, this, &CustomersForm::showRecNo);
    }
}

void CustomersForm::fillGrid()
{
    if (!m_grid)
        return;
    const int fields = m_customers ? m_customers->fieldCount() : 0;
    const int rows = m_customers ? m_customers->recordCount() : 0;
    const QLocale locale;
    m_grid->clear();
    m_grid->setColumnCount(fields);
    m_grid->setRowCount(rows);
    for (int column = 0; column < fields; ++column) {
        const QObject *field = m_customers->field(column);
        m_grid->setHorizontalHeaderItem(column, new QTableWidgetItem(field->property("displayLabel").toString()));
        const QString type = field->property("dataType").toString();
        const bool numeric = type == u"Integer"_s || type == u"Currency"_s;
        for (int row = 0; row < rows; ++row) {
            const QVariant value = m_customers->value(row, column);
            auto *cell = new QTableWidgetItem(type == u"Currency"_s ? u'$' + locale.toString(value.toDouble(), 'f', 2)
                                                                     : value.toString());
            if (numeric)
                cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            m_grid->setItem(row, column, cell);
        }
    }
    m_grid->resizeColumnsToContents();
    if (fields > 1)
        m_grid->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    showRecNo(m_customers ? m_customers->recNo() : 0);
}

void CustomersForm::showRecNo(int recNo)
{
    if (m_grid && recNo > 0 && m_grid->currentRow() != recNo - 1)
        m_grid->setCurrentCell(recNo - 1, std::max(0, m_grid->currentColumn()));
    if (!m_recordLabel)
        return;
    if (!m_customers || !m_customers->isActive())
        m_recordLabel->setText(tr("The customers table is closed"));
    else
        m_recordLabel->setText(tr("Record %1 of %2").arg(recNo).arg(m_customers->recordCount()));
}

bool CustomersForm::findNext(const QString &text)
{
    const QString wanted = text.trimmed();
    if (!m_customers || wanted.isEmpty())
        return false;
    const int count = m_customers->recordCount();
    const QStringList searched = {u"Company"_s, u"City"_s, u"Country"_s};
    for (int step = 1; step <= count; ++step) {
        const int row = (m_customers->recNo() - 1 + step) % count;
        for (const QString &fieldName : searched) {
            if (m_customers->value(row, fieldName).toString().contains(wanted, Qt::CaseInsensitive)) {
                m_customers->setRecNo(row + 1);
                return true;
            }
        }
    }
    return false;
}
