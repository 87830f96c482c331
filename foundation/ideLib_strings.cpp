#include "foundation/ideLib_strings.h"

#include <QDate>
#include <QLocale>
#include <QPoint>
#include <QRect>

namespace kv {

namespace {

// Upper case one UTF-16 unit at a time, so that positions in the copy are positions in the
// original (QString::toUpper may lengthen a text, "ß" becoming "SS").
QString UpperSameLength(QStringView S)
{
    QString result(S.size(), Qt::Uninitialized);
    QChar *out = result.data();
    for (QChar c : S)
        *out++ = c.toUpper();
    return result;
}

void ReplaceAll(QString &S, const QString &Old, const QString &New, bool IgnoreCase)
{
    if (Old.isEmpty() || S.isEmpty())
        return;
    if (!IgnoreCase) {
        for (qsizetype at = S.indexOf(Old); at >= 0; at = S.indexOf(Old, at + New.size()))
            S.replace(at, Old.size(), New);
        return;
    }
    // Occurrences are found in upper-cased copies that are kept in step with S.
    QString upper = UpperSameLength(S);
    const QString upperOld = UpperSameLength(Old);
    const QString upperNew = UpperSameLength(New);
    for (qsizetype at = upper.indexOf(upperOld); at >= 0; at = upper.indexOf(upperOld, at + New.size())) {
        S.replace(at, Old.size(), New);
        upper.replace(at, Old.size(), upperNew);
    }
}

} // namespace

QString ChangeCharTo(QChar NewChar, QChar OldChar, const QString &S)
{
    QString result = S;
    result.replace(OldChar, NewChar);
    return result;
}

void ParseString(const QString &S, const QString &Separator, QStringList &Strings)
{
    QString text = S;
    if (!Separator.isEmpty())
        text.replace(Separator, QStringLiteral("\n"));
    qsizetype start = 0;
    const qsizetype length = text.size();
    while (start < length) {
        qsizetype end = start;
        while (end < length && text.at(end) != u'\n' && text.at(end) != u'\r')
            ++end;
        Strings.append(text.mid(start, end - start));
        if (end < length && text.at(end) == u'\r' && end + 1 < length && text.at(end + 1) == u'\n')
            ++end;
        start = end + 1;
    }
}

int PosEx(QStringView SubStr, QStringView S, int Start)
{
    if (SubStr.isEmpty() || S.isEmpty())
        return 0;
    const qsizetype from = qMax(Start, 1) - 1;
    if (from >= S.size())
        return 0;
    return int(S.indexOf(SubStr, from) + 1);
}

int BackPosEx(QStringView SubStr, QStringView S, int Start)
{
    if (SubStr.isEmpty() || S.isEmpty() || Start < 1)
        return 0;
    // lastIndexOf reads a negative start as "from the end": Start >= 1 keeps it positive.
    const qsizetype from = qMin<qsizetype>(Start, S.size()) - 1;
    return int(S.lastIndexOf(SubStr, from) + 1);
}

int GetFirstNotSpace(QStringView S)
{
    qsizetype i = 0;
    while (i < S.size() && S.at(i) == u' ')
        ++i;
    return int(i + 1);
}

QString AddCharOccurence(const QString &S, QChar Ch, int N)
{
    if (N <= 0)
        return S;
    QString result;
    result.reserve(S.size());
    for (QChar c : S) {
        result.append(c);
        if (c == Ch)
            result.append(QString(N, Ch));
    }
    return result;
}

QString ExtractQuotedStr(const QString &S, QChar Quote)
{
    if (S.size() < 2)
        return S;
    QString result = S;
    if (result.front() == Quote && result.back() == Quote)
        result = result.mid(1, result.size() - 2);
    const QString doubled(2, Quote);
    result.replace(doubled, QString(Quote));
    return result;
}

QString RemoveCharSet(const TCharSet &Set, const QString &S)
{
    QString result;
    result.reserve(S.size());
    for (QChar c : S) {
        if (!Set.Contains(c))
            result.append(c);
    }
    return result;
}

TCharSet StringToCharSet(QStringView S)
{
    return TCharSet(S);
}

QString RemoveStrSet(const QString &S, QStringView Chars)
{
    QString result;
    result.reserve(S.size());
    for (QChar c : S) {
        if (!Chars.contains(c))
            result.append(c);
    }
    return result;
}

QString RemoveNonIdentChars(const QString &S)
{
    QString result;
    result.reserve(S.size());
    for (QChar c : S) {
        const char16_t u = c.unicode();
        if ((u >= u'A' && u <= u'Z') || (u >= u'a' && u <= u'z') || u == u'_')
            result.append(c);
    }
    return result;
}

QString TrimSeparatorsLeft(const QString &S, const TCharSet &Separators)
{
    qsizetype first = 0;
    while (first < S.size() && Separators.Contains(S.at(first)))
        ++first;
    return S.mid(first);
}

QString TrimSeparatorsRight(const QString &S, const TCharSet &Separators)
{
    qsizetype end = S.size();
    while (end > 0 && Separators.Contains(S.at(end - 1)))
        --end;
    return S.left(end);
}

QString TrimSeparators(const QString &S, const TCharSet &Separators)
{
    return TrimSeparatorsLeft(TrimSeparatorsRight(S, Separators), Separators);
}

int GetWordPos(const QString &S, int N, const TCharSet &Separators)
{
    if (N < 1)
        return -1;
    const QString text = TrimSeparators(S, Separators);
    int words = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool starts = !Separators.Contains(text.at(i)) && (i == 0 || Separators.Contains(text.at(i - 1)));
        if (starts && ++words == N)
            return int(i + 1);
    }
    return -1;
}

