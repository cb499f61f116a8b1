// The first-start guide over the configuration window, and the rule that it shows only until it
// is skipped or done.
#include "ManualClock.h"
#include "TestRows.h"
#include "config/ConfigContext.h"
#include "config/ConfigRoot.h"
#include "config/OnboardingView.h"
#include "look/ThemeStore.h"
#include "platform/SettingsDefaults.h"
#include "settings/AppSettings.h"

#include <QApplication>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace tw;
using tw::test::row;

namespace {

// One opening of the window over preferences in a file, read afresh each time.
struct Opening {
    explicit Opening(SettingsDefaults& store)
        : defaults(store) {}

    SettingsDefaults& defaults;
    test::ManualClock clock;
    AppSettings settings{defaults};
    ThemeStore theme{defaults, clock, QString()};
    ConfigContext context{.settings = settings, .theme = theme, .defaults = defaults};
    ConfigRoot root{context, ColorScheme::Light};

    OnboardingView* guide() const {
        auto* view = root.findChild<OnboardingView*>();
        return view != nullptr && !view->isHidden() ? view : nullptr;
    }
};

} // namespace

class tst_OnboardingView : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Keys go where the person's keyboard would send them: to the focused widget.
    void shownUntilSkippedOrDone_data() {
        QTest::addColumn<bool>("seenBefore");
        // n Enter, x Esc, t Tab, T Shift+Tab; b, s and d click Back, Skip and Done.
        QTest::addColumn<QString>("keys");
        QTest::addColumn<bool>("seenAfter");
        row("seen: not shown", true, "", true);
        row("Skip", false, "s", true);
        row("Esc skips and leaves the window open", false, "nx", true);
        row("Enter through every step", false, "nnn", true);
        row("Back, then Done", false, "nbnnd", true);
        row("Tab goes round the guide, never behind its veil", false, "tttntTTTTx", true);
        row("closed on the way: shown next time", false, "nn", false);
        row("closed at once", false, "", false);
    }
    void shownUntilSkippedOrDone() {
        QFETCH(bool, seenBefore);
        QFETCH(QString, keys);
        QFETCH(bool, seenAfter);
        QTemporaryDir dir;
        SettingsDefaults defaults(dir.filePath(QStringLiteral("prefs.ini")));
        {
            Opening first(defaults);
            first.settings.setHasSeenGuide(seenBefore);
        }
        {
            Opening opening(defaults);
            QCOMPARE(opening.guide() != nullptr, !seenBefore);
            opening.root.resize(980, 680);
            opening.root.show();
            QVERIFY(QTest::qWaitForWindowActive(&opening.root));
            int expectedStep = 0;
            for (const QChar key : keys) {
                OnboardingView* guide = opening.guide();
                QVERIFY(guide);
                QCOMPARE(guide->step(), expectedStep);
                QVERIFY(guide->isAncestorOf(QApplication::focusWidget()));
                switch (key.toLatin1()) {
                case 'n':
                    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
                    ++expectedStep;
                    break;
                case 'b':
                    guide->findChildren<QPushButton*>().at(1)->click();
                    --expectedStep;
                    break;
                case 'x':
                    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
                    break;
                case 't':
                    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                    break;
                case 'T':
                    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab,
                                    Qt::ShiftModifier);
                    break;
                default:
                    guide->findChildren<QPushButton*>().at(key == u's' ? 0 : 2)->click();
                    break;
                }
            }
            QVERIFY(opening.root.isVisible());
            QCOMPARE(opening.settings.hasSeenGuide(), seenAfter);
            QCOMPARE(opening.guide() == nullptr, seenAfter);
        }
        Opening next(defaults);
        QCOMPARE(next.guide() == nullptr, seenAfter);
    }
};

QTEST_MAIN(tst_OnboardingView)
#include "tst_onboardingview.moc"
