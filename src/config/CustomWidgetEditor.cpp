#include "config/CustomWidgetEditor.h"

#include "config/ConfigContext.h"
#include "config/CustomJsonHighlighter.h"
#include "config/CustomPreviewStrip.h"
#include "custom/CustomAIPrompt.h"
#include "custom/CustomIssueLines.h"
#include "custom/CustomWidgetRuntime.h"
#include "custom/CustomWidgetStore.h"
#include "faces/FaceContext.h"
#include "net/HttpResponse.h"
#include "platform/Scheduler.h"
#include "settings/AppSettings.h"
#include "text/L.h"

#include <QClipboard>
#include <QFileDialog>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QStyle>
#include <QTextBlock>
#include <QTextDocument>
#include <QVBoxLayout>

namespace tw {

namespace {

// How much of an answer's body the test shows.
constexpr qsizetype shownBytes = 600;

QColor markColor(bool blocking, ColorScheme scheme, int alpha) {
    QColor c = blocking ? QColor(0xe5484d) : QColor(0xf5a524);
    if (scheme == ColorScheme::Light) {
        c = c.darker(110);
    }
    c.setAlpha(alpha);
    return c;
}

QIcon dot(const QColor& color) {
    QPixmap pixmap(24, 24);
    pixmap.setDevicePixelRatio(2);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(color);
    p.drawEllipse(QRectF(2, 2, 8, 8));
    return QIcon(pixmap);
}

// The first bytes of an answer as a person can read them: control characters as dots.
QString shownBody(const QByteArray& body) {
    QString text = QString::fromUtf8(body.left(shownBytes));
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control && c != u'\n') {
            c = u'·';
        }
    }
    return body.size() > shownBytes ? text + QStringLiteral(" …") : text;
}

// The file's text with two blanks a level, which keeps deep rows within the editor's width.
QString indented(const QString& json) {
    QStringList lines = json.split(u'\n');
    for (QString& line : lines) {
        qsizetype blanks = 0;
        while (blanks < line.size() && line[blanks] == u' ') {
            ++blanks;
        }
        line.remove(0, blanks / 2);
    }
    return lines.join(u'\n');
}

QPushButton* button(const QString& text, QWidget* parent, const QString& name = {}) {
    auto* b = new QPushButton(text, parent);
    if (!name.isEmpty()) {
        b->setObjectName(name);
    }
    b->setCursor(Qt::PointingHandCursor);
    return b;
}

} // namespace

