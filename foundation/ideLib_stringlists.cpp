#include "foundation/ideLib_stringlists.h"

#include "foundation/ideConsts.h"
#include "foundation/ideLib_files.h"
#include "foundation/ideLib_strings.h"
#include "platform/kvException.h"

#include <QFile>
#include <QHash>

#include <algorithm>

namespace kv {

namespace {

QString TrimTrailingBlanks(const QString &S)
{
    qsizetype end = S.size();
    while (end > 0 && S.at(end - 1).unicode() <= u' ')
        --end;
    return S.left(end);
}

QString UpperSameLength(const QString &S)
{
    QString result(S.size(), Qt::Uninitialized);
    QChar *out = result.data();
    for (QChar c : S)
        *out++ = c.toUpper();
    return result;
}

// One line as the search sees it: Raw for the word test, Text for matching.
struct TSearchLine
{
    QString Raw;
    QString Text;
};

// The run of non-separators around column At (1-based): First and Last, both included.
void WordRun(const QString &Line, int At, const TCharSet &Separators, int &First, int &Last)
{
    First = At;
    while (First > 1 && !Separators.Contains(Line.at(First - 2)))
        --First;
    Last = At;
    while (Last < Line.size() && !Separators.Contains(Line.at(Last)))
        ++Last;
}

bool Contains(const QStringList &List, const QString &S, Qt::CaseSensitivity Cs)
{
    return List.contains(S, Cs);
}

QHash<QString, QString> ParamTable(const QStringList &Params)
{
    QHash<QString, QString> table;
    for (const QString &line : Params) {
        const qsizetype eq = line.indexOf(u'=');
        if (eq < 0)
            continue;
        const QString key = line.left(eq).toCaseFolded();
        if (!table.contains(key))
            table.insert(key, line.mid(eq + 1));
    }
    return table;
}

QString ReplaceParams(const QString &S, const QHash<QString, QString> &Table, const QString &Delim)
{
    if (Delim.isEmpty() || Table.isEmpty())
        return S;
    QString result;
    qsizetype from = 0;
    for (;;) {
        const qsizetype open = S.indexOf(Delim, from);
        const qsizetype close = open < 0 ? -1 : S.indexOf(Delim, open + Delim.size());
        if (close < 0)
            break;
        const QString name = S.mid(open + Delim.size(), close - open - Delim.size());
        const auto value = Table.constFind(name.toCaseFolded());
        if (value == Table.cend()) {
            // The closing delimiter may open the next reference.
            result += QStringView(S).mid(from, close - from);
            from = close;
            continue;
        }
        result += QStringView(S).mid(from, open - from);
        result += *value;
        from = close + Delim.size();
    }
    result += QStringView(S).mid(from);
    return result;
}

} // namespace

bool FindInStringsEx(const QString &S, const QStringList &Strings, TSearchParams Params,
                     const TCharSet &Separators, QPoint &Pos)
{
    if (Strings.isEmpty() || S.isEmpty())
        return false;
    const bool caseSens = Params.testFlag(spCaseSens);
    const bool wholeWords = Params.testFlag(spWholeWords);
    const QString pattern = caseSens ? S : UpperSameLength(S);
    const int count = int(Strings.size());
    const auto lineAt = [&](int y) {
        TSearchLine line;
        line.Raw = TrimTrailingBlanks(Strings.at(y));
        line.Text = caseSens ? line.Raw : UpperSameLength(line.Raw);
        return line;
    };
    int x = Pos.x();
    int y = Pos.y();
    int first = 0;
    int last = 0;
    // A match counts unless whole words are asked for and the word around it is longer;
    // first and last are then that word's columns.
    const auto accepted = [&](const TSearchLine &line, int at) {
        if (!wholeWords)
            return true;
        WordRun(line.Raw, at, Separators, first, last);
        return last - first + 1 == S.size();
    };

    if (!Params.testFlag(spBackSearch)) {
        if (y < 0) {
            y = 0;
            x = 1;
        }
        while (y < count) {
            const TSearchLine line = lineAt(y);
            if (line.Text.size() >= x) {
                const int at = PosEx(pattern, line.Text, x);
                if (at > 0) {
                    if (accepted(line, at)) {
                        Pos = QPoint(at, y);
                        return true;
                    }
                    x = last > at ? last : at + 1;
                    continue;
                }
            }
            ++y;
            x = 1;
        }
        Pos = QPoint(x, y);
        return false;
    }

    if (y >= count) {
        y = count - 1;
        x = int(Strings.at(y).size());
    }
    while (y >= 0) {
        const TSearchLine line = lineAt(y);
        if (x > 0) {
            const int at = BackPosEx(pattern, line.Text, qMin(x, int(line.Text.size())));
            if (at > 0) {
                if (accepted(line, at)) {
                    Pos = QPoint(at, y);
                    return true;
                }
                x = first - 1;
                continue;
            }
        }
        --y;
        x = y >= 0 ? int(Strings.at(y).size()) : 0;
    }
    Pos = QPoint(x, y);
    return false;
}

bool FindFirstInStrings(const QString &S, const QStringList &Strings, bool CaseSens, QPoint &Pos)
{
    Pos = QPoint(1, 0);
    return FindNextInStrings(S, Strings, CaseSens, Pos);
}

bool FindNextInStrings(const QString &S, const QStringList &Strings, bool CaseSens, QPoint &Pos)
{
    return FindInStringsEx(S, Strings, CaseSens ? TSearchParams(spCaseSens) : TSearchParams(), TCharSet(), Pos);
}

qsizetype RemoveFromStrings(QStringList &Strings, const QString &S, Qt::CaseSensitivity Cs)
{
    for (qsizetype i = 0; i < Strings.size(); ++i) {
        if (Strings.at(i).compare(S, Cs) == 0) {
            Strings.removeAt(i);
            return i;
        }
    }
    return -1;
}

void RemoveStrings(QStringList &A, const QStringList &B, Qt::CaseSensitivity Cs)
{
    for (const QString &s : B)
        RemoveFromStrings(A, s, Cs);
}

void IntersectStrings(QStringList &A, const QStringList &B, Qt::CaseSensitivity Cs)
{
    A.removeIf([&B, Cs](const QString &s) { return !Contains(B, s, Cs); });
}

void SubtractStrings(QStringList &A, const QStringList &B, Qt::CaseSensitivity Cs)
{
    A.removeIf([&B, Cs](const QString &s) { return Contains(B, s, Cs); });
}

void SortAndRemoveDups(QStringList &Strings, Qt::CaseSensitivity Cs)
{
    std::stable_sort(Strings.begin(), Strings.end(),
                     [Cs](const QString &a, const QString &b) { return a.compare(b, Cs) < 0; });
    const auto end = std::unique(Strings.begin(), Strings.end(),
                                 [Cs](const QString &a, const QString &b) { return a.compare(b, Cs) == 0; });
    Strings.erase(end, Strings.end());
}

void RemoveEmptyStrings(QStringList &Strings)
{
    Strings.removeIf([](const QString &s) { return s.isEmpty(); });
}

void NamePartToStrings(QStringList &Strings)
{
    for (QString &line : Strings) {
        const qsizetype eq = line.indexOf(u'=');
        if (eq >= 0)
            line.truncate(eq);
    }
}

void ValuePartToStrings(QStringList &Strings)
{
    for (QString &line : Strings) {
        const qsizetype eq = line.indexOf(u'=');
        line = eq >= 0 ? line.mid(eq + 1) : QString();
    }
}

void AnsiUpperCaseStrings(QStringList &Strings)
{
    for (QString &line : Strings)
        line = line.toUpper();
}

void AnsiLowerCaseStrings(QStringList &Strings)
{
    for (QString &line : Strings)
        line = line.toLower();
}

void OperateStrings(QStringList &Strings, const std::function<QString(const QString &)> &Func)
{
    for (QString &line : Strings)
        line = Func(line);
}

QString ChangeParamsEx(const QString &S, const QStringList &Params, const QString &Delim)
{
    return ReplaceParams(S, ParamTable(Params), Delim);
}

void ChangeParamsInStrings(QStringList &Strings, const QStringList &Params)
{
    ChangeParamsInStringsEx(Strings, Params, QStringLiteral("%"));
}

void ChangeParamsInStringsEx(QStringList &Strings, const QStringList &Params, const QString &Delim)
{
    const QHash<QString, QString> table = ParamTable(Params);
    for (QString &line : Strings)
        line = ReplaceParams(line, table, Delim);
}

bool ChangeParamsInFile(const QString &FileName, const QStringList &Params, const QString &Delim)
{
    QFile in(FileName);
    if (!in.open(QIODevice::ReadOnly))
        throw Exception(LoadStr(SErrFileRead).arg(FileName, in.errorString()));
    const QString text = QString::fromUtf8(in.readAll());
    in.close();
    const QString changed = ReplaceParams(text, ParamTable(Params), Delim);
    if (changed == text)
        return false;
    SaveStringToFile(FileName, changed);
    return true;
}

void ChangeParamsInFiles(const QStringList &FileNames, const QStringList &Params, const QString &Delim)
{
    for (const QString &name : FileNames)
        ChangeParamsInFile(name, Params, Delim);
}

} // namespace kv
