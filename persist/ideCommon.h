#pragma once

#include "kv_export.h"

// Unit ideCommon: the component filer, property streams over one property, the settings
// store of forms, window positions, and the hooks through which later units serve them.

#include <QString>

#include <functional>

class QObject;

namespace kv {

class IFormDesigner;

// Asked when a component filer meets a reading error that neither its OnError nor its
// IgnoreErrors settles: set Handled to go on past the error, IgnoreAll to go on past every
// later error of the same load without asking. The reader error dialog installs itself
// here; empty: the error ends the load.
using TReaderErrorHandler = std::function<void(const QString &Message, bool &Handled, bool &IgnoreAll)>;
extern KV_EXPORT TReaderErrorHandler ReaderErrorHandler;

// The form designer of an object, as unit ideGen finds it (it fills this when it starts);
// callers here test it for null.
using TGetDesignerProc = IFormDesigner *(*)(const QObject *Obj);
extern KV_EXPORT TGetDesignerProc GetDesignerProc;

namespace ideCommon {
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
} // namespace ideCommon

} // namespace kv
