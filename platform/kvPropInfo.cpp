#include "platform/kvPropInfo.h"

#include <QObject>

#include <cstring>
#include <unordered_map>

namespace kv {

const TPropInfoPtr &TPropInfo::Parent() const
{
    static const TPropInfoPtr none;
    return none;
}

TQtPropInfo::TQtPropInfo(const QMetaProperty &Property)
    : TPropInfo(QString::fromLatin1(Property.name()), TypeInfoOf(Property))
    , m_property(Property)
{
}

QVariant TQtPropInfo::Read(const QObject *Instance) const
{
    if (!Instance)
        return {};
    return m_property.read(Instance);
}

bool TQtPropInfo::Write(QObject *Instance, const QVariant &Value) const
{
    if (!Instance || !m_property.isWritable())
        return false;
    const QMetaType type = m_property.metaType();
    // Enumerations and flags take their number as the raw value of their own type; Qt's
    // conversions from a number do not reach every enumeration (flags least of all).
    if ((m_property.isEnumType() || m_property.isFlagType()) && Value.metaType() != type) {
        bool ok = false;
        const qlonglong number = Value.toLongLong(&ok);
        if (ok && type.isValid() && type.sizeOf() <= qsizetype(sizeof(qlonglong))) {
            QVariant raw(type);
            std::memcpy(raw.data(), &number, size_t(type.sizeOf())); // little-endian low bytes
            return m_property.write(Instance, raw);
        }
    }
    return m_property.write(Instance, Value);
}

TSignalInfo::TSignalInfo(QString Name, const QMetaMethod &Signal)
    : TPropInfo(std::move(Name), TypeInfoOf(Signal))
    , m_signal(Signal)
{
}

namespace {

PTypeInfo PartTypeInfo(const TValuePart &Part)
{
    return Part.PartType ? Part.PartType() : TypeInfoOf(Part.Type);
}

} // namespace

TPartInfo::TPartInfo(TPropInfoPtr Parent, const TValuePart &Part)
    : TPropInfo(QString::fromLatin1(Part.Name), PartTypeInfo(Part))
    , m_parent(std::move(Parent))
    , m_part(Part)
{
}

QVariant TPartInfo::Read(const QObject *Instance) const
{
    const QVariant whole = m_parent->Read(Instance);
    if (!whole.isValid())
        return {};
    return m_part.Get(whole);
}

bool TPartInfo::Write(QObject *Instance, const QVariant &Value) const
{
    QVariant whole = m_parent->Read(Instance);
    if (!whole.isValid())
        return false;
    QVariant part = Value;
    if (m_part.Type.isValid() && part.metaType() != m_part.Type && !part.convert(m_part.Type))
        return false;
    m_part.Set(whole, part);
    return m_parent->Write(Instance, whole);
}

TClassPropInfos::TClassPropInfos(const QMetaObject *Class)
    : m_class(Class)
{
    if (!Class)
        return;
    m_properties.reserve(size_t(Class->propertyCount()));
    for (int i = 0; i < Class->propertyCount(); ++i) {
        const QMetaProperty property = Class->property(i);
        m_propertyIndex.insert(QString::fromLatin1(property.name()), int(m_properties.size()));
        m_properties.push_back(std::make_shared<TQtPropInfo>(property));
    }

    const QList<TPublicSignal> signalList = PublicSignals(Class);
    m_signals.reserve(size_t(signalList.size()));
    for (const TPublicSignal &signal : signalList) {
        const QString name = signal.Overloaded ? QString::fromLatin1(signal.Signal.methodSignature())
                                               : QString::fromLatin1(signal.Signal.name());
        m_signalIndex.insert(name, int(m_signals.size()));
        m_signals.push_back(std::make_shared<TSignalInfo>(name, signal.Signal));
    }
}

const TPropInfoPtr *TClassPropInfos::FindProperty(const QString &Name) const
{
    const auto found = m_propertyIndex.constFind(Name);
    return found == m_propertyIndex.cend() ? nullptr : &m_properties[size_t(*found)];
}

const TPropInfoPtr *TClassPropInfos::FindSignal(const QString &Name) const
{
    const auto found = m_signalIndex.constFind(Name);
    return found == m_signalIndex.cend() ? nullptr : &m_signals[size_t(*found)];
}

namespace {

std::unordered_map<const QMetaObject *, std::unique_ptr<TClassPropInfos>> &ClassTables()
{
    static std::unordered_map<const QMetaObject *, std::unique_ptr<TClassPropInfos>> tables;
    return tables;
}

} // namespace

const TClassPropInfos &GetClassPropInfos(const QMetaObject *Class)
{
    auto &tables = ClassTables();
    auto found = tables.find(Class);
    if (found == tables.end())
        found = tables.emplace(Class, std::make_unique<TClassPropInfos>(Class)).first;
    return *found->second;
}

void ClearClassPropInfos()
{
    ClassTables().clear();
}

} // namespace kv
