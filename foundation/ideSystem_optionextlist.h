#pragma once

#include "kv_export.h"

#include <QStringView>

#include <memory>

namespace kv {

class TOptionExt;

// Editable copies of the options of every registered options class (RegisterOptionExt), one
// per class in the order of first registration, for an options dialog: the user edits the
// copies and ApplyOptions hands them to the global instances.
class KV_EXPORT TOptionExtList
{
public:
    TOptionExtList();
    ~TOptionExtList();
    TOptionExtList(const TOptionExtList &) = delete;
    TOptionExtList &operator=(const TOptionExtList &) = delete;

    qsizetype Count() const;
    // Raises kv::Exception for an index out of range.
    TOptionExt *Items(qsizetype Index) const;
    // The copy whose class is named ClassName (with or without its namespace), ignoring
    // case; null when none.
    TOptionExt *GetOptionWithClass(QStringView ClassName) const;
    // ApplyOptions of every copy, in order.
    void ApplyOptions();

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace kv
