#include "platform/SettingsDefaults.h"
#include "platform/null/MemoryDefaults.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

// Both Defaults implementations must behave alike: a change signal only on a real change.
class TestMemoryDefaults : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void signalsOnlyRealChanges_data() {
        QTest::addColumn<QString>("backend");
        QTest::newRow("memory") << QStringLiteral("memory");
        QTest::newRow("settings") << QStringLiteral("settings");
    }
    void signalsOnlyRealChanges() {
        QFETCH(QString, backend);
        QTemporaryDir dir;
        std::unique_ptr<tw::Defaults> defaults;
        if (backend == QStringLiteral("memory")) {
            defaults = std::make_unique<tw::MemoryDefaults>();
        } else {
            defaults =
                std::make_unique<tw::SettingsDefaults>(dir.filePath(QStringLiteral("d.ini")));
        }
        const QString key = QStringLiteral("tarnwick.tileScale");
        QSignalSpy spy(defaults.get(), &tw::Defaults::valueChanged);
        QVERIFY(!defaults->contains(key));
        QCOMPARE(defaults->value(key, 1.0).toDouble(), 1.0);
        defaults->setValue(key, 1.5);
        defaults->setValue(key, 1.5);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(defaults->value(key).toDouble(), 1.5);
        defaults->remove(key);
        defaults->remove(key);
        QCOMPARE(spy.count(), 2);
        QVERIFY(!defaults->contains(key));
    }
};

QTEST_GUILESS_MAIN(TestMemoryDefaults)
#include "tst_memorydefaults.moc"
