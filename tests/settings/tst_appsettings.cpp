#include "platform/SettingsDefaults.h"
#include "platform/null/MemoryDefaults.h"
#include "platform/null/NullRelauncher.h"
#include "settings/AppSettings.h"

#include <QEventLoop>
#include <QFile>
#include <QMetaProperty>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

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

} // namespace

class TestAppSettings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Every stored field: its default on empty defaults, its key written on change, a signal
    // only on a real change, and the value read back by the next run.
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
    }
    void storedFieldRoundTrip() {
        QFETCH(QByteArray, name);
        QFETCH(QString, key);
        QFETCH(QVariant, fallback);
        QFETCH(QVariant, changed);
        QFETCH(QVariant, stored);
        tw::MemoryDefaults defaults;
        AppSettings settings(defaults);
        QCOMPARE(read(settings, name), fallback);
        QVERIFY(!defaults.contains(key));

        const QMetaProperty meta = metaProperty(name);
        QSignalSpy spy(&settings, meta.notifySignal());
        QVERIFY(meta.write(&settings, fallback));
        QCOMPARE(spy.count(), 0);
        QVERIFY(meta.write(&settings, changed));
        QVERIFY(meta.write(&settings, changed));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(defaults.value(key), stored);

        AppSettings nextRun(defaults);
        QCOMPARE(read(nextRun, name), changed);
    }

    void runtimeFieldsWriteNothing_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("powerConstrained") << QByteArray("powerConstrained");
        QTest::newRow("appActive") << QByteArray("appActive");
        QTest::newRow("configWindowVisible") << QByteArray("configWindowVisible");
    }
    void runtimeFieldsWriteNothing() {
        QFETCH(QByteArray, name);
        tw::MemoryDefaults defaults;
        AppSettings settings(defaults);
        QSignalSpy written(&defaults, &tw::Defaults::valueChanged);
        QSignalSpy notified(&settings, metaProperty(name).notifySignal());
        QCOMPARE(read(settings, name), QVariant(false));
        metaProperty(name).write(&settings, true);
        metaProperty(name).write(&settings, true);
        QCOMPARE(read(settings, name), QVariant(true));
        QCOMPARE(notified.count(), 1);
        QCOMPARE(written.count(), 0);
    }

    // What a previous version or a hand-edited file left behind: words of the right kind win,
    // anything else reads as the default.
    void storedWordsLenient_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QVariant>("expected");
        QTest::newRow("energy high")
            << QStringLiteral("tarnwick.energyMode") << QVariant(QStringLiteral("high"))
            << QByteArray("energyMode") << QVariant::fromValue(EnergyMode::high);
        QTest::newRow("energy unknown word")
            << QStringLiteral("tarnwick.energyMode") << QVariant(QStringLiteral("turbo"))
            << QByteArray("energyMode") << QVariant::fromValue(EnergyMode::balanced);
        QTest::newRow("energy wrong case")
            << QStringLiteral("tarnwick.energyMode") << QVariant(QStringLiteral("Saver"))
            << QByteArray("energyMode") << QVariant::fromValue(EnergyMode::balanced);
        QTest::newRow("energy number")
            << QStringLiteral("tarnwick.energyMode") << QVariant(2) << QByteArray("energyMode")
            << QVariant::fromValue(EnergyMode::balanced);
        QTest::newRow("bool as INI word")
            << QStringLiteral("tarnwick.autoSaver") << QVariant(QStringLiteral("false"))
            << QByteArray("autoSaver") << QVariant(false);
        QTest::newRow("bool as number") << QStringLiteral("tarnwick.hideDockIcon") << QVariant(1)
                                        << QByteArray("hideDockIcon") << QVariant(true);
        QTest::newRow("bool unknown word")
            << QStringLiteral("tarnwick.haptics") << QVariant(QStringLiteral("maybe"))
            << QByteArray("hapticsEnabled") << QVariant(true);
        QTest::newRow("bool unknown word, default false")
            << QStringLiteral("tarnwick.moveNeedsShift") << QVariant(QStringLiteral("yes please"))
            << QByteArray("moveNeedsShift") << QVariant(false);
        QTest::newRow("fps as INI word")
            << QStringLiteral("tarnwick.lockScreenFPS") << QVariant(QStringLiteral("15"))
            << QByteArray("lockScreenFPS") << QVariant(15.0);
        QTest::newRow("fps off the choices")
            << QStringLiteral("tarnwick.lockScreenFPS") << QVariant(25.0)
            << QByteArray("lockScreenFPS") << QVariant(30.0);
        QTest::newRow("fps negative") << QStringLiteral("tarnwick.lockScreenFPS") << QVariant(-5)
                                      << QByteArray("lockScreenFPS") << QVariant(0.0);
        QTest::newRow("fps not a number")
            << QStringLiteral("tarnwick.lockScreenFPS") << QVariant(QStringLiteral("fast"))
            << QByteArray("lockScreenFPS") << QVariant(8.0);
        QTest::newRow("language unknown")
            << QStringLiteral("tarnwick.appLanguage") << QVariant(QStringLiteral("klingon"))
            << QByteArray("appLanguage") << QVariant(QStringLiteral("system"));
        QTest::newRow("language empty")
            << QStringLiteral("tarnwick.appLanguage") << QVariant(QString())
            << QByteArray("appLanguage") << QVariant(QStringLiteral("system"));
        QTest::newRow("language from INI list")
            << QStringLiteral("tarnwick.appLanguage") << QVariant(QStringList{QStringLiteral("fr")})
            << QByteArray("appLanguage") << QVariant(QStringLiteral("fr"));
    }
    void storedWordsLenient() {
        QFETCH(QString, key);
        QFETCH(QVariant, stored);
        QFETCH(QByteArray, name);
        QFETCH(QVariant, expected);
        tw::MemoryDefaults defaults;
        defaults.setValue(key, stored);
        AppSettings settings(defaults);
        QCOMPARE(read(settings, name), expected);
    }

    void lockScreenFPSMigration_data() {
        QTest::addColumn<QVariant>("fps");
        QTest::addColumn<QVariant>("animated");
        QTest::addColumn<double>("expected");
        QTest::newRow("neither") << QVariant() << QVariant() << 8.0;
        QTest::newRow("animated") << QVariant() << QVariant(true) << 8.0;
        QTest::newRow("still") << QVariant() << QVariant(false) << 0.0;
        QTest::newRow("still as INI word")
            << QVariant() << QVariant(QStringLiteral("false")) << 0.0;
        QTest::newRow("fps wins over retired") << QVariant(60) << QVariant(false) << 60.0;
        QTest::newRow("fps zero wins") << QVariant(0) << QVariant(true) << 0.0;
    }
    void lockScreenFPSMigration() {
        QFETCH(QVariant, fps);
        QFETCH(QVariant, animated);
        QFETCH(double, expected);
        tw::MemoryDefaults defaults;
        if (fps.isValid()) {
            defaults.setValue(QStringLiteral("tarnwick.lockScreenFPS"), fps);
        }
        if (animated.isValid()) {
            defaults.setValue(QStringLiteral("tarnwick.lockScreenAnimated"), animated);
        }
        AppSettings settings(defaults);
        QCOMPARE(settings.lockScreenFPS(), expected);
        // Reading migrates nothing; the retired key stays for an older version to read.
        QCOMPARE(defaults.contains(QStringLiteral("tarnwick.lockScreenFPS")), fps.isValid());
    }

    void hasSeenGuideVersioned_data() {
        QTest::addColumn<QVariant>("versioned");
        QTest::addColumn<QVariant>("plain");
        QTest::addColumn<bool>("expected");
        QTest::newRow("none") << QVariant() << QVariant() << false;
        QTest::newRow("plain only") << QVariant() << QVariant(true) << true;
        QTest::newRow("versioned only") << QVariant(true) << QVariant() << true;
        QTest::newRow("versioned counts over plain") << QVariant(false) << QVariant(true) << false;
        QTest::newRow("versioned unreadable")
            << QVariant(QStringLiteral("?")) << QVariant(true) << true;
    }
    void hasSeenGuideVersioned() {
        QFETCH(QVariant, versioned);
        QFETCH(QVariant, plain);
        QFETCH(bool, expected);
        const QString versionedKey = QStringLiteral("tarnwick.hasSeenGuide.v225");
        const QString plainKey = QStringLiteral("tarnwick.hasSeenGuide");
        tw::MemoryDefaults defaults;
        if (versioned.isValid()) {
            defaults.setValue(versionedKey, versioned);
        }
        if (plain.isValid()) {
            defaults.setValue(plainKey, plain);
        }
        AppSettings settings(defaults);
        QCOMPARE(settings.hasSeenGuide(), expected);

        settings.setHasSeenGuide(!expected);
        QCOMPARE(defaults.value(plainKey), QVariant(!expected));
        QVERIFY(!defaults.contains(versionedKey));
        QCOMPARE(AppSettings(defaults).hasSeenGuide(), !expected);
    }

    void languageChoiceWritesAppleLanguagesAndWaitsForRelaunch() {
        const QString appleLanguages = QStringLiteral("AppleLanguages");
        tw::MemoryDefaults defaults;
        AppSettings settings(defaults);
        QCOMPARE(settings.languageAtLaunch(), QStringLiteral("system"));

        settings.setAppLanguage(QStringLiteral("de"));
        QCOMPARE(defaults.value(appleLanguages).toStringList(), QStringList{QStringLiteral("de")});
        QCOMPARE(settings.languageAtLaunch(), QStringLiteral("system"));

        settings.setAppLanguage(QStringLiteral("system"));
        QVERIFY(!defaults.contains(appleLanguages));
        QCOMPARE(defaults.value(QStringLiteral("tarnwick.appLanguage")).toString(),
                 QStringLiteral("system"));

        // A word no table or list knows is refused as "system".
        settings.setAppLanguage(QStringLiteral("de"));
        settings.setAppLanguage(QStringLiteral("xx"));
        QCOMPARE(settings.appLanguage(), QStringLiteral("system"));
        QVERIFY(!defaults.contains(appleLanguages));

        settings.setAppLanguage(QStringLiteral("ja"));
        QCOMPARE(AppSettings(defaults).languageAtLaunch(), QStringLiteral("ja"));
        QCOMPARE(settings.languageAtLaunch(), QStringLiteral("system"));
    }

    void applyLanguagePreferenceDirectly() {
        tw::MemoryDefaults defaults;
        AppSettings::applyLanguagePreference(defaults, QStringLiteral("zh-Hant"));
        QCOMPARE(defaults.value(QStringLiteral("AppleLanguages")).toStringList(),
                 QStringList{QStringLiteral("zh-Hant")});
        AppSettings::applyLanguagePreference(defaults, QStringLiteral("system"));
        QVERIFY(!defaults.contains(QStringLiteral("AppleLanguages")));
    }

    void staticReaders() {
        tw::MemoryDefaults defaults;
        QCOMPARE(AppSettings::storedHideDockIcon(defaults), false);
        QCOMPARE(AppSettings::storedMoveNeedsShift(defaults), false);
        QCOMPARE(AppSettings::storedLanguage(defaults), QStringLiteral("system"));
        defaults.setValue(QStringLiteral("tarnwick.hideDockIcon"), true);
        defaults.setValue(QStringLiteral("tarnwick.moveNeedsShift"), QStringLiteral("true"));
        defaults.setValue(QStringLiteral("tarnwick.appLanguage"), QStringLiteral("it"));
        QCOMPARE(AppSettings::storedHideDockIcon(defaults), true);
        QCOMPARE(AppSettings::storedMoveNeedsShift(defaults), true);
        QCOMPARE(AppSettings::storedLanguage(defaults), QStringLiteral("it"));
    }

    void updateLaunch_data() {
        QTest::addColumn<QStringList>("present");
        QTest::addColumn<QString>("lastVersion");
        QTest::addColumn<bool>("expected");
        QTest::newRow("new install") << QStringList{} << QString() << false;
        QTest::newRow("same version") << QStringList{} << QStringLiteral("1.4") << false;
        QTest::newRow("other version") << QStringList{} << QStringLiteral("1.3") << true;
        QTest::newRow("unrecorded, energy mode")
            << QStringList{QStringLiteral("tarnwick.energyMode")} << QString() << true;
        QTest::newRow("unrecorded, retired grid")
            << QStringList{QStringLiteral("tarnwick.grid")} << QString() << true;
        QTest::newRow("unrecorded, guide")
            << QStringList{QStringLiteral("tarnwick.hasSeenGuide")} << QString() << true;
        QTest::newRow("unrecorded, other keys only")
            << QStringList{QStringLiteral("tarnwick.haptics"),
                           QStringLiteral("tarnwick.hasSeenGuide.v225")}
            << QString() << false;
    }
    void updateLaunch() {
        QFETCH(QStringList, present);
        QFETCH(QString, lastVersion);
        QFETCH(bool, expected);
        tw::MemoryDefaults defaults;
        for (const QString& key : present) {
            defaults.setValue(key, true);
        }
        if (!lastVersion.isEmpty()) {
            defaults.setValue(QStringLiteral("tarnwick.lastLaunchedVersion"), lastVersion);
        }
        const QString version = QStringLiteral("1.4");
        QCOMPARE(AppSettings::checkAndRecordUpdateLaunch(defaults, version), expected);
        QCOMPARE(defaults.value(QStringLiteral("tarnwick.lastLaunchedVersion")).toString(),
                 version);
        QCOMPARE(defaults.contains(QStringLiteral("tarnwick.hasUpdated")), expected);
        // The next start on the same version is no update, whatever the first one found.
        QCOMPARE(AppSettings::checkAndRecordUpdateLaunch(defaults, version), false);
    }

    void existingInstall_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("expected");
        QTest::newRow("nothing") << QString() << false;
        QTest::newRow("energy mode") << QStringLiteral("tarnwick.energyMode") << true;
        QTest::newRow("guide v225") << QStringLiteral("tarnwick.hasSeenGuide.v225") << true;
        QTest::newRow("guide") << QStringLiteral("tarnwick.hasSeenGuide") << true;
        QTest::newRow("other key") << QStringLiteral("tarnwick.haptics") << false;
        QTest::newRow("a recorded version")
            << QStringLiteral("tarnwick.lastLaunchedVersion") << false;
    }
    // A recorded version shows an earlier start, though not an install from before versions
    // were recorded.
    void existingInstall() {
        QFETCH(QString, key);
        QFETCH(bool, expected);
        tw::MemoryDefaults defaults;
        if (!key.isEmpty()) {
            defaults.setValue(key, false);
        }
        QCOMPARE(AppSettings::isExistingInstall(defaults), expected);
        QCOMPARE(AppSettings::hasLaunchedBefore(defaults),
                 expected || key == QLatin1String("tarnwick.lastLaunchedVersion"));
    }

    void energyModeWords() {
        QStringList raws;
        for (const EnergyMode mode : AppSettings::energyModes) {
            raws << AppSettings::rawValue(mode);
            QCOMPARE(AppSettings::energyModeFromRawValue(AppSettings::rawValue(mode)), mode);
        }
        QCOMPARE(raws, (QStringList{QStringLiteral("high"), QStringLiteral("balanced"),
                                    QStringLiteral("saver")}));
        QCOMPARE(AppSettings::energyModeFromRawValue(u""), std::nullopt);
        QCOMPARE(AppSettings::subtitle(EnergyMode::saver),
                 QStringLiteral("Still frames with minimal refreshes"));
        QCOMPARE(AppSettings::subtitle(EnergyMode::balanced),
                 QStringLiteral("Widgets animate while you hover them"));
        QCOMPARE(AppSettings::subtitle(EnergyMode::high),
                 QStringLiteral("Everything animates, full frame rate"));
        QCOMPARE(AppSettings::title(EnergyMode::balanced), QStringLiteral("Balanced"));
    }

    // The real preferences file: INI gives words back where booleans and lists went in.
    void survivesTheSettingsFile() {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("Tarnwick.conf"));
        {
            tw::SettingsDefaults defaults(path);
            AppSettings settings(defaults);
            settings.setAutoSaver(false);
            settings.setLockScreenFPS(15);
            settings.setEnergyMode(EnergyMode::high);
            settings.setAppLanguage(QStringLiteral("de"));
        }
        tw::SettingsDefaults defaults(path);
        AppSettings settings(defaults);
        QCOMPARE(settings.autoSaver(), false);
        QCOMPARE(settings.lockScreenFPS(), 15.0);
        QCOMPARE(settings.energyMode(), EnergyMode::high);
        QCOMPARE(settings.languageAtLaunch(), QStringLiteral("de"));
    }

    // A file another run left: INI gives every value back as a word, and lists of one as a word.
    void readsTheWordsOfAnIniFile() {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("Tarnwick.conf"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[General]\n"
                   "tarnwick.autoSaver=false\n"
                   "tarnwick.hideDockIcon=true\n"
                   "tarnwick.haptics=maybe\n"
                   "tarnwick.lockScreenAnimated=false\n"
                   "tarnwick.energyMode=saver\n"
                   "tarnwick.appLanguage=de\n"
                   "AppleLanguages=de\n");
        file.close();
        tw::SettingsDefaults defaults(path);
        AppSettings settings(defaults);
        QCOMPARE(settings.autoSaver(), false);
        QCOMPARE(settings.hideDockIcon(), true);
        QCOMPARE(settings.hapticsEnabled(), true);
        QCOMPARE(settings.lockScreenFPS(), 0.0);
        QCOMPARE(settings.energyMode(), EnergyMode::saver);
        QCOMPARE(settings.appLanguage(), QStringLiteral("de"));
        QCOMPARE(AppSettings::storedHideDockIcon(defaults), true);
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
};

QTEST_GUILESS_MAIN(TestAppSettings)
#include "tst_appsettings.moc"
