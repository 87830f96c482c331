#include "platform/kvMethodProperty.h"

#include "foundation/ideConsts.h"
#include "platform/kvEventConnections.h"
#include "platform/kvException.h"
#include "platform/kvIFormDesigner.h"
#include "platform/kvOwner.h"

#include <QObject>

namespace kv {

namespace {

// Longer than any slot name anyone types; the inspector's edit needs some bound.
constexpr int MaxHandlerNameLength = 255;

} // namespace

TPropertyAttributes TMethodProperty::GetAttributes() const
{
    return paMultiSelect | paValueList | paSortList;
}

QObject *TMethodProperty::HandlerRoot() const
{
    if (IFormDesigner *designer = Designer()) {
        if (QObject *root = designer->GetRoot())
            return root;
    }
    for (int i = 0; i < PropCount(); ++i) {
        if (QObject *object = GetComponent(i))
            return IsRoot(object) ? object : GetOwner(object);
    }
    return nullptr;
}

bool TMethodProperty::AllEqual() const
{
    if (PropCount() <= 1)
        return true;
    const auto handlerAt = [this](int Index) {
        const QObject *object = GetComponent(Index);
        return object ? GetEventHandler(object, GetPropInfo(Index)->Signal()) : TEventHandler();
    };
    const TEventHandler first = handlerAt(0);
    for (int i = 1; i < PropCount(); ++i) {
        if (!(handlerAt(i) == first))
            return false;
    }
    return true;
}

QString TMethodProperty::GetValue() const
{
    const QObject *object = GetComponent(0);
    if (!object)
        return {};
    const TEventHandler handler = GetEventHandler(object, GetPropInfo(0)->Signal());
    if (handler.IsEmpty())
        return {};
    if (handler.Handler == HandlerRoot())
        return handler.SlotName;
    QString name = GetCompName(handler.Handler);
    if (name.isEmpty())
        name = QString::fromLatin1(handler.Handler->metaObject()->className());
    return name + u'.' + handler.SlotName;
}

void TMethodProperty::GetValues(const TGetStrProc &Proc) const
{
    const QObject *root = HandlerRoot();
    if (!root || PropCount() == 0)
        return;
    const QStringList slotNames = GetCompatibleSlots(root->metaObject(), GetPropInfo(0)->Signal());
    for (const QString &name : slotNames)
        Proc(name);
}

void TMethodProperty::SetValue(const QString &Value)
{
    const QString text = Value.trimmed();

    if (text.isEmpty()) {
        bool changed = false;
        for (int i = 0; i < PropCount(); ++i) {
            QObject *object = GetComponent(i);
            const QMetaMethod signal = GetPropInfo(i)->Signal();
            if (object && !GetEventHandler(object, signal).IsEmpty()) {
                ClearEventHandler(object, signal);
                changed = true;
            }
        }
        if (changed)
            Modified();
        return;
    }

    // The text shown committed unchanged, "Other.slot" included: nothing to do.
    if (ShowsAlready(text))
        return;

    QObject *root = HandlerRoot();
    if (!root)
        throw Exception(LoadStr(SErrNoEventHandler).arg(GetName()));

    // Slot names are case-sensitive; a different case is taken when it names exactly one of
    // the slots that fit. Every object's signal is checked before any is connected.
    QString slotName;
    for (int i = 0; i < PropCount(); ++i) {
        if (!GetComponent(i))
            continue;
        const QStringList compatible = GetCompatibleSlots(root->metaObject(), GetPropInfo(i)->Signal());
        QString resolved;
        if (compatible.contains(text)) {
            resolved = text;
        } else {
            QStringList matches;
            for (const QString &name : compatible) {
                if (name.compare(text, Qt::CaseInsensitive) == 0)
                    matches.append(name);
            }
            if (matches.size() == 1)
                resolved = matches.constFirst();
        }
        if (resolved.isEmpty() || (!slotName.isEmpty() && resolved != slotName)) {
            QString rootName = GetCompName(root);
            if (rootName.isEmpty())
                rootName = QString::fromLatin1(root->metaObject()->className());
            throw Exception(LoadStr(SErrNoSuchSlot).arg(rootName, text, GetName()));
        }
        slotName = resolved;
    }
    if (slotName.isEmpty())
        return; // every object was destroyed

    const TEventHandler wanted{root, slotName};
    bool changed = false;
    for (int i = 0; i < PropCount(); ++i) {
        QObject *object = GetComponent(i);
        const QMetaMethod signal = GetPropInfo(i)->Signal();
        if (object && !(GetEventHandler(object, signal) == wanted)) {
            SetEventHandler(object, signal, root, slotName);
            changed = true;
        }
    }
    if (changed)
        Modified();
}

void TMethodProperty::Edit()
{
}

int TMethodProperty::GetEditLimit() const
{
    return MaxHandlerNameLength;
}

} // namespace kv
