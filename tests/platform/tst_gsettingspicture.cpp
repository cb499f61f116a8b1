// The picture settings of GNOME and MATE under test schemas compiled into a temporary directory,
// kept by GSettings' key-file backend, and changed by another process.
#include "platform/linux/GSettingsPicture.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gio/gio.h>

using namespace tw;
using Fill = DesktopPicture::Fill;

namespace {

constexpr int none = -1;

// Only the keys the reader uses, and one it must not follow; Cinnamon's schema is left out.
const char* const schemas = R"(<schemalist>
  <schema id="org.gnome.desktop.background" path="/org/gnome/desktop/background/">
    <key name="picture-uri" type="s"><default>''</default></key>
    <key name="picture-uri-dark" type="s"><default>''</default></key>
    <key name="picture-options" type="s"><default>'zoom'</default></key>
    <key name="primary-color" type="s"><default>'#000000'</default></key>
  </schema>
  <schema id="org.gnome.desktop.interface" path="/org/gnome/desktop/interface/">
    <key name="color-scheme" type="s"><default>'default'</default></key>
  </schema>
  <schema id="org.mate.background" path="/org/mate/desktop/background/">
    <key name="picture-filename" type="s"><default>''</default></key>
    <key name="picture-options" type="s"><default>'zoom'</default></key>
  </schema>
</schemalist>
)";

// "schema key value"
void set(const QString& entry) {
    const QStringList parts = entry.split(QLatin1Char(' '));
    GSettings* settings = g_settings_new(qPrintable(parts[0]));
    g_settings_set_string(settings, qPrintable(parts[1]),
                          qPrintable(parts.mid(2).join(QLatin1Char(' '))));
    g_object_unref(settings);
}

void setElsewhere(const QString& schema, const QString& key, const QString& value) {
    QCOMPARE(QProcess::execute(QStringLiteral("gsettings"),
                               {QStringLiteral("set"), schema, key,
                                QLatin1Char('\'') + value + QLatin1Char('\'')}),
             0);
}

} // namespace

