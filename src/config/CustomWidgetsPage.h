// "Custom widgets" in the configuration window: the person's own widgets, templates to start
// from, import of ".twkwidget" files, and each widget's editor. A deletion asks first and can be
// undone: the removed widget and its tiles are kept until then.
#pragma once

#include "config/CustomWidgetEditor.h"
#include "config/SettingsPage.h"
#include "custom/CustomWidgetDefinition.h"
#include "model/WidgetInstance.h"
#include "platform/ColorSchemeWatcher.h"

#include <QHash>
#include <QPointer>
#include <QUuid>
#include <QWidget>

#include <optional>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace tw {

struct ConfigContext;

class CustomWidgetsPage final : public QWidget {
    Q_OBJECT
public:
    CustomWidgetsPage(ConfigContext& context, ColorScheme scheme, QWidget* parent = nullptr);
    // Text left unsaved becomes a draft.
    ~CustomWidgetsPage() override;

    // The editor on screen, if any.
    CustomWidgetEditor* editor() const { return m_editor; }
    // Opens a stored widget; false for an unknown id.
    bool edit(const QUuid& id);
    // Opens a fresh widget from a template, not stored until saved; false for an unknown id.
    bool editTemplate(const QString& templateId);
    void showList();
    // Adds a ".twkwidget" file and opens it, or says why not.
    bool importFile(const QString& path);

    // Asks before deleting; then `confirmDelete` deletes, keeping what `undoDelete` puts back.
    void askDelete(const QUuid& id);
    void confirmDelete();
    void undoDelete();
    // The sentence over the page (a question, a deletion to undo, a problem), or empty.
    QString banner() const;
    void setColorScheme(ColorScheme scheme);

private:
    void rebuildList();
    void open(const CustomWidgetDefinition& definition, bool stored);
    enum class KeepDraft { no, yes };
    void closeEditor(KeepDraft keep = KeepDraft::yes);
    void chooseImport();
    void showBanner(const QString& title, const QString& detail, const QString& action,
                    bool danger);

    ConfigContext& m_context;
    ColorScheme m_scheme;
    // Text not saved yet, by widget: the host's where it keeps them beyond the window, else ours.
    QHash<QUuid, QString> m_ownDrafts;
    QHash<QUuid, QString>& m_drafts;
    QStackedWidget* m_stack;
    QPointer<SettingsPage> m_list;
    QPointer<CustomWidgetEditor> m_editor;

    QWidget* m_banner;
    QLabel* m_bannerTitle;
    QLabel* m_bannerDetail;
    QPushButton* m_bannerCancel;
    QPushButton* m_bannerAction;
    // What the banner's action does.
    enum class Pending { none, remove, undo };
    Pending m_pending = Pending::none;
    QUuid m_asked;
    // The last deletion, until undone or replaced by another.
    std::optional<CustomWidgetDefinition> m_removed;
    QList<WidgetInstance> m_removedTiles;
};

} // namespace tw
