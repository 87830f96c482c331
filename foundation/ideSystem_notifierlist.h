#pragma once

#include "kv_export.h"

#include "platform/kvMethod.h"

#include <QList>
#include <QtGlobal>

#include <memory>
#include <type_traits>

class QObject;

namespace kv {

// A listener method of a notifier list: (Sender, wParam, lParam).
using TNotifierProc = TMethod<QObject *, qintptr, qintptr>;

// A listener that holds on to the owner of a notifier list implements this to let go of the
// owner before it is freed: NotifyDestroying calls it while the owner is still whole, which
// QObject::destroyed (emitted after the owner's own destructor has run) cannot offer, and
// it reaches listeners that are not QObjects as well.
class KV_EXPORT INotifierOwnerListener
{
public:
    virtual void NotifierOwnerDestroying(QObject *Owner) = 0;

protected:
    ~INotifierOwnerListener() = default;
};

// A per-owner list of listener methods, each held at most once and called newest first.
// Listeners may add and delete methods, their own or others', while they are called: a
// call reaches the methods held when it began that are still held when their turn comes,
// each once; methods added meanwhile are not called by it. The owner may even be freed by
// a listener: the remaining methods are then not called.
class KV_EXPORT TNotifierList
{
public:
    TNotifierList();
    virtual ~TNotifierList();
    TNotifierList(const TNotifierList &) = delete;
    TNotifierList &operator=(const TNotifierList &) = delete;

    // Adds Method as the newest, or moves it there when it is held. OwnerListener, when
    // given, is told by NotifyDestroying that the list's owner is going. An empty method is
    // ignored.
    void AddMethod(TNotifierProc Method, INotifierOwnerListener *OwnerListener = nullptr);
    // AddMethod of Listener's Member; a listener that implements INotifierOwnerListener
    // is registered for NotifyDestroying as well.
    template <auto Member, typename Listener>
    void AddListener(Listener *listener)
    {
        INotifierOwnerListener *ownerListener = nullptr;
        if constexpr (std::is_base_of_v<INotifierOwnerListener, Listener>)
            ownerListener = listener;
        AddMethod(TNotifierProc::Of<Member>(listener), ownerListener);
    }

    // Removes Method (same code, same object); nothing when it is not held.
    void DeleteMethod(TNotifierProc Method);
    // Removes every method whose object is Obj, given as the pointer the method was made
    // from.
    void DeleteWithData(const void *Obj);

    // Calls every method with (Sender, wParam, lParam), newest first. An exception from a
    // listener ends the call and propagates.
    void NotifyEvents(QObject *Sender, qintptr wParam, qintptr lParam);

    bool HasMethod(TNotifierProc Method) const;
    qsizetype Count() const;
    // The methods, oldest first.
    QList<TNotifierProc> Methods() const;

private:
    friend void NotifyDestroying(QObject *Component, TNotifierList &NotifierList);

    class Private;
    std::unique_ptr<Private> d;
};

// Tells the listeners of NotifierList that registered as owner listeners that Component,
// the list's owner, is going; newest first, with the walk of NotifyEvents. The owner calls
// it before it frees the list.
KV_EXPORT void NotifyDestroying(QObject *Component, TNotifierList &NotifierList);

} // namespace kv
