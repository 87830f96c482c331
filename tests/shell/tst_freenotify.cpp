#include "platform/kvException.h"
#include "shell/ideHook.h"

#include <QtTest>

#include <memory>

using namespace kv;

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

class TPlain : public TPlainObject
{
};

} // namespace

class tst_FreeNotify : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QCOMPARE(kvFreeNotificationCount(), 0); }
    void cleanup() { ideHook::Finalize(); }

    void methodsCompareByObjectAndMember()
    {
        TWatcher a, b;
        QVERIFY(a.Method() == a.Method());
        QVERIFY(!(a.Method() == a.Other()));
        QVERIFY(!(a.Method() == b.Method()));
    }

    void everyRegistrationIsCalledOnceInOrder()
    {
        TWatcher first, second;
        QStringList order;
        first.During = [&](const void *) { order << QStringLiteral("first"); };
        second.During = [&](const void *) { order << QStringLiteral("second"); };
        auto obj = std::make_unique<QObject>();
        const void *address = obj.get();
        kvAddFreeNotification(obj.get(), first.Method());
        kvAddFreeNotification(obj.get(), second.Method());
        kvAddFreeNotification(obj.get(), first.Method()); // the same method twice: two calls
        QCOMPARE(kvFreeNotificationCount(), 1);
        obj.reset();
        QCOMPARE(first.Calls, QList<const void *>({address, address}));
        QCOMPARE(second.Calls, QList<const void *>({address}));
        QCOMPARE(order, QStringList({QStringLiteral("first"), QStringLiteral("second"), QStringLiteral("first")}));
        QCOMPARE(kvFreeNotificationCount(), 0);
    }

    void plainObjectsAreWatchedToo()
    {
        TWatcher watcher;
        auto plain = std::make_unique<TPlain>();
        const void *address = FreeNotifyKey(plain.get());
        kvAddFreeNotification(plain.get(), watcher.Method());
        plain.reset();
        QCOMPARE(watcher.Calls, QList<const void *>({address}));
        QCOMPARE(kvFreeNotificationCount(), 0);
    }

    void removalInsideTheHandlerChangesNothing()
    {
        TWatcher watcher, later;
        auto obj = std::make_unique<QObject>();
        const QObject *raw = obj.get();
        watcher.During = [&](const void *) {
            kvRemoveFreeNotification(raw, later.Method()); // the entry has already left
            kvRemoveFreeNotification(raw, watcher.Method());
        };
        kvAddFreeNotification(raw, watcher.Method());
        kvAddFreeNotification(raw, later.Method());
        obj.reset();
        QCOMPARE(watcher.Calls.size(), 1);
        QCOMPARE(later.Calls.size(), 1);
    }

    void removalRules()
    {
        TWatcher watcher;
        auto obj = std::make_unique<QObject>();
        kvAddFreeNotification(obj.get(), watcher.Method());
        kvRemoveFreeNotification(obj.get(), watcher.Other()); // never registered: entry stays
        QCOMPARE(kvFreeNotificationCount(), 1);
        kvAddFreeNotification(obj.get(), watcher.Method());
        kvRemoveFreeNotification(obj.get(), watcher.Method()); // removes both registrations
        QCOMPARE(kvFreeNotificationCount(), 0);
        obj.reset();
        QVERIFY(watcher.Calls.isEmpty());

        kvAddFreeNotification(static_cast<QObject *>(nullptr), watcher.Method()); // nil: nothing
        kvRemoveFreeNotification(static_cast<QObject *>(nullptr), watcher.Method());
        QCOMPARE(kvFreeNotificationCount(), 0);
    }

    void anAddressReusedLaterStartsAfresh()
    {
        TWatcher watcher;
        // Destroy watched objects until the allocator hands an address out again; whatever
        // object gets it must not inherit the old registration.
        QSet<const void *> seen;
        for (int i = 0; i < 64; ++i) {
            auto obj = std::make_unique<QObject>();
            const void *address = obj.get();
            const bool reused = seen.contains(address);
            seen.insert(address);
            if (!reused)
                kvAddFreeNotification(obj.get(), watcher.Method());
            obj.reset();
            QCOMPARE(kvFreeNotificationCount(), 0);
        }
        QCOMPARE(watcher.Calls.size(), seen.size());
    }

    void handlerErrorsAreShownAndOthersStillRun()
    {
        QStringList shown;
        const TExceptionHandler previous = SetExceptionHandler([&](const QString &m) { shown << m; });
        TWatcher failing, other;
        failing.During = [](const void *) { throw Exception(QStringLiteral("handler failed")); };
        auto obj = std::make_unique<QObject>();
        kvAddFreeNotification(obj.get(), failing.Method());
        kvAddFreeNotification(obj.get(), other.Method());
        obj.reset();
        SetExceptionHandler(previous);
        QCOMPARE(shown, QStringList(QStringLiteral("handler failed")));
        QCOMPARE(other.Calls.size(), 1);
    }

    void childrenDestroyedWithTheirParent()
    {
        TWatcher watcher;
        auto parent = std::make_unique<QObject>();
        QList<const void *> children;
        for (int i = 0; i < 10; ++i) {
            auto *child = new QObject(parent.get());
            children << child;
            kvAddFreeNotification(child, watcher.Method());
        }
        parent.reset();
        QCOMPARE(watcher.Calls, children);
    }

    void stopForgetsWithoutCalling()
    {
        TWatcher watcher;
        auto obj = std::make_unique<QObject>();
        auto plain = std::make_unique<TPlain>();
        kvAddFreeNotification(obj.get(), watcher.Method());
        kvAddFreeNotification(plain.get(), watcher.Method());
        ideHook::Finalize();
        QCOMPARE(kvFreeNotificationCount(), 0);
        obj.reset();
        plain.reset();
        QVERIFY(watcher.Calls.isEmpty());
        // The registry works again after a new start.
        ideHook::Initialize();
        auto again = std::make_unique<QObject>();
        kvAddFreeNotification(again.get(), watcher.Method());
        again.reset();
        QCOMPARE(watcher.Calls.size(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_FreeNotify)
#include "tst_freenotify.moc"
