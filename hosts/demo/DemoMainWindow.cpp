#include "hosts/demo/DemoMainWindow.h"

#include "hosts/demo/DemoDataModule.h"
#include "hosts/demo/DemoDataSet.h"
#include "hosts/demo/OptionsDialog.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPalette>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QTableWidget>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

// The month's sales target shown on the dashboard.
constexpr double MonthlyTarget = 40'000;
// Lines kept in the activity log.
constexpr int MaxActivityLines = 200;

// The shop's books are kept in dollars, whatever the user's locale.
QString Money(double value)
{
    return u'$' + QLocale().toString(value, 'f', 2);
}

QColor StatusColor(const QString &status)
{
    if (status == u"Open"_s)
        return QColor(0x1f, 0x5f, 0xa8);
    if (status == u"Cancelled"_s)
        return QColor(0x99, 0x99, 0x99);
    if (status == u"Paid"_s)
        return QColor(0x2e, 0x7d, 0x32);
    return QColor(0xa0, 0x6a, 0x00);
}

} // namespace

DemoMainWindow::DemoMainWindow(DemoDataModule *dataModule, QWidget *parent)
    : QMainWindow(parent)
    , m_dataModule(dataModule)
{
    setObjectName(u"MainForm"_s);
    setWindowTitle(tr("Korvo Demo Host"));
    setWindowIcon(style()->standardIcon(QStyle::SP_DesktopIcon));
    resize(880, 600);

    m_options = new OptionsDialog(this);
    connect(m_options, &OptionsDialog::applied, this, &DemoMainWindow::applyOptions);

    createActions();
    setCentralWidget(createDashboard());
    createStatusBar();

    m_clockTimer = new QTimer(this);
    m_clockTimer->setObjectName(u"ClockTimer"_s);
    m_clockTimer->setInterval(1000);
    connect(m_clockTimer, &QTimer::timeout, this, &DemoMainWindow::updateClock);
    m_clockTimer->start();
    updateClock();

    connect(dataModule, &DemoDataModule::statisticsChanged, this, &DemoMainWindow::showStatistics);
    connect(dataModule, &DemoDataModule::connectedChanged, this, &DemoMainWindow::showConnection);
    if (DemoDataSet *orders = dataModule->ordersTable())
        connect(orders, &DemoDataSet::recordsChanged, this, &DemoMainWindow::fillRecentOrders);
    fillRecentOrders();
    showStatistics();
    showConnection(dataModule->isConnected());

    updateOptionCommands();
    applyOptions();
    logActivity(tr("Signed in as %1").arg(m_options->userName()));
    logActivity(tr("Opened %1").arg(dataModule->databaseName()));
}

