#!/usr/bin/env bash
# Checks the built package's file list and dependencies (scripts/package makes it).
# Usage: check-contents.sh PACKAGE_DIR. Exits 77 (skipped) when no package was built.
set -euo pipefail
deb=$(ls "$1"/lexarbor_*.deb 2>/dev/null | head -n 1 || true)
[ -n "$deb" ] || { echo "no package in $1"; exit 77; }
files=$(dpkg -c "$deb" | awk '{print $6}')
status=0
expected=(./usr/bin/lexarbor ./usr/bin/lexarbor-cli
          ./usr/share/lexarbor/res.dat ./usr/share/lexarbor/DCHelp.html
          ./usr/share/applications/lexarbor.desktop ./usr/share/mime/packages/lexarbor.xml)
for size in 16 32 48 64 128 256; do
    expected+=("./usr/share/icons/hicolor/${size}x${size}/apps/lexarbor.png")
done
for path in "${expected[@]}"; do
    grep -qxF "$path" <<<"$files" || { echo "missing: $path"; status=1; }
done
# Everything lives under /usr; no test, benchmark or build tool slips in.
stray=$(grep -v -e '^\./$' -e '^\./usr/' <<<"$files" || true)
[ -z "$stray" ] || { echo "outside /usr: $stray"; status=1; }
extra=$(grep '^\./usr/bin/.' <<<"$files" | grep -vxF -e ./usr/bin/lexarbor -e ./usr/bin/lexarbor-cli || true)
[ -z "$extra" ] || { echo "unexpected programs: $extra"; status=1; }
depends=$(dpkg-deb -f "$deb" Depends)
for lib in libqt6core6 libsqlite3-0 libqt6webenginewidgets6; do
    grep -q "$lib" <<<"$depends" || { echo "no dependency on $lib: $depends"; status=1; }
done
exit $status
