#include "treesrc/ideTSLite_treesource.h"

namespace kv {

QString TreeCaption(const QString &Caption)
{
    const qsizetype bar = Caption.indexOf(QLatin1Char('|'));
    return bar < 0 ? Caption : Caption.left(bar);
}

QStringList CaptionColumns(const QString &Caption)
{
    return Caption.split(QLatin1Char('|'));
}

TTreeSource::TTreeSource(QObject *parent)
    : QObject(parent)
{
}

TTreeSource::~TTreeSource() = default;

} // namespace kv
