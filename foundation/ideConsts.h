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

// Key bindings: the names of the key mappings
inline constexpr char SKBDDefault[] = "Default";
inline constexpr char SKBDClassic[] = "Classic";
inline constexpr char SKBDBrief[] = "Brief";
inline constexpr char SKBDEpsilon[] = "Epsilon";

// Component streams (binary form)
inline constexpr char SInvalidStreamFormat[] = "Invalid stream format";
inline constexpr char SReadError[] = "Stream read error";
inline constexpr char SWriteError[] = "Stream write error";
inline constexpr char SInvalidResourceHeader[] = "Invalid resource header";
inline constexpr char SUnknownProperty[] = "Property %1 does not exist";
inline constexpr char SPropertyException[] = "Error reading %1%2%3: %4";
inline constexpr char SInvalidPropertyPath[] = "Invalid property path";
inline constexpr char SInvalidPropertyType[] = "Invalid property type: %1";
inline constexpr char SReadOnlyStreamProperty[] = "Property %1 can't be read: it is read-only";
inline constexpr char SUnknownEventHandler[] = "Handler %1 of event %2 not found";
inline constexpr char SUnresolvedReference[] = "Reference %1 of %2 can't be resolved";
inline constexpr char SAncestorNotFound[] = "Ancestor for '%1' not found";
inline constexpr char SStreamNesting[] = "Component streams nest too deeply";
inline constexpr char SUnwritableValue[] = "Property %1 of type %2 can't be written";
// Component streams (text form)
inline constexpr char SObjStreamEnds[] = "Invalid stream format: the stream ends at offset %1";
inline constexpr char SObjStreamBadValue[] = "Invalid stream format: unknown value type %1 at offset %2";
inline constexpr char SObjStreamBadFlags[] = "Invalid stream format: unknown object flags %1 at offset %2";
inline constexpr char SObjStreamBadLength[] = "Invalid stream format: length %1 at offset %2 exceeds the %3 bytes left";
inline constexpr char SObjStreamBadName[] = "Invalid stream format: '%1' at offset %2 is not a valid name";
inline constexpr char SObjStreamTooDeep[] = "Invalid stream format: nesting deeper than %1 levels at offset %2";
inline constexpr char SParseExpected[] = "Line %1: %2 expected";
inline constexpr char SParseIdentExpected[] = "Line %1: Identifier expected";
inline constexpr char SParseValueExpected[] = "Line %1: Property value expected";
inline constexpr char SParseStringExpected[] = "Line %1: String expected";
inline constexpr char SParseIntegerExpected[] = "Line %1: Integer expected";
inline constexpr char SParseUnterminatedString[] = "Line %1: Unterminated string";
inline constexpr char SParseBadBinary[] = "Line %1: Invalid binary data";
inline constexpr char SParseBadNumber[] = "Line %1: Invalid number %2";
inline constexpr char SParseNumberRange[] = "Line %1: Number %2 is out of range";
inline constexpr char SParseNameTooLong[] = "Line %1: Name %2 is longer than 255 characters";
inline constexpr char SParseNullInList[] = "Line %1: Null can't be an item of a list";
inline constexpr char SParseTooDeep[] = "Line %1: Nesting deeper than %2 levels";
// Settings
inline constexpr char SErrUnknRegType[] = "This type isn't supported by WriteToRegistry";
inline constexpr char SErrRegWrite[] = "Can't write the settings file %1";
inline constexpr char SRegUnreadable[] = "The settings file %1 can't be read: the defaults are used";
inline constexpr char SRegCorrupt[] = "The settings file %1 is damaged: what can't be read gives the defaults, and the file is kept as %2 before it is next written";
// Property streams and the component filer
inline constexpr char SErrBadPropStream[] = "Error in property stream";
inline constexpr char SErrReadProps[] = "Error reading properties";
// Reader error dialog
inline constexpr char SErrDlg[] = "Error Reading Form";
inline constexpr char SErrMess[] = "%1.  Ignore the error and continue?  NOTE: Ignoring the error may cause components to be deleted or property values to be lost.";
inline constexpr char SIgnoreButton[] = "&Ignore";
inline constexpr char SCancelButton[] = "Cancel";
inline constexpr char SIgnoreAll[] = "Ignore &All";

// Tree sources
inline constexpr char SErrNotTreeSource[] = "Class %1 is not a tree source";

namespace ideConsts {
KV_EXPORT void Initialize();
KV_EXPORT void Finalize();
} // namespace ideConsts

} // namespace kv
