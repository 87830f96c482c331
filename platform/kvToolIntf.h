#pragma once

#include "kv_export.h"

// The host's tool services: its main menu and the items in it. Every interface object
// handed out is owned by the caller, which releases it by destroying it.

#include <QKeySequence>
#include <QString>

#include <functional>
#include <memory>

namespace kv {

enum TIMenuFlag {
    mfInvalid = 0x01,
    mfEnabled = 0x02,
    mfVisible = 0x04,
    mfChecked = 0x08,
    mfBreak = 0x10,
    mfBarBreak = 0x20,
    mfRadioItem = 0x40,
};
using TIMenuFlags = unsigned;

class TIMenuItemIntf;
using TIMenuClickEvent = std::function<void(TIMenuItemIntf *Sender)>;

class KV_EXPORT TIMenuItemIntf
{
public:
    virtual ~TIMenuItemIntf() = default;

    virtual int GetItemCount() const = 0;
    virtual std::unique_ptr<TIMenuItemIntf> GetItem(int Index) const = 0;
    virtual QString GetName() const = 0;
    virtual QString GetCaption() const = 0;
    virtual TIMenuFlags GetFlags() const = 0;
    // Index < 0 or past the end: the host's default place, the end of the menu.
    virtual std::unique_ptr<TIMenuItemIntf> InsertItem(int Index, const QString &Caption,
                                                       const QString &Name, const QString &Hint,
                                                       const QKeySequence &ShortCut, int Context,
                                                       int GroupIndex, TIMenuFlags Flags,
                                                       TIMenuClickEvent EventHandler) = 0;
};

class KV_EXPORT TIMainMenuIntf
{
public:
    virtual ~TIMainMenuIntf() = default;

    virtual std::unique_ptr<TIMenuItemIntf> GetMenuItems() const = 0;
    // The item (a menu or a command) whose component name is Name, anywhere in the menu.
    virtual std::unique_ptr<TIMenuItemIntf> FindMenuItem(const QString &Name) const = 0;
};

class KV_EXPORT TIToolServices
{
public:
    virtual ~TIToolServices() = default;

    virtual std::unique_ptr<TIMainMenuIntf> GetMainMenu() const = 0;
};

// The host's tool services, or null when the host has none. Not owned.
KV_EXPORT TIToolServices *&ToolServices();

} // namespace kv
