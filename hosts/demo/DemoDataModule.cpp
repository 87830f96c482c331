#include "hosts/demo/DemoDataModule.h"

#include "hosts/demo/DemoDataSet.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QDate>
#include <QDateTime>
#include <QStyle>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

struct CustomerRow
{
    int custNo;
    const char *company, *city, *country, *phone;
    double creditLimit;
};

const CustomerRow Customers[] = {
    {1221, "Kauai Dive Shoppe", "Kapaa Kauai", "US", "808-555-0269", 5000},
    {1231, "Unisco", "Freeport", "Bahamas", "809-555-3915", 7500},
    {1351, "Sight Diver", "Kato Paphos", "Cyprus", "357-6-876708", 10000},
    {1354, "Cayman Divers World Unlimited", "Grand Cayman", "British West Indies", "011-5-697044", 2500},
    {1356, "Tom Sawyer Diving Centre", "Christiansted", "US Virgin Islands", "504-798-3022", 15000},
    {1380, "Blue Jack Aqua Center", "Waipahu", "US", "401-609-7623", 5000},
    {1384, "VIP Divers Club", "Christiansted", "US Virgin Islands", "809-453-5976", 7500},
    {1510, "Ocean Paradise", "Kailua-Kona", "US", "808-555-8231", 10000},
    {1513, "Fantastique Aquatica", "Bogota", "Columbia", "057-1-773434", 2500},
    {1551, "Marmot Divers Club", "Kitchener", "Canada", "416-698-0399", 5000},
    {1560, "The Depth Charge", "Marathon", "US", "800-555-3798", 12500},
    {1563, "Blue Sports", "Giribaldi", "US", "610-772-6704", 5000},
    {1624, "Makai SCUBA Club", "Kailua-Kona", "US", "317-649-9098", 7500},
    {1645, "Action Club", "Sarasota", "US", "813-870-0239", 20000},
    {1651, "Jamaica SCUBA Centre", "Negril", "Jamaica", "011-3-697043", 5000},
    {1680, "Island Finders", "St Simons Isle", "US", "713-423-5675", 10000},
    {1984, "Adventure Undersea", "Belize City", "Belize", "011-34-09054", 2500},
    {2118, "Blue Sports Club", "Largo", "US", "612-897-0342", 7500},
    {2135, "Frank's Divers Supply", "Eugene", "US", "503-555-2778", 5000},
    {2156, "Davy Jones' Locker", "Vancouver", "Canada", "803-509-0112", 15000},
    {2163, "SCUBA Heaven", "Nassau", "Bahamas", "011-32-09485", 10000},
    {2165, "Shangri-La Sports Center", "Freeport", "Bahamas", "011-32-09485", 5000},
    {2315, "Divers of Corfu, Inc.", "Ipsos", "Greece", "30-661-88810", 7500},
    {2354, "Kirk Enterprises", "Houston", "US", "713-556-6437", 12500},
};

struct OrderRow
{
    int orderNo;
    int daysAgo;
    int custNo;
    int lines;
    double total;
    const char *status;
};

const OrderRow Orders[] = {
    {1003, 0, 1351, 3, 1250.00, "Open"},       {1004, 0, 2156, 1, 3849.50, "Open"},
    {1005, 0, 1356, 4, 472.25, "Packed"},      {1006, 1, 1380, 2, 129.90, "Shipped"},
    {1007, 1, 1384, 6, 2114.00, "Shipped"},    {1008, 1, 1510, 1, 88.40, "Invoiced"},
    {1009, 2, 1513, 5, 906.75, "Invoiced"},    {1010, 2, 1551, 2, 315.00, "Paid"},
    {1011, 3, 1560, 8, 5210.10, "Paid"},       {1012, 3, 1563, 3, 642.80, "Paid"},
    {1013, 4, 1624, 2, 219.99, "Paid"},        {1014, 5, 1645, 7, 7320.00, "Paid"},
    {1015, 6, 1651, 1, 59.00, "Cancelled"},    {1016, 6, 1680, 4, 1388.60, "Paid"},
    {1017, 7, 1221, 3, 774.30, "Paid"},
};

