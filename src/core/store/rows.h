#pragma once

#include "core/store/types.h"

#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace lx::store::detail {

// Text storage that never moves what it holds, so cells can keep string_views into it.
class Arena {
public:
    std::string_view store(std::string_view text)
    {
        if (text.empty())
            return {};
        if (text.size() > kChunk / 4)
            return keep(std::make_unique<char[]>(text.size()), text);
        if (m_used + text.size() > kChunk || m_chunks.empty()) {
            m_chunks.push_back(std::make_unique<char[]>(kChunk));
            m_used = 0;
        }
        char *p = m_chunks.back().get() + m_used;
        std::memcpy(p, text.data(), text.size());
        m_used += text.size();
        return {p, text.size()};
    }
    void clear()
    {
        m_chunks.clear();
        m_big.clear();
        m_used = 0;
    }

private:
    static constexpr size_t kChunk = 64 * 1024;
    std::string_view keep(std::unique_ptr<char[]> block, std::string_view text)
    {
        std::memcpy(block.get(), text.data(), text.size());
        m_big.push_back(std::move(block));
        return {m_big.back().get(), text.size()};
    }
    std::vector<std::unique_ptr<char[]>> m_chunks;
    std::vector<std::unique_ptr<char[]>> m_big;
    size_t m_used = 0;
};

// Rows of a fixed width, with their text in an arena.
class RowStore {
public:
    explicit RowStore(int width = 0) : m_width(width) {}
    void reset(int width)
    {
        m_width = width;
        m_cells.clear();
        m_arena.clear();
    }
    int width() const { return m_width; }
    size_t size() const { return m_width ? m_cells.size() / size_t(m_width) : 0; }
    bool empty() const { return m_cells.empty(); }
    const Cell *row(size_t i) const { return m_cells.data() + i * size_t(m_width); }
    Cell *row(size_t i) { return m_cells.data() + i * size_t(m_width); }
    void reserveRows(size_t n) { m_cells.reserve(n * size_t(m_width)); }
    void append(const Cell &cell)
    {
        Cell c = cell;
        if (c.kind == Cell::Text)
            c.text = m_arena.store(c.text);
        m_cells.push_back(c);
    }
    void set(size_t rowIndex, int column, const Cell &cell)
    {
        Cell c = cell;
        if (c.kind == Cell::Text)
            c.text = m_arena.store(c.text);
        row(rowIndex)[column] = c;
    }

private:
    int m_width;
    std::vector<Cell> m_cells;
    Arena m_arena;
};

} // namespace lx::store::detail
