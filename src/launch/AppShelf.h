// The applications an apps tile holds, in the person's order, and the search of the picker that
// chooses them.
#pragma once

#include "model/WidgetInstance.h"
#include "platform/AppDirectory.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace tw {

namespace AppShelf {

// The "apps" setting: desktop-entry ids separated by ";", blanks and repeats left out.
QString key();
QStringList read(const WidgetSettings& settings);
QString write(const QStringList& ids);
// `ids` with `id` added at the end, or taken out where it was.
QStringList toggled(const QStringList& ids, const QString& id);

// The apps that match `query` (every word of it, ignoring case and accents), best first: a
// name that starts with it, then a word of the name that does, then the name holding it, then
// a keyword or the id. An empty query keeps them all in their order.
QList<InstalledApp> search(const QList<InstalledApp>& apps, const QString& query);

} // namespace AppShelf

} // namespace tw