QString GetWordEx(const QString &S, int N, const TCharSet &Separators)
{
    const QString text = TrimSeparators(S, Separators);
    const int pos = GetWordPos(text, N, Separators);
    if (pos < 0)
        return {};
    qsizetype end = pos - 1;
    while (end < text.size() && !Separators.Contains(text.at(end)))
        ++end;
    return text.mid(pos - 1, end - (pos - 1));
}

QString GetWord(const QString &S, int N)
{
    return GetWordEx(S, N, TCharSet::Blanks());
}

void Replace(QString &S, int Index, const QString &Old, const QString &New)
{
    S.replace(Index - 1, Old.size(), New);
}

void ReplaceAllOccur(QString &S, const QString &Old, const QString &New)
{
    ReplaceAll(S, Old, New, false);
}

void ReplaceAllOccurEx(QString &S, const QString &Old, const QString &New, bool IgnoreCase)
{
    ReplaceAll(S, Old, New, IgnoreCase);
}

QString RemoveExtraSlash(const QString &S)
{
    QString result;
    result.reserve(S.size());
    for (QChar c : S) {
        if (c == u'/' && result.endsWith(u'/'))
            continue;
        result.append(c);
    }
    return result;
}

QString StringOfSpace(int N)
{
    return N > 0 ? QString(N, u' ') : QString();
}

void AddBackSpaces(QString &S, int N)
{
    if (S.size() < N)
        S.append(StringOfSpace(int(N - S.size())));
}

QString StrArrayToDelimStr(const QStringList &Strings, const QString &Delim)
{
    QStringList present;
    for (const QString &s : Strings) {
        if (!s.isEmpty())
            present.append(s);
    }
    return present.join(Delim);
}

QString CommaText(const QStringList &Strings)
{
    return Strings.join(u',');
}

QString StringsToString(const QStringList &Strings, const QString &Delim)
{
    return Strings.join(Delim);
}

bool StrToBool(QStringView S)
{
    return S.compare(u"True", Qt::CaseInsensitive) == 0;
}

bool StrToBoolean(QStringView S)
{
    return StrToBool(S);
}

QString BoolToStr(bool B)
{
    return B ? QStringLiteral("True") : QStringLiteral("False");
}

QString ResStr(const QString &S)
{
    return S;
}

QString ExtractControlName(const QString &S)
{
    QString result = S.mid(S.indexOf(u'.') + 1);
    const qsizetype next = result.indexOf(u'.');
    if (next >= 0)
        result.truncate(next);
    return result;
}

QString PointToStr(const QPoint &P)
{
    return QStringLiteral("(%1, %2)").arg(P.x()).arg(P.y());
}

QString RectToStr(const QRect &R)
{
    return QStringLiteral("(%1, %2, %3, %4)").arg(R.x()).arg(R.y()).arg(R.x() + R.width()).arg(R.y() + R.height());
}

int ShortMonthNameToIndex(QStringView S)
{
    const QLocale locales[] = {QLocale::c(), QLocale::system()};
    for (const QLocale &locale : locales) {
        for (int month = 1; month <= 12; ++month) {
            if (S.compare(locale.monthName(month, QLocale::ShortFormat), Qt::CaseInsensitive) == 0)
                return month;
        }
    }
    return 0;
}

int CurrentYear()
{
    return QDate::currentDate().year();
}

bool IsLeapHour(int H)
{
    return H >= 0 && H < 24;
}

bool IsLeapMinute(int M)
{
    return M >= 0 && M < 60;
}

} // namespace kv
