#pragma once

#include "kv_export.h"

// The property editor: one property of one or several objects, as text. Inspectors and the
// property-bound edit controls never touch properties themselves; they ask an editor for
// the name, the value, the value list, the sub-properties and the attributes, and hand it
// the text that the user typed. GetComponentProperties (kvPropertyRegistry.h) makes them.

#include "platform/kvPropInfo.h"

#include <QFlags>
#include <QList>
#include <QPointer>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QObject;

namespace kv {

class IFormDesigner;
class TPropertyEditor;

enum TPropertyAttribute : quint16 {
    paValueList = 0x01,     // offers a list of values (GetValues)
    paSubProperties = 0x02, // has sub-properties (GetProperties)
    paDialog = 0x04,        // Edit opens a dialog
    paMultiSelect = 0x08,   // may edit several objects at once
    paAutoUpdate = 0x10,    // every keystroke is written (SetValue on each change)
    paSortList = 0x20,      // the value list is to be shown sorted
    paReadOnly = 0x40,      // the value can't be typed
    paRevertable = 0x80,    // the value can be reverted to the inherited one
};
Q_DECLARE_FLAGS(TPropertyAttributes, TPropertyAttribute)
Q_DECLARE_OPERATORS_FOR_FLAGS(TPropertyAttributes)

using TGetStrProc = std::function<void(const QString &Value)>;
// Takes ownership of each editor handed to it.
using TGetPropEditProc = std::function<void(std::unique_ptr<TPropertyEditor> Editor)>;

// What the editors of one enumeration share: the objects and the designer told of changes.
// Objects and designer are watched: one that is destroyed reads as null.
class KV_EXPORT TEditorContext
{
public:
    // ClassOf gives, per object, the index of its class among the selection's classes
    // (empty: one class, or nobody asks).
    TEditorContext(IFormDesigner *Designer, const QList<QObject *> &Objects, std::vector<int> ClassOf = {});

    // Null without one, or when the designer (a QObject) was destroyed.
    IFormDesigner *Designer() const;
    int Count() const { return int(m_objects.size()); }
    QObject *Object(int Index) const { return m_objects.at(Index).data(); }
    // The objects that still live, in order.
    QList<QObject *> Objects() const;
    int ClassOf(int Index) const { return m_classOf.empty() ? 0 : m_classOf[size_t(Index)]; }

private:
    IFormDesigner *m_designer;
    QPointer<QObject> m_designerObject;
    bool m_designerIsObject;
    QList<QPointer<QObject>> m_objects;
    std::vector<int> m_classOf;
};
using TEditorContextPtr = std::shared_ptr<const TEditorContext>;

// What an editor is made with: the objects, and the property in them.
struct KV_EXPORT TEditorInit
{
    TEditorContextPtr Context;
    // The property in every object, unless Infos is given.
    TPropInfoPtr Info;
    // One per class of the context (TEditorContext::ClassOf), where the classes declare the
    // property apart; else empty.
    std::vector<TPropInfoPtr> Infos;
};

// A property editor class: makes an editor of that class. Two editors are of the same class
// exactly when their makers are the same. The makers are exported, so that the library and
// every program or plug-in that names PropertyEditorClass<T> share one instance of each.
using TPropertyEditorClass = std::unique_ptr<TPropertyEditor> (*)(TEditorInit &&Init);

template <typename T>
KV_EXPORT std::unique_ptr<TPropertyEditor> CreatePropertyEditor(TEditorInit &&Init)
{
    return std::make_unique<T>(std::move(Init));
}

template <typename T>
inline constexpr TPropertyEditorClass PropertyEditorClass = &CreatePropertyEditor<T>;

// The base of every editor: reads and writes the value as a QVariant, shows it as Qt
// converts it to text, has no value list and no sub-properties. Writes go to every object
// that still lives, except those that already hold the value (writing can have side
// effects), and end with Modified(); text that does not make a value raises
// kv::Exception naming the text and the expected kind, and nothing is written.
class KV_EXPORT TPropertyEditor
{
public:
    explicit TPropertyEditor(TEditorInit Init);
    virtual ~TPropertyEditor();
    TPropertyEditor(const TPropertyEditor &) = delete;
    TPropertyEditor &operator=(const TPropertyEditor &) = delete;

    // paMultiSelect and paRevertable, and paReadOnly where the property can't be written.
    virtual TPropertyAttributes GetAttributes() const;
    virtual QString GetName() const;
    virtual QString GetValue() const;
    virtual void SetValue(const QString &Value);
    virtual void GetValues(const TGetStrProc &Proc) const;
    virtual void GetProperties(const TGetPropEditProc &Proc) const;
    // With a value list, sets the value that follows the current one (the first after the
    // last); otherwise nothing. Editors with paDialog open their dialog.
    virtual void Edit();
    // Whether every object that still lives holds the same value (true for one object).
    virtual bool AllEqual() const;
    // The longest text the value may have; 0 for no limit.
    virtual int GetEditLimit() const;
    virtual bool AutoFill() const;
    // False when an object was destroyed or the property can't be read.
    virtual bool ValueAvailable() const;
    virtual void Initialize();
    virtual void Activate();
    virtual void Revert();

