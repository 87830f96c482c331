#pragma once

// The message table: every text that the library shows or raises. Messages are plain
// UTF-8 literals so that using one costs nothing until it is shown; LoadStr gives the
// text as the user sees it.

#include <QString>

namespace kv {

QString LoadStr(const char *message);

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

namespace ideConsts {
void Initialize();
void Finalize();
} // namespace ideConsts

} // namespace kv