void DemoMainWindow::createActions()
{
    const QStyle *style = this->style();
    auto command = [this](QMenu *menu, const QString &name, const QString &text, const QKeySequence &shortcut = {},
                          const QIcon &icon = {}) {
        QAction *action = menu->addAction(icon, text);
        action->setObjectName(name);
        action->setShortcut(shortcut);
        m_commands.append(action);
        return action;
    };
    auto separator = [](QMenu *menu, const QString &name) {
        QAction *action = menu->addSeparator();
        action->setObjectName(name);
        return action;
    };
    auto subMenu = [](QMenu *menu, const QString &name, const QString &title) {
        QMenu *sub = menu->addMenu(title);
        sub->setObjectName(name);
        sub->menuAction()->setObjectName(name + u"Item"_s);
        return sub;
    };

    QMenuBar *bar = menuBar();
    bar->setObjectName(u"MainMenu1"_s);
    m_toolBar = addToolBar(tr("Standard"));
    m_toolBar->setObjectName(u"ToolBar1"_s);
    m_toolBar->setIconSize(QSize(20, 20));
    m_toolBar->toggleViewAction()->setObjectName(u"ViewToolBarItem"_s);

    QMenu *file = bar->addMenu(tr("&File"));
    file->setObjectName(u"FileMenu"_s);
    QAction *newNote = command(file, u"FileNewItem"_s, tr("&New Note"), QKeySequence::New,
                               style->standardIcon(QStyle::SP_FileIcon));
    connect(newNote, &QAction::triggered, this, &DemoMainWindow::newNoteRequested);
    QAction *open = command(file, u"FileOpenItem"_s, tr("&Open..."), QKeySequence::Open,
                            style->standardIcon(QStyle::SP_DialogOpenButton));
    connect(open, &QAction::triggered, this, &DemoMainWindow::openNoteRequested);
    QAction *saveAs = command(file, u"FileSaveAsItem"_s, tr("Save &As..."), QKeySequence::SaveAs,
                              style->standardIcon(QStyle::SP_DialogSaveButton));
    connect(saveAs, &QAction::triggered, this, &DemoMainWindow::saveNoteRequested);
    separator(file, u"FileSeparator1"_s);
    QAction *exit = command(file, u"FileExitItem"_s, tr("E&xit"), QKeySequence(Qt::CTRL | Qt::Key_Q));
    exit->setMenuRole(QAction::QuitRole);
    connect(exit, &QAction::triggered, this, &QWidget::close);

    QMenu *edit = bar->addMenu(tr("&Edit"));
    edit->setObjectName(u"EditMenu"_s);
    const struct
    {
        const char16_t *name;
        const char *text;
        QKeySequence::StandardKey key;
        const char *slot;
    } editCommands[] = {
        {u"EditUndoItem", QT_TR_NOOP("&Undo"), QKeySequence::Undo, "undo"},
        {u"EditRedoItem", QT_TR_NOOP("&Redo"), QKeySequence::Redo, "redo"},
        {nullptr, nullptr, QKeySequence::UnknownKey, nullptr},
        {u"EditCutItem", QT_TR_NOOP("Cu&t"), QKeySequence::Cut, "cut"},
        {u"EditCopyItem", QT_TR_NOOP("&Copy"), QKeySequence::Copy, "copy"},
        {u"EditPasteItem", QT_TR_NOOP("&Paste"), QKeySequence::Paste, "paste"},
        {nullptr, nullptr, QKeySequence::UnknownKey, nullptr},
        {u"EditSelectAllItem", QT_TR_NOOP("Select &All"), QKeySequence::SelectAll, "selectAll"},
    };
    int separators = 0;
    for (const auto &spec : editCommands) {
        if (!spec.name) {
            separator(edit, u"EditSeparator"_s + QString::number(++separators));
            continue;
        }
        QAction *action = command(edit, QString::fromUtf16(spec.name), tr(spec.text), spec.key);
        const char *slot = spec.slot;
        connect(action, &QAction::triggered, this, [this, slot] { editFocused(slot); });
    }
    separator(edit, u"EditSeparator"_s + QString::number(++separators));
    QMenu *insert = subMenu(edit, u"EditInsertMenu"_s, tr("&Insert"));
    connect(command(insert, u"EditInsertDateItem"_s, tr("&Date")), &QAction::triggered, this,
            [this] { insertIntoFocused(QLocale().toString(QDate::currentDate(), QLocale::ShortFormat)); });
    connect(command(insert, u"EditInsertTimeItem"_s, tr("&Time")), &QAction::triggered, this,
            [this] { insertIntoFocused(QLocale().toString(QTime::currentTime(), u"HH:mm"_s)); });
    connect(command(insert, u"EditInsertDateTimeItem"_s, tr("Date &and Time")), &QAction::triggered, this,
            [this] { insertIntoFocused(QLocale().toString(QDateTime::currentDateTime(), QLocale::ShortFormat)); });
    separator(insert, u"EditInsertSeparator1"_s);
    connect(command(insert, u"EditInsertUserItem"_s, tr("&User Name")), &QAction::triggered, this, [this] {
        if (m_options)
            insertIntoFocused(m_options->userName());
    });
    connect(command(insert, u"EditInsertSignatureItem"_s, tr("&Signature")), &QAction::triggered, this, [this] {
        if (m_options)
            insertIntoFocused(m_options->signature());
    });

    m_viewMenu = bar->addMenu(tr("&View"));
    m_viewMenu->setObjectName(u"ViewMenu"_s);
    m_viewMenu->addAction(m_toolBar->toggleViewAction());
    QAction *statusBarItem = command(m_viewMenu, u"ViewStatusBarItem"_s, tr("&Status Bar"));
    statusBarItem->setCheckable(true);
    statusBarItem->setChecked(true);
    connect(statusBarItem, &QAction::toggled, this, [this](bool on) { statusBar()->setVisible(on); });
    separator(m_viewMenu, u"ViewSeparator1"_s);
    m_viewWindowsEnd = separator(m_viewMenu, u"ViewSeparator2"_s);
    QAction *refresh = command(m_viewMenu, u"ViewRefreshItem"_s, tr("&Refresh"), QKeySequence::Refresh,
                               style->standardIcon(QStyle::SP_BrowserReload));
    connect(refresh, &QAction::triggered, this, [this] {
        if (m_dataModule)
            m_dataModule->updateStatistics();
        fillRecentOrders();
        logActivity(tr("Refreshed the dashboard"));
    });

    m_toolsMenu = bar->addMenu(tr("&Tools"));
    m_toolsMenu->setObjectName(u"ToolsMenu"_s);
    QAction *options = command(m_toolsMenu, u"ToolsOptionsItem"_s, tr("&Options..."), {},
                               style->standardIcon(QStyle::SP_FileDialogDetailedView));
    connect(options, &QAction::triggered, this, [this] { openOptions(OptionsDialog::GeneralPage); });
    m_connectAction = command(m_toolsMenu, u"ToolsConnectItem"_s, tr("Database &Connected"));
    m_connectAction->setCheckable(true);
    connect(m_connectAction, &QAction::triggered, this, [this](bool on) {
        if (m_dataModule)
            m_dataModule->setConnected(on);
    });
    QAction *clearLog = command(m_toolsMenu, u"ToolsClearLogItem"_s, tr("Clear Activity &Log"));
    connect(clearLog, &QAction::triggered, this, [this] {
        if (m_activity)
            m_activity->clear();
    });
    separator(m_toolsMenu, u"ToolsSeparator1"_s);
    QAction *customize = command(m_toolsMenu, u"ToolsCustomizeItem"_s, tr("C&ustomize..."));
    connect(customize, &QAction::triggered, this, [this] { openOptions(OptionsDialog::KeyboardPage); });

    QMenu *help = bar->addMenu(tr("&Help"));
    help->setObjectName(u"HelpMenu"_s);
    QAction *about = command(help, u"HelpAboutItem"_s, tr("&About Korvo Demo Host..."));
    about->setMenuRole(QAction::AboutRole);
    connect(about, &QAction::triggered, this, [this] {
        QMessageBox::about(this, tr("About Korvo Demo Host"),
                           tr("<h3>Korvo Demo Host %1</h3>"
                              "<p>A small sales and stock program in which the Korvo IDE Inspector add-in "
                              "is shown: its Tools menu carries the inspector's item.</p>"
                              "<p>Copyright &copy; Korvo Company</p>")
                               .arg(QCoreApplication::applicationVersion()));
    });
    QAction *aboutQt = command(help, u"HelpAboutQtItem"_s, tr("About &Qt..."));
    aboutQt->setMenuRole(QAction::AboutQtRole);
    connect(aboutQt, &QAction::triggered, qApp, &QApplication::aboutQt);

    m_toolBar->addAction(newNote);
    m_toolBar->addAction(open);
    m_toolBar->addAction(saveAs);
    m_toolBar->addSeparator()->setObjectName(u"ToolBarSeparator1"_s);
    m_toolBarWindowsEnd = m_toolBar->addSeparator();
    m_toolBarWindowsEnd->setObjectName(u"ToolBarSeparator2"_s);
    m_toolBar->addAction(refresh);
    m_toolBar->addAction(options);
}

