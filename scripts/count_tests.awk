# SPDX-License-Identifier: MIT
# Sums the single tests in ctest's JUnit file: one ctest entry is a whole GoogleTest, Qt Test or unittest program.
# An entry without totals counts as one test. A failed entry without a failing test in it (a crash, a time-out) is one
# failure, and so is an entry whose program was never built.

/^\t<testcase / {
    entryPassed = entryFailed = entrySkipped = 0
    passedWhole = / status="run"/
    failedWhole = / status="fail"/
    skippedWhole = 0
    name = $0
    sub(/^.* name="/, "", name)
    sub(/".*$/, "", name)
}
/^\t\t<skipped message="SKIP_/ { skippedWhole = 1 }
/^\t\t<skipped message="Unable/ { failedWhole = 1 }
{ sub(/^\t\t<system-out>/, "") }

# GoogleTest
/^\[  PASSED  \] [0-9]+ tests?\.?$/ { entryPassed += $4 }
/^\[  FAILED  \] [0-9]+ tests?, listed below:$/ { entryFailed += $4 }
/^\[  SKIPPED \] [0-9]+ tests?, listed below:$/ { entrySkipped += $4 }

# Qt Test: Totals: 5 passed, 0 failed, 1 skipped, 0 blacklisted, 12ms
/^Totals: [0-9]+ passed, / { entryPassed += $2; entryFailed += $4; entrySkipped += $6 }

# Python's unittest: Ran 35 tests in 0.043s, then OK or FAILED (failures=1, errors=2, skipped=3)
/^Ran [0-9]+ tests? in / { ran = $2 }
/^(OK|FAILED)( \(.*\))?$/ && ran != "" {
    entryFailed += number("failures") + number("errors")
    entrySkipped += number("skipped")
    entryPassed += ran - number("failures") - number("errors") - number("skipped")
    ran = ""
}

/^\t<\/testcase>/ {
    if (entryPassed + entryFailed + entrySkipped == 0) {
        entryPassed = passedWhole
        entrySkipped = skippedWhole
    }
    if (failedWhole && entryFailed == 0) {
        entryFailed = 1
    }
    if (entrySkipped > 0) {
        printf "skipped: %d in %s\n", entrySkipped, name
    }
    passed += entryPassed
    failed += entryFailed
    skipped += entrySkipped
}

END { printf "tests: %d passed, %d failed, %d skipped\n", passed, failed, skipped }

function number(word) {
    return match($0, word "=[0-9]+") ? substr($0, RSTART + length(word) + 1, RLENGTH - length(word) - 1) + 0 : 0
}
