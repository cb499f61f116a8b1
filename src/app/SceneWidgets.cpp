#include "app/SceneWidgets.h"

namespace tw {

WidgetInstance SceneWidgets::widget(const char* kind, WidgetSize size, WidgetSettings settings,
                                    double scale) {
    WidgetInstance instance;
    instance.kind = QLatin1String(kind);
    instance.size = size;
    if (scale != 1.0) {
        settings.insert(QStringLiteral("tileScale"), QString::number(scale));
    }
    instance.settings = settings;
    return instance;
}

QList<std::pair<QPointF, WidgetInstance>> SceneWidgets::clocks(double scale) {
    const double step = (96 + 12) * scale;
    return {
        {{0, 0}, widget("worldclock", WidgetSize::wide, {}, scale)},
        {{0, step},
         widget("clock", WidgetSize::small, {{QStringLiteral("style"), QStringLiteral("analog")}},
                scale)},
        {{step, step}, widget("dayprogress", WidgetSize::small, {}, scale)},
    };
}

QList<WidgetInstance> SceneWidgets::lockScreen() {
    // Two placed by hand at the right edge of a 1440 × 900 design; the others arranged.
    const auto placed = [](double x, double y) {
        return WidgetSettings{{QStringLiteral("lockX"), QString::number(x)},
                              {QStringLiteral("lockY"), QString::number(y)},
                              {QStringLiteral("lockDW"), QStringLiteral("1440")},
                              {QStringLiteral("lockDH"), QStringLiteral("900")}};
    };
    return {
        widget("worldclock", WidgetSize::wide),
        widget("clock", WidgetSize::small, {{QStringLiteral("style"), QStringLiteral("analog")}}),
        widget("countdown", WidgetSize::wide, placed(1302, 70.5)),
        widget("dayprogress", WidgetSize::small, placed(1356, 178.5)),
        widget("stickynote", WidgetSize::small),
    };
}

} // namespace tw
