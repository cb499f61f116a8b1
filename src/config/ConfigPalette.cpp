#include "config/ConfigPalette.h"

namespace tw {

namespace {

QString css(const QColor& c) {
    return c.alpha() == 255 ? c.name(QColor::HexRgb)
                            : QStringLiteral("rgba(%1, %2, %3, %4)")
                                  .arg(c.red())
                                  .arg(c.green())
                                  .arg(c.blue())
                                  .arg(c.alpha());
}

} // namespace

ConfigPalette ConfigPalette::of(ColorScheme scheme) {
    if (scheme == ColorScheme::Dark) {
        return {.scheme = scheme,
                .window = QColor(0x1e, 0x1f, 0x24),
                .sidebar = QColor(0x26, 0x27, 0x2d),
                .sidebarSelected = QColor(255, 255, 255, 26),
                .card = QColor(0x2a, 0x2b, 0x32),
                .cardBorder = QColor(255, 255, 255, 20),
                .text = QColor(0xf2, 0xf2, 0xf5),
                .secondaryText = QColor(0xa0, 0xa2, 0xab),
                .accent = QColor(0x4c, 0x8d, 0xff),
                .accentText = QColor(0xff, 0xff, 0xff),
                .field = QColor(0x1a, 0x1b, 0x20),
                .fieldBorder = QColor(255, 255, 255, 36),
                .separator = QColor(255, 255, 255, 20),
                .danger = QColor(0xff, 0x6b, 0x61)};
    }
    return {.scheme = scheme,
            .window = QColor(0xf5, 0xf5, 0xf7),
            .sidebar = QColor(0xeb, 0xeb, 0xef),
            .sidebarSelected = QColor(0, 0, 0, 20),
            .card = QColor(0xff, 0xff, 0xff),
            .cardBorder = QColor(0, 0, 0, 22),
            .text = QColor(0x1d, 0x1d, 0x1f),
            .secondaryText = QColor(0x6e, 0x6e, 0x73),
            .accent = QColor(0x0a, 0x6c, 0xe6),
            .accentText = QColor(0xff, 0xff, 0xff),
            .field = QColor(0xff, 0xff, 0xff),
            .fieldBorder = QColor(0, 0, 0, 40),
            .separator = QColor(0, 0, 0, 20),
            .danger = QColor(0xd7, 0x2c, 0x20)};
}

QPalette ConfigPalette::palette() const {
    QPalette p;
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, field);
    p.setColor(QPalette::AlternateBase, card);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::PlaceholderText, secondaryText);
    p.setColor(QPalette::Button, card);
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::Highlight, accent);
    p.setColor(QPalette::HighlightedText, accentText);
    p.setColor(QPalette::ToolTipBase, card);
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::Link, accent);
    p.setColor(QPalette::Mid, fieldBorder);
    return p;
}

