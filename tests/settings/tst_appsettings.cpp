#include "Files.h"
#include "TestRows.h"
#include "platform/SettingsDefaults.h"
#include "platform/null/MemoryDefaults.h"
#include "platform/null/NullRelauncher.h"
#include "settings/AppSettings.h"

#include <QEventLoop>
#include <QMetaProperty>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <csignal>

using tw::AppSettings;
using EnergyMode = tw::AppSettings::EnergyMode;

namespace {

QMetaProperty metaProperty(const char* name) {
    const QMetaObject& meta = AppSettings::staticMetaObject;
    return meta.property(meta.indexOfProperty(name));
}

QVariant read(const AppSettings& settings, const char* name) {
    return metaProperty(name).read(&settings);
}

// The readers the launch uses before any AppSettings exists; they must agree with it.
void compareStaticReader(const QByteArray& name, const tw::Defaults& defaults,
                         const QVariant& expected) {
    if (name == "hideDockIcon") {
        QCOMPARE(QVariant(AppSettings::storedHideDockIcon(defaults)), expected);
    } else if (name == "moveNeedsShift") {
        QCOMPARE(QVariant(AppSettings::storedMoveNeedsShift(defaults)), expected);
    } else if (name == "appLanguage") {
        QCOMPARE(QVariant(AppSettings::storedLanguage(defaults)), expected);
    }
}

} // namespace

