#include "live/WebBehaviour.h"

#include "platform/Workspace.h"
#include "text/L.h"

#include <QSet>

namespace tw {

namespace {

const QString clickPrefix = QStringLiteral("web.click:");
// The glass's inner padding on each side, in points at scale 1.
constexpr qreal padding = 12;

std::optional<QPointF> clickAt(const QString& command) {
    if (!command.startsWith(clickPrefix)) {
        return std::nullopt;
    }
    const QStringList parts = command.mid(clickPrefix.size()).split(QLatin1Char(','));
    bool okX = false;
    bool okY = false;
    const double x = parts.value(0).toDouble(&okX);
    const double y = parts.value(1).toDouble(&okY);
    if (parts.size() != 2 || !okX || !okY || x < 0 || x > 1 || y < 0 || y > 1) {
        return std::nullopt;
    }
    return QPointF(x, y);
}

} // namespace

WebBehaviour::WebBehaviour(WebPage::Helper helper, Scheduler& scheduler, Workspace& workspace,
                           std::function<qreal()> pixelRatio, QObject* parent)
    : TileBehaviour(parent)
    , m_helper(std::move(helper))
    , m_scheduler(scheduler)
    , m_workspace(workspace)
    , m_pixelRatio(std::move(pixelRatio)) {}

WebBehaviour::~WebBehaviour() = default;

QString WebBehaviour::clickCommand(QPointF fraction) {
    return clickPrefix + QString::number(fraction.x(), 'f', 4) + QLatin1Char(',') +
           QString::number(fraction.y(), 'f', 4);
}

const WebPage* WebBehaviour::page(const QUuid& tile) const {
    return m_pages.value(tile).get();
}

int WebBehaviour::running() const {
    int count = 0;
    for (const std::shared_ptr<WebPage>& page : m_pages) {
        count += page->running() ? 1 : 0;
    }
    return count;
}

QSize WebBehaviour::pixelsFor(const WidgetInstance& tile, qreal pixelRatio) {
    const QSizeF inside =
        (tile.nominalPixelSize() - QSizeF(2 * padding, 2 * padding)) * tile.scale() * pixelRatio;
    return inside.toSize().expandedTo(QSize(1, 1));
}

void WebBehaviour::setTiles(const QList<BehaviourTile>& tiles) {
    QSet<QUuid> present;
    for (const BehaviourTile& tile : tiles) {
        const QUuid id = tile.instance.id;
        present.insert(id);
        const WebTileSettings settings =
            WebTileSettings::from(tile.instance.settings.value_or(WidgetSettings{}));
        std::shared_ptr<WebPage>& page = m_pages[id];
        if (!page) {
            page = std::make_shared<WebPage>(m_helper, m_scheduler);
            connect(page.get(), &WebPage::changed, this, [this, id] { Q_EMIT changed(id); });
        }
        if (tile.inView && settings.url.isValid()) {
            page->show(settings, pixelsFor(tile.instance, m_pixelRatio()));
        } else {
            page->stop();
        }
    }
    for (auto it = m_pages.begin(); it != m_pages.end();) {
        it = present.contains(it.key()) ? std::next(it) : m_pages.erase(it);
    }
}

bool WebBehaviour::press(const WidgetInstance& tile, const QString& command) {
    const std::shared_ptr<WebPage> page = m_pages.value(tile.id);
    if (!page) {
        return false;
    }
    if (command == reloadCommand) {
        page->reload();
        return true;
    }
    if (command == openCommand) {
        const QUrl url = page->shownUrl().isValid()
                             ? page->shownUrl()
                             : WebTileSettings::from(tile.settings.value_or(WidgetSettings{})).url;
        if (url.isValid()) {
            m_workspace.open(url);
        }
        return url.isValid();
    }
    if (const std::optional<QPointF> at = clickAt(command)) {
        const QSize size = page->picture().size();
        page->click(QPointF(at->x() * size.width(), at->y() * size.height()));
        return true;
    }
    return false;
}

QList<TileBehaviour::MenuItem> WebBehaviour::menuItems(const WidgetInstance& tile) const {
    if (!WebTileSettings::from(tile.settings.value_or(WidgetSettings{})).url.isValid()) {
        return {};
    }
    return {{L("web.reload", QStringLiteral("Reload Page")), reloadCommand},
            {L("web.open", QStringLiteral("Open in Browser")), openCommand}};
}

} // namespace tw
