#include "app/LaunchModes.h"
#include "app/LaunchStep.h"
#include "custom/CustomAIPrompt.h"
#include "platform/AtomicFile.h"

#include <QTextStream>

namespace tw {

std::optional<int> runSnapshotAIPromptMode(LaunchContext& context) {
    const QString path = context.values.value(0);
    const QString language = context.arguments.secondValue(QStringLiteral("--snapshot-aiprompt"))
                                 .value_or(QStringLiteral("en"));
    const QByteArray text = CustomAIPrompt::forLanguage(language).toUtf8();
    const AtomicFile::Result written = AtomicFile::write(path, text);
    context.out << "snapshot-aiprompt ok=" << (written ? "true" : "false") << " path=" << path
                << " language=" << (language.startsWith(QLatin1String("de")) ? "de" : "en")
                << " bytes=" << text.size() << '\n';
    if (!written) {
        context.err << "tarnwick: cannot write " << path << ": " << written.error << '\n';
        return 1;
    }
    return 0;
}

} // namespace tw
