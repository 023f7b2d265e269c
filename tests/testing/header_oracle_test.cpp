// SPDX-License-Identifier: MIT
// The grade of a file, derived a second time in the plainest way that the rules allow, beside the header test's own,
// for every combination of the outcome table and for many random databases.

#include <cctype>
#include <optional>
#include <random>

#include <fmt/format.h>

#include "testing/testing_fixture.h"

namespace quillon::test {

namespace {

using enum Grade;

struct Verdict {
    std::string text;
    std::map<RaisedCount, int> counts;

    friend bool operator==(const Verdict&, const Verdict&) = default;
};

// A position as it may stand in a record: read by its leading number in a term file, as a plain number in a common
// list.
struct Position {
    const char* text;
    double lenient;
    double plain;
};
constexpr Position kPositions[] = {
    {"0", 0, 0},       {"0", 0, 0},     {"1", 1, 1},   {"1", 1, 1},   {"2", 2, 2},       {"3", 3, 3},
    {"-1", -1, -1},    {"0.4", .4, .4}, {"1.5", 2, 2}, {"2.5", 2, 2}, {"512", 512, 512}, {"513", 513, 513},
    {"514", 514, 514}, {"x", 0, 0},     {"", 0, 0},    {"2x", 2, 0},  {" 3", 3, 3},      {"0x2", 0, 0}};

unsigned char lowerOf(unsigned char c) {
    if (c < 0x80)
        return static_cast<unsigned char>(std::tolower(c));
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7)
        return static_cast<unsigned char>(c + 0x20);
    if (c == 0x8A || c == 0x8C || c == 0x8E)
        return static_cast<unsigned char>(c + 0x10);
    return c == 0x9F ? 0xFF : c;
}

std::string lowerAll(std::string text) {
    for (char& c : text) c = static_cast<char>(lowerOf(static_cast<unsigned char>(c)));
    return text;
}

std::string decode(const std::string& hex) {
    std::string out;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        const std::string pair = hex.substr(i, 2);
        const bool valid = pair.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
        out.push_back(static_cast<char>(valid ? std::stoi(pair, nullptr, 16) : 0));
    }
    return out;
}

std::vector<std::string> cut(const std::string& line) {
    std::vector<std::string> fields;
    if (line.empty())
        return fields;
    fields.emplace_back();
    for (const char c : line) {
        if (c == ',')
            fields.emplace_back();
        else
            fields.back().push_back(c);
    }
    return fields;
}

struct Record {
    std::vector<std::string> fields;
    double position = 0;
};

enum class Hit { No, Yes, GivenUp, NoTerm };

Hit tryRecord(const Record& record, const std::string& buffer) {
    if (record.fields.size() < 2)
        return Hit::NoTerm;
    std::string term = record.fields[1];
    if (record.fields.size() == 2 || record.fields[2] == "H")
        term = decode(term);
    term = lowerAll(term);
    if (record.position == 0)
        return buffer.find(term) != std::string::npos ? Hit::Yes : Hit::No;
    if (record.position < 1)
        return Hit::GivenUp;
    const auto start = static_cast<std::size_t>(record.position) - 1;
    const std::string piece = start < buffer.size() ? buffer.substr(start, term.size()) : "";
    // An empty term equals the empty piece, which exists up to the place behind the buffer's last character.
    return start <= buffer.size() && piece == term ? Hit::Yes : Hit::No;
}

struct Case {
    std::string head;
    std::optional<std::vector<Record>> termFile;
    std::vector<Record> common;
    bool box = false;
    bool openable = true;
};

Verdict counted(std::string text, std::initializer_list<RaisedCount> counts) {
    Verdict verdict{std::move(text), {}};
    for (const auto count : counts) ++verdict.counts[count];
    return verdict;
}

Verdict expectedCommon(const Case& data, const std::string& buffer) {
    const bool known = data.termFile.has_value();
    if (data.common.empty())
        return counted("", {kTested, CommonHeader});
    for (const Record& record : data.common) {
        const Hit hit = tryRecord(record, buffer);
        if (hit == Hit::GivenUp)
            return counted("Unknown or ambiguous file type", {kTested, Unknown});
        if (hit == Hit::NoTerm || (hit == Hit::Yes && record.fields.size() < 4))
            return counted("", {kTested, CommonHeader});
        if (hit == Hit::No)
            continue;
        const std::string& raw = record.fields[3];
        const auto first = raw.find_first_not_of(' ');
        const std::string description = first == std::string::npos ? "" : raw.substr(first);
        const std::string separator = known || record.position == 0 ? " : " : "";
        return counted(fmt::format("Appears to be of file type:{}{}", separator, description), {kTested, CommonHeader});
    }
    return known ? counted("Header Corrupt", {kTested, Corrupt})
                 : counted("Unknown or ambiguous file type", {kTested, Unknown});
}

Verdict expected(const Case& data) {
    if (!data.termFile && !data.box)
        return counted("Unknown or ambiguous file type", {Unknown});
    if (!data.openable)
        return counted("Access error", {AccessError});
    std::string buffer = data.head.substr(0, 512);
    buffer.resize(512, ' ');
    buffer = lowerAll(buffer);
    if (data.termFile) {
        for (const Record& record : *data.termFile) {
            const Hit hit = tryRecord(record, buffer);
            if (hit == Hit::GivenUp)
                return counted("Unknown or ambiguous file type", {kTested, Unknown});
            if (hit != Hit::No)
                return counted("Header OK", {kTested, Good});
        }
        if (!data.box)
            return counted("Header Corrupt", {kTested, Corrupt});
    }
    return expectedCommon(data, buffer);
}

