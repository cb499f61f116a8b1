#include "look/Theme.h"

namespace tw {

namespace {

ThemeColor rgb(const char* hex, double opacity) {
    return ThemeColor::hex(QString::fromLatin1(hex), opacity);
}

Theme theme(const char* id, const char* name, ThemeColor accent, ThemeColor surface,
            ThemeColor surfaceElevated, ThemeColor textPrimary, ThemeColor textSecondary,
            ThemeColor separator) {
    return {QLatin1String(id), QLatin1String(name), accent,        surface,
            surfaceElevated,   textPrimary,         textSecondary, separator};
}

ThemeColor color(const QJsonObject& object, const char* key, const ThemeColor& fallback) {
    return ThemeColor::fromJson(object.value(QLatin1String(key))).value_or(fallback);
}

} // namespace

const QList<Theme>& Theme::builtIns() {
    // clang-format off
    static const QList<Theme> themes{
        theme("midnight", "Midnight", rgb("#0A84FF", 1), rgb("#0B0B0F", 0.96), rgb("#FFFFFF", 0.08), rgb("#FFFFFF", 0.92), rgb("#FFFFFF", 0.55), rgb("#FFFFFF", 0.10)),
        theme("graphite", "Graphite", rgb("#5E5CE6", 1), rgb("#17171A", 0.96), rgb("#FFFFFF", 0.07), rgb("#FFFFFF", 0.92), rgb("#FFFFFF", 0.55), rgb("#FFFFFF", 0.10)),
        theme("ocean", "Ocean", rgb("#32D0E0", 1), rgb("#0A1A24", 0.96), rgb("#64D2FF", 0.09), rgb("#EAFBFF", 0.95), rgb("#64D2FF", 0.55), rgb("#64D2FF", 0.14)),
        theme("forest", "Forest", rgb("#30D158", 1), rgb("#0C1710", 0.96), rgb("#9BE6B0", 0.08), rgb("#F0FFF4", 0.93), rgb("#FFFFFF", 0.55), rgb("#FFFFFF", 0.10)),
        theme("sunset", "Sunset Glow", rgb("#FF5E62", 1), rgb("#1A0F2E", 0.96), rgb("#E0C3FC", 0.08), rgb("#FFF0FA", 0.93), rgb("#D0BBD0", 0.60), rgb("#E0C3FC", 0.12)),
        theme("aurora", "Aurora Green", rgb("#00F2FE", 1), rgb("#051C1A", 0.96), rgb("#00F2FE", 0.07), rgb("#E6F9F8", 0.93), rgb("#9BE6E1", 0.60), rgb("#00F2FE", 0.12)),
        theme("cyber", "Cyber Neon", rgb("#FF007F", 1), rgb("#09090C", 0.97), rgb("#00FFFF", 0.09), rgb("#FFFFFF", 0.95), rgb("#8C92AC", 0.60), rgb("#00FFFF", 0.15)),
        theme("vaporwave", "Vaporwave", rgb("#FF71CE", 1), rgb("#160B2E", 0.97), rgb("#B967FF", 0.10), rgb("#FFF0FC", 0.94), rgb("#C9A0DC", 0.60), rgb("#FF71CE", 0.14)),
        theme("solar", "Solar Amber", rgb("#FFB300", 1), rgb("#1F140C", 0.96), rgb("#FFD54F", 0.08), rgb("#FFFDEE", 0.93), rgb("#D1C3B2", 0.60), rgb("#FFB300", 0.12)),
        theme("sakura", "Sakura", rgb("#FFB7C5", 1), rgb("#1A0F14", 0.96), rgb("#FFD6E0", 0.08), rgb("#FFF5F7", 0.93), rgb("#D4A0B0", 0.60), rgb("#FFB7C5", 0.12)),
        theme("tokyo_drift", "Tokyo Drift", rgb("#FE4365", 1), rgb("#0D0221", 0.97), rgb("#0ABDC6", 0.10), rgb("#EAFFFF", 0.95), rgb("#0ABDC6", 0.55), rgb("#FE4365", 0.16)),
        theme("arctic_haze", "Arctic Haze", rgb("#88C8F7", 1), rgb("#101820", 0.96), rgb("#C5E4FF", 0.07), rgb("#E8F4FD", 0.93), rgb("#7DA8C4", 0.58), rgb("#88C8F7", 0.10)),
        theme("lava_flow", "Lava Flow", rgb("#FF4500", 1), rgb("#1A0800", 0.97), rgb("#FF6B35", 0.10), rgb("#FFF0E6", 0.94), rgb("#CC7A5C", 0.58), rgb("#FF4500", 0.15)),
        theme("phantom", "Phantom", rgb("#7B68EE", 1), rgb("#0C0C14", 0.97), rgb("#9B89F5", 0.08), rgb("#F0EEFF", 0.93), rgb("#8E84B8", 0.58), rgb("#7B68EE", 0.12)),
        theme("emerald_City", "Emerald City", rgb("#50C878", 1), rgb("#071210", 0.97), rgb("#50C878", 0.09), rgb("#E8FFF0", 0.93), rgb("#78B898", 0.60), rgb("#50C878", 0.12)),
        theme("moondust", "Moondust", rgb("#C0C0D0", 1), rgb("#0E0E16", 0.97), rgb("#D0D0E0", 0.06), rgb("#EEEEF5", 0.90), rgb("#8888A0", 0.55), rgb("#C0C0D0", 0.10)),
        theme("infrared", "Infrared", rgb("#FF1744", 1), rgb("#120508", 0.97), rgb("#FF1744", 0.08), rgb("#FFE8EC", 0.94), rgb("#B05060", 0.60), rgb("#FF1744", 0.14)),
        theme("deep_space", "Deep Space", rgb("#6C63FF", 1), rgb("#020215", 0.98), rgb("#4840BB", 0.10), rgb("#E6E4FF", 0.93), rgb("#7A75B0", 0.58), rgb("#6C63FF", 0.12)),
        theme("caramel", "Caramel", rgb("#D4A06A", 1), rgb("#1A140E", 0.97), rgb("#E8C89C", 0.08), rgb("#FFF8EF", 0.93), rgb("#B8A088", 0.58), rgb("#D4A06A", 0.12)),
        theme("obsidian", "Obsidian", rgb("#E8E8E8", 1), rgb("#050505", 0.98), rgb("#FFFFFF", 0.05), rgb("#FAFAFA", 0.92), rgb("#808080", 0.58), rgb("#FFFFFF", 0.07)),
        theme("sand", "Sand", rgb("#FF9F0A", 1), rgb("#1F1813", 0.96), rgb("#FFFFFF", 0.07), rgb("#FFF8F0", 0.92), rgb("#FFFFFF", 0.55), rgb("#FFFFFF", 0.10)),
        theme("rose", "Rose", rgb("#FF375F", 1), rgb("#1B0E13", 0.96), rgb("#FFFFFF", 0.08), rgb("#FFF0F3", 0.93), rgb("#FFFFFF", 0.55), rgb("#FFFFFF", 0.10)),
        theme("grape", "Grape", rgb("#BF5AF2", 1), rgb("#15101F", 0.96), rgb("#D9B8FF", 0.08), rgb("#F7F0FF", 0.93), rgb("#FFFFFF", 0.55), rgb("#FFFFFF", 0.10)),
        theme("slate", "Slate", rgb("#A0A0A8", 1), rgb("#141416", 0.96), rgb("#FFFFFF", 0.06), rgb("#FFFFFF", 0.90), rgb("#FFFFFF", 0.50), rgb("#FFFFFF", 0.10)),
        theme("frosty", "Glacier Blue", rgb("#00D2FF", 1), rgb("#0A1521", 0.96), rgb("#E6F4F8", 0.08), rgb("#F0F8FF", 0.93), rgb("#A5C3D6", 0.60), rgb("#00D2FF", 0.12)),
    };
    // clang-format on
    return themes;
}

std::optional<Theme> Theme::builtIn(const QString& id) {
    for (const Theme& candidate : builtIns()) {
        if (candidate.id == id) {
            return candidate;
        }
    }
    return std::nullopt;
}

const Theme& Theme::defaultTheme() {
    return builtIns().front();
}

const Theme& Theme::appChrome() {
    static const Theme chrome =
        theme("app-chrome", "App", rgb("#0A7CFF", 1), rgb("#F2F3F7", 1), rgb("#FFFFFF", 1),
              rgb("#1C1C21", 1), rgb("#6B6B74", 1), rgb("#000000", 0.08));
    return chrome;
}

const Theme& Theme::appChromeDark() {
    static const Theme chrome =
        theme("app-chrome-dark", "App Dark", rgb("#0A7CFF", 1), rgb("#17181D", 1),
              rgb("#22242B", 1), rgb("#F2F2F7", 0.96), rgb("#FFFFFF", 0.55), rgb("#FFFFFF", 0.09));
    return chrome;
}

QJsonObject Theme::toJson() const {
    return {{QStringLiteral("id"), id},
            {QStringLiteral("name"), name},
            {QStringLiteral("accent"), accent.toJson()},
            {QStringLiteral("surface"), surface.toJson()},
            {QStringLiteral("surfaceElevated"), surfaceElevated.toJson()},
            {QStringLiteral("textPrimary"), textPrimary.toJson()},
            {QStringLiteral("textSecondary"), textSecondary.toJson()},
            {QStringLiteral("separator"), separator.toJson()}};
}

std::optional<Theme> Theme::fromJson(const QJsonValue& json) {
    const QJsonValue id = json.toObject().value(QStringLiteral("id"));
    if (!id.isString()) {
        return std::nullopt;
    }
    const QJsonObject object = json.toObject();
    const Theme& fallback = defaultTheme();
    const QJsonValue name = object.value(QStringLiteral("name"));
    return Theme{id.toString(),
                 name.isString() ? name.toString() : id.toString(),
                 color(object, "accent", fallback.accent),
                 color(object, "surface", fallback.surface),
                 color(object, "surfaceElevated", fallback.surfaceElevated),
                 color(object, "textPrimary", fallback.textPrimary),
                 color(object, "textSecondary", fallback.textSecondary),
                 color(object, "separator", fallback.separator)};
}

} // namespace tw