    IFormDesigner *Designer() const { return m_context->Designer(); }
    // The object at Index; null once it was destroyed.
    QObject *GetComponent(int Index) const { return m_context->Object(Index); }
    int PropCount() const { return m_context->Count(); }
    PTypeInfo GetPropType() const { return m_info->PropType(); }
    const TPropInfoPtr &GetPropInfo(int Index = 0) const;
    const TEditorContextPtr &Context() const { return m_context; }

    // Typed access to the value of the first object (…At: of the object at Index) and to the
    // value of all objects (Set…). Reading a destroyed object gives an empty value.
    QVariant GetVarValue() const { return GetVarValueAt(0); }
    QVariant GetVarValueAt(int Index) const;
    void SetVarValue(const QVariant &Value);
    qint64 GetOrdValue() const { return GetOrdValueAt(0); }
    qint64 GetOrdValueAt(int Index) const;
    void SetOrdValue(qint64 Value);
    qint64 GetInt64Value() const { return GetOrdValueAt(0); }
    qint64 GetInt64ValueAt(int Index) const { return GetOrdValueAt(Index); }
    void SetInt64Value(qint64 Value) { SetOrdValue(Value); }
    double GetFloatValue() const { return GetFloatValueAt(0); }
    double GetFloatValueAt(int Index) const;
    void SetFloatValue(double Value);
    QString GetStrValue() const { return GetStrValueAt(0); }
    QString GetStrValueAt(int Index) const;
    void SetStrValue(const QString &Value);
    QObject *GetObjValue() const { return GetObjValueAt(0); }
    QObject *GetObjValueAt(int Index) const;
    void SetObjValue(QObject *Value);

    // Tells the designer that the objects changed.
    void Modified();

protected:
    // Whether Value(i) is the same for every object that still lives.
    template <typename F>
    bool AllValuesEqual(F Value) const
    {
        std::optional<decltype(Value(0))> first;
        for (int i = 0; i < PropCount(); ++i) {
            if (!GetComponent(i))
                continue;
            if (!first)
                first = Value(i);
            else if (!(Value(i) == *first))
                return false;
        }
        return true;
    }
    // Whether Text is what every object shows: an editor whose values can't be typed (an
    // object, a bitmap cursor, a picture) takes its own text back as no change.
    bool ShowsAlready(const QString &Text) const { return Text == GetValue() && AllEqual(); }
    // Whether Current, a value of Type, equals Value (false where Qt can't compare them).
    static bool HoldsAlready(PTypeInfo Type, const QVariant &Current, const QVariant &Value);
    // Writes into every living object the value that ValueFor makes of it and of its current
    // value, for values that depend on the object (a colour through its palette, a bit of a
    // set). An invalid value leaves that object alone, and so does one it already holds.
    // Then Modified(). Raises for a read-only property or a value an object refuses.
    void WriteEach(const std::function<QVariant(QObject *Object, const QVariant &Current)> &ValueFor);
    // "(TypeName)": the text of a value that has no text of its own.
    QString TypeText() const;
    // Raises kv::Exception: "'Text' is not a valid Kind value".
    [[noreturn]] void RaiseInvalidValue(const QString &Text, const QString &Kind) const;
    // Editors of the sub-properties for the parts of a value-class property.
    void GetPartProperties(const QList<TValuePart> &Parts, const TGetPropEditProc &Proc) const;
    // An init for an editor of Info in the same objects.
    TEditorInit SubInit(TPropInfoPtr Info) const;
    // An init for another editor of this very property (a set's elements).
    TEditorInit SameInit() const { return TEditorInit{m_context, m_info, m_infos}; }

private:
    // WriteEach with one value for every object.
    void WriteAll(const QVariant &Value);

    TEditorContextPtr m_context;
    TPropInfoPtr m_info;
    std::vector<TPropInfoPtr> m_infos;
};

// A value's ordinal: numbers, Booleans, characters, enumerations and flags of any width.
KV_EXPORT qint64 OrdinalOf(const QVariant &Value);
// The variant of Type that holds Ordinal.
KV_EXPORT QVariant VariantOfOrdinal(QMetaType Type, qint64 Ordinal);
// A number as property text: a whole number in decimal, any other in the shortest text that
// reads back as the same number of its type ("." as the decimal point).
KV_EXPORT QString FloatText(double Value);
KV_EXPORT QString FloatText(float Value);

} // namespace kv
