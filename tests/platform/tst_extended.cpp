#include "platform/kvExtended.h"

#include <QTest>

#include <cfloat>
#include <cmath>
#include <limits>

using namespace kv;

Q_DECLARE_METATYPE(kv::TExtendedBytes)

namespace {

TExtendedBytes Bytes(const char *Hex) // written as in a stream: least significant byte first
{
    const QByteArray raw = QByteArray::fromHex(Hex);
    TExtendedBytes bytes{};
    std::copy(raw.begin(), raw.end(), bytes.begin());
    return bytes;
}

} // namespace

class tst_Extended : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void exactDoubles_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<TExtendedBytes>("bytes");
        QTest::newRow("zero") << 0.0 << Bytes("00000000000000000000");
        QTest::newRow("negative zero") << -0.0 << Bytes("00000000000000000080");
        QTest::newRow("one") << 1.0 << Bytes("0000000000000080ff3f");
        QTest::newRow("minus two") << -2.0 << Bytes("000000000000008000c0");
        QTest::newRow("0.1") << 0.1 << Bytes("00d0ccccccccccccfb3f");
        QTest::newRow("largest") << std::numeric_limits<double>::max() << Bytes("00f8fffffffffffffe43");
        QTest::newRow("smallest normal") << std::numeric_limits<double>::min() << Bytes("0000000000000080013c");
        QTest::newRow("smallest subnormal") << std::numeric_limits<double>::denorm_min() << Bytes("0000000000000080cd3b");
        QTest::newRow("infinity") << -std::numeric_limits<double>::infinity() << Bytes("0000000000000080ffff");
    }
    void exactDoubles()
    {
        QFETCH(double, value);
        QFETCH(TExtendedBytes, bytes);
        QCOMPARE(DoubleToExtended(value), bytes);
        const double back = ExtendedToDouble(bytes);
        QCOMPARE(back, value);
        QCOMPARE(std::signbit(back), std::signbit(value));
    }

    // Extended values a double can't hold exactly are rounded to the nearest, ties to even.
    void rounding_data()
    {
        QTest::addColumn<TExtendedBytes>("bytes");
        QTest::addColumn<double>("value");
        QTest::newRow("0.1 in extended") << Bytes("cdccccccccccccccfb3f") << 0.1;
        QTest::newRow("tie rounds to even, down") << Bytes("0004000000000080ff3f") << 1.0;
        QTest::newRow("tie rounds to even, up") << Bytes("000c000000000080ff3f") << 1.0 + 2 * DBL_EPSILON;
        QTest::newRow("above a tie rounds up") << Bytes("0104000000000080ff3f") << 1.0 + DBL_EPSILON;
        QTest::newRow("beyond double") << Bytes("00000000000000800044") << std::numeric_limits<double>::infinity();
        QTest::newRow("round up to infinity") << Bytes("00fcfffffffffffffe43") << std::numeric_limits<double>::infinity();
        QTest::newRow("half the smallest subnormal") << Bytes("0000000000000080cc3b") << 0.0;
        QTest::newRow("just above that half") << Bytes("0100000000000080cc3b") << std::numeric_limits<double>::denorm_min();
        QTest::newRow("far below") << Bytes("00000000000000800100") << 0.0;
        QTest::newRow("extended subnormal") << Bytes("01000000000000000000") << 0.0;
    }
    void rounding()
    {
        QFETCH(TExtendedBytes, bytes);
        QFETCH(double, value);
        QCOMPARE(ExtendedToDouble(bytes), value);
    }

    void notANumber()
    {
        QVERIFY(std::isnan(ExtendedToDouble(DoubleToExtended(std::numeric_limits<double>::quiet_NaN()))));
        QVERIFY(std::isnan(ExtendedToDouble(Bytes("0000000000000000ff3f")))); // unnormal
        QVERIFY(std::isnan(ExtendedToDouble(Bytes("000000000000000cffff"))));
    }
};

QTEST_GUILESS_MAIN(tst_Extended)
#include "tst_extended.moc"
