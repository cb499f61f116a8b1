// The web tiles on the desktop: a page (and its helper) for each tile in view, none for the rest.
// Clicks reach the page; the menu reloads it or opens it in the browser.
#pragma once

#include "live/WebPage.h"
#include "model/TileBehaviour.h"

#include <QHash>
#include <QUuid>

#include <functional>
#include <memory>

namespace tw {

class Workspace;

class WebBehaviour : public TileBehaviour {
    Q_OBJECT

public:
    // `pixelRatio` gives the desktop's pixels per point when a page is drawn.
    WebBehaviour(WebPage::Helper helper, Scheduler& scheduler, Workspace& workspace,
                 std::function<qreal()> pixelRatio, QObject* parent = nullptr);
    ~WebBehaviour() override;

    // The commands a face offers: a click at a point given as fractions of the page's picture
    // ("web.click:0.25,0.5"), loading it again, opening it in the browser.
    static QString clickCommand(QPointF fraction);
    static inline const QString reloadCommand = QStringLiteral("web.reload");
    static inline const QString openCommand = QStringLiteral("web.open");

    // The page of a tile; null for a tile that never came into view.
    const WebPage* page(const QUuid& tile) const;
    // How many helpers run now.
    int running() const;
    // The pixels a tile's page is drawn at: the inside of its glass at its scale.
    static QSize pixelsFor(const WidgetInstance& tile, qreal pixelRatio);

    void setTiles(const QList<BehaviourTile>& tiles) override;
    bool press(const WidgetInstance& tile, const QString& command) override;
    QList<MenuItem> menuItems(const WidgetInstance& tile) const override;

private:
    WebPage::Helper m_helper;
    Scheduler& m_scheduler;
    Workspace& m_workspace;
    std::function<qreal()> m_pixelRatio;
    QHash<QUuid, std::shared_ptr<WebPage>> m_pages;
};

} // namespace tw
