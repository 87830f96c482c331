#include "platform/kvExtended.h"

#include <QTest>

#include <bit>
#include <cfloat>
#include <cmath>

class tst_Extended : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    // Exact rows convert both ways; the others round to the nearest double, ties to even. Bit for
    // bit, as QCOMPARE would let one unit in the last place and the sign of zero pass; any NaN for NaN.
    void conversions_data()
    {
        QTest::addColumn<QByteArray>("raw");
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("exact");
        // hex written as in a stream: least significant byte first
        const auto row = [](const char *name, const char *hex, double value, bool exact) {
            QTest::newRow(name) << QByteArray::fromHex(hex) << value << exact;
        };
        row("negative zero", "00000000000000000080", -0.0, true);
        row("minus two", "000000000000008000c0", -2.0, true);
        row("largest", "00f8fffffffffffffe43", DBL_MAX, true);
        row("smallest normal", "0000000000000080013c", DBL_MIN, true);
        row("smallest subnormal", "0000000000000080cd3b", DBL_TRUE_MIN, true);
        row("minus infinity", "0000000000000080ffff", -HUGE_VAL, true);
        row("quiet NaN", "00000000000000c0ff7f", NAN, true);
        row("0.1 in extended", "cdccccccccccccccfb3f", 0.1, false);
        row("tie rounds to even, down", "0004000000000080ff3f", 1.0, false);
        row("tie rounds to even, up", "000c000000000080ff3f", 1.0 + 2 * DBL_EPSILON, false);
        row("above a tie rounds up", "0104000000000080ff3f", 1.0 + DBL_EPSILON, false);
        row("beyond double", "00000000000000800044", HUGE_VAL, false);
        row("round up to infinity", "00fcfffffffffffffe43", HUGE_VAL, false);
        row("half the smallest subnormal", "0000000000000080cc3b", 0.0, false);
        row("just above that half", "0100000000000080cc3b", DBL_TRUE_MIN, false);
        row("far below", "00000000000000800100", 0.0, false);
        row("extended subnormal", "01000000000000000000", 0.0, false);
        row("unnormal", "0000000000000000ff3f", NAN, false);
        row("NaN payload", "000000000000000cffff", NAN, false);
    }
    void conversions()
    {
        QFETCH(QByteArray, raw);
        QFETCH(double, value);
        QFETCH(bool, exact);
        kv::TExtendedBytes bytes{};
        std::copy(raw.begin(), raw.end(), bytes.begin());
        const auto bits = [](double d) { return std::isnan(d) ? ~quint64(0) : std::bit_cast<quint64>(d); };
        QCOMPARE(bits(kv::ExtendedToDouble(bytes)), bits(value));
        if (exact)
            QCOMPARE(kv::DoubleToExtended(value), bytes);
    }
};

QTEST_GUILESS_MAIN(tst_Extended)
#include "tst_extended.moc"
