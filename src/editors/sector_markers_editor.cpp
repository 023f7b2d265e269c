// SPDX-License-Identifier: MIT
#include "editors/sector_markers_editor.h"

#include <algorithm>
#include <charconv>

#include "editors/hex_input.h"
#include "platform/folders.h"
#include "testing/header_term.h"
#include "testing/rule_line.h"
#include "text/fields.h"
#include "text/page_text.h"

namespace quillon {

namespace {

constexpr const char* kTitle = "Bad Sector Markers";

// Lines without anything say nothing.
Records linesThatSay(std::string_view bytes) {
    Records lines = lineRecords(bytes);
    std::erase(lines, std::string());
    return lines;
}

const ListForm kForm{kTitle, linesThatSay, lineBytes, mergeRecords};

const char* faultText(MarkerFault fault) {
    switch (fault) {
        case MarkerFault::None:
            break;
        case MarkerFault::Empty:
            return "Type what the imaging tool writes";
        case MarkerFault::ZerosAlone:
            return "Zeros alone mark nothing: healthy files hold them";
        case MarkerFault::TooLong:
            return "Does not fit into a sector of 512 bytes";
        case MarkerFault::TooShort:
            return "What stands once needs at least 4 bytes";
        case MarkerFault::OneByte:
            return "One byte again and again has to repeat to the sector's end";
    }
    return "";
}

std::optional<std::size_t> positionOf(std::string_view typed) {
    const std::string_view text = trim(typed);
    std::size_t position = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), position);
    const bool whole = problem == std::errc() && end == text.data() + text.size();
    return whole && position <= kMarkedSectorBytes ? std::optional(position) : std::nullopt;
}

SectorMarkersEditor::Fields fieldsOf(std::string_view line) {
    const auto parts = splitFields(line);
    const auto field = [&parts](std::size_t i) {
        return i < parts.size() ? toUtf8(PageText{std::string(parts[i])}) : std::string();
    };
    return {.name = std::string(trim(std::string_view(field(4)))),
            .marker = field(1),
            .position = field(0),
            .hexadecimal = field(2) == "H",
            .repeating = field(3) != "O"};
}

tl::unexpected<FileError> refused(const char* why) {
    return failure(ErrorKind::InvalidArgument, why);
}

}  // namespace

SectorMarkersEditor::SectorMarkersEditor(const Installation& installation, Dialogs& dialogs, KeptFiles& kept)
    : installation_(installation), dialogs_(dialogs), kept_(kept), copies_(installation, dialogs, kept, kForm) {
}

std::vector<NativePath> SectorMarkersEditor::copies() const {
    const Paths& paths = installation_.paths();
    std::vector<NativePath> files{fileIn(paths.localSettings, kBadSectorsFileName)};
    if (paths.useSharedDb)
        files.push_back(fileIn(paths.sharedSettings, kBadSectorsFileName));
    return files;
}

std::string SectorMarkersEditor::fileBytes() const {
    Records lines;
    for (const Row& row : rows_) lines.push_back(row.line);
    return lineBytes(lines);
}

void SectorMarkersEditor::show(const std::vector<std::string_view>& lines) {
    rows_.clear();
    for (const auto line : lines) {
        if (line.empty())
            continue;
        rows_.push_back({std::string(line), fieldsOf(line), markerOfLine(line)});
        if (!rows_.back().marker.bytes.empty())
            rows_.back().fields.position = std::to_string(rows_.back().marker.position);
    }
    selected_ = -1;
    updating_ = false;
}

void SectorMarkersEditor::load() {
    const auto files = copies();
    const bool shared = files.size() > 1 && pathExists(files.back());
    const auto bytes = readRuleFile(shared ? files.back() : files.front());
    const bool missing = !bytes && bytes.error().kind == ErrorKind::NotFound;
    show(missing ? SectorMarkers::publishedLines() : splitLines(bytes ? std::string_view(*bytes) : std::string_view()));
    copies_.loaded(fileBytes(), files);
}

// The name of another row that marks the same.
std::optional<std::string> SectorMarkersEditor::twinOf(const SectorMarker& marker) const {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const SectorMarker& other = rows_[i].marker;
        const bool replaced = updating_ && static_cast<int>(i) == selected_;
        if (!replaced && other.bytes == marker.bytes && other.position == marker.position &&
            other.repeating == marker.repeating)
            return other.name;
    }
    return std::nullopt;
}

