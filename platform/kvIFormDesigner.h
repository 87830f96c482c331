#pragma once

#include "kv_export.h"

// The form designer as the library's property editors, inspectors and views talk to it:
// what may be shown and edited, which object is selected, what a component is called, and
// that something was modified. The stand-alone designer (TFDesigner) implements it for
// forms that nobody designs; an IDE adapter implements it over the IDE's own designer.

#include <QList>
#include <QObject>
#include <QString>

#include <functional>

class QWidget;

namespace kv {

class KV_EXPORT IFormDesigner
{
public:
    virtual ~IFormDesigner() = default;

    // The designed root (a form or data module) and its class name; null / empty without.
    virtual QObject *GetRoot() const = 0;
    virtual QString GetRootClassName() const = 0;
    virtual QWidget *GetCustomForm() const = 0;
    virtual void SetCustomForm(QWidget *Form) = 0;

    virtual bool AllowPropShow(QObject *Component, const QString &PropName) = 0;
    virtual bool AllowEdit(QObject *Component, const QString &PropName) = 0;
    // True when every object of List passes (true for an empty list).
    virtual bool AllowPropShowList(const QList<QObject *> &List, const QString &PropName) = 0;
    virtual bool AllowEditList(const QList<QObject *> &List, const QString &PropName) = 0;
    virtual bool CanBeSelected(QObject *Obj) = 0;

    // The selected objects that still live, in selection order.
    virtual QList<QObject *> GetSelections() const = 0;
    virtual void SetSelections(const QList<QObject *> &Selection) = 0;
    virtual void SelectComponent(QObject *Obj) = 0;

    // Something of the selection (or of the root) changed.
    virtual void Modified() = 0;
    // A component was created inside the designed root.
    virtual void ComponentInserted(QObject *Component) = 0;
    // Component (null: the root) is being renamed from CurName to NewName.
    virtual void ValidateRename(QObject *Component, const QString &CurName, const QString &NewName) = 0;

    // A name that no component of the root bears: BaseName followed by a number.
    virtual QString UniqueName(const QString &BaseName) = 0;
    virtual QObject *GetComponent(const QString &Name) = 0;
    virtual QString GetComponentName(QObject *Component) = 0;
    // Passes the names of the root's components of Class (all classes when null).
    virtual void GetComponentNames(const QMetaObject *Class,
                                   const std::function<void(const QString &Name)> &Proc) = 0;
    virtual QString GetObjectName(QObject *Obj) = 0;

    // Opens Component in the designer; null: shows the designed form.
    virtual void Edit(QObject *Component) = 0;
    virtual QString GetPrivateDirectory() = 0;

    virtual bool CanPaste() = 0;
    virtual void CopySelection() = 0;
    virtual void CutSelection() = 0;
    virtual void PasteSelection() = 0;
    virtual void DeleteSelection() = 0;
    virtual void ClearSelection() = 0;
};

// The library's own designer interface: it adds nothing, it marks a designer as the
// stand-alone one.
class KV_EXPORT IKVFormDesigner : public IFormDesigner
{
};

} // namespace kv

#define IFormDesigner_iid "{ADDD444D-1B03-11D3-A8F8-00C04FA32F53}"
#define IKVFormDesigner_iid "{37CFFCE1-1BB2-11D2-B4E3-0000E8DC209E}"
Q_DECLARE_INTERFACE(kv::IFormDesigner, IFormDesigner_iid)
Q_DECLARE_INTERFACE(kv::IKVFormDesigner, IKVFormDesigner_iid)
