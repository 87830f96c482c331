#include "hosts/demo/ItemsForm.h"

#include "hosts/demo/DemoDataModule.h"
#include "hosts/demo/DemoDataSet.h"

#include <QAction>
#include <QActionGroup>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QSplitter>
#include <QStyle>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

enum ItemColumn { DescriptionColumn, PartNoColumn, PriceColumn, StockColumn };
// Below this many pieces an item is shown as running low.
constexpr int LowStock = 15;
constexpr int PartNoRole = Qt::UserRole;

const char *const InitialFavourites[] = {"HW-1001", "TL-2002", "PT-3001", "EL-4201", "TL-2201"};

} // namespace

ItemsForm::ItemsForm(DemoDataModule *dataModule, QWidget *parent)
    : QWidget(parent)
    , m_items(dataModule->itemsTable())
{
    setObjectName(u"ItemsForm"_s);
    setWindowTitle(tr("Items"));
    resize(760, 480);

    auto *filterLabel = new QLabel(tr("&Filter:"), this);
    filterLabel->setObjectName(u"FilterLabel"_s);
    m_filterEdit = new QLineEdit(this);
    m_filterEdit->setObjectName(u"FilterEdit"_s);
    m_filterEdit->setPlaceholderText(tr("Description or part number"));
    m_filterEdit->setClearButtonEnabled(true);
    filterLabel->setBuddy(m_filterEdit);
    connect(m_filterEdit, &QLineEdit::textChanged, this, &ItemsForm::setFilterText);

    auto *listModeButton = new QToolButton(this);
    listModeButton->setObjectName(u"ListModeButton"_s);
    listModeButton->setDefaultAction(dataModule->action(u"ViewList"_s));
    listModeButton->setAutoRaise(true);
    auto *iconModeButton = new QToolButton(this);
    iconModeButton->setObjectName(u"IconModeButton"_s);
    iconModeButton->setDefaultAction(dataModule->action(u"ViewIcons"_s));
    iconModeButton->setAutoRaise(true);

    auto *splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(u"Splitter1"_s);
    splitter->setChildrenCollapsible(false);

    m_tree = new QTreeWidget(splitter);
    m_tree->setObjectName(u"TreeWidget1"_s);
    m_tree->setHeaderLabels({tr("Description"), tr("Part No."), tr("Price"), tr("In Stock")});
    m_tree->setAlternatingRowColors(true);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setUniformRowHeights(true);
    m_tree->header()->setStretchLastSection(false);
    m_tree->header()->setSectionResizeMode(DescriptionColumn, QHeaderView::Stretch);
    connect(m_tree, &QTreeWidget::itemSelectionChanged, this, &ItemsForm::updateButtons);
    connect(m_tree, &QTreeWidget::itemDoubleClicked, this, &ItemsForm::addSelectedToFavourites);

    auto *favouritesPanel = new QWidget(splitter);
    favouritesPanel->setObjectName(u"FavouritesPanel"_s);
    auto *favouritesLabel = new QLabel(tr("F&avourites:"), favouritesPanel);
    favouritesLabel->setObjectName(u"FavouritesLabel"_s);
    m_favourites = new QListWidget(favouritesPanel);
    m_favourites->setObjectName(u"ListWidget1"_s);
    m_favourites->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_favourites->setResizeMode(QListView::Adjust);
    favouritesLabel->setBuddy(m_favourites);
    connect(m_favourites, &QListWidget::itemSelectionChanged, this, &ItemsForm::updateButtons);
    auto *favouritesLayout = new QVBoxLayout(favouritesPanel);
    favouritesLayout->setContentsMargins(0, 0, 0, 0);
    favouritesLayout->addWidget(favouritesLabel);
    favouritesLayout->addWidget(m_favourites);

    splitter->addWidget(m_tree);
    splitter->addWidget(favouritesPanel);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);

    if (QActionGroup *viewModes = dataModule->viewModeGroup()) {
        connect(viewModes, &QActionGroup::triggered, this, [this](QAction *mode) {
            if (!m_favourites)
                return;
            const bool icons = mode->objectName() == u"ViewIcons"_s;
            m_favourites->setViewMode(icons ? QListView::IconMode : QListView::ListMode);
            m_favourites->setWordWrap(icons);
        });
    }

    m_countLabel = new QLabel(this);
    m_countLabel->setObjectName(u"CountLabel"_s);
    m_addButton = new QPushButton(tr("&Add to Favourites"), this);
    m_addButton->setObjectName(u"AddButton"_s);
    connect(m_addButton, &QPushButton::clicked, this, &ItemsForm::addSelectedToFavourites);
    m_removeButton = new QPushButton(tr("&Remove"), this);
    m_removeButton->setObjectName(u"RemoveButton"_s);
    connect(m_removeButton, &QPushButton::clicked, this, &ItemsForm::removeSelectedFavourites);
    auto *closeButton = new QPushButton(tr("Close"), this);
    closeButton->setObjectName(u"CloseButton"_s);
    connect(closeButton, &QPushButton::clicked, this, &QWidget::close);

    auto *filterRow = new QHBoxLayout;
    filterRow->addWidget(filterLabel);
    filterRow->addWidget(m_filterEdit, 1);
    filterRow->addSpacing(12);
    filterRow->addWidget(listModeButton);
    filterRow->addWidget(iconModeButton);
    auto *buttonRow = new QHBoxLayout;
    buttonRow->addWidget(m_countLabel);
    buttonRow->addStretch(1);
    buttonRow->addWidget(m_addButton);
    buttonRow->addWidget(m_removeButton);
    buttonRow->addSpacing(12);
    buttonRow->addWidget(closeButton);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(filterRow);
    layout->addWidget(splitter, 1);
    layout->addLayout(buttonRow);

    fillTree();
    for (const char *partNo : InitialFavourites) {
        const QList<QTreeWidgetItem *> found =
            m_tree->findItems(QString::fromLatin1(partNo), Qt::MatchExactly | Qt::MatchRecursive, PartNoColumn);
        if (!found.isEmpty())
            m_tree->setCurrentItem(found.first(), DescriptionColumn, QItemSelectionModel::Select);
    }
    addSelectedToFavourites();
    m_tree->clearSelection();
    m_tree->setCurrentItem(nullptr);
    updateButtons();

    if (m_items)
        connect(m_items, &DemoDataSet::recordsChanged, this, &ItemsForm::fillTree);
}

