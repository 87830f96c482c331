#pragma once

// The option forms that an options dialog shows as pages, in the order they registered with.

#include <QList>
#include <QString>

class QMetaObject;

namespace kv {

struct TOptionFormClass
{
    // The order as a number right-aligned in 5 characters ("   10"), which sorts as text.
    QString Key;
    const QMetaObject *Class = nullptr;
};

// The registered option form classes, sorted by key as text; forms with the same key keep
// the order they registered in. Text order puts "   -1" after the one-digit orders and before
// the longer ones. Created on first use.
const QList<TOptionFormClass> &OptionFormClasses();

// Adds Class under the key Order written right-aligned in 5 characters. A class registered
// again moves to its new place. A null Class raises kv::Exception (SErrNilRegistration).
void RegisterOptionsFormOrder(const QMetaObject *Class, int Order);
// The same with the order -1.
void RegisterOptionsForm(const QMetaObject *Class);
// Deletes the entry of Class; nothing when it has none.
void UnregisterOptionsForm(const QMetaObject *Class);

} // namespace kv
