#include "persist/ideCommon_compfiler.h"

#include "foundation/ideConsts.h"
#include "foundation/ideCommon_forms.h"
#include "foundation/ideLib_files.h"
#include "foundation/ideSystem_components.h"
#include "persist/ideCommon.h"
#include "persist/ideLib_objstreams.h"
#include "persist/ideSystem_propstreams.h"
#include "platform/kvComponentState.h"
#include "platform/kvException.h"
#include "platform/kvFiler.h"
#include "platform/kvScreen.h"

#include <QBuffer>
#include <QFile>
#include <QMetaMethod>
#include <QScopeGuard>
#include <QWidget>

#include <memory>

namespace kv {

TCompFiler::TCompFiler() = default;
TCompFiler::~TCompFiler() = default;

void TCompFiler::Assign(const TCompFiler &Source)
{
    m_nextEventID = Source.m_nextEventID;
    m_events = Source.m_events;
}

int TCompFiler::AddEvent(const QString &Name)
{
    for (const auto &event : std::as_const(m_events)) {
        if (event.first.compare(Name, Qt::CaseInsensitive) == 0)
            return event.second;
    }
    m_events.append({Name, m_nextEventID});
    return m_nextEventID++;
}

QString TCompFiler::EventNameByID(int ID) const
{
    for (const auto &event : m_events) {
        if (event.second == ID)
            return event.first;
    }
    return {};
}

QStringList TCompFiler::EventNames() const
{
    QStringList names;
    for (const auto &event : m_events)
        names.append(event.first);
    return names;
}

void TCompFiler::SaveToStream(QIODevice &Stream, QObject *Component)
{
    if (!Component)
        return;
    const QString className = QString(QLatin1Char('T') + Component->objectName()).left(255);
    const qint64 sizePosition = WriteResourceHeader(Stream, className);
    {
        TWriter writer(&Stream);
        writer.SetClassNameHook([Component, className](const QObject *Object) {
            return Object == Component ? className : QString();
        });
        writer.WriteRootComponent(Component);
        writer.FlushBuffer();
    }
    FixupResourceHeader(Stream, sizePosition);
}

void TCompFiler::SaveToFile(const QString &FileName, QObject *Component)
{
    SaveFileWith(FileName, [&](QIODevice &File) { SaveToStream(File, Component); });
}

void TCompFiler::LoadFromStream(QIODevice &Stream, QObject *Component, QString &RootName)
{
    QBuffer converted;
    DoLoadFromStream(BinaryForm(Stream, converted), Component, RootName);
}

void TCompFiler::LoadFromFile(const QString &FileName, QObject *Component)
{
    QFile file(FileName);
    OpenFileWithMode(file, DefaultOpenMode);
    QString rootName;
    LoadFromStream(file, Component, rootName);
}

void TCompFiler::DoLoadFromStream(QIODevice &Stream, QObject *Component, QString &RootName)
{
    m_nextEventID = 1;
    m_events.clear();
    IgnoreErrors = false;
    HasErrors = false;

    SmartSkipResHeader(Stream);
    const qint64 start = Stream.pos();
    {
        TReader header(&Stream);
        header.ReadSignature();
        TFilerFlags flags;
        int childPos = 0;
        header.ReadPrefix(flags, childPos);
        header.ReadStr();
        RootName = header.ReadStr();
    }
    Stream.seek(start);

    TReader reader(&Stream);
    reader.SetErrorHook([this, &reader](const QString &Message, bool &Handled) { ReaderError(reader, Message, Handled); });
    reader.SetFindMethodHook([this](const QString &MethodName, bool &Error) { ReaderOnMethod(MethodName, Error); });
    reader.ReadRootComponent(Component);
    CompLoaded();
}

QObject *TCompFiler::CreateFromStream(QIODevice &Stream, const QMetaObject *Class, bool Design)
{
    std::unique_ptr<QObject> component(StreamContainsDataModule(Stream) ? CreateDataModuleWithClass(Class)
                                                                         : CreateFormWithClass(Class));
    if (Design)
        SetDesign(component.get(), true);
    TFindGlobalComponentProc previous;
    if (UseGlobalFind)
        previous = SetFindGlobalComponentProc(&GlobalFindCompWithoutDesigned);
    const auto restore = qScopeGuard([this, &previous] {
        if (UseGlobalFind)
            SetFindGlobalComponentProc(previous);
    });
    QString rootName;
    LoadFromStream(Stream, component.get(), rootName);
    if (component->objectName() != rootName)
        component->setObjectName(rootName);
    CompLoaded();
    return component.release();
}

QObject *TCompFiler::CreateFromFile(const QString &FileName, const QMetaObject *Class, bool Design)
{
    QFile file(FileName);
    OpenFileWithMode(file, DefaultOpenMode);
    return CreateFromStream(file, Class, Design);
}

void TCompFiler::ReaderError(TReader &Reader, const QString &Message, bool &Handled)
{
    HasErrors = true;
    if (OnError) {
        OnError(Reader, Message, Handled);
        return;
    }
    Handled = IgnoreErrors;
    if (!Handled && ReaderErrorHandler)
        ReaderErrorHandler(Message, Handled, IgnoreErrors);
}

void TCompFiler::ReaderOnMethod(const QString &MethodName, bool &Error)
{
    if (!Error)
        return;
    Error = false;
    AddEvent(MethodName);
}

QObject *TCompFiler::GlobalFindCompWithoutDesigned(const QString &Name)
{
    for (QWidget *form : Screen().FormList()) {
        if (!(ComponentState(form) & csDesigning) && form->objectName().compare(Name, Qt::CaseInsensitive) == 0)
            return form;
    }
    return nullptr;
}

void TCompFiler::CompLoaded()
{
    if (OnLoaded)
        OnLoaded(*this);
}

void TCompFiler::CallCompOnCreate(QObject *Component)
{
    if (!Component || !(TScreen::IsFormObject(Component) || Screen().IsDataModule(Component)))
        return;
    const QMetaMethod signal = FindEventSignal(Component->metaObject(), QStringLiteral("OnCreate"));
    if (signal.isValid() && signal.parameterCount() == 0)
        Guarded([&] { signal.invoke(Component, Qt::DirectConnection); });
}

} // namespace kv
