#include "platform/kvException.h"

#include <QtTest>

#include <stdexcept>

using namespace kv;

class tst_Exception : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatsArgumentsInOrder()
    {
        // A number after a string must not be taken for a field width.
        QCOMPARE(Exception::Fmt("'%1' is not a valid %2 value (%3)", QStringLiteral("abc"), "integer", 42).Message(),
                 QStringLiteral("'abc' is not a valid integer value (42)"));
        QCOMPARE(Exception::Fmt("%2 before %1", 1, 2.5).Message(), QStringLiteral("2.5 before 1"));
        const Exception e(QStringLiteral("Größe"));
        QCOMPARE(QString::fromUtf8(e.what()), QStringLiteral("Größe"));
    }

    void errorsReachTheHandlerNotTheCaller()
    {
        QStringList shown;
        const TExceptionHandler previous = SetExceptionHandler([&](const QString &m) { shown << m; });
        Guarded([] { throw Exception(QStringLiteral("ours")); });
        Guarded([] { throw std::runtime_error("foreign"); });
        Guarded([] { throw 42; });
        Guarded([] {});
        SetExceptionHandler(previous);
        QCOMPARE(shown, QStringList({QStringLiteral("ours"), QStringLiteral("foreign"), QStringLiteral("Unknown error")}));
    }
};

QTEST_GUILESS_MAIN(tst_Exception)
#include "tst_exception.moc"
