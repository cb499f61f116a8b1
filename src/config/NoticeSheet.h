// A notice presented over the whole window, the page dimmed behind it, until its notice is
// closed or acted on.
#pragma once

#include "notices/Notice.h"

#include <QWidget>

namespace tw {

class NoticeService;
class SymbolProvider;

class NoticeSheet final : public QWidget {
    Q_OBJECT
public:
    // Over `parent` when a notice for the sheet is due; null otherwise.
    static NoticeSheet* presentIfDue(NoticeService& service, const SymbolProvider* symbols,
                                     QWidget& parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    NoticeSheet(NoticeService& service, const SymbolProvider* symbols, QWidget& parent);
};

} // namespace tw
