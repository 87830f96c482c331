#include "platform/kvOwner.h"

#include "foundation/ideConsts.h"
#include "platform/kvException.h"
#include "platform/kvScreen.h"

#include <QCoreApplication>
#include <QObject>
#include <QWidget>

namespace kv {

namespace {

const QObject *TopAncestor(const QObject *Obj)
{
    while (Obj->parent())
        Obj = Obj->parent();
    return Obj;
}

// Depth first below Owner, not entering other roots. Returns false when Proc stopped it.
bool WalkOwned(const QObject *Owner, const std::function<bool(QObject *)> &Proc)
{
    const QObjectList &children = Owner->children();
    for (QObject *child : children) {
        // While a parent deletes its children, the ones already gone are null entries.
        if (!child)
            continue;
        if (!Proc(child))
            return false;
        if (!IsRoot(child) && !WalkOwned(child, Proc))
            return false;
    }
    return true;
}

} // namespace

bool IsRoot(const QObject *Obj)
{
    if (!Obj)
        return false;
    return Obj == QCoreApplication::instance() || TScreen::IsFormObject(Obj) || Screen().IsDataModule(Obj);
}

QObject *GetOwner(const QObject *Obj)
{
    QCoreApplication *application = QCoreApplication::instance();
    if (!Obj || Obj == application)
        return nullptr;
    for (QObject *up = Obj->parent(); up; up = up->parent()) {
        if (IsRoot(up))
            return up;
    }
    return IsRoot(Obj) ? application : nullptr;
}

bool ForEachOwnedComponent(const QObject *Owner, const std::function<bool(QObject *Component)> &Proc)
{
    if (!IsRoot(Owner))
        return true;
    if (!WalkOwned(Owner, Proc))
        return false;
    if (Owner != QCoreApplication::instance())
        return true;
    // Roots outside the application object's own tree that belong to it.
    const auto outside = [Owner](const QObject *root) {
        return TopAncestor(root) != Owner && GetOwner(root) == Owner;
    };
    for (QWidget *form : Screen().FormList()) {
        if (outside(form) && !Proc(form))
            return false;
    }
    for (QObject *module : Screen().DataModuleList()) {
        if (outside(module) && !Proc(module))
            return false;
    }
    return true;
}

QList<QObject *> OwnedComponents(const QObject *Owner)
{
    QList<QObject *> result;
    ForEachOwnedComponent(Owner, [&result](QObject *component) {
        result.append(component);
        return true;
    });
    return result;
}

QObject *FindComponent(const QObject *Owner, QStringView Name)
{
    if (Name.isEmpty())
        return nullptr;
    QObject *found = nullptr;
    ForEachOwnedComponent(Owner, [&found, Name](QObject *component) {
        if (component->objectName().compare(Name, Qt::CaseInsensitive) != 0)
            return true;
        found = component;
        return false;
    });
    return found;
}

bool IsValidIdent(QStringView S)
{
    if (S.isEmpty())
        return false;
    const auto isAlpha = [](QChar c) {
        const char16_t u = c.unicode();
        return (u >= u'A' && u <= u'Z') || (u >= u'a' && u <= u'z') || u == u'_';
    };
    if (!isAlpha(S.front()))
        return false;
    for (QChar c : S.mid(1)) {
        if (!isAlpha(c) && !(c.unicode() >= u'0' && c.unicode() <= u'9'))
            return false;
    }
    return true;
}

void SetComponentName(QObject *Obj, const QString &Name)
{
    if (!Obj || Obj->objectName() == Name)
        return;
    if (!Name.isEmpty()) {
        if (!IsValidIdent(Name))
            throw Exception(LoadStr(SInvalidName).arg(Name));
        const QObject *other = FindComponent(GetOwner(Obj), Name);
        if (other && other != Obj)
            throw Exception(LoadStr(SDuplicateName).arg(Name));
    }
    Obj->setObjectName(Name);
}

QString GetCompName(const QObject *Obj)
{
    if (!Obj)
        return {};
    if (Obj->metaObject()->indexOfMethod("GetNamePath()") >= 0) {
        QString path;
        QMetaObject::invokeMethod(const_cast<QObject *>(Obj), "GetNamePath", Qt::DirectConnection,
                                  Q_RETURN_ARG(QString, path));
        return path;
    }
    return Obj->objectName();
}

} // namespace kv
