#include "../displays/SmartLayoutRig.h"
#include "config/ConfigContext.h"
#include "config/LayoutsPage.h"
#include "look/ThemeStore.h"
#include "settings/AppSettings.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace tw {

using namespace test;

namespace {

struct Page {
    Page()
        : rig(QTime(12, 0)) {
        context.smartLayouts = rig.coordinator.get();
        page = std::make_unique<LayoutsPage>(context);
    }
    // The row on show whose name field says `text` or whose label mentions it.
    QWidget* row(const char* kind, const QString& text) const {
        for (QWidget* row : page->findChildren<QWidget*>(QLatin1String(kind))) {
            const auto* field = row->findChild<QLineEdit*>();
            const auto* label = row->findChild<QLabel*>();
            if (!row->isHidden() &&
                ((field && field->text() == text) || (label && label->text().contains(text)))) {
                return row;
            }
        }
        return nullptr;
    }
    QPushButton* button(QWidget* within, const QString& text) const {
        for (QPushButton* button : within->findChildren<QPushButton*>()) {
            if (button->text() == text) {
                return button;
            }
        }
        return nullptr;
    }
    QStringList names() const {
        QStringList names;
        for (const LayoutProfile& profile : rig.profiles->profiles()) {
            names << profile.name;
        }
        return names;
    }
    void settle() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    SmartLayoutRig rig;
    MemoryDefaults defaults;
    AppSettings settings{defaults};
    ThemeStore theme{defaults, rig.fixture.clock, QString()};
    ConfigContext context{.settings = settings, .theme = theme, .defaults = defaults};
    std::unique_ptr<LayoutsPage> page;
};

} // namespace

class TestLayoutsPage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Deleting from the page takes the profile's rules along, and Undo puts both back.
    void deleteAndUndo() {
        Page page;
        page.rig.addRule(QStringLiteral("application org.Editor Work"));
        QWidget* work = page.row("profileRow", QStringLiteral("Work"));
        QVERIFY(work);
        page.button(work, QStringLiteral("Delete"))->click();
        page.settle();
        QCOMPARE(page.names(), QStringList({QStringLiteral("Default"), QStringLiteral("Night")}));
        QVERIFY(page.rig.rules->rules().isEmpty());
        auto* undo = page.page->findChild<QPushButton*>(QStringLiteral("undoDelete"));
        QVERIFY(undo->isVisibleTo(page.page.get()));
        undo->click();
        page.settle();
        QCOMPARE(page.names(), QStringList({QStringLiteral("Default"), QStringLiteral("Night"),
                                            QStringLiteral("Work")}));
        QCOMPARE(page.rig.rules->rules().size(), 1);
        QVERIFY(page.row("profileRow", QStringLiteral("Work")));
    }

    // A blank name is refused and the field shows the name that stays.
    void renameInPlace_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("kept");
        QTest::newRow("new name") << QStringLiteral("Late") << QStringLiteral("Late");
        QTest::newRow("blank") << QStringLiteral("   ") << QStringLiteral("Night");
        QTest::newRow("another's name") << QStringLiteral("work") << QStringLiteral("work 2");
    }
    void renameInPlace() {
        QFETCH(QString, typed);
        QFETCH(QString, kept);
        Page page;
        auto* field = page.row("profileRow", QStringLiteral("Night"))->findChild<QLineEdit*>();
        field->setText(typed);
        Q_EMIT field->editingFinished();
        page.settle();
        QCOMPARE(page.names().at(1), kept);
        QVERIFY(page.row("profileRow", kept));
    }

    // The form makes a display rule for the chosen display and profile.
    void addDisplayRule() {
        Page page;
        page.context.displays = {{QStringLiteral("HDMI-2"), QStringLiteral("Projector")}};
        page.page = std::make_unique<LayoutsPage>(page.context);
        auto* form = page.page->findChild<QWidget*>(QStringLiteral("ruleForm"));
        const QList<QComboBox*> boxes = form->findChildren<QComboBox*>();
        boxes.at(0)->setCurrentIndex(static_cast<int>(SmartLayoutRule::Trigger::display));
        boxes.at(2)->setCurrentIndex(boxes.at(2)->findText(QStringLiteral("Work")));
        page.button(form, QStringLiteral("Add Rule"))->click();
        page.settle();
        QCOMPARE(page.rig.rules->rules().size(), 1);
        const SmartLayoutRule rule = page.rig.rules->rules().first();
        QCOMPARE(rule.trigger, SmartLayoutRule::Trigger::display);
        QCOMPARE(rule.displayID, QStringLiteral("HDMI-2"));
        QCOMPARE(rule.displayName, QStringLiteral("Projector"));
        QCOMPARE(rule.profileID, page.rig.idOf(QStringLiteral("Work")));
        QVERIFY(page.row("ruleRow", QStringLiteral("While Projector is connected")));
    }
};

} // namespace tw

QTEST_MAIN(tw::TestLayoutsPage)
#include "tst_layoutspage.moc"
