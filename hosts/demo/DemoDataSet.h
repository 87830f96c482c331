#pragma once

// A small in-memory table as an application's data module holds them: named fields (child
// objects whose dynamic properties describe each column), records, and a current record
// that data-aware forms follow.

#include <QList>
#include <QObject>
#include <QVariant>

class DemoDataSet : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString tableName READ tableName WRITE setTableName)
    Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY activeChanged)
    Q_PROPERTY(bool readOnly READ isReadOnly WRITE setReadOnly)
    Q_PROPERTY(int recNo READ recNo WRITE setRecNo NOTIFY recNoChanged)
    Q_PROPERTY(int recordCount READ recordCount STORED false)

public:
    explicit DemoDataSet(const QString &name, QObject *parent = nullptr);

    QString tableName() const { return m_tableName; }
    void setTableName(const QString &tableName) { m_tableName = tableName; }
    bool isActive() const { return m_active; }
    // Closing hides the records and the current record; opening goes to the first record.
    void setActive(bool active);
    bool isReadOnly() const { return m_readOnly; }
    void setReadOnly(bool readOnly) { m_readOnly = readOnly; }

    // The current record, 1-based; 0 when the set is closed or empty. Out-of-range values
    // are brought into range.
    int recNo() const { return m_recNo; }
    void setRecNo(int recNo);
    int recordCount() const { return m_active ? int(m_records.size()) : 0; }

    // Adds a field object (owned by the set) named after the set and the field ("CustomersTableCity").
    QObject *addField(const QString &fieldName, const QString &displayLabel,
                      const QString &dataType, int displayWidth, bool required = false);
    void appendRecord(const QVariantList &values);

    int fieldCount() const { return int(m_fields.size()); }
    QObject *field(int index) const { return m_fields.at(index); }
    int fieldIndex(const QString &fieldName) const;
    // The value of a field in a record (row is 0-based); invalid when closed or out of range.
    QVariant value(int row, int column) const;
    QVariant value(int row, const QString &fieldName) const;

public Q_SLOTS:
    void first() { setRecNo(1); }
    void prior() { setRecNo(m_recNo - 1); }
    void next() { setRecNo(m_recNo + 1); }
    void last() { setRecNo(recordCount()); }

Q_SIGNALS:
    void activeChanged(bool active);
    void recNoChanged(int recNo);
    // The fields or records changed, or the set was opened or closed.
    void recordsChanged();

private:
    void removeField(QObject *field);

    QString m_tableName;
    bool m_active = false;
    bool m_readOnly = false;
    int m_recNo = 0;
    QList<QObject *> m_fields;
    QList<QVariantList> m_records;
};
