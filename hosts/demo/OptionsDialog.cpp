#include "hosts/demo/OptionsDialog.h"

#include "hosts/demo/ColorSwatchButton.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QMetaProperty>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>
#include <QTimeEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

enum CommandColumn { CommandColumnName, CommandColumnShortcut };
constexpr int CommandIndexRole = Qt::UserRole;
constexpr int PendingShortcutRole = Qt::UserRole + 1;

// Adds a row whose label has a name and a buddy, as a form designer makes them.
void AddRow(QFormLayout *form, const QString &labelName, const QString &text, QWidget *field)
{
    auto *label = new QLabel(text, field->parentWidget());
    label->setObjectName(labelName);
    label->setBuddy(field);
    form->addRow(label, field);
}

template <typename T>
T *Named(T *widget, const QString &name)
{
    widget->setObjectName(name);
    return widget;
}

} // namespace

OptionsDialog::OptionsDialog(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(u"OptionsDialog"_s);
    setWindowTitle(tr("Options"));
    resize(540, 500);

    m_pages = Named(new QTabWidget(this), u"PageControl1"_s);
    m_pages->addTab(createGeneralPage(), tr("General"));
    m_pages->addTab(createEditorPage(), tr("Editor"));
    m_pages->addTab(createAppearancePage(), tr("Appearance"));
    m_pages->addTab(createRegionalPage(), tr("Regional"));
    m_pages->addTab(createKeyboardPage(), tr("Keyboard"));

    auto *buttons = Named(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply
                                                   | QDialogButtonBox::RestoreDefaults,
                                               this),
                          u"ButtonBox"_s);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(u"OkButton"_s);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(u"CancelButton"_s);
    buttons->button(QDialogButtonBox::Apply)->setObjectName(u"ApplyButton"_s);
    buttons->button(QDialogButtonBox::RestoreDefaults)->setObjectName(u"DefaultsButton"_s);
    connect(buttons, &QDialogButtonBox::accepted, this, &OptionsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &OptionsDialog::reject);
    connect(buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this, &OptionsDialog::apply);
    connect(buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this,
            &OptionsDialog::restoreDefaults);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_pages);
    layout->addWidget(buttons);

    m_defaults = takeSnapshot(this);
    readSettings();
    m_openedWith = takeSnapshot(this);
}

QWidget *OptionsDialog::createGeneralPage()
{
    auto *page = Named(new QWidget, u"GeneralPage"_s);

    auto *userGroup = Named(new QGroupBox(tr("User"), page), u"UserGroup"_s);
    auto *userForm = new QFormLayout(userGroup);
    AddRow(userForm, u"UserNameLabel"_s, tr("&Name:"), Named(new QLineEdit(tr("Demo User"), userGroup), u"UserNameEdit"_s));
    AddRow(userForm, u"CompanyLabel"_s, tr("&Company:"), Named(new QLineEdit(tr("Korvo Hardware"), userGroup), u"CompanyEdit"_s));
    auto *signature = Named(new QPlainTextEdit(userGroup), u"SignatureMemo"_s);
    signature->setPlainText(tr("Kind regards,\nDemo User\nKorvo Hardware"));
    signature->setTabChangesFocus(true);
    signature->setMaximumHeight(signature->fontMetrics().lineSpacing() * 4 + 12);
    AddRow(userForm, u"SignatureLabel"_s, tr("&Signature:"), signature);

    auto *startupGroup = Named(new QGroupBox(tr("At start-up show"), page), u"StartupGroup"_s);
    auto *startupLayout = new QVBoxLayout(startupGroup);
    auto *mainOnly = Named(new QRadioButton(tr("The &main window only"), startupGroup), u"StartMainRadio"_s);
    mainOnly->setChecked(true);
    startupLayout->addWidget(mainOnly);
    startupLayout->addWidget(Named(new QRadioButton(tr("The main window and the &documents"), startupGroup), u"StartDocumentsRadio"_s));
    startupLayout->addWidget(Named(new QRadioButton(tr("&All windows"), startupGroup), u"StartAllRadio"_s));

    auto *confirmExit = Named(new QCheckBox(tr("Ask before e&xiting"), page), u"ConfirmExitCheck"_s);
    auto *autoSave = Named(new QCheckBox(tr("Save notes &automatically every"), page), u"AutoSaveCheck"_s);
    autoSave->setChecked(true);
    auto *autoSaveSpin = Named(new QSpinBox(page), u"AutoSaveSpin"_s);
    autoSaveSpin->setRange(1, 120);
    autoSaveSpin->setValue(10);
    autoSaveSpin->setSuffix(tr(" min"));
    connect(autoSave, &QCheckBox::toggled, autoSaveSpin, &QWidget::setEnabled);
    auto *autoSaveRow = new QHBoxLayout;
    autoSaveRow->addWidget(autoSave);
    autoSaveRow->addWidget(autoSaveSpin);
    autoSaveRow->addStretch(1);

    auto *layout = new QVBoxLayout(page);
    layout->addWidget(userGroup);
    layout->addWidget(startupGroup);
    layout->addWidget(confirmExit);
    layout->addLayout(autoSaveRow);
    layout->addStretch(1);
    return page;
}

