#pragma once

#include "kv_export.h"

// String helpers. Positions and indexes given to or returned by these routines count from 1
// (the first character is at 1), and 0 or -1 means "none" as each routine says.

#include "foundation/ideLib_charset.h"

#include <QString>
#include <QStringList>
#include <QStringView>

class QPoint;
class QRect;

namespace kv {

// S with every OldChar replaced by NewChar.
KV_EXPORT QString ChangeCharTo(QChar NewChar, QChar OldChar, const QString &S);

// Appends to Strings the pieces of S split at Separator: every separator becomes a line break
// and the text is added as lines, so an empty piece is an empty line, line breaks already in
// S (LF, CR LF or CR) split too, and a break at the very end makes no empty last line. An
// empty S adds nothing; an empty Separator splits at line breaks only.
KV_EXPORT void ParseString(const QString &S, const QString &Separator, QStringList &Strings);

// The position of SubStr in S, searching forward from Start (a match at Start counts; a Start
// below 1 searches from 1), or backward from Start (the last match that starts at or before
// Start). 0 when there is none or when SubStr or S is empty.
KV_EXPORT int PosEx(QStringView SubStr, QStringView S, int Start = 1);
KV_EXPORT int BackPosEx(QStringView SubStr, QStringView S, int Start);

// The position of the first character that is not a blank; Length + 1 when all are blanks.
KV_EXPORT int GetFirstNotSpace(QStringView S);

// With N > 0, S with every Ch written N + 1 times (N = 1 doubles quotes); otherwise S.
KV_EXPORT QString AddCharOccurence(const QString &S, QChar Ch, int N);

// An empty or one-character S is returned as it is. Otherwise the Quote at both ends is
// removed when S begins and ends with it, and then every doubled Quote becomes one.
KV_EXPORT QString ExtractQuotedStr(const QString &S, QChar Quote = u'\'');

// S without the characters of Set.
KV_EXPORT QString RemoveCharSet(const TCharSet &Set, const QString &S);
// The set of the characters of S.
KV_EXPORT TCharSet StringToCharSet(QStringView S);
// S without the characters that Chars lists.
KV_EXPORT QString RemoveStrSet(const QString &S, QStringView Chars);

// Only the letters A-Z and a-z and "_" of S, digits removed too.
KV_EXPORT QString RemoveNonIdentChars(const QString &S);

// S without separator characters at the start, the end, or both.
KV_EXPORT QString TrimSeparatorsLeft(const QString &S, const TCharSet &Separators);
KV_EXPORT QString TrimSeparatorsRight(const QString &S, const TCharSet &Separators);
KV_EXPORT QString TrimSeparators(const QString &S, const TCharSet &Separators);

// Words are runs of characters that are not separators; N counts them from 1. GetWordPos
// trims S of separators first and gives the position of the N-th word in that trimmed text
// (so the first word is always at 1), or -1 when there are fewer than N words (or N < 1).
// GetWordEx gives the word itself, empty when there is none. GetWord separates at #0-#31
// and the blank.
KV_EXPORT int GetWordPos(const QString &S, int N, const TCharSet &Separators);
KV_EXPORT QString GetWordEx(const QString &S, int N, const TCharSet &Separators);
KV_EXPORT QString GetWord(const QString &S, int N);

// Deletes Old.length() characters of S at Index and inserts New there.
KV_EXPORT void Replace(QString &S, int Index, const QString &Old, const QString &New);

// Replaces every occurrence of Old in S by New. The search goes on after each inserted New,
// so a replacement is never searched again: replacing "ab" by "abab" doubles each "ab" once.
// Nothing for an empty Old. ReplaceAllOccur compares case-sensitively.
KV_EXPORT void ReplaceAllOccur(QString &S, const QString &Old, const QString &New);
KV_EXPORT void ReplaceAllOccurEx(QString &S, const QString &Old, const QString &New, bool IgnoreCase);

// S with every run of path separators ("//", "///"…) made one "/".
KV_EXPORT QString RemoveExtraSlash(const QString &S);

// N blanks (none for N <= 0).
KV_EXPORT QString StringOfSpace(int N);
// Pads S with blanks to the length N; a longer S is left as it is.
KV_EXPORT void AddBackSpaces(QString &S, int N);

// The non-empty entries joined with Delim between them.
KV_EXPORT QString StrArrayToDelimStr(const QStringList &Strings, const QString &Delim);
// The entries joined with "," between them, unquoted.
KV_EXPORT QString CommaText(const QStringList &Strings);
// Every entry, empty ones too, joined with Delim between them.
KV_EXPORT QString StringsToString(const QStringList &Strings, const QString &Delim);

// True exactly when S is "True" ignoring case; StrToBoolean is the same.
KV_EXPORT bool StrToBool(QStringView S);
KV_EXPORT bool StrToBoolean(QStringView S);
// "True" or "False".
KV_EXPORT QString BoolToStr(bool B);

// The hook through which message texts pass; gives S.
KV_EXPORT QString ResStr(const QString &S);

// The text between the first and the second point: everything up to and including the first
// point is removed, then everything from the next point on ("Form1.Button1.Caption" gives
// "Button1"; a text without a point is returned as it is).
KV_EXPORT QString ExtractControlName(const QString &S);

// "(X, Y)" and "(Left, Top, Right, Bottom)", right and bottom exclusive.
KV_EXPORT QString PointToStr(const QPoint &P);
KV_EXPORT QString RectToStr(const QRect &R);

// 1 to 12 for a short month name ("Jan", or the system locale's), ignoring case; 0 for
// anything else.
KV_EXPORT int ShortMonthNameToIndex(QStringView S);
KV_EXPORT int CurrentYear();
// True for 0 <= H < 24, resp. 0 <= M < 60.
KV_EXPORT bool IsLeapHour(int H);
KV_EXPORT bool IsLeapMinute(int M);

} // namespace kv
