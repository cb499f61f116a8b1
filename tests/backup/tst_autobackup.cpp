#include "Files.h"
#include "backup/AutoBackup.h"
#include "model/GridLayout.h"
#include "platform/null/MemoryDefaults.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace tw;

class TestAutoBackup : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        m_dir.emplace();
        for (const QString& key : m_defaults.keys()) {
            m_defaults.remove(key);
        }
        writeGrid(2, QDateTime(QDate(2026, 1, 1), QTime(8, 0)));
    }

    // Each step: hours since the start, whether the setup changed before it, forced or not, and
    // whether a file is written.
    void runIfDue_data() {
        QTest::addColumn<QList<int>>("hours");
        QTest::addColumn<QList<int>>("changes");
        QTest::addColumn<QList<bool>>("forced");
        QTest::addColumn<QList<bool>>("written");
        QTest::newRow("twice in a day") << QList<int>{0, 5} << QList<int>{0, 1}
                                        << QList<bool>{false, false} << QList<bool>{true, false};
        QTest::newRow("a day without change")
            << QList<int>{0, 25, 26} << QList<int>{0, 0, 1} << QList<bool>{false, false, false}
            << QList<bool>{true, false, true};
        QTest::newRow("only the save time moved")
            << QList<int>{0, 30} << QList<int>{0, -1} << QList<bool>{false, false}
            << QList<bool>{true, false};
        QTest::newRow("forced") << QList<int>{0, 1} << QList<int>{0, 0} << QList<bool>{false, true}
                                << QList<bool>{true, true};
    }
    void runIfDue() {
        QFETCH(QList<int>, hours);
        QFETCH(QList<int>, changes);
        QFETCH(QList<bool>, forced);
        QFETCH(QList<bool>, written);
        AutoBackup backup(setup());
        const QDateTime start(QDate(2026, 11, 1), QTime(12, 0));
        int widgets = 2;
        for (qsizetype step = 0; step < hours.size(); ++step) {
            const QDateTime now = start.addSecs(hours[step] * 3600);
            if (changes[step] > 0) {
                writeGrid(++widgets, now);
            } else if (changes[step] < 0) {
                writeGrid(widgets, now);
            }
            QCOMPARE(
                backup.runIfDue(now, forced[step] ? AutoBackup::Force::yes : AutoBackup::Force::no),
                written[step]);
        }
        QCOMPARE(backup.entries().size(), written.count(true));
    }

    void keepsFiveAndLeavesOtherFiles() {
        AutoBackup backup(setup());
        const QDir dir(backup.folder());
        test::writeFile(dir.filePath(QStringLiteral("before-import-2020-01-01-000000.twklayout")),
                        "{}");
        const QDateTime start(QDate(2026, 11, 1), QTime(12, 0));
        for (int day = 0; day < 6; ++day) {
            writeGrid(day + 1, start);
            QVERIFY(backup.runIfDue(start.addDays(day)));
        }
        const QList<AutoBackup::Entry> entries = backup.entries();
        QCOMPARE(entries.size(), 5);
        QCOMPARE(entries.first().date, start.addDays(5).toUTC());
        QCOMPARE(entries.first().widgets, 6);
        QCOMPARE(entries.last().widgets, 2);
        QVERIFY(dir.exists(QStringLiteral("before-import-2020-01-01-000000.twklayout")));
    }

    void offWritesNothing() {
        m_defaults.setValue(AutoBackup::enabledKey, false);
        AutoBackup backup(setup());
        QVERIFY(!backup.runIfDue(QDateTime::currentDateTime()));
        QVERIFY(backup.runIfDue(QDateTime::currentDateTime(), AutoBackup::Force::yes));
    }

    void restoreBacksUpThenApplies() {
        AutoBackup backup(setup());
        const QDateTime start(QDate(2026, 11, 1), QTime(12, 0));
        QVERIFY(backup.runIfDue(start));
        writeGrid(7, start);
        QCOMPARE(backup.restore(backup.entries().first(), start.addSecs(60)), std::nullopt);
        QCOMPARE(GridLayout::fromJsonText(test::readFile(gridPath()))->instances.size(), 2);
        const QStringList before = QDir(backup.folder()).entryList({QStringLiteral("before-*")});
        QCOMPARE(before.size(), 1);

        const AutoBackup::Entry broken{
            .path = QDir(backup.folder()).filePath(QStringLiteral("auto-missing.twklayout")),
            .date = start,
            .widgets = 0};
        QCOMPARE(backup.restore(broken, start), QStringLiteral("The file could not be read."));

        // No backup of the current setup, no restore: the desktop stays as it is.
        writeGrid(7, start);
        const QDateTime later = start.addSecs(120);
        QVERIFY(QDir(backup.folder())
                    .mkpath(QStringLiteral("before-import-") +
                            later.toString(QStringLiteral("yyyy-MM-dd-HHmmss")) +
                            LayoutBackup::extension));
        QCOMPARE(backup.restore(backup.entries().first(), later),
                 QStringLiteral("The layout could not be loaded."));
        QCOMPARE(GridLayout::fromJsonText(test::readFile(gridPath()))->instances.size(), 7);
    }

private:
    LayoutBackup::Setup setup() {
        return {.directory = m_dir->path(),
                .defaults = m_defaults,
                .appVersion = QStringLiteral("0.1.0")};
    }
    QString gridPath() const { return QDir(m_dir->path()).filePath(QStringLiteral("grid.json")); }
    void writeGrid(int widgets, const QDateTime& savedAt) {
        GridLayout layout;
        for (int i = 0; i < widgets; ++i) {
            WidgetInstance instance;
            instance.id = QUuid(
                QStringLiteral("{00000000-0000-4000-8000-%1}").arg(i, 12, 10, QLatin1Char('0')));
            instance.kind = QStringLiteral("clock");
            layout.instances.append(instance);
        }
        layout.savedAt = savedAt;
        QVERIFY(test::writeFile(gridPath(), layout.toJsonText()));
    }

    std::optional<QTemporaryDir> m_dir;
    MemoryDefaults m_defaults;
};

QTEST_GUILESS_MAIN(TestAutoBackup)
#include "tst_autobackup.moc"
