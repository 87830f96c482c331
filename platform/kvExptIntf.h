#pragma once

#include "kv_export.h"

// The host's add-in interface: an add-in object that the host owns once registered.

#include <QString>

#include <functional>
#include <memory>

class QIcon;

namespace kv {

enum TExpertStyle { esStandard = 0, esForm = 1, esProject = 2, esAddIn = 3 };
enum TExpertStateFlag { esEnabled = 0x1, esChecked = 0x2 };
using TExpertState = unsigned;

class KV_EXPORT TIExpert
{
public:
    virtual ~TIExpert() = default;

    virtual QString GetName() const = 0;
    virtual QString GetAuthor() const = 0;
    virtual QString GetComment() const = 0;
    virtual QString GetPage() const = 0;
    virtual const QIcon *GetGlyph() const = 0; // null: no icon
    virtual TExpertStyle GetStyle() const = 0;
    virtual TExpertState GetState() const = 0;
    virtual QString GetIDString() const = 0;
    virtual QString GetMenuText() const = 0;
    virtual void Execute() = 0;
};

// Set by the host while it accepts add-ins from packages; empty otherwise. It takes
// ownership of the add-in.
using TExpertRegisterProc = std::function<void(std::unique_ptr<TIExpert>)>;
KV_EXPORT TExpertRegisterProc &LibraryExpertProc();

// Hands an add-in to the host, which owns it from then on. Without a host that accepts
// add-ins the object is destroyed at once.
KV_EXPORT void RegisterLibraryExpert(std::unique_ptr<TIExpert> expert);

} // namespace kv
