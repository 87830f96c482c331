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

template <typename T>
QWidget *Make()
{
    return new T;
}

// One row per class, named by the class's own meta-object.
template <typename... TWidgets>
void AddRows()
{
    (void(QTest::newRow(TWidgets::staticMetaObject.className()) << TMaker(&Make<TWidgets>)), ...);
}

// Every editor reached from Editor (itself, then its sub-properties), with its path.
void Walk(std::unique_ptr<TPropertyEditor> Editor, const QString &Prefix, int Depth,
          const std::function<void(TPropertyEditor &, const QString &)> &Visit)
{
    const QString path = Prefix.isEmpty() ? Editor->GetName() : Prefix + QLatin1Char('.') + Editor->GetName();
    Visit(*Editor, path);
    // Sub-properties of objects held by the widget are the widget's own parts (a set's
    // elements, a font's parts); referenced objects are not followed past one level.
    if (Depth < 2 && (Editor->GetAttributes() & paSubProperties)) {
        Editor->GetProperties([&](std::unique_ptr<TPropertyEditor> sub) { Walk(std::move(sub), path, Depth + 1, Visit); });
    }
}

void WalkAll(QWidget *Widget, const std::function<void(TPropertyEditor &, const QString &)> &Visit)
{
    GetComponentProperties({Widget}, TTypeKinds::Properties(), nullptr,
                           [&](std::unique_ptr<TPropertyEditor> editor) { Walk(std::move(editor), QString(), 0, Visit); });
}

// The text of every property of Widget, through the editors.
QMap<QString, QString> Snapshot(QWidget *Widget)
{
    QMap<QString, QString> texts;
    WalkAll(Widget, [&](TPropertyEditor &e, const QString &path) { texts.insert(path, e.GetValue()); });
    return texts;
}

// The raw values of every property Qt can compare.
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
    void writeBack_data();
    void writeBack();
};

void tst_WidgetSweep::writeBack_data()
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

void tst_WidgetSweep::writeBack()
{
    QFETCH(TMaker, make);
    std::unique_ptr<QWidget> widget(make());

    // Some getters build what they report on first use (QInputDialog makes its children when
    // asked for its label): read everything once before taking the picture.
    Snapshot(widget.get());
    const QMap<QString, QString> textsBefore = Snapshot(widget.get());
    const QMap<QString, QVariant> rawBefore = RawValues(widget.get());
    QVERIFY(textsBefore.size() > 40);

    int written = 0;
    QStringList failures;
    WalkAll(widget.get(), [&](TPropertyEditor &e, const QString &path) {
        if (!e.ValueAvailable() || (e.GetAttributes() & paReadOnly))
            return;
        const QString text = e.GetValue();
        try {
            e.SetValue(text);
            ++written;
        } catch (const std::exception &error) {
            failures.append(path + QLatin1String(": ") + QString::fromUtf8(error.what()));
            return;
        }
        if (e.GetValue() != text)
            failures.append(path + QLatin1String(": '") + text + QLatin1String("' became '") + e.GetValue() + QLatin1Char('\''));
        // Which write changed what.
        const QMap<QString, QVariant> raw = RawValues(widget.get());
        for (auto it = rawBefore.cbegin(); it != rawBefore.cend(); ++it) {
            if (raw.value(it.key()) != it.value())
                failures.append(QLatin1String("writing ") + path + QLatin1String(" changed ") + it.key());
        }
    });
    QVERIFY(written > 20);

    // What no write showed as changed: the text of every editor, parts and read-only ones
    // included.
    const QMap<QString, QString> textsAfter = Snapshot(widget.get());
    for (auto it = textsBefore.cbegin(); it != textsBefore.cend(); ++it) {
        if (textsAfter.value(it.key()) != it.value())
            failures.append(it.key() + QLatin1String(": '") + it.value() + QLatin1String("' became '") + textsAfter.value(it.key()) + QLatin1Char('\''));
    }
    QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char('\n'))));
}

QTEST_MAIN(tst_WidgetSweep)
#include "tst_widgetsweep.moc"
