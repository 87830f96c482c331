#pragma once

#include "kv_export.h"

// A data module: a non-visual root that groups the components a program shares between its
// forms (connections, tables, timers, actions). It names its components the way a form does
// and is listed by the screen beside the forms.

#include <QObject>

namespace kv {

class KV_EXPORT TDataModule : public QObject
{
    Q_OBJECT

public:
    // Registers itself with the screen. A parent does not change that it is a root: its
    // components are named and found within it.
    Q_INVOKABLE explicit TDataModule(QObject *parent = nullptr);
    ~TDataModule() override;
};

} // namespace kv
