#!/usr/bin/env bash
# Renders the frames of a sequence as a Slurm job array, one part in each task:
#
#   sbatch --array=1-20 scripts/slurm.sh 'plate.####.exr' 'out/look.####.exr' --frames 1001-1240
#
# Everything behind the script's name goes to `vitrell render`. Frames that are there and made of the
# same stay, so that a task that was requeued goes on where it was. A task that ends with 75 (disk
# full, too little memory, a folder that went away) is requeued, VITRELL_RETRIES times (default: 3).
# VITRELL names the program, where it is not found by that name.
#SBATCH --job-name=vitrell
#SBATCH --requeue
#SBATCH --open-mode=append
set -u

: "${SLURM_ARRAY_TASK_ID:?this is a task of a job array: sbatch --array=1-20 $0 ...}"
first="${SLURM_ARRAY_TASK_MIN:-1}"
step="${SLURM_ARRAY_TASK_STEP:-1}"
part=$(((SLURM_ARRAY_TASK_ID - first) / step + 1))
threads=()
[[ -z "${SLURM_CPUS_PER_TASK:-}" ]] || threads=(--threads "$SLURM_CPUS_PER_TASK")

"${VITRELL:-vitrell}" render "$@" --part "$part/$SLURM_ARRAY_TASK_COUNT" --existing skip \
  --keep-going --progress plain "${threads[@]}"
code=$?

if ((code == 75 && ${SLURM_RESTART_COUNT:-0} < ${VITRELL_RETRIES:-3})); then
  echo "Part $part may go better later and is requeued."
  # This ends the task here.
  scontrol requeue "${SLURM_ARRAY_JOB_ID}_$SLURM_ARRAY_TASK_ID" && sleep 60
fi
exit "$code"
