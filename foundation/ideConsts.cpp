#include "foundation/ideConsts.h"

#include "platform/kvException.h"

#include <QCoreApplication>

namespace kv {

QString LoadStr(const char *message)
{
    // Goes through Qt's translation so that a host can ship translated tables.
    return QCoreApplication::translate("ideConsts", message);
}

void CheckListIndex(qsizetype Index, qsizetype Count)
{
    if (Index < 0 || Index >= Count)
        throw Exception(LoadStr(SListIndexError).arg(Index));
}

// The table holds only constants: nothing to set up or tear down.
void ideConsts::Initialize() {}
void ideConsts::Finalize() {}

} // namespace kv
