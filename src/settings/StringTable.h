// One language's texts, read from a flat JSON object of key to text, served as a QTranslator in
// the "tarnwick" context that L looks up.
#pragma once

#include <QHash>
#include <QString>
#include <QTranslator>

namespace tw {

class StringTable final : public QTranslator {
    Q_OBJECT
public:
    using QTranslator::QTranslator;

    // Reads the table at `path` (a file or a resource). Members that are not strings are skipped;
    // an unreadable or malformed file leaves the table empty, logs one line and gives false.
    bool loadTable(const QString& path, const QString& language);
    // The same from bytes already read.
    bool loadJson(const QByteArray& json, const QString& language);

    QString translate(const char* context, const char* sourceText,
                      const char* disambiguation = nullptr, int n = -1) const override;
    bool isEmpty() const override { return m_texts.isEmpty(); }
    // The language code the table was loaded for ("de", "zh-Hans").
    QString tableLanguage() const { return m_language; }
    qsizetype count() const { return m_texts.size(); }

private:
    QHash<QString, QString> m_texts;
    QString m_language;
};

} // namespace tw
