#pragma once

// Private to the notifier units: how pointers travel in a message's parameters.

#include <QList>
#include <QtGlobal>

#include <span>

class QObject;

namespace kv::detail {

template <typename T>
qintptr PointerParam(T *pointer)
{
    return reinterpret_cast<qintptr>(pointer);
}

template <typename T>
T *ParamPointer(qintptr param)
{
    return reinterpret_cast<T *>(param);
}

inline qintptr ObjectListParam(const QList<QObject *> &objects)
{
    return PointerParam(&objects);
}

inline std::span<QObject *const> ParamObjectList(qintptr param)
{
    const auto *objects = ParamPointer<const QList<QObject *>>(param);
    if (!objects)
        return {};
    return {objects->constData(), size_t(objects->size())};
}

} // namespace kv::detail
