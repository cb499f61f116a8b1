// The editor's previews: one custom widget drawn by its real face at every size it allows, one
// under the other over a piece of desktop and all at one scale that fits them in, from the
// sample values or from a tested answer.
#pragma once

#include "custom/CustomBoard.h"
#include "faces/FaceContext.h"
#include "faces/TileRenderer.h"

#include <QWidget>

#include <functional>

namespace tw {

class FaceRegistry;

class CustomPreviewStrip final : public QWidget {
    Q_OBJECT
public:
    CustomPreviewStrip(const FaceRegistry& faces, std::function<FaceContext()> base,
                       QWidget* parent = nullptr);

    // `board` holds the definition under its kind; `sample` draws it from the sample values,
    // else from the board's source states.
    void show(const CustomWidgetDefinition& definition, const CustomBoard& board, bool sample);
    const CustomBoard& board() const { return m_board; }
    bool isSample() const { return m_sample; }

    QSize sizeHint() const override { return {320, 520}; }
    QSize minimumSizeHint() const override { return {200, 200}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    // One scale for every size, so that all of them fit the strip and compare at a glance.
    qreal scale() const;

    const FaceRegistry& m_faces;
    std::function<FaceContext()> m_base;
    CustomWidgetDefinition m_definition;
    CustomBoard m_board;
    bool m_sample = true;
    // Drawing fills the renderer's shadow cache, which is no change anyone observes.
    mutable TileRenderer m_renderer;
};

} // namespace tw
