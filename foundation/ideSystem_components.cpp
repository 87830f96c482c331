#include "foundation/ideSystem_components.h"

#include "foundation/ideSystem_inotifier.h"
#include "foundation/ideSystem_messages.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvClasses.h"
#include "platform/kvComponentState.h"
#include "platform/kvOwner.h"
#include "platform/kvScreen.h"

#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QWidget>

namespace kv {

TBuildCompNameFunc BuildCompNameFunc = nullptr;
TCallPropEditProc CallPropEditProc = nullptr;

namespace {

bool SameName(const QString &A, const QString &B)
{
    return A.compare(B, Qt::CaseInsensitive) == 0;
}

// The screen's roots in search order: forms, then data modules.
QList<QObject *> ScreenRoots()
{
    QList<QObject *> roots;
    for (QWidget *form : Screen().FormList())
        roots.append(form);
    roots += Screen().DataModuleList();
    return roots;
}

} // namespace

bool NameIsUnique(const QObject *Owner, const QString &Name)
{
    for (const QObject *owner = Owner; owner; owner = GetOwner(owner)) {
        if (FindComponent(owner, Name))
            return false;
    }
    return true;
}

QString UniqueName(const QObject *Component, const QString &BaseName)
{
    // The names taken anywhere up the owner chain, gathered once rather than walked per try.
    QSet<QString> taken;
    for (const QObject *owner = Component; owner; owner = GetOwner(owner)) {
        ForEachOwnedComponent(owner, [&taken](QObject *component) {
            if (!component->objectName().isEmpty())
                taken.insert(component->objectName().toCaseFolded());
            return true;
        });
    }
    for (int n = 1;; ++n) {
        const QString candidate = BaseName + QString::number(n);
        if (!taken.contains(candidate.toCaseFolded()))
            return candidate;
    }
}

QObject *FindGlobalComponent(const QString &Name)
{
    if (Name.isEmpty())
        return nullptr;
    for (QObject *root : ScreenRoots()) {
        if (SameName(root->objectName(), Name))
            return root;
    }
    return nullptr;
}

QString FindUniqueName(const QString &BaseName)
{
    if (!FindGlobalComponent(BaseName))
        return BaseName;
    for (int n = 1;; ++n) {
        const QString candidate = QStringLiteral("%1_%2").arg(BaseName).arg(n);
        if (!FindGlobalComponent(candidate))
            return candidate;
    }
}

QString BuildCompName(const QObject *Obj, const QString &Name)
{
    if (BuildCompNameFunc)
        return BuildCompNameFunc(Obj, Name);
    if (!Obj)
        return {};
    const QString name = Name.isEmpty() ? GetCompName(Obj) : Name;
    if (name.isEmpty())
        return {};
    return name + QStringLiteral(": ") + StreamClassName(Obj->metaObject());
}

void CompNamesToProc(const QObject *Component, const QObject *Owner, const QMetaObject *Class, const TStrProc &Proc)
{
    if (!Component || !Proc)
        return;
    const QString prefix = Component == Owner ? QString() : Component->objectName() + u'.';
    ForEachOwnedComponent(Component, [&](QObject *component) {
        if (!component->objectName().isEmpty() && (!Class || component->metaObject()->inherits(Class)))
            Proc(prefix + component->objectName());
        return true;
    });
}

void CompListNamesToProc(const QList<QObject *> &List, const QObject *Owner, const TStrProc &Proc)
{
    if (!Proc)
        return;
    for (const QObject *obj : List) {
        if (!obj || obj->objectName().isEmpty())
            continue;
        const QObject *owner = GetOwner(obj);
        if (owner && owner != Owner && !owner->objectName().isEmpty())
            Proc(owner->objectName() + u'.' + obj->objectName());
        else
            Proc(obj->objectName());
    }
}

QObject *GlobalFindObject(const QString &Path)
{
    if (Path.isEmpty())
        return nullptr;
    const qsizetype point = Path.lastIndexOf(u'.');
    const QString rootName = point < 0 ? QString() : Path.left(point);
    const QString componentName = point < 0 ? QString() : Path.mid(point + 1);
    for (QObject *root : ScreenRoots()) {
        if (SameName(root->objectName(), Path))
            return root;
        if (point >= 0 && SameName(root->objectName(), rootName)) {
            if (QObject *component = FindComponent(root, componentName))
                return component;
        }
    }
    return nullptr;
}

QWidget *GetPForm(const QObject *Obj)
{
    if (!Obj)
        return nullptr;
    if (Obj->isWidgetType()) {
        for (QWidget *widget = const_cast<QWidget *>(static_cast<const QWidget *>(Obj)); widget; widget = widget->parentWidget()) {
            if (TScreen::IsForm(widget))
                return widget;
        }
    }
    for (const QObject *obj = Obj; obj; obj = GetOwner(obj)) {
        if (TScreen::IsFormObject(obj))
            return const_cast<QWidget *>(static_cast<const QWidget *>(obj));
    }
    return nullptr;
}

QObject *GetTopOwner(const QObject *Obj)
{
    for (const QObject *obj = Obj; obj; obj = GetOwner(obj)) {
        if (Screen().IsDataModule(obj))
            return const_cast<QObject *>(obj);
    }
    return GetPForm(Obj);
}

int ScreenFormCount()
{
    return Screen().FormCount();
}

QWidget *ScreenForms(int Index)
{
    return Screen().Forms(Index);
}

void SetDesign(QObject *Component, bool Value)
{
    if (Value)
        IncludeState(Component, csDesigning);
    else
        ExcludeState(Component, csDesigning);
}

void ShowInspector()
{
    ShowInspectorEx(true);
}

void ShowInspectorEx(bool Focus)
{
    BroadcastShowInspector(nullptr, Focus);
}

void HideInspector()
{
    SimpleBroadCast(CM_HIDEINSPECTOR);
}

void ToggleInspector()
{
    SimpleBroadCast(CM_TOGGLEINSPECTOR);
}

void EditStringsProperty(QObject *Component, const QString &PropName)
{
    BroadcastEditStringsProperty(nullptr, Component, PropName);
}

void CallPropertyEdit(QObject *Obj, const QString &PropName)
{
    if (CallPropEditProc)
        CallPropEditProc(Obj, PropName);
}

void DesignerSelectComponent(QObject *)
{
}

void UpdateEditors(QWidget *Control)
{
    if (!Control)
        return;
    // Guarded copies: an editor that posts its value may change or delete the children.
    QList<QPointer<QObject>> children;
    for (QObject *child : Control->children())
        children.append(child);
    for (const QPointer<QObject> &child : std::as_const(children)) {
        if (!child || !child->isWidgetType())
            continue;
        if (auto *receiver = dynamic_cast<INotifier *>(child.data())) {
            TMessage message{CM_POSTVALUE, 0, 0, 0};
            receiver->Dispatch(message);
        }
    }
}

} // namespace kv
