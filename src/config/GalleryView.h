// The gallery of the configuration window: every kind as a card with a live preview, in category
// chips ("All" shows every category under its heading), with search, a size per card, and Add,
// which the host turns into a tile on the desktop.
#pragma once

#include "faces/GlassLook.h"
#include "look/Theme.h"
#include "model/WidgetCategory.h"
#include "model/WidgetSize.h"
#include "readings/ReadingFeed.h"

#include <QDateTime>
#include <QList>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QAbstractButton;
class QLabel;
class QLineEdit;
class QScrollArea;

namespace tw {

class Clock;
struct CustomBoard;
class Readings;
class FaceRegistry;
class GalleryCard;
class GalleryPreviewSource;
class SymbolProvider;
class WidgetRegistry;
class TickCoordinator;

class GalleryView final : public QWidget {
    Q_OBJECT
public:
    enum class AddOutcome { Added, AtMaximum, NoRoom };
    // Puts a new instance of `kind` at `size` on the desktop (at a free spot, highlighted) and
    // says whether it could.
    using AddHandler = std::function<AddOutcome(const QString& kind, WidgetSize size)>;
    // How many instances of `kind` the desktop holds.
    using PlacedCount = std::function<int(const QString& kind)>;

    // The previews start at `clock`'s time until they follow a ticker.
    // With `registry`, the person's own custom kinds are offered too.
    GalleryView(const FaceRegistry& faces, const SymbolProvider& symbols, const Clock& clock,
                QWidget* parent = nullptr, const WidgetRegistry* registry = nullptr);
    ~GalleryView() override;

    // Without a handler the Add buttons are disabled.
    void setAddHandler(AddHandler handler);
    // Without a count every kind counts as absent from the desktop.
    void setPlacedCount(PlacedCount count);

    // The look of the previews: the themed theme and the glass of the theme store.
    void setTheme(const Theme& theme);
    void setGlass(const GlassLook& glass);
    // The machine's readings the previews show, asked for while the gallery is on screen and
    // only for the previews shown; without them the previews show their figures as missing.
    // They must outlive the gallery.
    void setReadings(Readings* readings);
    // The person's custom widgets, which their cards draw with sample values; without them a
    // custom card shows only its symbol. It must outlive the gallery; customBoardChanged redraws
    // the custom cards after it changed.
    void setCustomBoard(const CustomBoard* board);
    // What the previews shown need.
    ReadingFeeds previewFeeds() const;
    // The time the previews show; faces repaint only when their grain moved.
    void setNow(const QDateTime& now);
    QDateTime now() const;
    // Takes the time from the ticker from now on, starting at its current time. Whether the ticker
    // runs is the window's affair (TickCoordinator::setPreviewActive while it is shown).
    void followTicker(TickCoordinator& ticker);

    QString query() const;
    void setQuery(const QString& query);
    // The chosen chip: a category, or nullopt for "All".
    std::optional<WidgetCategory> category() const { return m_category; }
    void setCategory(std::optional<WidgetCategory> category);
    // The kinds shown for the chip and the query, in catalogue order within their groups.
    QStringList visibleKinds() const;
    // Whether the word that nothing matches is showing.
    bool isEmptyStateShown() const;
    GalleryCard* card(const QString& kind) const;

    // Asks the handler to add `kind` at its card's size and shows what came of it.
    AddOutcome add(const QString& kind);
    // The last message shown under the gallery; empty until something was added or refused.
    QString message() const;

    // The text shown for an outcome.
    static QString messageFor(AddOutcome outcome, const QString& kind, WidgetSize size);

public Q_SLOTS:
    // Focuses the search field with its text selected, for the window's Ctrl+F.
    void focusSearch();
    // Asks the count again and updates every card's limit; the host calls it when the desktop's
    // widgets change.
    void refreshLimits();
    void customBoardChanged();

Q_SIGNALS:
    void added(const QString& kind);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void apply();
    void readingsChanged(ReadingFeeds changed);
    void askForReadings();

    const WidgetRegistry* m_registry;
    std::unique_ptr<GalleryPreviewSource> m_source;
    AddHandler m_addHandler;
    PlacedCount m_placedCount;
    std::optional<WidgetCategory> m_category;
    QLineEdit* m_search;
    QScrollArea* m_scroll;
    QList<QAbstractButton*> m_chips;
    QWidget* m_empty;
    QLabel* m_emptyTitle;
    QLabel* m_message;
    QPointer<Readings> m_readings;
    struct Section {
        WidgetCategory category;
        QLabel* heading;
        QWidget* grid;
        QList<GalleryCard*> cards;
    };
    QList<Section> m_sections;
};

} // namespace tw
