#pragma once

// Small builders shared by the tests: objects named the way a form designer names them.

#include <QString>
#include <QWidget>

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

} // namespace kv::test