QAction *DemoMainWindow::addWindowItem(QWidget *window, const QString &text, const QIcon &icon,
                                       const QKeySequence &shortcut)
{
    auto *action = new QAction(icon, text, this);
    action->setObjectName(u"View"_s + window->objectName() + u"Item"_s);
    action->setShortcut(shortcut);
    action->setToolTip(tr("Show the %1 window").arg(QString(text).remove(u'&')));
    const QPointer<QWidget> target = window;
    connect(action, &QAction::triggered, this, [target] {
        if (!target)
            return;
        target->show();
        target->setWindowState(target->windowState() & ~Qt::WindowMinimized);
        target->raise();
        target->activateWindow();
    });
    // The item goes when its window does.
    connect(window, &QObject::destroyed, action, &QObject::deleteLater);
    if (m_viewMenu)
        m_viewMenu->insertAction(m_viewWindowsEnd, action);
    if (m_toolBar)
        m_toolBar->insertAction(m_toolBarWindowsEnd, action);
    m_commands.append(action);
    updateOptionCommands();
    return action;
}

void DemoMainWindow::updateOptionCommands()
{
    if (!m_options)
        return;
    QList<QAction *> commands;
    for (const QPointer<QAction> &command : std::as_const(m_commands)) {
        if (command)
            commands.append(command);
    }
    m_options->setCommands(commands);
}

