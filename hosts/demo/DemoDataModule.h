#pragma once

// The application's data module: a non-visual container of the connection, the tables and
// their data sources, timers and the actions that the forms share.

#include "platform/kvDataModule.h"

#include <QPointer>

class DemoDataSet;
class QAction;
class QActionGroup;
class QTimer;

class DemoDataModule : public kv::TDataModule
{
    Q_OBJECT
    Q_PROPERTY(QString databaseName READ databaseName WRITE setDatabaseName)
    Q_PROPERTY(bool connected READ isConnected WRITE setConnected NOTIFY connectedChanged)
    Q_PROPERTY(int ordersToday READ ordersToday NOTIFY statisticsChanged)
    Q_PROPERTY(int openOrders READ openOrders NOTIFY statisticsChanged)
    Q_PROPERTY(double openOrdersTotal READ openOrdersTotal NOTIFY statisticsChanged)

public:
    explicit DemoDataModule(QObject *parent = nullptr);

    QString databaseName() const { return m_databaseName; }
    void setDatabaseName(const QString &name) { m_databaseName = name; }
    bool isConnected() const { return m_connected; }
    // Disconnecting closes every table; connecting opens them again.
    void setConnected(bool connected);

    // Figures of the orders table for the dashboard; 0 while it is closed.
    int ordersToday() const { return m_ordersToday; }
    int openOrders() const { return m_openOrders; }
    double openOrdersTotal() const { return m_openOrdersTotal; }

    DemoDataSet *customersTable() const;
    DemoDataSet *ordersTable() const;
    DemoDataSet *itemsTable() const;
    DemoDataSet *appointmentsTable() const;
    // One of the shared actions by its object name ("DataSetFirst", "WindowCascade"…), or null.
    QAction *action(const QString &name) const;
    QActionGroup *viewModeGroup() const;

public Q_SLOTS:
    void updateStatistics();

Q_SIGNALS:
    void connectedChanged(bool connected);
    void statisticsChanged();

private:
    void createTables();
    void createActions();
    void updateNavigationActions();

    QString m_databaseName;
    bool m_connected = false;
    int m_ordersToday = 0;
    int m_openOrders = 0;
    double m_openOrdersTotal = 0;
    // Any of these may be deleted from outside while the program runs (an inspector can
    // delete any object), hence the guarded pointers.
    QPointer<QObject> m_connection;
    QPointer<DemoDataSet> m_customers;
    QPointer<DemoDataSet> m_orders;
    QPointer<DemoDataSet> m_items;
    QPointer<DemoDataSet> m_suppliers;
    QPointer<DemoDataSet> m_appointments;
    QPointer<QObject> m_actionList;
    QPointer<QActionGroup> m_viewModeGroup;
    QPointer<QTimer> m_statisticsTimer;
};
