# SPDX-License-Identifier: MIT
# What the measuring scripts share; sourced by them in the project's folder.
. scripts/packages.sh

# prepare COUNT PACKAGE...: builds the release, makes the tree of COUNT files that is kept between runs, and sets an application
# folder up. Sets count, release, work, tree and app.
prepare() {
    count=$1
    shift
    work=$PWD/build/bench
    tree=$work/tree-$count
    app=$work/Quillon
    release=build/release
    # shellcheck disable=SC2086  # a list of words
    install_missing $BUILD_PACKAGES "$@"
    configure release
    cmake --build --preset release --target app_folder quillon_bench_make_tree quillon_bench_limit
    mkdir -p "$work"
    if ! [ -e "$tree.made" ]; then
        echo "Making $count files"
        rm -rf "$tree"
        $release/bench/quillon_bench_make_tree "$tree" "$count"
        : >"$tree.made"
    fi
    # A first job over nothing sets the application folder up, which is no part of what is measured.
    rm -rf "$app"
    cp -r $release/Quillon "$app"
    rm -rf "$app/settings.dat" "$app/Data" # of jobs that were run there
    mkdir -p "$work/nothing"
    "$app/quillon-job" --app "$app" --job first --source "$work/nothing" --yes --quiet >/dev/null 2>&1 || true
}

limit() { "$@" $release/bench/quillon_bench_limit "$tree" "$work/rows" data/starter/Database; }
job() { "$@" "$app/quillon-job" --app "$app" --job bench --source "$tree" --yes --quiet; }

median() { # FILE COLUMN(S): median of the sum of the columns
    awk -v columns="$2" '{ n = split(columns, c, ","); sum = 0; for (i = 1; i <= n; i++) sum += $c[i]; print sum }' "$1" |
        sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'
}

