// Runs on a real X server with openbox (tests/e2e/xsession.py): the hints a desktop window sets
// are the ones the window manager honours, as xprop and the stacking order show.
#include "platform/linux/X11DesktopWindowing.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>
#include <QWindow>

using namespace tw;

namespace {

QString xprop(const QStringList& args) {
    QProcess p;
    p.start(QStringLiteral("xprop"), args);
    p.waitForFinished(5000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

QString windowProperty(QWidget& w, const char* name) {
    return xprop({QStringLiteral("-id"), QString::number(w.winId()), QString::fromLatin1(name)});
}

// Ids in _NET_CLIENT_LIST_STACKING, bottom first.
QList<quint64> stacking() {
    const QString out =
        xprop({QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST_STACKING")});
    QList<quint64> ids;
    const auto parts = out.section(QLatin1Char('#'), 1).split(QLatin1Char(','));
    for (const QString& part : parts) {
        bool ok = false;
        const quint64 id = part.trimmed().toULongLong(&ok, 0);
        if (ok) {
            ids.append(id);
        }
    }
    return ids;
}

void clickAt(QPoint global) {
    QProcess::execute(QStringLiteral("xdotool"),
                      {QStringLiteral("mousemove"), QStringLiteral("--sync"),
                       QString::number(global.x()), QString::number(global.y()),
                       QStringLiteral("click"), QStringLiteral("1")});
}

// A window manager on a loaded machine may take seconds to map a window; waiting longer costs
// nothing when it is quick.
constexpr int kExposeTimeout = 20000;

} // namespace

class tst_X11DesktopWindowing : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        if (QGuiApplication::platformName() != QLatin1String("xcb")) {
            QSKIP("needs an X server (run through tests/e2e/xsession.py)");
        }
        m_windowing = X11DesktopWindowing::create();
        QVERIFY(m_windowing->canReportCoverage());
    }

    void hintsAreHonouredByTheWindowManager_data() {
        QTest::addColumn<DesktopWindowing::Focus>("focus");
        QTest::addColumn<QString>("input");
        QTest::newRow("never focused") << DesktopWindowing::Focus::Never << QStringLiteral("False");
        QTest::newRow("typed into")
            << DesktopWindowing::Focus::WhenClicked << QStringLiteral("True");
    }

    // Mapped after a normal window, the panel still stays below it, even clicked and moved onto
    // it; one never focused takes no focus from the click.
    void hintsAreHonouredByTheWindowManager() {
        QFETCH(DesktopWindowing::Focus, focus);
        QFETCH(QString, input);
        QWidget normal;
        normal.setGeometry(150, 150, 300, 300);
        normal.show();
        QVERIFY(QTest::qWaitForWindowExposed(&normal, kExposeTimeout));
        QWidget panel(nullptr, DesktopWindowing::windowFlags(focus));
        panel.setAttribute(Qt::WA_ShowWithoutActivating);
        panel.setGeometry(600, 100, 200, 150);
        panel.winId();
        m_windowing->prepare(panel.windowHandle(), focus);
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel, kExposeTimeout));

        // openbox rewrites _NET_WM_STATE with what it applied once it manages the window.
        QTRY_VERIFY(windowProperty(panel, "_NET_WM_STATE")
                        .contains(QLatin1String("_NET_WM_STATE_SKIP_PAGER")));
        const QString state = windowProperty(panel, "_NET_WM_STATE");
        for (const char* hint : {"BELOW", "SKIP_TASKBAR", "SKIP_PAGER"}) {
            QVERIFY2(state.contains(QLatin1String("_NET_WM_STATE_") + QLatin1String(hint)),
                     qPrintable(state));
        }
        // openbox puts a window on every workspace through _NET_WM_DESKTOP rather than STICKY.
        QTRY_VERIFY(windowProperty(panel, "_NET_WM_DESKTOP").contains(QLatin1String("4294967295")));
        QVERIFY(windowProperty(panel, "_NET_WM_WINDOW_TYPE")
                    .contains(QLatin1String("_NET_WM_WINDOW_TYPE_NORMAL")));
        const QString hints = windowProperty(panel, "WM_HINTS");
        QVERIFY2(hints.contains(QLatin1String("keyboard focus model: ") + input) ||
                     hints.contains(QLatin1String("Client accepts input or input focus: ") + input),
                 qPrintable(hints));
        const bool takesFocus =
            windowProperty(panel, "WM_PROTOCOLS").contains(QLatin1String("WM_TAKE_FOCUS"));
        QCOMPARE(takesFocus, focus == DesktopWindowing::Focus::WhenClicked);
        // No frame: the client area is where it was put.
        QCOMPARE(panel.frameGeometry(), panel.geometry());

        QTRY_VERIFY(stacking().contains(panel.winId()));
        clickAt(QPoint(700, 170));
        panel.move(200, 200);
        QTRY_COMPARE(panel.geometry().topLeft(), QPoint(200, 200));
        const auto order = stacking();
        QVERIFY(order.indexOf(panel.winId()) < order.indexOf(normal.winId()));
        if (focus == DesktopWindowing::Focus::Never) {
            QVERIFY(!xprop({QStringLiteral("-root"), QStringLiteral("_NET_ACTIVE_WINDOW")})
                         .contains(QString::number(panel.winId(), 16)));
            QVERIFY(!panel.isActiveWindow());
        }
    }

    // A desktop window, and an ordinary one that is only watched (the configuration window): both
    // are reported, and only the first is put below the others.
    void reportsWhenCoveredAndUncovered_data() {
        QTest::addColumn<bool>("desktop");
        QTest::newRow("desktop window") << true;
        QTest::newRow("watched window") << false;
    }

    void reportsWhenCoveredAndUncovered() {
        QFETCH(bool, desktop);
        QWidget panel(nullptr, desktop
                                   ? DesktopWindowing::windowFlags(DesktopWindowing::Focus::Never)
                                   : Qt::WindowFlags(Qt::Window));
        panel.setAttribute(Qt::WA_ShowWithoutActivating);
        panel.setGeometry(1000, 500, 120, 120);
        panel.winId();
        if (desktop) {
            m_windowing->prepare(panel.windowHandle(), DesktopWindowing::Focus::Never);
        } else {
            m_windowing->watchCoverage(panel.windowHandle());
        }
        QSignalSpy spy(m_windowing.get(), &DesktopWindowing::coveredChanged);
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel, kExposeTimeout));

        QWidget cover;
        cover.setGeometry(900, 400, 400, 400);
        cover.show();
        QVERIFY(QTest::qWaitForWindowExposed(&cover, kExposeTimeout));
        QTRY_VERIFY(!spy.isEmpty());
        QCOMPARE(spy.last().at(0).value<QObject*>(), panel.windowHandle());
        QCOMPARE(spy.last().at(1).toBool(), true);

        spy.clear();
        cover.move(1400, 400);
        QTRY_VERIFY(!spy.isEmpty());
        QCOMPARE(spy.last().at(1).toBool(), false);
        QCOMPARE(windowProperty(panel, "_NET_WM_STATE").contains(QLatin1String("BELOW")), desktop);
    }

private:
    std::unique_ptr<DesktopWindowing> m_windowing;
};

QTEST_MAIN(tst_X11DesktopWindowing)
#include "tst_x11desktopwindowing.moc"
