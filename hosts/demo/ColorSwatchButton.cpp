#include "hosts/demo/ColorSwatchButton.h"

#include <QColorDialog>
#include <QPainter>
#include <QPixmap>

ColorSwatchButton::ColorSwatchButton(QWidget *parent)
    : QPushButton(parent)
{
    setIconSize(QSize(32, 14));
    connect(this, &QPushButton::clicked, this, &ColorSwatchButton::chooseColor);
    updateSwatch();
}

void ColorSwatchButton::setColor(const QColor &color)
{
    if (color == m_color)
        return;
    m_color = color;
    updateSwatch();
    Q_EMIT colorChanged(m_color);
}

void ColorSwatchButton::chooseColor()
{
    const QColor chosen = QColorDialog::getColor(m_color, this, tr("Select Colour"));
    if (chosen.isValid())
        setColor(chosen);
}

void ColorSwatchButton::updateSwatch()
{
    QPixmap swatch(iconSize());
    swatch.fill(m_color);
    QPainter painter(&swatch);
    painter.setPen(palette().color(QPalette::Shadow));
    painter.drawRect(swatch.rect().adjusted(0, 0, -1, -1));
    painter.end();
    setIcon(QIcon(swatch));
    setText(m_color.name().toUpper());
}
