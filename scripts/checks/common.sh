# What the checks share. A check prints what it found and fails then; it fails too where it could not look.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

# The folders that know no toolkit and no operating system.
logic=(base imaging diagnostics settings dialogs editor toolwindows browser host recovery)

# matches ARGUMENT...: the matching lines of the repository's files, which may be none.
matches() {
  git grep -nI "$@" || [ $? -eq 1 ]
}

# complain TITLE FINDINGS: prints findings, if there are any, and notes the failure for `exit $failed`.
failed=0
complain() {
  [ -n "$2" ] || return 0
  printf '%s\n' "$1" "$2"
  failed=1
}