QWidget *OptionsDialog::createEditorPage()
{
    auto *page = Named(new QWidget, u"EditorPage"_s);
    auto *form = new QFormLayout(page);

    auto *fontCombo = Named(new QFontComboBox(page), u"FontCombo"_s);
    fontCombo->setEditable(false);
    fontCombo->setCurrentFont(QFont(u"DejaVu Sans Mono"_s));
    AddRow(form, u"FontLabel"_s, tr("&Font:"), fontCombo);
    auto *fontSize = Named(new QSpinBox(page), u"FontSizeSpin"_s);
    fontSize->setRange(6, 72);
    fontSize->setValue(10);
    fontSize->setSuffix(tr(" pt"));
    AddRow(form, u"FontSizeLabel"_s, tr("&Size:"), fontSize);
    auto *tabWidth = Named(new QSpinBox(page), u"TabWidthSpin"_s);
    tabWidth->setRange(1, 16);
    tabWidth->setValue(4);
    tabWidth->setSuffix(tr(" spaces"));
    AddRow(form, u"TabWidthLabel"_s, tr("&Tab width:"), tabWidth);
    auto *wordWrap = Named(new QCheckBox(tr("&Wrap long lines"), page), u"WordWrapCheck"_s);
    wordWrap->setChecked(true);
    form->addRow(wordWrap);
    return page;
}

QWidget *OptionsDialog::createAppearancePage()
{
    auto *page = Named(new QWidget, u"AppearancePage"_s);

    auto *barsGroup = Named(new QGroupBox(tr("Bars"), page), u"BarsGroup"_s);
    auto *barsForm = new QFormLayout(barsGroup);
    auto *showToolBar = Named(new QCheckBox(tr("Show the &tool bar"), barsGroup), u"ShowToolBarCheck"_s);
    showToolBar->setChecked(true);
    barsForm->addRow(showToolBar);
    auto *showStatusBar = Named(new QCheckBox(tr("Show the &status bar"), barsGroup), u"ShowStatusBarCheck"_s);
    showStatusBar->setChecked(true);
    barsForm->addRow(showStatusBar);
    auto *buttonStyle = Named(new QComboBox(barsGroup), u"ButtonStyleCombo"_s);
    buttonStyle->addItem(tr("Icons only"), int(Qt::ToolButtonIconOnly));
    buttonStyle->addItem(tr("Text only"), int(Qt::ToolButtonTextOnly));
    buttonStyle->addItem(tr("Text beside icons"), int(Qt::ToolButtonTextBesideIcon));
    buttonStyle->addItem(tr("Text under icons"), int(Qt::ToolButtonTextUnderIcon));
    AddRow(barsForm, u"ButtonStyleLabel"_s, tr("&Buttons:"), buttonStyle);

    auto *coloursGroup = Named(new QGroupBox(tr("Colours"), page), u"ColoursGroup"_s);
    auto *coloursForm = new QFormLayout(coloursGroup);
    auto *theme = Named(new QComboBox(coloursGroup), u"ThemeCombo"_s);
    theme->addItems({tr("Light"), tr("Dark")});
    AddRow(coloursForm, u"ThemeLabel"_s, tr("T&heme:"), theme);
    auto *accent = Named(new ColorSwatchButton(coloursGroup), u"AccentColorButton"_s);
    accent->setColor(QColor(0x30, 0x8c, 0xc6));
    AddRow(coloursForm, u"AccentColorLabel"_s, tr("&Selection:"), accent);

    auto *opacityRow = new QHBoxLayout;
    auto *opacity = Named(new QSlider(Qt::Horizontal, page), u"OpacitySlider"_s);
    opacity->setRange(50, 100);
    opacity->setValue(100);
    opacity->setTickPosition(QSlider::TicksBelow);
    opacity->setTickInterval(10);
    auto *opacityValue = Named(new QLabel(page), u"OpacityValueLabel"_s);
    opacityValue->setMinimumWidth(opacityValue->fontMetrics().horizontalAdvance(u"100 %"_s));
    auto showOpacity = [opacityValue](int value) { opacityValue->setText(tr("%1 %").arg(value)); };
    connect(opacity, &QSlider::valueChanged, opacityValue, showOpacity);
    showOpacity(opacity->value());
    opacityRow->addWidget(opacity, 1);
    opacityRow->addWidget(opacityValue);
    auto *opacityForm = new QFormLayout;
    auto *opacityLabel = Named(new QLabel(tr("Window &opacity:"), page), u"OpacityLabel"_s);
    opacityLabel->setBuddy(opacity);
    opacityForm->addRow(opacityLabel, opacityRow);

    auto *layout = new QVBoxLayout(page);
    layout->addWidget(barsGroup);
    layout->addWidget(coloursGroup);
    layout->addLayout(opacityForm);
    layout->addStretch(1);
    return page;
}