QWidget *DemoMainWindow::createDashboard()
{
    auto *dashboard = new QWidget(this);
    dashboard->setObjectName(u"DashboardPanel"_s);

    auto *title = new QLabel(tr("Sales Overview"), dashboard);
    title->setObjectName(u"TitleLabel"_s);
    QFont titleFont = title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.5);
    titleFont.setBold(true);
    title->setFont(titleFont);
    auto *date = new QLabel(QLocale().toString(QDate::currentDate(), QLocale::LongFormat), dashboard);
    date->setObjectName(u"DateLabel"_s);
    date->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto *summary = new QGroupBox(tr("Orders"), dashboard);
    summary->setObjectName(u"SummaryGroup"_s);
    auto *summaryGrid = new QGridLayout(summary);
    auto figure = [summary, summaryGrid](int row, const QString &name, const QString &caption) {
        auto *captionLabel = new QLabel(caption, summary);
        captionLabel->setObjectName(name + u"Caption"_s);
        auto *value = new QLabel(summary);
        value->setObjectName(name + u"Value"_s);
        value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        QFont bold = value->font();
        bold.setBold(true);
        value->setFont(bold);
        summaryGrid->addWidget(captionLabel, row, 0);
        summaryGrid->addWidget(value, row, 1);
        return value;
    };
    m_ordersTodayValue = figure(0, u"OrdersToday"_s, tr("Orders today:"));
    m_openOrdersValue = figure(1, u"OpenOrders"_s, tr("Open orders:"));
    m_openTotalValue = figure(2, u"OpenTotal"_s, tr("Open order value:"));

    auto *target = new QGroupBox(tr("Monthly Target"), dashboard);
    target->setObjectName(u"TargetGroup"_s);
    m_targetBar = new QProgressBar(target);
    m_targetBar->setObjectName(u"MonthTargetBar"_s);
    m_targetBar->setRange(0, 100);
    m_targetLabel = new QLabel(target);
    m_targetLabel->setObjectName(u"TargetLabel"_s);
    auto *targetLayout = new QVBoxLayout(target);
    targetLayout->addWidget(m_targetBar);
    targetLayout->addWidget(m_targetLabel);
    targetLayout->addStretch(1);

    auto *splitter = new QSplitter(Qt::Horizontal, dashboard);
    splitter->setObjectName(u"DashboardSplitter"_s);
    splitter->setChildrenCollapsible(false);

    auto *ordersGroup = new QGroupBox(tr("Recent Orders"), splitter);
    ordersGroup->setObjectName(u"RecentOrdersGroup"_s);
    m_recentOrders = new QTableWidget(ordersGroup);
    m_recentOrders->setObjectName(u"RecentOrdersGrid"_s);
    m_recentOrders->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_recentOrders->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_recentOrders->setAlternatingRowColors(true);
    m_recentOrders->verticalHeader()->hide();
    m_recentOrders->verticalHeader()->setDefaultSectionSize(m_recentOrders->fontMetrics().height() + 6);
    auto *ordersLayout = new QVBoxLayout(ordersGroup);
    ordersLayout->addWidget(m_recentOrders);

    auto *activityGroup = new QGroupBox(tr("Activity"), splitter);
    activityGroup->setObjectName(u"ActivityGroup"_s);
    m_activity = new QListWidget(activityGroup);
    m_activity->setObjectName(u"ActivityList"_s);
    auto *activityLayout = new QVBoxLayout(activityGroup);
    activityLayout->addWidget(m_activity);
    splitter->addWidget(ordersGroup);
    splitter->addWidget(activityGroup);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 1);

    auto *header = new QHBoxLayout;
    header->addWidget(title);
    header->addStretch(1);
    header->addWidget(date);
    auto *figures = new QHBoxLayout;
    figures->addWidget(summary, 1);
    figures->addWidget(target, 1);
    auto *layout = new QVBoxLayout(dashboard);
    layout->addLayout(header);
    layout->addLayout(figures);
    layout->addWidget(splitter, 1);
    return dashboard;
}

