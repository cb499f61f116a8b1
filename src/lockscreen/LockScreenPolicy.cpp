#include "lockscreen/LockScreenPolicy.h"

#include "text/L.h"

#include <QSet>

namespace tw {

bool LockScreenPolicy::showsByDefault(const QString& kind) {
    static const QSet<QString> publicKinds{
        QStringLiteral("clock"),     QStringLiteral("worldclock"),    QStringLiteral("weather"),
        QStringLiteral("battery"),   QStringLiteral("system"),        QStringLiteral("network"),
        QStringLiteral("starfield"), QStringLiteral("worldmap"),      QStringLiteral("countdown"),
        QStringLiteral("timer"),     QStringLiteral("stopwatch"),     QStringLiteral("currency"),
        QStringLiteral("crypto"),    QStringLiteral("unitconverter"), QStringLiteral("dayprogress"),
        QStringLiteral("speedtest"), QStringLiteral("moon"),          QStringLiteral("airquality")};
    return publicKinds.contains(kind);
}

bool LockScreenPolicy::shows(const WidgetInstance& widget) {
    const std::optional<QString> choice = widget.setting(overrideKey);
    if (choice == QStringLiteral("show")) {
        return true;
    }
    if (choice == QStringLiteral("hide")) {
        return false;
    }
    return showsByDefault(widget.kind);
}

std::optional<QString> LockScreenPolicy::privacyNote(const QString& kind) {
    struct Note {
        const char* kind;
        const char* key;
        const char* english;
    };
    static constexpr Note notes[] = {
        {"stickynote", "lock.why.note", "Shows what you wrote on it."},
        {"clipboard", "lock.why.clipboard",
         "Shows what you last copied, and that is where passwords end up."},
        {"reminders", "lock.why.reminders", "Shows your to-do list."},
        {"calendar", "lock.why.calendar", "Shows where you will be, and with whom."},
        {"nowplaying", "lock.why.nowplaying", "Shows what you are listening to."},
        {"photos", "lock.why.photos", "Shows your own pictures."},
        {"apps", "lock.why.apps", "Shows which apps are on this Mac."},
        {"dropzone", "lock.why.dropzone", "Shows the names of files you put there."},
        {"btdevices", "lock.why.btdevices", "Shows the devices you own."},
        {"passwordgenerator", "lock.why.password", "Puts a generated password on screen."},
        {"shortcut", "lock.why.shortcut", "Shows the automations you run."},
        {"activity", "lock.why.activity", "Shows which programs are running."},
        {"appusage", "lock.why.appusage", "Shows which apps you use most."},
        {"disk", "lock.why.disk", "Shows the names of your drives."},
    };
    for (const Note& note : notes) {
        if (kind == QLatin1StringView(note.kind)) {
            return L(note.key, QString::fromUtf8(note.english));
        }
    }
    return std::nullopt;
}

} // namespace tw