QWidget *OptionsDialog::createRegionalPage()
{
    auto *page = Named(new QWidget, u"RegionalPage"_s);
    auto *form = new QFormLayout(page);

    auto *weekStart = Named(new QComboBox(page), u"WeekStartCombo"_s);
    const QLocale locale;
    for (Qt::DayOfWeek day : {Qt::Monday, Qt::Sunday, Qt::Saturday})
        weekStart->addItem(locale.dayName(day), int(day));
    AddRow(form, u"WeekStartLabel"_s, tr("&Week starts on:"), weekStart);
    auto *opens = Named(new QTimeEdit(QTime(8, 30), page), u"OpeningTimeEdit"_s);
    opens->setDisplayFormat(u"HH:mm"_s);
    AddRow(form, u"OpeningTimeLabel"_s, tr("Shop &opens at:"), opens);
    auto *closes = Named(new QTimeEdit(QTime(17, 30), page), u"ClosingTimeEdit"_s);
    closes->setDisplayFormat(u"HH:mm"_s);
    AddRow(form, u"ClosingTimeLabel"_s, tr("Shop &closes at:"), closes);
    auto *stocktake = Named(new QDateEdit(QDate::currentDate().addMonths(1), page), u"NextStocktakeEdit"_s);
    stocktake->setCalendarPopup(true);
    AddRow(form, u"NextStocktakeLabel"_s, tr("Next &stocktake:"), stocktake);
    auto *ordersSince = Named(new QDateTimeEdit(QDateTime(QDate::currentDate().addDays(-30), QTime(0, 0)), page),
                              u"OrdersSinceEdit"_s);
    ordersSince->setCalendarPopup(true);
    ordersSince->setDisplayFormat(QLocale().dateFormat(QLocale::ShortFormat) + u" HH:mm"_s);
    AddRow(form, u"OrdersSinceLabel"_s, tr("&Dashboard shows orders since:"), ordersSince);
    auto *taxRate = Named(new QDoubleSpinBox(page), u"TaxRateSpin"_s);
    taxRate->setRange(0, 50);
    taxRate->setDecimals(2);
    taxRate->setValue(19.0);
    taxRate->setSuffix(tr(" %"));
    AddRow(form, u"TaxRateLabel"_s, tr("Sales &tax:"), taxRate);
    return page;
}

