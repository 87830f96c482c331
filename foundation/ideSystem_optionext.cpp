#include "foundation/ideSystem_optionext.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_assignprops.h"
#include "foundation/ideSystem_objparams.h"
#include "foundation/ideSystem_optionstorage.h"
#include "platform/kvClasses.h"
#include "platform/kvException.h"
#include "platform/kvRegistryHolder_p.h"

#include <QCoreApplication>
#include <QHash>
#include <QMap>

#include <memory>
#include <utility>

namespace kv {

namespace {

// The global instances: made on first demand, freed by FinalizeOptionExts.
struct TOptionRegistry
{
    QMap<QString, TOptionExt *> globals; // key: the class name; the registry owns them

    ~TOptionRegistry() { DeleteGlobals(); }

    void DeleteGlobals()
    {
        // Taken out first: each global leaves the map in its destructor.
        const QMap<QString, TOptionExt *> doomed = std::exchange(globals, {});
        qDeleteAll(doomed);
    }
};

TOptionRegistry &Registry()
{
    return detail::LazyRegistry<TOptionRegistry>();
}

// The registry while it lives; null before its first use and while it is being freed.
TOptionRegistry *LiveRegistry()
{
    return detail::RegistryHolder<TOptionRegistry>().get();
}

// How each options class is made: registrations, like the class table's, that outlive the
// global instances.
QHash<const QMetaObject *, TOptionConstructor> &Constructors()
{
    static QHash<const QMetaObject *, TOptionConstructor> constructors;
    return constructors;
}

QString ClassKey(const QMetaObject *Class)
{
    return QString::fromLatin1(Class->className());
}

void CheckOptionClass(const QMetaObject *Class)
{
    if (!Class)
        throw Exception(LoadStr(SErrNilRegistration).arg(QStringLiteral("RegisterOptionExt")));
    if (!Class->inherits(&TOptionExt::staticMetaObject))
        throw Exception(LoadStr(SErrNotOptionClass).arg(StreamClassName(Class)));
}

// A bare object of Class owned by Parent.
std::unique_ptr<TOptionExt> Construct(const QMetaObject *Class, QObject *Parent)
{
    if (const TOptionConstructor constructor = Constructors().value(Class))
        return std::unique_ptr<TOptionExt>(constructor(Parent));
    if (GetClass(StreamClassName(Class)) != Class)
        throw Exception(LoadStr(SErrUnknownOptionClass).arg(StreamClassName(Class)));
    std::unique_ptr<QObject> object(CreateObject(Class, Parent));
    return std::unique_ptr<TOptionExt>(qobject_cast<TOptionExt *>(object.release()));
}

// Closes an update bracket after a failure without hiding the failure.
template <typename F>
void InUpdateBracket(TOptionExt *Options, F &&f)
{
    Options->BeginUpdate();
    try {
        f();
    } catch (...) {
        Guarded([Options] { Options->EndUpdate(); });
        throw;
    }
    Options->EndUpdate();
}

} // namespace

void detail::RegisterOptionConstructor(const QMetaObject *Class, TOptionConstructor Constructor)
{
    Constructors().insert(Class, Constructor);
}

TOptionExt::TOptionExt(QObject *Parent) : QObject(Parent) {}

TOptionExt::~TOptionExt()
{
    if (TOptionRegistry *registry = m_isGlobal ? LiveRegistry() : nullptr) {
        const auto found = registry->globals.constFind(ClassKey(metaObject()));
        if (found != registry->globals.cend() && *found == this)
            registry->globals.erase(found);
    }
}

TOptionExt *TOptionExt::Create(const QMetaObject *Class, QObject *Parent)
{
    TOptionExt *global = GetOptionsByClass(Class);
    std::unique_ptr<TOptionExt> copy = Construct(Class, Parent);
    copy->m_global = global;
    copy->Assign(global);
    return copy.release();
}

TOptionExt *TOptionExt::GlobalInstance()
{
    if (m_isGlobal)
        return nullptr;
    if (!m_global)
        m_global = GetOptionsByClass(metaObject());
    return m_global;
}

void TOptionExt::BecomeGlobal()
{
    m_isGlobal = true;
    // Entered before it initialises, so that its own start-up finds it as the global.
    Registry().globals.insert(ClassKey(metaObject()), this);
    InitValues();
    LoadConfig();
}

void TOptionExt::BeginUpdate()
{
    ++m_updateCount;
}

void TOptionExt::EndUpdate()
{
    if (m_updateCount <= 0)
        return;
    if (--m_updateCount == 0)
        Update();
}

bool TOptionExt::UpdateDisabled() const
{
    return !m_isGlobal || m_updateCount > 0;
}

void TOptionExt::Assign(const QObject *Source)
{
    AssignAllProps(Source, this);
}

void TOptionExt::LoadConfig()
{
    InUpdateBracket(this, [this] {
        if (IOptionStorage *storage = OptionStorage())
            storage->Load(GetOptionControl(), GetKey());
    });
}

void TOptionExt::SaveConfig()
{
    if (IOptionStorage *storage = OptionStorage())
        storage->Save(GetOptionControl(), GetKey());
}

QString TOptionExt::GetKey() const
{
    const QString name = StreamClassName(metaObject());
    return name.startsWith(QLatin1Char('T')) ? name.mid(1) : name;
}

void TOptionExt::Update() {}

void TOptionExt::ApplyOptions()
{
    if (m_isGlobal) {
        Update();
        return;
    }
    TOptionExt *global = GlobalInstance();
    InUpdateBracket(global, [this, global] { global->Assign(this); });
}

QObject *TOptionExt::GetOptionControl()
{
    return this;
}

void TOptionExt::InitValues() {}

TOptionExt *GetOptionsByClass(const QMetaObject *Class)
{
    CheckOptionClass(Class);
    if (TOptionExt *global = Registry().globals.value(ClassKey(Class)))
        return global;
    // The registry owns it from here on, also when its start-up fails. It is the
    // application's child too, so that it never outlives the application object.
    TOptionExt *global = Construct(Class, QCoreApplication::instance()).release();
    global->BecomeGlobal();
    return global;
}

void SaveGlobalOptions()
{
    // Guarded copies of the list: saving may make or free options.
    QList<QPointer<TOptionExt>> globals;
    for (TOptionExt *global : std::as_const(Registry().globals))
        globals.append(global);
    for (const QPointer<TOptionExt> &global : std::as_const(globals)) {
        if (global)
            global->SaveConfig();
    }
}

TObjectParamListItem *RegisterOptionExt(const QMetaObject *Class)
{
    CheckOptionClass(Class);
    return RegisterClassExt(Class, {{SOptionsParam, OptionsParamValue}});
}

void FinalizeOptionExts()
{
    detail::RegistryHolder<TOptionRegistry>().reset();
}

} // namespace kv
