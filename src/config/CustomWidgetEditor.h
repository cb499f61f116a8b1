// One custom widget's editor: its JSON with colours, the issues listed and marked at their lines,
// previews by the real face at every size it allows (redrawn a moment after typing stops), a test
// of its sources, the assistant's prompt and answer, export, and saving when nothing blocks.
#pragma once

#include "custom/CustomWidgetDefinition.h"
#include "platform/ColorSchemeWatcher.h"
#include "platform/ScheduledTask.h"

#include <QHash>
#include <QList>
#include <QUuid>
#include <QWidget>

#include <chrono>
#include <optional>

class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace tw {

struct ConfigContext;
struct HttpResponse;
class CustomJsonHighlighter;
class CustomPreviewStrip;

class CustomWidgetEditor final : public QWidget {
    Q_OBJECT
public:
    // Typing is read this long after the last key.
    static constexpr std::chrono::milliseconds settleDelay{300};

    // An issue and the line (from 0) it is marked at.
    struct Mark {
        CustomWidgetIssue issue;
        int line = 0;
    };

    // `stored` says whether the widget is in the store already (a template's is not, until saved).
    // `text` is a draft to start from instead of the definition's own text.
    CustomWidgetEditor(ConfigContext& context, const CustomWidgetDefinition& definition,
                       bool stored, ColorScheme scheme, const QString& text = {},
                       QWidget* parent = nullptr);

    // The widget edited; a save keeps this id whatever the text says.
    QUuid id() const { return m_id; }
    QString text() const;
    void setText(const QString& text);
    bool hasUnsavedChanges() const;
    const QList<Mark>& marks() const { return m_marks; }
    // The previews, and how often they were rebuilt.
    const CustomPreviewStrip* preview() const { return m_preview; }
    int previewRevision() const { return m_previewRevision; }
    // The last thing said: a refusal, a notice, a result.
    QString message() const;
    QString testResult() const;

    // Through the store; refused with the first blocking issue said when something blocks.
    bool save();
    // Fetches every source now and shows the answer; the previews then draw it.
    void testSources();
    void copyPrompt();
    void pasteAnswer();
    bool exportTo(const QString& path);
    void setColorScheme(ColorScheme scheme);

Q_SIGNALS:
    void saved(const QUuid& id);
    void duplicateRequested(const QUuid& id);
    void deleteRequested(const QUuid& id);
    void closeRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void textEdited();
    // Decodes the text, lists and marks the issues, and redraws the previews.
    void reparse();
    void showIssues();
    void refreshPreview();
    void answered(const CustomSource& source, const HttpResponse& response);
    void say(const QString& text, bool problem = false);
    void chooseExport();

    ConfigContext& m_context;
    QUuid m_id;
    bool m_stored;
    QString m_savedText;
    ColorScheme m_scheme;
    std::optional<CustomWidgetDefinition> m_decoded;
    QList<Mark> m_marks;
    // After a test the previews draw the real answers.
    bool m_live = false;
    // One result line per tested source, in order.
    QHash<QString, QString> m_results;
    QStringList m_testedKeys;
    int m_previewRevision = 0;
    ScheduledTask m_settle;

    QLabel* m_title;
    QLabel* m_message;
    QPlainTextEdit* m_editor;
    CustomJsonHighlighter* m_highlighter;
    QListWidget* m_issues;
    CustomPreviewStrip* m_preview = nullptr;
    QLabel* m_test;
    QPushButton* m_save;
    QPushButton* m_testButton;
    QPushButton* m_duplicate;
    QPushButton* m_delete;
};

} // namespace tw
