#include "hosts/demo/DemoObjects.h"

#include <QApplication>
#include <QList>
#include <QWidget>

#include <vector>

using namespace Qt::StringLiterals;

std::unique_ptr<QObject> CreateExtraObjects(QObject *parent, int count)
{
    if (count <= 0)
        return nullptr;
    auto root = std::make_unique<QObject>(parent);
    root->setObjectName(u"ExtraObjects"_s);

    // Object i (1-based) hangs below object (i - 1) / FanOut, object 0 being the root.
    std::vector<QObject *> created;
    created.reserve(size_t(count) + 1);
    created.push_back(root.get());
    for (int i = 1; i <= count; ++i) {
        auto *object = new QObject(created[size_t((i - 1) / ExtraObjectsFanOut)]);
        object->setObjectName(u"ExtraObject"_s + QString::number(i));
        created.push_back(object);
    }
    return root;
}

namespace {

qsizetype CountTree(const QObject *root)
{
    qsizetype count = 0;
    QList<const QObject *> pending{root};
    while (!pending.isEmpty()) {
        const QObject *object = pending.takeLast();
        ++count;
        for (const QObject *child : object->children())
            pending.append(child);
    }
    return count;
}

const QObject *TopmostAncestor(const QObject *object)
{
    while (object->parent())
        object = object->parent();
    return object;
}

} // namespace

ObjectCount CountReachableObjects()
{
    // Distinct topmost ancestors have disjoint trees, so each tree is counted once even
    // when a window sits inside another window or below the application object.
    QList<const QObject *> roots;
    if (const QObject *app = QCoreApplication::instance())
        roots.append(app);
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows) {
        const QObject *root = TopmostAncestor(window);
        if (!roots.contains(root))
            roots.append(root);
    }

    ObjectCount result;
    result.topLevelWidgets = windows.size();
    for (const QObject *root : roots)
        result.objects += CountTree(root);
    return result;
}
