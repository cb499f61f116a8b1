#include "faces/TerminalFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "faces/ReadingKit.h"
#include "launch/TerminalBehaviour.h"
#include "text/L.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>

namespace tw {

namespace {

using Outcome = RunResult::Outcome;

const QColor screenText(220, 223, 228);
const QColor screenDim(140, 148, 160);

QFont monospace(qreal pixelSize, QFont::Weight weight = QFont::Normal) {
    QFont font(QStringLiteral("DejaVu Sans Mono"));
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    font.setPixelSize(std::max(1, static_cast<int>(pixelSize)));
    font.setWeight(weight);
    return font;
}

// A run to show where there is no desktop behind the face: a picture, a preview.
TerminalState sample(const FaceContext& context) {
    TerminalState state;
    const QString command = context.setting(QStringLiteral("command"), QStringLiteral("df -h"));
    state.command = CommandLine::parse(command, QStringLiteral("~")).command;
    state.outcome = Outcome::exited;
    state.finishedAt =
        context.now.isValid() ? context.now : QDateTime(QDate(2026, 3, 14), QTime(9, 41));
    state.text = TerminalText::decode(
        "\x1b[1mFilesystem      Size  Used Avail Use% Mounted on\x1b[0m\n"
        "/dev/nvme0n1p2  468G  201G  244G  \x1b[32m46%\x1b[0m /\n"
        "tmpfs           7.8G  2.1M  7.8G   \x1b[32m1%\x1b[0m /run\n"
        "/dev/nvme0n1p1  511M   61M  451M  \x1b[32m12%\x1b[0m /boot/efi\n"
        "/dev/sda1       1.8T  1.6T  144G  \x1b[31m92%\x1b[0m /media/backup\n"
        "tmpfs           1.6G  148K  1.6G   \x1b[32m1%\x1b[0m /run/user/1000\n");
    return state;
}

// How the last run ended, in few words, and whether that needs attention.
std::pair<QString, bool> status(const TerminalState& state) {
    if (state.running && !state.outcome) {
        return {L("terminal.running", QStringLiteral("Running…")), false};
    }
    QString text;
    bool warn = false;
    switch (state.outcome.value_or(Outcome::exited)) {
    case Outcome::exited:
        if (state.exitCode != 0) {
            text = L("terminal.exit", QStringLiteral("exit %1")).arg(state.exitCode);
            warn = true;
        }
        break;
    case Outcome::timedOut:
        text = L("terminal.timedOut", QStringLiteral("timed out"));
        warn = true;
        break;
    case Outcome::capped:
        text = L("terminal.capped", QStringLiteral("output cut"));
        warn = true;
        break;
    case Outcome::crashed:
        text = L("terminal.crashed", QStringLiteral("crashed"));
        warn = true;
        break;
    case Outcome::failedToStart:
        text = L("terminal.failed", QStringLiteral("did not start"));
        warn = true;
        break;
    }
    if (state.running) {
        return {L("terminal.running", QStringLiteral("Running…")), false};
    }
    const QString time = state.finishedAt.isValid()
                             ? QLocale().toString(state.finishedAt.time(), QLocale::ShortFormat)
                             : QString();
    if (text.isEmpty()) {
        return {time, false};
    }
    return {time.isEmpty() ? text : text + QStringLiteral(" · ") + time, warn};
}

void drawScreen(QPainter& painter, const FaceContext& context, const QRectF& area,
                const TerminalState& state) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath screen;
    screen.addRoundedRect(area, 9, 9);
    painter.fillPath(screen, QColor(16, 18, 22, context.glass.darkInk() ? 235 : 215));
    painter.setClipPath(screen, Qt::IntersectClip);

    const qreal pad = 7;
    const qreal size = area.height() < 70 ? 9.5 : 10.5;
    const QFont font = monospace(size);
    const QFont bold = monospace(size, QFont::Bold);
    const QFontMetricsF metrics(font);
    const qreal lineHeight = metrics.height();
    const QRectF inner = area.adjusted(pad, pad - 1, -pad, -pad + 1);
    const auto fitting =
        static_cast<qsizetype>(std::max(1.0, std::floor(inner.height() / lineHeight)));

    if (state.outcome == Outcome::failedToStart) {
        painter.setFont(font);
        painter.setPen(TerminalFace::colorOf({TerminalColor::Kind::palette, 9}));
        painter.drawText(
            inner, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
            L("terminal.noProgram",
              QStringLiteral("No program “%1” here. Check its name or give its whole path."))
                .arg(state.command.program));
        painter.restore();
        return;
    }
    // A terminal shows the end; empty lines at the end carry nothing.
    QList<TerminalLine> lines = state.text.lines;
    while (!lines.isEmpty() && lines.last().text().trimmed().isEmpty()) {
        lines.removeLast();
    }
    if (lines.isEmpty()) {
        painter.setFont(font);
        painter.setPen(screenDim);
        painter.drawText(inner, Qt::AlignLeft | Qt::AlignTop,
                         state.outcome ? L("terminal.noOutput", QStringLiteral("(no output)"))
                                       : QStringLiteral("…"));
        painter.restore();
        return;
    }
    const qsizetype first = std::max<qsizetype>(0, lines.size() - fitting);
    qreal y = inner.top() + metrics.ascent();
    for (qsizetype i = first; i < lines.size(); ++i) {
        qreal x = inner.left();
        for (const TerminalSpan& span : lines.at(i).spans) {
            if (x >= inner.right()) {
                break;
            }
            const QColor color = span.color.kind == TerminalColor::Kind::plain
                                     ? screenText
                                     : TerminalFace::colorOf(span.color);
            painter.setFont(span.bold ? bold : font);
            painter.setPen(color);
            painter.drawText(QPointF(x, y), span.text);
            x += metrics.horizontalAdvance(span.text);
        }
        y += lineHeight;
    }
    painter.restore();
}

} // namespace

