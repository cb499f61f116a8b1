// How one element of a custom widget measures and draws: its type, fonts and colours at a type
// scale, from the values of one moment.
#pragma once

#include "custom/CustomElement.h"
#include "custom/CustomValueBag.h"

#include <QColor>
#include <QFont>
#include <QList>
#include <QRectF>
#include <QString>

class QPainter;

namespace tw {

struct FaceContext;

class CustomElementPainter {
public:
    // What an element asks of its row at a type scale.
    struct Need {
        qreal width = 0;
        qreal height = 0;
        // Takes a share of the row's room beyond `width`.
        bool growsWide = false;
        // Takes a share of the tile's room beyond `height`.
        bool growsTall = false;
        // Shrinks below `width` by eliding or fitting its text.
        bool shrinks = false;
    };

    // `points` is the sparkline's history (ignored by other elements); `accent` the widget's.
    CustomElementPainter(const CustomElement& element, const CustomValueBag& values,
                         const FaceContext& context, const QColor& accent, QList<double> points);

    Need need(qreal scale) const;
    // The width of a ring standing in a row this tall.
    qreal widthAt(qreal height, qreal scale) const;
    void paint(QPainter& painter, const QRectF& rect, qreal scale) const;

    static QFont font(CustomTextStyle style, qreal scale);
    static qreal lineHeight(CustomTextStyle style, qreal scale);
    // A colour of the format's vocabulary on this glass; `fallback` for anything else.
    static QColor color(const QString& name, const FaceContext& context, const QColor& accent,
                        const QColor& fallback);

private:
    CustomTextStyle style() const;
    QColor ink(const QColor& fallback) const;
    // A gauge's or bar's words beside its number: the text without the reading it draws.
    QString caption() const;
    void paintGauge(QPainter& painter, const QRectF& rect, qreal scale) const;
    void paintBar(QPainter& painter, const QRectF& rect, qreal scale) const;
    void paintLine(QPainter& painter, const QRectF& rect, qreal scale) const;
    void paintColumns(QPainter& painter, const QRectF& rect, qreal scale) const;
    void paintList(QPainter& painter, const QRectF& rect, qreal scale) const;
    void paintImage(QPainter& painter, const QRectF& rect, qreal scale) const;

    // Held by the caller for the painter's life.
    const CustomElement* m_element;
    const CustomValueBag* m_values;
    const FaceContext* m_context;
    QColor m_accent;
    QList<double> m_points;
    // The element's number (for values, rings, bars and colour rules) and its words.
    std::optional<double> m_number;
    QString m_text;
};

} // namespace tw
