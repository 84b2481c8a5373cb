#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace statistics {

/// The ids of a node's children. Most nodes have none: these hold one pointer, which is null.
class ChildList {
public:
    bool empty() const { return size() == 0; }
    std::size_t size() const { return m_list ? m_list->ids.size() : 0; }
    unsigned operator[](std::size_t position) const { return m_list->ids[position]; }
    const unsigned* begin() const { return m_list ? m_list->ids.data() : nullptr; }
    const unsigned* end() const { return begin() + size(); }

    /// The ids, to be changed. Takes memory at the first call.
    std::vector<unsigned>& ids() { return list().ids; }
    /// How many children were removed and still have their place among the ids. Takes memory as `ids`.
    unsigned& gaps() { return list().gaps; }

private:
    struct List {
        std::vector<unsigned> ids;
        unsigned gaps = 0;
    };

    List& list()
    {
        if (!m_list)
            m_list = std::make_unique<List>();
        return *m_list;
    }

    std::unique_ptr<List> m_list;
};

} // namespace statistics
