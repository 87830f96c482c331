#pragma once

#include "kv_export.h"

// The option forms that an options dialog shows as pages, in the order they registered with.

#include <QList>
#include <QString>

class QMetaObject;

namespace kv {

struct KV_EXPORT TOptionFormClass
{
    // The order as a number right-aligned in 5 characters ("   10"), which sorts as text.
    QString Key;
    const QMetaObject *Class = nullptr;
};

// The registered option form classes, sorted by key as text; forms with the same key keep
// the order they registered in. Text order puts "   -1" after the one-digit orders and before
// the longer ones. Created on first use.
KV_EXPORT const QList<TOptionFormClass> &OptionFormClasses();

// Adds Class under the key Order written right-aligned in 5 characters. A class registered
// again moves to its new place. A null Class raises kv::Exception (SErrNilRegistration).
KV_EXPORT void RegisterOptionsFormOrder(const QMetaObject *Class, int Order);
// The same with the order -1.
KV_EXPORT void RegisterOptionsForm(const QMetaObject *Class);
// Deletes the entry of Class; nothing when it has none.
KV_EXPORT void UnregisterOptionsForm(const QMetaObject *Class);

} // namespace kv
