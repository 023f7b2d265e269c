// SPDX-License-Identifier: MIT
#include "job/source_wait.h"

#include <fmt/format.h>

#include "app/turn_until.h"
#include "text/list_text.h"

namespace quillon {

bool SourceWait::until(std::string_view path, const Arrives& arrives, const std::function<bool()>& ends) {
    if (arrives(kTurnInterval))
        return true;
    start_ = context_.surroundings.clock.milliseconds();
    named_ = false;
    context_.surroundings.loop.workingOn(path);
    const std::string status = context_.state.texts.status;
    bool ended = false;
    turnUntil(context_.surroundings.loop, [&](std::chrono::milliseconds pause) {
        if (!named_ && waited() >= kNamedAfter)
            name(path);
        ended = ends();
        return ended || arrives(pause);
    });
    if (named_)
        context_.state.texts.status = status;
    return !ended;
}

std::chrono::milliseconds SourceWait::waited() const {
    return std::chrono::milliseconds(context_.surroundings.clock.milliseconds() - start_);
}

void SourceWait::name(std::string_view path) {
    named_ = true;
    const std::string text = fmt::format("No answer for {} seconds : {}", kNamedAfter.count(), readable(path));
    context_.logAbout(path, text, kLightOrange);
    context_.state.texts.status = text;
}

void SourceWait::tellCare() const {
    if (context_.state.care->oneAtATime() && !context_.state.careTold)
        writeCare();
}

void SourceWait::writeCare() const {
    context_.state.careTold = true;
    const auto why = [this] {
        switch (context_.state.care->reason()) {
            case SourceCare::Reason::ReadError:
                return " from here on : the source has a read error";
            case SourceCare::Reason::SlowCall:
                return " from here on : the disk took more than two seconds for one answer";
            case SourceCare::Reason::None:
            case SourceCare::Reason::Asked:
                break;
        }
        return " : as was asked for";
    };
    context_.log(fmt::format("The source is read gently, one request at a time{}", why()), kLightOrange);
}

}  // namespace quillon
