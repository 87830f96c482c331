#include "platform/kvQtToolServices.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace kv {

namespace {

const QLatin1String ToolsMenuName("ToolsMenu");

// A menu title without its mnemonic marks: "&Tools" and "T&ools" read "Tools", "&&" is "&".
QString StripMnemonic(const QString &title)
{
    QString plain;
    plain.reserve(title.size());
    for (qsizetype i = 0; i < title.size(); ++i) {
        if (title.at(i) == u'&' && i + 1 < title.size())
            ++i;
        plain.append(title.at(i));
    }
    return plain;
}

// One item of the menu tree: the menu bar itself (no action), a sub-menu (its menu action)
// or a command. Items made by InsertItem belong to the caller: releasing the interface
// takes the item out of the menu, so that no click reaches an add-in that is gone.
class TQtMenuItemIntf : public TIMenuItemIntf
{
public:
    TQtMenuItemIntf(QWidget *container, QAction *action, bool ownsAction = false)
        : m_container(container)
        , m_action(action)
        , m_ownsAction(ownsAction)
    {
    }

    static std::unique_ptr<TIMenuItemIntf> ForAction(QAction *action, bool ownsAction = false)
    {
        return std::make_unique<TQtMenuItemIntf>(action->menu(), action, ownsAction);
    }

    ~TQtMenuItemIntf() override
    {
        if (m_ownsAction)
            delete m_action.data();
    }

    int GetItemCount() const override { return m_container ? int(m_container->actions().size()) : 0; }

    std::unique_ptr<TIMenuItemIntf> GetItem(int Index) const override
    {
        if (!m_container)
            return nullptr;
        const QList<QAction *> actions = m_container->actions();
        CheckListIndex(Index, actions.size());
        return ForAction(actions.at(Index));
    }

    QString GetName() const override
    {
        if (auto *menu = qobject_cast<QMenu *>(m_container.data()); menu && !menu->objectName().isEmpty())
            return menu->objectName();
        if (m_action)
            return m_action->objectName();
        return m_container ? m_container->objectName() : QString();
    }

    QString GetCaption() const override
    {
        if (m_action)
            return m_action->text();
        return QString();
    }

    TIMenuFlags GetFlags() const override
    {
        if (!m_action)
            return m_container ? TIMenuFlags(mfEnabled | mfVisible) : TIMenuFlags(mfInvalid);
        TIMenuFlags flags = 0;
        if (m_action->isEnabled())
            flags |= mfEnabled;
        if (m_action->isVisible())
            flags |= mfVisible;
        if (m_action->isChecked())
            flags |= mfChecked;
        return flags;
    }

    std::unique_ptr<TIMenuItemIntf> InsertItem(int Index, const QString &Caption, const QString &Name,
                                               const QString &Hint, const QKeySequence &ShortCut,
                                               int Context, int GroupIndex, TIMenuFlags Flags,
                                               TIMenuClickEvent EventHandler) override
    {
        if (!m_container)
            throw Exception(LoadStr(SErrMenuGone).arg(m_action ? m_action->text() : Caption));
        auto *action = new QAction(Caption, m_container);
        action->setObjectName(Name);
        action->setStatusTip(Hint);
        action->setShortcut(ShortCut);
        action->setProperty("HelpContext", Context);
        action->setProperty("GroupIndex", GroupIndex);
        action->setEnabled(Flags & mfEnabled);
        action->setVisible(Flags & mfVisible);
        if (Flags & (mfChecked | mfRadioItem)) {
            action->setCheckable(true);
            action->setChecked(Flags & mfChecked);
        }
        const QList<QAction *> actions = m_container->actions();
        if (Index >= 0 && Index < actions.size())
            m_container->insertAction(actions.at(Index), action);
        else
            m_container->addAction(action);
        if (EventHandler) {
            QObject::connect(action, &QAction::triggered, action, [action, EventHandler] {
                const std::unique_ptr<TIMenuItemIntf> sender = ForAction(action);
                Guarded([&] { EventHandler(sender.get()); });
            });
        }
        return ForAction(action, true);
    }

private:
    QPointer<QWidget> m_container; // the QMenuBar or QMenu holding the sub-items
    QPointer<QAction> m_action;
    bool m_ownsAction;
};

class TQtMainMenuIntf : public TIMainMenuIntf
{
public:
    explicit TQtMainMenuIntf(QMenuBar *menuBar) : m_menuBar(menuBar) {}

    std::unique_ptr<TIMenuItemIntf> GetMenuItems() const override
    {
        if (!m_menuBar)
            return nullptr;
        return std::make_unique<TQtMenuItemIntf>(m_menuBar.data(), nullptr);
    }

    std::unique_ptr<TIMenuItemIntf> FindMenuItem(const QString &Name) const override
    {
        if (!m_menuBar || Name.isEmpty())
            return nullptr;
        if (QAction *found = FindByName(m_menuBar->actions(), Name))
            return TQtMenuItemIntf::ForAction(found);
        if (Name == ToolsMenuName) {
            if (QAction *tools = FindToolsMenu())
                return TQtMenuItemIntf::ForAction(tools);
        }
        return nullptr;
    }

private:
    static QString NameOf(const QAction *action)
    {
        if (const QMenu *menu = action->menu(); menu && !menu->objectName().isEmpty())
            return menu->objectName();
        return action->objectName();
    }

    static QAction *FindByName(const QList<QAction *> &actions, const QString &name)
    {
        for (QAction *action : actions) {
            if (NameOf(action) == name)
                return action;
        }
        for (QAction *action : actions) {
            if (const QMenu *menu = action->menu()) {
                if (QAction *found = FindByName(menu->actions(), name))
                    return found;
            }
        }
        return nullptr;
    }

    // Programs that do not name their Tools menu "ToolsMenu": a menu named in the dotted
    // style of IDEs ("…Menu.Tools"), else the one titled "Tools".
    QAction *FindToolsMenu() const
    {
        const QList<QAction *> actions = m_menuBar->actions();
        for (QAction *action : actions) {
            if (action->menu() && NameOf(action).endsWith(QLatin1String(".Menu.Tools")))
                return action;
        }
        for (QAction *action : actions) {
            if (action->menu() && StripMnemonic(action->text()) == QLatin1String("Tools"))
                return action;
        }
        return nullptr;
    }

    QPointer<QMenuBar> m_menuBar;
};

} // namespace

TQtToolServices::TQtToolServices(QWidget *mainWindow)
    : m_window(mainWindow)
{
}

std::unique_ptr<TIMainMenuIntf> TQtToolServices::GetMainMenu() const
{
    QMenuBar *menuBar = MenuBarOf(m_window);
    if (!menuBar)
        return nullptr;
    return std::make_unique<TQtMainMenuIntf>(menuBar);
}

QMenuBar *TQtToolServices::MenuBarOf(const QWidget *window)
{
    if (!window)
        return nullptr;
    if (const auto *mainWindow = qobject_cast<const QMainWindow *>(window)) {
        if (auto *menuBar = qobject_cast<QMenuBar *>(mainWindow->menuWidget()))
            return menuBar;
    }
    return window->findChild<QMenuBar *>();
}

} // namespace kv
