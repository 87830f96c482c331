#pragma once

// The message table: every text that the library shows or raises. Messages are plain
// UTF-8 literals so that using one costs nothing until it is shown; LoadStr gives the
// text as the user sees it.

#include <QString>

namespace kv {

QString LoadStr(const char *message);

// Add-in
inline constexpr char SVerbIdeInspector[] = "Korvo IDE Inspector";

// Lists
inline constexpr char SErrDuplicateItem[] = "Can't insert duplicate item";
inline constexpr char SListIndexError[] = "List index out of bounds (%1)";
inline constexpr char SListCountError[] = "List count out of bounds (%1)";
inline constexpr char SListCapacityError[] = "List capacity out of bounds (%1)";
inline constexpr char SInvalidCast[] = "Invalid class typecast";

namespace ideConsts {
void Initialize();
void Finalize();
} // namespace ideConsts

} // namespace kv