Result<SectorMarker> SectorMarkersEditor::pattern() const {
    const auto position = positionOf(fields.position);
    if (!position)
        return refused("The position is a number from 1 to 512, or 0 for anywhere");
    SectorMarker marker{*position, toPage(std::string_view(fields.marker)).bytes, fields.repeating, {}};
    if (fields.hexadecimal) {
        const std::string digits = withoutBlanksInCapitals(fields.marker);
        if (findHexFault(digits) != HexFault::None)
            return refused("Hexadecimal digits stand in pairs: 01 02 0A");
        marker.bytes = hexToText(digits);
    }
    if (const MarkerFault fault = faultOf(marker); fault != MarkerFault::None)
        return refused(faultText(fault));
    return marker;
}

Result<SectorMarker> SectorMarkersEditor::typed() const {
    auto marker = pattern();
    if (!marker)
        return marker;
    marker->name = trim(std::string_view(fields.name));
    if (marker->name.empty())
        return refused("Give it a name, which is told of the files");
    if (marker->name.find(',') != std::string::npos)
        return refused("A name holds no comma");
    if (const auto twin = twinOf(*marker))
        return failure(ErrorKind::InvalidArgument, "Stands in the list already: " + *twin);
    return marker;
}

std::string SectorMarkersEditor::remark() const {
    if (fields.marker.empty() && fields.name.empty())
        return copies_.isLeft() ? "Not saved yet : " + copies_.whyLeft()->text : std::string();
    const auto marker = typed();
    return marker ? std::string() : marker.error().text;
}

void SectorMarkersEditor::addOrUpdate() {
    const auto marker = typed();
    if (!marker)
        return;
    Row row{lineOfMarker(*marker, fields.hexadecimal), {}, *marker};
    if (updating_)
        rows_[static_cast<std::size_t>(selected_)] = std::move(row);
    else
        rows_.push_back(std::move(row));
    save();
    clear();
}

void SectorMarkersEditor::selectRow(int row) {
    if (row < 0 || row >= static_cast<int>(rows_.size()))
        return;
    selected_ = row;
    updating_ = true;
    fields = rows_[static_cast<std::size_t>(row)].fields;
}

void SectorMarkersEditor::clear() {
    fields = {};
    updating_ = false;
}

void SectorMarkersEditor::deleteSelected() {
    if (selected_ < 0)
        return;
    const auto row = rows_.begin() + selected_;
    const std::string& name = row->fields.name.empty() ? row->fields.marker : row->fields.name;
    if (!dialogs_.ask("Delete marker?", "Are you sure you want to delete the marker \r\n" + name + "?"))
        return;
    rows_.erase(row);
    save();
    clear();
}

void SectorMarkersEditor::moveUp() {
    if (canMoveUp())
        swapWithSelected(selected_ - 1);
}

void SectorMarkersEditor::moveDown() {
    if (canMoveDown())
        swapWithSelected(selected_ + 1);
}

// What others did meanwhile may have brought it elsewhere, or away.
void SectorMarkersEditor::swapWithSelected(int other) {
    const auto place = [this](int row) { return rows_.begin() + row; };
    const std::string line = place(selected_)->line;
    const bool updating = updating_;
    std::swap(*place(selected_), *place(other));
    save();
    const bool isThere = other < static_cast<int>(rows_.size()) && place(other)->line == line;
    const auto found = isThere ? place(other) : std::ranges::find(rows_, line, &Row::line);
    if (found == rows_.end())
        return;
    selected_ = static_cast<int>(found - rows_.begin());
    updating_ = updating;
}

void SectorMarkersEditor::save() {
    const auto files = copies();
    std::string bytes = fileBytes();
    for (const auto& saved : copies_.save(files, bytes)) {
        if (!saved && !copies_.isLeft())
            dialogs_.warn(kTitle, "Not saved : " + saved.error().text);
    }
    show(splitLines(bytes));
}

bool SectorMarkersEditor::saveToClose() {
    if (copies_.isLeft())
        save();
    return !copies_.isLeft() || copies_.askToCloseUnsaved();
}

}  // namespace quillon
