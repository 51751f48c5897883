#!/usr/bin/env bash
# Runs tovrel-uninstall in the prefix that the main job kept, with the given
# arguments, and exits with its exit code:
#   scripts/uninstall.sh --what-if "Plenarc Demo 600"   the plan; nothing changes
#   scripts/uninstall.sh "Plenarc Demo 600"             takes the model back
#   scripts/uninstall.sh --json "Plenarc Demo 600"
# Once it has run without --what-if, the model is gone from that prefix;
# scripts/main-job.sh installs it anew. TOVREL_WINE_ARCH picks the prefix
# and the build, as for the main job.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/main-job-prefix.sh
run_in_main_job_prefix uninstall tovrel-uninstall.exe "$@"
