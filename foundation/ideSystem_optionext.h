#pragma once

#include "kv_export.h"

// Option objects: one global, persisted instance per options class, and editable copies
// that are applied to it. Descendants publish their options as stored Q_PROPERTYs.
// User-interface thread only.

#include "foundation/ideSystem_objparamitem.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <type_traits>

namespace kv {

class TOptionExt;
// Makes a bare object of an options class, owned by Parent.
using TOptionConstructor = TOptionExt *(*)(QObject *Parent);

namespace detail {
KV_EXPORT void RegisterOptionConstructor(const QMetaObject *Class, TOptionConstructor Constructor);

template <typename T>
TOptionExt *ConstructOption(QObject *Parent)
{
    return new T(Parent);
}

template <typename T>
void RegisterOptionClass()
{
    static_assert(std::is_base_of_v<TOptionExt, T>, "an options class descends from TOptionExt");
    static_assert(QtPrivate::HasQ_OBJECT_Macro<T>::Value, "an options class needs the Q_OBJECT macro");
    RegisterOptionConstructor(&T::staticMetaObject, &ConstructOption<T>);
}
} // namespace detail

// The global instance of a class is made on first demand (GetOptionsByClass, Create),
// belongs to the registry, gets InitValues and is loaded from the option storage once.
// Every other instance is a copy: it is never loaded, and ApplyOptions hands its values to
// the global. Make copies with Create, which gives them the global's values; an object made
// by its constructor alone keeps its constructor's values until something is assigned.
class KV_EXPORT TOptionExt : public QObject
{
    Q_OBJECT

public:
    ~TOptionExt() override;

    // A new copy of the options of T (whose global instance is made first when missing),
    // owned by Parent, or by the caller when Parent is null.
    template <typename T>
    static T *Create(QObject *Parent = nullptr)
    {
        detail::RegisterOptionClass<T>();
        return static_cast<T *>(Create(&T::staticMetaObject, Parent));
    }
    // The same for a class made known by RegisterOptionExt or GetOptionsByClass<T>.
    static TOptionExt *Create(const QMetaObject *Class, QObject *Parent = nullptr);

    bool IsGlobal() const { return m_isGlobal; }
    // The global instance a copy applies to (made anew if it was destroyed); null for the
    // global instance itself.
    TOptionExt *GlobalInstance();

    // Brackets changes: the EndUpdate that closes the outermost bracket calls Update. An
    // EndUpdate without a bracket does nothing.
    void BeginUpdate();
    void EndUpdate();
    int UpdateCount() const { return m_updateCount; }
    // True for a copy, and inside an update bracket: Update should not tell the users of
    // the options then.
    bool UpdateDisabled() const;

    // Copies every stored published option of Source (AssignAllProps).
    virtual void Assign(const QObject *Source);
    // Loads the options from the option storage under GetKey, inside an update bracket.
    virtual void LoadConfig();
    // Saves them to the option storage under GetKey.
    virtual void SaveConfig();
    // The settings key: the class name without its namespace and leading "T".
    virtual QString GetKey() const;
    // Tells the users of the options that they changed; descendants do it, when
    // UpdateDisabled is false.
    virtual void Update();
    // A copy assigns itself to the global instance inside an update bracket of the global;
    // the global instance calls Update.
    virtual void ApplyOptions();
    // The object whose properties are loaded and saved: the options object itself.
    virtual QObject *GetOptionControl();

protected:
    explicit TOptionExt(QObject *Parent = nullptr);
    // Sets the starting values of the global instance, before it is loaded.
    virtual void InitValues();

private:
    friend TOptionExt *GetOptionsByClass(const QMetaObject *Class);
    void BecomeGlobal();

    int m_updateCount = 0;
    QPointer<TOptionExt> m_global; // copies: the global instance
    bool m_isGlobal = false;
};

// The global instance of Class, made when missing. Raises kv::Exception when Class is not a
// TOptionExt descendant or was never made known (RegisterOptionExt).
KV_EXPORT TOptionExt *GetOptionsByClass(const QMetaObject *Class);
template <typename T>
T *GetOptionsByClass()
{
    detail::RegisterOptionClass<T>();
    return static_cast<T *>(GetOptionsByClass(&T::staticMetaObject));
}

// SaveConfig of every global instance.
KV_EXPORT void SaveGlobalOptions();

// The parameter that marks the registration of an options class, and its value.
inline constexpr char SOptionsParam[] = "Environment.Options";
inline constexpr int OptionsParamValue = 123;

// Registers an options class (RegisterClassExt with "Environment.Options" = 123), so that
// TOptionExtList makes a copy of it. The class-only form finds its objects through the
// platform class registry unless the template form or GetOptionsByClass<T> made it known.
// Raises kv::Exception for a class that does not descend from TOptionExt.
KV_EXPORT TObjectParamListItem *RegisterOptionExt(const QMetaObject *Class);
template <typename T>
TObjectParamListItem *RegisterOptionExt()
{
    detail::RegisterOptionClass<T>();
    return RegisterOptionExt(&T::staticMetaObject);
}

// Frees every global instance; the next demand makes and loads it again.
KV_EXPORT void FinalizeOptionExts();

} // namespace kv
