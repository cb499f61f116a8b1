#include "app/PictureAppUsage.h"

#include "platform/AppDirectory.h"

namespace tw {

AppUsageBoard pictureAppUsage(const QUuid& instance, const WidgetSettings& settings,
                              const QDateTime& now, const AppDirectory& apps) {
    AppUsageView view = sampleAppUsageView(AppUsageSettings::read(settings), now);
    for (auto icon = view.icons.begin(); icon != view.icons.end(); ++icon) {
        *icon = apps.iconFile(*icon);
    }
    AppUsageBoard board;
    board.views.insert(instance, view);
    return board;
}

} // namespace tw
