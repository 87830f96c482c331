#pragma once

#include "kv_export.h"

// Component editors: the verbs that a designer offers for a component (its context menu)
// and what a double click on it does. User-interface thread only.

#include <QPointer>
#include <QString>

#include <memory>

class QObject;

namespace kv {

class IFormDesigner;
class TPropertyEditor;

class KV_EXPORT TComponentEditor
{
public:
    TComponentEditor(QObject *Component, IFormDesigner *Designer);
    virtual ~TComponentEditor();
    TComponentEditor(const TComponentEditor &) = delete;
    TComponentEditor &operator=(const TComponentEditor &) = delete;

    // The double click: the first verb when there is one.
    virtual void Edit();
    virtual void ExecuteVerb(int Index);
    virtual QString GetVerb(int Index) const;
    virtual int GetVerbCount() const;
    // Puts the component on the clipboard in a form other programs read; nothing here.
    virtual void Copy();

    // Null once the component was destroyed.
    QObject *Component() const { return m_component.data(); }
    // Null without one, or once the designer (when it is a QObject) was destroyed.
    IFormDesigner *Designer() const;

private:
    QPointer<QObject> m_component;
    IFormDesigner *m_designer;
    QPointer<QObject> m_designerObject;
    bool m_designerIsObject;
};

// The editor of components that have none registered: no verbs; Edit picks the component's
// principal event ("clicked", "triggered", "activated", else the first signal named
// "…Changed", else the first signal) and hands its editor to EditProperty, which does
// nothing here: there is no code to open. "First" searches the component's own class
// before its ancestors, and QObject's own signals (destroyed, objectNameChanged) come
// last: a line edit's principal event is textChanged, a timer's timeout.
class KV_EXPORT TDefaultEditor : public TComponentEditor
{
public:
    using TComponentEditor::TComponentEditor;
    void Edit() override;

protected:
    // Edit hands the component's events in that order of preference, the principal one
    // first, until Continue (true on each call) is set to false. Here: ends the walk at the
    // first, as there is nothing to open.
    virtual void EditProperty(TPropertyEditor &Editor, bool &Continue);
};

using TComponentEditorClass = std::unique_ptr<TComponentEditor> (*)(QObject *Component, IFormDesigner *Designer);

template <typename T>
KV_EXPORT std::unique_ptr<TComponentEditor> CreateComponentEditor(QObject *Component, IFormDesigner *Designer)
{
    return std::make_unique<T>(Component, Designer);
}

template <typename T>
inline constexpr TComponentEditorClass ComponentEditorClass = &CreateComponentEditor<T>;

// Registers Editor for ComponentClass and its descendants, in the current editor group.
// Raises kv::Exception (SErrNilRegistration) for a null class or editor.
KV_EXPORT void RegisterComponentEditor(const QMetaObject *ComponentClass, TComponentEditorClass Editor);
// The editor of the most derived registered class that Component is of (the newest among
// registrations of one class); a TDefaultEditor when none is. Null for a null component.
KV_EXPORT std::unique_ptr<TComponentEditor> GetComponentEditor(QObject *Component, IFormDesigner *Designer);
// Frees the registry (unit stop).
KV_EXPORT void FinalizeComponentEditors();

} // namespace kv
