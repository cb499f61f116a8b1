// Text compared with a reviewed copy checked in beside the tests, line by line so that a failure
// names the first line that differs. TW_UPDATE_GOLDEN set rewrites the copy instead.
#pragma once

#include <QFile>
#include <QStringList>
#include <QTest>

namespace tw::test {

inline void compareWithGolden(const QString& path, const QStringList& lines) {
    if (qEnvironmentVariableIsSet("TW_UPDATE_GOLDEN")) {
        QFile out(path);
        QVERIFY2(out.open(QIODevice::WriteOnly), qPrintable(path));
        out.write((lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8());
        return;
    }
    QFile in(path);
    QVERIFY2(in.open(QIODevice::ReadOnly), qPrintable(path));
    QStringList expected = QString::fromUtf8(in.readAll()).split(QLatin1Char('\n'));
    expected.removeLast();
    QCOMPARE(lines, expected);
}

} // namespace tw::test