void ItemsForm::fillTree()
{
    if (!m_tree)
        return;
    m_tree->clear();
    const QStyle *style = this->style();
    const QIcon folderIcon = style->standardIcon(QStyle::SP_DirIcon);
    const QIcon itemIcon = style->standardIcon(QStyle::SP_FileIcon);
    const QLocale locale;
    QHash<QString, QTreeWidgetItem *> categories;
    QHash<QString, QTreeWidgetItem *> groups;
    const int count = m_items ? m_items->recordCount() : 0;
    for (int row = 0; row < count; ++row) {
        const QString category = m_items->value(row, u"Category"_s).toString();
        const QString group = m_items->value(row, u"ItemGroup"_s).toString();
        QTreeWidgetItem *&categoryItem = categories[category];
        if (!categoryItem) {
            categoryItem = new QTreeWidgetItem(m_tree, {category});
            categoryItem->setIcon(DescriptionColumn, folderIcon);
            QFont bold = categoryItem->font(DescriptionColumn);
            bold.setBold(true);
            categoryItem->setFont(DescriptionColumn, bold);
        }
        QTreeWidgetItem *&groupItem = groups[category + u'/' + group];
        if (!groupItem) {
            groupItem = new QTreeWidgetItem(categoryItem, {group});
            groupItem->setIcon(DescriptionColumn, folderIcon);
        }
        const int stock = m_items->value(row, u"OnHand"_s).toInt();
        auto *item = new QTreeWidgetItem(groupItem);
        item->setText(DescriptionColumn, m_items->value(row, u"Description"_s).toString());
        item->setIcon(DescriptionColumn, itemIcon);
        item->setText(PartNoColumn, m_items->value(row, u"PartNo"_s).toString());
        item->setText(PriceColumn, locale.toString(m_items->value(row, u"ListPrice"_s).toDouble(), 'f', 2));
        item->setTextAlignment(PriceColumn, Qt::AlignRight | Qt::AlignVCenter);
        item->setText(StockColumn, locale.toString(stock));
        item->setTextAlignment(StockColumn, Qt::AlignRight | Qt::AlignVCenter);
        if (stock < LowStock) {
            item->setForeground(StockColumn, QColor(0xB0, 0x20, 0x20));
            item->setToolTip(StockColumn, tr("Running low"));
        }
    }
    m_tree->expandAll();
    m_tree->resizeColumnToContents(PartNoColumn);
    m_tree->resizeColumnToContents(PriceColumn);
    m_tree->resizeColumnToContents(StockColumn);
    setFilterText(m_filterEdit ? m_filterEdit->text() : QString());
}

