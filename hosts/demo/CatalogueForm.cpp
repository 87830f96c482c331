#include "hosts/demo/CatalogueForm.h"

#include "hosts/demo/DemoDataModule.h"
#include "hosts/demo/DemoDataSet.h"

#include <QComboBox>
#include <QDate>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QSplitter>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int CardColumns = 3;

QString Money(double value)
{
    return u'$' + QLocale().toString(value, 'f', 2);
}

} // namespace

CatalogueForm::CatalogueForm(DemoDataModule *dataModule, QWidget *parent)
    : QWidget(parent)
    , m_items(dataModule->itemsTable())
    , m_orders(dataModule->ordersTable())
    , m_customers(dataModule->customersTable())
{
    setObjectName(u"CatalogueForm"_s);
    setWindowTitle(tr("Catalogue"));
    resize(1040, 640);

    auto *splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(u"CatalogueSplitter"_s);
    splitter->setChildrenCollapsible(false);

    m_cardsArea = new QScrollArea(splitter);
    m_cardsArea->setObjectName(u"CardsScrollArea"_s);
    m_cardsArea->setWidgetResizable(true);
    m_cardsArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    auto *basketGroup = new QGroupBox(tr("Basket"), splitter);
    basketGroup->setObjectName(u"BasketGroup"_s);
    auto *customerLabel = new QLabel(tr("&Customer:"), basketGroup);
    customerLabel->setObjectName(u"CustomerLabel"_s);
    m_customerCombo = new QComboBox(basketGroup);
    m_customerCombo->setObjectName(u"CustomerCombo"_s);
    customerLabel->setBuddy(m_customerCombo);
    m_basketList = new QListWidget(basketGroup);
    m_basketList->setObjectName(u"BasketList"_s);
    m_basketList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_totalLabel = new QLabel(basketGroup);
    m_totalLabel->setObjectName(u"BasketTotalLabel"_s);
    m_totalLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont bold = m_totalLabel->font();
    bold.setBold(true);
    m_totalLabel->setFont(bold);
    m_removeButton = new QPushButton(tr("&Remove"), basketGroup);
    m_removeButton->setObjectName(u"RemoveFromBasketButton"_s);
    m_orderButton = new QPushButton(tr("&Place Order"), basketGroup);
    m_orderButton->setObjectName(u"PlaceOrderButton"_s);
    m_orderButton->setIcon(style()->standardIcon(QStyle::SP_DialogApplyButton));
    m_statusLabel = new QLabel(basketGroup);
    m_statusLabel->setObjectName(u"BasketStatusLabel"_s);
    m_statusLabel->setWordWrap(true);
    connect(m_basketList, &QListWidget::itemSelectionChanged, this, &CatalogueForm::updateButtons);
    connect(m_removeButton, &QPushButton::clicked, this, [this] {
        if (!m_basketList)
            return;
        // Rows in the list are the basket's lines, in order; remove from the end first.
        QList<int> rows;
        for (const QListWidgetItem *item : m_basketList->selectedItems())
            rows.append(m_basketList->row(item));
        std::sort(rows.rbegin(), rows.rend());
        for (int row : rows)
            m_basket.removeAt(row);
        showBasket();
    });
    connect(m_orderButton, &QPushButton::clicked, this, &CatalogueForm::placeOrder);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_removeButton);
    buttons->addStretch(1);
    buttons->addWidget(m_orderButton);
    auto *basketLayout = new QVBoxLayout(basketGroup);
    basketLayout->addWidget(customerLabel);
    basketLayout->addWidget(m_customerCombo);
    basketLayout->addWidget(m_basketList, 1);
    basketLayout->addWidget(m_totalLabel);
    basketLayout->addLayout(buttons);
    basketLayout->addWidget(m_statusLabel);

    splitter->addWidget(m_cardsArea);
    splitter->addWidget(basketGroup);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(splitter);

    fillCards();
    fillCustomers();
    showBasket();
    if (m_items)
        connect(m_items, &DemoDataSet::recordsChanged, this, &CatalogueForm::fillCards);
    if (m_customers)
        connect(m_customers, &DemoDataSet::recordsChanged, this, &CatalogueForm::fillCustomers);
}

void CatalogueForm::fillCards()
{
    if (!m_cardsArea)
        return;
    auto *cards = new QWidget;
    cards->setObjectName(u"CardsPanel"_s);
    auto *grid = new QGridLayout(cards);
    grid->setSpacing(6);
    const int count = m_items ? m_items->recordCount() : 0;
    int maxStock = 1;
    for (int row = 0; row < count; ++row)
        maxStock = std::max(maxStock, m_items->value(row, u"OnHand"_s).toInt());
    for (int row = 0; row < count; ++row)
        grid->addWidget(createCard(row, row + 1, maxStock), row / CardColumns, row % CardColumns);
    if (count == 0) {
        auto *empty = new QLabel(tr("The items table is closed."), cards);
        empty->setObjectName(u"NoItemsLabel"_s);
        empty->setAlignment(Qt::AlignCenter);
        grid->addWidget(empty, 0, 0);
    }
    grid->setRowStretch((count + CardColumns - 1) / CardColumns, 1);
    // The old panel, with every card on it, goes.
    delete m_cardsArea->takeWidget();
    m_cardsArea->setWidget(cards);
}

