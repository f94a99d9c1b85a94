#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace quillon {

/// Maps whole numbers from 0 on to values. It suits numbers that are given out one after the other:
/// they share pages, and a page without a value takes no memory. Not synchronised.
template <typename Value>
class PagedMap
{
public:
    /// Returns the value of a number, or null. It stays in its place until it is erased.
    const Value *find(std::uint32_t number) const
    {
        const Page *page =
            number / PAGE_SIZE < pages_.size() ? pages_[number / PAGE_SIZE].get() : nullptr;
        const std::size_t at = number % PAGE_SIZE;
        return page != nullptr && page->isTaken[at] ? &page->values[at] : nullptr;
    }
    Value *find(std::uint32_t number)
    {
        return const_cast<Value *>(std::as_const(*this).find(number));
    }

    /// Gives the number a value, in the place of the one it has.
    void set(std::uint32_t number, const Value &value)
    {
        if (number / PAGE_SIZE >= pages_.size())
            pages_.resize(number / PAGE_SIZE + 1);
        std::unique_ptr<Page> &page = pages_[number / PAGE_SIZE];
        if (!page)
            page = std::make_unique<Page>();
        page->values[number % PAGE_SIZE] = value;
        page->isTaken.set(number % PAGE_SIZE);
    }
    /// Takes the value of a number away, if it has one.
    void erase(std::uint32_t number)
    {
        if (find(number) == nullptr)
            return;
        std::unique_ptr<Page> &page = pages_[number / PAGE_SIZE];
        page->isTaken.reset(number % PAGE_SIZE);
        if (page->isTaken.none())
            page.reset();
    }

    /// Calls the function with each number and its value, in order, until it returns true. Returns
    /// whether it did.
    template <typename Function>
    bool any(const Function &function) const
    {
        for (std::size_t page = 0; page < pages_.size(); ++page)
            for (std::size_t at = 0; pages_[page] && at < PAGE_SIZE; ++at)
                if (pages_[page]->isTaken[at] &&
                    function(static_cast<std::uint32_t>(page * PAGE_SIZE + at),
                             std::as_const(pages_[page]->values[at])))
                    return true;
        return false;
    }
    /// Returns the bytes of memory held, including unused capacity.
    std::size_t bytes() const
    {
        std::size_t bytes = pages_.capacity() * sizeof(pages_[0]);
        for (const auto &page : pages_)
            bytes += page ? sizeof(Page) : 0;
        return bytes;
    }

private:
    static constexpr std::size_t PAGE_SIZE = 256;
    struct Page
    {
        std::array<Value, PAGE_SIZE> values = {};
        std::bitset<PAGE_SIZE> isTaken;
    };

    std::vector<std::unique_ptr<Page>> pages_;
};

} // namespace quillon
