#include "hosts/demo/DemoDataSet.h"

#include <algorithm>

using namespace Qt::StringLiterals;

DemoDataSet::DemoDataSet(const QString &name, QObject *parent)
    : QObject(parent)
{
    setObjectName(name);
}

void DemoDataSet::setActive(bool active)
{
    if (active == m_active)
        return;
    m_active = active;
    Q_EMIT activeChanged(m_active);
    Q_EMIT recordsChanged();
    const int recNo = m_active && !m_records.isEmpty() ? 1 : 0;
    if (recNo != m_recNo) {
        m_recNo = recNo;
        Q_EMIT recNoChanged(m_recNo);
    }
}

void DemoDataSet::setRecNo(int recNo)
{
    const int count = recordCount();
    recNo = count == 0 ? 0 : std::clamp(recNo, 1, count);
    if (recNo == m_recNo)
        return;
    m_recNo = recNo;
    Q_EMIT recNoChanged(m_recNo);
}

QObject *DemoDataSet::addField(const QString &fieldName, const QString &displayLabel,
                               const QString &dataType, int displayWidth, bool required)
{
    auto *field = new QObject(this);
    field->setObjectName(objectName() + fieldName);
    field->setProperty("fieldName", fieldName);
    field->setProperty("displayLabel", displayLabel);
    field->setProperty("dataType", dataType);
    field->setProperty("displayWidth", displayWidth);
    field->setProperty("required", required);
    field->setProperty("dataSet", QVariant::fromValue<QObject *>(this));
    m_fields.append(field);
    // A field may be deleted from outside (an inspector can delete any object): its column
    // goes with it.
    connect(field, &QObject::destroyed, this, [this](QObject *gone) { removeField(gone); });
    return field;
}

void DemoDataSet::appendRecord(const QVariantList &values)
{
    QVariantList record = values;
    record.resize(m_fields.size());
    m_records.append(record);
    Q_EMIT recordsChanged();
    if (m_active && m_recNo == 0) {
        m_recNo = 1;
        Q_EMIT recNoChanged(m_recNo);
    }
}

void DemoDataSet::removeField(QObject *field)
{
    const qsizetype index = m_fields.indexOf(field);
    if (index < 0)
        return;
    m_fields.removeAt(index);
    for (QVariantList &record : m_records)
        record.removeAt(index);
    Q_EMIT recordsChanged();
}

int DemoDataSet::fieldIndex(const QString &fieldName) const
{
    for (int i = 0; i < m_fields.size(); ++i) {
        if (m_fields.at(i)->property("fieldName").toString().compare(fieldName, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

QVariant DemoDataSet::value(int row, int column) const
{
    if (!m_active || row < 0 || row >= m_records.size() || column < 0 || column >= m_fields.size())
        return {};
    return m_records.at(row).at(column);
}

QVariant DemoDataSet::value(int row, const QString &fieldName) const
{
    return value(row, fieldIndex(fieldName));
}
