#pragma once

#include "kv_export.h"

// Where option objects are loaded from and saved to.

#include <QString>

class QObject;

namespace kv {

// Loads and saves the stored properties of an options object under a key. The storage
// decides the place: the settings below RegistryKey, or the INI file OptionsFileName when
// StoreOptionsInFile is set. A setting that is missing leaves its property as it was.
class KV_EXPORT IOptionStorage
{
public:
    virtual void Load(QObject *Control, const QString &Key) = 0;
    virtual void Save(const QObject *Control, const QString &Key) = 0;

protected:
    ~IOptionStorage() = default;
};

// Installs Storage, which the caller keeps alive while it is installed; null removes it.
// Returns the storage installed before. Without a storage options are neither loaded nor
// saved: they keep the values they start with.
KV_EXPORT IOptionStorage *SetOptionStorage(IOptionStorage *Storage);
KV_EXPORT IOptionStorage *OptionStorage();

// When set, options go to the INI file OptionsFileName instead of the settings.
extern KV_EXPORT bool StoreOptionsInFile;
extern KV_EXPORT QString OptionsFileName;

// SaveComponentToIniFile and LoadComponentFromIniFile (foundation/ideLib_props.h) with
// OptionsFileName as the file.
KV_EXPORT void SaveComponentToIniFile(const QObject *Obj, const QString &Section);
KV_EXPORT void LoadComponentFromIniFile(QObject *Obj, const QString &Section);

} // namespace kv
