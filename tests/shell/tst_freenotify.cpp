#include "platform/kvException.h"
#include "shell/ideHook.h"

#include <QtTest>

#include <memory>

using namespace kv;
using namespace Qt::StringLiterals;

namespace {

// Records which addresses it was told about, and can act from inside the handler.
class TWatcher
{
public:
    QList<const void *> Calls;
    std::function<void(const void *)> During;

    void Freed(const void *obj)
    {
        Calls << obj;
        if (During)
            During(obj);
    }
    void AlsoFreed(const void *obj) { Calls << obj; }

    TFreeNotifyMethod Method() { return TFreeNotifyMethod::Of<&TWatcher::Freed>(this); }
    TFreeNotifyMethod Other() { return TFreeNotifyMethod::Of<&TWatcher::AlsoFreed>(this); }
};

} // namespace

class tst_FreeNotify : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QCOMPARE(kvFreeNotificationCount(), 0); }
    void cleanup() { ideHook::Finalize(); }

    // Every registration is called once, in order, even after one of them failed; the
    // failure is shown.
    void everyRegistrationIsCalledOnceInOrder()
    {
        QStringList shown;
        const TExceptionHandler previous = SetExceptionHandler([&](const QString &m) { shown << m; });
        TWatcher first, second;
        QStringList order;
        first.During = [&](const void *) {
            order << u"first"_s;
            throw Exception(u"handler failed"_s);
        };
        second.During = [&](const void *) { order << u"second"_s; };
        auto obj = std::make_unique<QObject>();
        const void *address = obj.get();
        kvAddFreeNotification(obj.get(), first.Method());
        kvAddFreeNotification(obj.get(), second.Method());
        kvAddFreeNotification(obj.get(), first.Method()); // the same method twice: two calls
        QCOMPARE(kvFreeNotificationCount(), 1);
        obj.reset();
        SetExceptionHandler(previous);
        QCOMPARE(first.Calls, QList<const void *>({address, address}));
        QCOMPARE(order, QStringList({u"first"_s, u"second"_s, u"first"_s}));
        QCOMPARE(shown, QStringList({u"handler failed"_s, u"handler failed"_s}));
        QCOMPARE(kvFreeNotificationCount(), 0);
    }

    void removalRules()
    {
        TWatcher watcher, later;
        auto obj = std::make_unique<QObject>();
        kvAddFreeNotification(obj.get(), watcher.Method());
        // A method is the object and the member: another member or another object's
        // method was never registered, and the entry stays.
        kvRemoveFreeNotification(obj.get(), watcher.Other());
        kvRemoveFreeNotification(obj.get(), later.Method());
        QCOMPARE(kvFreeNotificationCount(), 1);
        kvAddFreeNotification(obj.get(), watcher.Method());
        kvRemoveFreeNotification(obj.get(), watcher.Method()); // removes both registrations
        QCOMPARE(kvFreeNotificationCount(), 0);
        kvAddFreeNotification(static_cast<QObject *>(nullptr), watcher.Method()); // nil: nothing
        kvRemoveFreeNotification(static_cast<QObject *>(nullptr), watcher.Method());
        QCOMPARE(kvFreeNotificationCount(), 0);
        obj.reset();
        QVERIFY(watcher.Calls.isEmpty());

        // Removal inside a handler changes nothing: the entry has already left.
        obj = std::make_unique<QObject>();
        const QObject *raw = obj.get();
        watcher.During = [&](const void *) {
            kvRemoveFreeNotification(raw, later.Method());
            kvRemoveFreeNotification(raw, watcher.Method());
        };
        kvAddFreeNotification(raw, watcher.Method());
        kvAddFreeNotification(raw, later.Method());
        obj.reset();
        QCOMPARE(watcher.Calls.size(), 1);
        QCOMPARE(later.Calls.size(), 1);
    }

    void stopForgetsWithoutCalling()
    {
        TWatcher watcher;
        auto obj = std::make_unique<QObject>();
        auto plain = std::make_unique<TPlainObject>();
        kvAddFreeNotification(obj.get(), watcher.Method());
        kvAddFreeNotification(plain.get(), watcher.Method());
        ideHook::Finalize();
        QCOMPARE(kvFreeNotificationCount(), 0);
        obj.reset();
        plain.reset();
        QVERIFY(watcher.Calls.isEmpty());
        // The registry works again after a new start, for plain objects as for QObjects.
        ideHook::Initialize();
        obj = std::make_unique<QObject>();
        plain = std::make_unique<TPlainObject>();
        const QList<const void *> expected = {FreeNotifyKey(plain.get()), obj.get()};
        kvAddFreeNotification(obj.get(), watcher.Method());
        kvAddFreeNotification(plain.get(), watcher.Method());
        plain.reset();
        obj.reset();
        QCOMPARE(watcher.Calls, expected);
    }
};

QTEST_GUILESS_MAIN(tst_FreeNotify)
#include "tst_freenotify.moc"
