#pragma once

#include "kv_export.h"

// Events: a signal is a property of kind tkMethod whose value is the name of the slot that
// handles it (kvEventConnections.h).

#include "platform/kvPropertyEditor.h"

namespace kv {

// The value is the handler's slot name ("Handler.slot" when the handler is not the designed
// root); the value list is the root's slots compatible with the signal. Setting a name
// connects every object's signal to the root's slot of that name; an empty name disconnects.
// The root is the designer's, else the owner of the first object (the object itself when it
// is a root).
class KV_EXPORT TMethodProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    TPropertyAttributes GetAttributes() const override;
    bool AllEqual() const override;
    QString GetValue() const override;
    void GetValues(const TGetStrProc &Proc) const override;
    void SetValue(const QString &Value) override;
    // Nothing: there is no handler code to open, and stepping to the next slot of the list,
    // as value lists do, would connect a handler nobody chose.
    void Edit() override;
    int GetEditLimit() const override;

    // The root whose slots handle the events.
    QObject *HandlerRoot() const;
};

} // namespace kv
