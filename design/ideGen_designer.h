#pragma once

#include "kv_export.h"

// The stand-alone form designer, used wherever the library's controls work on objects that
// no IDE designer looks after, and the functions that find an object's designer.

#include "platform/kvIFormDesigner.h"
#include "foundation/ideSystem_messages.h"

#include <QList>
#include <QObject>
#include <QPointer>

namespace kv {

// Keeps a selection, allows everything, and turns what it is told into broadcasts to the
// notifier objects. Its root is the owner control when set, otherwise the custom form.
// Every living one is on DesignerList().
class KV_EXPORT TFDesigner : public QObject, public IKVFormDesigner
{
    Q_OBJECT
    Q_INTERFACES(kv::IFormDesigner kv::IKVFormDesigner)

public:
    explicit TFDesigner(QObject *parent = nullptr);
    ~TFDesigner() override;

    virtual QObject *GetOwnerControl() const;
    void SetOwnerControl(QObject *Component);
    QWidget *GetLimitControl() const;
    // Raises kv::Exception (SInvalidPropertyValue) for a widget that takes no child widgets;
    // the limit control then stays as it was. Null clears it.
    void SetLimitControl(QWidget *Control);

    // The selection as held: entries of objects destroyed meanwhile are null.
    const QList<QPointer<QObject>> &Selection() const { return m_selection; }
    // Drops the first null entry; an empty selection without a limit control gets the root.
    void ValidateSelection();
    // ValidateSelection, then CM_SELECTIONCHANGED.
    void SelectionChanged();

    QObject *GetRoot() const override;
    QString GetRootClassName() const override;
    QWidget *GetCustomForm() const override;
    void SetCustomForm(QWidget *Form) override;

    bool AllowPropShow(QObject *Component, const QString &PropName) override;
    bool AllowEdit(QObject *Component, const QString &PropName) override;
    bool AllowPropShowList(const QList<QObject *> &List, const QString &PropName) override;
    bool AllowEditList(const QList<QObject *> &List, const QString &PropName) override;
    bool CanBeSelected(QObject *Obj) override;

    QList<QObject *> GetSelections() const override;
    void SetSelections(const QList<QObject *> &Selection) override;
    void SelectComponent(QObject *Obj) override;

    // CM_PROPCHANGED for the selection, or for the root when nothing is selected.
    void Modified() override;
    // CM_OBJINSERT when the component belongs to this designer's root.
    void ComponentInserted(QObject *Component) override;
    // CM_NAMECHANGED for Component (the root when null) and NewName.
    void ValidateRename(QObject *Component, const QString &CurName, const QString &NewName) override;

    QString UniqueName(const QString &BaseName) override;
    // A name with a point is searched among the forms and data modules of the screen;
    // otherwise the root or its component of that name (ignoring case).
    QObject *GetComponent(const QString &Name) override;
    // The name alone for the root and its components; "Owner.Name" for others.
    QString GetComponentName(QObject *Component) override;
    void GetComponentNames(const QMetaObject *Class,
                           const std::function<void(const QString &Name)> &Proc) override;
    QString GetObjectName(QObject *Obj) override;

    void Edit(QObject *Component) override;
    QString GetPrivateDirectory() override;

    bool CanPaste() override;
    // The clipboard operations of a stand-alone designer do nothing; descendants that own
    // their components may override them.
    void CopySelection() override;
    void CutSelection() override;
    void PasteSelection() override;
    void DeleteSelection() override;
    void ClearSelection() override;

private:
    QPointer<QObject> m_ownerControl;
    QPointer<QWidget> m_limitControl;
    QPointer<QWidget> m_customForm;
    QList<QPointer<QObject>> m_selection;
};

// Every living TFDesigner, oldest first.
class KV_EXPORT TDesignerList
{
public:
    int Count() const { return int(m_designers.size()); }
    TFDesigner *GetDesigner(int Index) const { return m_designers.at(Index); }
    bool Contains(const TFDesigner *Designer) const { return m_designers.contains(const_cast<TFDesigner *>(Designer)); }

private:
    friend class TFDesigner;
    friend void FinalizeDesigners();
    QList<TFDesigner *> m_designers;
};

KV_EXPORT TDesignerList &DesignerList();

// The designer that looks after a form or data module. The designer object must implement
// IFormDesigner; the association ends when either object is destroyed. Null Designer ends it.
KV_EXPORT void SetFormDesigner(QObject *Form, QObject *Designer);
KV_EXPORT IFormDesigner *FormDesigner(const QObject *Form);

// The designer of the form that Obj belongs to, or of its data module; null when there is
// none.
KV_EXPORT IFormDesigner *GetDesigner(const QObject *Obj);
// Whether Designer is a stand-alone designer; false for null.
KV_EXPORT bool IsFDesigner(const IFormDesigner *Designer);
// Tells Obj's designer, if it has one, that Obj was modified.
KV_EXPORT void DesignerModified(const QObject *Obj);
// The clipboard offers plain text.
KV_EXPORT bool DesignerCanPaste();

// Forgets the designer list and the form associations.
KV_EXPORT void FinalizeDesigners();

} // namespace kv
