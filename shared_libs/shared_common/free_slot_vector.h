#pragma once

#include "assertion.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

/// Keeps elements by value in one contiguous store and gives each a 32-bit index that stays valid while other
/// elements come and go. Freed slots form a list through the store itself: the slot freed last is used first,
/// untouched slots in ascending order after that.
///
/// `emplace` and `erase` take constant time apart from growth, which moves all elements: a reference into the
/// container doesn't survive an `emplace`. A walk visits the slots that aren't free in ascending order, reads
/// the size anew at each step and so tolerates elements that come and go meanwhile; it takes time in
/// proportion to `size()`, free slots included. Indices carry no generation: the next `emplace` may give out
/// the one just erased. An access to an index that isn't live is reported and throws
/// `std::bad_variant_access`. Not copyable; a moved-from container is empty.
///
///     free_slot_vector<std::string> names;
///     const auto id = names.emplace("first");
///     for (auto i = names.begin(); i != names.end(); i = names.next(i))
///         print(names[i]);
template<typename T>
class free_slot_vector {
public:
    using index_type = std::uint32_t;
    /// Never a slot: the end of a walk.
    static constexpr index_type npos = static_cast<index_type>(-1);

    free_slot_vector() = default;
    free_slot_vector(free_slot_vector&& other) noexcept
        : slots_(std::move(other.slots_)), firstFree_(std::exchange(other.firstFree_, 0))
    {
        other.slots_.clear();
    }
    free_slot_vector& operator=(free_slot_vector&& other) noexcept
    {
        slots_ = std::move(other.slots_);
        firstFree_ = std::exchange(other.firstFree_, 0);
        other.slots_.clear();
        return *this;
    }
    ~free_slot_vector() = default;

    /// Number of slots of any state, not of live elements.
    index_type size() const { return static_cast<index_type>(slots_.size()); }
    bool empty() const { return begin() == npos; }
    /// True for a slot that isn't free. Makes no report.
    bool contains(index_type idx) const { return idx < size() && !slots_[idx].isFree(); }
    /// The same, but an index for which it is false is reported.
    bool check(index_type idx) const { return ORV_ASSERT(idx < size()) && check(slots_[idx]); }

    T& operator[](index_type idx) { return const_cast<T&>(std::as_const(*this)[idx]); }
    const T& operator[](index_type idx) const
    {
        if (idx < size() && slots_[idx].isLive())
            return slots_[idx].element();
        failAccess(idx);
    }

    /// Builds an element from `args` in the slot that `nextIndex` names. If the constructor throws, the slot
    /// stays neither free nor live until it is erased.
    template<typename... Args>
    index_type emplace(Args&&... args)
    {
        if (firstFree_ >= size())
            grow(std::max(size(), index_type{kFirstGrowth}));
        const index_type idx = firstFree_;
        Slot& slot = slots_[idx];
        // A free list whose head isn't free is corrupt: there is no link to go on with.
        if (!ORV_ASSERT(slot.isFree()))
            throw std::bad_variant_access();
        firstFree_ = slot.link();
        slot.construct(std::forward<Args>(args)...);
        return idx;
    }

    /// Destroys the element and frees the slot. A slot that is free already stays as it is.
    void erase(index_type idx)
    {
        if (!ORV_ASSERT(idx < size()) || slots_[idx].isFree())
            return;
        slots_[idx].release(firstFree_);
        firstFree_ = idx;
    }

    /// Appends `extraSize` free slots. Only for a store without free slots.
    void grow(index_type extraSize)
    {
        ORV_ASSERT(extraSize > 0);
        ORV_ASSERT(firstFree_ >= size());
        const index_type old = size();
        const index_type grown = old + extraSize;
        if (grown > slots_.capacity())
            slots_.reserve(grown);
        for (index_type idx = old; idx < grown; ++idx)
            slots_.emplace_back(idx + 1);
        firstFree_ = old;
    }

    /// Destroys all elements and drops all slots; keeps the memory.
    void clear()
    {
        slots_.clear();
        firstFree_ = 0;
    }

    /// The index that the next `emplace` will return.
    index_type nextIndex() const { return firstFree_; }

    index_type begin() const { return firstUsed(0); }
    index_type next(index_type idx) const { return firstUsed(idx + 1); }
    static constexpr index_type end() { return npos; }

private:
    static constexpr index_type kFirstGrowth = 64;

    /// Without assignment, so that `std::variant` doesn't build a small trivial element aside and copy it in,
    /// which would leave the slot free when a constructor throws.
    struct Element {
        template<typename... Args>
        explicit Element(std::in_place_t /*unused*/, Args&&... args) : value(std::forward<Args>(args)...)
        {
        }
        Element(Element&& other) noexcept : value(std::move(other.value)) {}
        Element& operator=(Element&&) = delete;
        ~Element() = default;

        T value;
    };

    /// Live with an element, free with the link to the next free slot, or neither while under construction.
    class Slot {
    public:
        explicit Slot(index_type next) : content_(std::in_place_index<kFree>, next) {}

        bool isFree() const { return content_.index() == kFree; }
        bool isLive() const { return content_.index() == kLive; }
        T& element() { return std::get_if<kLive>(&content_)->value; }
        const T& element() const { return std::get_if<kLive>(&content_)->value; }
        index_type link() const { return *std::get_if<kFree>(&content_); }
        template<typename... Args>
        void construct(Args&&... args)
        {
            content_.template emplace<kLive>(std::in_place, std::forward<Args>(args)...);
        }
        /// `next` is read when the element is gone: its destructor may have freed or taken other slots.
        void release(const index_type& next) { content_.template emplace<kFree>(next); }

    private:
        static constexpr std::size_t kLive = 0;
        static constexpr std::size_t kFree = 1;

        std::variant<Element, index_type> content_;
    };

    static bool check(const Slot& slot)
    {
        return ORV_ASSERT(!slot.isFree() && "Try to access unreferenced slot!");
    }

    [[noreturn]] void failAccess(index_type idx) const
    {
        check(idx);
        throw std::bad_variant_access();
    }

    index_type firstUsed(index_type idx) const
    {
        const index_type count = size();
        while (idx < count && slots_[idx].isFree())
            ++idx;
        return idx < count ? idx : npos;
    }

    std::vector<Slot> slots_;
    index_type firstFree_ = 0;
};
