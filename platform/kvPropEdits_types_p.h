#pragma once

// Private to the library: the parts of the value classes, as the property editors show them
// and component streams write them.

#include "platform/kvPropInfo.h"

#include <QList>
#include <QMetaType>

namespace kv::detail {

// A font's parts: Name, Size (in whole points), Style, Weight, PixelSize, Stretch, Kerning,
// Overline, FixedPitch.
const QList<TValuePart> &FontParts();

// The parts of QSize, QPoint, QRect, their F forms, QMargins, QMarginsF and QSizePolicy; null
// for any other type.
const QList<TValuePart> *ValueClassParts(QMetaType Type);

} // namespace kv::detail