struct ItemRow
{
    const char *category, *group, *name, *code;
    double price;
    int stock;
};

const ItemRow Items[] = {
    {"Hardware", "Fasteners", "Wood screw 4 x 40 mm (200)", "HW-1001", 6.90, 540},
    {"Hardware", "Fasteners", "Machine screw M5 x 20 (100)", "HW-1002", 4.80, 310},
    {"Hardware", "Fasteners", "Hex nut M5 (100)", "HW-1003", 2.95, 420},
    {"Hardware", "Fasteners", "Washer M5 (100)", "HW-1004", 1.90, 610},
    {"Hardware", "Hinges", "Butt hinge 75 mm", "HW-1101", 3.40, 95},
    {"Hardware", "Hinges", "Piano hinge 1 m", "HW-1102", 12.50, 18},
    {"Hardware", "Hinges", "Concealed cabinet hinge", "HW-1103", 4.20, 140},
    {"Hardware", "Locks", "Cylinder lock 30/30", "HW-1201", 24.90, 36},
    {"Hardware", "Locks", "Padlock 40 mm", "HW-1202", 9.95, 52},
    {"Tools", "Hand tools", "Claw hammer 450 g", "TL-2001", 14.90, 44},
    {"Tools", "Hand tools", "Screwdriver set (6)", "TL-2002", 19.90, 61},
    {"Tools", "Hand tools", "Adjustable wrench 250 mm", "TL-2003", 16.50, 27},
    {"Tools", "Hand tools", "Combination pliers 180 mm", "TL-2004", 11.20, 33},
    {"Tools", "Power tools", "Cordless drill 18 V", "TL-2101", 129.00, 12},
    {"Tools", "Power tools", "Jigsaw 650 W", "TL-2102", 89.00, 9},
    {"Tools", "Power tools", "Angle grinder 125 mm", "TL-2103", 69.00, 14},
    {"Tools", "Measuring", "Tape measure 5 m", "TL-2201", 7.90, 88},
    {"Tools", "Measuring", "Spirit level 60 cm", "TL-2202", 18.40, 23},
    {"Tools", "Measuring", "Digital caliper 150 mm", "TL-2203", 29.90, 11},
    {"Paint", "Interior", "Wall paint white 10 l", "PT-3001", 49.90, 40},
    {"Paint", "Interior", "Ceiling paint 5 l", "PT-3002", 27.50, 22},
    {"Paint", "Interior", "Primer 2.5 l", "PT-3003", 21.90, 30},
    {"Paint", "Exterior", "Wood stain oak 2.5 l", "PT-3101", 32.00, 16},
    {"Paint", "Exterior", "Masonry paint grey 10 l", "PT-3102", 58.00, 8},
    {"Paint", "Brushes and rollers", "Flat brush 50 mm", "PT-3201", 4.50, 120},
    {"Paint", "Brushes and rollers", "Roller set 18 cm", "PT-3202", 12.90, 45},
    {"Paint", "Brushes and rollers", "Masking tape 50 m", "PT-3203", 3.20, 200},
    {"Electrical", "Cables", "Installation cable 3 x 1.5 mm, 50 m", "EL-4001", 45.00, 19},
    {"Electrical", "Cables", "Extension cord 10 m", "EL-4002", 15.90, 34},
    {"Electrical", "Switches", "Rocker switch, white", "EL-4101", 5.60, 150},
    {"Electrical", "Switches", "Dimmer switch 400 W", "EL-4102", 21.00, 26},
    {"Electrical", "Switches", "Double socket outlet", "EL-4103", 7.80, 98},
    {"Electrical", "Lighting", "LED bulb E27 9 W", "EL-4201", 3.90, 300},
    {"Electrical", "Lighting", "LED strip 5 m", "EL-4202", 24.50, 21},
    {"Electrical", "Lighting", "Outdoor wall lamp", "EL-4203", 39.00, 7},
    {"Electrical", "Lighting", "Work light 30 W", "EL-4204", 29.90, 18},
    {"Electrical", "Cables", "Cable ties 200 mm (100)", "EL-4003", 3.40, 260},
    {"Electrical", "Switches", "Motion sensor switch", "EL-4104", 18.90, 12},
    {"Hardware", "Fasteners", "Wall plugs 8 mm (100)", "HW-1005", 3.60, 380},
    {"Hardware", "Fasteners", "Threaded rod M8 x 1 m", "HW-1006", 2.80, 75},
    {"Hardware", "Brackets", "Shelf bracket 200 mm", "HW-1301", 2.40, 160},
    {"Hardware", "Brackets", "Angle bracket 40 mm (10)", "HW-1302", 4.10, 90},
    {"Hardware", "Brackets", "Heavy duty bracket 300 mm", "HW-1303", 7.90, 22},
    {"Hardware", "Locks", "Door chain", "HW-1203", 6.50, 41},
    {"Tools", "Hand tools", "Hacksaw 300 mm", "TL-2005", 12.90, 19},
    {"Tools", "Hand tools", "Utility knife", "TL-2006", 5.90, 74},
    {"Tools", "Power tools", "Random orbit sander", "TL-2104", 79.00, 6},
    {"Tools", "Power tools", "Circular saw 1200 W", "TL-2105", 119.00, 5},
    {"Tools", "Measuring", "Laser distance meter", "TL-2204", 49.00, 10},
    {"Tools", "Storage", "Tool box 19 inch", "TL-2301", 24.90, 15},
    {"Tools", "Storage", "Organiser with 24 drawers", "TL-2302", 32.50, 9},
    {"Paint", "Interior", "Kitchen and bath paint 2.5 l", "PT-3004", 29.90, 14},
    {"Paint", "Exterior", "Metal paint black 750 ml", "PT-3103", 17.50, 27},
    {"Paint", "Exterior", "Fence paint green 5 l", "PT-3104", 34.90, 12},
    {"Paint", "Brushes and rollers", "Paint tray", "PT-3204", 3.90, 95},
    {"Paint", "Brushes and rollers", "Radiator roller 10 cm", "PT-3205", 4.90, 38},
    {"Garden", "Watering", "Garden hose 25 m", "GD-5001", 27.90, 17},
    {"Garden", "Watering", "Hose connector set", "GD-5002", 8.90, 44},
    {"Garden", "Watering", "Watering can 10 l", "GD-5003", 9.90, 23},
    {"Garden", "Tools", "Spade", "GD-5101", 22.90, 13},
    {"Garden", "Tools", "Pruning shears", "GD-5102", 15.90, 29},
    {"Garden", "Tools", "Leaf rake", "GD-5103", 11.50, 16},
};