QWidget *OptionsDialog::createKeyboardPage()
{
    auto *page = Named(new QWidget, u"KeyboardPage"_s);

    m_commandTree = Named(new QTreeWidget(page), u"CommandTree"_s);
    m_commandTree->setHeaderLabels({tr("Command"), tr("Shortcut")});
    m_commandTree->setRootIsDecorated(false);
    m_commandTree->setUniformRowHeights(true);
    m_commandTree->setAlternatingRowColors(true);
    m_commandTree->header()->setSectionResizeMode(CommandColumnName, QHeaderView::Stretch);
    connect(m_commandTree, &QTreeWidget::currentItemChanged, this, &OptionsDialog::showSelectedShortcut);

    m_shortcutEdit = Named(new QKeySequenceEdit(page), u"ShortcutEdit"_s);
    connect(m_shortcutEdit, &QKeySequenceEdit::keySequenceChanged, this, &OptionsDialog::assignShortcut);
    auto *clearButton = Named(new QPushButton(tr("C&lear"), page), u"ClearShortcutButton"_s);
    clearButton->setAutoDefault(false);
    connect(clearButton, &QPushButton::clicked, this, [this] {
        if (m_shortcutEdit)
            m_shortcutEdit->clear();
    });
    m_conflictLabel = Named(new QLabel(page), u"ConflictLabel"_s);
    m_conflictLabel->setWordWrap(true);

    auto *shortcutLabel = Named(new QLabel(tr("&Press the new shortcut:"), page), u"ShortcutLabel"_s);
    shortcutLabel->setBuddy(m_shortcutEdit);
    auto *shortcutRow = new QHBoxLayout;
    shortcutRow->addWidget(shortcutLabel);
    shortcutRow->addWidget(m_shortcutEdit, 1);
    shortcutRow->addWidget(clearButton);
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(m_commandTree, 1);
    layout->addLayout(shortcutRow);
    layout->addWidget(m_conflictLabel);
    showSelectedShortcut();
    return page;
}

void OptionsDialog::setCommands(const QList<QAction *> &commands)
{
    QList<Command> known = m_commands;
    m_commands.clear();
    QSettings settings;
    settings.beginGroup(u"Shortcuts"_s);
    for (QAction *action : commands) {
        auto same = std::find_if(known.begin(), known.end(), [action](const Command &c) { return c.action == action; });
        if (same != known.end()) {
            m_commands.append(*same);
            continue;
        }
        m_commands.append({action, action->shortcut()});
        if (!action->objectName().isEmpty() && settings.contains(action->objectName()))
            action->setShortcut(QKeySequence(settings.value(action->objectName()).toString(), QKeySequence::PortableText));
    }
    reloadCommands();
}

void OptionsDialog::reloadCommands()
{
    if (!m_commandTree)
        return;
    m_commandTree->clear();
    for (int index = 0; index < m_commands.size(); ++index) {
        const QAction *command = m_commands.at(index).action;
        if (!command)
            continue;
        auto *item = new QTreeWidgetItem(m_commandTree);
        item->setText(CommandColumnName, command->text().remove(u'&').remove(u"..."_s));
        item->setIcon(CommandColumnName, command->icon());
        item->setData(CommandColumnName, CommandIndexRole, index);
        setItemShortcut(item, command->shortcut());
    }
    m_commandTree->setCurrentItem(m_commandTree->topLevelItem(0));
    showSelectedShortcut();
}

void OptionsDialog::setItemShortcut(QTreeWidgetItem *item, const QKeySequence &shortcut)
{
    item->setData(CommandColumnName, PendingShortcutRole, QVariant::fromValue(shortcut));
    item->setText(CommandColumnShortcut, shortcut.toString(QKeySequence::NativeText));
}

void OptionsDialog::showSelectedShortcut()
{
    if (!m_shortcutEdit || !m_commandTree)
        return;
    const QTreeWidgetItem *item = m_commandTree->currentItem();
    m_showingShortcut = true;
    m_shortcutEdit->setEnabled(item != nullptr);
    m_shortcutEdit->setKeySequence(item ? item->data(CommandColumnName, PendingShortcutRole).value<QKeySequence>()
                                        : QKeySequence());
    m_showingShortcut = false;
    if (m_conflictLabel)
        m_conflictLabel->clear();
}

void OptionsDialog::assignShortcut(const QKeySequence &shortcut)
{
    if (m_showingShortcut || !m_commandTree)
        return;
    QTreeWidgetItem *current = m_commandTree->currentItem();
    if (!current)
        return;
    // A shortcut belongs to one command: it moves from the command that had it.
    QString takenFrom;
    if (!shortcut.isEmpty()) {
        for (int row = 0; row < m_commandTree->topLevelItemCount(); ++row) {
            QTreeWidgetItem *other = m_commandTree->topLevelItem(row);
            if (other != current && other->data(CommandColumnName, PendingShortcutRole).value<QKeySequence>() == shortcut) {
                setItemShortcut(other, QKeySequence());
                takenFrom = other->text(CommandColumnName);
            }
        }
    }
    setItemShortcut(current, shortcut);
    if (m_conflictLabel)
        m_conflictLabel->setText(takenFrom.isEmpty() ? QString()
                                                     : tr("%1 was removed from \"%2\".")
                                                           .arg(shortcut.toString(QKeySequence::NativeText), takenFrom));
}

