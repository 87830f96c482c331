#pragma once

// The application's options in a tabbed dialog. The values are kept in the user's settings
// and read back when the dialog is made. Cancel (or closing the dialog) puts back the values
// it opened with; Apply and OK store them and emit applied(). "Restore Defaults" resets the
// current page.

#include <QDate>
#include <QDateTime>
#include <QDialog>
#include <QFont>
#include <QKeySequence>
#include <QPointer>
#include <QTime>
#include <QVariant>

class QAction;
class QKeySequenceEdit;
class QLabel;
class QTabWidget;
class QTreeWidget;
class QTreeWidgetItem;

class OptionsDialog : public QDialog
{
    Q_OBJECT

public:
    enum Page { GeneralPage, EditorPage, AppearancePage, RegionalPage, KeyboardPage };
    Q_ENUM(Page)
    enum StartupWindows { MainWindowOnly, WithDocuments, AllWindows };
    Q_ENUM(StartupWindows)

    explicit OptionsDialog(QWidget *parent = nullptr);

    // The commands whose shortcuts the Keyboard page edits. The shortcuts a command has when
    // it is first given are its defaults; stored shortcuts are put on the commands at once.
    void setCommands(const QList<QAction *> &commands);
    // Shows the dialog (window-modal) on page; Cancel will return to the values it has now.
    void openPage(Page page);

    // General
    QString userName() const;
    QString companyName() const;
    QString signature() const;
    StartupWindows startupWindows() const;
    bool confirmExit() const;
    // 0 when notes are not saved automatically.
    int autoSaveMinutes() const;
    // Editor
    QFont noteFont() const;
    int noteTabWidth() const;
    bool noteWordWrap() const;
    // Appearance
    bool showToolBar() const;
    void setShowToolBar(bool show);
    bool showStatusBar() const;
    void setShowStatusBar(bool show);
    Qt::ToolButtonStyle toolButtonStyle() const;
    bool darkTheme() const;
    QColor accentColor() const;
    // 0.5 (half transparent) to 1 (opaque).
    qreal windowOpacity() const;
    // Regional
    Qt::DayOfWeek firstDayOfWeek() const;
    QTime openingTime() const;
    QTime closingTime() const;
    QDate nextStocktake() const;
    QDateTime ordersSince() const;
    // Percent.
    double taxRate() const;

Q_SIGNALS:
    // The values on every page were taken over (Apply or OK).
    void applied();

public Q_SLOTS:
    void accept() override;
    void reject() override;
    void apply();

private:
    struct SavedValue
    {
        QPointer<QWidget> widget;
        QVariant value;
    };
    using Snapshot = QList<SavedValue>;

    QWidget *createGeneralPage();
    QWidget *createEditorPage();
    QWidget *createAppearancePage();
    QWidget *createRegionalPage();
    QWidget *createKeyboardPage();
    Snapshot takeSnapshot(const QWidget *root) const;
    void restoreSnapshot(const Snapshot &snapshot, const QWidget *within);
    void restoreDefaults();
    void readSettings();
    void writeSettings() const;
    void reloadCommands();
    void showSelectedShortcut();
    void assignShortcut(const QKeySequence &shortcut);
    void setItemShortcut(QTreeWidgetItem *item, const QKeySequence &shortcut);
    // The named input widget, or null when there is none (any more).
    template <typename T>
    T *input(const char *name) const
    {
        return findChild<T *>(QString::fromLatin1(name));
    }

    QPointer<QTabWidget> m_pages;
    QPointer<QTreeWidget> m_commandTree;
    QPointer<QKeySequenceEdit> m_shortcutEdit;
    QPointer<QLabel> m_conflictLabel;

    struct Command
    {
        QPointer<QAction> action;
        QKeySequence defaultShortcut;
    };
    QList<Command> m_commands;
    Snapshot m_defaults;
    Snapshot m_openedWith;
    // Set while the dialog itself changes the shortcut editor.
    bool m_showingShortcut = false;
};
