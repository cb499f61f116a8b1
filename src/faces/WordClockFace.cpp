#include "faces/WordClockFace.h"

#include "faces/FaceContext.h"
#include "faces/FaceKit.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <vector>

namespace tw {

namespace {

constexpr int kColumns = 11;
constexpr std::array<const char*, 10> kGrid{
    "ITLISASAMPM", "ACQUARTERDC", "TWENTYFIVEX", "HALFSTENFTO", "PASTERUNINE",
    "ONESIXTHREE", "FOURFIVETWO", "EIGHTELEVEN", "SEVENTWELVE", "TENSEOCLOCK",
};

struct Word {
    const char* text;
    int row;
    int column;
};

// Where each word stands in the grid; the minute words come before the hour words of the same name.
constexpr std::array kWords{
    Word{"IT", 0, 0},     Word{"IS", 0, 3},    Word{"A", 1, 0},      Word{"QUARTER", 1, 2},
    Word{"TWENTY", 2, 0}, Word{"FIVE", 2, 6},  Word{"HALF", 3, 0},   Word{"TEN", 3, 5},
    Word{"TO", 3, 9},     Word{"PAST", 4, 0},  Word{"NINE", 4, 7},   Word{"ONE", 5, 0},
    Word{"SIX", 5, 3},    Word{"THREE", 5, 6}, Word{"FOUR", 6, 0},   Word{"FIVE", 6, 4},
    Word{"TWO", 6, 8},    Word{"EIGHT", 7, 0}, Word{"ELEVEN", 7, 5}, Word{"SEVEN", 8, 0},
    Word{"TWELVE", 8, 5}, Word{"TEN", 9, 0},   Word{"OCLOCK", 9, 5},
};

constexpr std::array<const char*, 12> kHours{"TWELVE", "ONE",   "TWO",   "THREE", "FOUR", "FIVE",
                                             "SIX",    "SEVEN", "EIGHT", "NINE",  "TEN",  "ELEVEN"};

// Hour words stand from this entry of kWords on; "FIVE" and "TEN" also stand before it as minutes.
constexpr size_t kFirstHourWord = 10;

// The cells of the lit words, found in reading order.
std::vector<bool> litCells(const QStringList& words) {
    std::vector<bool> lit(kGrid.size() * kColumns, false);
    const qsizetype hourIndex = words.size() - (words.last() == QLatin1String("OCLOCK") ? 2 : 1);
    size_t searchFrom = 0;
    for (qsizetype w = 0; w < words.size(); ++w) {
        const QString& word = words.at(w);
        if (w == hourIndex) {
            searchFrom = std::max(searchFrom, kFirstHourWord);
        }
        for (size_t i = searchFrom; i < kWords.size(); ++i) {
            if (word == QLatin1String(kWords[i].text)) {
                const int length = static_cast<int>(qstrlen(kWords[i].text));
                for (int c = 0; c < length; ++c) {
                    lit[static_cast<size_t>(kWords[i].row * kColumns + kWords[i].column + c)] =
                        true;
                }
                searchFrom = i + 1;
                break;
            }
        }
    }
    return lit;
}

} // namespace

std::optional<TimeGrain> WordClockFace::grain(WidgetSize, const WidgetSettings&) const {
    return TimeGrain::Minutes;
}

QStringList WordClockFace::words(const QTime& time) {
    QStringList out{QStringLiteral("IT"), QStringLiteral("IS")};
    const int step = time.minute() / 5;
    int hour = time.hour() % 12;
    if (step > 6) {
        hour = (hour + 1) % 12;
    }
    switch (step) {
    case 1:
    case 11:
        out << QStringLiteral("FIVE");
        break;
    case 2:
    case 10:
        out << QStringLiteral("TEN");
        break;
    case 3:
    case 9:
        out << QStringLiteral("A") << QStringLiteral("QUARTER");
        break;
    case 4:
    case 8:
        out << QStringLiteral("TWENTY");
        break;
    case 5:
    case 7:
        out << QStringLiteral("TWENTY") << QStringLiteral("FIVE");
        break;
    case 6:
        out << QStringLiteral("HALF");
        break;
    default:
        break;
    }
    if (step >= 1 && step <= 6) {
        out << QStringLiteral("PAST");
    } else if (step >= 7) {
        out << QStringLiteral("TO");
    }
    out << QLatin1String(kHours[static_cast<size_t>(hour)]);
    if (step == 0) {
        out << QStringLiteral("OCLOCK");
    }
    return out;
}

void WordClockFace::paint(QPainter& painter, const QRectF& rect, const FaceContext& context) const {
    const QDateTime now = FaceKit::zoned(context);
    const std::vector<bool> lit = litCells(words(now.time()));
    const auto rows = static_cast<qreal>(kGrid.size());

    // Square cells, the grid centred; the minute dots go in the corners.
    const qreal cell = std::min(rect.width() / (kColumns + 1.0), rect.height() / (rows + 0.6));
    const QRectF grid(rect.center().x() - cell * kColumns / 2, rect.center().y() - cell * rows / 2,
                      cell * kColumns, cell * rows);
    const QFont litFont = FaceKit::font(cell * 0.62, QFont::Bold);
    const QFont dimFont = FaceKit::font(cell * 0.62, QFont::Normal);
    QColor dim = context.primary();
    dim.setAlphaF(0.16F);
    for (size_t r = 0; r < kGrid.size(); ++r) {
        for (int c = 0; c < kColumns; ++c) {
            const bool on = lit[r * kColumns + static_cast<size_t>(c)];
            painter.setFont(on ? litFont : dimFont);
            painter.setPen(on ? context.primary() : dim);
            painter.drawText(QRectF(grid.left() + c * cell,
                                    grid.top() + static_cast<qreal>(r) * cell, cell, cell),
                             Qt::AlignCenter, QString(QLatin1Char(kGrid[r][c])));
        }
    }
    const int extra = now.time().minute() % 5;
    const qreal dot = std::max<qreal>(2.5, cell * 0.16);
    const std::array corners{QPointF(rect.left() + dot, rect.top() + dot),
                             QPointF(rect.right() - dot, rect.top() + dot),
                             QPointF(rect.right() - dot, rect.bottom() - dot),
                             QPointF(rect.left() + dot, rect.bottom() - dot)};
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 4; ++i) {
        painter.setBrush(i < extra ? context.accent() : dim);
        painter.drawEllipse(corners[static_cast<size_t>(i)], dot / 2, dot / 2);
    }
}

} // namespace tw
