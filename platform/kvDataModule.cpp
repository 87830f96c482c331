#include "platform/kvDataModule.h"

#include "platform/kvComponentState.h"
#include "platform/kvScreen.h"

namespace kv {

TDataModule::TDataModule(QObject *parent)
    : QObject(parent)
{
    Screen().RegisterDataModule(this);
}

TDataModule::~TDataModule()
{
    // The components see their root going while ~QObject deletes them.
    IncludeState(this, csDestroying);
    Screen().UnregisterDataModule(this);
}

} // namespace kv
