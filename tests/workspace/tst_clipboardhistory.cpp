#include "TestRows.h"
#include "workspace/ClipboardFile.h"
#include "workspace/ClipboardHistory.h"

#include <QMimeData>
#include <QTest>

using namespace tw;
using tw::test::row;

namespace {

const QDateTime kAt = QDateTime::fromString(QStringLiteral("2026-05-01T10:00:00Z"), Qt::ISODate);

QImage picture(int w, int h, QColor color) {
    QImage image(w, h, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

} // namespace

class TestClipboardHistory : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // What the clipboard holds, as formats and their bytes, and whether it is kept.
    void clipping_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("markFormat");
        QTest::addColumn<QByteArray>("markValue");
        QTest::addColumn<bool>("kept");
        row("plain text", "hello", "", QByteArray(), true);
        row("a password manager's secret", "hunter2", "x-kde-passwordManagerHint",
            QByteArray("secret"), false);
        row("the mark with a line end", "hunter2", "x-kde-passwordManagerHint",
            QByteArray("secret\n"), false);
        row("the mark saying something else", "hello", "x-kde-passwordManagerHint",
            QByteArray("public"), true);
        row("the concealed type", "hunter2", "org.nspasteboard.ConcealedType", QByteArray(), false);
        row("blanks only", " \n\t", "", QByteArray(), false);
        row("nothing", "", "", QByteArray(), false);
    }
    void clipping() {
        QFETCH(QString, text);
        QFETCH(QString, markFormat);
        QFETCH(QByteArray, markValue);
        QFETCH(bool, kept);
        QMimeData data;
        if (!text.isEmpty()) {
            data.setText(text);
        }
        if (!markFormat.isEmpty()) {
            data.setData(markFormat, markValue);
        }
        const auto clipping =
            ClipboardHistory::clippingOf(&data, kAt, ClipboardHistory::Images::kept);
        QCOMPARE(clipping.has_value(), kept);
        if (kept) {
            QCOMPARE(clipping->text, text);
        }
    }

    void picturesAndTheirCaps() {
        QMimeData data;
        data.setImageData(picture(4000, 3000, Qt::red));
        data.setText(QStringLiteral("alt text"));
        QVERIFY(!ClipboardHistory::clippingOf(&data, kAt, ClipboardHistory::Images::skipped));
        const auto clipping =
            ClipboardHistory::clippingOf(&data, kAt, ClipboardHistory::Images::kept);
        QVERIFY(clipping && clipping->kind == Clipping::Kind::image);
        QVERIFY(qint64(clipping->image.width()) * clipping->image.height() <=
                ClipboardHistory::largestImagePixels);
        QVERIFY(!ClipboardHistory::clippingOf(nullptr, kAt, ClipboardHistory::Images::kept));
        QMimeData huge;
        huge.setText(QString(ClipboardHistory::longestText + 10, u'x'));
        QCOMPARE(
            ClipboardHistory::clippingOf(&huge, kAt, ClipboardHistory::Images::kept)->text.size(),
            ClipboardHistory::longestText);
    }

    void historyOrderAndLimits() {
        ClipboardHistory history;
        QVERIFY(history.add(Clipping::ofText(QStringLiteral("a"), kAt)));
        QVERIFY(history.add(Clipping::ofText(QStringLiteral("b"), kAt)));
        QVERIFY(!history.add(Clipping::ofText(QStringLiteral("b"), kAt)));
        // Copied again: once, at the top, with the new time.
        QVERIFY(history.add(Clipping::ofText(QStringLiteral("a"), kAt.addSecs(5))));
        QCOMPARE(history.items().size(), 2);
        QCOMPARE(history.items()[0].text, QStringLiteral("a"));
        QCOMPARE(history.items()[0].copiedAt, kAt.addSecs(5));
        for (int i = 0; i < ClipboardHistory::most + 5; ++i) {
            history.add(Clipping::ofText(QString::number(i), kAt));
        }
        QCOMPARE(history.items().size(), ClipboardHistory::most);
        QCOMPARE(history.items()[0].text, QString::number(ClipboardHistory::most + 4));
        // Pictures over the byte budget: the oldest go, texts stay.
        const int side = 2800; // about 31 MB each
        for (int i = 0; i < 5; ++i) {
            history.add(Clipping::ofImage(picture(side, side, QColor(i, 0, 0)), kAt));
        }
        qsizetype bytes = 0;
        int pictures = 0;
        for (const Clipping& c : history.items()) {
            bytes += c.imageBytes();
            pictures += c.kind == Clipping::Kind::image;
        }
        QCOMPARE(pictures, 3);
        QVERIFY(bytes <= ClipboardHistory::mostImageBytes);
        QCOMPARE(history.items()[0].image.pixelColor(0, 0), QColor(4, 0, 0));
        QVERIFY(history.dropImages());
        QVERIFY(history.remove(0));
        QVERIFY(!history.remove(99));
        QVERIFY(history.clear());
        QVERIFY(!history.clear());
    }

    void fileRoundTripAndLeniency() {
        QList<Clipping> clippings{Clipping::ofText(QStringLiteral("x\n\"y\""), kAt),
                                  Clipping::ofImage(picture(3, 2, Qt::blue), kAt.addSecs(-60))};
        const QList<Clipping> back = ClipboardFile::decode(ClipboardFile::encode(clippings));
        QCOMPARE(back.size(), 2);
        QCOMPARE(back[0], clippings[0]);
        QCOMPARE(back[1].digest, clippings[1].digest);
        QCOMPARE(back[1].copiedAt, clippings[1].copiedAt);
        QVERIFY(back[1].image.isNull());
        const QByteArray hostile = R"({"clippings":[
            {"text":"ok","copied":"2026-01-01T00:00:00Z"},
            {"text":"no time"},
            {"image":"../../etc/passwd","copied":"2026-01-01T00:00:00Z"},
            {"image":"ABCDEF0123456789ABCDEF0123456789ABCDEF01","copied":"2026-01-01T00:00:00Z"},
            {"text":5,"copied":"2026-01-01T00:00:00Z"}, 7, null]})";
        QCOMPARE(ClipboardFile::decode(hostile).size(), 1);
        QVERIFY(ClipboardFile::decode("not json").isEmpty());
    }
};

QTEST_MAIN(TestClipboardHistory)
#include "tst_clipboardhistory.moc"
