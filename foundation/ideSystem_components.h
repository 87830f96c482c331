#pragma once

#include "kv_export.h"

// Component names and lookups across the application, and the IDE-level requests that any
// unit may make (show the inspector, edit a property) without knowing who answers them.
// Owners, roots and forms are those of platform/kvOwner.h and platform/kvScreen.h.

#include "platform/kvOwner.h"

#include <QList>
#include <QString>

#include <functional>

class QMetaObject;
class QObject;
class QWidget;

namespace kv {

// True when neither Owner nor any owner above it has a component named Name (ignoring
// case); true for a null Owner.
KV_EXPORT bool NameIsUnique(const QObject *Owner, const QString &Name);
// BaseName followed by the smallest number N from 1 up for which NameIsUnique(Component,
// result) holds ("N1", "N2"…); BaseName followed by "1" for a null Component.
KV_EXPORT QString UniqueName(const QObject *Component, const QString &BaseName);

// The form or data module of the screen named Name, ignoring case; null when there is none.
KV_EXPORT QObject *FindGlobalComponent(const QString &Name);
// A name that FindGlobalComponent does not know: BaseName itself, else BaseName, "_" and the
// smallest number from 1 up ("Form1_1").
KV_EXPORT QString FindUniqueName(const QString &BaseName);


// Decides BuildCompName when set.
using TBuildCompNameFunc = QString (*)(const QObject *Obj, const QString &Name);
extern KV_EXPORT TBuildCompNameFunc BuildCompNameFunc;
// The display text of a component: BuildCompNameFunc's when it is set; otherwise empty for
// null, else Name (GetCompName(Obj) when Name is empty; empty when that is empty too)
// followed by ": " and the class name ("OkButton: QPushButton").
KV_EXPORT QString BuildCompName(const QObject *Obj, const QString &Name = QString());

using TStrProc = std::function<void(const QString &S)>;
// Passes to Proc the name of every named component that Component owns and whose class
// descends from Class (every class when null), in owned order; the names are qualified with
// Component's name and a point when Component is not Owner ("DataModule1.Table1").
KV_EXPORT void CompNamesToProc(const QObject *Component, const QObject *Owner, const QMetaObject *Class, const TStrProc &Proc);
// Passes the names of the named objects of List, qualified with their owner's name when
// their owner is not Owner.
KV_EXPORT void CompListNamesToProc(const QList<QObject *> &List, const QObject *Owner, const TStrProc &Proc);

// Searches the screen's forms, then its data modules: one whose name equals Path (ignoring
// case) is the result; one whose name equals the part of Path before its last point gives
// its component named by the part after that point. Null when nothing matches.
KV_EXPORT QObject *GlobalFindObject(const QString &Path);

// The form an object belongs to: for a widget the first form among the widget and its
// parents; otherwise, or when that finds none, the first form among the object and its
// owners. Null when there is none.
KV_EXPORT QWidget *GetPForm(const QObject *Obj);
// The first data module among the object and its owners, else GetPForm(Obj).
KV_EXPORT QObject *GetTopOwner(const QObject *Obj);

// The screen's forms.
KV_EXPORT int ScreenFormCount();
KV_EXPORT QWidget *ScreenForms(int Index);

// Marks a component (and what it holds) as designing or no longer designing.
KV_EXPORT void SetDesign(QObject *Component, bool Value);

// Broadcast CM_SHOWINSPECTOR (WParam: whether the inspector takes the focus; ShowInspector
// gives it the focus), CM_HIDEINSPECTOR and CM_TOGGLEINSPECTOR to the notifiers; whoever
// shows an inspector answers them.
KV_EXPORT void ShowInspector();
KV_EXPORT void ShowInspectorEx(bool Focus);
KV_EXPORT void HideInspector();
KV_EXPORT void ToggleInspector();
// Broadcasts CM_EDITSTRINGSPROPERTY: asks for the string-list editor of a property.
KV_EXPORT void EditStringsProperty(QObject *Component, const QString &PropName);

// Opens the property editor of a property, when CallPropEditProc is set (the design-time
// utilities set it when they start); otherwise nothing happens.
using TCallPropEditProc = void (*)(QObject *Obj, const QString &PropName);
extern KV_EXPORT TCallPropEditProc CallPropEditProc;
KV_EXPORT void CallPropertyEdit(QObject *Obj, const QString &PropName);

// Controls call this after a mouse gesture on a designed component. Selection belongs to the
// form designer, which watches the designed form itself, so nothing is done here.
KV_EXPORT void DesignerSelectComponent(QObject *Component);

// Sends CM_POSTVALUE to every direct child widget of Control that takes messages (implements
// INotifier), in child order: editors post their pending value.
KV_EXPORT void UpdateEditors(QWidget *Control);

} // namespace kv
