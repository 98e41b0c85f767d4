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

# What embed shows of a unit, without positions: before and after it was translated anew.
clamp='value := 
low := 0.0
high := 100.0
Clamp := 
result := '
clamp=$clamp$'\n'$clamp$'\n(64-bit value)'
# Of long_project; A stands for its text.
long="fine := 'A'
F := "
long=$'line 4 is refused, reason 0\nline 7 is refused, reason 1\n'$long$'\n'$long$'\n(64-bit value)'

# A function with names, a type, an address, initial values and a comment of so many characters; one
# declaration is fine.
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
<variable name="fine"><type><string length="255"/></type>
<initialValue><simpleValue value="'$text'"/></initialValue></variable>
</inputVars></interface><body><ST><p xmlns="http://www.w3.org/1999/xhtml">;</p></ST></body></pou>
</pous></types><instances><configurations/></instances></project>
END
}

is_static() { grep -q '^BUILD_SHARED_LIBS:BOOL=OFF' "$build/CMakeCache.txt"; }

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

# The program embed in a folder, on the sample project and on one with long texts.
try_embed() {  # FOLDER
  "$1/embed" "$project" Clamp "$1/plant.lqt" | sed -E 's/^[0-9]+: //' | expect "$clamp"
  "$build/bin/lq" show "$1/plant.lqt" --table labels | wc -l | expect "$(
    "$build/bin/lq" show "$project" --table labels | wc -l)"
  long_project 5000 >"$1/long.xml"
  "$1/embed" "$1/long.xml" F "$1/long.lqt" | sed -E "s/a{5000}/A/g; s/^[0-9]+: //" | expect "$long"
}

# All examples but own_model, as the package has them.
find_package() {
  rm -rf "${work:?}/$case"
  quietly cmake -S "$prefix/share/doc/liblq-data-dev/examples" -B "$work/$case" \
    -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
  quietly cmake --build "$work/$case" -j "$(nproc)"
  try_embed "$work/$case/embed"
  printf 'x := 1;' >"$work/$case/x.st"
  "$work/$case/scan/scan" "$work/$case/x.st" | tail -1 | expect '1:7: operator ;'
  "$work/$case/guide/guide_header" | tail -1 | expect 'VAR_OUTPUT Clamp: REAL'
  check_flags "$work/$case/compile_commands.json" main.cpp
}

pkg_config() {
  rm -rf "${work:?}/$case"
  mkdir "$work/$case"
  PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name lq_data_host.pc)")
  LD_LIBRARY_PATH=$(PKG_CONFIG_PATH=$PKG_CONFIG_PATH pkg-config --variable=libdir lq_data)
  export PKG_CONFIG_PATH LD_LIBRARY_PATH
  local program
  for program in embed scan; do
    # shellcheck disable=SC2046
    c++ -std=c++20 "$prefix/share/doc/liblq-data-dev/examples/$program/main.cpp" \
      -o "$work/$case/$program" $(pkg-config --cflags --libs lq_data_host)
  done
  try_embed "$work/$case"
}

