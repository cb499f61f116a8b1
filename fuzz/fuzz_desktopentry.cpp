// The desktop-entry and "mimeapps.list" decoders: any bytes parse without harm, and the Exec
// line of whatever parses splits into a command without crashing.
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/MimeAppsList.h"

#include <QByteArray>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const auto entry = tw::DesktopEntry::parse(text)) {
        const QStringList command = entry->commandLine();
        for (const QString& argument : command) {
            if (argument.size() > entry->exec.size()) {
                std::fprintf(stderr, "invariant broken: an argument longer than Exec\n");
                std::abort();
            }
        }
        entry->isLaunchable({QStringLiteral("gnome")});
    }
    const tw::MimeAppsList list = tw::MimeAppsList::parse(text);
    for (const auto* group : {&list.defaults, &list.added, &list.removed}) {
        for (const QStringList& ids : *group) {
            for (const QString& id : ids) {
                if (id.isEmpty() || id.contains(QLatin1Char(';'))) {
                    std::fprintf(stderr, "invariant broken: an empty or unsplit id\n");
                    std::abort();
                }
            }
        }
    }
    return 0;
}
