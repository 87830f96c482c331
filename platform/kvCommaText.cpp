#include "platform/kvCommaText.h"

namespace kv {

QString QuotedCommaText(const QStringList &List)
{
    QStringList parts;
    parts.reserve(List.size());
    for (const QString &entry : List) {
        const bool quote = entry.isEmpty() || entry.contains(u',') || entry.contains(u'"')
                           || entry.front().isSpace() || entry.back().isSpace();
        if (!quote) {
            parts.append(entry);
            continue;
        }
        QString quoted = entry;
        quoted.replace(u'"', QStringLiteral("\"\""));
        parts.append(u'"' + quoted + u'"');
    }
    return parts.join(u',');
}

bool SplitQuotedCommaText(const QString &Text, QStringList &List)
{
    List.clear();
    if (Text.trimmed().isEmpty())
        return true;
    qsizetype i = 0;
    const qsizetype n = Text.size();
    for (;;) {
        while (i < n && Text.at(i).isSpace())
            ++i;
        QString entry;
        if (i < n && Text.at(i) == u'"') {
            for (++i;; ++i) {
                if (i >= n) {
                    List.clear();
                    return false; // unterminated quote
                }
                if (Text.at(i) == u'"') {
                    if (i + 1 < n && Text.at(i + 1) == u'"') {
                        entry.append(u'"');
                        ++i;
                        continue;
                    }
                    ++i;
                    break;
                }
                entry.append(Text.at(i));
            }
            while (i < n && Text.at(i).isSpace())
                ++i;
            if (i < n && Text.at(i) != u',') {
                List.clear();
                return false;
            }
        } else {
            const qsizetype comma = Text.indexOf(u',', i);
            const qsizetype end = comma < 0 ? n : comma;
            entry = Text.mid(i, end - i).trimmed();
            i = end;
        }
        List.append(entry);
        if (i >= n)
            return true;
        ++i; // the comma; one at the very end starts an empty last entry
    }
}

} // namespace kv
