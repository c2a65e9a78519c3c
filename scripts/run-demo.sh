#!/usr/bin/env bash
# Starts the console on the demo simulated host, as the host's init would:
# started again after a restart, not after a shutdown.
set -euo pipefail
build=${1:-build}
top=$(cd "$(dirname "$0")/.." && pwd)
bin="$top/$build/bin"
root="$top/$build/demo-root"

"$bin/tolm-hostsim" init "$root" --fixture typical
export TOLM_ROOT="$root"
# Real PAM calls, answered by pam_wrapper's pam_matrix from the root's password file.
export LD_PRELOAD=libpam_wrapper.so PAM_WRAPPER=1 PAM_WRAPPER_SERVICE_DIR="$root/etc/pam.d"
export PATH="$root/sbin:$root/bin:$PATH"

echo "Demo host at $root"
cat "$root/etc/pellor/demo-login" 2>/dev/null || true
echo "Press Enter to start the console (ESC R or SIGTERM ends it)."
read -r _ || true

while true; do
  "$bin/tolm" || true
  state=$("$bin/tolm-hostsim" --root "$root" get /power/state 2>/dev/null | tr -d '"' || echo running)
  case "$state" in
    restarting)
      # The host comes back up as after a real restart (IPv6 switch, DHCP, boot count).
      "$bin/tolm-hostsim" --root "$root" boot
      clear; echo "The simulated host restarted."; sleep 1 ;;
    *) break ;;
  esac
done
clear
echo "Console ended (host power state: ${state:-running})."
