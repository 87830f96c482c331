#include "hosts/demo/PlannerForm.h"

#include "hosts/demo/DemoDataModule.h"
#include "hosts/demo/DemoDataSet.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

PlannerForm::PlannerForm(DemoDataModule *dataModule, QWidget *parent)
    : QWidget(parent)
    , m_appointments(dataModule->appointmentsTable())
{
    setObjectName(u"PlannerForm"_s);
    setWindowTitle(tr("Planner"));
    resize(980, 680);

    const QStyle *style = this->style();
    auto *priorButton = new QToolButton(this);
    priorButton->setObjectName(u"PriorMonthButton"_s);
    priorButton->setIcon(style->standardIcon(QStyle::SP_ArrowLeft));
    priorButton->setToolTip(tr("Previous month"));
    connect(priorButton, &QToolButton::clicked, this, [this] { showMonth(m_month.addMonths(-1)); });
    auto *nextButton = new QToolButton(this);
    nextButton->setObjectName(u"NextMonthButton"_s);
    nextButton->setIcon(style->standardIcon(QStyle::SP_ArrowRight));
    nextButton->setToolTip(tr("Next month"));
    connect(nextButton, &QToolButton::clicked, this, [this] { showMonth(m_month.addMonths(1)); });
    auto *todayButton = new QPushButton(tr("&Today"), this);
    todayButton->setObjectName(u"TodayButton"_s);
    connect(todayButton, &QPushButton::clicked, this, [this] { showMonth(QDate::currentDate()); });
    m_monthLabel = new QLabel(this);
    m_monthLabel->setObjectName(u"MonthLabel"_s);
    QFont monthFont = m_monthLabel->font();
    monthFont.setPointSizeF(monthFont.pointSizeF() * 1.4);
    monthFont.setBold(true);
    m_monthLabel->setFont(monthFont);

    auto *header = new QHBoxLayout;
    header->addWidget(priorButton);
    header->addWidget(nextButton);
    header->addSpacing(8);
    header->addWidget(m_monthLabel, 1);
    header->addWidget(todayButton);

    auto *grid = new QGridLayout;
    grid->setSpacing(3);
    for (int column = 0; column < 7; ++column) {
        auto *dayName = new QLabel(this);
        dayName->setObjectName(u"DayNameLabel"_s + QString::number(column + 1));
        dayName->setAlignment(Qt::AlignCenter);
        grid->addWidget(dayName, 0, column);
        m_dayNames.append(dayName);
    }
    for (int index = 0; index < Weeks * 7; ++index) {
        const QString number = QString::number(index + 1);
        auto *panel = new QFrame(this);
        panel->setObjectName(u"DayPanel"_s + number);
        panel->setFrameShape(QFrame::StyledPanel);
        auto *label = new QLabel(panel);
        label->setObjectName(u"DayLabel"_s + number);
        auto *list = new QListWidget(panel);
        list->setObjectName(u"DayList"_s + number);
        list->setFrameShape(QFrame::NoFrame);
        list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        list->setTextElideMode(Qt::ElideRight);
        auto *panelLayout = new QVBoxLayout(panel);
        panelLayout->setContentsMargins(3, 2, 3, 3);
        panelLayout->setSpacing(1);
        panelLayout->addWidget(label);
        panelLayout->addWidget(list, 1);
        grid->addWidget(panel, 1 + index / 7, index % 7);
        m_days.append({panel, label, list});
    }
    for (int row = 1; row <= Weeks; ++row)
        grid->setRowStretch(row, 1);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(header);
    layout->addLayout(grid, 1);

    if (m_appointments)
        connect(m_appointments, &DemoDataSet::recordsChanged, this, &PlannerForm::fillDays);
    showMonth(QDate::currentDate());
}

QDate PlannerForm::firstShownDay() const
{
    const QDate first(m_month.year(), m_month.month(), 1);
    return first.addDays(-((first.dayOfWeek() - m_firstDayOfWeek + 7) % 7));
}

void PlannerForm::setFirstDayOfWeek(Qt::DayOfWeek day)
{
    m_firstDayOfWeek = day;
    fillDays();
}

void PlannerForm::setStocktake(const QDate &day)
{
    m_stocktake = day;
    fillDays();
}

void PlannerForm::showMonth(const QDate &date)
{
    if (!date.isValid())
        return;
    m_month = QDate(date.year(), date.month(), 1);
    if (m_monthLabel)
        m_monthLabel->setText(QLocale().standaloneMonthName(m_month.month()) + u' ' + QString::number(m_month.year()));
    fillDays();
}

void PlannerForm::fillDays()
{
    const QDate first = firstShownDay();
    const QDate today = QDate::currentDate();
    const QLocale locale;
    for (int column = 0; column < m_dayNames.size(); ++column) {
        if (m_dayNames.at(column))
            m_dayNames.at(column)->setText(locale.dayName(first.addDays(column).dayOfWeek(), QLocale::ShortFormat));
    }
    for (int index = 0; index < m_days.size(); ++index) {
        const DayCell &cell = m_days.at(index);
        const QDate day = first.addDays(index);
        const bool inMonth = day.month() == m_month.month();
        if (cell.label) {
            cell.label->setText(QString::number(day.day()));
            QFont font = cell.label->font();
            font.setBold(day == today);
            cell.label->setFont(font);
            cell.label->setEnabled(inMonth);
        }
        if (cell.list)
            cell.list->clear();
    }
    if (const qint64 index = first.daysTo(m_stocktake); m_stocktake.isValid() && index >= 0 && index < m_days.size()
                                                             && m_days.at(index).list) {
        auto *item = new QListWidgetItem(tr("Stocktake"), m_days.at(index).list);
        QFont bold = item->font();
        bold.setBold(true);
        item->setFont(bold);
    }
    const int count = m_appointments ? m_appointments->recordCount() : 0;
    for (int row = 0; row < count; ++row) {
        const QDateTime startsAt = m_appointments->value(row, u"StartsAt"_s).toDateTime();
        const qint64 index = first.daysTo(startsAt.date());
        if (index < 0 || index >= m_days.size() || !m_days.at(index).list)
            continue;
        const QString subject = m_appointments->value(row, u"Subject"_s).toString();
        auto *item = new QListWidgetItem(locale.toString(startsAt.time(), u"HH:mm"_s) + u' ' + subject,
                                         m_days.at(index).list);
        item->setToolTip(tr("%1, %2 minutes, with %3")
                             .arg(subject)
                             .arg(m_appointments->value(row, u"Minutes"_s).toInt())
                             .arg(m_appointments->value(row, u"With"_s).toString()));
    }
}
