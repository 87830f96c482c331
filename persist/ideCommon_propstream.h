#pragma once

#include "kv_export.h"

// A memory stream over one text property of a live object: a string property, or a string
// list (QStringList) whose lines are the text. Opened for reading, it starts out holding the
// property's text (UTF-8) at position 0; opened for writing, its whole content becomes the
// property's value when Commit is called. Destroying the stream writes nothing.

#include <QBuffer>
#include <QPointer>
#include <QString>

namespace kv {

class KV_EXPORT TPropStream : public QBuffer
{
    Q_OBJECT

public:
    // Mode is one of the platform's file modes, masked to its two low bits: fmOpenRead (0)
    // fills the stream from the property; fmOpenWrite (1, and 3, what fmCreate gives) starts
    // empty and is committed; fmOpenReadWrite (2) does both. Raises kv::Exception
    // (SErrBadPropStream) when Instance has no such text property.
    TPropStream(QObject *Instance, const QString &PropName, quint32 Mode, QObject *parent = nullptr);
    ~TPropStream() override;

    QObject *Instance() const { return m_instance; }
    const QString &PropName() const { return m_propName; }
    quint32 Mode() const { return m_mode; }
    // Whether Commit writes the content to the property.
    bool Writes() const { return m_mode != 0; }

    // The property's text: a string list's lines joined by line breaks ("\n"), else the
    // string. Raises kv::Exception (SErrBadPropStream) when the object is gone or its
    // property is not a text property.
    QString GetPropValue();
    // Stores Value (a string list takes its lines: a line break ends a line, "\r\n", "\n"
    // and "\r" alike, and a break at the end adds no empty line), then tells the object's
    // designer that it changed. Raises kv::Exception for a read-only property
    // (SErrReadOnlyProperty) and a value the object refuses (SErrBadPropValue).
    void SetPropValue(const QString &Value);
    // In a writing mode, the whole content (from position 0, read as UTF-8) becomes the
    // property's value through SetPropValue; in read mode, nothing.
    void Commit();

private:
    // Checks the object and the property before every access; returns whether it holds a
    // string list.
    bool UpdatePropInfo();
    [[noreturn]] void BadPropInfo() const;

    QPointer<QObject> m_instance;
    QString m_propName;
    quint32 m_mode;
};

} // namespace kv
