#pragma once

// A push button that shows a colour and lets the user pick another one.

#include <QColor>
#include <QPushButton>

class ColorSwatchButton : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged USER true)

public:
    explicit ColorSwatchButton(QWidget *parent = nullptr);

    QColor color() const { return m_color; }
    void setColor(const QColor &color);

Q_SIGNALS:
    void colorChanged(const QColor &color);

private:
    void chooseColor();
    void updateSwatch();

    QColor m_color = Qt::white;
};
