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

    // One shared hook while any notifier lives; each hears of every focus change once.
    void everyNotifierHearsEachFocusChangeOnce()
    {
        QVERIFY(!TCustomActiveNotifier::HookInstalled());
        {
            auto a = std::make_unique<TCustomActiveNotifier>();
            TRecordingNotifier b;
            QSignalSpy spyA(a.get(), &TCustomActiveNotifier::OnActiveChanged);
            focus(m_second);
            focus(m_first);
            QCOMPARE(spyA.count(), 2);
            QCOMPARE(spyA.first().first().value<QObject *>(), a.get());
            QCOMPARE(b.Focused, QList<QWidget *>({m_second, m_first}));
            a.reset();
            QVERIFY(TCustomActiveNotifier::HookInstalled());
        }
        QVERIFY(!TCustomActiveNotifier::HookInstalled());
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
