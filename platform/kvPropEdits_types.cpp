#include "platform/kvPropEdits_types.h"

#include "foundation/ideConsts.h"
#include "platform/kvCommaText.h"
#include "platform/kvColor.h"
#include "platform/kvDesignDialogs.h"
#include "platform/kvException.h"
#include "platform/kvPropEdits_types_p.h"
#include "platform/kvPropertyRegistry.h"

#include <QBitmap>
#include <QColor>
#include <QCursor>
#include <QDate>
#include <QDateTime>
#include <QFont>
#include <QFontDatabase>
#include <QIcon>
#include <QImage>
#include <QGuiApplication>
#include <QKeySequence>
#include <QLocale>
#include <QMargins>
#include <QMetaEnum>
#include <QPalette>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QRegularExpression>
#include <QSize>
#include <QSizePolicy>
#include <QStringList>
#include <QTime>
#include <QTimeZone>
#include <QWidget>

#include <cmath>
#include <functional>
#include <optional>

namespace kv {

namespace {

// Dialogs are offered only where the value can be written.
TPropertyAttributes WithDialog(TPropertyAttributes Attributes)
{
    return Attributes.testFlag(paReadOnly) ? Attributes : Attributes | paDialog;
}

// Colours -----------------------------------------------------------------------------------

bool IsQColorType(PTypeInfo Type)
{
    return Type->MetaType == QMetaType::fromType<QColor>();
}

TColor ColorOf(const QVariant &Value)
{
    if (Value.metaType() == QMetaType::fromType<TColor>())
        return *static_cast<const TColor *>(Value.constData());
    return TColor(Value.toInt());
}

QPalette PaletteOf(const QObject *Object)
{
    if (const auto *widget = qobject_cast<const QWidget *>(Object))
        return widget->palette();
    return QGuiApplication::palette();
}

// A QColor as the platform writes colours where it can: an identifier or "$00BBGGRR" for
// opaque colours, clNone for transparent black, clDefault for no colour; anything else
// partly or wholly transparent as "#AARRGGBB", so that its alpha survives.
QString QColorText(const QColor &Color)
{
    if (!Color.isValid())
        return ColorToString(clDefault);
    const QColor rgb = Color.toRgb();
    if (rgb.alpha() == 255 || rgb == QColor(Qt::transparent))
        return ColorToString(QColorToColor(rgb));
    return rgb.name(QColor::HexArgb).toUpper();
}

QString ColorValueText(PTypeInfo Type, const QVariant &Value)
{
    if (!Value.isValid())
        return {};
    return IsQColorType(Type) ? QColorText(Value.value<QColor>()) : ColorToString(ColorOf(Value));
}

std::optional<TColor> TryStringToColor(const QString &Text)
{
    try {
        return StringToColor(Text);
    } catch (const Exception &) {
        return std::nullopt;
    }
}

// Cursors ----------------------------------------------------------------------------------

QMetaEnum CursorShapes()
{
    return QMetaEnum::fromType<Qt::CursorShape>();
}

// The shapes that a QCursor can be made of; bitmap and custom cursors need a picture.
bool IsSettableShape(int Shape)
{
    return Shape >= Qt::ArrowCursor && Shape <= Qt::LastCursor;
}

std::optional<Qt::CursorShape> CursorShapeOf(const QVariant &Value)
{
    if (!Value.isValid())
        return std::nullopt;
    return Value.value<QCursor>().shape();
}

QString CursorText(const QVariant &Value)
{
    const std::optional<Qt::CursorShape> shape = CursorShapeOf(Value);
    if (!shape)
        return {};
    const char *key = CursorShapes().valueToKey(*shape);
    return key ? QString::fromLatin1(key) : QString::number(int(*shape));
}

// Shortcuts -----------------------------------------------------------------------------------

QString ShortCutText(const QVariant &Value)
{
    if (!Value.isValid())
        return {};
    const QKeySequence sequence = Value.value<QKeySequence>();
    return sequence.isEmpty() ? LoadStr(SNoShortCut) : sequence.toString(QKeySequence::PortableText);
}

// The shortcuts that the value list offers, in the order users know them.
QList<QKeyCombination> UsualShortCuts()
{
    QList<QKeyCombination> keys;
    for (int key = Qt::Key_A; key <= Qt::Key_Z; ++key)
        keys.append(QKeyCombination(Qt::ControlModifier, Qt::Key(key)));
    const Qt::KeyboardModifiers functionKeyModifiers[] = {
        Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier, Qt::ShiftModifier | Qt::ControlModifier};
    for (const Qt::KeyboardModifiers modifiers : functionKeyModifiers) {
        for (int key = Qt::Key_F1; key <= Qt::Key_F12; ++key)
            keys.append(QKeyCombination(modifiers, Qt::Key(key)));
    }
    const Qt::KeyboardModifiers editKeyModifiers[] = {Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier};
    for (const Qt::Key key : {Qt::Key_Insert, Qt::Key_Delete}) {
        for (const Qt::KeyboardModifiers modifiers : editKeyModifiers)
            keys.append(QKeyCombination(modifiers, key));
    }
    keys.append(QKeyCombination(Qt::AltModifier, Qt::Key_Backspace));
    keys.append(QKeyCombination(Qt::ShiftModifier | Qt::AltModifier, Qt::Key_Backspace));
    return keys;
}

std::optional<QKeySequence> ParseShortCut(const QString &Text)
{
    QString text = Text.trimmed();
    if (text.isEmpty() || text.compare(LoadStr(SNoShortCut), Qt::CaseInsensitive) == 0)
        return QKeySequence();
    // "Ctrl + S" is meant as "Ctrl+S"; Qt's parser takes no blanks around the plus.
    static const QRegularExpression blanksAroundPlus(QStringLiteral("\\s*\\+\\s*"));
    text.replace(blanksAroundPlus, QStringLiteral("+"));
    const QKeySequence sequence = QKeySequence::fromString(text, QKeySequence::PortableText);
    if (sequence.isEmpty())
        return std::nullopt;
    for (int i = 0; i < sequence.count(); ++i) {
        if (sequence[i].key() == Qt::Key_unknown || sequence[i].toCombined() == 0)
            return std::nullopt;
    }
    return sequence;
}

// Dates and times -----------------------------------------------------------------------------

QString DateText(const QDate &Date)
{
    if (!Date.isValid())
        return {};
    const int year = Date.year();
    return QString::asprintf("%s%04d-%02d-%02d", year < 0 ? "-" : "", std::abs(year), Date.month(), Date.day());
}

QString TimeText(const QTime &Time)
{
    if (!Time.isValid())
        return {};
    QString text = QString::asprintf("%02d:%02d:%02d", Time.hour(), Time.minute(), Time.second());
    if (Time.msec() != 0)
        text += QString::asprintf(".%03d", Time.msec());
    return text;
}

QString DateTimeText(const QDateTime &DateTime)
{
    if (!DateTime.isValid())
        return {};
    return DateText(DateTime.date()) + QLatin1Char(' ') + TimeText(DateTime.time());
}

// "yyyy-MM-dd", with a minus for years before Christ.
std::optional<QDate> ParseDate(QStringView Text)
{
    static const QRegularExpression pattern(QStringLiteral("^([+-]?\\d{1,6})-(\\d{1,2})-(\\d{1,2})$"));
    const QRegularExpressionMatch match = pattern.match(Text.trimmed());
    if (!match.hasMatch())
        return std::nullopt;
    const QDate date(match.capturedView(1).toInt(), match.capturedView(2).toInt(), match.capturedView(3).toInt());
    if (!date.isValid())
        return std::nullopt;
    return date;
}

// "HH:mm", "HH:mm:ss" or "HH:mm:ss.zzz", where fewer than three digits of the fraction are
// tenths or hundredths.
std::optional<QTime> ParseTime(QStringView Text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(\\d{1,2}):(\\d{1,2})(?::(\\d{1,2})(?:[.,](\\d{1,3}))?)?$"));
    const QRegularExpressionMatch match = pattern.match(Text.trimmed());
    if (!match.hasMatch())
        return std::nullopt;
    int msec = 0;
    if (match.hasCaptured(4)) {
        QString fraction = match.captured(4);
        while (fraction.size() < 3)
            fraction += QLatin1Char('0');
        msec = fraction.toInt();
    }
    const int second = match.hasCaptured(3) ? match.capturedView(3).toInt() : 0;
    const QTime time(match.capturedView(1).toInt(), match.capturedView(2).toInt(), second, msec);
    if (!time.isValid())
        return std::nullopt;
    return time;
}

struct TDateAndTime
{
    QDate Date;
    QTime Time;
};

// The date, then blanks or a "T", then the time; a date alone is midnight.
std::optional<TDateAndTime> ParseDateTime(QStringView Text)
{
    const QStringView text = Text.trimmed();
    qsizetype split = 0;
    while (split < text.size() && !text[split].isSpace() && text[split] != u'T' && text[split] != u't')
        ++split;
    const std::optional<QDate> date = ParseDate(text.left(split));
    if (!date)
        return std::nullopt;
    QStringView rest = text.mid(split).trimmed();
    if (rest.startsWith(u'T') || rest.startsWith(u't'))
        rest = rest.mid(1);
    if (rest.isEmpty())
        return TDateAndTime{*date, QTime(0, 0)};
    const std::optional<QTime> time = ParseTime(rest);
    if (!time)
        return std::nullopt;
    return TDateAndTime{*date, *time};
}

// The date and time in the time spec of Current, so that writing back the text shown leaves
// a UTC or offset value as it was.
QDateTime DateTimeLike(const TDateAndTime &Value, const QDateTime &Current)
{
    if (!Current.isValid())
        return QDateTime(Value.Date, Value.Time);
    switch (Current.timeSpec()) {
    case Qt::UTC:
        return QDateTime(Value.Date, Value.Time, Qt::UTC);
    case Qt::OffsetFromUTC:
        return QDateTime(Value.Date, Value.Time, Qt::OffsetFromUTC, Current.offsetFromUtc());
    case Qt::TimeZone:
        return QDateTime(Value.Date, Value.Time, Current.timeZone());
    case Qt::LocalTime:
        break;
    }
    return QDateTime(Value.Date, Value.Time);
}

// Value classes -------------------------------------------------------------------------------

QMetaEnum SizePolicies()
{
    const QMetaObject &meta = QSizePolicy::staticMetaObject;
    return meta.enumerator(meta.indexOfEnumerator("Policy"));
}

PTypeInfo SizePolicyPolicyType()
{
    return TypeInfoOf(QMetaType::fromType<QSizePolicy::Policy>(), SizePolicies());
}

QString PolicyText(QSizePolicy::Policy Policy)
{
    const char *key = SizePolicies().valueToKey(Policy);
    return key ? QString::fromLatin1(key) : QString::number(int(Policy));
}

std::optional<QSizePolicy::Policy> ParsePolicy(QStringView Text)
{
    const QMetaEnum policies = SizePolicies();
    for (int i = 0; i < policies.keyCount(); ++i) {
        if (Text.compare(QLatin1String(policies.key(i)), Qt::CaseInsensitive) == 0)
            return QSizePolicy::Policy(policies.value(i));
    }
    return std::nullopt;
}

QString ValueClassText(const QVariant &Value)
{
    switch (Value.metaType().id()) {
    case QMetaType::QSize: {
        const QSize size = Value.toSize();
        return QString::number(size.width()) + QLatin1String(" x ") + QString::number(size.height());
    }
    case QMetaType::QSizeF: {
        const QSizeF size = Value.toSizeF();
        return FloatText(size.width()) + QLatin1String(" x ") + FloatText(size.height());
    }
    case QMetaType::QPoint: {
        const QPoint point = Value.toPoint();
        return QLatin1Char('(') + QString::number(point.x()) + QLatin1String(", ") + QString::number(point.y())
               + QLatin1Char(')');
    }
    case QMetaType::QPointF: {
        const QPointF point = Value.toPointF();
        return QLatin1Char('(') + FloatText(point.x()) + QLatin1String(", ") + FloatText(point.y()) + QLatin1Char(')');
    }
    case QMetaType::QRect: {
        const QRect rect = Value.toRect();
        return QLatin1String("[(") + QString::number(rect.x()) + QLatin1String(", ") + QString::number(rect.y())
               + QLatin1String("), ") + QString::number(rect.width()) + QLatin1String(" x ")
               + QString::number(rect.height()) + QLatin1Char(']');
    }
    case QMetaType::QRectF: {
        const QRectF rect = Value.toRectF();
        return QLatin1String("[(") + FloatText(rect.x()) + QLatin1String(", ") + FloatText(rect.y())
               + QLatin1String("), ") + FloatText(rect.width()) + QLatin1String(" x ") + FloatText(rect.height())
               + QLatin1Char(']');
    }
    case QMetaType::QSizePolicy: {
        const QSizePolicy policy = Value.value<QSizePolicy>();
        return QLatin1Char('[') + PolicyText(policy.horizontalPolicy()) + QLatin1String(", ")
               + PolicyText(policy.verticalPolicy()) + QLatin1String(", ")
               + QString::number(policy.horizontalStretch()) + QLatin1String(", ")
               + QString::number(policy.verticalStretch()) + QLatin1Char(']');
    }
    default:
        break;
    }
    if (Value.metaType() == QMetaType::fromType<QMargins>()) {
        const QMargins margins = Value.value<QMargins>();
        return QLatin1Char('[') + QString::number(margins.left()) + QLatin1String(", ")
               + QString::number(margins.top()) + QLatin1String(", ") + QString::number(margins.right())
               + QLatin1String(", ") + QString::number(margins.bottom()) + QLatin1Char(']');
    }
    if (Value.metaType() == QMetaType::fromType<QMarginsF>()) {
        const QMarginsF margins = Value.value<QMarginsF>();
        return QLatin1Char('[') + FloatText(margins.left()) + QLatin1String(", ") + FloatText(margins.top())
               + QLatin1String(", ") + FloatText(margins.right()) + QLatin1String(", ") + FloatText(margins.bottom())
               + QLatin1Char(']');
    }
    return {};
}

// A typed value reduced to its layout ("[(#,#),#x#]": every number a "#") and its numbers,
// so that blanks may go anywhere and each form is one comparison.
struct TValueShape
{
    QString Layout;
    QStringList Numbers;
};

TValueShape ShapeOf(QStringView Text)
{
    TValueShape shape;
    QString number;
    const auto endNumber = [&] {
        if (number.isEmpty())
            return;
        shape.Layout += QLatin1Char('#');
        shape.Numbers.append(number);
        number.clear();
    };
    for (const QChar c : Text) {
        if (c.isSpace()) {
            endNumber();
        } else if (c == u'(' || c == u')' || c == u'[' || c == u']' || c == u',' || c == u'x' || c == u'X') {
            endNumber();
            shape.Layout += c == u'X' ? QChar(u'x') : c;
        } else {
            number += c;
        }
    }
    endNumber();
    return shape;
}

// The numbers of Text when its layout is one of Layouts.
std::optional<QStringList> NumbersOf(QStringView Text, const QStringList &Layouts)
{
    TValueShape shape = ShapeOf(Text);
    if (!Layouts.contains(shape.Layout))
        return std::nullopt;
    return shape.Numbers;
}

std::optional<QList<int>> Integers(const QStringList &Numbers)
{
    QList<int> values;
    for (const QString &number : Numbers) {
        bool ok = false;
        values.append(number.toInt(&ok));
        if (!ok)
            return std::nullopt;
    }
    return values;
}

std::optional<QList<double>> Reals(const QStringList &Numbers)
{
    QList<double> values;
    for (const QString &number : Numbers) {
        bool ok = false;
        values.append(QLocale::c().toDouble(number, &ok));
        if (!ok)
            return std::nullopt;
    }
    return values;
}

// The value of Type that Text makes; nothing when it makes none. Size policies are made
// apart (they keep what their text does not show).
std::optional<QVariant> ParseValueClass(QMetaType Type, QStringView Text)
{
    QStringList layouts;
    bool real = false;
    switch (Type.id()) {
    case QMetaType::QSizeF:
        real = true;
        [[fallthrough]];
    case QMetaType::QSize:
        layouts = {QStringLiteral("#x#")};
        break;
    case QMetaType::QPointF:
        real = true;
        [[fallthrough]];
    case QMetaType::QPoint:
        layouts = {QStringLiteral("(#,#)"), QStringLiteral("#,#")};
        break;
    case QMetaType::QRectF:
        real = true;
        [[fallthrough]];
    case QMetaType::QRect:
        layouts = {QStringLiteral("[(#,#),#x#]"), QStringLiteral("(#,#),#x#")};
        break;
    default:
        if (Type == QMetaType::fromType<QMargins>() || Type == QMetaType::fromType<QMarginsF>()) {
            real = Type == QMetaType::fromType<QMarginsF>();
            layouts = {QStringLiteral("[#,#,#,#]"), QStringLiteral("#,#,#,#")};
            break;
        }
        return std::nullopt;
    }
    const std::optional<QStringList> numbers = NumbersOf(Text, layouts);
    if (!numbers)
        return std::nullopt;
    if (real) {
        const std::optional<QList<double>> v = Reals(*numbers);
        if (!v)
            return std::nullopt;
        switch (Type.id()) {
        case QMetaType::QSizeF:
            return QVariant(QSizeF(v->at(0), v->at(1)));
        case QMetaType::QPointF:
            return QVariant(QPointF(v->at(0), v->at(1)));
        case QMetaType::QRectF:
            return QVariant(QRectF(v->at(0), v->at(1), v->at(2), v->at(3)));
        default:
            return QVariant::fromValue(QMarginsF(v->at(0), v->at(1), v->at(2), v->at(3)));
        }
    }
    const std::optional<QList<int>> v = Integers(*numbers);
    if (!v)
        return std::nullopt;
    switch (Type.id()) {
    case QMetaType::QSize:
        return QVariant(QSize(v->at(0), v->at(1)));
    case QMetaType::QPoint:
        return QVariant(QPoint(v->at(0), v->at(1)));
    case QMetaType::QRect:
        return QVariant(QRect(v->at(0), v->at(1), v->at(2), v->at(3)));
    default:
        return QVariant::fromValue(QMargins(v->at(0), v->at(1), v->at(2), v->at(3)));
    }
}

struct TPolicyText
{
    QSizePolicy::Policy Horizontal;
    QSizePolicy::Policy Vertical;
    std::optional<int> HorizontalStretch;
    std::optional<int> VerticalStretch;
};

// "[Preferred, Fixed, 0, 0]"; the brackets may be left out, and so may the stretches.
std::optional<TPolicyText> ParsePolicyText(QStringView Text)
{
    QStringView text = Text.trimmed();
    if (text.startsWith(u'[') && text.endsWith(u']'))
        text = text.mid(1, text.size() - 2);
    const QList<QStringView> fields = text.split(u',');
    if (fields.size() != 2 && fields.size() != 4)
        return std::nullopt;
    const std::optional<QSizePolicy::Policy> horizontal = ParsePolicy(fields[0].trimmed());
    const std::optional<QSizePolicy::Policy> vertical = ParsePolicy(fields[1].trimmed());
    if (!horizontal || !vertical)
        return std::nullopt;
    TPolicyText result{*horizontal, *vertical, std::nullopt, std::nullopt};
    if (fields.size() == 4) {
        bool horizontalOk = false;
        bool verticalOk = false;
        result.HorizontalStretch = fields[2].trimmed().toInt(&horizontalOk);
        result.VerticalStretch = fields[3].trimmed().toInt(&verticalOk);
        if (!horizontalOk || !verticalOk)
            return std::nullopt;
    }
    return result;
}

const char *ValueClassKind(QMetaType Type)
{
    switch (Type.id()) {
    case QMetaType::QSize:
    case QMetaType::QSizeF:
        return SKindSize;
    case QMetaType::QPoint:
    case QMetaType::QPointF:
        return SKindPoint;
    case QMetaType::QRect:
    case QMetaType::QRectF:
        return SKindRect;
    case QMetaType::QSizePolicy:
        return SKindSizePolicy;
    default:
        return SKindMargins;
    }
}

// Parts ---------------------------------------------------------------------------------------
// A part's setter takes the whole value, changes the part and puts the whole back.

// Changes one attribute of a font only where it differs, so that writing back what was read
// never disturbs what the part does not show (a fraction of a point, a weight that merely
// counts as bold) nor marks the attribute as set.
template <typename TGet, typename TSet, typename TValue>
void ChangeFont(QVariant &Whole, TGet Get, TSet Set, const TValue &Value)
{
    QFont font = Whole.value<QFont>();
    if ((font.*Get)() != Value) {
        (font.*Set)(Value);
        Whole = font;
    }
}

QFont FontOf(const QVariant &Whole)
{
    return Whole.value<QFont>();
}

int FontStyles(const QFont &Font)
{
    return (Font.bold() ? 1 : 0) | (Font.italic() ? 2 : 0) | (Font.underline() ? 4 : 0) | (Font.strikeOut() ? 8 : 0);
}

void SetFontStyles(QVariant &Whole, int Styles)
{
    ChangeFont(Whole, &QFont::bold, &QFont::setBold, bool(Styles & 1));
    ChangeFont(Whole, &QFont::italic, &QFont::setItalic, bool(Styles & 2));
    ChangeFont(Whole, &QFont::underline, &QFont::setUnderline, bool(Styles & 4));
    ChangeFont(Whole, &QFont::strikeOut, &QFont::setStrikeOut, bool(Styles & 8));
}

} // namespace

const QList<TValuePart> &detail::FontParts()
{
    static const QList<TValuePart> parts = {
        {"Name", QMetaType::fromType<QString>(), [](const QVariant &w) { return QVariant(FontOf(w).family()); },
         [](QVariant &w, const QVariant &p) { ChangeFont(w, &QFont::family, &QFont::setFamily, p.toString()); }},
        {"Size", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(FontOf(w).pointSize()); },
         [](QVariant &w, const QVariant &p) {
             if (p.toInt() > 0)
                 ChangeFont(w, &QFont::pointSize, &QFont::setPointSize, p.toInt());
         }},
        {"Style", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(FontStyles(FontOf(w))); },
         [](QVariant &w, const QVariant &p) { SetFontStyles(w, p.toInt()); }, &FontStylesTypeInfo},
        {"Weight", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(int(FontOf(w).weight())); },
         [](QVariant &w, const QVariant &p) {
             if (p.toInt() >= 1 && p.toInt() <= 1000)
                 ChangeFont(w, &QFont::weight, &QFont::setWeight, QFont::Weight(p.toInt()));
         }},
        {"PixelSize", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(FontOf(w).pixelSize()); },
         [](QVariant &w, const QVariant &p) {
             if (p.toInt() > 0)
                 ChangeFont(w, &QFont::pixelSize, &QFont::setPixelSize, p.toInt());
         }},
        {"Stretch", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(FontOf(w).stretch()); },
         [](QVariant &w, const QVariant &p) {
             if (p.toInt() >= 0 && p.toInt() <= 4000)
                 ChangeFont(w, &QFont::stretch, &QFont::setStretch, p.toInt());
         }},
        {"Kerning", QMetaType::fromType<bool>(), [](const QVariant &w) { return QVariant(FontOf(w).kerning()); },
         [](QVariant &w, const QVariant &p) { ChangeFont(w, &QFont::kerning, &QFont::setKerning, p.toBool()); }},
        {"Overline", QMetaType::fromType<bool>(), [](const QVariant &w) { return QVariant(FontOf(w).overline()); },
         [](QVariant &w, const QVariant &p) { ChangeFont(w, &QFont::overline, &QFont::setOverline, p.toBool()); }},
        {"FixedPitch", QMetaType::fromType<bool>(), [](const QVariant &w) { return QVariant(FontOf(w).fixedPitch()); },
         [](QVariant &w, const QVariant &p) { ChangeFont(w, &QFont::fixedPitch, &QFont::setFixedPitch, p.toBool()); }},
    };
    return parts;
}

