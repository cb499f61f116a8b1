#include "Files.h"
#include "ManualClock.h"
#include "TestRows.h"
#include "displays/SmartLayoutRuleStore.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace tw {

using namespace test;

namespace {

QUuid idOf(int n) {
    return QUuid(static_cast<uint>(n), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
}

SmartLayoutRule ruleOf(int n) {
    SmartLayoutRule rule;
    rule.id = idOf(n);
    rule.name = QStringLiteral("rule %1").arg(n);
    rule.profileID = idOf(100 + n);
    rule.startMinute = 60 * n;
    return rule;
}

// The rules' numbers in order, a disabled one marked "-".
QString orderOf(const QList<SmartLayoutRule>& rules) {
    QStringList numbers;
    for (const SmartLayoutRule& rule : rules) {
        numbers << (rule.isEnabled ? QString() : QStringLiteral("-")) +
                       QString::number(rule.startMinute / 60);
    }
    return numbers.join(QLatin1Char(';'));
}

} // namespace

class TestSmartLayoutRuleStore : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Starting from rules 1;2;3, one change; every change is on disk at once, a no-op is silent.
    void changes_data() {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<QString>("expected");
        row("add", "add", "1;2;3;4");
        row("update", "update", "1;5;3");
        row("update unknown", "update unknown", "1;2;3");
        row("disable", "disable", "1;-2;3");
        row("move to front", "move", "3;1;2");
        row("remove", "remove", "1;3");
        row("prune", "prune", "2");
        row("insert back", "insert", "1;7;2;3");
        row("insert a taken id", "insert taken", "1;2;3");
    }
    void changes() {
        QFETCH(QString, operation);
        QFETCH(QString, expected);
        QTemporaryDir dir;
        ManualClock clock;
        const QString path = dir.filePath(QStringLiteral("smart-layout-rules.json"));
        {
            SmartLayoutRuleStore seed(clock, path);
            for (int n = 1; n <= 3; ++n) {
                seed.add(ruleOf(n));
            }
        }
        SmartLayoutRuleStore store(clock, path);
        QSignalSpy changed(&store, &SmartLayoutRuleStore::rulesChanged);
        SmartLayoutRule moved = ruleOf(2);
        moved.startMinute = 300;
        if (operation == QLatin1String("add")) {
            store.add(ruleOf(4));
        } else if (operation == QLatin1String("update")) {
            QVERIFY(store.update(moved));
        } else if (operation == QLatin1String("update unknown")) {
            QVERIFY(!store.update(ruleOf(9)));
        } else if (operation == QLatin1String("disable")) {
            store.setEnabled(idOf(2), false);
        } else if (operation == QLatin1String("move")) {
            store.move(idOf(3), 0);
        } else if (operation == QLatin1String("remove")) {
            store.remove(idOf(2));
        } else if (operation == QLatin1String("prune")) {
            store.prune({idOf(102)});
        } else if (operation == QLatin1String("insert")) {
            QVERIFY(store.insert(ruleOf(7), 1));
        } else {
            QVERIFY(!store.insert(ruleOf(3), 0));
        }
        QCOMPARE(orderOf(store.rules()), expected);
        QCOMPARE(changed.size(), expected == QLatin1String("1;2;3") ? 0 : 1);
        QCOMPARE(orderOf(SmartLayoutRuleStore(clock, path).rules()), expected);
    }

    // An unreadable file is set aside, not overwritten by the next change.
    void unreadableFileSetAside() {
        QTemporaryDir dir;
        ManualClock clock;
        const QString path = dir.filePath(QStringLiteral("smart-layout-rules.json"));
        QVERIFY(writeFile(path, "\x01\x02 not json"));
        SmartLayoutRuleStore store(clock, path);
        QVERIFY(store.rules().isEmpty());
        store.add(ruleOf(1));
        QCOMPARE(QDir(dir.path()).entryList({QStringLiteral("*.corrupt")}).size(), 1);
        QCOMPARE(orderOf(SmartLayoutRuleStore(clock, path).rules()), QStringLiteral("1"));
    }
};

} // namespace tw

QTEST_GUILESS_MAIN(tw::TestSmartLayoutRuleStore)
#include "tst_smartlayoutrulestore.moc"
