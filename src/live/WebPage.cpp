#include "live/WebPage.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QImageReader>
#include <QLoggingCategory>
#include <QProcess>

namespace tw {

namespace {

Q_LOGGING_CATEGORY(lcWeb, "tarnwick.web")

} // namespace

WebPage::Helper WebPage::installedHelper(bool administrator) {
    const QString dir = QCoreApplication::applicationDirPath();
    QString program = dir + QStringLiteral("/tarnwick-web");
    if (!QFileInfo(program).isExecutable()) {
        program = dir + QStringLiteral("/../libexec/tarnwick/tarnwick-web");
    }
    QStringList arguments;
    if (administrator) {
        arguments.append(QStringLiteral("--no-sandbox"));
    }
    return {QFileInfo(program).absoluteFilePath(), arguments};
}

WebPage::WebPage(Helper helper, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_helper(std::move(helper))
    , m_scheduler(scheduler)
    , m_dir(QDir::tempPath() + QStringLiteral("/tarnwick-web-XXXXXX")) {}

WebPage::~WebPage() {
    stop();
}

QString WebPage::framePath() const {
    return m_dir.filePath(QStringLiteral("frame.png"));
}

void WebPage::show(const WebTileSettings& settings, QSize pixels) {
    if (!settings.url.isValid() || pixels.isEmpty()) {
        stop();
        return;
    }
    pixels = pixels.boundedTo(QSize(WebMessage::maxSide, WebMessage::maxSide));
    const bool same = running() && settings == m_settings && pixels == m_pixels;
    m_settings = settings;
    m_pixels = pixels;
    if (same) {
        return;
    }
    if (!running() && !start()) {
        return;
    }
    WebCommand load;
    load.kind = WebCommand::Kind::load;
    load.url = settings.url;
    load.pixels = pixels;
    load.zoom = settings.zoom;
    load.scroll = settings.scroll;
    send(load);
    arm();
    m_refresh.cancel();
    if (settings.refresh.count() > 0) {
        m_refresh = m_scheduler.repeating(settings.refresh, std::chrono::seconds(30), this,
                                          [this] { reload(); });
    }
}

void WebPage::reload() {
    if (!running()) {
        show(m_settings, m_pixels);
        return;
    }
    WebCommand command;
    command.kind = WebCommand::Kind::reload;
    send(command);
    arm();
}

void WebPage::click(QPointF pixels) {
    if (!running() || pixels.x() < 0 || pixels.y() < 0 || pixels.x() > m_pixels.width() ||
        pixels.y() > m_pixels.height()) {
        return;
    }
    WebCommand command;
    command.kind = WebCommand::Kind::click;
    command.point = pixels;
    send(command);
}

void WebPage::stop() {
    m_limit.cancel();
    m_refresh.cancel();
    if (m_process == nullptr) {
        return;
    }
    QProcess* process = std::exchange(m_process, nullptr);
    process->disconnect(this);
    connect(process, &QProcess::finished, process, &QObject::deleteLater);
    // The helper ends when its input closes, without the desktop waiting for it; one that hangs
    // in the engine is killed.
    process->closeWriteChannel();
    std::erase_if(m_reapers, [](const ScheduledTask& task) { return !task.isActive(); });
    m_reapers.push_back(m_scheduler.singleShot(std::chrono::seconds(3), std::chrono::seconds(1),
                                               process, [process] { process->kill(); }));
    if (m_state == State::loading) {
        setState(m_picture.isNull() ? State::idle : State::shown);
    }
}

bool WebPage::start() {
    if (!m_dir.isValid()) {
        m_problem = QStringLiteral("No room for the page's picture");
        setState(State::noHelper);
        return false;
    }
    auto* process = new QProcess(this);
    process->setProgram(m_helper.program);
    process->setArguments(m_helper.arguments + QStringList{QStringLiteral("--frame"), framePath()});
    process->setStandardErrorFile(QProcess::nullDevice());
    connect(process, &QProcess::readyReadStandardOutput, this, &WebPage::readEvents);
    connect(process, &QProcess::finished, this, &WebPage::processEnded);
    process->start();
    if (!process->waitForStarted(5000)) {
        qCWarning(lcWeb) << "web helper could not start:" << process->errorString();
        process->deleteLater();
        m_problem = process->errorString();
        setState(State::noHelper);
        return false;
    }
    m_process = process;
    return true;
}

void WebPage::send(const WebCommand& command) {
    if (m_process != nullptr) {
        m_process->write(WebMessage::encode(command));
    }
}

void WebPage::arm() {
    m_problem.clear();
    setState(State::loading);
    m_limit = m_scheduler.singleShot(loadLimit, std::chrono::seconds(1), this, [this] {
        if (m_state != State::loading) {
            return;
        }
        qCInfo(lcWeb) << "page did not finish loading in time";
        // Stopping leaves the state alone only while loading; say why first.
        setState(State::timedOut);
        stop();
    });
}

void WebPage::readEvents() {
    if (m_process == nullptr) {
        return;
    }
    while (m_process != nullptr && m_process->canReadLine()) {
        const QByteArray line = m_process->readLine(WebMessage::maxLine + 1);
        if (const std::optional<WebEvent> event = WebMessage::decodeEvent(line)) {
            handle(*event);
        }
    }
    // A line that never ends is no message of ours: let it go rather than hold it.
    if (m_process != nullptr && m_process->bytesAvailable() > WebMessage::maxLine) {
        m_process->readAll();
    }
}

void WebPage::handle(const WebEvent& event) {
    switch (event.kind) {
    case WebEvent::Kind::loading:
        if (m_state != State::loading) {
            arm();
        }
        return;
    case WebEvent::Kind::failed:
        m_limit.cancel();
        m_problem = event.why;
        setState(State::failed);
        return;
    case WebEvent::Kind::frame: {
        QImageReader reader(framePath(), "png");
        const QSize size = reader.size();
        // The helper draws what it was asked; a larger picture is none of ours.
        if (!size.isValid() || size.width() > WebMessage::maxSide ||
            size.height() > WebMessage::maxSide) {
            return;
        }
        QImage picture = reader.read();
        if (picture.isNull()) {
            return;
        }
        m_limit.cancel();
        m_picture = std::move(picture);
        m_title = event.title;
        m_shownUrl = event.url;
        m_problem.clear();
        m_state = State::shown;
        Q_EMIT changed();
        return;
    }
    }
}

void WebPage::processEnded() {
    QProcess* process = std::exchange(m_process, nullptr);
    if (process != nullptr) {
        process->deleteLater();
    }
    m_limit.cancel();
    m_refresh.cancel();
    qCInfo(lcWeb) << "web helper ended by itself";
    setState(State::ended);
}

void WebPage::setState(State state) {
    if (m_state == state) {
        return;
    }
    m_state = state;
    Q_EMIT changed();
}

} // namespace tw
