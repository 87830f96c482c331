#pragma once

// The demo host's main window: menu bar (its "&Tools" menu is named "ToolsMenu", the
// place where add-ins insert their items), tool bar, a sales dashboard and a status bar.

#include <QMainWindow>
#include <QPointer>

class DemoDataModule;
class OptionsDialog;
class QAction;
class QLabel;
class QListWidget;
class QMenu;
class QProgressBar;
class QTableWidget;
class QTimer;
class QToolBar;

class DemoMainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit DemoMainWindow(DemoDataModule *dataModule, QWidget *parent = nullptr);

    QMenu *toolsMenu() const;
    OptionsDialog *optionsDialog() const;

    // Adds an item to the View menu and the tool bar that shows and raises window.
    QAction *addWindowItem(QWidget *window, const QString &text, const QIcon &icon, const QKeySequence &shortcut);
    // Adds a line to the activity log on the dashboard.
    void logActivity(const QString &text);

Q_SIGNALS:
    void newNoteRequested();
    void openNoteRequested();
    void saveNoteRequested();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void createActions();
    void createMenus();
    QWidget *createDashboard();
    void createStatusBar();
    void fillRecentOrders();
    void showStatistics();
    void showConnection(bool connected);
    void updateClock();
    void openOptions(int page);
    void applyOptions();
    void applyTheme(bool dark, const QColor &selection);
    void updateOptionCommands();
    // Runs a text editing command on the focused editor, if any has it.
    void editFocused(const char *command);
    void insertIntoFocused(const QString &text);

    QPointer<DemoDataModule> m_dataModule;
    QPointer<OptionsDialog> m_options;
    QPointer<QMenu> m_toolsMenu;
    QPointer<QMenu> m_viewMenu;
    QPointer<QToolBar> m_toolBar;
    QPointer<QAction> m_viewWindowsEnd;
    QPointer<QAction> m_toolBarWindowsEnd;
    QPointer<QAction> m_connectAction;
    QPointer<QTableWidget> m_recentOrders;
    QPointer<QListWidget> m_activity;
    QPointer<QLabel> m_ordersTodayValue;
    QPointer<QLabel> m_openOrdersValue;
    QPointer<QLabel> m_openTotalValue;
    QPointer<QProgressBar> m_targetBar;
    QPointer<QLabel> m_targetLabel;
    QPointer<QLabel> m_statusLabel;
    QPointer<QLabel> m_connectionLabel;
    QPointer<QLabel> m_clockLabel;
    QPointer<QLabel> m_shopLabel;
    QPointer<QTimer> m_clockTimer;
    // The menu commands, for the options dialog's Keyboard page; any may be deleted from outside.
    QList<QPointer<QAction>> m_commands;
};
