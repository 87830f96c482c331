#pragma once

#include "kv_export.h"

// The standard editors of the type kinds: what every property gets unless an editor is
// registered for its type, class or name (kvPropertyRegistry.h).

#include "platform/kvPropertyEditor.h"

namespace kv {

// Ordinal values: AllEqual compares ordinals.
class KV_EXPORT TOrdinalProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    bool AllEqual() const override;
    int GetEditLimit() const override;
};

// Integers in decimal; typed as decimal, "$1F" or "0x1F", within the type's range.
class KV_EXPORT TIntegerProperty : public TOrdinalProperty
{
public:
    using TOrdinalProperty::TOrdinalProperty;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
};

// A character: itself when printable, else "#" and its code; typed as one character or
// "#" and a code.
class KV_EXPORT TCharProperty : public TOrdinalProperty
{
public:
    using TOrdinalProperty::TOrdinalProperty;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
};

// An enumeration: its key (the number where no key names the value); the value list is the
// keys, one per value.
class KV_EXPORT TEnumProperty : public TOrdinalProperty
{
public:
    using TOrdinalProperty::TOrdinalProperty;
    TPropertyAttributes GetAttributes() const override;
    QString GetValue() const override;
    void GetValues(const TGetStrProc &Proc) const override;
    void SetValue(const QString &Value) override;
};

// "False" / "True".
class KV_EXPORT TBoolProperty : public TEnumProperty
{
public:
    using TEnumProperty::TEnumProperty;
};

class KV_EXPORT TInt64Property : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    bool AllEqual() const override;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
};

// Floating point in the shortest text that reads back as the same number ("." as the
// decimal point; "," is accepted when typed).
class KV_EXPORT TFloatProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    bool AllEqual() const override;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
};

class KV_EXPORT TStringProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    bool AllEqual() const override;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
};

// A caption (text, windowTitle, title): written at each keystroke.
class KV_EXPORT TCaptionProperty : public TStringProperty
{
public:
    using TStringProperty::TStringProperty;
    TPropertyAttributes GetAttributes() const override;
};

// The component name (objectName): one object at a time; a new name must be empty or an
// identifier and unique within the object's root, and is announced to the designer
// (ValidateRename) before it is set.
class KV_EXPORT TComponentNameProperty : public TStringProperty
{
public:
    using TStringProperty::TStringProperty;
    TPropertyAttributes GetAttributes() const override;
    void SetValue(const QString &Value) override;
};

// A set: "[A,B]" of the single-bit keys that are set (a number for bits no key names);
// typed the same way. Its sub-properties are its elements.
class KV_EXPORT TSetProperty : public TOrdinalProperty
{
public:
    using TOrdinalProperty::TOrdinalProperty;
    TPropertyAttributes GetAttributes() const override;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
    void GetProperties(const TGetPropEditProc &Proc) const override;
};

// One element of a set: "False" / "True".
class KV_EXPORT TSetElementProperty : public TPropertyEditor
{
public:
    TSetElementProperty(TEditorInit Init, TEnumKey Element);
    TPropertyAttributes GetAttributes() const override;
    QString GetName() const override;
    QString GetValue() const override;
    void GetValues(const TGetStrProc &Proc) const override;
    void SetValue(const QString &Value) override;
    bool AllEqual() const override;

    const TEnumKey &Element() const { return m_element; }

private:
    bool IsSetAt(int Index) const;

    TEnumKey m_element;
};

// An object held by a property: "(ClassName)"; its properties are the sub-properties.
// Value classes with parts (kvPropEdits_types.h) derive from it.
class KV_EXPORT TClassProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    TPropertyAttributes GetAttributes() const override;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
    void GetProperties(const TGetPropEditProc &Proc) const override;
};

// A reference to a component: its name as the designer gives it; the value list offers the
// designer's components of the property's class; an empty text clears the reference.
class KV_EXPORT TComponentProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    TPropertyAttributes GetAttributes() const override;
    bool AllEqual() const override;
    QString GetValue() const override;
    void GetValues(const TGetStrProc &Proc) const override;
    void SetValue(const QString &Value) override;
};

// A variant: shown as text, written as a string variant.
class KV_EXPORT TVariantProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
};

// A type with no editor of its own: shown as its text where it has one, else as
// "(TypeName)"; read-only.
class KV_EXPORT TUnknownProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    TPropertyAttributes GetAttributes() const override;
    QString GetValue() const override;
    void SetValue(const QString &Value) override;
};

} // namespace kv
