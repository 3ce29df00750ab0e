#!/usr/bin/env bash
# Rules that no compiler checks. Prints what is wrong and the command or the change that mends it.
set -u
cd "$(dirname "$0")/.."
status=0
complain() {
    printf '%s\n' "$@"
    status=1
}

sources=$(find bench src stage tests tools \( -name '*.cpp' -o -name '*.h' \) 2>/dev/null | sort)
[ -n "$sources" ] || {
    echo 'No sources found'
    exit 1
}

# The style is the checked-in one.
unformatted=$(printf '%s\n' "$sources" | xargs clang-format --dry-run -Werror 2>&1 | grep -oE '^[^: ]+\.(cpp|h):' | tr -d : | sort -u)
[ -z "$unformatted" ] || complain "Not formatted; mend with: clang-format -i" "$unformatted"

# Drawing objects are selected and deleted by their owners alone; the canvas is one.
raw=$(printf '%s\n' "$sources" | grep '^src/' | grep -vxE 'src/base/windows/gdi\.h|src/render/windows/canvas\.cpp' |
    xargs grep -nE '\b(SelectObject|DeleteObject)\(')
[ -z "$raw" ] || complain "Use the owners of src/base/windows/gdi.h instead of:" "$raw"

# Global memory is allocated, resized and freed in one file; the canvas frees its own block.
raw=$(printf '%s\n' "$sources" | grep '^src/' | grep -vxE 'src/base/windows/global_block\.(h|cpp)|src/render/windows/canvas\.cpp' |
    xargs grep -nE '\bGlobal(Alloc|ReAlloc|Free|Lock|Unlock)\(')
[ -z "$raw" ] || complain "Use src/base/windows/global_block.h instead of:" "$raw"

# Rooms stand on each other in an order, and only what lies in a folder `windows` knows Windows.
found=$(python3 tests/rooms.py) || complain "Includes against the order of tests/rooms.py:" "$found"

exit $status
