// Runs inside a private X session with a window manager: another program's window and then this
// program's own come to the front, and the foreground application follows, named from its
// desktop entry.
#include "Files.h"
#include "platform/linux/X11ForegroundApplication.h"

#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

namespace tw {

class TestX11ForegroundApplication : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void followsTheActiveWindow() {
        QTemporaryDir data;
        QVERIFY(
            test::writeFile(data.filePath(QStringLiteral("applications/org.example.Note.desktop")),
                            "[Desktop Entry]\nType=Application\nName=Note Box\nExec=xmessage\n"
                            "StartupWMClass=Xmessage\n"));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(data.path()));
        qputenv("XDG_DATA_HOME", QFile::encodeName(data.filePath(QStringLiteral("home"))));

        const auto foreground = X11ForegroundApplication::create();
        QSignalSpy activated(foreground.get(), &ForegroundApplication::activated);

        QProcess other;
        other.start(QStringLiteral("xmessage"), {QStringLiteral("front")});
        QVERIFY(other.waitForStarted());
        QVERIFY(activated.wait(10000));
        const ForegroundApp app = activated.last().at(0).value<ForegroundApp>();
        QCOMPARE(app.id, QStringLiteral("Xmessage"));
        QCOMPARE(app.name, QStringLiteral("Note Box"));
        QVERIFY(!app.isThisProgram);
        QCOMPARE(foreground->frontmost(), app);

        QWindow mine;
        mine.resize(200, 100);
        mine.show();
        mine.requestActivate();
        QVERIFY(QTest::qWaitFor(
            [&] {
                return !activated.isEmpty() &&
                       activated.last().at(0).value<ForegroundApp>().isThisProgram;
            },
            10000));
        other.kill();
        other.waitForFinished();
    }
};

} // namespace tw

QTEST_MAIN(tw::TestX11ForegroundApplication)
#include "tst_x11foregroundapplication.moc"
