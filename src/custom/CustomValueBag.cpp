#include "custom/CustomValueBag.h"

#include "text/L.h"

namespace tw {

namespace {

constexpr double gigabyte = 1024.0 * 1024.0 * 1024.0;

} // namespace

const CustomJSON* CustomValueBag::document(const std::optional<QString>& name) const {
    if (!name) {
        return data ? &*data : nullptr;
    }
    const auto found = named.constFind(*name);
    return found == named.constEnd() ? nullptr : &found.value();
}

CustomValueBag CustomValueBag::preview(const QDateTime& now, const QString& user) {
    CustomValueBag bag;
    bag.now = now;
    SystemSnapshot system;
    system.sampledAt = now;
    system.cpu = 0.23;
    system.gpu = 0.11;
    system.ramUsed = 11.4 * gigabyte;
    system.ramTotal = 16 * gigabyte;
    system.diskFree = 212 * gigabyte;
    system.diskTotal = 494 * gigabyte;
    bag.system = system;
    bag.host = L("custom.preview.host", QStringLiteral("MacBook Pro"));
    bag.user = user;
    bag.uptime = std::chrono::duration<double>(104400);
    bag.data = CustomJSON::preview();
    bag.named = {{QStringLiteral("a"), CustomJSON::preview()},
                 {QStringLiteral("b"), CustomJSON::preview()}};
    return bag;
}

} // namespace tw
