// SPDX-License-Identifier: MIT
#include "answers/html_report_style.h"

#include <string_view>

#include <fmt/format.h>

namespace quillon {

namespace {

// Each pattern is part of an SVG picture, as browsers leave out backgrounds when they print.
constexpr std::string_view kStyle = R"css(
:root{color-scheme:light dark;--paper:#fff;--ink:#1c2430;--soft:#566072;--line:#d5dae2;--tint:#f4f6f9;--mark:#1f5fa8}
@media (prefers-color-scheme:dark){
:root{--paper:#14181f;--ink:#e7ebf1;--soft:#a3adbd;--line:#323a47;--tint:#1c222b;--mark:#8fbcf0}}
@page{size:A4;margin:16mm 15mm 18mm}
*{box-sizing:border-box}
body{margin:0 auto;max-width:60rem;padding:2.5rem 1.5rem;background:var(--paper);color:var(--ink);
font:15px/1.5 "Noto Sans","Segoe UI","Helvetica Neue",Arial,sans-serif}
header{border-bottom:2px solid var(--ink);padding-bottom:.75rem}
header p{margin:0;color:var(--soft)}
h1{font-size:1.7rem;line-height:1.2;margin:0 0 .25rem;overflow-wrap:anywhere}
h2{font-size:1.15rem;margin:2.2rem 0 .6rem}
h3{font-size:.95em;margin:1.4rem 0 .3rem;overflow-wrap:anywhere}
p{margin:.4rem 0}
.n{unicode-bidi:isolate;overflow-wrap:anywhere;white-space:pre-wrap}
.soft{color:var(--soft)}
dl{display:grid;grid-template-columns:max-content 1fr;gap:.2rem 1.5rem;margin:1.2rem 0}
dt{color:var(--soft)}
dd{margin:0;overflow-wrap:anywhere}
.apart{margin-top:.6rem}
.quality{border:1px solid var(--line);border-radius:8px;background:var(--tint);padding:1.2rem 1.4rem;margin:1.4rem 0}
.quality h2{margin:0}
.quality .value{font-size:3.6rem;line-height:1.15;font-weight:600;letter-spacing:-.02em}
.quality .base{font-size:1.05em;margin:0 0 1rem}
.bar{display:block;width:100%;height:34px;border-radius:4px}
.bar text{font:600 13px sans-serif;fill:#10151c;stroke:#fff;stroke-width:4px;paint-order:stroke;
text-anchor:middle;dominant-baseline:central}
td .bar{height:12px;min-width:5rem;border-radius:2px}
.key{display:block;width:26px;height:18px;border-radius:3px}
.key text{font:600 12px sans-serif;fill:#10151c;stroke:#fff;stroke-width:4px;paint-order:stroke;
text-anchor:middle;dominant-baseline:central}
.k{display:inline-block;min-width:1.5em;text-align:center;font-weight:600;border:1px solid var(--soft);
border-radius:3px;margin-right:.35em}
table{border-collapse:collapse;width:100%;font-size:.9em}
th,td{text-align:left;vertical-align:top;padding:.32rem .5rem;border-bottom:1px solid var(--line)}
th{color:var(--soft);font-weight:600;border-bottom:1px solid var(--soft)}
th:first-child,td:first-child{padding-left:0}
th:last-child,td:last-child{padding-right:0}
td .bar,td .key{margin-top:.25em}
.r{text-align:right;white-space:nowrap;font-variant-numeric:tabular-nums}
.grades td:nth-child(-n+4){white-space:nowrap}
.figures td:first-child{width:26%}
.files{table-layout:fixed}
.files .size{width:6.5em}
.files .grade{width:12em}
.files .found{width:42%}
.whole td{font-weight:600}
.proof{border-left:4px solid var(--mark);padding:.2rem 0 .2rem 1rem;margin:2rem 0}
footer{margin-top:2.5rem;border-top:1px solid var(--line);padding-top:.6rem;color:var(--soft);font-size:.85rem}
.patterns{position:absolute;width:0;height:0}
h2,h3,thead{break-after:avoid}
tr,dl,.quality,.proof,footer{break-inside:avoid}
thead{display:table-header-group}
p{orphans:3;widows:3}
@media print{
html{font-size:11px}
th,td{padding-top:.18rem;padding-bottom:.18rem;line-height:1.3}
:root{color-scheme:light;--paper:#fff;--ink:#000;--soft:#444;--line:#bbb;--tint:#fff;--mark:#000}
body{max-width:none;padding:0;font-size:9.5pt}
.quality .value{font-size:38pt}
}
)css";

std::string pattern(std::string_view name, std::uint32_t colour, std::string_view lines) {
    return fmt::format(
        R"(<pattern id="g-{}" width="8" height="8" patternUnits="userSpaceOnUse"><rect width="8" height="8" )"
        R"(fill="#{:06x}"/><path d="{}" stroke="#fff" stroke-opacity=".6" stroke-width="1.6"/></pattern>)",
        name, colour, lines.empty() ? "M0 0" : lines);
}

}  // namespace

std::string reportStyle() {
    return std::string(kStyle);
}

std::string reportPatterns() {
    constexpr std::uint32_t kNotTestedColour = 0x3a4150;
    std::string text = R"(<svg class="patterns" aria-hidden="true"><defs>)";
    for (const auto& sign : kGradeSigns)
        text += pattern(kGrades[sign.grade].name.value, kGrades[sign.grade].bar.colour, sign.pattern);
    return text + pattern(kNotTestedName, kNotTestedColour, "") + "</defs></svg>\n";
}

}  // namespace quillon
