#pragma once

#include <statistics/table.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace test {

/// What the library's tree should hold: ids are given out last in, first out, and grow 100, 200, 400.
class TreeModel {
public:
    struct Node {
        std::string name;
        unsigned parent;
        std::vector<unsigned> children;
    };

    TreeModel()
    {
        addIds(100);
        nodes[takeId()] = {"", statistics::INVALID_ID, {}};
    }

    unsigned findOrAdd(const std::string& name, unsigned parent)
    {
        if (nodes.count(parent) == 0)
            return statistics::INVALID_ID;
        for (const unsigned child : nodes[parent].children)
            if (nodes[child].name == name)
                return child;
        if (m_free.empty())
            addIds(m_count);
        const unsigned id = takeId();
        nodes[id] = {name, parent, {}};
        nodes[parent].children.push_back(id);
        return id;
    }

    void remove(unsigned id)
    {
        if (id == 0 || nodes.count(id) == 0)
            return;
        std::vector<unsigned>& siblings = nodes[nodes[id].parent].children;
        siblings.erase(std::find(siblings.begin(), siblings.end(), id));
        erase(id);
    }

    std::string path(unsigned id) const
    {
        const Node& node = nodes.at(id);
        if (node.parent == statistics::INVALID_ID)
            return {};
        const std::string above = path(node.parent);
        return above.empty() ? node.name : above + '/' + node.name;
    }

    std::map<unsigned, Node> nodes;

private:
    void addIds(unsigned count)
    {
        for (unsigned id = m_count + count; id > m_count; --id)
            m_free.push_back(id - 1);
        m_count += count;
    }

    unsigned takeId()
    {
        const unsigned id = m_free.back();
        m_free.pop_back();
        return id;
    }

    void erase(unsigned id)
    {
        for (const unsigned child : nodes[id].children)
            erase(child);
        nodes.erase(id);
        m_free.push_back(id);
    }

    std::vector<unsigned> m_free; ///< the next one last
    unsigned m_count = 0;
};

} // namespace test
