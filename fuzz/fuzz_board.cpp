// The board decoder: any bytes decode or are refused without harm, whatever decodes is written
// and read back to the very same board, and its plan puts every tile it places on the screen.
#include "Require.h"
#include "backup/Board.h"
#include "backup/LayoutShare.h"
#include "grid/RectEdges.h"
#include "model/WidgetRegistry.h"

#include <QByteArray>

#include <cmath>
#include <cstdint>

using tw::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const tw::Board::Decoded decoded = tw::Board::decode(bytes);
    const auto* board = std::get_if<tw::Board>(&decoded);
    if (!board) {
        return 0;
    }
    require(std::isfinite(board->width) && board->width >= 0, "a finite extent");
    for (const tw::Board::Item& item : board->items) {
        require(!item.kind.isEmpty() && std::isfinite(item.dx) && std::isfinite(item.dy),
                "every item has a kind and a finite offset");
    }
    static const tw::WidgetRegistry registry;
    const QRectF screen(0, 0, 1440, 900);
    const tw::LayoutShare::Plan plan =
        tw::LayoutShare::plan(*board, {}, registry, screen, tw::GridStore::Replacing::no);
    require(plan.instances.size() + plan.unavailable + plan.atMaximum == board->items.size(),
            "every item is placed or counted");
    for (const tw::WidgetInstance& instance : plan.instances) {
        if (instance.posX && instance.posY) {
            const QRectF frame =
                tw::RectEdges::tileRect(*instance.posX, *instance.posY, instance.pixelSize());
            require(screen.adjusted(-0.5, -0.5, 0.5, 0.5).contains(frame), "placed on the screen");
        }
    }
    const QByteArray encoded = board->encode();
    // Written indented, a board near the limit may grow past it.
    if (encoded.size() >= tw::Board::maxBytes) {
        return 0;
    }
    const tw::Board::Decoded again = tw::Board::decode(encoded);
    const auto* back = std::get_if<tw::Board>(&again);
    require(back != nullptr, "an encoded board decodes");
    require(back->items == board->items && back->look == board->look, "a round trip keeps it");
    return 0;
}