void ItemsForm::setFilterText(const QString &text)
{
    if (!m_tree)
        return;
    const QString wanted = text.trimmed();
    int shown = 0;
    for (int c = 0; c < m_tree->topLevelItemCount(); ++c) {
        QTreeWidgetItem *category = m_tree->topLevelItem(c);
        bool categoryShown = false;
        for (int g = 0; g < category->childCount(); ++g) {
            QTreeWidgetItem *group = category->child(g);
            bool groupShown = false;
            for (int i = 0; i < group->childCount(); ++i) {
                QTreeWidgetItem *item = group->child(i);
                const bool matches = wanted.isEmpty()
                    || item->text(DescriptionColumn).contains(wanted, Qt::CaseInsensitive)
                    || item->text(PartNoColumn).contains(wanted, Qt::CaseInsensitive);
                item->setHidden(!matches);
                groupShown |= matches;
                shown += matches ? 1 : 0;
            }
            group->setHidden(!groupShown);
            categoryShown |= groupShown;
        }
        category->setHidden(!categoryShown);
    }
    if (m_countLabel)
        m_countLabel->setText(shown == 1 ? tr("1 item") : tr("%1 items").arg(shown));
}

void ItemsForm::addSelectedToFavourites()
{
    if (!m_tree || !m_favourites)
        return;
    const QList<QTreeWidgetItem *> selected = m_tree->selectedItems();
    for (const QTreeWidgetItem *item : selected) {
        const QString partNo = item->text(PartNoColumn);
        if (partNo.isEmpty())
            continue; // a category or group
        bool present = false;
        for (int row = 0; row < m_favourites->count() && !present; ++row)
            present = m_favourites->item(row)->data(PartNoRole).toString() == partNo;
        if (present)
            continue;
        auto *favourite = new QListWidgetItem(item->icon(DescriptionColumn), item->text(DescriptionColumn), m_favourites);
        favourite->setData(PartNoRole, partNo);
        favourite->setToolTip(partNo);
    }
}

void ItemsForm::removeSelectedFavourites()
{
    if (!m_favourites)
        return;
    qDeleteAll(m_favourites->selectedItems());
    updateButtons();
}

void ItemsForm::updateButtons()
{
    if (m_addButton && m_tree) {
        bool anyItem = false;
        for (const QTreeWidgetItem *item : m_tree->selectedItems())
            anyItem |= !item->text(PartNoColumn).isEmpty();
        m_addButton->setEnabled(anyItem);
    }
    if (m_removeButton && m_favourites)
        m_removeButton->setEnabled(!m_favourites->selectedItems().isEmpty());
}
