#include "config/CustomWidgetsPage.h"

#include "config/ConfigContext.h"
#include "config/ConfigPalette.h"
#include "config/CustomWidgetEditor.h"
#include "config/FlowLayout.h"
#include "config/SettingsCard.h"
#include "config/SettingsPage.h"
#include "custom/CustomWidgetStore.h"
#include "custom/CustomWidgetTemplates.h"
#include "faces/FaceContext.h"
#include "grid/GridStore.h"
#include "platform/SymbolProvider.h"
#include "text/L.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>

namespace tw {

namespace {

QString kindOf(const QUuid& id) {
    CustomWidgetDefinition definition;
    definition.id = id;
    return definition.kind();
}

// What a draft of a widget not stored yet reads as, for its place in the list.
CustomWidgetDefinition draftDefinition(const QUuid& id, const QString& text) {
    CustomWidgetDefinition definition =
        CustomWidgetDefinition::decode(text).value_or(CustomWidgetDefinition());
    definition.id = id;
    return definition;
}

QString sizesText(const CustomWidgetDefinition& definition) {
    QStringList names;
    for (const WidgetSize size : definition.sanitized().sizes) {
        names << label(size);
    }
    return names.join(QStringLiteral(", "));
}

QPixmap symbolPixmap(const ConfigContext& context, const QString& name, const QColor& color) {
    QPixmap pixmap(56, 56);
    pixmap.setDevicePixelRatio(2);
    pixmap.fill(Qt::transparent);
    if (context.faceBase) {
        const FaceContext base = context.faceBase();
        if (base.symbols != nullptr) {
            QPainter p(&pixmap);
            p.setRenderHint(QPainter::Antialiasing);
            if (!base.symbols->drawSymbol(p, name, QRectF(3, 3, 22, 22), color)) {
                base.symbols->drawSymbol(p, QStringLiteral("square.dashed"), QRectF(3, 3, 22, 22),
                                         color);
            }
        }
    }
    return pixmap;
}

// A template to start from: its symbol, its title and what it shows, on a tile of its own.
class TemplateTile final : public QAbstractButton {
public:
    TemplateTile(const CustomWidgetTemplates::Template& t, QPixmap symbol, ConfigPalette colors)
        : m_colors(std::move(colors))
        , m_title(t.title)
        , m_detail(t.detail)
        , m_symbol(std::move(symbol)) {
        setCursor(Qt::PointingHandCursor);
        setFocusPolicy(Qt::StrongFocus);
        setAccessibleName(t.title);
        setAccessibleDescription(t.detail);
        setAttribute(Qt::WA_Hover);
    }
    QSize sizeHint() const override { return {260, 94}; }
    QSize minimumSizeHint() const override { return {200, 94}; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        const QColor accent = m_colors.accent;
        const bool lit = underMouse() || hasFocus();
        const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        p.setPen(QPen(lit ? accent : m_colors.fieldBorder, lit ? 1.5 : 1));
        p.setBrush(isDown() ? m_colors.separator : m_colors.window);
        p.drawRoundedRect(box, 10, 10);

        const QRectF badge(12, 14, 38, 38);
        QColor wash = accent;
        wash.setAlpha(36);
        p.setPen(Qt::NoPen);
        p.setBrush(wash);
        p.drawRoundedRect(badge, 9, 9);
        p.drawPixmap(QPointF(badge.center().x() - 14, badge.center().y() - 14), m_symbol);

        const qreal left = badge.right() + 12;
        QFont title = font();
        title.setPixelSize(13);
        title.setWeight(QFont::DemiBold);
        p.setFont(title);
        p.setPen(m_colors.text);
        const QRectF titleBox(left, 12, width() - left - 12, 18);
        p.drawText(titleBox, Qt::AlignLeft | Qt::AlignVCenter,
                   QFontMetrics(title).elidedText(m_title, Qt::ElideRight, int(titleBox.width())));
        QFont detail = font();
        detail.setPixelSize(12);
        p.setFont(detail);
        p.setPen(m_colors.secondaryText);
        p.drawText(QRectF(left, 32, width() - left - 12, height() - 38),
                   Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, m_detail);
    }

private:
    ConfigPalette m_colors;
    QString m_title;
    QString m_detail;
    QPixmap m_symbol;
};

} // namespace

CustomWidgetsPage::CustomWidgetsPage(ConfigContext& context, ColorScheme scheme, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_scheme(scheme)
    , m_drafts(context.customDrafts ? *context.customDrafts : m_ownDrafts)
    , m_stack(new QStackedWidget(this))
    , m_banner(new QFrame(this))
    , m_bannerTitle(new QLabel(m_banner))
    , m_bannerDetail(new QLabel(m_banner))
    , m_bannerCancel(new QPushButton(L("custom.banner.cancel", QStringLiteral("Cancel")), m_banner))
    , m_bannerAction(new QPushButton(m_banner)) {
    setObjectName(QStringLiteral("page"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);

    m_banner->setObjectName(QStringLiteral("banner"));
    auto* bannerRow = new QHBoxLayout(m_banner);
    bannerRow->setContentsMargins(16, 10, 16, 10);
    auto* words = new QVBoxLayout();
    words->setSpacing(2);
    m_bannerTitle->setObjectName(QStringLiteral("cardName"));
    m_bannerTitle->setTextFormat(Qt::PlainText);
    m_bannerDetail->setObjectName(QStringLiteral("caption"));
    m_bannerDetail->setWordWrap(true);
    m_bannerDetail->setTextFormat(Qt::PlainText);
    words->addWidget(m_bannerTitle);
    words->addWidget(m_bannerDetail);
    bannerRow->addLayout(words, 1);
    bannerRow->addWidget(m_bannerCancel);
    bannerRow->addWidget(m_bannerAction);
    connect(m_bannerCancel, &QPushButton::clicked, this, [this] {
        m_pending = Pending::none;
        m_banner->hide();
    });
    connect(m_bannerAction, &QPushButton::clicked, this, [this] {
        if (m_pending == Pending::remove) {
            confirmDelete();
        } else if (m_pending == Pending::undo) {
            undoDelete();
        }
    });
    m_banner->hide();
    auto* bannerMargin = new QVBoxLayout();
    bannerMargin->setContentsMargins(24, 12, 24, 0);
    bannerMargin->addWidget(m_banner);
    column->addLayout(bannerMargin);
    column->addWidget(m_stack, 1);

    rebuildList();
    if (m_context.customWidgets) {
        connect(m_context.customWidgets, &CustomWidgetStore::widgetsChanged, this,
                &CustomWidgetsPage::rebuildList);
    }
}

CustomWidgetsPage::~CustomWidgetsPage() {
    closeEditor();
}

void CustomWidgetsPage::setColorScheme(ColorScheme scheme) {
    m_scheme = scheme;
    if (m_editor) {
        m_editor->setColorScheme(scheme);
    }
    rebuildList();
}

void CustomWidgetsPage::rebuildList() {
    const bool showing = m_list && m_stack->currentWidget() == m_list;
    delete m_list;
    m_list = new SettingsPage(L("custom.title", QStringLiteral("Custom widgets")));
    m_stack->insertWidget(0, m_list);

    const ConfigPalette colors = ConfigPalette::of(m_scheme);
    const QColor accent = colors.accent;
    SettingsCard* mine =
        m_list->addGroup(QStringLiteral("mine"), L("custom.mine", QStringLiteral("Your widgets")));
    QList<CustomWidgetDefinition> widgets = m_context.customWidgets
                                                ? m_context.customWidgets->widgets()
                                                : QList<CustomWidgetDefinition>();
    for (const auto& [id, text] : m_drafts.asKeyValueRange()) {
        if (!m_context.customWidgets || !m_context.customWidgets->definition(kindOf(id))) {
            widgets.append(draftDefinition(id, text));
        }
    }
    for (const CustomWidgetDefinition& widget : widgets) {
        const QUuid id = widget.id;
        auto* editButton = new QPushButton(L("custom.edit", QStringLiteral("Edit")));
        editButton->setAccessibleName(
            L("custom.editNamed", QStringLiteral("Edit %1")).arg(widget.name));
        connect(editButton, &QPushButton::clicked, this, [this, id] {
            if (!this->edit(id) && m_drafts.contains(id)) {
                open(draftDefinition(id, m_drafts.value(id)), false);
            }
        });
        QString words = sizesText(widget);
        const int placed = m_context.grid ? m_context.grid->instanceCount(widget.kind()) : 0;
        if (placed > 0) {
            words += QStringLiteral(" · ") +
                     L("custom.placed", QStringLiteral("%1 on the desktop")).arg(placed);
        }
        if (m_drafts.contains(id)) {
            words += QStringLiteral(" · ") + L("custom.draft", QStringLiteral("changes not saved"));
        }
        QWidget* row = mine->addRow(widget.name.trimmed().isEmpty()
                                        ? L("custom.untitled", QStringLiteral("Untitled widget"))
                                        : widget.name,
                                    words, editButton);
        auto* icon = new QLabel(row);
        icon->setPixmap(symbolPixmap(m_context, widget.symbol, accent));
        icon->setFixedSize(28, 28);
        if (auto* layout = qobject_cast<QBoxLayout*>(row->layout())) {
            layout->insertWidget(0, icon, 0, Qt::AlignVCenter);
            layout->insertSpacing(1, 4);
        }
    }
    if (widgets.isEmpty()) {
        mine->addRow(L("custom.none", QStringLiteral("No widgets of your own yet")),
                     L("custom.none.sub",
                       QStringLiteral("Start from a template below, or import a .twkwidget file "
                                      "someone shared.")),
                     nullptr);
    }
    auto* import = new QPushButton(L("custom.import", QStringLiteral("Import…")));
    connect(import, &QPushButton::clicked, this, &CustomWidgetsPage::chooseImport);
    mine->addRow(L("custom.import.title", QStringLiteral("A widget from a file")),
                 L("custom.import.sub",
                   QStringLiteral("Opens a .twkwidget file. Request headers are never in one.")),
                 import);
    import->setEnabled(m_context.customWidgets != nullptr);

    SettingsCard* templates =
        m_list->addGroup(QStringLiteral("templates"),
                         L("custom.templates", QStringLiteral("Start from a template")));
    auto* grid = new QWidget();
    auto* flow = new FlowLayout(grid, 200, 10);
    for (const CustomWidgetTemplates::Template& t : CustomWidgetTemplates::all()) {
        auto* tile = new TemplateTile(t, symbolPixmap(m_context, t.symbol, accent), colors);
        const QString templateId = t.id;
        connect(tile, &QPushButton::clicked, this,
                [this, templateId] { editTemplate(templateId); });
        flow->addWidget(tile);
    }
    templates->addWide(grid);
    m_list->addWidget(caption(
        L("custom.footnote", QStringLiteral("A custom widget is a small JSON document: a name, "
                                            "its sizes, the web addresses it reads and rows of "
                                            "text, numbers, rings, bars and charts. An AI "
                                            "assistant can write one for you from the editor."))));
    if (showing || !m_editor) {
        m_stack->setCurrentWidget(m_list);
    }
}

bool CustomWidgetsPage::edit(const QUuid& id) {
    if (m_context.customWidgets == nullptr) {
        return false;
    }
    for (const CustomWidgetDefinition& widget : m_context.customWidgets->widgets()) {
        if (widget.id == id) {
            open(widget, true);
            return true;
        }
    }
    return false;
}

bool CustomWidgetsPage::editTemplate(const QString& templateId) {
    const std::optional<CustomWidgetTemplates::Template> t =
        CustomWidgetTemplates::byId(templateId);
    if (!t) {
        return false;
    }
    open(t->make(), false);
    return true;
}

void CustomWidgetsPage::open(const CustomWidgetDefinition& definition, bool stored) {
    closeEditor();
    m_editor = new CustomWidgetEditor(m_context, definition, stored, m_scheme,
                                      m_drafts.take(definition.id));
    m_stack->addWidget(m_editor);
    m_stack->setCurrentWidget(m_editor);
    connect(m_editor, &CustomWidgetEditor::closeRequested, this, &CustomWidgetsPage::showList);
    connect(m_editor, &CustomWidgetEditor::deleteRequested, this, &CustomWidgetsPage::askDelete);
    connect(m_editor, &CustomWidgetEditor::duplicateRequested, this, [this](const QUuid& id) {
        if (const auto copy = m_context.customWidgets->duplicate(id)) {
            open(*copy, true);
        }
    });
}

void CustomWidgetsPage::closeEditor(KeepDraft keep) {
    if (!m_editor) {
        return;
    }
    // Unsaved text waits for the widget to be opened again.
    if (keep == KeepDraft::yes && m_editor->hasUnsavedChanges()) {
        m_drafts.insert(m_editor->id(), m_editor->text());
    }
    // Often asked from inside one of the editor's own buttons, so it goes once that returns.
    CustomWidgetEditor* editor = m_editor;
    m_editor = nullptr;
    m_stack->removeWidget(editor);
    editor->hide();
    editor->deleteLater();
}

void CustomWidgetsPage::showList() {
    closeEditor();
    rebuildList();
    m_stack->setCurrentWidget(m_list);
}

void CustomWidgetsPage::chooseImport() {
    const QString path = QFileDialog::getOpenFileName(
        this, L("custom.import.choose", QStringLiteral("Import a widget")), QString(),
        L("custom.editor.fileType", QStringLiteral("Custom widget (*.twkwidget)")));
    if (!path.isEmpty()) {
        importFile(path);
    }
}

bool CustomWidgetsPage::importFile(const QString& path) {
    if (m_context.customWidgets == nullptr) {
        return false;
    }
    const auto imported = m_context.customWidgets->importWidget(path);
    if (const auto* error = std::get_if<CustomWidgetStore::ImportError>(&imported)) {
        m_pending = Pending::none;
        showBanner(CustomWidgetStore::ImportError::title(), error->message(), {}, true);
        return false;
    }
    m_banner->hide();
    open(std::get<CustomWidgetDefinition>(imported), true);
    return true;
}

void CustomWidgetsPage::askDelete(const QUuid& id) {
    const auto widget =
        m_context.customWidgets ? m_context.customWidgets->definition(kindOf(id)) : std::nullopt;
    if (!widget) {
        return;
    }
    m_asked = id;
    m_pending = Pending::remove;
    QString detail = L("custom.delete.message",
                       QStringLiteral("This can’t be undone. Export it first if you want to keep "
                                      "a copy."));
    const int placed = m_context.grid ? m_context.grid->instanceCount(widget->kind()) : 0;
    if (placed > 0) {
        detail += u' ' + L("custom.delete.placed",
                           QStringLiteral("It is on your desktop %1 times. Those copies go too."))
                             .arg(placed);
    }
    showBanner(L("custom.delete.title", QStringLiteral("Delete “%1”?")).arg(widget->name), detail,
               L("custom.delete", QStringLiteral("Delete")), true);
}

void CustomWidgetsPage::confirmDelete() {
    if (m_pending != Pending::remove || m_context.customWidgets == nullptr) {
        return;
    }
    const auto widget = m_context.customWidgets->definition(kindOf(m_asked));
    if (!widget) {
        return;
    }
    m_removed = *widget;
    m_removedTiles.clear();
    if (m_context.grid) {
        for (const WidgetInstance& tile : m_context.grid->layout().instances) {
            if (tile.kind == widget->kind()) {
                m_removedTiles.append(tile);
            }
        }
        m_context.grid->removeAll(widget->kind());
    }
    m_drafts.remove(widget->id);
    closeEditor(KeepDraft::no);
    m_context.customWidgets->remove(widget->id);
    showList();
    m_pending = Pending::undo;
    showBanner(L("custom.deleted", QStringLiteral("“%1” is deleted.")).arg(widget->name), {},
               L("custom.undo", QStringLiteral("Undo")), false);
}

void CustomWidgetsPage::undoDelete() {
    if (!m_removed || m_context.customWidgets == nullptr) {
        return;
    }
    m_context.customWidgets->update(*m_removed);
    if (m_context.grid && !m_removedTiles.isEmpty()) {
        m_context.grid->append(m_removedTiles, GridStore::Replacing::no);
    }
    m_removed.reset();
    m_removedTiles.clear();
    m_pending = Pending::none;
    m_banner->hide();
}

QString CustomWidgetsPage::banner() const {
    if (m_banner->isHidden()) {
        return {};
    }
    const QString detail = m_bannerDetail->text();
    return detail.isEmpty() ? m_bannerTitle->text() : m_bannerTitle->text() + u'\n' + detail;
}

void CustomWidgetsPage::showBanner(const QString& title, const QString& detail,
                                   const QString& action, bool danger) {
    m_bannerTitle->setText(title);
    m_bannerDetail->setText(detail);
    m_bannerDetail->setVisible(!detail.isEmpty());
    m_bannerAction->setText(action);
    m_bannerAction->setVisible(!action.isEmpty());
    m_bannerAction->setObjectName(danger ? QStringLiteral("danger") : QStringLiteral("primary"));
    m_bannerAction->style()->unpolish(m_bannerAction);
    m_bannerAction->style()->polish(m_bannerAction);
    m_bannerCancel->setText(m_pending == Pending::remove
                                ? L("custom.banner.cancel", QStringLiteral("Cancel"))
                                : L("custom.banner.close", QStringLiteral("Close")));
    m_banner->show();
}

} // namespace tw