std::optional<TimeGrain> TerminalFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

QColor TerminalFace::colorOf(const TerminalColor& color) {
    if (color.kind == TerminalColor::Kind::rgb) {
        return QColor::fromRgb(color.value);
    }
    if (color.kind == TerminalColor::Kind::plain) {
        return screenText;
    }
    // The sixteen softened to read on the dark screen (black is a grey there).
    static const QRgb basic[16] = {0x6b7280, 0xef6b73, 0x8fd17a, 0xe9c46a, 0x6cb6ff, 0xc792ea,
                                   0x5fd4d4, 0xd0d4dc, 0x9aa3b2, 0xff8a8f, 0xaee59a, 0xffd97a,
                                   0x94caff, 0xdcb0ff, 0x8aeaea, 0xffffff};
    const quint32 index = std::min<quint32>(color.value, 255);
    if (index < 16) {
        return QColor::fromRgb(basic[index]);
    }
    if (index < 232) {
        // The 6×6×6 cube.
        const quint32 n = index - 16;
        const auto level = [](quint32 v) { return v == 0 ? 0 : static_cast<int>(55 + v * 40); };
        return QColor(level(n / 36), level((n / 6) % 6), level(n % 6));
    }
    const int grey = static_cast<int>(8 + (index - 232) * 10);
    return QColor(grey, grey, grey);
}

void TerminalFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const TerminalBehaviour* behaviour = context.behaviour<TerminalBehaviour>();
    const TerminalState* live =
        behaviour != nullptr ? behaviour->state(context.instanceID) : nullptr;
    const TerminalState state =
        behaviour != nullptr ? (live != nullptr ? *live : TerminalState()) : sample(context);
    if (behaviour != nullptr && state.command.isEmpty()) {
        const bool noCommand = context.setting(QStringLiteral("command")).isEmpty();
        ReadingKit::drawNotice(
            painter, context, rect,
            noCommand ? QStringLiteral("apple.terminal.fill")
                      : QStringLiteral("exclamationmark.triangle"),
            noCommand ? L("terminal.choose", QStringLiteral("Choose a command"))
                      : L("terminal.bad", QStringLiteral("This command cannot run")),
            noCommand ? L("terminal.choose.detail",
                          QStringLiteral("Click to give the tile a command to show."))
                      : state.problem);
        return;
    }
    // The prompt and how the last run went.
    const qreal header = rect.height() < 110 ? 15 : 18;
    const QRectF top(rect.left(), rect.top(), rect.width(), header);
    const auto [word, warn] = status(state);
    const QFont statusFont = FaceKit::font(header < 16 ? 10 : 11, QFont::Medium);
    const qreal statusWidth =
        word.isEmpty()
            ? 0
            : std::min(QFontMetricsF(statusFont).horizontalAdvance(word) + 4, rect.width() * 0.45);
    FaceKit::drawElided(painter, context, top.adjusted(rect.width() - statusWidth, 0, 0, 0), word,
                        statusFont, warn ? ReadingKit::warning(context) : context.secondary(),
                        Qt::AlignRight | Qt::AlignVCenter);
    const QRectF prompt = top.adjusted(0, 0, -statusWidth - 6, 0);
    const QFont promptFont = monospace(header < 16 ? 10 : 11, QFont::DemiBold);
    painter.setFont(promptFont);
    painter.setPen(context.accent());
    painter.drawText(prompt, Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("$"));
    const qreal dollar = QFontMetricsF(promptFont).horizontalAdvance(QStringLiteral("$ "));
    FaceKit::drawElided(painter, context, prompt.adjusted(dollar, 0, 0, 0), state.command.text(),
                        promptFont, context.primary(), Qt::AlignLeft | Qt::AlignVCenter);
    drawScreen(painter, context, rect.adjusted(0, header + 4, 0, 0), state);
}

bool TerminalFace::opensSettingsOnClick(const FaceContext& context) const {
    const TerminalBehaviour* behaviour = context.behaviour<TerminalBehaviour>();
    const TerminalState* state =
        behaviour != nullptr ? behaviour->state(context.instanceID) : nullptr;
    return behaviour != nullptr && (state == nullptr || state->command.isEmpty());
}

WidgetFace::Spot TerminalFace::spotAt(const QRectF&, QPointF, const FaceContext& context) const {
    Spot spot;
    if (!opensSettingsOnClick(context)) {
        spot.help = L("terminal.help", QStringLiteral("Click to run the command again"));
        spot.command = TerminalBehaviour::runCommand();
    }
    return spot;
}

} // namespace tw
