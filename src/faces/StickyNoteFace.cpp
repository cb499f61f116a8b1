#include "faces/StickyNoteFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"
#include "text/L.h"
#include "workspace/NoteMarkup.h"
#include "workspace/StickyNoteBehaviour.h"

#include <QPainter>
#include <QPainterPath>
#include <QTextLayout>

#include <memory>
#include <vector>

namespace tw {

namespace {

struct PaperColors {
    const char* id;
    QRgb light;
    QRgb dark;
};

constexpr PaperColors kPapers[] = {
    {"yellow", 0xFFF6E7A1, 0xFF5B4F22}, {"pink", 0xFFFAD3DE, 0xFF5E3141},
    {"blue", 0xFFD3E7FA, 0xFF24405E},   {"green", 0xFFD8F0CC, 0xFF2D4A2C},
    {"lilac", 0xFFE6DCFA, 0xFF413563},  {"grey", 0xFFEBEBE8, 0xFF3B3B3E},
};

constexpr qreal kIndent = 16;

qreal textSize(const FaceContext& context) {
    const QString size = context.setting(QStringLiteral("textSize"), QStringLiteral("medium"));
    const qreal base = size == QLatin1String("small")   ? 12.5
                       : size == QLatin1String("large") ? 18
                                                        : 14.5;
    switch (context.size) {
    case WidgetSize::small:
    case WidgetSize::tall:
        // A column of one cell holds a few words a line only at a small size.
        return std::min(base, 12.0);
    case WidgetSize::wideTall:
    case WidgetSize::huge:
        return base * 1.2;
    default:
        return base;
    }
}

QRectF inside(const QRectF& rect, const FaceContext& context) {
    const qreal pad = context.size == WidgetSize::small ? 10 : 14;
    return rect.adjusted(pad, pad + 4, -pad, -pad);
}

struct Laid {
    NoteLine line;
    std::shared_ptr<QTextLayout> layout;
    // Where the text starts, and a task's box or a bullet's dot.
    QPointF origin;
    QRectF mark;
    qreal height = 0;
};

struct Sheet {
    std::vector<Laid> lines;
    // How far the text is moved up to keep the caret in view.
    qreal scroll = 0;
    qreal lineHeight = 0;
};

Sheet layOut(const QRectF& area, const FaceContext& context, const NoteView& view) {
    Sheet sheet;
    const QFont font = FaceKit::font(textSize(context));
    const QFontMetricsF metrics(font);
    sheet.lineHeight = metrics.height() * 1.12;
    const QList<NoteLine> lines = NoteMarkup::lines(view.text);
    const qsizetype caretLine = view.caret ? NoteMarkup::lineAt(lines, *view.caret) : -1;
    qreal y = area.top();
    for (qsizetype i = 0; i < lines.size(); ++i) {
        NoteLine line = lines[i];
        if (i == caretLine) {
            // The line being typed shows as typed, marks and all, so the caret moves over
            // every character.
            NoteLine raw;
            raw.start = line.start;
            raw.length = line.length;
            raw.contentStart = line.start;
            raw.shown = view.text.mid(line.start, line.length);
            for (int k = 0; k <= line.length; ++k) {
                raw.noteOffsets.append(line.start + k);
            }
            line = raw;
        }
        Laid laid;
        const qreal indent = line.level * kIndent;
        const qreal markSide = line.kind == NoteLine::Kind::text ? 0 : metrics.height() * 0.9;
        const qreal x = area.left() + indent + (markSide > 0 ? markSide + 6 : 0);
        laid.layout = std::make_shared<QTextLayout>(line.shown, font);
        QTextOption option(Qt::AlignLeft);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        laid.layout->setTextOption(option);
        QList<QTextLayout::FormatRange> formats;
        for (const NoteLine::Run& run : line.bold) {
            QTextCharFormat bold;
            bold.setFontWeight(QFont::Bold);
            formats.append({run.start, run.length, bold});
        }
        if (line.kind == NoteLine::Kind::task && line.done) {
            QTextCharFormat struck;
            struck.setFontStrikeOut(true);
            formats.append({0, static_cast<int>(line.shown.size()), struck});
        }
        laid.layout->setFormats(formats);
        laid.layout->beginLayout();
        qreal height = 0;
        while (true) {
            QTextLine text = laid.layout->createLine();
            if (!text.isValid()) {
                break;
            }
            text.setLineWidth(std::max(8.0, area.right() - x));
            text.setPosition(QPointF(0, height));
            height += sheet.lineHeight;
        }
        laid.layout->endLayout();
        laid.height = std::max(height, sheet.lineHeight);
        laid.origin = QPointF(x, y + (sheet.lineHeight - metrics.height()) / 2);
        if (markSide > 0) {
            laid.mark = QRectF(area.left() + indent, y + (sheet.lineHeight - markSide) / 2,
                               markSide, markSide);
        }
        laid.line = line;
        y += laid.height;
        if (i == caretLine) {
            const QTextLine at = laid.layout->lineForTextPosition(
                std::min<int>(*view.caret - line.start, static_cast<int>(line.shown.size())));
            const qreal bottom = laid.origin.y() + (at.isValid() ? at.y() : 0) + sheet.lineHeight;
            sheet.scroll = std::max(0.0, bottom - area.bottom());
        }
        sheet.lines.push_back(std::move(laid));
    }
    return sheet;
}

void drawMark(QPainter& painter, const Laid& laid, const StickyNoteFace::Paper& paper) {
    if (laid.line.kind == NoteLine::Kind::bullet) {
        const qreal r = laid.mark.width() * 0.17;
        painter.setPen(Qt::NoPen);
        painter.setBrush(paper.ink);
        painter.drawEllipse(laid.mark.center(), r, r);
        return;
    }
    const QRectF box = laid.mark.adjusted(1, 1, -1, -1);
    QColor line = paper.ink;
    line.setAlphaF(0.7F);
    if (laid.line.done) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(line);
        painter.drawRoundedRect(box, 3.5, 3.5);
        QPainterPath tick;
        tick.moveTo(box.left() + box.width() * 0.24, box.top() + box.height() * 0.52);
        tick.lineTo(box.left() + box.width() * 0.43, box.top() + box.height() * 0.72);
        tick.lineTo(box.left() + box.width() * 0.78, box.top() + box.height() * 0.3);
        painter.setPen(QPen(paper.sheet, std::max(1.5, box.width() * 0.13), Qt::SolidLine,
                            Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(tick);
        return;
    }
    painter.setPen(QPen(line, 1.4));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(box, 3.5, 3.5);
}

QString sample() {
    return L("stickynote.sample",
             QStringLiteral("**Today**\n[x] Water the plants\n[ ] Call the bakery\n- flour, "
                            "eggs\n- **lemons**\nPick up the parcel before six"));
}

} // namespace

std::optional<TimeGrain> StickyNoteFace::grain(WidgetSize, const WidgetSettings&) const {
    return std::nullopt;
}

StickyNoteFace::Paper StickyNoteFace::paper(const FaceContext& context) {
    const QString id = context.setting(QStringLiteral("paper"), QStringLiteral("yellow"));
    PaperColors chosen = kPapers[0];
    for (const PaperColors& colors : kPapers) {
        if (id == QLatin1String(colors.id)) {
            chosen = colors;
        }
    }
    if (context.glass.darkInk()) {
        return {QColor::fromRgb(chosen.light), QColor(40, 36, 28)};
    }
    return {QColor::fromRgb(chosen.dark), QColor(246, 242, 230)};
}

NoteView StickyNoteFace::view(const FaceContext& context) {
    if (const auto* notes = context.behaviour<StickyNoteBehaviour>()) {
        return notes->view(context.instanceID);
    }
    NoteView view;
    view.text = context.setting(QStringLiteral("text"));
    if (view.text.isEmpty() && context.behaviours == nullptr) {
        view.text = sample();
    }
    return view;
}

void StickyNoteFace::paint(QPainter& painter, const QRectF& rect,
                           const FaceContext& context) const {
    const Paper colors = paper(context);
    const NoteView note = view(context);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sheet(rect.topLeft(), rect.bottomLeft());
    sheet.setColorAt(0, colors.sheet.lighter(104));
    sheet.setColorAt(1, colors.sheet.darker(103));
    painter.fillRect(rect, sheet);
    // The glued strip along the top, a shade deeper than the sheet.
    QColor strip = colors.sheet.darker(108);
    strip.setAlphaF(0.6F);
    painter.fillRect(QRectF(rect.left(), rect.top(), rect.width(), 8), strip);

    const QRectF area = inside(rect, context);
    if (note.text.isEmpty() && !note.caret) {
        QColor hint = colors.ink;
        hint.setAlphaF(0.45F);
        painter.setPen(hint);
        painter.setFont(FaceKit::font(textSize(context)));
        painter.drawText(area, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                         L("stickynote.empty", QStringLiteral("Click to write")));
        painter.restore();
        return;
    }
    const Sheet laid = layOut(area, context, note);
    painter.setClipRect(rect.adjusted(0, 8, 0, 0), Qt::IntersectClip);
    painter.translate(0, -laid.scroll);
    if (note.all && !laid.lines.empty()) {
        QColor selection = context.accent();
        selection.setAlphaF(0.28F);
        const Laid& last = laid.lines.back();
        painter.fillRect(QRectF(area.left() - 3, area.top(), area.width() + 6,
                                last.origin.y() + last.height - area.top()),
                         selection);
    }
    QColor faded = colors.ink;
    faded.setAlphaF(0.5F);
    for (const Laid& line : laid.lines) {
        if (line.origin.y() - laid.scroll > rect.bottom()) {
            break;
        }
        if (line.mark.isValid()) {
            drawMark(painter, line, colors);
        }
        const bool done = line.line.kind == NoteLine::Kind::task && line.line.done;
        painter.setPen(done ? faded : colors.ink);
        line.layout->draw(&painter, line.origin);
        if (note.caret && *note.caret >= line.line.start && *note.caret <= line.line.end()) {
            const int index = line.line.shownIndex(*note.caret);
            line.layout->drawCursor(&painter, line.origin, index, 2);
        }
    }
    painter.translate(0, laid.scroll);
    const Laid& last = laid.lines.back();
    if (last.origin.y() + last.height - laid.scroll > area.bottom() + 1) {
        // More below than the tile shows: the words fade into the paper.
        QColor clear = colors.sheet.darker(103);
        clear.setAlphaF(0);
        QLinearGradient fade(0, rect.bottom() - 22, 0, rect.bottom() - 4);
        fade.setColorAt(0, clear);
        fade.setColorAt(1, colors.sheet.darker(103));
        painter.fillRect(QRectF(rect.left(), rect.bottom() - 22, rect.width(), 22), fade);
    }
    if (!note.problem.isEmpty()) {
        const QRectF band(rect.left(), rect.bottom() - 24, rect.width(), 24);
        painter.fillRect(band, QColor(176, 42, 30, 230));
        FaceKit::drawElided(painter, context, band.adjusted(10, 0, -10, 0), note.problem,
                            FaceKit::font(11.5, QFont::DemiBold), Qt::white, Qt::AlignCenter);
    }
    painter.restore();
}

QString StickyNoteFace::commandAt(const QRectF& rect, QPointF point, const FaceContext& context) {
    const NoteView note = view(context);
    const QRectF area = inside(rect, context);
    const Sheet laid = layOut(area, context, note);
    const QPointF at = point + QPointF(0, laid.scroll);
    for (qsizetype i = 0; i < static_cast<qsizetype>(laid.lines.size()); ++i) {
        const Laid& line = laid.lines[static_cast<std::size_t>(i)];
        if (line.line.kind == NoteLine::Kind::task &&
            line.mark.adjusted(-5, -5, 5, 5).contains(at)) {
            return QStringLiteral("task:%1").arg(i);
        }
        if (at.y() < line.origin.y() + line.height || &line == &laid.lines.back()) {
            const QTextLine text = line.layout->lineAt(
                std::clamp(static_cast<int>((at.y() - line.origin.y()) / laid.lineHeight), 0,
                           std::max(0, line.layout->lineCount() - 1)));
            const int index = text.isValid() ? text.xToCursor(at.x() - line.origin.x()) : 0;
            const int offset = line.line.noteOffsets.value(index, line.line.end());
            return QStringLiteral("caret:%1").arg(offset);
        }
    }
    return QStringLiteral("caret:%1").arg(note.text.size());
}

WidgetFace::Spot StickyNoteFace::spotAt(const QRectF& rect, QPointF point,
                                        const FaceContext& context) const {
    Spot spot;
    spot.command = commandAt(rect, point, context);
    return spot;
}

} // namespace tw
