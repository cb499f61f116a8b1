#include "faces/FaceContext.h"

#include <algorithm>

namespace tw {

namespace {

QColor toColor(const ThemeColor& c) {
    return QColor::fromRgbF(static_cast<float>(c.red), static_cast<float>(c.green),
                            static_cast<float>(c.blue), static_cast<float>(c.opacity));
}

// Light glass is bright: the theme's light text gives way to dark ink of the same weights.
QColor ink(qreal opacity) {
    return QColor::fromRgbF(0.09F, 0.09F, 0.11F, static_cast<float>(opacity));
}

} // namespace

FaceContext FaceContext::forInstance(const WidgetMetadata& metadata,
                                     const WidgetInstance& instance) {
    return FaceContext().sizedFor(metadata, instance);
}

FaceContext FaceContext::sizedFor(const WidgetMetadata& kind,
                                  const WidgetInstance& instance) const {
    FaceContext context = *this;
    context.metadata = kind;
    context.size = instance.size;
    context.scale = instance.scale();
    context.points = instance.pixelSize();
    context.settings = instance.settings.value_or(WidgetSettings());
    context.instanceID = instance.id;
    return context;
}

FaceContext FaceContext::forKind(const WidgetMetadata& metadata, WidgetSize size) {
    FaceContext context;
    context.metadata = metadata;
    context.size = size;
    context.points = nominalPixelSize(size);
    return context;
}

QString FaceContext::setting(const QString& key, const QString& fallback) const {
    const QString value = settings.value(key);
    return value.isEmpty() ? fallback : value;
}

QColor FaceContext::primary() const {
    return glass.darkInk() ? ink(0.9) : toColor(theme.textPrimary);
}

QColor FaceContext::secondary() const {
    return glass.darkInk() ? ink(0.58) : toColor(theme.textSecondary);
}

QColor FaceContext::separator() const {
    return glass.darkInk() ? ink(0.12) : toColor(theme.separator);
}

QColor FaceContext::accent() const {
    return toColor(theme.accent);
}

QColor FaceContext::elevated() const {
    if (glass.darkInk()) {
        return QColor::fromRgbF(1, 1, 1, 0.55F);
    }
    // Elevated surfaces are faint by design; cards need a little more body to read as cards.
    QColor c = toColor(theme.surfaceElevated);
    c.setAlphaF(std::min(1.0F, c.alphaF() * 1.6F));
    return c;
}

QColor FaceContext::color(const ThemeColor& c) {
    return toColor(c);
}

} // namespace tw
