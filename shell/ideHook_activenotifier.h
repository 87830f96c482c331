#pragma once

#include "kv_export.h"

#include <QObject>

class QWidget;

namespace kv {

// Raises OnActiveChanged every time a widget of the application receives the input
// focus. All living notifiers share one connection to QApplication::focusChanged,
// made while at least one exists.
class KV_EXPORT TCustomActiveNotifier : public QObject
{
    Q_OBJECT
public:
    // What the focus change carried: the widget that lost the focus and the one that got it.
    struct TFocusChange
    {
        QWidget *Old = nullptr;
        QWidget *Now = nullptr;
    };

    explicit TCustomActiveNotifier(QObject *Owner = nullptr);
    ~TCustomActiveNotifier() override;

    // Whether the shared focus connection is in place.
    static bool HookInstalled();

Q_SIGNALS:
    void OnActiveChanged(QObject *Sender);

protected:
    // Called for every focus change that gave a widget the focus; emits OnActiveChanged.
    virtual void HookProc(const TFocusChange &Data);

private:
    static void DispatchFocusChange(QWidget *old, QWidget *now);
};

} // namespace kv
