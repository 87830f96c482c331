#include "design/ideGen_designer.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_components.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvClasses.h"
#include "platform/kvException.h"
#include "platform/kvOwner.h"
#include "platform/kvRegistryHolder_p.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QClipboard>
#include <QComboBox>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QScrollArea>
#include <QWidget>

#include <algorithm>
#include <memory>

namespace kv {

namespace {

// Whether a widget is a container that a designer may put other widgets into. Qt lets any
// widget parent others; the designer refuses the editors, buttons and views whose look
// a child would break.
bool AcceptsControls(const QWidget *Control)
{
    const QMetaObject *cls = Control->metaObject();
    if (cls->inherits(&QScrollArea::staticMetaObject) || cls->inherits(&QMdiArea::staticMetaObject))
        return true;
    for (const QMetaObject *leaf : {&QAbstractButton::staticMetaObject, &QLineEdit::staticMetaObject,
                                    &QLabel::staticMetaObject, &QComboBox::staticMetaObject,
                                    &QAbstractSpinBox::staticMetaObject, &QAbstractSlider::staticMetaObject,
                                    &QProgressBar::staticMetaObject, &QMenu::staticMetaObject,
                                    &QMenuBar::staticMetaObject, &QAbstractScrollArea::staticMetaObject}) {
        if (cls->inherits(leaf))
            return false;
    }
    return true;
}

QList<QObject *> LiveObjects(const QList<QPointer<QObject>> &List)
{
    QList<QObject *> live;
    live.reserve(List.size());
    for (const QPointer<QObject> &obj : List) {
        if (obj)
            live.append(obj.data());
    }
    return live;
}

// Form -> the designer that looks after it.
QHash<const QObject *, QPointer<QObject>> &FormDesigners()
{
    static QHash<const QObject *, QPointer<QObject>> designers;
    return designers;
}

} // namespace

TFDesigner::TFDesigner(QObject *parent)
    : QObject(parent)
{
    DesignerList().m_designers.append(this);
}

TFDesigner::~TFDesigner()
{
    if (auto &list = detail::RegistryHolder<TDesignerList>())
        list->m_designers.removeOne(this);
}

QObject *TFDesigner::GetOwnerControl() const
{
    if (m_ownerControl)
        return m_ownerControl.data();
    return m_customForm.data();
}

void TFDesigner::SetOwnerControl(QObject *Component)
{
    m_ownerControl = Component;
}

QWidget *TFDesigner::GetLimitControl() const
{
    return m_limitControl.data();
}

void TFDesigner::SetLimitControl(QWidget *Control)
{
    if (Control && !AcceptsControls(Control))
        throw Exception(LoadStr(SInvalidPropertyValue));
    m_limitControl = Control;
}

void TFDesigner::ValidateSelection()
{
    const qsizetype firstNull = m_selection.indexOf(QPointer<QObject>());
    if (firstNull >= 0)
        m_selection.removeAt(firstNull);
    if (m_selection.isEmpty() && !m_limitControl) {
        if (QObject *root = GetRoot())
            m_selection.append(root);
    }
}

void TFDesigner::SelectionChanged()
{
    ValidateSelection();
    BroadcastSelectionChanged(this, LiveObjects(m_selection), this);
}

QObject *TFDesigner::GetRoot() const
{
    return GetOwnerControl();
}

QString TFDesigner::GetRootClassName() const
{
    const QObject *root = GetRoot();
    return root ? StreamClassName(root->metaObject()) : QString();
}

QWidget *TFDesigner::GetCustomForm() const
{
    return m_customForm.data();
}

void TFDesigner::SetCustomForm(QWidget *Form)
{
    m_customForm = Form;
}

bool TFDesigner::AllowPropShow(QObject *, const QString &)
{
    return true;
}

bool TFDesigner::AllowEdit(QObject *, const QString &)
{
    return true;
}

bool TFDesigner::AllowPropShowList(const QList<QObject *> &List, const QString &PropName)
{
    return std::all_of(List.cbegin(), List.cend(),
                       [&](QObject *obj) { return AllowPropShow(obj, PropName); });
}

bool TFDesigner::AllowEditList(const QList<QObject *> &List, const QString &PropName)
{
    return std::all_of(List.cbegin(), List.cend(), [&](QObject *obj) { return AllowEdit(obj, PropName); });
}

bool TFDesigner::CanBeSelected(QObject *)
{
    return true;
}

QList<QObject *> TFDesigner::GetSelections() const
{
    return LiveObjects(m_selection);
}

void TFDesigner::SetSelections(const QList<QObject *> &Selection)
{
    m_selection.clear();
    for (QObject *obj : Selection)
        m_selection.append(obj);
    SelectionChanged();
}

void TFDesigner::SelectComponent(QObject *Obj)
{
    m_selection = {QPointer<QObject>(Obj)};
    SelectionChanged();
}

void TFDesigner::Modified()
{
    QList<QObject *> changed = LiveObjects(m_selection);
    if (changed.isEmpty()) {
        if (QObject *root = GetRoot())
            changed.append(root);
    }
    BroadcastPropChanged(this, changed);
}

void TFDesigner::ComponentInserted(QObject *Component)
{
    QObject *root = GetRoot();
    if (Component && root && GetTopOwner(Component) == root)
        BroadcastObjInsert(this, Component);
}

void TFDesigner::ValidateRename(QObject *Component, const QString &, const QString &NewName)
{
    BroadcastNameChanged(this, Component ? Component : GetRoot(), NewName);
}

QString TFDesigner::UniqueName(const QString &BaseName)
{
    return kv::UniqueName(GetRoot(), BaseName);
}

QObject *TFDesigner::GetComponent(const QString &Name)
{
    if (Name.contains(QLatin1Char('.')))
        return GlobalFindObject(Name);
    QObject *root = GetRoot();
    if (!root || Name.isEmpty())
        return nullptr;
    if (root->objectName().compare(Name, Qt::CaseInsensitive) == 0)
        return root;
    return FindComponent(root, Name);
}

QString TFDesigner::GetComponentName(QObject *Component)
{
    if (!Component || Component->objectName().isEmpty())
        return QString();
    QObject *root = GetRoot();
    const QObject *owner = GetOwner(Component);
    if (Component == root || owner == root || !owner)
        return Component->objectName();
    return owner->objectName() + QLatin1Char('.') + Component->objectName();
}

void TFDesigner::GetComponentNames(const QMetaObject *Class,
                                   const std::function<void(const QString &Name)> &Proc)
{
    if (QObject *root = GetRoot())
        CompNamesToProc(root, root, Class, Proc);
}

QString TFDesigner::GetObjectName(QObject *Obj)
{
    return GetCompName(Obj);
}

void TFDesigner::Edit(QObject *Component)
{
    if (!Component && m_customForm)
        m_customForm->show();
}

QString TFDesigner::GetPrivateDirectory()
{
    return QCoreApplication::applicationDirPath() + QLatin1Char('/');
}

bool TFDesigner::CanPaste()
{
    return DesignerCanPaste();
}

void TFDesigner::CopySelection() {}
void TFDesigner::CutSelection() {}
void TFDesigner::PasteSelection() {}
void TFDesigner::DeleteSelection() {}
void TFDesigner::ClearSelection() {}

TDesignerList &DesignerList()
{
    return detail::LazyRegistry<TDesignerList>();
}

void SetFormDesigner(QObject *Form, QObject *Designer)
{
    if (!Form)
        return;
    auto &designers = FormDesigners();
    if (!Designer) {
        designers.remove(Form);
        return;
    }
    if (!qobject_cast<IFormDesigner *>(Designer))
        throw Exception(LoadStr(SInvalidCast));
    if (!designers.contains(Form)) {
        // The address of a destroyed form may come back as another object.
        QObject::connect(Form, &QObject::destroyed, [Form] { FormDesigners().remove(Form); });
    }
    designers.insert(Form, Designer);
}

IFormDesigner *FormDesigner(const QObject *Form)
{
    if (!Form)
        return nullptr;
    return qobject_cast<IFormDesigner *>(FormDesigners().value(Form).data());
}

IFormDesigner *GetDesigner(const QObject *Obj)
{
    const QObject *form = GetPForm(Obj);
    if (!form)
        form = GetTopOwner(Obj);
    return FormDesigner(form);
}

bool IsFDesigner(const IFormDesigner *Designer)
{
    return dynamic_cast<const IKVFormDesigner *>(Designer) != nullptr;
}

void DesignerModified(const QObject *Obj)
{
    if (IFormDesigner *designer = GetDesigner(Obj))
        designer->Modified();
}

bool DesignerCanPaste()
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return false;
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    return data && data->hasText();
}

void FinalizeDesigners()
{
    detail::RegistryHolder<TDesignerList>().reset();
    FormDesigners().clear();
}

} // namespace kv
