#pragma once

#include "kv_export.h"

// The base of our streamable classes: what the component reader and writer ask of an object
// beyond its Qt properties. A class derives from its Qt base and from TPersistent; the filer
// finds it with dynamic_cast. Foreign objects get the defaults below.

#include <QList>

#include <functional>
#include <memory>

class QObject;

namespace kv {

class TFiler;

enum TOperation { opInsert, opRemove };

// Called with each child component to stream.
using TGetChildProc = std::function<void(QObject *Child)>;

class KV_EXPORT TPersistent
{
public:
    TPersistent();
    virtual ~TPersistent();
    TPersistent(const TPersistent &) = delete;
    TPersistent &operator=(const TPersistent &) = delete;

    // After the reader has read the object, its children and the references of its root.
    virtual void Loaded() {}
    // Defines the properties that are not Qt properties (TFiler::DefineProperty).
    virtual void DefineProperties(TFiler &Filer);
    // The children the writer writes, in order; the default is DefaultStreamChildren.
    virtual void GetChildren(const TGetChildProc &Proc, QObject *Root);
    // opRemove: Component, which FreeNotification watched, is being destroyed (only the
    // pointer may be compared); opInsert: the reader made Component for the root that this
    // object is.
    virtual void Notification(QObject *Component, TOperation Operation);

    // Asks for Notification(Component, opRemove) when Component is destroyed; asking again
    // for the same component changes nothing.
    void FreeNotification(QObject *Component);
    void RemoveFreeNotification(QObject *Component);

    // Obj as a TPersistent; null for null and for foreign objects.
    static TPersistent *Of(QObject *Obj);

private:
    class TWatcher;
    std::unique_ptr<TWatcher> m_watcher;
};

// The children of Obj that a stream holds: its direct children that are components of the
// same root, in child order, leaving out unnamed children and layouts, Qt's internals (names
// beginning with "qt_"), the children a fresh instance of Obj's class already has (its
// prototype's, by class and name), roots of their own, and collections and their items
// (written as properties).
KV_EXPORT QList<QObject *> DefaultStreamChildren(const QObject *Obj);
// The children the writer writes: TPersistent::GetChildren for our classes, else the above.
KV_EXPORT void GetStreamChildren(QObject *Obj, QObject *Root, const TGetChildProc &Proc);

} // namespace kv