class TestAppSettings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Every field: its default on empty defaults, a signal only on a real change, and for a stored
    // field its key written and the value read back by the next run; a runtime field (no key)
    // writes nothing and starts over.
    void storedFieldRoundTrip_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("fallback");
        QTest::addColumn<QVariant>("changed");
        QTest::addColumn<QVariant>("stored");
        const auto row = [](const char* name, const char* key, QVariant fallback, QVariant changed,
                            QVariant stored) {
            QTest::newRow(name) << QByteArray(name) << QString::fromLatin1(key) << fallback
                                << changed << stored;
        };
        row("energyMode", "tarnwick.energyMode", QVariant::fromValue(EnergyMode::balanced),
            QVariant::fromValue(EnergyMode::saver), QStringLiteral("saver"));
        row("autoSaver", "tarnwick.autoSaver", true, false, false);
        row("lockScreenEnabled", "tarnwick.lockScreenEnabled", true, false, false);
        row("lockScreenFPS", "tarnwick.lockScreenFPS", 8.0, 30.0, 30.0);
        row("hasSeenLockScreenIntro", "tarnwick.hasSeenLockScreenIntro", false, true, true);
        row("hasSeenGuide", "tarnwick.hasSeenGuide", false, true, true);
        row("hasSeenLiveWidgetsHint", "tarnwick.hasSeenLiveWidgetsHint", false, true, true);
        row("hideDockIcon", "tarnwick.hideDockIcon", false, true, true);
        row("moveNeedsShift", "tarnwick.moveNeedsShift", false, true, true);
        row("hapticsEnabled", "tarnwick.haptics", true, false, false);
        row("openWindowAtLaunch", "tarnwick.openWindowAtLaunch", true, false, false);
        row("appLanguage", "tarnwick.appLanguage", QStringLiteral("system"), QStringLiteral("de"),
            QStringLiteral("de"));
        row("powerConstrained", "", false, true, QVariant());
        row("appActive", "", false, true, QVariant());
        row("configWindowVisible", "", false, true, QVariant());
    }
    void storedFieldRoundTrip() {
        QFETCH(QByteArray, name);
        QFETCH(QString, key);
        QFETCH(QVariant, fallback);
        QFETCH(QVariant, changed);
        tw::MemoryDefaults defaults;
        // What an older version left: it counts over the plain key, so the guide's row reads back
        // only if writing the plain key removed it.
        defaults.setValue(QStringLiteral("tarnwick.hasSeenGuide.v225"), false);
        AppSettings settings(defaults);
        QCOMPARE(read(settings, name), fallback);
        compareStaticReader(name, defaults, fallback);
        QVERIFY(!defaults.contains(key));

        QSignalSpy written(&defaults, &tw::Defaults::valueChanged);
        const QMetaProperty meta = metaProperty(name);
        QSignalSpy spy(&settings, meta.notifySignal());
        QVERIFY(meta.write(&settings, fallback));
        QCOMPARE(spy.count(), 0);
        QVERIFY(meta.write(&settings, changed));
        QVERIFY(meta.write(&settings, changed));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(read(settings, name), changed);
        QTEST(defaults.value(key), "stored");
        QCOMPARE(written.isEmpty(), key.isEmpty());

        AppSettings nextRun(defaults);
        QCOMPARE(read(nextRun, name), key.isEmpty() ? fallback : changed);
        compareStaticReader(name, defaults, changed);
    }

    // What a previous version or a hand-edited file left behind: words of the right kind win,
    // anything else reads as the default; retired keys count where the new one is absent. Reading
    // writes nothing.
    void storedWordsLenient_data() {
        QTest::addColumn<QVariantMap>("stored");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QVariant>("expected");
        const auto row = [](const char* label,
                            std::initializer_list<std::pair<const char*, QVariant>> stored,
                            const char* name, QVariant expected) {
            QVariantMap map;
            for (const auto& [key, value] : stored) {
                map.insert(QStringLiteral("tarnwick.") + QLatin1String(key), value);
            }
            QTest::newRow(label) << map << QByteArray(name) << expected;
        };
        const auto energy = [](EnergyMode mode) { return QVariant::fromValue(mode); };
        const auto word = [](const char* text) { return QVariant(QString::fromLatin1(text)); };
        row("energy high", {{"energyMode", word("high")}}, "energyMode", energy(EnergyMode::high));
        row("energy unknown word", {{"energyMode", word("turbo")}}, "energyMode",
            energy(EnergyMode::balanced));
        row("bool as INI word", {{"autoSaver", word("false")}}, "autoSaver", false);
        row("bool as number", {{"hideDockIcon", 1}}, "hideDockIcon", true);
        row("bool unknown word, default false", {{"moveNeedsShift", word("yes please")}},
            "moveNeedsShift", false);
        row("fps as INI word", {{"lockScreenFPS", word("15")}}, "lockScreenFPS", 15.0);
        row("fps off the choices", {{"lockScreenFPS", 25.0}}, "lockScreenFPS", 30.0);
        row("fps negative", {{"lockScreenFPS", -5}}, "lockScreenFPS", 0.0);
        row("fps not a number", {{"lockScreenFPS", word("fast")}}, "lockScreenFPS", 8.0);
        row("fps from retired: animated", {{"lockScreenAnimated", true}}, "lockScreenFPS", 8.0);
        row("fps from retired: still", {{"lockScreenAnimated", false}}, "lockScreenFPS", 0.0);
        row("fps wins over retired", {{"lockScreenFPS", 60}, {"lockScreenAnimated", false}},
            "lockScreenFPS", 60.0);
        row("fps zero wins", {{"lockScreenFPS", 0}, {"lockScreenAnimated", true}}, "lockScreenFPS",
            0.0);
        row("guide, versioned only", {{"hasSeenGuide.v225", true}}, "hasSeenGuide", true);
        row("guide, versioned counts over plain",
            {{"hasSeenGuide.v225", false}, {"hasSeenGuide", true}}, "hasSeenGuide", false);
        row("guide, versioned unreadable",
            {{"hasSeenGuide.v225", word("?")}, {"hasSeenGuide", true}}, "hasSeenGuide", true);
        row("language unknown", {{"appLanguage", word("klingon")}}, "appLanguage", word("system"));
        row("language empty", {{"appLanguage", QString()}}, "appLanguage", word("system"));
        row("language from INI list", {{"appLanguage", QStringList{QStringLiteral("fr")}}},
            "appLanguage", word("fr"));
    }
    void storedWordsLenient() {
        QFETCH(QVariantMap, stored);
        QFETCH(QByteArray, name);
        QFETCH(QVariant, expected);
        // As kept in memory, and as the real preferences file gives them back: every value a word,
        // a list of one a word too.
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("Tarnwick.conf"));
        tw::MemoryDefaults memory;
        {
            tw::SettingsDefaults file(path);
            for (auto it = stored.cbegin(); it != stored.cend(); ++it) {
                memory.setValue(it.key(), it.value());
                file.setValue(it.key(), it.value());
            }
        }
        tw::SettingsDefaults file(path);
        for (tw::Defaults* defaults : std::initializer_list<tw::Defaults*>{&memory, &file}) {
            QSignalSpy written(defaults, &tw::Defaults::valueChanged);
            AppSettings settings(*defaults);
            QCOMPARE(read(settings, name), expected);
            compareStaticReader(name, *defaults, expected);
            QCOMPARE(written.size(), 0);
        }
    }

    // Each choice in turn ("apply" the start-up's own writer): the choice, "AppleLanguages" ("-"
    // when absent), and the language at launch of this run and of the next. A word no table or
    // list knows is refused as "system".
    void languageChoiceWritesAppleLanguagesAndWaitsForRelaunch() {
        tw::MemoryDefaults defaults;
        AppSettings settings(defaults);
        for (const auto& [step, expected] :
             {std::pair("de", "de de system de"), std::pair("system", "system - system system"),
              std::pair("de", "de de system de"), std::pair("xx", "system - system system"),
              std::pair("ja", "ja ja system ja"),
              std::pair("apply zh-Hant", "ja zh-Hant system ja"),
              std::pair("apply system", "ja - system ja")}) {
            const QString choice = QString::fromLatin1(step);
            if (choice.startsWith(QLatin1String("apply "))) {
                AppSettings::applyLanguagePreference(defaults, choice.mid(6));
            } else {
                settings.setAppLanguage(choice);
            }
            const QStringList apple =
                defaults.value(QStringLiteral("AppleLanguages")).toStringList();
            QCOMPARE(
                QStringList({settings.appLanguage(),
                             apple.isEmpty() ? QStringLiteral("-") : apple.join(u','),
                             settings.languageAtLaunch(), AppSettings(defaults).languageAtLaunch()})
                    .join(u' '),
                QString::fromLatin1(expected));
        }
        QCOMPARE(defaults.value(QStringLiteral("tarnwick.appLanguage")),
                 QVariant(settings.appLanguage()));
    }

    // Present keys, a recorded version, and what the start makes of them: an update (recorded
    // at once), an existing install, a launch before.
    void earlierStarts_data() {
        QTest::addColumn<QStringList>("present");
        QTest::addColumn<QString>("lastVersion");
        QTest::addColumn<bool>("update");
        QTest::addColumn<bool>("existing");
        const auto row = [](const char* name, const char* key, const char* version, bool update,
                            bool existing) {
            QTest::newRow(name) << (*key ? QStringList{QLatin1String(key)} : QStringList())
                                << QString::fromLatin1(version) << update << existing;
        };
        row("new install", "", "", false, false);
        row("same version", "", "1.4", false, false);
        row("other version", "", "1.3", true, false);
        row("unrecorded, energy mode", "tarnwick.energyMode", "", true, true);
        row("unrecorded, retired grid", "tarnwick.grid", "", true, false);
        row("unrecorded, guide v225", "tarnwick.hasSeenGuide.v225", "", false, true);
        row("unrecorded, other keys only", "tarnwick.haptics", "", false, false);
    }
    void earlierStarts() {
        QFETCH(QStringList, present);
        QFETCH(QString, lastVersion);
        QFETCH(bool, update);
        QFETCH(bool, existing);
        tw::MemoryDefaults defaults;
        for (const QString& key : present) {
            defaults.setValue(key, false);
        }
        if (!lastVersion.isEmpty()) {
            defaults.setValue(QStringLiteral("tarnwick.lastLaunchedVersion"), lastVersion);
        }
        QCOMPARE(AppSettings::isExistingInstall(defaults), existing);
        // A recorded version shows an earlier start, though not an install from before versions
        // were recorded.
        QCOMPARE(AppSettings::hasLaunchedBefore(defaults), existing || !lastVersion.isEmpty());
        const QString version = QStringLiteral("1.4");
        QCOMPARE(AppSettings::checkAndRecordUpdateLaunch(defaults, version), update);
        QCOMPARE(defaults.value(QStringLiteral("tarnwick.lastLaunchedVersion")).toString(),
                 version);
        QCOMPARE(defaults.contains(QStringLiteral("tarnwick.hasUpdated")), update);
        // The next start on the same version is no update, whatever the first one found.
        QCOMPARE(AppSettings::checkAndRecordUpdateLaunch(defaults, version), false);
    }

    // Each mode by its stored word and its own subtitle.
    void energyModeWords() {
        QStringList raws;
        QSet<QString> subtitles;
        for (const EnergyMode mode : AppSettings::energyModes) {
            raws << AppSettings::rawValue(mode);
            QCOMPARE(AppSettings::energyModeFromRawValue(AppSettings::rawValue(mode)), mode);
            QVERIFY(!AppSettings::title(mode).isEmpty());
            subtitles.insert(AppSettings::subtitle(mode));
        }
        QCOMPARE(raws.join(QLatin1Char(' ')), QStringLiteral("high balanced saver"));
        QCOMPARE(subtitles.size(), raws.size());
    }

    // Energy Saver is forced only while power is short and the switch allows it; the signal comes
    // once per move of the mode in force and never for a change that keeps it.
    void effectiveEnergyMode_data() {
        QTest::addColumn<EnergyMode>("chosen");
        QTest::addColumn<bool>("autoSaver");
        QTest::addColumn<EnergyMode>("constrained");
        QTest::addColumn<int>("moves");
        QTest::addColumn<int>("movesInAll");
        using tw::test::row;
        row("high, forced", EnergyMode::high, true, EnergyMode::saver, 1, 2);
        row("balanced, switch off", EnergyMode::balanced, false, EnergyMode::balanced, 0, 2);
        row("saver chosen, nothing moves", EnergyMode::saver, true, EnergyMode::saver, 0, 0);
    }
    void effectiveEnergyMode() {
        QFETCH(EnergyMode, chosen);
        QFETCH(bool, autoSaver);
        QFETCH(EnergyMode, constrained);
        tw::MemoryDefaults defaults;
        AppSettings settings(defaults);
        settings.setEnergyMode(chosen);
        settings.setAutoSaver(autoSaver);
        QSignalSpy spy(&settings, &AppSettings::effectiveEnergyModeChanged);
        settings.setPowerConstrained(true);
        QCOMPARE(settings.effectiveEnergyMode(), constrained);
        QTEST(int(spy.count()), "moves");
        // Turning the switch over while constrained, then power coming back: the chosen mode.
        settings.setAutoSaver(!autoSaver);
        settings.setPowerConstrained(false);
        QCOMPARE(settings.effectiveEnergyMode(), chosen);
        QTEST(int(spy.count()), "movesInAll");
        QCOMPARE(AppSettings::tickInterval(settings.effectiveEnergyMode()).count(),
                 chosen == EnergyMode::saver ? 2000 : 1000);
    }

    void failedRelaunchLeavesTheApplicationRunning() {
        QEventLoop loop;
        std::optional<bool> started;
        bool stillRunning = false;
        tw::NullRelauncher relauncher(false);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("Relaunch failed")));
        // Both run in this order within one pass of the loop, unless the first ends the loop.
        QTimer::singleShot(0, &loop, [&] { started = AppSettings::relaunch(relauncher); });
        QTimer::singleShot(0, &loop, [&] {
            stillRunning = true;
            loop.quit();
        });
        loop.exec();
        QCOMPARE(started, std::optional<bool>(false));
        QVERIFY(stillRunning);
    }

    // With real processes: the helper relaunches itself once; the new generation starts only
    // after the old one is gone, with the same arguments.
    void relaunchReplacesTheProcess() {
        QTemporaryDir dir;
        const QString marker = dir.filePath(QStringLiteral("generations with spaces.txt"));
        const auto lines = [&marker] {
            return QString::fromUtf8(tw::test::readFile(marker)).split(u'\n', Qt::SkipEmptyParts);
        };
        QProcess first;
        first.start(QStringLiteral(TW_RELAUNCH_HELPER), {marker});
        QVERIFY(first.waitForStarted(10000));
        const qint64 firstPid = first.processId();
        QVERIFY(first.waitForFinished(10000));
        QCOMPARE(first.exitStatus(), QProcess::NormalExit);
        QCOMPARE(first.exitCode(), 0);

        QTRY_VERIFY_WITH_TIMEOUT(lines().size() >= 2, 20000);
        const QStringList seen = lines();
        const qint64 secondPid = seen.at(1).section(u' ', 1, 1).toLongLong();
        auto cleanup = qScopeGuard([secondPid] {
            if (secondPid > 0) {
                ::kill(static_cast<pid_t>(secondPid), SIGKILL);
            }
        });
        QCOMPARE(seen, (QStringList{QStringLiteral("first %1").arg(firstPid),
                                    QStringLiteral("second %1 gone").arg(secondPid)}));
        QVERIFY(secondPid > 0 && secondPid != firstPid);
    }
};

QTEST_GUILESS_MAIN(TestAppSettings)
#include "tst_appsettings.moc"