class tst_GSettingsPicture : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(QDir().mkpath(m_dir.filePath(QStringLiteral("schemas"))));
        QFile file(m_dir.filePath(QStringLiteral("schemas/test.gschema.xml")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(schemas);
        file.close();
        QCOMPARE(QProcess::execute(QStringLiteral("glib-compile-schemas"),
                                   {m_dir.filePath(QStringLiteral("schemas"))}),
                 0);
        // Before GIO's first look at either.
        qputenv("GSETTINGS_SCHEMA_DIR",
                QFile::encodeName(m_dir.filePath(QStringLiteral("schemas"))));
        qputenv("GSETTINGS_BACKEND", "keyfile");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_dir.filePath(QStringLiteral("config"))));
    }
    void init() {
        for (const char* id : {"org.gnome.desktop.background", "org.gnome.desktop.interface",
                               "org.mate.background"}) {
            GSettings* settings = g_settings_new(id);
            GSettingsSchema* schema = nullptr;
            g_object_get(settings, "settings-schema", &schema, nullptr);
            gchar** keys = g_settings_schema_list_keys(schema);
            for (gchar** key = keys; *key != nullptr; ++key) {
                g_settings_reset(settings, *key);
            }
            g_strfreev(keys);
            g_settings_schema_unref(schema);
            g_object_unref(settings);
        }
    }

    void setting_data() {
        QTest::addColumn<int>("desktop");
        QTest::addColumn<QStringList>("values");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("fill");
        const int gnome = int(GSettingsPicture::Desktop::gnome);
        const QString uri = QStringLiteral("org.gnome.desktop.background picture-uri "
                                           "file:///pics/light%20one.jpg");
        const QString darkUri = QStringLiteral("org.gnome.desktop.background picture-uri-dark "
                                               "file:///pics/dark.jpg");
        const QString dark = QStringLiteral("org.gnome.desktop.interface color-scheme prefer-dark");
        const auto options = [](const char* option) -> QString {
            return QStringLiteral("org.gnome.desktop.background picture-options ") +
                   QLatin1String(option);
        };
        QTest::newRow("URI, zoomed by default")
            << gnome << QStringList{uri} << "/pics/light one.jpg" << int(Fill::zoom);
        QTest::newRow("the dark look's picture")
            << gnome << QStringList{uri, darkUri, dark} << "/pics/dark.jpg" << int(Fill::zoom);
        QTest::newRow("a dark picture in the light look")
            << gnome << QStringList{uri, darkUri} << "/pics/light one.jpg" << int(Fill::zoom);
        QTest::newRow("the dark look with no dark picture")
            << gnome << QStringList{uri, dark} << "/pics/light one.jpg" << int(Fill::zoom);
        QTest::newRow("scaled") << gnome << QStringList{uri, options("scaled")}
                                << "/pics/light one.jpg" << int(Fill::fit);
        QTest::newRow("tiled") << gnome << QStringList{uri, options("wallpaper")}
                               << "/pics/light one.jpg" << int(Fill::tile);
        QTest::newRow("spanned") << gnome << QStringList{uri, options("spanned")}
                                 << "/pics/light one.jpg" << int(Fill::span);
        QTest::newRow("no picture shown")
            << gnome << QStringList{uri, options("none")} << QString() << none;
        QTest::newRow("not a local file")
            << gnome
            << QStringList{QStringLiteral(
                   "org.gnome.desktop.background picture-uri resource:///a.png")}
            << QString() << none;
        QTest::newRow("nothing set") << gnome << QStringList{} << QString() << none;
        QTest::newRow("MATE keeps a path, centred")
            << int(GSettingsPicture::Desktop::mate)
            << QStringList{QStringLiteral("org.mate.background picture-filename /pics/m a.png"),
                           QStringLiteral("org.mate.background picture-options centered")}
            << "/pics/m a.png" << int(Fill::center);
    }
    void setting() {
        QFETCH(int, desktop);
        QFETCH(QStringList, values);
        QFETCH(QString, file);
        QFETCH(int, fill);
        for (const QString& value : std::as_const(values)) {
            set(value);
        }
        const auto picture = GSettingsPicture::create(GSettingsPicture::Desktop(desktop));
        QVERIFY(picture);
        const auto setting = picture->setting();
        QCOMPARE(setting ? setting->file : QString(), file);
        if (setting) {
            QCOMPARE(int(setting->fill), fill);
        }
    }

    // What it shows is what it then reads, in the light and the dark look, zoomed whatever was
    // set before; GNOME keeps a URI, MATE a path.
    void showReadsBack_data() {
        QTest::addColumn<int>("desktop");
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("stored");
        const QString file = QStringLiteral("/data/Wallpapers/dawn 1.png");
        QTest::newRow("GNOME, over a dark picture and another fit")
            << int(GSettingsPicture::Desktop::gnome)
            << QStringList{QStringLiteral("org.gnome.desktop.background picture-uri-dark "
                                          "file:///pics/dark.jpg"),
                           QStringLiteral("org.gnome.desktop.background picture-options scaled")}
            << "org.gnome.desktop.background picture-uri-dark"
            << "file:///data/Wallpapers/dawn%201.png";
        QTest::newRow("MATE") << int(GSettingsPicture::Desktop::mate)
                              << QStringList{QStringLiteral(
                                     "org.mate.background picture-options centered")}
                              << "org.mate.background picture-filename" << file;
    }
    void showReadsBack() {
        QFETCH(int, desktop);
        QFETCH(QStringList, before);
        QFETCH(QString, key);
        for (const QString& value : std::as_const(before)) {
            set(value);
        }
        const QString file = QStringLiteral("/data/Wallpapers/dawn 1.png");
        QVERIFY(GSettingsPicture::create(GSettingsPicture::Desktop(desktop))->show(file));
        for (const char* look : {"default", "prefer-dark"}) {
            set(QStringLiteral("org.gnome.desktop.interface color-scheme ") + QLatin1String(look));
            const auto setting =
                GSettingsPicture::create(GSettingsPicture::Desktop(desktop))->setting();
            QVERIFY2(setting, look);
            QCOMPARE(setting->file, file);
            QCOMPARE(int(setting->fill), int(Fill::zoom));
        }
        const QStringList schemaKey = key.split(QLatin1Char(' '));
        GSettings* settings = g_settings_new(qPrintable(schemaKey[0]));
        gchar* stored = g_settings_get_string(settings, qPrintable(schemaKey[1]));
        QTEST(QString::fromUtf8(stored), "stored");
        g_free(stored);
        g_object_unref(settings);
    }

    void aSchemaNotInstalledIsNoSource() {
        QVERIFY(!GSettingsPicture::create(GSettingsPicture::Desktop::cinnamon));
    }

    void followsChangesMadeElsewhere() {
        const auto picture = GSettingsPicture::create(GSettingsPicture::Desktop::gnome);
        QSignalSpy changed(picture.get(), &GSettingsPicture::changed);
        const QString background = QStringLiteral("org.gnome.desktop.background");
        setElsewhere(background, QStringLiteral("primary-color"), QStringLiteral("#102030"));
        setElsewhere(background, QStringLiteral("picture-uri"), QStringLiteral("file:///new.jpg"));
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(picture->setting()->file, QStringLiteral("/new.jpg"));

        setElsewhere(background, QStringLiteral("picture-uri-dark"), QStringLiteral("/night.jpg"));
        QTRY_COMPARE(changed.size(), 2);
        setElsewhere(QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("color-scheme"),
                     QStringLiteral("prefer-dark"));
        QTRY_COMPARE(changed.size(), 3);
        QCOMPARE(picture->setting()->file, QStringLiteral("/night.jpg"));
        QTest::qWait(200);
        QCOMPARE(changed.size(), 3);
    }
};

QTEST_GUILESS_MAIN(tst_GSettingsPicture)
#include "tst_gsettingspicture.moc"
