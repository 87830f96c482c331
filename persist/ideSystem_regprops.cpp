#include "persist/ideSystem_regprops.h"

#include "foundation/ideLib_props.h"
#include "foundation/ideSystem_optionstorage.h"
#include "persist/ideLib_objstreams.h"
#include "persist/ideSystem_registry.h"
#include "persist/ideSystem_regstream.h"
#include "platform/kvCollection.h"
#include "platform/kvOwner.h"

#include <QBuffer>
#include <QMetaProperty>
#include <QSet>

#include <functional>

namespace kv {

namespace {

// How a property is kept.
enum class TPropStorage { Value, Text, Strings, Binary, Collection, Reference, SubObject, None };

bool IsRegistryType(const QMetaProperty &Prop)
{
    switch (Prop.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Bool:
    case QMetaType::QString:
    case QMetaType::QDate:
    case QMetaType::QTime:
    case QMetaType::QDateTime:
        return true;
    default:
        return false;
    }
}

TPropStorage StorageOf(const QObject *Obj, const QMetaProperty &Prop)
{
    if (!Prop.isReadable() || !Prop.isStored())
        return TPropStorage::None;
    if (Prop.metaType().flags().testFlag(QMetaType::PointerToQObject)) {
        const QObject *held = Prop.read(Obj).value<QObject *>();
        if (qobject_cast<const TCollection *>(held))
            return TPropStorage::Collection;
        if (Prop.isWritable())
            return TPropStorage::Reference;
        return held ? TPropStorage::SubObject : TPropStorage::None;
    }
    if (Prop.isEnumType())
        return TPropStorage::Text;
    if (Prop.metaType() == QMetaType::fromType<QStringList>())
        return TPropStorage::Strings;
    if (Prop.metaType() == QMetaType::fromType<QByteArray>())
        return TPropStorage::Binary;
    return IsRegistryType(Prop) ? TPropStorage::Value : TPropStorage::Text;
}

QString PropKey(const QString &Key, const QMetaProperty &Prop)
{
    return Key + u'\\' + QLatin1String(Prop.name());
}

// Calls Proc for every stored property of Obj's class after QObject's own.
void ForEachStoredProp(const QObject *Obj, const std::function<void(const QMetaProperty &, TPropStorage)> &Proc)
{
    const QMetaObject *meta = Obj->metaObject();
    for (int i = QObject::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        const QMetaProperty prop = meta->property(i);
        const TPropStorage storage = StorageOf(Obj, prop);
        if (storage != TPropStorage::None)
            Proc(prop, storage);
    }
}

// Objects met on the way down: an object that holds itself, or one that holds its holder, is
// stored once.
using TVisited = QSet<const QObject *>;

void WriteProps(const QObject *Obj, const QString &Key, TVisited &Visited)
{
    if (!Obj || Visited.contains(Obj))
        return;
    Visited.insert(Obj);
    ForEachStoredProp(Obj, [&](const QMetaProperty &prop, TPropStorage storage) {
        const QString name = PropKey(Key, prop);
        const QVariant value = prop.read(Obj);
        switch (storage) {
        case TPropStorage::Value:
            WriteToRegistry(name, value);
            break;
        case TPropStorage::Text:
            WriteToRegistry(name, PropValueToText(prop, value));
            break;
        case TPropStorage::Strings:
            WriteStringsToRegistry(name, value.toStringList());
            break;
        case TPropStorage::Binary:
            WriteLongBufToRegistry(name, value.toByteArray());
            break;
        case TPropStorage::Collection:
            WriteObjTextToRegistry(name, value.value<QObject *>());
            break;
        case TPropStorage::Reference: {
            const QObject *target = value.value<QObject *>();
            WriteToRegistry(name, target ? target->objectName() : QString());
            break;
        }
        case TPropStorage::SubObject:
            WriteProps(value.value<QObject *>(), name, Visited);
            break;
        case TPropStorage::None:
            break;
        }
    });
}

void SetIfChanged(QObject *Obj, const QMetaProperty &Prop, const QVariant &Value)
{
    if (Prop.isWritable() && Value != Prop.read(Obj))
        SetPropValueByPropInfo(Obj, Prop, Value);
}

void ReadProps(QObject *Obj, const QString &Key, TVisited &Visited)
{
    if (!Obj || Visited.contains(Obj))
        return;
    Visited.insert(Obj);
    ForEachStoredProp(Obj, [&](const QMetaProperty &prop, TPropStorage storage) {
        const QString name = PropKey(Key, prop);
        const QVariant current = prop.read(Obj);
        switch (storage) {
        case TPropStorage::Value:
            SetIfChanged(Obj, prop, ReadFromRegistry(name, current));
            break;
        case TPropStorage::Text: {
            QVariant value;
            const QString text = ReadFromRegistry(name, PropValueToText(prop, current)).toString();
            if (PropValueFromText(prop, text, value))
                SetIfChanged(Obj, prop, value);
            break;
        }
        case TPropStorage::Strings: {
            QStringList strings = current.toStringList();
            ReadStringsFromRegistry(name, strings);
            SetIfChanged(Obj, prop, strings);
            break;
        }
        case TPropStorage::Binary:
            if (RegValueExists(name))
                SetIfChanged(Obj, prop, ReadLongBufFromRegistry(name));
            break;
        case TPropStorage::Collection:
            ReadObjTextFromRegistry(name, current.value<QObject *>());
            break;
        case TPropStorage::Reference: {
            if (!RegValueExists(name))
                break;
            const QString target = ReadFromRegistry(name, QString()).toString();
            QObject *found = target.isEmpty() ? nullptr : FindComponent(GetOwner(Obj), target);
            if (target.isEmpty() || found)
                SetIfChanged(Obj, prop, QVariant::fromValue(found));
            break;
        }
        case TPropStorage::SubObject:
            ReadProps(current.value<QObject *>(), name, Visited);
            break;
        case TPropStorage::None:
            break;
        }
    });
}

using TStreamWriter = void (*)(QIODevice &, QObject *);
using TStreamReader = void (*)(QIODevice &, QObject *);

void WriteObj(const QString &Name, QObject *Obj, TStreamWriter Writer)
{
    if (!Obj)
        return;
    // Written aside first, so that a failure leaves the stored value as it was.
    QBuffer written;
    written.open(QIODevice::WriteOnly);
    Writer(written, Obj);
    TRegistryStream stream(Name, fmCreate);
    stream.write(written.data());
    stream.Commit();
}

void ReadObj(const QString &Name, QObject *Obj, TStreamReader Reader)
{
    if (!Obj)
        return;
    TRegistryStream stream(Name, fmOpenRead);
    if (stream.size() > 0)
        Reader(stream, Obj);
}

class TRegistryOptionStorage final : public IOptionStorage
{
public:
    void Load(QObject *Control, const QString &Key) override
    {
        if (StoreOptionsInFile)
            LoadComponentFromIniFile(Control, Key);
        else
            ReadPropsFromRegistry(Control, Key);
    }

