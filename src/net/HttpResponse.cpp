#include "net/HttpResponse.h"

namespace tw {

QByteArray HttpResponse::header(const QByteArray& name) const {
    const QByteArray wanted = name.toLower();
    for (const HttpHeader& header : headers) {
        if (header.first == wanted) {
            return header.second;
        }
    }
    return {};
}

} // namespace tw
