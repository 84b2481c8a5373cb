#include "past_range.h"

#include <iterator>

namespace statistics {

namespace {

PastRange rangeOfRows(const Past& past, std::size_t from, std::size_t to)
{
    PastRange range;
    for (std::size_t row = from; row < to; ++row)
        range.add(past.inRow(row));
    return range;
}

std::size_t pieceCount(std::size_t rows, std::size_t piece)
{
    return (rows + piece - 1) / piece;
}

} // namespace

const PastRange& PastRanges::range(unsigned slot, const Past& past)
{
    Kept& kept = m_kept[slot];
    kept.lastDraw = m_draw;
    if (kept.count != past.count())
        readOn(kept, past);
    return kept.whole;
}

/// A row that was written anew has lost its old sample: its piece is read again.
void PastRanges::readOn(Kept& kept, const Past& past)
{
    kept.pieces.reserve(pieceCount(past.capacity(), kPiece)); // once: later samples take no memory
    kept.pieces.resize(pieceCount(past.size(), kPiece));
    const std::uint64_t oldest = past.count() - past.size();
    std::uint64_t number = kept.count < past.count() ? std::max(kept.count, oldest) : oldest;
    while (number < past.count()) {
        const auto row = static_cast<std::size_t>(number % past.capacity());
        const std::size_t piece = row / kPiece;
        const std::size_t end = std::min((piece + 1) * kPiece, past.size());
        kept.pieces[piece] = rangeOfRows(past, piece * kPiece, end);
        number += end - row;
    }
    kept.whole = {};
    for (const PastRange& piece : kept.pieces)
        kept.whole.add(piece);
    kept.count = past.count();
}

void PastRanges::endDraw()
{
    for (auto kept = m_kept.begin(); kept != m_kept.end();)
        kept = m_draw - kept->second.lastDraw < kKeptDraws ? std::next(kept) : m_kept.erase(kept);
    ++m_draw;
}

} // namespace statistics
