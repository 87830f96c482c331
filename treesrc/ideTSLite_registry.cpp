#include "treesrc/ideTSLite_registry.h"

#include "foundation/ideConsts.h"
#include "foundation/ideSystem_objparams.h"
#include "platform/kvException.h"
#include "treesrc/ideTSLite_treesource.h"

namespace kv {

namespace {

// The parameters of a tree-source entry; the mark tells these entries from other
// registrations of the same classes.
constexpr char ParamSourceClass[] = "Source.ObjClass";
constexpr char ParamPropName[] = "Source.EditMethod";
constexpr char ParamIdent[] = "Source.Ident";
constexpr int TreeSourceIdent = 12;

} // namespace

void RegisterTreeSource(const QMetaObject *ObjClass, const QMetaObject *SourceClass,
                        const QString &PropName)
{
    if (!ObjClass || !SourceClass)
        throw Exception(LoadStr(SErrNilRegistration).arg(QStringLiteral("RegisterTreeSource")));
    if (!SourceClass->inherits(&TTreeSource::staticMetaObject))
        throw Exception(LoadStr(SErrNotTreeSource).arg(QString::fromUtf8(SourceClass->className())));
    RegisterClassExt(ObjClass, {
                                   {ParamSourceClass, SourceClass},
                                   {ParamPropName, PropName},
                                   {ParamIdent, TreeSourceIdent},
                               });
}

void RegisterDefaultTreeSource(const QMetaObject *ObjClass, const QMetaObject *SourceClass,
                               const QString &PropName)
{
    if (!PropName.isEmpty())
        RegisterTreeSource(ObjClass, SourceClass, PropName);
    RegisterTreeSource(ObjClass, SourceClass, QString());
}

const QMetaObject *GetRegisteredTreeSource(const QMetaObject *ObjClass, const QString &PropName)
{
    if (!ObjClass)
        return nullptr;
    const TObjectParamListItem *item = GetItemInherited(
        ObjClass, {{ParamPropName, PropName}, {ParamIdent, TreeSourceIdent}},
        cpIgnoreCase);
    if (!item)
        return nullptr;
    return ParamPointer<const QMetaObject *>(item->GetParamByName(ParamSourceClass));
}

} // namespace kv
