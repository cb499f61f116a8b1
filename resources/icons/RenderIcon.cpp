// Draws the scalable icon at the pixel sizes of the icon theme, at build time:
//     render-icon <icon.svg> <hicolor-dir> <size>...
// writes <hicolor-dir>/<size>x<size>/apps/<icon>.png for every size.
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>
#include <span>

int main(int argc, char** argv) {
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() < 4) {
        std::fputs("usage: render-icon <icon.svg> <hicolor-dir> <size>...\n", stderr);
        return 2;
    }
    const QString source = QString::fromLocal8Bit(arguments[1]);
    QSvgRenderer renderer(source);
    if (!renderer.isValid()) {
        std::fprintf(stderr, "render-icon: cannot read %s\n", arguments[1]);
        return 1;
    }
    const QString name = QFileInfo(source).completeBaseName() + QStringLiteral(".png");
    for (const char* argument : arguments.subspan(3)) {
        const int pixels = QByteArray(argument).toInt();
        if (pixels <= 0) {
            std::fprintf(stderr, "render-icon: %s is no size\n", argument);
            return 2;
        }
        const QString directory =
            QStringLiteral("%1/%2x%2/apps").arg(QString::fromLocal8Bit(arguments[2])).arg(pixels);
        QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter);
        painter.end();
        if (!QDir().mkpath(directory) || !image.save(directory + QLatin1Char('/') + name, "PNG")) {
            std::fprintf(stderr, "render-icon: cannot write the %s pixel icon\n", argument);
            return 1;
        }
    }
    return 0;
}