struct SupplierRow
{
    const char *name, *city, *contact;
};

const SupplierRow Suppliers[] = {
    {"Nordic Fasteners AB", "Gothenburg", "Lena Berg"},
    {"Rhein Werkzeug GmbH", "Cologne", "Jan Vogel"},
    {"Colour & Coat Ltd", "Leeds", "Amy Hart"},
    {"Voltline S.r.l.", "Bologna", "Marco Conti"},
};

struct AppointmentRow
{
    int daysFromToday;
    int hour, minute, minutes;
    const char *subject, *with;
};

const AppointmentRow Appointments[] = {
    {-18, 9, 0, 60, "Quarterly stock count", "Warehouse"},
    {-15, 14, 30, 45, "Price review", "Rhein Werkzeug GmbH"},
    {-11, 10, 0, 30, "Delivery complaint", "Kauai Dive Shoppe"},
    {-9, 8, 30, 90, "Sales meeting", "Sales team"},
    {-6, 16, 0, 30, "Call about order 1014", "Action Club"},
    {-4, 11, 0, 60, "New paint range", "Colour & Coat Ltd"},
    {-2, 9, 0, 30, "Team stand-up", "Sales team"},
    {-1, 13, 0, 60, "Lunch with a supplier", "Nordic Fasteners AB"},
    {0, 9, 0, 30, "Team stand-up", "Sales team"},
    {0, 11, 30, 45, "Credit limit review", "Action Club"},
    {0, 15, 0, 60, "Interview: warehouse assistant", "Human resources"},
    {1, 10, 0, 30, "Call back about order 1004", "Davy Jones' Locker"},
    {2, 9, 0, 120, "Shop fitting", "Shop floor"},
    {3, 14, 0, 60, "Trade fair planning", "Marketing"},
    {5, 9, 0, 30, "Team stand-up", "Sales team"},
    {6, 16, 30, 30, "Delivery of power tools", "Rhein Werkzeug GmbH"},
    {8, 10, 0, 90, "Training: new till system", "Shop floor"},
    {10, 13, 30, 60, "Account review", "The Depth Charge"},
    {12, 9, 0, 30, "Team stand-up", "Sales team"},
    {13, 11, 0, 60, "Lighting range presentation", "Voltline S.r.l."},
    {16, 15, 0, 45, "Year-end budget", "Management"},
    {19, 9, 0, 30, "Team stand-up", "Sales team"},
    {21, 10, 30, 60, "Visit", "Marmot Divers Club"},
    {24, 14, 0, 30, "Insurance renewal", "Office"},
    {27, 9, 0, 240, "Stocktake", "Warehouse"},
    {33, 11, 0, 60, "Quarterly review", "Management"},
};

