#pragma once

#include "kv_export.h"

// Loads and saves forms and data modules whose event handlers do not exist in the running
// program, keeping the handler names. A handler named in the stream that has no slot gets
// an identifier (1, 2, … in the order the names are first met) and stays, by name, with its
// event (an unconnected handler of the component streams), so that saving writes it back.
// The root's class is saved as "T" followed by the root's name.
//
// User-interface thread only.

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <functional>

class QIODevice;
class QMetaObject;
class QObject;

namespace kv {

class TReader;

class KV_EXPORT TCompFiler
{
public:
    // Decides a reading error: set Handled to skip what failed and go on.
    using TReaderErrorEvent = std::function<void(TReader &Reader, const QString &Message, bool &Handled)>;
    using TNotifyEvent = std::function<void(TCompFiler &Sender)>;

    TCompFiler();
    virtual ~TCompFiler();
    TCompFiler(const TCompFiler &) = delete;
    TCompFiler &operator=(const TCompFiler &) = delete;

    // Copies the next identifier and the event names.
    void Assign(const TCompFiler &Source);

    // The identifier of the handler Name (compared ignoring case), which gets the next one
    // when it is new.
    int AddEvent(const QString &Name);
    // The handler name of ID; empty when none has it.
    QString EventNameByID(int ID) const;
    // The handler names in the order they were added.
    QStringList EventNames() const;
    int NextEventID() const { return m_nextEventID; }

    // Writes Component as a form resource (the header named "T" + its name, then the
    // component with its class written as that name). Nothing for null.
    void SaveToStream(QIODevice &Stream, QObject *Component);
    // The same into a new file, replaced only once written whole.
    void SaveToFile(const QString &FileName, QObject *Component);
    // Reads the binary (with or without a resource header) or text stream into Component;
    // RootName receives the root's name in the stream.
    void LoadFromStream(QIODevice &Stream, QObject *Component, QString &RootName);
    // Opens the file with DefaultOpenMode and loads it.
    void LoadFromFile(const QString &FileName, QObject *Component);
    // A new data module (when the stream holds one) or form of Class, designing when Design,
    // loaded from the stream and named as the stream's root. The caller owns it. When the load
    // fails, it is deleted again and the error raised.
    QObject *CreateFromStream(QIODevice &Stream, const QMetaObject *Class, bool Design);
    QObject *CreateFromFile(const QString &FileName, const QMetaObject *Class, bool Design);

    // The reader's error handler: HasErrors is set; OnError decides when it is set, else
    // IgnoreErrors does, else ReaderErrorHandler asks the user (who may ignore all further
    // errors, which sets IgnoreErrors).
    void ReaderError(TReader &Reader, const QString &Message, bool &Handled);
    // The reader's method resolver: a handler that has no slot is kept under an identifier.
    void ReaderOnMethod(const QString &MethodName, bool &Error);
    // The first screen form that is not designing whose name is Name (ignoring case); null
    // when there is none.
    static QObject *GlobalFindCompWithoutDesigned(const QString &Name);
    // Calls OnLoaded when it is set.
    void CompLoaded();
    // Emits the OnCreate event of a form or data module (its signal whose stream name is
    // "OnCreate", a Create() signal) when it has one; what a handler raises goes to
    // ShowException.
    static void CallCompOnCreate(QObject *Component);

    TReaderErrorEvent OnError;
    TNotifyEvent OnLoaded;
    // While CreateFromStream loads: references to other forms are resolved only among the
    // forms that are not designing.
    bool UseGlobalFind = false;
    bool IgnoreErrors = false;
    // Whether the last load met an error, handled or not.
    bool HasErrors = false;

protected:
    virtual void DoLoadFromStream(QIODevice &Stream, QObject *Component, QString &RootName);

private:
    int m_nextEventID = 1;
    QList<QPair<QString, int>> m_events;
};

} // namespace kv
