#pragma once

// A month planner: one panel per day, each listing the day's appointments.

#include <QDate>
#include <QList>
#include <QPointer>
#include <QWidget>

class DemoDataModule;
class DemoDataSet;
class QLabel;
class QListWidget;

class PlannerForm : public QWidget
{
    Q_OBJECT

public:
    // Six weeks of seven days: every month fits.
    static constexpr int Weeks = 6;

    explicit PlannerForm(DemoDataModule *dataModule, QWidget *parent = nullptr);

    QDate month() const { return m_month; }
    // Shows the month of date (any day of it).
    void showMonth(const QDate &date);
    // The first day shown: the first day of the week on or before the first of the month.
    QDate firstShownDay() const;
    Qt::DayOfWeek firstDayOfWeek() const { return m_firstDayOfWeek; }
    void setFirstDayOfWeek(Qt::DayOfWeek day);
    // The day of the next stocktake, shown as an entry of its own (none when invalid).
    void setStocktake(const QDate &day);

private:
    void fillDays();

    struct DayCell
    {
        QPointer<QWidget> panel;
        QPointer<QLabel> label;
        QPointer<QListWidget> list;
    };

    QPointer<DemoDataSet> m_appointments;
    QPointer<QLabel> m_monthLabel;
    QList<DayCell> m_days;
    QList<QPointer<QLabel>> m_dayNames;
    QDate m_month;
    QDate m_stocktake;
    Qt::DayOfWeek m_firstDayOfWeek = Qt::Monday;
};
