#pragma once

#include "kv_export.h"

// Forms: the library's standard font, creating forms and data modules by class, finding
// them, flat tool buttons and tab pages.

#include <QList>
#include <QString>

class QMetaObject;
class QObject;
class QTabBar;
class QTabWidget;
class QToolButton;
class QWidget;

namespace kv {

// Whether SetFormFont gives forms the main form's font; initially true.
extern KV_EXPORT bool UseOneFont;
// When UseOneFont is set, Form has no font of its own (it takes its parent's) and the
// application has a main form other than Form: Form's font becomes a copy of the main form's.
KV_EXPORT void SetFormFont(QWidget *Form);

// A new form, resp. data module, of Class without owner (parent). A Class that is null or
// does not descend from QWidget, resp. TDataModule, is replaced by the plain one. The object
// is made by the class registry's factory when the class is registered (the factory builds
// its contents), else by its invokable constructor taking a parent or nothing. Raises
// kv::Exception (SClassNotCreatable) for a class that has neither.
KV_EXPORT QWidget *CreateFormWithClass(const QMetaObject *Class);
KV_EXPORT QObject *CreateDataModuleWithClass(const QMetaObject *Class);

// The first form on the screen whose class descends from Class; null when there is none.
KV_EXPORT QWidget *FindFormWithClass(const QMetaObject *Class);
// That form, or a new one (CreateFormWithClass).
KV_EXPORT QWidget *FindOrCreateFormWithClass(const QMetaObject *Class);
// Whether Form is the screen's active form.
KV_EXPORT bool FormIsActive(const QWidget *Form);

// Makes speed buttons (tool buttons) flat or raised: Flat is their autoRaise.
KV_EXPORT void SetFlatProp(const QList<QToolButton *> &Buttons, bool Flat);
// The same for every tool button that Owner owns.
KV_EXPORT void SetFlatPropToAll(const QObject *Owner, bool Flat);

// Moves to the next tab (the previous one when Forward is false), passing over hidden and
// disabled tabs and wrapping round at the ends. Returns whether the current tab changed.
KV_EXPORT bool ChangeTab(QTabWidget *TabControl, bool Forward);
KV_EXPORT bool ChangeTab(QTabBar *TabControl, bool Forward);
// Adds an empty page captioned Caption, named uniquely within the tab widget's owner
// ("TabSheet1"…), and makes it current; returns the page.
KV_EXPORT QWidget *AddNewTab(QTabWidget *TabControl, const QString &Caption);
// Moves every page of Source to the end of Dest, keeping their order, captions, icons, tool
// tips and enabled and visible states.
KV_EXPORT void MovePages(QTabWidget *Source, QTabWidget *Dest);

} // namespace kv
