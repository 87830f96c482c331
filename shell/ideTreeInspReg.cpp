#include "shell/ideTreeInspReg.h"

namespace kv {

void ideTreeInspReg::Initialize() {}
void ideTreeInspReg::Finalize() {}
void ideTreeInspReg::Register() {}

} // namespace kv
