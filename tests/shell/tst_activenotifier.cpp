#include "shell/ideHook_activenotifier.h"

#include <QApplication>
#include <QLineEdit>
#include <QWidget>
#include <QtTest>

#include <memory>

using namespace kv;

namespace {

class TRecordingNotifier : public TCustomActiveNotifier
{
public:
    using TCustomActiveNotifier::TCustomActiveNotifier;
    QList<QWidget *> Focused;
    std::function<void()> During;

protected:
    void HookProc(const TFocusChange &Data) override
    {
        Focused << Data.Now;
        if (During)
            During();
        TCustomActiveNotifier::HookProc(Data);
    }
};

} // namespace

class tst_ActiveNotifier : public QObject
{
    Q_OBJECT

    std::unique_ptr<QWidget> m_window;
    QLineEdit *m_first = nullptr;
    QLineEdit *m_second = nullptr;

    void focus(QWidget *w)
    {
        w->setFocus(Qt::OtherFocusReason);
        QCoreApplication::processEvents();
    }

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        m_first = new QLineEdit(m_window.get());
        m_second = new QLineEdit(m_window.get());
        m_window->show();
        QApplication::setActiveWindow(m_window.get());
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        focus(m_first);
    }

    void cleanup() { m_window.reset(); }

    void oneSharedHookWhileAnyLives()
    {
        QVERIFY(!TCustomActiveNotifier::HookInstalled());
        auto a = std::make_unique<TCustomActiveNotifier>();
        QVERIFY(TCustomActiveNotifier::HookInstalled());
        auto b = std::make_unique<TCustomActiveNotifier>();
        a.reset();
        QVERIFY(TCustomActiveNotifier::HookInstalled());
        b.reset();
        QVERIFY(!TCustomActiveNotifier::HookInstalled());
    }

    void everyNotifierHearsEachFocusChangeOnce()
    {
        TCustomActiveNotifier a;
        TRecordingNotifier b;
        QSignalSpy spyA(&a, &TCustomActiveNotifier::OnActiveChanged);
        QSignalSpy spyB(&b, &TCustomActiveNotifier::OnActiveChanged);
        focus(m_second);
        QCOMPARE(spyA.count(), 1);
        QCOMPARE(spyB.count(), 1);
        QCOMPARE(spyA.first().first().value<QObject *>(), &a);
        focus(m_second); // no change: no event
        QCOMPARE(spyA.count(), 1);
        focus(m_first);
        QCOMPARE(spyA.count(), 2);
        QCOMPARE(spyB.count(), 2);
        QCOMPARE(b.Focused, QList<QWidget *>({m_second, m_first}));
    }

    void notifierDestroyedDuringTheWalk()
    {
        auto first = std::make_unique<TRecordingNotifier>();
        auto second = std::make_unique<TRecordingNotifier>();
        first->During = [&] { second.reset(); };
        focus(m_second);
        QCOMPARE(first->Focused.size(), 1);
        QVERIFY(!second);
        QVERIFY(TCustomActiveNotifier::HookInstalled());
    }
};

QTEST_MAIN(tst_ActiveNotifier)
#include "tst_activenotifier.moc"
