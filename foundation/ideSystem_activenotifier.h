#pragma once

#include "kv_export.h"

#include "shell/ideHook_activenotifier.h"

#include <QString>

namespace kv {

// The active-window notifier as the designer shows it: OnActiveChanged is its event, and
// it publishes the library's version marker.
class KV_EXPORT TActiveNotifier : public TCustomActiveNotifier
{
    Q_OBJECT
    Q_PROPERTY(QString Version READ Version STORED false)
public:
    explicit TActiveNotifier(QObject *Owner = nullptr);
    ~TActiveNotifier() override;

    QString Version() const;
};

} // namespace kv