void DemoMainWindow::createStatusBar()
{
    QStatusBar *bar = statusBar();
    bar->setObjectName(u"StatusBar1"_s);
    m_statusLabel = new QLabel(tr("Ready"), bar);
    m_statusLabel->setObjectName(u"StatusLabel"_s);
    m_connectionLabel = new QLabel(bar);
    m_connectionLabel->setObjectName(u"ConnectionLabel"_s);
    m_clockLabel = new QLabel(bar);
    m_clockLabel->setObjectName(u"ClockLabel"_s);
    m_shopLabel = new QLabel(bar);
    m_shopLabel->setObjectName(u"ShopLabel"_s);
    bar->addWidget(m_statusLabel, 1);
    bar->addPermanentWidget(m_shopLabel);
    bar->addPermanentWidget(m_connectionLabel);
    bar->addPermanentWidget(m_clockLabel);
}

void DemoMainWindow::fillRecentOrders()
{
    if (!m_recentOrders)
        return;
    DemoDataSet *orders = m_dataModule ? m_dataModule->ordersTable() : nullptr;
    const QStringList shownFields = {u"OrderNo"_s, u"SaleDate"_s, u"Company"_s, u"Lines"_s, u"ItemsTotal"_s, u"Status"_s};
    const QDate since = m_options ? m_options->ordersSince().date() : QDate();
    QList<int> shownRows;
    for (int row = 0; orders && row < orders->recordCount(); ++row) {
        if (!since.isValid() || orders->value(row, u"SaleDate"_s).toDate() >= since)
            shownRows.append(row);
    }
    const int rows = int(shownRows.size());
    m_recentOrders->clear();
    m_recentOrders->setColumnCount(int(shownFields.size()));
    m_recentOrders->setRowCount(rows);
    const QLocale locale;
    for (int column = 0; column < shownFields.size(); ++column) {
        const int fieldIndex = orders ? orders->fieldIndex(shownFields[column]) : -1;
        const QString label = fieldIndex >= 0 ? orders->field(fieldIndex)->property("displayLabel").toString()
                                              : shownFields[column];
        m_recentOrders->setHorizontalHeaderItem(column, new QTableWidgetItem(label));
        for (int row = 0; row < rows; ++row) {
            const QVariant value = orders->value(shownRows[row], fieldIndex);
            QString text;
            if (value.typeId() == QMetaType::QDate)
                text = locale.toString(value.toDate(), QLocale::ShortFormat);
            else if (value.typeId() == QMetaType::Double)
                text = Money(value.toDouble());
            else
                text = value.toString();
            auto *cell = new QTableWidgetItem(text);
            if (value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Int)
                cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            if (shownFields[column] == u"Status"_s)
                cell->setForeground(StatusColor(text));
            m_recentOrders->setItem(row, column, cell);
        }
    }
    m_recentOrders->resizeColumnsToContents();
    m_recentOrders->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
    if (m_statusLabel)
        m_statusLabel->setText(rows == 1 ? tr("1 order") : tr("%1 orders").arg(rows));

    // The month's sales, against the target.
    double month = 0;
    const QDate today = QDate::currentDate();
    for (int row = 0; orders && row < orders->recordCount(); ++row) {
        const QDate sold = orders->value(row, u"SaleDate"_s).toDate();
        if (sold.year() == today.year() && sold.month() == today.month()
            && orders->value(row, u"Status"_s).toString() != u"Cancelled"_s)
            month += orders->value(row, u"ItemsTotal"_s).toDouble();
    }
    if (m_targetBar)
        m_targetBar->setValue(int(std::min(100.0, 100.0 * month / MonthlyTarget)));
    if (m_targetLabel)
        m_targetLabel->setText(tr("%1 of %2").arg(Money(month), Money(MonthlyTarget)));
}

