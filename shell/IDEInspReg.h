#pragma once

#include "kv_export.h"

// The add-in that puts "Korvo IDE Inspector" into the host's Tools menu.

#include "platform/kvExptIntf.h"

#include <memory>

namespace kv {

class TIMenuItemIntf;

// Opens the IDE inspector window; filled by the unit that owns that window. Until then the
// menu item has nothing to open.
extern KV_EXPORT void (*ShowIDEInspectorProc)();

class KV_EXPORT TKVExpert : public TIExpert
{
public:
    explicit TKVExpert(const QString &AName);
    ~TKVExpert() override;

    QString GetName() const override;
    QString GetAuthor() const override;
    QString GetComment() const override;
    QString GetPage() const override;
    const QIcon *GetGlyph() const override;
    TExpertStyle GetStyle() const override;
    TExpertState GetState() const override;
    QString GetIDString() const override;
    QString GetMenuText() const override;
    void Execute() override;

    // The Tools menu item this add-in inserted, or null.
    TIMenuItemIntf *MenuItem() const { return m_menuItem.get(); }

private:
    static void MenuClick(TIMenuItemIntf *Sender);

    std::unique_ptr<TIMenuItemIntf> m_menuItem;
    QString m_name;
};

namespace IDEInspReg {
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
KV_EXPORT void Register();
} // namespace IDEInspReg

} // namespace kv
