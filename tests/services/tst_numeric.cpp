#include "services/Numeric.h"

#include <QtTest>

using namespace gm;

class TestNumeric : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void leadingNumber_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected");
        QTest::newRow("negative balance") << "-500" << -500.0;
        QTest::newRow("decimal") << "12.75" << 12.75;
        QTest::newRow("second point ends") << "1.2.3" << 1.2;
        QTest::newRow("lone sign") << "-" << 0.0;
        QTest::newRow("plus sign") << "+7" << 7.0;
        QTest::newRow("bare e is not an exponent") << "3e" << 3.0;
    }

    void leadingNumber() {
        QFETCH(QString, text);
        QFETCH(double, expected);
        QCOMPARE(gm::leadingNumber(text), expected);
    }

    void rounding_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("digits");
        QTest::addColumn<double>("local");
        QTest::addColumn<double>("server");
        // The two rules part only on ties and on values at or below zero.
        QTest::newRow("tie 2.5") << 2.5 << 0 << 2.0 << 3.0;
        QTest::newRow("through three decimals") << 1.2349 << 2 << 1.23 << 1.24;
        QTest::newRow("negative") << -5.0 << 0 << -5.0 << 0.0;
        QTest::newRow("binary artefact 2.675") << 2.675 << 2 << 2.68 << 2.68;
        QTest::newRow("money 4 decimals") << 10.00005 << 4 << 10.0 << 10.0;
    }

    void rounding() {
        QFETCH(double, value);
        QFETCH(int, digits);
        QFETCH(double, local);
        QFETCH(double, server);
        QCOMPARE(roundHalfEven(value, digits), local);
        QCOMPARE(RoundValue(value, digits), server);
    }

    // Sums of many cells and ties are covered through the grid sums; the sign is not.
    void negativeCurrencyText() {
        QCOMPARE(Currency::fromDouble(-12.5).toString(), QStringLiteral("-12.5"));
    }

    void formatting_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("plain");
        QTest::addColumn<QString>("fixed");
        QTest::newRow("whole") << 2700.0 << QStringLiteral("2700") << "2700.00";
        QTest::newRow("fraction") << 12.5 << QStringLiteral("12.5") << "12.50";
        QTest::newRow("tiny") << 1e-9 << QStringLiteral("0") << "0.00";
        QTest::newRow("large, no separator")
            << 1234567.25 << QStringLiteral("1234567.25") << "1234567.25";
        QTest::newRow("negative zero") << -0.0 << QStringLiteral("0") << "0.00";
    }

    void formatting() {
        QFETCH(double, value);
        QFETCH(QString, plain);
        QFETCH(QString, fixed);
        QCOMPARE(formatNumber(value), plain);
        QCOMPARE(formatFixed(value), fixed);
    }
};

QTEST_GUILESS_MAIN(TestNumeric)
#include "tst_numeric.moc"
