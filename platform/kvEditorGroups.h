#pragma once

#include "kv_export.h"

// Editor groups and the registering package. Every registry entry made while a package
// registers remembers the current group; freeing the group takes the package's entries out
// of every registry at once, before its code goes away. User-interface thread only.

#include <QtGlobal>

namespace kv {

class INotifier;

// Identifies a package (a loaded library or plug-in) for as long as it is loaded; 0 is the
// program itself.
using TPackageHandle = quintptr;

// The package that is registering now. Whoever loads a package sets it around the
// package's registration and restores it afterwards.
extern KV_EXPORT TPackageHandle CurrentPackage;

// The current group, negative while none is open.
KV_EXPORT int CurrentGroup();

// Opens a new group, makes it current and returns it. Group numbers are never reused, so an
// entry stamped with a freed group can never be taken for one of a later group.
KV_EXPORT int NewEditorGroup();

// Frees Group: first every registry of group-stamped entries drops the group's entries,
// then CM_FREEEDITGROUP (WParam = Group) is broadcast to all notifiers, so that observers
// find the registries already clean. Freeing the current group makes the newest group
// still open current (or none). Any number may be freed, -1 too (the entries made while no
// group was open); freeing a group twice only repeats the broadcasts.
KV_EXPORT void FreeEditorGroup(int Group);

// Registries whose entries are stamped with groups register here to be cleaned first by
// FreeEditorGroup; they receive CM_FREEEDITGROUP through INotifier::Dispatch, newest first.
// A registry must unregister before it is destroyed.
KV_EXPORT void RegisterEditorGroupRegistry(INotifier *Registry);
KV_EXPORT void UnregisterEditorGroupRegistry(INotifier *Registry);

} // namespace kv
