// SPDX-License-Identifier: MIT
#include "widgets/theme_colours.h"

namespace quillon {

namespace {

const Colours kLight = {
    .window = 0xf1f3f5,
    .panel = 0xfafbfc,
    .base = 0xffffff,
    .alternate = 0xf6f8fa,
    .text = 0x1d2126,
    .quietText = 0x4c545d,
    .quiet = 0x666e78,
    .button = 0xffffff,
    .line = 0xd6dbe1,
    .edge = 0xb3bbc5,
    .accent = 0x2367b1,
    .accentHover = 0x2c71bd,
    .accentPressed = 0x1d5594,
    .onAccent = 0xffffff,
    .link = 0x2367b1,
    .toolTip = 0xffffff,
    .running = 0x1f5fa6,
    .done = 0x17692f,
    .trouble = 0xa61b14,
};

const Colours kDark = {
    .window = 0x1c2024,
    .panel = 0x22272c,
    .base = 0x16191d,
    .alternate = 0x1a1e22,
    .text = 0xe3e6ea,
    .quietText = 0xb4bcc6,
    .quiet = 0x929ba6,
    .button = 0x2d333a,
    .line = 0x373e46,
    .edge = 0x4d5661,
    .accent = 0x2b6fba,
    .accentHover = 0x2f74c0,
    .accentPressed = 0x235c9b,
    .onAccent = 0xffffff,
    .link = 0x6ba5e4,
    .toolTip = 0x2d333a,
    .running = 0x7fb3ee,
    .done = 0x6fcf8e,
    .trouble = 0xff9a8f,
};

constexpr TextPair kPairs[] = {
    {"labels", &Colours::text, &Colours::window},
    {"labels in a frame", &Colours::text, &Colours::panel},
    {"rows and text boxes", &Colours::text, &Colours::base},
    {"every second row", &Colours::text, &Colours::alternate},
    {"buttons", &Colours::text, &Colours::button},
    {"a pressed button, a chosen row of a grid that is switched off", &Colours::text, &Colours::line},
    {"tool tips", &Colours::text, &Colours::toolTip},
    {"remarks", &Colours::quietText, &Colours::window},
    {"remarks and titles of frames", &Colours::quietText, &Colours::panel},
    {"what is switched off", &Colours::quiet, &Colours::window},
    {"what is switched off, in a frame", &Colours::quiet, &Colours::panel},
    {"hints in empty boxes, bytes of zero", &Colours::quiet, &Colours::base},
    {"rows that are switched off", &Colours::quiet, &Colours::alternate},
    {"a button that is switched off", &Colours::quiet, &Colours::button},
    {"chosen rows, the button to press next", &Colours::onAccent, &Colours::accent},
    {"the same below the pointer", &Colours::onAccent, &Colours::accentHover},
    {"the same while it is pressed", &Colours::onAccent, &Colours::accentPressed},
    {"links", &Colours::link, &Colours::window},
    {"links in a page", &Colours::link, &Colours::base},
    {"a running job", &Colours::running, &Colours::window},
    {"a job that is done", &Colours::done, &Colours::window},
    {"a job with trouble", &Colours::trouble, &Colours::window},
};

}  // namespace

const Colours& coloursOf(Look look) {
    return look == Look::Dark ? kDark : kLight;
}

std::span<const TextPair> textPairs() {
    return kPairs;
}

}  // namespace quillon
