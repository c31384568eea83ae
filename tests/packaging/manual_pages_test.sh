#!/usr/bin/env bash
# The manual page of the headless program and its help text name the same options and exit codes.
# Usage: manual_pages_test.sh PROGRAM
set -euo pipefail

page=$(dirname "$0")/../../docs/man/lumistrand-hdr-cli.1
help=$("$1" --help)

# Options as they stand at the start of an entry, sorted.
help_options() { grep -oE '^ +(-[a-zA-Z], )?--[a-z-]+' <<<"$help" | grep -oE -- '--?[a-zA-Z-]+' | sort; }
page_options() {
    grep -A1 '^\.TP' "$page" | grep -E '^\.BR? \\-' | sed 's/\\-/-/g; s/\\fI.*//' | grep -oE -- '--?[a-zA-Z-]+' | sort
}
diff <(help_options) <(page_options)

help_codes() { grep -A2 '^Exit codes' <<<"$help" | grep -oE '[0-9]+' | sort; }
page_codes() { sed -n '/^\.SH EXIT/,/^\.SH EXAMPLES/p' "$page" | grep -oE '^\.B [0-9]+' | grep -oE '[0-9]+' | sort; }
diff <(help_codes) <(page_codes)
[ "$(help_options | wc -l)" -gt 20 ]
