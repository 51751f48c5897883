#!/usr/bin/env bash
# Runs tovrel-report in the prefix that the main job kept, with the given
# arguments, and exits with its exit code:
#   scripts/report.sh                          the models that have a record
#   scripts/report.sh "Plenarc Demo 600"       that model's items, one a line
#   scripts/report.sh --json "Plenarc Demo 600"
# TOVREL_WINE_ARCH picks the prefix and the build, as for the main job.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/main-job-prefix.sh
run_in_main_job_prefix report tovrel-report.exe "$@"
