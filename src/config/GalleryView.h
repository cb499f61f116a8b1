// The gallery of the configuration window: every kind as a live preview at its default size,
// grouped by category, with search, and Add, which the host turns into a tile on the desktop.
#pragma once

#include "faces/GlassLook.h"
#include "look/Theme.h"
#include "model/WidgetSize.h"

#include <QDateTime>
#include <QList>
#include <QWidget>

#include <functional>
#include <memory>

class QLabel;
class QLineEdit;
class QVBoxLayout;

namespace tw {

class Clock;
class FaceRegistry;
class GalleryCard;
class GalleryPreviewSource;
class SymbolProvider;
class TickCoordinator;

class GalleryView final : public QWidget {
    Q_OBJECT
public:
    enum class AddOutcome { Added, AtMaximum, NoRoom };
    // Puts a new instance of `kind` at `size` on the desktop (at a free spot, highlighted) and
    // says whether it could.
    using AddHandler = std::function<AddOutcome(const QString& kind, WidgetSize size)>;

    // The previews start at `clock`'s time until they follow a ticker.
    GalleryView(const FaceRegistry& faces, const SymbolProvider& symbols, const Clock& clock,
                QWidget* parent = nullptr);
    ~GalleryView() override;

    // Without a handler the Add buttons are disabled.
    void setAddHandler(AddHandler handler);

    // The look of the previews: the themed theme and the glass of the theme store.
    void setTheme(const Theme& theme);
    void setGlass(const GlassLook& glass);
    // The time the previews show; faces repaint only when their grain moved.
    void setNow(const QDateTime& now);
    QDateTime now() const;
    // Takes the time from the ticker from now on, starting at its current time. Whether the ticker
    // runs is the window's affair (TickCoordinator::setPreviewActive while it is shown).
    void followTicker(TickCoordinator& ticker);

    QString query() const;
    void setQuery(const QString& query);
    // The kinds shown for the current query, in catalogue order within their groups.
    QStringList visibleKinds() const;

    // Asks the handler to add `kind` at its default size and shows what came of it.
    AddOutcome add(const QString& kind);
    // The last message shown under the gallery; empty until something was added or refused.
    QString message() const;

    // The text shown for an outcome.
    static QString messageFor(AddOutcome outcome, const QString& kind);

Q_SIGNALS:
    void added(const QString& kind);

private:
    void applyQuery();

    std::unique_ptr<GalleryPreviewSource> m_source;
    AddHandler m_addHandler;
    QLineEdit* m_search;
    QLabel* m_empty;
    QLabel* m_message;
    struct Section {
        QWidget* widget;
        QList<GalleryCard*> cards;
    };
    QList<Section> m_sections;
};

} // namespace tw