struct EmployeeRow
{
    int empNo;
    const char *firstName, *lastName, *phoneExt;
    int hireYear;
    double salary;
};

const EmployeeRow Employees[] = {
    {2, "Robert", "Nelson", "250", 2009, 4060},   {4, "Bruce", "Young", "233", 2009, 4470},
    {5, "Kim", "Lambert", "22", 2010, 3200},      {8, "Leslie", "Johnson", "410", 2012, 3350},
    {9, "Phil", "Forest", "229", 2013, 3750},     {11, "Kelly", "Brown", "202", 2015, 2270},
    {12, "Terri", "Lee", "256", 2016, 4100},      {14, "Stewart", "Hall", "227", 2017, 3690},
    {15, "Katherine", "Young", "231", 2018, 2890}, {20, "Chris", "Papadopoulos", "887", 2019, 4250},
    {24, "Pete", "Fisher", "888", 2021, 3110},    {28, "Ann", "Bennet", "5", 2023, 2290},
};

QString Text(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

DemoDataModule::DemoDataModule(QObject *parent)
    : kv::TDataModule(parent)
    , m_databaseName(u"korvo-demo.db"_s)
{
    setObjectName(u"DataModule1"_s);

    m_connection = new QObject(this);
    m_connection->setObjectName(u"Connection1"_s);
    m_connection->setProperty("driverName", u"QSQLITE"_s);
    m_connection->setProperty("hostName", u"localhost"_s);
    m_connection->setProperty("port", 5432);
    m_connection->setProperty("userName", u"demo"_s);
    m_connection->setProperty("loginPrompt", false);

    createTables();
    createActions();

    // "Orders today" changes at midnight without any change to the table.
    m_statisticsTimer = new QTimer(this);
    m_statisticsTimer->setObjectName(u"StatisticsTimer"_s);
    m_statisticsTimer->setInterval(60'000);
    connect(m_statisticsTimer, &QTimer::timeout, this, &DemoDataModule::updateStatistics);
    connect(m_orders, &DemoDataSet::recordsChanged, this, &DemoDataModule::updateStatistics);

    setConnected(true);
}

void DemoDataModule::createTables()
{
    m_customers = new DemoDataSet(u"CustomersTable"_s, this);
    m_customers->setTableName(u"customer"_s);
    m_customers->addField(u"CustNo"_s, tr("Cust. No."), u"Integer"_s, 8, true);
    m_customers->addField(u"Company"_s, tr("Company"), u"String"_s, 30, true);
    m_customers->addField(u"City"_s, tr("City"), u"String"_s, 15);
    m_customers->addField(u"Country"_s, tr("Country"), u"String"_s, 20);
    m_customers->addField(u"Phone"_s, tr("Phone"), u"String"_s, 15);
    m_customers->addField(u"CreditLimit"_s, tr("Credit Limit"), u"Currency"_s, 12);
    for (const CustomerRow &row : Customers)
        m_customers->appendRecord({row.custNo, Text(row.company), Text(row.city),
                                   Text(row.country), Text(row.phone), row.creditLimit});

    m_orders = new DemoDataSet(u"OrdersTable"_s, this);
    m_orders->setTableName(u"orders"_s);
    m_orders->addField(u"OrderNo"_s, tr("Order No."), u"Integer"_s, 8, true);
    m_orders->addField(u"SaleDate"_s, tr("Date"), u"Date"_s, 10, true);
    m_orders->addField(u"CustNo"_s, tr("Cust. No."), u"Integer"_s, 8, true);
    m_orders->addField(u"Company"_s, tr("Customer"), u"String"_s, 30);
    m_orders->addField(u"Lines"_s, tr("Lines"), u"Integer"_s, 5);
    m_orders->addField(u"ItemsTotal"_s, tr("Total"), u"Currency"_s, 12);
    m_orders->addField(u"Status"_s, tr("Status"), u"String"_s, 10);
    const QDate today = QDate::currentDate();
    for (const OrderRow &row : Orders) {
        QString company;
        for (const CustomerRow &customer : Customers) {
            if (customer.custNo == row.custNo)
                company = Text(customer.company);
        }
        m_orders->appendRecord({row.orderNo, today.addDays(-row.daysAgo), row.custNo, company,
                                row.lines, row.total, Text(row.status)});
    }

    m_items = new DemoDataSet(u"ItemsTable"_s, this);
    m_items->setTableName(u"items"_s);
    m_items->addField(u"Category"_s, tr("Category"), u"String"_s, 15, true);
    m_items->addField(u"ItemGroup"_s, tr("Group"), u"String"_s, 20, true);
    m_items->addField(u"Description"_s, tr("Description"), u"String"_s, 40, true);
    m_items->addField(u"PartNo"_s, tr("Part No."), u"String"_s, 8, true);
    m_items->addField(u"ListPrice"_s, tr("Price"), u"Currency"_s, 10);
    m_items->addField(u"OnHand"_s, tr("In Stock"), u"Integer"_s, 6);
    for (const ItemRow &row : Items)
        m_items->appendRecord({Text(row.category), Text(row.group), Text(row.name),
                               Text(row.code), row.price, row.stock});

    m_suppliers = new DemoDataSet(u"SuppliersTable"_s, this);
    m_suppliers->setTableName(u"vendors"_s);
    m_suppliers->setReadOnly(true);
    m_suppliers->addField(u"VendorName"_s, tr("Supplier"), u"String"_s, 30, true);
    m_suppliers->addField(u"City"_s, tr("City"), u"String"_s, 15);
    m_suppliers->addField(u"Contact"_s, tr("Contact"), u"String"_s, 20);
    for (const SupplierRow &row : Suppliers)
        m_suppliers->appendRecord({Text(row.name), Text(row.city), Text(row.contact)});

    m_appointments = new DemoDataSet(u"AppointmentsTable"_s, this);
    m_appointments->setTableName(u"appointments"_s);
    m_appointments->addField(u"StartsAt"_s, tr("Starts"), u"DateTime"_s, 16, true);
    m_appointments->addField(u"Minutes"_s, tr("Duration"), u"Integer"_s, 5);
    m_appointments->addField(u"Subject"_s, tr("Subject"), u"String"_s, 40, true);
    m_appointments->addField(u"With"_s, tr("With"), u"String"_s, 30);
    for (const AppointmentRow &row : Appointments)
        m_appointments->appendRecord({QDateTime(today.addDays(row.daysFromToday), QTime(row.hour, row.minute)),
                                      row.minutes, Text(row.subject), Text(row.with)});

    auto *employees = new DemoDataSet(u"EmployeesTable"_s, this);
    employees->setTableName(u"employee"_s);
    employees->addField(u"EmpNo"_s, tr("Emp. No."), u"Integer"_s, 5, true);
    employees->addField(u"FirstName"_s, tr("First Name"), u"String"_s, 15, true);
    employees->addField(u"LastName"_s, tr("Last Name"), u"String"_s, 20, true);
    employees->addField(u"PhoneExt"_s, tr("Ext."), u"String"_s, 4);
    employees->addField(u"HireDate"_s, tr("Hired"), u"Date"_s, 10);
    employees->addField(u"Salary"_s, tr("Salary"), u"Currency"_s, 10);
    for (const EmployeeRow &row : Employees)
        employees->appendRecord({row.empNo, Text(row.firstName), Text(row.lastName), Text(row.phoneExt),
                                 QDate(row.hireYear, 1 + row.empNo % 12, 1 + row.empNo % 28), row.salary});

    // Data sources link data-aware controls to a table.
    const std::pair<const char16_t *, DemoDataSet *> sources[] = {
        {u"CustomersSource", m_customers}, {u"OrdersSource", m_orders},
        {u"ItemsSource", m_items}, {u"SuppliersSource", m_suppliers},
        {u"AppointmentsSource", m_appointments}, {u"EmployeesSource", employees}};
    for (const auto &[name, dataSet] : sources) {
        auto *source = new QObject(this);
        source->setObjectName(QString::fromUtf16(name));
        source->setProperty("dataSet", QVariant::fromValue<QObject *>(dataSet));
        source->setProperty("autoEdit", true);
        source->setProperty("enabled", true);
    }
}

void DemoDataModule::createActions()
{
    m_actionList = new QObject(this);
    m_actionList->setObjectName(u"ActionList1"_s);
    const QStyle *style = QApplication::style();

    struct ActionSpec
    {
        const char16_t *name;
        const char *text;
        const char *category;
        QStyle::StandardPixmap icon;
    };
    const ActionSpec specs[] = {
        {u"DataSetFirst", QT_TR_NOOP("&First Record"), "DataSet", QStyle::SP_MediaSkipBackward},
        {u"DataSetPrior", QT_TR_NOOP("&Prior Record"), "DataSet", QStyle::SP_MediaSeekBackward},
        {u"DataSetNext", QT_TR_NOOP("&Next Record"), "DataSet", QStyle::SP_MediaSeekForward},
        {u"DataSetLast", QT_TR_NOOP("&Last Record"), "DataSet", QStyle::SP_MediaSkipForward},
        {u"DataSetRefresh", QT_TR_NOOP("&Refresh"), "DataSet", QStyle::SP_BrowserReload},
        {u"WindowCascade", QT_TR_NOOP("&Cascade"), "Window", QStyle::SP_TitleBarNormalButton},
        {u"WindowTile", QT_TR_NOOP("&Tile"), "Window", QStyle::SP_FileDialogListView},
        {u"WindowNext", QT_TR_NOOP("&Next Window"), "Window", QStyle::SP_ArrowForward},
        {u"WindowCloseAll", QT_TR_NOOP("Close &All"), "Window", QStyle::SP_DialogCloseButton},
    };
    for (const ActionSpec &spec : specs) {
        auto *action = new QAction(style->standardIcon(spec.icon), tr(spec.text), m_actionList);
        action->setObjectName(QString::fromUtf16(spec.name));
        action->setProperty("category", QString::fromLatin1(spec.category));
        action->setToolTip(QString(tr(spec.text)).remove(u'&'));
    }

    // Record navigation works on the customers table, as its data source says.
    const QString navigationSource = u"CustomersSource"_s;
    const std::pair<const char16_t *, void (DemoDataSet::*)()> navigation[] = {
        {u"DataSetFirst", &DemoDataSet::first}, {u"DataSetPrior", &DemoDataSet::prior},
        {u"DataSetNext", &DemoDataSet::next}, {u"DataSetLast", &DemoDataSet::last}};
    for (const auto &entry : navigation) {
        const auto step = entry.second;
        QAction *navigate = action(QString::fromUtf16(entry.first));
        navigate->setProperty("dataSource", QVariant::fromValue(findChild<QObject *>(navigationSource)));
        connect(navigate, &QAction::triggered, this, [this, step] {
            if (m_customers)
                (m_customers->*step)();
        });
    }
    connect(action(u"DataSetRefresh"_s), &QAction::triggered, this, [this] {
        if (m_customers)
            Q_EMIT m_customers->recordsChanged();
    });
    connect(m_customers, &DemoDataSet::recNoChanged, this, &DemoDataModule::updateNavigationActions);
    connect(m_customers, &DemoDataSet::recordsChanged, this, &DemoDataModule::updateNavigationActions);

    m_viewModeGroup = new QActionGroup(m_actionList);
    m_viewModeGroup->setObjectName(u"ViewModeGroup"_s);
    m_viewModeGroup->setExclusive(true);
    auto *viewList = new QAction(style->standardIcon(QStyle::SP_FileDialogDetailedView),
                                 tr("&List"), m_viewModeGroup);
    viewList->setObjectName(u"ViewList"_s);
    viewList->setCheckable(true);
    viewList->setChecked(true);
    viewList->setProperty("category", u"View"_s);
    auto *viewIcons = new QAction(style->standardIcon(QStyle::SP_FileDialogContentsView),
                                  tr("&Icons"), m_viewModeGroup);
    viewIcons->setObjectName(u"ViewIcons"_s);
    viewIcons->setCheckable(true);
    viewIcons->setProperty("category", u"View"_s);
}

void DemoDataModule::updateNavigationActions()
{
    const int recNo = m_customers ? m_customers->recNo() : 0;
    const int count = m_customers ? m_customers->recordCount() : 0;
    const std::pair<const char16_t *, bool> states[] = {
        {u"DataSetFirst", recNo > 1}, {u"DataSetPrior", recNo > 1},
        {u"DataSetNext", recNo < count}, {u"DataSetLast", recNo < count},
        {u"DataSetRefresh", m_customers && m_customers->isActive()}};
    for (const auto &[name, enabled] : states) {
        if (QAction *navigate = action(QString::fromUtf16(name)))
            navigate->setEnabled(enabled);
    }
}

DemoDataSet *DemoDataModule::customersTable() const
{
    return m_customers;
}

DemoDataSet *DemoDataModule::ordersTable() const
{
    return m_orders;
}

DemoDataSet *DemoDataModule::itemsTable() const
{
    return m_items;
}

DemoDataSet *DemoDataModule::appointmentsTable() const
{
    return m_appointments;
}

QActionGroup *DemoDataModule::viewModeGroup() const
{
    return m_viewModeGroup;
}

QAction *DemoDataModule::action(const QString &name) const
{
    return m_actionList ? m_actionList->findChild<QAction *>(name) : nullptr;
}

void DemoDataModule::setConnected(bool connected)
{
    if (connected == m_connected)
        return;
    m_connected = connected;
    for (DemoDataSet *dataSet : findChildren<DemoDataSet *>(Qt::FindDirectChildrenOnly))
        dataSet->setActive(connected);
    if (m_statisticsTimer) {
        if (connected)
            m_statisticsTimer->start();
        else
            m_statisticsTimer->stop();
    }
    updateNavigationActions();
    updateStatistics();
    Q_EMIT connectedChanged(connected);
}

void DemoDataModule::updateStatistics()
{
    int ordersToday = 0;
    int openOrders = 0;
    double openOrdersTotal = 0;
    if (m_orders) {
        const QDate today = QDate::currentDate();
        for (int row = 0; row < m_orders->recordCount(); ++row) {
            if (m_orders->value(row, u"SaleDate"_s).toDate() == today)
                ++ordersToday;
            const QString status = m_orders->value(row, u"Status"_s).toString();
            if (status == u"Open"_s || status == u"Packed"_s || status == u"Shipped"_s) {
                ++openOrders;
                openOrdersTotal += m_orders->value(row, u"ItemsTotal"_s).toDouble();
            }
        }
    }
    if (ordersToday == m_ordersToday && openOrders == m_openOrders
        && qFuzzyCompare(1 + openOrdersTotal, 1 + m_openOrdersTotal))
        return;
    m_ordersToday = ordersToday;
    m_openOrders = openOrders;
    m_openOrdersTotal = openOrdersTotal;
    Q_EMIT statisticsChanged();
}
