#pragma once

// Objects with one property of each kind and type that the design-time framework handles,
// shared by the editor and the stream tests.

#include "platform/kvColor.h"

#include <QColor>
#include <QCursor>
#include <QDate>
#include <QDateTime>
#include <QFont>
#include <QImage>
#include <QKeySequence>
#include <QLocale>
#include <QMargins>
#include <QObject>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QSizePolicy>
#include <QStringList>
#include <QTime>
#include <QTimer>
#include <QVariant>

// One property of each kind the standard editors handle.
class TKinds : public QObject
{
    Q_OBJECT
    Q_PROPERTY(TMode mode MEMBER m_mode)
    Q_PROPERTY(Qt::Alignment alignment MEMBER m_alignment)
    Q_PROPERTY(bool flag MEMBER m_flag)
    Q_PROPERTY(int number MEMBER m_number)
    Q_PROPERTY(qint64 big MEMBER m_big)
    Q_PROPERTY(quint64 huge MEMBER m_huge)
    Q_PROPERTY(double ratio MEMBER m_ratio)
    Q_PROPERTY(float single MEMBER m_single)
    Q_PROPERTY(QString text MEMBER m_text)
    Q_PROPERTY(QChar letter MEMBER m_letter)
    Q_PROPERTY(QObject *link MEMBER m_link)
    Q_PROPERTY(QTimer *part READ part) // held, and shown through its own properties
    Q_PROPERTY(QVariant any MEMBER m_any)
    Q_PROPERTY(int fixed READ fixed)
    Q_PROPERTY(QLocale locale MEMBER m_locale)

public:
    enum TMode { mdOne, mdTwo, mdThree = 7 };
    Q_ENUM(TMode)
    Q_INVOKABLE explicit TKinds(QObject *parent = nullptr) : QObject(parent) {}
    QTimer *part() { return &m_part; }
    int fixed() const { return 42; }

    TMode m_mode = mdTwo;
    Qt::Alignment m_alignment = Qt::AlignLeft | Qt::AlignTop;
    bool m_flag = true;
    int m_number = -12;
    qint64 m_big = -9000000000LL;
    quint64 m_huge = 18000000000000000000ULL;
    double m_ratio = 0.1 + 0.2;
    float m_single = 0.1f;
    QString m_text = QStringLiteral("Hello");
    QChar m_letter = u'x';
    QObject *m_link = nullptr;
    QTimer m_part{this};
    QVariant m_any = 5;
    QLocale m_locale = QLocale::c();
};

// One property of every type that the editors under test handle, and a read-only one.
class TTypesHolder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(kv::TColor color MEMBER m_color)
    Q_PROPERTY(QColor qcolor MEMBER m_qcolor)
    Q_PROPERTY(QFont font MEMBER m_font)
    Q_PROPERTY(QCursor cursor MEMBER m_cursor)
    Q_PROPERTY(QKeySequence shortcut MEMBER m_shortcut)
    Q_PROPERTY(QDate date MEMBER m_date)
    Q_PROPERTY(QTime time MEMBER m_time)
    Q_PROPERTY(QDateTime dateTime MEMBER m_dateTime)
    Q_PROPERTY(QStringList items MEMBER m_items)
    Q_PROPERTY(QSize size MEMBER m_size)
    Q_PROPERTY(QSizeF sizeF MEMBER m_sizeF)
    Q_PROPERTY(QPoint point MEMBER m_point)
    Q_PROPERTY(QRect rect MEMBER m_rect)
    Q_PROPERTY(QRectF rectF MEMBER m_rectF)
    Q_PROPERTY(QMargins margins MEMBER m_margins)
    Q_PROPERTY(QSizePolicy sizePolicy MEMBER m_sizePolicy)
    Q_PROPERTY(QPixmap pixmap READ pixmap WRITE setPixmap)
    Q_PROPERTY(QImage image MEMBER m_image)
    Q_PROPERTY(QColor fixedColor READ fixedColor)

public:
    // Values that no test row uses, so that writing a row's text has something to change.
    Q_INVOKABLE explicit TTypesHolder(QObject *parent = nullptr) : QObject(parent)
    {
        setObjectName(QStringLiteral("holder"));
        m_font.setPointSizeF(10.5);
        m_font.setWeight(QFont::DemiBold);
        m_sizePolicy.setHeightForWidth(true);
    }
    QPixmap pixmap() const { return m_pixmap; }
    void setPixmap(const QPixmap &Pixmap) { m_pixmap = Pixmap; }
    QColor fixedColor() const { return Qt::blue; }

    kv::TColor m_color = kv::clBtnFace;
    QColor m_qcolor = QColor(7, 7, 7);
    QFont m_font;
    QCursor m_cursor = QCursor(Qt::CrossCursor);
    QKeySequence m_shortcut = QKeySequence(QStringLiteral("Alt+Q"));
    QDate m_date = QDate(1999, 9, 9);
    QTime m_time = QTime(9, 9, 9);
    QDateTime m_dateTime = QDateTime(QDate(1999, 9, 9), QTime(9, 9, 9));
    QStringList m_items = {QStringLiteral("seed")};
    QSize m_size = QSize(9, 9);
    QSizeF m_sizeF = QSizeF(9.5, 9.5);
    QPoint m_point = QPoint(9, 9);
    QRect m_rect = QRect(9, 9, 9, 9);
    QRectF m_rectF = QRectF(9.5, 9.5, 9.5, 9.5);
    QMargins m_margins = QMargins(9, 9, 9, 9);
    QSizePolicy m_sizePolicy = QSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    QPixmap m_pixmap;
    QImage m_image;
};