void DemoMainWindow::showStatistics()
{
    if (!m_dataModule)
        return;
    if (m_ordersTodayValue)
        m_ordersTodayValue->setText(QLocale().toString(m_dataModule->ordersToday()));
    if (m_openOrdersValue)
        m_openOrdersValue->setText(QLocale().toString(m_dataModule->openOrders()));
    if (m_openTotalValue)
        m_openTotalValue->setText(Money(m_dataModule->openOrdersTotal()));
}

void DemoMainWindow::showConnection(bool connected)
{
    if (m_connectAction)
        m_connectAction->setChecked(connected);
    const QString database = m_dataModule ? m_dataModule->databaseName() : QString();
    if (m_connectionLabel)
        m_connectionLabel->setText(connected ? tr("Connected to %1").arg(database) : tr("Not connected"));
    if (m_activity && m_activity->count() > 0)
        logActivity(connected ? tr("Connected to %1").arg(database) : tr("Disconnected from %1").arg(database));
}

void DemoMainWindow::updateClock()
{
    const QLocale locale;
    const QTime now = QTime::currentTime();
    if (m_clockLabel)
        m_clockLabel->setText(locale.toString(now, u"HH:mm"_s));
    if (m_shopLabel && m_options) {
        const QTime opens = m_options->openingTime();
        const QTime closes = m_options->closingTime();
        const bool open = opens <= closes ? (now >= opens && now < closes) : (now >= opens || now < closes);
        m_shopLabel->setText(open ? tr("Shop open until %1").arg(locale.toString(closes, u"HH:mm"_s))
                                  : tr("Shop closed, opens at %1").arg(locale.toString(opens, u"HH:mm"_s)));
    }
}

void DemoMainWindow::logActivity(const QString &text)
{
    if (!m_activity)
        return;
    const QString time = QLocale().toString(QTime::currentTime(), u"HH:mm"_s);
    m_activity->insertItem(0, time + u"  "_s + text);
    while (m_activity->count() > MaxActivityLines)
        delete m_activity->takeItem(m_activity->count() - 1);
}

void DemoMainWindow::openOptions(int page)
{
    if (!m_options)
        return;
    m_options->setShowToolBar(m_toolBar && !m_toolBar->isHidden());
    m_options->setShowStatusBar(!statusBar()->isHidden());
    m_options->openPage(OptionsDialog::Page(page));
}

