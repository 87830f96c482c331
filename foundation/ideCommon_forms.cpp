#include "foundation/ideCommon_forms.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_components.h"
#include "platform/kvClasses.h"
#include "platform/kvDataModule.h"
#include "platform/kvException.h"
#include "platform/kvOwner.h"
#include "platform/kvScreen.h"

#include <QMetaMethod>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QWidget>

namespace kv {

bool UseOneFont = true;

namespace {

// An object of cls without parent, by the class registry's factory or an invokable
// constructor.
QObject *CreateWithoutOwner(const QMetaObject *cls, QMetaType parentType)
{
    if (GetClass(StreamClassName(cls)) == cls)
        return CreateObject(cls, nullptr);
    for (int i = 0; i < cls->constructorCount(); ++i) {
        const QMetaMethod constructor = cls->constructor(i);
        if (constructor.parameterCount() == 0)
            return cls->newInstance();
        if (constructor.parameterCount() == 1 && constructor.parameterMetaType(0) == parentType) {
            if (parentType == QMetaType::fromType<QWidget *>())
                return cls->newInstance(Q_ARG(QWidget *, nullptr));
            return cls->newInstance(Q_ARG(QObject *, nullptr));
        }
    }
    throw Exception(LoadStr(SClassNotCreatable).arg(StreamClassName(cls)));
}

int NextTab(int current, int count, bool forward, const std::function<bool(int)> &usable)
{
    for (int step = 1; step < count; ++step) {
        const int index = ((forward ? current + step : current - step) % count + count) % count;
        if (usable(index))
            return index;
    }
    return current;
}

} // namespace

void SetFormFont(QWidget *Form)
{
    if (!UseOneFont || !Form || Form->testAttribute(Qt::WA_SetFont))
        return;
    QWidget *mainForm = Screen().MainForm();
    if (!mainForm || mainForm == Form)
        return;
    Form->setFont(mainForm->font());
}

QWidget *CreateFormWithClass(const QMetaObject *Class)
{
    if (!Class || Class == &QWidget::staticMetaObject || !Class->inherits(&QWidget::staticMetaObject))
        return new QWidget;
    return static_cast<QWidget *>(CreateWithoutOwner(Class, QMetaType::fromType<QWidget *>()));
}

QObject *CreateDataModuleWithClass(const QMetaObject *Class)
{
    if (!Class || Class == &TDataModule::staticMetaObject || !Class->inherits(&TDataModule::staticMetaObject))
        return new TDataModule;
    return CreateWithoutOwner(Class, QMetaType::fromType<QObject *>());
}

QWidget *FindFormWithClass(const QMetaObject *Class)
{
    if (!Class)
        return nullptr;
    for (QWidget *form : Screen().FormList()) {
        if (form->metaObject()->inherits(Class))
            return form;
    }
    return nullptr;
}

QWidget *FindOrCreateFormWithClass(const QMetaObject *Class)
{
    if (QWidget *form = FindFormWithClass(Class))
        return form;
    return CreateFormWithClass(Class);
}

bool FormIsActive(const QWidget *Form)
{
    return Form && Screen().ActiveForm() == Form;
}

void SetFlatProp(const QList<QToolButton *> &Buttons, bool Flat)
{
    for (QToolButton *button : Buttons) {
        if (button)
            button->setAutoRaise(Flat);
    }
}

void SetFlatPropToAll(const QObject *Owner, bool Flat)
{
    ForEachOwnedComponent(Owner, [Flat](QObject *component) {
        if (auto *button = qobject_cast<QToolButton *>(component))
            button->setAutoRaise(Flat);
        return true;
    });
}

bool ChangeTab(QTabWidget *TabControl, bool Forward)
{
    // The tab widget's page follows its tab bar.
    return ChangeTab(TabControl ? TabControl->tabBar() : nullptr, Forward);
}

bool ChangeTab(QTabBar *TabControl, bool Forward)
{
    if (!TabControl || TabControl->count() < 2)
        return false;
    const int current = TabControl->currentIndex();
    const int next = NextTab(current, TabControl->count(), Forward, [TabControl](int index) {
        return TabControl->isTabVisible(index) && TabControl->isTabEnabled(index);
    });
    if (next == current)
        return false;
    TabControl->setCurrentIndex(next);
    return true;
}

QWidget *AddNewTab(QTabWidget *TabControl, const QString &Caption)
{
    if (!TabControl)
        return nullptr;
    auto *page = new QWidget;
    const QObject *owner = IsRoot(TabControl) ? TabControl : GetOwner(TabControl);
    page->setObjectName(UniqueName(owner, QStringLiteral("TabSheet")));
    TabControl->setCurrentIndex(TabControl->addTab(page, Caption));
    return page;
}

void MovePages(QTabWidget *Source, QTabWidget *Dest)
{
    if (!Source || !Dest || Source == Dest)
        return;
    while (Source->count() > 0) {
        QWidget *page = Source->widget(0);
        const QString text = Source->tabText(0);
        const QIcon icon = Source->tabIcon(0);
        const QString toolTip = Source->tabToolTip(0);
        const QString whatsThis = Source->tabWhatsThis(0);
        const bool enabled = Source->isTabEnabled(0);
        const bool visible = Source->isTabVisible(0);
        Source->removeTab(0);
        const int index = Dest->addTab(page, icon, text);
        Dest->setTabToolTip(index, toolTip);
        Dest->setTabWhatsThis(index, whatsThis);
        Dest->setTabEnabled(index, enabled);
        Dest->setTabVisible(index, visible);
    }
}

} // namespace kv
