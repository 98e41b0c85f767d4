#!/usr/bin/env bash
# The library as its users meet it: package_test.sh CASE SOURCE BUILD WORK. The install case comes
# first; the others, but for own_model and debian, stand on what it installed.
set -euo pipefail
case=$1 source=$2 build=$3 work=$4
prefix=$work/prefix
project=$source/examples/plant/plant.xml

fail() { echo "$case: $*" >&2; exit 1; }

# Compares standard input with the text.
expect() {
  diff <(echo "$1") - || fail "the output differs"
}

embed_says='value
low := 0.0 (a constant)
high := 100.0 (a constant)
Clamp
result
(64-bit value)'

# A function with names, a type, an address, an initial value and a comment of so many characters; one name
# is none.
long_project() {  # CHARACTERS
  local text
  text=$(head -c "$1" /dev/zero | tr '\0' a)
  cat <<END
<project xmlns="http://www.plcopen.org/xml/tc6_0201"><fileHeader companyName="c" productName="p"
  productVersion="1" creationDateTime="2024-01-01T00:00:00"/><contentHeader name="n"/>
<types><dataTypes/><pous><pou name="F" pouType="function"><interface><returnType><INT/></returnType>
<inputVars><variable name="$text" address="%IX$text"><type><INT/></type>
<initialValue><simpleValue value="$text"/></initialValue>
<documentation><p xmlns="http://www.w3.org/1999/xhtml">$text</p></documentation></variable>
<variable name="b__$text"><type><derived name="$text"/></type></variable>
</inputVars></interface><body><ST><p xmlns="http://www.w3.org/1999/xhtml">;</p></ST></body></pou>
</pous></types><instances><configurations/></instances></project>
END
}

# Says something only when the command fails.
quietly() {
  local said
  said=$("$@" 2>&1) || { echo "$said" >&2; return 1; }
}

# A consumer is compiled with none of our warnings and settings.
check_flags() {  # COMPILE_COMMANDS FILE
  local command
  command=$(grep "\"command\".*$2" "$1") || fail "$2 is not compiled"
  ! grep -oE -- ' -(W|f)[^ ]+' <<<"$command" || fail "$2 is compiled with flags of ours"
}

install_tree() {
  rm -rf "$work"
  quietly cmake --install "$build" --prefix "$work/first"
  mv "$work/first" "$prefix"  # what was installed may be moved
  ! grep -rl "$build" "$prefix" || fail "these files know the build folder"
  # Everything lies in one folder, and each header compiles alone.
  ls "$prefix"/include/lq_data-* | expect lq_data
  (cd "$prefix"/include/lq_data-* && find lq_data -name '*.h' -print0 |
    xargs -0 -P 2 -I {} c++ -std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Werror -I . -include {} -x c++ /dev/null) ||
    fail "a header needs another one before it"
  "$prefix/bin/lq" fb "$project" Mixing stirring | expect TON
}

find_package() {
  rm -rf "$work/$case"
  quietly cmake -S "$source/examples/embed" -B "$work/$case" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
  quietly cmake --build "$work/$case"
  "$work/$case/embed" "$project" Clamp | expect "$embed_says"
  long_project 5000 >"$work/$case/long.xml"
  "$work/$case/embed" "$work/$case/long.xml" F | sed -E 's/a{5000}/A/g' | expect 'A := A
?b__A?
F
(64-bit value)'
  check_flags "$work/$case/compile_commands.json" main.cpp
}

pkg_config() {
  local folder
  folder=$(dirname "$(find "$prefix" -name lq_data_host.pc)")
  export PKG_CONFIG_PATH=$folder
  # shellcheck disable=SC2046
  c++ -std=c++20 "$source/examples/embed/main.cpp" -o "$work/$case" \
    $(pkg-config --cflags --libs lq_data_host)
  LD_LIBRARY_PATH=$(pkg-config --variable=libdir lq_data) "$work/$case" "$project" Clamp |
    expect "$embed_says"
}

own_model() {
  rm -rf "$work-$case"
  quietly cmake -S "$source/examples/own_model" -B "$work-$case" -G Ninja \
    -DCMAKE_EXPORT_COMPILE_COMMANDS=ON \
    ${CMAKE_CXX_COMPILER_LAUNCHER:+-DCMAKE_CXX_COMPILER_LAUNCHER="$CMAKE_CXX_COMPILER_LAUNCHER"}
  check_flags "$work-$case/compile_commands.json" own_model/main.cpp
  ! grep BUILD_SHARED_LIBS "$work-$case/CMakeCache.txt" || fail "the parent's choice was changed"
  quietly cmake --build "$work-$case"
  "$work-$case/own_model" "$work-$case/own.lqt" | expect '5 of 5 declarations, 1 units'
  # The host's model of the same project gives the same tables.
  cat >"$work-$case/own.xml" <<'END'
<project xmlns="http://www.plcopen.org/xml/tc6_0201"><types><dataTypes/><pous>
<pou name="Main" pouType="program"><interface><externalVars>
<variable name="Speed"><type><INT/></type></variable></externalVars><localVars>
<variable name="Peaks"><type><array><dimension lower="1" upper="3"/><baseType><REAL/></baseType></array></type></variable>
</localVars></interface></pou></pous></types><instances><configurations><configuration name="C"><globalVars>
<variable name="Running"><type><BOOL/></type><initialValue><simpleValue value="FALSE"/></initialValue></variable>
<variable name="Speed"><type><INT/></type><initialValue><simpleValue value="1500"/></initialValue></variable>
<variable name="Level"><type><REAL/></type><initialValue><simpleValue value="0.75"/></initialValue></variable>
</globalVars></configuration></configurations></instances></project>
END
  quietly "$build/bin/lq" translate "$work-$case/own.xml" -o "$work-$case/host.lqt"
  cmp "$work-$case/own.lqt" "$work-$case/host.lqt" || fail "the models' tables differ"
  quietly cmake --install "$work-$case" --prefix "$work-$case/prefix"
  [ ! -e "$work-$case/prefix" ] || fail "a subproject installs"
}

debian() {
  rm -rf "$work-$case"
  mkdir -p "$work-$case/root/var/lib/dpkg"/{updates,info}
  touch "$work-$case/root/var/lib/dpkg/status"
  (cd "$build" && quietly cpack -G DEB -B "$work-$case")
  local packages=("$work-$case"/*.deb) package
  [ ${#packages[@]} = 3 ] || fail "not three packages: ${packages[*]}"
  for package in "${packages[@]}"; do
    if [ "$(id -u)" = 0 ]; then
      # The folder is empty: what the packages depend on is not in it.
      quietly dpkg --root="$work-$case/root" --log=/dev/null --force-depends \
        --force-script-chrootless -i "$package"
    else
      dpkg-deb -x "$package" "$work-$case/root"
    fi
  done
  "$work-$case/root/usr/bin/lq" fb "$project" Mixing stirring | expect TON
  prefix=$work-$case/root/usr work=$work-$case
  find_package
}

case $case in
  install) install_tree ;;
  find_package | pkg_config | own_model | debian) "$case" ;;
  *) fail "no such case" ;;
esac
