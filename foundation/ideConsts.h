#pragma once

#include "kv_export.h"

// The message table: every text that the library shows or raises. Messages are plain
// UTF-8 literals so that using one costs nothing until it is shown; LoadStr gives the
// text as the user sees it.

#include <QString>

namespace kv {

KV_EXPORT QString LoadStr(const char *message);

// Raises kv::Exception (SListIndexError) unless 0 <= Index < Count: the one index check of
// the library's lists.
KV_EXPORT void CheckListIndex(qsizetype Index, qsizetype Count);

// Add-in
inline constexpr char SVerbIdeInspector[] = "Korvo IDE Inspector";
inline constexpr char SErrMenuGone[] = "The menu of \"%1\" no longer exists";

// Lists
inline constexpr char SErrDuplicateItem[] = "Can't insert duplicate item";
inline constexpr char SListIndexError[] = "List index out of bounds (%1)";
inline constexpr char SListCountError[] = "List count out of bounds (%1)";
inline constexpr char SListCapacityError[] = "List capacity out of bounds (%1)";
inline constexpr char SInvalidCast[] = "Invalid class typecast";

// Colours and the class registry
inline constexpr char SInvalidColor[] = "'%1' is not a valid colour";
inline constexpr char SClassNotFound[] = "Class %1 not found";
inline constexpr char SDuplicateClassName[] = "Can't register class %1 as %2: that name belongs to class %3";
inline constexpr char SClassNotCreatable[] = "Class %1 can't be created: it has no constructor that takes an owner";
inline constexpr char SWidgetNeedsWidgetOwner[] = "Class %1 is a widget class and can't be owned by %2, which is not a widget";

// Class, option and verb registries
inline constexpr char SErrNilRegistration[] = "%1 can't register nil";
inline constexpr char SErrNotOptionClass[] = "Class %1 is not an option class";
inline constexpr char SErrUnknownOptionClass[] = "Options of class %1 can't be created: the class is not registered";
inline constexpr char SErrVerbNoName[] = "A verb can't be registered without a name";

// Names, files, properties and GUIDs
inline constexpr char SInvalidName[] = "'%1' is not a valid component name";
inline constexpr char SDuplicateName[] = "A component named %1 already exists";
inline constexpr char SInvalidGUID[] = "'%1' is not a valid GUID";
inline constexpr char SErrFileRead[] = "Can't read file \"%1\": %2";
inline constexpr char SErrFileWrite[] = "Can't write file \"%1\": %2";
inline constexpr char SErrFileRename[] = "Can't rename \"%1\" to \"%2\": %3";
inline constexpr char SErrFileDelete[] = "Can't delete \"%1\": %2";
inline constexpr char SErrNoOptionsFile[] = "The options can't be saved: no options file is set";
inline constexpr char SAccessDenied[] = "access denied";
inline constexpr char SErrBadPropValue[] = "'%1' is not a valid value for property %2";
inline constexpr char SInvalidPropertyValue[] = "Invalid property value";

// Property editors
inline constexpr char SInvalidValueOfKind[] = "'%1' is not a valid %2 value";
inline constexpr char SOutOfRange[] = "Value must be between %1 and %2";
inline constexpr char SErrReadOnlyProperty[] = "Property %1 is read-only";
inline constexpr char SUnknownComponent[] = "There is no component named '%1' of class %2";
inline constexpr char SErrNoSuchSlot[] = "%1 has no slot %2 that can be connected to %3";
inline constexpr char SErrNoEventHandler[] = "Event %1 can't be connected: no designed root to handle it";
inline constexpr char SErrNotASignal[] = "%1 is not a signal of %2";
inline constexpr char SErrConnectFailed[] = "%1 can't be connected to %2";
inline constexpr char SKindInteger[] = "integer";
inline constexpr char SKindFloat[] = "floating point";
inline constexpr char SKindChar[] = "character";
inline constexpr char SKindSet[] = "set";
inline constexpr char SKindDate[] = "date";
inline constexpr char SKindTime[] = "time";
inline constexpr char SKindDateTime[] = "date and time";
inline constexpr char SKindShortCut[] = "shortcut";
inline constexpr char SKindCursor[] = "cursor";
inline constexpr char SKindSize[] = "size";
inline constexpr char SKindPoint[] = "point";
inline constexpr char SKindRect[] = "rectangle";
inline constexpr char SKindMargins[] = "margins";
inline constexpr char SKindSizePolicy[] = "size policy";
inline constexpr char SKindColor[] = "colour";
inline constexpr char SNoShortCut[] = "(None)";
inline constexpr char SNoPicture[] = "(None)";
inline constexpr char SKindPicture[] = "picture";
inline constexpr char SLoadPicture[] = "Load Picture";
inline constexpr char SPictureFiles[] = "Pictures (%1)";
inline constexpr char SKindStringList[] = "string list";
inline constexpr char SStringListEditor[] = "String list editor";
inline constexpr char SStringListEditing[] = "Editing %1 (%2 lines)";

// Tree sources
inline constexpr char SErrNotTreeSource[] = "Class %1 is not a tree source";

namespace ideConsts {
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
} // namespace ideConsts

} // namespace kv
