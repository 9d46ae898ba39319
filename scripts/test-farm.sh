#!/usr/bin/env bash
# Tries a sequence on a farm: a Slurm controller with two nodes, all on this machine, and GNU
# parallel. Both are installed with apt. What they render must be what one run renders, byte for byte.
#
#   scripts/test-farm.sh             builds what is needed and runs everything; as root
#   scripts/test-farm.sh --help
#
# What was rendered, and the logs, stay in build/farm until the next run.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

frames=32
parts=8

work="$root/build/farm"
bin="$root/build/release"
export VITRELL="$bin/cli/vitrell"
export SLURM_CONF="$work/slurm/slurm.conf"
# Slow enough that a part can be killed in the middle.
look=(--set realistic-blur.visible=1 --set "realistic-blur.amount=1=20; 32=60")

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

# Waits until a command succeeds.
until_true() {
  local what="$1" tries
  shift
  for ((tries = 0; tries < 600; tries++)); do
    if "$@"; then return 0; fi
    sleep 0.5
  done
  fail "$what: not within five minutes. The logs are in $work/slurm."
}

write_slurm_conf() {
  local host
  host="$(hostname -s)"
  cat >"$SLURM_CONF" <<CONF
ClusterName=vitrell
SlurmctldHost=$host(127.0.0.1)
SlurmUser=root
SlurmdUser=root
AuthType=auth/munge
# A requeued task waits until its credential has expired.
AuthInfo=cred_expire=5
StateSaveLocation=$work/slurm/state
SlurmdSpoolDir=$work/slurm/spool-%n
SlurmctldPidFile=$work/slurm/slurmctld.pid
SlurmdPidFile=$work/slurm/slurmd-%n.pid
SlurmctldLogFile=$work/slurm/slurmctld.log
SlurmdLogFile=$work/slurm/slurmd-%n.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
ReturnToService=2
NodeName=n1 NodeHostname=$host NodeAddr=127.0.0.1 Port=17001 CPUs=1 RealMemory=500
NodeName=n2 NodeHostname=$host NodeAddr=127.0.0.1 Port=17002 CPUs=1 RealMemory=500
PartitionName=all Nodes=n1,n2 Default=YES State=UP
CONF
}

start_munge() {
  install -d -o munge -g munge -m 755 /run/munge
  [[ -f /etc/munge/munge.key ]] || runuser -u munge -- mungekey
  munge -n >/dev/null 2>&1 && return
  runuser -u munge -- munged
  munge_is_ours=1
}

munge_is_ours=
start_slurm() {
  mkdir -p "$work/slurm/state"
  write_slurm_conf
  start_munge
  slurmctld -f "$SLURM_CONF"
  slurmd -f "$SLURM_CONF" -N n1
  slurmd -f "$SLURM_CONF" -N n2
  until_true "Slurm's two nodes are idle" nodes_are_idle
}

nodes_are_idle() { [[ "$(sinfo --noheader --states=idle --format=%D 2>/dev/null)" == 2 ]]; }

stop_slurm() {
  local pid_file
  for pid_file in "$work"/slurm/*.pid; do
    [[ ! -f "$pid_file" ]] || kill "$(cat "$pid_file")" || true
  done
  [[ -z "$munge_is_ours" ]] || pkill -x -u munge munged || true
}

is_running() { [[ "$(squeue --noheader --array --states=R --jobs="$1" --format=%i 2>/dev/null)" == "$1" ]]; }
is_over() { [[ -z "$(squeue --noheader --jobs="$1" 2>/dev/null)" ]]; }

# Every frame of a folder against the one run's.
compare() {
  local file
  "$VITRELL" check "$work/$1/look.####.png" --frames "1-$frames"
  for file in "$work"/one/look.*; do
    cmp "$file" "$work/$1/$(basename "$file")" || fail "$1: a frame differs from that of one run."
  done
  expect "$1: frames as of one run" "$(find "$work/$1" -name 'look.*.png' | wc -l)" "$frames"
}

test_slurm() {
  local job victim
  say "A job array of $parts parts in Slurm, one of them killed and requeued"
  start_slurm
  mkdir -p "$work/slurm-out"
  job="$(cd "$work" && sbatch --parsable --array="1-$parts" --output="$work/slurm/task-%a.log" \
    "$root/scripts/slurm.sh" 'clip/street.####.png' 'slurm-out/look.####.png' --frames "1-$frames" \
    "${look[@]}")"
  victim="${job}_2"
  until_true "Task 2 runs" is_running "$victim"
  until_true "Task 2 has begun" grep -q . "$work/slurm/task-2.log"
  scontrol requeue "$victim"
  until_true "The array is done" is_over "$job"
  expect "the killed task began again" \
    "$(scontrol show job "$victim" | grep -o 'Restarts=[0-9]*')" Restarts=1
  compare slurm-out
}

test_parallel() {
  local code=0 run
  say "GNU parallel, one part failing and resumed"
  mkdir -p "$work/parallel-out"
  run=(parallel --will-cite --jobs 2 --joblog "$work/parallel.log"
    "$VITRELL" render 'clip/street.####.png' 'parallel-out/look.####.png' --frames "1-$frames"
    "${look[@]@Q}" --existing skip --quiet --part "{}/$parts" ::: $(seq "$parts"))
  mv "$work/clip/street.0007.png" "$work/away.png"
  (cd "$work" && "${run[@]}" 2>"$work/parallel.err") || code=$?
  mv "$work/away.png" "$work/clip/street.0007.png"
  expect "parts that failed" "$code" 1
  (cd "$work" && "${run[0]}" --resume-failed "${run[@]:1}")
  compare parallel-out
}

if [[ "${1:-}" == -h || "${1:-}" == --help ]]; then
  usage
  exit 0
fi
(($# == 0)) || fail "Unknown argument '$1'; see --help."
((EUID == 0)) || fail "Slurm's daemons are started as root."
install_packages slurm-wlm munge parallel
build_preset release vitrell sample_picture
rm -rf "$work"
mkdir -p "$work/slurm" "$work/clip" "$work/one"
trap stop_slurm EXIT
"$bin/tools/sample_picture/sample_picture" "$work/clip/street.####.png" --width 480 --height 270 \
  --frames "$frames"
say "One run"
(cd "$work" && "$VITRELL" render 'clip/street.####.png' 'one/look.####.png' "${look[@]}")
test_slurm
test_parallel
