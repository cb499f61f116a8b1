// Starting at login through an XDG autostart entry, "com.tarnwick.Tarnwick.desktop" in the
// autostart folder of the configuration home, which every freedesktop session reads at login.
#pragma once

#include "platform/LoginItem.h"

#include <memory>

namespace tw {

class XdgAutostart final : public LoginItem {
public:
    // The flag the entry starts the program with, so that a start at login is known as one.
    static constexpr const char* loginFlag = "--login-item";

    // `directory` is the autostart folder; `program` the executable the entry starts.
    XdgAutostart(QString directory, QString program);
    // $XDG_CONFIG_HOME/autostart, starting this executable.
    static std::unique_ptr<XdgAutostart> forThisProgram();

    bool isEnabled() const override;
    bool setEnabled(bool enabled) override;
    bool startedAtLogin(const QStringList& arguments) const override;

    QString entryPath() const;
    // The entry's text; the program's path quoted as desktop entries quote.
    QByteArray entry() const;

private:
    QString m_directory;
    QString m_program;
};

} // namespace tw
