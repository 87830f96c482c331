// Every default-constructible widget class of Qt Widgets, read through the property editors
// and written back with the text the editors gave: nothing may change.

#include "platform/kvPropertyEditor.h"
#include "platform/kvPropertyRegistry.h"

#include <QtTest>
#include <QtWidgets>

using namespace kv;

namespace {

using TMaker = std::function<QWidget *()>;

template <typename T>
TMaker Maker()
{
    return [] { return new T; };
}

struct TWidgetClass
{
    const char *Name;
    TMaker Make;
};

QList<TWidgetClass> WidgetClasses()
{
    return {
        {"QWidget", Maker<QWidget>()},
        {"QFrame", Maker<QFrame>()},
        {"QLabel", Maker<QLabel>()},
        {"QPushButton", Maker<QPushButton>()},
        {"QToolButton", Maker<QToolButton>()},
        {"QCheckBox", Maker<QCheckBox>()},
        {"QRadioButton", Maker<QRadioButton>()},
        {"QCommandLinkButton", Maker<QCommandLinkButton>()},
        {"QLineEdit", Maker<QLineEdit>()},
        {"QTextEdit", Maker<QTextEdit>()},
        {"QPlainTextEdit", Maker<QPlainTextEdit>()},
        {"QTextBrowser", Maker<QTextBrowser>()},
        {"QSpinBox", Maker<QSpinBox>()},
        {"QDoubleSpinBox", Maker<QDoubleSpinBox>()},
        {"QDateEdit", Maker<QDateEdit>()},
        {"QTimeEdit", Maker<QTimeEdit>()},
        {"QDateTimeEdit", Maker<QDateTimeEdit>()},
        {"QComboBox", Maker<QComboBox>()},
        {"QFontComboBox", Maker<QFontComboBox>()},
        {"QSlider", Maker<QSlider>()},
        {"QScrollBar", Maker<QScrollBar>()},
        {"QDial", Maker<QDial>()},
        {"QProgressBar", Maker<QProgressBar>()},
        {"QLCDNumber", Maker<QLCDNumber>()},
        {"QGroupBox", Maker<QGroupBox>()},
        {"QTabWidget", Maker<QTabWidget>()},
        {"QTabBar", Maker<QTabBar>()},
        {"QToolBox", Maker<QToolBox>()},
        {"QStackedWidget", Maker<QStackedWidget>()},
        {"QScrollArea", Maker<QScrollArea>()},
        {"QSplitter", Maker<QSplitter>()},
        {"QMdiArea", Maker<QMdiArea>()},
        {"QMdiSubWindow", Maker<QMdiSubWindow>()},
        {"QListWidget", Maker<QListWidget>()},
        {"QTreeWidget", Maker<QTreeWidget>()},
        {"QTableWidget", Maker<QTableWidget>()},
        {"QListView", Maker<QListView>()},
        {"QTreeView", Maker<QTreeView>()},
        {"QTableView", Maker<QTableView>()},
        {"QColumnView", Maker<QColumnView>()},
        {"QUndoView", Maker<QUndoView>()},
        {"QCalendarWidget", Maker<QCalendarWidget>()},
        {"QDialog", Maker<QDialog>()},
        {"QMainWindow", Maker<QMainWindow>()},
        {"QMenuBar", Maker<QMenuBar>()},
        {"QMenu", Maker<QMenu>()},
        {"QToolBar", Maker<QToolBar>()},
        {"QStatusBar", Maker<QStatusBar>()},
        {"QDockWidget", Maker<QDockWidget>()},
        {"QDialogButtonBox", Maker<QDialogButtonBox>()},
        {"QKeySequenceEdit", Maker<QKeySequenceEdit>()},
        {"QFocusFrame", Maker<QFocusFrame>()},
        {"QGraphicsView", Maker<QGraphicsView>()},
        {"QSplashScreen", Maker<QSplashScreen>()},
        {"QColorDialog", Maker<QColorDialog>()},
        {"QFontDialog", Maker<QFontDialog>()},
        {"QFileDialog", Maker<QFileDialog>()},
        {"QInputDialog", Maker<QInputDialog>()},
        {"QMessageBox", Maker<QMessageBox>()},
        {"QProgressDialog", Maker<QProgressDialog>()},
        {"QErrorMessage", Maker<QErrorMessage>()},
        {"QWizard", Maker<QWizard>()},
        {"QWizardPage", Maker<QWizardPage>()},
    };
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

// The text of every property of Widget, through the editors.
QMap<QString, QString> Snapshot(QWidget *Widget)
{
    QMap<QString, QString> texts;
    GetComponentProperties({Widget}, TTypeKinds::Properties(), nullptr, [&](std::unique_ptr<TPropertyEditor> editor) {
        Walk(std::move(editor), QString(), 0, [&](TPropertyEditor &e, const QString &path) { texts.insert(path, e.GetValue()); });
    });
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
    QTest::addColumn<int>("index");
    const QList<TWidgetClass> classes = WidgetClasses();
    for (int i = 0; i < classes.size(); ++i)
        QTest::newRow(classes[i].Name) << i;
}

void tst_WidgetSweep::writeBack()
{
    QFETCH(int, index);
    std::unique_ptr<QWidget> widget(WidgetClasses().at(index).Make());
    QCOMPARE(QLatin1String(widget->metaObject()->className()), QLatin1String(WidgetClasses().at(index).Name));

    // Some getters build what they report on first use (QInputDialog makes its children when
    // asked for its label): read everything once before taking the picture.
    Snapshot(widget.get());
    const QMap<QString, QString> textsBefore = Snapshot(widget.get());
    const QMap<QString, QVariant> rawBefore = RawValues(widget.get());
    QVERIFY(textsBefore.size() > 40);

    int written = 0;
    QStringList failures;
    GetComponentProperties({widget.get()}, TTypeKinds::Properties(), nullptr, [&](std::unique_ptr<TPropertyEditor> editor) {
        Walk(std::move(editor), QString(), 0, [&](TPropertyEditor &e, const QString &path) {
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
    });
    QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char('\n'))));
    QVERIFY(written > 20);

    const QMap<QString, QString> textsAfter = Snapshot(widget.get());
    const QMap<QString, QVariant> rawAfter = RawValues(widget.get());
    for (auto it = textsBefore.cbegin(); it != textsBefore.cend(); ++it) {
        if (textsAfter.value(it.key()) != it.value())
            failures.append(it.key() + QLatin1String(": '") + it.value() + QLatin1String("' became '") + textsAfter.value(it.key()) + QLatin1Char('\''));
    }
    for (auto it = rawBefore.cbegin(); it != rawBefore.cend(); ++it) {
        if (rawAfter.value(it.key()) != it.value())
            failures.append(it.key() + QLatin1String(": the value changed"));
    }
    QVERIFY2(failures.isEmpty(), qPrintable(failures.join(QLatin1Char('\n'))));
}

QTEST_MAIN(tst_WidgetSweep)
#include "tst_widgetsweep.moc"
