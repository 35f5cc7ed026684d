#!/bin/sh
# Exports the sample as .glb and .gltf, has the test program write its model with every
# kind of record, and runs the Khronos glTF validator over all of them.
# The validator comes from npm; without npm (or without the network to fetch it) the test
# is skipped with a message (exit 77).
set -eu
cli="$1"; sample="$2"; hog="$3"; work="$4"; tests="$5"
mkdir -p "$work"
"$cli" export "$sample" "$work/ship.glb" --d3hog "$hog" >/dev/null
"$cli" export "$sample" "$work/ship.gltf" --d3hog "$hog" >/dev/null
MW_GLTF_VALIDATOR_DIR="$work" "$tests" --gtest_filter=GltfExport.FilesForTheValidator >/dev/null
if ! command -v npm >/dev/null 2>&1 || ! command -v node >/dev/null 2>&1; then
    echo "SKIPPED: npm is not installed, so the Khronos glTF validator cannot be run."
    exit 77
fi
if [ ! -d "$work/node_modules/gltf-validator" ]; then
    if ! npm install --prefix "$work" --no-save --silent gltf-validator@2.0.0-dev.3.10 >"$work/npm.log" 2>&1; then
        echo "SKIPPED: npm could not fetch gltf-validator (see $work/npm.log)."
        exit 77
    fi
fi
cat >"$work/validate.js" <<'JS'
const fs = require('fs');
const path = require('path');
const validator = require('gltf-validator');
(async () => {
  let failed = false;
  for (const file of process.argv.slice(2)) {
    const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(file)), {
      uri: path.basename(file),
      externalResourceFunction: (uri) => Promise.resolve(
          new Uint8Array(fs.readFileSync(path.join(path.dirname(file), decodeURIComponent(uri))))),
    });
    const issues = report.issues;
    console.log(`${file}: ${issues.numErrors} errors, ${issues.numWarnings} warnings`);
    for (const m of issues.messages) {
      if (m.severity === 0) console.log(`  ${m.code} ${m.pointer || ''}: ${m.message}`);
    }
    if (issues.numErrors > 0) failed = true;
  }
  process.exit(failed ? 1 : 0);
})();
JS
node "$work/validate.js" "$work/ship.glb" "$work/ship.gltf" "$work/every_record_kind.glb" \
    "$work/every_record_kind.gltf"
