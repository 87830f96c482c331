#include "foundation/ideLib_graphics.h"

#include <QApplication>
#include <QBitmap>
#include <QColor>
#include <QFontInfo>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QPoint>
#include <QStyle>

namespace kv {

namespace {

int AlignOnAxis(int position, int size, int boundsStart, int boundsSize, int mode)
{
    switch (mode) {
    case 1:
        return boundsStart;
    case 2:
        return boundsStart + (boundsSize - size) / 2;
    case 3:
        return boundsStart + boundsSize - size;
    default:
        return position;
    }
}

int CorrectOnAxis(int position, int size, int boundsStart, int boundsSize)
{
    if (position + size > boundsStart + boundsSize)
        position = boundsStart + boundsSize - size;
    if (position < boundsStart)
        position = boundsStart;
    return position;
}

int IndicatorMetric(QStyle::PixelMetric metric)
{
    QStyle *style = qobject_cast<QApplication *>(QCoreApplication::instance()) ? QApplication::style() : nullptr;
    // Without widgets there is no style: the classic check box is 13 pixels square.
    constexpr int ClassicCheckSize = 13;
    return style ? style->pixelMetric(metric) : ClassicCheckSize;
}

} // namespace

QRect AlignRectByRect(const QRect &R, const QRect &Bounds, THorzAlignment Horz, TVertAlignment Vert)
{
    return QRect(AlignOnAxis(R.x(), R.width(), Bounds.x(), Bounds.width(), Horz),
                 AlignOnAxis(R.y(), R.height(), Bounds.y(), Bounds.height(), Vert), R.width(), R.height());
}

QRect CorrectRectByRect(const QRect &R, const QRect &Bounds)
{
    return QRect(CorrectOnAxis(R.x(), R.width(), Bounds.x(), Bounds.width()),
                 CorrectOnAxis(R.y(), R.height(), Bounds.y(), Bounds.height()), R.width(), R.height());
}

void DrawTextWithFill(QPainter &Painter, const QRect &R, const QString &Text, int Flags, const QColor &Background)
{
    Painter.fillRect(R, Background);
    Painter.drawText(R, Flags, Text);
}

QColor GetTransparentColor(const QImage &Image, const QRect &R)
{
    const QPoint corner(R.x(), R.y() + R.height() - 1);
    if (!Image.valid(corner))
        return {};
    return Image.pixelColor(corner);
}

void TransparentBitBlt(QPainter &Painter, const QPoint &Dest, const QPixmap &Source, const QRect &SourceRect,
                       const QColor &TransparentColor)
{
    QPixmap part = Source.copy(SourceRect);
    if (TransparentColor.isValid())
        part.setMask(part.createMaskFromColor(TransparentColor, Qt::MaskInColor));
    Painter.drawPixmap(Dest, part);
}

void TransparentBitBltEx(QPainter &Painter, const QPoint &Dest, const QPixmap &Source, const QRect &SourceRect)
{
    TransparentBitBlt(Painter, Dest, Source, SourceRect, GetTransparentColor(Source.toImage(), SourceRect));
}

bool IsFontMonoSpaced(const QFont &Font)
{
    return QFontInfo(Font).fixedPitch();
}

int DefaultCheckWidth()
{
    return IndicatorMetric(QStyle::PM_IndicatorWidth);
}

int DefaultCheckHeight()
{
    return IndicatorMetric(QStyle::PM_IndicatorHeight);
}

} // namespace kv
