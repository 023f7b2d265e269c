// SPDX-License-Identifier: MIT
#pragma once

// The wait of a pass for what its source has to give. The event loop turns meanwhile, and what takes long is named.

#include <chrono>
#include <functional>
#include <string_view>

#include "job/pass_context.h"

namespace quillon {

class SourceWait {
public:
    using Arrives = std::function<bool(std::chrono::milliseconds limit)>;

    /// What takes longer is named in the log, and in the status while it lasts.
    static constexpr std::chrono::seconds kNamedAfter{30};

    explicit SourceWait(const PassContext& context) : context_(context) {}

    /// Waits until `arrives(limit)` is true, which itself waits no longer than `limit`. False: `ends`, which is asked
    /// behind each turn of the loop, said so before. `path` is what is waited for, native.
    [[nodiscard]] bool until(std::string_view path, const Arrives& arrives, const std::function<bool()>& ends);

    /// How long the wait in work, or the last one, takes.
    [[nodiscard]] std::chrono::milliseconds waited() const;

    /// Says in the log, once in a job, that the source is asked for one thing at a time, and why.
    void tellCare() const;

private:
    void name(std::string_view path);
    void writeCare() const;

    PassContext context_;
    std::int64_t start_ = 0;
    bool named_ = false;
};

}  // namespace quillon
