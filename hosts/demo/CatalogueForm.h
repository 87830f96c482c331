#pragma once

// The catalogue as cards, one per item, and a basket from which an order is placed.

#include <QList>
#include <QPointer>
#include <QWidget>

class DemoDataModule;
class DemoDataSet;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;
class QScrollArea;

class CatalogueForm : public QWidget
{
    Q_OBJECT

public:
    explicit CatalogueForm(DemoDataModule *dataModule, QWidget *parent = nullptr);

    // Puts quantity pieces of the item with partNo into the basket (adding to a line that
    // has it already); false when the catalogue has no such item or quantity is not positive.
    bool addToBasket(const QString &partNo, int quantity);
    double basketTotal() const;
    int basketLineCount() const { return int(m_basket.size()); }
    // Appends the basket as an open order of the selected customer to the orders table and
    // empties the basket; false (with the reason shown) when there is nothing to order or
    // no table to order into.
    bool placeOrder();

private:
    struct BasketLine
    {
        QString partNo;
        QString description;
        int quantity = 0;
        double price = 0;
    };

    void fillCards();
    QWidget *createCard(int row, int number, int maxStock);
    void fillCustomers();
    void showBasket();
    void updateButtons();
    void setStatus(const QString &text);

    QPointer<DemoDataSet> m_items;
    QPointer<DemoDataSet> m_orders;
    QPointer<DemoDataSet> m_customers;
    QPointer<QScrollArea> m_cardsArea;
    QPointer<QListWidget> m_basketList;
    QPointer<QLabel> m_totalLabel;
    QPointer<QLabel> m_statusLabel;
    QPointer<QComboBox> m_customerCombo;
    QPointer<QPushButton> m_removeButton;
    QPointer<QPushButton> m_orderButton;
    QList<BasketLine> m_basket;
};