void DemoMainWindow::applyOptions()
{
    if (!m_options)
        return;
    if (m_toolBar) {
        m_toolBar->setVisible(m_options->showToolBar());
        m_toolBar->setToolButtonStyle(m_options->toolButtonStyle());
    }
    statusBar()->setVisible(m_options->showStatusBar());
    if (QAction *statusBarItem = findChild<QAction *>(u"ViewStatusBarItem"_s))
        statusBarItem->setChecked(m_options->showStatusBar());
    setWindowOpacity(m_options->windowOpacity());
    const QString company = m_options->companyName().trimmed();
    setWindowTitle(company.isEmpty() ? tr("Korvo Demo Host") : tr("Korvo Demo Host - %1").arg(company));
    applyTheme(m_options->darkTheme(), m_options->accentColor());
    fillRecentOrders();
    updateClock();
}

void DemoMainWindow::applyTheme(bool dark, const QColor &selection)
{
    // The theme is the application's: every window and dialog takes the palette.
    QPalette palette = QApplication::style()->standardPalette();
    if (dark) {
        const QColor window(0x35, 0x37, 0x3b), base(0x25, 0x27, 0x2a), text(0xe6, 0xe6, 0xe6);
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::AlternateBase, window);
        palette.setColor(QPalette::Text, text);
        palette.setColor(QPalette::Button, window);
        palette.setColor(QPalette::ButtonText, text);
        palette.setColor(QPalette::ToolTipBase, base);
        palette.setColor(QPalette::ToolTipText, text);
        palette.setColor(QPalette::PlaceholderText, text.darker(160));
        palette.setColor(QPalette::Disabled, QPalette::Text, text.darker(180));
        palette.setColor(QPalette::Disabled, QPalette::WindowText, text.darker(180));
        palette.setColor(QPalette::Disabled, QPalette::ButtonText, text.darker(180));
    }
    if (selection.isValid()) {
        palette.setColor(QPalette::Highlight, selection);
        palette.setColor(QPalette::HighlightedText, selection.lightness() > 150 ? Qt::black : Qt::white);
    }
    if (palette != QApplication::palette())
        QApplication::setPalette(palette);
}

void DemoMainWindow::editFocused(const char *command)
{
    QWidget *focused = QApplication::focusWidget();
    if (!focused)
        return;
    const QByteArray signature = QByteArray(command) + "()";
    if (focused->metaObject()->indexOfMethod(signature.constData()) >= 0)
        QMetaObject::invokeMethod(focused, command);
}

void DemoMainWindow::insertIntoFocused(const QString &text)
{
    QWidget *focused = QApplication::focusWidget();
    if (auto *lineEdit = qobject_cast<QLineEdit *>(focused); lineEdit && !lineEdit->isReadOnly())
        lineEdit->insert(text);
    else if (auto *plain = qobject_cast<QPlainTextEdit *>(focused); plain && !plain->isReadOnly())
        plain->insertPlainText(text);
    else if (auto *rich = qobject_cast<QTextEdit *>(focused); rich && !rich->isReadOnly())
        rich->insertPlainText(text);
}

void DemoMainWindow::closeEvent(QCloseEvent *event)
{
    if (m_options && m_options->confirmExit()
        && QMessageBox::question(this, tr("Exit"), tr("Exit Korvo Demo Host?")) != QMessageBox::Yes) {
        event->ignore();
        return;
    }
    // The main window ends the program: the other windows close first, and any of them
    // (a changed note) may refuse.
    QList<QPointer<QWidget>> windows;
    for (QWidget *window : QApplication::topLevelWidgets())
        windows.append(window);
    for (const QPointer<QWidget> &window : windows) {
        // A window may have gone with one closed before it.
        if (!window || window == this || !window->isVisible() || window->windowType() == Qt::Popup
            || window->windowType() == Qt::ToolTip)
            continue;
        if (!window->close()) {
            event->ignore();
            return;
        }
    }
    QMainWindow::closeEvent(event);
}

QMenu *DemoMainWindow::toolsMenu() const
{
    return m_toolsMenu;
}

OptionsDialog *DemoMainWindow::optionsDialog() const
{
    return m_options;
}
