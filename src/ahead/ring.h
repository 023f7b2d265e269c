// SPDX-License-Identifier: MIT
#pragma once

// Items in the order of their coming, at most a fixed number. They never move. A place is used again and again, and so
// is the room that the items in it own.

#include <cassert>
#include <cstddef>
#include <vector>

namespace quillon {

template <typename Item>
class Ring {
public:
    explicit Ring(std::size_t most) : places_(most) {}

    [[nodiscard]] std::size_t count() const { return count_; }

    /// A place behind all others. It holds what an earlier item left there.
    [[nodiscard]] Item& add() {
        assert(count_ < places_.size());
        return places_[(first_ + count_++) % places_.size()];
    }
    [[nodiscard]] Item& first() {
        assert(count_ > 0);
        return places_[first_];
    }
    [[nodiscard]] Item& last() {
        assert(count_ > 0);
        return places_[(first_ + count_ - 1) % places_.size()];
    }
    /// From the first on.
    [[nodiscard]] Item& operator[](std::size_t index) {
        assert(index < count_);
        return places_[(first_ + index) % places_.size()];
    }
    void dropLast() {
        assert(count_ > 0);
        --count_;
    }
    void dropFirst() {
        assert(count_ > 0);
        --count_;
        // One item at a time stays where the processor's cache has it.
        first_ = count_ == 0 ? 0 : (first_ + 1) % places_.size();
    }

private:
    std::vector<Item> places_;
    std::size_t first_ = 0;
    std::size_t count_ = 0;
};

}  // namespace quillon