QWidget *CatalogueForm::createCard(int row, int number, int maxStock)
{
    const QString suffix = QString::number(number);
    const QString partNo = m_items->value(row, u"PartNo"_s).toString();
    const int stock = m_items->value(row, u"OnHand"_s).toInt();

    auto *card = new QFrame;
    card->setObjectName(u"Card"_s + suffix);
    card->setFrameShape(QFrame::StyledPanel);
    card->setProperty("partNo", partNo);

    auto *title = new QLabel(m_items->value(row, u"Description"_s).toString(), card);
    title->setObjectName(u"CardTitle"_s + suffix);
    title->setWordWrap(true);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    auto *partLabel = new QLabel(partNo + u"  ·  "_s + m_items->value(row, u"ItemGroup"_s).toString(), card);
    partLabel->setObjectName(u"CardPartNo"_s + suffix);
    auto *price = new QLabel(Money(m_items->value(row, u"ListPrice"_s).toDouble()), card);
    price->setObjectName(u"CardPrice"_s + suffix);
    price->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *stockBar = new QProgressBar(card);
    stockBar->setObjectName(u"CardStock"_s + suffix);
    stockBar->setRange(0, maxStock);
    stockBar->setValue(stock);
    stockBar->setFormat(tr("%1 in stock").arg(stock));
    stockBar->setMaximumHeight(stockBar->fontMetrics().height() + 4);
    auto *quantity = new QSpinBox(card);
    quantity->setObjectName(u"CardQuantity"_s + suffix);
    quantity->setRange(1, 999);
    auto *add = new QPushButton(tr("Add"), card);
    add->setObjectName(u"CardAddButton"_s + suffix);
    const QPointer<QSpinBox> guardedQuantity = quantity;
    connect(add, &QPushButton::clicked, this, [this, partNo, guardedQuantity] {
        addToBasket(partNo, guardedQuantity ? guardedQuantity->value() : 1);
    });

    auto *top = new QHBoxLayout;
    top->addWidget(partLabel, 1);
    top->addWidget(price);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(quantity);
    bottom->addStretch(1);
    bottom->addWidget(add);
    auto *layout = new QVBoxLayout(card);
    layout->setSpacing(3);
    layout->addWidget(title);
    layout->addLayout(top);
    layout->addWidget(stockBar);
    layout->addLayout(bottom);
    return card;
}

void CatalogueForm::fillCustomers()
{
    if (!m_customerCombo)
        return;
    const QVariant selected = m_customerCombo->currentData();
    m_customerCombo->clear();
    const int count = m_customers ? m_customers->recordCount() : 0;
    for (int row = 0; row < count; ++row)
        m_customerCombo->addItem(m_customers->value(row, u"Company"_s).toString(), m_customers->value(row, u"CustNo"_s));
    m_customerCombo->setCurrentIndex(std::max(0, m_customerCombo->findData(selected)));
}

bool CatalogueForm::addToBasket(const QString &partNo, int quantity)
{
    if (quantity <= 0 || !m_items)
        return false;
    for (BasketLine &line : m_basket) {
        if (line.partNo == partNo) {
            line.quantity += quantity;
            showBasket();
            return true;
        }
    }
    for (int row = 0; row < m_items->recordCount(); ++row) {
        if (m_items->value(row, u"PartNo"_s).toString() == partNo) {
            m_basket.append({partNo, m_items->value(row, u"Description"_s).toString(), quantity,
                             m_items->value(row, u"ListPrice"_s).toDouble()});
            setStatus(QString());
            showBasket();
            return true;
        }
    }
    return false;
}

double CatalogueForm::basketTotal() const
{
    double total = 0;
    for (const BasketLine &line : m_basket)
        total += line.quantity * line.price;
    return total;
}

void CatalogueForm::showBasket()
{
    if (m_basketList) {
        m_basketList->clear();
        for (const BasketLine &line : m_basket)
            m_basketList->addItem(tr("%1 × %2  %3").arg(line.quantity).arg(line.description, Money(line.quantity * line.price)));
    }
    if (m_totalLabel)
        m_totalLabel->setText(tr("Total: %1").arg(Money(basketTotal())));
    updateButtons();
}

void CatalogueForm::updateButtons()
{
    if (m_removeButton)
        m_removeButton->setEnabled(m_basketList && !m_basketList->selectedItems().isEmpty());
    if (m_orderButton)
        m_orderButton->setEnabled(!m_basket.isEmpty());
}

bool CatalogueForm::placeOrder()
{
    if (m_basket.isEmpty()) {
        setStatus(tr("The basket is empty."));
        return false;
    }
    if (!m_orders || !m_orders->isActive() || !m_customerCombo || m_customerCombo->currentIndex() < 0) {
        setStatus(tr("Orders cannot be placed while the database is not connected."));
        return false;
    }
    int orderNo = 1000;
    for (int row = 0; row < m_orders->recordCount(); ++row)
        orderNo = std::max(orderNo, m_orders->value(row, u"OrderNo"_s).toInt());
    ++orderNo;
    m_orders->appendRecord({orderNo, QDate::currentDate(), m_customerCombo->currentData(), m_customerCombo->currentText(),
                            int(m_basket.size()), basketTotal(), u"Open"_s});
    setStatus(tr("Order %1 placed for %2.").arg(orderNo).arg(m_customerCombo->currentText()));
    m_basket.clear();
    showBasket();
    return true;
}

void CatalogueForm::setStatus(const QString &text)
{
    if (m_statusLabel)
        m_statusLabel->setText(text);
}
