// Every default-constructible widget class of Qt Widgets, read through the property editors
// and written back with the text the editors gave: nothing may change.

#include "platform/kvPropertyEditor.h"
#include "platform/kvPropertyRegistry.h"

#include <QtTest>
#include <QtWidgets>

using namespace kv;

using TMaker = QWidget *(*)();
Q_DECLARE_METATYPE(TMaker)

namespace {

template <typename... TWidgets>
void AddRows()
{
    (void(QTest::newRow(TWidgets::staticMetaObject.className()) << TMaker([]() -> QWidget * { return new TWidgets; })),
     ...);
}

using TVisit = std::function<void(TPropertyEditor &, const QString &)>;

// Every editor reached from Editor (itself, then its sub-properties), with its path.
void Walk(std::unique_ptr<TPropertyEditor> Editor, const QString &Prefix, int Depth, const TVisit &Visit)
{
    const QString path = Prefix + QLatin1Char('.') + Editor->GetName();
    Visit(*Editor, path);
    // Sub-properties of objects held by the widget are the widget's own parts (a set's
    // elements, a font's parts); referenced objects are not followed past one level.
    if (Depth < 2 && (Editor->GetAttributes() & paSubProperties))
        Editor->GetProperties([&](std::unique_ptr<TPropertyEditor> sub) { Walk(std::move(sub), path, Depth + 1, Visit); });
}

void WalkAll(QWidget *Widget, const TVisit &Visit)
{
    GetComponentProperties({Widget}, TTypeKinds::Properties(), nullptr,
                           [&](std::unique_ptr<TPropertyEditor> editor) { Walk(std::move(editor), QString(), 0, Visit); });
}

// The text of every property of Widget, through the editors, as "path: text".
QStringList Snapshot(QWidget *Widget)
{
    QStringList texts;
    WalkAll(Widget,
            [&](TPropertyEditor &e, const QString &path) { texts.append(path + QLatin1String(": ") + e.GetValue()); });
    return texts;
}

QMap<QString, QVariant> RawValues(QWidget *Widget)
{
    QMap<QString, QVariant> values;
    const QMetaObject *metaObject = Widget->metaObject();
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        if (property.isReadable() && property.metaType().isEqualityComparable())
            values.insert(QLatin1String(property.name()), property.read(Widget));
    }
    return values;
}

} // namespace

class tst_WidgetSweep : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writeBack_data()
    {
        QTest::addColumn<TMaker>("make");
        AddRows<QWidget, QFrame, QLabel, QPushButton, QToolButton, QCheckBox, QRadioButton, QCommandLinkButton, QLineEdit,
                QTextEdit, QPlainTextEdit, QTextBrowser, QSpinBox, QDoubleSpinBox, QDateEdit, QTimeEdit, QDateTimeEdit,
                QComboBox, QFontComboBox, QSlider, QScrollBar, QDial, QProgressBar, QLCDNumber, QGroupBox, QTabWidget,
                QTabBar, QToolBox, QStackedWidget, QScrollArea, QSplitter, QMdiArea, QMdiSubWindow, QListWidget,
                QTreeWidget, QTableWidget, QListView, QTreeView, QTableView, QColumnView, QUndoView, QCalendarWidget,
                QDialog, QMainWindow, QMenuBar, QMenu, QToolBar, QStatusBar, QDockWidget, QDialogButtonBox,
                QKeySequenceEdit, QFocusFrame, QGraphicsView, QSplashScreen, QColorDialog, QFontDialog, QFileDialog,
                QInputDialog, QMessageBox, QProgressDialog, QErrorMessage, QWizard, QWizardPage>();
    }

    void writeBack()
    {
        QFETCH(TMaker, make);
        std::unique_ptr<QWidget> widget(make());

        // Some getters build what they report on first use (QInputDialog makes its children when
        // asked for its label): read everything once before taking the picture.
        Snapshot(widget.get());
        const QStringList textsBefore = Snapshot(widget.get());
        const QMap<QString, QVariant> rawBefore = RawValues(widget.get());

        int written = 0;
        QStringList failures;
        WalkAll(widget.get(), [&](TPropertyEditor &e, const QString &path) {
            if (!e.ValueAvailable() || (e.GetAttributes() & paReadOnly))
                return;
            try {
                e.SetValue(e.GetValue());
                ++written;
            } catch (const std::exception &error) {
                failures.append(path + QLatin1String(": ") + QString::fromUtf8(error.what()));
            }
            // Which write changed what.
            const QMap<QString, QVariant> raw = RawValues(widget.get());
            for (auto it = rawBefore.cbegin(); it != rawBefore.cend(); ++it) {
                if (raw.value(it.key()) != it.value())
                    failures.append(QLatin1String("writing ") + path + QLatin1String(" changed ") + it.key());
            }
        });
        QVERIFY(written > 20);
        QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char('\n'))));
        // What no write showed as changed: the text of every editor, parts and read-only ones
        // included.
        QCOMPARE(Snapshot(widget.get()), textsBefore);
    }
};

QTEST_MAIN(tst_WidgetSweep)
#include "tst_widgetsweep.moc"
