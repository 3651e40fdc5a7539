#!/usr/bin/env bash
# Installs the Debian packages the project builds with. Idempotent: when every
# package is present it only checks and returns.
set -euo pipefail

packages=(
  build-essential cmake ninja-build ccache pkg-config
  qt6-base-dev
  libpugixml-dev zlib1g-dev liblz4-dev libfmt-dev libgcrypt20-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libzstd-dev clang libclang-rt-14-dev
  locales
  dbus-daemon
  gdb
)

# A comma-decimal locale for the tests that show number parsing ignores the process
# locale (they skip without it). Generating one locale takes a few seconds.
ensure_test_locale() {
  if locale -a 2>/dev/null | grep -qi '^de_DE\.utf-\?8$'; then return 0; fi
  if [ "$(id -u)" -ne 0 ] || [ ! -f /etc/locale.gen ] || ! command -v locale-gen >/dev/null; then return 0; fi
  sed -i 's/^# *de_DE.UTF-8 UTF-8/de_DE.UTF-8 UTF-8/' /etc/locale.gen
  locale-gen >/dev/null 2>&1 || true
}

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  ensure_test_locale
  exit 0
fi

echo "Installing: ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
ensure_test_locale