CustomWidgetEditor::CustomWidgetEditor(ConfigContext& context,
                                       const CustomWidgetDefinition& definition, bool stored,
                                       ColorScheme scheme, const QString& text, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_id(definition.id)
    , m_stored(stored)
    , m_scheme(scheme)
    , m_title(new QLabel(this))
    , m_message(new QLabel(this))
    , m_editor(new QPlainTextEdit(this))
    , m_highlighter(new CustomJsonHighlighter(m_editor->document(), scheme))
    , m_issues(new QListWidget(this))
    , m_test(new QLabel(this)) {
    setObjectName(QStringLiteral("customEditor"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(24, 16, 24, 16);
    column->setSpacing(10);

    // Back, the name, and what is done with the widget as a whole.
    auto* head = new QHBoxLayout();
    auto* back = button(L("custom.editor.back", QStringLiteral("‹ Custom widgets")), this,
                        QStringLiteral("flat"));
    connect(back, &QPushButton::clicked, this, &CustomWidgetEditor::closeRequested);
    m_title->setObjectName(QStringLiteral("title"));
    m_title->setTextFormat(Qt::PlainText);
    // A long name gives way to the buttons.
    m_title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_title->setMinimumWidth(80);
    m_delete = button(L("custom.editor.delete", QStringLiteral("Delete…")), this);
    m_duplicate = button(L("custom.editor.duplicate", QStringLiteral("Duplicate")), this);
    auto* exporting = button(L("custom.editor.export", QStringLiteral("Export…")), this);
    m_save =
        button(L("custom.editor.save", QStringLiteral("Save")), this, QStringLiteral("primary"));
    m_save->setShortcut(QKeySequence::Save);
    head->addWidget(back);
    head->addSpacing(6);
    head->addWidget(m_title, 1);
    head->addWidget(m_delete);
    head->addWidget(m_duplicate);
    head->addWidget(exporting);
    head->addWidget(m_save);
    column->addLayout(head);
    connect(m_delete, &QPushButton::clicked, this, [this] { Q_EMIT deleteRequested(m_id); });
    connect(m_duplicate, &QPushButton::clicked, this, [this] { Q_EMIT duplicateRequested(m_id); });
    connect(exporting, &QPushButton::clicked, this, &CustomWidgetEditor::chooseExport);
    connect(m_save, &QPushButton::clicked, this, &CustomWidgetEditor::save);

    // The assistant and the test, above the text they change or read.
    auto* tools = new QHBoxLayout();
    auto* assistant = button(L("custom.editor.assistant", QStringLiteral("Ask an assistant")), this,
                             QStringLiteral("menuButton"));
    auto* menu = new QMenu(assistant);
    menu->addAction(L("custom.ai.copy", QStringLiteral("Copy the prompt")), this,
                    &CustomWidgetEditor::copyPrompt);
    menu->addAction(L("custom.ai.paste", QStringLiteral("Paste the answer")), this,
                    &CustomWidgetEditor::pasteAnswer);
    assistant->setMenu(menu);
    m_testButton = button(L("custom.editor.test", QStringLiteral("Test the source")), this);
    connect(m_testButton, &QPushButton::clicked, this, &CustomWidgetEditor::testSources);
    m_message->setObjectName(QStringLiteral("notice"));
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    tools->addWidget(assistant);
    tools->addWidget(m_testButton);
    tools->addSpacing(8);
    tools->addWidget(m_message, 1);
    column->addLayout(tools);

    // The text and its issues at the left, the previews and the test's answer at the right.
    auto* split = new QSplitter(Qt::Horizontal, this);
    split->setChildrenCollapsible(false);
    auto* left = new QWidget(split);
    auto* leftColumn = new QVBoxLayout(left);
    leftColumn->setContentsMargins(0, 0, 0, 0);
    leftColumn->setSpacing(8);
    m_editor->setObjectName(QStringLiteral("jsonEditor"));
    QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    mono.setPixelSize(12);
    m_editor->setFont(mono);
    m_editor->setTabStopDistance(QFontMetricsF(mono).horizontalAdvance(u' ') * 2);
    m_editor->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_editor->installEventFilter(this);
    m_editor->setAccessibleName(L("custom.editor.json", QStringLiteral("Widget JSON")));
    m_issues->setObjectName(QStringLiteral("issues"));
    m_issues->setAccessibleName(L("custom.editor.issues", QStringLiteral("Issues")));
    m_issues->setTextElideMode(Qt::ElideRight);
    m_issues->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    leftColumn->addWidget(m_editor, 1);
    connect(m_issues, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        const QTextBlock block =
            m_editor->document()->findBlockByNumber(item->data(Qt::UserRole).toInt());
        QTextCursor cursor(block);
        m_editor->setTextCursor(cursor);
        m_editor->centerCursor();
        m_editor->setFocus();
    });
    connect(m_issues, &QListWidget::itemClicked, m_issues, &QListWidget::itemActivated);

    auto* right = new QWidget(split);
    auto* rightColumn = new QVBoxLayout(right);
    rightColumn->setContentsMargins(0, 0, 0, 0);
    rightColumn->setSpacing(8);
    if (m_context.faces && m_context.faceBase) {
        m_preview = new CustomPreviewStrip(*m_context.faces, m_context.faceBase, right);
        rightColumn->addWidget(m_preview, 1);
    }
    m_test->setObjectName(QStringLiteral("testResult"));
    m_test->setWordWrap(true);
    m_test->setTextFormat(Qt::PlainText);
    m_test->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_test->setFont(mono);
    m_test->setMaximumHeight(190);
    m_test->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_test->hide();
    rightColumn->addWidget(m_test);
    split->addWidget(left);
    split->addWidget(right);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);
    right->setMinimumWidth(260);
    column->addWidget(split, 1);
    column->addWidget(m_issues);

    m_testButton->setEnabled(m_context.customRuntime != nullptr);
    if (m_context.customRuntime) {
        // Once tested, the previews follow the runtime: a sparkline's points, a later answer.
        connect(m_context.customRuntime, &CustomWidgetRuntime::boardChanged, this, [this] {
            if (m_live) {
                refreshPreview();
            }
        });
    }
    const QString own = indented(definition.fileJSON(CustomWidgetDefinition::Secrets::included));
    m_editor->setPlainText(text.isEmpty() ? own : text);
    // The text as the editor shows it: a widget, or a template, left as it came is no draft.
    m_savedText = QTextDocument(own).toPlainText();
    reparse();
    connect(m_editor, &QPlainTextEdit::textChanged, this, &CustomWidgetEditor::textEdited);
}

bool CustomWidgetEditor::eventFilter(QObject* watched, QEvent* event) {
    // Esc while typing is a slip, not a wish to close the window over the text.
    if (watched == m_editor && event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

QString CustomWidgetEditor::text() const {
    return m_editor->toPlainText();
}

void CustomWidgetEditor::setText(const QString& text) {
    m_editor->setPlainText(text);
}

bool CustomWidgetEditor::hasUnsavedChanges() const {
    return text() != m_savedText;
}

QString CustomWidgetEditor::message() const {
    return m_message->text();
}

QString CustomWidgetEditor::testResult() const {
    return m_test->isHidden() ? QString() : m_test->text();
}

void CustomWidgetEditor::setColorScheme(ColorScheme scheme) {
    m_scheme = scheme;
    m_highlighter->setColorScheme(scheme);
    showIssues();
}

void CustomWidgetEditor::textEdited() {
    m_save->setEnabled(false);
    if (m_context.scheduler == nullptr) {
        reparse();
        return;
    }
    m_settle = m_context.scheduler->singleShot(settleDelay, std::chrono::milliseconds(30), this,
                                               [this] { reparse(); });
}

void CustomWidgetEditor::reparse() {
    m_settle.cancel();
    m_decoded = CustomWidgetDefinition::decode(text());
    m_marks.clear();
    if (!m_decoded) {
        const std::optional<int> line = CustomIssueLines::parseErrorLine(text());
        m_marks.append({CustomWidgetIssue::of(CustomWidgetIssue::Kind::notJSON), line.value_or(0)});
    } else {
        m_decoded->id = m_id;
        const QHash<QString, int> lines = CustomIssueLines::keyLines(text());
        for (const CustomWidgetIssue& issue : m_decoded->issues()) {
            m_marks.append({issue, CustomIssueLines::lineOf(issue, *m_decoded, lines)});
        }
        const QString name = m_decoded->name.trimmed();
        m_title->setText(name.isEmpty() ? L("custom.untitled", QStringLiteral("Untitled widget"))
                                        : name);
    }
    const bool blocked = std::any_of(m_marks.begin(), m_marks.end(),
                                     [](const Mark& m) { return m.issue.isBlocking(); });
    m_save->setEnabled(!blocked && (hasUnsavedChanges() || !m_stored));
    m_duplicate->setEnabled(m_stored);
    m_delete->setEnabled(m_stored);
    showIssues();
    refreshPreview();
}

void CustomWidgetEditor::showIssues() {
    m_issues->clear();
    QList<QTextEdit::ExtraSelection> selections;
    for (const Mark& mark : m_marks) {
        const bool blocking = mark.issue.isBlocking();
        auto* item = new QListWidgetItem(dot(markColor(blocking, m_scheme, 255)),
                                         L("custom.editor.line", QStringLiteral("Line %1 · %2"))
                                             .arg(mark.line + 1)
                                             .arg(mark.issue.message()),
                                         m_issues);
        item->setData(Qt::UserRole, mark.line);
        item->setToolTip(mark.issue.message() + u'\n' +
                         (blocking ? L("custom.editor.blocking",
                                       QStringLiteral("This keeps the widget from being saved."))
                                   : L("custom.editor.warning",
                                       QStringLiteral("A warning: the widget still works."))));
        QTextEdit::ExtraSelection selection;
        selection.cursor = QTextCursor(m_editor->document()->findBlockByNumber(mark.line));
        selection.format.setBackground(markColor(blocking, m_scheme, 46));
        selection.format.setProperty(QTextFormat::FullWidthSelection, true);
        selections.append(selection);
    }
    if (m_marks.isEmpty()) {
        auto* item = new QListWidgetItem(
            dot(QColor(0x30a46c)),
            L("custom.editor.fine", QStringLiteral("No issues: the widget is ready to save.")),
            m_issues);
        item->setFlags(Qt::ItemIsEnabled);
    }
    m_editor->setExtraSelections(selections);
    // As tall as its lines, up to four.
    const int shown = std::clamp(int(m_issues->count()), 1, 4);
    m_issues->setFixedHeight(shown * (m_issues->fontMetrics().height() + 8) + 14);
}

void CustomWidgetEditor::refreshPreview() {
    ++m_previewRevision;
    if (m_preview == nullptr || !m_decoded) {
        return;
    }
    CustomWidgetDefinition shown = m_decoded->sanitized();
    shown.id = m_id;
    CustomBoard board;
    if (m_context.customRuntime) {
        const CustomBoard& live = m_context.customRuntime->board();
        board.host = live.host;
        board.user = live.user;
        board.bootedAt = live.bootedAt;
        if (m_live) {
            board.sources = live.sources;
            board.histories = live.histories;
        }
    }
    board.definitions.insert(shown.kind(), shown);
    m_preview->show(shown, board, !m_live);
}

void CustomWidgetEditor::testSources() {
    if (!m_decoded || m_context.customRuntime == nullptr) {
        say(L("custom.editor.testNeedsJSON", QStringLiteral("Fix the JSON first, then test.")),
            true);
        return;
    }
    const QList<CustomSource> sources = m_decoded->allSources();
    if (sources.isEmpty()) {
        say(L("custom.editor.noSource", QStringLiteral("This widget has no source to test.")));
        return;
    }
    m_results.clear();
    m_testedKeys.clear();
    for (const CustomSource& source : sources) {
        const QString key = source.cacheKey();
        if (m_testedKeys.contains(key)) {
            continue;
        }
        m_testedKeys.append(key);
        const QString who = source.name ? *source.name + QStringLiteral(": ") : QString();
        const auto resolved = CustomSource::resolve(source.url);
        if (const auto* issue = std::get_if<CustomWidgetIssue>(&resolved)) {
            m_results.insert(key, who + issue->message());
            continue;
        }
        m_results.insert(key, who + L("custom.editor.testing", QStringLiteral("Asking %1 …"))
                                        .arg(std::get<QUrl>(resolved).host()));
        m_context.customRuntime->forceReload(
            source, this,
            [this, source](const HttpResponse& response) { answered(source, response); });
    }
    QStringList lines;
    for (const QString& key : m_testedKeys) {
        lines << m_results.value(key);
    }
    m_test->setText(lines.join(u'\n'));
    m_test->show();
    say({});
}

void CustomWidgetEditor::answered(const CustomSource& source, const HttpResponse& response) {
    const QString who = source.name ? *source.name + QStringLiteral(": ") : QString();
    QString line;
    if (response.status == 0) {
        line = who + (response.message.isEmpty() ? L("custom.error.unreachable",
                                                     QStringLiteral("Couldn’t reach the server."))
                                                 : response.message);
    } else {
        line = who + L("custom.editor.answer", QStringLiteral("HTTP %1 · %2"))
                         .arg(response.status)
                         .arg(QLocale().formattedDataSize(response.body.size()));
        if (response.error != HttpError::None && !response.message.isEmpty()) {
            line += QStringLiteral(" · ") + response.message;
        }
        if (!response.body.isEmpty()) {
            line += u'\n' + shownBody(response.body);
        }
    }
    m_results.insert(source.cacheKey(), line);
    QStringList lines;
    for (const QString& key : m_testedKeys) {
        lines << m_results.value(key);
    }
    m_test->setText(lines.join(QStringLiteral("\n\n")));
    m_live = true;
    refreshPreview();
}

void CustomWidgetEditor::copyPrompt() {
    QString language = m_context.settings.appLanguage();
    if (language.isEmpty() || language == AppSettings::systemLanguage()) {
        language = QLocale::system().name();
    }
    QGuiApplication::clipboard()->setText(CustomAIPrompt::forLanguage(language));
    say(L("custom.ai.copied",
          QStringLiteral("The prompt is copied. Paste it into an assistant, put "
                         "your wish where it says, then copy its answer.")));
}

void CustomWidgetEditor::pasteAnswer() {
    const QString answer = QGuiApplication::clipboard()->text();
    if (answer.trimmed().isEmpty()) {
        say(L("custom.ai.empty",
              QStringLiteral("The clipboard is empty. Copy the assistant's whole "
                             "answer first.")),
            true);
        return;
    }
    const std::optional<QString> json = CustomAIPrompt::extractJSON(answer);
    if (!json || !CustomWidgetDefinition::decode(*json)) {
        say(L("custom.ai.notWidget",
              QStringLiteral(
                  "That doesn't look like a widget. Ask the assistant to answer with the "
                  "JSON code block only, then copy it again.")),
            true);
        return;
    }
    setText(*json);
    reparse();
    say(L("custom.ai.pasted", QStringLiteral("The answer is in. Look at the preview, then save.")));
}

bool CustomWidgetEditor::save() {
    reparse();
    const auto blocking = std::find_if(m_marks.begin(), m_marks.end(),
                                       [](const Mark& m) { return m.issue.isBlocking(); });
    if (blocking != m_marks.end() || !m_decoded || m_context.customWidgets == nullptr) {
        say(L("custom.editor.notSaved", QStringLiteral("Not saved: %1"))
                .arg(blocking != m_marks.end() ? blocking->issue.message() : QString()),
            true);
        return false;
    }
    m_context.customWidgets->update(*m_decoded);
    m_savedText = text();
    m_stored = true;
    reparse();
    say(L("custom.editor.saved", QStringLiteral("Saved. It is in the gallery with your widgets.")));
    Q_EMIT saved(m_id);
    return true;
}

void CustomWidgetEditor::chooseExport() {
    if (!m_decoded) {
        say(L("custom.editor.exportNeedsJSON", QStringLiteral("Fix the JSON first, then export.")),
            true);
        return;
    }
    if (m_decoded->hasHeaders()) {
        say(CustomWidgetStore::headersDroppedMessage());
    }
    const QString path = QFileDialog::getSaveFileName(
        this, L("custom.editor.exportTitle", QStringLiteral("Export widget")),
        m_decoded->exportFilename(),
        L("custom.editor.fileType", QStringLiteral("Custom widget (*.twkwidget)")));
    if (!path.isEmpty()) {
        exportTo(path);
    }
}

bool CustomWidgetEditor::exportTo(const QString& path) {
    if (!m_decoded) {
        say(L("custom.editor.exportNeedsJSON", QStringLiteral("Fix the JSON first, then export.")),
            true);
        return false;
    }
    if (!CustomWidgetStore::exportWidget(*m_decoded, path)) {
        say(L("custom.export.failed", QStringLiteral("The file couldn’t be written.")), true);
        return false;
    }
    say(m_decoded->hasHeaders() ? CustomWidgetStore::headersDroppedMessage()
                                : L("custom.editor.exported", QStringLiteral("Exported.")));
    return true;
}

void CustomWidgetEditor::say(const QString& text, bool problem) {
    m_message->setObjectName(problem ? QStringLiteral("error") : QStringLiteral("notice"));
    m_message->style()->unpolish(m_message);
    m_message->style()->polish(m_message);
    m_message->setText(text);
}

} // namespace tw
