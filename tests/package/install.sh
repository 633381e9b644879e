#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: install.sh BUILD_DIR STAGE
# Installs, then moves the tree: a path baked into it shows in everything that uses the stage.
set -euo pipefail
rm -rf "$2" "$2.first"
cmake --install "$1" --prefix "$2.first" >/dev/null
mv "$2.first" "$2"