void OptionsDialog::openPage(Page page)
{
    reloadCommands();
    m_openedWith = takeSnapshot(this);
    if (m_pages)
        m_pages->setCurrentIndex(page);
    open();
}

void OptionsDialog::apply()
{
    if (m_commandTree) {
        for (int row = 0; row < m_commandTree->topLevelItemCount(); ++row) {
            const QTreeWidgetItem *item = m_commandTree->topLevelItem(row);
            const QPointer<QAction> command = m_commands.value(item->data(CommandColumnName, CommandIndexRole).toInt()).action;
            if (command)
                command->setShortcut(item->data(CommandColumnName, PendingShortcutRole).value<QKeySequence>());
        }
    }
    m_openedWith = takeSnapshot(this);
    writeSettings();
    Q_EMIT applied();
}

void OptionsDialog::accept()
{
    apply();
    QDialog::accept();
}

void OptionsDialog::reject()
{
    restoreSnapshot(m_openedWith, this);
    reloadCommands();
    QDialog::reject();
}

void OptionsDialog::restoreDefaults()
{
    if (!m_pages || !m_pages->currentWidget())
        return;
    restoreSnapshot(m_defaults, m_pages->currentWidget());
    if (m_pages->currentWidget()->isAncestorOf(m_commandTree)) {
        for (int row = 0; row < m_commandTree->topLevelItemCount(); ++row) {
            QTreeWidgetItem *item = m_commandTree->topLevelItem(row);
            setItemShortcut(item, m_commands.value(item->data(CommandColumnName, CommandIndexRole).toInt()).defaultShortcut);
        }
        showSelectedShortcut();
    }
}

OptionsDialog::Snapshot OptionsDialog::takeSnapshot(const QWidget *root) const
{
    // Every named input (Qt's inner widgets have no name or a "qt_" one) through its user
    // property: text, value, checked, date, colour…
    Snapshot snapshot;
    const QList<QWidget *> widgets = root->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        const QString name = widget->objectName();
        // The shortcut editor only shows the selected command's shortcut.
        if (name.isEmpty() || name.startsWith(u"qt_"_s) || widget == m_shortcutEdit)
            continue;
        const QMetaProperty property = widget->metaObject()->userProperty();
        if (!property.isValid() || !property.isWritable())
            continue;
        // A push button's "checked" means nothing unless it can be checked.
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        if (button && !button->isCheckable() && qstrcmp(property.name(), "checked") == 0)
            continue;
        snapshot.append({widget, property.read(widget)});
    }
    return snapshot;
}

void OptionsDialog::restoreSnapshot(const Snapshot &snapshot, const QWidget *within)
{
    for (const SavedValue &saved : snapshot) {
        if (saved.widget && (saved.widget == within || within->isAncestorOf(saved.widget)))
            saved.widget->metaObject()->userProperty().write(saved.widget, saved.value);
    }
}

void OptionsDialog::readSettings()
{
    QSettings settings;
    settings.beginGroup(u"Options"_s);
    for (const SavedValue &saved : m_defaults) {
        const QString key = saved.widget->objectName();
        if (!settings.contains(key))
            continue;
        QVariant value = settings.value(key);
        // Only a value of the input's own type is taken; anything else stays at its default.
        const QMetaProperty property = saved.widget->metaObject()->userProperty();
        if (value.convert(property.metaType()))
            property.write(saved.widget, value);
    }
}

void OptionsDialog::writeSettings() const
{
    QSettings settings;
    settings.beginGroup(u"Options"_s);
    for (const SavedValue &saved : takeSnapshot(this))
        settings.setValue(saved.widget->objectName(), saved.value);
    settings.endGroup();
    settings.beginGroup(u"Shortcuts"_s);
    for (const Command &command : m_commands) {
        if (!command.action || command.action->objectName().isEmpty())
            continue;
        if (command.action->shortcut() == command.defaultShortcut)
            settings.remove(command.action->objectName());
        else
            settings.setValue(command.action->objectName(), command.action->shortcut().toString(QKeySequence::PortableText));
    }
}

QString OptionsDialog::userName() const
{
    const auto *edit = input<QLineEdit>("UserNameEdit");
    return edit ? edit->text() : QString();
}

