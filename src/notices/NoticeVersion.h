// Version strings as notices compare them: numbers between dots, anything else ignored.
#pragma once

#include <QList>
#include <QString>

#include <compare>

namespace tw {

class NoticeVersion {
public:
    NoticeVersion() = delete;

    // Split at "."; the digits of each piece read together ("1.2b3" is 1, 23); none is 0.
    static QList<qint64> parts(const QString& version);
    // Piece by piece, a missing one counting as 0: "1.2" equals "1.2.0", "1.10" is above "1.9".
    static std::strong_ordering compare(const QString& a, const QString& b);
};

} // namespace tw
