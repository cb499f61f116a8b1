#include "config/ReleaseNotesList.h"

#include "text/L.h"

#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

namespace tw {

QString ReleaseNotesList::heading(const Release& release) {
    QStringList parts{
        L("updates.notes.version", QStringLiteral("Tarnwick %1")).arg(release.version.toString())};
    if (release.date.isValid()) {
        parts << QLocale().toString(release.date, QStringLiteral("d MMMM yyyy"));
    }
    if (!release.title.isEmpty()) {
        parts << release.title;
    }
    return parts.join(QStringLiteral(" · "));
}

ReleaseNotesList::ReleaseNotesList(const QList<Release>& releases, QWidget* parent)
    : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    for (const Release& release : releases) {
        auto* title = new QLabel(heading(release), this);
        title->setObjectName(QStringLiteral("cardName"));
        title->setWordWrap(true);
        column->addWidget(title);
        auto* notes = new QGridLayout();
        notes->setContentsMargins(4, 0, 0, 8);
        notes->setHorizontalSpacing(8);
        notes->setVerticalSpacing(4);
        notes->setColumnStretch(1, 1);
        if (release.notes.isEmpty()) {
            notes->addWidget(new QLabel(L("updates.notes.none", QStringLiteral("No notes for this "
                                                                               "version.")),
                                        this),
                             0, 1);
        }
        for (int i = 0; i < release.notes.size(); ++i) {
            notes->addWidget(new QLabel(QStringLiteral("•"), this), i, 0, Qt::AlignTop);
            auto* note = new QLabel(release.notes[i], this);
            // The list's words, never markup.
            note->setTextFormat(Qt::PlainText);
            note->setWordWrap(true);
            note->setTextInteractionFlags(Qt::TextSelectableByMouse);
            notes->addWidget(note, i, 1);
        }
        column->addLayout(notes);
    }
}

} // namespace tw
