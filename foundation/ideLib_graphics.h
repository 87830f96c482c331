#pragma once

#include "kv_export.h"

// Geometry, painting and font helpers. Rectangles are QRects taken by position and size.

#include <QRect>

class QColor;
class QFont;
class QImage;
class QPainter;
class QPixmap;
class QPoint;
class QString;

namespace kv {

enum THorzAlignment { haNone, haLeft, haCenter, haRight };
// vaLeft is the top and vaRight the bottom.
enum TVertAlignment { vaNone, vaLeft, vaCenter, vaRight };

// R placed inside Bounds by the alignments, keeping its size; haNone and vaNone keep R's own
// position on that axis.
KV_EXPORT QRect AlignRectByRect(const QRect &R, const QRect &Bounds, THorzAlignment Horz, TVertAlignment Vert);
// R moved, not resized, so that it lies inside Bounds as far as it can: one larger than Bounds
// keeps its left (top) edge on Bounds'.
KV_EXPORT QRect CorrectRectByRect(const QRect &R, const QRect &Bounds);

// Fills R with Background, then draws Text in it with the QPainter text flags Flags
// (Qt::AlignmentFlag and Qt::TextFlag).
KV_EXPORT void DrawTextWithFill(QPainter &Painter, const QRect &R, const QString &Text, int Flags, const QColor &Background);

// The colour of Image's pixel at R's left bottom corner: the colour that bitmaps of the
// platform mark transparent with. Invalid when that pixel is outside the image.
KV_EXPORT QColor GetTransparentColor(const QImage &Image, const QRect &R);
// Draws the part SourceRect of Source at Dest, leaving out the pixels of TransparentColor;
// the Ex form takes that colour from SourceRect's left bottom pixel.
KV_EXPORT void TransparentBitBlt(QPainter &Painter, const QPoint &Dest, const QPixmap &Source, const QRect &SourceRect,
                       const QColor &TransparentColor);
KV_EXPORT void TransparentBitBltEx(QPainter &Painter, const QPoint &Dest, const QPixmap &Source, const QRect &SourceRect);

// Whether the font that Font resolves to has a fixed pitch.
KV_EXPORT bool IsFontMonoSpaced(const QFont &Font);

// The size of a check box indicator in the current style.
KV_EXPORT int DefaultCheckWidth();
KV_EXPORT int DefaultCheckHeight();

} // namespace kv
