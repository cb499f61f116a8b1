// The board decoder: any bytes decode or are refused without harm, and whatever decodes is
// written and read back to the very same board.
#include "Require.h"
#include "backup/Board.h"

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
