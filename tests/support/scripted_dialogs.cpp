// SPDX-License-Identifier: MIT
#include "support/scripted_dialogs.h"

#include <utility>

#include <gtest/gtest.h>

namespace quillon::test {

ScriptedDialogs::ScriptedDialogs() : onProblem([](const std::string& problem) { ADD_FAILURE() << problem; }) {
}

ScriptedDialogs::~ScriptedDialogs() {
    if (!script_.empty())
        onProblem(std::to_string(script_.size()) + " expected questions were not asked");
}

void ScriptedDialogs::check(const std::string& what, const std::string& seen, const std::string& expected) {
    if (seen != expected)
        onProblem(what + " is\n  \"" + seen + "\"\nand should be\n  \"" + expected + "\"");
}

void ScriptedDialogs::expectBox(std::string title, std::string text, BoxAnswer answer, std::optional<BoxStyle> style,
                                std::optional<BoxButtons> buttons) {
    script_.push_back(Box{std::move(title), std::move(text), answer, style, buttons});
}

void ScriptedDialogs::expectInput(std::string title, std::string prompt, std::optional<std::string> answer,
                                  std::optional<std::string> initial) {
    script_.push_back(Input{std::move(title), std::move(prompt), std::move(answer), std::move(initial)});
}

void ScriptedDialogs::expectFolder(std::string title, std::optional<NativePath> answer) {
    script_.push_back(Folder{std::move(title), std::move(answer)});
}

void ScriptedDialogs::expectFiles(std::string title, std::vector<NativePath> answer) {
    script_.push_back(Files{std::move(title), std::move(answer)});
}

template <typename Kind>
std::optional<Kind> ScriptedDialogs::take(const std::string& what) {
    if (script_.empty() || !std::holds_alternative<Kind>(script_.front())) {
        onProblem("unexpected question: " + what);
        return std::nullopt;
    }
    Kind step = std::get<Kind>(std::move(script_.front()));
    script_.pop_front();
    return step;
}

BoxAnswer ScriptedDialogs::show(const MessageBox& box) {
    lastDetails_ = box.details;
    const auto step = take<Box>("box \"" + box.title + "\": " + box.text);
    if (!step)
        return box.buttons == BoxButtons::Ok      ? BoxAnswer::Ok
               : box.buttons == BoxButtons::YesNo ? BoxAnswer::No
                                                  : BoxAnswer::Cancel;
    check("title of a box", box.title, step->title);
    check("text of a box", box.text, step->text);
    if (step->style && box.style != *step->style)
        onProblem("wrong style of the box: " + box.text);
    if (step->buttons && box.buttons != *step->buttons)
        onProblem("wrong buttons of the box: " + box.text);
    return step->answer;
}

std::optional<std::string> ScriptedDialogs::input(const std::string& title, const std::string& prompt,
                                                  const std::string& initial) {
    const auto step = take<Input>("input \"" + title + "\": " + prompt);
    if (!step)
        return std::nullopt;
    check("title of an input", title, step->title);
    check("prompt of an input", prompt, step->prompt);
    if (step->initial)
        check("default of an input", initial, *step->initial);
    return step->answer;
}

std::optional<NativePath> ScriptedDialogs::pickFolder(const std::string& title, const NativePath& start) {
    lastStart_ = start;
    const auto step = take<Folder>("folder \"" + title + "\"");
    if (!step)
        return std::nullopt;
    check("title of a folder picker", title, step->title);
    return step->answer;
}

std::vector<NativePath> ScriptedDialogs::pickFiles(const FilePick& pick) {
    lastPick_ = pick;
    const auto step = take<Files>("files \"" + pick.title + "\"");
    if (!step)
        return {};
    check("title of a file picker", pick.title, step->title);
    return step->answer;
}

}  // namespace quillon::test