QString OptionsDialog::companyName() const
{
    const auto *edit = input<QLineEdit>("CompanyEdit");
    return edit ? edit->text() : QString();
}

QString OptionsDialog::signature() const
{
    const auto *memo = input<QPlainTextEdit>("SignatureMemo");
    return memo ? memo->toPlainText() : QString();
}

OptionsDialog::StartupWindows OptionsDialog::startupWindows() const
{
    if (const auto *all = input<QRadioButton>("StartAllRadio"); all && all->isChecked())
        return AllWindows;
    if (const auto *documents = input<QRadioButton>("StartDocumentsRadio"); documents && documents->isChecked())
        return WithDocuments;
    return MainWindowOnly;
}

bool OptionsDialog::confirmExit() const
{
    const auto *check = input<QCheckBox>("ConfirmExitCheck");
    return check && check->isChecked();
}

int OptionsDialog::autoSaveMinutes() const
{
    const auto *check = input<QCheckBox>("AutoSaveCheck");
    const auto *spin = input<QSpinBox>("AutoSaveSpin");
    return check && spin && check->isChecked() ? spin->value() : 0;
}

QFont OptionsDialog::noteFont() const
{
    const auto *combo = input<QFontComboBox>("FontCombo");
    QFont font = combo ? combo->currentFont() : QFont();
    if (const auto *size = input<QSpinBox>("FontSizeSpin"))
        font.setPointSize(size->value());
    return font;
}

int OptionsDialog::noteTabWidth() const
{
    const auto *spin = input<QSpinBox>("TabWidthSpin");
    return spin ? spin->value() : 4;
}

bool OptionsDialog::noteWordWrap() const
{
    const auto *check = input<QCheckBox>("WordWrapCheck");
    return !check || check->isChecked();
}

bool OptionsDialog::showToolBar() const
{
    const auto *check = input<QCheckBox>("ShowToolBarCheck");
    return !check || check->isChecked();
}

void OptionsDialog::setShowToolBar(bool show)
{
    if (auto *check = input<QCheckBox>("ShowToolBarCheck"))
        check->setChecked(show);
}

bool OptionsDialog::showStatusBar() const
{
    const auto *check = input<QCheckBox>("ShowStatusBarCheck");
    return !check || check->isChecked();
}

void OptionsDialog::setShowStatusBar(bool show)
{
    if (auto *check = input<QCheckBox>("ShowStatusBarCheck"))
        check->setChecked(show);
}

Qt::ToolButtonStyle OptionsDialog::toolButtonStyle() const
{
    const auto *combo = input<QComboBox>("ButtonStyleCombo");
    return combo ? Qt::ToolButtonStyle(combo->currentData().toInt()) : Qt::ToolButtonIconOnly;
}

bool OptionsDialog::darkTheme() const
{
    const auto *combo = input<QComboBox>("ThemeCombo");
    return combo && combo->currentIndex() == 1;
}

QColor OptionsDialog::accentColor() const
{
    const auto *button = input<ColorSwatchButton>("AccentColorButton");
    return button ? button->color() : QColor();
}

qreal OptionsDialog::windowOpacity() const
{
    const auto *slider = input<QSlider>("OpacitySlider");
    return slider ? slider->value() / 100.0 : 1.0;
}

Qt::DayOfWeek OptionsDialog::firstDayOfWeek() const
{
    const auto *combo = input<QComboBox>("WeekStartCombo");
    return combo && combo->currentIndex() >= 0 ? Qt::DayOfWeek(combo->currentData().toInt()) : Qt::Monday;
}

QTime OptionsDialog::openingTime() const
{
    const auto *edit = input<QTimeEdit>("OpeningTimeEdit");
    return edit ? edit->time() : QTime(8, 30);
}

QTime OptionsDialog::closingTime() const
{
    const auto *edit = input<QTimeEdit>("ClosingTimeEdit");
    return edit ? edit->time() : QTime(17, 30);
}

QDate OptionsDialog::nextStocktake() const
{
    const auto *edit = input<QDateEdit>("NextStocktakeEdit");
    return edit ? edit->date() : QDate();
}

QDateTime OptionsDialog::ordersSince() const
{
    const auto *edit = input<QDateTimeEdit>("OrdersSinceEdit");
    return edit ? edit->dateTime() : QDateTime();
}

double OptionsDialog::taxRate() const
{
    const auto *spin = input<QDoubleSpinBox>("TaxRateSpin");
    return spin ? spin->value() : 0;
}
