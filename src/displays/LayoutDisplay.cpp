#include "displays/LayoutDisplay.h"

#include "platform/Displays.h"

namespace tw {

namespace {

LayoutDisplayRect rectFrom(const QRectF& rect) {
    return LayoutDisplayRect{rect.x(), rect.y(), rect.width(), rect.height()};
}

QString folded(const QString& text) {
    const QString decomposed = text.normalized(QString::NormalizationForm_D);
    QString result;
    result.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        if (c.category() != QChar::Mark_NonSpacing) {
            result.append(c);
        }
    }
    return result.toCaseFolded();
}

} // namespace

QJsonObject LayoutDisplay::toJson() const {
    return QJsonObject{{QStringLiteral("id"), id},
                       {QStringLiteral("name"), name},
                       {QStringLiteral("frame"), frame.toJson()},
                       {QStringLiteral("visibleFrame"), visibleFrame.toJson()},
                       {QStringLiteral("isMain"), isMain}};
}

std::optional<LayoutDisplay> LayoutDisplay::fromJson(const QJsonValue& json) {
    const QJsonObject object = json.toObject();
    const QJsonValue id = object.value(QStringLiteral("id"));
    const QJsonValue name = object.value(QStringLiteral("name"));
    const QJsonValue isMain = object.value(QStringLiteral("isMain"));
    const auto frame = LayoutDisplayRect::fromJson(object.value(QStringLiteral("frame")));
    const auto visibleFrame =
        LayoutDisplayRect::fromJson(object.value(QStringLiteral("visibleFrame")));
    if (!id.isString() || !name.isString() || !isMain.isBool() || !frame || !visibleFrame) {
        return std::nullopt;
    }
    return LayoutDisplay{id.toString(), name.toString(), *frame, *visibleFrame, isMain.toBool()};
}

QList<LayoutDisplay> LayoutDisplay::currentDisplays(const Displays& displays) {
    QList<LayoutDisplay> result;
    const QList<ScreenInfo> screens = displays.screens();
    result.reserve(screens.size());
    for (const ScreenInfo& screen : screens) {
        result.append(LayoutDisplay{screen.id, screen.name, rectFrom(screen.frame),
                                    rectFrom(screen.visibleFrame), screen.isMain});
    }
    return result;
}

bool LayoutDisplay::namesMatch(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0 || folded(a) == folded(b);
}

} // namespace tw
