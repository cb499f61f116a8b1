// What is safe to show to whoever stands before a locked machine.
#pragma once

#include "model/WidgetInstance.h"

#include <QString>

#include <optional>

namespace tw {

namespace LockScreenPolicy {

// The settings key holding the person's override: "show" or "hide".
inline const QString overrideKey = QStringLiteral("lockScreen");

// Public kinds show by default; personal ones, and any kind not known here, do not.
bool showsByDefault(const QString& kind);
// The override when it is "show" or "hide", otherwise the kind's default.
bool shows(const WidgetInstance& widget);
// Why a personal kind is kept off by default, for the settings pane; nullopt for the others.
std::optional<QString> privacyNote(const QString& kind);

} // namespace LockScreenPolicy

} // namespace tw
