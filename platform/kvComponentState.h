#pragma once

#include "kv_export.h"

// The component state of any QObject, ours or foreign: a small record kept beside the object,
// never in it, set by the designer, the stream reader and our destructors.
//
// csDesigning and csDestroying hold for a whole subtree: an object reports them when it or
// any object up its parent chain carries them, so children created later inside a designed
// form are designing too. Setting them on an object whose ancestor carries them stores
// nothing more, and excluding them there has no effect: change them where they were set.
//
// csDestroying is reported from the moment it is set: our classes set it first thing in
// their destructors, which marks their children too. A foreign object with a record here
// (any state set on it) reports csDestroying once its ~QObject has begun; when its destroyed
// signal reaches the table its record goes, and its children, which ~QObject deletes next,
// report csDestroying (and csDesigning, if it was designing) while they die. A foreign object
// that never had a record reports nothing while it dies: Qt has no public way to ask. Do not
// give state to an object whose destruction has begun; it could no longer be watched.
//
// User-interface thread only.

#include <QFlags>

class QObject;

namespace kv {

// The platform's bit order, so that saved masks keep their meaning.
enum TComponentStateFlag {
    csLoading = 0x0001,
    csReading = 0x0002,
    csWriting = 0x0004,
    csDestroying = 0x0008,
    csDesigning = 0x0010,
    csAncestor = 0x0020,
    csUpdating = 0x0040,
    csFixups = 0x0080,
    csFreeNotification = 0x0100,
    csInline = 0x0200,
    csDesignInstance = 0x0400,
};
Q_DECLARE_FLAGS(TComponentState, TComponentStateFlag)
Q_DECLARE_OPERATORS_FOR_FLAGS(TComponentState)

// The state of obj (empty for null or an object never given one).
KV_EXPORT TComponentState ComponentState(const QObject *obj);

// Replace, add to or take from the state set on obj itself. Nothing for null.
KV_EXPORT void SetComponentState(QObject *obj, TComponentState state);
KV_EXPORT void IncludeState(QObject *obj, TComponentState state);
KV_EXPORT void ExcludeState(QObject *obj, TComponentState state);

// How many objects have a record now; for diagnostics and tests.
KV_EXPORT int ComponentStateCount();

} // namespace kv
