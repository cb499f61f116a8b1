// Writes every template that reads the web into the folder given, as the ".twkwidget" file a
// person would open, named by the template's id; prints the ids. The end-to-end test opens them
// in the running host, so that it follows the templates as they change.
#include "custom/CustomWidgetTemplates.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>

using namespace tw;

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (const CustomWidgetTemplates::Template& entry : CustomWidgetTemplates::all()) {
        const CustomWidgetDefinition definition = entry.make();
        if (definition.allSources().isEmpty()) {
            continue;
        }
        QFile file(folder.filePath(entry.id + QLatin1String(".twkwidget")));
        const QByteArray text =
            definition.fileJSON(CustomWidgetDefinition::Secrets::omitted).toUtf8();
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(file.fileName()));
            return 1;
        }
        std::printf("%s\n", qPrintable(entry.id));
    }
    return 0;
}
