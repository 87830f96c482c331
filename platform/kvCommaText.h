#pragma once

#include "kv_export.h"

// The platform's comma text of a string list, as string-list properties are shown and
// typed.

#include <QString>
#include <QStringList>

namespace kv {

// A list as comma text: an entry that is empty or holds a comma, a double quote or blanks at
// its ends is written between double quotes, with its quotes doubled.
KV_EXPORT QString QuotedCommaText(const QStringList &List);
// The list that comma text holds (blanks around unquoted entries dropped, blank text the
// empty list); false, and List empty, for an unterminated quote or text after a closing
// quote.
KV_EXPORT bool SplitQuotedCommaText(const QString &Text, QStringList &List);

} // namespace kv
