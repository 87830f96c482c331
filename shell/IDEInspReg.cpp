#include "shell/IDEInspReg.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem.h"
#include "foundation/ideSystem_verbs.h"
#include "platform/kvToolIntf.h"

namespace kv {

void (*ShowIDEInspectorProc)() = nullptr;

namespace {

void ShowIDEInspectorVerb()
{
    if (ShowIDEInspectorProc)
        ShowIDEInspectorProc();
}

// The inspector is a global command as well as a menu item, in every host.
void RegisterInspectorVerb()
{
    RegisterVerbArray({{QStringLiteral("Tools.KorvoIDEInspector"), nullptr, &ShowIDEInspectorVerb}});
}

} // namespace

TKVExpert::TKVExpert(const QString &AName)
{
    TIToolServices *services = ToolServices();
    if (!services)
        return;
    m_name = AName;
    // Declared in this order so that, on return or on an exception, the Tools menu is
    // released first, then the menu items, then the main menu.
    const std::unique_ptr<TIMainMenuIntf> mainMenu = services->GetMainMenu();
    if (!mainMenu)
        return;
    const std::unique_ptr<TIMenuItemIntf> menuItems = mainMenu->GetMenuItems();
    if (!menuItems)
        return;
    const std::unique_ptr<TIMenuItemIntf> toolsMenu = mainMenu->FindMenuItem(QStringLiteral("ToolsMenu"));
    if (!toolsMenu)
        return;
    // Just ahead of the menu's last item; -1 for an empty menu is the host's default place.
    m_menuItem = toolsMenu->InsertItem(toolsMenu->GetItemCount() - 1, m_name,
                                       QStringLiteral("ToolsKorvoIDEInspector"), QString(),
                                       QKeySequence(), 0, 0, mfEnabled | mfVisible, &MenuClick);
}

TKVExpert::~TKVExpert() = default;

QString TKVExpert::GetName() const
{
    return m_name + QLatin1String(" Expert");
}

QString TKVExpert::GetAuthor() const
{
    return QStringLiteral("Korvo Company");
}

QString TKVExpert::GetComment() const
{
    return QString();
}

QString TKVExpert::GetPage() const
{
    return QString();
}

const QIcon *TKVExpert::GetGlyph() const
{
    return nullptr;
}

TExpertStyle TKVExpert::GetStyle() const
{
    return esAddIn;
}

TExpertState TKVExpert::GetState() const
{
    return esEnabled;
}

QString TKVExpert::GetIDString() const
{
    return QLatin1String("KorvoCompany.") + m_name;
}

QString TKVExpert::GetMenuText() const
{
    return m_name + QLatin1String("...");
}

void TKVExpert::Execute()
{
    // An add-in of this style is driven by its own menu item only.
}

void TKVExpert::MenuClick(TIMenuItemIntf *)
{
    ShowIDEInspectorVerb();
}

void IDEInspReg::Initialize()
{
    RegisterForDelphi(RegisterInspectorVerb);
}
void IDEInspReg::Finalize() {}

void IDEInspReg::Register()
{
    if (!LibraryExpertProc())
        return;
    RegisterLibraryExpert(std::make_unique<TKVExpert>(LoadStr(SVerbIdeInspector)));
}

} // namespace kv
