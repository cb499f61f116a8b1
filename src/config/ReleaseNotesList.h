// The notes of one or more versions: each version's number, day and title over its notes as
// bullets, newest first.
#pragma once

#include "updates/Release.h"

#include <QWidget>

namespace tw {

class ReleaseNotesList final : public QWidget {
    Q_OBJECT
public:
    explicit ReleaseNotesList(const QList<Release>& releases, QWidget* parent = nullptr);

    // "Tarnwick 0.3.0 · 1 December 2026 · Quotes on the desktop".
    static QString heading(const Release& release);
};

} // namespace tw
