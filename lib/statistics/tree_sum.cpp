// Sums over children. A child that is a sum of its own is added up in the same walk, not by calling its
// getter: each level of the walk has its sum.

#include "tree.h"

#include "call_scope.h"

#include <utility>

namespace statistics {

CounterValue Tree::sumChildren(unsigned node, std::size_t column, Render& render) const
{
    if (!m_nodes.contains(node))
        return {};
    const CallScope call;
    Sums sums = std::exchange(m_sums, {}); // a getter may ask for another sum meanwhile
    sums.push_back({column, {}});
    const unsigned topDepth = m_nodes[node].depth;
    ChildWalk walk(*this, node);
    do {
        foldSums(sums, walk, topDepth);
        while (walk.next()) {
            addChildValue(sums, walk, render);
            // The getter may have removed the node whose children are being added up.
            foldSums(sums, walk, topDepth);
        }
    } while (walk.leave());
    foldSums(sums, 1);
    CounterValue sum = std::move(sums.front().sum);
    sums.clear();
    m_sums = std::move(sums);
    return sum;
}

void Tree::addChildValue(Sums& sums, ChildWalk& walk, Render& render) const
{
    const unsigned item = m_nodes[walk.child()].item;
    const Counter* counter = render.getCounter(item);
    const auto* nested = counter ? counter->getter.target<ChildrenSum>() : nullptr;
    if (!nested)
        sums.back().sum += render.itemValue(item, sums.back().column);
    else if (walk.enter())
        sums.push_back({nested->column, {}});
}

/// Levels that the walk has left count for those around them.
void Tree::foldSums(Sums& sums, const ChildWalk& walk, unsigned topDepth) const
{
    if (walk.parent() != INVALID_ID)
        foldSums(sums, m_nodes[walk.parent()].depth - topDepth + 1);
}

void Tree::foldSums(Sums& sums, std::size_t count)
{
    for (; sums.size() > count; sums.pop_back())
        sums[sums.size() - 2].sum += sums.back().sum;
}

} // namespace statistics