class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t bound) { return random_() % bound; }
    bool oneIn(std::size_t bound) { return below(bound) == 0; }

    // Few different bytes, so that terms are often there.
    std::string bytes(std::size_t longest) {
        static const std::string letters("MZmz\0\xC4\xE4 \xD7", 9);
        std::string text;
        for (std::size_t length = below(longest + 1); length > 0; --length) text += letters[below(letters.size())];
        return text;
    }

    Record record(bool inCommonList) {
        const Position& position = kPositions[below(std::size(kPositions))];
        std::string line;
        if (!oneIn(40)) {
            const bool hexadecimal = oneIn(2);
            line = std::string(position.text) + "," + (hexadecimal ? hexOf(bytes(3)) : text());
            if (!oneIn(20))
                line += hexadecimal ? ",H" : "," + std::string(oneIn(3) ? "h" : "T");
            if (inCommonList && !oneIn(10))
                line += ", Kind " + std::to_string(below(100));
            if (oneIn(15))
                line += ",more";
        }
        lines.push_back(line);
        return {cut(line), inCommonList ? position.plain : position.lenient};
    }

    std::vector<std::string> lines;

private:
    std::string text() {
        std::string term = bytes(3);
        // No line can hold these as themselves.
        for (char& c : term) c = c == '\0' ? 'q' : c;
        return term;
    }
    std::string hexOf(const std::string& bytes) {
        static const std::string digits = "0123456789ABCDEF";
        std::string hex;
        for (const char c : bytes) {
            hex += digits[static_cast<unsigned char>(c) / 16];
            hex += digits[static_cast<unsigned char>(c) % 16];
        }
        if (oneIn(10))
            hex += oneIn(2) ? "G4" : "5";
        return hex;
    }

    std::mt19937 random_;
};

class OracleTest : public HeaderFixture {
protected:
    Verdict actual(const Case& data) {
        heads.files.clear();
        if (data.openable)
            heads.files["/s/f"] = data.head;
        host.common = data.box;
        host.counts.clear();
        const auto text = gradeRow(u"/s/f,15/11/2026, 600, 32;Ab9x", u"abc");
        Verdict verdict{{}, host.counts};
        for (const char16_t unit : text) verdict.text.push_back(static_cast<char>(unit));
        return verdict;
    }
};

TEST_F(OracleTest, EveryCombinationOfTheOutcomeTable) {
    const Record hit{{"1", "MZ", "T"}, 1};
    const Record miss{{"1", "XX", "T"}, 1};
    const Record commonHit{{"1", "MZ", "T", "Program"}, 1};
    const Record commonMiss{{"1", "XX", "T", "Other"}, 1};
    const std::vector<std::optional<std::vector<Record>>> databases = {std::nullopt, {{}}, {{hit}}, {{miss}}};
    for (const auto& records : databases) {
        std::filesystem::remove(folder / "Database/abc.dat");
        if (records) {
            std::string bytes;
            for (const auto& record : *records) bytes += record.fields[0] + "," + record.fields[1] + ",T\r\n";
            termFile("abc", bytes);
        }
        for (int variant = 0; variant < 8; ++variant) {
            Case data{
                "MZ", records, {(variant & 1) != 0 ? commonHit : commonMiss}, (variant & 2) != 0, (variant & 4) != 0};
            commonList.assign({(variant & 1) != 0 ? "1,MZ,T,Program" : "1,XX,T,Other"});
            const Verdict wanted = expected(data);
            const Verdict got = actual(data);
            EXPECT_EQ(got.text, wanted.text)
                << "variant " << variant << " records " << (records ? records->size() : 99);
            EXPECT_TRUE(got == wanted) << "variant " << variant;
        }
    }
}

TEST_F(OracleTest, RandomDatabasesGiveTheGradeOfTheRules) {
    std::map<std::string, int> seen;
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        Generator generator(seed);
        Case data;
        data.head = generator.bytes(4) + (generator.oneIn(4) ? std::string(509, '.') + generator.bytes(4) : "");
        data.box = generator.oneIn(2);
        data.openable = !generator.oneIn(20);
        std::string bytes;
        std::filesystem::remove(folder / "Database/abc.dat");
        if (!generator.oneIn(4)) {
            data.termFile.emplace();
            for (std::size_t i = generator.below(4); i > 0; --i) {
                data.termFile->push_back(generator.record(false));
                bytes += generator.lines.back() + "\r\n";
            }
            termFile("abc", bytes);
        }
        generator.lines.clear();
        for (std::size_t i = 1 + generator.below(4); i > 0; --i) data.common.push_back(generator.record(true));
        commonList.assign({generator.lines.begin(), generator.lines.end()});
        const Verdict wanted = expected(data);
        const Verdict got = actual(data);
        ASSERT_EQ(got.text, wanted.text) << "seed " << seed << "\nterm file:\n" << bytes << "head: " << data.head;
        ASSERT_TRUE(got == wanted) << "seed " << seed;
        ++seen[wanted.text.substr(0, 20)];
    }
    EXPECT_GE(seen.size(), 6U) << "the cases are not varied enough to prove anything";
}

}  // namespace

}  // namespace quillon::test
