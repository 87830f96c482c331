#pragma once

#include "kv_export.h"

// One entry of the object parameter registry and the named values it carries.

#include "shell/ideHook.h"

#include <QAnyStringView>
#include <QFlags>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <type_traits>

namespace kv {

enum TCompareParam {
    cpIgnoreCase = 0x1,     // strings compare ignoring case
    cpPartialCompare = 0x2, // a string matches when either one contains the other
};
Q_DECLARE_FLAGS(TCompareParams, TCompareParam)
Q_DECLARE_OPERATORS_FOR_FLAGS(TCompareParams)

// A value as the registry keeps and compares it, so that equal values of equal kinds
// match however they were made: every integer type and enumeration becomes a qlonglong
// (an unsigned 64-bit value keeps its bits), float becomes double, QByteArray becomes a
// QString (UTF-8), a pointer to any QObject class becomes QObject*, void* becomes the
// address as a qlonglong. Everything else stays as it is; bool stays bool.
KV_EXPORT QVariant NormalizeParamValue(const QVariant &Value);

// One named value of a registration or a query, normalised as above. Literal texts become
// QStrings, pointers to QObjects QObject*; other pointers (classes, procedures) are kept as
// their address, a qlonglong, which ParamPointer turns back.
struct KV_EXPORT TObjectParam
{
    template <typename T>
    TObjectParam(QAnyStringView ParamName, const T &ParamValue)
        : Name(ParamName.toString()), Value(ToParamValue(ParamValue))
    {
    }

    QString Name;
    QVariant Value;

private:
    template <typename T>
    static QVariant ToParamValue(const T &Value)
    {
        using V = std::remove_cv_t<T>;
        if constexpr (std::is_array_v<V>) {
            static_assert(std::is_same_v<std::remove_cv_t<std::remove_extent_t<V>>, char>,
                          "only char arrays (UTF-8 literals) are taken as texts");
            return QString::fromUtf8(Value);
        } else if constexpr (std::is_same_v<V, const char *> || std::is_same_v<V, char *>) {
            return QString::fromUtf8(Value);
        } else if constexpr (std::is_same_v<V, std::nullptr_t>) {
            return QVariant();
        } else if constexpr (std::is_same_v<V, bool>) {
            return QVariant(Value);
        } else if constexpr (std::is_integral_v<V> || std::is_enum_v<V>) {
            return QVariant(static_cast<qlonglong>(Value));
        } else if constexpr (std::is_pointer_v<V>
                             && std::is_base_of_v<QObject, std::remove_cv_t<std::remove_pointer_t<V>>>) {
            return QVariant::fromValue(const_cast<QObject *>(static_cast<const QObject *>(Value)));
        } else if constexpr (std::is_pointer_v<V>) {
            return QVariant(static_cast<qlonglong>(reinterpret_cast<quintptr>(Value)));
        } else if constexpr (std::is_same_v<V, QStringView> || std::is_same_v<V, QLatin1String>
                             || std::is_same_v<V, QAnyStringView>) {
            return Value.toString();
        } else {
            return NormalizeParamValue(QVariant::fromValue(Value));
        }
    }
};
using TObjectParams = QList<TObjectParam>;

// The pointer (of type T: a class, object or procedure pointer) whose address a parameter
// holds; null for a null parameter or one that is no address.
template <typename T>
T ParamPointer(const QVariant &Value)
{
    static_assert(std::is_pointer_v<T>);
    if (Value.metaType().id() != QMetaType::LongLong)
        return nullptr;
    return reinterpret_cast<T>(static_cast<quintptr>(Value.toLongLong()));
}

// An entry: a class or an object, its named values (names compare ignoring case) and the
// editor group that was current when it was registered. Entries are made and freed by
// TObjectParamList; a holder that needs to hear of an entry's end asks for a free
// notification.
class KV_EXPORT TObjectParamListItem : public TPlainObject
{
public:
    ~TObjectParamListItem() override;
    TObjectParamListItem(const TObjectParamListItem &) = delete;
    TObjectParamListItem &operator=(const TObjectParamListItem &) = delete;

    // The value of Name, or a null QVariant when the entry has none.
    QVariant GetParamByName(QAnyStringView Name) const;
    // Replaces the value of a name (keeping the name's first spelling) or adds it.
    void SetParamByName(const TObjectParam &Param);
    template <typename T>
    void SetParamByName(QAnyStringView Name, const T &Value)
    {
        SetParamByName(TObjectParam(Name, Value));
    }
    // The names, sorted ignoring case.
    QStringList ParamNames() const;

    // Whether every parameter of Params matches this entry's value of that name.
    bool Matches(const TObjectParams &Params, TCompareParams Compare) const;

    bool IsClass() const;
    // The registered class or object, whichever it is.
    const void *GetDataPtr() const;
    // The class of a class entry; null for an object entry.
    const QMetaObject *GetClassPtr() const;
    // The object of an object entry; null for a class entry.
    QObject *GetObjectPtr() const;
    int Group() const;

private:
    friend class TObjectParamList;
    TObjectParamListItem(const void *Ptr, bool IsClass, int Group);

    class Private;
    std::unique_ptr<Private> d;
};

} // namespace kv
