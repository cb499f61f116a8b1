#include "platform/linux/LinuxAppCategory.h"

#include <QSet>

namespace tw {

namespace {

bool anyIn(const QStringList& ids, const QSet<QString>& table) {
    for (QString id : ids) {
        id = id.toLower();
        if (id.endsWith(QLatin1String(".desktop"))) {
            id.chop(QLatin1String(".desktop").size());
        }
        if (table.contains(id)) {
            return true;
        }
    }
    return false;
}

bool anyOf(const QStringList& categories, const QSet<QString>& table) {
    for (const QString& category : categories) {
        if (table.contains(category)) {
            return true;
        }
    }
    return false;
}

} // namespace

AppCategory linuxAppCategory(const QStringList& ids, const QStringList& categories) {
    static const QSet<QString> browsers{
        QStringLiteral("firefox"),
        QStringLiteral("firefox-esr"),
        QStringLiteral("org.mozilla.firefox"),
        QStringLiteral("librewolf"),
        QStringLiteral("chromium"),
        QStringLiteral("chromium-browser"),
        QStringLiteral("org.chromium.chromium"),
        QStringLiteral("google-chrome"),
        QStringLiteral("com.google.chrome"),
        QStringLiteral("brave-browser"),
        QStringLiteral("com.brave.browser"),
        QStringLiteral("vivaldi"),
        QStringLiteral("vivaldi-stable"),
        QStringLiteral("epiphany"),
        QStringLiteral("org.gnome.epiphany"),
        QStringLiteral("microsoft-edge"),
        QStringLiteral("opera"),
        QStringLiteral("falkon"),
        QStringLiteral("org.kde.falkon"),
        QStringLiteral("konqueror"),
        QStringLiteral("qutebrowser"),
        QStringLiteral("zen"),
        QStringLiteral("app.zen_browser.zen"),
        QStringLiteral("floorp"),
        QStringLiteral("waterfox"),
        QStringLiteral("torbrowser"),
    };
    static const QSet<QString> messengers{
        QStringLiteral("thunderbird"),
        QStringLiteral("org.mozilla.thunderbird"),
        QStringLiteral("evolution"),
        QStringLiteral("org.gnome.evolution"),
        QStringLiteral("geary"),
        QStringLiteral("org.gnome.geary"),
        QStringLiteral("kmail"),
        QStringLiteral("org.kde.kmail2"),
        QStringLiteral("mailspring"),
        QStringLiteral("slack"),
        QStringLiteral("com.slack.slack"),
        QStringLiteral("discord"),
        QStringLiteral("com.discordapp.discord"),
        QStringLiteral("signal"),
        QStringLiteral("signal-desktop"),
        QStringLiteral("org.signal.signal"),
        QStringLiteral("telegramdesktop"),
        QStringLiteral("telegram-desktop"),
        QStringLiteral("org.telegram.desktop"),
        QStringLiteral("element"),
        QStringLiteral("im.riot.riot"),
        QStringLiteral("zoom"),
        QStringLiteral("us.zoom.zoom"),
        QStringLiteral("teams-for-linux"),
        QStringLiteral("whatsapp-for-linux"),
        QStringLiteral("skype"),
        QStringLiteral("hexchat"),
        QStringLiteral("pidgin"),
        QStringLiteral("org.gnome.polari"),
        QStringLiteral("org.gnome.fractal"),
    };
    if (anyIn(ids, browsers)) {
        return AppCategory::web;
    }
    if (anyIn(ids, messengers)) {
        return AppCategory::communication;
    }
    // Additional categories say more than main ones, so they come first: an editor of sound is
    // creative although its main category is AudioVideo.
    static const QSet<QString> web{QStringLiteral("WebBrowser")};
    static const QSet<QString> communication{
        QStringLiteral("Email"),
        QStringLiteral("Chat"),
        QStringLiteral("InstantMessaging"),
        QStringLiteral("IRCClient"),
        QStringLiteral("Telephony"),
        QStringLiteral("VideoConference"),
    };
    static const QSet<QString> creative{
        QStringLiteral("Graphics"),
        QStringLiteral("2DGraphics"),
        QStringLiteral("3DGraphics"),
        QStringLiteral("VectorGraphics"),
        QStringLiteral("RasterGraphics"),
        QStringLiteral("Photography"),
        QStringLiteral("AudioVideoEditing"),
        QStringLiteral("Midi"),
        QStringLiteral("Mixer"),
        QStringLiteral("Sequencer"),
        QStringLiteral("Music"),
        QStringLiteral("Art"),
    };
    static const QSet<QString> work{
        QStringLiteral("Office"),
        QStringLiteral("Development"),
        QStringLiteral("Education"),
        QStringLiteral("Science"),
        QStringLiteral("Finance"),
        QStringLiteral("ProjectManagement"),
        QStringLiteral("Calendar"),
        QStringLiteral("WordProcessor"),
        QStringLiteral("Spreadsheet"),
        QStringLiteral("Presentation"),
        QStringLiteral("TextEditor"),
        QStringLiteral("IDE"),
        QStringLiteral("Database"),
        QStringLiteral("Engineering"),
        QStringLiteral("Math"),
        QStringLiteral("Dictionary"),
        QStringLiteral("MedicalSoftware"),
        QStringLiteral("Economy"),
        QStringLiteral("ContactManagement"),
        QStringLiteral("Publishing"),
    };
    static const QSet<QString> entertainment{
        QStringLiteral("Game"),   QStringLiteral("AudioVideo"), QStringLiteral("Audio"),
        QStringLiteral("Video"),  QStringLiteral("Player"),     QStringLiteral("TV"),
        QStringLiteral("Sports"), QStringLiteral("Amusement"),  QStringLiteral("News"),
        QStringLiteral("Feed"),
    };
    if (anyOf(categories, web)) {
        return AppCategory::web;
    }
    if (anyOf(categories, communication)) {
        return AppCategory::communication;
    }
    if (anyOf(categories, creative)) {
        return AppCategory::creative;
    }
    if (anyOf(categories, work)) {
        return AppCategory::work;
    }
    for (const QString& category : categories) {
        if (entertainment.contains(category) || category.endsWith(QLatin1String("Game"))) {
            return AppCategory::entertainment;
        }
    }
    return AppCategory::other;
}

bool isLinuxScreenLocker(const QString& windowClass) {
    static const QSet<QString> lockers{
        QStringLiteral("xscreensaver"),
        QStringLiteral("i3lock"),
        QStringLiteral("light-locker"),
        QStringLiteral("gnome-screensaver"),
        QStringLiteral("xsecurelock"),
        QStringLiteral("slock"),
        QStringLiteral("xfce4-screensaver"),
        QStringLiteral("kscreenlocker_greet"),
        QStringLiteral("cinnamon-screensaver"),
        QStringLiteral("mate-screensaver"),
        QStringLiteral("xlock"),
        QStringLiteral("xtrlock"),
        QStringLiteral("betterlockscreen"),
        QStringLiteral("lightdm-gtk-greeter"),
    };
    return lockers.contains(windowClass.toLower());
}

} // namespace tw
