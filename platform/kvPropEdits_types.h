#pragma once

#include "kv_export.h"

// The editors of particular types: colours, fonts and font names, cursors, shortcuts,
// dates and times, string lists, and the value classes with parts (sizes, points,
// rectangles, margins, size policies), whose parts are written back through the property
// that holds the value.

#include "platform/kvPropEdits.h"

namespace kv {

// TColor and QColor properties: the colour's identifier ("clBtnFace") or "$00BBGGRR"; the
// value list is every colour identifier; typed as an identifier or a number, and for a
// QColor also as Qt names it ("#RRGGBB", "#AARRGGBB", "red"). A QColor whose alpha is
// neither 0 nor 255 shows as "#AARRGGBB" (so does a transparent one other than transparent
// black, which is clNone); a system colour typed for a QColor takes its value from the
// object's palette. Edit opens the colour dialog.
class KV_EXPORT TColorProperty : public TIntegerProperty
{
public:
    using TIntegerProperty::TIntegerProperty;
    TPropertyAttributes GetAttributes() const override;
    bool AllEqual() const override;
    QString GetValue() const override;
    void GetValues(const TGetStrProc &Proc) const override;
    void SetValue(const QString &Value) override;
    void Edit() override;
};

// QFont: "(QFont)"; sub-properties Name, Size, Style (fsBold, fsItalic, fsUnderline,
// fsStrikeOut), Weight, PixelSize, Stretch, Kerning, Overline, FixedPitch; Edit opens the
// font dialog.
class KV_EXPORT TFontProperty : public TClassProperty
{
public:
    using TClassProperty::TClassProperty;
    TPropertyAttributes GetAttributes() const override;
    QString GetValue() const override;
    void GetProperties(const TGetPropEditProc &Proc) const override;
    void Edit() override;
};

// A font family: the value list is the families of the font database.
class KV_EXPORT TFontNameProperty : public TStringProperty
{
public:
    using TStringProperty::TStringProperty;
    TPropertyAttributes GetAttributes() const override;
    void GetValues(const TGetStrProc &Proc) const override;
};

// QCursor: the shape's key ("ArrowCursor"); the value list is the shapes that can be set. A
// bitmap or custom cursor shown makes the editor read-only.
class KV_EXPORT TCursorProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    TPropertyAttributes GetAttributes() const override;
    bool AllEqual() const override;
    QString GetValue() const override;
    void GetValues(const TGetStrProc &Proc) const override;
    void SetValue(const QString &Value) override;
};

// QKeySequence in portable text ("Ctrl+S"), "(None)" for none; the value list offers the
// usual shortcuts.
class KV_EXPORT TShortCutProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    TPropertyAttributes GetAttributes() const override;
    bool AllEqual() const override;
    QString GetValue() const override;
    void GetValues(const TGetStrProc &Proc) const override;
    void SetValue(const QString &Value) override;
};

// QDate "yyyy-MM-dd", QTime "HH:mm:ss" (".zzz" when it has milliseconds), QDateTime both
// joined by a blank; empty text for a null value and back.
class KV_EXPORT TDateProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
};

class KV_EXPORT TTimeProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
};

class KV_EXPORT TDateTimeProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    bool AllEqual() const override;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
};

// QStringList as comma text (empty entries, and entries with commas, quotes or blanks at
// their ends, quoted);
// typed the same way; Edit opens the string list dialog (one entry per line).
class KV_EXPORT TStringListProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    TPropertyAttributes GetAttributes() const override;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
    void Edit() override;
};

// QSize "640 x 480", QPoint "(10, 20)", QRect "[(0, 0), 640 x 480]", QMargins "[1, 2, 3, 4]"
// (left, top, right, bottom), their F forms alike, QSizePolicy "[Preferred, Fixed, 0, 0]"
// (horizontal and vertical policy and stretch); typed the same way. The parts are the
// sub-properties: Width, Height; X, Y; X, Y, Width, Height; Left, Top, Right, Bottom;
// HorizontalPolicy, VerticalPolicy, HorizontalStretch, VerticalStretch, HeightForWidth,
// WidthForHeight, RetainSizeWhenHidden.
class KV_EXPORT TValueClassProperty : public TClassProperty
{
public:
    using TClassProperty::TClassProperty;
    TPropertyAttributes GetAttributes() const override;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
    void GetProperties(const TGetPropEditProc &Proc) const override;
};

// QPixmap, QBitmap, QImage and QIcon: "(None)" for a null one, else "(QPixmap 16 x 16)"
// ("(QIcon)" for an icon); typed as a file or resource name to load, or "(None)" or nothing
// to clear; Edit picks a file in the picture dialog.
class KV_EXPORT TPictureProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    TPropertyAttributes GetAttributes() const override;
    bool AllEqual() const override;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
    void Edit() override;
};

// The set type of a font's Style part.
KV_EXPORT PTypeInfo FontStylesTypeInfo();

// Registers the editors above for their types (and TFontNameProperty for the Name of a
// QFont). The property editor registry calls it once, when it is created, as part of the
// standard editors that no editor group owns.
KV_EXPORT void RegisterTypePropertyEditors();

} // namespace kv
