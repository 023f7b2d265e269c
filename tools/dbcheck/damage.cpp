// SPDX-License-Identifier: MIT
#include "dbcheck/damage.h"

#include <algorithm>
#include <random>

namespace quillon {

namespace {

using Samples = std::vector<const Sample*>;

class Wrecker {
public:
    Wrecker(const Families& families, const Samples& samples) : families_(families), samples_(samples) {}

    // The folded head of a sample behind a damage; none when there is no foreign head for it.
    std::optional<HeaderBytes> wreck(std::size_t sample, Damage damage) {
        HeaderBytes head = samples_[sample]->folded;
        switch (damage) {
            case Damage::Zeros:
                head.fill('\0');
                break;
            case Damage::Ones:
                head.fill('\xFF');
                break;
            case Damage::Text:
                fillWithText(head);
                break;
            case Damage::Random:
            case Damage::Shift512:
                shift(head, head.size());
                break;
            case Damage::Shift1:
                shift(head, 1);
                break;
            case Damage::Shift16:
                shift(head, 16);
                break;
            case Damage::Shift100:
                shift(head, 100);
                break;
            case Damage::Gone16:
                std::fill_n(head.begin(), 16, '\0');
                break;
            case Damage::ForeignHead:
                return foreignHead(sample);
        }
        foldHeader(head);
        return head;
    }

private:
    static void fillWithText(HeaderBytes& head) {
        constexpr std::string_view words = "The quick brown fox jumps over the lazy dog. ";
        for (std::size_t i = 0; i < head.size(); ++i) head[i] = words[i % words.size()];
    }

    void shift(HeaderBytes& head, std::size_t bytes) {
        std::copy_backward(head.begin(), head.end() - static_cast<std::ptrdiff_t>(bytes), head.end());
        std::generate_n(head.begin(), bytes, [this] { return static_cast<char>(noise_() & 0xFFU); });
    }

    // The next sample whose head the extension may not accept.
    [[nodiscard]] std::optional<HeaderBytes> foreignHead(std::size_t sample) const {
        const std::string& extension = samples_[sample]->extension;
        for (std::size_t step = 1; step < samples_.size(); ++step) {
            const Sample& other = *samples_[(sample + step) % samples_.size()];
            if (other.extension != extension && !families_.mayAccept(extension, other.extension))
                return other.folded;
        }
        return std::nullopt;
    }

    const Families& families_;
    const Samples& samples_;
    std::mt19937 noise_;  // begins at the same place in every run
};

Samples goodOnes(const HeaderDatabase& database, const std::vector<Sample>& samples) {
    Samples good;
    for (const auto& sample : samples) {
        const auto terms = database.terms.find(sample.extension);
        if (!isTooSmall(sample) && terms != database.terms.end() && firstFit(terms->second, sample.folded))
            good.push_back(&sample);
    }
    return good;
}

}  // namespace

double DamageScore::recoveredPercent() const {
    const std::size_t wrong = good + (kind.damage == Damage::ForeignHead ? 0 : named);
    return samples == 0 ? 0 : 100.0 * static_cast<double>(wrong) / static_cast<double>(samples);
}

std::vector<DamageScore> scoreDamage(const HeaderDatabase& database, const std::vector<Sample>& samples) {
    const Samples good = goodOnes(database, samples);
    Wrecker wrecker(database.families, good);
    std::vector<DamageScore> scores;
    for (const auto& kind : kDamages) {
        DamageScore score{kind};
        for (std::size_t i = 0; i < good.size(); ++i) {
            const auto head = wrecker.wreck(i, kind.damage);
            if (!head)
                continue;
            ++score.samples;
            if (firstFit(database.terms.at(good[i]->extension), *head))
                ++score.good;
            else if (namedByCommonHeader(database.commonList, *head))
                ++score.named;
        }
        scores.push_back(score);
    }
    return scores;
}

}  // namespace quillon
