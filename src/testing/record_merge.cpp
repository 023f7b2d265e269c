// SPDX-License-Identifier: MIT
#include "testing/record_merge.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string_view>

namespace quillon {

namespace {

constexpr int kNone = -1;

// One side's list beside the base. Items are numbered by their place in their own list.
struct Side {
    explicit Side(const Records& all, const Records& base) : records(all), baseOf(all.size(), kNone) {
        std::map<std::string_view, std::vector<int>> free;  // numbers of equal base records, the last one first
        for (std::size_t i = base.size(); i-- > 0;) free[base[i]].push_back(static_cast<int>(i));
        itemOf.assign(base.size(), kNone);
        for (std::size_t i = 0; i < all.size(); ++i) {
            auto& numbers = free[all[i]];
            if (numbers.empty())
                continue;
            baseOf[i] = numbers.back();
            itemOf[static_cast<std::size_t>(numbers.back())] = static_cast<int>(i);
            numbers.pop_back();
        }
        pairChanges();
    }

    [[nodiscard]] bool keeps(int base) const { return itemOf[static_cast<std::size_t>(base)] != kNone; }
    /// The item that stands in the place of a base record, kNone where it was deleted.
    [[nodiscard]] int changed(int base) const { return changedTo[static_cast<std::size_t>(base)]; }
    [[nodiscard]] std::string text(int item) const {
        return item == kNone ? std::string() : records[static_cast<std::size_t>(item)];
    }

    const Records& records;
    std::vector<int> baseOf;     // by item: the base record that it is, kNone for a new one
    std::vector<int> changes;    // by item: the base record in whose place a new item stands, or kNone
    std::vector<int> itemOf;     // by base record: its item, kNone where it is gone
    std::vector<int> changedTo;  // by base record that is gone: the new item in its place, or kNone

private:
    // A record that is gone and a new one between the same neighbours are one record that was changed.
    void pairChanges() {
        changes.assign(records.size(), kNone);
        changedTo.assign(itemOf.size(), kNone);
        std::map<int, std::vector<int>> fresh;  // new items by the base record ahead of them
        int ahead = kNone;
        for (std::size_t i = 0; i < baseOf.size(); ++i) {
            if (baseOf[i] != kNone)
                ahead = baseOf[i];
            else
                fresh[ahead].push_back(static_cast<int>(i));
        }
        ahead = kNone;
        std::size_t next = 0;
        for (std::size_t base = 0; base < itemOf.size(); ++base) {
            if (itemOf[base] != kNone) {
                ahead = static_cast<int>(base);
                next = 0;
            } else if (const auto& items = fresh[ahead]; next < items.size()) {
                changedTo[base] = items[next];
                changes[static_cast<std::size_t>(items[next++])] = static_cast<int>(base);
            }
        }
    }
};

// One record of the result.
struct Placed {
    int base = kNone;  // the base record that it is or stands for; kNone for a new one
    std::string text;
};

class Merge {
public:
    Merge(const Records& base, const Records& ours, const Records& theirs, MergeChoice choice)
        : base_(base), ours_(ours, base), theirs_(theirs, base), takeOurs_(choice == MergeChoice::Ours) {}

    RecordMerge run() {
        for (int i = 0; i < static_cast<int>(theirs_.records.size()); ++i) placeTheirs(i);
        orderCommon();
        for (int i = 0; i < static_cast<int>(ours_.records.size()); ++i) placeOurs(i);
        for (int base = 0; base < static_cast<int>(base_.size()); ++base) tellConflict(base);
        for (auto& one : placed_) result_.records.push_back(std::move(one.text));
        return std::move(result_);
    }

private:
    // What stands for a base record that neither side keeps, or that one keeps and the other does not.
    [[nodiscard]] bool inConflict(int base) const {
        if (ours_.keeps(base) || theirs_.keeps(base))
            return false;
        const int mine = ours_.changed(base);
        const int other = theirs_.changed(base);
        return (mine == kNone) != (other == kNone) || ours_.text(mine) != theirs_.text(other);
    }

    void placeTheirs(int item) {
        const auto at = static_cast<std::size_t>(item);
        const int kept = theirs_.baseOf[at];
        if (kept != kNone) {
            if (ours_.keeps(kept))
                placed_.push_back({kept, theirs_.records[at]});
            else if (ours_.changed(kept) != kNone)
                placed_.push_back({kept, ours_.text(ours_.changed(kept))});
            return;
        }
        const int replaced = theirs_.changes[at];
        if (replaced != kNone && takeOurs_ && inConflict(replaced)) {
            if (ours_.changed(replaced) != kNone)
                placed_.push_back({replaced, ours_.text(ours_.changed(replaced))});
            return;
        }
        if (replaced == kNone)
            ++added_[theirs_.records[at]];
        placed_.push_back({replaced, theirs_.records[at]});
    }

