#include "TestRows.h"
#include "launch/AppShelf.h"

#include <QTest>

using namespace tw;
using tw::test::row;

namespace {

InstalledApp app(const char* id, const char* name, QStringList keywords = {}) {
    return {.id = QLatin1String(id),
            .name = QString::fromUtf8(name),
            .icon = {},
            .keywords = std::move(keywords)};
}

const QList<InstalledApp> installed{
    app("org.gnome.Calculator", "Calculator", {QStringLiteral("math")}),
    app("org.gnome.Calendar", "Calendar"),
    app("firefox-esr", "Firefox ESR", {QStringLiteral("web"), QStringLiteral("browser")}),
    app("org.gnome.Screenshot", "Capture d’écran"),
    app("mpv", "mpv Media Player"),
    app("vlc", "VLC media player", {QStringLiteral("video")}),
    app("org.example.Mediathek", "Mediathek"),
};

} // namespace

class TestAppShelf : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void search_data() {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("found");
        row("everything in order", "",
            "org.gnome.Calculator org.gnome.Calendar firefox-esr "
            "org.gnome.Screenshot mpv vlc org.example.Mediathek");
        row("a start of the name", "cal", "org.gnome.Calculator org.gnome.Calendar");
        row("case and accents ignored", "ECRAN", "org.gnome.Screenshot");
        row("a name's start, then a word's", "media", "org.example.Mediathek mpv vlc");
        row("the middle of a name", "lat", "org.gnome.Calculator");
        row("keywords and ids last", "web", "firefox-esr");
        row("every word must match", "media vlc", "vlc");
        row("the id", "gnome.cal", "org.gnome.Calculator org.gnome.Calendar");
        row("nothing", "spreadsheet", "");
    }
    void search() {
        QFETCH(QString, query);
        QFETCH(QString, found);
        QStringList ids;
        for (const InstalledApp& a : AppShelf::search(installed, query)) {
            ids << a.id;
        }
        QCOMPARE(ids.join(QLatin1Char(' ')), found);
    }

    void settingRoundTrip_data() {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QStringList>("ids");
        row("in the person's order", "b;a;c",
            QStringList{QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("c")});
        row("blanks and repeats left out", " a ;;b;a; ",
            QStringList{QStringLiteral("a"), QStringLiteral("b")});
        row("none", "", QStringList());
    }
    void settingRoundTrip() {
        QFETCH(QString, stored);
        QFETCH(QStringList, ids);
        QCOMPARE(AppShelf::read({{AppShelf::key(), stored}}), ids);
        QCOMPARE(AppShelf::read({{AppShelf::key(), AppShelf::write(ids)}}), ids);
        QCOMPARE(
            AppShelf::toggled(AppShelf::toggled(ids, QStringLiteral("z")), QStringLiteral("z")),
            ids);
    }
};

QTEST_GUILESS_MAIN(TestAppShelf)
#include "tst_appshelf.moc"
