#include "foundation/ideConsts.h"

#include <QCoreApplication>

namespace kv {

QString LoadStr(const char *message)
{
    // Goes through Qt's translation so that a host can ship translated tables.
    return QCoreApplication::translate("ideConsts", message);
}

// The table holds only constants: nothing to set up or tear down.
void ideConsts::Initialize() {}
void ideConsts::Finalize() {}

} // namespace kv