    // The records that both sides keep, in the order of the side that moved some.
    void orderCommon() {
        const auto isCommon = [this](int base) { return base != kNone && ours_.keeps(base) && theirs_.keeps(base); };
        std::vector<int> mine;
        std::vector<int> other;
        std::ranges::copy_if(ours_.baseOf, std::back_inserter(mine), isCommon);
        std::ranges::copy_if(theirs_.baseOf, std::back_inserter(other), isCommon);
        if (mine == other || std::ranges::is_sorted(mine))
            return;
        const bool bothMoved = !std::ranges::is_sorted(other);
        if (bothMoved)
            result_.conflicts.push_back({});
        if (bothMoved && !takeOurs_)
            return;
        auto next = mine.begin();
        for (auto& one : placed_) {
            if (!isCommon(one.base))
                continue;
            one = {*next, base_[static_cast<std::size_t>(*next)]};
            ++next;
        }
    }

    void placeOurs(int item) {
        const auto at = static_cast<std::size_t>(item);
        if (ours_.baseOf[at] != kNone)
            return;
        const int replaced = ours_.changes[at];
        if (replaced != kNone) {
            const bool stands = theirs_.keeps(replaced) || theirs_.changed(replaced) != kNone || !takeOurs_;
            if (stands)
                return;  // it has the place of the record that it changes, or theirs was chosen
        } else if (auto& theirs = added_[ours_.records[at]]; theirs > 0) {
            --theirs;
            return;
        }
        placed_.insert(placeBehind(item), {kNone, ours_.records[at]});
    }

    [[nodiscard]] bool isLast(int item) const {
        const auto begin = ours_.baseOf.begin() + item;
        return std::all_of(begin, ours_.baseOf.end(), [](int base) { return base == kNone; });
    }

    // What stands last with us stands last; else behind the record ahead of it, and behind what is new there.
    [[nodiscard]] std::vector<Placed>::iterator placeBehind(int item) {
        if (isLast(item))
            return placed_.end();
        auto place = placed_.begin();
        for (int i = item - 1; i >= 0; --i) {
            const auto at = static_cast<std::size_t>(i);
            const int base = ours_.baseOf[at] != kNone ? ours_.baseOf[at] : ours_.changes[at];
            const auto found = base == kNone ? placed_.end()
                                             : std::ranges::find(placed_, base, [](const Placed& p) { return p.base; });
            if (found != placed_.end()) {
                place = found + 1;
                break;
            }
        }
        return std::find_if(place, placed_.end(), [](const Placed& one) { return one.base != kNone; });
    }

    void tellConflict(int base) {
        if (inConflict(base))
            result_.conflicts.push_back({base_[static_cast<std::size_t>(base)], ours_.text(ours_.changed(base)),
                                         theirs_.text(theirs_.changed(base))});
    }

    const Records& base_;
    const Side ours_;
    const Side theirs_;
    const bool takeOurs_;
    std::vector<Placed> placed_;
    std::map<std::string, int> added_;  // records that are new with them, and how often
    RecordMerge result_;
};

}  // namespace

RecordMerge mergeRecords(const Records& base, const Records& ours, const Records& theirs, MergeChoice choice) {
    if (theirs == base || ours == theirs)
        return {ours, {}};
    if (ours == base)
        return {theirs, {}};
    return Merge(base, ours, theirs, choice).run();
}

RecordMerge mergePlaces(const Records& base, const Records& ours, const Records& theirs, MergeChoice choice) {
    const auto at = [](const Records& list, std::size_t i) { return i < list.size() ? list[i] : std::string(); };
    RecordMerge result;
    for (std::size_t i = 0; i < std::max(ours.size(), theirs.size()); ++i) {
        const std::string before = at(base, i);
        const std::string mine = at(ours, i);
        const std::string other = at(theirs, i);
        const bool conflict = mine != before && other != before && mine != other;
        if (conflict)
            result.conflicts.push_back({before, mine, other});
        const bool takeOurs = conflict ? choice == MergeChoice::Ours : mine != before;
        result.records.push_back(takeOurs ? mine : other);
    }
    return result;
}

}  // namespace quillon
