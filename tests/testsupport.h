#pragma once

// Small builders shared by the tests: objects named the way a form designer names them, and the
// text of what an action raises.

#include "platform/kvException.h"

#include <QString>
#include <QWidget>

#include <functional>
#include <memory>

namespace kv::test {

// A new T owned by parent, named name.
template <class T, class P>
T *Make(P *parent, const QString &name)
{
    auto *obj = new T(parent);
    obj->setObjectName(name);
    return obj;
}

// A named top-level window that the test owns.
inline std::unique_ptr<QWidget> NamedWindow(const QString &name)
{
    auto window = std::make_unique<QWidget>();
    window->setObjectName(name);
    return window;
}

// The message of the kv::Exception that Action raises; empty when it raises none.
inline QString ErrorOf(const std::function<void()> &Action)
{
    try {
        Action();
    } catch (const kv::Exception &error) {
        return error.Message();
    }
    return {};
}

} // namespace kv::test
