#pragma once

#include "kv_export.h"

// Helpers over string lists and lists: set operations, name=value parts, text search with
// columns and lines, parameter replacement. Like the platform's string lists, entries compare
// ignoring case unless a routine is told otherwise.

#include "foundation/ideLib_charset.h"

#include <QFlags>
#include <QList>
#include <QPoint>
#include <QString>
#include <QStringList>

#include <functional>

namespace kv {

// Text search in a string list. Pos is a point whose x is the 1-based column and y the
// 0-based line.
enum TSearchParam {
    spCaseSens = 0x1,
    spWholeWords = 0x2,
    spBackSearch = 0x4,
};
Q_DECLARE_FLAGS(TSearchParams, TSearchParam)
Q_DECLARE_OPERATORS_FOR_FLAGS(TSearchParams)

// Searches Strings for S from Pos. Nothing is found (false, Pos unchanged) when Strings or S
// is empty. Without spCaseSens the pattern and the lines are compared upper-cased. Every line
// is searched without its trailing blanks (and control characters).
//
// Forward: from line Pos.y on; on a line at least Pos.x characters long, a match starting at
// Pos.x or after it is looked for. A match that is not a whole word (with spWholeWords: the
// run of non-separators around the match column is longer than S) is passed over: the search
// goes on from the last column of that run, or from the column after the match when the
// match starts there. With no match the search moves to column 1 of the next line.
// Backward (spBackSearch): from line Pos.y down; the last match starting at or before
// min(Pos.x, line length) is looked for; a match that is not a whole word is passed over by
// going on from the column before the start of its run. With no match the search moves to the
// previous line at its full length.
//
// True: Pos holds the match's column and line. False: the search ran off the end, Pos is
// (1, Strings.size()), or off the beginning, Pos is (0, -1). A starting line outside the list
// is first moved into it (forward to line 0 column 1, backward to the last line at its length).
KV_EXPORT bool FindInStringsEx(const QString &S, const QStringList &Strings, TSearchParams Params,
                     const TCharSet &Separators, QPoint &Pos);
// Pos := (1, 0), then FindNextInStrings.
KV_EXPORT bool FindFirstInStrings(const QString &S, const QStringList &Strings, bool CaseSens, QPoint &Pos);
// Forward from Pos as it is, case-sensitively when CaseSens, any match (not only whole words).
// The caller moves Pos past a match before searching for the next one, or finds it again.
KV_EXPORT bool FindNextInStrings(const QString &S, const QStringList &Strings, bool CaseSens, QPoint &Pos);

// Deletes the first entry equal to S, if any; returns its index or -1.
KV_EXPORT qsizetype RemoveFromStrings(QStringList &Strings, const QString &S, Qt::CaseSensitivity Cs = Qt::CaseInsensitive);
// Removes from A, for each entry of B, the first entry equal to it.
KV_EXPORT void RemoveStrings(QStringList &A, const QStringList &B, Qt::CaseSensitivity Cs = Qt::CaseInsensitive);
// A keeps only its entries that are also in B.
KV_EXPORT void IntersectStrings(QStringList &A, const QStringList &B, Qt::CaseSensitivity Cs = Qt::CaseInsensitive);
// A keeps only its entries that are not in B.
KV_EXPORT void SubtractStrings(QStringList &A, const QStringList &B, Qt::CaseSensitivity Cs = Qt::CaseInsensitive);
// Sorts the entries and keeps the first of each run of equal ones.
KV_EXPORT void SortAndRemoveDups(QStringList &Strings, Qt::CaseSensitivity Cs = Qt::CaseInsensitive);
KV_EXPORT void RemoveEmptyStrings(QStringList &Strings);

// Every "name=value" line becomes its name (the text before the first "=", the whole line
// when it has none), resp. its value (the text after the first "=", empty when it has none).
KV_EXPORT void NamePartToStrings(QStringList &Strings);
KV_EXPORT void ValuePartToStrings(QStringList &Strings);

KV_EXPORT void AnsiUpperCaseStrings(QStringList &Strings);
KV_EXPORT void AnsiLowerCaseStrings(QStringList &Strings);
// Every entry becomes Func(entry).
KV_EXPORT void OperateStrings(QStringList &Strings, const std::function<QString(const QString &)> &Func);

// Parameter references: a name between two Delim texts ("%Name%") is replaced by its value in
// Params, a list of "name=value" lines (names compared ignoring case, the first line of a
// name wins). A reference to an unknown name is left as it is; a replaced value is not
// searched again.
KV_EXPORT QString ChangeParamsEx(const QString &S, const QStringList &Params, const QString &Delim = QStringLiteral("%"));
KV_EXPORT void ChangeParamsInStrings(QStringList &Strings, const QStringList &Params);
KV_EXPORT void ChangeParamsInStringsEx(QStringList &Strings, const QStringList &Params, const QString &Delim);
// The same in a UTF-8 text file, written back (safely, through a temporary file) only when
// something changed; returns whether it did. A file that can't be read or written raises
// kv::Exception (SErrFileRead, SErrFileWrite).
KV_EXPORT bool ChangeParamsInFile(const QString &FileName, const QStringList &Params, const QString &Delim = QStringLiteral("%"));
KV_EXPORT void ChangeParamsInFiles(const QStringList &FileNames, const QStringList &Params, const QString &Delim = QStringLiteral("%"));

// Lists of objects that the list's user owns.

// Frees the items, taking each from the front, until the list is empty.
template <class T>
void ClearList(QList<T *> &List)
{
    while (!List.isEmpty())
        delete List.takeFirst();
}

// Removes Item from the list, then frees it (whether or not the list held it). Returns the
// index it had, or -1.
template <class T>
qsizetype RemoveItem(QList<T *> &List, T *Item)
{
    const qsizetype index = List.indexOf(Item);
    if (index >= 0)
        List.removeAt(index);
    delete Item;
    return index;
}

// Whether the two lists have an item in common.
template <class T>
bool ListsInterSect(const QList<T> &A, const QList<T> &B)
{
    for (const T &item : A) {
        if (B.contains(item))
            return true;
    }
    return false;
}

} // namespace kv