    void Save(const QObject *Control, const QString &Key) override
    {
        if (StoreOptionsInFile) {
            // The INI helpers open the file on their own: pending writes go first.
            FlushRegistry();
            SaveComponentToIniFile(Control, Key);
        } else {
            WritePropsToRegistry(Control, Key);
            FlushRegistry();
        }
    }
};

} // namespace

void WritePropsToRegistry(const QObject *Obj, const QString &Key)
{
    TVisited visited;
    WriteProps(Obj, Key, visited);
}

void ReadPropsFromRegistry(QObject *Obj, const QString &Key)
{
    TVisited visited;
    ReadProps(Obj, Key, visited);
}

void WriteObjToRegistry(const QString &Name, QObject *Obj)
{
    WriteObj(Name, Obj, &WriteObjToStream);
}

void WriteObjTextToRegistry(const QString &Name, QObject *Obj)
{
    WriteObj(Name, Obj, &WriteObjToTextStream);
}

void ReadObjFromRegistry(const QString &Name, QObject *Obj)
{
    ReadObj(Name, Obj, &ReadObjFromStream);
}

void ReadObjTextFromRegistry(const QString &Name, QObject *Obj)
{
    ReadObj(Name, Obj, &ReadObjFromTextStream);
}

IOptionStorage *RegistryOptionStorage()
{
    static TRegistryOptionStorage storage;
    return &storage;
}

} // namespace kv
