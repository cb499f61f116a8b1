#include "notices/NoticePolicy.h"

#include <QRegularExpression>

namespace tw {

bool NoticePolicy::hasPriceLanguage(const QString& text) {
    static const QRegularExpression priceLanguage(
        QStringLiteral(R"([€$£¥]|\d\s?%|\brabatt|\bdiscount|\bcoupon|\bgutschein|\bsale\b|)"
                       R"(\bpreis|\bprice\b|\bangebot\b|\bpromo|\bcode\b)"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    return priceLanguage.match(text).hasMatch();
}

std::optional<Notice> NoticePolicy::allowed(const Notice& notice, const QString& channel) {
    if (channel == directChannel()) {
        return notice;
    }
    if (notice.kind == Notice::Kind::offer || notice.code) {
        return std::nullopt;
    }
    QStringList texts = notice.title.values() + notice.body.values();
    for (const Notice::Action& action : notice.actions) {
        texts += action.label.values();
    }
    for (const QString& text : texts) {
        if (hasPriceLanguage(text)) {
            return std::nullopt;
        }
    }
    Notice kept = notice;
    kept.actions.removeIf([](const Notice::Action& action) {
        using enum Notice::Action::Kind;
        return action.kind == url || action.kind == copy ||
               (action.kind == pane && (action.value == QStringLiteral("lockScreen") ||
                                        action.value == QStringLiteral("updates")));
    });
    return kept;
}

} // namespace tw
