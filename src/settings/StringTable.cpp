#include "settings/StringTable.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>

namespace tw {

Q_LOGGING_CATEGORY(lcStringTable, "Localization")

bool StringTable::loadTable(const QString& path, const QString& language) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(lcStringTable).noquote()
            << "Cannot read the string table" << path << ":" << file.errorString();
        m_texts.clear();
        m_language = language;
        return false;
    }
    return loadJson(file.readAll(), language);
}

bool StringTable::loadJson(const QByteArray& json, const QString& language) {
    m_texts.clear();
    m_language = language;
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (!document.isObject()) {
        qCWarning(lcStringTable).noquote()
            << "The string table of" << language << "is not a JSON object:" << error.errorString();
        return false;
    }
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it.value().isString()) {
            m_texts.insert(it.key(), it.value().toString());
        }
    }
    return true;
}

QString StringTable::translate(const char* context, const char* sourceText,
                               const char* /*disambiguation*/, int /*n*/) const {
    if (!context || !sourceText || qstrcmp(context, "tarnwick") != 0) {
        return {};
    }
    return m_texts.value(QString::fromUtf8(sourceText));
}

} // namespace tw
