#include "foundation/ideSystem_messages.h"

#include "foundation/ideSystem_notifiers.h"
#include "foundation/ideSystem_params_p.h"

#include <algorithm>

namespace kv {

using detail::ObjectListParam;
using detail::ParamObjectList;
using detail::ParamPointer;
using detail::PointerParam;

namespace {

// The second half of CM_EDITRESOURCE: which resource of the module.
struct TResourceRef
{
    QString Name;
    qint32 Type = 0;
};

QStringView ParamText(qintptr param)
{
    const QString *text = ParamPointer<const QString>(param);
    return text ? QStringView(*text) : QStringView();
}

bool ContainsObject(std::span<QObject *const> objects, const QObject *obj)
{
    return obj && std::find(objects.begin(), objects.end(), obj) != objects.end();
}

} // namespace

bool TPropChangedData::Concerns(const QObject *Obj) const
{
    return ContainsObject(Objects, Obj);
}

void BroadcastPropChanged(QObject *Sender, const QList<QObject *> &Objects, const QString &PropName)
{
    // An empty name cannot name a property: it stands for the whole object, like a null one.
    const qintptr name = PropName.isEmpty() ? 0 : PointerParam(&PropName);
    BroadCastToNotifiers(Sender, CM_PROPCHANGED, detail::ObjectListParam(Objects), name);
}

TPropChangedData DecodePropChanged(const TMessage &Message)
{
    Q_ASSERT(Message.Msg == CM_PROPCHANGED);
    TPropChangedData data;
    data.Objects = ParamObjectList(Message.WParam);
    data.PropName = ParamText(Message.LParam);
    data.WholeObject = data.PropName.isEmpty();
    return data;
}

void BroadcastNameChanged(QObject *Sender, QObject *Component, const QString &NewName)
{
    BroadCastToNotifiers(Sender, CM_NAMECHANGED, PointerParam(Component), PointerParam(&NewName));
}

TNameChangedData DecodeNameChanged(const TMessage &Message)
{
    Q_ASSERT(Message.Msg == CM_NAMECHANGED);
    return {ParamPointer<QObject>(Message.WParam), ParamText(Message.LParam)};
}

void BroadcastObjInsert(QObject *Sender, QObject *Component)
{
    BroadCastToNotifiers(Sender, CM_OBJINSERT, PointerParam(Component), 0);
}

QObject *DecodeObjInsert(const TMessage &Message)
{
    Q_ASSERT(Message.Msg == CM_OBJINSERT);
    return ParamPointer<QObject>(Message.WParam);
}

void BroadcastSelectionChanged(QObject *Sender, const QList<QObject *> &Selection, IFormDesigner *Designer)
{
    BroadCastToNotifiers(Sender, CM_SELECTIONCHANGED, ObjectListParam(Selection), PointerParam(Designer));
}

TSelectionChangedData DecodeSelectionChanged(const TMessage &Message)
{
    Q_ASSERT(Message.Msg == CM_SELECTIONCHANGED);
    const std::span<QObject *const> selection = ParamObjectList(Message.WParam);
    return {QList<QObject *>(selection.begin(), selection.end()), ParamPointer<IFormDesigner>(Message.LParam)};
}

bool TObjDestroyedData::Concerns(const QObject *Obj) const
{
    return Obj && (Obj == Object || ContainsObject(Objects, Obj));
}

TObjDestroyedData DecodeObjDestroyed(const TMessage &Message)
{
    Q_ASSERT(Message.Msg == CM_OBJDESTROYED);
    TObjDestroyedData data;
    data.Object = ParamPointer<QObject>(Message.WParam);
    if (!data.Object)
        data.Objects = ParamObjectList(Message.LParam);
    return data;
}

void BroadcastSourceEmpty(QObject *Source)
{
    BroadCastToNotifiers(Source, CM_SOURCEEMPTY, PointerParam(Source), 0);
}

QObject *DecodeSourceEmpty(const TMessage &Message)
{
    Q_ASSERT(Message.Msg == CM_SOURCEEMPTY);
    return ParamPointer<QObject>(Message.WParam);
}

void BroadcastShowInspector(QObject *Sender, bool Focus)
{
    BroadCastToNotifiers(Sender, CM_SHOWINSPECTOR, Focus ? 1 : 0, 0);
}

bool DecodeShowInspector(const TMessage &Message)
{
    Q_ASSERT(Message.Msg == CM_SHOWINSPECTOR);
    return Message.WParam != 0;
}

void BroadcastEditStringsProperty(QObject *Sender, QObject *Component, const QString &PropName)
{
    BroadCastToNotifiers(Sender, CM_EDITSTRINGSPROPERTY, PointerParam(Component),
                         PointerParam(&PropName));
}

TEditStringsPropertyData DecodeEditStringsProperty(const TMessage &Message)
{
    Q_ASSERT(Message.Msg == CM_EDITSTRINGSPROPERTY);
    return {ParamPointer<QObject>(Message.WParam), ParamText(Message.LParam)};
}

void BroadcastEditResource(QObject *Sender, const QString &FileName, const QString &ResName,
                           qint32 ResType)
{
    const TResourceRef resource{ResName, ResType};
    BroadCastToNotifiers(Sender, CM_EDITRESOURCE, PointerParam(&FileName), PointerParam(&resource));
}

TEditResourceData DecodeEditResource(const TMessage &Message)
{
    Q_ASSERT(Message.Msg == CM_EDITRESOURCE);
    TEditResourceData data;
    data.FileName = ParamText(Message.WParam);
    if (const auto *resource = ParamPointer<const TResourceRef>(Message.LParam)) {
        data.ResName = resource->Name;
        data.ResType = resource->Type;
    }
    return data;
}

} // namespace kv