namespace {

// Changes the part of a value of type T that Change names.
template <typename T, typename TChange>
void ChangeValue(QVariant &Whole, TChange Change)
{
    T value = Whole.value<T>();
    Change(value);
    Whole = QVariant::fromValue(value);
}

const QList<TValuePart> &SizeParts()
{
    static const QList<TValuePart> parts = {
        {"Width", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(w.toSize().width()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QSize>(w, [&](QSize &v) { v.setWidth(p.toInt()); }); }},
        {"Height", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(w.toSize().height()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QSize>(w, [&](QSize &v) { v.setHeight(p.toInt()); }); }},
    };
    return parts;
}

const QList<TValuePart> &SizeFParts()
{
    static const QList<TValuePart> parts = {
        {"Width", QMetaType::fromType<double>(), [](const QVariant &w) { return QVariant(w.toSizeF().width()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QSizeF>(w, [&](QSizeF &v) { v.setWidth(p.toDouble()); }); }},
        {"Height", QMetaType::fromType<double>(), [](const QVariant &w) { return QVariant(w.toSizeF().height()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QSizeF>(w, [&](QSizeF &v) { v.setHeight(p.toDouble()); }); }},
    };
    return parts;
}

const QList<TValuePart> &PointParts()
{
    static const QList<TValuePart> parts = {
        {"X", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(w.toPoint().x()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QPoint>(w, [&](QPoint &v) { v.setX(p.toInt()); }); }},
        {"Y", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(w.toPoint().y()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QPoint>(w, [&](QPoint &v) { v.setY(p.toInt()); }); }},
    };
    return parts;
}

const QList<TValuePart> &PointFParts()
{
    static const QList<TValuePart> parts = {
        {"X", QMetaType::fromType<double>(), [](const QVariant &w) { return QVariant(w.toPointF().x()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QPointF>(w, [&](QPointF &v) { v.setX(p.toDouble()); }); }},
        {"Y", QMetaType::fromType<double>(), [](const QVariant &w) { return QVariant(w.toPointF().y()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QPointF>(w, [&](QPointF &v) { v.setY(p.toDouble()); }); }},
    };
    return parts;
}

// X and Y move the rectangle; Width and Height keep its position.
const QList<TValuePart> &RectParts()
{
    static const QList<TValuePart> parts = {
        {"X", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(w.toRect().x()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QRect>(w, [&](QRect &v) { v.moveLeft(p.toInt()); }); }},
        {"Y", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(w.toRect().y()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QRect>(w, [&](QRect &v) { v.moveTop(p.toInt()); }); }},
        {"Width", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(w.toRect().width()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QRect>(w, [&](QRect &v) { v.setWidth(p.toInt()); }); }},
        {"Height", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(w.toRect().height()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QRect>(w, [&](QRect &v) { v.setHeight(p.toInt()); }); }},
    };
    return parts;
}

const QList<TValuePart> &RectFParts()
{
    static const QList<TValuePart> parts = {
        {"X", QMetaType::fromType<double>(), [](const QVariant &w) { return QVariant(w.toRectF().x()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QRectF>(w, [&](QRectF &v) { v.moveLeft(p.toDouble()); }); }},
        {"Y", QMetaType::fromType<double>(), [](const QVariant &w) { return QVariant(w.toRectF().y()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QRectF>(w, [&](QRectF &v) { v.moveTop(p.toDouble()); }); }},
        {"Width", QMetaType::fromType<double>(), [](const QVariant &w) { return QVariant(w.toRectF().width()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QRectF>(w, [&](QRectF &v) { v.setWidth(p.toDouble()); }); }},
        {"Height", QMetaType::fromType<double>(), [](const QVariant &w) { return QVariant(w.toRectF().height()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<QRectF>(w, [&](QRectF &v) { v.setHeight(p.toDouble()); }); }},
    };
    return parts;
}

template <typename TMargins>
TMargins MarginsOf(const QVariant &Whole)
{
    return Whole.value<TMargins>();
}

const QList<TValuePart> &MarginsParts()
{
    using M = QMargins;
    static const QList<TValuePart> parts = {
        {"Left", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(MarginsOf<M>(w).left()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<M>(w, [&](M &v) { v.setLeft(p.toInt()); }); }},
        {"Top", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(MarginsOf<M>(w).top()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<M>(w, [&](M &v) { v.setTop(p.toInt()); }); }},
        {"Right", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(MarginsOf<M>(w).right()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<M>(w, [&](M &v) { v.setRight(p.toInt()); }); }},
        {"Bottom", QMetaType::fromType<int>(), [](const QVariant &w) { return QVariant(MarginsOf<M>(w).bottom()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<M>(w, [&](M &v) { v.setBottom(p.toInt()); }); }},
    };
    return parts;
}

const QList<TValuePart> &MarginsFParts()
{
    using M = QMarginsF;
    static const QList<TValuePart> parts = {
        {"Left", QMetaType::fromType<double>(), [](const QVariant &w) { return QVariant(MarginsOf<M>(w).left()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<M>(w, [&](M &v) { v.setLeft(p.toDouble()); }); }},
        {"Top", QMetaType::fromType<double>(), [](const QVariant &w) { return QVariant(MarginsOf<M>(w).top()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<M>(w, [&](M &v) { v.setTop(p.toDouble()); }); }},
        {"Right", QMetaType::fromType<double>(), [](const QVariant &w) { return QVariant(MarginsOf<M>(w).right()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<M>(w, [&](M &v) { v.setRight(p.toDouble()); }); }},
        {"Bottom", QMetaType::fromType<double>(), [](const QVariant &w) { return QVariant(MarginsOf<M>(w).bottom()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<M>(w, [&](M &v) { v.setBottom(p.toDouble()); }); }},
    };
    return parts;
}

QSizePolicy PolicyOf(const QVariant &Whole)
{
    return Whole.value<QSizePolicy>();
}

QSizePolicy::Policy PolicyPart(const QVariant &Part)
{
    return QSizePolicy::Policy(OrdinalOf(Part));
}

const QList<TValuePart> &SizePolicyParts()
{
    using P = QSizePolicy;
    static const QList<TValuePart> parts = {
        {"HorizontalPolicy", QMetaType::fromType<P::Policy>(),
         [](const QVariant &w) { return QVariant::fromValue(PolicyOf(w).horizontalPolicy()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<P>(w, [&](P &v) { v.setHorizontalPolicy(PolicyPart(p)); }); },
         &SizePolicyPolicyType},
        {"VerticalPolicy", QMetaType::fromType<P::Policy>(),
         [](const QVariant &w) { return QVariant::fromValue(PolicyOf(w).verticalPolicy()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<P>(w, [&](P &v) { v.setVerticalPolicy(PolicyPart(p)); }); },
         &SizePolicyPolicyType},
        {"HorizontalStretch", QMetaType::fromType<int>(),
         [](const QVariant &w) { return QVariant(PolicyOf(w).horizontalStretch()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<P>(w, [&](P &v) { v.setHorizontalStretch(p.toInt()); }); }},
        {"VerticalStretch", QMetaType::fromType<int>(),
         [](const QVariant &w) { return QVariant(PolicyOf(w).verticalStretch()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<P>(w, [&](P &v) { v.setVerticalStretch(p.toInt()); }); }},
        {"HeightForWidth", QMetaType::fromType<bool>(),
         [](const QVariant &w) { return QVariant(PolicyOf(w).hasHeightForWidth()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<P>(w, [&](P &v) { v.setHeightForWidth(p.toBool()); }); }},
        {"WidthForHeight", QMetaType::fromType<bool>(),
         [](const QVariant &w) { return QVariant(PolicyOf(w).hasWidthForHeight()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<P>(w, [&](P &v) { v.setWidthForHeight(p.toBool()); }); }},
        {"RetainSizeWhenHidden", QMetaType::fromType<bool>(),
         [](const QVariant &w) { return QVariant(PolicyOf(w).retainSizeWhenHidden()); },
         [](QVariant &w, const QVariant &p) { ChangeValue<P>(w, [&](P &v) { v.setRetainSizeWhenHidden(p.toBool()); }); }},
    };
    return parts;
}

} // namespace

const QList<TValuePart> *detail::ValueClassParts(QMetaType Type)
{
    switch (Type.id()) {
    case QMetaType::QSize:
        return &SizeParts();
    case QMetaType::QSizeF:
        return &SizeFParts();
    case QMetaType::QPoint:
        return &PointParts();
    case QMetaType::QPointF:
        return &PointFParts();
    case QMetaType::QRect:
        return &RectParts();
    case QMetaType::QRectF:
        return &RectFParts();
    case QMetaType::QSizePolicy:
        return &SizePolicyParts();
    default:
        break;
    }
    if (Type == QMetaType::fromType<QMargins>())
        return &MarginsParts();
    if (Type == QMetaType::fromType<QMarginsF>())
        return &MarginsFParts();
    return nullptr;
}

// TColorProperty ------------------------------------------------------------------------------

TPropertyAttributes TColorProperty::GetAttributes() const
{
    return WithDialog(TIntegerProperty::GetAttributes() | paValueList);
}

bool TColorProperty::AllEqual() const
{
    PTypeInfo type = GetPropType();
    return AllValuesEqual([this, type](int Index) { return ColorValueText(type, GetVarValueAt(Index)); });
}

QString TColorProperty::GetValue() const
{
    return ColorValueText(GetPropType(), GetVarValue());
}

void TColorProperty::GetValues(const TGetStrProc &Proc) const
{
    GetColorValues(Proc);
}

void TColorProperty::SetValue(const QString &Value)
{
    const std::optional<TColor> color = TryStringToColor(Value);
    if (!IsQColorType(GetPropType())) {
        if (!color)
            RaiseInvalidValue(Value, LoadStr(SKindColor));
        SetVarValue(QVariant::fromValue(*color));
        return;
    }
    if (color) {
        // A system colour is the colour it has in each object's own palette.
        const TColor platformColor = *color;
        WriteEach([platformColor](QObject *object, const QVariant &) {
            return QVariant(ColorToQColor(platformColor, PaletteOf(object)));
        });
        return;
    }
    const QColor named = QColor::fromString(Value.trimmed());
    if (!named.isValid())
        RaiseInvalidValue(Value, LoadStr(SKindColor));
    SetVarValue(QVariant(named));
}

void TColorProperty::Edit()
{
    QObject *first = GetComponent(0);
    if (!first)
        return;
    const QVariant current = GetVarValue();
    const bool isQColor = IsQColorType(GetPropType());
    QColor color = isQColor ? current.value<QColor>() : ColorToQColor(ColorOf(current), PaletteOf(first));
    if (!ExecuteColorDialog(color))
        return;
    if (isQColor)
        SetVarValue(QVariant(color));
    else
        SetVarValue(QVariant::fromValue(QColorToColor(color)));
}

// TFontProperty -------------------------------------------------------------------------------

TPropertyAttributes TFontProperty::GetAttributes() const
{
    TPropertyAttributes attributes = TClassProperty::GetAttributes();
    if (GetPropInfo()->IsWritable())
        attributes |= paDialog;
    return attributes;
}

QString TFontProperty::GetValue() const
{
    if (!GetVarValue().isValid())
        return {};
    return TClassProperty::GetValue();
}

void TFontProperty::GetProperties(const TGetPropEditProc &Proc) const
{
    GetPartProperties(detail::FontParts(), Proc);
}

void TFontProperty::Edit()
{
    if (!GetComponent(0))
        return;
    QFont font = GetVarValue().value<QFont>();
    if (ExecuteFontDialog(font))
        SetVarValue(QVariant(font));
}

// TFontNameProperty ---------------------------------------------------------------------------

TPropertyAttributes TFontNameProperty::GetAttributes() const
{
    return TStringProperty::GetAttributes() | paValueList | paSortList;
}

void TFontNameProperty::GetValues(const TGetStrProc &Proc) const
{
    const QStringList families = QFontDatabase::families();
    for (const QString &family : families)
        Proc(family);
}

// TCursorProperty -----------------------------------------------------------------------------

TPropertyAttributes TCursorProperty::GetAttributes() const
{
    TPropertyAttributes attributes = TPropertyEditor::GetAttributes() | paValueList;
    // A bitmap or custom cursor shown has no text that would make it again. Only the shown
    // value is looked at: attributes are asked for often, and for large selections.
    const std::optional<Qt::CursorShape> shape = CursorShapeOf(GetVarValue());
    if (shape && !IsSettableShape(*shape))
        attributes |= paReadOnly;
    return attributes;
}

bool TCursorProperty::AllEqual() const
{
    return AllValuesEqual([this](int Index) { return CursorText(GetVarValueAt(Index)); });
}

QString TCursorProperty::GetValue() const
{
    return CursorText(GetVarValue());
}

void TCursorProperty::GetValues(const TGetStrProc &Proc) const
{
    const QMetaEnum shapes = CursorShapes();
    for (int shape = Qt::ArrowCursor; shape <= Qt::LastCursor; ++shape) {
        if (const char *key = shapes.valueToKey(shape))
            Proc(QString::fromLatin1(key));
    }
}

void TCursorProperty::SetValue(const QString &Value)
{
    const QString text = Value.trimmed();
    // The text of a bitmap cursor written back changes nothing.
    if (ShowsAlready(text))
        return;
    const QMetaEnum shapes = CursorShapes();
    for (int i = 0; i < shapes.keyCount(); ++i) {
        if (IsSettableShape(shapes.value(i)) && text.compare(QLatin1String(shapes.key(i)), Qt::CaseInsensitive) == 0) {
            SetVarValue(QVariant::fromValue(QCursor(Qt::CursorShape(shapes.value(i)))));
            return;
        }
    }
    RaiseInvalidValue(Value, LoadStr(SKindCursor));
}

// TShortCutProperty ---------------------------------------------------------------------------

TPropertyAttributes TShortCutProperty::GetAttributes() const
{
    return TPropertyEditor::GetAttributes() | paValueList;
}

bool TShortCutProperty::AllEqual() const
{
    return AllValuesEqual([this](int Index) { return ShortCutText(GetVarValueAt(Index)); });
}

QString TShortCutProperty::GetValue() const
{
    return ShortCutText(GetVarValue());
}

void TShortCutProperty::GetValues(const TGetStrProc &Proc) const
{
    Proc(LoadStr(SNoShortCut));
    const QList<QKeyCombination> keys = UsualShortCuts();
    for (const QKeyCombination key : keys)
        Proc(QKeySequence(key).toString(QKeySequence::PortableText));
}

void TShortCutProperty::SetValue(const QString &Value)
{
    const std::optional<QKeySequence> sequence = ParseShortCut(Value);
    if (!sequence)
        RaiseInvalidValue(Value, LoadStr(SKindShortCut));
    SetVarValue(QVariant::fromValue(*sequence));
}

// Dates and times -----------------------------------------------------------------------------

QString TDateProperty::GetValue() const
{
    return DateText(GetVarValue().toDate());
}

void TDateProperty::SetValue(const QString &Value)
{
    if (Value.trimmed().isEmpty()) {
        SetVarValue(QVariant(QDate()));
        return;
    }
    const std::optional<QDate> date = ParseDate(Value);
    if (!date)
        RaiseInvalidValue(Value, LoadStr(SKindDate));
    SetVarValue(QVariant(*date));
}

QString TTimeProperty::GetValue() const
{
    return TimeText(GetVarValue().toTime());
}

void TTimeProperty::SetValue(const QString &Value)
{
    if (Value.trimmed().isEmpty()) {
        SetVarValue(QVariant(QTime()));
        return;
    }
    const std::optional<QTime> time = ParseTime(Value);
    if (!time)
        RaiseInvalidValue(Value, LoadStr(SKindTime));
    SetVarValue(QVariant(*time));
}

bool TDateTimeProperty::AllEqual() const
{
    return AllValuesEqual([this](int Index) { return DateTimeText(GetVarValueAt(Index).toDateTime()); });
}

QString TDateTimeProperty::GetValue() const
{
    return DateTimeText(GetVarValue().toDateTime());
}

void TDateTimeProperty::SetValue(const QString &Value)
{
    if (Value.trimmed().isEmpty()) {
        SetVarValue(QVariant(QDateTime()));
        return;
    }
    const std::optional<TDateAndTime> dateTime = ParseDateTime(Value);
    if (!dateTime)
        RaiseInvalidValue(Value, LoadStr(SKindDateTime));
    const TDateAndTime parsed = *dateTime;
    WriteEach([parsed](QObject *, const QVariant &current) {
        return QVariant(DateTimeLike(parsed, current.toDateTime()));
    });
}

// TStringListProperty -------------------------------------------------------------------------

TPropertyAttributes TStringListProperty::GetAttributes() const
{
    return WithDialog(TPropertyEditor::GetAttributes());
}

QString TStringListProperty::GetValue() const
{
    const QVariant value = GetVarValue();
    if (!value.isValid())
        return {};
    return QuotedCommaText(value.toStringList());
}

void TStringListProperty::SetValue(const QString &Value)
{
    QStringList list;
    if (!SplitQuotedCommaText(Value, list))
        RaiseInvalidValue(Value, LoadStr(SKindStringList));
    SetVarValue(QVariant(list));
}

void TStringListProperty::Edit()
{
    QObject *first = GetComponent(0);
    if (!first)
        return;
    QStringList lines = GetVarValue().toStringList();
    const QString caption =
        first->objectName().isEmpty() ? GetName() : first->objectName() + QLatin1Char('.') + GetName();
    if (ExecuteStringListDialog(lines, caption))
        SetVarValue(QVariant(lines));
}

// TValueClassProperty -------------------------------------------------------------------------

TPropertyAttributes TValueClassProperty::GetAttributes() const
{
    // Unlike an object, a value is typed as its text.
    return TPropertyEditor::GetAttributes() | paSubProperties;
}

QString TValueClassProperty::GetValue() const
{
    return ValueClassText(GetVarValue());
}

void TValueClassProperty::SetValue(const QString &Value)
{
    const QMetaType type = GetPropType()->MetaType;
    const QString kind = LoadStr(ValueClassKind(type));
    if (type.id() != QMetaType::QSizePolicy) {
        const std::optional<QVariant> value = ParseValueClass(type, Value);
        if (!value)
            RaiseInvalidValue(Value, kind);
        SetVarValue(*value);
        return;
    }
    const std::optional<TPolicyText> parsed = ParsePolicyText(Value);
    if (!parsed)
        RaiseInvalidValue(Value, kind);
    for (const std::optional<int> &stretch : {parsed->HorizontalStretch, parsed->VerticalStretch}) {
        if (stretch && (*stretch < 0 || *stretch > 255))
            throw Exception(LoadStr(SOutOfRange).arg(0).arg(255));
    }
    // Each object keeps what the text does not show (height for width and the like).
    const TPolicyText policyText = *parsed;
    WriteEach([policyText](QObject *, const QVariant &current) {
        QSizePolicy policy = current.value<QSizePolicy>();
        policy.setHorizontalPolicy(policyText.Horizontal);
        policy.setVerticalPolicy(policyText.Vertical);
        if (policyText.HorizontalStretch)
            policy.setHorizontalStretch(*policyText.HorizontalStretch);
        if (policyText.VerticalStretch)
            policy.setVerticalStretch(*policyText.VerticalStretch);
        return QVariant(policy);
    });
}

void TValueClassProperty::GetProperties(const TGetPropEditProc &Proc) const
{
    if (const QList<TValuePart> *parts = detail::ValueClassParts(GetPropType()->MetaType))
        GetPartProperties(*parts, Proc);
}

// Registration --------------------------------------------------------------------------------

PTypeInfo FontStylesTypeInfo()
{
    return SetTypeInfo(QStringLiteral("TFontStyles"), QMetaType::fromType<int>(),
                       {{QStringLiteral("fsBold"), 1},
                        {QStringLiteral("fsItalic"), 2},
                        {QStringLiteral("fsUnderline"), 4},
                        {QStringLiteral("fsStrikeOut"), 8}});
}

// TPictureProperty --------------------------------------------------------------------------

namespace {

// The picture of a variant's kind; 0 for a null or foreign value, so that two objects compare
// equal exactly when they share one picture.
qint64 PictureKey(const QVariant &Value)
{
    switch (Value.metaType().id()) {
    case QMetaType::QPixmap:
        return Value.value<QPixmap>().cacheKey();
    case QMetaType::QBitmap:
        return Value.value<QBitmap>().cacheKey();
    case QMetaType::QImage:
        return Value.value<QImage>().cacheKey();
    case QMetaType::QIcon:
        return Value.value<QIcon>().cacheKey();
    default:
        return 0;
    }
}

bool IsNullPicture(const QVariant &Value)
{
    switch (Value.metaType().id()) {
    case QMetaType::QPixmap:
        return Value.value<QPixmap>().isNull();
    case QMetaType::QBitmap:
        return Value.value<QBitmap>().isNull();
    case QMetaType::QImage:
        return Value.value<QImage>().isNull();
    case QMetaType::QIcon:
        return Value.value<QIcon>().isNull();
    default:
        return true;
    }
}

// The picture in FileName as a value of Type; invalid when it can't be read.
QVariant LoadPicture(QMetaType Type, const QString &FileName)
{
    const QImage image(FileName);
    if (image.isNull())
        return {};
    switch (Type.id()) {
    case QMetaType::QPixmap:
        return QVariant::fromValue(QPixmap::fromImage(image));
    case QMetaType::QBitmap:
        return QVariant::fromValue(QBitmap::fromImage(image));
    case QMetaType::QIcon:
        return QVariant::fromValue(QIcon(FileName));
    default:
        return QVariant::fromValue(image);
    }
}

} // namespace

TPropertyAttributes TPictureProperty::GetAttributes() const
{
    return WithDialog(TPropertyEditor::GetAttributes());
}

bool TPictureProperty::AllEqual() const
{
    return AllValuesEqual([this](int Index) { return PictureKey(GetVarValueAt(Index)); });
}

QString TPictureProperty::GetValue() const
{
    const QVariant value = GetVarValue();
    if (!value.isValid())
        return {};
    if (IsNullPicture(value))
        return LoadStr(SNoPicture);
    QSize size;
    switch (value.metaType().id()) {
    case QMetaType::QPixmap:
        size = value.value<QPixmap>().size();
        break;
    case QMetaType::QBitmap:
        size = value.value<QBitmap>().size();
        break;
    case QMetaType::QImage:
        size = value.value<QImage>().size();
        break;
    default:
        return TypeText();
    }
    return QLatin1Char('(') + GetPropType()->Name + QLatin1Char(' ') + QString::number(size.width())
           + QLatin1String(" x ") + QString::number(size.height()) + QLatin1Char(')');
}

void TPictureProperty::SetValue(const QString &Value)
{
    const QString text = Value.trimmed();
    // Its own text written back keeps the picture.
    if (ShowsAlready(text))
        return;
    const QMetaType type = GetPropType()->MetaType;
    if (text.isEmpty() || text == LoadStr(SNoPicture)) {
        SetVarValue(QVariant(type));
        return;
    }
    const QVariant picture = LoadPicture(type, text);
    if (!picture.isValid())
        RaiseInvalidValue(Value, LoadStr(SKindPicture));
    SetVarValue(picture);
}

void TPictureProperty::Edit()
{
    if (!GetComponent(0) || (GetAttributes() & paReadOnly))
        return;
    QString fileName;
    if (ExecutePictureDialog(fileName))
        SetValue(fileName);
}

void RegisterTypePropertyEditors()
{
    const QMetaObject *anyClass = nullptr;
    const QString anyName;
    const auto registerFor = [&](PTypeInfo type, TPropertyEditorClass editor) {
        RegisterPropertyEditor(type, anyClass, anyName, editor);
    };
    registerFor(TypeInfo<TColor>(), PropertyEditorClass<TColorProperty>);
    registerFor(TypeInfo<QColor>(), PropertyEditorClass<TColorProperty>);
    registerFor(TypeInfo<QFont>(), PropertyEditorClass<TFontProperty>);
    RegisterPropertyEditor(TypeInfo<QString>(), TypeInfo<QFont>(), QStringLiteral("Name"),
                           PropertyEditorClass<TFontNameProperty>);
    registerFor(TypeInfo<QCursor>(), PropertyEditorClass<TCursorProperty>);
    registerFor(TypeInfo<QKeySequence>(), PropertyEditorClass<TShortCutProperty>);
    registerFor(TypeInfo<QDate>(), PropertyEditorClass<TDateProperty>);
    registerFor(TypeInfo<QTime>(), PropertyEditorClass<TTimeProperty>);
    registerFor(TypeInfo<QDateTime>(), PropertyEditorClass<TDateTimeProperty>);
    registerFor(TypeInfo<QStringList>(), PropertyEditorClass<TStringListProperty>);
    for (PTypeInfo type : {TypeInfo<QSize>(), TypeInfo<QSizeF>(), TypeInfo<QPoint>(), TypeInfo<QPointF>(),
                           TypeInfo<QRect>(), TypeInfo<QRectF>(), TypeInfo<QMargins>(), TypeInfo<QMarginsF>(),
                           TypeInfo<QSizePolicy>()})
        registerFor(type, PropertyEditorClass<TValueClassProperty>);
    for (PTypeInfo type : {TypeInfo<QPixmap>(), TypeInfo<QBitmap>(), TypeInfo<QImage>(), TypeInfo<QIcon>()})
        registerFor(type, PropertyEditorClass<TPictureProperty>);
}

} // namespace kv