QString ConfigPalette::styleSheet() const {
    const QColor hover = isDark() ? QColor(255, 255, 255, 18) : QColor(0, 0, 0, 12);
    const QColor pressed = isDark() ? QColor(255, 255, 255, 30) : QColor(0, 0, 0, 24);
    const QColor track = isDark() ? QColor(255, 255, 255, 40) : QColor(0, 0, 0, 34);
    const QColor handle = isDark() ? QColor(255, 255, 255, 70) : QColor(0, 0, 0, 60);
    QString s = QStringLiteral(R"(
QWidget#configWindow, QWidget#configRoot, QWidget#page, QScrollArea, QScrollArea > QWidget > QWidget { background: @window; }
QWidget { color: @text; font-size: 13px; selection-background-color: @accent; selection-color: @accentText; }
QLabel#title { font-size: 22px; font-weight: 600; }
QWidget#guide { background: rgba(0, 0, 0, 110); }
QLabel#guideTitle { font-size: 18px; font-weight: 600; }
QLabel#sectionHeading { font-size: 13px; font-weight: 600; color: @secondary; padding: 14px 4px 4px 4px; }
QLabel#caption { color: @secondary; font-size: 12px; }
QLabel#notice { color: @secondary; font-size: 12px; }
QLabel#error { color: @danger; font-size: 12px; }
QLabel#noticeTitle { font-size: 13px; font-weight: 600; }
QLabel#noticeCode { font-family: monospace; font-size: 12px; background: @field; border: 1px dashed @fieldBorder; border-radius: 6px; padding: 3px 8px; }
QFrame#card { background: @card; border: 1px solid @cardBorder; border-radius: 10px; }
QFrame#rowSeparator { background: @separator; max-height: 1px; min-height: 1px; border: none; }
QListWidget#sidebar { background: @sidebar; border: none; border-right: 1px solid @separator; padding: 10px 8px; outline: none; }
QListWidget#sidebar::item { padding: 7px 10px; border-radius: 7px; margin: 1px 0; color: @text; }
QListWidget#sidebar::item:hover { background: @hover; }
QListWidget#sidebar::item:selected { background: @selected; color: @text; }
QPushButton { background: @card; border: 1px solid @fieldBorder; border-radius: 7px; padding: 5px 14px; min-height: 18px; }
QPushButton:hover { background: @hover; }
QPushButton:pressed { background: @pressed; }
QPushButton:focus { border: 1px solid @accent; }
QPushButton:disabled { color: @secondary; background: transparent; border-color: @separator; }
QPushButton#primary { background: @accent; color: @accentText; border: 1px solid @accent; font-weight: 600; }
QPushButton#primary:hover { background: @accentHover; }
QLineEdit, QComboBox, QSpinBox, QDateEdit, QTimeEdit { background: @field; border: 1px solid @fieldBorder; border-radius: 7px; padding: 5px 9px; selection-background-color: @accent; selection-color: @accentText; }
QLineEdit:disabled, QComboBox:disabled, QSpinBox:disabled, QDateEdit:disabled, QTimeEdit:disabled { color: @secondary; background: transparent; border-color: @separator; }
QLineEdit:focus, QComboBox:focus, QSpinBox:focus, QDateEdit:focus, QTimeEdit:focus { border: 2px solid @accent; padding: 4px 8px; }
QComboBox::drop-down, QDateEdit::drop-down { border: none; width: 22px; }
QComboBox::down-arrow, QDateEdit::down-arrow { image: url(@chevron); width: 10px; height: 6px; }
QTimeEdit::up-button, QTimeEdit::down-button { width: 0; border: none; }
QCalendarWidget QWidget { alternate-background-color: @card; }
QCalendarWidget QToolButton { background: transparent; border: none; padding: 4px 8px; font-weight: 600; }
QCalendarWidget QAbstractItemView { background: @card; selection-background-color: @accent; selection-color: @accentText; outline: none; }
QComboBox QAbstractItemView { background: @card; border: 1px solid @cardBorder; selection-background-color: @accent; selection-color: @accentText; outline: none; }
QCheckBox, QRadioButton { spacing: 8px; background: transparent; }
QCheckBox::indicator { width: 16px; height: 16px; border-radius: 4px; border: 1px solid @fieldBorder; background: @field; }
QCheckBox::indicator:checked { background: @accent; border: 1px solid @accent; }
QRadioButton::indicator { width: 14px; height: 14px; border-radius: 8px; border: 1px solid @fieldBorder; background: @field; }
QRadioButton::indicator:checked { width: 6px; height: 6px; border: 5px solid @accent; background: @accentText; }
QMenuBar { background: @sidebar; border-bottom: 1px solid @separator; }
QMenuBar::item { padding: 4px 10px; background: transparent; border-radius: 5px; }
QMenuBar::item:selected { background: @hover; }
QSlider::groove:horizontal { height: 4px; border-radius: 2px; background: @track; }
QSlider::sub-page:horizontal { height: 4px; border-radius: 2px; background: @accent; }
QSlider::handle:horizontal { width: 18px; height: 18px; margin: -8px 0; border-radius: 9px; background: #ffffff; border: 1px solid @fieldBorder; }
QScrollBar:vertical { background: transparent; width: 10px; margin: 2px; }
QScrollBar::handle:vertical { background: @handle; border-radius: 3px; min-height: 30px; }
QScrollBar::add-line, QScrollBar::sub-line { height: 0; width: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QMenu { background: @card; border: 1px solid @cardBorder; padding: 4px; }
QMenu::item { padding: 5px 18px; border-radius: 5px; }
QMenu::item:selected { background: @accent; color: @accentText; }
QToolTip { background: @card; color: @text; border: 1px solid @cardBorder; padding: 4px; }
QPlainTextEdit#jsonEditor { background: @field; border: 1px solid @fieldBorder; border-radius: 8px; padding: 6px; selection-background-color: @accent; selection-color: @accentText; }
QPlainTextEdit#jsonEditor:focus { border: 1px solid @accent; }
QPlainTextEdit#jsonEditor QScrollBar:horizontal { background: transparent; height: 10px; margin: 2px; }
QPlainTextEdit#jsonEditor QScrollBar::handle:horizontal { background: @handle; border-radius: 3px; min-width: 30px; }
QPlainTextEdit#jsonEditor QAbstractScrollArea::corner { background: transparent; }
QListWidget#issues { background: @card; border: 1px solid @cardBorder; border-radius: 8px; padding: 4px; outline: none; }
QListWidget#issues::item { padding: 3px 4px; border-radius: 5px; color: @text; }
QListWidget#issues::item:hover { background: @hover; }
QListWidget#issues::item:selected { background: @hover; color: @text; }
QLabel#testResult { background: @card; border: 1px solid @cardBorder; border-radius: 8px; padding: 8px; color: @text; font-size: 11px; }
QFrame#banner { background: @card; border: 1px solid @cardBorder; border-left: 3px solid @accent; border-radius: 8px; }
QPushButton#danger { background: @danger; color: #ffffff; border: 1px solid @danger; font-weight: 600; }
QPushButton#primary:disabled, QPushButton#danger:disabled { background: transparent; color: @secondary; border-color: @separator; font-weight: 600; }
QPushButton#menuButton { padding-right: 26px; }
QPushButton#menuButton::menu-indicator { image: url(@chevron); width: 10px; height: 6px; subcontrol-position: right center; subcontrol-origin: padding; right: 9px; }
QPushButton#flat { background: transparent; border: none; color: @accent; padding: 5px 6px; }
QPushButton#flat:hover { background: @hover; }
QLineEdit#gallery-search { padding: 7px 10px; border-radius: 9px; font-size: 14px; }
QLineEdit#gallery-search:focus { padding: 6px 9px; }
QLabel#cardName { font-size: 14px; font-weight: 600; }
QPushButton#suggestion { background: transparent; border: none; border-radius: 7px; padding: 0; text-align: left; }
QPushButton#suggestion:hover { background: @hover; }
QPushButton#suggestion:focus { border: 1px solid @accent; }
QLabel#suggestionTitle { font-weight: 600; }
QLabel#emptyTitle { font-size: 17px; font-weight: 600; }
QPushButton#chip { background: transparent; border: 1px solid @fieldBorder; border-radius: 13px; padding: 4px 13px; min-height: 16px; }
QPushButton#chip:hover { background: @hover; }
QPushButton#chip:focus { border: 1px solid @accent; }
QPushButton#chip:checked { background: @accent; color: @accentText; border: 1px solid @accent; }
QPushButton#segment { background: @field; border: 1px solid @fieldBorder; border-left: none; border-radius: 0; margin: 0; padding: 3px 0; min-height: 16px; font-size: 11px; }
QPushButton#segment[edge="first"] { border-left: 1px solid @fieldBorder; border-top-left-radius: 6px; border-bottom-left-radius: 6px; }
QPushButton#segment[edge="last"] { border-top-right-radius: 6px; border-bottom-right-radius: 6px; }
QPushButton#segment[edge="only"] { border-left: 1px solid @fieldBorder; border-radius: 6px; }
QPushButton#segment:hover { background: @hover; }
QPushButton#segment[dense="true"] { font-size: 10px; }
QPushButton#segment[roomy="true"] { padding: 5px 16px; font-size: 12px; }
QPushButton#segment:checked { background: @accent; color: @accentText; border-color: @accent; }
QPushButton#segment:focus { border: 1px solid @accent; }
QPushButton#segment:checked:focus { border: 2px solid rgba(255, 255, 255, 150); }
)");
    const QColor accentHover = accent.lighter(110);
    const std::pair<const char*, QColor> names[] = {
        {"@window", window},
        {"@sidebar", sidebar},
        {"@selected", sidebarSelected},
        {"@cardBorder", cardBorder},
        {"@card", card},
        {"@text", text},
        {"@secondary", secondaryText},
        {"@accentText", accentText},
        {"@accentHover", accentHover},
        {"@accent", accent},
        {"@fieldBorder", fieldBorder},
        {"@field", field},
        {"@separator", separator},
        {"@danger", danger},
        {"@hover", hover},
        {"@pressed", pressed},
        {"@track", track},
        {"@handle", handle},
    };
    // Longer names first in the table where one is a prefix of another ("@accentText" before
    // "@accent"), so a shorter name never eats a longer one.
    for (const auto& [name, colour] : names) {
        s.replace(QLatin1String(name), css(colour));
    }
    s.replace(QLatin1String("@chevron"), isDark() ? QLatin1String(":/config/chevron-dark.svg")
                                                  : QLatin1String(":/config/chevron-light.svg"));
    return s;
}

} // namespace tw