# With the library as a part of it, and with one that was installed, in two ways.
own_model() {
  local launcher=(${CMAKE_CXX_COMPILER_LAUNCHER:+-DCMAKE_CXX_COMPILER_LAUNCHER="$CMAKE_CXX_COMPILER_LAUNCHER"})
  local work=$work-$case example=$source/examples/own_model program
  rm -rf "$work"
  quietly cmake -S "$example" -B "$work" -G Ninja -DCMAKE_EXPORT_COMPILE_COMMANDS=ON \
    -DOWN_MODEL_INSTALLED=OFF -DCMAKE_BUILD_TYPE=Release "${launcher[@]}"
  check_flags "$work/compile_commands.json" own_model/main.cpp
  ! grep BUILD_SHARED_LIBS "$work/CMakeCache.txt" || fail "the parent's choice was changed"
  quietly cmake --build "$work"
  quietly cmake --install "$work" --prefix "$work/prefix"
  [ ! -e "$work/prefix" ] || fail "a subproject installs"

  quietly cmake -S "$source" -B "$work/library" -G Ninja -DLQ_DATA_HOST=OFF -DLQ_DATA_HOST_BASE=ON \
    -DCMAKE_BUILD_TYPE=Release "-DBUILD_SHARED_LIBS=$(is_static && echo OFF || echo ON)" "${launcher[@]}"
  quietly cmake --build "$work/library"
  quietly cmake --install "$work/library" --prefix "$work/prefix"
  quietly cmake -S "$example" -B "$work/installed" -DCMAKE_PREFIX_PATH="$work/prefix"
  quietly cmake --build "$work/installed"
  PKG_CONFIG_PATH=$(dirname "$(find "$work/prefix" -name lq_data_translate.pc)")
  export PKG_CONFIG_PATH
  mkdir "$work/pkg_config"
  # shellcheck disable=SC2046
  c++ -std=c++20 "$example"/*.cpp -o "$work/pkg_config/own_model" \
    $(pkg-config --cflags --libs lq_data_translate) "-Wl,-rpath,$(pkg-config --variable=libdir lq_data)"
  for program in . installed pkg_config; do
    "$work/$program/own_model" "$work/$program/own.lqt" | expect '5 of 5 declarations, 1 units'
    cmp "$work/own.lqt" "$work/$program/own.lqt" || fail "the libraries' tables differ"
  done
  # The host's model of the same project gives the same tables.
  cat >"$work/own.xml" <<'END'
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
  quietly "$build/bin/lq" translate "$work/own.xml" -o "$work/host.lqt"
  cmp "$work/own.lqt" "$work/host.lqt" || fail "the models' tables differ"
}

# What a package has to have, and in one of libraries: a version in every name, so that two may be installed.
check_package() {  # FILE
  local name tree file
  name=$(dpkg-deb -f "$1" Package)
  tree=$work/$name
  dpkg-deb -x "$1" "$tree"
  for file in copyright changelog.gz changelog.Debian.gz; do
    [ -s "$tree/usr/share/doc/$name/$file" ] || fail "$name has no $file"
  done
  while read -r file; do
    ! readelf -S "$file" | grep -q '\.symtab' || fail "$file is not stripped"
  done < <(find "$tree" -type f \( -name '*.so.*' -o -path '*/bin/*' -o -name '*.dll' \))
  if [[ $name = liblq-data[0-9]* ]]; then
    ! find "$tree" -type f -o -type l | grep -vE "\.so\.[0-9]|/lq_data-[0-9]+/|/$name(/|$)" ||
      fail "these are in the way of another version"
    is_static || find "$tree" -name 'liblq_*.so.?' -printf '%f\n' | sort | expect "$(
      dpkg-deb -I "$1" shlibs | sed -E 's/^(\S+) (\S+) .*/\1.so.\2/' | sort)"
  fi
}

# The packages in a root that has nothing else, which they are then used from.
debian() {
  work=$work-$case
  rm -rf "$work"
  mkdir -p "$work/root/var/lib/dpkg"/{updates,info}
  touch "$work/root/var/lib/dpkg/status"
  (cd "$build" && quietly cpack -G DEB -B "$work")
  local packages=("$work"/*.deb) package
  [ ${#packages[@]} = 3 ] || fail "not three packages: ${packages[*]}"
  for package in "${packages[@]}"; do
    check_package "$package"
    if [ "$(id -u)" = 0 ]; then
      # What the packages depend on is not there.
      quietly dpkg --root="$work/root" --log=/dev/null --force-depends --force-script-chrootless -i "$package"
    else
      dpkg-deb -x "$package" "$work/root"
    fi
  done
  prefix=$work/root/usr
  "$prefix/bin/lq" fb "$project" Mixing stirring | expect TON
  find_package
  case=pkg_config pkg_config
  if ! is_static && command -v lintian >/dev/null; then
    # A build for another prefix has no folder of the machine's architecture, as `./dev package` has.
    quietly lintian --allow-root --fail-on error,warning \
      --suppress-tags pkg-config-unavailable-for-cross-compilation "${packages[@]}"
  fi
}

case $case in
  install) install_tree ;;
  find_package | pkg_config | own_model | debian) "$case" ;;
  *) fail "no such case" ;;
esac
