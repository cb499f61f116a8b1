// Saves the layouts crashLayout(start), crashLayout(start + 1), ... through a GridStore on the
// given file until it is killed; prints "saving" once the first save is done.
#include "CrashLayouts.h"
#include "grid/GridStore.h"
#include "model/WidgetRegistry.h"
#include "platform/QtScheduler.h"
#include "platform/SystemClock.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 3) {
        std::fprintf(stderr, "usage: %s <grid.json> <first layout number>\n", argv[0]);
        return 2;
    }
    tw::SystemClock clock;
    tw::QtScheduler scheduler;
    const tw::WidgetRegistry registry;
    tw::GridStore store({clock, scheduler, registry}, args.at(1));
    for (qint64 k = args.at(2).toLongLong();; ++k) {
        store.replaceLayout(tw::test::crashLayout(k));
        if (k == args.at(2).toLongLong()) {
            std::puts("saving");
            std::fflush(stdout);
        }
    }
}
