#pragma once

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
QRect AlignRectByRect(const QRect &R, const QRect &Bounds, THorzAlignment Horz, TVertAlignment Vert);
// R moved, not resized, so that it lies inside Bounds as far as it can: one larger than Bounds
// keeps its left (top) edge on Bounds'.
QRect CorrectRectByRect(const QRect &R, const QRect &Bounds);

// Fills R with Background, then draws Text in it with the QPainter text flags Flags
// (Qt::AlignmentFlag and Qt::TextFlag).
void DrawTextWithFill(QPainter &Painter, const QRect &R, const QString &Text, int Flags, const QColor &Background);

// The colour of Image's pixel at R's left bottom corner: the colour that bitmaps of the
// platform mark transparent with. Invalid when that pixel is outside the image.
QColor GetTransparentColor(const QImage &Image, const QRect &R);
// Draws the part SourceRect of Source at Dest, leaving out the pixels of TransparentColor;
// the Ex form takes that colour from SourceRect's left bottom pixel.
void TransparentBitBlt(QPainter &Painter, const QPoint &Dest, const QPixmap &Source, const QRect &SourceRect,
                       const QColor &TransparentColor);
void TransparentBitBltEx(QPainter &Painter, const QPoint &Dest, const QPixmap &Source, const QRect &SourceRect);

// Whether the font that Font resolves to has a fixed pitch.
bool IsFontMonoSpaced(const QFont &Font);

// The size of a check box indicator in the current style.
int DefaultCheckWidth();
int DefaultCheckHeight();

} // namespace kv
