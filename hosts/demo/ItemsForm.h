#pragma once

// The catalogue: items by category and group in a tree, and a list of favourite items.

#include <QPointer>
#include <QWidget>

class DemoDataModule;
class DemoDataSet;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTreeWidget;

class ItemsForm : public QWidget
{
    Q_OBJECT

public:
    explicit ItemsForm(DemoDataModule *dataModule, QWidget *parent = nullptr);

    // Shows only the items whose description or part number contains text (every item when
    // it is empty), with their categories and groups.
    void setFilterText(const QString &text);

private:
    void fillTree();
    void addSelectedToFavourites();
    void removeSelectedFavourites();
    void updateButtons();

    QPointer<DemoDataSet> m_items;
    // Guarded: an inspector may delete any widget of the form while it runs.
    QPointer<QLineEdit> m_filterEdit;
    QPointer<QTreeWidget> m_tree;
    QPointer<QListWidget> m_favourites;
    QPointer<QLabel> m_countLabel;
    QPointer<QPushButton> m_addButton;
    QPointer<QPushButton> m_removeButton;
};
