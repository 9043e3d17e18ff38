#!/usr/bin/env bash
# build_alone.sh COMPILER SOURCE-FOLDER
#
# Shows that the folder src/expression is a library of its own: builds it with its tests in a folder
# that holds nothing else, with the standard library and GoogleTest alone, and runs them.
set -euo pipefail

compiler=$1 source=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/src" "$folder/tests"
cp -R "$source/src/expression" "$folder/src/"
cp -R "$source/tests/expression" "$folder/tests/"
cd "$folder"

flags=(-std=c++20 -O0 -Wall -Wextra -Werror -Isrc -Itests)
# One unit for the library and one for the tests: all headers are read only once.
unit() {
    local name=$1
    shift
    printf '#include "%s"\n' "${@#*/}" >"$name.cpp"
    "$compiler" "${flags[@]}" -c "$name.cpp" -o "$name.o"
}
unit library src/expression/*.cpp &
unit tests tests/expression/*.cpp
wait $!
"$compiler" library.o tests.o -lgtest -lgtest_main -pthread -o expression_test
# The slow ones run where the optimiser has been.
./expression_test --gtest_brief=1 --gtest_filter='-ReferenceTest.*:DeepNestingTest.*:CharacterClassTest.*:*.random*:*.readsBack*'
