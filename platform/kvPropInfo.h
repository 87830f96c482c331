#pragma once

#include "kv_export.h"

// What a property editor reads and writes in an object: a Qt property, a signal (an event),
// or a part of a value-class property (the Width of a QSize, the Size of a QFont), which is
// written back through the property that holds it.

#include "platform/kvTypInfo.h"

#include <QHash>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QString>
#include <QVariant>

#include <memory>
#include <vector>

class QObject;

namespace kv {

class TPropInfo;
using TPropInfoPtr = std::shared_ptr<const TPropInfo>;

class KV_EXPORT TPropInfo
{
public:
    TPropInfo(QString Name, PTypeInfo PropType) : m_name(std::move(Name)), m_propType(PropType) {}
    virtual ~TPropInfo() = default;
    TPropInfo(const TPropInfo &) = delete;
    TPropInfo &operator=(const TPropInfo &) = delete;

    const QString &Name() const { return m_name; }
    PTypeInfo PropType() const { return m_propType; }

    // The value in Instance; invalid when Instance is null or the value can't be read.
    virtual QVariant Read(const QObject *Instance) const = 0;
    // Whether Instance took Value (converted to the property's type where Qt can).
    virtual bool Write(QObject *Instance, const QVariant &Value) const = 0;
    virtual bool IsReadable() const { return true; }
    virtual bool IsWritable() const = 0;

    // The Qt property behind a top-level property; invalid for signals and parts.
    virtual QMetaProperty Property() const { return {}; }
    // The signal of an event.
    virtual QMetaMethod Signal() const { return {}; }
    // The property that holds a part; null for the others.
    virtual const TPropInfoPtr &Parent() const;

private:
    QString m_name;
    PTypeInfo m_propType;
};

// A Qt property of a class.
class KV_EXPORT TQtPropInfo final : public TPropInfo
{
public:
    explicit TQtPropInfo(const QMetaProperty &Property);

    QVariant Read(const QObject *Instance) const override;
    bool Write(QObject *Instance, const QVariant &Value) const override;
    bool IsReadable() const override { return m_property.isReadable(); }
    bool IsWritable() const override { return m_property.isWritable(); }
    QMetaProperty Property() const override { return m_property; }

private:
    QMetaProperty m_property;
};

// A signal: an event, whose value lives in the connection registry, not in the object.
class KV_EXPORT TSignalInfo final : public TPropInfo
{
public:
    TSignalInfo(QString Name, const QMetaMethod &Signal);

    QVariant Read(const QObject *) const override { return {}; }
    bool Write(QObject *, const QVariant &) const override { return false; }
    bool IsWritable() const override { return true; }
    QMetaMethod Signal() const override { return m_signal; }

private:
    QMetaMethod m_signal;
};

// How one part of a value is read from and written into the whole value.
struct KV_EXPORT TValuePart
{
    const char *Name;
    QMetaType Type;
    QVariant (*Get)(const QVariant &Whole);
    void (*Set)(QVariant &Whole, const QVariant &Part);
    // Set types that Qt has no enumerator for (a font's Style); null for the others.
    PTypeInfo (*PartType)() = nullptr;
};

// A part of the value that Parent holds: reading reads the parent's value and takes the
// part; writing reads the parent's value, changes the part and writes the whole back.
class KV_EXPORT TPartInfo final : public TPropInfo
{
public:
    TPartInfo(TPropInfoPtr Parent, const TValuePart &Part);

    QVariant Read(const QObject *Instance) const override;
    bool Write(QObject *Instance, const QVariant &Value) const override;
    bool IsReadable() const override { return m_parent->IsReadable(); }
    bool IsWritable() const override { return m_parent->IsWritable(); }
    const TPropInfoPtr &Parent() const override { return m_parent; }

private:
    TPropInfoPtr m_parent;
    const TValuePart &m_part;
};

// The properties and signals of a class, built once per class and kept while the class
// lives. Signals are named by their name, or by their signature where the class has several
// of one name.
class KV_EXPORT TClassPropInfos
{
public:
    explicit TClassPropInfos(const QMetaObject *Class);

    const QMetaObject *Class() const { return m_class; }
    // In declaration order, QObject's first.
    const std::vector<TPropInfoPtr> &Properties() const { return m_properties; }
    const std::vector<TPropInfoPtr> &Signals() const { return m_signals; }
    // Exact names; null when the class has none of that name.
    const TPropInfoPtr *FindProperty(const QString &Name) const;
    const TPropInfoPtr *FindSignal(const QString &Name) const;

private:
    const QMetaObject *m_class;
    std::vector<TPropInfoPtr> m_properties;
    std::vector<TPropInfoPtr> m_signals;
    QHash<QString, int> m_propertyIndex;
    QHash<QString, int> m_signalIndex;
};

// The table of Class, created on first use.
KV_EXPORT const TClassPropInfos &GetClassPropInfos(const QMetaObject *Class);
// Forgets every table (the classes of an unloaded package may leave their addresses to
// others). Editors keep the infos they hold.
KV_EXPORT void ClearClassPropInfos();

} // namespace kv
